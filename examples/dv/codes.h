// The codes of the AC coefficients (IEC 61834-2, SMPTE 314M). They are canonical: sorted by length, each code word is
// the number behind the one before it, so that the events in this order and the number of each length are all there is
// to tell.
#pragma once

#include <cstdint>

namespace dv {

// A run of zeros and the magnitude of the coefficient behind it, whose sign follows as one bit. Magnitude 0: run + 1
// zeros and no sign.
struct Event {
  std::uint8_t run, amplitude;
};

// What ends a block: the run alone leads past the last coefficient.
inline constexpr Event endOfBlock{127, 0};

// Two and three bits, four of four, and so on; the sign is not counted.
struct CodeLength {
  int bits, count;
};
inline constexpr CodeLength codeLengths[] = {{2, 1},  {3, 1},  {4, 4},  {5, 4},  {6, 4},  {7, 8},
                                             {8, 16}, {9, 16}, {10, 7}, {11, 8}, {12, 20}};
// clang-format off
inline constexpr Event codedEvents[] = {
    {0, 1},
    {0, 2},
    endOfBlock, {1, 1}, {0, 3}, {0, 4},
    {2, 1}, {1, 2}, {0, 5}, {0, 6},
    {3, 1}, {4, 1}, {0, 7}, {0, 8},
    {5, 1}, {6, 1}, {2, 2}, {1, 3}, {1, 4}, {0, 9}, {0, 10}, {0, 11},
    {7, 1}, {8, 1}, {9, 1}, {10, 1}, {3, 2}, {4, 2}, {2, 3}, {1, 5}, {1, 6}, {1, 7}, {0, 12}, {0, 13}, {0, 14}, {0, 15},
    {0, 16}, {0, 17},
    {11, 1}, {12, 1}, {13, 1}, {14, 1}, {5, 2}, {6, 2}, {3, 3}, {4, 3}, {2, 4}, {2, 5}, {1, 8}, {0, 18}, {0, 19},
    {0, 20}, {0, 21}, {0, 22},
    {5, 3}, {3, 4}, {3, 5}, {2, 6}, {1, 9}, {1, 10}, {1, 11},
    {0, 0}, {1, 0}, {6, 3}, {4, 4}, {3, 6}, {1, 12}, {1, 13}, {1, 14},
    {2, 0}, {3, 0}, {4, 0}, {5, 0}, {7, 2}, {8, 2}, {9, 2}, {10, 2}, {7, 3}, {8, 3}, {4, 5}, {3, 7}, {2, 7}, {2, 8},
    {2, 9}, {2, 10}, {2, 11}, {1, 15}, {1, 16}, {1, 17}};
// clang-format on

// Longer runs of zeros: this prefix, and the run in six bits. Shorter ones have the codes above. The seven ones of the
// escape (eight bits of amplitude and a sign) are left: the library reads it by itself.
inline constexpr unsigned zeroRunPrefix = 0b1111110;
inline constexpr int zeroRunBits = 13, firstLongRun = 6, lastLongRun = 61;

}  // namespace dv
