// Overlap smoothing across block edges (SMPTE 421M 8.5), from 16-bit samples to bytes of the picture.
//
// Four lines across the edge are smoothed at once. Their samples a, b | c, d come as the pairs (a, d) and (b, c); sums
// have 32 bits, since 16-bit samples of any size are taken.
#pragma once

#include "vc1/weigh.h"

namespace zvp::vc1 {

using simd::S16;
using simd::S32;
using simd::U8;

// y0 to y3 of four lines. Rounding takes turns from line to line; the first of the four has an even number.
struct SmoothedLines {
  S32<4> y[4];
};
ZVP_INLINE SmoothedLines smooth(S16<8> ad, S16<8> bc) {
  const auto r0 = simd::lanes(std::array<s32, 4>{4, 3, 4, 3}), r1 = simd::lanes(std::array<s32, 4>{3, 4, 3, 4});
  const auto difference = weigh<-1, 1>(ad);
  SmoothedLines s = {{weigh<7, 1>(ad) + r0, weigh<7, 1>(bc) + difference + r1, weigh<1, 7>(bc) - difference + r0,
                      weigh<1, 7>(ad) + r1}};
#pragma GCC unroll 4
  for (auto& y : s.y) y = simd::shiftRight<3>(y);
  return s;
}

// ---- vertical edges ---------------------------------------------------------------------------------------------

// A source of samples: two a row for vertical edges, two rows for horizontal ones.
struct Source {
  s16* p;
  std::ptrdiff_t step;

  ZVP_INLINE Source down(std::ptrdiff_t rows) const { return {advanceBytes(p, rows * step), step}; }
  ZVP_INLINE Source everyOtherRow() const { return {p, 2 * step}; }
};

// The low halves of x as even elements, those of y as odd ones.
ZVP_INLINE S16<8> pairLows(S32<4> x, S32<4> y) {
  return simd::as<S16<8>>((x & simd::splat<S32<4>>(0xffff)) | simd::shiftLeft<16>(y));
}

// Four rows: written back to the sources as they are, and returned as four bytes a row.
ZVP_INLINE U8<16> smoothFourRows(Source left, Source right) {
  using namespace simd;
  u8* const leftBytes = reinterpret_cast<u8*>(left.p);
  u8* const rightBytes = reinterpret_cast<u8*>(right.p);
  const auto ab = as<S32<4>>(loadRows<4, 16>(leftBytes, left.step));
  const auto cd = as<S32<4>>(loadRows<4, 16>(rightBytes, right.step));
  const auto lowHalves = splat<S32<4>>(0xffff);
  const auto s = smooth(as<S16<8>>(select(lowHalves, ab, cd)), pairLows(shiftRight<16>(ab), cd));
  storeRows<4, 16>(leftBytes, left.step, as<U8<16>>(pairLows(s.y[0], s.y[1])));
  storeRows<4, 16>(rightBytes, right.step, as<U8<16>>(pairLows(s.y[2], s.y[3])));
  auto bytes = packSaturateU8(packSaturateS16(s.y[0], s.y[1]), packSaturateS16(s.y[2], s.y[3]));
  bytes = interleaveLow(bytes, shiftBytesDown<8>(bytes));  // y0 y2 of each row, then y1 y3
  return interleaveLow(bytes, shiftBytesDown<8>(bytes));
}

// Eight lines of a vertical edge.
ZVP_INLINE void smoothVerticalEdge(Source left, Source right, u8* dst, std::ptrdiff_t dstStep) {
#pragma GCC unroll 2
  for (int y = 0; y < 8; y += 4)
    simd::storeRows<4, 16>(dst + y * dstStep - 2, dstStep, smoothFourRows(left.down(y), right.down(y)));
}
// The same for U and V to interleaved samples.
ZVP_INLINE void smoothVerticalEdge(Source leftU, Source rightU, Source leftV, Source rightV, u8* dst,
                                   std::ptrdiff_t dstStep) {
#pragma GCC unroll 2
  for (int y = 0; y < 8; y += 4) {
    const auto u = smoothFourRows(leftU.down(y), rightU.down(y)), v = smoothFourRows(leftV.down(y), rightV.down(y));
    u8* const row = dst + y * dstStep - 4;
    simd::storeRows<8, 16>(row, dstStep, interleaveLow(u, v));
    simd::storeRows<8, 16>(row + 2 * dstStep, dstStep, interleaveHigh(u, v));
  }
}

// ---- horizontal edges -------------------------------------------------------------------------------------------

// Eight columns of the four rows at the edge, eight bytes a row.
struct EdgeRows {
  U8<16> above, below;
};
ZVP_INLINE EdgeRows smoothEightColumns(Source upper, Source bottom) {
  const auto row = [](Source s, int y) { return simd::load<S16<8>>(s.down(y).p); };
  const auto a = row(upper, 0), b = row(upper, 1), c = row(bottom, 0), d = row(bottom, 1);
  const auto left = smooth(interleaveLow(a, d), interleaveLow(b, c));
  const auto right = smooth(interleaveHigh(a, d), interleaveHigh(b, c));
  const auto y = [&](int i) { return packSaturateS16(left.y[i], right.y[i]); };
  return {packSaturateU8(y(0), y(1)), packSaturateU8(y(2), y(3))};
}

ZVP_INLINE void smoothHorizontalEdge(Source upper, Source bottom, u8* dst, std::ptrdiff_t dstStep) {
  const auto rows = smoothEightColumns(upper, bottom);
  simd::storeRows<8, 16>(dst - 2 * dstStep, dstStep, rows.above);
  simd::storeRows<8, 16>(dst, dstStep, rows.below);
}
ZVP_INLINE void smoothHorizontalEdge(Source upperU, Source bottomU, Source upperV, Source bottomV, u8* dst,
                                     std::ptrdiff_t dstStep) {
  const auto u = smoothEightColumns(upperU, bottomU), v = smoothEightColumns(upperV, bottomV);
  simd::store(dst - 2 * dstStep, interleaveLow(u.above, v.above));
  simd::store(dst - dstStep, interleaveHigh(u.above, v.above));
  simd::store(dst, interleaveLow(u.below, v.below));
  simd::store(dst + dstStep, interleaveHigh(u.below, v.below));
}

}  // namespace zvp::vc1
