// The weights that stand for a null matrix in non-intra blocks of MPEG-2 (ISO/IEC 13818-2 6.3.11).
#pragma once

#include <array>

#include "types.h"

namespace zvp {

inline constexpr std::array<s16, 64> Qmatrix_0 = [] {
  std::array<s16, 64> weights{};
  weights.fill(16);
  return weights;
}();

}  // namespace zvp
