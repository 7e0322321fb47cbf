// Blocks of levels as a coder of smooth pictures has them, for the rows of coefficient readers and writers: mostly
// small levels at low positions, eight on average, now and then one that takes an escape. One block a call of a turn.
#pragma once

#include <algorithm>
#include <cstdint>

#include "support/bench.h"

namespace bench {

struct CoefficientBlocks {
  static constexpr int streamBytes = 256;
  std::int16_t levels[callsPerTurn][64] = {};
  int counts[callsPerTurn] = {};  // that are not 0, from position 1 on
  std::uint8_t streams[callsPerTurn][streamBytes] = {};
  int offsets[callsPerTurn] = {};

  CoefficientBlocks() {
    zvptest::Rng rng(9);
    for (int i = 0; i < callsPerTurn; ++i) {
      const int wanted = rng.range(3, 13);
      for (int n = 0; n < wanted; ++n) {
        // Raster positions of a low-frequency corner.
        const int column = std::min(rng.range(0, 7), rng.range(0, 7)), row = std::min(rng.range(0, 7), rng.range(0, 7));
        int level = std::min(std::min(rng.range(1, 20), rng.range(1, 20)), std::min(rng.range(1, 20), rng.range(1, 8)));
        if (rng.chance(60)) level = rng.range(20, 100);
        levels[i][8 * row + column] = std::int16_t(rng.chance(2) ? level : -level);
      }
      if (levels[i][1] == 0) levels[i][1] = 1;
      counts[i] = int(std::count_if(levels[i] + 1, levels[i] + 64, [](std::int16_t level) { return level != 0; }));
      offsets[i] = rng.range(0, 7);
    }
  }
  // Number of levels from position 0 on.
  int countWithDc(int i) const { return counts[i] + (levels[i][0] != 0); }
};

}  // namespace bench
