// The default weights of the forward intra quantizer, as the reciprocals that the forward members take.
#pragma once

#include <array>

#include "types.h"

namespace zvp {

// ISO/IEC 13818-2 6.3.11: the default intra quantizer matrix, raster order.
inline constexpr std::array<u8, 64> defaultIntraWeights = {
    8,  16, 19, 22, 26, 27, 29, 34,
    16, 16, 22, 24, 27, 29, 34, 37,
    19, 22, 26, 27, 29, 34, 34, 38,
    22, 22, 26, 27, 29, 34, 37, 40,
    22, 26, 27, 29, 32, 35, 40, 48,
    26, 27, 29, 32, 35, 40, 48, 58,
    26, 27, 29, 34, 38, 46, 56, 69,
    27, 29, 35, 38, 46, 56, 69, 83};

namespace detail {
// Rounded to six decimals before it becomes a float: required, the seventh decimal moves quantized values. Both
// integers are exact as floats, so the division rounds once.
constexpr float sixDecimalReciprocal(int weight) { return float((2000000 + weight) / (2 * weight)) / 1000000.0f; }
constexpr std::array<float, 64> intraReciprocals() {
  std::array<float, 64> table{};
  for (std::size_t i = 0; i < 64; ++i) table[i] = sixDecimalReciprocal(defaultIntraWeights[i]);
  return table;
}
}  // namespace detail

inline constexpr std::array<float, 64> DefaultIntraQuantMatrix_0 = detail::intraReciprocals();
static_assert(DefaultIntraQuantMatrix_0[0] == 0.125f && DefaultIntraQuantMatrix_0[1] == 0.0625f);
static_assert(DefaultIntraQuantMatrix_0[2] == 0.052632f && DefaultIntraQuantMatrix_0[63] == 0.012048f);

}  // namespace zvp
