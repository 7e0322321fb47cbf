// What the quantizers of ISO/IEC 14496-2 7.4.4 look up by quantizer or by sample depth.
#pragma once

#include <array>

#include "types.h"

namespace zvp::mpeg4 {

// Sample depths that have a row in the tables below.
inline constexpr s32 minBitsPerPixel = 4, maxBitsPerPixel = 12;
// Up to here forward quantization multiplies by reciprocals; from here on it divides.
inline constexpr s32 firstDividingDepth = 9;
// Lanes of a 16-byte register of coefficients: the bounds are told in whole registers.
using ClipRow = std::array<s16, 16>;

namespace detail {
constexpr std::array<u32, 31> reciprocalsOfTwiceTheQuantizer() {
  std::array<u32, 31> table{};
  for (u32 q = 1; q <= 31; ++q) table[q - 1] = 65536 / (2 * q) + 1;
  return table;
}
constexpr std::array<s32, 9> largestQuantizers() {
  std::array<s32, 9> table{};
  for (s32 bits = minBitsPerPixel; bits <= maxBitsPerPixel; ++bits)
    table[std::size_t(bits - minBitsPerPixel)] = (1 << (bits - 3)) - 1;
  return table;
}
constexpr std::array<ClipRow, 9> inverseBounds() {
  std::array<ClipRow, 9> table{};
  for (s32 bits = minBitsPerPixel; bits <= maxBitsPerPixel; ++bits)
    for (std::size_t i = 0; i < 16; ++i) {
      const s32 size = 1 << (bits + 3);
      table[std::size_t(bits - minBitsPerPixel)][i] = s16(i < 8 ? -size : size - 1);
    }
  return table;
}
}  // namespace detail

// [QP - 1]: 65536 / (2 * QP) + 1.
inline constexpr std::array<u32, 31> _p_QuantInv = detail::reciprocalsOfTwiceTheQuantizer();
static_assert(_p_QuantInv[0] == 32769 && _p_QuantInv[1] == 16385 && _p_QuantInv[2] == 10923 && _p_QuantInv[30] == 1058);

// [bitsPerPixel - 4]: the largest legal quantizer.
inline constexpr std::array<s32, 9> _p_QuantMax = detail::largestQuantizers();
static_assert(_p_QuantMax == std::array<s32, 9>{1, 3, 7, 15, 31, 63, 127, 255, 511});

// [bitsPerPixel - 4]: eight times the lowest result of inverse quantization, eight times the highest.
inline constexpr std::array<ClipRow, 9> _p_QuantInvClip = detail::inverseBounds();
static_assert(_p_QuantInvClip[0][7] == -128 && _p_QuantInvClip[0][8] == 127);
static_assert(_p_QuantInvClip[8][0] == -32768 && _p_QuantInvClip[8][15] == 32767);

// No quantizer is legal at a depth without a row: forward contexts may carry one.
constexpr s32 largestQuantizer(s32 bitsPerPixel) {
  if (bitsPerPixel < minBitsPerPixel || bitsPerPixel > maxBitsPerPixel) return 0;
  return _p_QuantMax[std::size_t(bitsPerPixel - minBitsPerPixel)];
}

// Table 7-1 of the standard.
constexpr s32 dcScaler(s32 QP, bool chroma) {
  if (QP < 5) return 8;
  if (chroma) return QP < 25 ? (QP + 13) >> 1 : QP - 6;
  return QP <= 8 ? 2 * QP : QP < 25 ? QP + 8 : 2 * QP - 16;
}

}  // namespace zvp::mpeg4
