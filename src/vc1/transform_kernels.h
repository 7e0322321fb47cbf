// The VC-1 transforms of blocks of W columns and H rows (SMPTE 421M Annex A): a pass along the rows, then one down the
// columns.
//
// A pass works on four rows or columns at once and takes their elements in pairs, i with i + N / 2 of N, which one
// instruction multiplies and adds. Rows come in the order that leaves the results of the first pass paired in the same
// way for the second. An inverse transform knows how many elements can be other than zero, Wnz of W and Hnz of H.
//
// Results of the inverse's first pass have up to 20 bits. For all coefficients that a stream can hold they fit 16;
// where they might not, the second pass takes pairs of 32-bit lanes.
#pragma once

#include "vc1/transform_tables.h"
#include "vc1/weigh.h"

namespace zvp::vc1 {

using simd::S16;
using simd::S32;

// Elements 0 and N / 2, 1 and N / 2 + 1, ... of four rows.
template <int N> using Pairs = std::array<S16<8>, std::size_t(N / 2)>;
// One sum for each point, of four rows or columns.
template <int N> using Sums = std::array<S32<4>, std::size_t(N)>;

// Two elements of 32 bits where S16<8> does not hold them, and their weighted sum.
struct WidePair {
  S32<4> first, second;
};
template <s16 first, s16 second>
ZVP_INLINE S32<4> weigh(WidePair pairs) {
  const auto a = mulLow(pairs.first, simd::splat<S32<4>>(first));
  return a + mulLow(pairs.second, simd::splat<S32<4>>(second));
}

// ---- rows to pairs, sums to pairs, sums to memory ---------------------------------------------------------------

// The row that is i-th of four in a group, of rows rows that are not zero.
template <int rows>
constexpr int rowOfGroup(int group, int i) {
  return 2 * group + i / 2 + i % 2 * (rows / 2);
}

// The first N elements of four rows, or of two for N = 2. row(i) is the address of the i-th.
template <int N, class Row>
ZVP_INLINE Pairs<N> loadPairs(Row row) {
  using namespace simd;
  if constexpr (N == 8) {
    const auto a = load<S16<8>>(row(0)), b = load<S16<8>>(row(1)), c = load<S16<8>>(row(2)), d = load<S16<8>>(row(3));
    const auto ac03 = interleaveLow(a, c), ac47 = interleaveHigh(a, c);
    const auto bd03 = interleaveLow(b, d), bd47 = interleaveHigh(b, d);
    const auto e01 = interleaveLow(ac03, bd03), e23 = interleaveHigh(ac03, bd03);
    const auto e45 = interleaveLow(ac47, bd47), e67 = interleaveHigh(ac47, bd47);
    return {interleaveLow(e01, e45), interleaveHigh(e01, e45), interleaveLow(e23, e67), interleaveHigh(e23, e67)};
  } else if constexpr (N == 4) {
    const auto swapped = [](S16<8> rows) { return shuffleHigh16<0xd8>(shuffleLow16<0xd8>(rows)); };
    const auto ab = swapped(load8x2<S16<8>>(row(0), row(1))), cd = swapped(load8x2<S16<8>>(row(2), row(3)));
    return {evenLanes32(ab, cd), oddLanes32(ab, cd)};
  } else {
    return {as<S16<8>>(interleaveLow(loadBytes<U32<4>, 4>(row(0)), loadBytes<U32<4>, 4>(row(1))))};
  }
}

// Four columns of rows a, b, c, d as the pairs (a, b) and (c, d).
ZVP_INLINE void pairRows(const S32<4>* columns, S16<8>& ab, S16<8>& cd) {
  const auto columns01 = packSaturateS16(columns[0], columns[1]), columns23 = packSaturateS16(columns[2], columns[3]);
  ab = evenLanes32(columns01, columns23);
  cd = oddLanes32(columns01, columns23);
}
ZVP_INLINE void pairRows(const S32<4>* columns, WidePair& ab, WidePair& cd) {
  S32<4> rows[4] = {columns[0], columns[1], columns[2], columns[3]};
  transpose(rows);
  ab = {rows[0], rows[1]};
  cd = {rows[2], rows[3]};
}

template <int H>
ZVP_INLINE void storeFourColumns(s16* dst, std::ptrdiff_t step, const Sums<H>& rows) {
#pragma GCC unroll 4
  for (std::size_t y = 0; y < H; y += 2) {
    const auto two = packSaturateS16(rows[y], rows[y + 1]);
    simd::storeBytes<8>(advanceBytes(dst, std::ptrdiff_t(y) * step), two);
    simd::storeHigh8(advanceBytes(dst, std::ptrdiff_t(y + 1) * step), two);
  }
}

// Bits shift to shift + 15 with the sign that they make.
template <int shift>
ZVP_INLINE S32<4> sixteenBitsFrom(S32<4> a) {
  if constexpr (shift < 16) return simd::shiftRight<16>(simd::shiftLeft<16 - shift>(a));
  else return simd::shiftRight<shift>(a);  // no more than 16 are left
}

// ---- inverse ----------------------------------------------------------------------------------------------------

// N points of Nz elements; the lower half of the points with extra more.
template <int N, int Nz, int rounding, int extra, class Pair>
ZVP_INLINE Sums<N> inversePoints(const Pair* x) {
  const auto r = simd::splat<S32<4>>(rounding);
  Sums<N / 2> even, odd;
  if constexpr (N == 8 && Nz == 8) {
    const auto sum = weigh<12, 12>(x[0]) + r, difference = weigh<12, -12>(x[0]) + r;
    const auto outer = weigh<16, 6>(x[2]), inner = weigh<6, -16>(x[2]);
    even = {sum + outer, difference + inner, difference - inner, sum - outer};
    odd = {weigh<16, 9>(x[1]) + weigh<15, 4>(x[3]), weigh<15, -16>(x[1]) + weigh<-4, -9>(x[3]),
           weigh<9, 4>(x[1]) + weigh<-16, 15>(x[3]), weigh<4, 15>(x[1]) + weigh<-9, -16>(x[3])};
  } else if constexpr (N == 8 && Nz == 4) {
    even = {weigh<12, 16>(x[0]) + r, weigh<12, 6>(x[0]) + r, weigh<12, -6>(x[0]) + r, weigh<12, -16>(x[0]) + r};
    odd = {weigh<16, 15>(x[1]), weigh<15, -4>(x[1]), weigh<9, -16>(x[1]), weigh<4, -9>(x[1])};
  } else if constexpr (N == 8) {
    even.fill(weigh<12, 0>(x[0]) + r);
    odd = {weigh<0, 16>(x[0]), weigh<0, 15>(x[0]), weigh<0, 9>(x[0]), weigh<0, 4>(x[0])};
  } else if constexpr (Nz == 4) {
    even = {weigh<17, 17>(x[0]) + r, weigh<17, -17>(x[0]) + r};
    odd = {weigh<22, 10>(x[1]), weigh<10, -22>(x[1])};
  } else {
    even.fill(weigh<17, 0>(x[0]) + r);
    odd = {weigh<0, 22>(x[0]), weigh<0, 10>(x[0])};
  }
  Sums<N> points;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < N / 2; ++i) {
    points[i] = even[i] + odd[i];
    points[N - 1 - i] = (extra == 0 ? even[i] : even[i] + simd::splat<S32<4>>(extra)) - odd[i];
  }
  return points;
}

