// The test programs' own zvpMalloc and zvpFree, which take the place of the companion library's: they count, and fail
// on request.
#pragma once

#include <cstddef>

namespace zvptest {

struct Allocations {
  static void reset();               // forgets the counts; nothing fails
  static void failAt(int nth);       // the nth allocation from now on returns null, 1 being the next
  static int made();                 // calls of zvpMalloc since reset()
  static int live();                 // blocks not yet freed, of all time
  static std::size_t lastLength();   // what the last call asked for
};

}  // namespace zvptest
