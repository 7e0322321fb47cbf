// Exports: motion compensation with a residual.
#include "entry.h"
#include "mc/mc_tables.h"

using namespace zvp;
using namespace zvp::mc;

namespace {

// One reference, one residual plane; the kernel that table gives for the types takes the height, if it takes one, from
// Height.
template <int... Height>
ZVP_INLINE zvpStatus one(const auto& table, u32 slot, const u8* pSrcRef, s32 srcStep, const s16* pSrcYData,
                         s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  if (anyNull(pSrcRef, pSrcYData, pDst)) return zvpStatusNullPointer;
  return table[slot]({pSrcRef, srcStep}, {rowsOf(pSrcYData, srcYDataStep)}, {pDst, dstStep}, Height..., roundControl);
}

// Two references.
template <int... Height>
ZVP_INLINE zvpStatus two(const auto& table, u32 slot, const u8* pSrcRefF, s32 srcStepF, const u8* pSrcRefB,
                         s32 srcStepB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                         s32 roundControl) {
  if (anyNull(pSrcRefF, pSrcRefB, pSrcYData, pDst)) return zvpStatusNullPointer;
  return table[slot]({pSrcRefF, srcStepF}, {pSrcRefB, srcStepB}, {rowsOf(pSrcYData, srcYDataStep)}, {pDst, dstStep},
                     Height..., roundControl);
}

// Interleaved chroma with a residual plane for each component.
template <int Height>
ZVP_INLINE zvpStatus oneOfPlanes(const u8* pSrcRef, s32 srcStep, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep,
                                 u8* pDst, s32 dstStep, s32 mcType, s32 roundControl) {
  if (anyNull(pSrcRef, pSrcU, pSrcV, pDst)) return zvpStatusNullPointer;
  return MC8xHFunctionNV12Table_pxmx[mcSlot(mcType, roundControl)](
      {pSrcRef, srcStep}, {rowsOf(pSrcU, srcUVStep), rowsOf(pSrcV, srcUVStep)}, {pDst, dstStep}, Height, roundControl);
}
template <int Height>
ZVP_INLINE zvpStatus twoOfPlanes(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                                 s32 mcTypeB, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep, u8* pDst, s32 dstStep,
                                 s32 roundControl) {
  if (anyNull(pSrcRefF, pSrcRefB, pSrcU, pSrcV, pDst)) return zvpStatusNullPointer;
  return MC8xHBFunctionNV12Table_pxmx[mcBSlot(mcTypeF, mcTypeB, roundControl)](
      {pSrcRefF, srcStepF}, {pSrcRefB, srcStepB}, {rowsOf(pSrcU, srcUVStep), rowsOf(pSrcV, srcUVStep)}, {pDst, dstStep},
      Height, roundControl);
}

}  // namespace

zvpStatus zvpiMC16x16_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst,
                            s32 dstStep, s32 mcType, s32 roundControl) {
  return one<16>(MC16xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                 dstStep, roundControl);
}

