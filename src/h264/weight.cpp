// Weighted prediction: the entries. See weight_kernels.h for the arithmetic.
#include "entry.h"
#include "h264/weight_kernels.h"

using namespace zvp;
using weight::isLegalLength;
using weight::Operands;
using weight::SharedStep;
using weight::TwoSteps;
using weight::weighBlock;
using weight::Weighting;

namespace {

static_assert(sizeof(WeightBlockRecord) == 56 && offsetof(WeightBlockRecord, pSrc1) == 0 &&
              offsetof(WeightBlockRecord, src1Step) == 8 && offsetof(WeightBlockRecord, pSrc2) == 16 &&
              offsetof(WeightBlockRecord, src2Step) == 24 && offsetof(WeightBlockRecord, pDst) == 32 &&
              offsetof(WeightBlockRecord, dstStep) == 40 && offsetof(WeightBlockRecord, roiSize) == 44 &&
              offsetof(WeightBlockRecord, bitDepth) == 52);

// Steps before the size. They are compared as unsigned, so that a negative step passes: required.
template <class... Steps> ZVP_INLINE bool stepsReach(s32 width, Steps... steps) {
  return ((u32(steps) >= u32(width)) && ...);
}
template <class... Steps> zvpStatus checkShape(zvpSize size, Steps... steps) {
  if (!stepsReach(size.width, steps...)) return zvpStatusBadStep;
  return isLegalLength(size.width) && isLegalLength(size.height) ? zvpStatusOk : zvpStatusBadSize;
}

constexpr s32 highestSample(s32 bitDepth) { return wrapSub(wrapShl(1, bitDepth), 1); }

// ((s * weight + r) >> logWD) + offset, r being half of 1 << logWD unless logWD is 0.
constexpr Weighting oneDirection(s32 logWD, s32 weight, s32 offset, s32 highest) {
  return {weight, 0, logWD != 0 ? wrapShl(1, wrapSub(logWD, 1)) : 0, logWD & 31, offset, highest};
}
constexpr s32 meanOffset(s32 offset1, s32 offset2) { return wrapAdd(wrapAdd(offset1, offset2), 1) >> 1; }
constexpr Weighting twoDirections(s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2, s32 highest) {
  return {weight1, weight2, wrapShl(1, logWD), wrapAdd(logWD, 1) & 31, meanOffset(offset1, offset2), highest};
}
constexpr Weighting implicit(s32 weight1, s32 weight2, s32 highest) { return {weight1, weight2, 32, 6, 0, highest}; }

Operands<u16> operands(const WeightBlockRecord& r) {
  return {r.pSrc1, r.src1Step, r.pSrc2, r.src2Step, r.pDst, r.dstStep};
}

bool nullRecord(const WeightBlockRecord* pRecord) {
  return pRecord == nullptr || anyNull(pRecord->pSrc1, pRecord->pSrc2, pRecord->pDst);
}

template <class T> zvpStatus oneDirection(T* srcDst, s32 step, zvpSize size, const Weighting& weighting) {
  if (anyNull(srcDst)) return zvpStatusNullPointer;
  const zvpStatus status = checkShape(size, step);
  if (status == zvpStatusOk) weighBlock<false>({srcDst, step, srcDst, step, srcDst, step}, size, weighting);
  return status;
}

// The 8-bit members do ordinary calls at once, those whose result has a step of a row or more among them. Any other, a
// refused one too, goes the way in full, with scalar arguments, so that an ordinary call passes it by without a frame.

[[gnu::noinline]] zvpStatus oneDirectionInFull(u8* srcDst, s32 step, s32 logWD, s32 weight, s32 offset, zvpSize size) {
  return oneDirection(srcDst, step, size, oneDirection(logWD, weight, offset, 255));
}

// What the members of two directions differ in. Those of implicit weights have a logWD of 5 and no offsets.
enum class Member { Explicit, Implicit, ImplicitUnchecked, Average };
constexpr bool isImplicit(Member m) { return m == Member::Implicit || m == Member::ImplicitUnchecked; }
constexpr s32 noOffset = 0;

// What lies on the stack stays there until it is needed: these pass on references.
template <Member M> using Weight1 = std::conditional_t<M == Member::Explicit, const s32&, s32>;

template <Member M>
[[gnu::noinline]] zvpStatus twoDirectionsInFull(const u8* src1, const u8* src2, u8* dst, s32 src1Step, s32 src2Step,
                                                s32 dstStep, s32 logWD, Weight1<M> weight1, const s32& offset1,
                                                const s32& weight2, const s32& offset2, const zvpSize& size) {
  if (anyNull(src1, src2, dst)) return zvpStatusNullPointer;
  if constexpr (M != Member::ImplicitUnchecked)
    if (const zvpStatus status = checkShape(size, src1Step, src2Step, dstStep); status != zvpStatusOk) return status;
  Weighting w = twoDirections(logWD, weight1, offset1, weight2, offset2, 255);
  if constexpr (M == Member::Average)  // the rounding is 0 for any logWD below 1, negative ones too: required
    w = {weight1, weight2, logWD < 1 ? 0 : wrapShl(1, logWD - 1), logWD & 31, offset1, 255};
  weighBlock<true>({src1, src1Step, src2, src2Step, dst, dstStep}, size, w);
  return zvpStatusOk;
}

template <Member M, class Steps>
ZVP_INLINE zvpStatus twoDirections(const u8* src1, const u8* src2, u8* dst, Steps srcSteps, s32 dstStep, s32 logWD,
                                   Weight1<M> weight1, const s32& offset1, const s32& weight2, const s32& offset2,
                                   const zvpSize& size) {
  const auto carriedOut = [&](const auto& op) __attribute__((always_inline)) {
    const auto columns = [&](auto width, auto height) __attribute__((always_inline)) {
      weight::ordinaryColumns<width>(src1, src2, dst, srcSteps, dstStep, height, op);
    };
    return weight::atOrdinaryShape(size.width, size.height, columns);
  };
  if (!anyNull(src1, src2, dst) && dstStep >= size.width &&
      (M == Member::ImplicitUnchecked || stepsReach(size.width, srcSteps.first(), srcSteps.second()))) {
    if constexpr (isImplicit(M)) {
      if (weight::areImplicitWeights(weight1, weight2) &&
          carriedOut(weight::Sixtyfourths{simd::splat<simd::S16<8>>(s16(weight1))}))
        return zvpStatusOk;
    } else if (weight::areOrdinaryWeights(weight1, weight2) &&
               (M != Member::Average || weight::isOrdinaryOffset(offset1))) {
      const s32 rounded = M == Member::Average ? 2 * offset1 + 1 : wrapAdd(wrapAdd(offset1, offset2), 1) | 1;
      const s32 shift = M == Member::Average ? logWD : wrapAdd(logWD, 1);
      if (weight::isOrdinaryRounded(rounded) && weight::isOrdinaryShift(shift)) {
        rereadMemory();  // the weights: kept until here they would take registers that are saved first
        if (carriedOut(weight::ordinaryFactors(weight1, weight2, rounded, shift))) return zvpStatusOk;
      }
    }
  }
  return twoDirectionsInFull<M>(src1, src2, dst, s32(srcSteps.first()), s32(srcSteps.second()), dstStep, logWD, weight1,
                                offset1, weight2, offset2, size);
}

zvpStatus twoDirections16u(const WeightBlockRecord* pRecord, const Weighting& weighting) {
  const WeightBlockRecord& r = *pRecord;
  const zvpStatus status = checkShape(r.roiSize, r.src1Step, r.src2Step, r.dstStep);
  if (status == zvpStatusOk) weighBlock<true>(operands(r), r.roiSize, weighting);
  return status;
}

}  // namespace

