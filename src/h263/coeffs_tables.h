// The TCOEF codes of H.263 5.4.2 and of its Annex I in the forms that the coefficient readers and writers use.
#pragma once

#include "event_codes.h"

namespace zvp::h263 {

// INTRA TCOEF of Annex I: the words of TCOEF for other events.
// clang-format off
inline constexpr auto advIntraLines = std::to_array<EventLine>({
    {0, 0, "10 110 1110 01100 01101 010000 010001 010010 0010110 00011011 000100000 000100001 000011010 "
           "000011011 000011100 000011101 000011110 000011111 00000100011 00000100010 000001010111 "
           "000001010110 000001010101 000001010100 000001010011"},
    {0, 1, "1111 010100 0010100 00011110 0000001111 00000100001 000001010000"},
    {0, 2, "01011 0010101 0000001110 0000001001"}, {0, 3, "010101 00011101 0000001101 000001010001"},
    {0, 4, "010011 000100011 00000000111"}, {0, 5, "0010111 000100010 000001010010"}, {0, 6, "00011100 0000001100"},
    {0, 7, "00011111 0000001011"}, {0, 8, "000100101 0000001010"}, {0, 9, "000100100 00000000110"},
    {0, 10, "0000100001"}, {0, 11, "0000100000"}, {0, 12, "0000001000"}, {0, 13, "00000100000"},
    {1, 0, "0111 001100 0010000 00010011 000010001 000010010 0000000100 00000100111 00000100110 000001011111"},
    {1, 1, "001111 000010011 0000000101 00000100101"}, {1, 2, "001110 000010100 00000100100"},
    {1, 3, "001101 0000000110 000001011110"}, {1, 4, "0010001 0000000111"}, {1, 5, "0010011 000001011101"},
    {1, 6, "0010010 000001011100"}, {1, 7, "00010100 000001011011"}, {1, 8, "00010101"}, {1, 9, "00011010"},
    {1, 10, "00011001"}, {1, 11, "00011000"}, {1, 12, "00010111"}, {1, 13, "00010110"}, {1, 14, "000011001"},
    {1, 15, "000010101"}, {1, 16, "000010110"}, {1, 17, "000011000"}, {1, 18, "000010111"}, {1, 19, "00000000100"},
    {1, 20, "00000000101"}, {1, 21, "000001011000"}, {1, 22, "000001011001"}, {1, 23, "000001011010"}});
// clang-format on
inline constexpr auto advIntraCodes = eventCodes<advIntraLines>();
static_assert(advIntraCodes.size() == 102 && isPrefixFree(advIntraCodes));

constexpr bool sameWords(const decltype(tcoefCodes)& a, const decltype(tcoefCodes)& b) {
  for (const EventCode& x : a) {
    bool found = false;
    for (const EventCode& y : b) found |= x.word == y.word && x.length == y.length;
    if (!found) return false;
  }
  return true;
}
static_assert(sameWords(tcoefCodes, advIntraCodes));

// ---- reading ----------------------------------------------------------------------------------------------------

// A row: LAST in bits 7..0, RUN + 1 in 15..8, LEVEL in 23..16, length with the sign in 31..24.
constexpr u32 packedRow(const EventCode& code) {
  return u32(code.last) | u32(code.run + 1) << 8 | u32(code.level) << 16 | u32(code.length + 1) << 24;
}

using Tables = EventTables<u32>;

// The escape is looked for first: it has no rows.
inline constexpr auto h263_coefTab0 = highTable<tcoefCodes, packedRow>();
inline constexpr auto h263_coefTab1 = middleTable<tcoefCodes, packedRow>();
inline constexpr auto h263_coefTab2 = lowTable<tcoefCodes, packedRow>();
inline constexpr auto h263_advCoefTab0 = highTable<advIntraCodes, packedRow>();
inline constexpr auto h263_advCoefTab1 = middleTable<advIntraCodes, packedRow>();
inline constexpr auto h263_advCoefTab2 = lowTable<advIntraCodes, packedRow>();

inline constexpr Tables coefTables = {h263_coefTab0.data(), h263_coefTab1.data(), h263_coefTab2.data()};
inline constexpr Tables advCoefTables = {h263_advCoefTab0.data(), h263_advCoefTab1.data(), h263_advCoefTab2.data()};

static_assert(hasNoEmptyRow(h263_coefTab0) && hasNoEmptyRow(h263_coefTab1) && hasNoEmptyRow(h263_coefTab2));
static_assert(hasNoEmptyRow(h263_advCoefTab0) && hasNoEmptyRow(h263_advCoefTab1) && hasNoEmptyRow(h263_advCoefTab2));
static_assert(h263_coefTab2.size() == 88 && h263_advCoefTab2.size() == 88);
static_assert(h263_coefTab0[0] == 0x08010901 && h263_coefTab0[4] == 0x08010D00);

// ---- writing ----------------------------------------------------------------------------------------------------

// By LAST, then run, then level. pOffs[r] is the row of (0, r, 1), pOffsLast[r] that of (1, r, 1).
struct OwnH263VlcParams {
  s32 maxRun, maxRunLast;
  const s32* pOffs;
  const s32* pOffsLast;
  const VlcWord* pVlc;
};

inline constexpr auto h263_VLCTab = vlcWords(tcoefCodes);
inline constexpr auto h263_Offs = rowOffsets<28>(tcoefCodes, 0);
inline constexpr auto h263_Offs_l = rowOffsets<42>(tcoefCodes, 1);
inline constexpr OwnH263VlcParams h263_VLCParams = {largestRun(tcoefCodes, 0), largestRun(tcoefCodes, 1),
                                                    h263_Offs.data(), h263_Offs_l.data(), h263_VLCTab.data()};

inline constexpr auto h263_advVLCTab = vlcWords(advIntraCodes);
inline constexpr auto h263_advOffs = rowOffsets<15>(advIntraCodes, 0);
inline constexpr auto h263_advOffs_l = rowOffsets<25>(advIntraCodes, 1);
inline constexpr OwnH263VlcParams h263_advVLCParams = {largestRun(advIntraCodes, 0), largestRun(advIntraCodes, 1),
                                                       h263_advOffs.data(), h263_advOffs_l.data(),
                                                       h263_advVLCTab.data()};

static_assert(h263_VLCParams.maxRun == 26 && h263_VLCParams.maxRunLast == 40);
static_assert(h263_advVLCParams.maxRun == 13 && h263_advVLCParams.maxRunLast == 23);
static_assert(beginsWith(h263_Offs, {0, 12, 18, 22, 25, 28, 31, 34, 36, 38, 40, 42, 43, 44}) && h263_Offs[27] == 58);
static_assert(beginsWith(h263_Offs_l, {58, 61, 63, 64, 65}) && h263_Offs_l[41] == 102);
static_assert(beginsWith(h263_advOffs, {0, 25, 32, 36, 40, 43, 46, 48, 50, 52, 54, 55, 56, 57, 58}));
static_assert(beginsWith(h263_advOffs_l, {58, 68, 72, 75, 78, 80, 82, 84, 86, 87}) && h263_advOffs_l[24] == 102);
static_assert(beginsWith(h263_VLCTab, {{4, 3}, {30, 5}, {42, 7}, {46, 8}, {62, 9}, {74, 10}, {72, 10}, {66, 11}}));

}  // namespace zvp::h263
