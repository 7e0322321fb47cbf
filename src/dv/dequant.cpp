#include "dv/dequant_kernels.h"
#include "dv/reduce.h"
#include "entry.h"

using namespace zvp;
using namespace zvp::dv;

zvpStatus zvpiQuantInv_DV_16s_C1I(s16* pSrcDst, const s16* pDequantTable) {
  if (anyNull(pSrcDst, pDequantTable)) return zvpStatusNullPointer;
  dequantize(pSrcDst, pDequantTable);
  return zvpStatusOk;
}

zvpStatus zvpiQuantWeightBlockInv_DV_16s_C1I(s16* pSrcDst, const s16* pWeightInvTable, const s16* pQuantInvTable) {
  if (anyNull(pSrcDst, pWeightInvTable, pQuantInvTable)) return zvpStatusNullPointer;
  dequantizeWeighted(pSrcDst, pWeightInvTable, pQuantInvTable);
  return zvpStatusOk;
}

zvpStatus zvpiQuantWeightBlockInv_DV100_16s_C1I(s16* pSrcDst, const s16* pWeightInvTable, s32 quantInvValue) {
  if (anyNull(pSrcDst, pWeightInvTable)) return zvpStatusNullPointer;
  dequantizeDV100(pSrcDst, pWeightInvTable, quantInvValue);
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(s16* pSrcDst) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  zvpiDCT2x4x8Inv_16s_C1I(pSrcDst);
  reduceBlock<2>(pSrcDst, pSrcDst);
  return zvpStatusOk;
}
