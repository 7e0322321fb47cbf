// Macroblocks from coefficients and prediction: scaling, inverse transform, addition, block by block in decoding order
// (H.264 8.5), and between the blocks of intra macroblocks their prediction.
//
// What varies is how levels become coefficients. That is a type, of three: FlatScale for the scales of flat matrices,
// ListScale for the caller's, NoScale for blocks whose levels are the residual itself. A coded block takes its levels
// from the cursor and leaves the transform's first pass in their place; the buffer is working space.
//
// 4x4 blocks whose prediction does not depend on one another are done in pairs side by side, which fill a register.
#pragma once

#include "h264/intra_kernels.h"
#include "h264/reconstruct_tables.h"
#include "h264/transform_kernels.h"
#include "shared_tables.h"

namespace zvp {

// ---- scaling ----------------------------------------------------------------------------------------------------

// Flat matrices. All products wrap at 16 bits but those of DC blocks.
class FlatScale {
 public:
  static constexpr bool transforms = true;
  static constexpr ResidualKind residual = ResidualKind::Transformed;

  ZVP_INLINE explicit FlatScale(u32 qp) : qp_(qp) { scales_ = flatScales(qp); }
  ZVP_INLINE Block4x4 block(Block4x4 levels) const { return scaled(levels, {scales_, scales_}); }
  ZVP_INLINE Block4x4 lumaDc(Block4x4 levels) const { return dequantizedLumaDc(levels, s32(qp_)); }
  ZVP_INLINE s16 chromaDc(s16 sum) const { return s16((sum * InvQuantTable[qp_][0]) >> 1); }
  // The same for both planes at once.
  ZVP_INLINE simd::S16<8> chromaDc(simd::S16<8> sums) const {
    using namespace simd;
    const auto scale = shuffle32<0>(shuffleLow16<0>(scales_));
    return as<S16<8>>(shiftRight<1>(as<U16<8>>(mulLow(sums, scale)))) | shiftLeft<15>(mulHigh(sums, scale));
  }

 private:
  u32 qp_;
  simd::S16<8> scales_;
};

// The caller's scales for this QP % 6, 16 times the step of QP / 6. Products are shifted to the right in 32 bits.
class ListScale {
 public:
  static constexpr bool transforms = true;
  static constexpr ResidualKind residual = ResidualKind::Transformed;

  ZVP_INLINE ListScale(const s16* scales, u32 qp) : list_(scales), qp6_(int(qp / 6)) {}
  ZVP_INLINE Block4x4 block(Block4x4 levels) const {
    return scaledLevels(levels, loadBlock4x4(list_), levelShift(qp6_, 4));
  }
  ZVP_INLINE Block4x4 lumaDc(Block4x4 levels) const {
    return scaledLevels(hadamardTransform(levels), splatScale(loadAs<s16>(list_)), levelShift(qp6_, 6));
  }
  ZVP_INLINE s16 chromaDc(s16 sum) const { return s16(levelShiftDown(qp6_, 5)(sum, loadAs<s16>(list_))); }
  ZVP_INLINE Block8x8 block(const Block8x8& levels) const {
    const LevelShift shift = levelShift(qp6_, 6);
    Block8x8 b;
    for (int y = 0; y < 8; y += 2) {
      const Block4x4 two = scaledLevels({levels.row[y], levels.row[y + 1]}, loadBlock4x4(list_ + 8 * y), shift);
      b.row[y] = two.rows01;
      b.row[y + 1] = two.rows23;
    }
    return b;
  }

 private:
  const s16* list_;
  int qp6_;
};

// The residual as it is coded: neither scaled nor transformed (H.264 8.5.12, TransformBypassModeFlag).
class NoScale {
 public:
  static constexpr bool transforms = false;
  static constexpr ResidualKind residual = ResidualKind::Coded;

