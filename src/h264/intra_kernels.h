// Intra prediction in place (H.264 8.3): 4x4 and 8x8 luma blocks in nine modes, 16x16 luma, 8x8 chroma. The samples
// around the block are read through negative offsets. The directional modes are one template over the block's size;
// 8x8 differs from 4x4 in that its neighbours are filtered first (8.3.2.2.1).
//
// A kernel reads the neighbours that its mode needs and that the flags say are there, and nothing else. Where one is
// missing, 4x4 blocks are predicted from 128 in its place and the status warns; the others are refused.
#pragma once

#include <bit>
#include <utility>

#include "simd.h"

namespace zvp {

// Which neighbours may be used.
enum IntraNeighbour : u32 { intraTop = 1, intraLeft = 2, intraCorner = 32, intraTopRight = 64 };

enum IntraMode4x4 : u32 {
  intraVertical,
  intraHorizontal,
  intraDc,
  intraDiagonalDownLeft,
  intraDiagonalDownRight,
  intraVerticalRight,
  intraHorizontalDown,
  intraVerticalLeft,
  intraHorizontalUp,
  intraModes4x4
};

// What each mode of a 4x4 or 8x8 block cannot do without.
inline constexpr u32 intraNeeds4x4[intraModes4x4] = {intraTop,
                                                     intraLeft,
                                                     0,
                                                     intraTop,
                                                     intraTop | intraLeft | intraCorner,
                                                     intraTop | intraLeft | intraCorner,
                                                     intraTop | intraLeft | intraCorner,
                                                     intraTop,
                                                     intraLeft};

namespace intra {

using simd::U8;

// ---- small parts ------------------------------------------------------------------------------------------------

// Calls f(std::integral_constant<int, 0>()), ... N - 1: a loop whose index is a constant, without a jump. Whoever uses
// it is flattened, since a compiler would not inline so many calls on its own.
template <class F, int... I>
ZVP_INLINE void callEach(F f, std::integer_sequence<int, I...>) {
  (f(std::integral_constant<int, I>()), ...);
}
template <int N, class F>
ZVP_INLINE void forEach(F f) {
  callEach(f, std::make_integer_sequence<int, N>());
}

// Calls f(row, y) for N rows from p on, y being a constant. Four rows share a pointer, as addresses have it.
template <int N, class T, class F>
ZVP_INLINE void forEachRow(T* p, std::ptrdiff_t step, F f) {
  const std::ptrdiff_t step3 = 3 * step;
  forEach<N / 4>([&](auto group) {
    constexpr int y = 4 * group;
    f(p, std::integral_constant<int, y>());
    f(p + step, std::integral_constant<int, y + 1>());
    f(p + 2 * step, std::integral_constant<int, y + 2>());
    f(p + step3, std::integral_constant<int, y + 3>());
    p += 4 * step;
  });
}

// N bytes of the column left of the block, the topmost in the low byte.
template <int N>
ZVP_INLINE u64 loadLeft(const u8* p, std::ptrdiff_t step) {
  u64 left = 0;
  forEachRow<N>(p, step, [&](const u8* row, auto y) { left |= u64(row[-1]) << (8 * y); });
  return left;
}
// The same bytes, the bottommost in the low byte.
template <int N>
ZVP_INLINE u64 loadLeftUpward(const u8* p, std::ptrdiff_t step) {
  u64 left = 0;
  forEachRow<N>(p, step, [&](const u8* row, auto y) { left |= u64(row[-1]) << (8 * (N - 1 - y)); });
  return left;
}
ZVP_INLINE constexpr u64 repeated(u64 byte) { return byte * 0x0101010101010101u; }

ZVP_INLINE U8<16> vectorOf(u64 low) { return simd::fromLow64<U8<16>>(low); }
ZVP_INLINE U8<16> vectorOf(u64 low, u64 high) {
  using namespace simd;
  return as<U8<16>>(interleaveLow(fromLow64<U64<2>>(low), fromLow64<U64<2>>(high)));
}

// (a + 2 b + c + 2) >> 2. The mean of a and c is taken rounded down, so that the second rounding is the only one.
ZVP_INLINE U8<16> filtered(U8<16> a, U8<16> b, U8<16> c) {
  return average(b, average(a, c) - ((a ^ c) & simd::splat<U8<16>>(1)));
}

// Bytes From to From + N - 1 of the register as a row.
template <int N, int From>
ZVP_INLINE void storeRow(u8* p, U8<16> v) {
  if constexpr (N == 4 && From <= 4)
    storeAs(p, u32(low64(v) >> (8 * From)));
  else if constexpr (From == 0)
    simd::storeBytes<N>(p, v);
  else
    simd::storeBytes<N>(p, simd::shiftBytesDown<From>(v));
}
// A row of one byte, by a multiplication.
template <int N>
ZVP_INLINE void storeRepeated(u8* p, u32 byte) {
  if constexpr (N == 4)
    storeAs(p, byte * 0x01010101);
  else if constexpr (N == 8)
    storeAs(p, repeated(byte));
  else
    simd::store(p, simd::splat<simd::U32<4>>(byte * 0x01010101));
}

// The sum of the eight low bytes, and of N bytes to the left of the block.
ZVP_INLINE u32 sumOf(U8<16> bytes) { return low32(sumAbsDiff(bytes, simd::zero<U8<16>>())); }
template <int N>
ZVP_INLINE u32 sumLeft(const u8* p, std::ptrdiff_t step) {
  u32 sum = 0;
  forEachRow<N>(p, step, [&](const u8* row, auto) { sum += row[-1]; });
  return sum;
}

// ---- the modes that copy ----------------------------------------------------------------------------------------

template <int N>
ZVP_INLINE void storeAllRows(u8* p, std::ptrdiff_t step, U8<16> row) {
  forEachRow<N>(p, step, [&](u8* dst, auto) { simd::storeBytes<N>(dst, row); });
}
template <int N>
ZVP_INLINE void storeAllRows(u8* p, std::ptrdiff_t step, u32 byte) {
  if constexpr (N == 16)
    storeAllRows<N>(p, step, simd::as<U8<16>>(simd::splat<simd::U32<4>>(byte * 0x01010101)));
  else
    forEachRow<N>(p, step, [&](u8* dst, auto) { storeRepeated<N>(dst, byte); });
}

template <int N>
[[gnu::flatten]] zvpStatus vertical(u8* p, std::ptrdiff_t step, u32 available) {
  if ((available & intraTop) == 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  storeAllRows<N>(p, step, simd::loadBytes<U8<16>, N>(p - step));
  return zvpStatusOk;
}
template <int N>
[[gnu::flatten]] zvpStatus horizontal(u8* p, std::ptrdiff_t step, u32 available) {
  if ((available & intraLeft) == 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  forEachRow<N>(p, step, [&](u8* row, auto) { storeRepeated<N>(row, row[-1]); });
  return zvpStatusOk;
}

// The mean of the sides that are there, of N samples each, or 128. The sums are asked for once: where both sides are
// there, which is nearly always, nothing of the other cases stands in the way.
template <int N>
ZVP_INLINE u32 meanOf(u32 sumTop, u32 sumLeft, u32 available) {
  const u32 sides = available & (intraTop | intraLeft);
  if (sides == (intraTop | intraLeft)) [[likely]]
    return (sumTop + sumLeft + N) / (2 * N);
  return sides == 0 ? 128 : (sumTop + sumLeft + N / 2) / N;
}

// ---- the directional modes --------------------------------------------------------------------------------------
// Each forms the means of two and the filtered triples of neighbours all along the edge; the rows of the prediction are
// windows of those.

// The neighbours of an NxN block. What the mode does not need is left unset.
template <int N>
struct Edge {
  U8<16> top;      // 2 N bytes from above the block's left column on; zeros behind them
  u64 left;        // N bytes, the topmost in the low byte
  u64 leftUpward;  // N bytes, the bottommost in the low byte
  u64 corner;
};

// A run of neighbours, seen from its first, second and third.
struct Views {
  U8<16> first, second, third;
};

// From the bottom left over the corner to the right, 2 N + 1 bytes.
template <int N>
ZVP_INLINE Views around(const Edge<N>& edge) {
  if constexpr (N == 4) {
    const U8<16> all = vectorOf(edge.leftUpward | edge.corner << 32) | simd::shiftBytesUp<5>(edge.top);
    return {all, simd::shiftBytesDown<1>(all), simd::shiftBytesDown<2>(all)};
  } else {
    const u64 top = low64(edge.top);
    const U8<16> first = vectorOf(edge.leftUpward, edge.corner | top << 8);
    const U8<16> second = vectorOf(edge.leftUpward >> 8 | edge.corner << 56, top);
    return {first, second, simd::shiftBytesDown<1>(second)};
  }
}

// Above and to the right, 2 N bytes.
template <int N>
ZVP_INLINE Views above(const Edge<N>& edge) {
  return {edge.top, simd::shiftBytesDown<1>(edge.top), simd::shiftBytesDown<2>(edge.top)};
}

template <int N>
ZVP_INLINE void diagonalDownLeft(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  // The only mode that comes to the last sample: behind it that stands again.
  std::array<u8, 16> mask{};
  mask[2 * N - 1] = 255;
  const U8<16> second = simd::shiftBytesDown<1>(edge.top) | (edge.top & simd::lanes(mask));
  const U8<16> f = filtered(edge.top, second, simd::shiftBytesDown<1>(second));
  forEachRow<N>(p, step, [&](u8* row, auto y) { storeRow<N, y>(row, f); });
}

template <int N>
ZVP_INLINE void diagonalDownRight(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  const Views e = around(edge);
  const U8<16> f = filtered(e.first, e.second, e.third);
  forEachRow<N>(p, step, [&](u8* row, auto y) { storeRow<N, N - 1 - y>(row, f); });
}

template <int N>
ZVP_INLINE void verticalRight(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  using namespace simd;
  const Views e = around(edge);
  const U8<16> g = average(e.first, e.second), f = filtered(e.first, e.second, e.third);
  // Rows 0 and 1 begin at the corner. The rows below are pushed to the right by every second triple of the left side.
  constexpr int pushed = N / 2 - 1;
  U8<16> evenRows = shiftBytesDown<N>(g), oddRows = shiftBytesDown<N - 1>(f);
  if constexpr (N == 4) {
    evenRows = as<U8<16>>(shiftLeft<8>(as<U64<2>>(evenRows))) | vectorOf(u8(low64(f) >> 16));
    oddRows = as<U8<16>>(shiftLeft<8>(as<U64<2>>(oddRows))) | vectorOf(u8(low64(f) >> 8));
  } else {
    const auto triples = as<U16<8>>(f);
    const auto even = packSaturateU8(as<S16<8>>(triples & splat<U16<8>>(255)), zero<S16<8>>());
    const auto odd = packSaturateU8(as<S16<8>>(shiftRight<8>(triples)), zero<S16<8>>());
    evenRows = shiftBytesUp<pushed>(evenRows) | vectorOf(low64(even) >> 8 & 0xffffff);
    oddRows = shiftBytesUp<pushed>(oddRows) | vectorOf(low64(odd) & 0xffffff);
  }
  forEachRow<N>(p, step, [&](u8* row, auto y) { storeRow<N, pushed - y / 2>(row, y % 2 == 0 ? evenRows : oddRows); });
}

template <int N>
ZVP_INLINE void horizontalDown(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  using namespace simd;
  const Views e = around(edge);
  const U8<16> g = average(e.first, e.second), f = filtered(e.first, e.second, e.third);
  const U8<16> side = interleaveLow(g, f);  // means and triples of the left side in turn; behind them the triples above
  const U8<16> behind = shiftBytesDown<N>(f);
  forEachRow<N>(p, step, [&](u8* row, auto y) {
    constexpr int from = 2 * (N - 1 - y);
    if constexpr (N == 4 && from > 4)
      storeAs(row, u32(low64(side) >> 48 | low64(behind) << 16));
    else if constexpr (from > 8)
      storeBytes<N>(row, concatShift<from>(side, behind));
    else
      storeRow<N, from>(row, side);
  });
}

template <int N>
ZVP_INLINE void verticalLeft(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  const Views t = above(edge);
  const U8<16> g = average(t.first, t.second), f = filtered(t.first, t.second, t.third);
  forEachRow<N>(p, step, [&](u8* row, auto y) { storeRow<N, y / 2>(row, y % 2 == 0 ? g : f); });
}

template <int N>
ZVP_INLINE void horizontalUp(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  using namespace simd;
  const u64 last = repeated(edge.left >> (8 * N - 8));
  const U8<16> all = N == 4 ? vectorOf(edge.left | last << 32) : vectorOf(edge.left, last);
  const U8<16> second = shiftBytesDown<1>(all), third = shiftBytesDown<2>(all);
  const U8<16> side = interleaveLow(average(all, second), filtered(all, second, third));
  forEachRow<N>(p, step, [&](u8* row, auto y) {
    constexpr int from = 2 * y;
    if constexpr (N == 4 && from > 4)
      storeAs(row, u32(last));
    else if constexpr (from > 8)
      storeBytes<N>(row, concatShift<from>(side, vectorOf(last)));
    else
      storeRow<N, from>(row, side);
  });
}

template <u32 Mode, int N>
ZVP_INLINE void directional(u8* p, std::ptrdiff_t step, const Edge<N>& edge) {
  if constexpr (Mode == intraDiagonalDownLeft)
    diagonalDownLeft(p, step, edge);
  else if constexpr (Mode == intraDiagonalDownRight)
    diagonalDownRight(p, step, edge);
  else if constexpr (Mode == intraVerticalRight)
    verticalRight(p, step, edge);
  else if constexpr (Mode == intraHorizontalDown)
    horizontalDown(p, step, edge);
  else if constexpr (Mode == intraVerticalLeft)
    verticalLeft(p, step, edge);
  else
    horizontalUp(p, step, edge);
}

inline constexpr bool usesTopRight(u32 mode) { return mode == intraDiagonalDownLeft || mode == intraVerticalLeft; }

// ---- 4x4 --------------------------------------------------------------------------------------------------------

// The neighbours that the mode needs, with 128 for those that are not there. Above right the last one above repeats.
template <u32 Mode>
ZVP_INLINE Edge<4> edge4x4(const u8* p, std::ptrdiff_t step, u32 available) {
  constexpr u32 needs = intraNeeds4x4[Mode];
  const bool hasTop = (available & intraTop) != 0, hasLeft = (available & intraLeft) != 0;
  constexpr u32 missing = 0x80808080;
  Edge<4> edge;
  if constexpr ((needs & intraTop) != 0 && !usesTopRight(Mode)) {
    edge.top = hasTop ? simd::loadBytes<U8<16>, 4>(p - step) : vectorOf(missing);
  } else if constexpr ((needs & intraTop) != 0) {
    if (hasTop && (available & intraTopRight) != 0) [[likely]] {
      edge.top = simd::loadBytes<U8<16>, 8>(p - step);
    } else {
      const u32 top = hasTop ? loadAs<u32>(p - step) : missing;
      const u32 right = (available & intraTopRight) != 0 ? loadAs<u32>(p - step + 4) : (top >> 24) * 0x01010101;
      edge.top = vectorOf(top | u64(right) << 32);
    }
  }
  if constexpr (Mode == intraHorizontalUp) edge.left = hasLeft ? loadLeft<4>(p, step) : missing;
  if constexpr ((needs & intraCorner) != 0) {
    edge.leftUpward = hasLeft ? loadLeftUpward<4>(p, step) : missing;
    edge.corner = (available & intraCorner) != 0 ? p[-step - 1] : 128;
  }
  return edge;
}

// What stands in for missing neighbours.
template <u32 Mode>
[[gnu::noinline, gnu::cold]] zvpStatus predictWithout(u8* p, std::ptrdiff_t step, u32 available) {
  if constexpr (Mode == intraVertical || Mode == intraHorizontal)
    storeAllRows<4>(p, step, 128u);
  else
    directional<Mode>(p, step, edge4x4<Mode>(p, step, available));
  return zvpStatusWarnPredictionFallback;
}

// Predicts the block. A neighbour that the mode needs and that is not there counts as 128, and the status tells.
template <u32 Mode>
[[gnu::flatten]] zvpStatus predict4x4(u8* p, std::ptrdiff_t step, u32 available) {
  constexpr u32 needs = intraNeeds4x4[Mode];
  if constexpr (Mode == intraDc) {
    const u32 top = (available & intraTop) != 0 ? sumOf(simd::loadBytes<U8<16>, 4>(p - step)) : 0;
    const u32 left = (available & intraLeft) != 0 ? sumLeft<4>(p, step) : 0;
    storeAllRows<4>(p, step, meanOf<4>(top, left, available));
  } else {
    if ((needs & ~available) != 0) [[unlikely]]
      return predictWithout<Mode>(p, step, available);
    if constexpr (Mode == intraVertical)
      vertical<4>(p, step, available);
    else if constexpr (Mode == intraHorizontal)
      horizontal<4>(p, step, available);
    else
      directional<Mode>(p, step, edge4x4<Mode>(p, step, needs | (available & intraTopRight)));
  }
  return zvpStatusOk;
}

// ---- 8x8 --------------------------------------------------------------------------------------------------------

// The neighbours, each filtered with the two beside it. At an end of what is there the end repeats.
template <u32 Mode>
ZVP_INLINE Edge<8> filteredEdge(const u8* p, std::ptrdiff_t step, u32 available) {
  using namespace simd;
  constexpr u32 needs = intraNeeds4x4[Mode], reads = Mode == intraDc ? intraTop | intraLeft : needs;
  const bool hasCorner = (available & intraCorner) != 0;
  Edge<8> edge{};
  u64 corner = 0, top0 = 0, left0 = 0;
  if (hasCorner) corner = p[-step - 1];
  if ((reads & intraTop) != 0 && (available & intraTop) != 0) {
    constexpr std::array<u8, 16> lastMask = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255};
    const u64 first = loadAs<u64>(p - step);
    const U8<16> top =
        vectorOf(first, (available & intraTopRight) != 0 ? loadAs<u64>(p - step + 8) : repeated(first >> 56));
    top0 = u8(first);
    const U8<16> before = shiftBytesUp<1>(top) | vectorOf(hasCorner ? corner : top0);
    edge.top = filtered(before, top, shiftBytesDown<1>(top) | (top & lanes(lastMask)));
  }
  if ((reads & intraLeft) != 0 && (available & intraLeft) != 0) {
    const u64 left = loadLeft<8>(p, step);
    left0 = u8(left);
    const u64 before = left << 8 | (hasCorner ? corner : left0);
    edge.left = low64(filtered(vectorOf(before), vectorOf(left), vectorOf(left >> 8 | (left >> 56 << 56))));
    edge.leftUpward = __builtin_bswap64(edge.left);
  }
  if constexpr ((reads & intraCorner) != 0) edge.corner = (top0 + 2 * corner + left0 + 2) >> 2;
  return edge;
}

template <u32 Mode>
[[gnu::flatten]] zvpStatus predict8x8(u8* p, std::ptrdiff_t step, u32 available) {
  if ((intraNeeds4x4[Mode] & ~available) != 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  const Edge<8> edge = filteredEdge<Mode>(p, step, available);
  if constexpr (Mode == intraDc)
    storeAllRows<8>(p, step, meanOf<8>(sumOf(edge.top), sumOf(vectorOf(edge.left)), available));
  else if constexpr (Mode == intraVertical)
    storeAllRows<8>(p, step, edge.top);
  else if constexpr (Mode == intraHorizontal)
    forEachRow<8>(p, step, [&](u8* row, auto y) { storeRepeated<8>(row, u8(edge.left >> (8 * y))); });
  else
    directional<Mode>(p, step, edge);
  return zvpStatusOk;
}

// ---- 16x16 and chroma -------------------------------------------------------------------------------------------

[[gnu::flatten]] inline zvpStatus dc16x16(u8* p, std::ptrdiff_t step, u32 available) {
  using namespace simd;
  u32 top = 0, left = 0;
  if ((available & intraTop) != 0) top = u32(reduceAdd(sumAbsDiff(load<U8<16>>(p - step), zero<U8<16>>())));
  if ((available & intraLeft) != 0) left = sumLeft<16>(p, step);
  storeAllRows<16>(p, step, meanOf<16>(top, left, available));
  return zvpStatusOk;
}

// The two quadrants of one half of a chroma block. On the diagonal both sides count, off it the one that is touched.
template <int Half>
ZVP_INLINE void dcChromaHalf(u8* p, std::ptrdiff_t step, u32 available, const u32 (&top)[2]) {
  u8* const rows = p + 4 * Half * step;
  const bool hasTop = (available & intraTop) != 0, hasLeft = (available & intraLeft) != 0;
  const u32 left = hasLeft ? sumLeft<4>(rows, step) : 0;
  u32 mean[2] = {128, 128};
  if (hasTop && hasLeft) [[likely]] {
    mean[Half] = (top[Half] + left + 4) >> 3;
    mean[1 - Half] = ((Half == 0 ? top[1] : left) + 2) >> 2;
  } else if (hasTop) {
    for (int i = 0; i < 2; ++i) mean[i] = (top[i] + 2) >> 2;
  } else if (hasLeft) {
    mean[0] = mean[1] = (left + 2) >> 2;
  }
  const u64 row = (mean[0] | u64(mean[1]) << 32) * 0x01010101;
  forEachRow<4>(rows, step, [&](u8* dst, auto) { storeAs(dst, row); });
}
// The upper and the lower quadrants have neighbours of their own: those of the lower ones are told by availableBelow.
ZVP_INLINE void dcChroma(u8* p, std::ptrdiff_t step, u32 available, u32 availableBelow) {
  using namespace simd;
  u32 top[2] = {};
  if (((available | availableBelow) & intraTop) != 0) [[likely]] {
    const auto row = loadBytes<U32<4>, 8>(p - step);
    const auto sums = sumAbsDiff(as<U8<16>>(interleaveLow(row, zero<U32<4>>())), zero<U8<16>>());
    top[0] = low32(sums);
    top[1] = low32(shuffle32<0x4e>(sums));
  }
  dcChromaHalf<0>(p, step, available, top);
  dcChromaHalf<1>(p, step, availableBelow, top);
}
[[gnu::flatten]] inline zvpStatus dcChroma8x8(u8* p, std::ptrdiff_t step, u32 available) {
  dcChroma(p, step, available, available);
  return zvpStatusOk;
}

// A plane through the edges. Every sum fits 16 bits: at most 16 * 510 + 16 * 717 + 16.
template <int N>
[[gnu::flatten]] zvpStatus plane(u8* p, std::ptrdiff_t step, u32 available) {
  if ((~available & (intraTop | intraLeft | intraCorner)) != 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  using namespace simd;
  constexpr int half = N / 2;
  // The differences of samples at the same distance from the middle, weighted by it.
  const u8* const top = p - step;
  s32 across;
  if constexpr (N == 16) {
    constexpr std::array<s16, 8> before = {-8, -7, -6, -5, -4, -3, -2, -1}, behind = {1, 2, 3, 4, 5, 6, 7, 8};
    across = reduceAdd(mulAddPairs(loadWidened<8>(top - 1), lanes(before)) +
                       mulAddPairs(loadWidened<8>(top + 8), lanes(behind)));
  } else {
    constexpr std::array<s16, 8> weights = {-4, -3, -2, -1, 1, 2, 3, 4};
    const auto both = interleaveLow(loadBytes<U32<4>, 4>(top - 1), loadBytes<U32<4>, 4>(top + 4));
    across = reduceAdd(mulAddPairs(widenLow(as<U8<16>>(both)), lanes(weights)));
  }
  s32 down = 0, outer = 0;  // the sum of sums weighs the outermost difference most
  forEach<half>([&](auto i) {
    outer += p[(N - 1 - i) * step - 1] - p[(i - 1) * step - 1];
    down += outer;
  });
  const s32 b = N == 16 ? (5 * across + 32) >> 6 : (17 * across + 16) >> 5;
  const s32 c = N == 16 ? (5 * down + 32) >> 6 : (17 * down + 16) >> 5;
  const s32 a = 16 * (p[(N - 1) * step - 1] + top[N - 1]);

  constexpr std::array<s16, 8> columns = {0, 1, 2, 3, 4, 5, 6, 7};
  const auto slope = mulLow(splat<S16<8>>(s16(b)), lanes(columns)), down1 = splat<S16<8>>(s16(c));
  auto left = splat<S16<8>>(s16(a + 16 - (half - 1) * (b + c))) + slope;
  if constexpr (N == 16) {
    auto right = left + splat<S16<8>>(s16(8 * b));
    forEachRow<16>(p, step, [&](u8* row, auto) {
      store(row, packSaturateU8(shiftRight<5>(left), shiftRight<5>(right)));
      left = left + down1;
      right = right + down1;
    });
  } else {  // two rows in a register
    forEach<4>([&](auto y) {
      const auto below = left + down1;
      storeRows<8, 16>(p + 2 * y * step, step, packSaturateU8(shiftRight<5>(left), shiftRight<5>(below)));
      left = below + down1;
    });
  }
  return zvpStatusOk;
}

}  // namespace intra

using PredictIntraFn = zvpStatus (*)(u8*, std::ptrdiff_t, u32);

// By mode. The 4x4 and 8x8 tables as in IntraMode4x4.
inline constexpr PredictIntraFn predictIntra4x4[intraModes4x4] = {
    intra::predict4x4<0>, intra::predict4x4<1>, intra::predict4x4<2>, intra::predict4x4<3>, intra::predict4x4<4>,
    intra::predict4x4<5>, intra::predict4x4<6>, intra::predict4x4<7>, intra::predict4x4<8>};
inline constexpr PredictIntraFn predictIntra8x8[intraModes4x4] = {
    intra::predict8x8<0>, intra::predict8x8<1>, intra::predict8x8<2>, intra::predict8x8<3>, intra::predict8x8<4>,
    intra::predict8x8<5>, intra::predict8x8<6>, intra::predict8x8<7>, intra::predict8x8<8>};

inline constexpr u32 intraModes16x16 = 4, intraModesChroma = 4;
inline constexpr PredictIntraFn predictIntra16x16[intraModes16x16] = {intra::vertical<16>, intra::horizontal<16>,
                                                                      intra::dc16x16, intra::plane<16>};
// Chroma has an order of its own.
inline constexpr u32 intraChromaDc = 0, intraChromaVertical = 2;
inline constexpr PredictIntraFn predictIntraChroma8x8[intraModesChroma] = {intra::dcChroma8x8, intra::horizontal<8>,
                                                                           intra::vertical<8>, intra::plane<8>};

}  // namespace zvp
