// Exports of forward quantization: of transformed blocks, and with the transform by the factors of flat matrices.
#include <algorithm>

#include "entry.h"
#include "h264/quantize_kernels.h"

using namespace zvp;

namespace {

// The largest level that these members produce.
constexpr s16 levelLimit = 2063;

constexpr bool isWithin(s32 qp, s32 most) { return qp >= 0 && qp <= most; }
// Flags that are told to be bytes.
constexpr bool lowByte(s32 flag) { return (flag & 255) != 0; }

void storeCounts(s8* numLevels, u8* lastCoeff, s32 nonZero, s32 last) {
  storeAs(numLevels, s8(nonZero));
  storeAs(lastCoeff, u8(last));
}

// Stores the levels and the counts. Those before the first one that is over the limit are done even then; what stands
// from there on stays. over and levels are given apart, since a member tests before the signs are on, another behind.
zvpStatus storeLevels(s16* dst, Block4x4 levels, Block4x4 tested, const s16* scan, s8* numLevels, u8* lastCoeff) {
  using namespace simd;
  const auto limit = splat<S16<8>>(levelLimit);
  const u32 over = signBits(packSaturateS8(greater(tested.rows01, limit), greater(tested.rows23, limit)));
  if (over == 0) {
    storeBlock4x4(dst, levels);
    const LevelCount count = countLevels(levels, scan);
    storeCounts(numLevels, lastCoeff, count.withDcAsSign(), count.last);
    return zvpStatusOk;
  }
  std::array<s16, 16> values;
  storeBlock4x4(values.data(), levels);
  s32 nonZero = 0, last = 0;
  for (int i = 0; i < std::countr_zero(over); ++i) {
    const s16 value = values[std::size_t(i)];
    storeAs(dst + i, value);
    if (value == 0) continue;
    ++nonZero;
    last = std::max<s32>(last, loadAs<s16>(scan + i));
  }
  storeCounts(numLevels, lastCoeff, nonZero, last);
  return zvpStatusValueTooLarge;
}

// Of coefficients that are transformed already. Factors and roundings are the default ones without a table.
template <class Coefficient, class Level, class Factor>
zvpStatus quantize(const Coefficient* src, Level* dst, s32* numNonZero, s32* lastCoeff, const Factor* table,
                   const Factor* defaults, const s16* scan, std::size_t qp6, s32 isIntra) {
  const std::size_t entry = qp6 + (isIntra != 0 ? 1 : 0);
  const bool given = table != nullptr;
  const Quantizer q = {(given ? zvpH264QuantResid_RoundValDef_32s : zvpH264QuantResid_RoundValGiven_32s)[entry],
                       int(qp6) + (given ? 11 : 15)};
  const auto levels = levelsOf<Level>(loadElements(src), given ? table : defaults, q);
  storeElements(dst, levels);
  const LevelCount count = countLevels(levels, scan);
  storeAs(numNonZero, count.nonZero);
  storeAs(lastCoeff, count.last);
  return zvpStatusOk;
}

// Required: these members do not refuse a negative QP. It acts as 0, so that no table is read before its start.
constexpr const std::array<u8, 2>& qpParts(s32 qp) { return zvpH264QpDevide[std::size_t(std::max(qp, 0))]; }

}  // namespace

