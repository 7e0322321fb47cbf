// A row's width as a sum of widths that kernels are made for.
#pragma once

#include <type_traits>

#include "types.h"

namespace zvp {

// f(width as a constant, column) for each piece from left to right: as many of Largest as there are, then one each of
// the smaller powers of two that the rest is made of. What is left below Smallest is dropped.
template <int Largest, int Smallest, class F> ZVP_INLINE void forEachPiece(int width, F f) {
  int x = 0;
  for (; width - x >= Largest; x += Largest) f(std::integral_constant<int, Largest>(), x);
  const auto piece = [&](auto w) __attribute__((always_inline)) {
    if constexpr (w >= Smallest && w < Largest) {
      if ((width & w) != 0) {
        f(w, x);
        x += w;
      }
    }
  };
  if (width > 0) {
    piece(std::integral_constant<int, 16>());
    piece(std::integral_constant<int, 8>());
    piece(std::integral_constant<int, 4>());
    piece(std::integral_constant<int, 2>());
    piece(std::integral_constant<int, 1>());
  }
}

}  // namespace zvp
