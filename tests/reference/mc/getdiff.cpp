#include "reference/mc/getdiff.h"

#include <cstring>

namespace reference::mc {
namespace {

void put(const Values& values, int x, int y, std::uint32_t value) {
  const auto low = std::int16_t(value & 0xffff);
  std::memcpy(static_cast<char*>(values.top) + y * values.step + 2 * x, &low, sizeof low);
}

std::uint32_t sampleOf(const Current& cur, int x, int y) { return cur.top[y * cur.step + x]; }

std::uint32_t fromTwo(const Current& cur, const Reference& forward, const Reference& backward, int x, int y,
                      int channels, std::int32_t roundControl) {
  const auto pF = std::uint32_t(predict(forward, x, y, channels, roundControl));
  const auto pB = std::uint32_t(predict(backward, x, y, channels, roundControl));
  return std::uint32_t(std::int32_t(2 * sampleOf(cur, x, y) - pF - pB) >> 1);
}

}  // namespace

void getDiff(int width, int height, const Current& cur, const Reference& ref, const Values& diff,
             const Values& predictor, std::int32_t roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const auto p = std::uint32_t(predict(ref, x, y, 1, roundControl));
      put(diff, x, y, sampleOf(cur, x, y) - p);
      if (predictor.top) put(predictor, x, y, p);
    }
}

void getDiff(int width, int height, const Current& cur, const Reference& forward, const Reference& backward,
             const Values& diff, std::int32_t roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) put(diff, x, y, fromTwo(cur, forward, backward, x, y, 1, roundControl));
}

void getDiffChroma(int width, int height, const Current& cur, const Reference& ref, const Values& diffU,
                   const Values& diffV, std::int32_t roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < 2 * width; ++x) {
      const auto p = std::uint32_t(predict(ref, x, y, 2, roundControl));
      put(x % 2 ? diffV : diffU, x / 2, y, sampleOf(cur, x, y) - p);
    }
}

void getDiffChroma(int width, int height, const Current& cur, const Reference& forward, const Reference& backward,
                   const Values& diffU, const Values& diffV, std::int32_t roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < 2 * width; ++x)
      put(x % 2 ? diffV : diffU, x / 2, y, fromTwo(cur, forward, backward, x, y, 2, roundControl));
}

}  // namespace reference::mc
