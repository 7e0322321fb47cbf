// Forward quantization of 4x4 and DC blocks, and the counts that entropy coders begin with.
//
// A level is the coefficient's magnitude by its factor, rounded up at a third or a sixth of a step, with the sign put
// back. Blocks of 16-bit coefficients go four products to a register; 32-bit ones, whose products take 64 bits, one by
// one.
#pragma once

#include <bit>

#include "h264/transform_kernels.h"
#include "h264/transform_tables.h"

namespace zvp {

struct Quantizer {
  s32 rounding;
  int shift;
};
// A third of a step for intra blocks, a sixth for inter ones.
ZVP_INLINE Quantizer quantizer(int shift, bool isIntra) { return {(1 << shift) / (isIntra ? 3 : 6), shift}; }

// ---- one coefficient -------------------------------------------------------------------------------------------

ZVP_INLINE s64 levelMagnitude(s64 c, s32 factor, Quantizer q) {
  return ((c < 0 ? -c : c) * factor + q.rounding) >> q.shift;
}
ZVP_INLINE s32 level(s32 c, s32 factor, Quantizer q) {
  const s64 magnitude = levelMagnitude(c, factor, q);
  return s32(u32(u64(c < 0 ? -magnitude : magnitude)));
}

// ---- blocks ----------------------------------------------------------------------------------------------------

// Masks of the negative coefficients.
ZVP_INLINE Block4x4 signsOf(Block4x4 c) { return {simd::shiftRight<15>(c.rows01), simd::shiftRight<15>(c.rows23)}; }

// Puts the signs back.
ZVP_INLINE Block4x4 withSigns(Block4x4 magnitudes, Block4x4 signs) {
  return {(magnitudes.rows01 ^ signs.rows01) - signs.rows01, (magnitudes.rows23 ^ signs.rows23) - signs.rows23};
}
ZVP_INLINE Wide4x4 withSigns(Wide4x4 magnitudes, Block4x4 signs) {
  const Wide4x4 wide = widened(signs);
  for (int y = 0; y < 4; ++y) magnitudes.row[y] = (magnitudes.row[y] ^ wide.row[y]) - wide.row[y];
  return magnitudes;
}

// Magnitudes of the levels of 16-bit coefficients. A coefficient's magnitude is unsigned, a factor signed.
ZVP_INLINE Wide4x4 levelMagnitudes(Block4x4 c, Block4x4 signs, Block4x4 factors, Quantizer q) {
  using namespace simd;
  const auto rounding = splat<S32<4>>(q.rounding);
  const auto twoRows = [&](S16<8> rows, S16<8> sign, S16<8> factor, S32<4>& first, S32<4>& second) {
    const auto magnitude = as<U16<8>>((rows ^ sign) - sign);
    const auto unsignedFactor = as<U16<8>>(factor);
    const auto low = mulLow(magnitude, unsignedFactor);
    const auto high = mulHigh(magnitude, unsignedFactor) - (magnitude & as<U16<8>>(shiftRight<15>(factor)));
    first = shiftRight(as<S32<4>>(interleaveLow(low, high)) + rounding, q.shift);
    second = shiftRight(as<S32<4>>(interleaveHigh(low, high)) + rounding, q.shift);
  };
  Wide4x4 r;
  twoRows(c.rows01, signs.rows01, factors.rows01, r.row[0], r.row[1]);
  twoRows(c.rows23, signs.rows23, factors.rows23, r.row[2], r.row[3]);
  return r;
}

template <class Level>
ZVP_INLINE auto levelsOf(Block4x4 c, Block4x4 factors, Quantizer q) {
  const Block4x4 signs = signsOf(c);
  const Wide4x4 magnitudes = levelMagnitudes(c, signs, factors, q);
  if constexpr (sizeof(Level) == 4)
    return withSigns(magnitudes, signs);
  else
    return withSigns(narrowed(magnitudes), signs);
}
template <class Level, class Factor>
ZVP_INLINE Wide4x4 levelsOf(const Wide4x4& c, const Factor* factors, Quantizer q) {
  std::array<s32, 16> levels;
  storeWide4x4(levels.data(), c);
  for (std::size_t i = 0; i < 16; ++i) levels[i] = level(levels[i], loadAs<Factor>(factors + i), q);
  return loadWide4x4(levels.data());
}
template <class Level>
ZVP_INLINE auto levelsOf(Block4x4 c, const s16* factors, Quantizer q) {
  return levelsOf<Level>(c, loadBlock4x4(factors), q);
}

// ---- counts ----------------------------------------------------------------------------------------------------

struct LevelCount {
  s32 nonZero;
  s32 last;  // the largest scan position of a level other than 0, 0 without any
  bool dc;   // whether element 0 is other than 0

  // Required of the members that transform and quantize: a negative count tells of a DC.
  ZVP_INLINE s32 withDcAsSign() const { return dc ? -nonZero : nonZero; }
};

namespace detail {
ZVP_INLINE LevelCount countLevels(simd::S16<8> zero01, simd::S16<8> zero23, const s16* scan) {
  using namespace simd;
  const u32 zeros = signBits(packSaturateS8(zero01, zero23));
  const auto positions = max(andNot(zero01, load<S16<8>>(scan)), andNot(zero23, load<S16<8>>(scan + 8)));
  auto most = max(positions, zero<S16<8>>());
  most = max(most, shuffle32<0x4e>(most));
  most = max(most, shuffle32<0xb1>(most));
  most = max(most, as<S16<8>>(shiftRight<16>(as<U32<4>>(most))));
  const auto ones = packSaturateU8(zero01 + splat<S16<8>>(1), zero23 + splat<S16<8>>(1));
  const auto count = reduceAdd(sumAbsDiff(ones, zero<U8<16>>()));
  return {s32(count), s16(low32(most)), (zeros & 1) == 0};
}
}  // namespace detail

ZVP_INLINE LevelCount countLevels(Block4x4 b, const s16* scan) {
  const auto none = simd::zero<simd::S16<8>>();
  return detail::countLevels(equal(b.rows01, none), equal(b.rows23, none), scan);
}
ZVP_INLINE LevelCount countLevels(const Wide4x4& b, const s16* scan) {
  const auto none = simd::zero<simd::S32<4>>();
  return detail::countLevels(packSaturateS16(equal(b.row[0], none), equal(b.row[1], none)),
                             packSaturateS16(equal(b.row[2], none), equal(b.row[3], none)), scan);
}

// ---- small DC blocks -------------------------------------------------------------------------------------------

// Levels of the transformed DC into dc, counted. False: a magnitude is above the limit; the levels before it are
// written and counted.
template <std::size_t N, class T>
ZVP_INLINE bool quantizeDc(const T* transformed, T* dc, s32 factor, Quantizer q, s64 limit, LevelCount& count) {
  count = {0, 0, false};
  for (std::size_t i = 0; i < N; ++i) {
    const s32 c = loadAs<T>(transformed + i);
    if (levelMagnitude(c, factor, q) > limit) return false;
    const T value = T(level(c, factor, q));
    storeAs(dc + i, value);
    count.nonZero += value != 0;
    if (i == 0) count.dc = value != 0;
  }
  return true;
}

}  // namespace zvp
