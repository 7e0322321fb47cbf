// The 8x8 Hadamard transform in natural order and the sum of its magnitudes. Results keep 16 bits, so 16-bit sums that
// wrap are exact.
#pragma once

#include "simd.h"

namespace zvp::vc1 {

using simd::S16;

// Down the columns.
ZVP_INLINE void hadamardPass(S16<8> (&rows)[8]) {
#pragma GCC unroll 3
  for (int span = 1; span < 8; span *= 2)
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) {
      if (i & span) continue;
      const auto a = rows[i], b = rows[i + span];
      rows[i] = a + b;
      rows[i + span] = a - b;
    }
}

// Both passes, the results to dst without gaps.
ZVP_INLINE u32 hadamardSum(S16<8> (&rows)[8], s16* dst) {
  hadamardPass(rows);
  transpose(rows);
  hadamardPass(rows);
  transpose(rows);
  auto sum = simd::zero<simd::S32<4>>();
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) {
    simd::store(dst + 8 * y, rows[y]);
    sum = sum + mulAddPairs(rows[y], simd::shiftRight<15>(rows[y]) | simd::splat<S16<8>>(1));  // by -1 or 1
  }
  return u32(reduceAdd(sum));
}

}  // namespace zvp::vc1
