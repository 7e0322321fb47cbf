// Weighted prediction: the entries. See weight_kernels.h for the arithmetic.
#include "entry.h"
#include "h264/weight_kernels.h"

using namespace zvp;
using weight::Operands;
using weight::weighAnyBlock;
using weight::weighBlock;
using weight::Weighting;

namespace {

static_assert(sizeof(WeightBlockRecord) == 56 && offsetof(WeightBlockRecord, pSrc1) == 0 &&
              offsetof(WeightBlockRecord, src1Step) == 8 && offsetof(WeightBlockRecord, pSrc2) == 16 &&
              offsetof(WeightBlockRecord, src2Step) == 24 && offsetof(WeightBlockRecord, pDst) == 32 &&
              offsetof(WeightBlockRecord, dstStep) == 40 && offsetof(WeightBlockRecord, roiSize) == 44 &&
              offsetof(WeightBlockRecord, bitDepth) == 52);

// Steps before the size. They are compared as unsigned, so that a negative step passes: required.
template <class... Steps>
ZVP_INLINE zvpStatus checkShape(zvpSize size, Steps... steps) {
  if (((u32(steps) < u32(size.width)) || ...)) return zvpStatusBadStep;
  constexpr u32 sizes = 1 << 2 | 1 << 4 | 1 << 8 | 1 << 16;
  const auto legal = [](s32 n) { return u32(n) <= 16 && (sizes >> n & 1) != 0; };
  return legal(size.width) && legal(size.height) ? zvpStatusOk : zvpStatusBadSize;
}

constexpr s32 highestSample(s32 bitDepth) { return wrapSub(wrapShl(1, bitDepth), 1); }

// ((s * weight + r) >> logWD) + offset, r being half of 1 << logWD unless logWD is 0.
constexpr Weighting oneDirection(s32 logWD, s32 weight, s32 offset, s32 highest) {
  return {weight, 0, logWD != 0 ? wrapShl(1, wrapSub(logWD, 1)) : 0, logWD & 31, offset, highest};
}
constexpr Weighting twoDirections(s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2, s32 highest) {
  return {weight1, weight2, wrapShl(1, logWD), wrapAdd(logWD, 1) & 31, wrapAdd(wrapAdd(offset1, offset2), 1) >> 1,
          highest};
}
constexpr Weighting implicit(s32 weight1, s32 weight2, s32 highest) { return {weight1, weight2, 32, 6, 0, highest}; }

Operands<u16> operands(const WeightBlockRecord& r) {
  return {r.pSrc1, r.src1Step, r.pSrc2, r.src2Step, r.pDst, r.dstStep, r.roiSize.width, r.roiSize.height};
}

bool nullRecord(const WeightBlockRecord* pRecord) {
  return pRecord == nullptr || anyNull(pRecord->pSrc1, pRecord->pSrc2, pRecord->pDst);
}

ZVP_INLINE zvpStatus check8u(const Operands<u8>& o) {
  if (anyNull(o.src1, o.src2, o.dst)) return zvpStatusNullPointer;
  return checkShape({o.width, o.height}, s32(o.src1Step), s32(o.src2Step), s32(o.dstStep));
}
ZVP_INLINE zvpStatus twoDirections8u(const Operands<u8>& o, const Weighting& weighting) {
  const zvpStatus status = check8u(o);
  if (status == zvpStatusOk) weighBlock<true>(o, weighting);
  return status;
}

zvpStatus twoDirections16u(const WeightBlockRecord* pRecord, const Weighting& weighting) {
  const WeightBlockRecord& r = *pRecord;
  const zvpStatus status = checkShape(r.roiSize, r.src1Step, r.src2Step, r.dstStep);
  if (status == zvpStatusOk) weighBlock<true>(operands(r), weighting);
  return status;
}

}  // namespace

zvpStatus zvpiUniDirWeightBlock_H264_8u_C1R(u8* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                            zvpSize roiSize) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  const zvpStatus status = checkShape(roiSize, srcDstStep);
  if (status == zvpStatusOk)
    weighBlock<false>({pSrcDst, srcDstStep, pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize.width, roiSize.height},
                      oneDirection(logWD, weight, offset, 255));
  return status;
}

zvpStatus zvpiUniDirWeightBlock_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                             zvpSize roiSize) {
  return zvpiUniDirWeightBlock_H264_8u_C1R(pSrcDst, srcDstStep, logWD, weight, offset, roiSize);
}

