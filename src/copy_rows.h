// Rows of W bytes from one place to another: predictions from whole-sample positions.
#pragma once

#include "opaque.h"
#include "simd.h"

namespace zvp {

// Round rows, an even number, at a time; height is a multiple of it and at least that. Behind two rows the steps are
// strangers, so that no register holds a multiple of one and no sum is made of the one before.
template <int W, int Round>
ZVP_INLINE void copyRows(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  using Row = simd::U8<16>;
  do {
#pragma GCC unroll 8
    for (int y = 0; y < Round; y += 2) {
      simd::storeBytes<W>(dst, simd::loadBytes<Row, W>(src));
      simd::storeBytes<W>(dst + dstStep, simd::loadBytes<Row, W>(src + srcStep));
      srcStep = opaque(srcStep);
      dstStep = opaque(dstStep);
      src += 2 * srcStep;
      dst += 2 * dstStep;
    }
  } while ((height -= Round) != 0);
}

// The same without a loop where the block is as high as it is wide, as most are.
template <int W, int Round>
ZVP_INLINE void copyBlockRows(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  if (height == W)
    copyRows<W, W>(src, srcStep, dst, dstStep, W);
  else
    copyRows<W, Round>(src, srcStep, dst, dstStep, height);
}

}  // namespace zvp
