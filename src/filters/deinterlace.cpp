// Deinterlacing: vertical triangle, edge-directed, median with threshold, three-frame blend, motion-adaptive.
#include <cmath>

#include "entry.h"
#include "filters/deinterlace_kernels.h"
#include "primitives.h"

using namespace zvp;

static_assert(sizeof(zvpDeinterlaceBlendState) == 24 && offsetof(zvpDeinterlaceBlendState, slope) == 8 &&
              offsetof(zvpDeinterlaceBlendState, intercept) == 12 &&
              offsetof(zvpDeinterlaceBlendState, highMotion) == 16 &&
              offsetof(zvpDeinterlaceBlendState, lowMotion) == 20);

namespace {

using Step = std::ptrdiff_t;

void copyRows(const u8* src, Step srcStep, u8* dst, Step dstStep, s32 width, s32 rows) {
  for (s32 y = 0; y < rows; ++y, src += srcStep, dst += dstStep) std::memcpy(dst, src, std::size_t(width));
}

// What a conversion instruction gives: the integer toward zero, and INT_MIN where none fits.
s32 truncate(double value) { return value > -2147483649.0 && value < 2147483648.0 ? s32(value) : INT32_MIN; }

// The quotient toward zero. The divisor is not zero.
s32 quotient(s64 dividend, s32 divisor) { return s32(dividend / divisor); }

constexpr s32 weightTableSize = 512;

// The weight of the spatial value rises with the motion m along a ramp through (threshold, weight) and (threshold,
// weight), as (intercept + m * slope) / 256 in integers. The record tells besides from which motion on the ramp is
// above 0 and up to which it is below 256.
void buildWeights(zvpDeinterlaceBlendState& state, const s32 (&threshold)[2], const double (&weight)[2]) {
  u16* const table = state.pWeights;
  const auto set = [table](s32 m, s32 spatial) {
    table[m] = u16(spatial);
    table[256 + m] = u16(256 - spatial);
  };
  if (threshold[0] == threshold[1]) {
    for (s32 m = 0; m < 256; ++m) set(m, m < threshold[0] ? 0 : 256);
    state.slope = state.intercept = 0;
    state.highMotion = wrapSub(threshold[0], 1);
    state.lowMotion = threshold[0];
    return;
  }
  const double k = std::fabs((weight[1] - weight[0]) / (double(threshold[1]) - double(threshold[0])));
  const double b = weight[1] - k * threshold[1];
  s32 slope = truncate(k * 256 + 0.5);
  s32 intercept = truncate(b > 0 ? b * 256 + 0.5 : b * 256 - 0.5);
  if (intercept >= 257) {
    intercept = 256;
    slope = 0;
  }
  const s64 atEnd = std::min(s64(slope) * 255 + intercept, s64(256));
  if (slope != 0 && atEnd >= 0 && atEnd - intercept > 32767) {
    intercept = s32(atEnd - 32767);
    slope = truncate((weight[1] * 256 - intercept) / threshold[1]);
  }
  if (slope != 0 && atEnd < 0) {
    // The ramp stays below 0. The record tells a flat one; the table is made of the real one, which comes to the same.
    state.slope = state.intercept = 0;
    state.highMotion = 255;
    state.lowMotion = 256;
  } else if (slope != 0) {
    state.slope = slope;
    state.intercept = intercept;
    const s64 toFull = 256 - s64(intercept);
    state.highMotion = std::min(quotient(toFull, slope) - (toFull < 0 ? 1 : 0), 255);
    state.lowMotion = std::max(quotient(-s64(intercept), slope) + (intercept < 0 ? 1 : 0), 0);
  } else {
    state.highMotion = 255;
    state.lowMotion = intercept < 0 ? 256 : 0;
    intercept = std::max(intercept, 0);
    state.slope = 0;
    state.intercept = intercept;
  }
  for (s32 m = 0; m < 256; ++m) set(m, s32(std::clamp(intercept + m * s64(slope), s64(0), s64(256))));
}

bool anyPlaneNull(const u8* const* planes, int count) {
  for (int i = 0; i < count; ++i)
    if (planes[i] == nullptr) return true;
  return false;
}

}  // namespace

