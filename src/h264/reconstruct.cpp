// Exports of macroblock reconstruction, 8-bit. Each is its checks, the prediction of an intra macroblock, and the
// residual by the scaling that the arguments ask for.
#include "entry.h"
#include "h264/reconstruct_kernels.h"

using namespace zvp;

namespace {

constexpr u32 mostQp = 51, mostChromaQp = 39;

// ---- what the flags say -----------------------------------------------------------------------------------------
// In edgeFlags a set bit means that a neighbour is missing.

constexpr u32 missingLeft = 1, missingLowerLeft = 2, missingTop = 4, cornerDiffers = 8, missingCornerOrRight = 16;

// For 16x16 and chroma.
ZVP_INLINE u32 neighboursOf(u32 edgeFlags) {
  return ((edgeFlags & missingTop) == 0 ? intraTop : 0u) | ((edgeFlags & missingLeft) == 0 ? intraLeft : 0u) |
         ((edgeFlags & missingCornerOrRight) == 0 ? intraCorner : 0u);
}

// For 4x4 and 8x8. Members for halves have a bit for each half of the left column. The corner is taken to be there if
// the sides that meet in it are, or the other way round if a bit says so.
enum class LeftColumn { Whole, Halves };
template <LeftColumn L>
ZVP_INLINE LumaEdges lumaEdgesOf(u32 edgeFlags) {
  LumaEdges edges;
  edges.top = (edgeFlags & missingTop) == 0;
  edges.topRight = (edgeFlags & missingCornerOrRight) == 0;
  edges.leftUpper = (edgeFlags & missingLeft) == 0;
  edges.leftLower = (edgeFlags & (L == LeftColumn::Halves ? missingLowerLeft : missingLeft)) == 0;
  edges.corner = (edges.top && edges.leftUpper) != ((edgeFlags & cornerDiffers) != 0);
  return edges;
}

// ---- shared bodies ----------------------------------------------------------------------------------------------

template <class T>
ZVP_INLINE bool nullArguments(s16** ppSrcCoeff, const T* pSrcDst) {
  return nullCursor(ppSrcCoeff) || pSrcDst == nullptr;
}
ZVP_INLINE bool bypasses(u8 bypass, u32 qp) { return bypass != 0 && qp < 1; }

template <LeftColumn L>
zvpStatus intraFlat4x4(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, const s32* pModes, u32 cbp, u32 QP,
                       u32 edgeFlags) {
  if (nullArguments(ppSrcCoeff, pSrcDst) || pModes == nullptr) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  s16* cursor = *ppSrcCoeff;
  const zvpStatus status =
      reconstructIntra4x4(FlatScale(QP), cursor, pSrcDst, srcDstStep, pModes, cbp, lumaEdgesOf<L>(edgeFlags));
  if (status == zvpStatusOk) *ppSrcCoeff = cursor;
  return status;
}

template <LeftColumn L, int Size>
zvpStatus intraByList(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, const s32* pModes, u32 cbp, u32 QP, u32 edgeFlags,
                      const s16* pQuantTable) {
  if (nullArguments(ppSrcCoeff, pSrcDst) || pModes == nullptr) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  // A table that no coded block asks for may be missing. One that is asked for is refused behind all other tests.
  if (pQuantTable == nullptr && (cbp & (Size == 4 ? cbpLuma4x4 : cbpLuma8x8)) != 0) return zvpStatusNullPointer;
  s16* cursor = *ppSrcCoeff;
  const ListScale scale(pQuantTable, QP);
  const LumaEdges edges = lumaEdgesOf<L>(edgeFlags);
  const zvpStatus status = Size == 4 ? reconstructIntra4x4(scale, cursor, pSrcDst, srcDstStep, pModes, cbp, edges)
                                     : reconstructIntra8x8(scale, cursor, pSrcDst, srcDstStep, pModes, cbp, edges);
  if (status == zvpStatusOk) *ppSrcCoeff = cursor;
  return status;
}

// The prediction of an Intra16x16 macroblock, in place.
ZVP_INLINE zvpStatus predict16x16(u8* pSrcDst, s32 srcDstStep, u32 mode, u32 edgeFlags) {
  if (mode >= intraModes16x16) return zvpStatusOutOfRange;
  return predictIntra16x16[mode](pSrcDst, srcDstStep, mode, neighboursOf(edgeFlags));
}

// What refuses a chroma mode.
ZVP_INLINE zvpStatus chromaStatus(u32 mode, u32 edgeFlags) {
  if (mode >= intraModesChroma) return zvpStatusOutOfRange;
  return (intraNeedsChroma[mode] & ~neighboursOf(edgeFlags)) != 0 ? zvpStatusPredictionUnavailable : zvpStatusOk;
}
ZVP_INLINE zvpStatus chromaHalvesStatus(u32 mode, u32 edgeFlagsTop) {
  if (mode == intraChromaVertical) return chromaStatus(mode, edgeFlagsTop);
  return mode != intraChromaDc ? zvpStatusPredictionUnavailable : zvpStatusOk;
}

// That of chroma, both planes: they have the same neighbours, so that the second is not refused if the first was not.
ZVP_INLINE zvpStatus predictChroma(u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep, u32 mode, u32 edgeFlags) {
  if (mode >= intraModesChroma) return zvpStatusOutOfRange;
  const zvpStatus status = predictIntraChroma8x8[mode](pSrcDstU, srcDstStep, mode, neighboursOf(edgeFlags));
  if (status != zvpStatusOk) return status;
  return predictIntraChroma8x8[mode](pSrcDstV, srcDstStep, mode, neighboursOf(edgeFlags));
}

// The same with the left column told for each half.
ZVP_INLINE zvpStatus predictChromaHalves(u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep, u32 mode, u32 edgeFlagsTop,
                                         u32 edgeFlagsBottom) {
  if (const zvpStatus status = chromaHalvesStatus(mode, edgeFlagsTop); status != zvpStatusOk) return status;
  if (mode == intraChromaVertical) return predictChroma(pSrcDstU, pSrcDstV, srcDstStep, mode, edgeFlagsTop);
  for (u8* const plane : {pSrcDstU, pSrcDstV})
    intra::dcChroma(intra::Rows<8>(plane, srcDstStep), neighboursOf(edgeFlagsTop), neighboursOf(edgeFlagsBottom));
  return zvpStatusOk;
}

zvpStatus addChromaFlat(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep, u32 cbp, u32 QP) {
  if ((cbp & cbpChroma) == 0) return zvpStatusOk;
  const FlatScale scale(QP);
  *ppSrcCoeff = addChroma({scale, scale}, *ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp);
  return zvpStatusOk;
}
zvpStatus addChromaByList(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep, u32 cbp, u32 QP,
                          const s16* pQuantTableU, const s16* pQuantTableV, u8 bypass) {
  if ((cbp & cbpChroma) == 0) return zvpStatusOk;
  if (bypasses(bypass, QP))
    *ppSrcCoeff = addChroma({NoScale(), NoScale()}, *ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp);
  else
    *ppSrcCoeff = addChroma({ListScale(pQuantTableU, QP), ListScale(pQuantTableV, QP)}, *ppSrcCoeff, pSrcDstU, pSrcDstV,
                            srcDstStep, cbp);
  return zvpStatusOk;
}
// Whether a table is missing that a coded block will ask for. All other tests come before this one.
ZVP_INLINE bool missesTables(u32 cbp, u32 qp, u8 bypass, const s16* tableU, const s16* tableV) {
  const bool missesU = tableU == nullptr && (cbp & cbpU) != 0, missesV = tableV == nullptr && (cbp & cbpV) != 0;
  return (missesU || missesV) && !bypasses(bypass, qp);
}
ZVP_INLINE bool nullArguments(s16** ppSrcCoeff, const u8* pSrcDstU, const u8* pSrcDstV) {
  return nullCursor(ppSrcCoeff) || anyNull(pSrcDstU, pSrcDstV);
}

}  // namespace

