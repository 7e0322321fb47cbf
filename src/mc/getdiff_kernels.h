// Differences between a current block and a prediction from one reference, or the average of two: the encoder's side of
// motion compensation. A kernel has its shape, its layout and the half-pel case of each reference fixed; roundControl
// reaches it whole, 0 and 1 being the values that pictures use.
#pragma once

#include "mc/half_pel.h"

namespace zvp::mc {

using MePKernel = zvpStatus (*)(Rows<const u8> ref, Rows<const u8> cur, Rows<u8> difference, Rows<u8> predictor,
                                s32 roundControl);
using MeBKernel = zvpStatus (*)(Rows<const u8> forward, Rows<const u8> backward, Rows<const u8> cur,
                                Rows<u8> difference, s32 roundControl);
using MePNv12Kernel = zvpStatus (*)(Rows<const u8> ref, Rows<const u8> cur, Rows<u8> differenceU, Rows<u8> differenceV,
                                    s32 roundControl);
using MeBNv12Kernel = zvpStatus (*)(Rows<const u8> forward, Rows<const u8> backward, Rows<const u8> cur,
                                    Rows<u8> differenceU, Rows<u8> differenceV, s32 roundControl);

// ---- where differences go: put() takes a row, putSample() one sample; both know the prediction ------------------

// Stores W samples of a row as 16-bit values, and the differences of two such rows.
template <int W>
ZVP_INLINE void storeWidened(u8* p, Row row) {
  if constexpr (W == 16) {
    simd::store(p, widenLow(row));
    simd::store(p + 16, widenHigh(row));
  } else {
    simd::storeBytes<2 * W>(p, widenLow(row));
  }
}
template <int W>
ZVP_INLINE void storeDifference(u8* p, Row a, Row b) {
  if constexpr (W == 16) {
    simd::store(p, widenLow(a) - widenLow(b));
    simd::store(p + 16, widenHigh(a) - widenHigh(b));
  } else {
    simd::storeBytes<2 * W>(p, widenLow(a) - widenLow(b));
  }
}

template <int W>
struct Difference {
  Rows<u8> difference;

  ZVP_INLINE void skip(int rows) { difference.skip(rows); }
  ZVP_INLINE void put(int y, Row cur, Row p) const { storeDifference<W>(difference.row(y), cur, p); }
  ZVP_INLINE void putSample(int x, int y, s32 value, s32) const { storeAs(difference.row(y) + 2 * x, s16(value)); }
};

template <int W>
struct DifferenceAndPredictor {
  Rows<u8> difference, predictor;

  ZVP_INLINE void skip(int rows) {
    difference.skip(rows);
    predictor.skip(rows);
  }
  ZVP_INLINE void put(int y, Row cur, Row p) const {
    storeDifference<W>(difference.row(y), cur, p);
    storeWidened<W>(predictor.row(y), p);
  }
  ZVP_INLINE void putSample(int x, int y, s32 value, s32 p) const {
    storeAs(difference.row(y) + 2 * x, s16(value));
    storeAs(predictor.row(y) + 2 * x, s16(p));
  }
};

// Eight pairs of interleaved chroma, to a plane for each component.
struct PlanarChromaDifference {
  Rows<u8> u, v;

