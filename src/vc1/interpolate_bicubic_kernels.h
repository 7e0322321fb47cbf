// Bicubic prediction of VC-1 (SMPTE 421M 8.3.6.5).
//
// Four taps over the positions -1, 0, 1, 2, along one direction or along both, vertically first, with the shifts that
// the tables give. All sums stand in 16-bit lanes. Those of samples are within -1785..18105; those of the second pass
// may exceed 32767, where the last addition saturates and the result is past 255 in any case.
//
// Sums along a row of samples are made for even and odd columns apart: the 16-bit lanes of a register of bytes are its
// even columns when masked and its odd ones when shifted, so that three loads give all four taps of both.
#pragma once

#include "copy_rows.h"
#include "simd.h"
#include "vc1/interpolate_tables.h"

namespace zvp::vc1 {

using namespace simd;

// The taps' sum and the rounding. The fractions 1 and 3 mirror each other.
template <int Fraction, int N> ZVP_INLINE S16<N> fourTaps(S16<N> a, S16<N> b, S16<N> c, S16<N> d, S16<N> round) {
  static_assert(BicubicFilterParams_0[0][1] == 53 && BicubicFilterParams_0[1][1] == 9);
  if constexpr (Fraction == 3) {
    return fourTaps<1>(d, c, b, a, round);
  } else if constexpr (Fraction == 2) {
    return mulLow(b + c, splat<S16<N>>(9)) + (round - (a + d));
  } else {  // 53 b + 18 c - 4 a - 3 d
    const auto inner = mulLow(b, splat<S16<N>>(53)) + mulLow(c, splat<S16<N>>(18));
    return (inner + round) - (shiftLeft<2>(a + d) - d);
  }
}

// The same of a first pass's values, saturating at 32767. These are within -64..574 where the taps are 53 and 18, and
// within -255..2295 where they are 9, so that only the second inner tap can take a sum beyond 16 bits.
template <int Fraction, int N>
ZVP_INLINE S16<N> fourTapsSaturated(S16<N> a, S16<N> b, S16<N> c, S16<N> d, S16<N> round) {
  if constexpr (Fraction == 3) {
    return fourTapsSaturated<1>(d, c, b, a, round);
  } else if constexpr (Fraction == 2) {
    const auto nine = splat<S16<N>>(9);
    return addSaturate(mulLow(b, nine) + (round - (a + d)), mulLow(c, nine));
  } else {
    const auto most = (mulLow(b, splat<S16<N>>(53)) + round) - (shiftLeft<2>(a + d) - d);
    return addSaturate(most, mulLow(c, splat<S16<N>>(18)));
  }
}

// emit(y, sum) for H rows of G columns: the taps along the column. The rows roll through registers.
template <int G, int H, int Fraction>
ZVP_INLINE void columnSums(const u8* src, std::ptrdiff_t step, S16<G> round, auto emit) {
  S16<G> row[7] = {loadWidened<G>(src - step), loadWidened<G>(src), loadWidened<G>(src + step)};
  for (int y = 0; y < H; y += 4, src += 4 * step) {
#pragma GCC unroll 4
    for (int k = 0; k < 4; ++k) {
      row[k + 3] = loadWidened<G>(src + (k + 2) * step);
      emit(y + k, fourTaps<Fraction>(row[k], row[k + 1], row[k + 2], row[k + 3], round));
    }
    row[0] = row[4];
    row[1] = row[5];
    row[2] = row[6];
  }
}

// Rows of G columns from 16-bit lanes, two at a time.
template <int G> ZVP_INLINE void storeTwoRows(u8* dst, std::ptrdiff_t step, S16<G> first, S16<G> second) {
  const auto packed = packSaturateU8(first, second);
  if constexpr (G == 8) {
    storeRows<8>(dst, step, packed);
  } else {  // each half of the register has 8 columns of both rows
    const auto low = as<U64<2>>(lowHalf(packed)), high = as<U64<2>>(highHalf(packed));
    store(dst, interleaveLow(low, high));
    store(dst + step, interleaveHigh(low, high));
  }
}

template <int W> inline constexpr int columnsAtOnce = W < registerBytes / 2 ? W : registerBytes / 2;

template <int W, int H, int Dy> ZVP_INLINE void bicubicVertical(const u8* src, std::ptrdiff_t srcStep, u8* dst,
                                                                std::ptrdiff_t dstStep, s32 roundControl) {
  constexpr int G = columnsAtOnce<W>, shift = BicubicVertFilterShift_0[Dy - 1];
  const auto round = splat<S16<G>>(s16(wrapAdd((1 << (shift - 1)) - 1, roundControl)));
  for (int x = 0; x < W; x += G) {
    S16<G> even{};
    columnSums<G, H, Dy>(
        src + x, srcStep, round, [&](int y, S16<G> sum) __attribute__((always_inline)) {
          const auto row = shiftRight<shift>(sum);
          if (y % 2 == 0)
            even = row;
          else
            storeTwoRows<G>(dst + x + (y - 1) * dstStep, dstStep, even, row);
        });
  }
}

template <int W, int H, int Dx> ZVP_INLINE void bicubicHorizontal(const u8* src, std::ptrdiff_t srcStep, u8* dst,
                                                                  std::ptrdiff_t dstStep, s32 roundControl) {
  constexpr int rows = registerBytes / W, N = registerBytes / 2, shift = BicubicHorizFilterShift_0[(Dx - 1) * 4];
  const auto round = splat<S16<N>>(s16(wrapSub(1 << (shift - 1), roundControl)));
  const auto even = [](U8<2 * N> v) __attribute__((always_inline)) { return as<S16<N>>(v) & splat<S16<N>>(255); };
  const auto odd = [](U8<2 * N> v) __attribute__((always_inline)) { return as<S16<N>>(shiftRight<8>(as<U16<N>>(v))); };
#pragma GCC unroll 2
  for (int y = 0; y < H; y += rows, src += rows * srcStep, dst += rows * dstStep) {
    const auto before = loadRows<W, 2 * N>(src - 1, srcStep), here = loadRows<W, 2 * N>(src, srcStep);
    const auto behind = loadRows<W, 2 * N>(src + 2, srcStep);
    const auto a = even(before), b = even(here), c = odd(here), d = even(behind), e = odd(behind);
    const auto packed = packSaturateU8(shiftRight<shift>(fourTaps<Dx>(a, b, c, d, round)),
                                       shiftRight<shift>(fourTaps<Dx>(b, c, d, e, round)));
    storeRows<W>(dst, dstStep, interleaveLow(packed, shiftBytesDown<8>(packed)));
  }
}

template <int W, int H, int Dx, int Dy>
ZVP_INLINE void bicubicBoth(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, s32 roundControl) {
  constexpr int G = columnsAtOnce<W>, shift = BicubicVertFilterShift_0[Dx * 3 + Dy - 1];
  // The first pass's values in columns -1..W + 1, from groups of G columns of which the last overlaps.
  constexpr int columns = W + 3, pitch = W + 8;
  alignas(32) s16 first[H * pitch];
  {
    const auto round = splat<S16<G>>(s16(wrapAdd((1 << (shift - 1)) - 1, roundControl)));
    for (int x = 0; x < columns; x += G) {
      const int column = x + G <= columns ? x : columns - G;
      columnSums<G, H, Dy>(
          src - 1 + column, srcStep, round, [&](int y, S16<G> sum) __attribute__((always_inline)) {
            store(first + y * pitch + column, shiftRight<shift>(sum));
          });
    }
  }
  const auto round = splat<S16<G>>(s16(wrapSub(64, roundControl)));
  const auto row = [&](const s16* p) __attribute__((always_inline)) {
    return shiftRight<7>(
        fourTapsSaturated<Dx>(load<S16<G>>(p), load<S16<G>>(p + 1), load<S16<G>>(p + 2), load<S16<G>>(p + 3), round));
  };
  for (int y = 0; y < H; y += 2, dst += 2 * dstStep)
#pragma GCC unroll 2
    for (int x = 0; x < W; x += G) {
      const s16* p = first + y * pitch + x;
      storeTwoRows<G>(dst + x, dstStep, row(p), row(p + pitch));
    }
}

// A block at one position. Returns zvpStatusOk so that an entry can end in the call of it.
template <int W, int H, int Dx, int Dy>
zvpStatus bicubicBlock(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, s32 roundControl) {
  if constexpr (Dx == 0 && Dy == 0)
    copyRows<W, H>(src, srcStep, dst, dstStep, H);
  else if constexpr (Dx == 0)
    bicubicVertical<W, H, Dy>(src, srcStep, dst, dstStep, roundControl);
  else if constexpr (Dy == 0)
    bicubicHorizontal<W, H, Dx>(src, srcStep, dst, dstStep, roundControl);
  else
    bicubicBoth<W, H, Dx, Dy>(src, srcStep, dst, dstStep, roundControl);
  return zvpStatusOk;
}

}  // namespace zvp::vc1
