// Chroma samples at eighth-sample positions (H.264 8.4.2.2.2): the mean of the four samples around the place, weighted
// by dx and dy.
//
// Case X has a horizontal fraction, case Y a vertical one; without it the neighbour is not read. 8-bit weights work in
// 16-bit lanes: first along the row (at most 8 * 255), then between rows. An interleaved source is the same kernel run
// twice, on the even bytes and on the odd ones. 16-bit samples are taken as signed, 32768 lower, so that pairs of
// products come from one multiplication; as the weights sum to a power of two the result is 32768 lower as well.
#pragma once

#include "h264/interpolate.h"
#include "h264/pieces.h"
#include "simd.h"

namespace zvp::chroma {

using namespace simd;

// How W samples are read as 16-bit lanes, and how far on the next one of the same plane is.
struct Plane {
  static constexpr int next = 1;
  template <int W>
  ZVP_INLINE static S16<8> load(const u8* p) {
    return widenLow(loadBytes<U8<16>, W>(p));
  }
};
struct EvenBytes {
  static constexpr int next = 2;
  template <int W>
  ZVP_INLINE static S16<8> load(const u8* p) {
    return loadBytes<S16<8>, 2 * W>(p) & splat<S16<8>>(255);
  }
};
struct OddBytes {
  static constexpr int next = 2;
  template <int W>
  ZVP_INLINE static S16<8> load(const u8* p) {
    return as<S16<8>>(shiftRight<8>(loadBytes<U16<8>, 2 * W>(p)));
  }
};

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

template <class Source, bool X, bool Y, int W>
ZVP_INLINE void block(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, int height,
                      zvpPoint fraction) {
  const auto here = splat<S16<8>>(s16(8 - fraction.x)), right = splat<S16<8>>(s16(fraction.x));
  const auto upper = splat<S16<8>>(s16(8 - fraction.y)), lower = splat<S16<8>>(s16(fraction.y));
  constexpr int bits = (X ? 3 : 0) + (Y ? 3 : 0);
  const auto half = splat<S16<8>>(bits > 0 ? (1 << bits) >> 1 : 0);
  const auto line = [=](const u8* p) __attribute__((always_inline)) {
    const auto s = Source::template load<W>(p);
    if constexpr (X)
      return mulLow(s, here) + mulLow(Source::template load<W>(p + Source::next), right);
    else
      return s;
  };
  [[maybe_unused]] S16<8> above{};
  if constexpr (Y) above = line(src);
  const auto row = [&](const u8* p) __attribute__((always_inline)) {
    S16<8> sum;
    if constexpr (Y) {
      const auto below = line(p + srcStep);
      sum = mulLow(above, upper) + mulLow(below, lower);
      above = below;
    } else {
      sum = line(p);
    }
    if constexpr (bits > 0) sum = shiftRight<bits>(sum + half);
    return sum;
  };
  for (int y = 0; y < height; y += 2, src += 2 * srcStep, dst += 2 * dstStep) {
    const auto first = row(src);
    storeTwoRows<W>(dst, dstStep, packSaturateU8(first, row(src + srcStep)));
  }
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

template <class Source, bool X, bool Y>
ZVP_INLINE void plane(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size,
                      zvpPoint fraction) {
  const int height = size.height;
  if (height <= 0) return;
  forEachPiece<8, 2>(
      size.width, [=](auto width, int x) __attribute__((always_inline)) {
        block<Source, X, Y, width>(src + x * Source::next, srcStep, dst + x, dstStep, height, fraction);
      });
}

// Slots of the tables. They return zvpStatusOk so that an entry can end in the call of one.
template <bool X, bool Y>
zvpStatus kernel8u(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep, zvpSize size,
                   zvpPoint fraction) {
  plane<Plane, X, Y>(src, srcStep, dst, dstStep, size, fraction);
  return zvpStatusOk;
}
template <bool X, bool Y>
zvpStatus kernelPairs8u(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV, std::ptrdiff_t dstStep, zvpSize size,
                        zvpPoint fraction) {
  plane<EvenBytes, X, Y>(src, srcStep, dstU, dstStep, size, fraction);
  plane<OddBytes, X, Y>(src, srcStep, dstV, dstStep, size, fraction);
  return zvpStatusOk;
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
