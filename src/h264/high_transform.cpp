// Exports of the transforms with quantization of the High profiles: scaling lists of the caller's, 4:2:2 chroma, and
// 32-bit members for samples of up to 14 bits.
#include <limits>

#include "entry.h"
#include "h264/quantize_kernels.h"

using namespace zvp;

namespace {

// By the width of the elements: the largest QP of a block of luma, of 8 or of 14 bits, and of a block of chroma DC.
template <class T>
constexpr s32 mostQp = sizeof(T) == 2 ? 51 : 87;
template <class T>
constexpr s32 mostChromaQp = sizeof(T) == 2 ? 39 : 75;

constexpr bool isWithin(s32 value, s32 most) { return value >= 0 && value <= most; }

// A scaling list, or the default one for this QP.
ZVP_INLINE const s16* factorsOf(const s16* scaleLevels, std::size_t qp) {
  return scaleLevels != nullptr ? scaleLevels : FwdQuantTable_16s_0[h264_qp_rem_0[qp]].data();
}
ZVP_INLINE const s16* scalesOf(const s16* scaleLevels, std::size_t qp) {
  return scaleLevels != nullptr ? scaleLevels : InvLevelScale_4x4_default_0[h264_qp_rem_0[qp]].data();
}
// Lists hold the factors for 1/16 of a step. A DC block's shift is one larger.
ZVP_INLINE int shiftOf(const s16* scaleLevels, std::size_t qp) {
  return h264_qp6_0[qp] + (scaleLevels != nullptr ? 11 : 15);
}

template <class Coefficient>
ZVP_INLINE auto forwardTransformTo(const s16* src) {
  if constexpr (sizeof(Coefficient) == 4)
    return forwardTransform(widened(loadBlock4x4(src)));
  else
    return forwardTransform(loadBlock4x4(src));
}

template <class Level>
zvpStatus transformQuant(const s16* src, Level* dst, s32 QP, s32* numLevels, s32 isIntra, const s16* scan,
                         s32* lastCoeff, const s16* scaleLevels) {
  if (anyNull(src, dst, numLevels, scan, lastCoeff)) return zvpStatusNullPointer;
  if (!isWithin(QP, mostQp<Level>)) return zvpStatusOutOfRange;
  const auto qp = std::size_t(QP);
  const auto levels = levelsOf<Level>(forwardTransformTo<Level>(src), factorsOf(scaleLevels, qp),
                                      quantizer(shiftOf(scaleLevels, qp), isIntra != 0));
  storeElements(dst, levels);
  const LevelCount count = countLevels(levels, scan);
  storeAs(numLevels, count.withDcAsSign());
  storeAs(lastCoeff, count.last);
  return zvpStatusOk;
}

template <class T>
zvpStatus transformQuantLumaDc(T* dc, T* block, s32 QP, s32* numLevels, s32 isIntra, const s16* scan, s32* lastCoeff,
                               const s16* scaleLevels) {
  if (anyNull(dc, block, numLevels, scan, lastCoeff)) return zvpStatusNullPointer;
  if (!isWithin(QP, mostQp<T>)) return zvpStatusOutOfRange;
  const auto qp = std::size_t(QP);
  const auto transformed = halvedHadamardTransform(loadElements(dc));
  storeElements(block, transformed);
  std::array<s16, 16> factors;  // all of class 0
  factors.fill(loadAs<s16>(factorsOf(scaleLevels, qp)));
  const auto levels = levelsOf<T>(transformed, factors.data(), quantizer(shiftOf(scaleLevels, qp) + 1, isIntra != 0));
  storeElements(dc, levels);
  const LevelCount count = countLevels(levels, scan);
  storeAs(numLevels, count.withDcAsSign());
  storeAs(lastCoeff, count.last);
  return zvpStatusOk;
}

// N is 4 for 4:2:0 and 8 for 4:2:2, whose steps are those of QP + 3 (H.264 8.5.11.2).
template <std::size_t N, class T>
zvpStatus transformQuantChromaDc(T* dc, T* block, s32 QP, s32* numLevels, s32 isIntra, s32 needTransform,
                                 const s16* scaleLevels) {
  if (anyNull(dc, block, numLevels)) return zvpStatusNullPointer;
  if (!isWithin(QP, mostChromaQp<T>)) return zvpStatusOutOfRange;
  const auto qp = std::size_t(N == 8 ? QP + 3 : QP);
  if (needTransform != 0) storeDc(block, hadamardTransform(loadDc<N>(dc)));
  Quantizer q = quantizer(shiftOf(scaleLevels, qp) + 1, isIntra != 0);
  if constexpr (N == 8) q.rounding = (isIntra != 0 ? 682 : 342) << (q.shift - 11);  // required: 342, not 341
  LevelCount count;
  quantizeDc<N>(block, dc, loadAs<s16>(factorsOf(scaleLevels, qp)), q, std::numeric_limits<s64>::max(), count);
  storeAs(numLevels, count.withDcAsSign());
  return zvpStatusOk;
}

template <class T>
zvpStatus inverseLumaDc(T* srcDst, s32 QP, const s16* scaleLevels) {
  if (anyNull(srcDst)) return zvpStatusNullPointer;
  if (!isWithin(QP, mostQp<T>)) return zvpStatusOutOfRange;
  const auto qp = std::size_t(QP);
  const Block4x4 scale = splatScale(loadAs<s16>(scalesOf(scaleLevels, qp)));
  storeElements(srcDst, scaledLevels(hadamardTransform(loadElements(srcDst)), scale, levelShift(h264_qp6_0[qp], 6)));
  return zvpStatusOk;
}

template <std::size_t N, class T>
zvpStatus inverseChromaDc(T* srcDst, s32 QP, const s16* scaleLevels) {
  if (anyNull(srcDst)) return zvpStatusNullPointer;
  if (!isWithin(QP, mostChromaQp<T>)) return zvpStatusOutOfRange;
  const auto qp = std::size_t(N == 8 ? QP + 3 : QP);
  const int qp6 = h264_qp6_0[qp];
  const LevelShift shift = N == 8 ? levelShift(qp6, 6) : levelShiftDown(qp6, 5);
  const s32 scale = loadAs<s16>(scalesOf(scaleLevels, qp));
  auto sums = hadamardTransform(loadDc<N>(srcDst));
  for (s32& sum : sums) sum = shift(T(sum), scale);
  storeDc(srcDst, sums);
  return zvpStatusOk;
}

// A block by its scales, element 0 as it comes from elsewhere if it does.
template <class T>
ZVP_INLINE auto scaledBy(const T* levels, const T* dc, std::size_t qp, const s16* scaleLevels) {
  auto block =
      scaledLevels(loadElements(levels), loadBlock4x4(scalesOf(scaleLevels, qp)), levelShift(h264_qp6_0[qp], 4));
  return dc != nullptr ? withDc(block, loadAs<T>(dc)) : block;
}
template <class T>
ZVP_INLINE T scaledDcBy(const T* level, const T* dc, std::size_t qp, const s16* scaleLevels) {
  if (dc != nullptr) return loadAs<T>(dc);
  return T(levelShift(h264_qp6_0[qp], 4)(loadAs<T>(level), loadAs<s16>(scalesOf(scaleLevels, qp))));
}

// What zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR is called for less often: by a list, or for a DC alone.
[[gnu::noinline]] zvpStatus addByListOrDc(const u8* pred, s32 predStep, const s16* levels, const s16* dc, u8* dst,
                                          s32 dstStep, s32 QP, s32 hasAC, const s16* scaleLevels) {
  const auto qp = std::size_t(QP);
  if (hasAC != 0)
    addInverseColumns(inverseRows(scaledBy(levels, dc, qp, scaleLevels)), pred, predStep, dst, dstStep);
  else
    addResidual(flatResidual(scaledDcBy(levels, dc, qp, scaleLevels)), pred, predStep, dst, dstStep);
  return zvpStatusOk;
}

}  // namespace

