// The picture that the library's stores write: packed 4:2:2, Y Cb Y Cr.
#pragma once

#include <cstdint>
#include <vector>

#include "common/decoder.h"

namespace dv {

class PackedPicture {
 public:
  PackedPicture() = default;
  PackedPicture(int width, int height) : width_(width), height_(height) {  // black
    samples_.reserve(std::size_t(step()) * std::size_t(height));
    while (samples_.size() < samples_.capacity()) samples_.insert(samples_.end(), {16, 128});
  }
  int step() const { return 2 * width_; }  // bytes from one row to the next
  std::uint8_t* at(int x, int y) { return samples_.data() + std::ptrdiff_t(y) * step() + 2 * x; }

  // Takes the planes apart: with a shift of 2 across or 1 down, only every other chroma sample or row, the ones that the
  // stores took from the stream.
  void split(int chromaShiftX, int chromaShiftY, std::vector<std::uint8_t> (&planes)[3]) const;

 private:
  int width_ = 0, height_ = 0;
  std::vector<std::uint8_t> samples_;
};

}  // namespace dv
