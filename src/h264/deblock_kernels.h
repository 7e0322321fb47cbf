// The deblocking filter of H.264 (8.7.2), for 8-bit samples in bytes and deeper ones in 16-bit elements.
//
// A line is a row of samples across an edge, p3 p2 p1 p0 | q0 q1 q2 q3. One register holds the same sample of 16 lines
// of bytes or 8 lines of 16-bit elements, and all arithmetic stays in elements of the sample's own width: averages,
// saturating sums and corrections by parity give every result of the standard exactly, whatever the samples, alpha,
// beta and tc0. So one text serves both widths. Horizontal edges find their lines in the rows as they lie; vertical
// ones are transposed on the way in and out.
//
// Reach: an edge whose strengths are all zero, or whose alpha or beta is zero, is neither read nor written. Any other
// luma edge is read four samples on either side (three along a horizontal edge without a strong group), a chroma edge
// two. What was read may be written back unchanged.
#pragma once

#include <algorithm>
#include <limits>

#include "simd.h"

namespace zvp::h264 {

// One sample of each line.
template <class T>
using Lines = simd::Vec<T, int(16 / sizeof(T))>;

// The samples of the lines, those next to the edge first.
template <class T, int Depth>
struct Samples {
  Lines<T> p[Depth], q[Depth];
};

// alpha and beta, both at least 1, are kept less 1: a difference is below alpha where it exceeds alpha - 1 by nothing.
template <class T>
struct Thresholds {
  Lines<T> alpha, beta;
  Lines<T> quarterAlpha;  // (alpha >> 2) + 2, less 1
};

// Of values of the sample's type, or of wider ones that may exceed every difference.
template <class T, class Value>
ZVP_INLINE Thresholds<T> thresholds(Value alpha, Value beta) {
  const auto lines = [](Value value) {
    if constexpr (sizeof(Value) > sizeof(T)) value = std::min<Value>(value, std::numeric_limits<T>::max());
    if constexpr (sizeof(T) == 1) {  // spread in fewer instructions than splat takes
      return simd::as<Lines<T>>(simd::splat<simd::U32<4>>(u32(T(value)) * 0x01010101));
    } else {
      return simd::splat<Lines<T>>(T(value));
    }
  };
  return {lines(Value(alpha - 1)), lines(Value(beta - 1)), lines(Value((alpha >> 2) + 1))};
}

// What the groups of an edge have in common, known before any sample is read: all have the strong filter, none has it,
// or neither. What a mix does not need is neither loaded nor formed.
enum class Mix { Normal, Strong, Both };

ZVP_INLINE Mix mixOf(u64 bS, u64 allStrong) {
  constexpr u64 bit2 = 0x0404040404040404;
  return (bS & bit2) == 0 ? Mix::Normal : bS == allStrong ? Mix::Strong : Mix::Both;
}

// Strength and tc0 of each line: masks of the lines that are left alone and of those with the strong filter.
template <class T>
struct Strengths {
  Lines<T> none, strong, tc0;
};

namespace detail {

template <class T>
using Wider = std::conditional_t<sizeof(T) == 1, u16, u32>;

// The values in the low lanes, each in Repeat lanes in a row.
template <int Repeat, class T, int N>
ZVP_INLINE simd::Vec<T, N> repeated(simd::Vec<T, N> values) {
  static_assert(Repeat == 1 || Repeat == 2 || Repeat == 4);
  if constexpr (Repeat > 1) values = interleaveLow(values, values);
  if constexpr (Repeat > 2) {
    const auto pairs = simd::as<simd::Vec<Wider<T>, N / 2>>(values);
    values = simd::as<simd::Vec<T, N>>(interleaveLow(pairs, pairs));
  }
  return values;
}

template <class T>
ZVP_INLINE Lines<T> one() {
  return simd::splat<Lines<T>>(1);
}
template <class V>
ZVP_INLINE V inverted(V a) {
  return a ^ simd::as<V>(simd::splat<simd::U8<16>>(255));
}

// Masks of the lines in which a does not exceed the limit.
template <class V>
ZVP_INLINE V notAbove(V a, V limit) {
  return equal(subSaturate(a, limit), simd::zero<V>());
}

// (a + b) >> 1, and (a + b + c + d + 2) >> 2.
template <class T, int N>
ZVP_INLINE simd::Vec<T, N> floorAverage(simd::Vec<T, N> a, simd::Vec<T, N> b) {
  return average(a, b) - ((a ^ b) & one<T>());
}
template <class T, int N>
ZVP_INLINE simd::Vec<T, N> average(simd::Vec<T, N> a, simd::Vec<T, N> b, simd::Vec<T, N> c, simd::Vec<T, N> d) {
  const auto ab = average(a, b), cd = average(c, d);
  // Two roundings in a row can end one too high; the low bits tell when.
  return average(ab, cd) - (((a ^ b) | (c ^ d)) & (ab ^ cd) & one<T>());
}

// Mask of the lines that are filtered at all.
template <Mix M, class T, int Depth>
ZVP_INLINE Lines<T> passing(const Samples<T, Depth>& s, const Thresholds<T>& t, const Strengths<T>& strengths) {
  const auto slope = max(absDiff(s.p[1], s.p[0]), absDiff(s.q[1], s.q[0]));
  auto excess = subSaturate(absDiff(s.p[0], s.q[0]), t.alpha) | subSaturate(slope, t.beta);
  if constexpr (M != Mix::Strong) excess = excess | strengths.none;
  return equal(excess, simd::zero<Lines<T>>());
}

// p0 and q0 moved toward each other by ((q0 - p0) * 4 + (p1 - q1) + 4) >> 3, clipped to -tc..tc; where tc is 0 nothing
// moves. Samples deeper than a byte stop at the maximum, bytes at 255.
template <class T>
ZVP_INLINE void moveNearest(Lines<T>& p0, Lines<T>& q0, Lines<T> p1, Lines<T> q1, Lines<T> tc,
                            [[maybe_unused]] T maximum) {
  using namespace simd;
  using V = Lines<T>;
  constexpr T middle = T(1 << (8 * sizeof(T) - 1)), quarter = T(middle / 4 + 1);
  // With x = q0 - p0 and y = (p1 - q1) >> 2 the movement is (x + y + 1) >> 1, that is (x >> 1) + z where z is
  // (y + (x & 1) + 1) >> 1. Biased to be positive: middle + (x >> 1), and quarter + z.
  const V x = average(q0, inverted(p0));
  const V y = average(average(p1, inverted(q1)), splat<V>(3));
  const V z = average(y, (p0 ^ q0) & one<T>());
  // Each half of x joins the side where the sum cannot overflow.
  const V rise = subSaturate(x, splat<V>(middle)) + z, fall = subSaturate(splat<V>(middle), x) + splat<V>(quarter);
  const V up = min(subSaturate(rise, fall), tc), down = min(subSaturate(fall, rise), tc);
  p0 = subSaturate(addSaturate(p0, up), down);
  q0 = addSaturate(subSaturate(q0, up), down);
  if constexpr (sizeof(T) > 1) {  // a sample above the maximum stays there if it does not move
    const V ceiling = splat<V>(maximum) | equal(up | down, zero<V>());
    p0 = min(p0, ceiling);
    q0 = min(q0, ceiling);
  }
}

// p1 moved by (p2 + ((p0 + q0 + 1) >> 1) - 2 p1) >> 1, clipped to -bound..bound.
template <class V>
ZVP_INLINE V moveSecond(V p1, V p2, V nearest, V bound) {
  return min(max(floorAverage(p2, nearest), subSaturate(p1, bound)), addSaturate(p1, bound));
}

template <class T>
ZVP_INLINE void filterLumaNormal(Samples<T, 4>& s, Lines<T> mask, Lines<T> tc0, Lines<T> beta, T maximum) {
  auto& [p, q] = s;
  const auto ap = notAbove(absDiff(p[2], p[0]), beta), aq = notAbove(absDiff(q[2], q[0]), beta);
  const auto nearest = average(p[0], q[0]);
  const auto bound = tc0 & mask;
  const auto p1 = moveSecond(p[1], p[2], nearest, bound & ap), q1 = moveSecond(q[1], q[2], nearest, bound & aq);
  // tc0 + ap + aq, which wraps at the sample's width.
  moveNearest<T>(p[0], q[0], p[1], q[1], (tc0 - ap - aq) & mask, maximum);
  p[1] = p1;
  q[1] = q1;
}

// (2 a1 + a0 + b1 + 2) >> 2: the strong filter of chroma, and of luma beside texture.
template <class V>
ZVP_INLINE V strongNearest(V a0, V a1, V b1) {
  return average(a1, floorAverage(a0, b1));
}

// One side of the strong luma filter. Deep is the mask of the lines in which three samples change.
template <class T>
ZVP_INLINE void filterStrongSide(Lines<T> (&a)[4], Lines<T> b0, Lines<T> b1, Lines<T> mask, Lines<T> deep) {
  using namespace simd;
  const auto second = average(a[2], a[1], a[0], b0);
  // (a2 + 2 a1 + 2 a0 + 2 b0 + b1 + 4) >> 3: of a2 + b1 the lowest bit has no part in the result.
  const auto nearest = average(floorAverage(a[2], b1), a[1], a[0], b0);
  // (2 a3 + 3 a2 + a1 + a0 + b0 + 4) >> 3, from the mean of a3 and a2 and the second sample's result: their mean rounds
  // up where both are free of rounding themselves, which the low bits of a3 + a2 and a2 + a1 + a0 + b0 tell.
  const auto sum = a[2] + a[1] + a[0] + b0, far = average(a[3], a[2]);
  const auto bit1 = as<Lines<T>>(shiftRight<1>(as<U16<8>>(sum)));
  const auto third = average(far, second) - ((far ^ second) & ((a[3] ^ a[2]) | bit1) & one<T>());
  deep = deep & mask;
  a[0] = select(deep, nearest, select(mask, strongNearest(a[0], a[1], b1), a[0]));
  a[1] = select(deep, second, a[1]);
  a[2] = select(deep, third, a[2]);
}

template <class T>
ZVP_INLINE void filterLumaStrong(Samples<T, 4>& s, Lines<T> mask, const Thresholds<T>& t) {
  auto& [p, q] = s;
  const auto close = notAbove(absDiff(p[0], q[0]), t.quarterAlpha);
  const auto ap = notAbove(absDiff(p[2], p[0]), t.beta), aq = notAbove(absDiff(q[2], q[0]), t.beta);
  const auto p0 = p[0], p1 = p[1];
  filterStrongSide<T>(p, q[0], q[1], mask, close & ap);
  filterStrongSide<T>(q, p0, p1, mask, close & aq);
}

}  // namespace detail

// Strengths and tc0 of groups of Repeat lines, from values in the low lanes.
template <class T, int Repeat, Mix M, class Values>
ZVP_INLINE Strengths<T> strengths(Values bS, Lines<T> tc0) {
  using namespace simd;
  Strengths<T> s{};
  if constexpr (M != Mix::Strong) {
    const auto bytes = loadBytes<U8<16>, sizeof(Values)>(&bS);
    Lines<T> lines;
    if constexpr (sizeof(T) == 1)
      lines = detail::repeated<Repeat>(bytes);
    else
      lines = detail::repeated<Repeat>(as<Lines<T>>(widenLow(bytes)));
    s.none = equal(lines, zero<Lines<T>>());
    s.tc0 = detail::repeated<Repeat>(tc0);
    if constexpr (M == Mix::Both) s.strong = equal(lines, splat<Lines<T>>(4));
  }
  return s;
}

// The filters. False: no line passes the thresholds, nothing has changed.
template <Mix M, class T>
ZVP_INLINE bool filterLuma(Samples<T, 4>& s, const Thresholds<T>& t, const Strengths<T>& b, T maximum) {
  const auto mask = detail::passing<M>(s, t, b);
  if (signBits(mask) == 0) return false;
  if constexpr (M == Mix::Normal) {
    detail::filterLumaNormal<T>(s, mask, b.tc0, t.beta, maximum);
  } else if constexpr (M == Mix::Strong) {
    detail::filterLumaStrong<T>(s, mask, t);
  } else {  // no line is in both masks, so the order does not matter
    detail::filterLumaNormal<T>(s, andNot(b.strong, mask), b.tc0, t.beta, maximum);
    detail::filterLumaStrong<T>(s, b.strong & mask, t);
  }
  return true;
}
template <Mix M, class T>
ZVP_INLINE bool filterChroma(Samples<T, 2>& s, const Thresholds<T>& t, const Strengths<T>& b, T maximum) {
  const auto mask = detail::passing<M>(s, t, b);
  if (signBits(mask) == 0) return false;
  auto& [p, q] = s;
  const auto p0 = detail::strongNearest(p[0], p[1], q[1]), q0 = detail::strongNearest(q[0], q[1], p[1]);
  if constexpr (M != Mix::Strong) {
    const auto normal = M == Mix::Both ? andNot(b.strong, mask) : mask;
    // tc0 + 1, which wraps at the sample's width.
    detail::moveNearest<T>(p[0], q[0], p[1], q[1], (b.tc0 + detail::one<T>()) & normal, maximum);
  }
  if constexpr (M != Mix::Normal) {
    const auto strong = M == Mix::Both ? b.strong & mask : mask;
    p[0] = select(strong, p0, p[0]);
    q[0] = select(strong, q0, q[0]);
  }
  return true;
}

// ---- rows as columns --------------------------------------------------------------------------------------------

namespace detail {

template <class To, class From>
ZVP_INLINE To low(From a, From b) {
  return simd::as<To>(interleaveLow(a, b));
}
template <class To, class From>
ZVP_INLINE To high(From a, From b) {
  return simd::as<To>(interleaveHigh(a, b));
}

// Row i of at most Rows, Bytes of it; nothing for those behind.
template <int Bytes, int Rows, class V>
ZVP_INLINE V rowOrNothing(const u8* p, std::ptrdiff_t step, int i) {
  return i < Rows ? simd::loadBytes<V, Bytes>(p + i * step) : simd::zero<V>();
}

// Eight columns of eight bytes, two in a register, from rows of Bytes bytes.
template <int Bytes, int Rows>
ZVP_INLINE void loadColumnPairs(const u8* p, std::ptrdiff_t step, simd::U64<2> (&pairs)[Bytes / 2]) {
  using namespace simd;
  U16<8> rows[4];
  for (int i = 0; i < 4; ++i)
    rows[i] = low<U16<8>>(rowOrNothing<Bytes, Rows, U8<16>>(p, step, 2 * i),
                          rowOrNothing<Bytes, Rows, U8<16>>(p, step, 2 * i + 1));
  const auto a = low<U32<4>>(rows[0], rows[1]), b = low<U32<4>>(rows[2], rows[3]);
  pairs[0] = low<U64<2>>(a, b);
  pairs[1] = high<U64<2>>(a, b);
  if constexpr (Bytes == 8) {
    const auto c = high<U32<4>>(rows[0], rows[1]), d = high<U32<4>>(rows[2], rows[3]);
    pairs[2] = low<U64<2>>(c, d);
    pairs[3] = high<U64<2>>(c, d);
  }
}
// Eight rows of 8 bytes from columns in pairs, byte by byte.
ZVP_INLINE void storeColumnPairs(u8* p, std::ptrdiff_t step, simd::U16<8> c01, simd::U16<8> c23, simd::U16<8> c45,
                                 simd::U16<8> c67) {
  using namespace simd;
  const auto a = low<U32<4>>(c01, c23), b = low<U32<4>>(c45, c67);
  const auto c = high<U32<4>>(c01, c23), d = high<U32<4>>(c45, c67);
  storeRows<8, 16>(p, step, low<U8<16>>(a, b));
  storeRows<8, 16>(p + 2 * step, step, high<U8<16>>(a, b));
  storeRows<8, 16>(p + 4 * step, step, low<U8<16>>(c, d));
  storeRows<8, 16>(p + 6 * step, step, high<U8<16>>(c, d));
}

// Four columns of 16-bit elements, from eight rows of 8 bytes, and back.
template <int Rows>
ZVP_INLINE void loadColumns4(const u8* p, std::ptrdiff_t step, simd::U16<8> (&c)[4]) {
  using namespace simd;
  U32<4> rows[4];
  for (int i = 0; i < 4; ++i)
    rows[i] =
        low<U32<4>>(rowOrNothing<8, Rows, U16<8>>(p, step, 2 * i), rowOrNothing<8, Rows, U16<8>>(p, step, 2 * i + 1));
  const auto a = low<U64<2>>(rows[0], rows[1]), b = low<U64<2>>(rows[2], rows[3]);
  const auto d = high<U64<2>>(rows[0], rows[1]), e = high<U64<2>>(rows[2], rows[3]);
  c[0] = low<U16<8>>(a, b);
  c[1] = high<U16<8>>(a, b);
  c[2] = low<U16<8>>(d, e);
  c[3] = high<U16<8>>(d, e);
}
template <int Rows>
ZVP_INLINE void storeColumns4(u8* p, std::ptrdiff_t step, simd::U16<8> c0, simd::U16<8> c1, simd::U16<8> c2,
                              simd::U16<8> c3) {
  using namespace simd;
  const auto a = low<U32<4>>(c0, c1), b = low<U32<4>>(c2, c3);
  storeRows<8, 16>(p, step, low<U8<16>>(a, b));
  storeRows<8, 16>(p + 2 * step, step, high<U8<16>>(a, b));
  if constexpr (Rows == 8) {
    const auto d = high<U32<4>>(c0, c1), e = high<U32<4>>(c2, c3);
    storeRows<8, 16>(p + 4 * step, step, low<U8<16>>(d, e));
    storeRows<8, 16>(p + 6 * step, step, high<U8<16>>(d, e));
  }
}
// Four columns of bytes into rows of 4 bytes.
template <int Rows>
ZVP_INLINE void storeColumns4(u8* p, std::ptrdiff_t step, simd::U8<16> c0, simd::U8<16> c1, simd::U8<16> c2,
                              simd::U8<16> c3) {
  using namespace simd;
  const auto a = low<U16<8>>(c0, c1), b = low<U16<8>>(c2, c3);
  storeRows<4, 16>(p, step, low<U8<16>>(a, b));
  if constexpr (Rows > 4) storeRows<4, 16>(p + 4 * step, step, high<U8<16>>(a, b));
  if constexpr (Rows > 8) {
    const auto d = high<U16<8>>(c0, c1), e = high<U16<8>>(c2, c3);
    storeRows<4, 16>(p + 8 * step, step, low<U8<16>>(d, e));
    storeRows<4, 16>(p + 12 * step, step, high<U8<16>>(d, e));
  }
}

// Eight columns across a vertical luma edge: 16 or 8 rows of bytes, 8 rows of 16-bit elements.
template <int Rows>
ZVP_INLINE void loadColumns8(const u8* p, std::ptrdiff_t step, simd::U8<16> (&c)[8]) {
  using namespace simd;
  U64<2> above[4], below[4] = {};
  loadColumnPairs<8, 8>(p, step, above);
  if constexpr (Rows == 16) loadColumnPairs<8, 8>(p + 8 * step, step, below);
  for (int i = 0; i < 4; ++i) {
    c[2 * i] = low<U8<16>>(above[i], below[i]);
    c[2 * i + 1] = high<U8<16>>(above[i], below[i]);
  }
}
template <int Rows>
ZVP_INLINE void storeColumns8(u8* p, std::ptrdiff_t step, const simd::U8<16> (&c)[8]) {
  using namespace simd;
  storeColumnPairs(p, step, low<U16<8>>(c[0], c[1]), low<U16<8>>(c[2], c[3]), low<U16<8>>(c[4], c[5]),
                   low<U16<8>>(c[6], c[7]));
  if constexpr (Rows == 16)
    storeColumnPairs(p + 8 * step, step, high<U16<8>>(c[0], c[1]), high<U16<8>>(c[2], c[3]), high<U16<8>>(c[4], c[5]),
                     high<U16<8>>(c[6], c[7]));
}
template <int Rows>
ZVP_INLINE void loadColumns8(const u8* p, std::ptrdiff_t step, simd::U16<8> (&c)[8]) {
  using namespace simd;
  S16<8> rows[8];
  for (int y = 0; y < 8; ++y) rows[y] = load<S16<8>>(p + y * step);
  transpose(rows);
  for (int x = 0; x < 8; ++x) c[x] = as<U16<8>>(rows[x]);
}
template <int Rows>
ZVP_INLINE void storeColumns8(u8* p, std::ptrdiff_t step, const simd::U16<8> (&c)[8]) {
  using namespace simd;
  S16<8> rows[8];
  for (int x = 0; x < 8; ++x) rows[x] = as<S16<8>>(c[x]);
  transpose(rows);
  for (int y = 0; y < 8; ++y) store(p + y * step, rows[y]);
}

}  // namespace detail

// ---- luma edges -------------------------------------------------------------------------------------------------

// As the standard names them: the lines across a vertical edge are rows.
enum class Edge { Vertical, Horizontal };

// The lines of one register at the edge before q0, in groups of Repeat: 16, or 8 where that fills the register or Count
// says so.
template <class T, Edge E, int Count, int Repeat, Mix M>
void filterLumaLines(u8* q0, std::ptrdiff_t step, const Thresholds<T>& t, u32 bS, const u8* tc0, T maximum) {
  using namespace simd;
  using V = Lines<T>;
  const auto values = M == Mix::Strong ? zero<V>() : loadBytes<V, Count / Repeat* int(sizeof(T))>(tc0);
  const auto b = strengths<T, Repeat, M>(bS, values);
  Samples<T, 4> s;
  auto& [p, q] = s;
  if constexpr (E == Edge::Horizontal) {
    const auto row = [&](std::ptrdiff_t y) { return load<V>(q0 + y * step); };
    s = {{row(-1), row(-2), row(-3), V{}}, {row(0), row(1), row(2), V{}}};
    if constexpr (M != Mix::Normal) {
      p[3] = row(-4);
      q[3] = row(3);
    }
    if (!filterLuma<M>(s, t, b, maximum)) return;
    if constexpr (M != Mix::Normal) {
      store(q0 - 3 * step, p[2]);
      store(q0 + 2 * step, q[2]);
    }
    store(q0 - 2 * step, p[1]);
    store(q0 - step, p[0]);
    store(q0, q[0]);
    store(q0 + step, q[1]);
  } else {
    u8* const p3 = q0 - 4 * sizeof(T);
    V c[8];
    detail::loadColumns8<Count>(p3, step, c);
    s = {{c[3], c[2], c[1], c[0]}, {c[4], c[5], c[6], c[7]}};
    if (!filterLuma<M>(s, t, b, maximum)) return;
    if constexpr (M == Mix::Normal)
      detail::storeColumns4<Count>(p3 + 2 * sizeof(T), step, p[1], p[0], q[0], q[1]);
    else
      detail::storeColumns8<Count>(p3, step, {p[3], p[2], p[1], p[0], q[0], q[1], q[2], q[3]});
  }
}

// The same with the mix found from the strengths.
template <class T, Edge E, int Count, int Repeat>
ZVP_INLINE void filterLumaGroups(u8* q0, std::ptrdiff_t step, const Thresholds<T>& t, u32 bS, const u8* tc0,
                                 T maximum) {
  switch (mixOf(bS, Count / Repeat == 4 ? 0x04040404 : 0x0404)) {
    case Mix::Normal:
      return filterLumaLines<T, E, Count, Repeat, Mix::Normal>(q0, step, t, bS, tc0, maximum);
    case Mix::Strong:
      return filterLumaLines<T, E, Count, Repeat, Mix::Strong>(q0, step, t, bS, tc0, maximum);
    case Mix::Both:
      return filterLumaLines<T, E, Count, Repeat, Mix::Both>(q0, step, t, bS, tc0, maximum);
  }
}

// What a call is given, with alpha and beta one after the other, tc0 as elements of T, all unaligned.
template <class T>
struct EdgeArguments {
  u8* srcDst;
  std::ptrdiff_t step;
  const u8 *alphas, *betas, *tc0s, *bS;
  T maximum;

