#include "reference/mpeg/quant.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace reference::mpeg {
namespace {

int sign(int x) { return (x > 0) - (x < 0); }

// Low 32 bits of a product of any size.
std::int32_t low32(std::int64_t a, std::int64_t b) { return std::int32_t(std::uint64_t(a) * std::uint64_t(b)); }

std::int16_t byReciprocal(std::int16_t x, std::int32_t qp, float reciprocal) {
  const float factor = float(16.0 / qp);
  float product = float(x) * factor;
  product = product * reciprocal;
  return std::int16_t(std::clamp(std::trunc(double(product)), -2047.0, 2047.0));
}

void mismatchControl(std::int16_t* block, long long sum) {
  if (sum % 2 != 0) return;
  if (block[63] % 2 != 0)
    block[63] = std::int16_t(block[63] - 1);
  else
    block[63] = std::int16_t(block[63] + 1);
}

std::int16_t saturated(std::int32_t v) { return std::int16_t(std::clamp(v, -2048, 2047)); }

}  // namespace

int quantIntra(std::int16_t* block, std::int32_t qp, const float* reciprocals) {
  int count = 0;
  for (int i = 1; i < 64; ++i) {
    block[i] = byReciprocal(block[i], qp, reciprocals[i]);
    count += block[i] != 0;
  }
  return count;
}

int quantInter(std::int16_t* block, std::int32_t qp, const float* reciprocals) {
  int count = 0;
  for (int i = 0; i < 64; ++i) {
    if (reciprocals != nullptr) {
      block[i] = byReciprocal(block[i], qp, reciprocals[i]);
    } else if (qp > 1) {
      const std::int64_t reciprocal = (std::int64_t(qp / 2) + 65536) / qp;
      block[i] = std::int16_t(std::clamp<std::int64_t>(block[i] * reciprocal / 65536, -2047, 2047));
    }
    count += block[i] != 0;
  }
  return count;
}

void quantInvIntra(std::int16_t* block, std::int32_t qp, const std::int16_t* weights) {
  long long sum = block[0];
  for (int i = 1; i < 64; ++i) {
    block[i] = saturated(low32(low32(low32(block[i], qp), weights[i]), 2) / 32);
    sum += block[i];
  }
  mismatchControl(block, sum);
}

void quantInvInter(std::int16_t* block, std::int32_t qp, const std::int16_t* weights) {
  long long sum = 0;
  for (int i = 0; i < 64; ++i) {
    if (block[i] == 0) continue;
    const int odd = 2 * block[i] + sign(block[i]);
    const std::int32_t v = weights != nullptr ? low32(low32(weights[i], qp), odd) / 32 : low32(qp, odd) / 2;
    block[i] = saturated(v);
    sum += block[i];
  }
  mismatchControl(block, sum);
}

void scanForward(const std::int16_t* src, std::int16_t* dst, int count, const int* table) {
  if (count >= 20) {
    for (int i = 0; i < 64; ++i) dst[i] = src[table[i]];
    return;
  }
  for (int i = 0; i < 64; ++i) dst[i] = 0;
  int stored = 0;
  for (int i = 0; i < 64 && stored < count; ++i)
    if (src[table[i]] != 0) {
      dst[i] = src[table[i]];
      ++stored;
    }
}

void scanInverse(const std::int16_t* src, std::int16_t* dst, int last, const int* table) {
  for (int i = 0; i < 64; ++i) dst[i] = 0;
  dst[0] = src[0];
  for (int i = 1; i <= last; ++i) dst[table[i]] = src[i];
}

}  // namespace reference::mpeg
