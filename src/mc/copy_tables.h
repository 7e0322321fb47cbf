// Kernel tables of the half-pel copies, averages and adds. Slot: (acc & 3) * 2 + (rounding & 1), acc being 1 for half
// in x and 2 for half in y, so that half in x comes before half in y.
//
// Other code that predicts blocks takes its kernels from here: copyBlock<W, H, case, rounding> is
// ownvc_Copy<W>x<H>HP_<case><0 or 1>_8u_C1R, and copyBlock<W, H, HalfPel::ff> is ownvc_Copy<W>x<H>_8u_C1R.
#pragma once

#include "mc/copy_kernels.h"

namespace zvp::mc {

using CopyKernel = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep);
using AddKernel = zvpStatus (*)(const s16* residual, std::ptrdiff_t residualStep, const u8* ref, std::ptrdiff_t refStep,
                                u8* dst, std::ptrdiff_t dstStep);

inline constexpr u32 copySlot(s32 acc, s32 rounding) { return (u32(acc) & 3) * 2 + (u32(rounding) & 1); }

template <int W, int H>
inline constexpr CopyKernel copyTable[8] = {
    copyBlock<W, H, HalfPel::ff>,
    copyBlock<W, H, HalfPel::ff>,
    copyBlock<W, H, HalfPel::hf, Rounding::up>,
    copyBlock<W, H, HalfPel::hf, Rounding::down>,
    copyBlock<W, H, HalfPel::fh, Rounding::up>,
    copyBlock<W, H, HalfPel::fh, Rounding::down>,
    copyBlock<W, H, HalfPel::hh, Rounding::up>,
    copyBlock<W, H, HalfPel::hh, Rounding::down>,
};
inline constexpr auto& ownvc_Copy16x16HP_8u_C1R_0 = copyTable<16, 16>;
inline constexpr auto& ownvc_Copy16x8HP_8u_C1R_0 = copyTable<16, 8>;
inline constexpr auto& ownvc_Copy8x8HP_8u_C1R_0 = copyTable<8, 8>;
inline constexpr auto& ownvc_Copy8x4HP_8u_C1R_0 = copyTable<8, 4>;
inline constexpr auto& ownvc_Copy4x8HP_8u_C1R_0 = copyTable<4, 8>;  // of overlapped compensation; no export has it

template <int W, int H>
inline constexpr CopyKernel interpolateAverageTable[8] = {
    averageInto<W, H, HalfPel::ff>,
    averageInto<W, H, HalfPel::ff>,
    averageInto<W, H, HalfPel::hf, Rounding::up>,
    averageInto<W, H, HalfPel::hf, Rounding::down>,
    averageInto<W, H, HalfPel::fh, Rounding::up>,
    averageInto<W, H, HalfPel::fh, Rounding::down>,
    averageInto<W, H, HalfPel::hh, Rounding::up>,
    averageInto<W, H, HalfPel::hh, Rounding::down>,
};
inline constexpr auto& ownvc_InterpolateAverage16x16HP_8u_C1IR_0 = interpolateAverageTable<16, 16>;
inline constexpr auto& ownvc_InterpolateAverage16x8HP_8u_C1IR_0 = interpolateAverageTable<16, 8>;
inline constexpr auto& ownvc_InterpolateAverage8x8HP_8u_C1IR_0 = interpolateAverageTable<8, 8>;
inline constexpr auto& ownvc_InterpolateAverage8x4HP_8u_C1IR_0 = interpolateAverageTable<8, 4>;

inline constexpr AddKernel ownvc_Add8x8HP_16s8u_C1RS_0[8] = {
    addBlock<HalfPel::ff>,
    addBlock<HalfPel::ff>,
    addBlock<HalfPel::hf, Rounding::up>,
    addBlock<HalfPel::hf, Rounding::down>,
    addBlock<HalfPel::fh, Rounding::up>,
    addBlock<HalfPel::fh, Rounding::down>,
    addBlock<HalfPel::hh, Rounding::up>,
    addBlock<HalfPel::hh, Rounding::down>,
};

}  // namespace zvp::mc