  template <class Block>
  ZVP_INLINE Block block(const Block& levels) const {
    return levels;
  }
  ZVP_INLINE Block4x4 lumaDc(Block4x4 levels) const { return levels; }
};

// ---- blocks -----------------------------------------------------------------------------------------------------

// A scaled block to samples. The buffer receives what the first pass leaves.
template <class Scale>
ZVP_INLINE void addBlock(Block4x4 b, s16* buffer, u8* srcDst, std::ptrdiff_t step) {
  if constexpr (Scale::transforms) {
    b = inverseRows(b);
    storeBlock4x4(buffer, b);
    addInverseColumns(b, srcDst, step, srcDst, step);
  } else {
    addResidual<Scale::residual>(b, srcDst, step, srcDst, step);
  }
}
template <class Scale>
ZVP_INLINE void addBlock(const Block8x8& scaledBlock, s16* buffer, u8* srcDst, std::ptrdiff_t step) {
  if constexpr (Scale::transforms) {
    const Block8x8 b = inverseRows(scaledBlock);
    storeBlock8x8(buffer, b);
    addInverseColumns(b, srcDst, step);
  } else {
    addResidual<Scale::residual>(scaledBlock, srcDst, step);
  }
}
// The first pass of two blocks side by side. Their buffers, which follow one another, receive what it leaves.
ZVP_INLINE BlockPair4x4 firstPass(const ColumnPair4x4& b, s16* buffers) {
  const BlockPair4x4 rows = inverseRows(b);
#pragma GCC unroll 4
  for (int y = 0; y < 4; ++y) {
    simd::storeBytes<8>(buffers + 4 * y, rows.row[y]);
    simd::storeHigh8(buffers + 16 + 4 * y, rows.row[y]);
  }
  return rows;
}
ZVP_INLINE void addPair(const ColumnPair4x4& b, s16* buffers, u8* srcDst, std::ptrdiff_t step) {
  addInverseColumns(firstPass(b, buffers), srcDst, step);
}
// count pairs whose buffers follow one another: columns(i) are added at place(i). The loads and products of each start
// before the second pass of the one before, so that nothing waits for them.
template <class Columns, class Place>
ZVP_INLINE void addPairs(int count, Columns columns, Place place, s16* buffers, std::ptrdiff_t step) {
  ColumnPair4x4 next = columns(0);
#pragma GCC unroll 8
  for (int i = 1; i < count; ++i, buffers += 32) {
    const BlockPair4x4 rows = firstPass(next, buffers);
    next = columns(i);
    addInverseColumns(rows, place(i - 1), step);
  }
  addPair(next, buffers, place(count - 1), step);
}
// Two blocks that have a DC alone: one residual for all samples of each.
ZVP_INLINE void addDcPair(s16 left, s16 right, u8* srcDst, std::ptrdiff_t step) {
  using namespace simd;
  const auto repeatedResidual = [](s16 dc) { return u64(u16((dc + 32) >> 6)) * 0x0001000100010001u; };
  const auto row =
      as<S16<8>>(interleaveLow(fromLow64<U64<2>>(repeatedResidual(left)), fromLow64<U64<2>>(repeatedResidual(right))));
  addResidual(BlockPair4x4{{row, row, row, row}}, srcDst, step);
}

// Levels of two blocks, scaled.
template <class Scale>
ZVP_INLINE ColumnPair4x4 scaledPair(const Scale& scale, const s16* levels) {
  return columnsOf(scale.block(loadBlock4x4(levels)), scale.block(loadBlock4x4(levels + 16)));
}

// The next 16 levels of the cursor.
ZVP_INLINE s16* take(s16*& cursor, std::ptrdiff_t count) {
  s16* const block = cursor;
  cursor += count;
  return block;
}

// The coded ones of two blocks side by side: bits 0 and 1 of coded tell.
template <class Scale>
ZVP_INLINE void addCoded(const Scale& scale, u32 coded, s16*& cursor, u8* srcDst, std::ptrdiff_t step) {
  if ((coded & 3) == 0) return;
  s16* const left = take(cursor, 16);
  const Block4x4 first = scale.block(loadBlock4x4(left));
  if ((coded & 3) != 3) return addBlock<Scale>(first, left, srcDst + 2 * (coded & 2), step);
  s16* const right = take(cursor, 16);
  const Block4x4 second = scale.block(loadBlock4x4(right));
  if constexpr (Scale::transforms) {
    addPair(columnsOf(first, second), left, srcDst, step);
  } else {
    addBlock<Scale>(first, left, srcDst, step);
    addBlock<Scale>(second, right, srcDst + 4, step);
  }
}

// The same where the DCs come from elsewhere, two of them at dc.
template <class Scale>
ZVP_INLINE void addCodedAndDc(const Scale& scale, u32 coded, const u8* dc, s16*& cursor, u8* srcDst,
                              std::ptrdiff_t step) {
  if (Scale::transforms && (coded & 3) == 3) {
    s16* const levels = take(cursor, 32);
    const auto columns = columnsOf(scale.block(loadBlock4x4(levels)), scale.block(loadBlock4x4(levels + 16)));
    return addPair(withDc(columns, dc), levels, srcDst, step);
  }
  const s16 both[2] = {loadAs<s16>(dc), loadAs<s16>(dc + 2)};
  if ((coded & 3) == 0) {
    if ((both[0] | both[1]) == 0) return;
    if (Scale::transforms) return addDcPair(both[0], both[1], srcDst, step);
  }
  for (std::size_t i = 0; i < 2; ++i, srcDst += 4) {
    if ((coded >> i & 1) != 0) {
      s16* const block = take(cursor, 16);
      addBlock<Scale>(withDc(scale.block(loadBlock4x4(block)), both[i]), block, srcDst, step);
    } else if (both[i] != 0) {
      const Block4x4 none = {simd::zero<simd::S16<8>>(), simd::zero<simd::S16<8>>()};
      addResidual<Scale::residual>(Scale::transforms ? flatResidual(both[i]) : withDc(none, both[i]), srcDst, step,
                                   srcDst, step);
    }
  }
}

ZVP_INLINE u8* moved(u8* p, BlockStep by, std::ptrdiff_t step) { return p + std::ptrdiff_t(by.dx) + by.dy * step; }

// ---- luma -------------------------------------------------------------------------------------------------------

// What adds a residual returns the cursor behind the last block taken.

// Bits of cbp.
inline constexpr u32 cbpLumaDc = 1, cbpLuma4x4 = 0x1fffe, cbpLuma8x8 = 0xf;
inline constexpr u32 cbpU = 0x7a0000, cbpV = 0x7840000, cbpChroma = cbpU | cbpV, cbpChromaAc = 0x7f80000;

// Adds the coded 4x4 blocks to the prediction in place, by quarters of the macroblock.
template <class Scale>
ZVP_INLINE s16* addLuma4x4(const Scale& scale, s16* cursor, u8* srcDst, std::ptrdiff_t step, u32 cbp) {
  if (Scale::transforms && (cbp & cbpLuma4x4) == cbpLuma4x4) {
    const auto columns = [&](int i) __attribute__((always_inline)) { return scaledPair(scale, cursor + 32 * i); };
    const auto place = [&](int i) __attribute__((always_inline)) {
      return srcDst + 4 * (i & 2) + (4 * (i & 1) + 2 * (i & 4)) * step;
    };
    addPairs(8, columns, place, cursor, step);
    return cursor + 256;
  }
  cbp >>= 1;
#pragma GCC unroll 4
  for (std::size_t i = 0; i < 4; ++i, cbp >>= 4) {
    addCoded(scale, cbp, cursor, srcDst, step);
    addCoded(scale, cbp >> 2, cursor, srcDst + 4 * step, step);
    srcDst = moved(srcDst, xyoff8[i], step);
  }
  return cursor;
}

template <class Scale>
ZVP_INLINE s16* addLuma8x8(const Scale& scale, s16* cursor, u8* srcDst, std::ptrdiff_t step, u32 cbp) {
  for (std::size_t i = 0; i < 4; ++i) {
    if ((cbp >> i & 1) != 0) {
      s16* const block = take(cursor, 64);
      addBlock<Scale>(scale.block(loadBlock8x8(block)), block, srcDst, step);
    }
    srcDst = moved(srcDst, xyoff8[i], step);
  }
  return cursor;
}

// The neighbours of a macroblock that may be used.
struct LumaEdges {
  bool top, topRight, corner, leftUpper, leftLower;
};

// Neighbours of block i: of the macroblock's where the block is at its edge, else as decoding order has it. The corner
// of the block at the middle of the left edge stands in the upper half of the column.
ZVP_INLINE u32 neighbours4x4(const LumaEdges& edges, std::size_t i) {
  const bool atLeft = left_edge_tab16[i] != 0, atTop = top_edge_tab16[i] != 0;
  const bool top = !atTop || edges.top;
  const bool left = !atLeft || (i < 8 ? edges.leftUpper : edges.leftLower);
  const bool corner = top && left && (i != 8 || edges.leftUpper);
  const bool right = above_right_avail_4x4[i] != 0 && (!atTop || (i == 5 ? edges.topRight : edges.top));
  return (top ? intraTop : 0u) | (left ? intraLeft : 0u) | (corner ? intraCorner : 0u) | (right ? intraTopRight : 0u);
}
ZVP_INLINE u32 neighbours8x8(const LumaEdges& edges, std::size_t i) {
  const bool top = top_edge_tab4[i] == 0 || edges.top;
  const bool left = left_edge_tab4[i] == 0 || (i == 0 ? edges.leftUpper : edges.leftLower);
  const bool corner = i == 0 ? edges.corner : i == 1 ? edges.top : i == 3 || edges.leftUpper;
  const bool right = i == 0 ? edges.top : i == 1 ? edges.topRight : i == 2;
  return (top ? intraTop : 0u) | (left ? intraLeft : 0u) | (corner ? intraCorner : 0u) | (right ? intraTopRight : 0u);
}

// Predicts and adds block by block. A mode whose neighbours are missing ends the macroblock: blocks before it are done.
template <class Scale>
ZVP_INLINE zvpStatus reconstructIntra4x4(const Scale& scale, s16*& cursor, u8* srcDst, std::ptrdiff_t step,
                                         const s32* modes, u32 cbp, const LumaEdges& edges) {
  for (std::size_t i = 0; i < 16; ++i) {
    const u32 mode = u32(loadAs<s32>(modes + i)), available = neighbours4x4(edges, i);
    if (mode >= intraModes4x4) return zvpStatusOutOfRange;
    if ((intraNeeds4x4[mode] & ~available) != 0) return zvpStatusPredictionUnavailable;
    predictIntra4x4[mode](srcDst, step, mode, available);
    if ((cbp >> (i + 1) & 1) != 0) {
      s16* const block = take(cursor, 16);
      addBlock<Scale>(scale.block(loadBlock4x4(block)), block, srcDst, step);
    }
    srcDst = moved(srcDst, xyoff[i], step);
  }
  return zvpStatusOk;
}

template <class Scale>
ZVP_INLINE zvpStatus reconstructIntra8x8(const Scale& scale, s16*& cursor, u8* srcDst, std::ptrdiff_t step,
                                         const s32* modes, u32 cbp, const LumaEdges& edges) {
  for (std::size_t i = 0; i < 4; ++i) {
    const u32 mode = u32(loadAs<s32>(modes + i));
    if (mode >= intraModes4x4) return zvpStatusOutOfRange;
    const zvpStatus status = predictIntra8x8[mode](srcDst, step, mode, neighbours8x8(edges, i));
    if (status != zvpStatusOk) return status;
    if ((cbp >> i & 1) != 0) {
      s16* const block = take(cursor, 64);
      addBlock<Scale>(scale.block(loadBlock8x8(block)), block, srcDst, step);
    }
    srcDst = moved(srcDst, xyoff8[i], step);
  }
  return zvpStatusOk;
}

// The residual of an Intra16x16 macroblock: a DC block, if it is coded, and blocks without their DC.
template <class Scale>
ZVP_INLINE s16* addLuma16x16(const Scale& scale, s16* cursor, u8* srcDst, std::ptrdiff_t step, u32 cbp) {
  const u8* dc = zeroArray.data();
  if ((cbp & cbpLumaDc) != 0) {
    s16* const block = take(cursor, 16);
    storeBlock4x4(block, scale.lumaDc(loadBlock4x4(block)));
    dc = reinterpret_cast<const u8*>(block);
  }
  for (std::size_t i = 0; i < 16; i += 2) {
    addCodedAndDc(scale, cbp >> (i + 1), dc + 2 * block_subblock_mapping[i], cursor, srcDst, step);
    srcDst = moved(moved(srcDst, xyoff[i], step), xyoff[i + 1], step);
  }
  return cursor;
}

// ---- chroma -----------------------------------------------------------------------------------------------------

// The DC block of a plane, in place (H.264 8.5.11).
template <class Scale>
ZVP_INLINE void transformChromaDc(const Scale& scale, s16* dc) {
  if constexpr (Scale::transforms) {
    const auto sums = hadamardTransform2x2(loadDc<4>(dc));
    u64 scaled = 0;  // stored at once, for what reads it by twos
    for (std::size_t i = 0; i < 4; ++i) scaled |= u64(u16(scale.chromaDc(s16(sums[i])))) << (16 * i);
    storeAs(dc, scaled);
  }
}

// Those of both planes, one behind the other.
ZVP_INLINE void transformChromaDc(const FlatScale& scale, s16* dcs) {
  using namespace simd;
  // Columns first: the sums and differences of c0 c1 and c2 c3. Then of the two in each of these.
  const auto c = load<S16<8>>(dcs), other = shuffle32<0xb1>(c);
  const auto columns = shuffle32<0xd8>(evenLanes32(c + other, c - other));
  constexpr std::array<s16, 8> odd = {0, -1, 0, -1, 0, -1, 0, -1};
  const auto left = shuffleHigh16<0xa0>(shuffleLow16<0xa0>(columns));
  const auto right = shuffleHigh16<0xf5>(shuffleLow16<0xf5>(columns)) ^ lanes(odd);
  store(dcs, scale.chromaDc(left + right - lanes(odd)));
}

// Adds both planes. In the cursor the DC blocks come first, then the blocks of U, then those of V.
template <class Scale>
ZVP_INLINE s16* addChroma(const Scale (&scales)[2], s16* cursor, u8* u, u8* v, std::ptrdiff_t step, u32 cbp) {
  const u8* dc[2] = {zeroArray.data(), zeroArray.data()};
  if (std::is_same_v<Scale, FlatScale> && (cbp >> 17 & 3) == 3) {
    s16* const blocks = take(cursor, 8);
    if constexpr (std::is_same_v<Scale, FlatScale>) transformChromaDc(scales[0], blocks);
    dc[0] = reinterpret_cast<const u8*>(blocks);
    dc[1] = dc[0] + 8;
  } else {
    for (std::size_t plane = 0; plane < 2; ++plane)
      if ((cbp >> (17 + plane) & 1) != 0) {
        s16* const block = take(cursor, 4);
        transformChromaDc<Scale>(scales[plane], block);
        dc[plane] = reinterpret_cast<const u8*>(block);
      }
  }
  if (Scale::transforms && (cbp & cbpChromaAc) == cbpChromaAc) {
    const auto columns = [&](int i) __attribute__((always_inline)) {
      return withDc(scaledPair(scales[i / 2], cursor + 32 * i), dc[i / 2] + 4 * (i % 2));
    };
    const auto place = [&](int i) __attribute__((always_inline)) { return (i < 2 ? u : v) + 4 * (i % 2) * step; };
    addPairs(4, columns, place, cursor, step);
    return cursor + 128;
  }
#pragma GCC unroll 2
  for (std::size_t plane = 0; plane < 2; ++plane) {
    u8* const samples = plane == 0 ? u : v;
    addCodedAndDc(scales[plane], cbp >> (19 + 4 * plane), dc[plane], cursor, samples, step);
    addCodedAndDc(scales[plane], cbp >> (21 + 4 * plane), dc[plane] + 4, cursor, samples + 4 * step, step);
  }
  return cursor;
}

}  // namespace zvp