// The corner of a block that is not zero, in groups of four rows.
template <int Wnz, int Hnz>
using Corner = std::array<Pairs<Wnz>, (Hnz + 3) / 4>;

template <int Wnz, int Hnz>
ZVP_INLINE Corner<Wnz, Hnz> loadCorner(const s16* src, std::ptrdiff_t step) {
  Corner<Wnz, Hnz> corner;
#pragma GCC unroll 2
  for (int g = 0; g < int(corner.size()); ++g)
    corner[std::size_t(g)] =
        loadPairs<Wnz>([=](int i) { return advanceBytes(src, rowOfGroup<Hnz>(g, i) * step); });
  return corner;
}

// Both passes, the second on pairs of 16 or of 32 bits.
template <class Pair, int W, int H, int Wnz, int Hnz>
ZVP_INLINE void inversePasses(const Corner<Wnz, Hnz>& corner, s16* dst, std::ptrdiff_t step) {
  Pair columns[W / 4][2 * Corner<Wnz, Hnz>().size()];
#pragma GCC unroll 2
  for (std::size_t g = 0; g < corner.size(); ++g) {
    auto sums = inversePoints<W, Wnz, 4, 0>(corner[g].data());
#pragma GCC unroll 8
    for (auto& s : sums) s = simd::shiftRight<3>(s);
#pragma GCC unroll 2
    for (std::size_t x = 0; x < W / 4; ++x) pairRows(&sums[4 * x], columns[x][2 * g], columns[x][2 * g + 1]);
  }
#pragma GCC unroll 2
  for (std::size_t x = 0; x < W / 4; ++x) {
    auto sums = inversePoints<H, Hnz, 64, H == 8 ? 1 : 0>(columns[x]);
#pragma GCC unroll 8
    for (auto& s : sums) {
      if constexpr (std::is_same_v<Pair, WidePair>) s = sixteenBitsFrom<7>(s);
      else s = simd::shiftRight<7>(s);  // 90 * 32768 / 128 at most
    }
    storeFourColumns<H>(dst + 4 * x, step, sums);
  }
}

template <int W, int H, int Wnz, int Hnz>
[[gnu::noinline, gnu::cold]] void inverseOfLargeCoefficients(const s16* src, std::ptrdiff_t srcStep, s16* dst,
                                                             std::ptrdiff_t dstStep) {
  inversePasses<WidePair, W, H, Wnz, Hnz>(loadCorner<Wnz, Hnz>(src, srcStep), dst, dstStep);
}

