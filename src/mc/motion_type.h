// The motion types of the blocks with a residual and of the differences: bits 2 and 3 select the half-pel case.
#pragma once

#include "mc/half_pel.h"

namespace zvp::mc {

// A table for two references has a slot for each pair of cases, the forward one in the low bits.
inline constexpr u32 pairSlot(s32 mcTypeF, s32 mcTypeB) { return (u32(mcTypeF) & 12) >> 2 | (u32(mcTypeB) & 12); }
inline constexpr HalfPel forwardCase(int pairSlot) { return HalfPel(pairSlot & 3); }
inline constexpr HalfPel backwardCase(int pairSlot) { return HalfPel(pairSlot >> 2); }

}  // namespace zvp::mc
