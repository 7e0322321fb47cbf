// Rows of 16-bit residual values that are added to rows of samples, with saturation.
#pragma once

#include "mc/half_pel.h"

namespace zvp::mc {

// A residual value for each of the W samples of a row, in their order.
template <int W>
struct Residual {
  Rows<const u8> values;

  ZVP_INLINE void skip(int rows) { values.skip(rows); }
  ZVP_INLINE s32 at(int x, int y) const { return loadAs<s16>(values.row(y) + 2 * x); }
  // A sum of a byte and any 16-bit value that saturates at 32767 saturates at 255 too, so nothing is lost on the way.
  ZVP_INLINE Row addTo(Row samples, int y) const {
    using simd::S16;
    if constexpr (W == 16) {
      return packSaturateU8(addSaturate(widenLow(samples), simd::load<S16<8>>(values.row(y))),
                            addSaturate(widenHigh(samples), simd::load<S16<8>>(values.row(y) + 16)));
    } else {
      const auto sum = addSaturate(widenLow(samples), simd::loadBytes<S16<8>, 2 * W>(values.row(y)));
      return packSaturateU8(sum, sum);
    }
  }
};

// The residual of eight pairs of interleaved chroma, in a plane for each component and with one step.
struct PlanarChromaResidual {
  Rows<const u8> u, v;

  ZVP_INLINE void skip(int rows) {
    u.skip(rows);
    v.skip(rows);
  }
  ZVP_INLINE s32 at(int x, int y) const { return loadAs<s16>((x % 2 == 0 ? u : v).row(y) + x / 2 * 2); }
  ZVP_INLINE Row addTo(Row samples, int y) const {
    const auto us = simd::load<simd::S16<8>>(u.row(y)), vs = simd::load<simd::S16<8>>(v.row(y));
    return packSaturateU8(addSaturate(widenLow(samples), interleaveLow(us, vs)),
                          addSaturate(widenHigh(samples), interleaveHigh(us, vs)));
  }
};

}  // namespace zvp::mc