zvpStatus zvpiMC16x16B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                             s32 mcTypeB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                             s32 roundControl) {
  return two<16>(MC16xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                 pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC16x8_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst,
                           s32 dstStep, s32 mcType, s32 roundControl) {
  return one<8>(MC16xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                dstStep, roundControl);
}

zvpStatus zvpiMC16x8B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                            s32 mcTypeB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                            s32 roundControl) {
  return two<8>(MC16xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC16x4_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst,
                           s32 dstStep, s32 mcType, s32 roundControl) {
  return one<4>(MC16xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                dstStep, roundControl);
}

zvpStatus zvpiMC16x4B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                            s32 mcTypeB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                            s32 roundControl) {
  return two<4>(MC16xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC8x16_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst,
                           s32 dstStep, s32 mcType, s32 roundControl) {
  return one<16>(MC8xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                 dstStep, roundControl);
}

zvpStatus zvpiMC8x16B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                            s32 mcTypeB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                            s32 roundControl) {
  return two<16>(MC8xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                 pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC8x8_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one<8>(MC8xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                dstStep, roundControl);
}

zvpStatus zvpiMC8x8B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two<8>(MC8xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC8x4_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one<4>(MC8xHFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                dstStep, roundControl);
}

zvpStatus zvpiMC8x4B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two<4>(MC8xHBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC2x2_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one(MC2x2FnTbl, mclSlot(mcType), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC2x2B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two(MC2x2BFnTbl, pairSlot(mcTypeF, mcTypeB), pSrcRefF, srcStepF, pSrcRefB, srcStepB, pSrcYData, srcYDataStep,
             pDst, dstStep, roundControl);
}

zvpStatus zvpiMC2x4_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one(MC2x4FnTbl, mclSlot(mcType), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC2x4B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two(MC2x4BFnTbl, pairSlot(mcTypeF, mcTypeB), pSrcRefF, srcStepF, pSrcRefB, srcStepB, pSrcYData, srcYDataStep,
             pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x2_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one(MC4x2FnTbl, mclSlot(mcType), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x2B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two(MC4x2BFnTbl, pairSlot(mcTypeF, mcTypeB), pSrcRefF, srcStepF, pSrcRefB, srcStepB, pSrcYData, srcYDataStep,
             pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x4_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one(MC4x4FnTbl, mclSlot(mcType), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x4B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two(MC4x4BFnTbl, pairSlot(mcTypeF, mcTypeB), pSrcRefF, srcStepF, pSrcRefB, srcStepB, pSrcYData, srcYDataStep,
             pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x8_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                          s32 mcType, s32 roundControl) {
  return one(MC4x8FnTbl, mclSlot(mcType), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC4x8B_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB, s32 mcTypeB,
                           const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep, s32 roundControl) {
  return two(MC4x8BFnTbl, pairSlot(mcTypeF, mcTypeB), pSrcRefF, srcStepF, pSrcRefB, srcStepB, pSrcYData, srcYDataStep,
             pDst, dstStep, roundControl);
}

zvpStatus zvpiMC16x8UV_8u_C1(const u8* pSrcRef, s32 srcStep, const s16* pSrcYData, s32 srcYDataStep, u8* pDst,
                             s32 dstStep, s32 mcType, s32 roundControl) {
  return one<8>(MC16xHUVFunctionTable, mcSlot(mcType, roundControl), pSrcRef, srcStep, pSrcYData, srcYDataStep, pDst,
                dstStep, roundControl);
}

zvpStatus zvpiMC16x8BUV_8u_C1(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                              s32 mcTypeB, const s16* pSrcYData, s32 srcYDataStep, u8* pDst, s32 dstStep,
                              s32 roundControl) {
  return two<8>(MC16xHUVBFunctionTable, mcBSlot(mcTypeF, mcTypeB, roundControl), pSrcRefF, srcStepF, pSrcRefB, srcStepB,
                pSrcYData, srcYDataStep, pDst, dstStep, roundControl);
}

zvpStatus zvpiMC8x8_16s8u_P2C2R(const u8* pSrcRef, s32 srcStep, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep,
                                u8* pDst, s32 dstStep, s32 mcType, s32 roundControl) {
  return oneOfPlanes<8>(pSrcRef, srcStep, pSrcU, pSrcV, srcUVStep, pDst, dstStep, mcType, roundControl);
}

zvpStatus zvpiMC8x8B_16s8u_P2C2R(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                                 s32 mcTypeB, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep, u8* pDst, s32 dstStep,
                                 s32 roundControl) {
  return twoOfPlanes<8>(pSrcRefF, srcStepF, mcTypeF, pSrcRefB, srcStepB, mcTypeB, pSrcU, pSrcV, srcUVStep, pDst,
                        dstStep, roundControl);
}

zvpStatus zvpiMC8x4_16s8u_P2C2R(const u8* pSrcRef, s32 srcStep, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep,
                                u8* pDst, s32 dstStep, s32 mcType, s32 roundControl) {
  return oneOfPlanes<4>(pSrcRef, srcStep, pSrcU, pSrcV, srcUVStep, pDst, dstStep, mcType, roundControl);
}

zvpStatus zvpiMC8x4B_16s8u_P2C2R(const u8* pSrcRefF, s32 srcStepF, s32 mcTypeF, const u8* pSrcRefB, s32 srcStepB,
                                 s32 mcTypeB, const s16* pSrcU, const s16* pSrcV, s32 srcUVStep, u8* pDst, s32 dstStep,
                                 s32 roundControl) {
  return twoOfPlanes<4>(pSrcRefF, srcStepF, mcTypeF, pSrcRefB, srcStepB, mcTypeB, pSrcU, pSrcV, srcUVStep, pDst,
                        dstStep, roundControl);
}
