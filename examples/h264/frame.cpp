#include "h264/frame.h"

#include <cstring>
#include <new>

#include "zvpvc.h"

namespace h264 {

void Frame::allocate() {
  if (allocated()) return;
  const std::size_t lumaStep = std::size_t(16 * widthMbs + 2 * lumaMargin);
  const std::size_t chromaStep = lumaStep / 2;
  const std::size_t lumaRows = std::size_t(16 * heightMbs + 2 * lumaMargin);
  const std::size_t lumaSize = lumaStep * lumaRows, chromaSize = lumaSize / 4;
  const std::size_t size = (lumaSize + 2 * chromaSize + 63) & ~std::size_t(63);
  samples_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(64, size)));
  if (!samples_) throw std::bad_alloc();
  steps[0] = std::ptrdiff_t(lumaStep);
  steps[1] = std::ptrdiff_t(chromaStep);
  planes[0] = samples_.get() + lumaMargin * lumaStep + lumaMargin;
  for (int plane = 1; plane < 3; ++plane)
    planes[plane] = samples_.get() + lumaSize + std::size_t(plane - 1) * chromaSize + lumaMargin / 2 * chromaStep +
                    lumaMargin / 2;
  const std::size_t mbs = std::size_t(widthMbs) * std::size_t(heightMbs);
  for (auto& list : motion) list = std::make_unique_for_overwrite<MbMotion[]>(mbs);
  refs = std::make_unique_for_overwrite<MbRefs[]>(mbs);
}

void Frame::expand() {
  zvpiExpandPlane_H264_8u_C1R(planes[0], 16 * widthMbs, 16 * heightMbs, std::int32_t(steps[0]), lumaMargin, 0);
  for (int plane = 1; plane < 3; ++plane)
    zvpiExpandPlane_H264_8u_C1R(planes[plane], 8 * widthMbs, 8 * heightMbs, std::int32_t(steps[1]), lumaMargin / 2, 0);
}

}  // namespace h264
