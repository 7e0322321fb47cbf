// The in-loop deblocking filter of VC-1 (SMPTE 421M 8.6).
//
// A line is a row of samples across an edge, P1 P2 P3 P4 | P5 P6 P7 P8. A register holds the same sample of 8 or 16
// lines, two or four groups of four, in 16-bit lanes; what differs by the edge's direction and by the plane is how
// lines are read and written. The third line of a group decides for all four: its mask is spread over the group, so no
// line waits for another.
#pragma once

#include <array>

#include "simd.h"
#include "types.h"

namespace zvp::vc1 {

using namespace simd;

// P1 to P8 of N lines.
template <int N> struct Samples { S16<N> p[8]; };

// (2 (a - d) - 5 (b - c) + 4) >> 3, which is within -223..223.
template <int N> ZVP_INLINE S16<N> slope(S16<N> a, S16<N> b, S16<N> c, S16<N> d) {
  const auto inner = b - c, outer = a - d;
  const auto twice = outer - inner - inner;
  return shiftRight<3>((twice + twice) - inner + splat<S16<N>>(4));
}

// The value of the third line of each group in all four.
template <int N> ZVP_INLINE S16<N> ofDecidingLine(S16<N> lines) {
  return shuffleHigh16<0xaa>(shuffleLow16<0xaa>(lines));
}

// -d of each line: P4 and P5 become P4 + it and P5 - it. 0 where a line or its group fails a test.
//
// d is 5 (sign(a0) a3 - a0) / 8, which has the opposite sign of a0, if P4 - P5 has that sign too.
template <int N> ZVP_INLINE S16<N> movement(const Samples<N>& lines, S16<N> quant) {
  const auto& p = lines.p;
  const auto none = zero<S16<N>>();
  const auto a0 = slope(p[2], p[3], p[4], p[5]);
  const auto sign = shiftRight<15>(a0), size = (a0 ^ sign) - sign;
  const auto before = slope(p[0], p[1], p[2], p[3]), behind = slope(p[4], p[5], p[6], p[7]);
  const auto a3 = min(max(before, none - before), max(behind, none - behind));
  // |a0| - a3, 0 where the line fails by either.
  const auto excess = as<S16<N>>(subSaturate(as<U16<N>>(size), as<U16<N>>(a3))) & greater(quant, size);
  const auto excess4 = shiftLeft<2>(excess);
  // The step across the edge against the sign of a0, that is, counted positive where d goes the same way.
  const auto step = p[3] - p[4], rising = sign - (step ^ sign), falling = none - rising;
  const auto passes = greater(min(excess4, max(rising, falling)), splat<S16<N>>(1));
  const auto d = min(shiftRight<3>(excess4 + excess), shiftRight<1>(max(rising, none))) & ofDecidingLine(passes);
  return (d ^ sign) - sign;
}

// ---- how lines lie in memory --------------------------------------------------------------------------------------
// p is at P5 of the first line. Count lines are read and written, 4, 8 or 16; of 4, the lanes behind them are 0.

template <int Count> using LinesOf = S16<Count == 4 ? 8 : Count>;

// Lines along columns of a plane.
struct HorizontalEdge {
  static constexpr std::ptrdiff_t alongStep(std::ptrdiff_t) { return 1; }

  template <int Count> ZVP_INLINE static auto load(const u8* p, std::ptrdiff_t step) {
    Samples<Lanes<LinesOf<Count>>::count> s;
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) {
      const u8* row = (i < 4 ? p - 4 * step : p) + i % 4 * step;
      if constexpr (Count == 4)
        s.p[i] = widenLow(loadBytes<U8<16>, 4>(row));
      else
        s.p[i] = loadWidened<Count>(row);
    }
    return s;
  }
  template <int Count, int N> ZVP_INLINE static void store(u8* p, std::ptrdiff_t step, S16<N> p4, S16<N> p5) {
    const auto packed = packSaturateU8(p4, p5);
    if constexpr (Count == 4) {
      storeBytes<4>(p - step, packed);
      storeBytes<4>(p, shiftBytesDown<8>(packed));
    } else if constexpr (Count == 8) {
      storeRows<8>(p - step, step, packed);
    } else {  // each half of the register has 8 columns of both rows
      const auto low = as<U64<2>>(lowHalf(packed)), high = as<U64<2>>(highHalf(packed));
      simd::store(p - step, interleaveLow(low, high));
      simd::store(p, interleaveHigh(low, high));
    }
  }
};

// Lines along rows of a plane.
struct VerticalEdge {
  static constexpr std::ptrdiff_t alongStep(std::ptrdiff_t step) { return step; }