// ---- luma, inter ------------------------------------------------------------------------------------------------

zvpStatus zvpiReconstructLumaInterMB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, u32 cbp, u32 QP) {
  if (nullArguments(ppSrcCoeff, pSrcDst)) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  if ((cbp & cbpLuma4x4) != 0) *ppSrcCoeff = addLuma4x4(FlatScale(QP), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  return zvpStatusOk;
}

zvpStatus zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, u32 cbp, u32 QP,
                                                       const s16* pQuantTable, u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDst) || pQuantTable == nullptr) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  if ((cbp & cbpLuma4x4) == 0) return zvpStatusOk;
  if (bypasses(bypass, QP))
    *ppSrcCoeff = addLuma4x4(NoScale(), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  else
    *ppSrcCoeff = addLuma4x4(ListScale(pQuantTable, QP), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  return zvpStatusOk;
}

zvpStatus zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, u32 cbp, u32 QP,
                                                       const s16* pQuantTable, u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDst) || pQuantTable == nullptr) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  if ((cbp & cbpLuma8x8) == 0) return zvpStatusOk;
  if (bypasses(bypass, QP))
    *ppSrcCoeff = addLuma8x8(NoScale(), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  else
    *ppSrcCoeff = addLuma8x8(ListScale(pQuantTable, QP), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  return zvpStatusOk;
}

// ---- luma, intra ------------------------------------------------------------------------------------------------

zvpStatus zvpiReconstructLumaIntraMB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, const s32* pModes,
                                                    u32 cbp, u32 QP, u8 edgeFlags) {
  return intraFlat4x4<LeftColumn::Whole>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags);
}
zvpStatus zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep,
                                                        const s32* pModes, u32 cbp, u32 QP, u8 edgeFlags) {
  return intraFlat4x4<LeftColumn::Halves>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags);
}

