// The 2D-VLC tables of AVS1-P2 (GB/T 20090.2, Annex D): (run, level) by code number, the levels from which an escape
// counts, the run bounds and the scans.
//
// A table is written as the place of its end of block and its 29 pairs of positive level; each stands twice, with its
// negative twin behind it, and the end of block stands between two pairs. RefAbsLevel follows from the pairs.
#pragma once

#include <array>

#include "scan_tables.h"

namespace zvp {

struct AvsRunLevel {
  u8 run;
  s8 level;
};
struct AvsVlcTable {
  std::array<AvsRunLevel, 64> codes;  // by code number; 0 to 58 are reachable
  std::array<u8, 32> refAbsLevel;     // by run: the largest level of the run plus one; 0 behind the last run
};
static_assert(sizeof(AvsVlcTable) == 160);

inline constexpr AvsRunLevel avsEndOfBlock = {64, 0};
inline constexpr u32 avsCodes = 59;  // code numbers from here on are escapes

constexpr AvsVlcTable avsVlcTable(int endOfBlock, const std::array<AvsRunLevel, 29>& pairs) {
  AvsVlcTable table{};
  for (auto& code : table.codes) code = avsEndOfBlock;
  for (int i = 0; i < 58; ++i) {
    const AvsRunLevel pair = pairs[std::size_t(i / 2)];
    table.codes[std::size_t(i < endOfBlock ? i : i + 1)] = {pair.run, i % 2 == 0 ? pair.level : s8(-pair.level)};
    u8& reference = table.refAbsLevel[pair.run];
    if (reference <= pair.level) reference = u8(pair.level + 1);
  }
  return table;
}

inline constexpr AvsVlcTable VLC0_Intra = avsVlcTable(58, {{
    {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 1}, {8, 1}, {9, 1}, {10, 1}, {0, 2}, {11, 1},
    {12, 1}, {13, 1}, {14, 1}, {1, 2}, {15, 1}, {16, 1}, {0, 3}, {17, 1}, {18, 1}, {2, 2}, {19, 1}, {20, 1}, {3, 2},
    {21, 1}, {4, 2}, {22, 1}}});

inline constexpr AvsVlcTable VLC1_Intra = avsVlcTable(8, {{
    {0, 1}, {1, 1}, {0, 2}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {0, 3}, {1, 2}, {6, 1}, {7, 1}, {8, 1}, {2, 2}, {0, 4},
    {9, 1}, {10, 1}, {3, 2}, {1, 3}, {11, 1}, {4, 2}, {0, 5}, {12, 1}, {5, 2}, {13, 1}, {6, 2}, {7, 2}, {2, 3},
    {0, 6}, {14, 1}}});

inline constexpr AvsVlcTable VLC2_Intra = avsVlcTable(8, {{
    {0, 1}, {0, 2}, {1, 1}, {0, 3}, {2, 1}, {1, 2}, {0, 4}, {3, 1}, {0, 5}, {4, 1}, {1, 3}, {2, 2}, {5, 1}, {0, 6},
    {3, 2}, {6, 1}, {1, 4}, {0, 7}, {2, 3}, {4, 2}, {7, 1}, {5, 2}, {0, 8}, {8, 1}, {1, 5}, {3, 3}, {6, 2}, {0, 9},
    {9, 1}}});

inline constexpr AvsVlcTable VLC3_Intra = avsVlcTable(8, {{
    {0, 1}, {0, 2}, {0, 3}, {1, 1}, {0, 4}, {0, 5}, {1, 2}, {2, 1}, {0, 6}, {1, 3}, {0, 7}, {3, 1}, {0, 8}, {2, 2},
    {1, 4}, {4, 1}, {0, 9}, {1, 5}, {3, 2}, {0, 10}, {2, 3}, {5, 1}, {0, 11}, {1, 6}, {6, 1}, {4, 2}, {3, 3},
    {0, 12}, {2, 4}}});

inline constexpr AvsVlcTable VLC4_Intra = avsVlcTable(6, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {1, 1}, {0, 7}, {0, 8}, {1, 2}, {0, 9}, {0, 10}, {2, 1}, {1, 3},
    {0, 11}, {1, 4}, {0, 12}, {0, 13}, {1, 5}, {3, 1}, {2, 2}, {0, 14}, {1, 6}, {0, 15}, {0, 16}, {2, 3}, {4, 1},
    {1, 7}, {0, 17}}});

