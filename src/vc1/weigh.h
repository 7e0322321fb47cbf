// Sums of two weighted 16-bit elements.
#pragma once

#include "simd.h"

namespace zvp::vc1 {

ZVP_INLINE simd::S16<8> weights(s16 first, s16 second) {
  return simd::as<simd::S16<8>>(simd::splat<simd::S32<4>>(s32(u16(first) | u32(u16(second)) << 16)));
}

// first * x0 + second * x1 for the pairs (x0, x1).
template <s16 first, s16 second>
ZVP_INLINE simd::S32<4> weigh(simd::S16<8> pairs) {
  return mulAddPairs(pairs, weights(first, second));
}

}  // namespace zvp::vc1
