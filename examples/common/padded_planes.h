// The samples of a 4:2:0 frame with a margin around each plane, so that most vectors that leave the frame need no repair,
// and so that a reference area may be wider than a small picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace video {

class PaddedPlanes {
 public:
  static constexpr int lumaMargin = 32;  // on each side; half of it around chroma

  PaddedPlanes() = default;
  PaddedPlanes(int width, int height);  // of the coded area, in luma samples

  // Repeats the edges of the coded area into the margin.
  void expand();

  std::uint8_t* planes[3] = {};  // sample (0, 0) of Y, Cb, Cr; null if there are none
  std::ptrdiff_t steps[3] = {};  // bytes from one row to the next

 private:
  struct Free {
    void operator()(std::uint8_t* p) const { std::free(p); }
  };
  std::unique_ptr<std::uint8_t, Free> samples_;
  int width_ = 0, height_ = 0;
};

}  // namespace video
