// Chroma samples at eighth-sample positions (H.264 8.4.2.2.2): the mean of the four samples around the place, weighted
// by dx and dy.
//
// Case X has a horizontal fraction, case Y a vertical one; without it the neighbour is not read. 8-bit weights work in
// 16-bit lanes: first along the row (at most 8 * 255), then between rows. An interleaved source is the same kernel run
// twice, on the even bytes and on the odd ones. 16-bit samples are taken as signed, 32768 lower, so that pairs of
// products come from one multiplication; as the weights sum to a power of two the result is 32768 lower as well.
#pragma once

#include "copy_rows.h"
#include "h264/interpolate.h"
#include "h264/pieces.h"
#include "simd.h"

namespace zvp::chroma {

using namespace simd;

// Two rows of W samples from the halves of a register.
template <int W>
ZVP_INLINE void storeTwoRows(u8* dst, std::ptrdiff_t step, U8<16> rows) {
  if constexpr (W == 8) {
    storeRows<8>(dst, step, rows);
  } else {
    storeBytes<W>(dst, rows);
    storeBytes<W>(dst + step, shiftBytesDown<8>(rows));
  }
}

// The two weighings, along the row and between rows, and the rounding behind them.
template <bool X, bool Y>
struct Weights {
  static constexpr int bits = (X ? 3 : 0) + (Y ? 3 : 0);
  S16<8> here, right, upper, lower;

