// Range mapping of a plane: samples move away from 128 by (rangeMap + 9) / 8.
//
// Rows are worked on in registers, narrow planes in parts of one. The last register of a row overlaps the one before it
// and is loaded ahead of all: in place the loop leaves mapped samples there.
#pragma once

#include "simd.h"

namespace zvp::vc1 {

struct RangeMap {
  s32 factor;  // rangeMap + 9

  // (((x - 128) * factor + 4) >> 3) + 128; the constants are gathered ahead of the shift, where 16 bits hold them.
  template <int N>
  ZVP_INLINE simd::U8<N> operator()(simd::U8<N> x) const {
    using V = simd::S16<N / 2>;
    const auto f = simd::splat<V>(s16(factor)), offset = simd::splat<V>(s16(4 + 8 * 128 - 128 * factor));
    const auto map = [=](V samples) { return simd::shiftRight<3>(mulLow(samples, f) + offset); };
    return packSaturateU8(map(widenLow(x)), map(widenHigh(x)));
  }
};

template <int bytes = simd::registerBytes>
void mapRange(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size, RangeMap map) {
  if constexpr (bytes > 1)
    if (size.width < bytes) return mapRange<bytes / 2>(src, srcStep, dst, dstStep, size, map);
  using V = simd::U8<bytes < 16 ? 16 : bytes>;
  const std::ptrdiff_t lastAt = size.width - bytes;
  for (s32 y = 0; y < size.height; ++y, src += srcStep, dst += dstStep) {
    const V last = map(simd::loadBytes<V, bytes>(src + lastAt));
    for (std::ptrdiff_t x = 0; x < lastAt; x += bytes)
      simd::storeBytes<bytes>(dst + x, map(simd::loadBytes<V, bytes>(src + x)));
    simd::storeBytes<bytes>(dst + lastAt, last);
  }
}

}  // namespace zvp::vc1
