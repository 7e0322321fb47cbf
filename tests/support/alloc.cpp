#include "support/alloc.h"

#include <cstdlib>

#include "zvpcore.h"

namespace zvptest {
namespace {
int calls = 0, blocks = 0, countdown = 0;
std::size_t length = 0;
}  // namespace

void Allocations::reset() { calls = countdown = 0; }
void Allocations::failAt(int nth) { countdown = nth; }
int Allocations::made() { return calls; }
int Allocations::live() { return blocks; }
std::size_t Allocations::lastLength() { return length; }

}  // namespace zvptest

extern "C" void* zvpMalloc(size_t size) {
  using namespace zvptest;
  ++calls;
  length = size;
  if (countdown > 0 && --countdown == 0) return nullptr;
  // malloc itself, so that AddressSanitizer watches the block's ends.
  void* block = size == 0 ? nullptr : std::malloc(size);
  if (block != nullptr) ++blocks;
  return block;
}

extern "C" void zvpFree(void* pointer) {
  if (pointer != nullptr) --zvptest::blocks;
  std::free(pointer);
}
