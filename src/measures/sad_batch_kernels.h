// SADs of one block against candidates that lie one sample apart along a row.
//
// Where blocks are narrower than a register, a load and a packed SAD serve two candidates: 8-wide blocks of candidates
// i and i + 8, or 4-wide ones of i and i + 4, stand in 16 bytes of the reference. All sums fit 16 bits, also those of
// the halves of 16-wide rows, so that eight results come together by shifts.
#pragma once

#include <algorithm>
#include <bit>

#include "entry.h"
#include "simd.h"

namespace zvp::measures {

// The low 16 bits of the 64-bit lanes of four registers: those of the low lanes, then those of the high ones.
ZVP_INLINE simd::U64<2> collect(simd::U64<2> a, simd::U64<2> b, simd::U64<2> c, simd::U64<2> d) {
  return (a | simd::shiftLeft<16>(b)) | (simd::shiftLeft<32>(c) | simd::shiftLeft<48>(d));
}

// A step is of 16 bytes; a register of 32 takes in two of them, whose sums are added in the end.
inline constexpr int batchBytes = simd::registerBytes, batchSteps = batchBytes / 16;

template <int N>
ZVP_INLINE simd::U64<2> overSteps(simd::U64<N> sums) {
  if constexpr (N == 2)
    return sums;
  else
    return lowHalf(sums) + highHalf(sums);
}

// The sums of four candidates, collected: block(step) gives the bytes to compare with, candidate(step, i) those of
// candidate i and of what shares its register. Sums are added two by two: more at a time, or one by one, keep the SAD
// instruction waiting for its port.
template <int steps, class Block, class Candidate>
ZVP_INLINE simd::U64<2> sadOfFour(Block block, Candidate candidate) {
  using Sums = simd::U64<batchBytes / 8>;
  Sums sum[4];
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) sum[i] = simd::zero<Sums>();
#pragma GCC unroll 4
  for (int step = 0; step < steps; step += batchSteps) {
    const auto bytes = block(step);
#pragma GCC unroll 2
    for (int i = 0; i < 4; i += 2) {
      const auto a = sumAbsDiff(candidate(step, i), bytes), b = sumAbsDiff(candidate(step, i + 1), bytes);
      sum[i] = sum[i] + a;
      sum[i + 1] = sum[i + 1] + b;
    }
  }
  return collect(overSteps(sum[0]), overSteps(sum[1]), overSteps(sum[2]), overSteps(sum[3]));
}

// Eight candidates of blocks 8 or 16 wide: a step takes in 16 bytes of one of them, in whole rows.
template <int W, int H>
ZVP_INLINE void sadOfEight(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep, u16* sads) {
  constexpr int rows = 16 / W;
  const auto four = [=](int first) {
    return sadOfFour<H / rows>(
        [=](int step) { return simd::loadRows<W, batchBytes>(src + step * rows * srcStep, srcStep); },
        [=](int step, int i) {
          return simd::loadRows<W, batchBytes>(ref + first + i + step * rows * refStep, refStep);
        });
  };
  const auto low = four(0), high = four(4);  // sums of both halves of the registers
  store(sads, simd::as<simd::U16<8>>(interleaveLow(low, high)) + simd::as<simd::U16<8>>(interleaveHigh(low, high)));
}

// Sixteen candidates of a block 8 wide: a step takes in a row of candidate i and one of candidate i + 8.
template <int H>
ZVP_INLINE void sadOfSixteen8xH(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep,
                                u16* sads) {
  const auto twice = [=](int y) {
    const auto row = simd::loadBytes<simd::U64<2>, 8>(src + y * srcStep);
    return simd::as<simd::U8<16>>(interleaveLow(row, row));
  };
  const auto four = [=](int first) {
    return sadOfFour<H>(
        [=](int y) {
          if constexpr (batchSteps == 1)
            return twice(y);
          else
            return join(twice(y), twice(y + 1));
        },
        [=](int y, int i) { return simd::loadRows<16, batchBytes>(ref + first + i + y * refStep, refStep); });
  };
  const auto low = four(0), high = four(4);
  store(sads, interleaveLow(low, high));
  store(sads + 8, interleaveHigh(low, high));
}

