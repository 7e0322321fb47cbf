// The 8x8 DCT and the 2-4-8 DCT of DV, forward and inverse (ISO/IEC 13818-2 Annex A, IEC 61834-2), in integers: two
// passes of one-dimensional transforms with 16-bit operands, 32-bit sums and one rounding each.
//
// A one-dimensional transform is scaled by sqrt(2) * 2^15 instead of its orthonormal factors: so the factor of the DC
// is a power of two, blocks of equal samples are exact, and two passes make a scale of 2^31. All inner products are
// made of pairs of neighbouring operands; each pass leaves its results so that those of the other direction stand in
// pairs.
//
// The inverse rounds its first pass to 1 / 22.6 of a sample, as finely as 16 bits hold blocks of samples -512..511, the
// widest range for which ISO/IEC 23002-1 measures accuracy. What lies beyond saturates between the passes.
#pragma once

#include "simd.h"

namespace zvp::mpeg {

using simd::S16;
using simd::S32;

// cos(k pi / 16) * sqrt(2) * 2^14, rounded; W4 is exact.
inline constexpr s16 W1 = 22725, W2 = 21407, W3 = 19266, W4 = 16384, W5 = 12873, W6 = 8867, W7 = 4520;

// first * x0 + second * x1 for the pairs (x0, x1).
template <s16 first, s16 second>
ZVP_INLINE S32<4> weigh(S16<8> pairs) {
  return mulAddPairs(pairs, simd::as<S16<8>>(simd::splat<S32<4>>(s32(u16(first) | u32(u16(second)) << 16))));
}

// ---- inverse ----------------------------------------------------------------------------------------------------

inline constexpr int inverseFirstShift = 11, inverseSecondShift = 20;
// Half of the second pass's last place, in terms of its DC. The first pass adds it to its results of row 0 for nothing.
inline constexpr s32 inverseSecondHalf = (1 << (inverseSecondShift - 1)) / W4;

// Four-point inverse of a, b, c, d, given as pairs (a, c) and (b, d): the eight-point transform's even half.
ZVP_INLINE void inverseFour(S16<8> ac, S16<8> bd, S32<4> rounding, S32<4> (&out)[4]) {
  const auto sum = weigh<W4, W4>(ac) + rounding, difference = weigh<W4, -W4>(ac) + rounding;
  const auto outer = weigh<W2, W6>(bd), inner = weigh<W6, -W2>(bd);
  out[0] = sum + outer;
  out[1] = difference + inner;
  out[2] = difference - inner;
  out[3] = sum - outer;
}

ZVP_INLINE void butterflies(const S32<4> (&even)[4], const S32<4> (&odd)[4], S32<4> (&out)[8]) {
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) out[i] = even[i] + odd[i];
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) out[4 + i] = even[3 - i] - odd[3 - i];
}

ZVP_INLINE void inverseOdd(S16<8> x15, S16<8> x37, S32<4> (&out)[4]) {
  out[0] = weigh<W1, W5>(x15) + weigh<W3, W7>(x37);
  out[1] = weigh<W3, -W1>(x15) + weigh<-W7, -W5>(x37);
  out[2] = weigh<W5, W7>(x15) + weigh<-W1, W3>(x37);
  out[3] = weigh<W7, W3>(x15) + weigh<-W5, -W1>(x37);
}
// Eight-point inverse of elements given as pairs (0, 4), (1, 5), (2, 6), (3, 7).
ZVP_INLINE void inverseEight(const S16<8> (&x)[4], S32<4> rounding, S32<4> (&out)[8]) {
  S32<4> even[4], odd[4];
  inverseFour(x[0], x[2], rounding, even);
  inverseOdd(x[1], x[3], odd);
  butterflies(even, odd, out);
}
// The same where elements 4 to 7 are zero; the others come as pairs (0, 2) and (1, 3).
ZVP_INLINE void inverseEightOfFour(S16<8> x02, S16<8> x13, S32<4> (&out)[8]) {
  const S32<4> even[4] = {weigh<W4, W2>(x02), weigh<W4, W6>(x02), weigh<W4, -W6>(x02), weigh<W4, -W2>(x02)};
  const S32<4> odd[4] = {weigh<W1, W3>(x13), weigh<W3, -W7>(x13), weigh<W5, -W1>(x13), weigh<W7, -W5>(x13)};
  butterflies(even, odd, out);
}