  ZVP_INLINE explicit Weights(zvpPoint fraction)
      : here(splat<S16<8>>(s16(8 - fraction.x))),
        right(splat<S16<8>>(s16(fraction.x))),
        upper(splat<S16<8>>(s16(8 - fraction.y))),
        lower(splat<S16<8>>(s16(fraction.y))) {}
  // next() is asked for where there is a horizontal fraction.
  ZVP_INLINE S16<8> alongRow(S16<8> samples, auto next) const {
    if constexpr (X)
      return mulLow(samples, here) + mulLow(next(), right);
    else
      return samples;
  }
  ZVP_INLINE S16<8> between(S16<8> above, [[maybe_unused]] S16<8> below) const {
    auto sum = above;
    if constexpr (Y) sum = mulLow(above, upper) + mulLow(below, lower);
    if constexpr (bits > 0) sum = shiftRight<bits>(sum + splat<S16<8>>((1 << bits) >> 1));
    return sum;
  }
};

template <bool X, bool Y, int W>
ZVP_INLINE void block(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height,
                      zvpPoint fraction) {
  const Weights<X, Y> weights(fraction);
  const auto load = [](const u8* p) __attribute__((always_inline)) { return widenLow(loadBytes<U8<16>, W>(p)); };
  const auto line = [&](const u8* p) __attribute__((always_inline)) {
    return weights.alongRow(load(p), [=]() __attribute__((always_inline)) { return load(p + 1); });
  };
  S16<8> here{};
  if constexpr (Y) here = line(src);
  const auto row = [&](const u8* p) __attribute__((always_inline)) {
    if constexpr (!Y) return weights.between(line(p), here);
    const auto above = here;
    here = line(p + srcStep);
    return weights.between(above, here);
  };
  do {
    const auto first = row(src);
    storeTwoRows<W>(dst, dstStep, packSaturateU8(first, row(src + srcStep)));
    src += 2 * srcStep;
    dst += 2 * dstStep;
  } while ((height -= 2) != 0);
}

// Interleaved samples to two planes.
template <bool X, bool Y, int W>
ZVP_INLINE void pairsBlock(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV, std::ptrdiff_t dstStep,
                           int height, zvpPoint fraction) {
  const Weights<X, Y> weights(fraction);
  // Eight pairs: a row, or two where they are short. U stands in the even bytes, V in the odd ones.
  constexpr int rows = W == 8 ? 1 : 2;
  const auto load = [=](const u8* p) __attribute__((always_inline)) {
    if constexpr (W == 8)
      return simd::load<U16<8>>(p);
    else if constexpr (W == 4)
      return load8x2<U16<8>>(p, p + srcStep);
    else
      return as<U16<8>>(interleaveLow(loadBytes<U32<4>, 4>(p), loadBytes<U32<4>, 4>(p + srcStep)));
  };
  struct Lines {
    S16<8> u, v;
  };
  const auto lines = [&](const u8* p) __attribute__((always_inline)) {
    const auto samples = load(p);
    U16<8> next{};
    if constexpr (X) next = load(p + 2);
    const auto u = [](U16<8> pairs) __attribute__((always_inline)) { return as<S16<8>>(pairs & splat<U16<8>>(255)); };
    const auto v = [](U16<8> pairs) __attribute__((always_inline)) { return as<S16<8>>(shiftRight<8>(pairs)); };
    return Lines{weights.alongRow(u(samples), [=]() __attribute__((always_inline)) { return u(next); }),
                 weights.alongRow(v(samples), [=]() __attribute__((always_inline)) { return v(next); })};
  };
  Lines here{};
  if constexpr (Y && rows == 1) here = lines(src);
  const auto result = [&](const u8* p) __attribute__((always_inline)) {
    Lines above = here;
    if constexpr (!Y || rows == 2) above = lines(p);
    if constexpr (Y) here = lines(p + srcStep);
    return Lines{weights.between(above.u, here.u), weights.between(above.v, here.v)};
  };
  do {
    const auto first = result(src);
    if constexpr (rows == 1) {
      const auto second = result(src + srcStep);
      storeRows<8>(dstU, dstStep, packSaturateU8(first.u, second.u));
      storeRows<8>(dstV, dstStep, packSaturateU8(first.v, second.v));
    } else {
      const auto both = packSaturateU8(first.u, first.v);
      storeBytes<W>(dstU, both);
      storeBytes<W>(dstU + dstStep, shiftBytesDown<W>(both));
      storeBytes<W>(dstV, shiftBytesDown<8>(both));
      storeBytes<W>(dstV + dstStep, shiftBytesDown<8 + W>(both));
    }
    src += 2 * srcStep;
    dstU += 2 * dstStep;
    dstV += 2 * dstStep;
  } while ((height -= 2) != 0);
}

template <bool X, bool Y, int W>
ZVP_INLINE void block(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, int height,
                      zvpPoint fraction) {
  constexpr int bytes = 2 * W;
  if constexpr (!X && !Y) {
    for (int y = 0; y < height; ++y, src += srcStep, dst += dstStep)
      storeBytes<bytes>(dst, loadBytes<U16<8>, bytes>(src));
  } else {
    const auto bias = splat<S16<8>>(-32768);
    const auto load = [=](const u16* p) __attribute__((always_inline)) { return loadBytes<S16<8>, bytes>(p) ^ bias; };
    // Two weights side by side, for a sample and its neighbour.
    const auto weights = [](s32 first, s32 second) { return as<S16<8>>(splat<S32<4>>(first | second << 16)); };
    const s32 left = 8 - fraction.x, right = fraction.x, top = 8 - fraction.y, bottom = fraction.y;
    const auto upper = X && Y ? weights(left * top, right * top) : X ? weights(left, right) : weights(top, bottom);
    const auto lower = weights(left * bottom, right * bottom);
    constexpr int bits = X && Y ? 6 : 3;
    const auto half = splat<S32<4>>((1 << bits) >> 1);
    // The row with its right neighbours (X) or with the row below (Y alone), interleaved.
    struct Pairs {
      S16<8> low, high;
    };
    const auto pairs = [=](const u16* p) __attribute__((always_inline)) {
      const auto s = load(p), other = load(X ? p + 1 : p + srcStep);
      return Pairs{interleaveLow(s, other), interleaveHigh(s, other)};
    };
    [[maybe_unused]] Pairs above{};
    if constexpr (X && Y) above = pairs(src);
    for (int y = 0; y < height; ++y, src += srcStep, dst += dstStep) {
      S32<4> low, high;
      if constexpr (X && Y) {
        const auto below = pairs(src + srcStep);
        low = mulAddPairs(above.low, upper) + mulAddPairs(below.low, lower);
        high = mulAddPairs(above.high, upper) + mulAddPairs(below.high, lower);
        above = below;
      } else {
        const auto p = pairs(src);
        low = mulAddPairs(p.low, upper);
        high = mulAddPairs(p.high, upper);
      }
      const auto result = packSaturateS16(shiftRight<bits>(low + half), shiftRight<bits>(high + half)) ^ bias;
      storeBytes<bytes>(dst, result);
    }
  }
}

// Slots of the tables, and what they come down to at one width. All return zvpStatusOk so that an entry can end in the
// call of one.

template <int W, bool X, bool Y>
[[gnu::noinline]] zvpStatus filtered(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height,
                                     zvpPoint fraction) {
  block<X, Y, W>(src, srcStep, dst, dstStep, height, fraction);
  return zvpStatusOk;
}
template <int W, bool X, bool Y>
ZVP_INLINE zvpStatus columns(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height,
                             zvpPoint fraction) {
  if constexpr (X || Y) return filtered<W, X, Y>(src, srcStep, dst, dstStep, height, fraction);
  copyBlockRows<W, 2>(src, srcStep, dst, dstStep, height);
  return zvpStatusOk;
}
template <bool X, bool Y>
[[gnu::noinline]] zvpStatus pieces(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size,
                                   zvpPoint fraction) {
  forEachPiece<8, 2>(size.width, [=](auto width, int x) {
    columns<width, X, Y>(src + x, srcStep, dst + x, dstStep, size.height, fraction);
  });
  return zvpStatusOk;
}
template <bool X, bool Y>
zvpStatus kernel8u(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size,
                   zvpPoint fraction) {
  const int height = size.height;
  if (height <= 0) return zvpStatusOk;
  if (size.width == 8) return columns<8, X, Y>(src, srcStep, dst, dstStep, height, fraction);
  if (size.width == 4) return columns<4, X, Y>(src, srcStep, dst, dstStep, height, fraction);
  if (size.width == 2) return columns<2, X, Y>(src, srcStep, dst, dstStep, height, fraction);
  return pieces<X, Y>(src, srcStep, dst, dstStep, size, fraction);
}

template <int W, bool X, bool Y>
[[gnu::noinline]] zvpStatus pairsColumns(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV,
                                         std::ptrdiff_t dstStep, zvpSize size, zvpPoint fraction) {
  pairsBlock<X, Y, W>(src, srcStep, dstU, dstV, dstStep, size.height, fraction);
  return zvpStatusOk;
}
template <bool X, bool Y>
[[gnu::noinline]] zvpStatus pairsPieces(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV,
                                        std::ptrdiff_t dstStep, zvpSize size, zvpPoint fraction) {
  forEachPiece<8, 2>(size.width, [=](auto width, int x) {
    pairsColumns<width, X, Y>(src + 2 * x, srcStep, dstU + x, dstV + x, dstStep, size, fraction);
  });
  return zvpStatusOk;
}
template <bool X, bool Y>
zvpStatus kernelPairs8u(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV, std::ptrdiff_t dstStep, zvpSize size,
                        zvpPoint fraction) {
  if (size.height <= 0) return zvpStatusOk;
  if (size.width == 8) return pairsColumns<8, X, Y>(src, srcStep, dstU, dstV, dstStep, size, fraction);
  if (size.width == 4) return pairsColumns<4, X, Y>(src, srcStep, dstU, dstV, dstStep, size, fraction);
  return pairsPieces<X, Y>(src, srcStep, dstU, dstV, dstStep, size, fraction);
}
template <bool X, bool Y>
zvpStatus kernel16u(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep, zvpSize size,
                    zvpPoint fraction) {
  const int height = size.height;
  if (height <= 0) return zvpStatusOk;
  // A step below the width makes rows overlap in the destination: then each is finished before the next.
  const int band = dstStep > -size.width && dstStep < size.width ? 1 : height;
  for (int y = 0; y < height; y += band, src += band * srcStep, dst += band * dstStep)
    forEachPiece<8, 2>(
        size.width, [=](auto width, int x) __attribute__((always_inline)) {
          block<X, Y, width>(src + x, srcStep, dst + x, dstStep, band, fraction);
        });
  return zvpStatusOk;
}

}  // namespace zvp::chroma