// ---- forward ---------------------------------------------------------------------------------------------------

zvpStatus zvpiTransformQuantFwd4x4_H264_16s_C1(const s16* pSrc, s16* pDst, s32 QP, s32* pNumLevels, s32 isIntra,
                                               const s16* pScanOrder, s32* pLastCoeff, const s16* pScaleLevels) {
  return transformQuant(pSrc, pDst, QP, pNumLevels, isIntra, pScanOrder, pLastCoeff, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwd4x4_H264_16s32s_C1(const s16* pSrc, s32* pDst, s32 QP, s32* pNumLevels, s32 isIntra,
                                                  const s16* pScanOrder, s32* pLastCoeff, const s16* pScaleLevels) {
  return transformQuant(pSrc, pDst, QP, pNumLevels, isIntra, pScanOrder, pLastCoeff, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I(s16* pDC, s16* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                      const s16* pScanOrder, s32* pLastCoeff, const s16* pScaleLevels) {
  return transformQuantLumaDc(pDC, pTBlock, QP, pNumLevels, isIntra, pScanOrder, pLastCoeff, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdLumaDC4x4_H264_32s_C1I(s32* pDC, s32* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                      const s16* pScanOrder, s32* pLastCoeff, const s16* pScaleLevels) {
  return transformQuantLumaDc(pDC, pTBlock, QP, pNumLevels, isIntra, pScanOrder, pLastCoeff, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I(s16* pDC, s16* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                        s32 needTransform, const s16* pScaleLevels) {
  return transformQuantChromaDc<4>(pDC, pTBlock, QP, pNumLevels, isIntra, needTransform, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdChromaDC2x2_H264_32s_C1I(s32* pDC, s32* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                        s32 needTransform, const s16* pScaleLevels) {
  return transformQuantChromaDc<4>(pDC, pTBlock, QP, pNumLevels, isIntra, needTransform, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I(s16* pDC, s16* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                        s32 needTransform, const s16* pScaleLevels) {
  return transformQuantChromaDc<8>(pDC, pTBlock, QP, pNumLevels, isIntra, needTransform, pScaleLevels);
}
zvpStatus zvpiTransformQuantFwdChromaDC2x4_H264_32s_C1I(s32* pDC, s32* pTBlock, s32 QP, s32* pNumLevels, s32 isIntra,
                                                        s32 needTransform, const s16* pScaleLevels) {
  return transformQuantChromaDc<8>(pDC, pTBlock, QP, pNumLevels, isIntra, needTransform, pScaleLevels);
}

// ---- inverse ---------------------------------------------------------------------------------------------------

zvpStatus zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I(s16* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseLumaDc(pSrcDst, QP, pScaleLevel);
}
zvpStatus zvpiTransformQuantInvLumaDC4x4_H264_32s_C1I(s32* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseLumaDc(pSrcDst, QP, pScaleLevel);
}
zvpStatus zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I(s16* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseChromaDc<4>(pSrcDst, QP, pScaleLevel);
}
zvpStatus zvpiTransformQuantInvChromaDC2x2_H264_32s_C1I(s32* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseChromaDc<4>(pSrcDst, QP, pScaleLevel);
}
zvpStatus zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I(s16* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseChromaDc<8>(pSrcDst, QP, pScaleLevel);
}
zvpStatus zvpiTransformQuantInvChromaDC2x4_H264_32s_C1I(s32* pSrcDst, s32 QP, const s16* pScaleLevel) {
  return inverseChromaDc<8>(pSrcDst, QP, pScaleLevel);
}

zvpStatus zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR(const u8* pPred, s32 predStep, const s16* pSrcDst,
                                                        const s16* pDC, u8* pDst, s32 dstStep, s32 QP, s32 hasAC,
                                                        const s16* pScaleLevels) {
  if (anyNull(pPred, pSrcDst, pDst)) return zvpStatusNullPointer;
  if (!isWithin(QP, 51)) return zvpStatusOutOfRange;
  if (hasAC == 0 || pScaleLevels != nullptr) [[unlikely]]
    return addByListOrDc(pPred, predStep, pSrcDst, pDC, pDst, dstStep, QP, hasAC, pScaleLevels);
  // The default list is 16 times the scales of flat matrices: the shift by 4 takes that away again, without remainder.
  addInverseColumns(inverseRowsOfLevels(loadBlock4x4(pSrcDst), pDC, std::size_t(QP)), pPred, predStep, pDst, dstStep);
  return zvpStatusOk;
}
zvpStatus zvpiTransformQuantInvAddPred4x4_H264_32s_C1IR(const u16* pPred, s32 predStep, const s32* pSrcDst,
                                                        const s32* pDC, u16* pDst, s32 dstStep, s32 QP, s32 hasAC,
                                                        s32 bitDepth, const s16* pScaleLevels) {
  if (anyNull(pPred, pSrcDst, pDst)) return zvpStatusNullPointer;
  if (!isWithin(QP, 87) || bitDepth < 9 || bitDepth > 14) return zvpStatusOutOfRange;
  const auto qp = std::size_t(QP);
  const Wide4x4 residual = hasAC != 0 ? inverseTransform(scaledBy(pSrcDst, pDC, qp, pScaleLevels))
                                      : flatResidual(scaledDcBy(pSrcDst, pDC, qp, pScaleLevels));
  addResidual(residual, pPred, predStep, pDst, dstStep, (1 << bitDepth) - 1);
  return zvpStatusOk;
}

// ---- scaling lists ---------------------------------------------------------------------------------------------

zvpStatus zvpiGenScaleLevel4x4_H264_8u16s_C1(const u8* pScalingList, s16* pInvLevelScale, s16* pLevelScale, s32 qpRem) {
  if (anyNull(pScalingList, pInvLevelScale, pLevelScale)) return zvpStatusNullPointer;
  if (!isWithin(qpRem, 5)) return zvpStatusOutOfRange;
  const auto row = std::size_t(qpRem);
  for (std::size_t i = 0; i < 16; ++i) {  // scalar: once a picture at most
    const s32 weight = pScalingList[i], factor = FwdQuantTable_16s_0[row][i];
    const s32 quotient = (dt_0[std::size_t(weight)] * factor) >> 16;
    storeAs(pLevelScale + i, s16(quotient * weight > factor - weight ? quotient : quotient + 1));
    storeAs(pInvLevelScale + i, s16(weight * InvQuantTable_def_0[row][i]));
  }
  return zvpStatusOk;
}