zvpStatus zvpiDeinterlaceFilterTriangle_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize,
                                               u32 centerWeight, s32 planeLayout) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (roiSize.height < 3 || roiSize.width < 1) return zvpStatusBadSize;
  const u16 centre = u16(std::min(centerWeight, 256u)), side = u16((256 - centre) >> 1);
  const bool first = planeLayout == 1, middle = planeLayout == 4, last = planeLayout == 16;
  const auto copyRow = [&](Step row) {
    copyRows(pSrc + row * srcStep, srcStep, pDst + row * dstStep, dstStep, roiSize.width, 1);
  };
  const bool startsPlane = !middle && !last;
  if (startsPlane) copyRow(0);
  for (Step row = startsPlane ? 1 : -1; row < roiSize.height - 1; ++row)
    triangleRow(pSrc + row * srcStep, srcStep, pDst + row * dstStep, roiSize.width, side, centre);
  if (!first && !middle) copyRow(roiSize.height - 1);
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceEdgeDetect_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize,
                                           s32 fieldNum, s32 copyBorder) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (roiSize.width < 1 || roiSize.height < 2) return zvpStatusBadSize;
  Step row = 0, end = roiSize.height;
  if (copyBorder != 0) {
    const Step border = fieldNum == 0 ? 0 : roiSize.height - 1;
    copyRows(pSrc + border * srcStep, srcStep, pDst + border * dstStep, dstStep, roiSize.width, 1);
    row = fieldNum == 0 ? 1 : 0;
    end -= fieldNum == 0 ? 0 : 1;
  }
  for (; row < end; ++row) {
    const u8* const above = pSrc + (row + fieldNum - 1) * srcStep;
    edgeDirectedRow(above, above + srcStep, pSrc + row * srcStep, pDst + row * dstStep, roiSize.width);
  }
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceMedianThreshold_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize,
                                                s32 threshold, s32 fieldNum, s32 copyBorder) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (roiSize.width < 1 || roiSize.height < 2) return zvpStatusBadSize;
  // The odd field's copy starts one source step into the destination, not one destination step: required.
  const Step copied = fieldNum == 1 ? 0 : srcStep;
  copyRows(pSrc + copied, 2 * Step(srcStep), pDst + copied, 2 * Step(dstStep), roiSize.width, roiSize.height / 2);
  if (copyBorder != 0) {
    // A border copy is a source step long, whatever the width: required.
    const Step lastRow = roiSize.height - 1;
    zvpsCopy_8u(pSrc, pDst, srcStep);
    zvpsCopy_8u(pSrc + lastRow * srcStep, pDst + lastRow * dstStep, srcStep);
  }
  const Step end = roiSize.height - (copyBorder != 0 ? 1 : 0);
  for (Step row = fieldNum == 1 ? 1 : copyBorder != 0 ? 2 : 0; row < end; row += 2)
    medianRow(pSrc + row * srcStep, srcStep, pDst + row * dstStep, roiSize.width, threshold);
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceBlendInitAlloc_8u_C1(zvpSize roiSize, s32* pThresholds, double* pWeights,
                                              zvpDeinterlaceBlendState** ppState) {
  if (anyNull(ppState)) return zvpStatusNullPointer;
  if (roiSize.width < 3 || roiSize.height < 3) return zvpStatusBadSize;
  void* const memory = zvpsMalloc_8u(sizeof(zvpDeinterlaceBlendState));
  if (memory == nullptr) return zvpStatusNoMemory;
  auto* const state = static_cast<zvpDeinterlaceBlendState*>(memory);
  *state = {};
  *ppState = state;
  state->pWeights = zvpsMalloc_16u(weightTableSize);
  if (state->pWeights == nullptr) return zvpStatusNoMemory;  // the record stays with the caller: required
  if (pThresholds[1] < pThresholds[0]) std::swap(pThresholds[0], pThresholds[1]);
  if (pWeights[1] < pWeights[0]) std::swap(pWeights[0], pWeights[1]);
  pWeights[1] = std::min(pWeights[1], 32767.0);
  pWeights[0] = std::max(pWeights[0], -32768.0);
  buildWeights(*state, {pThresholds[0], pThresholds[1]}, {pWeights[0], pWeights[1]});
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceBlendFree_8u_C1(zvpDeinterlaceBlendState* pState) {
  if (anyNull(pState)) return zvpStatusNullPointer;
  if (pState->pWeights != nullptr) zvpsFree(pState->pWeights);
  zvpsFree(pState);
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceBlend_8u_C1(const u8* const* pSrcPlanes, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize,
                                     s32 topFirst, s32 topField, s32 copyField,
                                     const zvpDeinterlaceBlendState* pState) {
  if (anyNull(pSrcPlanes) || anyNull(pDst, pState) || anyPlaneNull(pSrcPlanes, 3) || anyNull(pState->pWeights))
    return zvpStatusNullPointer;
  if (roiSize.width < 3 || roiSize.height < 3) return zvpStatusBadSize;
  const bool top = topField != 0, oddHeight = (roiSize.height & 1) != 0;
  const s32 width = roiSize.width, height = roiSize.height;
  const u8* const current = pSrcPlanes[1];
  const auto copyRow = [&](Step row) {
    copyRows(current + row * srcStep, srcStep, pDst + row * dstStep, dstStep, width, 1);
  };
  if (copyField != 0) {
    const Step first = top ? 1 : 0;
    copyRows(current + first * srcStep, 2 * Step(srcStep), pDst + first * dstStep, 2 * Step(dstStep), width,
             top ? height >> 1 : (height + 1) >> 1);
  }
  if (top) copyRow(0);
  const u16* const table = pState->pWeights;
  const BlendWeights weights = {table, table + 256, pState->lowMotion, pState->highMotion};
  const u8* const other = pSrcPlanes[(topFirst != 0) == top ? 0 : 2];
  for (Step row = top ? 2 : 1; row < height - 1; row += 2) {
    const Step above = (row - 1) * srcStep, at = row * srcStep, below = (row + 1) * srcStep;
    blendRow({pSrcPlanes[0] + above, pSrcPlanes[0] + below, current + above, current + below, pSrcPlanes[2] + above,
              pSrcPlanes[2] + below, current + at, other + at},
             pDst + row * dstStep, width, weights, top);
  }
  if (oddHeight == top) copyRow(height - 1);
  return zvpStatusOk;
}

zvpStatus zvpiDeinterlaceMotionAdaptive_8u_C1(const u8* const* pSrcPlanes, s32 srcStep, u8* pDst, s32 dstStep,
                                              zvpSize roiSize, s32 threshold, s32 topFirst, s32 topField, s32 copyField,
                                              s32 artifactProtection) {
  if (anyNull(pSrcPlanes) || anyNull(pDst) || anyPlaneNull(pSrcPlanes, 4)) return zvpStatusNullPointer;
  if (roiSize.width < 1 || roiSize.height < 1) return zvpStatusBadSize;
  const s32 width = roiSize.width, height = roiSize.height;
  const int kept = topFirst != topField ? 2 : 1;
  const bool top = topField == 1, oddHeight = (height & 1) != 0;
  const auto copyKept = [&](Step row, Step distance, s32 rows) {
    copyRows(pSrcPlanes[kept] + row * srcStep, distance * srcStep, pDst + row * dstStep, distance * dstStep, width,
             rows);
  };
  if (copyField != 0) copyKept(top ? 1 : 0, 2, height >> 1);
  if (top) copyKept(0, 1, 1);
  if (oddHeight == top) copyKept(height - 1, 1, 1);
  for (Step row = top ? 2 : 1; row < height - 1; row += 2) {
    MotionRow in = {{}, srcStep, kept};
    for (int i = 0; i < 4; ++i) in.frame[i] = pSrcPlanes[i] + row * srcStep;
    motionAdaptiveRow(in, pDst + row * dstStep, width, threshold, artifactProtection != 0);
  }
  return zvpStatusOk;
}
