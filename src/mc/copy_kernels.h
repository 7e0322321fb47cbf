// Blocks copied, averaged and residual-added at half-pel positions. A kernel has its shape, its case and its rounding
// fixed; it takes pointers and steps, checks nothing, and touches the block and no byte beyond what the case needs.
#pragma once

#include "copy_rows.h"
#include "mc/residual.h"

namespace zvp::mc {

// dst = p. W counts bytes; with interleaved chroma, two Channels, a row holds W / 2 pairs.
template <int W, int H, HalfPel C, Rounding R = Rounding::up, int Channels = 1>
zvpStatus copyBlock(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep) {
  if constexpr (C == HalfPel::ff && H > 8) {
    copyRows<W, H>(src, srcStep, dst, dstStep, H);
  } else {
    Prediction<W, C, R, Channels> p{Rows(src, srcStep)};
    Rows out(dst, dstStep);
    forRows<H>(
        [&](int y) __attribute__((always_inline)) { simd::storeBytes<W>(out.row(y), p.row(y)); }, p, out);
  }
  return zvpStatusOk;
}

// dst = (dst + p + 1) >> 1, rounded up whatever R is.
template <int W, int H, HalfPel C, Rounding R = Rounding::up>
zvpStatus averageInto(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep) {
  Prediction<W, C, R> p{Rows(src, srcStep)};
  Rows out(dst, dstStep);
  forRows<H>(
      [&](int y) __attribute__((always_inline)) {
        simd::storeBytes<W>(out.row(y), average(p.row(y), simd::loadBytes<Row, W>(out.row(y))));
      },
      p, out);
  return zvpStatusOk;
}

// dst = (src1 + src2 + 1) >> 1.
template <int W, int H>
zvpStatus averageBlocks(const u8* src1, std::ptrdiff_t src1Step, const u8* src2, std::ptrdiff_t src2Step, u8* dst,
                        std::ptrdiff_t dstStep) {
  using Whole = Prediction<W, HalfPel::ff>;
  AveragedPrediction p{Whole(Rows(src1, src1Step)), Whole(Rows(src2, src2Step))};
  Rows out(dst, dstStep);
  forRows<H>(
      [&](int y) __attribute__((always_inline)) { simd::storeBytes<W>(out.row(y), p.row(y)); }, p, out);
  return zvpStatusOk;
}

// dst = clip(p + residual), 8x8.
template <HalfPel C, Rounding R = Rounding::up>
zvpStatus addBlock(const s16* residual, std::ptrdiff_t residualStep, const u8* ref, std::ptrdiff_t refStep, u8* dst,
                   std::ptrdiff_t dstStep) {
  Prediction<8, C, R> p{Rows(ref, refStep)};
  Residual<8> r{rowsOf(residual, residualStep)};
  Rows out(dst, dstStep);
  forRows<8>(
      [&](int y) __attribute__((always_inline)) { simd::storeBytes<8>(out.row(y), r.addTo(p.row(y), y)); }, p, r, out);
  return zvpStatusOk;
}

// dst = clip(dst + value), 8x8. Adding and subtracting with saturation at bytes is the same as clipping the sum.
inline zvpStatus addConstant(s16 value, u8* dst, std::ptrdiff_t dstStep) {
  const auto up = simd::splat<Row>(clipU8(value)), down = simd::splat<Row>(clipU8(-s32(value)));
  Rows rows(dst, dstStep);
  const auto add = [&](int y) __attribute__((always_inline)) {
    const Row sum = subSaturate(addSaturate(simd::loadBytes<Row, 8>(rows.row(y)), up), down);
    simd::storeBytes<8>(rows.row(y), sum);
  };
  forRows<8>(add, rows);
  return zvpStatusOk;
}

}  // namespace zvp::mc
