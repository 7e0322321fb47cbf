// A way to keep the compiler from keeping things.
#pragma once

#include "types.h"

namespace zvp {

// The same value, of which the compiler knows nothing. It would rather hold sixteen addresses in registers, and push
// others for them, than work one out anew; so a distance or a pointer is made a stranger to the one before. A sum made
// so is added up in the order in which it is written.
template <class T> ZVP_INLINE T opaque(T value) {
  asm("" : "+r"(value));
  return value;
}

// What was read of memory that others know of is read again behind this, and no register holds it until then.
ZVP_INLINE void rereadMemory() { asm("" : : : "memory"); }

}  // namespace zvp
