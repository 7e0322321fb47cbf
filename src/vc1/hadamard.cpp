#include "entry.h"
#include "vc1/hadamard_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

zvpStatus zvpiHadamard8x8Sum_VC1_16s(const s16* pSrc, s32 srcStep, s16* pDst, u32* pSum) {
  if (anyNull(pSrc, pDst, pSum)) return zvpStatusNullPointer;
  S16<8> rows[8];
  for (int y = 0; y < 8; ++y) rows[y] = simd::load<S16<8>>(advanceBytes(pSrc, y * std::ptrdiff_t(srcStep)));
  storeAs(pSum, hadamardSum(rows, pDst));
  return zvpStatusOk;
}

zvpStatus zvpiHadamard8x8Sum_VC1_8u16s(const u8* pSrc, s32 srcStep, s16* pDst, u32* pSum) {
  if (anyNull(pSrc, pDst, pSum)) return zvpStatusNullPointer;
  S16<8> rows[8];
  for (int y = 0; y < 8; ++y) rows[y] = simd::loadWidened<8>(pSrc + y * std::ptrdiff_t(srcStep));
  storeAs(pSum, hadamardSum(rows, pDst));
  return zvpStatusOk;
}
