// Kernel tables of the motion compensation with a residual, by the bits 2 and 3 of the motion types.
//
// A kernel's name spells the case of each reference, the forward one first: mc_16xHB<HalfPel::fh, HalfPel::ff> is
// mc_16xH_xfyh_xfyf. The small blocks write i for f: mcl<2, 2, HalfPel::fh> is mcl_2x2_xiyh.
#pragma once

#include "mc/mc_kernels.h"
#include "mc/motion_type.h"

namespace zvp::mc {

template <HalfPel C>
inline constexpr McKernel<Layout<16>> mc_16xH = mcBlock<Layout<16>, C>;
template <HalfPel C>
inline constexpr McKernel<Layout<8>> mc_8xH = mcBlock<Layout<8>, C>;
template <HalfPel C>
inline constexpr McKernel<Interleaved> mcuv_16xH = mcBlock<Interleaved, C>;
template <HalfPel C>
inline constexpr McKernel<InterleavedOfPlanes> mc_8xH_nv12 = mcBlock<InterleavedOfPlanes, C>;

template <HalfPel F, HalfPel B>
inline constexpr McBKernel<Layout<16>> mc_16xHB = mcBlock<Layout<16>, F, B>;
template <HalfPel F, HalfPel B>
inline constexpr McBKernel<Layout<8>> mc_8xHB = mcBlock<Layout<8>, F, B>;
template <HalfPel F, HalfPel B>
inline constexpr McBKernel<Interleaved> mcuv_16xHB = mcBlock<Interleaved, F, B>;
template <HalfPel F, HalfPel B>
inline constexpr McBKernel<InterleavedOfPlanes> mc_8xHB_nv12 = mcBlock<InterleavedOfPlanes, F, B>;

template <int W, int H, HalfPel C>
inline constexpr MclKernel<Layout<W>> mcl = mclBlock<Layout<W>, H, C>;
template <int W, int H, HalfPel F, HalfPel B>
inline constexpr MclBKernel<Layout<W>> mclB = mclBlock<Layout<W>, H, F, B>;

// Eight slots: the case, doubled, plus the low bit of roundControl. Both slots of a pair hold one kernel.
inline constexpr u32 mcSlot(s32 mcType, s32 roundControl) {
  return ((u32(mcType) & 12) >> 1) + (u32(roundControl) & 1);
}
inline constexpr auto MC16xHFunctionTable =
    makeTable<McKernel<Layout<16>>, 8>([]<int Slot>() { return mc_16xH<HalfPel(Slot / 2)>; });
inline constexpr auto MC8xHFunctionTable =
    makeTable<McKernel<Layout<8>>, 8>([]<int Slot>() { return mc_8xH<HalfPel(Slot / 2)>; });
inline constexpr auto MC16xHUVFunctionTable =
    makeTable<McKernel<Interleaved>, 8>([]<int Slot>() { return mcuv_16xH<HalfPel(Slot / 2)>; });
inline constexpr auto MC8xHFunctionNV12Table_pxmx =
    makeTable<McKernel<InterleavedOfPlanes>, 8>([]<int Slot>() { return mc_8xH_nv12<HalfPel(Slot / 2)>; });

// 32 slots: the pair of cases, doubled, plus the low bit of roundControl.
inline constexpr u32 mcBSlot(s32 mcTypeF, s32 mcTypeB, s32 roundControl) {
  return pairSlot(mcTypeF, mcTypeB) * 2 + (u32(roundControl) & 1);
}
inline constexpr auto MC16xHBFunctionTable = makeTable<McBKernel<Layout<16>>, 32>(
    []<int Slot>() { return mc_16xHB<forwardCase(Slot / 2), backwardCase(Slot / 2)>; });
inline constexpr auto MC8xHBFunctionTable = makeTable<McBKernel<Layout<8>>, 32>(
    []<int Slot>() { return mc_8xHB<forwardCase(Slot / 2), backwardCase(Slot / 2)>; });
inline constexpr auto MC16xHUVBFunctionTable = makeTable<McBKernel<Interleaved>, 32>(
    []<int Slot>() { return mcuv_16xHB<forwardCase(Slot / 2), backwardCase(Slot / 2)>; });
inline constexpr auto MC8xHBFunctionNV12Table_pxmx = makeTable<McBKernel<InterleavedOfPlanes>, 32>(
    []<int Slot>() { return mc_8xHB_nv12<forwardCase(Slot / 2), backwardCase(Slot / 2)>; });

static_assert(MC16xHFunctionTable[0] == mc_16xH<HalfPel::ff> && MC16xHFunctionTable[1] == mc_16xH<HalfPel::ff>);
static_assert(MC16xHFunctionTable[2] == mc_16xH<HalfPel::fh> && MC16xHFunctionTable[3] == mc_16xH<HalfPel::fh>);
static_assert(MC16xHFunctionTable[4] == mc_16xH<HalfPel::hf> && MC16xHFunctionTable[7] == mc_16xH<HalfPel::hh>);
static_assert(MC16xHBFunctionTable[2] == mc_16xHB<HalfPel::fh, HalfPel::ff>);
static_assert(MC16xHBFunctionTable[8] == mc_16xHB<HalfPel::ff, HalfPel::fh>);
static_assert(MC16xHBFunctionTable[31] == mc_16xHB<HalfPel::hh, HalfPel::hh>);
static_assert(mcBSlot(4, 0, 0) == 2 && mcBSlot(0, 4, 0) == 8 && mcBSlot(12, 12, 1) == 31);

// 16 slots: four a case.
inline constexpr u32 mclSlot(s32 mcType) { return u32(mcType) & 12; }
namespace detail {
template <int W, int H>
inline constexpr auto mclTable = makeTable<MclKernel<Layout<W>>, 16>([]<int Slot>() {
  return mcl<W, H, HalfPel(Slot / 4)>;
});
}
inline constexpr auto MC2x2FnTbl = detail::mclTable<2, 2>;
inline constexpr auto MC2x4FnTbl = detail::mclTable<2, 4>;
inline constexpr auto MC4x2FnTbl = detail::mclTable<4, 2>;
inline constexpr auto MC4x4FnTbl = detail::mclTable<4, 4>;
inline constexpr auto MC4x8FnTbl = detail::mclTable<4, 8>;

// 16 slots: the pair of cases.
namespace detail {
template <int W, int H>
inline constexpr auto mclBTable = makeTable<MclBKernel<Layout<W>>, 16>([]<int Slot>() {
  return mclB<W, H, forwardCase(Slot), backwardCase(Slot)>;
});
}
inline constexpr auto MC2x2BFnTbl = detail::mclBTable<2, 2>;
inline constexpr auto MC2x4BFnTbl = detail::mclBTable<2, 4>;
inline constexpr auto MC4x2BFnTbl = detail::mclBTable<4, 2>;
inline constexpr auto MC4x4BFnTbl = detail::mclBTable<4, 4>;
inline constexpr auto MC4x8BFnTbl = detail::mclBTable<4, 8>;

static_assert(MC2x2FnTbl[3] == mcl<2, 2, HalfPel::ff> && MC2x2FnTbl[4] == mcl<2, 2, HalfPel::fh>);
static_assert(MC2x2FnTbl[11] == mcl<2, 2, HalfPel::hf> && MC2x2FnTbl[12] == mcl<2, 2, HalfPel::hh>);
static_assert(MC2x2BFnTbl[1] == mclB<2, 2, HalfPel::fh, HalfPel::ff>);
static_assert(MC2x2BFnTbl[4] == mclB<2, 2, HalfPel::ff, HalfPel::fh>);

}  // namespace zvp::mc
