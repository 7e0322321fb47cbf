// Dequantization of DV blocks: products of 32 bits, of which 16 are wanted, made of 16-bit multiplications.
#pragma once

#include "simd.h"

namespace zvp::dv {

using Lanes = simd::S16<simd::registerBytes / 2>;
using UnsignedLanes = simd::U16<simd::registerBytes / 2>;
inline constexpr int blockSize = 64;

// Replaces the block's elements by f(x, index of the first). All is read before anything is written, since tables may
// overlap the block.
template <class F>
ZVP_INLINE void transformBlock(s16* block, F f) {
  constexpr int perRegister = simd::Lanes<Lanes>::count;
  Lanes results[blockSize / perRegister];
#pragma GCC unroll 8
  for (int i = 0; i < blockSize; i += perRegister) results[i / perRegister] = f(simd::load<Lanes>(block + i), i);
#pragma GCC unroll 8
  for (int i = 0; i < blockSize; i += perRegister) simd::store(block + i, results[i / perRegister]);
}

// ((x t) >> 14) & -4: the two bits that the high half lacks are those that the mask clears.
inline void dequantize(s16* block, const s16* table) {
  transformBlock(block, [=](Lanes x, int i) {
    return simd::shiftLeft<2>(mulHigh(x, simd::load<Lanes>(table + i)));
  });
}

// ((x >> 3) w q) >> 16 in 32 bits: with (x >> 3) w = 65536 high + low, low unsigned, these are the low half of high q
// and the high half of low q.
inline void dequantizeWeighted(s16* block, const s16* weights, const s16* steps) {
  transformBlock(block, [=](Lanes x, int i) {
    const auto w = simd::load<Lanes>(weights + i), q = simd::load<Lanes>(steps + i);
    const auto scaled = simd::shiftRight<3>(x);
    const auto low = mulLow(scaled, w), high = mulHigh(scaled, w);
    return mulLow(high, q) + mulHigh(low, q) + (simd::shiftRight<15>(low) & q);
  });
}

// ((x >> 6) step w) >> 5 in 32 bits; the DC is x >> 5.
inline void dequantizeDV100(s16* block, const s16* weights, s32 step) {
  const auto stepLow = simd::splat<UnsignedLanes>(u16(step));
  const auto stepHigh = simd::splat<UnsignedLanes>(u16(u32(step) >> 16));
  const s16 dc = s16(loadAs<s16>(block) >> 5);
  transformBlock(block, [=](Lanes x, int i) {
    const auto w = simd::load<Lanes>(weights + i), scaled = simd::shiftRight<6>(x);
    const auto low = simd::as<UnsignedLanes>(mulLow(scaled, w)), high = simd::as<UnsignedLanes>(mulHigh(scaled, w));
    const auto productLow = mulLow(low, stepLow);
    const auto productHigh = mulHigh(low, stepLow) + mulLow(high, stepLow) + mulLow(low, stepHigh);
    return simd::as<Lanes>(simd::shiftRight<5>(productLow) | simd::shiftLeft<11>(productHigh));
  });
  storeAs(block, dc);
}

}  // namespace zvp::dv
