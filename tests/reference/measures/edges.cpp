#include "reference/measures/edges.h"

#include <cstdlib>

namespace reference::measures {
std::uint8_t hasEdges(const std::uint8_t* src, std::ptrdiff_t step, std::uint8_t difference, std::uint8_t limit) {
  std::uint8_t count = 0;
  for (int y = 0; y < 15; ++y) {
    for (int x = 0; x < 15; ++x) {
      const int p = src[y * step + x];
      if (std::abs(p - src[y * step + x + 1]) > difference)
        ++count;
      else if (std::abs(p - src[(y + 1) * step + x]) > difference)
        ++count;
    }
    if (count > limit) break;
  }
  return count > limit ? 1 : 0;
}
}  // namespace reference::measures
