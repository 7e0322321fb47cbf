// SAD of one block against one reference position.
#include "measures/sad_tables.h"

using namespace zvp;
using namespace zvp::measures;

namespace {

template <int W, int H>
zvpStatus wholePelEntry(const u8* src, s32 srcStep, const u8* ref, s32 refStep, s32* result) {
  if (anyNull(src, ref, result)) return zvpStatusNullPointer;
  return sad8u<W, H, HalfPel::none>(src, srcStep, ref, refStep, result);
}

}  // namespace

zvpStatus zvpiSAD16x16_8u32s(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD16x16HP_8u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}
zvpStatus zvpiSAD16x8_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD16x8HP_8u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}
zvpStatus zvpiSAD8x8_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD8x8HP_8u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}
zvpStatus zvpiSAD16x16_16u32s_C1R(const u16* pSrc, s32 srcStep, const u16* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD16x16HP_16u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}
zvpStatus zvpiSAD8x8_16u32s_C1R(const u16* pSrc, s32 srcStep, const u16* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD8x8HP_16u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}
zvpStatus zvpiSAD4x4_16u32s_C1R(const u16* pSrc, s32 srcStep, const u16* pRef, s32 refStep, s32* pSAD, s32 mcType) {
  return measureEntry(ownvc_SAD4x4HP_16u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSAD, mcType);
}

// Whole-pel only.
zvpStatus zvpiSAD8x16_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD) {
  return wholePelEntry<8, 16>(pSrc, srcStep, pRef, refStep, pSAD);
}
zvpStatus zvpiSAD8x4_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD) {
  return wholePelEntry<8, 4>(pSrc, srcStep, pRef, refStep, pSAD);
}
zvpStatus zvpiSAD4x8_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSAD) {
  return wholePelEntry<4, 8>(pSrc, srcStep, pRef, refStep, pSAD);
}