inline constexpr AvsVlcTable VLC5_Intra = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}, {0, 8}, {0, 9}, {0, 10}, {1, 1}, {0, 11}, {0, 12},
    {0, 13}, {1, 2}, {0, 14}, {0, 15}, {1, 3}, {0, 16}, {2, 1}, {0, 17}, {1, 4}, {0, 18}, {1, 5}, {0, 19}, {0, 20},
    {1, 6}, {0, 21}, {2, 2}}});

inline constexpr AvsVlcTable VLC6_Intra = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}, {0, 8}, {0, 9}, {0, 10}, {0, 11}, {0, 12}, {0, 13},
    {0, 14}, {0, 15}, {0, 16}, {1, 1}, {0, 17}, {0, 18}, {0, 19}, {0, 20}, {0, 21}, {1, 2}, {0, 22}, {0, 23},
    {0, 24}, {0, 25}, {1, 3}, {0, 26}}});

inline constexpr AvsVlcTable VLC0_Inter = avsVlcTable(58, {{
    {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {7, 1}, {8, 1}, {9, 1}, {10, 1}, {11, 1}, {12, 1},
    {0, 2}, {13, 1}, {14, 1}, {15, 1}, {16, 1}, {17, 1}, {18, 1}, {0, 3}, {19, 1}, {20, 1}, {1, 2}, {21, 1}, {22, 1},
    {23, 1}, {24, 1}, {25, 1}}});

inline constexpr AvsVlcTable VLC1_Inter = avsVlcTable(2, {{
    {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {0, 2}, {6, 1}, {7, 1}, {8, 1}, {9, 1}, {1, 2}, {10, 1}, {11, 1},
    {0, 3}, {12, 1}, {13, 1}, {2, 2}, {14, 1}, {3, 2}, {15, 1}, {4, 2}, {16, 1}, {0, 4}, {5, 2}, {17, 1}, {18, 1},
    {6, 2}, {1, 3}}});

inline constexpr AvsVlcTable VLC2_Inter = avsVlcTable(2, {{
    {0, 1}, {1, 1}, {0, 2}, {2, 1}, {3, 1}, {0, 3}, {1, 2}, {4, 1}, {5, 1}, {6, 1}, {2, 2}, {0, 4}, {7, 1}, {1, 3},
    {3, 2}, {8, 1}, {9, 1}, {0, 5}, {4, 2}, {10, 1}, {5, 2}, {11, 1}, {2, 3}, {0, 6}, {1, 4}, {12, 1}, {6, 2},
    {3, 3}, {13, 1}}});

inline constexpr AvsVlcTable VLC3_Inter = avsVlcTable(2, {{
    {0, 1}, {0, 2}, {1, 1}, {0, 3}, {2, 1}, {1, 2}, {0, 4}, {3, 1}, {0, 5}, {4, 1}, {1, 3}, {2, 2}, {5, 1}, {0, 6},
    {3, 2}, {6, 1}, {1, 4}, {0, 7}, {2, 3}, {7, 1}, {4, 2}, {0, 8}, {8, 1}, {3, 3}, {5, 2}, {1, 5}, {9, 1}, {0, 9},
    {2, 4}}});

inline constexpr AvsVlcTable VLC4_Inter = avsVlcTable(2, {{
    {0, 1}, {0, 2}, {0, 3}, {1, 1}, {0, 4}, {0, 5}, {1, 2}, {2, 1}, {0, 6}, {1, 3}, {0, 7}, {3, 1}, {0, 8}, {2, 2},
    {1, 4}, {4, 1}, {0, 9}, {1, 5}, {3, 2}, {5, 1}, {0, 10}, {2, 3}, {0, 11}, {6, 1}, {1, 6}, {3, 3}, {4, 2},
    {0, 12}, {2, 4}}});

inline constexpr AvsVlcTable VLC5_Inter = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {1, 1}, {0, 6}, {0, 7}, {0, 8}, {1, 2}, {0, 9}, {2, 1}, {0, 10}, {1, 3},
    {0, 11}, {1, 4}, {0, 12}, {3, 1}, {2, 2}, {0, 13}, {1, 5}, {0, 14}, {1, 6}, {4, 1}, {0, 15}, {2, 3}, {0, 16},
    {3, 2}, {1, 7}}});

