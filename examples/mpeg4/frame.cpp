#include "mpeg4/frame.h"

#include <algorithm>

namespace mpeg4 {

Frame::Frame(const Layer& layer)
    : motion(std::size_t(layer.widthMbs() * layer.heightMbs())),
      width_(16 * layer.widthMbs()),
      height_(16 * layer.heightMbs()),
      samples_(width_, height_),
      format_(layer.format()) {}

const std::uint8_t* Frame::reference(int plane, int x, int y, int size) const {
  const int shift = plane == 0 ? 0 : 1;
  x = std::clamp(x, -(size + 1), width_ >> shift);
  y = std::clamp(y, -(size + 1), height_ >> shift);
  return samples_.planes[plane] + y * samples_.steps[plane] + x;
}

const std::uint8_t* Frame::fieldReference(int plane, int x, int y, int size, bool bottom) const {
  const int shift = plane == 0 ? 0 : 1;
  x = std::clamp(x, -(size + 1), width_ >> shift);
  y = std::clamp(y, -(size / 2 + 1), height_ >> shift >> 1);
  return samples_.planes[plane] + (2 * y + bottom) * samples_.steps[plane] + x;
}

video::Picture Frame::picture() const {
  video::Picture picture;
  picture.format = format_;
  for (int plane = 0; plane < 3; ++plane) {
    picture.planes[plane] = samples_.planes[plane];
    picture.steps[plane] = samples_.steps[plane];
  }
  return picture;
}

}  // namespace mpeg4
