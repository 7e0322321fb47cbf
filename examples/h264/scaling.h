// Scaling lists (H.264 7.3.2.1.1.1, 8.5.9) and the level scales that the library's reconstruction takes.
#pragma once

#include <cstdint>

#include "common/bit_reader.h"

namespace h264 {

// The lists of a parameter set as they were sent: 4x4 intra Y, Cb, Cr, inter Y, Cb, Cr; 8x8 intra Y, inter Y; each in
// zig-zag order.
struct ScalingLists {
  enum class Kind : std::uint8_t { Absent, Default, Given };
  bool present = false;  // the set has a scaling matrix
  Kind kinds[8] = {};
  std::uint8_t lists4x4[6][16] = {};
  std::uint8_t lists8x8[2][64] = {};
  bool operator==(const ScalingLists&) const = default;
};

// Reads the lists behind the matrix's present flag. count: 6 lists of 4x4 and those of 8x8 that the set has; of the
// latter only the first two are kept, the others being of 4:4:4.
ScalingLists parseScalingLists(video::BitReader& in, int count);

// Weight times normAdjust for every list, remainder of QP by 6, and raster place.
struct LevelScales {
  bool flat = true;  // all 4x4 lists are flat
  std::int16_t scale4x4[6][6][16];
  std::int16_t scale8x8[2][6][64];
};
LevelScales makeLevelScales(const ScalingLists& sequence, const ScalingLists& picture);

// Raster places in zig-zag order (Table 8-3).
extern const std::uint8_t zigzag4x4[16];

}  // namespace h264
