#include "common/md5.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace video {

namespace {

struct Sines {
  std::uint32_t value[64];
  Sines() {
    for (int i = 0; i < 64; ++i) value[i] = std::uint32_t(std::floor(std::fabs(std::sin(double(i + 1))) * 4294967296.0));
  }
};

constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

}  // namespace

void Md5::block(const std::uint8_t* data) {
  static const Sines sines;
  std::uint32_t words[16];
  std::memcpy(words, data, 64);
  auto [a, b, c, d] = state_;
  for (int i = 0; i < 64; ++i) {
    std::uint32_t mix;
    int word;
    switch (i / 16) {
      case 0: mix = (b & c) | (~b & d), word = i; break;
      case 1: mix = (d & b) | (~d & c), word = 5 * i + 1; break;
      case 2: mix = b ^ c ^ d, word = 3 * i + 5; break;
      default: mix = c ^ (b | ~d), word = 7 * i; break;
    }
    const std::uint32_t sum = a + mix + words[word & 15] + sines.value[i];
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, shifts[i / 16][i & 3]);
  }
  state_[0] += a;
  state_[1] += b;
  state_[2] += c;
  state_[3] += d;
}

void Md5::add(const void* data, std::size_t size) {
  const auto* from = static_cast<const std::uint8_t*>(data);
  while (size > 0) {
    const std::size_t held = size_ % 64;
    if (held == 0 && size >= 64) {
      block(from);
      from += 64;
      size -= 64;
      size_ += 64;
      continue;
    }
    const std::size_t part = std::min(size, 64 - held);
    std::memcpy(pending_ + held, from, part);
    from += part;
    size -= part;
    size_ += part;
    if (held + part == 64) block(pending_);
  }
}

void Md5::add(const Picture& picture) {
  for (int plane = 0; plane < 3; ++plane)
    for (int y = 0; y < picture.format.planeHeight(plane); ++y)
      add(picture.planes[plane] + y * picture.steps[plane], std::size_t(picture.format.planeWidth(plane)));
}

std::string Md5::hex() const {
  Md5 copy = *this;
  const std::uint64_t bits = 8 * size_;
  const std::uint8_t one = 0x80, zero = 0;
  copy.add(&one, 1);
  while (copy.size_ % 64 != 56) copy.add(&zero, 1);
  copy.add(&bits, 8);
  std::string text;
  for (const std::uint32_t word : copy.state_)
    for (int byte = 0; byte < 4; ++byte) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", word >> (8 * byte) & 0xFF);
      text += digits;
    }
  return text;
}

}  // namespace video
