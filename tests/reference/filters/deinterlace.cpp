#include "reference/filters/deinterlace.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace reference {
namespace {

void copySamples(Picture src, Target dst, int srcRow, int dstRow, int width) {
  for (int x = 0; x < width; ++x) dst.at(x, dstRow) = std::uint8_t(src.at(x, srcRow));
}

int middle(int a, int b, int c) {
  int v[3] = {a, b, c};
  std::sort(v, v + 3);
  return v[1];
}

int directed(Picture p, int x, int above, int below) {
  const int d1 = std::abs(p.at(x - 1, above) - p.at(x + 1, below));
  const int d2 = std::abs(p.at(x + 1, above) - p.at(x - 1, below));
  const int d0 = std::abs(p.at(x, above) - p.at(x, below));
  const int straight = (p.at(x, above) + p.at(x, below) + 1) >> 1;
  if (d1 < d2) return d1 < d0 ? (p.at(x - 1, above) + p.at(x + 1, below) + 1) >> 1 : straight;
  return d2 < d0 ? (p.at(x + 1, above) + p.at(x - 1, below) + 1) >> 1 : straight;
}

}  // namespace

void deinterlaceTriangle(Picture src, Target dst, zvpSize size, std::uint32_t centerWeight, int layout) {
  const int c = int(std::min<std::uint32_t>(centerWeight, 256)), s = (256 - c) >> 1;
  const int h = size.height;
  if (layout != 4 && layout != 16) copySamples(src, dst, 0, 0, size.width);
  for (int r = layout == 4 || layout == 16 ? -1 : 1; r <= h - 2; ++r)
    for (int x = 0; x < size.width; ++x)
      dst.at(x, r) = std::uint8_t(((src.at(x, r - 1) + src.at(x, r + 1)) * s + src.at(x, r) * c) >> 8);
  if (layout != 1 && layout != 4) copySamples(src, dst, h - 1, h - 1, size.width);
}

void deinterlaceEdgeDetect(Picture src, Target dst, zvpSize size, int fieldNum, bool copyBorder) {
  const int c = copyBorder ? 1 : 0, h = size.height, w = size.width;
  if (copyBorder) {
    const int row = fieldNum == 0 ? 0 : h - 1;
    copySamples(src, dst, row, row, w);
  }
  for (int i = c * (1 - fieldNum); i <= h - c * fieldNum - 1; ++i) {
    dst.at(0, i) = std::uint8_t(src.at(0, i));
    dst.at(w - 1, i) = std::uint8_t(src.at(w - 1, i));
    for (int x = 1; x <= w - 2; ++x) dst.at(x, i) = std::uint8_t(directed(src, x, i + fieldNum - 1, i + fieldNum));
  }
}

void deinterlaceMedian(Picture src, Target dst, zvpSize size, int threshold, int fieldNum, bool copyBorder) {
  const int h = size.height, w = size.width;
  for (int k = 0; k < h / 2; ++k)
    for (int x = 0; x < w; ++x) {
      if (fieldNum == 1)
        dst.at(x, 2 * k) = std::uint8_t(src.at(x, 2 * k));
      else
        dst.data[src.step + 2 * k * dst.step + x] = std::uint8_t(src.at(x, 2 * k + 1));
    }
  if (copyBorder && src.step >= 1) {
    for (std::ptrdiff_t i = 0; i < src.step; ++i) dst.data[i] = src.data[i];
    for (std::ptrdiff_t i = 0; i < src.step; ++i) dst.data[(h - 1) * dst.step + i] = src.data[(h - 1) * src.step + i];
  }
  const int start = fieldNum == 1 ? 1 : copyBorder ? 2 : 0;
  for (int r = start; r < h - (copyBorder ? 1 : 0); r += 2)
    for (int x = 0; x < w; ++x) {
      const int c = src.at(x, r), m = middle(src.at(x, r - 1), c, src.at(x, r + 1));
      dst.at(x, r) = std::uint8_t(std::abs(m - c) < threshold ? c : m);
    }
}

BlendModel blendWeights(std::int32_t* t, double* w) {
  if (t[0] > t[1]) std::swap(t[0], t[1]);
  if (w[0] > w[1]) std::swap(w[0], w[1]);
  w[1] = std::min(w[1], 32767.0);
  w[0] = std::max(w[0], -32768.0);
  BlendModel model;
  if (t[0] == t[1]) {
    for (int m = 0; m < 256; ++m) model.set(m, m < t[0] ? 0 : 256);
    model.highMotion = t[0] - 1;
    model.lowMotion = t[0];
    return model;
  }
  const double k = std::fabs((w[1] - w[0]) / (t[1] - t[0])), b = w[1] - k * t[1];
  long long slope = (long long)(std::trunc(k * 256 + 0.5));
  long long intercept = 0;
  if (b > 0) {
    intercept = (long long)(std::trunc(b * 256 + 0.5));
    if (intercept >= 257) intercept = 256, slope = 0;
  } else {
    intercept = (long long)(std::trunc(b * 256 - 0.5));
  }
  bool below = false;
  if (slope != 0) {
    const long long e = std::min(slope * 255 + intercept, 256ll);
    if (e < 0) {
      below = true;
      model.highMotion = 255;
      model.lowMotion = 256;
    } else {
      if (e - intercept > 32767) {
        intercept = e - 32767;
        slope = (long long)(std::trunc((w[1] * 256 - double(intercept)) / t[1]));
      }
      model.highMotion = int(std::min((256 - intercept) / slope - (256 - intercept < 0 ? 1 : 0), 255ll));
      model.lowMotion = int(std::max(-intercept / slope + (intercept < 0 ? 1 : 0), 0ll));
    }
  } else {
    model.highMotion = 255;
    model.lowMotion = intercept < 0 ? 256 : 0;
    if (intercept < 0) intercept = 0;
  }
  if (!below) {
    model.slope = int(slope);
    model.intercept = int(intercept);
  }
  for (int m = 0; m < 256; ++m) model.set(m, int(std::clamp(intercept + m * slope, 0ll, 256ll)));
  return model;
}

