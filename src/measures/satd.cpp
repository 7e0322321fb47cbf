// SATD of two blocks.
#include "measures/satd_kernels.h"

using namespace zvp;

namespace {

template <int W, int H>
ZVP_INLINE zvpStatus satdEntry(const u8* src1, s32 src1Step, const u8* src2, s32 src2Step, s32* result) {
  if (anyNull(src1, src2, result)) return zvpStatusNullPointer;
  storeAs(result, measures::satd<W, H>(src1, src1Step, src2, src2Step));
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiSATD4x4_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<4, 4>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD4x8_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<4, 8>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD8x4_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<8, 4>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD8x8_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<8, 8>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD8x16_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<8, 16>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD16x8_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<16, 8>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
zvpStatus zvpiSATD16x16_8u32s_C1R(const u8* pSrc1, s32 src1Step, const u8* pSrc2, s32 src2Step, s32* pSATD) {
  return satdEntry<16, 16>(pSrc1, src1Step, pSrc2, src2Step, pSATD);
}
