// Guarded input blocks for the tests of the measures.
#pragma once

#include <gtest/gtest.h>

#include "support/random.h"
#include "zvpvc.h"

namespace zvptest {

// A block in memory that ends with its last sample, at a step of any kind, also one shorter than a row. Its margin is
// what a half-pel case reads to the right and below.
template <class T>
GuardedPlane<T> makeBlock(Rng& rng, int width, int height, typename GuardedPlane<T>::Margin margin = {}) {
  const std::ptrdiff_t rowBytes = std::ptrdiff_t(width + margin.right) * std::ptrdiff_t(sizeof(T));
  const std::ptrdiff_t step = rng.chance(8) ? rng.range(-9, 9) : rng.step(rowBytes, true);
  GuardedPlane<T> plane(width, height, step, rng.guard(), margin);
  fill(plane, rng, anyStyle(rng), std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
  plane.bytes().makeReadOnly();
  return plane;
}

// The margin that mcType makes a call read: 4 adds a row, 8 a column.
template <class T>
typename GuardedPlane<T>::Margin halfPelMargin(int mcType) {
  typename GuardedPlane<T>::Margin margin;
  margin.below = (mcType & 4) != 0 ? 1 : 0;
  margin.right = (mcType & 8) != 0 ? 1 : 0;
  return margin;
}

// Each of two sources and a result null, alone and together: refused, the result as it was. call(a, b, result) passes
// the pointers on.
template <class T, class R, class Call>
void expectNullsRefused(const char* name, Call call) {
  const T sample = 1;
  R result = 77;
  for (int present = 0; present < 7; ++present)
    EXPECT_EQ(call(present & 1 ? &sample : nullptr, present & 2 ? &sample : nullptr, present & 4 ? &result : nullptr),
              zvpStatusNullPointer)
        << name << ' ' << present;
  EXPECT_EQ(result, 77);
}

}  // namespace zvptest
