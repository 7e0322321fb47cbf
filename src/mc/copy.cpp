// Exports: blocks copied, averaged and residual-added at half-pel positions.
#include "entry.h"
#include "mc/copy_tables.h"

using namespace zvp;
using namespace zvp::mc;

namespace {

ZVP_INLINE zvpStatus run(CopyKernel kernel, const u8* src, s32 srcStep, u8* dst, s32 dstStep) {
  if (anyNull(src, dst)) return zvpStatusNullPointer;
  return kernel(src, srcStep, dst, dstStep);
}

template <int W, int H>
ZVP_INLINE zvpStatus average(const u8* src1, s32 src1Step, const u8* src2, s32 src2Step, u8* dst, s32 dstStep) {
  if (anyNull(src1, src2, dst)) return zvpStatusNullPointer;
  return averageBlocks<W, H>(src1, src1Step, src2, src2Step, dst, dstStep);
}

}  // namespace

zvpStatus zvpiCopy8x8_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep) {
  return run(copyBlock<8, 8, HalfPel::ff>, pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiCopy16x16_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep) {
  return run(copyBlock<16, 16, HalfPel::ff>, pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiCopy8x4HP_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 acc, s32 rounding) {
  return run(ownvc_Copy8x4HP_8u_C1R_0[copySlot(acc, rounding)], pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiCopy8x8HP_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 acc, s32 rounding) {
  return run(ownvc_Copy8x8HP_8u_C1R_0[copySlot(acc, rounding)], pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiCopy16x8HP_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 acc, s32 rounding) {
  return run(ownvc_Copy16x8HP_8u_C1R_0[copySlot(acc, rounding)], pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiCopy16x16HP_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 acc, s32 rounding) {
  return run(ownvc_Copy16x16HP_8u_C1R_0[copySlot(acc, rounding)], pSrc, srcStep, pDst, dstStep);
}

zvpStatus zvpiAverage8x8_8u_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, u8* pDst, s32 dstStep) {
  return average<8, 8>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}

zvpStatus zvpiAverage16x16_8u_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, u8* pDst, s32 dstStep) {
  return average<16, 16>(pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}

zvpStatus zvpiAverage8x8_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep) {
  return run(averageInto<8, 8, HalfPel::ff>, pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiAverage16x16_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep) {
  return run(averageInto<16, 16, HalfPel::ff>, pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiInterpolateAverage8x4_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep, s32 acc,
                                            s32 rounding) {
  return run(ownvc_InterpolateAverage8x4HP_8u_C1IR_0[copySlot(acc, rounding)], pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiInterpolateAverage8x8_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep, s32 acc,
                                            s32 rounding) {
  return run(ownvc_InterpolateAverage8x8HP_8u_C1IR_0[copySlot(acc, rounding)], pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiInterpolateAverage16x8_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep, s32 acc,
                                             s32 rounding) {
  return run(ownvc_InterpolateAverage16x8HP_8u_C1IR_0[copySlot(acc, rounding)], pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiInterpolateAverage16x16_8u_C1IR(const u8* pSrc, s32 srcStep, u8* pSrcDst, s32 srcDstStep, s32 acc,
                                              s32 rounding) {
  return run(ownvc_InterpolateAverage16x16HP_8u_C1IR_0[copySlot(acc, rounding)], pSrc, srcStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiAdd8x8_16s8u_C1IRS(const s16* pResidual, s32 residualStep, u8* pSrcDst, s32 srcDstStep) {
  if (anyNull(pResidual, pSrcDst)) return zvpStatusNullPointer;
  return addBlock<HalfPel::ff>(pResidual, residualStep, pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiAdd8x8HP_16s8u_C1RS(const s16* pResidual, s32 residualStep, const u8* pRef, s32 refStep, u8* pDst,
                                  s32 dstStep, s32 acc, s32 rounding) {
  if (anyNull(pResidual, pRef, pDst)) return zvpStatusNullPointer;
  return ownvc_Add8x8HP_16s8u_C1RS_0[copySlot(acc, rounding)](pResidual, residualStep, pRef, refStep, pDst, dstStep);
}

zvpStatus zvpiAddC8x8_16s8u_C1IR(s32 value, u8* pSrcDst, s32 srcDstStep) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  return addConstant(s16(value), pSrcDst, srcDstStep);
}
