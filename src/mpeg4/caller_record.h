// Records in memory of the caller's: they lie at the first multiple of 16 of it.
#pragma once

#include "types.h"

namespace zvp::mpeg4 {

// What the caller has to provide, room for the rounding of the address included.
template <class Record> inline constexpr s32 recordSize = s32(sizeof(Record)) + 16;

// Record may be const.
template <class Record> ZVP_INLINE Record* recordAt(const void* memory) {
  return reinterpret_cast<Record*>((reinterpret_cast<std::uintptr_t>(memory) + 15) & ~std::uintptr_t(15));
}

}  // namespace zvp::mpeg4
