#include "reference/vc1/range_map.h"

namespace reference::vc1 {

std::uint8_t rangeMapped(std::uint8_t sample, int rangeMap) {
  const int y = (((sample - 128) * (rangeMap + 9) + 4) >> 3) + 128;
  return std::uint8_t(y < 0 ? 0 : y > 255 ? 255 : y);
}

}  // namespace reference::vc1
