// Reads bits from 32-bit words whose bit 31 comes first in the stream: the form in which the library takes H.264 and
// MPEG-1/2 data, so that a position converts to a library cursor and back.
//
// A BitReader never loads a word behind the buffer's last one, however far its position has run; the data that it
// reads there are the padding. Whoever parses compares the position with the end when a syntax structure is through.
#pragma once

#include <bit>
#include <cstdint>

namespace video {

class BitReader {
 public:
  BitReader() = default;
  // words: the data and at least two words of padding behind them. bits: where the data end.
  BitReader(const std::uint32_t* words, std::uint32_t wordCount, std::uint32_t bits)
      : words_(words), lastPair_(wordCount - 2), end_(bits) {}

  std::uint32_t position() const { return position_; }
  std::uint32_t end() const { return end_; }
  bool atEnd() const { return position_ >= end_; }
  bool overrun() const { return position_ > end_; }
  void seek(std::uint32_t position) { position_ = position; }
  void skip(std::uint32_t bits) { position_ += bits; }

  // The next 32 bits, without moving.
  std::uint32_t peek() const {
    std::uint32_t word = position_ >> 5;
    if (word > lastPair_) word = lastPair_;
    const std::uint64_t pair = std::uint64_t(words_[word]) << 32 | words_[word + 1];
    return std::uint32_t(pair >> (32 - (position_ & 31)));
  }
  // u(n), 1 <= n <= 32.
  std::uint32_t bits(unsigned n) {
    const std::uint32_t value = peek() >> (32 - n);
    position_ += n;
    return value;
  }
  bool flag() { return bits(1) != 0; }

  // ue(v). A code of more than 32 leading zeros is no code: the result is then 0xFFFFFFFF, which no syntax element
  // may be.
  std::uint32_t ue() {
    const std::uint32_t ahead = peek();
    if (ahead >= 0x08000000u) {  // up to four leading zeros: nine bits at most
      const unsigned zeros = unsigned(std::countl_zero(ahead));
      position_ += 2 * zeros + 1;
      return (ahead >> (31 - 2 * zeros)) - 1;
    }
    return longUe();
  }
  // se(v).
  std::int32_t se() {
    const std::uint32_t code = ue();
    return code & 1 ? std::int32_t(code / 2 + 1) : -std::int32_t(code / 2);
  }

  // The position as the pair that the library's readers of this form take.
  const std::uint32_t* word() const { return words_ + (position_ >> 5); }
  std::int32_t offset() const { return 31 - std::int32_t(position_ & 31); }
  // Takes a cursor back. The distance is formed in 64 bits and cut off at a position behind every end.
  void setCursor(const std::uint32_t* word, std::int32_t offset) {
    const std::int64_t position = (word - words_) * std::int64_t(32) + (31 - std::int64_t(offset));
    position_ = position < 0 || position > 0xF0000000 ? 0xF0000000u : std::uint32_t(position);
  }

 private:
  std::uint32_t longUe() {
    const unsigned zeros = unsigned(std::countl_zero(peek()));
    position_ += zeros;
    if (zeros == 32) {
      position_ += 33;
      return 0xFFFFFFFFu;
    }
    return bits(zeros + 1) - 1;
  }

  const std::uint32_t* words_ = nullptr;
  std::uint32_t lastPair_ = 0;
  std::uint32_t end_ = 0;
  std::uint32_t position_ = 0;
};

}  // namespace video
