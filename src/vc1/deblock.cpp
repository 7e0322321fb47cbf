// Exports of the VC-1 deblocking filter: the null test and the edge.
#include "entry.h"
#include "vc1/deblock_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

zvpStatus zvpiFilterDeblockingLuma_VerEdge_VC1_8u_C1IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep, u32 edgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterEdge<VerticalEdge, 16>(pSrcDst, srcDstStep, pQuant, edgeDisabledFlag);
  return zvpStatusOk;
}

zvpStatus zvpiFilterDeblockingLuma_HorEdge_VC1_8u_C1IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep, u32 edgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterEdge<HorizontalEdge, 16>(pSrcDst, srcDstStep, pQuant, edgeDisabledFlag);
  return zvpStatusOk;
}

zvpStatus zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C1IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep,
                                                         u32 edgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterEdge<VerticalEdge, 8>(pSrcDst, srcDstStep, pQuant, edgeDisabledFlag);
  return zvpStatusOk;
}

zvpStatus zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C1IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep,
                                                         u32 edgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterEdge<HorizontalEdge, 8>(pSrcDst, srcDstStep, pQuant, edgeDisabledFlag);
  return zvpStatusOk;
}

zvpStatus zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C2IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep, u32 uEdgeDisabledFlag,
                                                         u32 vEdgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterPairsEdge<VerticalPairs>(pSrcDst, srcDstStep, pQuant, uEdgeDisabledFlag, vEdgeDisabledFlag);
  return zvpStatusOk;
}

zvpStatus zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C2IR(u8* pSrcDst, s32 pQuant, s32 srcDstStep, u32 uEdgeDisabledFlag,
                                                         u32 vEdgeDisabledFlag) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  filterPairsEdge<HorizontalPairs>(pSrcDst, srcDstStep, pQuant, uEdgeDisabledFlag, vEdgeDisabledFlag);
  return zvpStatusOk;
}
