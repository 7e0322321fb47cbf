// Blocks of coefficients for the rows of transforms and quantizers. Calls that work in place get a fresh copy, which
// their rows include.
#pragma once

#include <algorithm>
#include <cstdint>

#include "support/bench.h"

namespace bench {

struct FreshBlocks {
  std::int16_t source[callsPerTurn][64] = {}, work[callsPerTurn][64];

  std::int16_t* fresh(int i) {
    std::copy(source[i], source[i] + 64, work[i]);
    return work[i];
  }
  // Values in the first columns and rows of blocks without gaps, smaller towards the high frequencies.
  void fillCorner(int blockWidth, int columns, int rows, int limit) {
    zvptest::Rng rng(1);
    for (auto& block : source)
      for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
          block[blockWidth * y + x] = std::int16_t(rng.range(-limit, limit) / (1 + x + y));
  }
  // 8x8 blocks as an encoder makes them: mostly zeros, and smaller towards the high frequencies.
  void fillSparse() {
    zvptest::Rng rng(1);
    for (auto& block : source)
      for (int i = 0; i < 64; ++i) {
        const int limit = 900 / (1 + i % 8 + i / 8);
        if (rng.chance(3)) block[i] = std::int16_t(rng.range(-limit, limit));
      }
  }
};

}  // namespace bench
