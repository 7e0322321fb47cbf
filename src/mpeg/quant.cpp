#include "entry.h"
#include "mpeg/quant_kernels.h"
#include "mpeg/quant_tables.h"

using namespace zvp;
using namespace zvp::mpeg;

namespace {
float quantizerFactor(s32 QP) { return float(16.0 / QP); }
}  // namespace

zvpStatus zvpiQuantIntra_MPEG2_16s_C1I(s16* pSrcDst, s32 QP, const float* pQPMatrix, s32* pCount) {
  if (anyNull(pSrcDst, pCount)) return zvpStatusNullPointer;
  if (QP == 0) return zvpStatusDivideByZero;
  const float* matrix = pQPMatrix != nullptr ? pQPMatrix : DefaultIntraQuantMatrix_0.data();
  storeAs(pCount, quantizeByReciprocals<true>(pSrcDst, quantizerFactor(QP), matrix));
  return zvpStatusOk;
}

zvpStatus zvpiQuant_MPEG2_16s_C1I(s16* pSrcDst, s32 QP, const float* pQPMatrix, s32* pCount) {
  if (anyNull(pSrcDst, pCount)) return zvpStatusNullPointer;
  if (QP == 0) return zvpStatusDivideByZero;
  if (pQPMatrix != nullptr)
    storeAs(pCount, quantizeByReciprocals<false>(pSrcDst, quantizerFactor(QP), pQPMatrix));
  else if (QP > 1)
    storeAs(pCount, quantizeFlat(pSrcDst, u16((QP / 2 + 65536) / QP)));
  else
    storeAs(pCount, countNonZero(pSrcDst));  // required: without a matrix a negative QP changes nothing either
  return zvpStatusOk;
}

zvpStatus zvpiQuantInvIntra_MPEG2_16s_C1I(s16* pSrcDst, s32 QP, const s16* pQPMatrix) {
  if (anyNull(pSrcDst, pQPMatrix)) return zvpStatusNullPointer;
  dequantizeIntra(pSrcDst, QP, pQPMatrix);
  return zvpStatusOk;
}

zvpStatus zvpiQuantInv_MPEG2_16s_C1I(s16* pSrcDst, s32 QP, const s16* pQPMatrix) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  if (pQPMatrix != nullptr)
    dequantizeInter<true>(pSrcDst, QP, pQPMatrix);
  else
    dequantizeInter<false>(pSrcDst, QP, nullptr);
  return zvpStatusOk;
}
