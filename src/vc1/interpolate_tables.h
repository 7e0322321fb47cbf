// The filters of the bicubic prediction of VC-1 (SMPTE 421M 8.3.6.5).
#pragma once

#include "types.h"

namespace zvp::vc1 {

// Taps over the positions -1, 0, 1, 2, by the fraction less 1.
inline constexpr s16 BicubicFilterParams_0[3][4] = {{-4, 53, 18, -3}, {-1, 9, 9, -1}, {-3, 18, 53, -4}};

// Shift of a vertical pass, at dx * 3 + dy - 1: of the only pass for dx 0, of the first of two for the others.
inline constexpr u8 BicubicVertFilterShift_0[12] = {6, 4, 6, 5, 3, 5, 3, 1, 3, 5, 3, 5};

// Shift of a horizontal pass, at (dx - 1) * 4 + dy: of the only pass for dy 0, of the second of two for the others.
inline constexpr u8 BicubicHorizFilterShift_0[12] = {6, 7, 7, 7, 4, 7, 7, 7, 6, 7, 7, 7};

namespace detail {
// Along one direction the shift takes back the sum of the taps, and so do the two shifts along both.
constexpr bool shiftsMatchTaps() {
  const auto gain = [](int fraction) {
    int sum = 0;
    for (const s16 tap : BicubicFilterParams_0[fraction - 1]) sum += tap;
    return sum;
  };
  for (int d = 1; d < 4; ++d) {
    if (1 << BicubicVertFilterShift_0[d - 1] != gain(d) || 1 << BicubicHorizFilterShift_0[(d - 1) * 4] != gain(d))
      return false;
    for (int dy = 1; dy < 4; ++dy)
      if (1 << (BicubicVertFilterShift_0[d * 3 + dy - 1] + BicubicHorizFilterShift_0[(d - 1) * 4 + dy]) !=
          gain(d) * gain(dy))
        return false;
  }
  return true;
}
static_assert(shiftsMatchTaps());
}  // namespace detail

}  // namespace zvp::vc1
