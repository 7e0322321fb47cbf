#include "reference/measures/satd.h"

#include <cstdlib>

namespace reference::measures {
namespace {
void butterfly(int& a, int& b, int& c, int& d) {
  const int r0 = (a + b) + (c + d), r1 = (a + b) - (c + d), r2 = (a - b) - (c - d), r3 = (a - b) + (c - d);
  a = r0, b = r1, c = r2, d = r3;
}

int tile(const std::uint8_t* a, std::ptrdiff_t aStep, const std::uint8_t* b, std::ptrdiff_t bStep) {
  int t[4][4];
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) t[y][x] = a[y * aStep + x] - b[y * bStep + x];
  for (int y = 0; y < 4; ++y) butterfly(t[y][0], t[y][1], t[y][2], t[y][3]);
  for (int x = 0; x < 4; ++x) butterfly(t[0][x], t[1][x], t[2][x], t[3][x]);
  int sum = 0;
  for (const auto& row : t)
    for (const int value : row) sum += std::abs(value);
  return sum;
}
}  // namespace

std::int32_t satd(const std::uint8_t* a, std::ptrdiff_t aStep, const std::uint8_t* b, std::ptrdiff_t bStep, int width,
                  int height) {
  std::int32_t sum = 0;
  for (int y = 0; y < height; y += 4)
    for (int x = 0; x < width; x += 4) sum += tile(a + y * aStep + x, aStep, b + y * bStep + x, bStep);
  return sum;
}
}  // namespace reference::measures
