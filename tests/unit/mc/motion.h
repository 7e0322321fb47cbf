// Random motion types, roundings and references for the tests of MC and GetDiff.
#pragma once

#include "reference/mc/predict.h"
#include "unit/mc/planes.h"

namespace zvptest {

// Any integer; of its bits only 2 and 3 count. Most are one of the four plain types.
inline std::int32_t anyMotionType(Rng& rng) {
  const std::int32_t type = 4 * rng.range(0, 3);
  const bool stray = rng.chance(3);
  return stray ? std::int32_t((rng.next() & ~12u) | std::uint32_t(type)) : type;
}

// 0 or 1, and now and then a value that no picture uses.
inline std::int32_t anyRoundControl(Rng& rng) {
  if (!rng.chance(5)) return rng.range(0, 1);
  const std::vector<std::int32_t> odd = {2, 3, -1, 257, 1020, 1021, 1022, 1023, 2147483647, -2147483647 - 1};
  return rng.chance(3) ? std::int32_t(rng.next()) : rng.pick(odd);
}

// A reference of just the size that its type needs.
struct ReferencePlane {
  std::int32_t mcType;
  GuardedPlane<std::uint8_t> plane;
  ReferencePlane(Rng& rng, int width, int height, int channels)
      : ReferencePlane(rng, width, height, channels, anyMotionType(rng)) {}
  ReferencePlane(Rng& rng, int width, int height, int channels, std::int32_t type)
      : mcType(type), plane(inputBytes(rng, width, height, type & 8 ? channels : 0, type & 4 ? 1 : 0)) {}
  const std::uint8_t* data() const { return plane.data(); }
  std::int32_t step() const { return stepOf(plane); }
  reference::mc::Reference model() const { return {plane.data(), plane.step(), mcType}; }
};

}  // namespace zvptest
