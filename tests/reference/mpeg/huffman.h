// Models of the compiled code tables and their readers: tables step by step, bits one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference::mpeg {

// A stream of words read bit by bit from a position counted in bits, bit 31 of word 0 being bit 0. Remembers how far it
// has looked.
struct BitReader {
  const std::uint32_t* words = nullptr;
  std::ptrdiff_t position = 0;
  std::ptrdiff_t end = 0;  // behind the last bit that was looked at

  std::uint32_t read(int n);
  std::ptrdiff_t word() const { return position / 32; }
  int offset() const { return 31 - int(position % 32); }
};

// The compiled table of a list; entryWords is 2 for a value list, 3 for a run-level list. Sets *lost if a code did not
// find its sub-table, which stands at a multiple of 256: where it goes then it may spoil the table for readers.
std::vector<std::int32_t> compile(const std::int32_t* list, int entryWords, bool* lost = nullptr);

struct Lookup {
  std::int32_t entry = 0;
  int spare() const { return entry & 255; }
  bool bad() const { return entry >> 8 == 61681; }
};
// Reads level by level and leaves the reader behind all that was read: the spare bits are not given back.
Lookup lookUp(BitReader& reader, const std::int32_t* table);

// True and the value, or false for a bad code.
bool decodeOne(BitReader& reader, const std::int32_t* table, std::int32_t& value);
bool decodePair(BitReader& reader, const std::int32_t* table, std::uint8_t& first, std::int16_t& second);

}  // namespace reference::mpeg
