// Writes CAVLC blocks and Exp-Golomb codes, as an encoder does.
#pragma once

#include <cstdlib>

#include "support/cavlc_tables.h"

namespace zvptest {

// A stream of 32-bit words, bit 31 first.
class BitWriter {
 public:
  void put(std::uint64_t value, int bits) {
    for (int i = bits; i-- > 0;) putBit((value >> i) & 1);
  }
  void put(const std::string& bits) {
    for (char c : bits) putBit(c == '1');
  }
  std::size_t size() const { return size_; }  // in bits
  const std::vector<std::uint32_t>& words() const { return words_; }

 private:
  void putBit(std::uint64_t bit) {
    if (size_ % 32 == 0) words_.push_back(0);
    if (bit) words_.back() |= 1u << (31 - size_ % 32);
    ++size_;
  }
  std::vector<std::uint32_t> words_;
  std::size_t size_ = 0;
};

inline void putExpGolomb(BitWriter& out, std::uint64_t codeNum) {
  int bits = 0;
  while ((codeNum + 1) >> (bits + 1)) ++bits;
  out.put(0, bits);
  out.put(codeNum + 1, bits + 1);
}

namespace detail {
inline const std::string& vlcBits(const std::vector<VlcCode>& codes, int value) {
  for (const VlcCode& code : codes)
    if (code.value == value) return code.bits;
  std::fprintf(stderr, "no code for %d\n", value);
  std::abort();
}

inline void putLevel(BitWriter& out, int level, int suffixLength, bool bonus) {
  int code = level > 0 ? 2 * level - 2 : -2 * level - 1;
  if (bonus) code -= 2;
  const int ends = suffixLength == 0 ? 30 : 15 << suffixLength;  // where 12-bit suffixes begin
  if (suffixLength == 0 && code < 14) {
    out.put(1, code + 1);
  } else if (suffixLength == 0 && code < 30) {
    out.put(1, 15);
    out.put(std::uint64_t(code - 14), 4);
  } else if (code < ends) {
    out.put(1, (code >> suffixLength) + 1);
    out.put(std::uint64_t(code) & ((1u << suffixLength) - 1), suffixLength);
  } else if (code < ends + 4096) {
    out.put(1, 16);
    out.put(std::uint64_t(code - ends), 12);
  } else {
    int prefix = 16;
    while (code - ends + 4096 >= 2 << (prefix - 3)) ++prefix;
    out.put(1, prefix + 1);
    out.put(std::uint64_t(code - ends + 4096 - (1 << (prefix - 3))), prefix - 3);
  }
}
}  // namespace detail

// A block by its levels in coding order. nC is that of the block, -1 or -2 for chroma DC; totalZeros belongs to it.
inline void putCavlcBlock(BitWriter& out, const std::vector<int>& levels, int nC, const CavlcCodes& codes) {
  std::vector<int> nonZero, runs;  // last level first
  int zeros = 0, run = 0;
  for (int level : levels) {
    if (level == 0) {
      ++run;
      continue;
    }
    nonZero.insert(nonZero.begin(), level);
    runs.insert(runs.begin(), run);
    zeros += run;
    run = 0;
  }
  const int total = int(nonZero.size());
  int ones = 0;
  while (ones < total && ones < 3 && std::abs(nonZero[std::size_t(ones)]) == 1) ++ones;
  const int nCClass = nC < 0 ? nC : nC < 2 ? 0 : nC < 4 ? 2 : nC < 8 ? 4 : 8;
  out.put(detail::vlcBits(codes.coeffToken.at(nCClass), total << 8 | ones));
  if (total == 0) return;
  int suffixLength = total > 10 && ones < 3 ? 1 : 0;
  for (int i = 0; i < total; ++i) {
    const int level = nonZero[std::size_t(i)];
    if (i < ones) {
      out.put(level < 0, 1);
      continue;
    }
    detail::putLevel(out, level, suffixLength, i == ones && ones < 3);
    if (suffixLength == 0) suffixLength = 1;
    if (std::abs(level) > 3 << (suffixLength - 1) && suffixLength < 6) ++suffixLength;
  }
  if (total < int(levels.size())) {
    const auto& tables = nC == -1 ? codes.totalZeros420 : nC == -2 ? codes.totalZeros422 : codes.totalZeros4x4;
    out.put(detail::vlcBits(tables[std::size_t(total)], zeros));
  }
  for (int i = 0; i + 1 < total && zeros > 0; ++i) {
    out.put(detail::vlcBits(codes.runBefore[std::size_t(std::min(zeros, 7))], runs[std::size_t(i)]));
    zeros -= runs[std::size_t(i)];
  }
}

}  // namespace zvptest
