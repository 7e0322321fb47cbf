// Luma samples at quarter-sample positions, 8-bit (H.264 8.4.2.2.1).
//
// E is the six-tap sum (1, -5, 20, 20, -5, 1) along a row or a column. Half-sample positions are b = (E + 16) >> 5
// along the row, h the same along the column, j six-tap along both; quarter-sample ones are rounded means of two of
// these or of one and a sample. Each kernel is a template over the block's width and its position; a second operand is
// averaged in as the first is stored.
//
// Sums along a row are made for even and odd columns apart: the 16-bit lanes of a register of bytes are its even
// columns when masked and its odd ones when shifted, so that four loads give all six taps of both.
#pragma once

#include <algorithm>

#include "copy_rows.h"
#include "h264/interpolate.h"
#include "h264/pieces.h"
#include "simd.h"

namespace zvp::luma8u {

using namespace simd;

// What a position's first operand is averaged with: nothing, the second operand's samples at the place (source) or one
// further along the filter (next), or what an earlier pass left in the destination.
enum class Mean { none, source, next, destination };

constexpr Mean quarter(int fraction) { return fraction == 1 ? Mean::source : fraction == 3 ? Mean::next : Mean::none; }

// E + 16, that is within -2534..10726.
template <int N>
ZVP_INLINE S16<N> sixTap(S16<N> a, S16<N> b, S16<N> c, S16<N> d, S16<N> e, S16<N> f) {
  const auto weighted = mulLow(shiftLeft<2>(c + d) - (b + e), splat<S16<N>>(5));
  return (a + f + splat<S16<N>>(16)) + weighted;
}

// (E' + 512) >> 10 for the six-tap sum E' of six values E; from values of E + 16, whose weights sum to 32, the 512 come
// by themselves. With o, m, i for the outer, middle and inner pair: o - 5 m + 20 i = 16 (((o - m) / 4 - m + i) / 4 +
// i), where each division may round down before the last shift does. The sum behind the first division is at most 33150
// in magnitude; where it saturates, i alone takes the result past 0 or 255.
template <int N>
ZVP_INLINE S16<N> sixTapOfSums(S16<N> a, S16<N> b, S16<N> c, S16<N> d, S16<N> e, S16<N> f) {
  const auto outer = a + f, middle = b + e, inner = c + d;
  const auto quarterOfDifference = shiftRight<2>(outer - middle);
  return shiftRight<6>(shiftRight<2>(addSaturate(quarterOfDifference - middle, inner)) + inner);
}

// How many rows of W samples fill a register. Heights are multiples of 4, so never more.
template <int W>
inline constexpr int rowsAtOnce = std::min(4, registerBytes / W);

// Rows * W samples; a lone short row stands in the low lanes.
template <int W, int Rows>
ZVP_INLINE auto loadBlock(const u8* p, std::ptrdiff_t step) {
  if constexpr (W * Rows < 16)
    return loadBytes<U8<16>, W * Rows>(p);
  else
    return loadRows<W, W * Rows>(p, step);
}

// The lanes of a block of N samples: those in even columns and those in odd ones.
template <int N>
struct Columns {
  S16<N / 2> even, odd;
};

// Clipped to bytes and put in order.
template <int N>
ZVP_INLINE U8<2 * N> merge(S16<N> even, S16<N> odd) {
  const auto packed = packSaturateU8(even, odd);
  return interleaveLow(packed, shiftBytesDown<8>(packed));
}

// E + 16 along the row for Rows rows of W samples. Reads columns -2..W + 2.
template <int W, int Rows>
ZVP_INLINE auto rowSums(const u8* p, std::ptrdiff_t step) {
  const auto at = [=](int column) __attribute__((always_inline)) { return loadBlock<W, Rows>(p + column, step); };
  const auto v0 = at(-2), v2 = at(0), v4 = at(2), v5 = at(3);
  constexpr int n = Lanes<decltype(at(0))>::count;
  const auto even = [](U8<n> v) __attribute__((always_inline)) { return as<S16<n / 2>>(v) & splat<S16<n / 2>>(255); };
  const auto odd = [](U8<n> v) __attribute__((always_inline)) {
    return as<S16<n / 2>>(shiftRight<8>(as<U16<n / 2>>(v)));
  };
  const auto a = even(v0), b = odd(v0), c = even(v2), d = odd(v2), e = even(v4), f = odd(v4);
  return Columns<n>{sixTap(a, b, c, d, e, f), sixTap(b, c, d, e, f, odd(v5))};
}

// E + 16 along the column for G columns, rows two by two: emit(y, sums of row y, sums of row y + 1). Reads rows
// -2..height + 2. The rows roll through registers.
template <int G, class Emit>
ZVP_INLINE void columnSums(const u8* p, std::ptrdiff_t step, int height, Emit emit) {
  S16<G> row[9];
  unrolled<5>([&](auto k) __attribute__((always_inline)) { row[k] = loadWidened<G>(p + (k - 2) * step); });
  for (int y = 0; y < height; y += 4, p += 4 * step) {
    const auto sum = [&](auto k) __attribute__((always_inline)) {
      row[k + 5] = loadWidened<G>(p + (k + 3) * step);
      return sixTap(row[k], row[k + 1], row[k + 2], row[k + 3], row[k + 4], row[k + 5]);
    };
    unrolled<2>([&](auto pair) __attribute__((always_inline)) {
      const auto first = sum(std::integral_constant<int, 2 * pair>());
      emit(y + 2 * pair, first, sum(std::integral_constant<int, 2 * pair + 1>()));
    });
    unrolled<5>([&](auto k) __attribute__((always_inline)) { row[k] = row[k + 4]; });
  }
}

// Two rows of G 16-bit lanes as rows of G bytes.
template <int G>
ZVP_INLINE U8<2 * G> packRows(S16<G> first, S16<G> second) {
  const auto packed = packSaturateU8(first, second);
  if constexpr (G == 8) {
    return packed;
  } else {
    const auto low = as<U64<2>>(lowHalf(packed)), high = as<U64<2>>(highHalf(packed));
    return as<U8<2 * G>>(join(interleaveLow(low, high), interleaveHigh(low, high)));
  }
}

// b, a, c.
template <int W, Mean M>
ZVP_INLINE void filterRows(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  constexpr int rows = rowsAtOnce<W>;
  for (int y = 0; y < height; y += rows, src += rows * srcStep, dst += rows * dstStep) {
    const auto sums = rowSums<W, rows>(src, srcStep);
    auto result = merge(shiftRight<5>(sums.even), shiftRight<5>(sums.odd));
    if constexpr (M != Mean::none)
      result = average(result, loadBlock<W, rows>(src + (M == Mean::next ? 1 : 0), srcStep));
    storeRows<W>(dst, dstStep, result);
  }
}

// The second operand of a filter along columns for the rows at dst.
template <Mean M, int W, int Rows>
ZVP_INLINE auto operandOfColumns(const u8* src, std::ptrdiff_t srcStep, const u8* dst, std::ptrdiff_t dstStep) {
  if constexpr (M == Mean::destination)
    return loadBlock<W, Rows>(dst, dstStep);
  else
    return loadBlock<W, Rows>(src + (M == Mean::next ? srcStep : 0), srcStep);
}

// h, d, n, and the second pass of e, g, p, r.
template <int W, Mean M>
ZVP_INLINE void filterColumns(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  if constexpr (W == 4) {
    // A register holds two rows: pair k is rows k - 2 and k - 1.
    const auto load = [&](int y) __attribute__((always_inline)) { return loadBytes<U32<4>, 4>(src + y * srcStep); };
    const auto widen = [](U32<4> first, U32<4> second) { return widenLow(as<U8<16>>(interleaveLow(first, second))); };
    S16<8> pair[8];
    U32<4> last = load(-2);
    const auto push = [&](auto k) __attribute__((always_inline)) {
      const auto row = load(k - 1);
      pair[k] = widen(last, row);
      last = row;
    };
    unrolled<4>(push);
    for (int y = 0; y < height; y += 4, src += 4 * srcStep, dst += 4 * dstStep) {
      unrolled<4>([&](auto k) __attribute__((always_inline)) { push(std::integral_constant<int, k + 4>()); });
      const auto sum = [&](auto k) __attribute__((always_inline)) {
        return shiftRight<5>(sixTap(pair[k], pair[k + 1], pair[k + 2], pair[k + 3], pair[k + 4], pair[k + 5]));
      };
      auto result = packSaturateU8(sum(std::integral_constant<int, 0>()), sum(std::integral_constant<int, 2>()));
      if constexpr (M != Mean::none) result = average(result, operandOfColumns<M, 4, 4>(src, srcStep, dst, dstStep));
      storeRows<4>(dst, dstStep, result);
      unrolled<4>([&](auto k) __attribute__((always_inline)) { pair[k] = pair[k + 4]; });
    }
  } else {
    constexpr int columns = std::min(W, registerBytes / 2);
    for (int x = 0; x < W; x += columns)
      columnSums<columns>(
          src + x, srcStep, height, [&](int y, S16<columns> first, S16<columns> second) __attribute__((always_inline)) {
            u8* const to = dst + y * dstStep + x;
            auto result = packRows(shiftRight<5>(first), shiftRight<5>(second));
            if constexpr (M != Mean::none)
              result = average(result, operandOfColumns<M, columns, 2>(src + y * srcStep + x, srcStep, to, dstStep));
            storeRows<columns>(to, dstStep, result);
          });
  }
}

inline constexpr int bandRows = 16;  // rows of sums that are kept at a time

// j, f, q: sums along rows -2..height + 2, then along columns over the sums. b of the row, or of the next one, is at
// hand in the sums. At most bandRows rows.
template <int W, Mean M>
ZVP_INLINE void filterCentreByRows(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  constexpr int rows = rowsAtOnce<W>, lanes = rows * W / 2, rowLanes = W / 2;
  alignas(32) s16 even[(bandRows + 5) * rowLanes + 8], odd[(bandRows + 5) * rowLanes + 8];  // 8: a lone row's slack
  const u8* p = src - 2 * srcStep;
  int y = 0;
  const auto sumRows = [&](auto count) __attribute__((always_inline)) {
    const auto sums = rowSums<W, count>(p, srcStep);
    store(even + y * rowLanes, sums.even);
    store(odd + y * rowLanes, sums.odd);
  };
  for (; y + rows <= height + 5; y += rows, p += rows * srcStep) sumRows(std::integral_constant<int, rows>());
  if constexpr (rows > 1) sumRows(std::integral_constant<int, 1>());  // height + 5 is one more than a multiple of 4
  for (y = 0; y < height; y += rows, dst += rows * dstStep) {
    const auto tap = [&](const s16* sums, int k) __attribute__((always_inline)) {
      return load<S16<lanes>>(sums + (y + k) * rowLanes);
    };
    const auto centre = [&](const s16* sums) __attribute__((always_inline)) {
      return sixTapOfSums(tap(sums, 0), tap(sums, 1), tap(sums, 2), tap(sums, 3), tap(sums, 4), tap(sums, 5));
    };
    auto result = merge(centre(even), centre(odd));
    if constexpr (M != Mean::none) {
      constexpr int row = M == Mean::next ? 3 : 2;
      result = average(result, merge(shiftRight<5>(tap(even, row)), shiftRight<5>(tap(odd, row))));
    }
    storeRows<W>(dst, dstStep, result);
  }
}

// i, k: sums along columns -2..W + 2, then along rows over the sums; h of the column, or of the next one, is at hand.
// At most bandRows rows.
template <int W, Mean M>
ZVP_INLINE void filterCentreByColumns(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                      int height) {
  constexpr int rowLanes = W == 16 ? 24 : 16;
  alignas(32) s16 sums[bandRows * rowLanes];
  const auto sumColumns = [&](auto columns, int x) __attribute__((always_inline)) {
    columnSums<columns>(
        src - 2 + x, srcStep, height, [&](int y, auto first, auto second) __attribute__((always_inline)) {
          store(sums + y * rowLanes + x, first);
          store(sums + (y + 1) * rowLanes + x, second);
        });
  };
  // The last columns are summed in a register that overlaps the one before, so that nothing behind them is read.
  if constexpr (W == 16) {
    constexpr int columns = registerBytes / 2;
    for (int x = 0; x < W; x += columns) sumColumns(std::integral_constant<int, columns>(), x);
  } else {
    sumColumns(std::integral_constant<int, 8>(), 0);
  }
  sumColumns(std::integral_constant<int, 8>(), W - 3);

  constexpr int rows = 16 / W;
  for (int y = 0; y < height; y += rows, dst += rows * dstStep) {
    // Eight lanes of sums from column x - 2 on: of half a row, of a row, or of two rows of four.
    const s16* const row = sums + y * rowLanes;
    const auto tap = [&](int half, int k) __attribute__((always_inline)) {
      if constexpr (W == 16)
        return load<S16<8>>(row + 8 * half + k);
      else if constexpr (W == 8)
        return load<S16<8>>(row + half * rowLanes + k);
      else
        return load8x2<S16<8>>(row + 2 * half * rowLanes + k, row + (2 * half + 1) * rowLanes + k);
    };
    const auto centre = [&](int half) __attribute__((always_inline)) {
      return sixTapOfSums(tap(half, 0), tap(half, 1), tap(half, 2), tap(half, 3), tap(half, 4), tap(half, 5));
    };
    constexpr int column = M == Mean::next ? 3 : 2;
    const auto h = packSaturateU8(shiftRight<5>(tap(0, column)), shiftRight<5>(tap(1, column)));
    storeRows<W>(dst, dstStep, average(packSaturateU8(centre(0), centre(1)), h));
  }
}

// One width at one position. All of these return zvpStatusOk so that an entry can end in the call of one.
template <int W, int Dx, int Dy>
[[gnu::noinline]] zvpStatus filtered(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                     int height) {
  if constexpr (Dy == 0) {
    filterRows<W, quarter(Dx)>(src, srcStep, dst, dstStep, height);
  } else if constexpr (Dx == 0) {
    filterColumns<W, quarter(Dy)>(src, srcStep, dst, dstStep, height);
  } else if constexpr (Dx == 2 || Dy == 2) {
    for (int y = 0; y < height; y += bandRows, src += bandRows * srcStep, dst += bandRows * dstStep) {
      const int rows = std::min(bandRows, height - y);
      if constexpr (Dx == 2)
        filterCentreByRows<W, quarter(Dy)>(src, srcStep, dst, dstStep, rows);
      else
        filterCentreByColumns<W, quarter(Dx)>(src, srcStep, dst, dstStep, rows);
    }
  } else {
    filterRows<W, Mean::none>(src + (Dy == 3 ? srcStep : 0), srcStep, dst, dstStep, height);
    filterColumns<W, Mean::destination>(src + (Dx == 3 ? 1 : 0), srcStep, dst, dstStep, height);
  }
  return zvpStatusOk;
}
template <int W, int Dx, int Dy>
ZVP_INLINE zvpStatus columns(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height) {
  if constexpr (Dx != 0 || Dy != 0) return filtered<W, Dx, Dy>(src, srcStep, dst, dstStep, height);
  copyBlockRows<W, 4>(src, srcStep, dst, dstStep, height);
  return zvpStatusOk;
}

// Any other width, in pieces.
template <int Dx, int Dy>
[[gnu::noinline]] zvpStatus pieces(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                   zvpSize size) {
  forEachPiece<16, 4>(size.width, [=](auto width, int x) {
    columns<width, Dx, Dy>(src + x, srcStep, dst + x, dstStep, size.height);
  });
  return zvpStatusOk;
}

// A slot of the table.
template <int Dx, int Dy>
zvpStatus kernel(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size) {
  const int height = size.height;
  if (height <= 0) return zvpStatusOk;
  if (size.width == 16) return columns<16, Dx, Dy>(src, srcStep, dst, dstStep, height);
  if (size.width == 8) return columns<8, Dx, Dy>(src, srcStep, dst, dstStep, height);
  if (size.width == 4) return columns<4, Dx, Dy>(src, srcStep, dst, dstStep, height);
  return pieces<Dx, Dy>(src, srcStep, dst, dstStep, size);
}

}  // namespace zvp::luma8u
