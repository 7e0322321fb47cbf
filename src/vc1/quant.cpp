#include "entry.h"
#include "vc1/quant_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

namespace {

constexpr zvpSize wholeBlock = {8, 8};

bool isSide(s32 size) { return size == 4 || size == 8; }

zvpStatus quantize(const QuantTable& kernels, s16* block, s32 step, s32 QP, zvpSize size) {
  if (anyNull(block)) return zvpStatusNullPointer;
  if (QP < lowestForwardQp || QP > highestForwardQp) return zvpStatusOutOfRange;
  if (!isSide(size.height) || !isSide(size.width)) return zvpStatusBadSize;
  const auto i = std::size_t(QP - lowestForwardQp);
  kernels[std::size_t(indArr[i])](block, step, QP, size, constArr[i], shiftArr[i]);
  return zvpStatusOk;
}

template <Quantizer quantizer>
zvpStatus dequantizeIntra(const s16* src, s32 srcStep, s16* dst, s32 dstStep, s32 QP, zvpSize* corner) {
  if (anyNull(src, dst, corner)) return zvpStatusNullPointer;
  if (src != dst) storeAs(dst, loadAs<s16>(src));
  storeAs(corner, dequantize<BlockKind::Intra, quantizer, ZeroTest::OnResult, 8>(src, srcStep, dst, dstStep, QP, 8));
  return zvpStatusOk;
}

template <Quantizer quantizer, ZeroTest zeroTest>
zvpStatus dequantizeInter(const s16* src, s32 srcStep, s16* dst, s32 dstStep, s32 QP, zvpSize size, zvpSize* corner) {
  if (anyNull(src, dst, corner)) return zvpStatusNullPointer;
  if (!isSide(size.height) || !isSide(size.width)) return zvpStatusBadSize;
  const auto kernel = size.width == 8 ? dequantize<BlockKind::Inter, quantizer, zeroTest, 8>
                                      : dequantize<BlockKind::Inter, quantizer, zeroTest, 4>;
  storeAs(corner, kernel(src, srcStep, dst, dstStep, QP, size.height));
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiQuantIntraUniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP) {
  return quantize(zvpiQuantIntraUniform_table, pSrcDst, srcDstStep, QP, wholeBlock);
}
zvpStatus zvpiQuantIntraNonuniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP) {
  return quantize(zvpiQuantIntraNonuniform_table, pSrcDst, srcDstStep, QP, wholeBlock);
}
zvpStatus zvpiQuantInterUniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize roiSize) {
  return quantize(zvpiQuantInterUniform_table, pSrcDst, srcDstStep, QP, roiSize);
}
zvpStatus zvpiQuantInterNonuniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize roiSize) {
  return quantize(zvpiQuantInterNonuniform_table, pSrcDst, srcDstStep, QP, roiSize);
}

zvpStatus zvpiQuantInvIntraUniform_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, s32 QP,
                                               zvpSize* pDstSizeNZ) {
  return dequantizeIntra<Quantizer::Uniform>(pSrc, srcStep, pDst, dstStep, QP, pDstSizeNZ);
}
zvpStatus zvpiQuantInvIntraUniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize* pDstSizeNZ) {
  return dequantizeIntra<Quantizer::Uniform>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, QP, pDstSizeNZ);
}
zvpStatus zvpiQuantInvIntraNonuniform_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, s32 QP,
                                                  zvpSize* pDstSizeNZ) {
  return dequantizeIntra<Quantizer::Nonuniform>(pSrc, srcStep, pDst, dstStep, QP, pDstSizeNZ);
}
zvpStatus zvpiQuantInvIntraNonuniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize* pDstSizeNZ) {
  return dequantizeIntra<Quantizer::Nonuniform>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, QP, pDstSizeNZ);
}

// Required: with two buffers zeros are counted in the source, in place in the results. Callers see the difference where
// a product comes to 0 in 16 bits.
zvpStatus zvpiQuantInvInterUniform_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, s32 QP,
                                               zvpSize roiSize, zvpSize* pDstSizeNZ) {
  return dequantizeInter<Quantizer::Uniform, ZeroTest::OnSource>(pSrc, srcStep, pDst, dstStep, QP, roiSize, pDstSizeNZ);
}
zvpStatus zvpiQuantInvInterUniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize roiSize,
                                                zvpSize* pDstSizeNZ) {
  return dequantizeInter<Quantizer::Uniform, ZeroTest::OnResult>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, QP, roiSize,
                                                                 pDstSizeNZ);
}
zvpStatus zvpiQuantInvInterNonuniform_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, s32 QP,
                                                  zvpSize roiSize, zvpSize* pDstSizeNZ) {
  return dequantizeInter<Quantizer::Nonuniform, ZeroTest::OnSource>(pSrc, srcStep, pDst, dstStep, QP, roiSize,
                                                                    pDstSizeNZ);
}
zvpStatus zvpiQuantInvInterNonuniform_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, s32 QP, zvpSize roiSize,
                                                   zvpSize* pDstSizeNZ) {
  return dequantizeInter<Quantizer::Nonuniform, ZeroTest::OnResult>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, QP,
                                                                    roiSize, pDstSizeNZ);
}
