// Exports of the transforms of residuals: the plain ones, those with the scales of flat matrices, and those of
// switching pictures.
#include <array>

#include "entry.h"
#include "h264/switching_kernels.h"
#include "h264/transform_kernels.h"

using namespace zvp;

namespace {

constexpr bool isQp(s32 qp) { return qp >= 0 && qp <= 51; }

template <class T, class Transform>
zvpStatus transform(const T* src, T* dst, Transform f) {
  if (anyNull(src, dst)) return zvpStatusNullPointer;
  storeElements(dst, f(loadElements(src)));
  return zvpStatusOk;
}

ZVP_INLINE Block4x4 loadRowsOf4(const s16* p, std::ptrdiff_t step) {
  const auto row = [&](std::ptrdiff_t y) { return advanceBytes(p, y * step); };
  return {simd::load8x2<simd::S16<8>>(row(0), row(1)), simd::load8x2<simd::S16<8>>(row(2), row(3))};
}
ZVP_INLINE void storeRowsOf4(s16* p, std::ptrdiff_t step, Block4x4 b) {
  const auto row = [&](std::ptrdiff_t y) { return advanceBytes(p, y * step); };
  simd::storeBytes<8>(row(0), b.rows01);
  simd::storeHigh8(row(1), b.rows01);
  simd::storeBytes<8>(row(2), b.rows23);
  simd::storeHigh8(row(3), b.rows23);
}

}  // namespace

zvpStatus zvpiTransformResidual4x4Fwd_H264_16s_C1(const s16* pSrc, s16* pDst) {
  return transform(pSrc, pDst, [](Block4x4 b) { return forwardTransform(b); });
}
zvpStatus zvpiTransformResidual4x4Fwd_H264_32s_C1(const s32* pSrc, s32* pDst) {
  return transform(pSrc, pDst, [](const Wide4x4& b) { return forwardTransform(b); });
}
zvpStatus zvpiTransformResidual4x4Inv_H264_16s_C1(const s16* pSrc, s16* pDst) {
  return transform(pSrc, pDst, [](Block4x4 b) { return inverseTransform(b); });
}
zvpStatus zvpiTransformResidual4x4Inv_H264_32s_C1(const s32* pSrc, s32* pDst) {
  return transform(pSrc, pDst, [](const Wide4x4& b) { return inverseTransform(b); });
}

zvpStatus zvpiTransformPrediction_H264_8u16s_C1(const u8* pSrc, s32 srcStep, s16* pDst) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  const auto samples = simd::loadRows<4, 16>(pSrc, srcStep);
  storeBlock4x4(pDst, forwardTransform(Block4x4{widenLow(samples), widenHigh(samples)}));
  return zvpStatusOk;
}

zvpStatus zvpiDequantTransformResidual_H264_16s_C1I(s16* pSrcDst, s32 step, const s16* pDC, s32 hasAC, s32 QP) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  if (!isQp(QP)) return zvpStatusOutOfRange;
  if (step < 8) return zvpStatusBadStep;
  const auto qp = std::size_t(QP);
  if (hasAC != 0)
    storeRowsOf4(pSrcDst, step, inverseColumns(inverseRowsOfLevels(loadRowsOf4(pSrcDst, step), pDC, qp)));
  else
    storeRowsOf4(pSrcDst, step, flatResidual(scaledDc(pSrcDst, pDC, qp)));
  return zvpStatusOk;
}

zvpStatus zvpiDequantTransformResidualAndAdd_H264_16s_C1I(const u8* pPred, const s16* pCoef, const s16* pDC, u8* pDst,
                                                          s32 predStep, s32 dstStep, s32 QP, s32 hasAC) {
  if (anyNull(pPred, pDst)) return zvpStatusNullPointer;
  if (hasAC != 0 && pCoef != nullptr) {
    if (!isQp(QP)) return zvpStatusOutOfRange;
    addInverseColumns(inverseRowsOfLevels(loadBlock4x4(pCoef), pDC, std::size_t(QP)), pPred, predStep, pDst, dstStep);
    return zvpStatusOk;
  }
  if (pDC == nullptr && pCoef == nullptr) return zvpStatusNullPointer;
  if (!isQp(QP)) return zvpStatusOutOfRange;
  addResidual(flatResidual(scaledDc(pCoef, pDC, std::size_t(QP))), pPred, predStep, pDst, dstStep);
  return zvpStatusOk;
}

zvpStatus zvpiTransformDequantLumaDC_H264_16s_C1I(s16* pSrcDst, s32 QP) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  if (!isQp(QP)) return zvpStatusOutOfRange;
  storeBlock4x4(pSrcDst, dequantizedLumaDc(loadBlock4x4(pSrcDst), QP));
  return zvpStatusOk;
}

zvpStatus zvpiTransformDequantChromaDC_H264_16s_C1I(s16* pSrcDst, s32 QP) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  if (!isQp(QP)) return zvpStatusOutOfRange;
  const auto sums = hadamardTransform2x2(loadDc<4>(pSrcDst));
  for (std::size_t i = 0; i < 4; ++i)
    storeAs(pSrcDst + i, s16((s16(sums[i]) * InvQuantTable[std::size_t(QP)][0]) >> 1));
  return zvpStatusOk;
}

// ---- switching pictures: QP and QS are not looked at before they index ------------------------------------------

zvpStatus zvpiDequantTransformResidual_SISP_H264_16s_C1I(s16* pSrcDst, const s16* pPredictCoef, const s16* pDC,
                                                         s32 hasAC, s32 QP, s32 QS, s32 isSwitching) {
  if (anyNull(pSrcDst, pPredictCoef)) return zvpStatusNullPointer;
  reconstructSwitchingBlock(pSrcDst, pPredictCoef, pDC, hasAC != 0, isSwitching != 0 ? QS : QP, QS);
  return zvpStatusOk;
}

zvpStatus zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(s16* pSrcDst, const s16* pPredictDC, s32 QP, s32 QS,
                                                         s32 isSwitching) {
  if (anyNull(pSrcDst, pPredictDC)) return zvpStatusNullPointer;
  requantizeSwitchingChromaDc(pSrcDst, pPredictDC, isSwitching != 0 ? QS : QP, QS);
  return zvpStatusOk;
}
