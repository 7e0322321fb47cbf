// Compiled variable-length code tables. A list of codes becomes a tree of lookup tables: word 0 of a table is its index
// width w, 1 << w entries follow. An entry is a link to a sub-table (index in bits 31..8, 128 in the low byte), a leaf
// (value in bits 31..8, or level in 31..16 and run in 15..8; in the low byte the bits that the lookup read beyond the
// code), or unused. Value tables and run-level tables differ in the leaf and in what building takes for a link.
#pragma once

#include "mpeg/bit_window.h"
#include "primitives.h"

namespace zvp::mpeg {

inline constexpr s32 unusedEntry = 0xF0F101;
inline constexpr s32 unusedValue = unusedEntry >> 8;  // 61681; run 241, level 240
inline constexpr s32 linkByte = 128;

// ---- reading ----------------------------------------------------------------------------------------------------

ZVP_INLINE s32 valueOf(s32 entry) { return entry >> 8; }
ZVP_INLINE u8 runOf(s32 entry) { return u8(entry >> 8); }
ZVP_INLINE s16 levelOf(s32 entry) { return s16(entry >> 16); }

// The entry of the next code, behind which the window stands then. A level's whole width is looked at and what the code
// did not need stays in the window; for the unused entry that is one bit.
ZVP_INLINE s32 lookUp(const s32* table, BitWindow& window) {
  s32 width = table[0];
  s32 entry = table[1 + std::ptrdiff_t(window.peek(width))];
  while (entry & linkByte) {
    window.drop(width);
    const s32* subTable = table + (entry >> 8);
    width = subTable[0];
    entry = subTable[1 + std::ptrdiff_t(window.peek(width))];
  }
  window.drop(width - u8(entry));
  return entry;
}

// The value reader does not give back a bad code's spare bits (the pair reader gives back everything): required,
// callers see both.
ZVP_INLINE s32 lookUpValue(const s32* table, BitWindow& window) {
  const s32 entry = lookUp(table, window);
  if (valueOf(entry) == unusedValue) window.drop(u8(entry));
  return valueOf(entry);
}

// ---- building ---------------------------------------------------------------------------------------------------

enum class TableKind { Value, RunLevel };

struct Code {
  u32 word;
  s32 length;
  const s32* values;  // one in value tables, two in run-level tables
};

// What the caller lists, at any address: the widths of the lookup levels, then the codes, length by length.
struct CodeList {
  s32 levels;
  const s32* widths;
  const s32* codes;
  explicit CodeList(const s32* source) : levels(loadAs<s32>(source + 1)), widths(source + 2), codes(widths + levels) {}
  s32 width(s32 level) const { return loadAs<s32>(widths + level); }
};

template <TableKind Kind, class Visit>
void forEachCode(const CodeList& list, Visit visit) {
  constexpr s32 entryWords = Kind == TableKind::Value ? 2 : 3;
  const s32* p = list.codes;
  s32 length = 1;
  for (s32 count = loadAs<s32>(p++); count >= 0; count = loadAs<s32>(p++), ++length)
    for (; count > 0; --count, p += entryWords) visit(Code{loadAs<u32>(p), length, p + 1});
}

// The first n bits of a code of more than n bits. Codes beyond 32 bits begin with zeros.
inline u32 firstBits(u32 word, s32 length, s32 n) { return length - n > 31 ? 0 : word >> (length - n); }
inline u32 lowBits(u32 word, s32 n) { return word & ((1u << (n & 31)) - 1); }
inline u32 tableWords(s32 width) { return (1u << (width & 31)) + 1; }

struct SeenCode {
  u32 word;
  s32 length;
};
static_assert(sizeof(SeenCode) == 8);

// Words of the compiled table. A code that overruns a level opens a sub-table unless an earlier code with the same
// first bits has done so. seen has room for all codes.
template <TableKind Kind>
u32 compiledWords(const CodeList& list, SeenCode* seen) {
  u32 words = tableWords(list.width(0));
  std::size_t seenCount = 0;
  forEachCode<Kind>(list, [&](const Code& code) {
    const auto opened = [&](s32 depth) {
      const u32 prefix = firstBits(code.word, code.length, depth);
      for (std::size_t i = 0; i < seenCount; ++i)
        if (seen[i].length > depth && firstBits(seen[i].word, seen[i].length, depth) == prefix) return true;
      return false;
    };
    s32 depth = list.width(0);
    for (s32 level = 0; level + 1 < list.levels && depth < code.length; depth += list.width(++level))
      if (!opened(depth)) words += tableWords(list.width(level + 1));
    seen[seenCount++] = {code.word, code.length};
  });
  return words;
}

template <TableKind Kind>
bool isLink(s32 entry) {
  // Required: a value table does not follow a sub-table whose index is a multiple of 256.
  return u8(entry) == linkByte && (Kind == TableKind::RunLevel || u8(entry >> 8) != 0);
}

template <TableKind Kind>
s32 leaf(const s32* values, s32 spare) {
  if constexpr (Kind == TableKind::Value)
    return s32(loadAs<u32>(values) << 8 | u32(spare));
  else
    return s32(loadAs<u32>(values + 1) << 16 | u32(u8(loadAs<s32>(values))) << 8 | u32(spare));
}

// Enters one code. next is where the next sub-table will stand. A code longer than all levels together is dropped. A
// link that is not followed leaves a code in the table before it, whose index may be narrower than the code asks for:
// required, callers see what it writes over there. What would leave the allocation is dropped, as is a sub-table that
// was not counted.
template <TableKind Kind>
void enterCode(const CodeList& list, const Code& code, s32* table, u32 words, u32& next) {
  s32* current = table;
  s32 depth = 0;
  for (s32 level = 0; level < list.levels; ++level) {
    const s32 width = list.width(level);
    const u32 room = words - 1 - u32(current - table);
    depth += width;
    if (depth >= code.length) {
      const s32 spare = depth - code.length;
      const u32 first = lowBits(code.word, width - spare) << (spare & 31), count = 1u << (spare & 31);
      if (first + count > room) return;
      for (u32 i = 0; i < count; ++i) current[1 + first + i] = leaf<Kind>(code.values, spare);
      return;
    }
    const u32 at = lowBits(firstBits(code.word, code.length, depth), width);
    if (level + 1 == list.levels || at >= room) return;
    s32& entry = current[1 + at];
    if (entry == unusedEntry) {
      const s32 subWidth = list.width(level + 1);
      if (tableWords(subWidth) > words - next) return;
      entry = s32(next << 8 | u32(linkByte));
      current = table + next;
      current[0] = subWidth;
      next += tableWords(subWidth);
    } else if (isLink<Kind>(entry)) {
      current = table + (entry >> 8);
    }  // anything else: the walk goes on in the same table
  }
}

template <TableKind Kind>
zvpStatus compile(const s32* source, s32** compiled) {
  const CodeList list(source);
  s32 codes = 0;
  forEachCode<Kind>(list, [&](const Code&) { ++codes; });
  auto* seen = reinterpret_cast<SeenCode*>(zvpsMalloc_8u(wrapMul(codes, s32(sizeof(SeenCode)))));  // null for no code
  if (seen == nullptr) return zvpStatusNoMemory;
  const u32 words = compiledWords<Kind>(list, seen);
  zvpsFree(seen);
  s32* table = zvpsMalloc_32s(s32(words));  // null too if the size has wrapped to zero
  if (table == nullptr) return zvpStatusNoMemory;
  for (u32 i = 0; i < words; ++i) table[i] = unusedEntry;
  table[0] = list.width(0);
  u32 next = tableWords(list.width(0));
  forEachCode<Kind>(list, [&](const Code& code) { enterCode<Kind>(list, code, table, words, next); });
  storeAs(compiled, table);
  return zvpStatusOk;
}

}  // namespace zvp::mpeg
