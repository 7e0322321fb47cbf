// How a macroblock is walked: places of its blocks (H.264 6.4.3) and which of them stand at its edges.
#pragma once

#include <array>

#include "types.h"

namespace zvp {

struct BlockStep {
  s64 dx, dy;
};

// From each 4x4 and each 8x8 block to the next, in samples and rows. The last step leads nowhere that is used.
inline constexpr std::array<BlockStep, 16> xyoff = {{{4, 0},
                                                     {-4, 4},
                                                     {4, 0},
                                                     {4, -4},
                                                     {4, 0},
                                                     {-4, 4},
                                                     {4, 0},
                                                     {-12, 4},
                                                     {4, 0},
                                                     {-4, 4},
                                                     {4, 0},
                                                     {4, -4},
                                                     {4, 0},
                                                     {-4, 4},
                                                     {4, 0},
                                                     {-12, 4}}};
inline constexpr std::array<BlockStep, 4> xyoff8 = {{{8, 0}, {-8, 8}, {8, 0}, {0, 0}}};

// From a 4x4 block to its place in the raster, as the DC block has it.
inline constexpr std::array<u8, 16> block_subblock_mapping = {0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15};

// Set where the neighbour to the left or above lies outside the macroblock.
inline constexpr std::array<u8, 16> left_edge_tab16 = {1, 0, 1, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0};
inline constexpr std::array<u8, 16> top_edge_tab16 = {1, 1, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
inline constexpr std::array<u8, 4> left_edge_tab4 = {1, 0, 1, 0};
inline constexpr std::array<u8, 4> top_edge_tab4 = {1, 1, 0, 0};

// Set where the samples above and to the right come earlier in decoding order.
inline constexpr std::array<u8, 16> above_right_avail_4x4 = {1, 1, 1, 0, 1, 1, 1, 0, 1, 1, 1, 0, 1, 0, 1, 0};

namespace detail {
// Whether the walk comes through the places that the mapping gives, and the edges are those of these places.
constexpr bool walkAgreesWithMapping() {
  s64 x = 0, y = 0;
  for (std::size_t i = 0; i < 16; ++i) {
    if (y + x / 4 != block_subblock_mapping[i]) return false;
    if ((x == 0) != (left_edge_tab16[i] != 0) || (y == 0) != (top_edge_tab16[i] != 0)) return false;
    x += xyoff[i].dx;
    y += xyoff[i].dy;
  }
  return x == 0 && y == 16;
}
}  // namespace detail
static_assert(detail::walkAgreesWithMapping());

}  // namespace zvp
