// Measures of a block against a reference at half-pel precision: the reference samples of the four cases, the walk over
// the block, the entry. What is summed is a parameter: absolute or squared differences of bytes or of 16-bit samples
// (sad_kernels.h, ssd_kernels.h).
//
// A register holds as many rows as fit it, or a part of one row. Where it holds one, each reference row is loaded and
// averaged along its length once and used for the block row above it and the one below it.
#pragma once

#include <algorithm>

#include "entry.h"
#include "simd.h"

namespace zvp::measures {

// F: full, H: half; x before y.
enum class HalfPel { none, FH, HF, HH };

// The reference samples of one register of rows after the other. T lies in rows of rowBytes bytes.
template <class T, int rowBytes, int bytes, HalfPel C>
class Reference {
 public:
  using Samples = simd::Vec<T, bytes / int(sizeof(T))>;

  ZVP_INLINE Reference(const u8* ref, std::ptrdiff_t step) : p_(ref), step_(step) {
    if constexpr (sharesRows && C == HalfPel::FH) last_ = load(p_);
    if constexpr (sharesRows && C == HalfPel::HH) last_ = alongRow<false>(p_, lastOdd_);
  }

  // Odd: whether this is the second, fourth, ... call.
  template <bool Odd>
  ZVP_INLINE Samples next() {
    const u8* const p = p_;
    p_ += rows * step_;
    if constexpr (C == HalfPel::none) {
      return load(p);
    } else if constexpr (C == HalfPel::HF) {
      return average(load(p), load(p + sizeof(T)));
    } else if constexpr (C == HalfPel::FH) {
      const Samples above = sharesRows ? last_ : load(p), below = load(p + step_);
      if constexpr (sharesRows) last_ = below;
      return average(above, below);
    } else if constexpr (sharesRows) {
      Samples odd;
      const Samples below = alongRow<!Odd>(p + step_, odd);
      const Samples result = Odd ? meanOfFour(below, odd, last_, lastOdd_) : meanOfFour(last_, lastOdd_, below, odd);
      last_ = below;
      lastOdd_ = odd;
      return result;
    } else {
      Samples aboveOdd, belowOdd;
      const Samples above = alongRow<false>(p, aboveOdd), below = alongRow<true>(p + step_, belowOdd);
      return meanOfFour(above, aboveOdd, below, belowOdd);
    }
  }

 private:
  static constexpr int rows = bytes / rowBytes;
  static constexpr bool sharesRows = rows == 1;

  ZVP_INLINE Samples load(const u8* p) const { return simd::as<Samples>(simd::loadRows<rowBytes, bytes>(p, step_)); }

  // Means of the samples and their right neighbours, rounded up or down; odd: 1 where the sum of the two is odd.
  template <bool RoundDown>
  ZVP_INLINE Samples alongRow(const u8* p, Samples& odd) const {
    const Samples a = load(p), b = load(p + sizeof(T));
    odd = (a ^ b) & simd::splat<Samples>(1);
    return RoundDown ? average(a, b) - odd : average(a, b);
  }

  // (a + b + c + d + 2) >> 2 from u = (a + b + 1) >> 1 and l = (c + d) >> 1. With the sums' low bits uOdd and lOdd it
  // is (2 u - uOdd + 2 l + lOdd + 2) >> 2: the mean of u and l, rounded up, unless only a + b is odd; then it is
  // rounded down, or, since u is at least 1 there, that of u - 1 and l rounded up.
  ZVP_INLINE static Samples meanOfFour(Samples u, Samples uOdd, Samples l, Samples lOdd) {
    return average(u - andNot(lOdd, uOdd), l);
  }

  const u8* p_;
  std::ptrdiff_t step_;
  Samples last_, lastOdd_;  // the row below the last register's, where it is used again
};

// Steps are bytes. The status is always zvpStatusOk: an entry ends in a jump to its kernel.
using MeasureFn = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep,
                                s32* result);
using MeasureTable = MeasureFn[4];

// Sum<bytes> adds up differences of registers of Sum::Element; what it starts from and what total() undoes is its own.
template <template <int> class Sum, int W, int H, HalfPel C>
zvpStatus measure(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep, s32* result) {
  using T = typename Sum<16>::Element;
  constexpr int widthBytes = W * int(sizeof(T)), rowBytes = std::min(widthBytes, simd::registerBytes);
  constexpr int bytes = std::min(rowBytes * H, simd::registerBytes), registers = rowBytes * H / bytes;
  Sum<bytes> sum;
  for (int x = 0; x < widthBytes; x += rowBytes) {
    const u8* s = src + x;
    Reference<T, rowBytes, bytes, C> reference(ref + x, refStep);
    const auto nextSource = [&] {
      const auto samples = simd::as<simd::Vec<T, bytes / int(sizeof(T))>>(simd::loadRows<rowBytes, bytes>(s, srcStep));
      s += bytes / rowBytes * srcStep;
      return samples;
    };
#pragma GCC unroll 4
    for (int i = 0; i < registers; i += 2) {
      sum.add(nextSource(), reference.template next<false>());
      if constexpr (registers > 1) sum.add(nextSource(), reference.template next<true>());
    }
  }
  storeAs(result, s32(sum.template total<W * H>()));
  return zvpStatusOk;
}

// mcType selects the slot by its bits from bit 2 on and is not checked.
template <class T>
ZVP_INLINE zvpStatus measureEntry(const MeasureTable& table, const T* src, s32 srcStep, const T* ref, s32 refStep,
                                  s32* result, s32 mcType) {
  if (anyNull(src, ref, result)) return zvpStatusNullPointer;
  return table[mcType >> 2](reinterpret_cast<const u8*>(src), srcStep, reinterpret_cast<const u8*>(ref), refStep,
                            result);
}

}  // namespace zvp::measures
