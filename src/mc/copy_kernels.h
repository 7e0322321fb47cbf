// Blocks copied, averaged and residual-added at half-pel positions. A kernel has its shape, its case and its rounding
// fixed; it takes pointers and steps, checks nothing, and touches the block and no byte beyond what the case needs.
#pragma once

#include "mc/half_pel.h"

namespace zvp::mc {

// dst = p. W counts bytes; with interleaved chroma, two Channels, a row holds W / 2 pairs.
template <int W, int H, HalfPel C, Rounding R = Rounding::up, int Channels = 1>
zvpStatus copyBlock(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep) {
  Prediction<W, C, R, Channels> p(src, srcStep);
  Rows out(dst, dstStep);
  forRows<H>([&](int y) { simd::storeBytes<W>(out.row(y), p.row(y)); }, p, out);
  return zvpStatusOk;
}

// dst = (dst + p + 1) >> 1, rounded up whatever R is.
template <int W, int H, HalfPel C, Rounding R = Rounding::up>
zvpStatus averageInto(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep) {
  Prediction<W, C, R> p(src, srcStep);
  Rows out(dst, dstStep);
  forRows<H>([&](int y) { simd::storeBytes<W>(out.row(y), average(p.row(y), simd::loadBytes<Row, W>(out.row(y)))); }, p,
             out);
  return zvpStatusOk;
}

// dst = (src1 + src2 + 1) >> 1.
template <int W, int H>
zvpStatus averageBlocks(const u8* src1, std::ptrdiff_t src1Step, const u8* src2, std::ptrdiff_t src2Step, u8* dst,
                        std::ptrdiff_t dstStep) {
  AveragedPrediction p(Prediction<W, HalfPel::ff>(src1, src1Step), Prediction<W, HalfPel::ff>(src2, src2Step));
  Rows out(dst, dstStep);
  forRows<H>([&](int y) { simd::storeBytes<W>(out.row(y), p.row(y)); }, p, out);
  return zvpStatusOk;
}

// A row of W samples plus W residual values, saturated: what every residual of this folder ends in.
template <int W>
ZVP_INLINE Row addResidual(Row samples, const u8* residual) {
  using simd::S16;
  if constexpr (W == 16) {
    return packSaturateU8(addSaturate(widenLow(samples), simd::load<S16<8>>(residual)),
                          addSaturate(widenHigh(samples), simd::load<S16<8>>(residual + 16)));
  } else {
    const auto sum = addSaturate(widenLow(samples), simd::loadBytes<S16<8>, 2 * W>(residual));
    return packSaturateU8(sum, sum);
  }
}

// dst = clip(p + residual), 8x8.
template <HalfPel C, Rounding R = Rounding::up>
zvpStatus addBlock(const s16* residual, std::ptrdiff_t residualStep, const u8* ref, std::ptrdiff_t refStep, u8* dst,
                   std::ptrdiff_t dstStep) {
  Prediction<8, C, R> p(ref, refStep);
  Rows r(reinterpret_cast<const u8*>(residual), residualStep);
  Rows out(dst, dstStep);
  forRows<8>([&](int y) { simd::storeBytes<8>(out.row(y), addResidual<8>(p.row(y), r.row(y))); }, p, r, out);
  return zvpStatusOk;
}

// dst = clip(dst + value), 8x8. Adding and subtracting with saturation at bytes is the same as clipping the sum.
inline zvpStatus addConstant(s16 value, u8* dst, std::ptrdiff_t dstStep) {
  const auto up = simd::splat<Row>(clipU8(value)), down = simd::splat<Row>(clipU8(-s32(value)));
  Rows rows(dst, dstStep);
  const auto add = [&](int y) {
    const Row sum = subSaturate(addSaturate(simd::loadBytes<Row, 8>(rows.row(y)), up), down);
    simd::storeBytes<8>(rows.row(y), sum);
  };
  forRows<8>(add, rows);
  return zvpStatusOk;
}

}  // namespace zvp::mc
