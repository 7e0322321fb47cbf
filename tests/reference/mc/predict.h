// Half-pel prediction by motion type, as the models of MC and GetDiff share it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::mc {

// A reference block at its whole-pel position. Bits 2 and 3 of mcType: 4 half in y, 8 half in x.
struct Reference {
  const std::uint8_t* top;
  std::ptrdiff_t step;
  std::int32_t mcType;
};

// Samples of a component stand channels bytes apart. All in 32 bits, sums modulo 2^32, divisions toward zero.
std::int32_t predict(const Reference& ref, int x, int y, int channels, std::int32_t roundControl);

}  // namespace reference::mc