template <int W, int H>
void sadCandidates(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep, u16* sads, int count) {
  if constexpr (W == 8)
    for (; count >= 16; count -= 16, ref += 16, sads += 16) sadOfSixteen8xH<H>(src, srcStep, ref, refStep, sads);
  for (; count >= 8; count -= 8, ref += 8, sads += 8) sadOfEight<W, H>(src, srcStep, ref, refStep, sads);
}

// 4x4: two rows of candidate i stand beside two rows of candidate i + 4.
template <>
inline void sadCandidates<4, 4>(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep, u16* sads,
                                int count) {
  using Rows = simd::U32<4>;
  const auto twoRows = [](const u8* p, std::ptrdiff_t step) {
    return interleaveLow(simd::loadBytes<Rows, 8>(p), simd::loadBytes<Rows, 8>(p + step));
  };
  const auto block = simd::loadRows<4, 16>(src, srcStep);
  const auto top = simd::as<simd::U8<16>>(interleaveLow(simd::as<simd::U64<2>>(block), simd::as<simd::U64<2>>(block)));
  const auto bottom =
      simd::as<simd::U8<16>>(interleaveHigh(simd::as<simd::U64<2>>(block), simd::as<simd::U64<2>>(block)));
  for (; count >= 8; count -= 8, ref += 8, sads += 8) {
    simd::U64<2> sum[4];
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i)
      sum[i] = sumAbsDiff(simd::as<simd::U8<16>>(twoRows(ref + i, refStep)), top) +
               sumAbsDiff(simd::as<simd::U8<16>>(twoRows(ref + i + 2 * refStep, refStep)), bottom);
    store(sads, collect(sum[0], sum[1], sum[2], sum[3]));
  }
}

// 2x2: a register holds the left samples of eight candidates and their right ones.
template <>
inline void sadCandidates<2, 2>(const u8* src, std::ptrdiff_t srcStep, const u8* ref, std::ptrdiff_t refStep, u16* sads,
                                int count) {
  const auto spread = [](const u8* p) {
    const auto left = simd::splat<simd::U8<16>>(p[0]), right = simd::splat<simd::U8<16>>(p[1]);
    return simd::as<simd::U8<16>>(interleaveLow(simd::as<simd::U64<2>>(left), simd::as<simd::U64<2>>(right)));
  };
  const auto top = spread(src), bottom = spread(src + srcStep);
  for (; count >= 8; count -= 8, ref += 8, sads += 8) {
    const auto upper = absDiff(simd::load8x2<simd::U8<16>>(ref, ref + 1), top);
    const auto lower = absDiff(simd::load8x2<simd::U8<16>>(ref + refStep, ref + refStep + 1), bottom);
    store(sads, (widenLow(upper) + widenHigh(upper)) + (widenLow(lower) + widenHigh(lower)));
  }
}

// Index of the first of the least values, or -1 if none is below 65535. count is a multiple of 8.
inline s32 indexOfLeast(const u16* values, int count) {
  using Values = simd::U16<8>;
  const auto toSigned = simd::splat<simd::S16<8>>(-32768);  // for the signed minimum
  auto least = simd::splat<simd::S16<8>>(32767);
  for (int i = 0; i < count; i += 8) least = min(least, simd::load<simd::S16<8>>(values + i) ^ toSigned);
  least = min(least, shuffle32<0x4e>(least));
  least = min(least, shuffle32<0xb1>(least));
  const u32 both = low32(least ^ toSigned), value = std::min(both & 0xffff, both >> 16);
  if (value == 65535) return -1;
  for (int i = 0;; i += 8) {
    const u32 found = signBits(equal(simd::load<Values>(values + i), simd::splat<Values>(u16(value))));
    if (found != 0) return i + std::countr_zero(found) / 2;
  }
}

}  // namespace zvp::measures