template <int shift>
ZVP_INLINE S16<8> narrow(S32<4> a, S32<4> b) {
  return packSaturateS16(simd::shiftRight<shift>(a), simd::shiftRight<shift>(b));
}

// Four rows after the first pass: columns 0-3 and 4-7, each as two pairs of rows.
struct RowPairs {
  S16<8> columns[2][2];
};

// Eight-point inverse of four rows of a block, which become the pairs (a, b) and (c, d).
template <int a, int b, int c, int d>
ZVP_INLINE RowPairs inverseRows(const s16* src) {
  // Bit by bit of the column's number, the rows' elements change places with their numbers.
  const auto row = [=](int y) { return simd::load<S16<8>>(src + 8 * y); };
  const auto ac03 = interleaveLow(row(a), row(c)), ac47 = interleaveHigh(row(a), row(c));
  const auto bd03 = interleaveLow(row(b), row(d)), bd47 = interleaveHigh(row(b), row(d));
  const auto c01 = interleaveLow(ac03, bd03), c23 = interleaveHigh(ac03, bd03);
  const auto c45 = interleaveLow(ac47, bd47), c67 = interleaveHigh(ac47, bd47);
  const S16<8> x[4] = {interleaveLow(c01, c45), interleaveHigh(c01, c45), interleaveLow(c23, c67),
                       interleaveHigh(c23, c67)};
  constexpr s32 half = 1 << (inverseFirstShift - 1), extra = a == 0 ? inverseSecondHalf << inverseFirstShift : 0;
  S32<4> even[4], odd[4];
  inverseFour(x[0], x[2], simd::lanes(std::array<s32, 4>{half + extra, half, half, half}), even);
  inverseOdd(x[1], x[3], odd);
  const auto group = [](S32<4> c0, S32<4> c1, S32<4> c2, S32<4> c3, S16<8>(&pairs)[2]) {
    const auto columns01 = narrow<inverseFirstShift>(c0, c1), columns23 = narrow<inverseFirstShift>(c2, c3);
    pairs[0] = evenLanes32(columns01, columns23);
    pairs[1] = oddLanes32(columns01, columns23);
  };
  RowPairs result;
  group(even[0] + odd[0], even[1] + odd[1], even[2] + odd[2], even[3] + odd[3], result.columns[0]);
  group(even[3] - odd[3], even[2] - odd[2], even[1] - odd[1], even[0] - odd[0], result.columns[1]);
  return result;
}

// Where a pass leaves four columns of rows y and y + 1, those of row y in the low half.
struct StoreWords {
  s16* dst;
  ZVP_INLINE void operator()(int x, int y, S16<8> rows) const {
    simd::storeBytes<8>(dst + 8 * y + x, rows);
    simd::storeHigh8(dst + 8 * y + 8 + x, rows);
  }
};
struct StoreClippedBytes {
  u8* dst;
  std::ptrdiff_t step;
  ZVP_INLINE void operator()(int x, int y, S16<8> rows) const {
    const auto bytes = packSaturateU8(rows, rows);
    simd::storeBytes<4>(dst + y * step + x, bytes);
    simd::storeBytes<4>(dst + (y + 1) * step + x, simd::shuffle32<0x55>(bytes));
  }
};

