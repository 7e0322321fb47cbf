#include "reference/measures/ssd.h"

#include "reference/measures/half_pel.h"

namespace reference::measures {
std::uint32_t ssd(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType) {
  std::uint32_t sum = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const int difference = sample(src, srcStep, x, y) - halfPelSample(ref, refStep, x, y, mcType);
      sum += std::uint32_t(difference * difference);
    }
  return sum;
}
}  // namespace reference::measures
