// Internal memory and image primitives. None is exported. Lengths count elements, sizes pixels, steps bytes.
#pragma once

#include "types.h"

extern "C" {

// Null if length is below 1, without a call of zvpMalloc; otherwise what zvpMalloc gives for length elements.
zvp::u8* zvpsMalloc_8u(zvp::s32 length);
zvp::s8* zvpsMalloc_8s(zvp::s32 length);
zvp::u16* zvpsMalloc_16u(zvp::s32 length);
zvp::s32* zvpsMalloc_32s(zvp::s32 length);
void zvpsFree(void* pointer);
void zvpiFree(void* pointer);

// All of these: zvpStatusNullPointer if a pointer is null, then zvpStatusBadSize if a length, width or height is
// below 1. Copies run forward, element by element in effect: an overlapping destination ahead of the source repeats it.
zvpStatus zvpsCopy_8u(const zvp::u8* pSrc, zvp::u8* pDst, zvp::s32 length);
zvpStatus zvpsCopy_16s(const zvp::s16* pSrc, zvp::s16* pDst, zvp::s32 length);
zvpStatus zvpsZero_8u(zvp::u8* pDst, zvp::s32 length);
zvpStatus zvpsZero_16s(zvp::s16* pDst, zvp::s32 length);
zvpStatus zvpsSet_8u(zvp::u8 value, zvp::u8* pDst, zvp::s32 length);
zvpStatus zvpiCopy_8u_C1R(const zvp::u8* pSrc, zvp::s32 srcStep, zvp::u8* pDst, zvp::s32 dstStep, zvpSize roiSize);
zvpStatus zvpiSet_8u_C1R(zvp::u8 value, zvp::u8* pDst, zvp::s32 dstStep, zvpSize roiSize);

// Box filter of 3x3 (maskSize 33) or 5x5 (55) pixels. Reads a border of 1 or 2 pixels around the region, which the
// caller provides. Checks in order: null pointer, width or height below 1, a step below 1 (zvpStatusBadStep),
// maskSize (zvpStatusBadMaskSize), memory for the row sums (zvpStatusNoMemory).
zvpStatus zvpiFilterLowpass_8u_C1R(const zvp::u8* pSrc, zvp::s32 srcStep, zvp::u8* pDst, zvp::s32 dstStep,
                                   zvpSize roiSize, zvp::s32 maskSize);

}  // extern "C"
