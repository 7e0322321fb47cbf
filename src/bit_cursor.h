// The bit cursor over 32-bit words, used by MPEG-1/2, H.264 and AVS: a word pointer and the index, 31 down to 0, of the
// next bit in the word. Bit 31 comes first. Serial by nature, so it stays scalar.
//
// A cursor is a local copy of the caller's pair; a reader stores it back when it is done. The word behind the current
// one is loaded only when a read takes bits from it, because a stream may end where mapped memory ends.
#pragma once

#include <bit>

#include "shared_tables.h"
#include "types.h"

namespace zvp {

struct WordCursor {
  const u32* word;
  s32 offset;

  // The word i words ahead. The caller's pointer may stand at any address.
  ZVP_INLINE u32 wordAt(std::ptrdiff_t i) const { return loadAs<u32>(reinterpret_cast<const u8*>(word) + 4 * i); }

  // The next n bits, 1 <= n <= 32, right-aligned. Moves the cursor.
  ZVP_INLINE u32 read(s32 n) {
    const s32 left = offset - n;
    if (left >= 0) {
      offset = left;
      return (wordAt(0) >> (left + 1)) & bit_mask[std::size_t(n)];
    }
    u32 value = wordAt(0) << ((-left - 1) & 31);
    ++word;
    offset = left + 32;
    if (left < -1) value |= wordAt(0) >> (offset & 31) >> 1;
    return value & bit_mask[std::size_t(n)];
  }

  // The next n bits without moving.
  ZVP_INLINE u32 peek(s32 n) const {
    WordCursor copy = *this;
    return copy.read(n);
  }

  // Passes over n bits, 0 <= n <= 32. Loads nothing.
  ZVP_INLINE void skip(s32 n) {
    offset -= n;
    if (offset < 0) {
      offset += 32;
      ++word;
    }
  }

  // Steps back over n bits, 0 <= n <= 32. Loads nothing.
  ZVP_INLINE void giveBack(s32 n) {
    offset += n;
    if (offset > 31) {
      offset -= 32;
      --word;
    }
  }

  // Counts zero bits up to the next 1 and passes over both. Words that the code does not reach are not loaded.
  ZVP_INLINE u32 readZeroRun() {
    u32 zeros = 0;
    u32 rest = wordAt(0) << ((31 - offset) & 31);
    while (rest == 0) {
      zeros += u32(offset) + 1;
      offset = 31;
      ++word;
      rest = wordAt(0);
    }
    const s32 run = std::countl_zero(rest);
    skip(run + 1);
    return zeros + u32(run);
  }
};

}  // namespace zvp