  T alpha(int i) const { return loadAs<T>(alphas + std::size_t(i) * sizeof(T)); }
  T beta(int i) const { return loadAs<T>(betas + std::size_t(i) * sizeof(T)); }
  const u8* tc0(int i) const { return tc0s + std::size_t(i) * sizeof(T); }
  u32 bSWord(int i) const { return loadAs<u32>(bS + i); }
  // The q0 of line 0 for the edge at this distance from the first one, in samples of the plane.
  u8* at(Edge edge, int distance) const {
    return srcDst + distance * (edge == Edge::Horizontal ? step : std::ptrdiff_t(sizeof(T)));
  }
};

template <class T, Edge E>
ZVP_INLINE void filterLumaEdge(const EdgeArguments<T>& a, int e, const Thresholds<T>& t) {
  u8* q0 = a.at(E, 4 * e);
  u32 bS = a.bSWord(4 * e);
  const u8* tc0 = a.tc0(4 * e);
  if constexpr (sizeof(T) == 1) {
    if (bS != 0) filterLumaGroups<T, E, 16, 4>(q0, a.step, t, bS, tc0, a.maximum);
  } else {
    const std::ptrdiff_t half = 8 * (E == Edge::Horizontal ? std::ptrdiff_t(sizeof(T)) : a.step);
    for (; bS != 0; bS >>= 16, q0 += half, tc0 += 2 * sizeof(T))
      if ((bS & 0xffff) != 0) filterLumaGroups<T, E, 8, 4>(q0, a.step, t, bS & 0xffff, tc0, a.maximum);
  }
}

// A macroblock's four edges.
template <class T, Edge E>
ZVP_INLINE void filterLumaEdges(const EdgeArguments<T>& a) {
  if (a.alpha(0) != 0 && a.beta(0) != 0) filterLumaEdge<T, E>(a, 0, thresholds<T>(a.alpha(0), a.beta(0)));
  if (a.alpha(1) != 0 && a.beta(1) != 0) {
    const auto inner = thresholds<T>(a.alpha(1), a.beta(1));
    for (int e = 1; e < 4; ++e) filterLumaEdge<T, E>(a, e, inner);
  }
}

// One vertical edge of eight rows, in groups of two.
template <class T>
ZVP_INLINE void filterLumaMbaffEdge(const EdgeArguments<T>& a, u32 alpha, u32 beta) {
  const u32 bS = a.bSWord(0);
  if (alpha == 0 || beta == 0 || bS == 0) return;
  filterLumaGroups<T, Edge::Vertical, 8, 2>(a.srcDst, a.step, thresholds<T>(alpha, beta), bS, a.tc0(0), a.maximum);
}

// ---- chroma edges -----------------------------------------------------------------------------------------------

// Up to eight lines of an edge in four groups, or sixteen of interleaved components.
template <class Value>
struct ChromaEdge {
  u8* q0;
  Value alpha, beta;
  u32 bS;         // 0: nothing to do
  const u8* tc0;  // four elements
};

// How the samples of one or two edges come into registers and go back. Two edges of bytes share a register, the lines
// of the second behind those of the first. They do not meet: each has two samples on either side, and they are four
// apart.

// Horizontal edges, Bytes wide.
template <class T, int Bytes>
struct ChromaRows {
  template <int Edges, class Value>
  ZVP_INLINE static Samples<T, 2> load(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step) {
    const auto row = [&](std::ptrdiff_t y) {
      if constexpr (Edges == 2)
        return simd::load8x2<Lines<T>>(e[0].q0 + y * step, e[1].q0 + y * step);
      else
        return simd::loadBytes<Lines<T>, Bytes>(e[0].q0 + y * step);
    };
    return {{row(-1), row(-2)}, {row(0), row(1)}};
  }
  template <int Edges, class Value>
  ZVP_INLINE static void store(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step, const Samples<T, 2>& s) {
    simd::storeBytes<Bytes>(e[0].q0 - step, s.p[0]);
    simd::storeBytes<Bytes>(e[0].q0, s.q[0]);
    if constexpr (Edges == 2) {
      simd::storeHigh8(e[1].q0 - step, s.p[0]);
      simd::storeHigh8(e[1].q0, s.q[0]);
    }
  }
};

// Vertical edges, Rows high. Unit is a sample, or a pair of interleaved ones.
template <class T, class Unit, int Rows>
struct ChromaColumns {
  template <int Edges, class Value>
  ZVP_INLINE static Samples<T, 2> load(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step) {
    using namespace simd;
    using V = Lines<T>;
    const u8* const p1 = e[0].q0 - 2 * sizeof(Unit);
    if constexpr (sizeof(Unit) == 2) {
      U16<8> c[4];
      detail::loadColumns4<Rows>(p1, step, c);
      return {{as<V>(c[1]), as<V>(c[0])}, {as<V>(c[2]), as<V>(c[3])}};
    } else {
      U64<2> c[2 * Edges];
      detail::loadColumnPairs<4 * Edges, Rows>(p1, step, c);
      const auto second01 = Edges == 2 ? c[2 * Edges - 2] : zero<U64<2>>();
      const auto second23 = Edges == 2 ? c[2 * Edges - 1] : zero<U64<2>>();
      return {{detail::high<V>(c[0], second01), detail::low<V>(c[0], second01)},
              {detail::low<V>(c[1], second23), detail::high<V>(c[1], second23)}};
    }
  }
  template <int Edges, class Value>
  ZVP_INLINE static void store(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step, const Samples<T, 2>& s) {
    using namespace simd;
    using Columns = Vec<Unit, int(16 / sizeof(Unit))>;
    u8* const p1 = e[0].q0 - 2 * sizeof(Unit);
    if constexpr (Edges == 2) {
      detail::storeColumnPairs(p1, step, detail::low<U16<8>>(s.p[1], s.p[0]), detail::low<U16<8>>(s.q[0], s.q[1]),
                               detail::high<U16<8>>(s.p[1], s.p[0]), detail::high<U16<8>>(s.q[0], s.q[1]));
    } else {
      detail::storeColumns4<Rows>(p1, step, as<Columns>(s.p[1]), as<Columns>(s.p[0]), as<Columns>(s.q[0]),
                                  as<Columns>(s.q[1]));
    }
  }
};

// Thresholds of one edge, or of two that share a register of bytes.
template <class T, class Value>
ZVP_INLINE Thresholds<T> thresholds(const ChromaEdge<Value> (&e)[1]) {
  return thresholds<T>(e[0].alpha, e[0].beta);
}
template <class T>
ZVP_INLINE Thresholds<T> thresholds(const ChromaEdge<T> (&e)[2]) {
  using namespace simd;
  const auto both = [](T first, T second) {
    constexpr u64 ones = 0x0101010101010101;
    const u64 low = first * ones, high = second * ones;
    return as<Lines<T>>(interleaveLow(loadBytes<U64<2>, 8>(&low), loadBytes<U64<2>, 8>(&high)));
  };
  return {both(T(e[0].alpha - 1), T(e[1].alpha - 1)), both(T(e[0].beta - 1), T(e[1].beta - 1)), Lines<T>{}};
}

template <class T, class Layout, int Repeat, Mix M, int Edges, class Value>
ZVP_INLINE void filterChromaLines(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step, u64 bS, T maximum) {
  using namespace simd;
  auto tc0 = zero<Lines<T>>();
  if constexpr (M != Mix::Strong) {
    tc0 = loadBytes<Lines<T>, int(4 * sizeof(T))>(e[0].tc0);
    if constexpr (Edges == 2) {
      const auto second = loadBytes<U32<4>, 4>(e[1].tc0);
      tc0 = as<Lines<T>>(interleaveLow(as<U32<4>>(tc0), second));
    }
  }
  auto s = Layout::load(e, step);
  if (filterChroma<M>(s, thresholds<T>(e), strengths<T, Repeat, M>(bS, tc0), maximum)) Layout::store(e, step, s);
}

// One edge, or two that share a register. Repeat is how many lanes a group has.
template <class T, class Layout, int Repeat, int Edges, class Value>
ZVP_INLINE void filterChromaEdges(const ChromaEdge<Value> (&e)[Edges], std::ptrdiff_t step, T maximum) {
  u64 bS = e[0].bS, allStrong = 0x04040404;
  if constexpr (Edges == 2) {
    bS |= u64(e[1].bS) << 32;
    allStrong |= allStrong << 32;
  }
  switch (mixOf(bS, allStrong)) {
    case Mix::Normal:
      return filterChromaLines<T, Layout, Repeat, Mix::Normal>(e, step, bS, maximum);
    case Mix::Strong:
      return filterChromaLines<T, Layout, Repeat, Mix::Strong>(e, step, bS, maximum);
    case Mix::Both:
      return filterChromaLines<T, Layout, Repeat, Mix::Both>(e, step, bS, maximum);
  }
}

// Two edges, together where they can share a register.
template <class T, class Layout, int Repeat>
ZVP_INLINE void filterChromaPair(const ChromaEdge<T>& first, const ChromaEdge<T>& second, std::ptrdiff_t step,
                                 T maximum) {
  if constexpr (sizeof(T) == 1 && Repeat == 2) {
    if (first.bS != 0 && second.bS != 0)
      filterChromaEdges<T, Layout, Repeat>({first, second}, step, maximum);
    else if ((first.bS | second.bS) != 0)
      filterChromaEdges<T, Layout, Repeat>({first.bS != 0 ? first : second}, step, maximum);
  } else {
    if (first.bS != 0) filterChromaEdges<T, Layout, Repeat>({first}, step, maximum);
    if (second.bS != 0) filterChromaEdges<T, Layout, Repeat>({second}, step, maximum);
  }
}

// Which strengths make an edge's filter the strong one.
enum class StrongRule {
  PerGroup,      // each group's own, as the standard has it
  ByFirstGroup,  // required of horizontal edges: 4 in the first group makes the whole edge strong, whatever the others
  Never,         // required of the second horizontal edge of 4:2:0: 4 is a strength like 1 to 3
};

template <class T>
ZVP_INLINE ChromaEdge<T> chromaEdge(const EdgeArguments<T>& a, u8* q0, int thresholdIndex, int bSIndex, int tc0Index,
                                    StrongRule rule) {
  const T alpha = a.alpha(thresholdIndex), beta = a.beta(thresholdIndex);
  u32 bS = a.bSWord(bSIndex);
  if (rule == StrongRule::ByFirstGroup && (bS & 255) == 4)
    bS = 0x04040404;
  else if (rule != StrongRule::PerGroup)
    bS |= (bS & 0x04040404) >> 1;  // no byte is 4 any more, none has become 0
  if (alpha == 0 || beta == 0) bS = 0;
  return {q0, alpha, beta, bS, a.tc0(tc0Index)};
}

// The two edges of a 4:2:0 macroblock. Unit is a sample, or a pair of interleaved ones.
template <class T, class Unit, Edge E>
ZVP_INLINE void filterChromaEdges420(const EdgeArguments<T>& a) {
  constexpr int repeat = 2 * int(sizeof(Unit) / sizeof(T));
  if constexpr (E == Edge::Vertical) {
    filterChromaPair<T, ChromaColumns<T, Unit, 8>, repeat>(
        chromaEdge(a, a.srcDst, 0, 0, 0, StrongRule::PerGroup),
        chromaEdge(a, a.srcDst + 4 * sizeof(Unit), 1, 8, 4, StrongRule::PerGroup), a.step, a.maximum);
  } else {
    filterChromaPair<T, ChromaRows<T, int(8 * sizeof(Unit))>, repeat>(
        chromaEdge(a, a.srcDst, 0, 0, 0, StrongRule::ByFirstGroup),
        chromaEdge(a, a.at(E, 4), 1, 8, 4, StrongRule::Never), a.step, a.maximum);
  }
}

// The edges of a 4:2:2 macroblock: two of sixteen rows, in groups of four; or four of eight columns, in groups of two.
template <class T, Edge E>
ZVP_INLINE void filterChromaEdges422(const EdgeArguments<T>& a) {
  for (int half = 0; half < 2; ++half) {
    if constexpr (E == Edge::Vertical) {  // eight rows of both edges, where a group of four counts as two of two
      T tc0[2][4];
      const auto edge = [&](int e) {
        auto r = chromaEdge(a, a.at(E, 4 * e) + 8 * half * a.step, e, 8 * e, 4 * e, StrongRule::PerGroup);
        const u32 bS = r.bS >> (16 * half);
        r.bS = (bS & 255) * 0x0101 | ((bS >> 8) & 255) * 0x01010000;
        for (int i = 0; i < 4; ++i) tc0[e][i] = loadAs<T>(a.tc0(4 * e + 2 * half + i / 2));
        r.tc0 = reinterpret_cast<const u8*>(tc0[e]);
        return r;
      };
      filterChromaPair<T, ChromaColumns<T, T, 8>, 2>(edge(0), edge(1), a.step, a.maximum);
    } else {  // two edges, together
      const auto edge = [&](int e) {
        return chromaEdge(a, a.at(E, 4 * e), std::min(e, 1), 4 * e, 4 * e, StrongRule::ByFirstGroup);
      };
      filterChromaPair<T, ChromaRows<T, int(8 * sizeof(T))>, 2>(edge(2 * half), edge(2 * half + 1), a.step, a.maximum);
    }
  }
}

// One vertical edge of four rows, each a group.
template <class T>
ZVP_INLINE void filterChromaMbaffEdge(const EdgeArguments<T>& a, u32 alpha, u32 beta) {
  const u32 bS = a.bSWord(0);
  if (alpha == 0 || beta == 0 || bS == 0) return;
  const ChromaEdge<u32> edge[1] = {{a.srcDst, alpha, beta, bS, a.tc0(0)}};
  filterChromaEdges<T, ChromaColumns<T, T, 4>, 1>(edge, a.step, a.maximum);
}

}  // namespace zvp::h264
