#include "entry.h"
#include "mpeg/scan_kernels.h"

using namespace zvp;
using namespace zvp::mpeg;

namespace {
constexpr s32 fullScanCount = 20;  // from here on the whole block is moved, whatever it holds
}

zvpStatus zvpiScanFwd_16s_C1(const s16* pSrc, s16* pDst, s32 countNonZero, s32 scan) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (countNonZero < 1 || countNonZero > 64) return zvpStatusOutOfRange;
  if (countNonZero >= fullScanCount)
    scanAll(pSrc, pDst, scan);
  else
    scanSome(pSrc, pDst, scanTable(scan), countNonZero);
  return zvpStatusOk;
}

zvpStatus zvpiScanInv_16s_C1(const s16* pSrc, s16* pDst, s32 indxLastNonZero, s32 scan) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (indxLastNonZero < 0 || indxLastNonZero > 63) return zvpStatusOutOfRange;
  unscan(pSrc, pDst, scanTable(scan), indxLastNonZero);
  return zvpStatusOk;
}
