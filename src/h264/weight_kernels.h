// Weighted sample prediction (H.264 8.4.2.3.2) of one or two predictions.
//
// Every member is clip(((s1 * weight1 + s2 * weight2 + rounding) >> shift) + offset) in 32-bit arithmetic that wraps,
// one prediction being the case without s2. Weights, offsets and shifts are not checked by the entries, so a call takes
// the narrowest arithmetic that is exact for its own values:
//   8 bits   16-bit lanes if all sums, the offset moved in front of the shift, stay within 16 bits;
//            products in pairs to 32-bit lanes if the weights fit 16 bits;
//   16 bits  products in pairs of samples taken as signed, 32768 lower, if the weights fit 16 bits and no sum wraps;
//   both     one sample after the other for what remains, which no stream has.
#pragma once

#include <algorithm>

#include "h264/pieces.h"
#include "simd.h"

namespace zvp::weight {

using namespace simd;

struct Weighting {
  s32 weight1, weight2, rounding;
  int shift;  // 0..31
  s32 offset;
  s32 highest;  // the upper bound of the clip
};

// Two predictions and the result. One prediction alone has src2 equal to src1 and a weight2 of 0.
template <class T>
struct Operands {
  const T* src1;
  std::ptrdiff_t src1Step;
  const T* src2;
  std::ptrdiff_t src2Step;
  T* dst;
  std::ptrdiff_t dstStep;  // steps count samples
  int width, height;
};

// The least and the greatest of s1 * weight1 + s2 * weight2 + rounding before it wraps.
struct Range {
  s64 low, high;
};
inline Range sumRange(const Weighting& w, s32 greatestSample) {
  const s64 a = s64(w.weight1) * greatestSample, b = s64(w.weight2) * greatestSample;
  return {std::min<s64>(a, 0) + std::min<s64>(b, 0) + w.rounding,
          std::max<s64>(a, 0) + std::max<s64>(b, 0) + w.rounding};
}
inline bool fit16(const Weighting& w) {
  return w.weight1 == s16(w.weight1) && w.weight2 == s16(w.weight2) && w.weight1 > -32768 && w.weight2 > -32768;
}

// ---- 8 bits -----------------------------------------------------------------------------------------------------

// Rows * W bytes of a block: W = 16 or 8 in order, two rows of 4 or 2 side by side, a lone row of any width.
template <int W, int Rows>
ZVP_INLINE auto loadBlock(const u8* p, std::ptrdiff_t step) {
  if constexpr (W * Rows >= 16)
    return loadRows<W, W * Rows>(p, step);
  else if constexpr (Rows == 1)
    return loadBytes<U8<16>, W>(p);
  else if constexpr (W == 4)
    return as<U8<16>>(interleaveLow(loadBytes<U32<4>, 4>(p), loadBytes<U32<4>, 4>(p + step)));
  else
    return as<U8<16>>(interleaveLow(loadBytes<U16<8>, 2>(p), loadBytes<U16<8>, 2>(p + step)));
}
template <int W, int Rows, int N>
ZVP_INLINE void storeBlock(u8* p, std::ptrdiff_t step, U8<N> v) {
  if constexpr (W * Rows >= 16) {
    storeRows<W>(p, step, v);
  } else {
    storeBytes<W>(p, v);
    if constexpr (Rows == 2) storeBytes<W>(p + step, shiftBytesDown<W>(v));
  }
}

// s1 * weight1 + s2 * weight2 and what follows, but for the clip, in two widths of arithmetic.
struct Narrow {
  s16 weight1, weight2, added;
  int shift;
  template <bool Two, int N>
  ZVP_INLINE S16<N> operator()(S16<N> s1, [[maybe_unused]] S16<N> s2) const {
    auto sum = mulLow(s1, splat<S16<N>>(weight1)) + splat<S16<N>>(added);
    if constexpr (Two) sum = sum + mulLow(s2, splat<S16<N>>(weight2));
    return shiftRight(sum, shift);
  }
};
struct Paired {
  s16 weight1, weight2;
  s32 rounding;
  int shift;
  s32 offset;
  template <bool Two, int N>
  ZVP_INLINE S16<N> operator()(S16<N> s1, [[maybe_unused]] S16<N> s2) const {
    const auto weights = interleaveLow(splat<S16<N>>(weight1), splat<S16<N>>(weight2));
    const auto result = [&](S16<N> pairs) __attribute__((always_inline)) {
      const auto sum = mulAddPairs(pairs, weights) + splat<S32<N / 2>>(rounding);
      return shiftRight(sum, shift) + splat<S32<N / 2>>(offset);
    };
    if constexpr (!Two) s2 = zero<S16<N>>();
    return packSaturateS16(result(interleaveLow(s1, s2)), result(interleaveHigh(s1, s2)));
  }
};

template <bool Two, int W, int Rows, class Op>
ZVP_INLINE void weighRows(const Operands<u8>& o, std::ptrdiff_t x, std::ptrdiff_t y, Op op) {
  const auto s1 = loadBlock<W, Rows>(o.src1 + y * o.src1Step + x, o.src1Step);
  auto s2 = s1;
  if constexpr (Two) s2 = loadBlock<W, Rows>(o.src2 + y * o.src2Step + x, o.src2Step);
  const auto low = op.template operator()<Two>(widenLow(s1), widenLow(s2));
  auto high = low;
  if constexpr (W * Rows > 8) high = op.template operator()<Two>(widenHigh(s1), widenHigh(s2));
  storeBlock<W, Rows>(o.dst + y * o.dstStep + x, o.dstStep, packSaturateU8(low, high));
}

// 2^(16 - shift) in all lanes, by shift; where that is no s16, 0.
inline constexpr auto shiftFactors = [] {
  std::array<std::array<s16, registerBytes / 2>, 16> factors{};
  for (std::size_t shift = 2; shift < 16; ++shift) factors[shift].fill(s16(65536 >> shift));
  return factors;
}();

// The narrow sum with the shift as a product: the high half of sum * 2^(16 - shift). One instruction of one step, where
// a shift by a register takes two. For shifts from 2 to 15.
template <bool Two, int N>
struct Scaled {
  S16<N> weight1, weight2, added, scale;
  ZVP_INLINE Scaled(const Weighting& w, s64 sumAdded)
      : weight1(splat<S16<N>>(s16(w.weight1))),
        weight2(splat<S16<N>>(s16(w.weight2))),
        added(splat<S16<N>>(s16(sumAdded))),
        scale(load<S16<N>>(shiftFactors[std::size_t(w.shift)].data())) {}
  ZVP_INLINE S16<N> operator()(S16<N> s1, [[maybe_unused]] S16<N> s2) const {
    auto sum = mulLow(s1, weight1) + added;
    if constexpr (Two) sum = sum + mulLow(s2, weight2);
    return mulHigh(sum, scale);
  }
};

// Blocks of 16, 8 or 4 columns and an even number of rows, two rows a turn.
template <bool Two, int W>
ZVP_INLINE void weighEvenRows(const Operands<u8>& o, const Weighting& w, s64 sumAdded) {
  constexpr int bytes = W == 16 ? registerBytes : 16, N = bytes / 2;
  const Scaled<Two, N> op(w, sumAdded);
  const u8 *src1 = o.src1, *src2 = o.src2;
  u8* dst = o.dst;
  int y = o.height;
  do {
    if constexpr (W == 16) {
#pragma GCC unroll 2
      for (int row = 0; row < 2; row += bytes / 16) {
        const auto s1 = loadRows<16, bytes>(src1 + row * o.src1Step, o.src1Step);
        const auto s2 = Two ? loadRows<16, bytes>(src2 + row * o.src2Step, o.src2Step) : s1;
        storeRows<16>(dst + row * o.dstStep, o.dstStep,
                      packSaturateU8(op(widenLow(s1), widenLow(s2)), op(widenHigh(s1), widenHigh(s2))));
      }
    } else if constexpr (W == 8) {
      const auto a = loadWidened<8>(src1), b = loadWidened<8>(src1 + o.src1Step);
      const auto c = Two ? loadWidened<8>(src2) : a, d = Two ? loadWidened<8>(src2 + o.src2Step) : b;
      storeBlock<8, 2>(dst, o.dstStep, packSaturateU8(op(a, c), op(b, d)));
    } else {
      const auto a = widenLow(loadBlock<4, 2>(src1, o.src1Step));
      const auto sum = op(a, Two ? widenLow(loadBlock<4, 2>(src2, o.src2Step)) : a);
      storeBlock<4, 2>(dst, o.dstStep, packSaturateU8(sum, sum));
    }
    src1 += 2 * o.src1Step;
    src2 += 2 * o.src2Step;
    dst += 2 * o.dstStep;
  } while ((y -= 2) != 0);
}

template <bool Two, class Op>
ZVP_INLINE void weigh(const Operands<u8>& operands, Op op) {
  const Operands<u8> o = operands;
  forEachPiece<16, 1>(
      o.width, [=](auto width, int x) __attribute__((always_inline)) {
        constexpr int W = width, rows = W == 16 ? registerBytes / 16 : W == 1 ? 1 : 2;
        int y = 0;
        for (; y + rows <= o.height; y += rows) weighRows<Two, W, rows>(o, x, y, op);
        if constexpr (rows > 1)
          for (; y < o.height; ++y) weighRows<Two, W, 1>(o, x, y, op);
      });
}

// ---- 16 bits ----------------------------------------------------------------------------------------------------

struct Biased {
  s16 weight1, weight2;
  s32 rounding;  // with what the bias takes off the sum
  int shift;
  s32 offset;   // 32768 lower
  s16 highest;  // 32768 lower
  template <bool Two>
  ZVP_INLINE S16<8> operator()(S16<8> s1, [[maybe_unused]] S16<8> s2) const {
    const auto bias = splat<S16<8>>(-32768);
    const auto weights = interleaveLow(splat<S16<8>>(weight1), splat<S16<8>>(weight2));
    const auto result = [&](S16<8> pairs) __attribute__((always_inline)) {
      const auto sum = mulAddPairs(pairs, weights) + splat<S32<4>>(rounding);
      return shiftRight(sum, shift) + splat<S32<4>>(offset);
    };
    s1 = s1 ^ bias;
    s2 = Two ? s2 ^ bias : s1;
    const auto value = packSaturateS16(result(interleaveLow(s1, s2)), result(interleaveHigh(s1, s2)));
    return min(value, splat<S16<8>>(highest)) ^ bias;
  }
};

template <bool Two>
ZVP_INLINE void weigh(const Operands<u16>& operands, Biased op) {
  const Operands<u16> o = operands;
  forEachPiece<8, 2>(
      o.width, [=](auto width, int x) __attribute__((always_inline)) {
        const u16 *src1 = o.src1 + x, *src2 = o.src2 + x;
        u16* dst = o.dst + x;
        for (int y = 0; y < o.height; ++y, src1 += o.src1Step, src2 += o.src2Step, dst += o.dstStep) {
          const auto s1 = loadBytes<S16<8>, 2 * width>(src1);
          storeBytes<2 * width>(dst, op.template operator()<Two>(s1, Two ? loadBytes<S16<8>, 2 * width>(src2) : s1));
        }
      });
}

// ---- choice -----------------------------------------------------------------------------------------------------

// Serial: weights beyond 16 bits or sums beyond 32.
template <class T>
void weighSerially(const Operands<T>& o, const Weighting& w) {
  for (std::ptrdiff_t y = 0; y < o.height; ++y)
    for (std::ptrdiff_t x = 0; x < o.width; ++x) {
      const s32 s1 = loadAs<T>(o.src1 + y * o.src1Step + x), s2 = loadAs<T>(o.src2 + y * o.src2Step + x);
      const s32 sum = wrapAdd(wrapAdd(wrapMul(s1, w.weight1), wrapMul(s2, w.weight2)), w.rounding);
      storeAs(o.dst + y * o.dstStep + x, T(std::max(0, std::min(wrapAdd(sum >> w.shift, w.offset), w.highest))));
    }
}

template <bool Two>
[[gnu::noinline]] void weighAnyBlock(const Operands<u8>& o, const Weighting& w) {
  if (fit16(w)) {
    // (a >> shift) + offset is (a + (offset << shift)) >> shift.
    const Range sum = sumRange(w, 255);
    const s64 moved = s64(w.offset) * (s64(1) << w.shift);
    if (w.shift < 16 && sum.low + moved >= -32768 && sum.high + moved <= 32767) {
      // The sum's own bounds hold for its parts too, as each is 0 for samples of 0.
      weigh<Two>(o, Narrow{s16(w.weight1), s16(w.weight2), s16(w.rounding + moved), w.shift});
    } else {
      weigh<Two>(o, Paired{s16(w.weight1), s16(w.weight2), w.rounding, w.shift, w.offset});
    }
  } else {
    weighSerially(o, w);
  }
}

// A block whose sizes are legal, by a weighting that rounds to nearest. Shifts from 2 to 15, weights of one sign and
// sums of 16 bits, which nearly every call has, take the short way.
template <bool Two>
ZVP_INLINE void weighBlock(const Operands<u8>& o, const Weighting& w) {
  if (w.shift >= 2 && w.shift <= 15 && o.width >= 4) [[likely]] {
    const s64 added = (2 * s64(w.offset) + 1) << (w.shift - 1);
    // The sum is linear: where it fits for samples of 0 and 255 it does so for all, if no weight is against the other.
    const s64 least = added + 32768, most = least + 255 * (s64(w.weight1) + w.weight2);
    if ((!Two || (w.weight1 | w.weight2) >= 0) && u64(least | most) >> 16 == 0) [[likely]] {
      if (o.width == 16) return weighEvenRows<Two, 16>(o, w, added);
      if (o.width == 8) return weighEvenRows<Two, 8>(o, w, added);
      return weighEvenRows<Two, 4>(o, w, added);
    }
  }
  const Operands<u8> operands = o;  // copies in memory for the call, so that what comes before needs none
  const Weighting weighting = w;
  weighAnyBlock<Two>(operands, weighting);
}

template <bool Two>
void weighBlock(const Operands<u16>& o, const Weighting& w) {
  const Range sum = sumRange(w, 65535);
  const s64 low = (sum.low >> w.shift) + w.offset - 32768, high = (sum.high >> w.shift) + w.offset;
  if (fit16(w) && sum.low >= INT32_MIN && sum.high <= INT32_MAX && low >= INT32_MIN && high <= INT32_MAX &&
      u32(w.highest) <= 65535) {
    const s32 bias = wrapMul(wrapAdd(w.weight1, w.weight2), 32768);
    weigh<Two>(o, Biased{s16(w.weight1), s16(w.weight2), wrapAdd(w.rounding, bias), w.shift, wrapSub(w.offset, 32768),
                         s16(w.highest - 32768)});
  } else {
    weighSerially(o, w);
  }
}

}  // namespace zvp::weight
