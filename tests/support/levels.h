// Blocks of levels and arguments for the tests of coefficient readers and writers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "support/random.h"

namespace zvptest {

// Any bit that is set means on.
inline int anyFlag(Rng& rng) { return rng.pick<int>({0, 0, 1, 256, -1, 1 << 30}); }
inline int anyScan(Rng& rng) { return rng.pick<int>({0, 1, 2, 0, 1, 2, 3, 5, -1, -2, 256}); }

struct WrittenEvent {
  int run, level;
};
// Events that fit a block, runs and levels small or large.
inline std::vector<WrittenEvent> anyEvents(Rng& rng, int firstPosition, int largestLevel) {
  std::vector<WrittenEvent> events;
  const int largest = std::min(rng.pick<int>({1, 2, 5, 15, 40, 127, largestLevel}), largestLevel);
  const int longest = rng.pick<int>({0, 1, 3, 10, 40, 63});
  const int wanted = rng.chance(10) ? 64 : rng.range(1, 20);
  for (int position = firstPosition; int(events.size()) < wanted;) {
    const int run = rng.range(0, longest);
    if (position + run > 63) break;
    const int magnitude = rng.range(1, largest);
    events.push_back({run, rng.chance(2) ? magnitude : -magnitude});
    position += run + 1;
  }
  if (events.empty()) events.push_back({0, 1});
  return events;
}

// 64 levels, few or many of them not 0.
inline std::vector<std::int16_t> anyBlock(Rng& rng, int largest) {
  std::vector<std::int16_t> block(64, 0);
  const int oneIn = rng.pick<int>({1, 2, 4, 10, 30});
  for (auto& value : block)
    if (rng.chance(oneIn)) value = std::int16_t(rng.range(-largest, largest));
  return block;
}

inline int countNonZero(const std::vector<std::int16_t>& block, int firstElement) {
  return int(std::count_if(block.begin() + firstElement, block.end(), [](std::int16_t value) { return value != 0; }));
}

}  // namespace zvptest
