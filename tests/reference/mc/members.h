// The exports of MC and GetDiff by shape, as the tests and the benchmarks walk through them.
#pragma once

#include "reference/mc/mc.h"
#include "zvpvc.h"

namespace reference::mc {

using u8 = std::uint8_t;
using s16 = std::int16_t;
using s32 = std::int32_t;

using Mc = zvpStatus (*)(const u8*, s32, const s16*, s32, u8*, s32, s32, s32);
using McB = zvpStatus (*)(const u8*, s32, s32, const u8*, s32, s32, const s16*, s32, u8*, s32, s32);
using McPlanes = zvpStatus (*)(const u8*, s32, const s16*, const s16*, s32, u8*, s32, s32, s32);
using McBPlanes = zvpStatus (*)(const u8*, s32, s32, const u8*, s32, s32, const s16*, const s16*, s32, u8*, s32, s32);
using Diff = zvpStatus (*)(const u8*, s32, const u8*, s32, s16*, s32, s16*, s32, s32, s32);
using DiffB = zvpStatus (*)(const u8*, s32, const u8*, s32, s32, const u8*, s32, s32, s16*, s32, s32);
using DiffBPlanes = zvpStatus (*)(const u8*, s32, const u8*, s32, s32, const u8*, s32, s32, s16*, s32, s16*, s32, s32);

// From one reference and from two.
struct McMember {
  Shape shape;
  const char* name;
  Mc one;
  const char* nameB;
  McB two;
};
inline const McMember mcMembers[] = {
    {{16, 16}, "zvpiMC16x16_8u_C1", zvpiMC16x16_8u_C1, "zvpiMC16x16B_8u_C1", zvpiMC16x16B_8u_C1},
    {{16, 8}, "zvpiMC16x8_8u_C1", zvpiMC16x8_8u_C1, "zvpiMC16x8B_8u_C1", zvpiMC16x8B_8u_C1},
    {{16, 4}, "zvpiMC16x4_8u_C1", zvpiMC16x4_8u_C1, "zvpiMC16x4B_8u_C1", zvpiMC16x4B_8u_C1},
    {{8, 16}, "zvpiMC8x16_8u_C1", zvpiMC8x16_8u_C1, "zvpiMC8x16B_8u_C1", zvpiMC8x16B_8u_C1},
    {{8, 8}, "zvpiMC8x8_8u_C1", zvpiMC8x8_8u_C1, "zvpiMC8x8B_8u_C1", zvpiMC8x8B_8u_C1},
    {{8, 4}, "zvpiMC8x4_8u_C1", zvpiMC8x4_8u_C1, "zvpiMC8x4B_8u_C1", zvpiMC8x4B_8u_C1},
    {{2, 2}, "zvpiMC2x2_8u_C1", zvpiMC2x2_8u_C1, "zvpiMC2x2B_8u_C1", zvpiMC2x2B_8u_C1},
    {{2, 4}, "zvpiMC2x4_8u_C1", zvpiMC2x4_8u_C1, "zvpiMC2x4B_8u_C1", zvpiMC2x4B_8u_C1},
    {{4, 2}, "zvpiMC4x2_8u_C1", zvpiMC4x2_8u_C1, "zvpiMC4x2B_8u_C1", zvpiMC4x2B_8u_C1},
    {{4, 4}, "zvpiMC4x4_8u_C1", zvpiMC4x4_8u_C1, "zvpiMC4x4B_8u_C1", zvpiMC4x4B_8u_C1},
    {{4, 8}, "zvpiMC4x8_8u_C1", zvpiMC4x8_8u_C1, "zvpiMC4x8B_8u_C1", zvpiMC4x8B_8u_C1},
    {{16, 8, 2}, "zvpiMC16x8UV_8u_C1", zvpiMC16x8UV_8u_C1, "zvpiMC16x8BUV_8u_C1", zvpiMC16x8BUV_8u_C1},
};

// Interleaved chroma with a residual in two planes.
struct McPlanesMember {
  int height;
  const char* name;
  McPlanes one;
  const char* nameB;
  McBPlanes two;
};
inline const McPlanesMember mcPlanesMembers[] = {
    {8, "zvpiMC8x8_16s8u_P2C2R", zvpiMC8x8_16s8u_P2C2R, "zvpiMC8x8B_16s8u_P2C2R", zvpiMC8x8B_16s8u_P2C2R},
    {4, "zvpiMC8x4_16s8u_P2C2R", zvpiMC8x4_16s8u_P2C2R, "zvpiMC8x4B_16s8u_P2C2R", zvpiMC8x4B_16s8u_P2C2R},
};

// With the MC members that undo them.
struct GetDiffMember {
  int width, height;
  const char* name;
  Diff one;
  Mc undoOne;
  const char* nameB;
  DiffB two;
  McB undoTwo;
};
inline const GetDiffMember getDiffMembers[] = {
    {16, 16, "zvpiGetDiff16x16_8u16s_C1", zvpiGetDiff16x16_8u16s_C1, zvpiMC16x16_8u_C1, "zvpiGetDiff16x16B_8u16s_C1",
     zvpiGetDiff16x16B_8u16s_C1, zvpiMC16x16B_8u_C1},
    {16, 8, "zvpiGetDiff16x8_8u16s_C1", zvpiGetDiff16x8_8u16s_C1, zvpiMC16x8_8u_C1, "zvpiGetDiff16x8B_8u16s_C1",
     zvpiGetDiff16x8B_8u16s_C1, zvpiMC16x8B_8u_C1},
    {8, 16, "zvpiGetDiff8x16_8u16s_C1", zvpiGetDiff8x16_8u16s_C1, zvpiMC8x16_8u_C1, "zvpiGetDiff8x16B_8u16s_C1",
     zvpiGetDiff8x16B_8u16s_C1, zvpiMC8x16B_8u_C1},
    {8, 8, "zvpiGetDiff8x8_8u16s_C1", zvpiGetDiff8x8_8u16s_C1, zvpiMC8x8_8u_C1, "zvpiGetDiff8x8B_8u16s_C1",
     zvpiGetDiff8x8B_8u16s_C1, zvpiMC8x8B_8u_C1},
    {8, 4, "zvpiGetDiff8x4_8u16s_C1", zvpiGetDiff8x4_8u16s_C1, zvpiMC8x4_8u_C1, "zvpiGetDiff8x4B_8u16s_C1",
     zvpiGetDiff8x4B_8u16s_C1, zvpiMC8x4B_8u_C1},
};

// Interleaved chroma with differences in two planes.
struct GetDiffChromaMember {
  int height;
  const char* name;
  Diff one;
  const char* nameB;
  DiffBPlanes two;
};
inline const GetDiffChromaMember getDiffChromaMembers[] = {
    {8, "zvpiGetDiff8x8_8u16s_C2P2", zvpiGetDiff8x8_8u16s_C2P2, "zvpiGetDiff8x8B_8u16s_C2P2",
     zvpiGetDiff8x8B_8u16s_C2P2},
    {4, "zvpiGetDiff8x4_8u16s_C2P2", zvpiGetDiff8x4_8u16s_C2P2, "zvpiGetDiff8x4B_8u16s_C2P2",
     zvpiGetDiff8x4B_8u16s_C2P2},
};

}  // namespace reference::mc
