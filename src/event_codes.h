// The codes of (LAST, RUN, LEVEL) events, H.263 TCOEF and its kin in MPEG-4, and what is computed from their lists:
// look-up tables for readers, code words by LAST, RUN and LEVEL for writers.
//
// A list holds the standard's words as they are printed, without the sign bit that closes each of them. A word has at
// most 12 bits, and none begins with nine zeros. The escape is 0000011.
#pragma once

#include <array>
#include <string_view>

#include "types.h"

namespace zvp {

// ---- lists ------------------------------------------------------------------------------------------------------

struct EventCode {
  u8 last, run, level;
  u8 length;  // without the sign
  u16 word;
};

// The words of one LAST and RUN, for LEVEL 1, 2, 3 ...
struct EventLine {
  u8 last, run;
  std::string_view words;
};

template <std::size_t Lines> constexpr std::size_t countEvents(const std::array<EventLine, Lines>& lines) {
  std::size_t count = 0;
  for (const EventLine& line : lines) {
    ++count;
    for (char c : line.words) count += c == ' ';
  }
  return count;
}

// By LAST, then RUN, then LEVEL, as the lines stand.
template <const auto& Lines> constexpr auto eventCodes() {
  std::array<EventCode, countEvents(Lines)> codes{};
  std::size_t row = 0;
  for (const EventLine& line : Lines) {
    codes[row] = {line.last, line.run, 1, 0, 0};
    for (char c : line.words) {
      if (c == ' ') {
        const u8 level = codes[row].level;
        codes[++row] = {line.last, line.run, u8(level + 1), 0, 0};
      } else {
        codes[row].word = u16(2 * codes[row].word + (c == '1'));
        ++codes[row].length;
      }
    }
    ++row;
  }
  return codes;
}

template <std::size_t Events> constexpr bool isPrefixFree(const std::array<EventCode, Events>& codes) {
  for (const EventCode& a : codes)
    for (const EventCode& b : codes)
      if (&a != &b && a.length <= b.length && b.word >> (b.length - a.length) == a.word) return false;
  return true;
}

// TCOEF of H.263 5.4.2 (table 16), which is table B-17 of ISO/IEC 14496-2 too.
// clang-format off
inline constexpr auto tcoefLines = std::to_array<EventLine>({
    {0, 0, "10 1111 010101 0010111 00011111 000100101 000100100 0000100001 0000100000 00000000111 "
           "00000000110 00000100000"},
    {0, 1, "110 010100 00011110 0000001111 00000100001 000001010000"}, {0, 2, "1110 00011101 0000001110 000001010001"},
    {0, 3, "01101 000100011 0000001101"}, {0, 4, "01100 000100010 000001010010"},
    {0, 5, "01011 0000001100 000001010011"}, {0, 6, "010011 0000001011 000001010100"}, {0, 7, "010010 0000001010"},
    {0, 8, "010001 0000001001"}, {0, 9, "010000 0000001000"}, {0, 10, "0010110 000001010101"}, {0, 11, "0010101"},
    {0, 12, "0010100"}, {0, 13, "00011100"}, {0, 14, "00011011"}, {0, 15, "000100001"}, {0, 16, "000100000"},
    {0, 17, "000011111"}, {0, 18, "000011110"}, {0, 19, "000011101"}, {0, 20, "000011100"}, {0, 21, "000011011"},
    {0, 22, "000011010"}, {0, 23, "00000100010"}, {0, 24, "00000100011"}, {0, 25, "000001010110"},
    {0, 26, "000001010111"}, {1, 0, "0111 000011001 00000000101"}, {1, 1, "001111 00000000100"}, {1, 2, "001110"},
    {1, 3, "001101"}, {1, 4, "001100"}, {1, 5, "0010011"}, {1, 6, "0010010"}, {1, 7, "0010001"}, {1, 8, "0010000"},
    {1, 9, "00011010"}, {1, 10, "00011001"}, {1, 11, "00011000"}, {1, 12, "00010111"}, {1, 13, "00010110"},
    {1, 14, "00010101"}, {1, 15, "00010100"}, {1, 16, "00010011"}, {1, 17, "000011000"}, {1, 18, "000010111"},
    {1, 19, "000010110"}, {1, 20, "000010101"}, {1, 21, "000010100"}, {1, 22, "000010011"}, {1, 23, "000010010"},
    {1, 24, "000010001"}, {1, 25, "0000000111"}, {1, 26, "0000000110"}, {1, 27, "0000000101"}, {1, 28, "0000000100"},
    {1, 29, "00000100100"}, {1, 30, "00000100101"}, {1, 31, "00000100110"}, {1, 32, "00000100111"},
    {1, 33, "000001011000"}, {1, 34, "000001011001"}, {1, 35, "000001011010"}, {1, 36, "000001011011"},
    {1, 37, "000001011100"}, {1, 38, "000001011101"}, {1, 39, "000001011110"}, {1, 40, "000001011111"}});
// clang-format on
inline constexpr auto tcoefCodes = eventCodes<tcoefLines>();
static_assert(tcoefCodes.size() == 102 && isPrefixFree(tcoefCodes));

// ---- reading ----------------------------------------------------------------------------------------------------

inline constexpr s32 windowBits = 12;  // the longest word
inline constexpr s32 eventEscapeBits = 7;
inline constexpr u32 escapeWord = 3;  // 0000011
inline constexpr u32 firstEscapeWindow = 96;
inline constexpr u32 firstWindow = 8;  // below it no word begins

// The next 12 bits choose one of three tables, by their leading zeros, and a row in it, by as many bits as the words of
// that table need. Each word fills all rows that begin with it; no row is empty.
template <class Row> struct EventTables {
  static constexpr u32 firstHigh = 512, firstMiddle = 128;
  static constexpr s32 highShift = 5, middleShift = 2;
  const Row* high;
  const Row* middle;
  const Row* low;

  ZVP_INLINE Row ofHigh(u32 window) const { return high[(window >> highShift) - (firstHigh >> highShift)]; }
  ZVP_INLINE Row ofRest(u32 window) const {
    return window >= firstMiddle ? middle[(window - firstMiddle) >> middleShift] : low[window - firstWindow];
  }
  // Any window from firstWindow on; where it begins with the escape, only if the tables hold that.
  ZVP_INLINE Row of(u32 window) const { return window >= firstHigh ? ofHigh(window) : ofRest(window); }
};

// One of the three tables: Rows rows from a window on, each for 1 << shift windows.
template <const auto& Codes, auto makeRow, std::size_t Rows> constexpr auto windowTable(u32 first, s32 shift) {
  std::array<decltype(makeRow(Codes[0])), Rows> rows{};
  const u32 end = first + (u32(Rows) << shift);
  for (const EventCode& code : Codes) {
    const s32 spare = windowBits - code.length;
    const u32 begin = u32(code.word) << spare;
    if (begin < first || begin >= end) continue;
    for (u32 window = begin; window < begin + (u32(1) << spare); window += u32(1) << shift)
      rows[(window - first) >> shift] = makeRow(code);
  }
  return rows;
}
template <const auto& Codes, auto makeRow> constexpr auto highTable() {
  using Tables = EventTables<decltype(makeRow(Codes[0]))>;
  return windowTable<Codes, makeRow, 112>(Tables::firstHigh, Tables::highShift);
}
template <const auto& Codes, auto makeRow> constexpr auto middleTable() {
  using Tables = EventTables<decltype(makeRow(Codes[0]))>;
  return windowTable<Codes, makeRow, 96>(Tables::firstMiddle, Tables::middleShift);
}
// Without the rows of the escape, which would be the last 32.
template <const auto& Codes, auto makeRow> constexpr auto lowTable() {
  return windowTable<Codes, makeRow, firstEscapeWindow - firstWindow>(firstWindow, 0);
}

template <class Row, std::size_t Rows> constexpr bool hasNoEmptyRow(const std::array<Row, Rows>& table) {
  for (const Row& row : table)
    if (row == Row{}) return false;
  return true;
}

// ---- writing ----------------------------------------------------------------------------------------------------

// A word with a 0 in place of its sign, which its length counts.
struct VlcWord {
  u32 code, length;
  constexpr bool operator==(const VlcWord&) const = default;
};

template <std::size_t Events>
constexpr std::array<VlcWord, Events> vlcWords(const std::array<EventCode, Events>& codes) {
  std::array<VlcWord, Events> words{};
  for (std::size_t i = 0; i < Events; ++i) words[i] = {u32(codes[i].word) << 1, codes[i].length + 1u};
  return words;
}

// The largest run that a level has a word for, -1 if it has none. That of level 1 is the largest of all.
template <std::size_t Events>
constexpr s32 largestRun(const std::array<EventCode, Events>& codes, s32 last, s32 level = 1) {
  s32 run = -1;
  for (const EventCode& code : codes)
    if (code.last == last && code.level == level && code.run > run) run = code.run;
  return run;
}

// By run: the row of level 1. Entries behind the largest run get the row behind the last one.
template <std::size_t Runs, std::size_t Events>
constexpr std::array<s32, Runs> rowOffsets(const std::array<EventCode, Events>& codes, s32 last) {
  std::array<s32, Runs> offsets{};
  s32 row = 0, end = 0;
  for (const EventCode& code : codes) {
    if (code.last == last) {
      if (code.level == 1) offsets[code.run] = row;
      end = row + 1;
    }
    ++row;
  }
  for (std::size_t run = std::size_t(largestRun(codes, last)) + 1; run < Runs; ++run) offsets[run] = end;
  return offsets;
}

// By run: the largest level. 0 behind the largest run.
template <class T, std::size_t Runs, std::size_t Events>
constexpr std::array<T, Runs> largestLevels(const std::array<EventCode, Events>& codes, s32 last) {
  std::array<T, Runs> levels{};
  for (const EventCode& code : codes)
    if (code.last == last && code.run < Runs && code.level > levels[code.run]) levels[code.run] = T(code.level);
  return levels;
}

// Does the table begin with these values?
template <class T, std::size_t Size, std::size_t First>
constexpr bool beginsWith(const std::array<T, Size>& table, const T (&values)[First]) {
  static_assert(First <= Size);
  for (std::size_t i = 0; i < First; ++i)
    if (!(table[i] == values[i])) return false;
  return true;
}

}  // namespace zvp
