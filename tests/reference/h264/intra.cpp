#include "reference/h264/intra.h"

#include <algorithm>

#include "zvpvc.h"

namespace reference::h264 {
namespace {

constexpr int top = 1, left = 2, corner = 32, topRight = 64;

int clip(int v) { return std::clamp(v, 0, 255); }

// The samples p[x, y] around a block of N, with x = -1 or y = -1.
template <int N>
struct Around {
  int above[2 * N] = {};  // p[x, -1]
  int side[N] = {};       // p[-1, y]
  int edge = 0;           // p[-1, -1]
  int operator()(int x, int y) const { return y >= 0 ? side[y] : x >= 0 ? above[x] : edge; }
};

// Intra_4x4 and Intra_8x8 in the formulas of 8.3.1.2 and 8.3.2.2, which are the same but for N.
template <int N>
int sample(int mode, int x, int y, const Around<N>& p, int flags) {
  const int last = 2 * N - 1;
  switch (mode) {
    case 0:
      return p(x, -1);
    case 1:
      return p(-1, y);
    case 2: {
      int sum = 0;
      if (flags & top)
        for (int i = 0; i < N; ++i) sum += p(i, -1);
      if (flags & left)
        for (int i = 0; i < N; ++i) sum += p(-1, i);
      if ((flags & top) && (flags & left)) return (sum + N) / (2 * N);
      if (flags & (top | left)) return (sum + N / 2) / N;
      return 128;
    }
    case 3:
      if (x == N - 1 && y == N - 1) return (p(last - 1, -1) + 3 * p(last, -1) + 2) >> 2;
      return (p(x + y, -1) + 2 * p(x + y + 1, -1) + p(x + y + 2, -1) + 2) >> 2;
    case 4:
      if (x > y) return (p(x - y - 2, -1) + 2 * p(x - y - 1, -1) + p(x - y, -1) + 2) >> 2;
      if (x < y) return (p(-1, y - x - 2) + 2 * p(-1, y - x - 1) + p(-1, y - x) + 2) >> 2;
      return (p(0, -1) + 2 * p(-1, -1) + p(-1, 0) + 2) >> 2;
    case 5: {
      const int z = 2 * x - y, i = x - (y >> 1);
      if (z >= 0 && z % 2 == 0) return (p(i - 1, -1) + p(i, -1) + 1) >> 1;
      if (z >= 0) return (p(i - 2, -1) + 2 * p(i - 1, -1) + p(i, -1) + 2) >> 2;
      if (z == -1) return (p(-1, 0) + 2 * p(-1, -1) + p(0, -1) + 2) >> 2;
      return (p(-1, y - 2 * x - 1) + 2 * p(-1, y - 2 * x - 2) + p(-1, y - 2 * x - 3) + 2) >> 2;
    }
    case 6: {
      const int z = 2 * y - x, i = y - (x >> 1);
      if (z >= 0 && z % 2 == 0) return (p(-1, i - 1) + p(-1, i) + 1) >> 1;
      if (z >= 0) return (p(-1, i - 2) + 2 * p(-1, i - 1) + p(-1, i) + 2) >> 2;
      if (z == -1) return (p(-1, 0) + 2 * p(-1, -1) + p(0, -1) + 2) >> 2;
      return (p(x - 2 * y - 1, -1) + 2 * p(x - 2 * y - 2, -1) + p(x - 2 * y - 3, -1) + 2) >> 2;
    }
    case 7: {
      const int i = x + (y >> 1);
      if (y % 2 == 0) return (p(i, -1) + p(i + 1, -1) + 1) >> 1;
      return (p(i, -1) + 2 * p(i + 1, -1) + p(i + 2, -1) + 2) >> 2;
    }
    default: {
      const int z = x + 2 * y, i = y + (x >> 1);
      if (z > 2 * N - 3) return p(-1, N - 1);
      if (z == 2 * N - 3) return (p(-1, N - 2) + 3 * p(-1, N - 1) + 2) >> 2;
      if (z % 2 == 0) return (p(-1, i) + p(-1, i + 1) + 1) >> 1;
      return (p(-1, i) + 2 * p(-1, i + 1) + p(-1, i + 2) + 2) >> 2;
    }
  }
}

int needsOf(int mode) {
  switch (mode) {
    case 0:
    case 3:
    case 7:
      return top;
    case 1:
    case 8:
      return left;
    case 2:
      return 0;
    default:
      return top | left | corner;
  }
}
bool usesRight(int mode) { return mode == 3 || mode == 7; }

template <int N>
void write(std::uint8_t* p, std::ptrdiff_t step, int mode, const Around<N>& around, int flags) {
  std::uint8_t block[N][N];
  for (int y = 0; y < N; ++y)
    for (int x = 0; x < N; ++x) block[y][x] = std::uint8_t(sample<N>(mode, x, y, around, flags));
  for (int y = 0; y < N; ++y) std::copy_n(block[y], N, p + y * step);
}

// Plane prediction, 8.3.3.4 and 8.3.4.4.
void plane(std::uint8_t* p, std::ptrdiff_t step, int n) {
  const auto at = [=](int x, int y) { return int(p[y * step + x]); };
  const int half = n / 2;
  int h = 0, v = 0;
  for (int i = 1; i <= half; ++i) {
    h += i * (at(half - 1 + i, -1) - at(half - 1 - i, -1));
    v += i * (at(-1, half - 1 + i) - at(-1, half - 1 - i));
  }
  const int b = n == 16 ? (5 * h + 32) >> 6 : (17 * h + 16) >> 5;
  const int c = n == 16 ? (5 * v + 32) >> 6 : (17 * v + 16) >> 5;
  const int a = 16 * (at(-1, n - 1) + at(n - 1, -1));
  for (int y = 0; y < n; ++y)
    for (int x = 0; x < n; ++x)
      p[y * step + x] = std::uint8_t(clip((a + b * (x - (half - 1)) + c * (y - (half - 1)) + 16) >> 5));
}

void copyAbove(std::uint8_t* p, std::ptrdiff_t step, int n) {
  for (int y = 0; y < n; ++y) std::copy_n(p - step, n, p + y * step);
}
void copyLeft(std::uint8_t* p, std::ptrdiff_t step, int n) {
  std::uint8_t side[16];
  for (int y = 0; y < n; ++y) side[y] = p[y * step - 1];
  for (int y = 0; y < n; ++y) std::fill_n(p + y * step, n, side[y]);
}

}  // namespace

std::int32_t predict4x4(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags) {
  Around<4> around;
  const int needs = mode == 2 ? top | left : needsOf(mode);
  if (needs & top)
    for (int x = 0; x < 8; ++x) {
      const bool right = x > 3;
      if (right && !usesRight(mode)) continue;
      if (right && !(flags & topRight))
        around.above[x] = around.above[3];
      else
        around.above[x] = flags & (right ? topRight : top) ? p[x - step] : 128;
    }
  if (needs & left)
    for (int y = 0; y < 4; ++y) around.side[y] = flags & left ? p[y * step - 1] : 128;
  if (needs & corner) around.edge = flags & corner ? p[-step - 1] : 128;
  write<4>(p, step, mode, around, flags);
  return needsOf(mode) & ~flags ? zvpStatusWarnPredictionFallback : zvpStatusOk;
}

std::int32_t predict8x8(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags) {
  if (needsOf(mode) & ~flags) return zvpStatusPredictionUnavailable;
  Around<8> raw, around;
  const int uses = flags & (mode == 2 ? top | left : needsOf(mode));
  const bool hasTop = uses & top, hasLeft = uses & left, hasCorner = flags & corner;
  if (hasTop)
    for (int x = 0; x < 16; ++x) raw.above[x] = x < 8 || (flags & topRight) ? p[x - step] : raw.above[7];
  if (hasLeft)
    for (int y = 0; y < 8; ++y) raw.side[y] = p[y * step - 1];
  if (hasCorner) raw.edge = p[-step - 1];
  // 8.3.2.2.1
  if (hasTop) {
    around.above[0] =
        hasCorner ? (raw(-1, -1) + 2 * raw(0, -1) + raw(1, -1) + 2) >> 2 : (3 * raw(0, -1) + raw(1, -1) + 2) >> 2;
    for (int x = 1; x < 15; ++x) around.above[x] = (raw(x - 1, -1) + 2 * raw(x, -1) + raw(x + 1, -1) + 2) >> 2;
    around.above[15] = (raw(14, -1) + 3 * raw(15, -1) + 2) >> 2;
  }
  if (hasCorner) {
    if (!hasTop && !hasLeft)
      around.edge = raw.edge;
    else if (!hasTop)
      around.edge = (3 * raw.edge + raw(-1, 0) + 2) >> 2;
    else if (!hasLeft)
      around.edge = (3 * raw.edge + raw(0, -1) + 2) >> 2;
    else
      around.edge = (raw(0, -1) + 2 * raw.edge + raw(-1, 0) + 2) >> 2;
  }
  if (hasLeft) {
    around.side[0] =
        hasCorner ? (raw(-1, -1) + 2 * raw(-1, 0) + raw(-1, 1) + 2) >> 2 : (3 * raw(-1, 0) + raw(-1, 1) + 2) >> 2;
    for (int y = 1; y < 7; ++y) around.side[y] = (raw(-1, y - 1) + 2 * raw(-1, y) + raw(-1, y + 1) + 2) >> 2;
    around.side[7] = (raw(-1, 6) + 3 * raw(-1, 7) + 2) >> 2;
  }
  write<8>(p, step, mode, around, flags);
  return zvpStatusOk;
}

std::int32_t predict16x16(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags) {
  const int needs = mode == 0 ? top : mode == 1 ? left : mode == 2 ? 0 : top | left | corner;
  if (needs & ~flags) return zvpStatusPredictionUnavailable;
  if (mode == 0) copyAbove(p, step, 16);
  if (mode == 1) copyLeft(p, step, 16);
  if (mode == 2) {
    int sum = 0, count = 0;
    for (int i = 0; i < 16; ++i) {
      if (flags & top) sum += p[i - step], ++count;
      if (flags & left) sum += p[i * step - 1], ++count;
    }
    const int mean = count == 0 ? 128 : (sum + count / 2) / count;
    for (int y = 0; y < 16; ++y) std::fill_n(p + y * step, 16, std::uint8_t(mean));
  }
  if (mode == 3) plane(p, step, 16);
  return zvpStatusOk;
}

void predictChromaDc(std::uint8_t* p, std::ptrdiff_t step, int flagsAbove, int flagsBelow) {
  int means[2][2];
  for (int qy = 0; qy < 2; ++qy)
    for (int qx = 0; qx < 2; ++qx) {
      const int flags = qy == 0 ? flagsAbove : flagsBelow;
      int sumTop = 0, sumLeft = 0;
      for (int i = 0; i < 4; ++i) {
        if (flags & top) sumTop += p[4 * qx + i - step];
        if (flags & left) sumLeft += p[(4 * qy + i) * step - 1];
      }
      const bool hasTop = flags & top, hasLeft = flags & left;
      int mean = 128;
      if (hasTop && hasLeft && qx == qy)
        mean = (sumTop + sumLeft + 4) >> 3;
      else if (hasTop && (!hasLeft || qx > qy))
        mean = (sumTop + 2) >> 2;
      else if (hasLeft)
        mean = (sumLeft + 2) >> 2;
      means[qy][qx] = mean;
    }
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) p[y * step + x] = std::uint8_t(means[y / 4][x / 4]);
}

std::int32_t predictChroma(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags) {
  const int needs = mode == 0 ? 0 : mode == 1 ? left : mode == 2 ? top : top | left | corner;
  if (needs & ~flags) return zvpStatusPredictionUnavailable;
  if (mode == 0) predictChromaDc(p, step, flags, flags);
  if (mode == 1) copyLeft(p, step, 8);
  if (mode == 2) copyAbove(p, step, 8);
  if (mode == 3) plane(p, step, 8);
  return zvpStatusOk;
}

}  // namespace reference::h264
