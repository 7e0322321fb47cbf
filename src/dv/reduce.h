// Means of the 2x2 or 4x4 samples of an 8x8 block, truncated toward zero: previews, and the reduced transform.
#pragma once

#include "simd.h"

namespace zvp::dv {

// The sums of 2x2 samples in a row of the block and the one below.
ZVP_INLINE simd::S32<4> sumsOf2x2(const s16* row) {
  const auto ones = simd::splat<simd::S16<8>>(1);
  return mulAddPairs(simd::load<simd::S16<8>>(row), ones) + mulAddPairs(simd::load<simd::S16<8>>(row + 8), ones);
}

template <int log2>
ZVP_INLINE simd::S32<4> divideTowardZero(simd::S32<4> sum) {
  const auto sign = simd::as<simd::U32<4>>(simd::shiftRight<31>(sum));
  return simd::shiftRight<log2>(sum + simd::as<simd::S32<4>>(simd::shiftRight<32 - log2>(sign)));
}

// (8 / Factor)^2 means, row by row without gaps. dst may be src: all is read before anything is written.
template <int Factor>
ZVP_INLINE void reduceBlock(const s16* src, s16* dst) {
  static_assert(Factor == 2 || Factor == 4);
  const auto a = sumsOf2x2(src), b = sumsOf2x2(src + 16), c = sumsOf2x2(src + 32), d = sumsOf2x2(src + 48);
  if constexpr (Factor == 2) {
    simd::store(dst, packSaturateS16(divideTowardZero<2>(a), divideTowardZero<2>(b)));
    simd::store(dst + 8, packSaturateS16(divideTowardZero<2>(c), divideTowardZero<2>(d)));
  } else {
    const auto upper = a + b, lower = c + d;
    const auto means = divideTowardZero<4>(evenLanes32(upper, lower) + oddLanes32(upper, lower));
    simd::storeBytes<8>(dst, packSaturateS16(means, means));
  }
}

}  // namespace zvp::dv
