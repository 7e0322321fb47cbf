// Weighted sample prediction (H.264 8.4.2.3.2) of one or two predictions.
//
// Every member is clip(((s1 * weight1 + s2 * weight2 + rounding) >> shift) + offset) in 32-bit arithmetic that wraps,
// one prediction being the case without s2. Weights, offsets and shifts are not checked by the entries, so a call takes
// the narrowest arithmetic that is exact for its own values:
//   8 bits   16-bit lanes if the sums, the offset moved in front of the shift, stay within 16 bits or may saturate;
//            products in pairs to 32-bit lanes if the weights fit 16 bits;
//   16 bits  products in pairs of samples taken as signed, 32768 lower, if the weights fit 16 bits and no sum wraps;
//   both     one sample after the other for what remains, which no stream has, and where rows of the result overlap.
#pragma once

#include <algorithm>

#include "h264/pieces.h"
#include "opaque.h"
#include "simd.h"

namespace zvp::weight {

using namespace simd;

struct Weighting {
  s32 weight1, weight2, rounding;
  int shift;  // 0..31
  s32 offset;
  s32 highest;  // the upper bound of the clip
};

// What the entries that look at the size take for a width and for a height.
constexpr bool isLegalLength(s32 n) { return u32(n) <= 16 && ((1u << n) & 0x10114) != 0; }

// Whether rows lie apart, for a width of 1 or more: the distance is not below it, up or down. Where they do not, what a
// row leaves is overwritten by the next or read by it, and only one sample after the other is right.
constexpr bool rowsApart(s32 width, std::ptrdiff_t step) { return u32(step) - u32(width) <= 0u - 2 * u32(width); }

// Two predictions and the result. One prediction alone has src2 equal to src1 and a weight2 of 0.
template <class T> struct Operands {
  const T* src1;
  std::ptrdiff_t src1Step;
  const T* src2;
  std::ptrdiff_t src2Step;
  T* dst;
  std::ptrdiff_t dstStep;  // steps count samples
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

// Rows * W samples in two registers of 16-bit lanes: one after the other, or the halves of one row. At most eight stand
// in the first register and leave nothing for the second.
template <int N> struct Lines { S16<N> low, high; };
// First is the block's row that p and step count from.
template <int W, int Rows, int First = 0> ZVP_INLINE auto loadBlock(const u8* p, std::ptrdiff_t step) {
  if constexpr (W == 16) {
    const auto v = loadRows<16, 16 * Rows>(p + First * step, step);
    return Lines<8 * Rows>{widenLow(v), widenHigh(v)};
  } else if constexpr (W * Rows == 16) {
    return Lines<8>{loadBlock<W, Rows / 2, First>(p, step).low, loadBlock<W, Rows / 2, First + Rows / 2>(p, step).low};
  } else if constexpr (Rows == 1) {
    return Lines<8>{widenLow(loadBytes<U8<16>, W>(p + First * step)), {}};
  } else {
    using Row = std::conditional_t<W == 4, U32<4>, U16<8>>;
    const auto both = interleaveLow(loadBytes<Row, W>(p + First * step), loadBytes<Row, W>(p + (First + 1) * step));
    return Lines<8>{widenLow(as<U8<16>>(both)), {}};
  }
}
template <int W, int Rows, int First = 0, int N> ZVP_INLINE void storeBlock(u8* p, std::ptrdiff_t step, U8<N> v) {
  if constexpr (W * Rows >= 16) {
    storeRows<W>(p + First * step, step, v);
  } else {
    storeBytes<W>(p + First * step, v);
    if constexpr (Rows == 2) storeBytes<W>(p + (First + 1) * step, shiftBytesDown<W>(v));
  }
}

// Eight equal lanes as N.
template <int N, class V> ZVP_INLINE S16<N> wide(V v) {
  if constexpr (N == 8)
    return v;
  else
    return join(v, v);
}

// s1 * weight1 + s2 * weight2 and what follows, but for the clip, in two widths of arithmetic.
struct Narrow {
  S16<8> weight1, weight2, added;
  S16<8> scale;  // 1 << (16 - shift): of the product with it the high half is the sum shifted to the right
  template <bool Two, int N> ZVP_INLINE S16<N> operator()(S16<N> s1, [[maybe_unused]] S16<N> s2) const {
    auto sum = mulLow(s1, wide<N>(weight1));
    if constexpr (Two) sum = sum + mulLow(s2, wide<N>(weight2));
    return mulHigh(addSaturate(sum, wide<N>(added)), wide<N>(scale));
  }
};
// Weights that are 64 together: s2 + (((s1 - s2) * weight1 + 32) >> 6), the product within -32640..32640.
struct Sixtyfourths {
  S16<8> weight1;
  template <bool Two, int N> ZVP_INLINE S16<N> operator()(S16<N> s1, S16<N> s2) const {
    static_assert(Two);
    return shiftRight<6>(mulLow(s1 - s2, wide<N>(weight1)) + splat<S16<N>>(32)) + s2;
  }
};
struct Paired {
  s16 weight1, weight2;
  s32 rounding;
  int shift;
  s32 offset;
  template <bool Two, int N> ZVP_INLINE S16<N> operator()(S16<N> s1, [[maybe_unused]] S16<N> s2) const {
    const auto weights = interleaveLow(splat<S16<N>>(weight1), splat<S16<N>>(weight2));
    const auto result = [&](S16<N> pairs) __attribute__((always_inline)) {
      const auto sum = mulAddPairs(pairs, weights) + splat<S32<N / 2>>(rounding);
      return shiftRight(sum, shift) + splat<S32<N / 2>>(offset);
    };
    if constexpr (!Two) s2 = zero<S16<N>>();
    return packSaturateS16(result(interleaveLow(s1, s2)), result(interleaveHigh(s1, s2)));
  }
};

template <bool Two, int W, int Rows, int First = 0, class Op> ZVP_INLINE void weighRows(const Operands<u8>& o, Op op) {
  const auto s1 = loadBlock<W, Rows, First>(o.src1, o.src1Step);
  auto s2 = s1;
  if constexpr (Two) s2 = loadBlock<W, Rows, First>(o.src2, o.src2Step);
  const auto low = op.template operator()<Two>(s1.low, s2.low);
  auto high = low;
  if constexpr (W * Rows > 8) high = op.template operator()<Two>(s1.high, s2.high);
  storeBlock<W, Rows, First>(o.dst, o.dstStep, packSaturateU8(low, high));
}

// W columns of any height.
template <bool Two, int W, class Op> ZVP_INLINE void weighColumns(Operands<u8> o, int height, Op op) {
  constexpr int rows = W == 16 ? registerBytes / 16 : W == 1 ? 1 : 2;
  for (; height >= rows; height -= rows) {
    weighRows<Two, W, rows>(o, op);
    o.src1 += rows * o.src1Step;
    o.src2 += rows * o.src2Step;
    o.dst += rows * o.dstStep;
  }
  if constexpr (rows > 1)
    if (height != 0) weighRows<Two, W, 1>(o, op);
}

template <bool Two, class Op> ZVP_INLINE void weigh(const Operands<u8>& o, zvpSize size, Op op) {
  const int height = size.height;
  if (height <= 0) return;
  forEachPiece<16, 1>(
      size.width, [=](auto width, int x) __attribute__((always_inline)) {
        weighColumns<Two, width>({o.src1 + x, o.src1Step, o.src2 + x, o.src2Step, o.dst + x, o.dstStep}, height, op);
      });
}

// ---- 16 bits ----------------------------------------------------------------------------------------------------

struct Biased {
  s16 weight1, weight2;
  s32 rounding;  // with what the bias takes off the sum
  int shift;
  s32 offset;   // 32768 lower
  s16 highest;  // 32768 lower
  template <bool Two> ZVP_INLINE S16<8> operator()(S16<8> s1, [[maybe_unused]] S16<8> s2) const {
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

template <bool Two> ZVP_INLINE void weigh(const Operands<u16>& o, zvpSize size, Biased op) {
  const int height = size.height;
  forEachPiece<8, 2>(
      size.width, [=](auto width, int x) __attribute__((always_inline)) {
        const u16 *src1 = o.src1 + x, *src2 = o.src2 + x;
        u16* dst = o.dst + x;
        for (int y = 0; y < height; ++y, src1 += o.src1Step, src2 += o.src2Step, dst += o.dstStep) {
          const auto s1 = loadBytes<S16<8>, 2 * width>(src1);
          storeBytes<2 * width>(dst, op.template operator()<Two>(s1, Two ? loadBytes<S16<8>, 2 * width>(src2) : s1));
        }
      });
}

// ---- choice -----------------------------------------------------------------------------------------------------

// Serial: weights beyond 16 bits, sums beyond 32, or rows that overlap.
template <class T> void weighSerially(const Operands<T>& o, zvpSize size, const Weighting& w) {
  for (std::ptrdiff_t y = 0; y < size.height; ++y)
    for (std::ptrdiff_t x = 0; x < size.width; ++x) {
      const s32 s1 = loadAs<T>(o.src1 + y * o.src1Step + x), s2 = loadAs<T>(o.src2 + y * o.src2Step + x);
      const s32 sum = wrapAdd(wrapAdd(wrapMul(s1, w.weight1), wrapMul(s2, w.weight2)), w.rounding);
      storeAs(o.dst + y * o.dstStep + x, T(std::max(0, std::min(wrapAdd(sum >> w.shift, w.offset), w.highest))));
    }
}

template <bool Two> void weighBlock(const Operands<u8>& o, zvpSize size, const Weighting& w) {
  if (!fit16(w) || !rowsApart(size.width, o.dstStep)) return weighSerially(o, size, w);
  // (a >> shift) + offset is (a + (offset << shift)) >> shift, and a shift by less than 2 is one by 2 of 2 or 4 times
  // the sum.
  const int up = std::max(0, 2 - w.shift), shift = w.shift + up;
  const s64 scale = s64(1) << up, added = (w.rounding + s64(w.offset) * (s64(1) << w.shift)) * scale;
  const Range sum = sumRange({w.weight1, w.weight2, 0, 0, 0, 0}, 255);
  const s64 low = sum.low * scale, high = sum.high * scale;
  if (shift < 16 && low + std::min<s64>(added, 0) >= -32768 && high + std::max<s64>(added, 0) <= 32767) {
    const auto value = [](s64 v) { return splat<S16<8>>(s16(v)); };
    weigh<Two>(o, size,
               Narrow{value(w.weight1 * scale), value(w.weight2 * scale), value(added), value(1 << (16 - shift))});
  } else {
    weigh<Two>(o, size, Paired{s16(w.weight1), s16(w.weight2), w.rounding, w.shift, w.offset});
  }
}

template <bool Two> void weighBlock(const Operands<u16>& o, zvpSize size, const Weighting& w) {
  const Range sum = sumRange(w, 65535);
  const s64 low = (sum.low >> w.shift) + w.offset - 32768, high = (sum.high >> w.shift) + w.offset;
  if (fit16(w) && rowsApart(size.width, o.dstStep) && sum.low >= INT32_MIN && sum.high <= INT32_MAX &&
      low >= INT32_MIN && high <= INT32_MAX && u32(w.highest) <= 65535) {
    const s32 bias = wrapMul(wrapAdd(w.weight1, w.weight2), 32768);
    weigh<Two>(o, size,
               Biased{s16(w.weight1), s16(w.weight2), wrapAdd(w.rounding, bias), w.shift, wrapSub(w.offset, 32768),
                      s16(w.highest - 32768)});
  } else {
    weighSerially(o, size, w);
  }
}

// ---- ordinary calls of 8-bit members ----------------------------------------------------------------------------
// Those that streams have, told by a few comparisons: 2, 4, 8 or 16 columns and rows, weights and offset in -128..127,
// the weights' sum in -127..128, a shift of 2 to 7 with half a unit as its rounding. Weighted samples then sum to 16
// bits, and so does what is added to them; where both together do not, they saturate to what the shift leaves at 255 or
// more, or below 0.

// The steps of two sources, shared or not. A renewed step is a stranger to multiples of the one before, so that a loop
// works them out in its addresses and holds no registers for them.
struct SharedStep {
  std::ptrdiff_t step;
  ZVP_INLINE std::ptrdiff_t first() const { return step; }
  ZVP_INLINE std::ptrdiff_t second() const { return step; }
  ZVP_INLINE SharedStep renewed() const { return {opaque(step)}; }
};
struct TwoSteps {
  std::ptrdiff_t step1, step2;
  ZVP_INLINE std::ptrdiff_t first() const { return step1; }
  ZVP_INLINE std::ptrdiff_t second() const { return step2; }
  ZVP_INLINE TwoSteps renewed() const { return {opaque(step1), opaque(step2)}; }
};

// Blocks are done in rounds of a few rows.
template <int W> inline constexpr int roundRows = W >= 8 ? 4 : 2;

template <bool Two, int W, class Op> ZVP_INLINE void weighRound(const Operands<u8>& o, const Op& op) {
  constexpr int rows = W == 16 ? registerBytes / 16 : 2;
  unrolled<roundRows<W> / rows>([&](auto i)
                                    __attribute__((always_inline)) { weighRows<Two, W, rows, i * rows>(o, op); });
}
// Calls round() until height rows are done: a number of them, or a constant, and then without a loop.
template <int W> ZVP_INLINE void forEachRound(int height, auto round) {
  do round();
  while ((height -= roundRows<W>) != 0);
}
template <int W, int Height> ZVP_INLINE void forEachRound(std::integral_constant<int, Height>, auto round) {
  unrolled<Height / roundRows<W>>([&](auto) __attribute__((always_inline)) { round(); });
}

template <int W> ZVP_INLINE void ordinaryColumns(u8* p, std::ptrdiff_t step, auto height, const Narrow& op) {
  forEachRound<W>(
      height, [&]() __attribute__((always_inline)) {
        step = opaque(step);
        weighRound<false, W>({p, step, p, step, p, step}, op);
        p += roundRows<W> * step;
      });
}
template <int W, class Steps, class Op> ZVP_INLINE void ordinaryColumns(const u8* src1, const u8* src2, u8* dst,
                                                                        Steps srcSteps, std::ptrdiff_t dstStep,
                                                                        auto height, const Op& op) {
  forEachRound<W>(
      height, [&]() __attribute__((always_inline)) {
        srcSteps = srcSteps.renewed();
        dstStep = opaque(dstStep);
        weighRound<true, W>({src1, srcSteps.first(), src2, srcSteps.second(), dst, dstStep}, op);
        src1 += roundRows<W> * srcSteps.first();
        src2 += roundRows<W> * srcSteps.second();
        dst += roundRows<W> * dstStep;
      });
}

// Calls columns(width, height), the width being a constant, and the height too in the chroma of a macroblock. False,
// and no call, for a shape that is not ordinary; 8x2 and 16x2, which no standard has, are not.
template <class Columns> ZVP_INLINE bool atOrdinaryShape(s32 width, s32 height, Columns columns) {
  const auto at = [&](auto w) __attribute__((always_inline)) {
    constexpr u32 heights = w < 8 ? 0x10114 : 0x10110;
    if (width != w || u32(height) > 16 || (heights >> height & 1) == 0) return false;
    columns(w, height);
    return true;
  };
  if (width == 8 && height == 8) {
    columns(std::integral_constant<int, 8>(), std::integral_constant<int, 8>());
    return true;
  }
  return at(std::integral_constant<int, 16>()) || at(std::integral_constant<int, 8>()) ||
         at(std::integral_constant<int, 4>()) || at(std::integral_constant<int, 2>());
}

// Half a unit and the scale for a shift of 2 to 7, in all lanes.
struct ShiftFactors {
  alignas(16) std::array<s16, 8> half, scale;
};
inline constexpr auto shiftFactors = [] {
  std::array<ShiftFactors, 6> factors{};
  for (unsigned i = 0; i < 6; ++i) {
    factors[i].half.fill(s16(2 << i));
    factors[i].scale.fill(s16(1 << (14 - i)));
  }
  return factors;
}();

// rounded is twice the offset, and 1 for the half unit.
ZVP_INLINE Narrow ordinaryFactors(s32 weight1, s32 weight2, s32 rounded, s32 shift) {
  const auto& [half, scale] = shiftFactors[u32(shift) - 2];
  return {splat<S16<8>>(s16(weight1)), splat<S16<8>>(s16(weight2)), mulLow(splat<S16<8>>(s16(rounded)), lanes(half)),
          lanes(scale)};
}

constexpr bool isOrdinaryShift(s32 shift) { return u32(shift) - 2 <= 5; }
// Both within -128..127.
constexpr bool areOrdinary(s32 a, s32 b) { return ((u32(a) + 128) | (u32(b) + 128)) <= 255; }
constexpr bool isOrdinaryOffset(s32 offset) { return areOrdinary(offset, 0); }
constexpr bool isOrdinaryRounded(s32 rounded) { return u32(rounded) + 255 <= 510; }
constexpr bool areOrdinaryWeights(s32 weight1, s32 weight2) {
  return ((u32(weight1) + 128) | (u32(weight2) + 128) | (u32(weight1) + u32(weight2) + 127)) <= 255;
}
// Implicit weights, as the standard derives them.
constexpr bool areImplicitWeights(s32 weight1, s32 weight2) {
  return wrapAdd(weight1, weight2) == 64 && u32(weight1) + 64 <= 192;
}

}  // namespace zvp::weight
