#include "reference/measures/diff.h"

#include "reference/measures/block.h"

namespace reference::measures {
namespace {
template <class T>
void differences(const T* a, std::ptrdiff_t aStep, const T* b, std::ptrdiff_t bStep, std::int16_t* dst, int width,
                 int height) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) *dst++ = std::int16_t(sample(a, aStep, x, y) - sample(b, bStep, x, y));
}
}  // namespace

void subtract(const std::uint8_t* a, std::ptrdiff_t aStep, const std::uint8_t* b, std::ptrdiff_t bStep,
              std::int16_t* dst, int width, int height) {
  differences(a, aStep, b, bStep, dst, width, height);
}
void subtract(const std::uint16_t* a, std::ptrdiff_t aStep, const std::uint16_t* b, std::ptrdiff_t bStep,
              std::int16_t* dst, int width, int height) {
  differences(a, aStep, b, bStep, dst, width, height);
}
}  // namespace reference::measures
