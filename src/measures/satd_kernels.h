// Sums of the absolute values of the 4x4 Hadamard transforms of a residual, unscaled.
//
// A register holds 4-sample rows of several tiles. The samples of the even and of the odd columns are taken apart while
// they are widened to 16 bits, so that the first step along the rows is a sum and a difference of registers; then come
// the two steps down the columns, then the second one along the rows, between lanes 2 i and 2 i + 1. Of the last step
// only what the sum needs is carried out: half of |x + y| + |x - y| is max(|x|, |y|), or max(x + y, 0) - min(x, y).
//
// A step at most doubles the values: 255 in the residual, 2040 after three steps. A lane of the sum takes in at most
// 16 maxima, of a 16x16 block in 16-byte registers: 32640. On the way there it may wrap.
#pragma once

#include <algorithm>

#include "entry.h"
#include "simd.h"

namespace zvp::measures {

// After the first step along the rows: c0 + c1, c2 + c3 of each tile row, and c0 - c1, c2 - c3.
template <int N>
struct RowPairs {
  simd::S16<N / 2> sum, difference;

  ZVP_INLINE RowPairs(simd::U8<N> a, simd::U8<N> b) {
    using Unsigned = simd::U16<N / 2>;
    using Signed = simd::S16<N / 2>;
    const auto mask = simd::splat<Unsigned>(255);
    const auto a16 = simd::as<Unsigned>(a), b16 = simd::as<Unsigned>(b);
    const auto even = simd::as<Signed>(a16 & mask) - simd::as<Signed>(b16 & mask);
    const auto odd = simd::as<Signed>(simd::shiftRight<8>(a16)) - simd::as<Signed>(simd::shiftRight<8>(b16));
    sum = even + odd;
    difference = even - odd;
  }
};

// x + y and x - y in place.
template <class V>
ZVP_INLINE void butterfly(V& x, V& y) {
  const V sum = x + y;
  y = x - y;
  x = sum;
}
// The same between the low 64 bits of each 16 bytes, of a then b, and the high ones.
template <class V>
ZVP_INLINE void butterflyHalves(V& a, V& b) {
  using Half = simd::U64<simd::Lanes<V>::bytes / 8>;
  const auto x = simd::as<Half>(a), y = simd::as<Half>(b);
  a = simd::as<V>(interleaveLow(x, y));
  b = simd::as<V>(interleaveHigh(x, y));
  butterfly(a, b);
}

// The last step along the rows, for two registers: adds half of |x + y| + |x - y| of lanes x = 2 i, y = 2 i + 1.
template <class V>
ZVP_INLINE void addLastStep(V& total, V a, V b) {
  const V low = interleaveLow(a, b), high = interleaveHigh(a, b);
  const V x = evenLanes32(low, high), y = oddLanes32(low, high);
  total = total + max(x + y, simd::zero<V>()) - min(x, y);
}

// One tile row a register: the last three steps from the sums, or the differences, of rows 0 to 3 of each tile.
template <class V>
ZVP_INLINE void addSatdOfRows(V& total, V r0, V r1, V r2, V r3) {
  butterfly(r0, r1);
  butterfly(r2, r3);
  butterfly(r0, r2);
  butterfly(r1, r3);
  addLastStep(total, r0, r1);
  addLastStep(total, r2, r3);
}

// Two tile rows a register: rows 0 and 1 of two tiles in the first, rows 2 and 3 in the second.
ZVP_INLINE simd::S16<8> satdOfRowPairs(RowPairs<16> rows01, RowPairs<16> rows23) {
  butterfly(rows01.sum, rows23.sum);
  butterfly(rows01.difference, rows23.difference);
  butterflyHalves(rows01.sum, rows23.sum);
  butterflyHalves(rows01.difference, rows23.difference);
  auto total = simd::zero<simd::S16<8>>();
  addLastStep(total, rows01.sum, rows23.sum);
  addLastStep(total, rows01.difference, rows23.difference);
  return total;
}

// All four rows of one tile in a register.
ZVP_INLINE simd::S16<8> satdOfTile(RowPairs<16> rows) {
  butterflyHalves(rows.sum, rows.difference);
  auto even = evenLanes32(rows.sum, rows.difference), odd = oddLanes32(rows.sum, rows.difference);
  butterfly(even, odd);
  auto total = simd::zero<simd::S16<8>>();
  addLastStep(total, even, odd);
  return total;
}

// Four bytes from each of the four places.
ZVP_INLINE simd::U8<16> load4x4(const u8* p0, const u8* p1, const u8* p2, const u8* p3) {
  using Quads = simd::U32<4>;
  const auto low = interleaveLow(simd::loadBytes<Quads, 4>(p0), simd::loadBytes<Quads, 4>(p1));
  const auto high = interleaveLow(simd::loadBytes<Quads, 4>(p2), simd::loadBytes<Quads, 4>(p3));
  return simd::as<simd::U8<16>>(interleaveLow(simd::as<simd::U64<2>>(low), simd::as<simd::U64<2>>(high)));
}

// The sum is taken of halves, and doubled.
template <int W, int H>
ZVP_INLINE s32 satd(const u8* a, std::ptrdiff_t aStep, const u8* b, std::ptrdiff_t bStep) {
  using simd::loadRows;
  if constexpr (W == 4 && H == 4) {
    return 2 * reduceAdd(satdOfTile({loadRows<4, 16>(a, aStep), loadRows<4, 16>(b, bStep)}));
  } else if constexpr (W == 8 && H == 4) {
    return 2 *
           reduceAdd(satdOfRowPairs({loadRows<8, 16>(a, aStep), loadRows<8, 16>(b, bStep)},
                                    {loadRows<8, 16>(a + 2 * aStep, aStep), loadRows<8, 16>(b + 2 * bStep, bStep)}));
  } else if constexpr (W == 4 && H == 8) {
    const auto rows = [](const u8* p, std::ptrdiff_t step) { return load4x4(p, p + 4 * step, p + step, p + 5 * step); };
    return 2 * reduceAdd(satdOfRowPairs({rows(a, aStep), rows(b, bStep)},
                                        {rows(a + 2 * aStep, aStep), rows(b + 2 * bStep, bStep)}));
  } else {
    // A register holds row y of tiles that stand side by side and, where it is wider than the block, on top of each
    // other: four rows apart.
    constexpr int bytes = std::min(simd::registerBytes, W * H / 4), tilesDown = bytes / W;
    auto sum = simd::zero<simd::S16<bytes / 2>>();
    for (int y = 0; y < H; y += 4 * tilesDown) {
      const auto nextRows = [&] {
        const RowPairs<bytes> rows(loadRows<W, bytes>(a, 4 * aStep), loadRows<W, bytes>(b, 4 * bStep));
        a += aStep;
        b += bStep;
        return rows;
      };
      const auto r0 = nextRows(), r1 = nextRows(), r2 = nextRows(), r3 = nextRows();
      addSatdOfRows(sum, r0.sum, r1.sum, r2.sum, r3.sum);
      addSatdOfRows(sum, r0.difference, r1.difference, r2.difference, r3.difference);
      a += 4 * (tilesDown - 1) * aStep;
      b += 4 * (tilesDown - 1) * bStep;
    }
    return 2 * reduceAdd(sum);
  }
}

}  // namespace zvp::measures
