// What the tests of inter prediction share.
#pragma once

#include <cstring>
#include <vector>

#include "support/guarded.h"
#include "support/random.h"
#include "zvpvc.h"

// The bytes that a destination must hold after a call, written sample by sample.
template <class T>
class Expected {
 public:
  explicit Expected(zvptest::GuardedPlane<T>& plane)
      : bytes_(plane.snapshot()),
        origin_(reinterpret_cast<const std::uint8_t*>(plane.data()) - plane.bytes().data()),
        step_(plane.step()) {}
  void set(int x, int y, std::int64_t value) {
    const T sample = T(value);
    std::memcpy(&bytes_[std::size_t(origin_ + y * step_ + x * std::ptrdiff_t(sizeof(T)))], &sample, sizeof sample);
  }
  const std::vector<std::uint8_t>& bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
  std::ptrdiff_t origin_, step_;
};

// A step of a plane in the unit of the interface: bytes for 8-bit samples, elements for 16-bit ones.
template <class T>
std::int32_t unitStep(const zvptest::GuardedPlane<T>& plane) {
  return std::int32_t(plane.step() / std::ptrdiff_t(sizeof(T)));
}

template <class T>
zvptest::GuardedPlane<T> randomPlane(zvptest::Rng& rng, int width, int height,
                                     typename zvptest::GuardedPlane<T>::Margin margin, bool negativeStep, int high) {
  const auto rowBytes = std::ptrdiff_t(width + margin.left + margin.right) * std::ptrdiff_t(sizeof(T));
  zvptest::GuardedPlane<T> plane{width, height, rng.step(rowBytes, negativeStep, sizeof(T)), rng.guard(), margin};
  fill(plane, rng, zvptest::anyStyle(rng), 0, high);
  return plane;
}
