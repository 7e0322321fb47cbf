#include "h264/nal.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace h264 {

using video::StreamError;

namespace {

// One call of the library's block reader takes at most 16 bits of coeff_token, 16 levels of 28 bits, 9 of total_zeros
// and 15 runs of 11 where level_prefix is at most 15; and among the padding's ones, where every code is short, a whole
// macroblock takes less than this.
constexpr std::size_t slackWords = 256;
constexpr std::size_t largestUnit = std::size_t(1) << 28;

}  // namespace

void Nal::load(std::span<const std::uint8_t> unit, std::int64_t position) {
  position_ = position;
  if (unit.empty()) throw StreamError(StreamError::Kind::Damaged, position, "empty NAL unit");
  if (unit.size() > largestUnit) throw StreamError(StreamError::Kind::Damaged, position, "NAL unit too large");
  if (unit[0] & 0x80) throw StreamError(StreamError::Kind::Damaged, position, "forbidden_zero_bit is set");
  refIdc_ = unit[0] >> 5;
  type_ = NalType(unit[0] & 31);

  // Trailing zero bytes and cabac_zero_words are no part of the payload; its last bit set is the stop bit.
  std::span<const std::uint8_t> in = unit.subspan(1);
  while (!in.empty() && (in.back() == 0 || (in.back() == 3 && in.size() >= 3 && in[in.size() - 2] == 0 &&
                                            in[in.size() - 3] == 0)))
    in = in.first(in.size() - 1);

  removed_.clear();
  bytes_.resize((in.size() + 7) & ~std::size_t(3));
  std::size_t size = 0, from = 0;
  for (std::size_t i = 2; i < in.size();) {
    if (in[i] > 3) {
      i += 3;
    } else if (in[i] == 3 && in[i - 1] == 0 && in[i - 2] == 0) {
      std::memcpy(bytes_.data() + size, in.data() + from, i - from);
      size += i - from;
      removed_.push_back(std::uint32_t(size));
      from = i + 1;
      i += 3;
    } else {
      ++i;
    }
  }
  if (from < in.size()) std::memcpy(bytes_.data() + size, in.data() + from, in.size() - from);
  size += in.size() - from;

  endBit_ = size == 0 ? 0 : std::uint32_t(8 * size) - 1 - std::uint32_t(std::countr_zero(bytes_[size - 1]));

  // The padding is ones: a level_prefix that runs off the data ends there. Its suffix has as many bits as the prefix
  // had zeros, so the longest run of zeros in the data is padded for as well.
  const std::size_t dataWords = (size + 3) / 4;
  std::memset(bytes_.data() + size, 0xFF, bytes_.size() - size);
  std::size_t zeros = 0, longestZeros = 0;
  words_.resize(dataWords + slackWords);
  for (std::size_t i = 0; i < dataWords; ++i) {
    std::uint32_t word;
    std::memcpy(&word, bytes_.data() + 4 * i, 4);
    words_[i] = __builtin_bswap32(word);
    zeros = word == 0 ? zeros + 1 : 0;
    longestZeros = std::max(longestZeros, zeros);
  }
  words_.resize(dataWords + slackWords + longestZeros);
  std::fill(words_.begin() + std::ptrdiff_t(dataWords), words_.end(), 0xFFFFFFFFu);
}

std::int64_t Nal::filePosition(std::uint32_t bit) const {
  const std::uint32_t byte = std::min(bit, endBit_) / 8;
  const auto before = std::upper_bound(removed_.begin(), removed_.end(), byte) - removed_.begin();
  return position_ + 1 + byte + before;
}

}  // namespace h264
