#include "reference/h264/transform.h"

#include <algorithm>
#include <cstddef>

namespace reference::transform {
namespace {

Value& at(Block& b, int y, int x, int width = 4) { return b[std::size_t(y * width + x)]; }
Value at(const Block& b, int y, int x, int width = 4) { return b[std::size_t(y * width + x)]; }
std::size_t index(int i) { return std::size_t(i); }

const int hadamardMatrix[4][4] = {{1, 1, 1, 1}, {1, 1, -1, -1}, {1, -1, -1, 1}, {1, -1, 1, -1}};
const int forwardMatrix[4][4] = {{1, 1, 1, 1}, {2, 1, -1, -2}, {1, -1, -1, 1}, {1, -2, 2, -1}};

}  // namespace

const int normAdjust[6][3] = {{10, 16, 13}, {11, 18, 14}, {13, 20, 16}, {14, 23, 18}, {16, 25, 20}, {18, 29, 23}};
const int forwardFactor[6][3] = {{13107, 5243, 8066}, {11916, 4660, 7490}, {10082, 4194, 6554},
                                 {9362, 3647, 5825},  {8192, 3355, 5243},  {7282, 2893, 4559}};

int positionClass(int raster) {
  const bool oddRow = raster / 4 % 2 == 1, oddColumn = raster % 2 == 1;
  return oddRow && oddColumn ? 1 : !oddRow && !oddColumn ? 0 : 2;
}

Value wrap(Value value, int bits) {
  const Value period = Value(1) << bits, low = value & (period - 1);
  return low < period / 2 ? low : low - period;
}
Block wrap(Block block, int bits) {
  for (auto& value : block) value = wrap(value, bits);
  return block;
}

Block forward(const Block& r) {
  Block rows(16), result(16);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x)
      for (int k = 0; k < 4; ++k) at(rows, y, x) += forwardMatrix[x][k] * at(r, y, k);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x)
      for (int k = 0; k < 4; ++k) at(result, y, x) += forwardMatrix[y][k] * at(rows, k, x);
  return result;
}

Block inverse(const Block& c, int bits) {
  Block b = c;
  for (int pass = 0; pass < 2; ++pass)
    for (int line = 0; line < 4; ++line) {
      const auto element = [&](int i) -> Value& { return pass == 0 ? at(b, line, i) : at(b, i, line); };
      const Value p = element(0), q = element(1), r = element(2), s = element(3);
      const Value e = wrap(p + r, bits), f = wrap(p - r, bits);
      const Value g = wrap((q >> 1) - s, bits), h = wrap(q + (s >> 1), bits);
      const Value sums[4] = {e + h, f + g, f - g, e - h};
      for (int i = 0; i < 4; ++i) {
        if (pass == 0)
          element(i) = wrap(sums[i], bits);
        else
          element(i) = wrap((bits == 16 ? sums[i] + 32 : wrap(sums[i] + 32, bits)) >> 6, bits);
      }
    }
  return b;
}

Block hadamard(const Block& c, int bits) {
  Block result(c.size());
  if (c.size() == 16) {
    Block rows(16);
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x) {
        for (int k = 0; k < 4; ++k) at(rows, y, x) += hadamardMatrix[x][k] * at(c, y, k);
        at(rows, y, x) = wrap(at(rows, y, x), bits);
      }
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x)
        for (int k = 0; k < 4; ++k) at(result, y, x) += hadamardMatrix[y][k] * at(rows, k, x);
    return result;
  }
  const int height = int(c.size()) / 2;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < 2; ++x)
      for (int k = 0; k < height; ++k) {
        const int down = height == 4 ? hadamardMatrix[y][k] : y == 1 && k == 1 ? -1 : 1;
        at(result, y, x, 2) += down * (at(c, k, 0, 2) + (x == 0 ? 1 : -1) * at(c, k, 1, 2));
      }
  return result;
}

Block residualOf(const Block& levels, const Value* dc, bool hasAc, int qp) {
  Block c(16);
  for (int i = 0; i < 16; ++i)
    c[index(i)] = wrap(levels[index(i)] * (normAdjust[qp % 6][positionClass(i)] << (qp / 6)), 16);
  if (dc != nullptr) c[0] = *dc;
  return hasAc ? inverse(c, 16) : Block(16, (c[0] + 32) >> 6);
}

Block dequantLumaDc(const Block& levels, int qp) {
  Block c = wrap(hadamard(levels, 16), 16);
  const int r = qp < 6 ? 2 : qp < 12 ? 1 : 0;
  const Value scale = Value(normAdjust[qp % 6][0]) << (qp < 12 ? 0 : qp / 6 - 2);
  for (auto& x : c) x = wrap((x * scale + r) >> r, 16);
  return c;
}

