#include "reference/vc1/quant.h"

namespace reference::vc1 {
namespace {

// For QP 2 to 62.
constexpr int way[] = {2, 0, 2, 0, 0, 1, 2, 0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 1, 1, 2,
                       0, 0, 1, 0, 1, 1, 1, 0, 0, 1, 0, 0, 1, 1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0};
constexpr int shifts[] = {1, 0, 2, 1, 0, 2, 3, 1, 2, 1, 1, 2, 2, 3, 4, 3, 0, 2, 3, 2, 0, 4, 2, 3, 3, 3, 3, 4, 4, 4, 5,
                          3, 4, 5, 1, 5, 5, 5, 4, 4, 5, 3, 1, 5, 5, 5, 3, 4, 2, 5, 4, 4, 5, 1, 4, 5, 4, 4, 5, 4, 4};
constexpr int constants[] = {
    1, 21846, 3, 26215, 10923, -28086, 7, 14564, 26215, 11916, 10923, 20165, 18725, -30583, 15, 30841, 3641, 13797,
    26215, 12483, 2979, -19945, 10923, 20972, 20165, 19418, 18725, -29378, -30583, -31710, 31, 15888, 30841, -5617,
    3641, -8856, -10347, -11762, 26215, 25575, -15603, 12193, 2979, -18932, -19945, -20915, 10923, 21400, 5243,
    -24415, 20165, 19785, -26699, 2383, 18725, -28743, 18079, 17773, -30583, 17190, 16913};
static_assert(sizeof way == 61 * sizeof(int) && sizeof shifts == sizeof way && sizeof constants == sizeof way);

int sign(int x) { return (x > 0) - (x < 0); }

std::int16_t quotient(int x, int qp) {
  const int c = constants[qp - 2], s = shifts[qp - 2];
  switch (way[qp - 2]) {
    case 0: return std::int16_t((((c * x) >> 16) >> s) + (x < 0));
    case 1: return std::int16_t(((((c * x) >> 16) + x) >> s) + (x < 0));
    default: return std::int16_t(std::int16_t(x < 0 ? x + c : x) >> s);
  }
}

}  // namespace

void quantize(Quantizer quantizer, std::int16_t* block, int qp, int width, int height) {
  for (int i = quantizer.intra ? 1 : 0; i < width * height; ++i) {
    std::int16_t x = block[i];
    if (!quantizer.uniform) x = std::int16_t(x - sign(x) * (qp >> 1));
    block[i] = quotient(x, qp);
  }
}

NonZeroSize dequantize(Quantizer quantizer, const std::int16_t* src, std::int16_t* dst, std::int32_t qp, int width,
                       int height, bool zerosInSource) {
  int zerosOfColumn[8] = {}, zerosOfRow[8] = {};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const std::int16_t level = src[y * width + x];
      if (quantizer.intra && x == 0 && y == 0) {
        dst[0] = level;
        continue;
      }
      std::int64_t product = std::int64_t(level) * qp;
      if (!quantizer.uniform) product += sign(level) * std::int64_t(qp >> 1);
      const auto result = std::int16_t(std::uint64_t(product));
      dst[y * width + x] = result;
      const bool zero = (zerosInSource ? level : result) == 0;
      zerosOfColumn[x] += zero;
      zerosOfRow[y] += zero;
    }
  NonZeroSize size = {0, 0};
  for (int x = 0; x < width; ++x)
    if (zerosOfColumn[x] != height) size.width = 1 + x;
  for (int y = 0; y < height; ++y)
    if (zerosOfRow[y] != width) size.height = 1 + y;
  return size;
}

}  // namespace reference::vc1
