// SSD of one block against one reference position.
#include "measures/ssd_tables.h"

using namespace zvp;
using namespace zvp::measures;

zvpStatus zvpiSSD8x8_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSSD, s32 mcType) {
  return measureEntry(ownvc_SSD8x8HP_8u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSSD, mcType);
}
zvpStatus zvpiSSD4x4_8u32s_C1R(const u8* pSrc, s32 srcStep, const u8* pRef, s32 refStep, s32* pSSD, s32 mcType) {
  return measureEntry(ownvc_SSD4x4HP_8u32s_C1R_0, pSrc, srcStep, pRef, refStep, pSSD, mcType);
}
