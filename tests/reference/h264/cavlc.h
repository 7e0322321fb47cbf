// CAVLC and Exp-Golomb decoding by the formulas of the bit cursor, one step after the other.
#pragma once

#include <cstdint>

namespace reference::h264 {

// The cursor, and how far it has looked.
struct BitReader {
  const std::uint32_t* word;
  std::int32_t offset;
  const std::uint32_t* furthest = nullptr;  // the last word that a read touched

  std::uint32_t read(std::int32_t n);
  void giveBack(std::int32_t n);
};

enum class CavlcShape { Residual4x4, ChromaDc420, ChromaDc422 };

struct CavlcTables {
  const std::int32_t* coeffToken;  // null: the 6-bit code
  const std::int32_t* const* totalZeros;
  const std::int32_t* const* runBefore;
  const std::int32_t* scan;  // null for the chroma blocks
  int maxNumCoeff;
};

// A block whose arguments are good, without the short codes of the 16-bit 4:2:0 member. The reader is left where the
// export leaves the cursor. Elements outside the block are left out.
template <class Element>
std::int32_t decodeCavlc(CavlcShape shape, BitReader& reader, const CavlcTables& tables, std::int16_t& numCoeff,
                         Element*& dst);

// codeNum + 1 modulo 2^32 in value.
std::int32_t decodeExpGolomb(BitReader& reader, std::uint32_t& value);

}  // namespace reference::h264
