// Planes of 16-bit elements as the block functions of VC-1 take them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "support/random.h"

namespace zvptest {

using Plane = GuardedPlane<std::int16_t>;
using Block = std::vector<std::int16_t>;

// Anywhere, with any step, full of random bytes.
inline Plane randomPlane(Rng& rng, int width, int height) {
  const std::ptrdiff_t step = rng.step(2 * width, true);
  const Guard guard = rng.guard();
  Plane plane(width, height, step, guard);
  fill(plane.bytes().data(), plane.bytes().size(), rng, Style::Uniform, 0, 255);
  return plane;
}

// Its elements without gaps.
inline Block valuesOf(const Plane& plane) {
  Block values;
  for (int y = 0; y < plane.height(); ++y)
    for (int x = 0; x < plane.width(); ++x) values.push_back(plane.get(x, y));
  return values;
}

// Its bytes with all of its elements replaced.
inline std::vector<std::uint8_t> with(Plane& plane, const Block& values) {
  const auto before = plane.snapshot();
  for (int y = 0; y < plane.height(); ++y)
    for (int x = 0; x < plane.width(); ++x) plane.set(x, y, values[std::size_t(y * plane.width() + x)]);
  auto after = plane.snapshot();
  std::copy(before.begin(), before.end(), plane.bytes().data());
  return after;
}

}  // namespace zvptest
