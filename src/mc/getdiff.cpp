// Exports: differences between a current block and a half-pel prediction.
#include "entry.h"
#include "mc/getdiff_tables.h"

using namespace zvp;
using namespace zvp::mc;

namespace {

// One reference, with an optional predictor.
ZVP_INLINE zvpStatus one(const auto& table, const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep,
                         s16* pDstDiff, s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                         s32 roundControl) {
  if (anyNull(pSrcCur, pSrcRef, pDstDiff)) return zvpStatusNullPointer;
  return table[mePSlot(mcType, pDstPredictor != nullptr)]({pSrcRef, srcRefStep}, {pSrcCur, srcCurStep},
                                                          rowsOf(pDstDiff, dstDiffStep),
                                                          rowsOf(pDstPredictor, dstPredictorStep), roundControl);
}

// Two references.
ZVP_INLINE zvpStatus two(const auto& table, const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF,
                         s32 mcTypeF, const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff, s32 dstDiffStep,
                         s32 roundControl) {
  if (anyNull(pSrcCur, pSrcRefF, pSrcRefB, pDstDiff)) return zvpStatusNullPointer;
  return table[pairSlot(mcTypeF, mcTypeB)]({pSrcRefF, srcRefStepF}, {pSrcRefB, srcRefStepB}, {pSrcCur, srcCurStep},
                                           rowsOf(pDstDiff, dstDiffStep), roundControl);
}

// Interleaved chroma.
ZVP_INLINE zvpStatus oneToPlanes(const auto& table, const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef,
                                 s32 srcRefStep, s16* pDstDiffU, s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep,
                                 s32 mcType, s32 roundControl) {
  if (anyNull(pSrcCur, pSrcRef, pDstDiffU, pDstDiffV)) return zvpStatusNullPointer;
  return table[mePNv12Slot(mcType)]({pSrcRef, srcRefStep}, {pSrcCur, srcCurStep}, rowsOf(pDstDiffU, dstDiffUStep),
                                    rowsOf(pDstDiffV, dstDiffVStep), roundControl);
}
ZVP_INLINE zvpStatus twoToPlanes(const auto& table, const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF,
                                 s32 srcRefStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB,
                                 s16* pDstDiffU, s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep, s32 roundControl) {
  if (anyNull(pSrcCur, pSrcRefF, pSrcRefB, pDstDiffU, pDstDiffV)) return zvpStatusNullPointer;
  return table[pairSlot(mcTypeF, mcTypeB)]({pSrcRefF, srcRefStepF}, {pSrcRefB, srcRefStepB}, {pSrcCur, srcCurStep},
                                           rowsOf(pDstDiffU, dstDiffUStep), rowsOf(pDstDiffV, dstDiffVStep),
                                           roundControl);
}

}  // namespace

