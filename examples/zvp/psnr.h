// Peak signal-to-noise ratios of stored pictures.
#pragma once

#include <cmath>
#include <cstdint>

#include "common/stored_picture.h"

namespace zvptool {

// Of one plane of two pictures of the same format, in dB; infinite where they are equal.
inline double psnr(const video::StoredPicture& a, const video::StoredPicture& b, int plane) {
  const std::uint8_t *p = a.plane(plane), *q = b.plane(plane);
  const std::size_t size = std::size_t(a.format.planeWidth(plane)) * std::size_t(a.format.planeHeight(plane));
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < size; ++i) sum += std::uint64_t((p[i] - q[i]) * (p[i] - q[i]));
  return sum == 0 ? INFINITY : 10 * std::log10(255.0 * 255.0 * double(size) / double(sum));
}

}  // namespace zvptool
