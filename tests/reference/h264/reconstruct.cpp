#include "reference/h264/reconstruct.h"

#include <algorithm>
#include <array>

#include "reference/h264/intra.h"
#include "zvpvc.h"

namespace reference::h264 {
namespace {

using std::int16_t;

int16_t low16(int v) { return int16_t(v); }

// 8.5.9: normAdjust4x4 of a position, for flat matrices with the shift by QP / 6.
int flatScale(int qp, int position) {
  static const int norm[6][3] = {{10, 16, 13}, {11, 18, 14}, {13, 20, 16}, {14, 23, 18}, {16, 25, 20}, {18, 29, 23}};
  const int y = position / 4, x = position % 4;
  const int kind = y % 2 == 0 && x % 2 == 0 ? 0 : y % 2 != 0 && x % 2 != 0 ? 1 : 2;
  return norm[qp % 6][kind] << (qp / 6);
}

bool lossless(const Scaling& s) { return s.bypass && s.qp == 0; }

// A level by a scale of 16 times 2^(bits - 4) the step: the product's right shift is rounded, its left one wraps.
int16_t byList(int level, int scale, int qp6, int bits, bool rounds) {
  const std::int64_t product = std::int64_t(level) * scale;
  if (qp6 < bits) return low16(int((product + (rounds ? 1 << (bits - 1 - qp6) : 0)) >> (bits - qp6)));
  return int16_t(std::uint16_t(std::uint64_t(product) << (qp6 - bits)));
}

int16_t scaledLevel(const Scaling& s, int16_t level, int position) {
  if (lossless(s)) return level;
  if (s.table == nullptr) return low16(int(std::uint32_t(level) * std::uint32_t(flatScale(s.qp, position))));
  return byList(level, s.table[position], s.qp / 6, 4, true);
}

void addSample(std::uint8_t& sample, int residual) {
  sample = std::uint8_t(std::clamp(sample + std::clamp(residual, -256, 256), 0, 255));
}

// One pass over n elements at a stride. Intermediates keep 16 bits; the sums that end it are given in full.
void pass4(const int16_t* in, int stride, int (&out)[4]) {
  const int a = in[0], b = in[stride], c = in[2 * stride], d = in[3 * stride];
  const int e = low16(a + c), f = low16(a - c), g = low16((b >> 1) - d), h = low16(b + (d >> 1));
  out[0] = e + h;
  out[1] = f + g;
  out[2] = f - g;
  out[3] = e - h;
}
void pass8(const int16_t* in, int stride, int (&out)[8]) {
  const auto d = [=](int i) { return int(in[i * stride]); };
  int a[8], b[8];  // 8.5.13
  a[0] = low16(d(0) + d(4));
  a[1] = low16(-d(3) + d(5) - d(7) - (d(7) >> 1));
  a[2] = low16(d(0) - d(4));
  a[3] = low16(d(1) + d(7) - d(3) - (d(3) >> 1));
  a[4] = low16((d(2) >> 1) - d(6));
  a[5] = low16(-d(1) + d(7) + d(5) + (d(5) >> 1));
  a[6] = low16(d(2) + (d(6) >> 1));
  a[7] = low16(d(3) + d(5) + d(1) + (d(1) >> 1));
  b[0] = low16(a[0] + a[6]);
  b[1] = low16(a[1] + (a[7] >> 2));
  b[2] = low16(a[2] + a[4]);
  b[3] = low16(a[3] + (a[5] >> 2));
  b[4] = low16(a[2] - a[4]);
  b[5] = low16((a[3] >> 2) - a[5]);
  b[6] = low16(a[0] - a[6]);
  b[7] = low16(a[7] - (a[1] >> 2));
  for (int i = 0; i < 4; ++i) {
    out[i] = b[2 * i] + b[7 - 2 * i];
    out[7 - i] = b[2 * i] - b[7 - 2 * i];
  }
}
void pass(const int16_t* in, int stride, int (&out)[4]) { pass4(in, stride, out); }
void pass(const int16_t* in, int stride, int (&out)[8]) { pass8(in, stride, out); }

// An NxN block of coefficients to samples.
template <int N>
void transformAndAdd(std::array<int16_t, N * N> c, std::uint8_t* p, std::ptrdiff_t step) {
  int out[N];
  for (int y = 0; y < N; ++y) {
    pass(&c[std::size_t(N * y)], 1, out);
    for (int x = 0; x < N; ++x) c[std::size_t(N * y + x)] = low16(out[x]);
  }
  for (int x = 0; x < N; ++x) {
    pass(&c[std::size_t(x)], N, out);
    for (int y = 0; y < N; ++y) addSample(p[y * step + x], (out[y] + 32) >> 6);
  }
}
template <int N>
void addUntransformed(const std::array<int16_t, N * N>& c, std::uint8_t* p, std::ptrdiff_t step) {
  for (int i = 0; i < N * N; ++i) addSample(p[i / N * step + i % N], c[std::size_t(i)]);
}

template <int N>
std::array<int16_t, N * N> take(const int16_t*& cursor) {
  std::array<int16_t, N * N> block;
  std::copy_n(cursor, N * N, block.begin());
  cursor += N * N;
  return block;
}

void addBlock4(std::array<int16_t, 16> levels, const Scaling& s, const int16_t* dc, std::uint8_t* p,
               std::ptrdiff_t step) {
  for (int i = 0; i < 16; ++i) levels[std::size_t(i)] = scaledLevel(s, levels[std::size_t(i)], i);
  if (dc != nullptr) levels[0] = *dc;
  if (lossless(s))
    addUntransformed<4>(levels, p, step);
  else
    transformAndAdd<4>(levels, p, step);
}
void addBlock8(std::array<int16_t, 64> levels, const Scaling& s, std::uint8_t* p, std::ptrdiff_t step) {
  if (lossless(s)) return addUntransformed<8>(levels, p, step);
  for (std::size_t i = 0; i < 64; ++i) levels[i] = byList(levels[i], s.table[i], s.qp / 6, 6, true);
  transformAndAdd<8>(levels, p, step);
}

// A block whose DC comes from elsewhere; coded or with the DC alone.
void addWithDc(bool coded, const int16_t*& cursor, int16_t dc, const Scaling& s, std::uint8_t* p, std::ptrdiff_t step) {
  if (coded) return addBlock4(take<4>(cursor), s, &dc, p, step);
  if (dc == 0) return;
  if (lossless(s)) return addSample(*p, dc);
  for (int i = 0; i < 16; ++i) addSample(p[i / 4 * step + i % 4], (dc + 32) >> 6);
}

// 6.4.3
int blockX(int i) { return 4 * ((i & 1) + (i >> 1 & 2)); }
int blockY(int i) { return 4 * ((i >> 1 & 1) + (i >> 2 & 2)); }

int neighboursOf(int edgeFlags) {
  return (edgeFlags & 4 ? 0 : 1) | (edgeFlags & 1 ? 0 : 2) | (edgeFlags & 16 ? 0 : 32);
}

}  // namespace

void addLuma4x4(const int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t cbp, const Scaling& s) {
  for (int i = 0; i < 16; ++i)
    if (cbp >> (i + 1) & 1) addBlock4(take<4>(cursor), s, nullptr, p + blockY(i) * step + blockX(i), step);
}

void addLuma8x8(const int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t cbp, const Scaling& s) {
  for (int i = 0; i < 4; ++i)
    if (cbp >> i & 1) addBlock8(take<8>(cursor), s, p + i / 2 * 8 * step + i % 2 * 8, step);
}

void addChroma(const int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step, std::uint32_t cbp,
               const Scaling (&scalings)[2]) {
  int16_t dc[2][4] = {};
  for (int plane = 0; plane < 2; ++plane) {
    if (!(cbp >> (17 + plane) & 1)) continue;
    const Scaling& s = scalings[plane];
    const int a = cursor[0], b = cursor[1], c = cursor[2], d = cursor[3];
    cursor += 4;
    const int sums[4] = {a + b + c + d, a - b + c - d, a + b - c - d, a - b - c + d};  // 8.5.11.1
    const int raw[4] = {a, b, c, d};
    for (int i = 0; i < 4; ++i) {
      if (lossless(s))
        dc[plane][i] = low16(raw[i]);
      else if (s.table == nullptr)
        dc[plane][i] = low16((low16(sums[i]) * flatScale(s.qp, 0)) >> 1);
      else
        dc[plane][i] = byList(low16(sums[i]), s.table[0], s.qp / 6, 5, false);
    }
  }
  for (int plane = 0; plane < 2; ++plane)
    for (int i = 0; i < 4; ++i)
      addWithDc(cbp >> (19 + 4 * plane + i) & 1, cursor, dc[plane][i], scalings[plane],
                planes[plane] + i / 2 * 4 * step + i % 2 * 4, step);
}

std::int32_t intraLuma(const int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, const std::int32_t* modes,
                       std::uint32_t cbp, const Scaling& s, int edgeFlags, bool half, int size) {
  const int16_t* c = cursor;
  const bool top = !(edgeFlags & 4), right = !(edgeFlags & 16), upper = !(edgeFlags & 1);
  const bool lower = half ? !(edgeFlags & 2) : upper;
  const bool corner = (top && upper) != ((edgeFlags & 8) != 0);
  const int count = size == 4 ? 16 : 4;
  for (int i = 0; i < count; ++i) {
    const int x = size == 4 ? blockX(i) : i % 2 * 8, y = size == 4 ? blockY(i) : i / 2 * 8;
    // Whether the sample at (px, py), around the macroblock or in it, may be used by this block.
    const auto usable = [&](int px, int py) {
      if (py < 0 && px < 0) return size == 4 ? top && upper : corner;
      if (py < 0) return px < 16 ? top : right;
      if (px < 0) return py < 8 ? upper : lower;
      if (px > 15) return false;
      // Inside: if its block comes earlier in decoding order.
      for (int earlier = 0; earlier < i; ++earlier) {
        const int ex = size == 4 ? blockX(earlier) : earlier % 2 * 8,
                  ey = size == 4 ? blockY(earlier) : earlier / 2 * 8;
        if (px >= ex && px < ex + size && py >= ey && py < ey + size) return true;
      }
      return false;
    };
    int flags = 0;
    if (usable(x, y - 1)) flags |= 1;
    if (usable(x - 1, y)) flags |= 2;
    if (usable(x - 1, y - 1)) flags |= 32;
    if (usable(x + size, y - 1)) flags |= 64;
    std::uint8_t* const block = p + y * step + x;
    if (modes[i] < 0 || modes[i] > 8) return zvpStatusOutOfRange;
    if (size == 4) {
      static const int needs[9] = {1, 2, 0, 1, 35, 35, 35, 1, 2};
      if (needs[modes[i]] & ~flags) return zvpStatusPredictionUnavailable;
      predict4x4(block, step, modes[i], flags);
      if (cbp >> (i + 1) & 1) addBlock4(take<4>(c), s, nullptr, block, step);
    } else {
      if (predict8x8(block, step, modes[i], flags) != zvpStatusOk) return zvpStatusPredictionUnavailable;
      if (cbp >> i & 1) addBlock8(take<8>(c), s, block, step);
    }
  }
  cursor = c;
  return zvpStatusOk;
}

std::int32_t intraLuma16x16(const int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t mode,
                            std::uint32_t cbp, const Scaling& s, int edgeFlags) {
  if (mode > 3) return zvpStatusOutOfRange;
  const auto status = predict16x16(p, step, int(mode), neighboursOf(edgeFlags));
  if (status != zvpStatusOk) return status;
  std::array<int16_t, 16> dc{};
  if (cbp & 1) {
    dc = take<4>(cursor);
    if (!lossless(s)) {
      // 8.5.10: rows, then columns, in 16 bits.
      for (const int stride : {1, 4})
        for (int line = 0; line < 4; ++line) {
          int16_t* const v = &dc[std::size_t(line * (5 - stride))];
          const int a = v[0], b = v[stride], c = v[2 * stride], d = v[3 * stride];
          v[0] = low16(a + b + c + d);
          v[stride] = low16(a + b - c - d);
          v[2 * stride] = low16(a - b - c + d);
          v[3 * stride] = low16(a - b + c - d);
        }
      for (int16_t& v : dc) {
        if (s.table != nullptr) {
          v = byList(v, s.table[0], s.qp / 6, 6, true);
        } else {
          const int r = s.qp < 6 ? 2 : s.qp < 12 ? 1 : 0;
          const int scale = flatScale(s.qp % 6, 0) << std::max(0, s.qp / 6 - 2);
          v = low16((v * scale + r) >> r);
        }
      }
    }
  }
  for (int i = 0; i < 16; ++i)
    addWithDc(cbp >> (i + 1) & 1, cursor, dc[std::size_t(blockY(i) + blockX(i) / 4)], s,
              p + blockY(i) * step + blockX(i), step);
  return zvpStatusOk;
}

std::int32_t intraChroma(const int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step,
                         std::uint32_t mode, std::uint32_t cbp, const Scaling (&scalings)[2], int edgeFlags) {
  if (mode > 3) return zvpStatusOutOfRange;
  for (std::uint8_t* const plane : planes) {
    const auto status = predictChroma(plane, step, int(mode), neighboursOf(edgeFlags));
    if (status != zvpStatusOk) return status;
  }
  addChroma(cursor, planes, step, cbp, scalings);
  return zvpStatusOk;
}

std::int32_t intraChromaHalves(const int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step,
                               std::uint32_t mode, std::uint32_t cbp, const Scaling (&scalings)[2], int edgeFlagsTop,
                               int edgeFlagsBottom) {
  if (mode != 0 && !(mode == 2 && !(edgeFlagsTop & 4))) return zvpStatusPredictionUnavailable;
  for (std::uint8_t* const plane : planes) {
    if (mode == 0)
      predictChromaDc(plane, step, neighboursOf(edgeFlagsTop), neighboursOf(edgeFlagsBottom));
    else
      predictChroma(plane, step, 2, 1);
  }
  addChroma(cursor, planes, step, cbp, scalings);
  return zvpStatusOk;
}

}  // namespace reference::h264