  template <int Count> ZVP_INLINE static auto load(const u8* p, std::ptrdiff_t step) {
    // In a 32-byte register the halves hold rows i and i + 8.
    constexpr int n = Lanes<LinesOf<Count>>::count;
    U8<2 * n> row[8];
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) {
      const u8* at = p - 4 + i * step;
      if constexpr (Count == 16)
        row[i] = join(loadBytes<U8<n>, 8>(at), loadBytes<U8<n>, 8>(at + 8 * step));
      else
        row[i] = i < Count ? loadBytes<U8<16>, 8>(at) : zero<U8<16>>();
    }
    // Columns of bytes: of rows in pairs, in fours, in eights.
    U16<n> pair[4];
    U32<n / 2> low[2], high[2];
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) pair[i] = as<U16<n>>(interleaveLow(row[2 * i], row[2 * i + 1]));
#pragma GCC unroll 2
    for (int i = 0; i < 2; ++i) {
      low[i] = as<U32<n / 2>>(interleaveLow(pair[2 * i], pair[2 * i + 1]));
      high[i] = as<U32<n / 2>>(interleaveHigh(pair[2 * i], pair[2 * i + 1]));
    }
    const U32<n / 2> columns[4] = {interleaveLow(low[0], low[1]), interleaveHigh(low[0], low[1]),
                                   interleaveLow(high[0], high[1]), interleaveHigh(high[0], high[1])};
    Samples<n> s;
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) {
      s.p[2 * i] = widenLow(as<U8<2 * n>>(columns[i]));
      s.p[2 * i + 1] = widenHigh(as<U8<2 * n>>(columns[i]));
    }
    return s;
  }
  template <int Count, int N> ZVP_INLINE static void store(u8* p, std::ptrdiff_t step, S16<N> p4, S16<N> p5) {
    if constexpr (Count == 16) {
      store<8>(p, step, lowHalf(p4), lowHalf(p5));
      store<8>(p + 8 * step, step, highHalf(p4), highHalf(p5));
    } else {
      const auto pairs = p4 | shiftLeft<8>(p5);
      const u64 bits[2] = {low64(pairs), low64(shiftBytesDown<8>(pairs))};
#pragma GCC unroll 8
      for (int i = 0; i < Count; ++i) storeAs(p - 1 + i * step, u16(bits[i / 4] >> (i % 4 * 16)));
    }
  }
};

template <class Edge, int Count, int N> ZVP_INLINE void filterLines(u8* p, std::ptrdiff_t step, S16<N> quant) {
  const auto lines = Edge::template load<Count>(p, step);
  const auto d = movement(lines, quant);
  if (!noneSet(d)) Edge::template store<Count>(p, step, lines.p[3] + d, lines.p[4] - d);
}

// pQuant in 16 bits: no |a0| is above 223.
template <int N> ZVP_INLINE S16<N> quantLanes(s32 quant) {
  const auto wide = splat<S32<N / 2>>(quant);
  return packSaturateS16(wide, wide);
}

// Whether a flag disables a group of an edge of Count lines: four bits serve four groups or two.
template <int Count> ZVP_INLINE bool isDisabled(u32 flag, int group) {
  constexpr int bits = 16 / Count;
  return (flag >> group * bits & ((1u << bits) - 1)) != 0;
}
ZVP_INLINE bool nothingDisabled(u32 flag) { return (flag & 15) == 0; }

// The groups that are not disabled, one by one.
template <class Edge, int Count>
[[gnu::noinline]] void filterGroups(u8* p, std::ptrdiff_t step, s32 quant, u32 disabledFlag) {
  const auto lanes = quantLanes<8>(quant);
  for (int group = 0; group < Count / 4; ++group)
    if (!isDisabled<Count>(disabledFlag, group))
      filterLines<Edge, 4>(p + 4 * group * Edge::alongStep(step), step, lanes);
}

// An edge of Count lines.
template <class Edge, int Count> ZVP_INLINE void filterEdge(u8* p, std::ptrdiff_t step, s32 quant, u32 disabledFlag) {
  constexpr int atOnce = Count < registerBytes / 2 ? Count : registerBytes / 2;
  if (!nothingDisabled(disabledFlag)) return filterGroups<Edge, Count>(p, step, quant, disabledFlag);
  const auto lanes = quantLanes<atOnce>(quant);
  for (int line = 0; line < Count; line += atOnce)
    filterLines<Edge, atOnce>(p + line * Edge::alongStep(step), step, lanes);
}

// ---- interleaved chroma -------------------------------------------------------------------------------------------
// A 16-bit lane of a row is a pair: U in its low byte, V in its high one.

