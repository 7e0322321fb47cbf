// Kernel tables of the VC-1 interpolation and the choice among them by size and fractions.
#pragma once

#include <algorithm>
#include <array>
#include <utility>

#include "mc/copy_kernels.h"
#include "vc1/interpolate_bicubic_kernels.h"
#include "vc1/interpolate_bilinear_kernels.h"

namespace zvp::vc1 {

// ---- bicubic ------------------------------------------------------------------------------------------------------

// position is dx * 4 + dy.
using BicubicKernel = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                    s32 roundControl, u32 position);

template <int W, int H> zvpStatus bicubicKernel(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                                s32 roundControl, u32 position) {
  using Position = zvpStatus (*)(const u8*, std::ptrdiff_t, u8*, std::ptrdiff_t, s32);
  static constexpr auto positions = []<int... P>(std::integer_sequence<int, P...>) {
    return std::array<Position, 16>{bicubicBlock<W, H, P / 4, P % 4>...};
  }
  (std::make_integer_sequence<int, 16>());
  if (position == 0) [[likely]]  // most blocks do not move by fractions
    return bicubicBlock<W, H, 0, 0>(src, srcStep, dst, dstStep, roundControl);
  return positions[position](src, srcStep, dst, dstStep, roundControl);
}

inline constexpr auto interpolate8x8QPBicubic_VC1_8u_C1R = bicubicKernel<8, 8>;
inline constexpr auto interpolate16x8QPBicubic_VC1_8u_C1R = bicubicKernel<16, 8>;
inline constexpr auto interpolate16x16QPBicubic_VC1_8u_C1R = bicubicKernel<16, 16>;

// Slot (width >> 4) + (height >> 4).
inline constexpr BicubicKernel zvpiBicubicInterpolate_table_0[3] = {
    interpolate8x8QPBicubic_VC1_8u_C1R, interpolate16x8QPBicubic_VC1_8u_C1R, interpolate16x16QPBicubic_VC1_8u_C1R};

// ---- bilinear -----------------------------------------------------------------------------------------------------

using BilinearKernel = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                     s32 roundControl);
using HalfPelKernel = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep);

namespace detail {

// Slot dx * 4 + dy; empty for positions at whole and half samples. Kernel <dx, dy> of the table for W x H samples is
// ownvc_Interpolate<W>x<H>QPBilinear_VC1_8u_C1R_<dx>_<dy>, or _C2R.
template <int W, int H, int Channels>
inline constexpr auto bilinearTable = []<int... P>(std::integer_sequence<int, P...>) {
  constexpr auto kernel = []<int Dx, int Dy>() -> BilinearKernel {
    if constexpr (Dx % 2 == 0 && Dy % 2 == 0)
      return nullptr;
    else
      return bilinearBlock<W * Channels, H, Dx, Dy, Channels>;
  };
  return std::array<BilinearKernel, 16>{kernel.template operator()<P / 4, P % 4>()...};
}
(std::make_integer_sequence<int, 16>());

// Slot dy + 2 * dx + (roundControl & 1) for even fractions: half in y comes before half in x, other than in the tables
// of the half-pel copies. Without a neighbour to the right, pairs are bytes of a row twice as wide.
template <int W, int H, int Channels> inline constexpr std::array<HalfPelKernel, 8> halfPelTable = {
    mc::copyBlock<W * Channels, H, mc::HalfPel::ff>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::ff>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::fh, mc::Rounding::up>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::fh, mc::Rounding::down>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::hf, mc::Rounding::up, Channels>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::hf, mc::Rounding::down, Channels>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::hh, mc::Rounding::up, Channels>,
    mc::copyBlock<W * Channels, H, mc::HalfPel::hh, mc::Rounding::down, Channels>};

}  // namespace detail

inline constexpr auto ownvc_zvpiInterpolate16x16QPBilinear_VC1_8u_C1R_0 = detail::bilinearTable<16, 16, 1>;
inline constexpr auto ownvc_zvpiInterpolate8x8QPBilinear_VC1_8u_C1R_0 = detail::bilinearTable<8, 8, 1>;
inline constexpr auto ownvc_zvpiInterpolate8x4QPBilinear_VC1_8u_C1R_0 = detail::bilinearTable<8, 4, 1>;
inline constexpr auto ownvc_zvpiInterpolate4x4QPBilinear_VC1_8u_C1R_0 = detail::bilinearTable<4, 4, 1>;
inline constexpr auto ownvc_zvpiInterpolate8x8QPBilinear_VC1_8u_C2R_0 = detail::bilinearTable<8, 8, 2>;
inline constexpr auto ownvc_zvpiInterpolate8x4QPBilinear_VC1_8u_C2R_0 = detail::bilinearTable<8, 4, 2>;
inline constexpr auto ownvc_zvpiInterpolate4x4QPBilinear_VC1_8u_C2R_0 = detail::bilinearTable<4, 4, 2>;

