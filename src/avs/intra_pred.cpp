// The 8x8 intra predictors of AVS.
#include "avs/intra_pred.h"

#include "simd.h"

using namespace zvp;

namespace {

using Lanes8 = simd::S16<8>;
using Bytes = simd::U8<16>;

constexpr s32 leftMissing = 1, topMissing = 4, topRightMissing = 32, bottomLeftMissing = 64;

// A side's samples as the formulas count them: [0] the corner, [1..8] the side, [9..16] its continuation and three
// repeats of the last. More than that is there so that whole registers can be loaded.
struct Side {
  u8 at[32];
  // (a[i] + 2 a[i + 1] + a[i + 2] + 2) >> 2 for eight i from first on.
  Lanes8 smoothed(int first) const {
    const Lanes8 a = simd::loadWidened<8>(at + first), b = simd::loadWidened<8>(at + first + 1);
    const Lanes8 c = simd::loadWidened<8>(at + first + 2);
    return simd::shiftRight<2>(a + b + b + c + simd::splat<Lanes8>(2));
  }
};

struct Block {
  u8* dst;
  std::ptrdiff_t step;
  u8 corner() const { return dst[-step - 1]; }
  const u8* top() const { return dst - step; }
  u8 left(std::ptrdiff_t y) const { return dst[y * step - 1]; }
  void storeRow(std::ptrdiff_t y, Bytes row) const { simd::storeBytes<8>(dst + y * step, row); }
  void fillRow(std::ptrdiff_t y, u8 value) const { std::memset(dst + y * step, value, 8); }
};

// How many samples of the continuation a formula uses; those that are missing repeat the last one that there is.
template <int Continuation>
Side topSide(Block block, bool corner, bool continued) {
  Side side;
  std::memcpy(side.at + 1, block.top(), 8);
  side.at[0] = corner ? block.corner() : side.at[1];
  if (continued) std::memcpy(side.at + 9, block.top() + 8, Continuation);
  const int known = continued ? 8 + Continuation : 8;
  std::memset(side.at + known + 1, side.at[known], std::size_t(31 - known));
  return side;
}
template <int Continuation>
Side leftSide(Block block, bool corner, bool continued) {
  Side side;
  for (int y = 0; y < 8; ++y) side.at[1 + y] = block.left(y);
  side.at[0] = corner ? block.corner() : side.at[1];
  if (continued)
    for (int y = 8; y < 8 + Continuation; ++y) side.at[1 + y] = block.left(y);
  const int known = continued ? 8 + Continuation : 8;
  std::memset(side.at + known + 1, side.at[known], std::size_t(31 - known));
  return side;
}

Bytes narrow(Lanes8 v) { return packSaturateU8(v, v); }

}  // namespace

s32 AVSIntraPredictionVertical(u8* pDst, s32 dstStep, s32 availability) {
  if ((availability & topMissing) != 0) return 0;
  const Block block = {pDst, dstStep};
  const auto row = simd::loadBytes<Bytes, 8>(block.top());
  for (int y = 0; y < 8; ++y) block.storeRow(y, row);
  return 1;
}

s32 AVSIntraPredictionHorizontal(u8* pDst, s32 dstStep, s32 availability) {
  if ((availability & leftMissing) != 0) return 0;
  const Block block = {pDst, dstStep};
  for (int y = 0; y < 8; ++y) block.fillRow(y, block.left(y));
  return 1;
}

