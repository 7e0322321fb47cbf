#include "entry.h"
#include "vc1/range_map_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

zvpStatus zvpiRangeMapping_VC1_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize,
                                      s32 rangeMap) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (rangeMap < 0 || rangeMap > 7) return zvpStatusOutOfRange;
  if (roiSize.width < 1 || roiSize.height < 1) return zvpStatusOk;
  mapRange(pSrc, srcStep, pDst, dstStep, roiSize, {rangeMap + 9});
  return zvpStatusOk;
}
