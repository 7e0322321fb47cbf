#include "reference/vc1/overlap.h"

namespace reference::vc1 {

void smoothLines(LineAcrossEdge* lines, int count) {
  int r0 = 4, r1 = 3;
  for (int i = 0; i < count; ++i) {
    const std::int32_t a = lines[i].samples[0], b = lines[i].samples[1];
    const std::int32_t c = lines[i].samples[2], d = lines[i].samples[3];
    lines[i].smoothed[0] = (7 * a + d + r0) >> 3;
    lines[i].smoothed[1] = (7 * b - a + c + d + r1) >> 3;
    lines[i].smoothed[2] = (a + b + 7 * c - d + r0) >> 3;
    lines[i].smoothed[3] = (a + 7 * d + r1) >> 3;
    r0 = 7 - r0;
    r1 = 7 - r1;
  }
}

std::uint8_t clipped(std::int32_t sample) { return std::uint8_t(sample < 0 ? 0 : sample > 255 ? 255 : sample); }

int rowOfLumaLine(int line, bool fieldMode) {
  if (!fieldMode) return line;
  return line < 8 ? 2 * line : 2 * (line - 8) + 1;
}

bool isLumaLineEnabled(int line, std::uint32_t edgeFlag) { return (edgeFlag & (line < 8 ? 3 : 12)) != 0; }

}  // namespace reference::vc1
