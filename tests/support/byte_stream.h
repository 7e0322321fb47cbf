// Streams for the readers and writers with a cursor over bytes, in memory of exactly the size that they may touch.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reference/event_codes.h"
#include "support/guarded.h"
#include "support/random.h"

namespace zvptest {

// Bits to bytes, the first bit on top; zeros fill the last byte.
inline std::vector<std::uint8_t> packBits(const std::string& bits) {
  std::vector<std::uint8_t> bytes((bits.size() + 7) / 8, 0);
  for (std::size_t i = 0; i < bits.size(); ++i)
    if (bits[i] == '1') bytes[i / 8] = std::uint8_t(bytes[i / 8] | 128 >> i % 8);
  return bytes;
}

inline std::string randomBits(Rng& rng, int n) {
  std::string bits;
  for (int i = 0; i < n; ++i) bits += rng.chance(2) ? '1' : '0';
  return bits;
}

// Random bits that look like blocks now and then: zeros are rarer or commoner from run to run.
inline std::string unevenBits(Rng& rng, int n) {
  std::string bits;
  while (int(bits.size()) < n) {
    const int ones = rng.range(1, 7), length = rng.range(1, 60);
    for (int i = 0; i < length; ++i) bits += rng.range(0, 7) < ones ? '1' : '0';
  }
  return bits;
}

// How many bytes a reader may touch that consumes the bits in front of `end`: four behind that of the last one.
inline std::size_t readableBytes(std::size_t end) { return (end + 7) / 8 + 4; }

// Read-only bytes and a cursor on bit `first` of them. Bits behind the end of `bits` are ones.
class InputStream {
 public:
  InputStream(const std::string& bits, std::size_t first, std::size_t size, Guard guard) : bytes_(size, guard) {
    std::string filled = bits;
    filled.resize(8 * size, '1');
    const auto packed = packBits(filled);
    std::copy(packed.begin(), packed.end(), bytes_.data());
    bytes_.makeReadOnly();
    byte = bytes_.data() + first / 8;
    offset = std::int32_t(first % 8);
  }
  std::size_t position() const { return std::size_t(byte - bytes_.data()) * 8 + std::size_t(offset); }

  const std::uint8_t* byte;
  std::int32_t offset;

 private:
  GuardedBytes bytes_;
};

// Noise to write into, with just the bytes that `bits` from bit `first` on reach.
class OutputStream {
 public:
  OutputStream(const std::string& bits, std::size_t first, Rng& rng)
      : bytes_(std::max<std::size_t>((first + bits.size() + 7) / 8, 1), rng.guard()) {
    for (std::size_t i = 0; i < bytes_.size(); ++i) bytes_.data()[i] = std::uint8_t(rng.next());
    expected_ = bytes_.bytes();
    if (!bits.empty()) {
      std::string all;
      for (std::size_t i = 0; i < first; ++i) all += expected_[i / 8] >> (7 - i % 8) & 1 ? '1' : '0';
      expected_ = packBits(all + bits);
    }
    byte = bytes_.data() + first / 8;
    offset = std::int32_t(first % 8);
  }
  std::size_t position() const { return std::size_t(byte - bytes_.data()) * 8 + std::size_t(offset); }
  std::vector<std::uint8_t> bytes() const { return bytes_.bytes(); }
  const std::vector<std::uint8_t>& expected() const { return expected_; }

  std::uint8_t* byte;
  std::int32_t offset;

 private:
  GuardedBytes bytes_;
  std::vector<std::uint8_t> expected_;
};

}  // namespace zvptest
