// Reciprocals by which the forward VC-1 quantizers divide, for QP 2 to 62.
#pragma once

#include <array>

#include "types.h"

namespace zvp::vc1 {

inline constexpr s32 lowestForwardQp = 2, highestForwardQp = 62;
inline constexpr std::size_t forwardQps = std::size_t(highestForwardQp - lowestForwardQp + 1);

// The way of division: 0 by a product, 1 by a product with a multiplier of 16 bits, 2 by a shift.
inline constexpr std::array<s32, forwardQps> indArr = {
    2, 0, 2, 0, 0, 1, 2, 0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 1, 1, 2,
    0, 0, 1, 0, 1, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0};

inline constexpr std::array<s32, forwardQps> shiftArr = {
    1, 0, 2, 1, 0, 2, 3, 1, 2, 1, 1, 2, 2, 3, 4, 3, 0, 2, 3, 2, 0, 4, 2, 3, 3, 3, 3, 4, 4, 4, 5,
    3, 4, 5, 1, 5, 5, 5, 4, 4, 5, 3, 1, 5, 5, 5, 3, 4, 2, 5, 4, 4, 5, 1, 4, 5, 4, 4, 5, 4, 4};

// The multiplier, less 65536 for way 1; for way 2 what rounds towards zero.
inline constexpr std::array<s16, forwardQps> constArr = {
    1,      21846,  3,      26215,  10923,  -28086, 7,      14564, 26215,  11916, 10923,  20165,  18725,
    -30583, 15,     30841,  3641,   13797,  26215,  12483,  2979,  -19945, 10923, 20972,  20165,  19418,
    18725,  -29378, -30583, -31710, 31,     15888,  30841,  -5617, 3641,   -8856, -10347, -11762, 26215,
    25575,  -15603, 12193,  2979,   -18932, -19945, -20915, 10923, 21400,  5243,  -24415, 20165,  19785,
    -26699, 2383,   18725,  -28743, 18079,  17773,  -30583, 17190, 16913};

// Each multiplier is within one of 2^(16 + shift) / QP, each shift alone exact.
static_assert([] {
  for (std::size_t i = 0; i < forwardQps; ++i) {
    const s32 qp = lowestForwardQp + s32(i), power = 65536 << shiftArr[i];
    const s32 multiplier = indArr[i] == 1 ? constArr[i] + 65536 : constArr[i];
    if (indArr[i] == 2 ? qp != 1 << shiftArr[i] || multiplier != qp - 1
                       : multiplier * qp <= power - qp || multiplier * qp >= power + qp)
      return false;
  }
  return true;
}());

}  // namespace zvp::vc1
