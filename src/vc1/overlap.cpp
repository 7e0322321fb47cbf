#include "entry.h"
#include "vc1/overlap_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

namespace {

// edgeFlag has two bits for each eight lines; either enables them.
bool isEnabled(u32 edgeFlag, int group) { return (edgeFlag >> (2 * group) & 3) != 0; }

}  // namespace

zvpStatus zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(s16* pSrcLeft, s32 srcLeftStep, s16* pSrcRight, s32 srcRightStep,
                                                  u8* pDst, s32 dstStep, u32 fieldMode, u32 edgeFlag) {
  if (anyNull(pSrcLeft, pSrcRight, pDst)) return zvpStatusNullPointer;
  const Source left = {pSrcLeft, srcLeftStep}, right = {pSrcRight, srcRightStep};
  const std::ptrdiff_t step = dstStep;
  for (int group = 0; group < 2; ++group) {
    if (!isEnabled(edgeFlag, group)) continue;
    if (fieldMode != 0)
      smoothVerticalEdge(left.down(group).everyOtherRow(), right.down(group).everyOtherRow(), pDst + group * step,
                         2 * step);
    else
      smoothVerticalEdge(left.down(8 * group), right.down(8 * group), pDst + 8 * group * step, step);
  }
  return zvpStatusOk;
}

zvpStatus zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(s16* pSrcUpper, s32 srcUpperStep, s16* pSrcBottom, s32 srcBottomStep,
                                                  u8* pDst, s32 dstStep, u32 edgeFlag) {
  if (anyNull(pSrcUpper, pSrcBottom, pDst)) return zvpStatusNullPointer;
  for (int group = 0; group < 2; ++group)
    if (isEnabled(edgeFlag, group))
      smoothHorizontalEdge({pSrcUpper + 8 * group, srcUpperStep}, {pSrcBottom + 8 * group, srcBottomStep},
                           pDst + 8 * group, dstStep);
  return zvpStatusOk;
}

zvpStatus zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(s16* pSrcLeft, s32 srcLeftStep, s16* pSrcRight, s32 srcRightStep,
                                                    u8* pDst, s32 dstStep) {
  if (anyNull(pSrcLeft, pSrcRight, pDst)) return zvpStatusNullPointer;
  smoothVerticalEdge({pSrcLeft, srcLeftStep}, {pSrcRight, srcRightStep}, pDst, dstStep);
  return zvpStatusOk;
}

zvpStatus zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R(s16* pSrcUpper, s32 srcUpperStep, s16* pSrcBottom,
                                                    s32 srcBottomStep, u8* pDst, s32 dstStep) {
  if (anyNull(pSrcUpper, pSrcBottom, pDst)) return zvpStatusNullPointer;
  smoothHorizontalEdge({pSrcUpper, srcUpperStep}, {pSrcBottom, srcBottomStep}, pDst, dstStep);
  return zvpStatusOk;
}

zvpStatus zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(s16* pSrcLeftU, s32 srcLeftStepU, s16* pSrcRightU,
                                                      s32 srcRightStepU, s16* pSrcLeftV, s32 srcLeftStepV,
                                                      s16* pSrcRightV, s32 srcRightStepV, u8* pDst, s32 dstStep) {
  if (anyNull(pSrcLeftU, pSrcRightU, pSrcLeftV, pSrcRightV, pDst)) return zvpStatusNullPointer;
  smoothVerticalEdge({pSrcLeftU, srcLeftStepU}, {pSrcRightU, srcRightStepU}, {pSrcLeftV, srcLeftStepV},
                     {pSrcRightV, srcRightStepV}, pDst, dstStep);
  return zvpStatusOk;
}

zvpStatus zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(s16* pSrcUpperU, s32 srcUpperStepU, s16* pSrcBottomU,
                                                      s32 srcBottomStepU, s16* pSrcUpperV, s32 srcUpperStepV,
                                                      s16* pSrcBottomV, s32 srcBottomStepV, u8* pDst, s32 dstStep) {
  if (anyNull(pSrcUpperU, pSrcBottomU, pSrcUpperV, pSrcBottomV, pDst)) return zvpStatusNullPointer;
  smoothHorizontalEdge({pSrcUpperU, srcUpperStepU}, {pSrcBottomU, srcBottomStepU}, {pSrcUpperV, srcUpperStepV},
                       {pSrcBottomV, srcBottomStepV}, pDst, dstStep);
  return zvpStatusOk;
}
