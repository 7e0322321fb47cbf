// A frame of whole macroblocks, and what a picture sees of it: all its lines or those of one field.
#pragma once

#include <cstdint>
#include <vector>

#include "mpeg2/headers.h"

namespace mpeg2 {

struct Plane {
  std::uint8_t* samples = nullptr;
  int step = 0, width = 0, height = 0;
  std::uint8_t* at(int x, int y) const { return samples + std::ptrdiff_t(y) * step + x; }
};

struct View {
  Plane planes[3];
  // One field of a frame's view.
  View field(int parity) const {
    View half = *this;
    for (Plane& plane : half.planes) {
      plane.samples += parity * plane.step;
      plane.step *= 2;
      plane.height /= 2;
    }
    return half;
  }
};

class Frame {
 public:
  Frame(int macroblocksX, int macroblocksY, int chromaShiftY) {
    int heights[3] = {16 * macroblocksY, 16 * macroblocksY >> chromaShiftY, 16 * macroblocksY >> chromaShiftY};
    for (int i = 0; i < 3; ++i) {
      const int width = i == 0 ? 16 * macroblocksX : 8 * macroblocksX;
      samples_[i].resize(std::size_t(width) * std::size_t(heights[i]));
      view_.planes[i] = {samples_[i].data(), width, width, heights[i]};
    }
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  const View& view() const { return view_; }
  View view(Structure structure) const {
    return structure == Structure::Frame ? view_ : view_.field(structure == Structure::BottomField);
  }

 private:
  std::vector<std::uint8_t> samples_[3];
  View view_;
};

}  // namespace mpeg2
