// The reference sample at (x, y) for each half-pel case.
#pragma once

#include "reference/measures/block.h"

namespace reference::measures {
template <class T>
int halfPelSample(const T* r, std::ptrdiff_t step, int x, int y, int mcType) {
  switch (mcType >> 2) {
    case 0:
      return sample(r, step, x, y);
    case 1:
      return (sample(r, step, x, y) + sample(r, step, x, y + 1) + 1) >> 1;
    case 2:
      return (sample(r, step, x, y) + sample(r, step, x + 1, y) + 1) >> 1;
    default:
      return (sample(r, step, x, y) + sample(r, step, x + 1, y) + sample(r, step, x, y + 1) +
              sample(r, step, x + 1, y + 1) + 2) >>
             2;
  }
}
}  // namespace reference::measures
