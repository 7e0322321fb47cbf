// Mean absolute deviation, variance and sum of a block.
#include "measures/variance_kernels.h"

using namespace zvp;
using namespace zvp::measures;

zvpStatus zvpiMeanAbsDev8x8_8u32s_C1R(const u8* pSrc, s32 srcStep, s32* pResult) {
  if (anyNull(pSrc, pResult)) return zvpStatusNullPointer;
  return ownvc_MeanAbsDev8x8_8u32s_C1R(pSrc, srcStep, pResult);
}
zvpStatus zvpiMeanAbsDev16x16_8u32s_C1R(const u8* pSrc, s32 srcStep, s32* pResult) {
  if (anyNull(pSrc, pResult)) return zvpStatusNullPointer;
  return ownvc_MeanAbsDev16x16_8u32s_C1R(pSrc, srcStep, pResult);
}

// The two variances differ on purpose: this one is of the whole block and in integers, ...
zvpStatus zvpiVariance16x16_8u32s(const u8* pSrc, s32 srcStep, u32* pVariance) {
  if (anyNull(pSrc, pVariance)) return zvpStatusNullPointer;
  const auto [sum, squares] = moments<16, 16>(pSrc, srcStep);
  storeAs(pVariance, squares - sum * sum / 256);  // sum * sum is at most 65280^2, below 2^32
  return zvpStatusOk;
}
// ... that one is per sample, in single precision with each operation rounded, and truncated.
zvpStatus zvpiVarSum8x8_8u32s_C1R(const u8* pSrc, s32 srcStep, s32* pVariance, s32* pSum) {
  if (anyNull(pSrc, pVariance, pSum)) return zvpStatusNullPointer;
  const auto [sum, squares] = moments<8, 8>(pSrc, srcStep);
  const float mean = float(s32(sum)) * 0.015625f;
  const float variance = float(s32(squares)) * 0.015625f - mean * mean;
  storeAs(pVariance, s32(variance));
  storeAs(pSum, s32(sum));
  return zvpStatusOk;
}
