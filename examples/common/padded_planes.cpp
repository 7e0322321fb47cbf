#include "common/padded_planes.h"

#include <zvpvc.h>

#include <new>

namespace video {

PaddedPlanes::PaddedPlanes(int width, int height) : width_(width), height_(height) {
  const std::size_t step = std::size_t(width + 2 * lumaMargin), rows = std::size_t(height + 2 * lumaMargin);
  const std::size_t luma = step * rows, chroma = luma / 4;
  samples_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(64, (luma + 2 * chroma + 63) & ~std::size_t(63))));
  if (!samples_) throw std::bad_alloc();
  steps[0] = std::ptrdiff_t(step);
  steps[1] = steps[2] = steps[0] / 2;
  planes[0] = samples_.get() + lumaMargin * steps[0] + lumaMargin;
  planes[1] = samples_.get() + luma + lumaMargin / 2 * steps[1] + lumaMargin / 2;
  planes[2] = planes[1] + chroma;
}

void PaddedPlanes::expand() {
  for (int plane = 0; plane < 3; ++plane) {
    const int shift = plane == 0 ? 0 : 1;
    zvpiExpandPlane_H264_8u_C1R(planes[plane], width_ >> shift, height_ >> shift, std::int32_t(steps[plane]),
                                lumaMargin >> shift, 0);
  }
}

}  // namespace video
