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

  ZVP_INLINE explicit FlatScale(u32 qp) : qp_(qp) {
    const auto& byPosition = InvQuantTable_w7[qp];
    scales_ = withDc(loadBlock4x4(byPosition.data()), byPosition[2]);
  }
  ZVP_INLINE Block4x4 block(Block4x4 levels) const { return scaled(levels, scales_); }
  ZVP_INLINE Block4x4 lumaDc(Block4x4 levels) const { return dequantizedLumaDc(levels, s32(qp_)); }
  ZVP_INLINE s16 chromaDc(s16 sum) const { return s16((sum * InvQuantTable[qp_][0]) >> 1); }

 private:
  u32 qp_;
  Block4x4 scales_;
};

// The caller's scales for this QP % 6, 16 times the step of QP / 6. Products are shifted to the right in 32 bits.
class ListScale {
 public:
  static constexpr bool transforms = true;

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
    b = inverseColumns<ResidualRange::Clamped>(b);
  }
  addResidual(b, srcDst, step, srcDst, step);
}
template <class Scale>
ZVP_INLINE void addBlock(const Block8x8& scaledBlock, s16* buffer, u8* srcDst, std::ptrdiff_t step) {
  if constexpr (Scale::transforms) {
    const Block8x8 b = inverseRows(scaledBlock);
    storeBlock8x8(buffer, b);
    addResidual(inverseColumns<ResidualRange::Clamped>(b), srcDst, step);
  } else {
    addResidual(scaledBlock, srcDst, step);
  }
}
// Two blocks side by side; a buffer may be null.
template <class Scale>
ZVP_INLINE void addPair(Block4x4 left, Block4x4 right, s16* leftBuffer, s16* rightBuffer, u8* srcDst,
                        std::ptrdiff_t step) {
  if constexpr (Scale::transforms) {
    const BlockPair4x4 rows = inverseRows(left, right);
    if (leftBuffer != nullptr) storeBlock4x4(leftBuffer, left);
    if (rightBuffer != nullptr) storeBlock4x4(rightBuffer, right);
    addResidual(inverseColumns<ResidualRange::Clamped>(rows), srcDst, step);
  } else {
    addResidual(left, srcDst, step, srcDst, step);
    addResidual(right, srcDst + 4, step, srcDst + 4, step);
  }
}
// Two blocks that have a DC alone: one residual for all samples of each.
ZVP_INLINE void addDcPair(s16 left, s16 right, u8* srcDst, std::ptrdiff_t step) {
  using namespace simd;
  const auto repeatedResidual = [](s16 dc) { return u64(u16((dc + 32) >> 6)) * 0x0001000100010001u; };
  const auto row =
      as<S16<8>>(interleaveLow(fromLow64<U64<2>>(repeatedResidual(left)), fromLow64<U64<2>>(repeatedResidual(right))));
  addResidual(BlockPair4x4{{row, row, row, row}}, srcDst, step);
}

// The next 16 levels of the cursor.
ZVP_INLINE s16* take(s16*& cursor, std::ptrdiff_t count) {
  s16* const block = cursor;
  cursor += count;
  return block;
}

// A pair whose DCs come from elsewhere. Bits 0 and 1 of coded tell which has levels of its own.
template <class Scale>
ZVP_INLINE void addPairWithDc(const Scale& scale, u32 coded, s16 leftDc, s16 rightDc, s16*& cursor, u8* srcDst,
                              std::ptrdiff_t step) {
  if ((coded & 3) == 0 && (leftDc | rightDc) == 0) return;
  if (Scale::transforms && (coded & 3) == 0) return addDcPair(leftDc, rightDc, srcDst, step);
  const Block4x4 none = {simd::zero<simd::S16<8>>(), simd::zero<simd::S16<8>>()};
  s16* const leftBuffer = (coded & 1) != 0 ? take(cursor, 16) : nullptr;
  s16* const rightBuffer = (coded & 2) != 0 ? take(cursor, 16) : nullptr;
  const Block4x4 left = leftBuffer != nullptr ? scale.block(loadBlock4x4(leftBuffer)) : none;
  const Block4x4 right = rightBuffer != nullptr ? scale.block(loadBlock4x4(rightBuffer)) : none;
  addPair<Scale>(withDc(left, leftDc), withDc(right, rightDc), leftBuffer, rightBuffer, srcDst, step);
}

ZVP_INLINE u8* moved(u8* p, BlockStep by, std::ptrdiff_t step) { return p + std::ptrdiff_t(by.dx) + by.dy * step; }

// ---- luma -------------------------------------------------------------------------------------------------------

// What adds a residual returns the cursor behind the last block taken.

// Bits of cbp.
inline constexpr u32 cbpLumaDc = 1, cbpLuma4x4 = 0x1fffe, cbpLuma8x8 = 0xf, cbpChroma = 0x7fe0000;

// Adds the coded 4x4 blocks to the prediction in place.
template <class Scale>
ZVP_INLINE s16* addLuma4x4(const Scale& scale, s16* cursor, u8* srcDst, std::ptrdiff_t step, u32 cbp) {
  for (std::size_t i = 0; i < 16; i += 2) {
    const u32 coded = cbp >> (i + 1) & 3;
    if (coded == 3) {
      s16* const left = take(cursor, 16);
      s16* const right = take(cursor, 16);
      addPair<Scale>(scale.block(loadBlock4x4(left)), scale.block(loadBlock4x4(right)), left, right, srcDst, step);
    } else if (coded != 0) {
      s16* const block = take(cursor, 16);
      addBlock<Scale>(scale.block(loadBlock4x4(block)), block, coded == 1 ? srcDst : srcDst + 4, step);
    }
    srcDst = moved(moved(srcDst, xyoff[i], step), xyoff[i + 1], step);
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
    predictIntra4x4[mode](srcDst, step, available);
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
    const zvpStatus status = predictIntra8x8[mode](srcDst, step, neighbours8x8(edges, i));
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
  const auto dcOf = [dc](std::size_t i) { return loadAs<s16>(dc + 2 * block_subblock_mapping[i]); };
  for (std::size_t i = 0; i < 16; i += 2) {
    addPairWithDc(scale, cbp >> (i + 1), dcOf(i), dcOf(i + 1), cursor, srcDst, step);
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
    for (std::size_t i = 0; i < 4; ++i) storeAs(dc + i, scale.chromaDc(s16(sums[i])));
  }
}

// Adds both planes. In the cursor the DC blocks come first, then the blocks of U, then those of V.
template <class Scale>
ZVP_INLINE s16* addChroma(const Scale (&scales)[2], s16* cursor, u8* u, u8* v, std::ptrdiff_t step, u32 cbp) {
  const u8* dc[2] = {zeroArray.data(), zeroArray.data()};
  for (std::size_t plane = 0; plane < 2; ++plane)
    if ((cbp >> (17 + plane) & 1) != 0) {
      s16* const block = take(cursor, 4);
      transformChromaDc(scales[plane], block);
      dc[plane] = reinterpret_cast<const u8*>(block);
    }
  for (std::size_t plane = 0; plane < 2; ++plane) {
    u8* const samples = plane == 0 ? u : v;
    for (std::size_t i = 0; i < 4; i += 2)
      addPairWithDc(scales[plane], cbp >> (19 + 4 * plane + i), loadAs<s16>(dc[plane] + 2 * i),
                    loadAs<s16>(dc[plane] + 2 * i + 2), cursor, samples + std::ptrdiff_t(2 * i) * step, step);
  }
  return cursor;
}

}  // namespace zvp