struct HorizontalPairs {
  static constexpr std::ptrdiff_t acrossStep(std::ptrdiff_t step) { return step; }
  static constexpr std::ptrdiff_t alongStep(std::ptrdiff_t) { return 2; }

  template <int Count> ZVP_INLINE static void load(const u8* p, std::ptrdiff_t step, S16<8> (&pairs)[8]) {
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) pairs[i] = loadBytes<S16<8>, 2 * Count>((i < 4 ? p - 4 * step : p) + i % 4 * step);
  }
  template <int Count> ZVP_INLINE static void store(u8* p, std::ptrdiff_t step, S16<8> p4, S16<8> p5) {
    storeBytes<2 * Count>(p - step, p4);
    storeBytes<2 * Count>(p, p5);
  }
};

struct VerticalPairs {
  static constexpr std::ptrdiff_t acrossStep(std::ptrdiff_t) { return 2; }
  static constexpr std::ptrdiff_t alongStep(std::ptrdiff_t step) { return step; }

  template <int Count> ZVP_INLINE static void load(const u8* p, std::ptrdiff_t step, S16<8> (&pairs)[8]) {
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i) pairs[i] = i < Count ? simd::load<S16<8>>(p - 8 + i * step) : zero<S16<8>>();
    transpose(pairs);
  }
  template <int Count> ZVP_INLINE static void store(u8* p, std::ptrdiff_t step, S16<8> p4, S16<8> p5) {
    storeRows<4>(p - 2, step, as<U8<16>>(interleaveLow(p4, p5)));
    if constexpr (Count == 8) storeRows<4>(p - 2 + 4 * step, step, as<U8<16>>(interleaveHigh(p4, p5)));
  }
};

// Both components of Count lines.
template <class Pairs, int Count> ZVP_INLINE void filterPairs(u8* p, std::ptrdiff_t step, s32 quant) {
  S16<8> pairs[8];
  Pairs::template load<Count>(p, step, pairs);
  Samples<8> u, v;
#pragma GCC unroll 8
  for (int i = 0; i < 8; ++i) {
    u.p[i] = pairs[i] & splat<S16<8>>(255);
    v.p[i] = as<S16<8>>(shiftRight<8>(as<U16<8>>(pairs[i])));
  }
  const auto lanes = quantLanes<8>(quant);
  // A result stays between P4 and P5, so no byte borrows from the one above.
  const auto d = movement(u, lanes) + shiftLeft<8>(movement(v, lanes));
  if (!noneSet(d)) Pairs::template store<Count>(p, step, pairs[3] + d, pairs[4] - d);
}

// A group whose samples lie anywhere: across is the distance along a line, along that from line to line.
inline void filterSamples(u8* p, std::ptrdiff_t across, std::ptrdiff_t along, s32 quant) {
  Samples<8> lines;
  for (int i = 0; i < 8; ++i) {
    std::array<s16, 8> values{};
    for (int line = 0; line < 4; ++line) values[std::size_t(line)] = p[(i - 4) * across + line * along];
    lines.p[i] = lanes(values);
  }
  s16 d[8];
  store(d, movement(lines, quantLanes<8>(quant)));
  for (int line = 0; line < 4; ++line, p += along) {
    if (d[line] == 0) continue;
    p[-across] = u8(p[-across] + d[line]);
    p[0] = u8(p[0] - d[line]);
  }
}

// The groups that are not disabled. Of one without its twin its own samples alone are touched, not those in between.
template <class Pairs> [[gnu::noinline]] void filterGroupsOfPairs(u8* p, std::ptrdiff_t step, s32 quant,
                                                                  u32 uDisabledFlag, u32 vDisabledFlag) {
  const std::ptrdiff_t across = Pairs::acrossStep(step), along = Pairs::alongStep(step);
  for (int group = 0; group < 2; ++group, p += 4 * along) {
    const bool u = !isDisabled<8>(uDisabledFlag, group), v = !isDisabled<8>(vDisabledFlag, group);
    if (u && v)
      filterPairs<Pairs, 4>(p, step, quant);
    else if (u || v)
      filterSamples(u ? p : p + 1, across, along, quant);
  }
}

template <class Pairs>
ZVP_INLINE void filterPairsEdge(u8* p, std::ptrdiff_t step, s32 quant, u32 uDisabledFlag, u32 vDisabledFlag) {
  if (nothingDisabled(uDisabledFlag | vDisabledFlag)) return filterPairs<Pairs, 8>(p, step, quant);
  filterGroupsOfPairs<Pairs>(p, step, quant, uDisabledFlag, vDisabledFlag);
}

}  // namespace zvp::vc1
