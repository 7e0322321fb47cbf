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

namespace detail {
inline constexpr HalfPel caseOfSlot(int slot) {
  constexpr HalfPel byAcc[4] = {HalfPel::ff, HalfPel::hf, HalfPel::fh, HalfPel::hh};
  return byAcc[slot / 2];
}
// At whole samples rounding makes no difference: slots 0 and 1 hold one kernel.
inline constexpr Rounding roundingOfSlot(int slot) { return slot > 1 ? Rounding(slot & 1) : Rounding::up; }

template <int W, int H>
inline constexpr auto copyTable = makeTable<CopyKernel, 8>([]<int Slot>() {
  return copyBlock<W, H, caseOfSlot(Slot), roundingOfSlot(Slot)>;
});
template <int W, int H>
inline constexpr auto interpolateAverageTable = makeTable<CopyKernel, 8>([]<int Slot>() {
  return averageInto<W, H, caseOfSlot(Slot), roundingOfSlot(Slot)>;
});
}  // namespace detail

inline constexpr auto ownvc_Copy16x16HP_8u_C1R_0 = detail::copyTable<16, 16>;
inline constexpr auto ownvc_Copy16x8HP_8u_C1R_0 = detail::copyTable<16, 8>;
inline constexpr auto ownvc_Copy8x8HP_8u_C1R_0 = detail::copyTable<8, 8>;
inline constexpr auto ownvc_Copy8x4HP_8u_C1R_0 = detail::copyTable<8, 4>;
inline constexpr auto ownvc_Copy4x8HP_8u_C1R_0 =
    detail::copyTable<4, 8>;  // of overlapped compensation; no export has it

inline constexpr auto ownvc_InterpolateAverage16x16HP_8u_C1IR_0 = detail::interpolateAverageTable<16, 16>;
inline constexpr auto ownvc_InterpolateAverage16x8HP_8u_C1IR_0 = detail::interpolateAverageTable<16, 8>;
inline constexpr auto ownvc_InterpolateAverage8x8HP_8u_C1IR_0 = detail::interpolateAverageTable<8, 8>;
inline constexpr auto ownvc_InterpolateAverage8x4HP_8u_C1IR_0 = detail::interpolateAverageTable<8, 4>;

inline constexpr auto ownvc_Add8x8HP_16s8u_C1RS_0 = makeTable<AddKernel, 8>(
    []<int Slot>() { return addBlock<detail::caseOfSlot(Slot), detail::roundingOfSlot(Slot)>; });

static_assert(ownvc_Copy8x8HP_8u_C1R_0[1] == copyBlock<8, 8, HalfPel::ff>);
static_assert(ownvc_Copy8x8HP_8u_C1R_0[2] == copyBlock<8, 8, HalfPel::hf, Rounding::up>);
static_assert(ownvc_Copy8x8HP_8u_C1R_0[5] == copyBlock<8, 8, HalfPel::fh, Rounding::down>);
static_assert(ownvc_InterpolateAverage8x8HP_8u_C1IR_0[7] == averageInto<8, 8, HalfPel::hh, Rounding::down>);
static_assert(ownvc_Add8x8HP_16s8u_C1RS_0[4] == addBlock<HalfPel::fh, Rounding::up>);

}  // namespace zvp::mc
