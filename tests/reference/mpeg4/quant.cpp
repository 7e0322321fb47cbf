#include "reference/mpeg4/quant.h"

#include <algorithm>

namespace reference::mpeg4 {
namespace {

using std::int16_t;
using std::int32_t;
using std::int64_t;
using std::uint32_t;
using std::uint8_t;

int limited(int64_t v) { return int(std::clamp<int64_t>(v, -2047, 2047)); }
uint32_t reciprocalOfTwice(int qp) { return 65536u / (2u * uint32_t(qp)) + 1; }
int32_t low32(int64_t v) { return int32_t(uint32_t(uint64_t(v))); }

int dcScaler(int qp, bool chroma) {
  if (qp < 5) return 8;
  if (chroma) {
    if (qp < 25) return (qp + 13) >> 1;
    return qp - 6;
  }
  if (qp <= 8) return 2 * qp;
  if (qp < 25) return qp + 8;
  return 2 * qp - 16;
}

int interFlat(int x, int depth, int qp) {
  const int h = qp >> 1;
  if (depth >= 9) {
    if (x - h >= 2 * qp) return std::min((x - h) / (2 * qp), 2047);
    if (x + h <= -2 * qp) return std::max((x + h) / (2 * qp), -2047);
    return 0;
  }
  const int64_t r = reciprocalOfTwice(qp);
  if (x > 0) return int(std::clamp<int64_t>(((x - h) * r) >> 16, 0, 2047));
  if (x < 0) return int(std::clamp<int64_t>(((x + h) * r + 65535) >> 16, -2047, 0));
  return 0;
}

int interWeighted(int x, int w, int depth, int qp) {
  const int scaled = 16 * x;
  if (depth >= 9) {
    const int t = scaled >= 0 ? (scaled + (w >> 1)) / w : (scaled - (w >> 1)) / w;
    return limited(t / (2 * qp));
  }
  const uint32_t halfWeight = uint32_t(w >> 1), reciprocal = 65536u / uint32_t(w) + 1;
  const uint32_t magnitude = uint32_t(scaled < 0 ? -scaled : scaled);
  const uint32_t a = ((halfWeight + magnitude) * reciprocal) >> 16;
  const uint32_t y = std::min((reciprocalOfTwice(qp) * a) >> 16, 2047u);
  return x < 0 ? -int(y) : int(y);
}

int intraFlat(int x, int depth, int qp) {
  if (depth >= 9) {
    if (x >= 2 * qp) return std::min(x / (2 * qp), 2047);
    if (x <= -2 * qp) return std::max(x / (2 * qp), -2047);
    return 0;
  }
  return limited((int64_t(reciprocalOfTwice(qp)) * x + (x < 0 ? 65535 : 0)) >> 16);
}

int intraWeighted(int x, int w, int depth, int qp) {
  const int scaled = 16 * x, k = (3 * qp + 2) >> 2;
  if (depth >= 9) {
    int t = 0;
    if (scaled > 0 && scaled + (w >> 1) >= w) t = k + (scaled + (w >> 1)) / w;
    if (scaled < 0) t = (scaled - (w >> 1)) / w - k;
    return t >= 2 * qp || t <= -2 * qp ? limited(t / (2 * qp)) : 0;
  }
  const uint32_t halfWeight = uint32_t(w >> 1), reciprocal = 65536u / uint32_t(w) + 1;
  const uint32_t magnitude = uint32_t(scaled < 0 ? -scaled : scaled);
  const uint32_t t = uint32_t(k) + (((halfWeight + magnitude) * reciprocal) >> 16);
  const uint32_t y = std::min((t * reciprocalOfTwice(qp)) >> 16, 2047u);
  return x < 0 ? -int(y) : int(y);
}

int dc(int x, int qp, bool chroma) {
  if (qp <= 4) {
    if (x >= 4) return std::min((x + 4) >> 3, 2047);
    if (x < -3) return std::max((x + 3) >> 3, -2047);
    return 0;
  }
  const int d = dcScaler(qp, chroma);
  if (x >= (d + 1) >> 1) return std::min((x + (d >> 1)) / d, 2047);
  if (x <= -((d + 1) >> 1)) return std::max((x - (d >> 1)) / d, -2047);
  return 0;
}

int lowest(int depth) { return -(1 << (depth + 3)); }
int highest(int depth) { return -lowest(depth) - 1; }

int inverseFlat(int x, int depth, int qp) {
  const int even = qp % 2 == 0;
  if (x > 0) return std::min(2 * x * qp + qp - even, highest(depth));
  if (x < 0) return std::max(2 * x * qp - qp + even, lowest(depth));
  return 0;
}

int inverseInter(int x, int w, int depth, int qp) {
  if (x > 0) return std::min(low32(low32(int64_t(2 * x + 1) * w) * int64_t(qp)) >> 4, highest(depth));
  if (x < 0)
    return std::max(low32(low32(low32(int64_t(2 * x - 1) * w) * int64_t(qp)) + int64_t(15)) >> 4, lowest(depth));
  return 0;
}

int inverseIntra(int x, int w, int depth, int qp) {
  if (x > 0) return std::min(low32(int64_t(w * x) * qp) >> 3, highest(depth));
  if (x < 0) return std::max(low32(low32(int64_t(w * x) * qp) + int64_t(7)) >> 3, lowest(depth));
  return 0;
}

bool isEven(int64_t v) { return v % 2 == 0; }
void flipLast(int16_t* block) { block[63] = int16_t(isEven(block[63]) ? block[63] + 1 : block[63] - 1); }

}  // namespace

int quantInter(int16_t* block, const uint8_t* weights, int bitsPerPixel, int qp) {
  int count = 0;
  for (int i = 0; i < 64; ++i) {
    block[i] = int16_t(weights ? interWeighted(block[i], weights[i], bitsPerPixel, qp)
                               : interFlat(block[i], bitsPerPixel, qp));
    count += block[i] != 0;
  }
  return count;
}

int quantIntra(int16_t* block, const uint8_t* weights, int bitsPerPixel, int qp, bool chroma) {
  block[0] = int16_t(dc(block[0], qp, chroma));
  int count = block[0] != 0;
  for (int i = 1; i < 64; ++i) {
    block[i] = int16_t(weights ? intraWeighted(block[i], weights[i], bitsPerPixel, qp)
                               : intraFlat(block[i], bitsPerPixel, qp));
    count += block[i] != 0;
  }
  return count;
}

void quantInvInter(int16_t* block, int last, const uint8_t* weights, int bitsPerPixel, int qp) {
  int64_t sum = 0;
  for (int i = 0; i <= last; ++i) {
    const int v =
        weights ? inverseInter(block[i], weights[i], bitsPerPixel, qp) : inverseFlat(block[i], bitsPerPixel, qp);
    block[i] = int16_t(v);
    sum += v;
  }
  if (weights && isEven(sum)) flipLast(block);
}

void quantInvIntra(int16_t* block, int last, const uint8_t* weights, int bitsPerPixel, int qp, bool chroma) {
  const int v = std::clamp(dcScaler(qp, chroma) * block[0], lowest(bitsPerPixel), highest(bitsPerPixel));
  block[0] = int16_t(v);
  if (last < 1) {
    if (weights && isEven(v)) block[63] = 1;
    return;
  }
  int64_t sum = v;
  for (int i = 1; i <= last; ++i) {
    const int ac =
        weights ? inverseIntra(block[i], weights[i], bitsPerPixel, qp) : inverseFlat(block[i], bitsPerPixel, qp);
    block[i] = int16_t(ac);
    sum += ac;
  }
  if (weights && isEven(sum)) flipLast(block);
}

}  // namespace reference::mpeg4
