// Where the segments of a frame lie in the stream, and their macroblocks in the picture.
#pragma once

#include <cstddef>
#include <vector>

#include "dv/system.h"

namespace dv {

// Macroblocks are, in luma samples, 32x8 in 4:1:1, 16x16 in 4:2:0, 16x8 in the 4:2:2 of 50 Mb/s and 16x16 in that of
// 100 Mb/s. Where no more than half of one is left at the edge of the picture it has another shape: 16x16 in the last
// columns of 4:1:1, 32x8 in the last rows of 1080 lines.
struct Place {
  int x = 0, y = 0;   // of the top left luma sample
  bool edge = false;  // has the other shape
};

struct SegmentPlace {
  std::size_t offset = 0;  // of its 400 bytes in the frame
  int sequence = 0;        // number of its DIF sequence in the channel
  int firstBlock = 0;      // number of its first video block in the sequence
  Place macroblocks[5];
};

// In the order of the stream. Segments of which a system makes no use are left out.
std::vector<SegmentPlace> segmentPlaces(const System& system, bool secondOfPair);

}  // namespace dv