inline constexpr auto ownvc_Copy16x16HP_8u_C1R_0 = detail::halfPelTable<16, 16, 1>;
inline constexpr auto ownvc_Copy8x8HP_8u_C1R_0 = detail::halfPelTable<8, 8, 1>;
inline constexpr auto ownvc_Copy8x4HP_8u_C1R_0 = detail::halfPelTable<8, 4, 1>;
inline constexpr auto ownvc_Copy4x4HP_8u_C1R_0 = detail::halfPelTable<4, 4, 1>;
inline constexpr auto ownvc_Copy8x8HP_8u_C2R_0 = detail::halfPelTable<8, 8, 2>;
inline constexpr auto ownvc_Copy8x4HP_8u_C2R_0 = detail::halfPelTable<8, 4, 2>;
inline constexpr auto ownvc_Copy4x4HP_8u_C2R_0 = detail::halfPelTable<4, 4, 2>;

// ---- a block by its size and place --------------------------------------------------------------------------------

struct BlockPlace {
  const u8* src;
  std::ptrdiff_t srcStep;
  u8* dst;
  std::ptrdiff_t dstStep;
  s32 dx, dy;
  s32 width, height;  // not a zvpSize: copied at once it would wait for a caller who has just written both
  s32 roundControl;
};

ZVP_INLINE zvpStatus predictBicubic(const BlockPlace& b) {
  // No legal size leads past the table; what does is kept inside it.
  const u32 slot = std::min(u32(b.width >> 4) + u32(b.height >> 4), 2u);
  return zvpiBicubicInterpolate_table_0[slot](b.src, b.srcStep, b.dst, b.dstStep, b.roundControl,
                                              (u32(b.dx) & 3) * 4 + (u32(b.dy) & 3));
}

namespace detail {
ZVP_INLINE zvpStatus predictBilinear(const BlockPlace& b, const std::array<BilinearKernel, 16>& quarter,
                                     const std::array<HalfPelKernel, 8>& half) {
  const u32 dx = u32(b.dx) & 3, dy = u32(b.dy) & 3, rounding = u32(b.roundControl) & 1;
  if (((dx | dy) & 1) == 0)
    return half[dy + 2 * dx + rounding](b.src, b.srcStep, b.dst, b.dstStep);
  else
    return quarter[dx * 4 + dy](b.src, b.srcStep, b.dst, b.dstStep, b.roundControl);
}
}  // namespace detail

ZVP_INLINE zvpStatus predictBilinear(const BlockPlace& b) {
  if (b.width == 16)
    return detail::predictBilinear(b, ownvc_zvpiInterpolate16x16QPBilinear_VC1_8u_C1R_0, ownvc_Copy16x16HP_8u_C1R_0);
  else if (b.width != 8)
    return detail::predictBilinear(b, ownvc_zvpiInterpolate4x4QPBilinear_VC1_8u_C1R_0, ownvc_Copy4x4HP_8u_C1R_0);
  else if (b.height == 8)
    return detail::predictBilinear(b, ownvc_zvpiInterpolate8x8QPBilinear_VC1_8u_C1R_0, ownvc_Copy8x8HP_8u_C1R_0);
  else
    return detail::predictBilinear(b, ownvc_zvpiInterpolate8x4QPBilinear_VC1_8u_C1R_0, ownvc_Copy8x4HP_8u_C1R_0);
}
ZVP_INLINE zvpStatus predictBilinearPairs(const BlockPlace& b) {
  if (b.width != 8)
    return detail::predictBilinear(b, ownvc_zvpiInterpolate4x4QPBilinear_VC1_8u_C2R_0, ownvc_Copy4x4HP_8u_C2R_0);
  else if (b.height == 8)
    return detail::predictBilinear(b, ownvc_zvpiInterpolate8x8QPBilinear_VC1_8u_C2R_0, ownvc_Copy8x8HP_8u_C2R_0);
  else
    return detail::predictBilinear(b, ownvc_zvpiInterpolate8x4QPBilinear_VC1_8u_C2R_0, ownvc_Copy8x4HP_8u_C2R_0);
}

}  // namespace zvp::vc1