inline constexpr AvsVlcTable VLC6_Inter = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}, {1, 1}, {0, 8}, {0, 9}, {0, 10}, {0, 11}, {0, 12},
    {1, 2}, {0, 13}, {2, 1}, {0, 14}, {0, 15}, {1, 3}, {0, 16}, {0, 17}, {0, 18}, {1, 4}, {0, 19}, {0, 20}, {2, 2},
    {3, 1}, {1, 5}, {0, 21}}});

inline constexpr AvsVlcTable VLC0_Chroma = avsVlcTable(58, {{
    {0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}, {0, 2}, {7, 1}, {8, 1}, {9, 1}, {10, 1}, {11, 1},
    {12, 1}, {13, 1}, {14, 1}, {0, 3}, {15, 1}, {16, 1}, {17, 1}, {18, 1}, {19, 1}, {20, 1}, {21, 1}, {1, 2},
    {22, 1}, {23, 1}, {24, 1}, {0, 4}}});

inline constexpr AvsVlcTable VLC1_Chroma = avsVlcTable(0, {{
    {0, 1}, {1, 1}, {0, 2}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {0, 3}, {6, 1}, {7, 1}, {1, 2}, {8, 1}, {9, 1}, {10, 1},
    {0, 4}, {11, 1}, {12, 1}, {13, 1}, {2, 2}, {14, 1}, {3, 2}, {0, 5}, {1, 3}, {15, 1}, {16, 1}, {17, 1}, {4, 2},
    {18, 1}, {19, 1}}});

inline constexpr AvsVlcTable VLC2_Chroma = avsVlcTable(2, {{
    {0, 1}, {0, 2}, {1, 1}, {0, 3}, {2, 1}, {0, 4}, {1, 2}, {3, 1}, {0, 5}, {4, 1}, {1, 3}, {2, 2}, {5, 1}, {0, 6},
    {6, 1}, {3, 2}, {0, 7}, {7, 1}, {1, 4}, {8, 1}, {2, 3}, {4, 2}, {5, 2}, {0, 8}, {9, 1}, {10, 1}, {0, 9}, {1, 5},
    {3, 3}}});

inline constexpr AvsVlcTable VLC3_Chroma = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {1, 1}, {0, 5}, {1, 2}, {0, 6}, {2, 1}, {0, 7}, {1, 3}, {0, 8}, {3, 1}, {2, 2},
    {0, 9}, {1, 4}, {4, 1}, {0, 10}, {2, 3}, {1, 5}, {3, 2}, {0, 11}, {5, 1}, {0, 12}, {6, 1}, {1, 6}, {0, 13},
    {4, 2}, {7, 1}}});

inline constexpr AvsVlcTable VLC4_Chroma = avsVlcTable(0, {{
    {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}, {0, 8}, {1, 1}, {0, 9}, {0, 10}, {0, 11}, {1, 2},
    {0, 12}, {0, 13}, {1, 3}, {0, 14}, {2, 1}, {0, 15}, {1, 4}, {0, 16}, {0, 17}, {1, 5}, {3, 1}, {2, 2}, {0, 18},
    {1, 6}, {0, 19}, {4, 1}}});

// The largest run that refAbsLevel holds for, by the limit of the current table.
inline constexpr std::array<s32, 12> VLC_IntraMaxRun = {22, 14, 9, 6, 6, 4, 4, 4, 2, 2, 2, 1};
inline constexpr std::array<s32, 12> VLC_InterMaxRun = {25, 18, 13, 9, 6, 6, 6, 4, 4, 4, 3, 1};
inline constexpr std::array<s32, 6> VLC_ChromaMaxRun = {24, 19, 10, 7, 7, 4};

// From coded position to raster index: frame, field.
inline constexpr std::array<std::array<s32, 64>, 2> AVSScan = {{
    {{
      0, 1, 8, 16, 9, 2, 3, 10, 17, 24, 32, 25, 18, 11, 4, 5, 12, 19, 26, 33, 40, 48,
      41, 34, 27, 20, 13, 6, 7, 14, 21, 28, 35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23,
      30, 37, 44, 51, 58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63
    }},
    {{
      0, 8, 16, 1, 24, 32, 9, 17, 40, 48, 25, 2, 10, 56, 33, 18, 3, 41, 49, 26, 11, 19,
      4, 57, 34, 12, 42, 27, 20, 50, 35, 28, 5, 13, 58, 43, 36, 21, 6, 29, 51, 44, 14, 22,
      37, 59, 52, 30, 45, 60, 38, 53, 46, 61, 54, 7, 62, 15, 23, 31, 39, 47, 55, 63
    }}
}};

