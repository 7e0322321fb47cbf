// Kernel tables of the differences, by the bits 2 and 3 of the motion types.
//
// A kernel's name spells the case of each reference, x first, the forward one first: me_p<16, 16, HalfPel::fh> is
// me_16x16p_fh, me_b<16, 16, HalfPel::hf, HalfPel::ff> is me_16x16b_hf_ff.
#pragma once

#include "mc/getdiff_kernels.h"
#include "mc/motion_type.h"

namespace zvp::mc {

template <int W, int H, HalfPel C>
inline constexpr MePKernel me_p = mePBlock<W, H, C>;
template <int W, int H, HalfPel F, HalfPel B>
inline constexpr MeBKernel me_b = meBBlock<W, H, F, B>;
template <int H, HalfPel C>
inline constexpr MePNv12Kernel me_p_nv12 = mePNv12Block<H, C>;
template <int H, HalfPel F, HalfPel B>
inline constexpr MeBNv12Kernel me_b_nv12 = meBNv12Block<H, F, B>;

// 16 slots: four a case, all the same; with a predictor the second of them is taken.
inline constexpr u32 mePSlot(s32 mcType, bool predictor) { return (u32(mcType) & 12) + (predictor ? 1 : 0); }
namespace detail {
template <int W, int H>
inline constexpr auto mePTable = makeTable<MePKernel, 16>([]<int Slot>() { return me_p<W, H, HalfPel(Slot / 4)>; });
}
inline constexpr auto GetDiff16x16FnTbl_pxmx = detail::mePTable<16, 16>;
inline constexpr auto GetDiff16x8FnTbl_pxmx = detail::mePTable<16, 8>;
inline constexpr auto GetDiff8x16FnTbl_pxmx = detail::mePTable<8, 16>;
inline constexpr auto GetDiff8x8FnTbl_pxmx = detail::mePTable<8, 8>;
inline constexpr auto GetDiff8x4FnTbl_pxmx = detail::mePTable<8, 4>;

// 16 slots: the pair of cases.
namespace detail {
template <int W, int H>
inline constexpr auto meBTable = makeTable<MeBKernel, 16>([]<int Slot>() {
  return me_b<W, H, forwardCase(Slot), backwardCase(Slot)>;
});
}
inline constexpr auto GetDiff16x16BFnTbl_pxmx = detail::meBTable<16, 16>;
inline constexpr auto GetDiff16x8BFnTbl_pxmx = detail::meBTable<16, 8>;
inline constexpr auto GetDiff8x16BFnTbl_pxmx = detail::meBTable<8, 16>;
inline constexpr auto GetDiff8x8BFnTbl_pxmx = detail::meBTable<8, 8>;
inline constexpr auto GetDiff8x4BFnTbl_pxmx = detail::meBTable<8, 4>;

// Interleaved chroma: 4 slots, one a case, and 16, the pair of cases.
inline constexpr u32 mePNv12Slot(s32 mcType) { return (u32(mcType) & 12) >> 2; }
namespace detail {
template <int H>
inline constexpr auto mePNv12Table = makeTable<MePNv12Kernel, 4>([]<int Slot>() {
  return me_p_nv12<H, HalfPel(Slot)>;
});
template <int H>
inline constexpr auto meBNv12Table = makeTable<MeBNv12Kernel, 16>([]<int Slot>() {
  return me_b_nv12<H, forwardCase(Slot), backwardCase(Slot)>;
});
}  // namespace detail
inline constexpr auto GetDiff8x8FnTblNV12_pxmx = detail::mePNv12Table<8>;
inline constexpr auto GetDiff8x4FnTblNV12_pxmx = detail::mePNv12Table<4>;
inline constexpr auto GetDiff8x8BFnTblNV12_pxmx = detail::meBNv12Table<8>;
inline constexpr auto GetDiff8x4BFnTblNV12_pxmx = detail::meBNv12Table<4>;

static_assert(GetDiff16x16FnTbl_pxmx[3] == me_p<16, 16, HalfPel::ff>);
static_assert(GetDiff16x16FnTbl_pxmx[4] == me_p<16, 16, HalfPel::fh>);
static_assert(GetDiff16x16FnTbl_pxmx[11] == me_p<16, 16, HalfPel::hf>);
static_assert(GetDiff16x16FnTbl_pxmx[12] == me_p<16, 16, HalfPel::hh>);
static_assert(GetDiff16x16BFnTbl_pxmx[1] == me_b<16, 16, HalfPel::fh, HalfPel::ff>);
static_assert(GetDiff16x16BFnTbl_pxmx[2] == me_b<16, 16, HalfPel::hf, HalfPel::ff>);
static_assert(GetDiff16x16BFnTbl_pxmx[4] == me_b<16, 16, HalfPel::ff, HalfPel::fh>);
static_assert(GetDiff16x16BFnTbl_pxmx[15] == me_b<16, 16, HalfPel::hh, HalfPel::hh>);
static_assert(GetDiff8x8FnTblNV12_pxmx[1] == me_p_nv12<8, HalfPel::fh>);

}  // namespace zvp::mc
