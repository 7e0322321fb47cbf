// The event codes of ISO/IEC 14496-2, tables B-16 (intra) and B-17 (inter), in the forms that the coefficient readers
// and writers use, and the size codes of the intra DC, tables B-13 and B-14. The reversible code has a file of its own.
#pragma once

#include "event_codes.h"

namespace zvp::mpeg4 {

// clang-format off
inline constexpr auto intraLines = std::to_array<EventLine>({
    {0, 0, "10 110 1111 01101 01100 010101 010011 010010 0010111 00011111 00011110 00011101 000100101 "
           "000100100 000100011 000100001 0000100001 0000100000 0000001111 0000001110 00000000111 "
           "00000000110 00000100000 00000100001 000001010000 000001010001 000001010010"},
    {0, 1, "1110 010100 0010110 00011100 000100000 000011111 0000001101 00000100010 000001010011 000001010101"},
    {0, 2, "01011 0010101 000011110 0000001100 000001010110"}, {0, 3, "010001 00011011 000011101 0000001011"},
    {0, 4, "010000 000100010 0000001010"}, {0, 5, "001101 000011100 0000001000"},
    {0, 6, "0010010 000011011 000001010100"}, {0, 7, "0010100 000011010 000001010111"}, {0, 8, "00011001 0000001001"},
    {0, 9, "00011000 00000100011"}, {0, 10, "00010111"}, {0, 11, "000011001"}, {0, 12, "000011000"},
    {0, 13, "0000000111"}, {0, 14, "000001011000"},
    {1, 0, "0111 001100 00010110 000010111 0000000110 00000000101 00000000100 000001011001"},
    {1, 1, "001111 000010110 0000000101"}, {1, 2, "001110 0000000100"}, {1, 3, "0010001 00000100100"},
    {1, 4, "0010000 00000100101"}, {1, 5, "0010011 000001011010"}, {1, 6, "00010101 000001011011"}, {1, 7, "00010100"},
    {1, 8, "00010011"}, {1, 9, "00011010"}, {1, 10, "000010101"}, {1, 11, "000010100"}, {1, 12, "000010011"},
    {1, 13, "000010010"}, {1, 14, "000010001"}, {1, 15, "00000100110"}, {1, 16, "00000100111"},
    {1, 17, "000001011100"}, {1, 18, "000001011101"}, {1, 19, "000001011110"}, {1, 20, "000001011111"}});
// clang-format on
inline constexpr auto intraCodes = eventCodes<intraLines>();
static_assert(intraCodes.size() == 102 && isPrefixFree(intraCodes));
inline constexpr const auto& interCodes = tcoefCodes;

// ---- reading ----------------------------------------------------------------------------------------------------

struct EventRow {
  u8 last, run, level;
  u8 length;  // without the sign
  constexpr bool operator==(const EventRow&) const = default;
};
inline constexpr u8 escapeLevel = 255;
inline constexpr EventRow escapeRow = {0, 0, escapeLevel, eventEscapeBits};

constexpr EventRow eventRow(const EventCode& code) { return {code.last, code.run, code.level, code.length}; }

using Tables = EventTables<EventRow>;

// The escape's rows stand at the end of the low table: within another escape they are read as rows.
template <const auto& Codes> constexpr std::array<EventRow, 120> lowTableWithEscape() {
  std::array<EventRow, 120> rows;
  rows.fill(escapeRow);
  const auto words = lowTable<Codes, eventRow>();
  for (std::size_t i = 0; i < words.size(); ++i) rows[i] = words[i];
  return rows;
}

inline constexpr auto tableB16_512_5 = highTable<intraCodes, eventRow>();
inline constexpr auto tableB16_128_2 = middleTable<intraCodes, eventRow>();
inline constexpr auto tableB16_8 = lowTableWithEscape<intraCodes>();
inline constexpr auto tableB17_512_5 = highTable<interCodes, eventRow>();
inline constexpr auto tableB17_128_2 = middleTable<interCodes, eventRow>();
inline constexpr auto tableB17_8 = lowTableWithEscape<interCodes>();

inline constexpr Tables tablesB16 = {tableB16_512_5.data(), tableB16_128_2.data(), tableB16_8.data()};
inline constexpr Tables tablesB17 = {tableB17_512_5.data(), tableB17_128_2.data(), tableB17_8.data()};

static_assert(hasNoEmptyRow(tableB16_512_5) && hasNoEmptyRow(tableB16_128_2) && hasNoEmptyRow(tableB16_8));
static_assert(hasNoEmptyRow(tableB17_512_5) && hasNoEmptyRow(tableB17_128_2) && hasNoEmptyRow(tableB17_8));

// What the escapes of type 1 and 2 add, by LAST: the largest level of the run; the largest run of the level, plus one.
using Bounds = std::array<const u8*, 2>;

inline constexpr auto LMAX_Intra_0 = largestLevels<u8, 15>(intraCodes, 0);
inline constexpr auto LMAX_Intra_1 = largestLevels<u8, 21>(intraCodes, 1);
inline constexpr auto LMAX_Inter_0 = largestLevels<u8, 27>(interCodes, 0);
inline constexpr auto LMAX_Inter_1 = largestLevels<u8, 41>(interCodes, 1);
inline constexpr Bounds LMAX_Intra = {LMAX_Intra_0.data(), LMAX_Intra_1.data()};
inline constexpr Bounds LMAX_Inter = {LMAX_Inter_0.data(), LMAX_Inter_1.data()};

template <std::size_t Levels, std::size_t Events>
constexpr std::array<u8, Levels> runsPlusOne(const std::array<EventCode, Events>& codes, s32 last) {
  std::array<u8, Levels> runs{};
  for (std::size_t level = 1; level < Levels; ++level) runs[level] = u8(largestRun(codes, last, s32(level)) + 1);
  return runs;
}
inline constexpr auto RMAX_Intra_0 = runsPlusOne<28>(intraCodes, 0);
inline constexpr auto RMAX_Intra_1 = runsPlusOne<9>(intraCodes, 1);
inline constexpr auto RMAX_Inter_0 = runsPlusOne<13>(interCodes, 0);
inline constexpr auto RMAX_Inter_1 = runsPlusOne<4>(interCodes, 1);
inline constexpr Bounds RMAX_Intra = {RMAX_Intra_0.data(), RMAX_Intra_1.data()};
inline constexpr Bounds RMAX_Inter = {RMAX_Inter_0.data(), RMAX_Inter_1.data()};

static_assert(LMAX_Intra_0 == std::array<u8, 15>{27, 10, 5, 4, 3, 3, 3, 3, 2, 2, 1, 1, 1, 1, 1});
static_assert(RMAX_Intra_0 ==
              std::array<u8, 28>{0, 15, 10, 8, 4, 3, 2, 2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1});
static_assert(RMAX_Intra_1 == std::array<u8, 9>{0, 21, 7, 2, 1, 1, 1, 1, 1});

// ---- writing ----------------------------------------------------------------------------------------------------

// All by LAST. pOffs and pLmax are indexed by run: the row of level 1 in pVlc, and the largest level. There are tables
// for runs up to maxRun.
struct OwnMp4VlcParams {
  s32 maxRun[2];
  const s32* pOffs[2];
  const s32* pLmax[2];
  const VlcWord* pVlc;
};
template <std::size_t Runs, std::size_t LastRuns, std::size_t Words>
constexpr OwnMp4VlcParams vlcParams(const std::array<s32, Runs>& offsets, const std::array<s32, LastRuns>& lastOffsets,
                                    const std::array<s32, Runs>& levels, const std::array<s32, LastRuns>& lastLevels,
                                    const std::array<VlcWord, Words>& words) {
  return {{s32(Runs) - 1, s32(LastRuns) - 1},
          {offsets.data(), lastOffsets.data()},
          {levels.data(), lastLevels.data()},
          words.data()};
}

inline constexpr auto vlc_TB16 = vlcWords(intraCodes);
inline constexpr auto l0_offs_TB16 = rowOffsets<15>(intraCodes, 0);
inline constexpr auto l1_offs_TB16 = rowOffsets<21>(intraCodes, 1);
inline constexpr auto l0_lmax_TB16 = largestLevels<s32, 15>(intraCodes, 0);
inline constexpr auto l1_lmax_TB16 = largestLevels<s32, 21>(intraCodes, 1);
inline constexpr auto mVLC_TB16 = vlcParams(l0_offs_TB16, l1_offs_TB16, l0_lmax_TB16, l1_lmax_TB16, vlc_TB16);

inline constexpr auto vlc_TB17 = vlcWords(interCodes);
inline constexpr auto l0_offs_TB17 = rowOffsets<27>(interCodes, 0);
inline constexpr auto l1_offs_TB17 = rowOffsets<41>(interCodes, 1);
inline constexpr auto l0_lmax_TB17 = largestLevels<s32, 27>(interCodes, 0);
inline constexpr auto l1_lmax_TB17 = largestLevels<s32, 41>(interCodes, 1);
inline constexpr auto mVLC_TB17 = vlcParams(l0_offs_TB17, l1_offs_TB17, l0_lmax_TB17, l1_lmax_TB17, vlc_TB17);

// Do the tables end with the largest runs of their codes?
template <std::size_t Events>
constexpr bool reachesLargestRuns(const OwnMp4VlcParams& params, const std::array<EventCode, Events>& codes) {
  return params.maxRun[0] == largestRun(codes, 0) && params.maxRun[1] == largestRun(codes, 1);
}
static_assert(reachesLargestRuns(mVLC_TB16, intraCodes) && reachesLargestRuns(mVLC_TB17, interCodes));
static_assert(vlc_TB16.size() == 102 && vlc_TB17.size() == 102);

// Levels up to `level` have words for runs up to `run` and for no larger one. Groups by LAST, rising; the second begins
// at LastAt, pairs that are not used are 0.
struct LevelRun {
  s32 level, run;
  constexpr bool operator==(const LevelRun&) const = default;
};

template <std::size_t Pairs, std::size_t LastAt, std::size_t Events>
constexpr std::array<LevelRun, Pairs> levelRuns(const std::array<EventCode, Events>& codes) {
  std::array<LevelRun, Pairs> pairs{};
  for (s32 last : {0, 1}) {
    std::size_t pair = last ? LastAt : 0;
    for (s32 level = 1, run; (run = largestRun(codes, last, level)) >= 0; ++level) {
      if (level > 1 && run != largestRun(codes, last, level - 1)) ++pair;
      pairs[pair] = {level, run};
    }
  }
  return pairs;
}
inline constexpr std::size_t lastPairTB21 = 7, lastPairTB22 = 6;
inline constexpr auto mVLC_RMAX_TB21 = levelRuns<14, lastPairTB21>(intraCodes);
inline constexpr auto mVLC_RMAX_TB22 = levelRuns<12, lastPairTB22>(interCodes);
static_assert(mVLC_RMAX_TB21 ==
              std::array<LevelRun, 14>{
                  {{1, 14}, {2, 9}, {3, 7}, {4, 3}, {5, 2}, {10, 1}, {27, 0}, {1, 20}, {2, 6}, {3, 1}, {8, 0}}});
static_assert(mVLC_RMAX_TB22 ==
              std::array<LevelRun, 12>{{{1, 26}, {2, 10}, {3, 6}, {4, 2}, {6, 1}, {12, 0}, {1, 40}, {2, 1}, {3, 0}}});

// ---- the intra DC -----------------------------------------------------------------------------------------------

inline constexpr s32 largestDcSize = 12;

// By size. From 5 and from 3 on it is zeros and a 1.
inline constexpr std::array<VlcWord, 13> mVLC_DCSIZE_TB13 = {
    {{3, 3}, {3, 2}, {2, 2}, {2, 3}, {1, 3}, {1, 4}, {1, 5}, {1, 6}, {1, 7}, {1, 8}, {1, 9}, {1, 10}, {1, 11}}};
inline constexpr std::array<VlcWord, 13> mVLC_DCSIZE_TB14 = {
    {{3, 2}, {2, 2}, {1, 2}, {1, 3}, {1, 4}, {1, 5}, {1, 6}, {1, 7}, {1, 8}, {1, 9}, {1, 10}, {1, 11}, {1, 12}}};

}  // namespace zvp::mpeg4