zvpStatus zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, const s32* pModes,
                                                       u32 cbp, u32 QP, u8 edgeFlags, const s16* pQuantTable) {
  return intraByList<LeftColumn::Whole, 4>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags, pQuantTable);
}
zvpStatus zvpiReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep,
                                                           const s32* pModes, u32 cbp, u32 QP, u8 edgeFlags,
                                                           const s16* pQuantTable) {
  return intraByList<LeftColumn::Halves, 4>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags, pQuantTable);
}
zvpStatus zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, const s32* pModes,
                                                       u32 cbp, u32 QP, u8 edgeFlags, const s16* pQuantTable) {
  return intraByList<LeftColumn::Whole, 8>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags, pQuantTable);
}
zvpStatus zvpiReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep,
                                                           const s32* pModes, u32 cbp, u32 QP, u8 edgeFlags,
                                                           const s16* pQuantTable) {
  return intraByList<LeftColumn::Halves, 8>(ppSrcCoeff, pSrcDst, srcDstStep, pModes, cbp, QP, edgeFlags, pQuantTable);
}

zvpStatus zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, u32 mode,
                                                         u32 cbp, u32 QP, u8 edgeFlags) {
  if (nullArguments(ppSrcCoeff, pSrcDst)) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  const zvpStatus status = predict16x16(pSrcDst, srcDstStep, mode, edgeFlags);
  if (status != zvpStatusOk) return status;
  if ((cbp & (cbpLumaDc | cbpLuma4x4)) != 0)
    *ppSrcCoeff = addLuma16x16(FlatScale(QP), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  return zvpStatusOk;
}

zvpStatus zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(s16** ppSrcCoeff, u8* pSrcDst, s32 srcDstStep, u32 mode,
                                                          u32 cbp, u32 QP, u8 edgeFlags, const s16* pQuantTable,
                                                          u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDst) || pQuantTable == nullptr) return zvpStatusNullPointer;
  if (QP > mostQp) return zvpStatusOutOfRange;
  const zvpStatus status = predict16x16(pSrcDst, srcDstStep, mode, edgeFlags);
  if (status != zvpStatusOk) return status;
  if ((cbp & (cbpLumaDc | cbpLuma4x4)) == 0) return zvpStatusOk;
  if (bypasses(bypass, QP))
    *ppSrcCoeff = addLuma16x16(NoScale(), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  else
    *ppSrcCoeff = addLuma16x16(ListScale(pQuantTable, QP), *ppSrcCoeff, pSrcDst, srcDstStep, cbp);
  return zvpStatusOk;
}

// ---- chroma -----------------------------------------------------------------------------------------------------

zvpStatus zvpiReconstructChromaInterMB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep,
                                                      u32 cbp, u32 QP) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (QP > mostChromaQp) return zvpStatusOutOfRange;
  return addChromaFlat(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, QP);
}

