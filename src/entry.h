// What the entry points share: the null test that always comes first.
#pragma once

#include "types.h"

namespace zvp {

// True if one of the pointers is null. Reads none of them, so a pointer held in memory is tested in a second call.
template <class... Pointers> ZVP_INLINE constexpr bool anyNull(const Pointers*... pointers) {
  return ((pointers == nullptr) || ...);
}

// A cursor argument is the address of a pointer: both must be there.
template <class T> ZVP_INLINE constexpr bool nullCursor(T* const* ppBitStream) {
  return ppBitStream == nullptr || *ppBitStream == nullptr;
}

}  // namespace zvp
