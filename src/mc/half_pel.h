// Half-pel prediction, a row of W samples at a time: the ground on which the copies, the blocks with a residual and the
// differences of this folder stand (ISO/IEC 13818-2 7.6.4, ISO/IEC 14496-2 7.6.2.1).
//
// With a the sample at a position, b its right neighbour, c the one below and d the one below b, the cases are a,
// (a + c + 1 - rc) >> 1, (a + b + 1 - rc) >> 1 and (a + b + c + d + 2 - rc) >> 2. A block at W samples by H rows reads
// just those: a row more where the case is half in y, a neighbour more where it is half in x.
#pragma once

#include <array>
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
  ZVP_INLINE std::ptrdiff_t step() const { return step_; }

 private:
  Byte* top_;
  std::ptrdiff_t step_;
};
// Rows of 16-bit values: steps count bytes and may be odd, so they are rows of bytes.
ZVP_INLINE Rows<const u8> rowsOf(const s16* top, std::ptrdiff_t step) {
  return {reinterpret_cast<const u8*>(top), step};
}
ZVP_INLINE Rows<u8> rowsOf(s16* top, std::ptrdiff_t step) { return {reinterpret_cast<u8*>(top), step}; }

// The rows of a prediction, each asked for once, from the top. Channels is the distance of the right neighbour: 2 for
// interleaved chroma. What a row shares with the next one is computed once.
template <int W, HalfPel C, Rounding R = Rounding::up, int Channels = 1>
class Prediction {
 public:
  ZVP_INLINE explicit Prediction(Rows<const u8> ref) : ref_(ref) {
    if constexpr (halfInY(C)) {
      above_ = across(ref_.row(0));
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

// One sample, with the whole value of a roundControl that need not be 0 or 1: the sums wrap and the division truncates
// toward zero.
inline s32 predictSample(HalfPel c, Rows<const u8> ref, int x, int y, int channels, s32 roundControl) {
  const u8* a = ref.row(y) + x;
  const std::ptrdiff_t step = ref.step();
  switch (c) {
    case HalfPel::ff:
      return *a;
    case HalfPel::fh:
      return wrapSub(a[0] + a[step] + 1, roundControl) / 2;
    case HalfPel::hf:
      return wrapSub(a[0] + a[channels] + 1, roundControl) / 2;
    default:
      return wrapSub(a[0] + a[channels] + a[step] + a[step + channels] + 2, roundControl) / 4;
  }
}

// Calls use(prediction) for one reference, or two, and for the rounding that roundControl asks. It is looked at once a
// block, and at whole-pel positions has no say. Values other than 0 and 1, which no picture uses, lead to useAny().
template <int W, int Channels, HalfPel C>
ZVP_INLINE zvpStatus withPrediction(Rows<const u8> ref, s32 roundControl, auto use, auto useAny) {
  if constexpr (C != HalfPel::ff) {
    if (roundControl == 1) return use(Prediction<W, C, Rounding::down, Channels>(ref));
    if (roundControl != 0) return useAny();
  }
  return use(Prediction<W, C, Rounding::up, Channels>(ref));
}
template <int W, int Channels, HalfPel F, HalfPel B>
ZVP_INLINE zvpStatus withPrediction(Rows<const u8> forward, Rows<const u8> backward, s32 roundControl, auto use,
                                    auto useAny) {
  const auto rounded = [&]<Rounding R>() __attribute__((always_inline)) {
    return use(AveragedPrediction{Prediction<W, F, R, Channels>(forward), Prediction<W, B, R, Channels>(backward)});
  };
  if constexpr (F != HalfPel::ff || B != HalfPel::ff) {
    if (roundControl == 1) return rounded.template operator()<Rounding::down>();
    if (roundControl != 0) return useAny();
  }
  return rounded.template operator()<Rounding::up>();
}

// Calls body(y) for Group rows, written out, and moves the blocks behind them.
template <int Group, class Body, class... Blocks>
ZVP_INLINE void writeOutRows(Body& body, Blocks&... blocks) {
  [&]<int... Y>(std::integer_sequence<int, Y...>) __attribute__((always_inline)) { (body(Y), ...); }
  (std::make_integer_sequence<int, Group>());
  (blocks.skip(Group), ...);
}
// Calls body(y) for height rows in groups of Group; y counts from the group's start, to which the blocks are moved.
template <int Group, class Body, class... Blocks>
ZVP_INLINE void forRowsInGroupsOf(int height, Body body, Blocks&... blocks) {
  for (; height > 0; height -= Group) writeOutRows<Group>(body, blocks...);
}
// The same for a fixed number of rows. Up to eight stand in a row, without a loop.
template <int Height, class Body, class... Blocks>
ZVP_INLINE void forRows(Body body, Blocks&... blocks) {
  constexpr int group = Height < 4 ? Height : 4;
  static_assert(Height % group == 0);
  if constexpr (Height <= 8) {
    writeOutRows<group>(body, blocks...);
    if constexpr (Height > group) writeOutRows<group>(body, blocks...);
  } else {
    for (int y = 0; y < Height; y += group) writeOutRows<group>(body, blocks...);
  }
}

// The table whose slot is kernelOf.template operator()<slot>().
template <class Kernel, int Slots>
consteval std::array<Kernel, Slots> makeTable(auto kernelOf) {
  return [&]<int... Slot>(std::integer_sequence<int, Slot...>) {
    return std::array<Kernel, Slots>{kernelOf.template operator()<Slot>()...};
  }
  (std::make_integer_sequence<int, Slots>());
}

}  // namespace zvp::mc
