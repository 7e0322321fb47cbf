// Content-adaptive spatio-temporal denoising (CAST) of a plane and of packed 4:2:2.
#include "entry.h"
#include "filters/cast_kernels.h"
#include "primitives.h"

using namespace zvp;

static_assert(sizeof(zvpDenoiseCASTParams) == 10 && offsetof(zvpDenoiseCASTParams, blockWidth) == 3 &&
              offsetof(zvpDenoiseCASTParams, spatialThresholdLuma) == 7 &&
              offsetof(zvpDenoiseCASTParams, historyInit) == 9);

namespace {

constexpr zvpDenoiseCASTParams defaultParams = {16, 0, 8, 4, 4, 128, 16, 12, 6, 192};

template <CastLayout L>
CastSpatial spatialOf(const zvpDenoiseCASTParams& params) {
  u8 threshold[16], lastNear[16], anyNear[16];
  for (int i = 0; i < 16; ++i) {
    const bool chroma = L == CastLayout::Packed422 && i % 2 != 0;
    threshold[i] = chroma ? params.spatialThresholdChroma : params.spatialThresholdLuma;
    lastNear[i] = threshold[i] == 0 ? 0 : u8(threshold[i] - 1);
    anyNear[i] = threshold[i] == 0 ? 0 : 255;
  }
  return {simd::load<CastLane>(lastNear), simd::load<CastLane>(anyNear),
          simd::splat<CastLane>(params.strongEdgeThreshold), simd::splat<CastLane>(params.edgePixelWeight),
          simd::splat<CastLane>(params.flatPixelWeight)};
}

// One group of any size: bytes are left of it in the row, rows of its height.
template <CastLayout L>
void filterGroup(const CastFrame& frame, s32 x, s32 bytes, s32 y, s32 rows, u8* history,
                 const zvpDenoiseCASTParams& params, const CastSpatial& how) {
  CastVerdict verdicts[4] = {};
  for (int b = 0; b < castBlocks<L>; ++b) {
    const CastBlock block = castBlock<L>(b, params.blockWidth, bytes);
    if (block.samples == 0) continue;  // cut off: neither filtered nor remembered
    const bool moved = countMoved(frame, x, y, block, params.blockWidth, rows, params.blockHeight,
                                  params.temporalDiffThreshold) > params.motionPixelThreshold;
    verdicts[b] =
        judge(moved, history == nullptr ? nullptr : history + castHistoryIndex[std::size_t(b)], params.historyInit);
  }
  for (s32 first = 0; first < bytes; first += 16) {
    const s32 count = std::min(16, bytes - first);
    CastLanes lanes;
    for (s32 i = 0; i < 16; ++i)
      lanes.set(i, i + 1, verdicts[castBlockOf<L>(first + std::min(i, count - 1), params.blockWidth)]);
    castChunk<L>(frame, x + first, count, y, rows, lanes, how);
  }
}

// 16 bytes of four whole rows with blocks of 4x4: four groups of a plane, one of packed 4:2:2.
template <CastLayout L>
void filterWholeGroups(const CastFrame& frame, s32 x, s32 y, u8* history, const zvpDenoiseCASTParams& params,
                       const CastSpatial& how) {
  u8 counts[16];
  countMovedColumns(frame, x, y, params.temporalDiffThreshold, counts);
  CastLanes lanes;
  for (int b = 0; b < 4; ++b) {
    // In a plane four blocks side by side; in packed 4:2:2 the four of the group.
    const CastBlock block = L == CastLayout::Plane ? CastBlock{4 * b, 1, 4} : castBlock<L>(b, 4, 16);
    const int index = L == CastLayout::Plane ? b : castHistoryIndex[std::size_t(b)];
    int count = 0;
    for (s32 i = 0; i < 4; ++i) count += counts[block.first + i * block.spacing];
    const CastVerdict verdict =
        judge(count > params.motionPixelThreshold, history == nullptr ? nullptr : history + index, params.historyInit);
    for (s32 i = 0; i < 4; ++i)
      lanes.set(block.first + i * block.spacing, block.first + i * block.spacing + 1, verdict);
  }
  castChunk<L>(frame, x, 16, y, 4, lanes, how);
}

// The first frame: nothing to compare with, so all of it is filtered in space.
template <CastLayout L>
void filterFirstFrame(const CastFrame& frame, const CastSpatial& how) {
  CastLanes lanes;
  lanes.set(0, 16, {CastPath::Spatial, 0});
  for (s32 x = 0; x < frame.rowBytes; x += 16)
    castChunk<L>(frame, x, std::min(16, frame.rowBytes - x), 0, frame.height, lanes, how);
}

template <CastLayout L>
void denoise(const CastFrame& frame, u8* pHistory, const zvpDenoiseCASTParams& params) {
  constexpr s32 historyBytes = castBlocks<L>;
  const s32 groupBytes = (L == CastLayout::Plane ? 1 : 4) * params.blockWidth;
  const s32 groups = s32((s64(frame.rowBytes) + groupBytes - 1) / groupBytes);
  const s32 groupRows = s32((s64(frame.height) + params.blockHeight - 1) / params.blockHeight);
  const CastSpatial how = spatialOf<L>(params);
  if (frame.previous == nullptr) {
    if (pHistory != nullptr)
      for (s32 i = 0; i < groupRows; ++i)
        zvpsSet_8u(params.historyInit, pHistory + std::ptrdiff_t(i) * groups * historyBytes, groups * historyBytes);
    return filterFirstFrame<L>(frame, how);
  }
  const bool fourByFour = params.blockWidth == 4 && params.blockHeight == 4;
  u8* history = pHistory;
  for (s32 y = 0; y < frame.height; y += params.blockHeight) {
    const s32 rows = std::min<s32>(params.blockHeight, frame.height - y);
    s32 x = 0;
    const auto advance = [&](s32 bytes) {
      x += bytes;
      if (history != nullptr) history += bytes / groupBytes * historyBytes;
    };
    if (fourByFour && rows == 4)
      for (; frame.rowBytes - x >= 16; advance(16)) filterWholeGroups<L>(frame, x, y, history, params, how);
    for (; x < frame.rowBytes; advance(groupBytes))
      filterGroup<L>(frame, x, std::min(groupBytes, frame.rowBytes - x), y, rows, history, params, how);
  }
}

template <CastLayout L>
zvpStatus denoiseEntry(const u8* current, const u8* previous, s32 srcStep, const u8* edges, s32 edgeStep, zvpSize size,
                       u8* dst, s32 dstStep, u8* history, const zvpDenoiseCASTParams* params) {
  if (anyNull(current, edges, dst)) return zvpStatusNullPointer;
  if (size.width < 1 || size.height < 1) return zvpStatusBadSize;
  if (L == CastLayout::Packed422 && (size.width & 1) != 0) return zvpStatusBadSize;
  const s32 rowBytes = L == CastLayout::Plane ? size.width : 2 * size.width;
  denoise<L>({current, previous, edges, srcStep, edgeStep, dstStep, dst, rowBytes, size.height}, history,
             params != nullptr ? *params : defaultParams);
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiFilterDenoiseCASTInit(zvpDenoiseCASTParams* pParams) {
  if (anyNull(pParams)) return zvpStatusNullPointer;
  *pParams = defaultParams;
  return zvpStatusOk;
}

zvpStatus zvpiFilterDenoiseCAST_8u_C1R(const u8* pSrcCur, const u8* pSrcPrev, s32 srcStep, const u8* pEdgeMap,
                                       s32 edgeStep, zvpSize roiSize, u8* pDst, s32 dstStep, u8* pHistory,
                                       const zvpDenoiseCASTParams* pParams) {
  return denoiseEntry<CastLayout::Plane>(pSrcCur, pSrcPrev, srcStep, pEdgeMap, edgeStep, roiSize, pDst, dstStep,
                                         pHistory, pParams);
}

zvpStatus zvpiFilterDenoiseCASTYUV422_8u_C2R(const u8* pSrcCur, const u8* pSrcPrev, s32 srcStep, const u8* pEdgeMap,
                                             s32 edgeStep, zvpSize roiSize, u8* pDst, s32 dstStep, u8* pHistory,
                                             const zvpDenoiseCASTParams* pParams) {
  return denoiseEntry<CastLayout::Packed422>(pSrcCur, pSrcPrev, srcStep, pEdgeMap, edgeStep, roiSize, pDst, dstStep,
                                             pHistory, pParams);
}
