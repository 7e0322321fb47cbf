// Frame against field activity of a macroblock.
#include "measures/field_sad_kernels.h"

using namespace zvp;
using namespace zvp::measures;

zvpStatus zvpiFrameFieldSAD16x16_8u32s_C1R(const u8* pSrc, s32 srcStep, s32* pFrameSAD, s32* pFieldSAD) {
  if (anyNull(pSrc, pFrameSAD, pFieldSAD)) return zvpStatusNullPointer;
  return ownvc_FrameFieldSAD16x16_8u32s_C1R(pSrc, srcStep, pFrameSAD, pFieldSAD);
}
zvpStatus zvpiFrameFieldSAD16x16_16s32s_C1R(const s16* pSrc, s32 srcStep, s32* pFrameSAD, s32* pFieldSAD) {
  if (anyNull(pSrc, pFrameSAD, pFieldSAD)) return zvpStatusNullPointer;
  return ownvc_FrameFieldSAD16x16_16s32s_C1R(reinterpret_cast<const u8*>(pSrc), srcStep, pFrameSAD, pFieldSAD);
}
