// Planes in pairs for the tests of this folder: what the library writes and what the model writes, from one start.
// Numbers are drawn one statement after the other, so that every compiler draws the same.
#pragma once

#include <gtest/gtest.h>

#include <limits>

#include "support/compare.h"
#include "support/random.h"

namespace zvptest {

// A plane of random shape and content that is only read. right and below are the samples beyond the block.
template <class T>
GuardedPlane<T> inputPlane(Rng& rng, int width, int height, int right, int below, int low, int high) {
  typename GuardedPlane<T>::Margin margin;
  margin.right = right;
  margin.below = below;
  const auto step = rng.step((width + right) * std::ptrdiff_t(sizeof(T)), true);
  const auto guard = rng.guard();
  GuardedPlane<T> plane(width, height, step, guard, margin);
  fill(plane, rng, anyStyle(rng), low, high);
  plane.bytes().makeReadOnly();
  return plane;
}
inline GuardedPlane<std::uint8_t> inputBytes(Rng& rng, int width, int height, int right = 0, int below = 0) {
  return inputPlane<std::uint8_t>(rng, width, height, right, below, 0, 255);
}

// Two planes of equal content, one for the library and one for the model.
template <class T>
struct OutputPlane {
  GuardedPlane<T> actual, expected;
  OutputPlane(Rng& rng, int width, int height) {
    const auto step = rng.step(width * std::ptrdiff_t(sizeof(T)), true);
    actual = GuardedPlane<T>(width, height, step, rng.guard());
    expected = GuardedPlane<T>(width, height, step, Guard::Behind);
    fill(actual, rng, anyStyle(rng), std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    std::memcpy(expected.bytes().data(), actual.bytes().data(), actual.bytes().size());
  }
  std::int32_t step() const { return std::int32_t(actual.step()); }
  ::testing::AssertionResult same() const { return sameBytes(actual.snapshot(), expected.snapshot()); }
};

template <class T>
std::int32_t stepOf(const GuardedPlane<T>& plane) {
  return std::int32_t(plane.step());
}

}  // namespace zvptest
