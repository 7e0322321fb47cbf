// Exports of intra prediction.
#include "entry.h"
#include "h264/intra_kernels.h"

using namespace zvp;

namespace {

template <s32 Width, u32 Modes>
ZVP_INLINE zvpStatus predict(u8* pSrcDst, s32 srcDstStep, u32 mode, s32 availabilityFlags,
                             const PredictIntraFn (&kernels)[Modes]) {
  if (pSrcDst == nullptr) return zvpStatusNullPointer;
  if (srcDstStep < Width) return zvpStatusBadStep;
  if (mode >= Modes) return zvpStatusOutOfRange;
  return kernels[mode](pSrcDst, srcDstStep, mode, u32(availabilityFlags));
}

}  // namespace

// Unlike the larger members this one never refuses a mode for want of neighbours: required.
zvpStatus zvpiPredictIntra_4x4_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, u32 mode, s32 availabilityFlags) {
  return predict<4>(pSrcDst, srcDstStep, mode, availabilityFlags, predictIntra4x4);
}

zvpStatus zvpiPredictIntra_16x16_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, u32 mode, s32 availabilityFlags) {
  return predict<16>(pSrcDst, srcDstStep, mode, availabilityFlags, predictIntra16x16);
}

zvpStatus zvpiPredictIntraChroma8x8_H264_8u_C1IR(u8* pSrcDst, s32 srcDstStep, u32 mode, s32 availabilityFlags) {
  return predict<8>(pSrcDst, srcDstStep, mode, availabilityFlags, predictIntraChroma8x8);
}
