// CAVLC residual blocks (H.264 9.2) and Exp-Golomb codes (9.1). Bit reading is serial, so all of this is scalar.
//
// One template decodes a block; it varies by shape (4x4 block, chroma DC of 4:2:0 or 4:2:2), element and reader. There
// are two readers. BitWindow keeps the next bits in a register and serves every block of a stream that was made by the
// standard's tables. What it cannot hold (a level suffix of more than 32 bits, a table that gives back more than it
// read, a cursor that is out of range) makes it withdraw: the block is decoded anew by FormulaCursor, which follows the
// cursor's formulas to the letter for any count.
#pragma once

#include <bit>

#include "h264/cavlc_tables.h"
#include "types.h"

namespace zvp {

inline constexpr s32 invalidCode = 0xF0F1;

// The next bits of the stream, left-aligned in a register with zeros behind them. A word is loaded only when a read
// takes bits from it.
class BitWindow {
 public:
  static constexpr bool anyCount = false;

  ZVP_INLINE BitWindow(const u32* word, s32 offset)
      : bits_(u64(loadAs<u32>(word)) << (63 - offset)), count_(offset + 1), next_(word + 1) {}

  // The cursor of the first bit not read.
  ZVP_INLINE const u32* word() const { return next_ - ((count_ + 31) >> 5); }
  ZVP_INLINE s32 offset() const { return (count_ - 1) & 31; }

  // 1 <= n <= 32.
  ZVP_INLINE u32 read(s32 n) {
    need(n);
    const u32 value = u32(bits_ >> (64 - n));
    skip(n);
    return value;
  }
  // Counts zeros up to a 1 and passes over both. Stops behind limit zeros or a few more, without a 1.
  ZVP_INLINE u32 readZeroRun(u32 limit) {
    u32 zeros = 0;
    while (bits_ == 0) [[unlikely]] {
        zeros += u32(count_);
        if (zeros > limit) return zeros;
        bits_ = u64(loadAs<u32>(next_++)) << 32;
        count_ = 32;
      }
    const s32 run = std::countl_zero(bits_);
    skip(run + 1);
    return zeros + u32(run);
  }
  // The value of the next code. False if the table gives back more bits than its last level read.
  ZVP_INLINE bool lookUp(const s32* table, s32& value) {
    const s32* head = table;
    for (;;) {
      const s32 width = loadAs<s32>(head);
      need(width);
      const s32 entry = loadAs<s32>(head + 1 + std::ptrdiff_t(bits_ >> (64 - width)));
      if ((entry & 0x80) == 0) [[likely]] {
        const s32 used = width - (entry & 0x7f);
        if (used < 0) [[unlikely]]
          return false;
        skip(used);
        value = entry >> 8;
        return true;
      }
      skip(width);
      head = table + (entry >> 8);
    }
  }

 private:
  ZVP_INLINE void need(s32 n) {
    if (count_ < n) {
      bits_ |= u64(loadAs<u32>(next_++)) << (32 - count_);
      count_ += 32;
    }
  }
  ZVP_INLINE void skip(s32 n) {
    bits_ <<= n;
    count_ -= n;
  }

  u64 bits_;
  s32 count_;  // 0 to 63
  const u32* next_;
};

// The cursor as its formulas give it, for any count and any offset: shift counts are taken modulo 32, and a read or a
// give-back moves on by one word at most.
class FormulaCursor {
 public:
  static constexpr bool anyCount = true;

  FormulaCursor(const u32* word, s32 offset) : word_(word), offset_(offset) {}

  const u32* word() const { return word_; }
  s32 offset() const { return offset_; }

  u32 read(s32 n) {
    const s32 rest = wrapSub(offset_, n);
    u32 value;
    if (rest >= 0) {
      value = loadAs<u32>(word_) >> ((rest + 1) & 31);
      offset_ = rest;
    } else {
      value = loadAs<u32>(word_) << (wrapSub(-1, rest) & 31);
      ++word_;
      offset_ = rest + 32;
      if (rest < -1) value += loadAs<u32>(word_) >> (offset_ & 31) >> 1;
    }
    return n == 32 ? value : value & ((1u << (n & 31)) - 1);
  }
  u32 readZeroRun(u32 limit) {
    u32 zeros = 0;
    while (read(1) == 0 && zeros <= limit) ++zeros;
    return zeros;
  }
  bool lookUp(const s32* table, s32& value) {
    const s32* head = table;
    s32 entry;
    for (;;) {
      entry = loadAs<s32>(head + 1 + std::ptrdiff_t(read(loadAs<s32>(head))));
      if ((entry & 0x80) == 0) break;
      head = table + (entry >> 8);
    }
    offset_ += entry & 0x7f;
    if (offset_ > 31) {
      offset_ -= 32;
      --word_;
    }
    value = entry >> 8;
    return true;
  }

