// Residual blocks, with or without their SAD.
#include "measures/diff_kernels.h"

using namespace zvp;
using namespace zvp::measures;

namespace {

template <class T, class Kernel, class... Sad>
ZVP_INLINE zvpStatus subtractEntry(Kernel kernel, const T* a, s32 aStep, const T* b, s32 bStep, s16* dst, s32 dstStep,
                                   Sad*... sad) {
  if (anyNull(a, b, dst, sad...)) return zvpStatusNullPointer;
  return kernel(reinterpret_cast<const u8*>(a), aStep, reinterpret_cast<const u8*>(b), bStep,
                reinterpret_cast<u8*>(dst), dstStep, sad...);
}

}  // namespace

zvpStatus zvpiSub4x4_8u16s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s16* pDst, s32 dstStep) {
  return subtractEntry(ownvc_Sub4x4_8u16s_C1R, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}
zvpStatus zvpiSub8x8_8u16s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s16* pDst, s32 dstStep) {
  return subtractEntry(ownvc_Sub8x8_8u16s_C1R, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}
zvpStatus zvpiSub16x16_8u16s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s16* pDst, s32 dstStep) {
  return subtractEntry(ownvc_Sub16x16_8u16s_C1R, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}
zvpStatus zvpiSub4x4_16u16s_C1R(const u16* pSrc1, s32 src1Step, const u16* pSrc2, s32 src2Step, s16* pDst,
                                s32 dstStep) {
  return subtractEntry(subtract<u16, 4, 4>, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}
zvpStatus zvpiSub8x8_16u16s_C1R(const u16* pSrc1, s32 src1Step, const u16* pSrc2, s32 src2Step, s16* pDst,
                                s32 dstStep) {
  return subtractEntry(subtract<u16, 8, 8>, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep);
}
zvpStatus zvpiSubSAD8x8_8u16s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s16* pDst, s32 dstStep,
                                  s32* pSAD) {
  return subtractEntry(ownvc_SubSAD8x8_8u16s_C1R, pSrc1, src1Step, pSrc2, src2Step, pDst, dstStep, pSAD);
}
