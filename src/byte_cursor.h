// The bit cursor over bytes, used by H.263 and MPEG-4: a byte pointer and the number of bits, 0 to 7, of that byte that
// are used up; the top bit comes first. Two readers, forward and backward, hold the next bits in a register; a writer
// gathers bits in one. Serial by nature, so they stay scalar.
//
// Reach. No length is known. A reader may load bytes up to the fourth one behind the byte that holds the last bit
// consumed. With all loaded bytes in a row that is: at most 39 bits loaded and not consumed. Both readers keep to it,
// and, since a code is looked at before it is consumed, count from the last code that was good.
#pragma once

#include "types.h"

namespace zvp {

// Is the offset of a cursor one that it must not have?
ZVP_INLINE bool badBitOffset(const s32* pBitOffset) { return u32(loadAs<s32>(pBitOffset)) > 7; }

ZVP_INLINE u32 loadBigEndian32(const u8* p) { return __builtin_bswap32(loadAs<u32>(p)); }

class ByteReader {
 public:
  ZVP_INLINE ByteReader(const u8* const* ppBitStream, const s32* pBitOffset) {
    next_ = loadAs<const u8*>(ppBitStream);
    const s32 offset = loadAs<s32>(pBitOffset);
    bits_ = u64(loadBigEndian32(next_)) << (32 + offset);
    left_ = 32 - offset;
    next_ += 4;
  }

  // Has 16 bits at least in the register: any table code and its sign.
  ZVP_INLINE void fillForCode() {
    if (left_ >= 16) return;
    // Three bytes, loaded with the one before them, whose bits are there already or lie above the register.
    bits_ |= u64(loadBigEndian32(next_ - 1)) << (40 - left_);
    left_ += 24;
    next_ += 3;
  }
  // Has 32 bits at least: any escape.
  ZVP_INLINE void fillForEscape() {
    for (; left_ < 32; left_ += 8) bits_ |= u64(*next_++) << (56 - left_);
  }

  // The next n bits, 1 <= n <= 32, right-aligned; they have been filled in.
  ZVP_INLINE u32 peek(s32 n) const { return u32(bits_ >> (64 - n)); }
  // Bit i from here, 0 being the next one.
  ZVP_INLINE u32 peekBit(s32 i) const { return u32(bits_ >> (63 - i)) & 1; }
  ZVP_INLINE void skip(s32 n) {
    bits_ <<= n;
    left_ -= n;
  }
  ZVP_INLINE u32 read(s32 n) {
    const u32 value = peek(n);
    skip(n);
    return value;
  }

  ZVP_INLINE void store(const u8** ppBitStream, s32* pBitOffset) const {
    storeAs(ppBitStream, next_ - ((left_ + 7) >> 3));
    storeAs(pBitOffset, -left_ & 7);
  }

 private:
  u64 bits_;        // loaded and not consumed, from bit 63 down; zeros below
  s32 left_;        // their number
  const u8* next_;  // the first byte not loaded
};

// Reads toward earlier bits. Its cursor stands on the next bit to read, *pBitOffset being that bit's index from the
// top. What it peeks comes in stream order: the bit that is read first is the lowest.
class BackwardByteReader {
 public:
  ZVP_INLINE BackwardByteReader(const u8* const* ppBitStream, const s32* pBitOffset) {
    first_ = loadAs<const u8*>(ppBitStream);
    const s32 offset = loadAs<s32>(pBitOffset);
    bits_ = u64(*first_) >> (7 - offset);
    left_ = offset + 1;
  }

  // As in the other reader: 16 bits at least, 32 bits at least.
  ZVP_INLINE void fillForCode() {
    if (left_ >= 16) return;
    first_ -= 2;
    bits_ |= u64(first_[0] << 8 | first_[1]) << left_;
    left_ += 16;
  }
  ZVP_INLINE void fillForEscape() {
    for (; left_ < 32; left_ += 8) bits_ |= u64(*--first_) << left_;
  }

  // The n bits behind the first `from` ones, from + n <= 32.
  ZVP_INLINE u32 peek(s32 from, s32 n) const { return u32(bits_ >> from) & ((u32(1) << n) - 1); }
  ZVP_INLINE void skip(s32 n) {
    bits_ >>= n;
    left_ -= n;
  }

  ZVP_INLINE void store(const u8** ppBitStream, s32* pBitOffset) const {
    storeAs(ppBitStream, first_ + ((left_ - 1) >> 3));
    storeAs(pBitOffset, (left_ - 1) & 7);
  }

 private:
  u64 bits_;         // loaded and not consumed, from bit 0 up; zeros above
  s32 left_;         // their number
  const u8* first_;  // the earliest byte loaded
};

// Of the byte under the cursor the used bits stay; the bytes behind are written whole, and only as far as codes reach.
class ByteWriter {
 public:
  ZVP_INLINE ByteWriter(u8* const* ppBitStream, const s32* pBitOffset) {
    next_ = loadAs<u8*>(ppBitStream);
    count_ = loadAs<s32>(pBitOffset);
    bits_ = count_ != 0 ? u64(*next_ >> (8 - count_)) : 0;
  }

  // The low n bits of code, 1 <= n <= 32; the bits above are 0.
  ZVP_INLINE void put(u32 code, s32 n) {
    bits_ = bits_ << n | code;
    count_ += n;
    if (count_ >= 32) {
      count_ -= 32;
      storeAs(next_, __builtin_bswap32(u32(bits_ >> count_)));
      next_ += 4;
    }
  }

  // Writes the rest, zeros behind it, and moves the cursor. Something must have been put.
  ZVP_INLINE void store(u8** ppBitStream, s32* pBitOffset) {
    u32 rest = u32(bits_ << (32 - count_));
    for (s32 left = count_; left > 0; left -= 8, rest <<= 8, ++next_) *next_ = u8(rest >> 24);
    storeAs(ppBitStream, next_ - ((count_ & 7) != 0));
    storeAs(pBitOffset, count_ & 7);
  }

 private:
  u64 bits_;   // the low count_ bits are not written yet; older ones above
  s32 count_;  // below 32 between calls
  u8* next_;   // where they go
};

}  // namespace zvp