 private:
  const u32* word_;
  s32 offset_;
};

// ---- blocks -----------------------------------------------------------------------------------------------------

// What the three shapes differ in. A 4x4 block clamps a run to the zeros that are left and finds its elements by the
// caller's scan; the chroma DC blocks do neither. A 4:2:2 block does not look whether a table is there.
struct Residual4x4 {
  static constexpr s32 elements = 16;
  static constexpr bool clampsRun = true, testsTables = true;
  ZVP_INLINE static s32 element(s32 position, const s32* scan) { return loadAs<s32>(scan + position); }
};
struct ChromaDc420 {
  static constexpr s32 elements = 4;
  static constexpr bool clampsRun = false, testsTables = true;
  ZVP_INLINE static s32 element(s32 position, const s32*) { return position; }
};
struct ChromaDc422 {
  static constexpr s32 elements = 8;
  static constexpr bool clampsRun = false, testsTables = false;
  ZVP_INLINE static s32 element(s32 position, const s32*) { return ChromaDC422RasterScan_0[std::size_t(position)]; }
};

struct CavlcTables {
  const s32* coeffToken;  // null: the fixed 6-bit code of nC 8 and more
  const s32* const* totalZeros;
  const s32* const* runBefore;
  const s32* scan;
  s32 maxNumCoeff;
};

// What a reader answers that withdraws. No status has this value.
inline constexpr zvpStatus withdrawn = 1;

// The remaining levels of a block, into levels behind its trailing ones. Sums and masks are those of 16-bit levels for
// wider elements too: required.
template <class Reader>
ZVP_INLINE bool readLevels(Reader& reader, s32 (&levels)[16], s32 trailingOnes, s32 totalCoeff) {
  u32 suffixLength = totalCoeff > 10 && trailingOnes < 3 ? 1 : 0;
  s32 bonus = trailingOnes < 3 ? 1 : 0;
  s32 previous = 0;
  for (s32 i = trailingOnes; i < totalCoeff; ++i) {
    if (i == trailingOnes + 1 && previous >= 4)
      suffixLength = 2;
    else if (suffixLength < 6 && u16(previous) > vlc_inc_0[suffixLength])
      ++suffixLength;

    const u32 prefix = reader.readZeroRun(Reader::anyCount ? 0xffffffff : 35);
    s32 level;
    if (prefix < 16) [[likely]] {
      u32 suffix;
      if (suffixLength > 0 && prefix < 15) {  // the tables by their rule, without waiting for a load
        suffix = reader.read(s32(suffixLength));
        previous = 1 + s32(prefix << (suffixLength - 1));
      } else {
        const s32 bits = bitsToGetTbl16s_0[suffixLength][prefix];
        suffix = bits != 0 ? reader.read(bits) : prefix;
        previous = addOffsetTbl16s_0[suffixLength][prefix];
      }
      previous += bonus + s32(suffix >> 1);
      level = (previous & 0xffff) * (1 - 2 * s32(suffix & 1));
    } else {
      if (!Reader::anyCount && prefix > 35) return false;
      const u32 suffix = reader.read(s32(prefix - 3));
      const u32 sum =
          u32(sadd_0[suffixLength] + 2 * bonus) + (1u << ((prefix - 3) & 31)) + (15u << suffixLength) + suffix - 4096;
      const s32 code = s32(sum & 0xffff);
      level = code % 2 != 0 ? (-code - 1) >> 1 : (code + 2) >> 1;
      previous = level < 0 ? -level : level;
    }
    levels[i & 15] = level;
    bonus = 0;
  }
  return true;
}

// Decodes a block. Whoever calls stores the cursor, unless the answer is zvpStatusBadVlcInput.
template <class Shape, class Element, class Reader>
ZVP_INLINE zvpStatus readBlock(Reader& reader, const CavlcTables& tables, s16* pNumCoeff, Element** ppDstCoeffs) {
  s32 token;
  if (Shape::elements == 16 && tables.coeffToken == nullptr) {
    const u32 code = reader.read(6);
    token = code == 3 ? 0 : s32(((code >> 2) + 1) << 8 | (code & 3));
  } else {
    if (!reader.lookUp(tables.coeffToken, token)) return withdrawn;
    if (token == invalidCode) return zvpStatusBadVlcInput;
  }
  const s32 trailingOnes = token & 0xff, totalCoeff = (token >> 8) & 0xff;
  if (!Reader::anyCount && (trailingOnes > 3 || trailingOnes > totalCoeff || totalCoeff > 16)) [[unlikely]]
    return withdrawn;
  *pNumCoeff = s16(totalCoeff);

  s32 levels[16];
  if (Reader::anyCount) std::memset(levels, 0, sizeof levels);
  if (trailingOnes != 0) {
    const u32 signs = reader.read(trailingOnes);
    for (s32 i = 0; i < trailingOnes; ++i) levels[i & 15] = 1 - 2 * s32((signs >> ((trailingOnes - 1 - i) & 31)) & 1);
  }
  if (totalCoeff == 0) return zvpStatusOk;

  Element* const dst = *ppDstCoeffs;
  std::memset(dst, 0, std::size_t(Shape::elements) * sizeof(Element));
  if (!readLevels(reader, levels, trailingOnes, totalCoeff)) return withdrawn;

  s32 zerosLeft = 0;
  if (totalCoeff < tables.maxNumCoeff) {
    const s32* const table = tables.totalZeros[totalCoeff];
    if (Shape::testsTables && table == nullptr) return zvpStatusNullPointer;
    if (!reader.lookUp(table, zerosLeft)) return withdrawn;
    if (zerosLeft == invalidCode) return zvpStatusBadVlcInput;
  }
  for (s32 left = totalCoeff; left > 0; --left) {
    s32 run = zerosLeft;
    if (left >= 2 && zerosLeft >= 1) {
      const s32* const table = tables.runBefore[zerosLeft];
      if (Shape::testsTables && table == nullptr) return zvpStatusNullPointer;
      if (!reader.lookUp(table, run)) return withdrawn;
      if (run == invalidCode) return zvpStatusBadVlcInput;
    }
    // Hostile bits can lead outside the block, for instance to 16 coefficients in a block of 15. Those are dropped.
    const s32 position = Shape::elements - tables.maxNumCoeff + zerosLeft + left - 1;
    if (u32(position) < u32(Shape::elements)) [[likely]]
      storeAs(dst + Shape::element(position, tables.scan), Element(levels[(totalCoeff - left) & 15]));
    zerosLeft -= Shape::clampsRun && run > zerosLeft ? zerosLeft : run;
  }
  *ppDstCoeffs = advanceBytes(dst, Shape::elements * std::ptrdiff_t(sizeof(Element)));
  return zvpStatusOk;
}

// The block by one reader, and the cursor behind it.
template <class Shape, class Reader, class Element>
ZVP_INLINE zvpStatus decodeBlockBy(const u32** ppBitStream, s32* pBitOffset, const CavlcTables& tables, s16* pNumCoeff,
                                   Element** ppDstCoeffs) {
  Reader reader(*ppBitStream, *pBitOffset);
  const zvpStatus status = readBlock<Shape>(reader, tables, pNumCoeff, ppDstCoeffs);
  if (status != zvpStatusBadVlcInput && status != withdrawn) {
    *ppBitStream = reader.word();
    *pBitOffset = reader.offset();
  }
  return status;
}
template <class Shape, class Element>
[[gnu::noinline, gnu::cold]] zvpStatus decodeBlockByFormula(const u32** ppBitStream, s32* pBitOffset,
                                                            const CavlcTables& tables, s16* pNumCoeff,
                                                            Element** ppDstCoeffs) {
  return decodeBlockBy<Shape, FormulaCursor>(ppBitStream, pBitOffset, tables, pNumCoeff, ppDstCoeffs);
}
template <class Shape, class Element>
ZVP_INLINE zvpStatus decodeBlock(const u32** ppBitStream, s32* pBitOffset, const CavlcTables& tables, s16* pNumCoeff,
                                 Element** ppDstCoeffs) {
  if (u32(*pBitOffset) < 32) [[likely]] {
    const zvpStatus status = decodeBlockBy<Shape, BitWindow>(ppBitStream, pBitOffset, tables, pNumCoeff, ppDstCoeffs);
    if (status != withdrawn) [[likely]]
      return status;
  }
  return decodeBlockByFormula<Shape>(ppBitStream, pBitOffset, tables, pNumCoeff, ppDstCoeffs);
}

// The two commonest 4:2:0 chroma DC blocks, one coefficient of magnitude 1 and none, without a table.
enum class ShortChromaDc { None, OneCoefficient, NoCoefficient };
struct ShortChromaDcCode {
  ShortChromaDc kind;
  s32 bits;      // of the whole code
  s32 position;  // and sign of the one coefficient
  bool negative;
};
// By five bits of the stream. Where the stream's word ends among them, zeros stand for the rest; the code is whole if
// its bits are all there.
ZVP_INLINE ShortChromaDcCode shortChromaDc(u32 peek) {
  if ((peek & 0x10) != 0) {
    const std::size_t row = 2 * (peek & 7);
    return {ShortChromaDc::OneCoefficient, ChromaDCRunTable_0[row + 1], ChromaDCRunTable_0[row], (peek & 8) != 0};
  }
  return {(peek & 8) != 0 ? ShortChromaDc::NoCoefficient : ShortChromaDc::None, 2, 0, false};
}
ZVP_INLINE ShortChromaDcCode peekShortChromaDc(const u32* word, s32 offset) {
  if (u32(offset) > 31) [[unlikely]]
    return shortChromaDc(FormulaCursor(word, offset).read(5));
  const u64 bits = u64(loadAs<u32>(word)) << (63 - offset);
  const auto code = shortChromaDc(u32(bits >> 59));
  if (code.bits <= offset + 1) return code;
  return shortChromaDc(u32((bits | u64(loadAs<u32>(word + 1)) << (31 - offset)) >> 59));
}

// ---- Exp-Golomb -------------------------------------------------------------------------------------------------

// False if there are more than 32 leading zeros. codeNum + 1 modulo 2^32 otherwise.
ZVP_INLINE bool readExpGolomb(BitWindow& reader, u32& value) {
  const u32 zeros = reader.readZeroRun(32);
  if (zeros > 32) return false;
  value = zeros == 0 ? 1 : (1u << (zeros & 31)) + reader.read(s32(zeros));
  return true;
}

}  // namespace zvp