void deinterlaceBlend(const Picture (&p)[3], Target dst, zvpSize size, bool topFirst, bool topField, bool copyField,
                      const BlendModel& weights) {
  const int h = size.height, w = size.width, top = topField ? 1 : 0;
  if (copyField) {
    const int count = topField ? h >> 1 : (h + 1) >> 1;
    for (int k = 0; k < count; ++k) copySamples(p[1], dst, 2 * k + top, 2 * k + top, w);
  }
  if (topField) copySamples(p[1], dst, 0, 0, w);
  const int last = h + ((h & 1) ^ top) - 2;
  const bool lastIsMade = (h & 1) == top;
  for (int r = topField ? 2 : 1; r <= last; r += 2) {
    if (r >= h - 1) continue;  // no row below
    for (int x = 0; x < w; ++x) {
      const Picture& other = topFirst == topField ? p[0] : p[2];
      const int A = p[1].at(x, r - 1), B = p[1].at(x, r + 1), C = p[1].at(x, r);
      const int upper = (std::abs(p[0].at(x, r - 1) - A) + std::abs(p[2].at(x, r - 1) - A) + 1) >> 1;
      const int lower = (std::abs(p[0].at(x, r + 1) - B) + std::abs(p[2].at(x, r + 1) - B) + 1) >> 1;
      const int m = std::max((upper + lower + 1) >> 1, std::abs(C - other.at(x, r)));
      const int med = middle(A, C, B), ofSpatial = weights.spatialWeight[m], ofMedian = weights.medianWeight[m];
      int value;
      if (x == 0 || x == w - 1) {
        value = ((topField ? B : A) * ofSpatial + med * ofMedian) >> 8;
      } else if (m < weights.lowMotion) {
        value = med;
      } else {
        const int s = directed(p[1], x, r - 1, r + 1);
        value = m > weights.highMotion ? s : (ofMedian * med + ofSpatial * s) >> 8;
      }
      dst.at(x, r) = std::uint8_t(value);
    }
  }
  if (lastIsMade) copySamples(p[1], dst, h - 1, h - 1, w);
}

void deinterlaceMotionAdaptive(const Picture (&p)[4], Target dst, zvpSize size, int threshold, int topFirst,
                               int topField, bool copyField, bool artifactProtection) {
  const int h = size.height, w = size.width, q = topFirst != topField ? 2 : 1;
  if (copyField)
    for (int k = 0; k < h >> 1; ++k) copySamples(p[q], dst, topField + 2 * k, topField + 2 * k, w);
  if (topField != 1) {
    if (h % 2 == 0) copySamples(p[q], dst, h - 1, h - 1, w);
  } else {
    copySamples(p[q], dst, 0, 0, w);
    if (h % 2 == 1) copySamples(p[q], dst, h - 1, h - 1, w);
  }
  for (int r = topField == 1 ? 2 : 1; r < h - 1; r += 2)
    for (int x = 0; x < w; ++x) {
      const int a = p[q - 1].at(x, r), b = p[q].at(x, r);
      const int up = p[q].at(x, r - 1), dn = p[q].at(x, r + 1);
      const auto apart = [&](int i, int j, int row) { return std::abs(p[i].at(x, row) - p[j].at(x, row)); };
      const int tests[11] = {std::abs(a - b),    apart(1, 0, r + 1), apart(1, 0, r - 1), apart(1, 2, r + 1),
                             apart(1, 2, r - 1), apart(1, 3, r + 1), apart(1, 3, r - 1), apart(0, 2, r + 1),
                             apart(0, 2, r - 1), apart(2, 3, r + 1), apart(2, 3, r - 1)};
      bool still = true;
      for (int t : tests) still = still && t < threshold;
      int value = a;
      if (!still || artifactProtection) {
        const int n = still ? 30 : 6, lo = std::max(a - n, 0), hi = std::min(a + n, 235);
        if ((up < lo && dn < lo) || (up > hi && dn > hi)) value = (up + dn + 1) >> 1;
      }
      dst.at(x, r) = std::uint8_t(value);
    }
}

}  // namespace reference
