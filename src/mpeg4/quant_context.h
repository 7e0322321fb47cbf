// The quantization contexts, as they lie in the caller's memory from the first multiple of 16 on, and what all who work
// through them need.
#pragma once

#include "mpeg4/quant_tables.h"

namespace zvp::mpeg4 {

struct ForwardQuant {
  u16 weights[64];      // raster order; halved at the depths that work with reciprocals
  u32 reciprocals[64];  // 65536 / weight + 1; only at those depths
  s32 bitsPerPixel;
  s32 matrixFlag;  // 1 with a matrix, 0 for flat quantization
  u32 magic;
  static constexpr u32 interMagic = 0x434D4155, intraMagic = 0x434D4154;
};
struct InverseQuant {
  u16 weights[64];
  s32 bitsPerPixel;
  s32 matrixFlag;
  u32 magic;
  static constexpr u32 interMagic = 0x434D4153, intraMagic = 0x434D4152;
};
static_assert(sizeof(ForwardQuant) == 396 && offsetof(ForwardQuant, reciprocals) == 128 &&
              offsetof(ForwardQuant, bitsPerPixel) == 384 && offsetof(ForwardQuant, matrixFlag) == 388 &&
              offsetof(ForwardQuant, magic) == 392);
static_assert(sizeof(InverseQuant) == 140 && offsetof(InverseQuant, bitsPerPixel) == 128 &&
              offsetof(InverseQuant, matrixFlag) == 132 && offsetof(InverseQuant, magic) == 136);

// Is it a context of this kind, and QP a quantizer of its depth?
template <class Context> ZVP_INLINE zvpStatus check(const Context& context, u32 magic, s32 QP) {
  if (context.magic != magic) return zvpStatusBadContext;
  if (QP < 1 || QP > largestQuantizer(context.bitsPerPixel)) return zvpStatusBadQuantizer;
  return zvpStatusOk;
}

// Mismatch control, 7.4.4.1: makes the sum of the results odd.
ZVP_INLINE void controlMismatch(s16* coef, bool sumIsOdd) {
  if (!sumIsOdd) storeAs(coef + 63, s16(loadAs<s16>(coef + 63) ^ 1));
}

ZVP_INLINE const ClipRow& boundsOf(const InverseQuant& context) {
  return _p_QuantInvClip[std::size_t(context.bitsPerPixel - minBitsPerPixel)];
}

}  // namespace zvp::mpeg4
