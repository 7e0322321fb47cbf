// Residual blocks: differences of two blocks of bytes or of 16-bit samples, modulo 2^16.
#pragma once

#include <algorithm>

#include "measures/sad_kernels.h"

namespace zvp::measures {

// count samples as 16-bit lanes: 4, or as many as fill a register.
template <class T, int count>
ZVP_INLINE auto loadSamples(const u8* p) {
  if constexpr (sizeof(T) == 2)
    return simd::loadBytes<simd::S16<std::max(count, 8)>, 2 * count>(p);
  else if constexpr (count == 4)
    return widenLow(simd::loadBytes<simd::U8<16>, 4>(p));
  else
    return simd::loadWidened<count>(p);
}

// Each row, or part of a row, is read before its place in dst is written. The status is always zvpStatusOk: an entry
// ends in a jump to its kernel.
template <class T, int W, int H>
zvpStatus subtract(const u8* a, std::ptrdiff_t aStep, const u8* b, std::ptrdiff_t bStep, u8* dst,
                   std::ptrdiff_t dstStep) {
  constexpr int count = std::min(W, simd::registerBytes / 2);
#pragma GCC unroll 8
  for (int y = 0; y < H; ++y, a += aStep, b += bStep, dst += dstStep)
    for (int x = 0; x < W; x += count) {
      const auto difference =
          loadSamples<T, count>(a + x * int(sizeof(T))) - loadSamples<T, count>(b + x * int(sizeof(T)));
      simd::storeBytes<2 * count>(dst + 2 * x, difference);
    }
  return zvpStatusOk;
}

// 4x4 bytes, two rows in a register. Rows that follow one another are written at once: so a transform may read them in
// whole registers, without waiting for halves to be put together.
inline zvpStatus ownvc_Sub4x4_8u16s_C1R(const u8* a, std::ptrdiff_t aStep, const u8* b, std::ptrdiff_t bStep, u8* dst,
                                        std::ptrdiff_t dstStep) {
  using namespace simd;
  const auto rows = [](const u8* p, std::ptrdiff_t step) {
    return widenLow(as<U8<16>>(interleaveLow(loadBytes<U32<4>, 4>(p), loadBytes<U32<4>, 4>(p + step))));
  };
  const auto rows01 = rows(a, aStep) - rows(b, bStep);
  const auto rows23 = rows(a + 2 * aStep, aStep) - rows(b + 2 * bStep, bStep);
  if (dstStep == 8) [[likely]] {
    store(dst, rows01);
    store(dst + 16, rows23);
  } else {
    storeBytes<8>(dst, rows01);
    storeHigh8(dst + dstStep, rows01);
    storeBytes<8>(dst + 2 * dstStep, rows23);
    storeHigh8(dst + 3 * dstStep, rows23);
  }
  return zvpStatusOk;
}

template <int H>
zvpStatus subtractAndSad8xH(const u8* a, std::ptrdiff_t aStep, const u8* b, std::ptrdiff_t bStep, u8* dst,
                            std::ptrdiff_t dstStep, s32* sad) {
  SumAbsDiff8u<16> sum;
#pragma GCC unroll 8
  for (int y = 0; y < H; ++y, a += aStep, b += bStep, dst += dstStep) {
    const auto rowA = simd::loadBytes<simd::U8<16>, 8>(a), rowB = simd::loadBytes<simd::U8<16>, 8>(b);
    sum.add(rowA, rowB);
    store(dst, widenLow(rowA) - widenLow(rowB));
  }
  storeAs(sad, s32(sum.total<8 * H>()));
  return zvpStatusOk;
}

constexpr auto ownvc_Sub8x8_8u16s_C1R = subtract<u8, 8, 8>;
constexpr auto ownvc_Sub16x16_8u16s_C1R = subtract<u8, 16, 16>;
constexpr auto ownvc_SubSAD8x8_8u16s_C1R = subtractAndSad8xH<8>;

}  // namespace zvp::measures
