// Decoding of a DV video segment (IEC 61834-2, SMPTE 314M). The codes of a block that do not fit its space of bits
// stand in what other blocks have left: of the macroblock first, then of the segment. So there are three passes over
// lists of unfinished blocks and of free spaces, one piece for 30 and for 40 blocks. Reading bits is serial, so this is
// scalar.
#pragma once

#include <algorithm>
#include <array>
#include <bit>

#include "primitives.h"
#include "types.h"

namespace zvp::dv {

inline constexpr int segmentMacroblocks = 5, macroblockBytes = 80;
inline constexpr int acTableBits = 9;  // of each of the two tables, which the decoders have built in
inline constexpr int blockCoefficients = 64;

// ---- the decoding table -----------------------------------------------------------------------------------------

struct TableEntry {
  u32 word;  // the length in byte 0, the run in byte 1, the level times 64 above them
  s32 length() const { return s32(word & 255); }
  s32 run() const { return s32(word >> 8 & 255); }
  s16 value() const { return s16(word >> 16); }
};
inline constexpr u32 noCode = 255;  // longer than any space

// Enters the codes of a list into 2^bits entries. prefixBits is the length of what stands ahead of the codes.
inline void enterCodes(const s32* list, s32 bits, s32 prefixBits, u32* table) {
  const u32 entries = u32(1) << bits;
  std::fill_n(table, entries, noCode);
  const s32* p = list + 3;
  for (s32 length = 1; length <= bits; ++length)
    for (s32 count = loadAs<s32>(p++); count > 0; --count, p += 3) {
      const u32 code = loadAs<u32>(p), run = loadAs<u32>(p + 1), level = loadAs<u32>(p + 2);
      const u32 first = code << (bits - length) & (entries - 1);
      const u32 entry = u32(u16(level << 6)) << 16 | u32(u8(run)) << 8 | u32(length + prefixBits);
      std::fill_n(table + first, u32(1) << (bits - length), entry);
    }
}

inline zvpStatus makeTable(const s32* list1, const s32* list2, u32** made) {
  const s32 bits1 = u8(loadAs<s32>(list1)), bits2 = u8(loadAs<s32>(list2));
  constexpr s32 tooMany = 29;  // 2^29 entries are 2^31 bytes
  const u64 bytes = ((u64(1) << std::min(bits1, tooMany)) + (u64(1) << std::min(bits2, tooMany))) * sizeof(u32);
  u32* table = bytes > 0x7fffffff ? nullptr : reinterpret_cast<u32*>(zvpsMalloc_8s(s32(bytes)));
  storeAs(made, table);
  if (table == nullptr) return zvpStatusNoMemory;
  enterCodes(list1, bits1, 0, table);
  enterCodes(list2, bits2, 4, table + (std::size_t(1) << bits1));
  return zvpStatusOk;
}

// ---- bits -------------------------------------------------------------------------------------------------------

// The bits of one space, the next one in the top bit of high. Behind the end of the space stand zeros: whether a code
// is longer than what is left of its space does not depend on the bits behind it.
struct BitSource {
  u64 high, low;
  s32 space;  // bits left
};

// A space of 8 to 16 bytes.
ZVP_INLINE BitSource openSpace(const u8* p, s32 bytes) {
  static_assert(std::endian::native == std::endian::little);
  const u64 last8 = __builtin_bswap64(loadAs<u64>(p + bytes - 8));
  return {__builtin_bswap64(loadAs<u64>(p)), last8 << 1 << (127 - 8 * bytes), 8 * bytes};
}

// 1 to 63 bits.
ZVP_INLINE u32 PeekDVHuffmanBits(const BitSource& source, s32 bits) { return u32(source.high >> (64 - bits)); }
ZVP_INLINE void DropDVHuffmanBits(BitSource& source, s32 bits) {
  source.high = source.high << bits | source.low >> 1 >> (63 - bits);
  source.low <<= bits;
  source.space -= bits;
}
ZVP_INLINE u32 GetDVHuffmanBits(BitSource& source, s32 bits) {
  const u32 value = PeekDVHuffmanBits(source, bits);
  DropDVHuffmanBits(source, bits);
  return value;
}
// Puts 1 to 63 bits ahead of the others. There is room: a space that is free has lost its 12 bits of header and a code.
ZVP_INLINE void InsertDVHuffmanBits(BitSource& source, u32 value, s32 bits) {
  source.low = source.low >> bits | source.high << (64 - bits);
  source.high = source.high >> bits | u64(value) << (64 - bits);
  source.space += bits;
}

// ---- blocks -----------------------------------------------------------------------------------------------------

struct Block {
  s16* coefficients;
  const u32* scan;
  u16 savedBits;  // the beginning of a code that goes on in another space
  u8 savedCount;
  u8 position;  // place in the scan of the last coefficient
  bool endOfBlock;
};

// 1: the block is done and its source has bits left; 0: done and none left; -1: none left and the block not done.
inline s32 DVHuffmanDecodeAC(Block& block, BitSource& from, const u32* table, s32 limit) {
  BitSource source = from;
  if (block.savedCount != 0) InsertDVHuffmanBits(source, block.savedBits, block.savedCount);
  constexpr u32 secondTable = 0b1111 << 5, escape = 0b1111111 << 2;  // by the next nine bits
  constexpr u32 endOfBlockCode = 0b0110, entries = 1 << acTableBits;
  constexpr s32 escapeBits = 16;
  s32 position = block.position, result = 1;
  while (position < limit) {
    const u32 next9 = PeekDVHuffmanBits(source, 9);
    s32 length, next;
    s16 value;
    if (next9 < escape) [[likely]] {
      const u32 next13 = PeekDVHuffmanBits(source, 13);
      const TableEntry entry = {
          loadAs<u32>(table + (next9 < secondTable ? next9 : entries + (next13 & (entries - 1))))};
      length = entry.length();
      next = position + 1 + entry.run();
      value = entry.value();
    } else {
      const u32 code = PeekDVHuffmanBits(source, escapeBits);
      const s32 amplitude = s32(code >> 1 & 255) * 64;
      length = escapeBits;
      next = position + 1;
      value = s16(code & 1 ? -amplitude : amplitude);
    }
    if (length > source.space) {
      // More than 15 bits are left over only at a pattern without a code. Its beginning is what remains, so that the
      // block gains nothing from other spaces either.
      block.savedCount = u8(std::min(source.space, 16));
      block.savedBits = block.savedCount == 0 ? u16(0) : u16(PeekDVHuffmanBits(source, block.savedCount));
      source.space = 0;
      result = -1;
      break;
    }
    DropDVHuffmanBits(source, length);
    if (next >= limit) {
      if (next9 < secondTable) block.endOfBlock = next9 >> 5 == endOfBlockCode;
      break;
    }
    position = next;
    storeAs(block.coefficients + loadAs<u32>(block.scan + position), value);
  }
  block.position = u8(position);
  from = source;
  return result > 0 && source.space == 0 ? 0 : result;
}

// The first 12 bits of a space: stores the DC, returns the DCT mode, passes the class.
ZVP_INLINE u32 decodeHeader(const Block& block, BitSource& source) {
  storeAs(block.coefficients, s16(u16(GetDVHuffmanBits(source, 9) << 7)));
  const u32 mode = GetDVHuffmanBits(source, 1);
  DropDVHuffmanBits(source, 2);
  return mode;
}
ZVP_INLINE s32 DVHuffmanDecodeDC(Block& block, BitSource& source, const u32* scans, const u32* table, s32 limit) {
  block.scan = scans + decodeHeader(block, source) * blockCoefficients;
  return DVHuffmanDecodeAC(block, source, table, limit);
}
ZVP_INLINE s32 DV100HuffmanDecodeDC(Block& block, BitSource& source, const u32* scan, const u32* table, s32 limit) {
  decodeHeader(block, source);
  block.scan = scan;
  return DVHuffmanDecodeAC(block, source, table, limit);
}

// ---- segments ---------------------------------------------------------------------------------------------------

// The spaces of a macroblock, by their first byte and their size. DV100 has the DCT mode bit and does not heed it.
struct SegmentLayout {
  int blocks;
  bool twoScans;
  std::array<u8, 8> at, bytes;
};
inline constexpr SegmentLayout layoutDV = {6, true, {4, 18, 32, 46, 60, 70}, {14, 14, 14, 14, 10, 10}};
inline constexpr SegmentLayout layoutDV100 = {
    8, false, {4, 14, 24, 34, 44, 54, 64, 72}, {10, 10, 10, 10, 10, 10, 8, 8}};

enum class Passes { One, Three };

// First in, first out; never more than N in all.
template <class T, int N> struct Queue {
  T* items[N];
  int first = 0, last = 0;
  bool empty() const { return first == last; }
  T& front() const { return *items[first]; }
  void pop() { ++first; }
  void push(T& item) { items[last++] = &item; }
};

// What is left over: blocks that are not done and sources that have bits, in stream order.
template <int N> struct LeftOver {
  Queue<Block, N> blocks;
  Queue<BitSource, N> sources;

  void add(Block& block, BitSource& source, s32 result) {
    if (result > 0) sources.push(source);
    if (result < 0) blocks.push(block);
  }
  // Lets the blocks read from the sources until there are no more of the one or the other.
  void share(const u32* table) {
    while (!blocks.empty() && !sources.empty()) {
      const s32 result = DVHuffmanDecodeAC(blocks.front(), sources.front(), table, blockCoefficients);
      if (result >= 0) blocks.pop();
      if (result <= 0) sources.pop();
    }
  }
  template <int M> void take(LeftOver<M>& other) {
    for (; !other.blocks.empty(); other.blocks.pop()) blocks.push(other.blocks.front());
    for (; !other.sources.empty(); other.sources.pop()) sources.push(other.sources.front());
  }
};

template <SegmentLayout Layout, Passes passes>
void decodeSegment(const u8* stream, const u32* scans, const u32* table, s16* coefficients, u32* params, s32 limit) {
  constexpr int count = segmentMacroblocks * Layout.blocks;
  Block blocks[count];
  BitSource sources[count];
  LeftOver<count> ofSegment;
  for (int m = 0, i = 0; m < segmentMacroblocks; ++m) {
    LeftOver<Layout.blocks> ofMacroblock;
    for (int b = 0; b < Layout.blocks; ++b, ++i) {
      blocks[i] = {coefficients + i * blockCoefficients, nullptr, 0, 0, 0, false};
      const auto n = std::size_t(b);
      sources[i] = openSpace(stream + m * macroblockBytes + Layout.at[n], Layout.bytes[n]);
      const s32 result = Layout.twoScans ? DVHuffmanDecodeDC(blocks[i], sources[i], scans, table, limit)
                                         : DV100HuffmanDecodeDC(blocks[i], sources[i], scans, table, limit);
      if constexpr (passes == Passes::Three) ofMacroblock.add(blocks[i], sources[i], result);
    }
    if constexpr (passes == Passes::Three) {
      ofMacroblock.share(table);
      ofSegment.take(ofMacroblock);
    }
  }
  if constexpr (passes == Passes::Three) ofSegment.share(table);
  for (int m = 0, i = 0; m < segmentMacroblocks; ++m) {
    const u8* macroblock = stream + m * macroblockBytes;
    const u32 quantization = macroblock[3] & 15;
    for (int b = 0; b < Layout.blocks; ++b, ++i) {
      const u32 modeAndClass = macroblock[Layout.at[std::size_t(b)] + 1] & 0x70;
      storeAs(params + i, u32(blocks[i].endOfBlock) | modeAndClass | u32(blocks[i].position) << 8 | quantization << 16);
    }
  }
}

}  // namespace zvp::dv