zvpStatus zvpiGetDiff16x16_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                    s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                                    s32 roundControl) {
  return one(GetDiff16x16FnTbl_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiff, dstDiffStep, pDstPredictor,
             dstPredictorStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff16x16B_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF,
                                     s32 mcTypeF, const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff,
                                     s32 dstDiffStep, s32 roundControl) {
  return two(GetDiff16x16BFnTbl_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB, srcRefStepB,
             mcTypeB, pDstDiff, dstDiffStep, roundControl);
}

zvpStatus zvpiGetDiff16x8_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                   s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                                   s32 roundControl) {
  return one(GetDiff16x8FnTbl_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiff, dstDiffStep, pDstPredictor,
             dstPredictorStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff16x8B_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF, s32 mcTypeF,
                                    const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff, s32 dstDiffStep,
                                    s32 roundControl) {
  return two(GetDiff16x8BFnTbl_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB, srcRefStepB,
             mcTypeB, pDstDiff, dstDiffStep, roundControl);
}

zvpStatus zvpiGetDiff8x16_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                   s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                                   s32 roundControl) {
  return one(GetDiff8x16FnTbl_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiff, dstDiffStep, pDstPredictor,
             dstPredictorStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff8x16B_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF, s32 mcTypeF,
                                    const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff, s32 dstDiffStep,
                                    s32 roundControl) {
  return two(GetDiff8x16BFnTbl_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB, srcRefStepB,
             mcTypeB, pDstDiff, dstDiffStep, roundControl);
}

zvpStatus zvpiGetDiff8x8_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                  s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                                  s32 roundControl) {
  return one(GetDiff8x8FnTbl_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiff, dstDiffStep, pDstPredictor,
             dstPredictorStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff8x8B_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF, s32 mcTypeF,
                                   const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff, s32 dstDiffStep,
                                   s32 roundControl) {
  return two(GetDiff8x8BFnTbl_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB, srcRefStepB, mcTypeB,
             pDstDiff, dstDiffStep, roundControl);
}

zvpStatus zvpiGetDiff8x4_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                  s32 dstDiffStep, s16* pDstPredictor, s32 dstPredictorStep, s32 mcType,
                                  s32 roundControl) {
  return one(GetDiff8x4FnTbl_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiff, dstDiffStep, pDstPredictor,
             dstPredictorStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff8x4B_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF, s32 mcTypeF,
                                   const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiff, s32 dstDiffStep,
                                   s32 roundControl) {
  return two(GetDiff8x4BFnTbl_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB, srcRefStepB, mcTypeB,
             pDstDiff, dstDiffStep, roundControl);
}

zvpStatus zvpiGetDiff8x8_8u16s_C2P2(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep,
                                    s16* pDstDiffU, s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep, s32 mcType,
                                    s32 roundControl) {
  return oneToPlanes(GetDiff8x8FnTblNV12_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiffU, dstDiffUStep,
                     pDstDiffV, dstDiffVStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff8x8B_8u16s_C2P2(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF,
                                     s32 mcTypeF, const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiffU,
                                     s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep, s32 roundControl) {
  return twoToPlanes(GetDiff8x8BFnTblNV12_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB,
                     srcRefStepB, mcTypeB, pDstDiffU, dstDiffUStep, pDstDiffV, dstDiffVStep, roundControl);
}

zvpStatus zvpiGetDiff8x4_8u16s_C2P2(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep,
                                    s16* pDstDiffU, s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep, s32 mcType,
                                    s32 roundControl) {
  return oneToPlanes(GetDiff8x4FnTblNV12_pxmx, pSrcCur, srcCurStep, pSrcRef, srcRefStep, pDstDiffU, dstDiffUStep,
                     pDstDiffV, dstDiffVStep, mcType, roundControl);
}

zvpStatus zvpiGetDiff8x4B_8u16s_C2P2(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRefF, s32 srcRefStepF,
                                     s32 mcTypeF, const u8* pSrcRefB, s32 srcRefStepB, s32 mcTypeB, s16* pDstDiffU,
                                     s32 dstDiffUStep, s16* pDstDiffV, s32 dstDiffVStep, s32 roundControl) {
  return twoToPlanes(GetDiff8x4BFnTblNV12_pxmx, pSrcCur, srcCurStep, pSrcRefF, srcRefStepF, mcTypeF, pSrcRefB,
                     srcRefStepB, mcTypeB, pDstDiffU, dstDiffUStep, pDstDiffV, dstDiffVStep, roundControl);
}

zvpStatus zvpiGetDiff4x4_8u16s_C1(const u8* pSrcCur, s32 srcCurStep, const u8* pSrcRef, s32 srcRefStep, s16* pDstDiff,
                                  s32 dstDiffStep) {
  if (anyNull(pSrcCur, pSrcRef, pDstDiff)) return zvpStatusNullPointer;
  return subtract<4, 4>(Prediction<4, HalfPel::ff>({pSrcRef, srcRefStep}), {pSrcCur, srcCurStep},
                        Difference<4>{rowsOf(pDstDiff, dstDiffStep)});
}
