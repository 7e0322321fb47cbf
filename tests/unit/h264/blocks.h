// Small blocks of elements in guarded memory, and predictions with the places that results are added into.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "support/compare.h"
#include "support/guarded.h"
#include "support/random.h"

namespace zvptest::blocks {

using Numbers = std::vector<std::int64_t>;

// Elements at any address: against the guard page, or in a third of the cases one byte off their alignment.
template <class T>
class Elements {
 public:
  Elements(const Numbers& values, Rng& rng)
      : count_(values.size()),
        bytes_(count_ * sizeof(T) + (rng.chance(3) ? 1 : 0), rng.chance(2) ? Guard::Behind : Guard::Before) {
    for (std::size_t i = 0; i < count_; ++i) {
      const T value = T(values[i]);
      std::memcpy(bytes_.data() + i * sizeof(T), &value, sizeof value);
    }
  }
  T* data() { return reinterpret_cast<T*>(bytes_.data()); }
  const T* data() const { return reinterpret_cast<const T*>(bytes_.data()); }
  void makeReadOnly() { bytes_.makeReadOnly(); }
  T operator[](std::size_t i) const {
    T value;
    std::memcpy(&value, bytes_.data() + i * sizeof(T), sizeof value);
    return value;
  }
  // Equal to the first elements? There may be fewer expected than there are.
  ::testing::AssertionResult same(const Numbers& expected) const {
    for (std::size_t i = 0; i < expected.size(); ++i)
      if ((*this)[i] != expected[i])
        return ::testing::AssertionFailure()
               << "element " << i << " is " << +(*this)[i] << ", expected " << expected[i];
    addToDigest(bytes_.data(), expected.size() * sizeof(T));
    return ::testing::AssertionSuccess();
  }

 private:
  std::size_t count_;
  GuardedBytes bytes_;
};

// Elements of all styles: of the whole range of T, of what codecs have in them, or small.
template <class T>
Numbers anyElements(std::size_t count, Rng& rng, int usual = 4096) {
  const int kind = rng.range(0, 3);
  const int most = kind == 0 ? std::numeric_limits<T>::max() : kind == 1 ? usual : kind == 2 ? 255 : 12;
  const int least = kind == 0 ? std::numeric_limits<T>::min() : -most;
  Values values(rng, anyStyle(rng), least, most);
  Numbers numbers(count);
  for (auto& n : numbers) n = values.next();
  if (kind == 2 && rng.chance(3))
    for (std::size_t i = 1; i < count; ++i)
      if (!rng.chance(4)) numbers[i] = 0;
  return numbers;
}

// Four rows of four at any step. Each number is drawn in a statement of its own, for the same sequence everywhere.
template <class T>
GuardedPlane<T> anyPlane4x4(Rng& rng, bool negativeToo = true) {
  const std::ptrdiff_t step = rng.step(4 * sizeof(T), negativeToo);
  const Guard guard = rng.guard();
  return GuardedPlane<T>(4, 4, step, guard);
}

// A 4x4 prediction and where its sum with a residual goes: another place, or the same.
template <class T>
class AddCase {
 public:
  AddCase(int maximum, Rng& rng)
      : maximum_(maximum),
        inPlace_(rng.chance(3)),
        prediction_(anyPlane4x4<T>(rng)),
        destination_(anyPlane4x4<T>(rng)) {
    fill(prediction_, rng, anyStyle(rng), 0, maximum);
    fill(destination_, rng, Style::Uniform, 0, maximum);
    if (!inPlace_) prediction_.bytes().makeReadOnly();
  }
  const T* prediction() const { return prediction_.data(); }
  T* destination() { return target().data(); }
  std::int32_t predictionStep() const { return std::int32_t(prediction_.step()); }
  std::int32_t destinationStep() { return std::int32_t(target().step()); }
  // All bytes of the destination as they should be.
  std::vector<std::uint8_t> expected(const Numbers& residual) {
    std::vector<std::uint8_t> bytes = target().snapshot();
    const std::ptrdiff_t origin = reinterpret_cast<std::uint8_t*>(target().data()) - target().bytes().data();
    for (int i = 0; i < 16; ++i) {
      const auto sum = std::int64_t(prediction_.get(i % 4, i / 4)) + residual[std::size_t(i)];
      const T sample = T(std::clamp<std::int64_t>(sum, 0, maximum_));
      std::memcpy(&bytes[std::size_t(origin + i / 4 * target().step() + i % 4 * std::ptrdiff_t(sizeof(T)))], &sample,
                  sizeof sample);
    }
    return bytes;
  }
  std::vector<std::uint8_t> result() { return target().snapshot(); }

 private:
  GuardedPlane<T>& target() { return inPlace_ ? prediction_ : destination_; }
  int maximum_;
  bool inPlace_;
  GuardedPlane<T> prediction_, destination_;
};

}  // namespace zvptest::blocks
