// A decoder of the examples on any bytes: no crash, no endless loop, errors that lie within the input.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "common/decoder.h"

// Takes a picture and looks at every sample.
inline void lookAtSamples(const video::Picture& picture) {
  unsigned sum = 0;
  for (int plane = 0; plane < 3; ++plane)
    for (int y = 0; y < picture.format.planeHeight(plane); ++y)
      for (int x = 0; x < picture.format.planeWidth(plane); ++x)
        sum += picture.planes[plane][y * picture.steps[plane] + x];
  volatile unsigned used = sum;  // not to be left out
  static_cast<void>(used);
}

inline void decodeAnyBytes(video::Decoder& decoder, const std::uint8_t* data, std::size_t size) {
  const auto inside = [&](const video::StreamError& error) {
    if (error.position() < 0 || error.position() > std::int64_t(size)) std::abort();
  };
  bool failed = false;
  try {
    // In two pieces, each with memory of its own.
    const std::size_t half = size / 2;
    const std::vector<std::uint8_t> first(data, data + half), second(data + half, data + size);
    decoder.decode({first, 0, false}, lookAtSamples);
    decoder.decode({second, std::int64_t(half), false}, lookAtSamples);
  } catch (const video::StreamError& error) {
    failed = true;
    inside(error);
  }
  try {
    decoder.finish(lookAtSamples);
  } catch (const video::StreamError& error) {
    if (failed) std::abort();
    inside(error);
  }
}
