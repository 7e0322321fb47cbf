// What stands between two start codes, and the reader of its bits. The bytes are copied behind themselves with zeros,
// so that the library's readers, which are told no length, find slack: no code of theirs goes on through zeros.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "common/decoder.h"

namespace mpeg4 {

class Unit {
 public:
  // Takes the bytes of a unit, which begin at the given position of the file. The storage is kept from unit to unit.
  void load(std::span<const std::uint8_t> bytes, std::int64_t position) {
    bytes_.assign(bytes.begin(), bytes.end());
    bytes_.resize(bytes.size() + slack);
    end_ = 8 * bytes.size();
    at_ = 0;
    position_ = position;
  }

  std::size_t position() const { return at_; }  // in bits
  std::size_t end() const { return end_; }
  void seek(std::size_t position) { at_ = position; }
  void skip(std::size_t bits) { at_ += bits; }
  void align() { at_ = (at_ + 7) & ~std::size_t(7); }

  // The next 32 bits, without moving; zeros behind the end.
  std::uint32_t peek() const {
    const std::size_t byte = at_ >> 3;
    if (byte >= bytes_.size() - 8) return 0;
    std::uint64_t ahead = 0;
    for (std::size_t i = 0; i < 5; ++i) ahead = ahead << 8 | bytes_[byte + i];
    return std::uint32_t(ahead >> (8 - (at_ & 7)));
  }
  std::uint32_t peek(unsigned bits) const { return peek() >> (32 - bits); }  // 1 <= bits <= 32
  std::uint32_t bits(unsigned count) {                                       // 1 <= count <= 32
    const std::uint32_t value = peek(count);
    at_ += count;
    return value;
  }
  bool flag() { return bits(1) != 0; }
  void marker() {
    if (!flag()) damaged("a marker bit is 0");
  }
  // Ends with an error if more has been read than is there.
  void check() const {
    if (at_ > end_) damaged("the data end early");
  }

  // Runs a reader of the library at the current bit: read(&pointer, &offset) returns its status.
  template <class Read> void library(const char* what, Read read) {
    check();
    const std::uint8_t* pointer = bytes_.data() + (at_ >> 3);
    std::int32_t offset = std::int32_t(at_ & 7);
    if (read(&pointer, &offset) != 0) damaged(what);
    at_ = std::size_t(pointer - bytes_.data()) * 8 + std::size_t(offset);
    check();
  }

  std::int64_t filePosition() const { return position_ + std::int64_t((at_ < end_ ? at_ : end_) >> 3); }
  [[noreturn]] void damaged(const std::string& text) const {
    throw video::StreamError(video::StreamError::Kind::Damaged, filePosition(), text);
  }
  [[noreturn]] void unsupported(const std::string& text) const {
    throw video::StreamError(video::StreamError::Kind::Unsupported, filePosition(), text);
  }

 private:
  // A block takes at most 64 events of 33 bits, and a reader looks four bytes ahead.
  static constexpr std::size_t slack = 64 * 33 / 8 + 16;

  std::vector<std::uint8_t> bytes_ = std::vector<std::uint8_t>(slack);
  std::size_t at_ = 0, end_ = 0;
  std::int64_t position_ = 0;
};

}  // namespace mpeg4