zvpStatus zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep,
                                                         u32 cbp, u32 QP, const s16* pQuantTableU,
                                                         const s16* pQuantTableV, u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (QP > mostChromaQp) return zvpStatusOutOfRange;
  if (missesTables(cbp, QP, bypass, pQuantTableU, pQuantTableV)) return zvpStatusNullPointer;
  return addChromaByList(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, QP, pQuantTableU, pQuantTableV, bypass);
}

zvpStatus zvpiReconstructChromaIntraMB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep,
                                                      u32 mode, u32 cbp, u32 QP, u8 edgeFlags) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (QP > mostChromaQp) return zvpStatusOutOfRange;
  const zvpStatus status = predictChroma(pSrcDstU, pSrcDstV, srcDstStep, mode, edgeFlags);
  return status != zvpStatusOk ? status : addChromaFlat(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, QP);
}

zvpStatus zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep,
                                                         u32 mode, u32 cbp, u32 QP, u8 edgeFlags,
                                                         const s16* pQuantTableU, const s16* pQuantTableV, u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (QP > mostChromaQp) return zvpStatusOutOfRange;
  if (const zvpStatus status = chromaStatus(mode, edgeFlags); status != zvpStatusOk) return status;
  if (missesTables(cbp, QP, bypass, pQuantTableU, pQuantTableV)) return zvpStatusNullPointer;
  predictChroma(pSrcDstU, pSrcDstV, srcDstStep, mode, edgeFlags);
  return addChromaByList(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, QP, pQuantTableU, pQuantTableV, bypass);
}

// The members for halves take the QPs of luma: required.
zvpStatus zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV, s32 srcDstStep,
                                                           u32 mode, u32 cbp, s32 QP, u8 edgeFlagsTop,
                                                           u8 edgeFlagsBottom) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (u32(QP) > mostQp) return zvpStatusOutOfRange;
  const zvpStatus status = predictChromaHalves(pSrcDstU, pSrcDstV, srcDstStep, mode, edgeFlagsTop, edgeFlagsBottom);
  return status != zvpStatusOk ? status : addChromaFlat(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, u32(QP));
}
zvpStatus zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV,
                                                            s32 srcDstStep, u32 mode, u32 cbp, s32 QP, u8 edgeFlagsTop,
                                                            u8 edgeFlagsBottom) {
  return zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, mode, cbp, QP,
                                                          edgeFlagsTop, edgeFlagsBottom);
}

zvpStatus zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV,
                                                              s32 srcDstStep, u32 mode, u32 cbp, s32 QP,
                                                              u8 edgeFlagsTop, u8 edgeFlagsBottom,
                                                              const s16* pQuantTableU, const s16* pQuantTableV,
                                                              u8 bypass) {
  if (nullArguments(ppSrcCoeff, pSrcDstU, pSrcDstV)) return zvpStatusNullPointer;
  if (u32(QP) > mostQp) return zvpStatusOutOfRange;
  if (const zvpStatus status = chromaHalvesStatus(mode, edgeFlagsTop); status != zvpStatusOk) return status;
  if (missesTables(cbp, u32(QP), bypass, pQuantTableU, pQuantTableV)) return zvpStatusNullPointer;
  predictChromaHalves(pSrcDstU, pSrcDstV, srcDstStep, mode, edgeFlagsTop, edgeFlagsBottom);
  return addChromaByList(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, cbp, u32(QP), pQuantTableU, pQuantTableV, bypass);
}
zvpStatus zvpiReconstructChromaIntraHalves4x4MB_H264_16s8u_P2R(s16** ppSrcCoeff, u8* pSrcDstU, u8* pSrcDstV,
                                                               s32 srcDstStep, u32 mode, u32 cbp, s32 QP,
                                                               u8 edgeFlagsTop, u8 edgeFlagsBottom,
                                                               const s16* pQuantTableU, const s16* pQuantTableV,
                                                               u8 bypass) {
  return zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(ppSrcCoeff, pSrcDstU, pSrcDstV, srcDstStep, mode, cbp, QP,
                                                             edgeFlagsTop, edgeFlagsBottom, pQuantTableU, pQuantTableV,
                                                             bypass);
}
