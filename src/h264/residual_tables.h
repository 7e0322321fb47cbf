// The scales of 4x4 residual blocks (H.264 8.5.9): normAdjust4x4 by QP and position, in the forms that the transforms
// and the macroblock reconstruction use. All are made of the eighteen values of one table.
#pragma once

#include <array>

#include "types.h"

namespace zvp {

// normAdjust4x4 by QP % 6 (H.264 8-315). Class 0 is an even row and an even column, 1 an odd row and an odd column,
// 2 the rest.
inline constexpr std::array<std::array<s32, 3>, 6> normAdjust4x4 = {
    {{10, 16, 13}, {11, 18, 14}, {13, 20, 16}, {14, 23, 18}, {16, 25, 20}, {18, 29, 23}}};

namespace detail {

constexpr std::array<s32, 16> positionClasses() {
  std::array<s32, 16> classes{};
  for (std::size_t i = 0; i < 16; ++i) {
    const bool oddRow = (i / 4) % 2 != 0, oddColumn = i % 2 != 0;
    classes[i] = oddRow && oddColumn ? 1 : oddRow || oddColumn ? 2 : 0;
  }
  return classes;
}

constexpr std::array<std::array<s32, 3>, 52> inverseScales() {
  std::array<std::array<s32, 3>, 52> table{};
  for (std::size_t qp = 0; qp < 52; ++qp)
    for (std::size_t c = 0; c < 3; ++c) table[qp][c] = normAdjust4x4[qp % 6][c] << (qp / 6);
  return table;
}

constexpr std::array<s32, 52> inverseScalesOfLumaDc() {
  std::array<s32, 52> table{};
  for (std::size_t qp = 0; qp < 52; ++qp) table[qp] = normAdjust4x4[qp % 6][0] << (qp < 12 ? 0 : qp / 6 - 2);
  return table;
}

}  // namespace detail

// The class of each raster position.
inline constexpr std::array<s32, 16> QuantIndex = detail::positionClasses();
static_assert(QuantIndex == std::array<s32, 16>{0, 2, 0, 2, 2, 1, 2, 1, 0, 2, 0, 2, 2, 1, 2, 1});

// normAdjust4x4 << (QP / 6), by QP and class.
inline constexpr std::array<std::array<s32, 3>, 52> InvQuantTable = detail::inverseScales();
static_assert(InvQuantTable[0] == std::array<s32, 3>{10, 16, 13} &&
              InvQuantTable[1] == std::array<s32, 3>{11, 18, 14} &&
              InvQuantTable[6] == std::array<s32, 3>{20, 32, 26} &&
              InvQuantTable[51] == std::array<s32, 3>{14 << 8, 23 << 8, 18 << 8});

// The class 0 scale of the DC blocks of Intra16x16 macroblocks. Below QP 12 the shift to the right by 2 - QP / 6 is
// left to whoever scales.
inline constexpr std::array<s32, 52> InvQuantLuma16x16DCTable = detail::inverseScalesOfLumaDc();
static_assert(InvQuantLuma16x16DCTable[0] == 10 && InvQuantLuma16x16DCTable[5] == 18 &&
              InvQuantLuma16x16DCTable[6] == 10 && InvQuantLuma16x16DCTable[17] == 18 &&
              InvQuantLuma16x16DCTable[18] == 20 && InvQuantLuma16x16DCTable[51] == 14 << 6);

namespace detail {
constexpr std::array<std::array<s16, 16>, 52> inverseScalesByPosition() {
  std::array<std::array<s16, 16>, 52> table{};
  for (std::size_t qp = 0; qp < 52; ++qp) {
    for (std::size_t i = 0; i < 16; ++i) table[qp][i] = s16(InvQuantTable[qp][std::size_t(QuantIndex[i])]);
    table[qp][0] = 1;
  }
  return table;
}
}  // namespace detail

// The same by raster position. Element 0 is 1, so that a multiplication of all sixteen leaves a DC alone that comes
// scaled from elsewhere; the scale of an ordinary element 0 is found at element 2.
alignas(16) inline constexpr std::array<std::array<s16, 16>, 52> InvQuantTable_w7 = detail::inverseScalesByPosition();
static_assert(InvQuantTable_w7[0] ==
              std::array<s16, 16>{1, 13, 10, 13, 13, 16, 13, 16, 10, 13, 10, 13, 13, 16, 13, 16});
static_assert(InvQuantTable_w7[6][0] == 1 && InvQuantTable_w7[6][1] == 26 && InvQuantTable_w7[6][2] == 20 &&
              InvQuantTable_w7[6][3] == 26 && InvQuantTable_w7[51][5] == 23 << 8);

}  // namespace zvp