// Up to this magnitude results of the first pass fit 16 bits: their weights add up to 12 + 12 + 16 + 6 and
// 16 + 15 + 9 + 4 for 8 points, to 66 for 4, and (2912 * 90 + 4) >> 3 is 32760.
inline constexpr s16 largestNarrowCoefficient = 2912;

template <class Corner>
ZVP_INLINE bool isNarrow(const Corner& corner) {
  auto low = corner[0][0], high = low;
#pragma GCC unroll 2
  for (const auto& group : corner)
#pragma GCC unroll 4
    for (const auto& pairs : group) {
      low = min(low, pairs);
      high = max(high, pairs);
    }
  return noneSet(greater(high, simd::splat<S16<8>>(largestNarrowCoefficient)) |
                 greater(simd::splat<S16<8>>(-largestNarrowCoefficient), low));
}

template <int W, int H, int Wnz, int Hnz>
ZVP_INLINE void inverseOfCorner(const s16* src, std::ptrdiff_t srcStep, s16* dst, std::ptrdiff_t dstStep) {
  const auto corner = loadCorner<Wnz, Hnz>(src, srcStep);
  if (isNarrow(corner)) [[likely]] inversePasses<S16<8>, W, H, Wnz, Hnz>(corner, dst, dstStep);
  else inverseOfLargeCoefficients<W, H, Wnz, Hnz>(src, srcStep, dst, dstStep);
}

// The DC alone. Its product with 12 is even, so rows 4 to 7 need no 1 more.
template <int W, int H>
ZVP_INLINE void inverseOfDc(const s16* src, s16* dst, std::ptrdiff_t step) {
  constexpr s32 rowFactor = W == 8 ? 12 : 17, columnFactor = H == 8 ? 12 : 17;
  const s32 t = (loadAs<s16>(src) * rowFactor + 4) >> 3;
  const auto flat = simd::splat<S16<8>>(s16((t * columnFactor + 64) >> 7));
#pragma GCC unroll 8
  for (int y = 0; y < H; ++y) simd::storeBytes<2 * W>(advanceBytes(dst, y * step), flat);
}

// The smallest corner that holds the promised one, of those that the shape has.
template <int W, int H>
void inverseTransform(const s16* src, std::ptrdiff_t srcStep, s16* dst, std::ptrdiff_t dstStep, zvpSize nonZero) {
  const auto within = [=](s32 size) { return nonZero.width <= size && nonZero.height <= size; };
  if (within(1)) return inverseOfDc<W, H>(src, dst, dstStep);
  if constexpr (W == H)
    if (within(2)) return inverseOfCorner<W, H, 2, 2>(src, srcStep, dst, dstStep);
  if constexpr (W == 8 && H == 8)
    if (within(4)) return inverseOfCorner<W, H, 4, 4>(src, srcStep, dst, dstStep);
  inverseOfCorner<W, H, W, H>(src, srcStep, dst, dstStep);
}

// ---- forward ----------------------------------------------------------------------------------------------------

// The sums over all elements of element times factor, modulo 2^32: two products of 16 bits never exceed 31.
template <int N, int shift>
ZVP_INLINE Sums<N> forwardPoints(const S16<8>* x) {
  constexpr auto& factors = tableFwdTransform<N>();
  Sums<N> points;
#pragma GCC unroll 8
  for (std::size_t k = 0; k < N; ++k) {
    auto sum = simd::splat<S32<4>>(1 << (shift - 1));
#pragma GCC unroll 4
    for (std::size_t i = 0; i < N / 2; ++i) {
      sum = sum + mulAddPairs(x[i], weights(factors[k][i], factors[k][i + N / 2]));
    }
    points[k] = sixteenBitsFrom<shift>(sum);
  }
  return points;
}

template <int W, int H>
void forwardTransform(const s16* src, std::ptrdiff_t srcStep, s16* dst, std::ptrdiff_t dstStep) {
  const auto block = loadCorner<W, H>(src, srcStep);
  S16<8> columns[W / 4][H / 2];
#pragma GCC unroll 2
  for (std::size_t g = 0; g < block.size(); ++g) {
    const auto sums = forwardPoints<W, W == 8 ? 12 : 11>(block[g].data());
#pragma GCC unroll 2
    for (std::size_t x = 0; x < W / 4; ++x) pairRows(&sums[4 * x], columns[x][2 * g], columns[x][2 * g + 1]);
  }
#pragma GCC unroll 2
  for (std::size_t x = 0; x < W / 4; ++x)
    storeFourColumns<H>(dst + 4 * x, dstStep, forwardPoints<H, H == 8 ? 20 : 19>(columns[x]));
}

}  // namespace zvp::vc1
