#include "reference/measures/sad.h"

#include <cstdlib>

#include "reference/measures/half_pel.h"

namespace reference::measures {
namespace {
template <class T>
std::uint32_t sumOfDifferences(const T* src, std::ptrdiff_t srcStep, const T* ref, std::ptrdiff_t refStep, int width,
                               int height, int mcType) {
  std::uint32_t sum = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      sum += std::uint32_t(std::abs(sample(src, srcStep, x, y) - halfPelSample(ref, refStep, x, y, mcType)));
  return sum;
}
}  // namespace

std::uint32_t sad(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType) {
  return sumOfDifferences(src, srcStep, ref, refStep, width, height, mcType);
}
std::uint32_t sad(const std::uint16_t* src, std::ptrdiff_t srcStep, const std::uint16_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType) {
  return sumOfDifferences(src, srcStep, ref, refStep, width, height, mcType);
}
}  // namespace reference::measures
