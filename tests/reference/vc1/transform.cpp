#include "reference/vc1/transform.h"

namespace reference::vc1 {
namespace {

using Wide = std::uint32_t;  // wraps

Wide shifted(Wide v, int count) { return Wide(std::int32_t(v) >> count); }

void fourPoints(const Wide* a, Wide r, Wide* x) {
  const Wide p = 17 * (a[0] + a[2]) + r, q = 17 * (a[0] - a[2]) + r;
  const Wide s = 22 * a[1] + 10 * a[3], t = 10 * a[1] - 22 * a[3];
  x[0] = p + s;
  x[1] = q + t;
  x[2] = q - t;
  x[3] = p - s;
}

void eightPoints(const Wide* a, Wide r, Wide* x) {
  const Wide e0 = 12 * (a[0] + a[4]) + r + 16 * a[2] + 6 * a[6];
  const Wide e3 = 12 * (a[0] + a[4]) + r - 16 * a[2] - 6 * a[6];
  const Wide e1 = 12 * (a[0] - a[4]) + r + 6 * a[2] - 16 * a[6];
  const Wide e2 = 12 * (a[0] - a[4]) + r - 6 * a[2] + 16 * a[6];
  const Wide o0 = 16 * a[1] + 15 * a[3] + 9 * a[5] + 4 * a[7];
  const Wide o1 = 15 * a[1] - 4 * a[3] - 16 * a[5] - 9 * a[7];
  const Wide o2 = 9 * a[1] - 16 * a[3] + 4 * a[5] + 15 * a[7];
  const Wide o3 = 4 * a[1] - 9 * a[3] + 15 * a[5] - 16 * a[7];
  x[0] = e0 + o0;
  x[1] = e1 + o1;
  x[2] = e2 + o2;
  x[3] = e3 + o3;
  x[4] = e3 - o3;
  x[5] = e2 - o2;
  x[6] = e1 - o1;
  x[7] = e0 - o0;
}

void points(int count, const Wide* a, Wide r, Wide* x) {
  if (count == 8) eightPoints(a, r, x);
  else fourPoints(a, r, x);
}

constexpr int factors8[8][8] = {{21845, 21845, 21845, 21845, 21845, 21845, 21845, 21845},
                                {29026, 27212, 16327, 7257, -7257, -16327, -27212, -29026},
                                {28728, 10773, -10773, -28728, -28728, -10773, 10773, 28728},
                                {27212, -7257, -29026, -16327, 16327, 29026, 7257, -27212},
                                {21845, -21845, -21845, 21845, 21845, -21845, -21845, 21845},
                                {16327, -29026, 7257, 27212, -27212, -7257, 29026, -16327},
                                {10773, -28728, 28728, -10773, -10773, 28728, -28728, 10773},
                                {7257, -16327, 27212, -29026, 29026, -27212, 16327, -7257}};
constexpr int factors4[4][4] = {{15420, 15420, 15420, 15420},
                                {19751, 8978, -8978, -19751},
                                {15420, -15420, -15420, 15420},
                                {8978, -19751, 19751, -8978}};

Wide factor(int count, int k, int j) { return Wide(count == 8 ? factors8[k][j] : factors4[k][j]); }

}  // namespace

Corner cornerRead(int width, int height, Corner promised) {
  const auto within = [=](int size) { return promised.width <= size && promised.height <= size; };
  if (within(1)) return {1, 1};
  if (width == height && within(2)) return {2, 2};
  if (width == 8 && height == 8 && within(4)) return {4, 4};
  return {width, height};
}

void transformInverse(int width, int height, const std::int16_t* src, Corner promised, std::int16_t* dst) {
  const Corner corner = cornerRead(width, height, promised);
  Wide t[8][8];
  for (int y = 0; y < height; ++y) {
    Wide a[8], x[8];
    for (int k = 0; k < width; ++k) a[k] = y < corner.height && k < corner.width ? Wide(src[y * width + k]) : 0;
    points(width, a, 4, x);
    for (int k = 0; k < width; ++k) t[y][k] = shifted(x[k], 3);
  }
  for (int k = 0; k < width; ++k) {
    Wide a[8], x[8];
    for (int y = 0; y < height; ++y) a[y] = t[y][k];
    points(height, a, 64, x);
    if (height == 8)
      for (int y = 4; y < 8; ++y) ++x[y];
    for (int y = 0; y < height; ++y) dst[y * width + k] = std::int16_t(shifted(x[y], 7));
  }
}

void transformForward(int width, int height, const std::int16_t* src, std::int16_t* dst) {
  const int firstShift = width == 8 ? 12 : 11, secondShift = height == 8 ? 20 : 19;
  std::int16_t t[8][8];
  for (int y = 0; y < height; ++y)
    for (int k = 0; k < width; ++k) {
      Wide sum = Wide(1) << (firstShift - 1);
      for (int j = 0; j < width; ++j) sum += factor(width, k, j) * Wide(src[y * width + j]);
      t[y][k] = std::int16_t(shifted(sum, firstShift));
    }
  for (int x = 0; x < width; ++x)
    for (int k = 0; k < height; ++k) {
      Wide sum = Wide(1) << (secondShift - 1);
      for (int j = 0; j < height; ++j) sum += factor(height, k, j) * Wide(t[j][x]);
      dst[k * width + x] = std::int16_t(shifted(sum, secondShift));
    }
}

}  // namespace reference::vc1
