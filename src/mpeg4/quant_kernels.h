// MPEG-4 quantization of an 8x8 block in place (ISO/IEC 14496-2 7.4.4) and the encoder's side of it.
//
// Forward, every formula treats x and -x alike, so that all kernels are one walk over magnitudes: they differ in what
// they make of |x|. Magnitudes and quotients are unsigned 16-bit lanes; sums that need a 17th bit carry it as a mask.
// Inverse, products have 32 bits and wrap; elements behind the last one are not touched.
#pragma once

#include <bit>

#include "mpeg4/quant_context.h"
#include "mpeg4/quant_tables.h"
#include "row_pieces.h"
#include "simd.h"

namespace zvp::mpeg4 {

using simd::F32;
using simd::S16;
using simd::S32;
using simd::U16;

// All ones in lane 0, where the DC is in a block's first register.
template <int N> ZVP_INLINE S16<N> firstLane() {
  std::array<s16, N> mask{};
  mask[0] = -1;
  return simd::lanes(mask);
}

// ---- forward ----------------------------------------------------------------------------------------------------

// Each element becomes magnitude(|x|, its index), at most 2047, with the sign of x. The DC of an intra block becomes 0,
// for the caller to fill in, and is not counted. Returns the number of non-zero results.
template <int N, bool Intra, class Magnitude> ZVP_INLINE s32 quantize(s16* coef, Magnitude magnitude) {
  auto zeros = simd::zero<S16<N>>();
  for (int i = 0; i < 64; i += N) {
    const auto x = simd::load<S16<N>>(coef + i);
    const auto sign = simd::shiftRight<15>(x);
    const auto m = min(magnitude(simd::as<U16<N>>((x ^ sign) - sign), i), simd::splat<U16<N>>(2047));
    auto y = (simd::as<S16<N>>(m) ^ sign) - sign;
    if (Intra && i == 0) y = andNot(firstLane<N>(), y);
    zeros = zeros + equal(y, simd::zero<S16<N>>());
    simd::store(coef + i, y);
  }
  return 64 + reduceAdd(zeros);
}

// Multiplication in place of a division: n * factor >> 16 >> shift.
struct Reciprocal {
  u16 factor;
  int shift;
};
// n / (2 * QP) for each n of 0..32768. factor is (2^(15 + shift) + e) / QP with e < QP <= 2^shift: the product exceeds
// the quotient by n * e / (QP * 2^(16 + shift)) < 1 / (2 * QP), too little to reach the next integer.
constexpr Reciprocal exactReciprocal(s32 QP) {
  const int shift = int(std::bit_width(u32(QP - 1)));
  return {u16(((u32(1) << (15 + shift)) + u32(QP) - 1) / u32(QP)), shift};
}
// What stands in for it at the depths that work with reciprocals.
constexpr Reciprocal tabledReciprocal(s32 QP) { return {u16(_p_QuantInv[std::size_t(QP - 1)]), 0}; }

// (|x| - deadZone) / (2 * QP), 0 inside the dead zone.
template <bool Intra> s32 quantizeFlat(s16* coef, s32 bitsPerPixel, s32 QP) {
  constexpr int N = simd::registerBytes / 2;
  const Reciprocal r = bitsPerPixel < firstDividingDepth ? tabledReciprocal(QP) : exactReciprocal(QP);
  const auto factor = simd::splat<U16<N>>(r.factor);
  const auto deadZone = simd::splat<U16<N>>(Intra ? u16(0) : u16(QP >> 1));
  return quantize<N, Intra>(
      coef, [&](U16<N> m, int) { return simd::shiftRight(mulHigh(subSaturate(m, deadZone), factor), r.shift); });
}

// The low halves of N 32-bit numbers.
template <int N> ZVP_INLINE U16<N> loadLowHalves(const u32* p) {
  if constexpr (N == 8)
    return simd::as<U16<8>>(packTruncateS16(simd::load<S32<4>>(p), simd::load<S32<4>>(p + 4)));
  else
    return join(loadLowHalves<N / 2>(p), loadLowHalves<N / 2>(p + N / 2));
}
// b where a < c, all bits counting as magnitude; else 0.
template <int N> ZVP_INLINE U16<N> whereBelow(U16<N> a, U16<N> c, U16<N> b) {
  return andNot(equal(subSaturate(c, a), simd::zero<U16<N>>()), b);
}

// What intra quantization with a matrix adds before the division by twice the quantizer.
constexpr s32 intraOffset(s32 QP) { return (3 * QP + 2) >> 2; }

// ((offset + ((weight / 2 + 16 * |x|) * reciprocal >> 16)) * R) >> 16, the products unsigned and modulo 2^32.
template <bool Intra> s32 quantizeByReciprocals(s16* coef, const ForwardQuant& spec, s32 QP) {
  constexpr int N = simd::registerBytes / 2;
  const auto R = simd::splat<U16<N>>(tabledReciprocal(QP).factor);
  const auto one = simd::splat<U16<N>>(1), offset = simd::splat<U16<N>>(u16(intraOffset(QP)));
  return quantize<N, Intra>(coef, [&](U16<N> m, int i) {
    const auto halfWeight = simd::load<U16<N>>(spec.weights + i);
    const auto scaled = simd::shiftLeft<4>(m), low = scaled + halfWeight;
    const auto high = simd::shiftRight<12>(m) + whereBelow(low, scaled, one);
    // The reciprocal has a high half, 1, only where the weight is 1.
    const auto r = loadLowHalves<N>(spec.reciprocals + i);
    const auto weightIsOne = equal(halfWeight, simd::zero<U16<N>>());
    const auto a = mulHigh(low, r) + mulLow(high, r) + (low & weightIsOne);
    if constexpr (!Intra) {
      return mulHigh(a, R);
    } else {
      const auto sum = a + offset;
      return mulHigh(sum, R) + whereBelow(sum, offset, R);
    }
  });
}

// (offset + (16 * |x| + weight / 2) / weight) / (2 * QP), which is one division by weight * 2 * QP. In single
// precision: the dividend has 20 bits and the divisor 18, so rounding never lifts the quotient to the next integer.
template <bool Intra> s32 quantizeByDivision(s16* coef, const ForwardQuant& spec, s32 QP) {
  const auto offset = simd::splat<S16<8>>(Intra ? s16(intraOffset(QP)) : s16(0));
  const auto twoQP = simd::splat<F32<4>>(float(2 * QP));
  const auto quotient = [&](S32<4> m, S32<4> weight) {
    const auto offsetTimesWeight = mulAddPairs(simd::as<S16<8>>(weight), offset);
    const auto dividend = simd::shiftLeft<4>(m) + simd::shiftRight<1>(weight) + offsetTimesWeight;
    return toInteger(toFloat(dividend) / (toFloat(weight) * twoQP));
  };
  return quantize<8, Intra>(coef, [&](U16<8> m, int i) {
    const auto w = simd::load<U16<8>>(spec.weights + i);
    return simd::as<U16<8>>(packSaturateS16(quotient(widenLow(m), widenLow(w)), quotient(widenHigh(m), widenHigh(w))));
  });
}

template <bool Intra> s32 quantizeWeighted(s16* coef, const ForwardQuant& spec, s32 QP) {
  return spec.bitsPerPixel < firstDividingDepth ? quantizeByReciprocals<Intra>(coef, spec, QP)
                                                : quantizeByDivision<Intra>(coef, spec, QP);
}

inline constexpr auto ownpmp4_QuantInter0_16s_I = quantizeFlat<false>;
inline constexpr auto ownpmp4_QuantIntra0_16s_I = quantizeFlat<true>;
inline constexpr auto ownpmp4_QuantInter1_16s_I = quantizeWeighted<false>;
inline constexpr auto ownpmp4_QuantIntra1_16s_I = quantizeWeighted<true>;

// ---- inverse ----------------------------------------------------------------------------------------------------

// 1, 0 or -1 by the sign of x.
ZVP_INLINE S16<8> signum(S16<8> x) { return simd::shiftRight<15>(x) - greater(x, simd::zero<S16<8>>()); }

// Two 16-bit lanes in turn, the factors of a sum of two products.
ZVP_INLINE S16<8> splatPair(s16 even, s16 odd) {
  return simd::as<S16<8>>(simd::splat<S32<4>>(s32(u32(u16(even)) | u32(u16(odd)) << 16)));
}

// x * 2 * QP + sign(x) * (QP, less 1 if that is even), within the bounds. At most 32768 * 1022: nothing wraps.
inline void ownpmp4_QuantInv_16s_I(s16* coef, s32 indxLastNonZero, s32 QP, const ClipRow& bounds) {
  const auto scale = splatPair(s16(2 * QP), s16(QP - (1 - (QP & 1))));
  const auto low = simd::load<S16<8>>(bounds.data()), high = simd::load<S16<8>>(bounds.data() + 8);
  forEachPiece<8, 1>(indxLastNonZero + 1, [&](auto count, s32 i) {
    constexpr int bytes = 2 * count;
    const auto x = simd::loadBytes<S16<8>, bytes>(coef + i), s = signum(x);
    const auto v = packSaturateS16(mulAddPairs(interleaveLow(x, s), scale), mulAddPairs(interleaveHigh(x, s), scale));
    simd::storeBytes<bytes>(coef + i, min(max(v, low), high));
  });
}

// The low 32 bits of a product with a factor of 16 bits.
ZVP_INLINE S32<4> timesFactor(S32<4> x, U16<8> factor) {
  const auto halves = simd::as<U16<8>>(x);
  return simd::as<S32<4>>(mulLow(halves, factor)) + simd::shiftLeft<16>(simd::as<S32<4>>(mulHigh(halves, factor)));
}

// Inter: (2 * x + sign(x)) * weight * QP / 16. Intra: x * weight * QP / 8, the DC's result standing for nothing.
// Negative products are rounded up. Returns whether the sum of the results is odd.
//
// Wraps: the product may leave 32 bits. Then it can have either sign, but only the bound on the side of x counts, and
// the low 16 bits of what is left are stored.
template <bool Intra, bool Wraps>
bool dequantizeWeighted(s16* coef, s32 indxLastNonZero, const InverseQuant& spec, s32 QP, const ClipRow& bounds) {
  constexpr int shift = Intra ? 3 : 4;
  const auto low = simd::load<S16<8>>(bounds.data()), high = simd::load<S16<8>>(bounds.data() + 8);
  const auto factor = simd::splat<U16<8>>(u16(QP));
  const auto scaled = [&](S32<4> xTimesWeight, S32<4> sign) {
    const auto rounding = simd::splat<S32<4>>((1 << shift) - 1);
    const auto v = simd::shiftRight<shift>(timesFactor(xTimesWeight, factor) + (sign & rounding));
    if constexpr (!Wraps) return v;
    // low is ~high, so complementing negative lanes turns their bound into high.
    else
      return min(v ^ sign, simd::splat<S32<4>>(bounds[8])) ^ sign;
  };
  auto sums = simd::zero<S16<8>>();
  forEachPiece<8, 1>(indxLastNonZero + 1, [&](auto count, s32 i) {
    constexpr int bytes = 2 * count;
    const auto x = simd::loadBytes<S16<8>, bytes>(coef + i), w = simd::loadBytes<S16<8>, bytes>(spec.weights + i);
    const auto sign = simd::shiftRight<15>(x);
    S32<4> first, second;  // of each four elements, times their weights
    if constexpr (Intra) {
      const auto productLow = mulLow(x, w), productHigh = mulHigh(x, w);
      first = simd::as<S32<4>>(interleaveLow(productLow, productHigh));
      second = simd::as<S32<4>>(interleaveHigh(productLow, productHigh));
    } else {
      const auto s = signum(x), twice = w + w;
      first = mulAddPairs(interleaveLow(x, s), interleaveLow(twice, w));
      second = mulAddPairs(interleaveHigh(x, s), interleaveHigh(twice, w));
    }
    first = scaled(first, simd::as<S32<4>>(interleaveLow(sign, sign)));
    second = scaled(second, simd::as<S32<4>>(interleaveHigh(sign, sign)));
    S16<8> v;
    if constexpr (Wraps)
      v = packTruncateS16(first, second);
    else
      v = min(max(packSaturateS16(first, second), low), high);
    sums = sums ^ (Intra && i == 0 ? andNot(firstLane<8>(), v) : v);
    simd::storeBytes<bytes>(coef + i, v);
  });
  // The lowest bit of a sum is the exclusive or of the lowest bits.
  u64 parity = low64(sums ^ simd::shuffle32<0x4e>(sums));
  parity ^= parity >> 32;
  parity ^= parity >> 16;
  return (parity & 1) != 0;
}

// 65535 * 255 * 128 is the largest product that 31 bits hold.
template <bool Intra>
bool dequantize(s16* coef, s32 indxLastNonZero, const InverseQuant& spec, s32 QP, const ClipRow& bounds) {
  return QP <= 128 ? dequantizeWeighted<Intra, false>(coef, indxLastNonZero, spec, QP, bounds)
                   : dequantizeWeighted<Intra, true>(coef, indxLastNonZero, spec, QP, bounds);
}

inline constexpr auto ownpmp4_QuantInvInter_16s_I = dequantize<false>;
inline constexpr auto ownpmp4_QuantInvIntra_16s_I = dequantize<true>;

}  // namespace zvp::mpeg4
