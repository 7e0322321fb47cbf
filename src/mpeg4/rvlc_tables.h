// The reversible event code of ISO/IEC 14496-2, table B-23: one set of words, prefix-free from both ends, with events
// for intra and for inter blocks. Words of up to 8 bits are found by 8 bits, longer ones by 7 more in a second table;
// the words with the same 8 bits form a group, and the groups share four second tables, since they go on alike. All of
// it exists forward and backward.
#pragma once

#include <string_view>

#include "mpeg4/coeffs_tables.h"

namespace zvp::mpeg4 {

struct PlainEvent {
  u8 last, run, level;
};
struct ReversibleCode {
  std::string_view word;  // without the sign
  PlainEvent intra, inter;
};

// By length, then word.
// clang-format off
inline constexpr auto reversibleCodes = std::to_array<ReversibleCode>({
    {"110", {0, 0, 1}, {0, 0, 1}}, {"111", {0, 0, 2}, {0, 1, 1}}, {"0001", {0, 1, 1}, {0, 0, 2}},
    {"1010", {0, 0, 3}, {0, 2, 1}}, {"1011", {1, 0, 1}, {1, 0, 1}}, {"00100", {0, 2, 1}, {0, 0, 3}},
    {"00101", {0, 3, 1}, {0, 3, 1}}, {"01000", {0, 1, 2}, {0, 4, 1}}, {"01001", {0, 0, 4}, {0, 5, 1}},
    {"10010", {1, 1, 1}, {1, 1, 1}}, {"10011", {1, 2, 1}, {1, 2, 1}}, {"001100", {0, 4, 1}, {0, 1, 2}},
    {"001101", {0, 5, 1}, {0, 6, 1}}, {"010100", {0, 0, 5}, {0, 7, 1}}, {"010101", {0, 0, 6}, {0, 8, 1}},
    {"011000", {1, 3, 1}, {1, 3, 1}}, {"011001", {1, 4, 1}, {1, 4, 1}}, {"100010", {1, 5, 1}, {1, 5, 1}},
    {"100011", {1, 6, 1}, {1, 6, 1}}, {"0011100", {0, 6, 1}, {0, 0, 4}}, {"0011101", {0, 7, 1}, {0, 2, 2}},
    {"0101100", {0, 2, 2}, {0, 9, 1}}, {"0101101", {0, 1, 3}, {0, 10, 1}}, {"0110100", {0, 0, 7}, {0, 11, 1}},
    {"0110101", {1, 7, 1}, {1, 7, 1}}, {"0111000", {1, 8, 1}, {1, 8, 1}}, {"0111001", {1, 9, 1}, {1, 9, 1}},
    {"1000010", {1, 10, 1}, {1, 10, 1}}, {"1000011", {1, 11, 1}, {1, 11, 1}}, {"00111100", {0, 8, 1}, {0, 0, 5}},
    {"00111101", {0, 9, 1}, {0, 0, 6}}, {"01011100", {0, 3, 2}, {0, 1, 3}}, {"01011101", {0, 4, 2}, {0, 3, 2}},
    {"01101100", {0, 1, 4}, {0, 4, 2}}, {"01101101", {0, 1, 5}, {0, 12, 1}}, {"01110100", {0, 0, 8}, {0, 13, 1}},
    {"01110101", {0, 0, 9}, {0, 14, 1}}, {"01111000", {1, 0, 2}, {1, 0, 2}}, {"01111001", {1, 12, 1}, {1, 12, 1}},
    {"10000010", {1, 13, 1}, {1, 13, 1}}, {"10000011", {1, 14, 1}, {1, 14, 1}}, {"001111100", {0, 10, 1}, {0, 0, 7}},
    {"001111101", {0, 5, 2}, {0, 1, 4}}, {"010111100", {0, 2, 3}, {0, 2, 3}}, {"010111101", {0, 3, 3}, {0, 5, 2}},
    {"011011100", {0, 1, 6}, {0, 15, 1}}, {"011011101", {0, 0, 10}, {0, 16, 1}}, {"011101100", {0, 0, 11}, {0, 17, 1}},
    {"011101101", {1, 1, 2}, {1, 1, 2}}, {"011110100", {1, 15, 1}, {1, 15, 1}}, {"011110101", {1, 16, 1}, {1, 16, 1}},
    {"011111000", {1, 17, 1}, {1, 17, 1}}, {"011111001", {1, 18, 1}, {1, 18, 1}},
    {"100000010", {1, 19, 1}, {1, 19, 1}}, {"100000011", {1, 20, 1}, {1, 20, 1}},
    {"0011111100", {0, 11, 1}, {0, 0, 8}}, {"0011111101", {0, 12, 1}, {0, 0, 9}}, {"0101111100", {0, 6, 2}, {0, 1, 5}},
    {"0101111101", {0, 7, 2}, {0, 3, 3}}, {"0110111100", {0, 8, 2}, {0, 6, 2}}, {"0110111101", {0, 4, 3}, {0, 7, 2}},
    {"0111011100", {0, 2, 4}, {0, 8, 2}}, {"0111011101", {0, 1, 7}, {0, 9, 2}}, {"0111101100", {0, 0, 12}, {0, 18, 1}},
    {"0111101101", {0, 0, 13}, {0, 19, 1}}, {"0111110100", {0, 0, 14}, {0, 20, 1}},
    {"0111110101", {1, 21, 1}, {1, 21, 1}}, {"0111111000", {1, 22, 1}, {1, 22, 1}},
    {"0111111001", {1, 23, 1}, {1, 23, 1}}, {"1000000010", {1, 24, 1}, {1, 24, 1}},
    {"1000000011", {1, 25, 1}, {1, 25, 1}}, {"00111111100", {0, 13, 1}, {0, 0, 10}},
    {"00111111101", {0, 9, 2}, {0, 0, 11}}, {"01011111100", {0, 5, 3}, {0, 1, 6}},
    {"01011111101", {0, 6, 3}, {0, 2, 4}}, {"01101111100", {0, 7, 3}, {0, 4, 3}},
    {"01101111101", {0, 3, 4}, {0, 5, 3}}, {"01110111100", {0, 2, 5}, {0, 10, 2}},
    {"01110111101", {0, 2, 6}, {0, 21, 1}}, {"01111011100", {0, 1, 8}, {0, 22, 1}},
    {"01111011101", {0, 1, 9}, {0, 23, 1}}, {"01111101100", {0, 0, 15}, {0, 24, 1}},
    {"01111101101", {0, 0, 16}, {0, 25, 1}}, {"01111110100", {0, 0, 17}, {0, 26, 1}},
    {"01111110101", {1, 0, 3}, {1, 0, 3}}, {"01111111000", {1, 2, 2}, {1, 2, 2}},
    {"01111111001", {1, 26, 1}, {1, 26, 1}}, {"10000000010", {1, 27, 1}, {1, 27, 1}},
    {"10000000011", {1, 28, 1}, {1, 28, 1}}, {"001111111100", {0, 10, 2}, {0, 0, 12}},
    {"001111111101", {0, 4, 4}, {0, 1, 7}}, {"010111111100", {0, 5, 4}, {0, 2, 5}},
    {"010111111101", {0, 6, 4}, {0, 3, 4}}, {"011011111100", {0, 3, 5}, {0, 6, 3}},
    {"011011111101", {0, 4, 5}, {0, 7, 3}}, {"011101111100", {0, 1, 10}, {0, 11, 2}},
    {"011101111101", {0, 0, 18}, {0, 27, 1}}, {"011110111100", {0, 0, 19}, {0, 28, 1}},
    {"011110111101", {0, 0, 22}, {0, 29, 1}}, {"011111011100", {1, 1, 3}, {1, 1, 3}},
    {"011111011101", {1, 3, 2}, {1, 3, 2}}, {"011111101100", {1, 4, 2}, {1, 4, 2}},
    {"011111101101", {1, 29, 1}, {1, 29, 1}}, {"011111110100", {1, 30, 1}, {1, 30, 1}},
    {"011111110101", {1, 31, 1}, {1, 31, 1}}, {"011111111000", {1, 32, 1}, {1, 32, 1}},
    {"011111111001", {1, 33, 1}, {1, 33, 1}}, {"100000000010", {1, 34, 1}, {1, 34, 1}},
    {"100000000011", {1, 35, 1}, {1, 35, 1}}, {"0011111111100", {0, 14, 1}, {0, 0, 13}},
    {"0011111111101", {0, 15, 1}, {0, 0, 14}}, {"0101111111100", {0, 11, 2}, {0, 0, 15}},
    {"0101111111101", {0, 8, 3}, {0, 0, 16}}, {"0110111111100", {0, 9, 3}, {0, 1, 8}},
    {"0110111111101", {0, 7, 4}, {0, 3, 5}}, {"0111011111100", {0, 3, 6}, {0, 4, 4}},
    {"0111011111101", {0, 2, 7}, {0, 5, 4}}, {"0111101111100", {0, 2, 8}, {0, 8, 3}},
    {"0111101111101", {0, 2, 9}, {0, 12, 2}}, {"0111110111100", {0, 1, 11}, {0, 30, 1}},
    {"0111110111101", {0, 0, 20}, {0, 31, 1}}, {"0111111011100", {0, 0, 21}, {0, 32, 1}},
    {"0111111011101", {0, 0, 23}, {0, 33, 1}}, {"0111111101100", {1, 0, 4}, {1, 0, 4}},
    {"0111111101101", {1, 5, 2}, {1, 5, 2}}, {"0111111110100", {1, 6, 2}, {1, 6, 2}},
    {"0111111110101", {1, 7, 2}, {1, 7, 2}}, {"0111111111000", {1, 8, 2}, {1, 8, 2}},
    {"0111111111001", {1, 9, 2}, {1, 9, 2}}, {"1000000000010", {1, 36, 1}, {1, 36, 1}},
    {"1000000000011", {1, 37, 1}, {1, 37, 1}}, {"00111111111100", {0, 16, 1}, {0, 0, 17}},
    {"00111111111101", {0, 17, 1}, {0, 0, 18}}, {"01011111111100", {0, 18, 1}, {0, 1, 9}},
    {"01011111111101", {0, 8, 4}, {0, 1, 10}}, {"01101111111100", {0, 5, 5}, {0, 2, 6}},
    {"01101111111101", {0, 4, 6}, {0, 2, 7}}, {"01110111111100", {0, 5, 6}, {0, 3, 6}},
    {"01110111111101", {0, 3, 7}, {0, 6, 4}}, {"01111011111100", {0, 3, 8}, {0, 9, 3}},
    {"01111011111101", {0, 2, 10}, {0, 13, 2}}, {"01111101111100", {0, 2, 11}, {0, 14, 2}},
    {"01111101111101", {0, 1, 12}, {0, 15, 2}}, {"01111110111100", {0, 1, 13}, {0, 16, 2}},
    {"01111110111101", {0, 0, 24}, {0, 34, 1}}, {"01111111011100", {0, 0, 25}, {0, 35, 1}},
    {"01111111011101", {0, 0, 26}, {0, 36, 1}}, {"01111111101100", {1, 0, 5}, {1, 0, 5}},
    {"01111111101101", {1, 1, 4}, {1, 1, 4}}, {"01111111110100", {1, 10, 2}, {1, 10, 2}},
    {"01111111110101", {1, 11, 2}, {1, 11, 2}}, {"01111111111000", {1, 12, 2}, {1, 12, 2}},
    {"01111111111001", {1, 38, 1}, {1, 38, 1}}, {"10000000000010", {1, 39, 1}, {1, 39, 1}},
    {"10000000000011", {1, 40, 1}, {1, 40, 1}}, {"001111111111100", {0, 0, 27}, {0, 0, 19}},
    {"001111111111101", {0, 3, 9}, {0, 3, 7}}, {"010111111111100", {0, 6, 5}, {0, 4, 5}},
    {"010111111111101", {0, 7, 5}, {0, 7, 4}}, {"011011111111100", {0, 9, 4}, {0, 17, 2}},
    {"011011111111101", {0, 12, 2}, {0, 37, 1}}, {"011101111111100", {0, 19, 1}, {0, 38, 1}},
    {"011101111111101", {1, 1, 5}, {1, 1, 5}}, {"011110111111100", {1, 2, 3}, {1, 2, 3}},
    {"011110111111101", {1, 13, 2}, {1, 13, 2}}, {"011111011111100", {1, 41, 1}, {1, 41, 1}},
    {"011111011111101", {1, 42, 1}, {1, 42, 1}}, {"011111101111100", {1, 43, 1}, {1, 43, 1}},
    {"011111101111101", {1, 44, 1}, {1, 44, 1}}});
// clang-format on
inline constexpr std::size_t reversibleWords = 169;
static_assert(reversibleCodes.size() == reversibleWords);

enum class Direction { Forward, Backward };

// A word's bits in the order in which the direction's reader meets them, the first one on top.
struct ReadWord {
  u32 bits;
  s32 length;
  constexpr u32 first(s32 n) const { return bits >> (length - n); }
  constexpr ReadWord behind(s32 n) const { return {bits & ((u32(1) << (length - n)) - 1), length - n}; }
  constexpr bool operator==(const ReadWord&) const = default;
};
constexpr ReadWord readWord(std::string_view word, Direction direction) {
  ReadWord read{0, 0};
  for (char c : word) {
    const u32 bit = c == '1';
    read.bits = direction == Direction::Forward ? 2 * read.bits | bit : read.bits | bit << read.length;
    ++read.length;
  }
  return read;
}

// The reader's next n bits as it peeks them: a forward reader's first bit is on top, a backward reader's at the bottom.
constexpr u32 windowOf(u32 bits, s32 n, Direction direction) {
  if (direction == Direction::Forward) return bits;
  u32 window = 0;
  for (s32 i = 0; i < n; ++i) window |= (bits >> i & 1) << (n - 1 - i);
  return window;
}
// Enters a value for all windows of n bits that begin with the word.
template <std::size_t Entries>
constexpr void enter(std::array<u8, Entries>& table, const ReadWord& word, s32 n, Direction direction, u8 value) {
  const s32 spare = n - word.length;
  for (u32 rest = 0; rest < u32(1) << spare; ++rest) table[windowOf(word.bits << spare | rest, n, direction)] = value;
}

inline constexpr s32 firstBits = 8, secondBits = 7;
inline constexpr std::size_t shortWords = 41, groups = 16;
inline constexpr u8 noRow = 255, firstGroupIndex = 100;

struct ReversibleLookUp {
  std::array<u8, reversibleWords + 1> wordOfRow{};  // row 0 is the escape's and not used
  std::array<u8, 256> first{};                      // by 8 bits: a row, 100 + group, or none
  std::array<u8, groups + 1> offsets{};             // by group, from 1 on: its first row
  std::array<u8, groups + 1> secondOf{};            // by group: which second table, 1 to 4
  std::array<std::array<u8, 128>, 4> second{};      // by 7 bits: the row within the group, or none
};

// Groups stand in the order of their first 8 bits, but for 10000001, which comes before 10000000.
constexpr u32 groupOrder(const ReadWord& word, Direction direction) {
  const u32 bits = word.first(firstBits);
  return direction == Direction::Forward && (bits == 0x80 || bits == 0x81) ? bits ^ 1 : bits;
}

constexpr ReversibleLookUp reversibleLookUp(Direction direction) {
  ReversibleLookUp tables;
  std::array<ReadWord, reversibleWords + 1> rows{};
  // The short words as they stand, then the long ones by group.
  for (std::size_t i = 0; i < reversibleWords; ++i) {
    const ReadWord word = readWord(reversibleCodes[i].word, direction);
    std::size_t row = i + 1;
    for (; row > shortWords + 1 && groupOrder(rows[row - 1], direction) > groupOrder(word, direction); --row) {
      rows[row] = rows[row - 1];
      tables.wordOfRow[row] = tables.wordOfRow[row - 1];
    }
    rows[row] = word;
    tables.wordOfRow[row] = u8(i);
  }
  tables.first.fill(noRow);
  for (std::size_t row = 1; row <= shortWords; ++row) enter(tables.first, rows[row], firstBits, direction, u8(row));
  std::size_t group = 0;
  for (std::size_t row = shortWords + 1; row < rows.size(); ++row) {
    const u32 bits = rows[row].first(firstBits);
    if (group > 0 && bits == rows[row - 1].first(firstBits)) continue;
    tables.offsets[++group] = u8(row);
    enter(tables.first, {bits, firstBits}, firstBits, direction, u8(firstGroupIndex + group));
  }
  // A group takes the second table of an earlier one whose words go on alike, or the next new one.
  const auto rowsOf = [&](std::size_t g) {
    return (g < groups ? tables.offsets[g + 1] : rows.size()) - tables.offsets[g];
  };
  u8 known = 0;
  for (group = 1; group <= groups; ++group) {
    const auto rest = [&](std::size_t g, std::size_t i) { return rows[tables.offsets[g] + i].behind(firstBits); };
    for (std::size_t other = 1; other < group && tables.secondOf[group] == 0; ++other) {
      bool alike = rowsOf(other) == rowsOf(group);
      for (std::size_t i = 0; alike && i < rowsOf(group); ++i) alike = rest(group, i) == rest(other, i);
      if (alike) tables.secondOf[group] = tables.secondOf[other];
    }
    if (tables.secondOf[group] != 0) continue;
    auto& second = tables.second[known];  // a fifth one would be no constant expression
    tables.secondOf[group] = ++known;
    second.fill(noRow);
    for (std::size_t i = 0; i < rowsOf(group); ++i) enter(second, rest(group, i), secondBits, direction, u8(i));
  }
  return tables;
}

inline constexpr ReversibleLookUp forwardLookUp = reversibleLookUp(Direction::Forward);
inline constexpr ReversibleLookUp backwardLookUp = reversibleLookUp(Direction::Backward);

inline constexpr auto ownvc_mp4_RVLC_ind0 = forwardLookUp.first;
inline constexpr auto ownvc_mp4_RVLC_ind1 = forwardLookUp.second[0];
inline constexpr auto ownvc_mp4_RVLC_ind2 = forwardLookUp.second[1];
inline constexpr auto ownvc_mp4_RVLC_ind3 = forwardLookUp.second[2];
inline constexpr auto ownvc_mp4_RVLC_ind4 = forwardLookUp.second[3];
inline constexpr auto ownvc_mp4_RVLC_offs = forwardLookUp.offsets;
inline constexpr auto ownvc_mp4_RVLCb_ind0 = backwardLookUp.first;
inline constexpr auto ownvc_mp4_RVLCb_ind1 = backwardLookUp.second[0];
inline constexpr auto ownvc_mp4_RVLCb_ind2 = backwardLookUp.second[1];
inline constexpr auto ownvc_mp4_RVLCb_ind3 = backwardLookUp.second[2];
inline constexpr auto ownvc_mp4_RVLCb_ind4 = backwardLookUp.second[3];
inline constexpr auto ownvc_mp4_RVLCb_offs = backwardLookUp.offsets;

using SecondTables = std::array<const u8*, groups + 1>;
constexpr SecondTables secondTables(const ReversibleLookUp& lookUp, const std::array<const u8*, 5>& tables) {
  SecondTables byGroup{};
  for (std::size_t g = 0; g <= groups; ++g) byGroup[g] = tables[lookUp.secondOf[g]];
  return byGroup;
}
inline constexpr SecondTables ownvc_mp4_RVLC_iptr =
    secondTables(forwardLookUp, {nullptr, ownvc_mp4_RVLC_ind1.data(), ownvc_mp4_RVLC_ind2.data(),
                                 ownvc_mp4_RVLC_ind3.data(), ownvc_mp4_RVLC_ind4.data()});
inline constexpr SecondTables ownvc_mp4_RVLCb_iptr =
    secondTables(backwardLookUp, {nullptr, ownvc_mp4_RVLCb_ind1.data(), ownvc_mp4_RVLCb_ind2.data(),
                                  ownvc_mp4_RVLCb_ind3.data(), ownvc_mp4_RVLCb_ind4.data()});

static_assert(ownvc_mp4_RVLC_offs ==
              std::array<u8, 17>{0, 42, 44, 56, 58, 70, 72, 84, 86, 98, 100, 112, 114, 126, 138, 158, 160});
static_assert(ownvc_mp4_RVLCb_offs ==
              std::array<u8, 17>{0, 42, 48, 54, 60, 66, 72, 79, 100, 106, 112, 118, 124, 130, 136, 143, 164});
static_assert(forwardLookUp.secondOf == std::array<u8, 17>{0, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 2, 3, 1, 4});
static_assert(beginsWith(ownvc_mp4_RVLC_ind0, {noRow, noRow, noRow, noRow, noRow, noRow, noRow, noRow}));

// Events by row; the length leaves out the sign and, for words found in two steps, the first 8 bits.
using ReversibleRows = std::array<EventRow, reversibleWords + 1>;
template <PlainEvent ReversibleCode::*Event> constexpr ReversibleRows reversibleRows(const ReversibleLookUp& lookUp) {
  ReversibleRows rows{};
  for (std::size_t row = 1; row < rows.size(); ++row) {
    const ReversibleCode& code = reversibleCodes[lookUp.wordOfRow[row]];
    const PlainEvent event = code.*Event;
    const s32 length = s32(code.word.size());
    rows[row] = {event.last, event.run, event.level, u8(length > firstBits ? length - firstBits : length)};
  }
  return rows;
}
inline constexpr ReversibleRows tableB23_Forw_Intra = reversibleRows<&ReversibleCode::intra>(forwardLookUp);
inline constexpr ReversibleRows tableB23_Forw_Inter = reversibleRows<&ReversibleCode::inter>(forwardLookUp);
inline constexpr ReversibleRows tableB23_Back_Intra = reversibleRows<&ReversibleCode::intra>(backwardLookUp);
inline constexpr ReversibleRows tableB23_Back_Inter = reversibleRows<&ReversibleCode::inter>(backwardLookUp);

// ---- writing ----------------------------------------------------------------------------------------------------

// By LAST, then run, then level, as all lists of events.
template <PlainEvent ReversibleCode::*Event> constexpr auto sortedReversibleCodes() {
  std::array<EventCode, reversibleWords> codes{};
  for (std::size_t i = 0; i < reversibleWords; ++i) {
    const ReversibleCode& code = reversibleCodes[i];
    const PlainEvent event = code.*Event;
    const ReadWord word = readWord(code.word, Direction::Forward);
    const EventCode added = {event.last, event.run, event.level, u8(word.length), u16(word.bits)};
    const auto key = [](const EventCode& c) { return (c.last * 64 + c.run) * 32 + c.level; };
    std::size_t at = i;
    for (; at > 0 && key(codes[at - 1]) > key(added); --at) codes[at] = codes[at - 1];
    codes[at] = added;
  }
  return codes;
}
inline constexpr auto reversibleIntraCodes = sortedReversibleCodes<&ReversibleCode::intra>();
inline constexpr auto reversibleInterCodes = sortedReversibleCodes<&ReversibleCode::inter>();
constexpr bool isSuffixFree(const std::array<EventCode, reversibleWords>& codes) {
  for (const EventCode& a : codes)
    for (const EventCode& b : codes)
      if (&a != &b && a.length <= b.length && (b.word & ((1 << a.length) - 1)) == a.word) return false;
  return true;
}
static_assert(isPrefixFree(reversibleIntraCodes) && isSuffixFree(reversibleIntraCodes));

// Required: the tables of the largest levels with LAST 1 end in a 0, so that run 44, though it has a word for level 1,
// is written as an escape.
inline constexpr std::size_t reversibleLastRuns = 45;
template <std::size_t Events>
constexpr std::array<s32, reversibleLastRuns> lastLevelsWithSentinel(const std::array<EventCode, Events>& codes) {
  auto levels = largestLevels<s32, reversibleLastRuns>(codes, 1);
  levels.back() = 0;
  return levels;
}

inline constexpr auto vlc_TB23a = vlcWords(reversibleIntraCodes);
inline constexpr auto l0_offs_TB23a = rowOffsets<20>(reversibleIntraCodes, 0);
inline constexpr auto l1_offs_TB23a = rowOffsets<reversibleLastRuns>(reversibleIntraCodes, 1);
inline constexpr auto l0_lmax_TB23a = largestLevels<s32, 20>(reversibleIntraCodes, 0);
inline constexpr auto l1_lmax_TB23a = lastLevelsWithSentinel(reversibleIntraCodes);
inline constexpr auto mVLC_TB23a =
    vlcParams(l0_offs_TB23a, l1_offs_TB23a, l0_lmax_TB23a, l1_lmax_TB23a, vlc_TB23a);

inline constexpr auto vlc_TB23b = vlcWords(reversibleInterCodes);
inline constexpr auto l0_offs_TB23b = rowOffsets<39>(reversibleInterCodes, 0);
inline constexpr auto l1_offs_TB23b = rowOffsets<reversibleLastRuns>(reversibleInterCodes, 1);
inline constexpr auto l0_lmax_TB23b = largestLevels<s32, 39>(reversibleInterCodes, 0);
inline constexpr auto l1_lmax_TB23b = lastLevelsWithSentinel(reversibleInterCodes);
inline constexpr auto mVLC_TB23b =
    vlcParams(l0_offs_TB23b, l1_offs_TB23b, l0_lmax_TB23b, l1_lmax_TB23b, vlc_TB23b);

static_assert(reachesLargestRuns(mVLC_TB23a, reversibleIntraCodes));
static_assert(reachesLargestRuns(mVLC_TB23b, reversibleInterCodes));

}  // namespace zvp::mpeg4
