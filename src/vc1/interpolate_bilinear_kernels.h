// Bilinear prediction of VC-1 (SMPTE 421M 8.3.6.5) at the positions with an odd fraction; at whole and half samples the
// rule is that of the half-pel copies.
//
// W counts bytes; with interleaved chroma, two Channels, a row holds W / 2 pairs and the neighbour to the right is two
// bytes on. The weights 4 - d and d are reduced by their common factor, and the rounding with them, which changes no
// result. Along one direction alone bytes are averaged; along both the sums stand in 16-bit lanes.
#pragma once

#include "simd.h"

namespace zvp::vc1 {

using namespace simd;

// (3 a + b + 2 - rc) >> 2. As floor((a + b) / 2) has the fraction that a third a makes up for, the mean of a and that
// is exact; with rc 1 the same holds for the complements. up is all ones with rc 0, down with rc 1.
struct QuarterMean {
  U8<16> up, down;

  ZVP_INLINE explicit QuarterMean(s32 roundControl)
      : up(splat<U8<16>>(u8((roundControl & 1) - 1))), down(splat<U8<16>>(u8(-(roundControl & 1)))) {}
  ZVP_INLINE U8<16> operator()(U8<16> a, U8<16> b) const {
    const auto mean = average(a ^ up, b ^ up) ^ splat<U8<16>>(255);
    return average(a ^ down, mean) ^ down;
  }
};

// Weights 4 - d and d, reduced, and by how many bits their sum is shifted.
template <int D> inline constexpr int bilinearBits = D == 0 ? 0 : D == 2 ? 1 : 2;
template <int D, int N> ZVP_INLINE S16<N> weigh(S16<N> a, S16<N> b) {
  if constexpr (D == 0)
    return a;
  else if constexpr (D == 1)
    return a + a + (a + b);
  else if constexpr (D == 2)
    return a + b;
  else
    return b + b + (a + b);
}

// One direction: the neighbour is to the right or below.
template <int W, int H, int D> ZVP_INLINE void averageNeighbours(const u8* src, std::ptrdiff_t srcStep,
                                                                 std::ptrdiff_t neighbour, u8* dst,
                                                                 std::ptrdiff_t dstStep, s32 roundControl) {
  constexpr int rows = 16 / W;
  const QuarterMean mean(roundControl);
#pragma GCC unroll 4
  for (int y = 0; y < H; y += rows, src += rows * srcStep, dst += rows * dstStep) {
    const auto a = loadRows<W, 16>(src, srcStep), b = loadRows<W, 16>(src + neighbour, srcStep);
    storeRows<W>(dst, dstStep, D == 1 ? mean(a, b) : mean(b, a));
  }
}

// Both directions, for a column of 8 bytes. A row's sum along x serves the rows above and below.
template <int H, int Dx, int Dy, int Channels> ZVP_INLINE void bilinearColumn(const u8* src, std::ptrdiff_t srcStep,
                                                                              u8* dst, std::ptrdiff_t dstStep,
                                                                              s32 roundControl) {
  constexpr int bits = bilinearBits<Dx> + bilinearBits<Dy>;
  const auto round = splat<S16<8>>(s16((1 << (bits - 1)) - (roundControl & 1)));
  const auto along = [](const u8* p) __attribute__((always_inline)) {
    return weigh<Dx>(loadWidened<8>(p), loadWidened<8>(p + Channels));
  };
  auto above = along(src);
  const auto row = [&](const u8* p) __attribute__((always_inline)) {
    const auto below = along(p);
    const auto sum = weigh<Dy>(above, below);
    above = below;
    return shiftRight<bits>(sum + round);
  };
#pragma GCC unroll 4
  for (int y = 0; y < H; y += 2, src += 2 * srcStep, dst += 2 * dstStep) {
    const auto first = row(src + srcStep);
    storeRows<8>(dst, dstStep, packSaturateU8(first, row(src + 2 * srcStep)));
  }
}

// The same for a block of 4 by 4 bytes, two rows to a register.
template <int Dx, int Dy, int Channels>
ZVP_INLINE void bilinear4x4(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, s32 roundControl) {
  constexpr int bits = bilinearBits<Dx> + bilinearBits<Dy>;
  const auto round = splat<S16<8>>(s16((1 << (bits - 1)) - (roundControl & 1)));
  const auto a = loadRows<4, 16>(src, srcStep), b = loadRows<4, 16>(src + Channels, srcStep);
  const u8* const last = src + 4 * srcStep;
  const auto rows01 = weigh<Dx>(widenLow(a), widenLow(b)), rows23 = weigh<Dx>(widenHigh(a), widenHigh(b));
  const auto row4 = weigh<Dx>(widenLow(loadBytes<U8<16>, 4>(last)), widenLow(loadBytes<U8<16>, 4>(last + Channels)));
  const auto rows12 = concatShift<8>(rows01, rows23), rows34 = concatShift<8>(rows23, row4);
  const auto upper = shiftRight<bits>(weigh<Dy>(rows01, rows12) + round);
  const auto lower = shiftRight<bits>(weigh<Dy>(rows23, rows34) + round);
  storeRows<4>(dst, dstStep, packSaturateU8(upper, lower));
}

// A kernel of the tables: W by H bytes at fractions of which at least one is odd.
template <int W, int H, int Dx, int Dy, int Channels = 1>
zvpStatus bilinearBlock(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, s32 roundControl) {
  static_assert(Dx % 2 == 1 || Dy % 2 == 1);
  if constexpr (Dy == 0)
    averageNeighbours<W, H, Dx>(src, srcStep, Channels, dst, dstStep, roundControl);
  else if constexpr (Dx == 0)
    averageNeighbours<W, H, Dy>(src, srcStep, srcStep, dst, dstStep, roundControl);
  else if constexpr (W == 4)
    bilinear4x4<Dx, Dy, Channels>(src, srcStep, dst, dstStep, roundControl);
  else
    for (int x = 0; x < W; x += 8)
      bilinearColumn<H, Dx, Dy, Channels>(src + x, srcStep, dst + x, dstStep, roundControl);
  return zvpStatusOk;
}

}  // namespace zvp::vc1
