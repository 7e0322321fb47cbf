// A picture that outlives the sink's call: the planes one after the other, rows without gaps (I420 for 4:2:0).
#pragma once

#include <cstring>
#include <vector>

#include "common/decoder.h"

namespace video {

struct StoredPicture {
  Format format;
  std::vector<std::uint8_t> samples;

  StoredPicture() = default;
  explicit StoredPicture(const Picture& picture) : format(picture.format), samples(bytes(picture.format)) {
    std::uint8_t* to = samples.data();
    for (int plane = 0; plane < 3; ++plane)
      for (int y = 0; y < format.planeHeight(plane); ++y) {
        const std::size_t width = std::size_t(format.planeWidth(plane));
        std::memcpy(to, picture.planes[plane] + y * picture.steps[plane], width);
        to += width;
      }
  }
  static std::size_t bytes(const Format& format) {
    std::size_t sum = 0;
    for (int plane = 0; plane < 3; ++plane)
      sum += std::size_t(format.planeWidth(plane)) * std::size_t(format.planeHeight(plane));
    return sum;
  }
  const std::uint8_t* plane(int plane) const {
    const std::uint8_t* at = samples.data();
    for (int i = 0; i < plane; ++i) at += std::size_t(format.planeWidth(i)) * std::size_t(format.planeHeight(i));
    return at;
  }
  Picture view() const {
    Picture picture;
    picture.format = format;
    for (int i = 0; i < 3; ++i) {
      picture.planes[i] = plane(i);
      picture.steps[i] = format.planeWidth(i);
    }
    return picture;
  }
};

}  // namespace video
