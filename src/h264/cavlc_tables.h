// Level decoding of CAVLC (H.264 9.2.2.1) and the fixed positions of chroma DC blocks. The code tables for coeff_token,
// total_zeros and run_before are the caller's.
#pragma once

#include <array>

#include "types.h"

namespace zvp {

// The magnitude above which a suffixLength grows.
inline constexpr std::array<u8, 6> vlc_inc_0 = {0, 3, 6, 12, 24, 48};

namespace detail {

// By suffixLength and level_prefix below 16.
using LevelTable = std::array<std::array<s32, 16>, 7>;

constexpr LevelTable levelSuffixBits() {
  LevelTable table{};
  for (std::size_t s = 0; s < 7; ++s) {
    for (std::size_t prefix = 0; prefix < 15; ++prefix) table[s][prefix] = s32(s);
    table[s][15] = 12;
  }
  table[0][14] = 4;
  return table;
}

constexpr LevelTable levelBases() {
  LevelTable table{};
  for (std::size_t prefix = 0; prefix < 16; ++prefix) {
    table[0][prefix] = prefix == 15 ? 16 : prefix == 14 ? 8 : 1;
    for (std::size_t s = 1; s < 7; ++s) table[s][prefix] = 1 + s32(prefix << (s - 1));
  }
  return table;
}

}  // namespace detail

// Suffix bits, and the magnitude that the suffix is added to.
inline constexpr detail::LevelTable bitsToGetTbl16s_0 = detail::levelSuffixBits();
inline constexpr detail::LevelTable addOffsetTbl16s_0 = detail::levelBases();
static_assert(bitsToGetTbl16s_0[0][13] == 0 && bitsToGetTbl16s_0[0][14] == 4 && bitsToGetTbl16s_0[0][15] == 12 &&
              bitsToGetTbl16s_0[6][14] == 6 && bitsToGetTbl16s_0[6][15] == 12);
static_assert(addOffsetTbl16s_0[0][13] == 1 && addOffsetTbl16s_0[0][14] == 8 && addOffsetTbl16s_0[0][15] == 16 &&
              addOffsetTbl16s_0[1][15] == 16 && addOffsetTbl16s_0[6][15] == 481);

// What suffixLength 0 adds to the levelCode of an escape.
inline constexpr std::array<s32, 7> sadd_0 = {15, 0, 0, 0, 0, 0, 0};

// A 4:2:0 chroma DC block of one coefficient: by the three bits behind the sign, its position and the bits of
// coeff_token, sign and total_zeros together.
inline constexpr std::array<s8, 16> ChromaDCRunTable_0 = {3, 5, 2, 5, 1, 4, 1, 4, 0, 3, 0, 3, 0, 3, 0, 3};

// From the coding order of a 4:2:2 chroma DC block to its element.
inline constexpr std::array<s32, 8> ChromaDC422RasterScan_0 = {0, 2, 1, 4, 6, 3, 5, 7};

}  // namespace zvp