zvpStatus zvpiQuantizeResidual4x4Fwd_H264_16s_C1(const s16* pSrc, s16* pDst, s32* pNumNonZero, s32* pLastCoeff,
                                                 const s16* pQuantTable, const s16* pScanOrder, s32 QP, s32 isIntra) {
  if (anyNull(pSrc, pDst, pNumNonZero, pLastCoeff, pScanOrder)) return zvpStatusNullPointer;
  if (QP > 51) return zvpStatusOutOfRange;
  const auto [qp6, qpRem] = qpParts(QP);
  return quantize(pSrc, pDst, pNumNonZero, pLastCoeff, pQuantTable, zvpH264FwdQuant_16s[qpRem].data(), pScanOrder, qp6,
                  isIntra);
}
zvpStatus zvpiQuantizeResidual4x4Fwd_H264_32s_C1(const s32* pSrc, s32* pDst, s32* pNumNonZero, s32* pLastCoeff,
                                                 const s32* pQuantTable, const s16* pScanOrder, s32 QP, s32 isIntra) {
  if (anyNull(pSrc, pDst, pNumNonZero, pLastCoeff, pScanOrder)) return zvpStatusNullPointer;
  if (QP > 87) return zvpStatusOutOfRange;
  const auto [qp6, qpRem] = qpParts(QP);
  return quantize(pSrc, pDst, pNumNonZero, pLastCoeff, pQuantTable, zvpH264FwdQuant_32s[qpRem].data(), pScanOrder, qp6,
                  isIntra);
}
zvpStatus zvpiQuantizeResidual4x4Fwd_H264_16s32s_C1(const s16* pSrc, s32* pDst, s32* pNumNonZero, s32* pLastCoeff,
                                                    const s16* pQuantTable, const s16* pScanOrder, s32 QP,
                                                    s32 isIntra) {
  if (anyNull(pSrc, pDst, pNumNonZero, pLastCoeff, pQuantTable, pScanOrder)) return zvpStatusNullPointer;
  if (!isWithin(QP, 51)) return zvpStatusOutOfRange;
  return quantize(pSrc, pDst, pNumNonZero, pLastCoeff, pQuantTable, pQuantTable, pScanOrder, qpParts(QP)[0], isIntra);
}

zvpStatus zvpiTransformQuantResidual_H264_16s_C1I(s16* pSrcDst, s32 QP, s8* pNumLevels, s32 isIntra,
                                                  const s16* pScanOrder, u8* pLastCoeff) {
  if (anyNull(pSrcDst, pNumLevels, pScanOrder, pLastCoeff)) return zvpStatusNullPointer;
  if (!isWithin(QP, 51)) return zvpStatusOutOfRange;
  const Block4x4 coefficients = forwardTransform(loadBlock4x4(pSrcDst));
  storeBlock4x4(pSrcDst, coefficients);
  const Block4x4 levels = levelsOf<s16>(coefficients, FwdQuantTable_16s_0[std::size_t(QP % 6)].data(),
                                        quantizer(QP / 6 + 15, lowByte(isIntra)));
  // Required: the signs are on when the limit is tested, so that a negative level never exceeds it.
  return storeLevels(pSrcDst, levels, levels, pScanOrder, pNumLevels, pLastCoeff);
}

zvpStatus zvpiTransformQuantLumaDC_H264_16s_C1I(s16* pDC, s16* pTBlock, s32 QP, s8* pNumLevels, s32 needTransform,
                                                const s16* pScanOrder, u8* pLastCoeff) {
  if (anyNull(pDC, pTBlock, pNumLevels, pScanOrder, pLastCoeff)) return zvpStatusNullPointer;
  if (!isWithin(QP, 51)) return zvpStatusOutOfRange;
  if (lowByte(needTransform)) storeBlock4x4(pTBlock, halvedHadamardTransform(loadBlock4x4(pDC)));
  const Block4x4 coefficients = loadBlock4x4(pTBlock), signs = signsOf(coefficients);
  const Block4x4 magnitudes = narrowed(levelMagnitudes(
      coefficients, signs, splatScale(s16(FwdQuantTable[std::size_t(QP % 6)][0])), quantizer(QP / 6 + 16, true)));
  // Required: the limit is tested before the signs are on.
  return storeLevels(pDC, withSigns(magnitudes, signs), magnitudes, pScanOrder, pNumLevels, pLastCoeff);
}

zvpStatus zvpiTransformQuantChromaDC_H264_16s_C1I(s16* pDC, s16* pTBlock, s32 QP, s8* pNumLevels, s32 isIntra,
                                                  s32 needTransform) {
  if (anyNull(pDC, pTBlock, pNumLevels)) return zvpStatusNullPointer;
  if (!isWithin(QP, 39)) return zvpStatusOutOfRange;
  if (lowByte(needTransform)) storeDc(pTBlock, hadamardTransform(loadDc<4>(pDC)));
  LevelCount count;
  const bool fits = quantizeDc<4>(pTBlock, pDC, FwdQuantTable[std::size_t(QP % 6)][0],
                                  quantizer(QP / 6 + 16, lowByte(isIntra)), levelLimit, count);
  storeAs(pNumLevels, s8(fits ? count.withDcAsSign() : count.nonZero));
  return fits ? zvpStatusOk : zvpStatusValueTooLarge;
}
