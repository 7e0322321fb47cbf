// The content-adaptive spatio-temporal denoiser. A frame is cut into groups of blocks: one block a group in a single
// plane; in packed 4:2:2 the four of the left and the right luma, Cb and Cr that lie in the same bytes. A group's
// blocks are judged first, then its rows are filtered 16 bytes at a time, each lane with the verdict of its block.
//
// For blocks of 4x4 a register holds whole groups (four of a plane, one of packed 4:2:2), and the moved pixels are
// counted by columns; other sizes and what is left at the frame's right and bottom are counted pixel by pixel.
#pragma once

#include <algorithm>
#include <array>

#include "simd.h"
#include "types.h"

namespace zvp {

enum class CastLayout { Plane, Packed422 };

struct CastFrame {
  const u8 *current, *previous, *edges;
  std::ptrdiff_t srcStep, edgeStep, dstStep;
  u8* dst;
  s32 rowBytes, height;
};

// What is done to a block's pixels. Skipped ones keep what the destination held.
enum class CastPath : u8 { Skip, Temporal, Spatial };
struct CastVerdict {
  CastPath path;
  u8 weight;  // of the previous frame, in 1/256, for Temporal
};

// The history byte is the weight of the previous frame: 128 and more while a block stands still, up to 200. Motion
// halves it once and then alternates between 128 and 64: required as it stands.
inline CastVerdict judge(bool moved, u8* history, u8 initial) {
  if (history == nullptr) {
    if (moved) return {CastPath::Spatial, 0};
    return {initial == 0 ? CastPath::Skip : CastPath::Temporal, initial};
  }
  const u8 h = *history;
  if (moved) {
    *history = h < 128 ? u8(128) : u8(h >> 1);
    return {CastPath::Spatial, 0};
  }
  *history = h < 128 ? u8(128) : u8(std::min(h + 4, 200));
  return {CastPath::Temporal, *history};
}

// The bytes of one block inside its group: every spacing-th from first on.
struct CastBlock {
  s32 first, spacing, samples;
};
template <CastLayout L>
inline constexpr int castBlocks = L == CastLayout::Plane ? 1 : 4;

// Block b of a group that has groupBytes bytes left of 4 * blockWidth (or blockWidth). In the order in which they are
// handled: left luma, right luma, Cb, Cr.
template <CastLayout L>
ZVP_INLINE CastBlock castBlock(int b, s32 blockWidth, s32 groupBytes) {
  if constexpr (L == CastLayout::Plane) return {0, 1, groupBytes};
  const s32 luma = groupBytes / 2, chroma = groupBytes / 4;
  switch (b) {
    case 0:
      return {0, 2, std::min(blockWidth, luma)};
    case 1:
      return {2 * blockWidth, 2, std::max(0, luma - blockWidth)};
    case 2:
      return {1, 4, chroma};
    default:
      return {3, 4, chroma};
  }
}
// The history bytes of a group stand in the order of the samples.
inline constexpr std::array<int, 4> castHistoryIndex = {0, 2, 1, 3};
// The block that owns byte i of a group.
template <CastLayout L>
ZVP_INLINE int castBlockOf(s32 i, s32 blockWidth) {
  if constexpr (L == CastLayout::Plane) return 0;
  return i % 4 == 1 ? 2 : i % 4 == 3 ? 3 : i < 2 * blockWidth ? 0 : 1;
}

// Moved pixels of a block at (x, y). A block that the frame's edge cuts counts as if it were whole: each row's last
// flag stands for the missing columns, the last row's count for the missing rows.
inline s64 countMoved(const CastFrame& frame, s32 x, s32 y, CastBlock block, s32 blockWidth, s32 rows, s32 blockHeight,
                      u8 threshold) {
  s64 total = 0, ofRow = 0;
  for (s32 j = 0; j < rows; ++j) {
    const std::ptrdiff_t at = (std::ptrdiff_t(y) + j) * frame.srcStep + x + block.first;
    bool moved = false;
    ofRow = 0;
    for (s32 i = 0; i < block.samples; ++i) {
      const int difference = frame.current[at + i * block.spacing] - frame.previous[at + i * block.spacing];
      moved = (difference < 0 ? -difference : difference) > threshold;
      ofRow += moved;
    }
    ofRow += s64(moved) * (blockWidth - block.samples);
    total += ofRow;
  }
  return total + ofRow * (blockHeight - rows);
}

using CastLane = simd::U8<16>;

// Moved pixels of 16 columns over four whole rows, one count a column.
inline void countMovedColumns(const CastFrame& frame, s32 x, s32 y, u8 threshold, u8 (&counts)[16]) {
  const std::ptrdiff_t at = std::ptrdiff_t(y) * frame.srcStep + x;
  const auto still = simd::splat<CastLane>(threshold);
  auto unmoved = simd::zero<CastLane>();
  for (int j = 0; j < 4; ++j) {
    const auto difference = absDiff(simd::load<CastLane>(frame.current + at + j * frame.srcStep),
                                    simd::load<CastLane>(frame.previous + at + j * frame.srcStep));
    unmoved = unmoved - equal(max(difference, still), still);
  }
  simd::store(counts, simd::splat<CastLane>(4) - unmoved);
}

// The spatial filter's thresholds by lane, and the weights of the pixel itself.
struct CastSpatial {
  CastLane lastNear;    // largest difference that still counts as near: the threshold less one
  CastLane anyNear;     // 0 where the threshold is 0, so that nothing is near, else 255
  CastLane strongEdge;  // an edge value above it makes a strong edge
  CastLane edgeWeight, flatWeight;
};

namespace detail {
// A row's neighbours of the same component: 1 byte away in a plane; in packed 4:2:2 luma 2 bytes and chroma 4.
template <CastLayout L, int Side>
ZVP_INLINE CastLane neighbour(const u8* p) {
  if constexpr (L == CastLayout::Plane) return simd::load<CastLane>(p + Side);
  const auto luma = simd::as<CastLane>(simd::splat<simd::U16<8>>(0x00ff));
  return select(luma, simd::load<CastLane>(p + 2 * Side), simd::load<CastLane>(p + 4 * Side));
}

// (n / count) for n up to 9 * 255 + 4 and count 1..9: the product with the rounded-up reciprocal is exact there.
constexpr u16 halfReciprocal(int count) { return u16((32768 + count - 1) / count); }
constexpr bool reciprocalsAreExact() {
  for (u32 count = 1; count <= 9; ++count)
    for (u32 n = 0; n <= 9 * 255 + 4; ++n)
      if ((2 * n * halfReciprocal(int(count))) >> 16 != n / count) return false;
  return true;
}
static_assert(reciprocalsAreExact());

ZVP_INLINE simd::U16<8> divide(simd::U16<8> n, simd::U16<8> count) {
  auto reciprocal = simd::splat<simd::U16<8>>(halfReciprocal(1));
  const auto replace = [&]<int Count>() {
    const auto change = simd::splat<simd::U16<8>>(u16(halfReciprocal(1) ^ halfReciprocal(Count)));
    reciprocal = reciprocal ^ (equal(count, simd::splat<simd::U16<8>>(Count)) & change);
  };
  replace.template operator()<2>();
  replace.template operator()<3>();
  replace.template operator()<4>();
  replace.template operator()<5>();
  replace.template operator()<6>();
  replace.template operator()<7>();
  replace.template operator()<8>();
  replace.template operator()<9>();
  return mulHigh(n + n, reciprocal);
}

// (a * (256 - weight) + b * weight + 128) >> 8 by lane.
ZVP_INLINE CastLane blend(CastLane a, CastLane b, CastLane weight) {
  const auto full = simd::splat<simd::S16<8>>(256), half = simd::splat<simd::S16<8>>(128);
  const auto part = [&](simd::S16<8> x, simd::S16<8> y, simd::S16<8> w) {
    const auto sum = mulLow(x, full - w) + mulLow(y, w) + half;
    return simd::as<simd::S16<8>>(simd::shiftRight<8>(simd::as<simd::U16<8>>(sum)));
  };
  return packSaturateU8(part(widenLow(a), widenLow(b), widenLow(weight)),
                        part(widenHigh(a), widenHigh(b), widenHigh(weight)));
}
}  // namespace detail

// The pixels at centre moved towards the mean of those of their 3x3 neighbours that are near them in value.
template <CastLayout L>
ZVP_INLINE CastLane spatial(const u8* above, const u8* centre, const u8* below, CastLane edges,
                            const CastSpatial& how) {
  using W = simd::U16<8>;
  const CastLane c = simd::load<CastLane>(centre);
  CastLane count = simd::splat<CastLane>(1);  // the pixel itself is near wherever anything is
  W low = simd::as<W>(widenLow(c)), high = simd::as<W>(widenHigh(c));
  const auto take = [&](CastLane v) {
    const CastLane difference = absDiff(v, c);
    const CastLane near = equal(min(difference, how.lastNear), difference);
    count = count - near;
    const CastLane counted = v & near;
    low = low + simd::as<W>(widenLow(counted));
    high = high + simd::as<W>(widenHigh(counted));
  };
  take(detail::neighbour<L, -1>(above));
  take(simd::load<CastLane>(above));
  take(detail::neighbour<L, 1>(above));
  take(detail::neighbour<L, -1>(centre));
  take(detail::neighbour<L, 1>(centre));
  take(detail::neighbour<L, -1>(below));
  take(simd::load<CastLane>(below));
  take(detail::neighbour<L, 1>(below));
  const W countLow = simd::as<W>(widenLow(count)), countHigh = simd::as<W>(widenHigh(count));
  const W meanLow = detail::divide(low + simd::shiftRight<1>(countLow), countLow);
  const W meanHigh = detail::divide(high + simd::shiftRight<1>(countHigh), countHigh);
  const CastLane mean = packSaturateU8(simd::as<simd::S16<8>>(meanLow), simd::as<simd::S16<8>>(meanHigh));
  const CastLane flat = equal(max(edges, how.strongEdge), how.strongEdge);
  const CastLane filtered = detail::blend(mean, c, select(flat, how.flatWeight, how.edgeWeight));
  return select(how.anyNear, filtered, c);
}

// The verdicts of the blocks, spread over 16 lanes.
struct CastLanes {
  u8 weight[16], spatial[16], written[16];
  bool anySpatial = false, anyTemporal = false, anySkipped = false;

