// Storing DV macroblocks to packed 4:2:2. All members are one rule: blocks of 8x8, 4x4, 2x2 or 1x1 samples are laid out
// by a geometry, which tells where the luma blocks stand and which pixels a chroma sample serves. Reduced sizes make
// smaller blocks first; nothing else differs but the chroma of 4:1:1 at full size, which is interpolated.
#pragma once

#include <array>

#include "dv/reduce.h"
#include "simd.h"

namespace zvp::dv {

// A macroblock: offsets of its blocks in elements, the luma blocks row by row, and the pixels of a chroma sample.
struct Geometry {
  int columns, rows;  // of luma blocks
  std::array<int, 4> luma;
  int cr, cb;
  int pairsPerSample;  // pixel pairs side by side
  int rowsPerSample;
  bool chromaInHalves;  // the left half of a chroma block belongs to the upper luma blocks, the right to the lower
};
inline constexpr Geometry mb422 = {2, 1, {0, 128}, 256, 320, 1, 1, false};
inline constexpr Geometry mb411 = {4, 1, {0, 64, 128, 192}, 256, 320, 2, 1, false};
inline constexpr Geometry mb411Edge = {2, 2, {0, 64, 128, 192}, 256, 320, 2, 1, true};
inline constexpr Geometry mb420 = {2, 2, {0, 64, 128, 192}, 256, 320, 1, 2, false};
inline constexpr Geometry evenHalfDV100 = {2, 1, {0, 64}, 256, 384, 1, 1, false};
inline constexpr Geometry oddHalfDV100 = {2, 1, {128, 192}, 320, 448, 1, 1, false};
inline constexpr int macroblockElements = 384, pairOfHalvesElements = 512;

using Samples = simd::S16<8>;
using Bytes = simd::U8<16>;

// Sample v becomes v + 128 clipped to 0..255.
ZVP_INLINE Bytes toBytes(Samples a, Samples b) {
  return simd::as<Bytes>(packSaturateS8(a, b)) ^ simd::splat<Bytes>(128);
}

// The low Size bytes of a, those of b behind them.
template <int Size>
ZVP_INLINE Samples beside(Samples a, Samples b) {
  using Unit = std::conditional_t<Size == 2, simd::U16<8>, std::conditional_t<Size == 4, simd::U32<4>, simd::U64<2>>>;
  return simd::as<Samples>(interleaveLow(simd::as<Unit>(a), simd::as<Unit>(b)));
}

// A row of luma of the macroblock, 16 bytes a register; from the row's place in its block, at Size samples a row.
template <Geometry G, int Size, std::size_t Registers>
ZVP_INLINE std::array<Bytes, Registers> lumaRow(const s16* src, int blockRow, int row) {
  const auto part = [=](int column) {
    return simd::loadBytes<Samples, 2 * Size>(src + G.luma[std::size_t(blockRow * G.columns + column)] + row * Size);
  };
  std::array<Bytes, Registers> bytes;
  if constexpr (Size == 8) {
    for (int i = 0; i < int(Registers); ++i) bytes[std::size_t(i)] = toBytes(part(2 * i), part(2 * i + 1));
  } else {
    auto left = beside<2 * Size>(part(0), part(1)), right = left;
    if constexpr (G.columns == 4) {
      right = beside<2 * Size>(part(2), part(3));
      if constexpr (Size < 4) left = beside<4 * Size>(left, right);
    }
    bytes[0] = toBytes(left, right);
  }
  return bytes;
}

// (c[k] + c[k + 1]) / 2 toward zero for the first Count samples, the last of which counts twice.
template <int Count>
ZVP_INLINE Samples between(Samples c) {
  std::array<s16, 8> last{};
  last[Count - 1] = -1;
  const auto next = select(simd::lanes(last), c, simd::shiftBytesDown<2>(c));
  const auto odd = (c ^ next) & simd::splat<Samples>(1), floor = (c & next) + simd::shiftRight<1>(c ^ next);
  return floor + (odd & simd::shiftRight<15>(floor));
}

// The Cb, Cr pairs of one row of chroma samples, repeated or interpolated to the row's pixel pairs.
template <Geometry G, int Size, std::size_t Registers>
ZVP_INLINE std::array<Bytes, Registers> chromaRow(const s16* src, int half, int row) {
  constexpr int count = G.chromaInHalves && Size > 1 ? Size / 2 : Size;
  const int at = row * Size + half * (Size / 2);
  const auto cb = simd::loadBytes<Samples, 2 * count>(src + G.cb + at);
  const auto cr = simd::loadBytes<Samples, 2 * count>(src + G.cr + at);
  const auto pairs = [](Samples b, Samples r) { return toBytes(interleaveLow(b, r), interleaveHigh(b, r)); };
  if constexpr (G.pairsPerSample == 1) {
    return {pairs(cb, cr)};
  } else if constexpr (Size < 8) {
    const auto once = simd::as<simd::U16<8>>(pairs(cb, cr));
    return {simd::as<Bytes>(interleaveLow(once, once))};
  } else {
    const auto cbBetween = between<count>(cb), crBetween = between<count>(cr);
    std::array<Bytes, Registers> row16;
    row16[0] = pairs(interleaveLow(cb, cbBetween), interleaveLow(cr, crBetween));
    if constexpr (Registers == 2) row16[1] = pairs(interleaveHigh(cb, cbBetween), interleaveHigh(cr, crBetween));
    return row16;
  }
}

// From blocks of Size x Size samples without gaps between their rows.
template <Geometry G, int Size>
void layOut(const s16* src, u8* dst, std::ptrdiff_t step) {
  constexpr int width = G.columns * Size, chromaRows = G.rows * Size / G.rowsPerSample;
  constexpr std::size_t registers = width > 16 ? 2 : 1;
  for (int chroma = 0; chroma < chromaRows; ++chroma) {
    const auto cbCr = chromaRow<G, Size, registers>(src, G.chromaInHalves ? chroma / Size : 0, chroma % Size);
#pragma GCC unroll 2
    for (int y = chroma * G.rowsPerSample; y < (chroma + 1) * G.rowsPerSample; ++y, dst += step) {
      const auto luma = lumaRow<G, Size, registers>(src, y / Size, y % Size);
      if constexpr (width < 16) {
        simd::storeBytes<2 * width>(dst, interleaveLow(luma[0], cbCr[0]));
      } else {
#pragma GCC unroll 2
        for (std::size_t i = 0; i < registers; ++i) {
          simd::store(dst + 32 * i, interleaveLow(luma[i], cbCr[i]));
          simd::store(dst + 32 * i + 16, interleaveHigh(luma[i], cbCr[i]));
        }
      }
    }
  }
}

// One macroblock to one part in Zoom of its size. At an eighth a block is its first element.
template <Geometry G, int Zoom>
void storeMacroblock(const s16* src, u8* dst, std::ptrdiff_t step) {
  if constexpr (Zoom == 1 || Zoom == 8) {
    layOut<G, 8 / Zoom>(src, dst, step);
  } else {
    s16 reduced[macroblockElements];
    for (int i = 0; i < G.columns * G.rows; ++i) {
      const int at = G.luma[std::size_t(i)];
      reduceBlock<Zoom>(src + at, reduced + at);
    }
    reduceBlock<Zoom>(src + G.cr, reduced + G.cr);
    reduceBlock<Zoom>(src + G.cb, reduced + G.cb);
    layOut<G, 8 / Zoom>(reduced, dst, step);
  }
}

}  // namespace zvp::dv
