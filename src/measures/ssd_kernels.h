// Sums of squared differences of bytes.
#pragma once

#include "measures/half_pel.h"

namespace zvp::measures {

template <int bytes>
struct SumSquaredDiff8u {
  using Element = u8;
  simd::S32<bytes / 4> sum = simd::zero<simd::S32<bytes / 4>>();

  ZVP_INLINE void add(simd::U8<bytes> a, simd::U8<bytes> b) {
    const auto difference = absDiff(a, b);
    const auto low = widenLow(difference), high = widenHigh(difference);
    sum = sum + mulAddPairs(low, low) + mulAddPairs(high, high);
  }
  template <int count>
  ZVP_INLINE u32 total() const {
    return u32(reduceAdd(sum));
  }
};

template <int W, int H, HalfPel C>
constexpr MeasureFn ssd8u = measure<SumSquaredDiff8u, W, H, C>;

}  // namespace zvp::measures
