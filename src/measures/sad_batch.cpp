// SADs of one block against a row of candidates, and the best of them.
#include "measures/sad_batch_kernels.h"

using namespace zvp;
using namespace zvp::measures;

namespace {

// Only whole groups of eight candidates are measured.
s32 workingCount(s32 count) { return count & -8; }

template <int W, int H>
zvpStatus batchEntry(const u8* src, s32 srcStep, const u8* ref, s32 refStep, u16* sads, s32 count) {
  if (anyNull(src, ref, sads)) return zvpStatusNullPointer;
  if (workingCount(count) < 1) return zvpStatusBadSize;
  sadCandidates<W, H>(src, srcStep, ref, refStep, sads, workingCount(count));
  return zvpStatusOk;
}

template <int W, int H>
zvpStatus batchIndexEntry(const u8* src, s32 srcStep, const u8* ref, s32 refStep, u16* sads, s32 count, s32* minIndex) {
  if (anyNull(minIndex)) return zvpStatusNullPointer;  // before the batch: the SADs stay unwritten
  const zvpStatus status = batchEntry<W, H>(src, srcStep, ref, refStep, sads, count);
  if (status != zvpStatusOk) return status;
  storeAs(minIndex, indexOfLeast(sads, workingCount(count)));
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiSAD16x16xN_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count) {
  return batchEntry<16, 16>(pSrc, srcStep, pRef, refStep, pSAD, count);
}
zvpStatus zvpiSAD8x8xN_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count) {
  return batchEntry<8, 8>(pSrc, srcStep, pRef, refStep, pSAD, count);
}
zvpStatus zvpiSAD4x4xN_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count) {
  return batchEntry<4, 4>(pSrc, srcStep, pRef, refStep, pSAD, count);
}
zvpStatus zvpiSAD2x2xN_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count) {
  return batchEntry<2, 2>(pSrc, srcStep, pRef, refStep, pSAD, count);
}

zvpStatus zvpiSAD16x16xNI_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count,
                                    s32* pMinIndex) {
  return batchIndexEntry<16, 16>(pSrc, srcStep, pRef, refStep, pSAD, count, pMinIndex);
}
zvpStatus zvpiSAD8x8xNI_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count,
                                  s32* pMinIndex) {
  return batchIndexEntry<8, 8>(pSrc, srcStep, pRef, refStep, pSAD, count, pMinIndex);
}
zvpStatus zvpiSAD4x4xNI_8u16u_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, u16* pSAD, s32 count,
                                  s32* pMinIndex) {
  return batchIndexEntry<4, 4>(pSrc, srcStep, pRef, refStep, pSAD, count, pMinIndex);
}
