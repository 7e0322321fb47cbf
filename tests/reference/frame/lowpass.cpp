#include "reference/frame/lowpass.h"

namespace reference {

void lowpass(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* dst, std::ptrdiff_t dstStep, int width,
             int height, int windowSize) {
  const int r = windowSize / 2;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::uint32_t sum = 0;
      for (int j = -r; j <= r; ++j)
        for (int i = -r; i <= r; ++i) sum += src[(y + j) * srcStep + x + i];
      dst[y * dstStep + x] =
          std::uint8_t(windowSize == 3 ? ((sum + 5) * 455) >> 12 : ((sum + 13) * 10485) >> 18);
    }
}

}  // namespace reference