zvpStatus zvpiBiDirWeightBlock_H264_8u_P2P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 srcStep, s32 dstStep,
                                             s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2,
                                             zvpSize roiSize) {
  return twoDirections8u({pSrc1, srcStep, pSrc2, srcStep, pDst, dstStep, roiSize.width, roiSize.height},
                         twoDirections(logWD, weight1, offset1, weight2, offset2, 255));
}

zvpStatus zvpiBiDirWeightBlock_H264_8u_P3P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 src1Step, s32 src2Step,
                                             s32 dstStep, s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2,
                                             zvpSize roiSize) {
  return twoDirections8u({pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize.width, roiSize.height},
                         twoDirections(logWD, weight1, offset1, weight2, offset2, 255));
}

zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 srcStep,
                                                     s32 dstStep, s32 weight1, s32 weight2, zvpSize roiSize) {
  return twoDirections8u({pSrc1, srcStep, pSrc2, srcStep, pDst, dstStep, roiSize.width, roiSize.height},
                         implicit(weight1, weight2, 255));
}

// Neither steps nor size are checked; an empty size is Ok with nothing written: required.
zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 src1Step,
                                                     s32 src2Step, s32 dstStep, s32 weight1, s32 weight2,
                                                     zvpSize roiSize) {
  if (anyNull(pSrc1, pSrc2, pDst)) return zvpStatusNullPointer;
  weighAnyBlock<true>({pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, roiSize.width, roiSize.height},
                      implicit(weight1, weight2, 255));
  return zvpStatusOk;
}

// Here the rounding is 0 for any logWD below 1, negative ones too: required.
zvpStatus zvpiWeightedAverage_H264_8u_C1IR(const u8* pSrc, u8* pSrcDst, s32 srcDstStep, s32 weight1, s32 weight2,
                                           s32 logWD, s32 offset, zvpSize roiSize) {
  const s32 rounding = logWD < 1 ? 0 : wrapShl(1, logWD - 1);
  const Operands<u8> o = {pSrc, srcDstStep, pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize.width, roiSize.height};
  const zvpStatus status = check8u(o);
  if (status == zvpStatusOk) weighAnyBlock<true>(o, {weight1, weight2, rounding, logWD & 31, offset, 255});
  return status;
}

zvpStatus zvpiUnidirWeight_H264_16u_IP2P1R(u16* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                           zvpSize roiSize, s32 bitDepth) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  const zvpStatus status = checkShape(roiSize, srcDstStep);
  if (status == zvpStatusOk)
    weighBlock<false>({pSrcDst, srcDstStep, pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize.width, roiSize.height},
                      oneDirection(logWD, weight, offset, highestSample(bitDepth)));
  return status;
}

zvpStatus zvpiBidirWeight_H264_16u_P2P1R(const WeightBlockRecord* pRecord, s32 logWD, s32 weight1, s32 offset1,
                                         s32 weight2, s32 offset2) {
  if (nullRecord(pRecord)) return zvpStatusNullPointer;
  return twoDirections16u(pRecord,
                          twoDirections(logWD, weight1, offset1, weight2, offset2, highestSample(pRecord->bitDepth)));
}

zvpStatus zvpiBidirWeightImplicit_H264_16u_P2P1R(const WeightBlockRecord* pRecord, s32 weight1, s32 weight2) {
  if (nullRecord(pRecord)) return zvpStatusNullPointer;
  return twoDirections16u(pRecord, implicit(weight1, weight2, highestSample(pRecord->bitDepth)));
}

// No step is checked, and any width and height from 2 to 16 is carried out: required.
zvpStatus zvpiBidir_H264_16u_P2P1R(const WeightBlockRecord* pRecord) {
  if (nullRecord(pRecord)) return zvpStatusNullPointer;
  const Operands<u16> o = operands(*pRecord);
  if (o.width < 2 || o.width > 16 || o.height < 2 || o.height > 16) return zvpStatusBadSize;
  forEachPiece<8, 1>(o.width, [=](auto width, int x) {
    constexpr int bytes = 2 * width;
    for (int y = 0; y < o.height; ++y) {
      const auto s1 = simd::loadBytes<simd::U16<8>, bytes>(o.src1 + y * o.src1Step + x);
      const auto s2 = simd::loadBytes<simd::U16<8>, bytes>(o.src2 + y * o.src2Step + x);
      simd::storeBytes<bytes>(o.dst + y * o.dstStep + x, average(s1, s2));
    }
  });
  return zvpStatusOk;
}
