#include "reference/measures/variance.h"

#include <cstdlib>

namespace reference::measures {
namespace {
template <class F>
std::uint32_t sumOver(const std::uint8_t* src, std::ptrdiff_t step, int size, F term) {
  std::uint32_t sum = 0;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) sum += std::uint32_t(term(int(src[y * step + x])));
  return sum;
}
}  // namespace

std::int32_t meanAbsDev(const std::uint8_t* src, std::ptrdiff_t step, int size) {
  const std::uint32_t sum = sumOver(src, step, size, [](int s) { return s; });
  const int mean = int(size == 8 ? (sum + 32) >> 6 : (sum + 128) >> 8);
  return std::int32_t(sumOver(src, step, size, [=](int s) { return std::abs(s - mean); }));
}

std::uint32_t variance16x16(const std::uint8_t* src, std::ptrdiff_t step) {
  const std::uint32_t s = sumOver(src, step, 16, [](int v) { return v; });
  const std::uint32_t q = sumOver(src, step, 16, [](int v) { return v * v; });
  return q - (s * s) / 256;
}

void varSum8x8(const std::uint8_t* src, std::ptrdiff_t step, std::int32_t& variance, std::int32_t& sum) {
  const std::uint32_t s = sumOver(src, step, 8, [](int v) { return v; });
  const std::uint32_t q = sumOver(src, step, 8, [](int v) { return v * v; });
  // volatile: each operation is rounded to single precision, whatever the compiler would like to fuse.
  volatile float mean = float(s) * 0.015625f;
  volatile float square = mean * mean, meanOfSquares = float(q) * 0.015625f;
  volatile float result = meanOfSquares - square;
  variance = std::int32_t(result);
  sum = std::int32_t(s);
}
}  // namespace reference::measures
