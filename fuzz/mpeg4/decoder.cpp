// The decoders of MPEG-4 Visual and H.263 of the examples on any bytes: no crash, no endless loop, errors that lie
// within the input. An input that begins like a picture of H.263 goes to its decoder.
#include "mpeg4/decoder.h"

#include <cstdlib>
#include <span>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const bool h263 = mpeg4::looksLikeH263(std::span(data, size));
  const auto decoder = h263 ? mpeg4::makeH263Decoder() : mpeg4::makeDecoder();
  unsigned sum = 0;
  const video::PictureSink sink = [&](const video::Picture& picture) {
    for (int plane = 0; plane < 3; ++plane)
      for (int y = 0; y < picture.format.planeHeight(plane); ++y)
        for (int x = 0; x < picture.format.planeWidth(plane); ++x)
          sum += picture.planes[plane][y * picture.steps[plane] + x];
  };
  bool failed = false;
  const auto guarded = [&](auto work) {
    try {
      work();
    } catch (const video::StreamError& error) {
      if (failed || error.position() < 0 || error.position() > std::int64_t(size)) std::abort();
      failed = true;
    }
  };
  guarded([&] {
    // In two pieces, each with memory of its own.
    const std::size_t half = size / 2;
    const std::vector<std::uint8_t> first(data, data + half), second(data + half, data + size);
    decoder->decode({first, 0, false}, sink);
    decoder->decode({second, std::int64_t(half), false}, sink);
  });
  guarded([&] { decoder->finish(sink); });
  volatile unsigned used = sum;  // every sample is looked at
  static_cast<void>(used);
  return 0;
}