zvpStatus zvpiUniDirWeightBlock_H264_8u_C1R(u8* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                            zvpSize roiSize) {
  if (!anyNull(pSrcDst) && srcDstStep >= roiSize.width && weight::areOrdinary(weight, offset) &&
      weight::isOrdinaryShift(logWD)) {
    const auto op = weight::ordinaryFactors(weight, 0, 2 * offset + 1, logWD);
    const auto columns = [=](auto width, auto height) __attribute__((always_inline)) {
      weight::ordinaryColumns<width>(pSrcDst, srcDstStep, height, op);
    };
    if (weight::atOrdinaryShape(roiSize.width, roiSize.height, columns)) return zvpStatusOk;
  }
  return oneDirectionInFull(pSrcDst, srcDstStep, logWD, weight, offset, roiSize);
}

zvpStatus zvpiUniDirWeightBlock_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                             zvpSize roiSize) {
  return zvpiUniDirWeightBlock_H264_8u_C1R(pSrcDst, srcDstStep, logWD, weight, offset, roiSize);
}

zvpStatus zvpiBiDirWeightBlock_H264_8u_P2P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 srcStep, s32 dstStep,
                                             s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2,
                                             zvpSize roiSize) {
  return twoDirections<Member::Explicit>(pSrc1, pSrc2, pDst, SharedStep{srcStep}, dstStep, logWD, weight1, offset1,
                                         weight2, offset2, roiSize);
}

