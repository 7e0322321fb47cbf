// The allocator: 64 bytes is a cache line and the widest register, so that no record straddles one by accident.
#include "zvpcore.h"

#include <cstdlib>

extern "C" void* zvpMalloc(size_t length) {
  constexpr size_t alignment = 64;
  if (length == 0) return nullptr;
  void* block = nullptr;
  return posix_memalign(&block, alignment, length) == 0 ? block : nullptr;
}

extern "C" void zvpFree(void* pointer) { std::free(pointer); }
