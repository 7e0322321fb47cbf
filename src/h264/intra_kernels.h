// Intra prediction in place (H.264 8.3): 4x4 and 8x8 luma blocks in nine modes, 16x16 luma, 8x8 chroma. The samples
// around the block are read through negative offsets. The directional modes are one template over the block's size;
// 8x8 differs from 4x4 in that its neighbours are filtered first (8.3.2.2.1).
//
// A kernel reads the neighbours that its mode needs and that the flags say are there, and nothing else. Where one is
// missing, 4x4 blocks are predicted from 128 in its place and the status warns; the others are refused.
#pragma once

#include <bit>
#include <utility>

#include "opaque.h"
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

// The rows of an NxN block and the one above it, as few bases with one to four steps added, which addresses do but for
// three. The bases are strangers to each other, or the compiler would make an address of its own of each row.
template <int N>
class Rows {
 public:
  ZVP_INLINE Rows(u8* p, std::ptrdiff_t step) : step_(step), step3_(N == 4 ? 3 * step : opaque(3 * step)) {
    base_[0] = opaque(p - step);
#pragma GCC unroll 4
    for (int i = 1; i < N / 4; ++i) base_[i] = opaque(base_[i - 1] + 4 * step);
  }

  // Row y, from -1 on; y is a constant wherever this is used.
  ZVP_INLINE u8* operator[](int y) const {
    const int i = y + 1 < N ? (y + 1) / 4 : N / 4 - 1, steps = y + 1 - 4 * i;
    return base_[i] + (steps == 3 ? step3_ : steps * step_);
  }

  // The same rows for another walk, so that no address is kept from the one before. Costs nothing.
  ZVP_INLINE Rows again() const {
    Rows rows;
#pragma GCC unroll 4
    for (int i = 0; i < N / 4; ++i) rows.base_[i] = opaque(base_[i]);
    rows.step_ = opaque(step_);
    rows.step3_ = opaque(step3_);
    return rows;
  }

 private:
  Rows() = default;

  u8* base_[N / 4];
  std::ptrdiff_t step_, step3_ = 0;
};

// Calls f(row, y) for Count rows from First on, y being a constant.
template <int First, int Count, int N, class F>
ZVP_INLINE void forEachRow(const Rows<N>& rows, F f) {
  forEach<Count>([&](auto i) { f(rows[First + i], std::integral_constant<int, First + i>()); });
}
template <int N, class F>
ZVP_INLINE void forEachRow(const Rows<N>& rows, F f) {
  forEachRow<0, N>(rows, f);
}
// The column left of the block, the topmost byte in the low one. Who walks down it renews the rows.
template <int N>
ZVP_INLINE u64 loadLeft(Rows<N>& rows) {
  u64 left = 0;
  forEachRow(rows, [&](const u8* row, auto y) { left |= u64(row[-1]) << (8 * y); });
  rows = rows.again();
  return left;
}
// The same bytes, the bottommost in the low one.
template <int N>
ZVP_INLINE u64 loadLeftUpward(Rows<N>& rows) {
  u64 left = 0;
  forEachRow(rows, [&](const u8* row, auto y) { left |= u64(row[-1]) << (8 * (N - 1 - y)); });
  rows = rows.again();
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
  if constexpr (From == 0)
    simd::storeBytes<N>(p, v);
  else
    simd::storeBytes<N>(p, simd::shiftBytesDown<From>(v));
}
// A row of one byte, by a multiplication. Eight bytes at a time stay eight: to join them takes more than to store them.
template <int N>
ZVP_INLINE void storeRepeated(u8* p, u64 byte) {
  if constexpr (N == 4) {
    storeAs(p, u32(byte) * 0x01010101);
  } else {
    const u64 eight = repeated(byte);
    storeAs(p, eight);
    if constexpr (N == 16) storeAs(p + 8, opaque(eight));
  }
}
// Rows of four bytes, windows of the low eight: each begins By bytes behind the one before. What is behind the last one
// is returned.
template <int By = 1, class... Rows>
ZVP_INLINE simd::U64<2> storeWindows(U8<16> v, Rows... rows) {
  auto window = simd::as<simd::U64<2>>(v);
  ((simd::storeBytes<4>(rows, window), window = simd::shiftRight<8 * By>(window)), ...);
  return window;
}