zvpStatus zvpiBiDirWeightBlock_H264_8u_P3P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 src1Step, s32 src2Step,
                                             s32 dstStep, s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2,
                                             zvpSize roiSize) {
  return twoDirections<Member::Explicit>(pSrc1, pSrc2, pDst, TwoSteps{src1Step, src2Step}, dstStep, logWD, weight1,
                                         offset1, weight2, offset2, roiSize);
}

zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 srcStep,
                                                     s32 dstStep, s32 weight1, s32 weight2, zvpSize roiSize) {
  return twoDirections<Member::Implicit>(pSrc1, pSrc2, pDst, SharedStep{srcStep}, dstStep, 5, weight1, noOffset,
                                         weight2, noOffset, roiSize);
}

// Neither steps nor size are checked; an empty size is Ok with nothing written: required.
zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, s32 src1Step,
                                                     s32 src2Step, s32 dstStep, s32 weight1, s32 weight2,
                                                     zvpSize roiSize) {
  return twoDirections<Member::ImplicitUnchecked>(pSrc1, pSrc2, pDst, TwoSteps{src1Step, src2Step}, dstStep, 5, weight1,
                                                  noOffset, weight2, noOffset, roiSize);
}

zvpStatus zvpiWeightedAverage_H264_8u_C1IR(const u8* pSrc, u8* pSrcDst, s32 srcDstStep, s32 weight1, s32 weight2,
                                           s32 logWD, s32 offset, zvpSize roiSize) {
  return twoDirections<Member::Average>(pSrc, pSrcDst, pSrcDst, SharedStep{srcDstStep}, srcDstStep, logWD, weight1,
                                        offset, weight2, noOffset, roiSize);
}

zvpStatus zvpiUnidirWeight_H264_16u_IP2P1R(u16* pSrcDst, s32 srcDstStep, s32 logWD, s32 weight, s32 offset,
                                           zvpSize roiSize, s32 bitDepth) {
  return oneDirection(pSrcDst, srcDstStep, roiSize, oneDirection(logWD, weight, offset, highestSample(bitDepth)));
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
  const auto [columns, rows] = pRecord->roiSize;
  if (columns < 2 || columns > 16 || rows < 2 || rows > 16) return zvpStatusBadSize;
  if (!weight::rowsApart(columns, o.dstStep)) {
    weight::weighSerially(o, pRecord->roiSize, {1, 1, 1, 1, 0, 65535});
    return zvpStatusOk;
  }
  forEachPiece<8, 1>(columns, [o, height = rows](auto width, int x) {
    constexpr int bytes = 2 * width;
    for (int y = 0; y < height; ++y) {
      const auto s1 = simd::loadBytes<simd::U16<8>, bytes>(o.src1 + y * o.src1Step + x);
      const auto s2 = simd::loadBytes<simd::U16<8>, bytes>(o.src2 + y * o.src2Step + x);
      simd::storeBytes<bytes>(o.dst + y * o.dstStep + x, average(s1, s2));
    }
  });
  return zvpStatusOk;
}
