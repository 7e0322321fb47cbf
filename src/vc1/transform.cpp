#include "entry.h"
#include "vc1/transform_kernels.h"

using namespace zvp;
using namespace zvp::vc1;

namespace {

template <int W, int H>
zvpStatus inverse(const s16* src, s32 srcStep, s16* dst, s32 dstStep, zvpSize nonZero) {
  if (anyNull(src, dst)) return zvpStatusNullPointer;
  inverseTransform<W, H>(src, srcStep, dst, dstStep, nonZero);
  return zvpStatusOk;
}

template <int W, int H>
zvpStatus forward(const s16* src, s32 srcStep, s16* dst, s32 dstStep) {
  if (anyNull(src, dst)) return zvpStatusNullPointer;
  forwardTransform<W, H>(src, srcStep, dst, dstStep);
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiTransform8x8Inv_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, zvpSize srcSizeNZ) {
  return inverse<8, 8>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}
zvpStatus zvpiTransform8x8Inv_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, zvpSize srcSizeNZ) {
  return inverse<8, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}
zvpStatus zvpiTransform8x8Fwd_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep) {
  return forward<8, 8>(pSrc, srcStep, pDst, dstStep);
}
zvpStatus zvpiTransform8x8Fwd_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep) {
  return forward<8, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiTransform8x4Inv_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, zvpSize srcSizeNZ) {
  return inverse<8, 4>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}
zvpStatus zvpiTransform8x4Inv_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, zvpSize srcSizeNZ) {
  return inverse<8, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}
zvpStatus zvpiTransform8x4Fwd_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep) {
  return forward<8, 4>(pSrc, srcStep, pDst, dstStep);
}
// Required: the one member without a check.
zvpStatus zvpiTransform8x4Fwd_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep) {
  forwardTransform<8, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
  return zvpStatusOk;
}

zvpStatus zvpiTransform4x8Inv_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, zvpSize srcSizeNZ) {
  return inverse<4, 8>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}
zvpStatus zvpiTransform4x8Inv_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, zvpSize srcSizeNZ) {
  return inverse<4, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}
zvpStatus zvpiTransform4x8Fwd_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep) {
  return forward<4, 8>(pSrc, srcStep, pDst, dstStep);
}
zvpStatus zvpiTransform4x8Fwd_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep) {
  return forward<4, 8>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}

zvpStatus zvpiTransform4x4Inv_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep, zvpSize srcSizeNZ) {
  return inverse<4, 4>(pSrc, srcStep, pDst, dstStep, srcSizeNZ);
}
zvpStatus zvpiTransform4x4Inv_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep, zvpSize srcSizeNZ) {
  return inverse<4, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep, srcSizeNZ);
}
zvpStatus zvpiTransform4x4Fwd_VC1_16s_C1R(const s16* pSrc, s32 srcStep, s16* pDst, s32 dstStep) {
  return forward<4, 4>(pSrc, srcStep, pDst, dstStep);
}
zvpStatus zvpiTransform4x4Fwd_VC1_16s_C1IR(s16* pSrcDst, s32 srcDstStep) {
  return forward<4, 4>(pSrcDst, srcDstStep, pSrcDst, srcDstStep);
}
