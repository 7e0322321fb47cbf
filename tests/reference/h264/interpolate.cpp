#include "reference/h264/interpolate.h"

namespace reference::h264 {

namespace {

using Int = std::int64_t;

Int clipTo(Int value, Int high) { return value < 0 ? 0 : value > high ? high : value; }

Int sixTap(const std::function<Int(int)>& s) { return s(-2) - 5 * s(-1) + 20 * s(0) + 20 * s(1) - 5 * s(2) + s(3); }

// The intermediate values b1 and h1 of the standard.
Int alongRow(const SampleAt& at, int x, int y) {
  return sixTap([&](int k) { return at(x + k, y); });
}
Int alongColumn(const SampleAt& at, int x, int y) {
  return sixTap([&](int k) { return at(x, y + k); });
}

Int mean(Int a, Int b) { return (a + b + 1) / 2; }

Axis axis(int bits, int before, int margin, int vector, int position, int size, int frame) {
  const int unit = 1 << bits;
  Axis a;
  a.fraction = ((vector % unit) + unit) % unit;
  a.whole = (vector - a.fraction) / unit + position;
  a.first = a.fraction != 0 ? a.whole - before : a.whole;
  a.needed = a.fraction != 0 ? size + margin : size;
  a.frame = frame;
  a.clampLow = a.first < 0;
  a.clampHigh = !a.clampLow && a.first + a.needed > frame;
  return a;
}

}  // namespace

Int lumaSample(const SampleAt& at, int x, int y, int dx, int dy, Int high) {
  const auto G = [&] { return at(x, y); };
  const auto H = [&] { return at(x + 1, y); };
  const auto M = [&] { return at(x, y + 1); };
  const auto b = [&] { return clipTo((alongRow(at, x, y) + 16) >> 5, high); };
  const auto h = [&] { return clipTo((alongColumn(at, x, y) + 16) >> 5, high); };
  const auto m = [&] { return clipTo((alongColumn(at, x + 1, y) + 16) >> 5, high); };
  const auto s = [&] { return clipTo((alongRow(at, x, y + 1) + 16) >> 5, high); };
  const auto j = [&] { return clipTo((sixTap([&](int k) { return alongRow(at, x, y + k); }) + 512) >> 10, high); };
  switch (10 * dy + dx) {
    case 0:
      return G();
    case 1:
      return mean(G(), b());  // a
    case 2:
      return b();
    case 3:
      return mean(b(), H());  // c
    case 10:
      return mean(G(), h());  // d
    case 11:
      return mean(b(), h());  // e
    case 12:
      return mean(b(), j());  // f
    case 13:
      return mean(b(), m());  // g
    case 20:
      return h();
    case 21:
      return mean(h(), j());  // i
    case 22:
      return j();
    case 23:
      return mean(j(), m());  // k
    case 30:
      return mean(h(), M());  // n
    case 31:
      return mean(h(), s());  // p
    case 32:
      return mean(j(), s());  // q
    default:
      return mean(s(), m());  // r
  }
}

Int chromaSample(const SampleAt& at, int x, int y, int dx, int dy) {
  Int sum = (8 - dx) * (8 - dy) * at(x, y);
  if (dx != 0) sum += dx * (8 - dy) * at(x + 1, y);
  if (dy != 0) sum += (8 - dx) * dy * at(x, y + 1);
  if (dx != 0 && dy != 0) sum += dx * dy * at(x + 1, y + 1);
  return (sum + 32) >> 6;
}

int Axis::clamp(int coordinate) const {
  if (clampLow && coordinate < 0) return 0;
  if (clampHigh && coordinate > frame - 1) return frame - 1;
  return coordinate;
}

Axis lumaAxis(int vector, int position, int size, int frame) { return axis(2, 2, 5, vector, position, size, frame); }
Axis chromaAxis(int vector, int position, int size, int frame) { return axis(3, 0, 1, vector, position, size, frame); }

void expandPlane(const std::function<std::uint8_t(int, int)>& get,
                 const std::function<void(int, int, std::uint8_t)>& set, int width, int height, int margin, int kind) {
  // Every margin sample of the rows treated is that of the nearest sample in the same frame or field.
  const int first = kind == 2 ? 1 : 0, last = kind == 1 ? height - 2 : height - 1;
  for (int y = -margin; y < height + margin; ++y) {
    if (kind != 0 && (y % 2 != 0) != (kind == 2)) continue;
    for (int x = -margin; x < width + margin; ++x) {
      if (x >= 0 && x < width && y >= 0 && y < height) continue;
      const int nearX = x < 0 ? 0 : x >= width ? width - 1 : x, nearY = y < first ? first : y > last ? last : y;
      set(x, y, get(nearX, nearY));
    }
  }
}

}  // namespace reference::h264
