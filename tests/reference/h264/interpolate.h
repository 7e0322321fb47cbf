// Model of H.264 sample interpolation, sample by sample as the standard's clause 8.4.2.2 names the positions.
#pragma once

#include <cstdint>
#include <functional>

namespace reference::h264 {

// The source sample at a column and row counted from the place of the block.
using SampleAt = std::function<std::int64_t(int x, int y)>;

// Luma at (x + dx / 4, y + dy / 4), clipped to 0..high.
std::int64_t lumaSample(const SampleAt& at, int x, int y, int dx, int dy, std::int64_t high);

// Chroma at (x + dx / 8, y + dy / 8). Neighbours without weight are not asked for.
std::int64_t chromaSample(const SampleAt& at, int x, int y, int dx, int dy);

// One axis of a block that a vector moves: where its reference area begins and how long it is, and the coordinate that
// is read for one of the area. Of two opposite edges the low one alone is repaired.
struct Axis {
  int fraction;
  int whole;   // the block's first sample without the fraction
  int first;   // the area's first sample
  int needed;  // its samples
  int frame;
  bool clampLow, clampHigh;
  int clamp(int coordinate) const;
};
Axis lumaAxis(int vector, int position, int size, int frame);
Axis chromaAxis(int vector, int position, int size, int frame);

// The expansion of a plane's margin; (x, y) of get and set are coordinates of the plane.
void expandPlane(const std::function<std::uint8_t(int, int)>& get,
                 const std::function<void(int, int, std::uint8_t)>& set, int width, int height, int margin, int kind);

}  // namespace reference::h264
