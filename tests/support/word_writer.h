// Writes bits into 32-bit words, bit 31 of a word first.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zvptest {

class WordWriter {
 public:
  // The low n bits of value, 0 <= n <= 32.
  void put(std::uint32_t value, int n) {
    for (int i = n - 1; i >= 0; --i) {
      if (size_ % 32 == 0) words_.push_back(0);
      words_.back() |= (value >> i & 1) << (31 - size_ % 32);
      ++size_;
    }
  }
  // A code word as a string of 0 and 1.
  void put(const std::string& bits) {
    for (char bit : bits) put(bit == '1', 1);
  }
  std::size_t size() const { return size_; }  // in bits
  const std::vector<std::uint32_t>& words() const { return words_; }

 private:
  std::vector<std::uint32_t> words_;
  std::size_t size_ = 0;
};

}  // namespace zvptest
