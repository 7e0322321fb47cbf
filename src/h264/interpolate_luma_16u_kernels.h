// Luma samples at quarter-sample positions, 16-bit (H.264 8.4.2.2.1): the positions of the 8-bit kernels, with steps in
// samples and results clipped to the depth.
//
// Samples are taken as signed, 32768 lower, so that two products and their sum come from one multiplication. The taps
// sum to 32 and the centre position's to 1024, so each rounded result is 32768 lower too: packing with saturation clips
// at 0, a minimum at the depth's highest value, and the bias is taken off at last. A position that is the mean of two
// operands writes the first to the destination and averages the second into it.
#pragma once

#include <algorithm>

#include "h264/interpolate_luma_kernels.h"

namespace zvp::luma16u {

using namespace simd;
using luma8u::bandRows;
using luma8u::Mean;
using luma8u::quarter;

// The highest result, in all lanes and biased: 2^depth - 1, at most 65535. The shift takes the depth modulo 32.
ZVP_INLINE S16<8> highest(s32 bitDepth) {
  const u32 value = (u32(1) << (bitDepth & 31)) - 1;
  return splat<S16<8>>(s16(s32(std::min(value, u32(65535))) - 32768));
}

// Eight samples: of a row, or four of each of two rows. A lone row of four stands in the low lanes.
template <int W, int Rows>
ZVP_INLINE S16<8> loadUnit(const u16* p, std::ptrdiff_t step) {
  if constexpr (W == 8)
    return load<S16<8>>(p);
  else if constexpr (Rows == 2)
    return load8x2<S16<8>>(p, p + step);
  else
    return loadBytes<S16<8>, 8>(p);
}
template <int W>
ZVP_INLINE void storeUnit(u16* p, std::ptrdiff_t step, S16<8> v) {
  if constexpr (W == 8) {
    store(p, v);
  } else {
    storeBytes<8>(p, v);
    storeHigh8(p + step, v);
  }
}

ZVP_INLINE S16<8> biased(S16<8> v) { return v ^ splat<S16<8>>(-32768); }

// Clips, unbiases, averages with what M names and stores. other is the place of the second operand in the source.
template <int W, Mean M>
ZVP_INLINE void finish(S16<8> result, S16<8> high, const u16* other, std::ptrdiff_t srcStep, u16* dst,
                       std::ptrdiff_t dstStep) {
  auto value = as<U16<8>>(biased(min(result, high)));
  if constexpr (M == Mean::destination)
    value = average(value, as<U16<8>>(loadUnit<W, 8 / W>(dst, dstStep)));
  else if constexpr (M != Mean::none)
    value = average(value, as<U16<8>>(loadUnit<W, 8 / W>(other, srcStep)));
  storeUnit<W>(dst, dstStep, as<S16<8>>(value));
}

// Values for even and odd columns, put in order.
ZVP_INLINE S16<8> merge(S32<4> even, S32<4> odd) {
  const auto packed = packSaturateS16(even, odd);
  return interleaveLow(packed, shiftBytesDown<8>(packed));
}

ZVP_INLINE S16<8> tapPair(s16 first, s16 second) {
  return as<S16<8>>(splat<S32<4>>(s32(u16(first)) | s32(second) * 65536));
}

struct Sums {
  S32<4> even, odd;
};

// The six-tap sum along the row, 2^20 lower. Reads columns -2..W + 2.
template <int W, int Rows>
ZVP_INLINE Sums rowSums(const u16* p, std::ptrdiff_t step) {
  const auto outside = tapPair(1, -5), inside = tapPair(20, 20), mirrored = tapPair(-5, 1);
  const auto at = [=](int column) __attribute__((always_inline)) {
    return biased(loadUnit<W, Rows>(p + column, step));
  };
  return {mulAddPairs(at(-2), outside) + mulAddPairs(at(0), inside) + mulAddPairs(at(2), mirrored),
          mulAddPairs(at(-1), outside) + mulAddPairs(at(1), inside) + mulAddPairs(at(3), mirrored)};
}

template <int Bits>
ZVP_INLINE S32<4> rounded(S32<4> sum) {
  return shiftRight<Bits>(sum + splat<S32<4>>(1 << (Bits - 1)));
}

template <int W>
ZVP_INLINE void copy(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height) {
  constexpr int rows = 8 / W;
  for (int y = 0; y < height; y += rows, src += rows * srcStep, dst += rows * dstStep)
    storeUnit<W>(dst, dstStep, loadUnit<W, rows>(src, srcStep));
}

template <int W, Mean M>
ZVP_INLINE void filterRows(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height,
                           S16<8> high) {
  constexpr int rows = 8 / W;
  for (int y = 0; y < height; y += rows, src += rows * srcStep, dst += rows * dstStep) {
    const auto sums = rowSums<W, rows>(src, srcStep);
    finish<W, M>(merge(rounded<5>(sums.even), rounded<5>(sums.odd)), high, src + (M == Mean::next ? 1 : 0), srcStep,
                 dst, dstStep);
  }
}

template <int W, Mean M>
ZVP_INLINE void filterColumns(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height,
                              S16<8> high) {
  const auto outside = tapPair(1, -5), inside = tapPair(20, 20), mirrored = tapPair(-5, 1);
  // Row k - 2 and the row below it, interleaved. A width of 4 has no high part.
  S16<8> low[9], upper[9];
  const auto at = [&](int y) __attribute__((always_inline)) {
    return biased(loadBytes<S16<8>, 2 * W>(src + y * srcStep));
  };
  S16<8> last = at(-2);
  const auto push = [&](auto k) __attribute__((always_inline)) {
    const auto row = at(k - 1);
    low[k] = interleaveLow(last, row);
    if constexpr (W == 8) upper[k] = interleaveHigh(last, row);
    last = row;
  };
  const auto sum = [&](const S16<8>* pairs) __attribute__((always_inline)) {
    return rounded<5>(mulAddPairs(pairs[0], outside) + mulAddPairs(pairs[2], inside) + mulAddPairs(pairs[4], mirrored));
  };
  unrolled<4>(push);
  for (int y = 0; y < height; y += 4, src += 4 * srcStep, dst += 4 * dstStep) {
    S32<4> lastSum{};
    unrolled<4>([&](auto k) __attribute__((always_inline)) {
      push(std::integral_constant<int, k + 4>());
      const u16* const other = src + (M == Mean::next ? srcStep : 0);
      if constexpr (W == 8) {
        finish<8, M>(packSaturateS16(sum(low + k), sum(upper + k)), high, other + k * srcStep, srcStep,
                     dst + k * dstStep, dstStep);
      } else if constexpr (k % 2 == 0) {
        lastSum = sum(low + k);
      } else {
        finish<4, M>(packSaturateS16(lastSum, sum(low + k)), high, other + (k - 1) * srcStep, srcStep,
                     dst + (k - 1) * dstStep, dstStep);
      }
    });
    unrolled<4>([&](auto k) __attribute__((always_inline)) {
      low[k] = low[k + 4];
      if constexpr (W == 8) upper[k] = upper[k + 4];
    });
  }
}

// (E' + 512) >> 10 for the six-tap sum E' of six values of E. |E'| stays below 65536 * 52 * 52, within 32 bits.
ZVP_INLINE S32<4> centre(const s32* sums, int rowLanes) {
  const auto tap = [=](int k) __attribute__((always_inline)) { return load<S32<4>>(sums + k * rowLanes); };
  const auto fourth = shiftLeft<2>(tap(2) + tap(3)) - (tap(1) + tap(4));
  return rounded<10>(tap(0) + tap(5) + shiftLeft<2>(fourth) + fourth);
}

// At most bandRows rows: sums along rows -2..height + 2, then along columns over the sums.
template <int W, Mean M>
ZVP_INLINE void filterCentre(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height,
                             S16<8> high) {
  constexpr int rows = 8 / W, rowLanes = W / 2;
  alignas(16) s32 even[(bandRows + 5) * rowLanes + 4], odd[(bandRows + 5) * rowLanes + 4];  // 4: a lone row's slack
  const u16* p = src - 2 * srcStep;
  int y = 0;
  const auto sumRows = [&](auto count) __attribute__((always_inline)) {
    const auto sums = rowSums<W, count>(p, srcStep);
    store(even + y * rowLanes, sums.even);
    store(odd + y * rowLanes, sums.odd);
  };
  for (; y + rows <= height + 5; y += rows, p += rows * srcStep) sumRows(std::integral_constant<int, rows>());
  if constexpr (rows > 1) sumRows(std::integral_constant<int, 1>());
  for (y = 0; y < height; y += rows, src += rows * srcStep, dst += rows * dstStep)
    finish<W, M>(merge(centre(even + y * rowLanes, rowLanes), centre(odd + y * rowLanes, rowLanes)), high, src, srcStep,
                 dst, dstStep);
}

template <int W, int Dx, int Dy>
ZVP_INLINE void block(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height,
                      S16<8> high) {
  if constexpr (Dx == 0 && Dy == 0) {
    copy<W>(src, srcStep, dst, dstStep, height);
  } else if constexpr (Dy == 0) {
    filterRows<W, quarter(Dx)>(src, srcStep, dst, dstStep, height, high);
  } else if constexpr (Dx == 0) {
    filterColumns<W, quarter(Dy)>(src, srcStep, dst, dstStep, height, high);
  } else {
    if constexpr (Dy != 2)
      filterRows<W, Mean::none>(src + (Dy == 3 ? srcStep : 0), srcStep, dst, dstStep, height, high);
    if constexpr (Dx != 2) {
      constexpr auto mean = Dy == 2 ? Mean::none : Mean::destination;
      filterColumns<W, mean>(src + (Dx == 3 ? 1 : 0), srcStep, dst, dstStep, height, high);
    }
    if constexpr (Dx == 2 || Dy == 2) {
      constexpr auto mean = Dx == 2 && Dy == 2 ? Mean::none : Mean::destination;
      for (int y = 0; y < height; y += bandRows, src += bandRows * srcStep, dst += bandRows * dstStep)
        filterCentre<W, mean>(src, srcStep, dst, dstStep, std::min(bandRows, height - y), high);
    }
  }
}

// A slot of the tables.
template <int Dx, int Dy>
zvpStatus kernel(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, zvpSize size, s32 bitDepth) {
  const int height = size.height;
  if (height <= 0) return zvpStatusOk;
  const auto high = highest(bitDepth);
  forEachPiece<8, 4>(
      size.width, [=](auto width, int x) __attribute__((always_inline)) {
        block<width, Dx, Dy>(src + x, srcStep, dst + x, dstStep, height, high);
      });
  return zvpStatusOk;
}

}  // namespace zvp::luma16u
