// A cursor over 32-bit words whose next bits are held in a register. Same positions as WordCursor; made for loops that
// read many short codes. The next word is loaded only when a read takes bits from it, because a stream may end where
// mapped memory ends. Serial by nature, so it stays scalar.
#pragma once

#include "types.h"

namespace zvp::mpeg {

class BitWindow {
 public:
  // Loads the word at the cursor: at least one bit has to be read.
  ZVP_INLINE BitWindow(const u32* const* ppBitStream, const s32* pBitOffset) {
    const u32* word = loadAs<const u32*>(ppBitStream);
    const s32 offset = loadAs<s32>(pBitOffset);
    bits_ = u64(loadAs<u32>(word)) << (63 - offset);
    left_ = offset + 1;
    next_ = word + 1;
  }

  // The next n bits, 1 <= n <= 32, right-aligned. Does not move.
  ZVP_INLINE u32 peek(s32 n) {
    if (left_ < n) {
      bits_ |= u64(loadAs<u32>(next_)) << (32 - left_);
      left_ += 32;
      ++next_;
    }
    return u32(bits_ >> (64 - n));
  }
  // Passes over n bits that have been peeked.
  ZVP_INLINE void drop(s32 n) {
    bits_ <<= n;
    left_ -= n;
  }
  ZVP_INLINE u32 read(s32 n) {
    const u32 value = peek(n);
    drop(n);
    return value;
  }

  // The caller's cursor: the word of the next bit, which may not have been loaded yet, and its index 31 to 0.
  ZVP_INLINE void store(const u32** ppBitStream, s32* pBitOffset) const {
    storeAs(ppBitStream, next_ - ((left_ + 31) >> 5));
    storeAs(pBitOffset, (left_ + 31) & 31);
  }

 private:
  u64 bits_;         // loaded and not passed, from bit 63 down; zeros below
  s32 left_;         // their number
  const u32* next_;  // first word not loaded
};

}  // namespace zvp::mpeg
