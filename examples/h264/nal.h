// One NAL unit: header, and the payload as a bit stream in 32-bit words, without the emulation prevention bytes
// (H.264 7.3.1, 7.4.1).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "common/bit_reader.h"
#include "common/decoder.h"

namespace h264 {

enum class NalType {
  Slice = 1,
  PartitionA = 2,
  PartitionB = 3,
  PartitionC = 4,
  IdrSlice = 5,
  Sei = 6,
  SequenceParameters = 7,
  PictureParameters = 8,
  Delimiter = 9,
  EndOfSequence = 10,
  EndOfStream = 11,
  Filler = 12,
};

class Nal {
 public:
  // Takes the bytes of a NAL unit, which begin at the given position of the file. The storage is kept from unit to
  // unit. Throws StreamError.
  void load(std::span<const std::uint8_t> unit, std::int64_t position);

  NalType type() const { return type_; }
  unsigned refIdc() const { return refIdc_; }
  // A reader at the first bit behind the header. It ends before rbsp_trailing_bits, so that atEnd() is the opposite of
  // more_rbsp_data().
  video::BitReader reader() const { return video::BitReader(words_.data(), std::uint32_t(words_.size()), endBit_); }
  // Where a bit of the payload stands in the file.
  std::int64_t filePosition(std::uint32_t bit) const;
  std::int64_t filePosition() const { return position_; }

  [[noreturn]] void damaged(const video::BitReader& at, const std::string& text) const {
    throw video::StreamError(video::StreamError::Kind::Damaged, filePosition(at.position()), text);
  }
  [[noreturn]] void unsupported(const std::string& text) const {
    throw video::StreamError(video::StreamError::Kind::Unsupported, position_, text);
  }

 private:
  std::vector<std::uint8_t> bytes_;      // the payload
  std::vector<std::uint32_t> words_;     // the payload and its padding
  std::vector<std::uint32_t> removed_;   // payload indices in front of which a byte was taken out
  std::int64_t position_ = 0;
  std::uint32_t endBit_ = 0;
  NalType type_{};
  unsigned refIdc_ = 0;
};

}  // namespace h264
