// Half-pel prediction, a row of W samples at a time: the ground on which the copies, the blocks with a residual and the
// differences of this folder stand (ISO/IEC 13818-2 7.6.4, ISO/IEC 14496-2 7.6.2.1).
//
// With a the sample at a position, b its right neighbour, c the one below and d the one below b, the cases are a,
// (a + c + 1 - rc) >> 1, (a + b + 1 - rc) >> 1 and (a + b + c + d + 2 - rc) >> 2. A block at W samples by H rows reads
// just those: a row more where the case is half in y, a neighbour more where it is half in x.
#pragma once

#include <utility>

#include "simd.h"
#include "types.h"

namespace zvp::mc {

// Full or half: the first letter for x, the second for y. In the order of bits 2 and 3 of a motion type.
enum class HalfPel { ff, fh, hf, hh };
inline constexpr bool halfInX(HalfPel c) { return c == HalfPel::hf || c == HalfPel::hh; }
inline constexpr bool halfInY(HalfPel c) { return c == HalfPel::fh || c == HalfPel::hh; }

// Which way the mean of a half-pel position is rounded: up is rc 0, down rc 1.
enum class Rounding { up, down };

// One row of samples; a row of fewer than 16 stands in the low lanes.
using Row = simd::U8<16>;

// (a + b + c + d + 2) >> 2, or + 1 with Rounding::down, of ab = average(a, b), cd = average(c, d) and the bits in which
// each pair differs. The average of the averages ends one too high in the cases that the low bits tell.
template <Rounding R>
ZVP_INLINE Row averageOfFour(Row ab, Row abDiffers, Row cd, Row cdDiffers) {
  const Row odd = R == Rounding::up ? (abDiffers | cdDiffers) & (ab ^ cd) : (abDiffers & cdDiffers) | (ab ^ cd);
  return average(ab, cd) - (odd & simd::splat<Row>(1));
}

// The rows of a block: row(y) counts from the place that skip() moves.
template <class Byte>
class Rows {
 public:
  ZVP_INLINE Rows(Byte* top, std::ptrdiff_t step) : top_(top), step_(step) {}
  ZVP_INLINE Byte* row(int y) const { return top_ + y * step_; }
  ZVP_INLINE void skip(int rows) { top_ += rows * step_; }

 private:
  Byte* top_;
  std::ptrdiff_t step_;
};

// The rows of a prediction, each asked for once, from the top. Channels is the distance of the right neighbour: 2 for
// interleaved chroma. What a row shares with the next one is computed once.
template <int W, HalfPel C, Rounding R = Rounding::up, int Channels = 1>
class Prediction {
 public:
  ZVP_INLINE Prediction(const u8* ref, std::ptrdiff_t step) : ref_(ref, step) {
    if constexpr (halfInY(C)) {
      above_ = across(ref);
      ref_.skip(1);
    }
  }
  ZVP_INLINE void skip(int rows) { ref_.skip(rows); }
  ZVP_INLINE Row row(int y) {
    const Across here = across(ref_.row(y));
    if constexpr (C == HalfPel::ff) {
      return here.row;
    } else if constexpr (C == HalfPel::hf) {
      return complementIfDown(here.row);
    } else {
      const Across above = std::exchange(above_, here);
      if constexpr (C == HalfPel::fh)
        return complementIfDown(average(above.row, here.row));
      else
        return averageOfFour<R>(above.row, above.differs, here.row, here.differs);
    }
  }

 private:
  // A row of the reference, or the average of it and its right neighbours with the bits in which the two differ.
  struct Across {
    Row row = {}, differs = {};
  };
  // (a + b) >> 1 is the complement of the rounded-up average of the complements.
  ZVP_INLINE static Row complementIfDown(Row row) {
    if constexpr (R == Rounding::down)
      return row ^ simd::splat<Row>(255);
    else
      return row;
  }
  ZVP_INLINE static Row load(const u8* p) { return simd::loadBytes<Row, W>(p); }
  ZVP_INLINE static Across across(const u8* p) {
    const Row a = load(p);
    if constexpr (!halfInX(C)) return Across{.row = C == HalfPel::fh ? complementIfDown(a) : a};
    const Row b = load(p + Channels);
    if constexpr (C == HalfPel::hh)
      return Across{.row = average(a, b), .differs = a ^ b};
    else
      return Across{.row = average(complementIfDown(a), complementIfDown(b))};
  }

  Rows<const u8> ref_;
  Across above_;
};

// The rows of two predictions averaged, rounded up.
template <class Forward, class Backward>
class AveragedPrediction {
 public:
  ZVP_INLINE AveragedPrediction(Forward forward, Backward backward) : forward_(forward), backward_(backward) {}
  ZVP_INLINE Row row(int y) { return average(forward_.row(y), backward_.row(y)); }
  ZVP_INLINE void skip(int rows) {
    forward_.skip(rows);
    backward_.skip(rows);
  }

 private:
  Forward forward_;
  Backward backward_;
};

// Calls body(y) for Height rows, in groups of at most four that are written out; y counts from the group's start, to
// which the blocks are moved. Up to two groups stand in a row, more make a loop.
template <int Height, class Body, class... Blocks>
ZVP_INLINE void forRows(Body body, Blocks&... blocks) {
  constexpr int group = Height < 4 ? Height : 4, groups = Height / group;
  static_assert(Height % group == 0);
  const auto writtenOut = [&]<int... Y>(std::integer_sequence<int, Y...>) __attribute__((always_inline)) {
    (body(Y), ...);
    (blocks.skip(group), ...);
  };
  constexpr std::make_integer_sequence<int, group> ys;
  if constexpr (groups > 2) {
    for (int i = 0; i < groups; ++i) writtenOut(ys);
  } else {
    writtenOut(ys);
    if constexpr (groups == 2) writtenOut(ys);
  }
}

}  // namespace zvp::mc
