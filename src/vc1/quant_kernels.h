// Quantization of VC-1 blocks and its inverse, with the uniform and the non-uniform quantizer (SMPTE 421M clause 8).
//
// Blocks are 4 or 8 columns wide; a register holds a row of 8 or two rows of 4. The DC of an intra block is passed over
// by a store that leaves its two bytes out.
#pragma once

#include <bit>

#include "simd.h"
#include "vc1/quant_tables.h"

namespace zvp::vc1 {

using simd::S16;

enum class Quantizer { Uniform, Nonuniform };
enum class BlockKind { Intra, Inter };

// Eight elements from row p on.
template <int W>
ZVP_INLINE S16<8> loadEight(const s16* p, std::ptrdiff_t step) {
  if constexpr (W == 8) return simd::load<S16<8>>(p);
  else return simd::load8x2<S16<8>>(p, advanceBytes(p, step));
}
template <int W>
ZVP_INLINE void storeEight(s16* p, std::ptrdiff_t step, S16<8> v) {
  if constexpr (W == 8) {
    simd::store(p, v);
  } else {
    simd::storeBytes<8>(p, v);
    simd::storeHigh8(advanceBytes(p, step), v);
  }
}
// Elements 1 to 7, the fourth of them twice.
ZVP_INLINE void storeBehindDc(s16* p, S16<8> v) {
  simd::storeBytes<8>(p + 1, simd::shiftBytesDown<2>(v));
  simd::storeHigh8(p + 4, v);
}

// Magnitude with the sign of x, 0 for x = 0.
ZVP_INLINE S16<8> withSignOf(S16<8> x, S16<8> magnitude) {
  return (magnitude & greater(x, simd::zero<S16<8>>())) - (magnitude & simd::shiftRight<15>(x));
}

// ---- forward ----------------------------------------------------------------------------------------------------

enum class Division { Product, ProductPlus, Shift };  // the ways of indArr

// x / QP towards zero. The product's upper half is rounded down, so negative quotients come out one too low.
template <Division way>
ZVP_INLINE S16<8> divide(S16<8> x, S16<8> constant, int shift) {
  const auto sign = simd::shiftRight<15>(x);
  if constexpr (way == Division::Product) return simd::shiftRight(mulHigh(x, constant), shift) - sign;
  else if constexpr (way == Division::ProductPlus) return simd::shiftRight(mulHigh(x, constant) + x, shift) - sign;
  else return simd::shiftRight(x + (constant & sign), shift);
}

using QuantKernel = void (*)(s16* block, std::ptrdiff_t step, s32 QP, zvpSize size, s16 constant, s32 shift);

template <BlockKind kind, Quantizer quantizer, Division way>
void quantKernel(s16* block, std::ptrdiff_t step, s32 QP, zvpSize size, s16 constant, s32 shift) {
  const auto factor = simd::splat<S16<8>>(constant), half = simd::splat<S16<8>>(s16(QP >> 1));
  const auto quantize = [=](S16<8> x) {
    if constexpr (quantizer == Quantizer::Nonuniform) x = x - withSignOf(x, half);
    return divide<way>(x, factor, shift);
  };
  const auto quantizeRows = [=]<int W>(int firstRow) {
    for (int y = firstRow; y < size.height; y += 8 / W) {
      s16* row = advanceBytes(block, y * step);
      storeEight<W>(row, step, quantize(loadEight<W>(row, step)));
    }
  };
  if constexpr (kind == BlockKind::Intra) {
    storeBehindDc(block, quantize(loadEight<8>(block, step)));
    quantizeRows.template operator()<8>(1);
  } else if (size.width == 8) {
    quantizeRows.template operator()<8>(0);
  } else {
    quantizeRows.template operator()<4>(0);
  }
}

inline constexpr auto quantIntraUniform_a0 = quantKernel<BlockKind::Intra, Quantizer::Uniform, Division::Product>;
inline constexpr auto quantIntraUniform_a1 = quantKernel<BlockKind::Intra, Quantizer::Uniform, Division::ProductPlus>;
inline constexpr auto quantIntraUniform_a2 = quantKernel<BlockKind::Intra, Quantizer::Uniform, Division::Shift>;
inline constexpr auto quantIntraNonuniform_a0 = quantKernel<BlockKind::Intra, Quantizer::Nonuniform, Division::Product>;
inline constexpr auto quantIntraNonuniform_a1 =
    quantKernel<BlockKind::Intra, Quantizer::Nonuniform, Division::ProductPlus>;
inline constexpr auto quantIntraNonuniform_a2 = quantKernel<BlockKind::Intra, Quantizer::Nonuniform, Division::Shift>;
inline constexpr auto quantInterUniform_a0 = quantKernel<BlockKind::Inter, Quantizer::Uniform, Division::Product>;
inline constexpr auto quantInterUniform_a1 = quantKernel<BlockKind::Inter, Quantizer::Uniform, Division::ProductPlus>;
inline constexpr auto quantInterUniform_a2 = quantKernel<BlockKind::Inter, Quantizer::Uniform, Division::Shift>;
inline constexpr auto quantInterNonuniform_a0 = quantKernel<BlockKind::Inter, Quantizer::Nonuniform, Division::Product>;
inline constexpr auto quantInterNonuniform_a1 =
    quantKernel<BlockKind::Inter, Quantizer::Nonuniform, Division::ProductPlus>;
inline constexpr auto quantInterNonuniform_a2 = quantKernel<BlockKind::Inter, Quantizer::Nonuniform, Division::Shift>;

using QuantTable = std::array<QuantKernel, 3>;
inline constexpr QuantTable zvpiQuantIntraUniform_table = {quantIntraUniform_a0, quantIntraUniform_a1,
                                                           quantIntraUniform_a2};
inline constexpr QuantTable zvpiQuantIntraNonuniform_table = {quantIntraNonuniform_a0, quantIntraNonuniform_a1,
                                                              quantIntraNonuniform_a2};
inline constexpr QuantTable zvpiQuantInterUniform_table = {quantInterUniform_a0, quantInterUniform_a1,
                                                           quantInterUniform_a2};
inline constexpr QuantTable zvpiQuantInterNonuniform_table = {quantInterNonuniform_a0, quantInterNonuniform_a1,
                                                              quantInterNonuniform_a2};

// ---- inverse ----------------------------------------------------------------------------------------------------

enum class ZeroTest { OnSource, OnResult };

// A bit for each element of a block of W columns that is not zero, row after row; from it the corner that holds them.
template <int W>
ZVP_INLINE zvpSize nonZeroCorner(u64 nonZero) {
  const s32 height = (s32(std::bit_width(nonZero)) + W - 1) / W;
  for (int bits = 32; bits >= W; bits /= 2) nonZero |= nonZero >> bits;
  return {s32(std::bit_width(nonZero & ((1u << W) - 1))), height};
}

// Sixteen elements at a time. Only the low 16 bits of QP bear on those of the product, but bit 16 on those of QP >> 1.
template <BlockKind kind, Quantizer quantizer, ZeroTest zeroTest, int W>
zvpSize dequantize(const s16* src, std::ptrdiff_t srcStep, s16* dst, std::ptrdiff_t dstStep, s32 QP, s32 height) {
  const auto factor = simd::splat<S16<8>>(s16(QP)), half = simd::splat<S16<8>>(s16(QP >> 1));
  const auto scaled = [=](S16<8> x) {
    if constexpr (quantizer == Quantizer::Nonuniform) return mulLow(x, factor) + withSignOf(x, half);
    else return mulLow(x, factor);
  };
  u64 nonZero = kind == BlockKind::Intra ? 1 : 0;  // an intra block's DC counts as non-zero, whatever it is
  for (int y = 0, bit = 0; y < height; y += 16 / W, bit += 16) {
    const int next = y + 8 / W;
    const auto x0 = loadEight<W>(advanceBytes(src, y * srcStep), srcStep);
    const auto x1 = loadEight<W>(advanceBytes(src, next * srcStep), srcStep);
    const auto y0 = scaled(x0), y1 = scaled(x1);
    s16* row = advanceBytes(dst, y * dstStep);
    if (kind == BlockKind::Intra && y == 0) storeBehindDc(row, y0);
    else storeEight<W>(row, dstStep, y0);
    storeEight<W>(advanceBytes(dst, next * dstStep), dstStep, y1);
    const auto sixteen = zeroTest == ZeroTest::OnSource ? packSaturateS8(x0, x1) : packSaturateS8(y0, y1);
    nonZero |= u64(signBits(equal(sixteen, simd::zero<simd::S8<16>>())) ^ 0xffffu) << bit;
  }
  return nonZeroCorner<W>(nonZero);
}

}  // namespace zvp::vc1
