// MPEG-2 quantization of an 8x8 block in place (ISO/IEC 13818-2 7.4, and the encoder's side of it). Forward: by
// single-precision reciprocals of the weights, or by one integer reciprocal for flat weights. Inverse: 32-bit products
// that wrap, made of 16-bit multiplications, then the saturation and the mismatch control of 7.4.3 and 7.4.4.
#pragma once

#include "simd.h"

namespace zvp::mpeg {

using simd::F32;
using simd::S16;
using simd::S32;
using simd::U16;

template <int N>
ZVP_INLINE S16<N> clipTo(S16<N> x, s16 low, s16 high) {
  return min(max(x, simd::splat<S16<N>>(low)), simd::splat<S16<N>>(high));
}

// Non-zero lanes count -1 each in the result.
template <int N>
ZVP_INLINE S16<N> minusOneWhereSet(S16<N> x) {
  return equal(equal(x, simd::zero<S16<N>>()), simd::zero<S16<N>>());
}

// All ones in lane 0, the DC of a block's first register.
template <int N>
ZVP_INLINE S16<N> firstLane() {
  std::array<s16, N> mask{};
  mask[0] = -1;
  return simd::lanes(mask);
}

// ---- forward ----------------------------------------------------------------------------------------------------

// coefficient * factor * reciprocal, multiplied in this order, towards zero, clipped to -2047..2047. Intra leaves the
// DC alone and does not count it. Returns the number of non-zero results.
template <bool Intra>
s32 quantizeByReciprocals(s16* block, float factor, const float* reciprocals) {
  const auto f = simd::splat<F32<4>>(factor);
  const auto low = simd::splat<F32<4>>(-2047), high = simd::splat<F32<4>>(2047);
  const auto quantized = [&](S32<4> x, const float* r) {
    // Clipped before the conversion, which has no result for what 32 bits do not hold.
    return toInteger(min(max(toFloat(x) * f * simd::load<F32<4>>(r), low), high));
  };
  auto count = simd::zero<S16<8>>();
  for (int i = 0; i < 64; i += 8) {
    const auto x = simd::load<S16<8>>(block + i);
    auto q = packSaturateS16(quantized(widenLow(x), reciprocals + i), quantized(widenHigh(x), reciprocals + i + 4));
    if (Intra && i == 0) {
      const auto others = andNot(firstLane<8>(), q);
      count = count + minusOneWhereSet(others);
      q = others | (x & firstLane<8>());
    } else {
      count = count + minusOneWhereSet(q);
    }
    simd::store(block + i, q);
  }
  return -reduceAdd(count);
}

// coefficient * reciprocal / 65536 towards zero, clipped to -2047..2047. The reciprocal is 0..32768.
inline s32 quantizeFlat(s16* block, u16 reciprocal) {
  constexpr int N = simd::registerBytes / 2;
  const auto r = simd::splat<U16<N>>(reciprocal);
  auto count = simd::zero<S16<N>>();
  for (int i = 0; i < 64; i += N) {
    const auto x = simd::load<S16<N>>(block + i);
    const auto sign = simd::shiftRight<15>(x);
    const auto magnitude = simd::as<S16<N>>(mulHigh(simd::as<U16<N>>((x ^ sign) - sign), r));  // 0..16384
    const auto q = clipTo((magnitude ^ sign) - sign, -2047, 2047);
    count = count + minusOneWhereSet(q);
    simd::store(block + i, q);
  }
  return -reduceAdd(count);
}

inline s32 countNonZero(const s16* block) {
  constexpr int N = simd::registerBytes / 2;
  auto count = simd::zero<S16<N>>();
  for (int i = 0; i < 64; i += N) count = count + minusOneWhereSet(simd::load<S16<N>>(block + i));
  return -reduceAdd(count);
}

// ---- inverse ----------------------------------------------------------------------------------------------------

// 32-bit numbers modulo 2^32 in two registers of 16-bit lanes: value = low (unsigned) + 65536 * high.
template <int N>
struct Words {
  S16<N> low, high;
  ZVP_INLINE S32<N / 2> lowerLanes() const { return simd::as<S32<N / 2>>(interleaveLow(low, high)); }
  ZVP_INLINE S32<N / 2> upperLanes() const { return simd::as<S32<N / 2>>(interleaveHigh(low, high)); }
};
template <int N>
ZVP_INLINE Words<N> splatWords(s32 value) {
  return {simd::splat<S16<N>>(s16(value)), simd::splat<S16<N>>(s16(value >> 16))};
}
// mulHigh takes the low half as signed: where its top bit is set, 65536 * a is put back.
template <int N>
ZVP_INLINE Words<N> operator*(S16<N> a, Words<N> b) {
  return {mulLow(a, b.low), mulHigh(a, b.low) + mulLow(a, b.high) + (a & simd::shiftRight<15>(b.low))};
}

// x / 2^Shift, towards zero.
template <int Shift, int N>
ZVP_INLINE S32<N> divideTowardsZero(S32<N> x) {
  const auto rest = simd::as<S32<N>>(simd::shiftRight<32 - Shift>(simd::as<simd::U32<N>>(simd::shiftRight<31>(x))));
  return simd::shiftRight<Shift>(x + rest);
}

// Toggles the last coefficient if the sum of all is even; only the parity of the sum matters, so lanes are xor-ed.
template <int N>
ZVP_INLINE void controlMismatch(s16* block, S16<N> sums) {
  u64 parts[N / 4], sum = 0;
  simd::store(parts, sums);
  for (u64 part : parts) sum ^= part;
  sum ^= sum >> 32;
  sum ^= sum >> 16;
  if ((sum & 1) == 0) storeAs(block + 63, s16(loadAs<s16>(block + 63) ^ 1));  // odd: one less, even: one more
}

// coefficient * scale * weight * 2 / 32. The DC stays and has its part in the sum.
inline void dequantizeIntra(s16* block, s32 scale, const s16* weights) {
  constexpr int N = simd::registerBytes / 2;
  const auto doubled = splatWords<N>(wrapAdd(scale, scale));
  auto sums = simd::zero<S16<N>>();
  for (int i = 0; i < 64; i += N) {
    const auto x = simd::load<S16<N>>(block + i);
    const auto product = x * (simd::load<S16<N>>(weights + i) * doubled);
    auto v =
        clipTo(packSaturateS16(divideTowardsZero<5>(product.lowerLanes()), divideTowardsZero<5>(product.upperLanes())),
               -2048, 2047);
    if (i == 0) v = select(firstLane<N>(), x, v);
    sums = sums ^ v;
    simd::store(block + i, v);
  }
  controlMismatch(block, sums);
}

// (2 * coefficient + its sign) * factor / 2^Shift, factor being scale * weight, or scale alone where weights are flat.
template <bool Weighted>
void dequantizeInter(s16* block, s32 scale, const s16* weights) {
  constexpr int N = simd::registerBytes / 2, shift = Weighted ? 5 : 1;
  const auto flat = splatWords<N>(scale);
  auto sums = simd::zero<S16<N>>();
  for (int i = 0; i < 64; i += N) {
    const auto x = simd::load<S16<N>>(block + i);
    Words<N> factor = flat;
    if constexpr (Weighted) factor = simd::load<S16<N>>(weights + i) * flat;
    const auto product = x * factor;
    const auto sign = simd::shiftRight<15>(x);
    const auto dequantized = [](S32<N / 2> xTimesFactor, S32<N / 2> f, S32<N / 2> s) {
      return divideTowardsZero<shift>(xTimesFactor + xTimesFactor + ((f ^ s) - s));
    };
    auto v = packSaturateS16(
        dequantized(product.lowerLanes(), factor.lowerLanes(), simd::as<S32<N / 2>>(interleaveLow(sign, sign))),
        dequantized(product.upperLanes(), factor.upperLanes(), simd::as<S32<N / 2>>(interleaveHigh(sign, sign))));
    v = andNot(equal(x, simd::zero<S16<N>>()), clipTo(v, -2048, 2047));
    sums = sums ^ v;
    simd::store(block + i, v);
  }
  controlMismatch(block, sums);
}

}  // namespace zvp::mpeg
