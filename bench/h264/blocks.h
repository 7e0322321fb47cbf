// Blocks of residuals and levels for the transforms' rows. Members that work in place get a fresh copy in each call.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

#include "support/random.h"

namespace bench {

template <class T>
class Blocks {
 public:
  static constexpr int count = 32;
  // Sparse blocks have zeros in most places, as levels do.
  Blocks(int most, bool sparse, std::uint64_t seed) {
    zvptest::Rng rng(seed);
    for (T& value : values_) value = sparse && !rng.chance(3) ? T(0) : T(rng.range(-most, most));
  }
  const T* at(int i) const { return values_ + (i & 31) * 16; }
  T* copy(int i) {
    std::memcpy(scratch_ + (i & 31) * 16, at(i), 16 * sizeof(T));
    return scratch_ + (i & 31) * 16;
  }
  T* out(int i) { return out_ + (i & 31) * 16; }
  std::vector<std::int64_t> block(int i, int size = 16) const { return {at(i), at(i) + size}; }

 private:
  alignas(64) T values_[count * 16];
  alignas(64) T scratch_[count * 16];
  alignas(64) T out_[count * 16];
};

template <class T>
bool same(const T* actual, const std::vector<std::int64_t>& expected) {
  for (std::size_t i = 0; i < expected.size(); ++i)
    if (actual[i] != expected[i]) return false;
  return true;
}

// The zig-zag scan's position of each raster position.
inline constexpr std::int16_t scanOrder[16] = {0, 1, 5, 6, 2, 4, 7, 12, 3, 8, 11, 13, 9, 10, 14, 15};
inline const std::vector<std::int64_t> scan(scanOrder, scanOrder + 16);

}  // namespace bench
