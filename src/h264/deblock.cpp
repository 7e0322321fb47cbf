// Exports of the deblocking filter: null tests, the arguments in one form, the edges.
#include <cstddef>

#include "entry.h"
#include "h264/deblock_kernels.h"

using namespace zvp;
using namespace zvp::h264;

static_assert(offsetof(H264DeblockEdges, pSrcDst) == 0 && offsetof(H264DeblockEdges, srcDstStep) == 8 &&
              offsetof(H264DeblockEdges, pAlpha) == 16 && offsetof(H264DeblockEdges, pBeta) == 24 &&
              offsetof(H264DeblockEdges, pThresholds) == 32 && offsetof(H264DeblockEdges, pBS) == 40 &&
              offsetof(H264DeblockEdges, bitDepth) == 48 && sizeof(H264DeblockEdges) == 56);

namespace {

// The forms in which members take their arguments: one after the other, or in a record.
template <void filter(const EdgeArguments<u8>&)>
zvpStatus filterArguments(u8* srcDst, s32 step, const u8* alpha, const u8* beta, const u8* tc0, const u8* bS) {
  if (anyNull(srcDst, alpha, beta, tc0, bS)) return zvpStatusNullPointer;
  filter({srcDst, step, alpha, beta, tc0, bS, 255});
  return zvpStatusOk;
}

template <void filter(const EdgeArguments<u8>&, u32, u32)>
zvpStatus filterMbaffArguments(u8* srcDst, s32 step, u32 alpha, u32 beta, const u8* tc0, const u8* bS) {
  if (anyNull(srcDst, tc0, bS)) return zvpStatusNullPointer;
  filter({srcDst, step, nullptr, nullptr, tc0, bS, 255}, alpha, beta);
  return zvpStatusOk;
}

// The largest sample. A depth that samples of the width cannot have is the caller's mistake; it is kept from harm.
template <class T>
T maximumOf(const H264DeblockEdges& edges) {
  if constexpr (sizeof(T) == 1)
    return 255;
  else
    return T((1u << clip(edges.bitDepth, 0, 16)) - 1);
}

template <class T, void filter(const EdgeArguments<T>&)>
zvpStatus filterRecord(const H264DeblockEdges* edges) {
  if (anyNull(edges)) return zvpStatusNullPointer;
  if (anyNull(edges->pSrcDst, edges->pAlpha, edges->pBeta, edges->pThresholds, edges->pBS)) return zvpStatusNullPointer;
  filter({static_cast<u8*>(edges->pSrcDst), std::ptrdiff_t(edges->srcDstStep) * std::ptrdiff_t(sizeof(T)),
          static_cast<const u8*>(edges->pAlpha), static_cast<const u8*>(edges->pBeta),
          static_cast<const u8*>(edges->pThresholds), edges->pBS, maximumOf<T>(*edges)});
  return zvpStatusOk;
}

// The MBAFF kernels with alpha and beta taken from the arrays.
void filterLumaMbaff(const EdgeArguments<u16>& a) { filterLumaMbaffEdge(a, a.alpha(0), a.beta(0)); }
void filterChromaMbaff(const EdgeArguments<u16>& a) { filterChromaMbaffEdge(a, a.alpha(0), a.beta(0)); }

}  // namespace

// ---- bytes ------------------------------------------------------------------------------------------------------

zvpStatus zvpiFilterDeblockingLuma_VerEdge_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha, const u8* pBeta,
                                                        const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterLumaEdges<u8, Edge::Vertical>>(pSrcDst, srcDstStep, pAlpha, pBeta, pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingLuma_HorEdge_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha, const u8* pBeta,
                                                        const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterLumaEdges<u8, Edge::Horizontal>>(pSrcDst, srcDstStep, pAlpha, pBeta, pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, u32 alpha, u32 beta,
                                                              const u8* pThresholds, const u8* pBS) {
  return filterMbaffArguments<filterLumaMbaffEdge<u8>>(pSrcDst, srcDstStep, alpha, beta, pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingChroma_VerEdge_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha,
                                                          const u8* pBeta, const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterChromaEdges420<u8, u8, Edge::Vertical>>(pSrcDst, srcDstStep, pAlpha, pBeta, pThresholds,
                                                                       pBS);
}
zvpStatus zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha,
                                                          const u8* pBeta, const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterChromaEdges420<u8, u8, Edge::Horizontal>>(pSrcDst, srcDstStep, pAlpha, pBeta,
                                                                         pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingChroma_VerEdge_H264_8u_C2IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha,
                                                          const u8* pBeta, const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterChromaEdges420<u8, u16, Edge::Vertical>>(pSrcDst, srcDstStep, pAlpha, pBeta, pThresholds,
                                                                        pBS);
}
zvpStatus zvpiFilterDeblockingChroma_HorEdge_H264_8u_C2IR(u8* pSrcDst, s32 srcDstStep, const u8* pAlpha,
                                                          const u8* pBeta, const u8* pThresholds, const u8* pBS) {
  return filterArguments<filterChromaEdges420<u8, u16, Edge::Horizontal>>(pSrcDst, srcDstStep, pAlpha, pBeta,
                                                                          pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, u32 alpha, u32 beta,
                                                                const u8* pThresholds, const u8* pBS) {
  return filterMbaffArguments<filterChromaMbaffEdge<u8>>(pSrcDst, srcDstStep, alpha, beta, pThresholds, pBS);
}
zvpStatus zvpiFilterDeblockingChroma422VerEdge_H264_8u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u8, filterChromaEdges422<u8, Edge::Vertical>>(pEdges);
}
zvpStatus zvpiFilterDeblockingChroma422HorEdge_H264_8u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u8, filterChromaEdges422<u8, Edge::Horizontal>>(pEdges);
}

// ---- 16-bit elements --------------------------------------------------------------------------------------------

zvpStatus zvpiFilterDeblockingLumaVerEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterLumaEdges<u16, Edge::Vertical>>(pEdges);
}
zvpStatus zvpiFilterDeblockingLumaHorEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterLumaEdges<u16, Edge::Horizontal>>(pEdges);
}
zvpStatus zvpiFilterDeblockingLumaVerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterLumaMbaff>(pEdges);
}
zvpStatus zvpiFilterDeblockingChromaVerEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterChromaEdges420<u16, u16, Edge::Vertical>>(pEdges);
}
zvpStatus zvpiFilterDeblockingChromaHorEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterChromaEdges420<u16, u16, Edge::Horizontal>>(pEdges);
}
zvpStatus zvpiFilterDeblockingChromaVerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterChromaMbaff>(pEdges);
}
zvpStatus zvpiFilterDeblockingChroma422VerEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterChromaEdges422<u16, Edge::Vertical>>(pEdges);
}
zvpStatus zvpiFilterDeblockingChroma422HorEdge_H264_16u_C1IR(const H264DeblockEdges* pEdges) {
  return filterRecord<u16, filterChromaEdges422<u16, Edge::Horizontal>>(pEdges);
}

// ---- not provided -----------------------------------------------------------------------------------------------
// Required as they stand: nothing is done, no pointer is looked at.

zvpStatus zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_8u_C1IR(const H264DeblockEdges*) { return zvpStatusError; }
zvpStatus zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges*) { return zvpStatusError; }
