// Exports: MPEG-4 quantization contexts and the quantizers that work through them.
#include "entry.h"
#include "mpeg4/caller_record.h"
#include "mpeg4/quant_kernels.h"

using namespace zvp;
using namespace zvp::mpeg4;

namespace {

template <class Context> zvpStatus getSize(s32* pSize) {
  if (anyNull(pSize)) return zvpStatusNullPointer;
  storeAs(pSize, recordSize<Context>);
  return zvpStatusOk;
}

void storeWeight(ForwardQuant& context, int i, u8 weight) {
  if (context.bitsPerPixel < firstDividingDepth) {
    context.weights[i] = weight >> 1;
    context.reciprocals[i] = 65536u / weight + 1;
  } else {
    context.weights[i] = weight;
  }
}
void storeWeight(InverseQuant& context, int i, u8 weight) { context.weights[i] = weight; }

template <class Context> zvpStatus init(const u8* matrix, void* pSpec, s32 bitsPerPixel, u32 magic) {
  if (anyNull(pSpec)) return zvpStatusNullPointer;
  // Required: forward contexts take any depth.
  if (std::is_same_v<Context, InverseQuant> && (bitsPerPixel < minBitsPerPixel || bitsPerPixel > maxBitsPerPixel))
    return zvpStatusOutOfRange;
  auto& context = *recordAt<Context>(pSpec);
  context.magic = magic;
  context.bitsPerPixel = bitsPerPixel;
  if (matrix == nullptr) {
    context.matrixFlag = 0;
    return zvpStatusOk;
  }
  for (int i = 0; i < 64; ++i) {
    if (matrix[i] == 0) return zvpStatusBadQuantizer;  // required: matrixFlag stays as it was
    storeWeight(context, i, matrix[i]);
  }
  context.matrixFlag = 1;
  return zvpStatusOk;
}

// (|x| + d / 2) / d with the sign of x, at most 2047; 0 below half a step.
ZVP_INLINE s16 quantizeDc(s32 x, s32 d) {
  const s32 magnitude = x < 0 ? -x : x;
  if (magnitude < (d + 1) >> 1) return 0;
  const s32 y = clip((magnitude + (d >> 1)) / d, 0, 2047);
  return s16(x < 0 ? -y : y);
}

}  // namespace

zvpStatus zvpiQuantInterGetSize_MPEG4(s32* pSize) { return getSize<ForwardQuant>(pSize); }
zvpStatus zvpiQuantIntraGetSize_MPEG4(s32* pSize) { return getSize<ForwardQuant>(pSize); }
zvpStatus zvpiQuantInvInterGetSize_MPEG4(s32* pSize) { return getSize<InverseQuant>(pSize); }
zvpStatus zvpiQuantInvIntraGetSize_MPEG4(s32* pSize) { return getSize<InverseQuant>(pSize); }

zvpStatus zvpiQuantInterInit_MPEG4(const u8* pQuantMatrix, void* pSpec, s32 bitsPerPixel) {
  return init<ForwardQuant>(pQuantMatrix, pSpec, bitsPerPixel, ForwardQuant::interMagic);
}
zvpStatus zvpiQuantIntraInit_MPEG4(const u8* pQuantMatrix, void* pSpec, s32 bitsPerPixel) {
  return init<ForwardQuant>(pQuantMatrix, pSpec, bitsPerPixel, ForwardQuant::intraMagic);
}
zvpStatus zvpiQuantInvInterInit_MPEG4(const u8* pQuantMatrix, void* pSpec, s32 bitsPerPixel) {
  return init<InverseQuant>(pQuantMatrix, pSpec, bitsPerPixel, InverseQuant::interMagic);
}
zvpStatus zvpiQuantInvIntraInit_MPEG4(const u8* pQuantMatrix, void* pSpec, s32 bitsPerPixel) {
  return init<InverseQuant>(pQuantMatrix, pSpec, bitsPerPixel, InverseQuant::intraMagic);
}

zvpStatus zvpiQuantInter_MPEG4_16s_C1I(s16* pCoef, const void* pSpec, s32 QP, s32* pCountNonZero) {
  if (anyNull(pCoef, pSpec, pCountNonZero)) return zvpStatusNullPointer;
  const auto& context = *recordAt<const ForwardQuant>(pSpec);
  if (const zvpStatus bad = check(context, ForwardQuant::interMagic, QP)) return bad;
  storeAs(pCountNonZero, context.matrixFlag != 0 ? ownpmp4_QuantInter1_16s_I(pCoef, context, QP)
                                                 : ownpmp4_QuantInter0_16s_I(pCoef, context.bitsPerPixel, QP));
  return zvpStatusOk;
}

zvpStatus zvpiQuantIntra_MPEG4_16s_C1I(s16* pCoef, const void* pSpec, s32 QP, s32* pCountNonZero, s32 blockType) {
  if (anyNull(pCoef, pSpec, pCountNonZero)) return zvpStatusNullPointer;
  const auto& context = *recordAt<const ForwardQuant>(pSpec);
  if (const zvpStatus bad = check(context, ForwardQuant::intraMagic, QP)) return bad;
  const s16 dc = quantizeDc(loadAs<s16>(pCoef), dcScaler(QP, blockType != 0));
  const s32 count = context.matrixFlag != 0 ? ownpmp4_QuantIntra1_16s_I(pCoef, context, QP)
                                            : ownpmp4_QuantIntra0_16s_I(pCoef, context.bitsPerPixel, QP);
  storeAs(pCoef, dc);
  storeAs(pCountNonZero, count + (dc != 0));
  return zvpStatusOk;
}

zvpStatus zvpiQuantInvInter_MPEG4_16s_C1I(s16* pCoef, s32 indxLastNonZero, const void* pSpec, s32 QP) {
  if (anyNull(pCoef, pSpec)) return zvpStatusNullPointer;
  const auto& context = *recordAt<const InverseQuant>(pSpec);
  if (const zvpStatus bad = check(context, InverseQuant::interMagic, QP)) return bad;
  if (context.matrixFlag != 0)
    controlMismatch(pCoef, ownpmp4_QuantInvInter_16s_I(pCoef, indxLastNonZero, context, QP, boundsOf(context)));
  else
    ownpmp4_QuantInv_16s_I(pCoef, indxLastNonZero, QP, boundsOf(context));
  return zvpStatusOk;
}

zvpStatus zvpiQuantInvIntra_MPEG4_16s_C1I(s16* pCoef, s32 indxLastNonZero, const void* pSpec, s32 QP, s32 blockType) {
  if (anyNull(pCoef, pSpec)) return zvpStatusNullPointer;
  const auto& context = *recordAt<const InverseQuant>(pSpec);
  if (const zvpStatus bad = check(context, InverseQuant::intraMagic, QP)) return bad;
  const ClipRow& bounds = boundsOf(context);
  const s32 dc = clip(dcScaler(QP, blockType != 0) * loadAs<s16>(pCoef), bounds[0], bounds[8]);
  const bool dcIsOdd = (dc & 1) != 0;
  if (indxLastNonZero < 1) {
    if (context.matrixFlag != 0 && !dcIsOdd) storeAs(pCoef + 63, s16(1));  // required: set, whatever it was
  } else if (context.matrixFlag != 0) {
    controlMismatch(pCoef, ownpmp4_QuantInvIntra_16s_I(pCoef, indxLastNonZero, context, QP, bounds) != dcIsOdd);
  } else {
    ownpmp4_QuantInv_16s_I(pCoef, indxLastNonZero, QP, bounds);
  }
  storeAs(pCoef, s16(dc));  // over what the kernels made of it
  return zvpStatusOk;
}
