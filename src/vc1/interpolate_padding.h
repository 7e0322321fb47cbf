// The neighbourhood of a block in a reference plane, padded beyond the picture's edges and mapped for intensity
// compensation (SMPTE 421M 8.3.6.5): rows -1 to h + 1 and columns -1 to w + 1 of the block, in a scratch of
// 19 samples a row, whatever the block's size.
//
// Channels is 2 for interleaved chroma; columns and widths are bytes there, and a sample is a pair.
//
// Which map a row takes, and which row stands for one outside, departs in places from the rule that a row keeps its
// parity and its map; each place is required and says so.
#pragma once

#include <algorithm>
#include <utility>

#include "simd.h"

namespace zvp::vc1 {

// A row of the plane and the map that it passes through, which may be null.
struct MappedRow {
  const u8* samples;
  const u8* map;
};

// At most 38 bytes, by pieces that overlap.
ZVP_INLINE void copyShort(u8* dst, const u8* src, int count) {
  const auto ends = [=](auto piece) __attribute__((always_inline)) {
    const auto first = loadAs<decltype(piece)>(src), last = loadAs<decltype(piece)>(src + count - sizeof piece);
    storeAs(dst, first);
    storeAs(dst + count - sizeof piece, last);
  };
  using Piece16 = simd::U8<16>;
  if (count > 32) simd::store(dst + 16, simd::load<Piece16>(src + 16));
  if (count >= 16) return ends(Piece16());
  if (count >= 8) return ends(u64());
  if (count >= 4) return ends(u32());
  for (int i = 0; i < count; ++i) dst[i] = src[i];
}

ZVP_INLINE void copyMapped(u8* dst, MappedRow row, std::ptrdiff_t first, int count) {
  const u8* const src = row.samples + first;
  if (row.map == nullptr) return copyShort(dst, src, count);
#pragma GCC unroll 8
  for (int i = 0; i < count; ++i) dst[i] = row.map[src[i]];
}

// Along one axis: how many places of the neighbourhood lie before the picture, in it and behind it.
struct Extent {
  int before, inside, behind;
};
// Of a block of size places at position, in a picture of limit places. One place counts unit.
ZVP_INLINE Extent extentOf(s64 position, s64 size, s64 limit, int unit) {
  const s64 needed = size + 3 * unit;
  const s64 before = std::max<s64>(unit - position, 0);
  const s64 behind = std::max<s64>(position - (limit - size - 2 * unit), 0);
  const s64 inside = needed - before - behind;
  if (inside >= unit) return {int(before), int(inside), int(behind)};
  return before > 0 ? Extent{int(needed), 0, 0} : Extent{0, 0, int(needed)};
}

template <int Channels> class Neighbourhood {
 public:
  static constexpr int pitch = 19 * Channels, most = 16;

  // Of a block of at most 16 x 16 samples.
  ZVP_INLINE explicit Neighbourhood(const zvpInterpolationICBlock& b)
      : b_(b),
        field_(b.fieldPrediction != 0),
        pictureRows_(field_ ? b.frameSize.height >> 1 : b.frameSize.height),
        step_(std::ptrdiff_t(b.srcStep) * (field_ ? 2 : 1)),
        width_(clip(b.blockSize.width, 0, most) * Channels),
        height_(clip(b.blockSize.height, 0, most)),
        columns_(extentOf(b.blockPos.x, width_, s64(b.frameSize.width) * Channels, Channels)),
        rows_(extentOf(b.blockPos.y, height_, pictureRows_, 1)) {}

  // Whether the block can be predicted from the plane itself, and where it is there.
  bool liesInPlane() const {
    return b_.pLUTTop == nullptr && b_.pLUTBottom == nullptr && columns_.before + columns_.behind == 0 &&
           rows_.before + rows_.behind == 0;
  }
  const u8* blockInPlane() const { return row(b_.blockPos.y) + b_.blockPos.x; }
  std::ptrdiff_t planeStep() const { return step_; }

  // The neighbourhood copied; the block's first sample in the copy. What the copy does not reach is 0.
  const u8* copy() {
    std::memset(scratch_, 0, sizeof scratch_);
    const bool parity = b_.oppositePadding != 0 && !field_;  // rows outside the frame keep their parity
    const s64 y = b_.blockPos.y;
    // The maps of even and odd rows of the neighbourhood.
    const u8 *even = b_.pLUTTop, *odd = b_.pLUTBottom;
    if (field_)
      even = odd = b_.isPredBottom != 0 ? b_.pLUTBottom : b_.pLUTTop;
    else if (y > 0 && y % 2 == 0)
      std::swap(even, odd);

    for (int r = 0; r < rows_.inside; ++r)
      store(rows_.before + r, {row(y + rows_.before - 1 + r), r % 2 == 0 ? even : odd});

    // Rows above, from the picture upward: two sources in turn.
    const bool noRow = rows_.inside == 0;
    if (rows_.before > 0) {
      MappedRow above[2];
      if (parity) {
        const bool exchanged = noRow && y % 2 != 0;
        if (exchanged) std::swap(even, odd);
        above[0] = {row(exchanged ? 0 : 1), odd};
        above[1] = {row(exchanged ? 1 : 0), even};
      } else {
        above[0] = above[1] = b_.oppositePadding != 0 ? frameRow(0, b_.pLUTTop) : MappedRow{row(0), even};
      }
      for (int i = 0; i < rows_.before; ++i) store(rows_.before - 1 - i, above[i % 2]);
    }
    // Rows below, downward. Required: with no row inside and an even y the sources are exchanged, but not the maps.
    if (rows_.behind > 0) {
      MappedRow below[2];
      if (parity) {
        const bool exchanged = noRow && y % 2 == 0;
        if (!exchanged && rows_.behind % 2 != 0) std::swap(even, odd);
        below[0] = {row(pictureRows_ - (exchanged ? 1 : 2)), odd};
        below[1] = {row(pictureRows_ - (exchanged ? 2 : 1)), even};
      } else {
        below[0] = below[1] = b_.oppositePadding != 0 ? frameRow(b_.frameSize.height - 1, b_.pLUTBottom)
                                                      : MappedRow{row(pictureRows_ - 1), odd};
      }
      for (int i = 0; i < rows_.behind; ++i) store(rows_.before + rows_.inside + i, below[i % 2]);
    }
    if (columns_.inside == 0) storeEdgeSamples(parity, even, odd);
    replicateColumns();
    return scratch_ + pitch + Channels;
  }

 private:
  // Row of the picture, and of the frame that a field is part of.
  const u8* row(s64 y) const { return b_.pSrc + y * step_; }
  MappedRow frameRow(s64 y, const u8* map) const {
    return {b_.pSrc + (y - (b_.isPredBottom != 0 ? 1 : 0)) * std::ptrdiff_t(b_.srcStep), map};
  }
  u8* scratchRow(int r) { return scratch_ + r * pitch; }

  // The columns inside the picture.
  void store(int r, MappedRow source) {
    if (columns_.inside > 0)
      copyMapped(scratchRow(r) + columns_.before, source, b_.blockPos.x + s64(columns_.before) - Channels,
                 columns_.inside);
  }

  // With no column inside: each row gets the sample at the picture's near edge, left of the columns that it is to fill
  // or right of them. Required: the map goes by the row of the neighbourhood, not by that of the picture.
  void storeEdgeSamples(bool parity, const u8* even, const u8* odd) {
    const bool leftOf = columns_.before > 0;
    for (int r = 0; r < height_ + 3; ++r) {
      const s64 y = s64(b_.blockPos.y) + r - 1;
      s64 nearest = std::clamp<s64>(y, 0, pictureRows_ - 1);
      if (parity && y < 0 && y % 2 != 0) nearest = 1;
      if (parity && y >= pictureRows_ && y % 2 == 0) nearest = pictureRows_ - 2;
      copyMapped(scratchRow(r) + (leftOf ? columns_.before : 0), {row(nearest), r % 2 == 0 ? even : odd},
                 leftOf ? 0 : (s64(b_.frameSize.width) - 1) * Channels, Channels);
    }
  }

  // The first and last sample of each row, repeated outward. Required: column by column. With a block 16 wide and no
  // column inside, the sample of a row stands where the next row begins, and is overwritten with the first column.
  void replicateColumns() {
    const int rows = height_ + 3, needed = width_ + 3 * Channels;
    const auto copySample = [](u8* dst, const u8* src) { std::memcpy(dst, src, Channels); };
    for (int column = 0; column < columns_.before; column += Channels)
      for (int r = 0; r < rows; ++r) copySample(scratchRow(r) + column, scratchRow(r) + columns_.before);
    const int last = columns_.inside == 0 ? 0 : needed - columns_.behind - Channels;
    if (columns_.behind > 0)
      for (int column = last + Channels; column < needed; column += Channels)
        for (int r = 0; r < rows; ++r) copySample(scratchRow(r) + column, scratchRow(r) + last);
  }

  const zvpInterpolationICBlock& b_;
  const bool field_;
  const s32 pictureRows_;
  const std::ptrdiff_t step_;
  const int width_, height_;
  const Extent columns_, rows_;
  u8 scratch_[(most + 3) * pitch + Channels];  // copy() fills it
};

}  // namespace zvp::vc1
