// Model of VC-1 overlap smoothing: one line across an edge after the other.
#pragma once

#include <cstdint>

namespace reference::vc1 {

// Samples a, b before the edge and c, d behind it; y0 to y3 as they are before they are clipped.
struct LineAcrossEdge {
  std::int16_t samples[4];
  std::int32_t smoothed[4];
};

// A group of lines, in their order along the edge.
void smoothLines(LineAcrossEdge* lines, int count);

std::uint8_t clipped(std::int32_t sample);

// The row that luma line 0..15 of a vertical edge has.
int rowOfLumaLine(int line, bool fieldMode);
// Whether the flag enables it.
bool isLumaLineEnabled(int line, std::uint32_t edgeFlag);

}  // namespace reference::vc1