// The sum of the eight low bytes, and of Count bytes to the left of the block.
ZVP_INLINE u32 sumOf(U8<16> bytes) { return low32(sumAbsDiff(bytes, simd::zero<U8<16>>())); }
template <int First, int Count, int N>
ZVP_INLINE u32 sumLeft(Rows<N>& rows) {
  u32 sum = 0;
  forEach<Count / 4>([&](auto i) {
    forEachRow<First + 4 * i, 4>(rows, [&](const u8* row, auto) { sum = opaque(sum + row[-1]); });
    rows = rows.again();
  });
  return sum;
}

// ---- the modes that copy ----------------------------------------------------------------------------------------

template <int N>
ZVP_INLINE void storeAllRows(const Rows<N>& rows, U8<16> row) {
  forEachRow(rows, [&](u8* dst, auto) { simd::storeBytes<N>(dst, row); });
}
template <int N>
ZVP_INLINE void storeAllRows(const Rows<N>& rows, u32 byte) {
  if constexpr (N == 16)
    storeAllRows(rows, simd::as<U8<16>>(simd::splat<simd::U32<4>>(byte * 0x01010101)));
  else
    forEachRow(rows, [&](u8* dst, auto) { storeRepeated<N>(dst, byte); });
}

template <int N>
[[gnu::flatten]] zvpStatus vertical(u8* p, std::ptrdiff_t step, u32, u32 available) {
  if ((available & intraTop) == 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  const Rows<N> rows(p, step);
  storeAllRows(rows, simd::loadBytes<U8<16>, N>(rows[-1]));
  return zvpStatusOk;
}
template <int N>
[[gnu::flatten]] zvpStatus horizontal(u8* p, std::ptrdiff_t step, u32, u32 available) {
  if ((available & intraLeft) == 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  Rows<N> rows(p, step);
  // Four loads and four stores in turn: no row's address is worth a register. The last rows first: where a step is no
  // more than a row, the sample left of a row is the last one of the row above it, and is still what it was.
  forEach<N / 4>([&](auto i) {
    constexpr int first = N - 4 - 4 * i;
    std::conditional_t<N == 4, u32, u64> left[4];
    forEachRow<first, 4>(rows, [&](const u8* row, auto y) { left[y % 4] = row[-1]; });
    rows = rows.again();
    if constexpr (N == 16) {
      // Two rows by one multiplication and two by one each: the former take shuffles, the latter more stores.
      const u64 two = (left[0] | u64(left[1]) << 32) * 0x01010101;
      const auto both = simd::as<simd::U32<4>>(vectorOf(two));
      simd::store(rows[first], simd::shuffle32<0>(both));
      simd::store(rows[first + 1], simd::shuffle32<0x55>(both));
      storeRepeated<N>(rows[first + 2], left[2]);
      storeRepeated<N>(rows[first + 3], left[3]);
    } else {
      forEachRow<first, 4>(rows, [&](u8* row, auto y) { storeRepeated<N>(row, left[y % 4]); });
    }
    rows = rows.again();
  });
  return zvpStatusOk;
}

// The mean of the sides that are there, of N samples each, or 128.
template <int N>
ZVP_INLINE u32 meanOf(u32 sumTop, u32 sumLeft, u32 available) {
  const u32 sides = available & (intraTop | intraLeft);
  if (sides == (intraTop | intraLeft)) return (sumTop + sumLeft + N) / (2 * N);
  return sides == 0 ? 128 : (sumTop + sumLeft + N / 2) / N;
}

// A DC kernel made twice: for both sides there, which is nearly always, and out of its way for anything else.
using DcKernel = zvpStatus (*)(u8*, std::ptrdiff_t, u32);
template <DcKernel Dc>
[[gnu::flatten, gnu::noinline]] zvpStatus withSomeSides(u8* p, std::ptrdiff_t step, u32 available) {
  return Dc(p, step, available);
}
template <DcKernel Dc>
[[gnu::flatten]] zvpStatus withSides(u8* p, std::ptrdiff_t step, u32, u32 available) {
  constexpr u32 both = intraTop | intraLeft;
  if ((available & both) != both) [[unlikely]]
    return withSomeSides<Dc>(p, step, available);
  return Dc(p, step, both);
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

// A run of 2 N bytes from the third on; what is behind its last is anything.
template <int N>
ZVP_INLINE U8<16> fromThird(U8<16> run) {
  if constexpr (N == 4)
    return simd::shuffleLow16<0xf9>(run);
  else
    return simd::shiftBytesDown<2>(run);
}

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
  return {edge.top, simd::shiftBytesDown<1>(edge.top), fromThird<N>(edge.top)};
}

template <int N>
ZVP_INLINE void diagonalDownLeft(const Rows<N>& rows, const Edge<N>& edge) {
  // The only mode that comes to the last sample: behind it that stands again.
  constexpr auto mask = [] {
    std::array<u8, 16> last{};
    last[2 * N - 1] = 255;
    return last;
  }();
  const U8<16> second = simd::shiftBytesDown<1>(edge.top) | (edge.top & simd::lanes(mask));
  const U8<16> f = filtered(edge.top, second, simd::shiftBytesDown<1>(second));
  if constexpr (N == 4)
    storeWindows(f, rows[0], rows[1], rows[2], rows[3]);
  else
    forEachRow(rows, [&](u8* row, auto y) { storeRow<N, y>(row, f); });
}

template <int N>
ZVP_INLINE void diagonalDownRight(const Rows<N>& rows, const Edge<N>& edge) {
  const Views e = around(edge);
  const U8<16> f = filtered(e.first, e.second, e.third);
  if constexpr (N == 4)
    storeWindows(f, rows[3], rows[2], rows[1], rows[0]);
  else
    forEachRow(rows, [&](u8* row, auto y) { storeRow<N, N - 1 - y>(row, f); });
}

template <int N>
ZVP_INLINE void verticalRight(const Rows<N>& rows, const Edge<N>& edge) {
  using namespace simd;
  const Views e = around(edge);
  const U8<16> g = average(e.first, e.second), f = filtered(e.first, e.second, e.third);
  // Rows 0 and 1 begin at the corner. The rows below are pushed to the right by every second triple of the left side.
  if constexpr (N == 4) {
    const u64 means = low64(g), triples = low64(f);
    const auto pushed = [](u64 row, u64 by) { return (u32(row) & ~0xffu) | u8(by); };
    storeAs(rows[0], u32(means >> 32));
    storeAs(rows[1], u32(triples >> 24));
    storeAs(rows[2], pushed(means >> 24, triples >> 16));
    storeAs(rows[3], pushed(triples >> 16, triples >> 8));
  } else {
    const auto triples = as<U16<8>>(f);
    const auto even = packSaturateU8(as<S16<8>>(triples & splat<U16<8>>(255)), zero<S16<8>>());
    const auto odd = packSaturateU8(as<S16<8>>(shiftRight<8>(triples)), zero<S16<8>>());
    const U8<16> evenRows = shiftBytesUp<3>(shiftBytesDown<8>(g)) | vectorOf(low64(even) >> 8 & 0xffffff);
    const U8<16> oddRows = shiftBytesUp<3>(shiftBytesDown<7>(f)) | vectorOf(low64(odd) & 0xffffff);
    forEachRow(rows, [&](u8* row, auto y) { storeRow<N, 3 - y / 2>(row, y % 2 == 0 ? evenRows : oddRows); });
  }
}

template <int N>
ZVP_INLINE void horizontalDown(const Rows<N>& rows, const Edge<N>& edge) {
  using namespace simd;
  const Views e = around(edge);
  const U8<16> g = average(e.first, e.second), f = filtered(e.first, e.second, e.third);
  const U8<16> side = interleaveLow(g, f);  // means and triples of the left side in turn; behind them the triples above
  if constexpr (N == 4) {
    const auto last = storeWindows<2>(side, rows[3], rows[2], rows[1]);
    storeBytes<4>(rows[0], last | shiftLeft<16>(shiftRight<32>(as<U64<2>>(f))));
  } else {
    const U8<16> behind = shiftBytesDown<N>(f);
    forEachRow(rows, [&](u8* row, auto y) {
      constexpr int from = 2 * (N - 1 - y);
      if constexpr (from > 8)
        storeBytes<N>(row, concatShift<from>(side, behind));
      else
        storeRow<N, from>(row, side);
    });
  }
}

template <int N>
ZVP_INLINE void verticalLeft(const Rows<N>& rows, const Edge<N>& edge) {
  const Views t = above(edge);
  const U8<16> g = average(t.first, t.second), f = filtered(t.first, t.second, t.third);
  if constexpr (N == 4) {
    storeWindows(g, rows[0], rows[2]);
    storeWindows(f, rows[1], rows[3]);
  } else {
    forEachRow(rows, [&](u8* row, auto y) { storeRow<N, y / 2>(row, y % 2 == 0 ? g : f); });
  }
}

template <int N>
ZVP_INLINE void horizontalUp(const Rows<N>& rows, const Edge<N>& edge) {
  using namespace simd;
  const u64 last = N == 4 ? u32(edge.left >> 24) * 0x01010101 : repeated(edge.left >> (8 * N - 8));
  const U8<16> all = N == 4 ? vectorOf(edge.left | last << 32) : vectorOf(edge.left, last);
  const U8<16> second = shiftBytesDown<1>(all), third = fromThird<N>(all);
  const U8<16> side = interleaveLow(average(all, second), filtered(all, second, third));
  if constexpr (N == 4) {
    storeWindows<2>(side, rows[0], rows[1], rows[2]);
    storeAs(rows[3], u32(last));
  } else {
    forEachRow(rows, [&](u8* row, auto y) {
      constexpr int from = 2 * y;
      if constexpr (from > 8)
        storeBytes<N>(row, concatShift<from>(side, vectorOf(last)));
      else
        storeRow<N, from>(row, side);
    });
  }
}

template <u32 Mode, int N>
ZVP_INLINE void directional(const Rows<N>& rows, const Edge<N>& edge) {
  if constexpr (Mode == intraDiagonalDownLeft)
    diagonalDownLeft(rows, edge);
  else if constexpr (Mode == intraDiagonalDownRight)
    diagonalDownRight(rows, edge);
  else if constexpr (Mode == intraVerticalRight)
    verticalRight(rows, edge);
  else if constexpr (Mode == intraHorizontalDown)
    horizontalDown(rows, edge);
  else if constexpr (Mode == intraVerticalLeft)
    verticalLeft(rows, edge);
  else
    horizontalUp(rows, edge);
}

inline constexpr bool usesTopRight(u32 mode) { return mode == intraDiagonalDownLeft || mode == intraVerticalLeft; }

// ---- 4x4 --------------------------------------------------------------------------------------------------------

// The neighbours that the mode needs, with 128 for those that are not there. Above right the last one above repeats.
template <u32 Mode>
ZVP_INLINE Edge<4> edge4x4(Rows<4>& rows, u32 available) {
  constexpr u32 needs = intraNeeds4x4[Mode];
  const bool hasTop = (available & intraTop) != 0, hasLeft = (available & intraLeft) != 0;
  constexpr u32 missing = 0x80808080;
  Edge<4> edge;
  if constexpr ((needs & intraTop) != 0 && !usesTopRight(Mode)) {
    edge.top = hasTop ? simd::loadBytes<U8<16>, 4>(rows[-1]) : vectorOf(missing);
  } else if constexpr ((needs & intraTop) != 0) {
    if (hasTop && (available & intraTopRight) != 0) [[likely]] {
      edge.top = simd::loadBytes<U8<16>, 8>(rows[-1]);
    } else {
      const u32 top = hasTop ? loadAs<u32>(rows[-1]) : missing;
      const u32 right = (available & intraTopRight) != 0 ? loadAs<u32>(rows[-1] + 4) : (top >> 24) * 0x01010101;
      edge.top = vectorOf(top | u64(right) << 32);
    }
  }
  if constexpr (Mode == intraHorizontalUp) edge.left = hasLeft ? loadLeft(rows) : missing;
  if constexpr ((needs & intraCorner) != 0) {
    edge.corner = (available & intraCorner) != 0 ? rows[-1][-1] : 128;
    edge.leftUpward = hasLeft ? loadLeftUpward(rows) : missing;
  }
  return edge;
}

// What stands in for missing neighbours.
template <u32 Mode>
[[gnu::noinline, gnu::cold]] zvpStatus predictWithout(u8* p, std::ptrdiff_t step, u32 available) {
  Rows<4> rows(p, step);
  if constexpr (Mode == intraVertical || Mode == intraHorizontal)
    storeAllRows(rows, 128u);
  else
    directional<Mode>(rows, edge4x4<Mode>(rows, available));
  return zvpStatusWarnPredictionFallback;
}

ZVP_INLINE zvpStatus dc4x4(u8* p, std::ptrdiff_t step, u32 available) {
  Rows<4> rows(p, step);
  const u32 top = (available & intraTop) != 0 ? sumOf(simd::loadBytes<U8<16>, 4>(rows[-1])) : 0;
  const u32 left = (available & intraLeft) != 0 ? sumLeft<0, 4>(rows) : 0;
  storeAllRows(rows, meanOf<4>(top, left, available));
  return zvpStatusOk;
}

// Predicts the block. A neighbour that the mode needs and that is not there counts as 128, and the status tells.
template <u32 Mode>
[[gnu::flatten]] zvpStatus predict4x4(u8* p, std::ptrdiff_t step, u32, u32 available) {
  constexpr u32 needs = intraNeeds4x4[Mode];
  if constexpr (Mode == intraDc) {
    return withSides<dc4x4>(p, step, Mode, available);
  } else {
    if ((needs & ~available) != 0) [[unlikely]]
      return predictWithout<Mode>(p, step, available);
    Rows<4> rows(p, step);
    if constexpr (Mode == intraVertical)
      vertical<4>(p, step, Mode, available);
    else if constexpr (Mode == intraHorizontal)
      horizontal<4>(p, step, Mode, available);
    else
      directional<Mode>(rows, edge4x4<Mode>(rows, needs | (available & intraTopRight)));
  }
  return zvpStatusOk;
}

// ---- 8x8 --------------------------------------------------------------------------------------------------------

// The neighbours, each filtered with the two beside it. At an end of what is there the end repeats.
template <u32 Mode>
ZVP_INLINE Edge<8> filteredEdge(Rows<8>& rows, u32 available) {
  using namespace simd;
  constexpr u32 needs = intraNeeds4x4[Mode], reads = Mode == intraDc ? intraTop | intraLeft : needs;
  const bool hasCorner = (available & intraCorner) != 0;
  Edge<8> edge{};
  u64 corner = 0, top0 = 0, left0 = 0;
  if (hasCorner) corner = rows[-1][-1];
  if ((reads & intraTop) != 0 && (available & intraTop) != 0) {
    constexpr std::array<u8, 16> lastMask = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255};
    const u64 first = loadAs<u64>(rows[-1]);
    const U8<16> top =
        vectorOf(first, (available & intraTopRight) != 0 ? loadAs<u64>(rows[-1] + 8) : repeated(first >> 56));
    top0 = u8(first);
    const U8<16> before = shiftBytesUp<1>(top) | vectorOf(hasCorner ? corner : top0);
    edge.top = filtered(before, top, shiftBytesDown<1>(top) | (top & lanes(lastMask)));
  }
  if ((reads & intraLeft) != 0 && (available & intraLeft) != 0) {
    const u64 left = loadLeft(rows);
    left0 = u8(left);
    const u64 before = left << 8 | (hasCorner ? corner : left0);
    edge.left = low64(filtered(vectorOf(before), vectorOf(left), vectorOf(left >> 8 | (left >> 56 << 56))));
    edge.leftUpward = __builtin_bswap64(edge.left);
  }
  if constexpr ((reads & intraCorner) != 0) edge.corner = (top0 + 2 * corner + left0 + 2) >> 2;
  return edge;
}

template <u32 Mode>
[[gnu::flatten]] zvpStatus predict8x8(u8* p, std::ptrdiff_t step, u32, u32 available) {
  if ((intraNeeds4x4[Mode] & ~available) != 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  Rows<8> rows(p, step);
  const Edge<8> edge = filteredEdge<Mode>(rows, available);
  if constexpr (Mode == intraDc)
    storeAllRows(rows, meanOf<8>(sumOf(edge.top), sumOf(vectorOf(edge.left)), available));
  else if constexpr (Mode == intraVertical)
    storeAllRows(rows, edge.top);
  else if constexpr (Mode == intraHorizontal)
    forEachRow(rows, [&](u8* row, auto y) { storeRepeated<8>(row, u8(edge.left >> (8 * y))); });
  else
    directional<Mode>(rows, edge);
  return zvpStatusOk;
}

// ---- 16x16 and chroma -------------------------------------------------------------------------------------------

ZVP_INLINE zvpStatus dc16x16(u8* p, std::ptrdiff_t step, u32 available) {
  using namespace simd;
  Rows<16> rows(p, step);
  u32 top = 0, left = 0;
  if ((available & intraTop) != 0) top = u32(reduceAdd(sumAbsDiff(load<U8<16>>(rows[-1]), zero<U8<16>>())));
  if ((available & intraLeft) != 0) left = sumLeft<0, 16>(rows);
  storeAllRows(rows, meanOf<16>(top, left, available));
  return zvpStatusOk;
}

// The two quadrants of one half of a chroma block. On the diagonal both sides count, off it the one that is touched.
template <int Half>
ZVP_INLINE void dcChromaHalf(Rows<8>& rows, u32 available, const u32 (&top)[2]) {
  const bool hasTop = (available & intraTop) != 0, hasLeft = (available & intraLeft) != 0;
  const u32 left = hasLeft ? sumLeft<4 * Half, 4>(rows) : 0;
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
  forEachRow<4 * Half, 4>(rows, [&](u8* dst, auto) { storeAs(dst, row); });
  rows = rows.again();
}
// The upper and the lower quadrants have neighbours of their own: those of the lower ones are told by availableBelow.
ZVP_INLINE void dcChroma(Rows<8> rows, u32 available, u32 availableBelow) {
  using namespace simd;
  u32 top[2] = {};
  if (((available | availableBelow) & intraTop) != 0) [[likely]] {
    const auto row = loadBytes<U32<4>, 8>(rows[-1]);
    const auto sums = sumAbsDiff(as<U8<16>>(interleaveLow(row, zero<U32<4>>())), zero<U8<16>>());
    top[0] = low32(sums);
    top[1] = low32(shuffle32<0x4e>(sums));
  }
  dcChromaHalf<1>(rows, availableBelow, top);  // first, as the last rows in horizontal()
  dcChromaHalf<0>(rows, available, top);
}
ZVP_INLINE zvpStatus dcChroma8x8(u8* p, std::ptrdiff_t step, u32 available) {
  dcChroma(Rows<8>(p, step), available, available);
  return zvpStatusOk;
}

// A plane through the edges. Every sum fits 16 bits: at most 16 * 510 + 16 * 717 + 16.
template <int N>
[[gnu::flatten]] zvpStatus plane(u8* p, std::ptrdiff_t step, u32, u32 available) {
  if ((~available & (intraTop | intraLeft | intraCorner)) != 0) [[unlikely]]
    return zvpStatusPredictionUnavailable;
  using namespace simd;
  constexpr int half = N / 2;
  // b and c are the sums of the differences of samples at the same distance from the middle, weighted by it, times
  // scale / 2^shift. Across:
  constexpr s16 scale = N == 16 ? 5 : 17;
  constexpr int shift = N == 16 ? 6 : 5;
  const u8* const top = p - step;
  S32<4> sums;
  if constexpr (N == 16) {
    constexpr std::array<s16, 8> before = {-8 * scale, -7 * scale, -6 * scale, -5 * scale,
                                           -4 * scale, -3 * scale, -2 * scale, -1 * scale};
    constexpr std::array<s16, 8> behind = {1 * scale, 2 * scale, 3 * scale, 4 * scale,
                                           5 * scale, 6 * scale, 7 * scale, 8 * scale};
    sums = mulAddPairs(loadWidened<8>(top - 1), lanes(before)) + mulAddPairs(loadWidened<8>(top + 8), lanes(behind));
  } else {
    constexpr std::array<s16, 8> weights = {-4 * scale, -3 * scale, -2 * scale, -1 * scale,
                                            1 * scale,  2 * scale,  3 * scale,  4 * scale};
    const auto both = interleaveLow(loadBytes<U32<4>, 4>(top - 1), loadBytes<U32<4>, 4>(top + 4));
    sums = mulAddPairs(widenLow(as<U8<16>>(both)), lanes(weights));
  }
  sums = sums + shuffle32<0x4e>(sums);
  sums = shiftRight<shift>(sums + shuffle32<0xb1>(sums) + splat<S32<4>>(1 << (shift - 1)));
  const auto slope = packSaturateS16(sums, sums);
  // Down, from both ends of the column toward the middle: the sum of sums weighs the outermost difference most.
  const std::ptrdiff_t step2 = opaque(2 * step), step3 = opaque(3 * step);
  const u8 *above = top - 1, *below = opaque(p + (N - 4) * step - 1);
  const s32 corners = below[step3] + top[N - 1];
  s32 down = 0, outer = 0;
  const auto add = [&](s32 difference) __attribute__((always_inline)) {
    outer += difference;
    down = opaque(down + outer);
  };
  forEach<half / 4>([&](auto) {
    add(below[step3] - above[0]);
    add(below[step2] - above[step]);
    add(below[step] - above[step2]);
    add(below[0] - above[step3]);
    above = opaque(above + 4 * step);
    below = opaque(below - 4 * step);
  });
  const s32 c = (scale * down + (1 << (shift - 1))) >> shift;

  constexpr std::array<s16, 8> columns = {1 - half, 2 - half, 3 - half, 4 - half,
                                          5 - half, 6 - half, 7 - half, 8 - half};
  const auto down1 = splat<S16<8>>(s16(c));
  auto left = splat<S16<8>>(s16(16 * (corners + 1) - (half - 1) * c)) + mulLow(slope, lanes(columns));
  const Rows<N> rows(p + step, step);  // of which the block's first row is number -1, at an address that is there
  if constexpr (N == 16) {
    auto right = left + shiftLeft<3>(slope);
    forEachRow<-1, N>(rows, [&](u8* row, auto) {
      store(row, packSaturateU8(shiftRight<5>(left), shiftRight<5>(right)));
      left = left + down1;
      right = right + down1;
    });
  } else {  // two rows in a register
    auto under = left + down1;
    const auto down2 = down1 + down1;
    forEach<N / 2>([&](auto i) {
      const auto two = packSaturateU8(shiftRight<5>(left), shiftRight<5>(under));
      storeBytes<8>(rows[2 * i - 1], two);
      storeHigh8(rows[2 * i], two);
      left = left + down2;
      under = under + down2;
    });
  }
  return zvpStatusOk;
}

}  // namespace intra

// The mode that a kernel is made for comes along, so that an entry hands its arguments on where they are.
using PredictIntraFn = zvpStatus (*)(u8* p, std::ptrdiff_t step, u32 mode, u32 available);

// By mode. The 4x4 and 8x8 tables as in IntraMode4x4.
inline constexpr PredictIntraFn predictIntra4x4[intraModes4x4] = {
    intra::predict4x4<0>, intra::predict4x4<1>, intra::predict4x4<2>, intra::predict4x4<3>, intra::predict4x4<4>,
    intra::predict4x4<5>, intra::predict4x4<6>, intra::predict4x4<7>, intra::predict4x4<8>};
inline constexpr PredictIntraFn predictIntra8x8[intraModes4x4] = {
    intra::predict8x8<0>, intra::predict8x8<1>, intra::predict8x8<2>, intra::predict8x8<3>, intra::predict8x8<4>,
    intra::predict8x8<5>, intra::predict8x8<6>, intra::predict8x8<7>, intra::predict8x8<8>};

inline constexpr u32 intraModes16x16 = 4, intraModesChroma = 4;
inline constexpr PredictIntraFn predictIntra16x16[intraModes16x16] = {
    intra::vertical<16>, intra::horizontal<16>, intra::withSides<intra::dc16x16>, intra::plane<16>};
// Chroma has an order of its own.
inline constexpr u32 intraChromaDc = 0, intraChromaVertical = 2;
inline constexpr u32 intraNeedsChroma[intraModesChroma] = {0, intraLeft, intraTop, intraTop | intraLeft | intraCorner};
inline constexpr PredictIntraFn predictIntraChroma8x8[intraModesChroma] = {
    intra::withSides<intra::dcChroma8x8>, intra::horizontal<8>, intra::vertical<8>, intra::plane<8>};

}  // namespace zvp
