#include "reference/dv/dequant.h"

namespace reference::dv {
namespace {

std::int32_t wrapped(std::int64_t product) { return std::int32_t(std::uint32_t(product)); }

}  // namespace

Block dequantize(const Block& block, const Block& table) {
  Block result(64);
  for (std::size_t i = 0; i < 64; ++i) result[i] = std::int16_t(((block[i] * table[i]) >> 14) & -4);
  return result;
}

Block dequantizeWeighted(const Block& block, const Block& weights, const Block& steps) {
  Block result(64);
  for (std::size_t i = 0; i < 64; ++i)
    result[i] = std::int16_t(wrapped(std::int64_t(block[i] >> 3) * weights[i] * steps[i]) >> 16);
  return result;
}

Block dequantizeDV100(const Block& block, const Block& weights, std::int32_t step) {
  Block result(64);
  result[0] = std::int16_t(block[0] >> 5);
  for (std::size_t i = 1; i < 64; ++i)
    result[i] = std::int16_t(wrapped(std::int64_t(wrapped(std::int64_t(block[i] >> 6) * step)) * weights[i]) >> 5);
  return result;
}

int meanTowardZero(int sum, int samples) { return sum / samples; }

Block reduced(const Block& samples) {
  Block result = samples;
  for (std::size_t y = 0; y < 4; ++y)
    for (std::size_t x = 0; x < 4; ++x) {
      const std::size_t at = 16 * y + 2 * x;
      result[4 * y + x] = std::int16_t(
          meanTowardZero(samples[at] + samples[at + 1] + samples[at + 8] + samples[at + 9], 4));
    }
  return result;
}

}  // namespace reference::dv
