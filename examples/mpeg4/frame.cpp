#include "mpeg4/frame.h"

#include <algorithm>
#include <new>

#include "zvpvc.h"

namespace mpeg4 {

Frame::Frame(const Layer& layer)
    : motion(std::size_t(layer.widthMbs() * layer.heightMbs())),
      width_(16 * layer.widthMbs()),
      height_(16 * layer.heightMbs()),
      format_(layer.format()) {
  const std::size_t step = std::size_t(width_ + 2 * margin), rows = std::size_t(height_ + 2 * margin);
  const std::size_t luma = step * rows, chroma = luma / 4;
  samples_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(64, (luma + 2 * chroma + 63) & ~std::size_t(63))));
  if (!samples_) throw std::bad_alloc();
  steps_[0] = std::ptrdiff_t(step);
  steps_[1] = steps_[2] = steps_[0] / 2;
  planes_[0] = samples_.get() + margin * steps_[0] + margin;
  for (int plane = 1; plane < 3; ++plane)
    planes_[plane] = samples_.get() + luma + std::size_t(plane - 1) * chroma + margin / 2 * steps_[1] + margin / 2;
}

const std::uint8_t* Frame::reference(int plane, int x, int y, int size) const {
  const int shift = plane == 0 ? 0 : 1;
  x = std::clamp(x, -(size + 1), width_ >> shift);
  y = std::clamp(y, -(size + 1), height_ >> shift);
  return planes_[plane] + y * steps_[plane] + x;
}

const std::uint8_t* Frame::fieldReference(int plane, int x, int y, int size, bool bottom) const {
  const int shift = plane == 0 ? 0 : 1;
  x = std::clamp(x, -(size + 1), width_ >> shift);
  y = std::clamp(y, -(size / 2 + 1), height_ >> shift >> 1);
  return planes_[plane] + (2 * y + bottom) * steps_[plane] + x;
}

void Frame::expand() {
  for (int plane = 0; plane < 3; ++plane) {
    const int shift = plane == 0 ? 0 : 1;
    zvpiExpandPlane_H264_8u_C1R(planes_[plane], width_ >> shift, height_ >> shift, step(plane), margin >> shift, 0);
  }
}

video::Picture Frame::picture() const {
  video::Picture picture;
  picture.format = format_;
  for (int plane = 0; plane < 3; ++plane) {
    picture.planes[plane] = planes_[plane];
    picture.steps[plane] = steps_[plane];
  }
  return picture;
}

}  // namespace mpeg4
