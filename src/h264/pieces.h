// Loops whose indices or widths are constants in their bodies.
#pragma once

#include <utility>

#include "row_pieces.h"

namespace zvp {

// f(0), f(1), ... f(Count - 1), each index a constant.
template <int Count, class F> ZVP_INLINE void unrolled(F f) {
  [&]<int... I>(std::integer_sequence<int, I...>) __attribute__((always_inline)) {
    (f(std::integral_constant<int, I>()), ...);
  }
  (std::make_integer_sequence<int, Count>());
}

}  // namespace zvp