  void set(int first, int end, CastVerdict verdict) {
    for (int i = first; i < end; ++i) {
      weight[i] = verdict.weight;
      spatial[i] = verdict.path == CastPath::Spatial ? 255 : 0;
      written[i] = verdict.path != CastPath::Skip;
    }
    note(verdict.path);
  }
  void note(CastPath path) {
    anySpatial |= path == CastPath::Spatial;
    anyTemporal |= path == CastPath::Temporal;
    anySkipped |= path == CastPath::Skip;
  }
};

namespace detail {
inline constexpr s32 castPad = 4;  // bytes of neighbours on either side, the most a layout looks at
using CastPadded = u8[16 + 2 * castPad];

// Columns x - 4 .. x + 19 of a row, those outside the frame replaced by the nearest sample of the same component.
template <CastLayout L>
inline void padRow(const u8* row, s32 x, s32 rowBytes, CastPadded& padded) {
  for (s32 i = 0; i < s32(sizeof padded); ++i) {
    s32 column = x - castPad + i;
    if constexpr (L == CastLayout::Plane) {
      column = clip(column, 0, rowBytes - 1);
    } else {
      // Luma lies on the even bytes, Cb on those that are 1 modulo 4, Cr on those that are 3. Widths are even,
      // so a row is whole groups of four.
      const bool luma = column % 2 == 0;
      const s32 phase = luma ? 0 : column & 3;
      column = clip(column, phase, rowBytes - (luma ? 2 : 4) + phase);
    }
    padded[i] = row[column];
  }
}
}  // namespace detail

// Filters bytes x .. x + bytes - 1 (at most 16) of rows y .. y + rows - 1.
template <CastLayout L>
inline void castChunk(const CastFrame& frame, s32 x, s32 bytes, s32 y, s32 rows, const CastLanes& lanes,
                      const CastSpatial& how) {
  constexpr s32 reach = L == CastLayout::Plane ? 1 : 4;
  const bool interior = bytes == 16 && x >= reach && x + 16 + reach <= frame.rowBytes;
  const CastLane weight = simd::load<CastLane>(lanes.weight), isSpatial = simd::load<CastLane>(lanes.spatial);
  const auto edgesAt = [&](s32 row) {
    const u8* const edges = frame.edges + row * frame.edgeStep + x;
    if (bytes == 16) return simd::load<CastLane>(edges);
    u8 part[16] = {};
    std::memcpy(part, edges, std::size_t(bytes));
    return simd::load<CastLane>(part);
  };
  for (s32 row = y; row < y + rows; ++row) {
    const u8* const centre = frame.current + row * frame.srcStep + x;
    CastLane result = simd::zero<CastLane>();
    if (lanes.anyTemporal) {
      const u8* const previous = frame.previous + row * frame.srcStep + x;
      if (bytes == 16) {
        result = detail::blend(simd::load<CastLane>(centre), simd::load<CastLane>(previous), weight);
      } else {
        u8 now[16] = {}, before[16] = {};
        std::memcpy(now, centre, std::size_t(bytes));
        std::memcpy(before, previous, std::size_t(bytes));
        result = detail::blend(simd::load<CastLane>(now), simd::load<CastLane>(before), weight);
      }
    }
    if (lanes.anySpatial) {
      const std::ptrdiff_t up = row > 0 ? -frame.srcStep : 0, down = row + 1 < frame.height ? frame.srcStep : 0;
      CastLane filtered;
      if (interior) {
        filtered = spatial<L>(centre + up, centre, centre + down, edgesAt(row), how);
      } else {
        detail::CastPadded padded[3];
        detail::padRow<L>(centre - x + up, x, frame.rowBytes, padded[0]);
        detail::padRow<L>(centre - x, x, frame.rowBytes, padded[1]);
        detail::padRow<L>(centre - x + down, x, frame.rowBytes, padded[2]);
        filtered = spatial<L>(padded[0] + detail::castPad, padded[1] + detail::castPad, padded[2] + detail::castPad,
                              edgesAt(row), how);
      }
      result = select(isSpatial, filtered, result);
    }
    u8* const dst = frame.dst + row * frame.dstStep + x;
    if (bytes == 16 && !lanes.anySkipped) {
      simd::store(dst, result);
    } else {
      u8 values[16];
      simd::store(values, result);
      for (s32 i = 0; i < bytes; ++i)
        if (lanes.written[i]) dst[i] = values[i];
    }
  }
}

}  // namespace zvp