// By words of 64 bits: the general way has more than enough for the vector units to do.
ZVP_INLINE u64 anyOf(const s16* fourRows) {
  const auto word = [=](int i) { return loadAs<u64>(fourRows + 4 * i); };
  return word(0) | word(1) | word(2) | word(3) | word(4) | word(5) | word(6) | word(7);
}
ZVP_INLINE bool anyBesidesDc(const s16* fourRows) {
  const auto row = [=](int y) { return simd::load<S16<8>>(fourRows + 8 * y); };
  return !noneSet((simd::shiftBytesDown<2>(row(0)) | row(1)) | (row(2) | row(3)));
}

template <class Store>
ZVP_INLINE void storeRows(const S32<4> (&rows)[8], int x, Store store) {
#pragma GCC unroll 8
  for (int y = 0; y < 8; y += 2) store(x, y, narrow<inverseSecondShift>(rows[y], rows[y + 1]));
}

// Blocks with a DC alone, and blocks without the four lower rows, are common and cost less. The results are those of
// the general way.
template <class Store>
ZVP_INLINE void inverse8x8(const s16* src, Store store) {
  const auto none = simd::zero<S32<4>>();
  S32<4> rows[8];
  if (anyOf(src + 32) != 0) {
    const auto upper = inverseRows<0, 4, 1, 5>(src), lower = inverseRows<2, 6, 3, 7>(src);
#pragma GCC unroll 2
    for (int h = 0; h < 2; ++h) {
      const S16<8> x[4] = {upper.columns[h][0], upper.columns[h][1], lower.columns[h][0], lower.columns[h][1]};
      inverseEight(x, none, rows);
      storeRows(rows, 4 * h, store);
    }
  } else if (anyBesidesDc(src)) {
    const auto upper = inverseRows<0, 2, 1, 3>(src);
#pragma GCC unroll 2
    for (int h = 0; h < 2; ++h) {
      inverseEightOfFour(upper.columns[h][0], upper.columns[h][1], rows);
      storeRows(rows, 4 * h, store);
    }
  } else {
    const s32 between = clipS16(loadAs<s16>(src) * (W4 >> inverseFirstShift) + inverseSecondHalf);
    const auto flat = simd::splat<S16<8>>(s16(between >> 6));  // * W4 >> inverseSecondShift
#pragma GCC unroll 4
    for (int y = 0; y < 8; y += 2) {
      store(0, y, flat);
      store(4, y, flat);
    }
  }
}

// Rows 0-3 hold the transform of the sums of neighbouring lines, rows 4-7 that of their differences.
ZVP_INLINE void inverse2x4x8(const s16* src, StoreWords store) {
  const auto none = simd::zero<S32<4>>();
  const auto upper = inverseRows<0, 2, 1, 3>(src), lower = inverseRows<4, 6, 5, 7>(src);
#pragma GCC unroll 2
  for (int h = 0; h < 2; ++h) {
    S32<4> sums[4], differences[4];
    inverseFour(upper.columns[h][0], upper.columns[h][1], none, sums);
    inverseFour(lower.columns[h][0], lower.columns[h][1], none, differences);
#pragma GCC unroll 4
    for (int z = 0; z < 4; ++z)
      store(4 * h, 2 * z, narrow<inverseSecondShift>(sums[z] + differences[z], sums[z] - differences[z]));
  }
}

// ---- forward ----------------------------------------------------------------------------------------------------
// Rows to frequencies, then once more on the transposed block. 16-bit sums hold samples -2048..2047.

inline constexpr int forwardFirstShift = 14, forwardSecondShift = 17;

template <int shift>
ZVP_INLINE S16<8> roundAndNarrow(S32<4> a, S32<4> b) {
  const auto half = simd::splat<S32<4>>(1 << (shift - 1));
  return narrow<shift>(a + half, b + half);
}

// f(S16<8> pair of operands, S16<8> pair of operands) gives the sum for the lanes of each half.
template <int shift, class F>
ZVP_INLINE S16<8> onBothHalves(S16<8> a, S16<8> b, S16<8> c, S16<8> d, F f) {
  return roundAndNarrow<shift>(f(interleaveLow(a, b), interleaveLow(c, d)),
                               f(interleaveHigh(a, b), interleaveHigh(c, d)));
}

