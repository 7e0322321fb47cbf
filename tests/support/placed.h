// An array where a caller might put it: against an inaccessible page behind or before it, or at an odd address. It is
// filled and read back by copy, so that the tests themselves never touch a misaligned element.
#pragma once

#include <cstring>
#include <vector>

#include "support/random.h"

namespace zvptest {

template <class T>
class Placed {
 public:
  Placed(const std::vector<T>& values, Rng& rng) : count_(values.size()) {
    const std::size_t size = count_ * sizeof(T), shift = rng.chance(3) ? std::size_t(rng.range(1, 15)) : 0;
    const Guard guard = rng.guard();
    bytes_ = GuardedBytes(size + shift, guard);
    data_ = bytes_.data() + (guard == Guard::Before ? shift : 0);
    std::memcpy(data_, values.data(), size);
  }
  T* data() { return reinterpret_cast<T*>(data_); }
  Placed& readOnly() {
    bytes_.makeReadOnly();
    return *this;
  }
  std::vector<T> values() const {
    std::vector<T> copy(count_);
    std::memcpy(copy.data(), data_, count_ * sizeof(T));
    return copy;
  }

 private:
  std::size_t count_;
  GuardedBytes bytes_;
  std::uint8_t* data_ = nullptr;
};

template <class T>
std::vector<T> randomValues(std::size_t count, Rng& rng, Style style, int low, int high) {
  std::vector<T> values(count);
  fill(values.data(), count, rng, style, low, high);
  return values;
}

}  // namespace zvptest
