// Sums of absolute differences: of bytes by the packed SAD instruction, of 16-bit samples by saturating differences.
#pragma once

#include "measures/half_pel.h"

namespace zvp::measures {

template <int bytes>
struct SumAbsDiff8u {
  using Element = u8;
  simd::U64<bytes / 8> sum = simd::zero<simd::U64<bytes / 8>>();

  ZVP_INLINE void add(simd::U8<bytes> a, simd::U8<bytes> b) { sum = sum + sumAbsDiff(a, b); }
  template <int count>
  ZVP_INLINE u32 total() const {
    return u32(reduceAdd(sum));
  }
};

template <class T, int bytes>
struct SumAbsDiff16 {
  using Element = T;
  // Differences less 32768, so that the sums of pairs can be of signed lanes.
  simd::S32<bytes / 4> sum = simd::zero<simd::S32<bytes / 4>>();

  ZVP_INLINE void add(simd::Vec<T, bytes / 2> a, simd::Vec<T, bytes / 2> b) {
    using Signed = simd::S16<bytes / 2>;
    simd::Vec<T, bytes / 2> difference;  // 0 to 65535
    if constexpr (std::is_signed_v<T>)
      difference = max(a, b) - min(a, b);
    else
      difference = subSaturate(a, b) | subSaturate(b, a);
    sum = sum + mulAddPairs(simd::as<Signed>(difference) ^ simd::splat<Signed>(-32768), simd::splat<Signed>(1));
  }
  // count: how many differences were added.
  template <int count>
  ZVP_INLINE u32 total() const {
    return u32(reduceAdd(sum)) + 32768u * count;
  }
};
template <int bytes>
using SumAbsDiff16u = SumAbsDiff16<u16, bytes>;
template <int bytes>
using SumAbsDiff16s = SumAbsDiff16<s16, bytes>;

template <int W, int H, HalfPel C>
constexpr MeasureFn sad8u = measure<SumAbsDiff8u, W, H, C>;
template <int W, int H, HalfPel C>
constexpr MeasureFn sad16u = measure<SumAbsDiff16u, W, H, C>;

}  // namespace zvp::measures
