#include "reference/mc/mc.h"

#include <algorithm>
#include <cstring>

namespace reference::mc {
namespace {

std::int32_t valueAt(const Residual& residual, int x, int y) {
  const void* plane = residual.first;
  if (residual.second) {
    if (x % 2 != 0) plane = residual.second;
    x /= 2;
  }
  std::int16_t value;
  std::memcpy(&value, static_cast<const char*>(plane) + y * residual.step + 2 * x, sizeof value);
  return value;
}

std::uint8_t clip(std::int32_t value) { return std::uint8_t(std::clamp(value, 0, 255)); }

}  // namespace

void compensate(const Shape& shape, const Reference& ref, const Residual& residual, const Result& dst,
                std::int32_t roundControl) {
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x)
      dst.top[y * dst.step + x] = clip(predict(ref, x, y, shape.channels, roundControl) + valueAt(residual, x, y));
}

void compensate(const Shape& shape, const Reference& forward, const Reference& backward, const Residual& residual,
                const Result& dst, std::int32_t roundControl) {
  for (int y = 0; y < shape.height; ++y)
    for (int x = 0; x < shape.width; ++x) {
      const std::int32_t pF = predict(forward, x, y, shape.channels, roundControl);
      const std::int32_t pB = predict(backward, x, y, shape.channels, roundControl);
      const auto s = std::uint32_t(pF) + std::uint32_t(pB) + 2 * std::uint32_t(valueAt(residual, x, y));
      dst.top[y * dst.step + x] = clip(std::int32_t(s + 1) / 2);
    }
}

}  // namespace reference::mc
