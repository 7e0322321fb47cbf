#include "reference/mpeg4/sprite.h"

#include <algorithm>
#include <cmath>

namespace reference::mpeg4 {
namespace {

using std::int16_t;
using std::int32_t;
using std::int64_t;
using std::uint32_t;
using std::uint8_t;

// 32-bit numbers that wrap, whose shift counts are taken modulo 32.
struct Int {
  int32_t v;
  Int(int64_t value) : v(int32_t(uint32_t(uint64_t(value)))) {}
};
Int operator+(Int a, Int b) { return int64_t(a.v) + b.v; }
Int operator-(Int a, Int b) { return int64_t(a.v) - b.v; }
Int operator-(Int a) { return -int64_t(a.v); }
Int operator*(Int a, Int b) { return int64_t(a.v) * b.v; }
Int operator/(Int a, Int b) { return int64_t(a.v) / b.v; }
Int operator<<(Int a, Int b) { return int64_t(uint32_t(a.v) << (b.v & 31)); }
Int operator>>(Int a, Int b) { return a.v >> (b.v & 31); }
Int operator&(Int a, Int b) { return a.v & b.v; }
Int operator|(Int a, Int b) { return a.v | b.v; }

Int rdiv(Int n, Int d) { return (n + (n.v < 0 ? -(d >> 1) : d >> 1)) / d; }

// Exponent of the smallest power of two that is not below size.
int log2Above(int32_t size) {
  int n = 0;
  while ((int64_t(1) << n) < size) ++n;
  return n;
}

int clipTo(int64_t v, int low, int high) { return int(std::clamp<int64_t>(v, low, high)); }

uint8_t sampleAt(const Picture& p, int64_t x, int64_t y) {
  return p.origin[clipTo(y, 0, p.height - 1) * p.step + clipTo(x, 0, p.width - 1)];
}

// The reading in steps of the contract: along each of two rows, then between them.
uint8_t reading(const Picture& p, int64_t c, int64_t r, int tx, int ty, int round) {
  const auto rowValue = [&](int64_t row) {
    if (c < 0) return 16 * sampleAt(p, 0, row);
    if (c < p.width - 1) return 16 * sampleAt(p, c, row) + (sampleAt(p, c + 1, row) - sampleAt(p, c, row)) * tx;
    return 16 * sampleAt(p, p.width - 1, row);
  };
  int t, b;
  if (r < 0) {
    t = b = rowValue(0);
  } else if (r < p.height - 1) {
    t = rowValue(r);
    b = rowValue(r + 1);
  } else {
    t = b = rowValue(p.height - 1);
  }
  return uint8_t((16 * t + round + ty * (b - t)) >> 8);
}
uint8_t readingAt(const Picture& p, Int px, Int py, int round) {
  return reading(p, px.v >> 4, py.v >> 4, px.v & 15, py.v & 15, round);
}

// Half-pel prediction of luma with one point.
uint8_t halfPel(const Picture& p, int64_t x, int64_t y, bool halfX, bool halfY, int r) {
  const int a = sampleAt(p, x, y), b = sampleAt(p, x + 1, y), c = sampleAt(p, x, y + 1), d = sampleAt(p, x + 1, y + 1);
  const bool single = x < 0 || x >= p.width - 1;  // the column stands alone
  if (halfX && !single) return uint8_t(halfY ? (a + b + c + d + 2 - r) >> 2 : (a + b + 1 - r) >> 1);
  return uint8_t(halfY ? (a + c + 1 - r) >> 1 : a);
}

Int rounded(double q) {
  q = q >= 0 ? q + 0.5000000001 : q - 0.5000000001;
  if (!(std::trunc(q) >= -2147483648.0 && std::trunc(q) <= 2147483647.0)) return INT32_MIN;
  return int64_t(std::trunc(q));
}

// f(column, row, index in dst)
template <class Sample> void forBlock(Rect block, uint8_t* dst, Sample sample) {
  for (int y = 0; y < block.height; ++y)
    for (int x = 0; x < block.width; ++x) *dst++ = sample(x, y);
}

void affine(const Warp& w, const Picture& p, Rect block, Int startX, Int startY, Int factor, Int shift, uint8_t* dst) {
  const Int mask = Int(-1) << Int(3 - w.accuracy);
  forBlock(block, dst, [&](int x, int y) {
    const Int ax = startX + factor * (Int(w.perColumn[0]) * x + Int(w.perRow[0]) * y);
    const Int ay = startY + factor * (Int(w.perColumn[1]) * x + Int(w.perRow[1]) * y);
    return readingAt(p, (ax >> shift) & mask, (ay >> shift) & mask, w.bilinearRound);
  });
}

struct Numerators {
  double x, y, d;
};
void perspective(const Warp& w, const Picture& p, Rect block, Numerators row, Numerators perColumn, Numerators perRow,
                 Int originX, Int originY, uint8_t* dst) {
  const Int shift = 3 - w.accuracy;
  for (int y = 0; y < block.height; ++y) {
    Numerators n = row;
    for (int x = 0; x < block.width; ++x) {
      const double inv = 1.0 / n.d;
      const double qx = n.x * inv, qy = n.y * inv;
      *dst++ = readingAt(p, (rounded(qx) << shift) - Int(16) * originX, (rounded(qy) << shift) - Int(16) * originY,
                         w.bilinearRound);
      n = {n.x + perColumn.x, n.y + perColumn.y, n.d + perColumn.d};
    }
    row = {row.x + perRow.x, row.y + perRow.y, row.d + perRow.d};
  }
}

}  // namespace

Warp::Warp(const int32_t* du, const int32_t* dv, int points_, int spriteType_, int accuracy_, int rounding_,
           int quarterSample_, int fcode, Rect sprite_, Rect vop_)
    : points(points_),
      spriteType(spriteType_),
      accuracy(accuracy_),
      rounding(rounding_ != 0 && spriteType_ != 1 ? 1 : 0),
      quarterSample(quarterSample_ != 0 ? 1 : 0),
      mvMin(-(16 << fcode)),
      mvMax((16 << fcode) - 1),
      sprite(sprite_),
      chroma{sprite_.x / 2, sprite_.y / 2, ((Int(sprite_.width) + 1) >> 1).v, ((Int(sprite_.height) + 1) >> 1).v},
      vop(vop_) {
  if (points == 0) return;
  const Int a = accuracy, i0 = vop.x, j0 = vop.y, width = vop.width, height = vop.height;
  bilinearRound = 128 - (rounding << (3 - accuracy));
  if (points == 4) {
    const Int x0 = (Int(2) * i0 + du[0]) << a, y0 = (Int(2) * j0 + dv[0]) << a;
    const Int x1 = ((Int(du[1]) + Int(2) * i0) << a) + ((Int(2) * width + du[0]) << a);
    const Int y1 = (Int(dv[1]) + Int(2) * j0 + dv[0]) << a;
    const Int x2 = ((Int(2) * i0 + du[2]) << a) + (Int(du[0]) << a);
    const Int y2 = ((Int(2) * j0 + dv[2]) << a) + ((Int(dv[0]) + Int(2) * height) << a);
    const Int x3 = ((Int(du[3]) + du[2] + du[1] + Int(2) * i0) << a) + ((Int(2) * width + du[0]) << a);
    const Int y3 = ((Int(dv[3]) + dv[2] + dv[1] + Int(2) * j0) << a) + ((Int(dv[0]) + Int(2) * height) << a);
    const Int a_ = x3 + x0 - x1 - x2, b_ = x2 - x3, c_ = x1 - x3;
    const Int d_ = y3 + y0 - y1 - y2, e_ = y2 - y3, f_ = y1 - y3;
    const double det = (e_ * c_ - b_ * f_).v, w = width.v, h = height.v;
    G = ((a_ * e_ - b_ * d_) * height).v;
    H = ((d_ * c_ - a_ * f_) * width).v;
    C = double(x0.v) * det * w * h;
    F = double(y0.v) * det * w * h;
    A = (double(x1.v) - double(x0.v)) * det * h + double(x1.v) * G;
    B = (double(x2.v) - double(x0.v)) * det * w + double(x2.v) * H;
    I = det * w * h;
    D = (double(y1.v) - double(y0.v)) * det * h + G * double(y1.v);
    E = (double(y2.v) - double(y0.v)) * det * w + H * double(y2.v);
    return;
  }
  const Int p0x = Int(8) * (Int(du[0]) + Int(2) * i0), p0y = Int(8) * (Int(dv[0]) + Int(2) * j0);
  point0[0] = p0x.v;
  point0[1] = p0y.v;
  const Int s = 3 - accuracy;
  for (int k = 0; k < 2; ++k) {
    const Int u = Int(point0[k]) >> s;
    chromaShift[k] = (spriteType == 1 ? ((u + 1) >> 1) << s : ((u >> 1) | (u & 1)) << s).v;
  }
  if (points == 1) return;
  const Int p1x = (Int(du[0]) + du[1]) * 8 + Int(16) * (width + i0), p1y = Int(8) * (Int(dv[0]) + dv[1] + Int(2) * j0);
  const int alpha = log2Above(vop.width);
  const Int W2 = Int(1) << Int(alpha);
  const Int v1x = Int(16) * (W2 + i0) +
                  rdiv((p1x - Int(16) * i0 - Int(16) * width) * W2 + (p0x - Int(16) * i0) * (width - W2), width);
  const Int v1y = Int(16) * j0 + rdiv((p1y - Int(16) * j0) * W2 + (p0y - Int(16) * j0) * (width - W2), width);
  virtual1[0] = v1x.v;
  virtual1[1] = v1y.v;
  bias = (120 << (accuracy + 1)) << 4;
  const Int ex = v1x - p0x, ey = v1y - p0y;
  int e = alpha;
  if (points == 2) {
    perColumn[0] = ex.v;
    perColumn[1] = ey.v;
    perRow[0] = (-ey).v;
    perRow[1] = ex.v;
    pow2 = W2.v;
  } else {
    const Int p2x = (Int(du[0]) + du[2]) * 8 + Int(16) * i0, p2y = (Int(dv[0]) + dv[2]) * 8 + Int(16) * (j0 + height);
    const int beta = log2Above(vop.height);
    const Int H2 = Int(1) << Int(beta);
    const Int v2x = Int(16) * i0 + rdiv((p2x - Int(16) * i0) * H2 + (p0x - Int(16) * i0) * (height - H2), height);
    const Int v2y = Int(16) * (j0 + H2) +
                    rdiv((p2y - Int(16) * j0 - Int(16) * height) * H2 + (p0y - Int(16) * j0) * (height - H2), height);
    virtual2[0] = v2x.v;
    virtual2[1] = v2y.v;
    const Int fx = v2x - p0x, fy = v2y - p0y;
    if (alpha < beta) {
      e = beta;
      pow2 = H2.v;
      perRow[0] = fx.v;
      perRow[1] = fy.v;
      perColumn[0] = (ex << Int(beta - alpha)).v;
      perColumn[1] = (ey << Int(beta - alpha)).v;
    } else {
      pow2 = W2.v;
      perRow[0] = (fx << Int(alpha - beta)).v;
      perRow[1] = (fy << Int(alpha - beta)).v;
      perColumn[0] = ex.v;
      perColumn[1] = ey.v;
    }
  }
  affineShift = e - accuracy + 3;
  affineRound = (Int(1) << Int(e - accuracy + 2)).v;
}

void warpLuma(const Warp& w, const Picture& p, Rect block, uint8_t* dst) {
  const Int x = block.x, y = block.y, sx = w.sprite.x, sy = w.sprite.y, a = w.accuracy;
  const Int dx = x - w.vop.x, dy = y - w.vop.y;
  if (w.points == 0) {
    forBlock(block, dst, [&](int i, int j) { return sampleAt(p, (x - sx + i).v, (y - sy + j).v); });
  } else if (w.points == 1) {
    const Int x0 = x - sx + (Int(w.point0[0]) >> 4) - w.vop.x, y0 = y - w.vop.y - sy + (Int(w.point0[1]) >> 4);
    forBlock(block, dst, [&](int i, int j) {
      return halfPel(p, (x0 + i).v, (y0 + j).v, w.point0[0] & 8, w.point0[1] & 8, w.rounding);
    });
  } else if (w.points < 4) {
    const Int sh = Int(w.affineShift) + a - 3;
    const Int ax =
        ((Int(w.point0[0]) - Int(16) * sx) << sh) + Int(w.perColumn[0]) * dx + Int(w.perRow[0]) * dy + w.affineRound;
    const Int ay =
        ((Int(w.point0[1]) - Int(16) * sy) << sh) + Int(w.perColumn[1]) * dx + Int(w.perRow[1]) * dy + w.affineRound;
    affine(w, p, block, ax, ay, 1, sh, dst);
  } else {
    const double u = dx.v, v = dy.v;
    perspective(w, p, block, {w.A * u + w.B * v + w.C, w.D * u + w.E * v + w.F, w.G * u + w.H * v + w.I},
                {w.A, w.D, w.G}, {w.B, w.E, w.H}, sx, sy, dst);
  }
}

void warpChroma(const Warp& w, const Picture& p, Rect block, uint8_t* dst) {
  const Int x = block.x, y = block.y, sx = w.chroma.x, sy = w.chroma.y, a = w.accuracy;
  const Int I = Int(4) * x - Int(2) * w.vop.x + 1, J = Int(4) * y - Int(2) * w.vop.y + 1;
  if (w.points == 0) {
    forBlock(block, dst, [&](int i, int j) { return sampleAt(p, (x - sx + i).v, (y - sy + j).v); });
  } else if (w.points == 1) {
    const Int x0 = x - sx + (Int(w.chromaShift[0]) >> 4) - w.vop.x / 2;
    const Int y0 = y - sy + (Int(w.chromaShift[1]) >> 4) - w.vop.y / 2;
    forBlock(block, dst, [&](int i, int j) {
      return reading(p, (x0 + i).v, (y0 + j).v, w.chromaShift[0] & 15, w.chromaShift[1] & 15, w.bilinearRound);
    });
  } else if (w.points < 4) {
    const Int sh = Int(w.affineShift) + a - 1, P = Int(2) * w.pow2;
    const Int ax = (Int(w.point0[0]) - 8) * P + Int(4) * w.affineRound + Int(w.perColumn[0]) * I +
                   Int(w.perRow[0]) * J - ((Int(16) * sx) << sh);
    const Int ay = (Int(w.point0[1]) - 8) * P + Int(4) * w.affineRound + Int(w.perColumn[1]) * I +
                   Int(w.perRow[1]) * J - ((Int(16) * sy) << sh);
    affine(w, p, block, ax, ay, 4, sh, dst);
  } else {
    const double u = I.v, v = J.v, S = 2 << w.accuracy;
    const double K = (2 * w.I + w.G * u + w.H * v) * S;
    perspective(w, p, block,
                {2 * w.A * u + 2 * w.B * v + 4 * w.C - K, 2 * w.D * u + 2 * w.E * v + 4 * w.F - K,
                 4 * (w.G * u + w.H * v) + 8 * w.I},
                {8 * w.A - 4 * w.G * S, 8 * w.D - 4 * w.G * S, 16 * w.G},
                {8 * w.B - 4 * w.H * S, 8 * w.E - 4 * w.H * S, 16 * w.H}, sx, sy, dst);
  }
}

void globalVector(const Warp& w, int32_t x, int32_t y, int16_t* mv) {
  for (int k = 0; k < 2; ++k) {
    int32_t v = 0;
    if (w.points == 1) {
      v = int16_t(w.point0[k] >> (3 - w.quarterSample));
    } else if (w.points > 1) {
      Int S =
          (((Int(w.point0[k]) >> Int(3 - w.accuracy)) - (Int(k == 0 ? x : y) << Int(w.accuracy + 1))) << 8) - w.bias;
      for (int j = 0; j < 16; ++j)
        for (int i = 0; i < 16; ++i)
          S = S + ((Int(w.affineRound) + (Int(x) + i) * w.perColumn[k] + (Int(y) + j) * w.perRow[k]) >>
                   Int(std::min(w.affineShift, 31)));
      const int down = w.accuracy + 8 - w.quarterSample;
      v = ((S - (S.v < 0 ? 1 : 0) + (1 << (down - 1))) >> down).v;
    }
    mv[k] = int16_t(w.points == 0 ? 0 : std::clamp(v, w.mvMin, w.mvMax));
  }
}

uint8_t brightened(uint8_t sample, int factor) {
  if (factor == 0) return sample;
  const int weight = ((factor * 1024) + (factor < 0 ? -50 : 50)) / 100 + 1024;
  return uint8_t(std::clamp((sample * weight + 520) >> 10, 0, 255));
}

}  // namespace reference::mpeg4
