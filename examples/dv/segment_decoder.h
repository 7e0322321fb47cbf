// From the 400 bytes of a video segment to its five macroblocks in the picture.
#pragma once

#include <cstdint>
#include <vector>

#include "dv/layout.h"
#include "dv/picture.h"
#include "dv/tables.h"

namespace dv {

// How large the pictures are to be, in width and height, and for the half size how carefully made: a draft takes what
// stands in each block's own space, and coarser arithmetic.
enum class Scale { Full, Half, HalfDraft, Quarter, Eighth };

constexpr int divisor(Scale scale) {
  return scale == Scale::Full ? 1 : scale == Scale::Quarter ? 4 : scale == Scale::Eighth ? 8 : 2;
}

class SegmentDecoder {
 public:
  SegmentDecoder(const System& system, Scale scale);

  // The picture has the system's size divided by the scale's divisor.
  void decode(const std::uint8_t* segment, const Place (&places)[5], PackedPicture& picture);

 private:
  void readBlocks(const std::uint8_t* segment);
  void transform(int block);
  void transformHigh(int block);
  void store(const Place (&places)[5], PackedPicture& picture);
  void storeHigh(const Place (&places)[5], PackedPicture& picture);

  std::int16_t* block(int index) { return blocks_ + 64 * index; }
  int blocksOfMacroblock() const { return system_.highDefinition ? 8 : 6; }

  const System& system_;
  const Scale scale_;
  const Tables& tables_ = Tables::instance();
  alignas(64) std::int16_t blocks_[40 * 64];
  std::uint32_t parameters_[40];
  std::vector<std::uint8_t> elsewhere_;  // where halves go that a call is not to store in the picture
  std::int16_t halves_[10][6 * 64];      // 100 Mb/s: halves of macroblocks in the form of 50 Mb/s
};

}  // namespace dv