Block dequantChromaDc(const Block& levels, int qp) {
  Block c = wrap(hadamard(levels, 16), 16);
  for (auto& x : c) x = wrap((x * (normAdjust[qp % 6][0] << (qp / 6))) >> 1, 16);
  return c;
}

namespace {
// c quantized and scaled by QS: in 32 bits.
Value requantize(Value c, int factor, int shift, int scale) {
  const Value magnitude = wrap(wrap((c > 0 ? c : -c) * factor, 32) + (Value(1) << (shift - 1)), 32) >> shift;
  return wrap((c > 0 ? magnitude : -magnitude) * scale, 32);
}
}  // namespace

Block switchingBlock(const Block& levels, const Block& prediction, const Value* dc, bool hasAc, int qp, int qs,
                     bool isSwitching) {
  const int k = isSwitching ? qs : qp;
  Block c(16);
  for (int i = 0; i < 16; ++i) {
    const int position = positionClass(i);
    const Value weight = position == 0 ? 16 : position == 1 ? 25 : 20;
    const Value level = i == 0 || hasAc ? levels[index(i)] : 0;
    const Value scaled = wrap(wrap(level * (normAdjust[k % 6][position] << (k / 6)), 32) * weight, 32);
    const Value sum = wrap(prediction[index(i)] + (scaled >> 6), 32);
    c[index(i)] = wrap(
        requantize(sum, forwardFactor[qs % 6][position], qs / 6 + 15, normAdjust[qs % 6][position] << (qs / 6)), 16);
  }
  if (dc != nullptr) c[0] = *dc;
  Block samples = inverse(c, 16);
  for (auto& sample : samples) sample = std::clamp<Value>(sample, 0, 255);
  return samples;
}

Block switchingChromaDc(const Block& levels, const Block& prediction, int qp, int qs, bool isSwitching) {
  const int k = isSwitching ? qs : qp;
  Block c = hadamard(prediction, 32);
  for (int i = 0; i < 4; ++i) {
    const Value scaled = wrap(levels[index(i)] * (normAdjust[k % 6][0] << (k / 6)) * 16, 32);
    c[index(i)] = requantize(wrap(c[index(i)] + (scaled >> 5), 32), forwardFactor[qs % 6][0], qs / 6 + 16,
                             normAdjust[qs % 6][0] << (qs / 6));
  }
  c = wrap(hadamard(c, 32), 32);
  for (auto& x : c) x = wrap(x >> 1, 16);
  return c;
}

namespace {
Value defaultScale(int qp, int i) { return 16 * normAdjust[qp % 6][positionClass(i)]; }
// level * scale * 2^(qp / 6 - bits of the fraction), rounded to nearest or down.
Value scaledLevel(Value level, Value scale, int qp, int fraction, bool rounded, int bits) {
  const int power = qp / 6 - fraction;
  Value product = wrap(level * scale, 32);
  if (power < 0)
    product = wrap(product + (rounded ? Value(1) << (-power - 1) : 0), 32) >> -power;
  else
    product *= Value(1) << power;
  return wrap(product, bits);
}
}  // namespace

Block highResidualOf(const Block& levels, const Value* dc, bool hasAc, int qp, const Block& scales, int bits) {
  Block c(16);
  for (int i = 0; i < 16; ++i)
    c[index(i)] =
        scaledLevel(levels[index(i)], scales.empty() ? defaultScale(qp, i) : scales[index(i)], qp, 4, true, bits);
  if (dc != nullptr) c[0] = *dc;
  return hasAc ? inverse(c, bits) : Block(16, wrap(c[0] + 32, 32) >> 6);
}

Block highInverseDc(const Block& levels, bool luma, int qp, const Block& scales, int bits) {
  Block c = wrap(hadamard(levels, bits), bits);
  if (levels.size() == 8) qp += 3;
  const Value scale = scales.empty() ? defaultScale(qp, 0) : scales[0];
  const bool nearest = luma || levels.size() == 8;
  for (auto& x : c) x = scaledLevel(x, scale, qp, nearest ? 6 : 5, nearest, bits);
  return c;
}

Lists scalingLists(const std::vector<std::uint8_t>& list, int qpRem) {
  Lists lists{Block(16), Block(16)};
  for (int i = 0; i < 16; ++i) {
    const Value l = list[index(i)], f = forwardFactor[qpRem][positionClass(i)];
    const Value reciprocal = l == 0 ? 0 : l == 1 ? 65535 : 65536 / l;
    Value q = (reciprocal * f) >> 16;
    if (!(q * l > f - l)) ++q;
    lists.forward[index(i)] = q;
    lists.inverse[index(i)] = l * normAdjust[qpRem][positionClass(i)];
  }
  return lists;
}

}  // namespace reference::transform