// Which table is in use: k is the order of its Exp-Golomb codes. A level above the limit goes on to the first stage
// whose limit is not below it, or to the last one.
struct AvsVlcStage {
  const AvsVlcTable* table;
  s32 k;
  u32 limit;
};
template <int Stages, int Bounds> struct AvsBlockCode {
  std::array<AvsVlcStage, Stages> stages;
  std::array<s32, Bounds> maxRun;  // by the limit, at most the last index
};

inline constexpr AvsBlockCode<7, 12> avsIntraLuma = {{{{&VLC0_Intra, 2, 0},
                                                       {&VLC1_Intra, 2, 1},
                                                       {&VLC2_Intra, 2, 2},
                                                       {&VLC3_Intra, 2, 4},
                                                       {&VLC4_Intra, 2, 7},
                                                       {&VLC5_Intra, 2, 10},
                                                       {&VLC6_Intra, 2, 65535}}},
                                                     VLC_IntraMaxRun};
inline constexpr AvsBlockCode<7, 12> avsInterLuma = {{{{&VLC0_Inter, 3, 0},
                                                       {&VLC1_Inter, 2, 1},
                                                       {&VLC2_Inter, 2, 2},
                                                       {&VLC3_Inter, 2, 3},
                                                       {&VLC4_Inter, 2, 6},
                                                       {&VLC5_Inter, 2, 9},
                                                       {&VLC6_Inter, 2, 65535}}},
                                                     VLC_InterMaxRun};
inline constexpr AvsBlockCode<5, 6> avsChroma = {{{{&VLC0_Chroma, 2, 0},
                                                   {&VLC1_Chroma, 0, 1},
                                                   {&VLC2_Chroma, 1, 2},
                                                   {&VLC3_Chroma, 1, 4},
                                                   {&VLC4_Chroma, 0, 65535}}},
                                                 VLC_ChromaMaxRun};

// Each bound is the largest run of the table that is in use at that limit, but for the last one of the inter tables: it
// is 1 while VLC6_Inter goes up to run 3, so that escapes of runs 2 and 3 count from 1 there. Required as it stands.
template <int Stages, int Bounds>
constexpr bool boundsFitTables(const AvsBlockCode<Stages, Bounds>& code, int checked = Bounds) {
  for (int limit = 0; limit < checked; ++limit) {
    int stage = 0;
    while (stage + 1 < Stages && code.stages[std::size_t(stage)].limit < u32(limit)) ++stage;
    int last = -1;
    for (int run = 0; run < 32; ++run)
      if (code.stages[std::size_t(stage)].table->refAbsLevel[std::size_t(run)] != 0) last = run;
    if (last != code.maxRun[std::size_t(limit)]) return false;
  }
  return true;
}
static_assert(boundsFitTables(avsIntraLuma) && boundsFitTables(avsInterLuma, 11) && boundsFitTables(avsChroma));

constexpr bool endsAt(const AvsVlcTable& table, int row) {
  return table.codes[std::size_t(row)].run == 64 && table.codes[std::size_t(row)].level == 0 &&
         table.codes[59].run == 64 && table.codes[63].run == 64;
}
static_assert(endsAt(VLC0_Intra, 58) && endsAt(VLC1_Intra, 8) && endsAt(VLC2_Intra, 8) && endsAt(VLC3_Intra, 8) &&
              endsAt(VLC4_Intra, 6) && endsAt(VLC5_Intra, 0) && endsAt(VLC6_Intra, 0));
static_assert(endsAt(VLC0_Inter, 58) && endsAt(VLC1_Inter, 2) && endsAt(VLC2_Inter, 2) && endsAt(VLC3_Inter, 2) &&
              endsAt(VLC4_Inter, 2) && endsAt(VLC5_Inter, 0) && endsAt(VLC6_Inter, 0));
static_assert(endsAt(VLC0_Chroma, 58) && endsAt(VLC1_Chroma, 0) && endsAt(VLC2_Chroma, 2) && endsAt(VLC3_Chroma, 0) &&
              endsAt(VLC4_Chroma, 0));

static_assert(isPermutation(AVSScan[0]) && isPermutation(AVSScan[1]));

}  // namespace zvp
