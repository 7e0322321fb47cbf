// What stands between two start codes, as a bit stream in 32-bit words.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "common/bit_reader.h"
#include "common/decoder.h"

namespace mpeg2 {

class Unit {
 public:
  // Takes the bytes behind 00 00 01, the first of which tells the kind, and their place in the file. The storage is
  // kept from unit to unit. Throws StreamError.
  void load(std::span<const std::uint8_t> bytes, std::int64_t position) {
    using video::StreamError;
    if (bytes.empty()) throw StreamError(StreamError::Kind::Damaged, position, "start code without a value");
    if (bytes.size() > largestUnit) throw StreamError(StreamError::Kind::Damaged, position, "no start code for 16 MB");
    position_ = position;
    code_ = bytes[0];
    const std::span<const std::uint8_t> rest = bytes.subspan(1);
    endBit_ = std::uint32_t(8 * rest.size());
    words_.assign(rest.size() / 4 + 1 + paddingWords, 0);
    for (std::size_t i = 0; i < rest.size(); ++i) words_[i / 4] |= std::uint32_t(rest[i]) << (24 - 8 * (i % 4));
  }

  int code() const { return code_; }
  video::BitReader reader() const { return video::BitReader(words_.data(), std::uint32_t(words_.size()), endBit_); }
  std::int64_t filePosition() const { return position_; }

  [[noreturn]] void damaged(const video::BitReader& at, const std::string& text) const {
    const std::uint32_t bit = std::min(at.position(), endBit_);
    throw video::StreamError(video::StreamError::Kind::Damaged, position_ + 1 + bit / 8, text);
  }
  [[noreturn]] void unsupported(const std::string& text) const {
    throw video::StreamError(video::StreamError::Kind::Unsupported, position_, text);
  }

 private:
  // The library reads a block without knowing where the data end: at most 65 codes of 28 bits. Behind the last of them
  // one macroblock's header is read.
  static constexpr std::size_t paddingWords = 64;
  static constexpr std::size_t largestUnit = std::size_t(1) << 24;

  std::vector<std::uint32_t> words_;
  std::int64_t position_ = 0;
  std::uint32_t endBit_ = 0;
  int code_ = 0;
};

}  // namespace mpeg2
