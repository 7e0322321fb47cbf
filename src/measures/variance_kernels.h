// Sum, sum of squares and absolute deviations of one block of bytes.
#pragma once

#include "measures/sad_kernels.h"

namespace zvp::measures {

struct Moments {
  u32 sum, squares;
};

// A register takes in whole rows.
template <int W, int H>
ZVP_INLINE Moments moments(const u8* src, std::ptrdiff_t step) {
  constexpr int bytes = simd::registerBytes, rows = bytes / W;
  SumAbsDiff8u<bytes> sum;
  auto squares = simd::zero<simd::S32<bytes / 4>>();
#pragma GCC unroll 4
  for (int y = 0; y < H; y += rows, src += rows * step) {
    const auto samples = simd::loadRows<W, bytes>(src, step);
    const auto low = widenLow(samples), high = widenHigh(samples);
    sum.add(samples, simd::zero<simd::U8<bytes>>());
    squares = squares + mulAddPairs(low, low) + mulAddPairs(high, high);
  }
  return {sum.template total<W * H>(), u32(reduceAdd(squares))};
}

// The sum of |s - m|, m being the mean rounded to nearest, halves up. It is not divided.
template <int W, int H>
zvpStatus meanAbsDev(const u8* src, std::ptrdiff_t step, s32* result) {
  constexpr int bytes = simd::registerBytes, rows = bytes / W;
  const auto row = [=](int y) { return simd::loadRows<W, bytes>(src + y * step, step); };
  SumAbsDiff8u<bytes> sum, deviation;
#pragma GCC unroll 4
  for (int y = 0; y < H; y += rows) sum.add(row(y), simd::zero<simd::U8<bytes>>());
  const auto mean = simd::splat<simd::U8<bytes>>(u8((sum.template total<W * H>() + W * H / 2) / (W * H)));
#pragma GCC unroll 4
  for (int y = 0; y < H; y += rows) deviation.add(row(y), mean);
  storeAs(result, s32(deviation.template total<W * H>()));
  return zvpStatusOk;
}

constexpr auto ownvc_MeanAbsDev8x8_8u32s_C1R = meanAbsDev<8, 8>;
constexpr auto ownvc_MeanAbsDev16x16_8u32s_C1R = meanAbsDev<16, 16>;

}  // namespace zvp::measures
