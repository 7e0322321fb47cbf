// Model of the reconstruction of DCT blocks from a stream: one step of the text after the other, bits one at a time.
#pragma once

#include <array>
#include <cstdint>

#include "reference/mpeg/huffman.h"

namespace reference::mpeg {

struct BlockSyntax {
  bool mpeg2, intra;
};

struct BlockInput {
  const std::int32_t* firstTable;  // intra: of dct_dc_size
  const std::int32_t* acTable;
  const std::int32_t* scan;     // 64 entries, but as many as a non-intra block's first run asks for
  std::int32_t scale;           // QP
  const std::int16_t* weights;  // null: 16 everywhere
  std::int16_t prediction = 0;  // intra only
  int shift = 0;                // intra of MPEG-2 only, 0 to 31
};

struct BlockResult {
  bool good = false;
  int size = -1;                // where good
  std::int16_t prediction = 0;  // intra only
  int scanEntries = 64;         // that the scan must have had
  std::array<std::int16_t, 64> block{};
};

BlockResult reconstruct(BlockSyntax syntax, const BlockInput& input, BitReader& reader);

}  // namespace reference::mpeg