  ZVP_INLINE void skip(int rows) {
    u.skip(rows);
    v.skip(rows);
  }
  ZVP_INLINE void put(int y, Row cur, Row p) const {
    using simd::U16;
    const auto low = simd::splat<U16<8>>(255), cur16 = simd::as<U16<8>>(cur), p16 = simd::as<U16<8>>(p);
    simd::store(u.row(y), (cur16 & low) - (p16 & low));
    simd::store(v.row(y), simd::shiftRight<8>(cur16) - simd::shiftRight<8>(p16));
  }
  ZVP_INLINE void putSample(int x, int y, s32 value, s32) const {
    storeAs((x % 2 == 0 ? u : v).row(y) + x / 2 * 2, s16(value));
  }
};

// ---- kernels --------------------------------------------------------------------------------------------------------

// difference = cur - p.
template <int W, int H>
ZVP_INLINE zvpStatus subtract(auto p, Rows<const u8> cur, auto out) {
  const auto row = [&](int y) __attribute__((always_inline)) {
    out.put(y, simd::loadBytes<Row, W>(cur.row(y)), p.row(y));
  };
  forRowsInGroupsOf<2>(H, row, p, cur, out);
  return zvpStatusOk;
}

// The same sample by sample, for any roundControl.
template <int W, int Channels>
[[gnu::noinline]] zvpStatus subtractAnyRounding(HalfPel c, Rows<const u8> ref, Rows<const u8> cur, auto out, int height,
                                                s32 roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < W; ++x) {
      const s32 p = predictSample(c, ref, x, y, Channels, roundControl);
      out.putSample(x, y, cur.row(y)[x] - p, p);
    }
  return zvpStatusOk;
}
template <int W, int Channels>
[[gnu::noinline]] zvpStatus subtractAnyRounding(HalfPel caseF, Rows<const u8> forward, HalfPel caseB,
                                                Rows<const u8> backward, Rows<const u8> cur, auto out, int height,
                                                s32 roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < W; ++x) {
      const s32 pF = predictSample(caseF, forward, x, y, Channels, roundControl);
      const s32 pB = predictSample(caseB, backward, x, y, Channels, roundControl);
      out.putSample(x, y, wrapSub(wrapSub(2 * cur.row(y)[x], pF), pB) >> 1, 0);
    }
  return zvpStatusOk;
}

template <int W, int H, int Channels, HalfPel C>
ZVP_INLINE zvpStatus subtractOne(Rows<const u8> ref, Rows<const u8> cur, auto out, s32 roundControl) {
  const auto use = [&](auto p) __attribute__((always_inline)) { return subtract<W, H>(p, cur, out); };
  return withPrediction<W, Channels, C>(
      ref, roundControl, use, [&] { return subtractAnyRounding<W, Channels>(C, ref, cur, out, H, roundControl); });
}
// (2 * cur - pF - pB) >> 1 is cur less the average, rounded up, of the predictions.
template <int W, int H, int Channels, HalfPel F, HalfPel B>
ZVP_INLINE zvpStatus subtractTwo(Rows<const u8> forward, Rows<const u8> backward, Rows<const u8> cur, auto out,
                                 s32 roundControl) {
  const auto use = [&](auto p) __attribute__((always_inline)) { return subtract<W, H>(p, cur, out); };
  return withPrediction<W, Channels, F, B>(forward, backward, roundControl, use, [&] {
    return subtractAnyRounding<W, Channels>(F, forward, B, backward, cur, out, H, roundControl);
  });
}

// One reference. A predictor that starts at null is not written.
template <int W, int H, HalfPel C>
zvpStatus mePBlock(Rows<const u8> ref, Rows<const u8> cur, Rows<u8> difference, Rows<u8> predictor, s32 roundControl) {
  if (predictor.row(0) == nullptr) return subtractOne<W, H, 1, C>(ref, cur, Difference<W>{difference}, roundControl);
  return subtractOne<W, H, 1, C>(ref, cur, DifferenceAndPredictor<W>{difference, predictor}, roundControl);
}
// Two references.
template <int W, int H, HalfPel F, HalfPel B>
zvpStatus meBBlock(Rows<const u8> forward, Rows<const u8> backward, Rows<const u8> cur, Rows<u8> difference,
                   s32 roundControl) {
  return subtractTwo<W, H, 1, F, B>(forward, backward, cur, Difference<W>{difference}, roundControl);
}
// Eight pairs of interleaved chroma from one reference, and from two.
template <int H, HalfPel C>
zvpStatus mePNv12Block(Rows<const u8> ref, Rows<const u8> cur, Rows<u8> differenceU, Rows<u8> differenceV,
                       s32 roundControl) {
  return subtractOne<16, H, 2, C>(ref, cur, PlanarChromaDifference{differenceU, differenceV}, roundControl);
}
template <int H, HalfPel F, HalfPel B>
zvpStatus meBNv12Block(Rows<const u8> forward, Rows<const u8> backward, Rows<const u8> cur, Rows<u8> differenceU,
                       Rows<u8> differenceV, s32 roundControl) {
  return subtractTwo<16, H, 2, F, B>(forward, backward, cur, PlanarChromaDifference{differenceU, differenceV},
                                     roundControl);
}

}  // namespace zvp::mc
