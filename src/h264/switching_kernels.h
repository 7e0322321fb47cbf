// Blocks of SP and SI pictures (H.264 8.6.1 and 8.6.2): levels are added to the transformed prediction, the sum is
// quantized anew and reconstructed. Scalar: only streams of the Extended profile come here.
#pragma once

#include <array>

#include "h264/transform_kernels.h"
#include "h264/transform_tables.h"

namespace zvp {

namespace detail {

// c as the nearest multiple of QS's step.
ZVP_INLINE s32 requantized(s32 c, s32 factor, int shift, s32 scale) {
  const s32 magnitude = wrapAdd(wrapMul(c > 0 ? c : wrapNeg(c), factor), 1 << (shift - 1)) >> shift;
  return wrapMul(c > 0 ? magnitude : wrapNeg(magnitude), scale);
}

}  // namespace detail

// qp scales the levels. Levels other than the first are there if hasAc; the first coefficient is *dc where that is
// given.
ZVP_INLINE void reconstructSwitchingBlock(s16* srcDst, const s16* prediction, const s16* dc, bool hasAc, s32 qp,
                                          s32 qs) {
  const auto &levelScales = InvQuantTable[std::size_t(qp)], &scales = InvQuantTable[std::size_t(qs)];
  const auto& factors = QuantCoef_0[std::size_t(qs % 6)];
  std::array<s16, 16> block;
  for (std::size_t i = 0; i < 16; ++i) {
    const auto positionClass = std::size_t(QuantIndex[i]);
    const s32 value = i == 0 || hasAc ? loadAs<s16>(srcDst + i) : 0;
    const s32 c =
        wrapAdd(loadAs<s16>(prediction + i), wrapMul(wrapMul(value, levelScales[positionClass]), MATR_0[i]) >> 6);
    block[i] = s16(detail::requantized(c, factors[i], qs / 6 + 15, scales[positionClass]));
  }
  if (dc != nullptr) block[0] = loadAs<s16>(dc);
  const Block4x4 residual = inverseTransform(loadBlock4x4(block.data()));
  const auto clipped = [](simd::S16<8> v) {
    return max(min(v, simd::splat<simd::S16<8>>(255)), simd::zero<simd::S16<8>>());
  };
  storeBlock4x4(srcDst, {clipped(residual.rows01), clipped(residual.rows23)});
}

ZVP_INLINE void requantizeSwitchingChromaDc(s16* srcDst, const s16* prediction, s32 qp, s32 qs) {
  auto c = hadamardTransform2x2(loadDc<4>(prediction));
  for (std::size_t i = 0; i < 4; ++i) {
    const s32 addition = wrapMul(wrapMul(loadAs<s16>(srcDst + i), InvQuantTable[std::size_t(qp)][0]), 16) >> 5;
    c[i] = detail::requantized(wrapAdd(c[i], addition), QuantCoef_0[std::size_t(qs % 6)][0], qs / 6 + 16,
                               InvQuantTable[std::size_t(qs)][0]);
  }
  c = hadamardTransform2x2(c);
  for (std::size_t i = 0; i < 4; ++i) storeAs(srcDst + i, s16(c[i] >> 1));
}

}  // namespace zvp
