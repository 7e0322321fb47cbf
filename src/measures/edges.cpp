// Edge test of a macroblock.
#include "measures/edges_kernels.h"

using namespace zvp;

// Both thresholds count by their low byte.
zvpStatus zvpiEdgesDetect16x16_8u_C1R(const u8* pSrc, s32 srcStep, s32 edgeDifference, s32 edgeCount, u8* pResult) {
  if (anyNull(pSrc, pResult)) return zvpStatusNullPointer;
  *pResult = measures::hasEdges(pSrc, srcStep, u8(edgeDifference), u8(edgeCount));
  return zvpStatusOk;
}
