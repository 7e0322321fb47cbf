#include "reference/vc1/hadamard.h"

namespace reference::vc1 {
namespace {

int entry(int k, int j) {
  int sign = 1;
  for (int bits = k & j; bits != 0; bits /= 2)
    if (bits % 2 != 0) sign = -sign;
  return sign;
}

}  // namespace

std::uint32_t hadamardSum(const std::int32_t* src, std::int16_t* dst) {
  std::uint32_t sum = 0;
  for (int u = 0; u < 8; ++u)
    for (int v = 0; v < 8; ++v) {
      std::int32_t y = 0;
      for (int j = 0; j < 8; ++j)
        for (int k = 0; k < 8; ++k) y += entry(u, j) * src[8 * j + k] * entry(k, v);
      dst[8 * u + v] = std::int16_t(y);
      sum += std::uint32_t(dst[8 * u + v] < 0 ? -dst[8 * u + v] : dst[8 * u + v]);
    }
  return sum;
}

}  // namespace reference::vc1
