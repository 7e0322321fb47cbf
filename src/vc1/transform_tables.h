// The bases of the VC-1 transforms and, made of them, the factors of the forward transforms.
#pragma once

#include <array>

#include "types.h"

namespace zvp::vc1 {

template <std::size_t N> using Matrix = std::array<std::array<s16, N>, N>;

// One basis vector a row (SMPTE 421M Annex A).
inline constexpr Matrix<8> basis8 = {{{12, 12, 12, 12, 12, 12, 12, 12},
                                      {16, 15, 9, 4, -4, -9, -15, -16},
                                      {16, 6, -6, -16, -16, -6, 6, 16},
                                      {15, -4, -16, -9, 9, 16, 4, -15},
                                      {12, -12, -12, 12, 12, -12, -12, 12},
                                      {9, -16, 4, 15, -15, -4, 16, -9},
                                      {6, -16, 16, -6, -6, 16, -16, 6},
                                      {4, -9, 15, -16, 16, -15, 9, -4}}};
inline constexpr Matrix<4> basis4 = {{{17, 17, 17, 17}, {22, 10, -10, -22}, {17, -17, -17, 17}, {10, -22, 22, -10}}};

// A basis divided by the squares of its vectors' lengths, times 2^scaleBits, rounded to nearest.
template <std::size_t N>
constexpr Matrix<N> forwardFactors(const Matrix<N>& basis, int scaleBits) {
  Matrix<N> factors{};
  for (std::size_t k = 0; k < N; ++k) {
    s64 square = 0;
    for (const s64 b : basis[k]) square += b * b;
    for (std::size_t j = 0; j < N; ++j) {
      const s64 b = basis[k][j], magnitude = (((b < 0 ? -b : b) << (scaleBits + 1)) + square) / (2 * square);
      factors[k][j] = s16(b < 0 ? -magnitude : magnitude);
    }
  }
  return factors;
}

inline constexpr Matrix<8> TableFwdTransform8x8_0 = forwardFactors(basis8, 21);
inline constexpr Matrix<4> TableFwdTransform4x4_0 = forwardFactors(basis4, 20);
template <int N>
constexpr const auto& tableFwdTransform() {
  if constexpr (N == 8) return TableFwdTransform8x8_0;
  else return TableFwdTransform4x4_0;
}

static_assert(TableFwdTransform8x8_0[0] == std::array<s16, 8>{21845, 21845, 21845, 21845, 21845, 21845, 21845, 21845});
static_assert(TableFwdTransform8x8_0[1] ==
              std::array<s16, 8>{29026, 27212, 16327, 7257, -7257, -16327, -27212, -29026});
static_assert(TableFwdTransform8x8_0[6] ==
              std::array<s16, 8>{10773, -28728, 28728, -10773, -10773, 28728, -28728, 10773});
static_assert(TableFwdTransform4x4_0[2] == std::array<s16, 4>{15420, -15420, -15420, 15420});
static_assert(TableFwdTransform4x4_0[3] == std::array<s16, 4>{8978, -19751, 19751, -8978});

}  // namespace zvp::vc1