// Four-point forward transform of rows a, b, c, d: the eight-point transform's even half.
template <int shift>
ZVP_INLINE void forwardFour(S16<8> a, S16<8> b, S16<8> c, S16<8> d, S16<8>& f0, S16<8>& f1, S16<8>& f2, S16<8>& f3) {
  const auto weighted = [=](auto f) { return onBothHalves<shift>(a, d, b, c, f); };
  f0 = weighted([](S16<8> ad, S16<8> bc) { return weigh<W4, W4>(ad) + weigh<W4, W4>(bc); });
  f1 = weighted([](S16<8> ad, S16<8> bc) { return weigh<W2, -W2>(ad) + weigh<W6, -W6>(bc); });
  f2 = weighted([](S16<8> ad, S16<8> bc) { return weigh<W4, W4>(ad) - weigh<W4, W4>(bc); });
  f3 = weighted([](S16<8> ad, S16<8> bc) { return weigh<W6, -W6>(ad) - weigh<W2, -W2>(bc); });
}

template <int shift>
ZVP_INLINE void forwardEight(S16<8> (&x)[8]) {
  const S16<8> sums[4] = {x[0] + x[7], x[1] + x[6], x[2] + x[5], x[3] + x[4]};
  const S16<8> d[4] = {x[0] - x[7], x[1] - x[6], x[2] - x[5], x[3] - x[4]};
  forwardFour<shift>(sums[0], sums[1], sums[2], sums[3], x[0], x[2], x[4], x[6]);
  const auto weighted = [&](auto f) { return onBothHalves<shift>(d[0], d[1], d[2], d[3], f); };
  x[1] = weighted([](S16<8> d01, S16<8> d23) { return weigh<W1, W3>(d01) + weigh<W5, W7>(d23); });
  x[3] = weighted([](S16<8> d01, S16<8> d23) { return weigh<W3, -W7>(d01) + weigh<-W1, -W5>(d23); });
  x[5] = weighted([](S16<8> d01, S16<8> d23) { return weigh<W5, -W1>(d01) + weigh<W7, W3>(d23); });
  x[7] = weighted([](S16<8> d01, S16<8> d23) { return weigh<W7, -W5>(d01) + weigh<W3, -W1>(d23); });
}

ZVP_INLINE void loadBlock(const s16* src, S16<8> (&rows)[8]) {
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) rows[y] = simd::load<S16<8>>(src + 8 * y);
}
ZVP_INLINE void storeBlock(s16* dst, const S16<8> (&rows)[8]) {
#pragma GCC unroll 8
  for (int y = 0; y < 8; ++y) simd::store(dst + 8 * y, rows[y]);
}

// The second, horizontal pass, which both forward transforms share.
ZVP_INLINE void forwardRows(S16<8> (&rows)[8], s16* dst) {
  transpose(rows);
  forwardEight<forwardSecondShift>(rows);
  transpose(rows);
  storeBlock(dst, rows);
}

ZVP_INLINE void forward8x8(S16<8> (&rows)[8], s16* dst) {
  forwardEight<forwardFirstShift>(rows);
  forwardRows(rows, dst);
}

ZVP_INLINE void forward2x4x8(S16<8> (&r)[8], s16* dst) {
  constexpr int shift = forwardFirstShift;
  S16<8> rows[8];
  forwardFour<shift>(r[0] + r[1], r[2] + r[3], r[4] + r[5], r[6] + r[7], rows[0], rows[1], rows[2], rows[3]);
  forwardFour<shift>(r[0] - r[1], r[2] - r[3], r[4] - r[5], r[6] - r[7], rows[4], rows[5], rows[6], rows[7]);
  forwardRows(rows, dst);
}

}  // namespace zvp::mpeg