// Not a mean: each sample is the smoothed top above it, the smoothed left beside it, or the mean of the two.
s32 AVSIntraPredictionDC(u8* pDst, s32 dstStep, s32 availability) {
  const Block block = {pDst, dstStep};
  const bool hasLeft = (availability & leftMissing) == 0, hasTop = (availability & topMissing) == 0;
  if (!hasLeft && !hasTop) return AVSIntraPredictionFill(pDst, dstStep, availability);
  const bool corner = hasLeft && hasTop;
  Lanes8 top = simd::zero<Lanes8>();
  alignas(16) u16 left[8] = {};
  if (hasTop) top = topSide<1>(block, corner, (availability & topRightMissing) == 0).smoothed(0);
  if (hasLeft) simd::store(left, leftSide<1>(block, corner, (availability & bottomLeftMissing) == 0).smoothed(0));
  for (int y = 0; y < 8; ++y) {
    if (!hasTop)
      block.fillRow(y, u8(left[y]));
    else if (!hasLeft)
      block.storeRow(y, narrow(top));
    else
      block.storeRow(y, narrow(simd::shiftRight<1>(top + simd::splat<Lanes8>(s16(left[y])))));
  }
  return 1;
}

s32 AVSIntraPredictionDownLeft(u8* pDst, s32 dstStep, s32 availability) {
  if ((availability & (leftMissing | topMissing)) != 0) return 0;
  const Block block = {pDst, dstStep};
  const Side top = topSide<8>(block, false, (availability & topRightMissing) == 0);
  const Side left = leftSide<8>(block, false, (availability & bottomLeftMissing) == 0);
  // Constant along the anti-diagonals: row y is eight of these from y on.
  u8 diagonal[16];
  simd::store(diagonal, packSaturateU8(simd::shiftRight<1>(top.smoothed(1) + left.smoothed(1)),
                                       simd::shiftRight<1>(top.smoothed(9) + left.smoothed(9))));
  for (int y = 0; y < 8; ++y) std::memcpy(pDst + y * block.step, diagonal + y, 8);
  return 1;
}

s32 AVSIntraPredictionDownRight(u8* pDst, s32 dstStep, s32 availability) {
  if ((availability & (leftMissing | topMissing)) != 0) return 0;
  const Block block = {pDst, dstStep};
  Side edge;  // from the left column's end up to the corner and along the top row
  for (int y = 0; y < 8; ++y) edge.at[7 - y] = block.left(y);
  edge.at[8] = block.corner();
  std::memcpy(edge.at + 9, block.top(), 8);
  std::memset(edge.at + 17, 0, sizeof edge.at - 17);
  u8 diagonal[16];
  simd::store(diagonal, packSaturateU8(edge.smoothed(0), edge.smoothed(8)));
  for (int y = 0; y < 8; ++y) std::memcpy(pDst + y * block.step, diagonal + 7 - y, 8);
  return 1;
}

s32 AVSIntraPredictionPlane(u8* pDst, s32 dstStep, s32 availability) {
  if ((availability & (leftMissing | topMissing)) != 0) return 0;
  const Block block = {pDst, dstStep};
  const Side top = topSide<0>(block, true, false), left = leftSide<0>(block, true, false);
  const auto gradient = [](const Side& side) {
    s32 sum = 0;
    for (int i = 1; i <= 4; ++i) sum += i * (side.at[4 + i] - side.at[4 - i]);
    return (17 * sum + 16) >> 5;
  };
  const s32 b = gradient(top), c = gradient(left), a = 16 * (top.at[8] + left.at[8]);
  // |b| and |c| are at most 1355, so that the sums lie in -10840..19016 and fit 16 bits.
  const auto columns = simd::lanes(std::array<s16, 8>{-3, -2, -1, 0, 1, 2, 3, 4});
  Lanes8 row = mulLow(columns, simd::splat<Lanes8>(s16(b))) + simd::splat<Lanes8>(s16(a - 3 * c + 16));
  for (int y = 0; y < 8; ++y) {
    block.storeRow(y, narrow(simd::shiftRight<5>(row)));
    row = row + simd::splat<Lanes8>(s16(c));
  }
  return 1;
}

s32 AVSIntraPredictionFill(u8* pDst, s32 dstStep, s32) {
  const Block block = {pDst, dstStep};
  for (int y = 0; y < 8; ++y) block.fillRow(y, 128);
  return 1;
}
