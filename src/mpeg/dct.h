// The two members of the 8x8 transforms that work on samples. They are not exported.
#pragma once

#include "types.h"

extern "C" {

// zvpStatusNullPointer if a pointer is null. Eight rows of eight samples; steps are bytes and may have any value.
// Forward: as zvpiDCT8x8Fwd_16s_C1. Inverse: as zvpiDCT8x8Inv_16s_C1, the results clipped to 0..255.
zvpStatus zvpiDCT8x8Fwd_8u16s_C1R(const zvp::u8* pSrc, zvp::s32 srcStep, zvp::s16* pDst);
zvpStatus zvpiDCT8x8Inv_16s8u_C1R(const zvp::s16* pSrc, zvp::u8* pDst, zvp::s32 dstStep);

}  // extern "C"
