#include "reference/mpeg/dct.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace reference::mpeg {
namespace {

// weight[i][k]: what coefficient k contributes to sample i.
struct Basis {
  double horizontal[8][8], vertical[8][8];
  double horizontalOf[8][8];  // the same with its indices exchanged
  explicit Basis(Dct kind) {
    const double pi = std::acos(-1.0);
    for (int i = 0; i < 8; ++i)
      for (int k = 0; k < 8; ++k) {
        horizontal[i][k] = (k == 0 ? std::sqrt(0.125) : 0.5) * std::cos((2 * i + 1) * k * pi / 16);
        horizontalOf[k][i] = horizontal[i][k];
        const int z = i / 2, v = k % 4;
        const double field = (v == 0 ? std::sqrt(0.125) : 0.5) * std::cos((2 * z + 1) * v * pi / 8);
        vertical[i][k] = kind == Dct::EightEight ? horizontal[i][k] : k >= 4 && i % 2 == 1 ? -field : field;
      }
  }
};
const Basis& basis(Dct kind) {
  static const Basis eight(Dct::EightEight), fields(Dct::TwoFourEight);
  return kind == Dct::EightEight ? eight : fields;
}

// The weights as the integer transforms have them: times sqrt(2) * 2^15, rounded.
int weight(double exact) { return int(std::lround(exact * std::sqrt(2.0) * 32768)); }

std::int16_t saturated(std::int64_t x) { return std::int16_t(std::clamp<std::int64_t>(x, -32768, 32767)); }

// A sum of 32 bits that wraps, shifted with rounding by halves up.
std::int16_t shifted(std::int64_t sum, int shift) { return saturated(std::int32_t(std::uint64_t(sum)) >> shift); }

}  // namespace

double rounded(double x) { return std::floor(x + 0.5); }

// Sums run innermost over neighbouring elements: the accuracy tests make millions of these.
void exactForward(Dct kind, const double* samples, double* coefficients) {
  const Basis& b = basis(kind);
  double half[8][8] = {}, out[8][8] = {};
  for (int v = 0; v < 8; ++v)
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x) half[v][x] += b.vertical[y][v] * samples[8 * y + x];
  for (int v = 0; v < 8; ++v)
    for (int x = 0; x < 8; ++x)
      for (int u = 0; u < 8; ++u) out[v][u] += b.horizontal[x][u] * half[v][x];
  std::memcpy(coefficients, out, sizeof out);
}

void exactInverse(Dct kind, const double* coefficients, double* samples) {
  const Basis& b = basis(kind);
  double half[8][8] = {}, out[8][8] = {};
  for (int y = 0; y < 8; ++y)
    for (int v = 0; v < 8; ++v)
      for (int u = 0; u < 8; ++u) half[y][u] += b.vertical[y][v] * coefficients[8 * v + u];
  for (int y = 0; y < 8; ++y)
    for (int u = 0; u < 8; ++u)
      for (int x = 0; x < 8; ++x) out[y][x] += b.horizontalOf[u][x] * half[y][u];
  std::memcpy(samples, out, sizeof out);
}

void integerForward(Dct kind, const std::int16_t* samples, std::int16_t* coefficients) {
  const Basis& b = basis(kind);
  std::int16_t between[8][8];
  for (int v = 0; v < 8; ++v)
    for (int x = 0; x < 8; ++x) {
      std::int64_t sum = 1 << 13;
      for (int y = 0; y < 8; ++y) sum += std::int64_t(weight(b.vertical[y][v])) * samples[8 * y + x];
      between[v][x] = shifted(sum, 14);
    }
  for (int v = 0; v < 8; ++v)
    for (int u = 0; u < 8; ++u) {
      std::int64_t sum = 1 << 16;
      for (int x = 0; x < 8; ++x) sum += std::int64_t(weight(b.horizontal[x][u])) * between[v][x];
      coefficients[8 * v + u] = shifted(sum, 17);
    }
}

void integerInverse(Dct kind, const std::int16_t* coefficients, std::int16_t* samples) {
  const Basis& b = basis(kind);
  std::int16_t between[8][8];
  for (int v = 0; v < 8; ++v)
    for (int x = 0; x < 8; ++x) {
      // Row 0 carries the second pass's rounding: 32 times the weight of its DC is half of 2^20.
      std::int64_t sum = (1 << 10) + (v == 0 ? 32 << 11 : 0);
      for (int u = 0; u < 8; ++u) sum += std::int64_t(weight(b.horizontal[x][u])) * coefficients[8 * v + u];
      between[v][x] = shifted(sum, 11);
    }
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      std::int64_t sum = 0;
      for (int v = 0; v < 8; ++v) sum += std::int64_t(weight(b.vertical[y][v])) * between[v][x];
      samples[8 * y + x] = shifted(sum, 20);
    }
}

}  // namespace reference::mpeg
