#include "mpeg/dct.h"

#include "entry.h"
#include "mpeg/dct_kernels.h"

using namespace zvp;
using namespace zvp::mpeg;

namespace {

// One body each, so that the members in place and out of place share their code. All is loaded before anything is
// stored.
void forward(const s16* src, s16* dst) {
  S16<8> rows[8];
  loadBlock(src, rows);
  forward8x8(rows, dst);
}
void inverse(const s16* src, s16* dst) { inverse8x8(src, StoreWords{dst}); }

}  // namespace

zvpStatus zvpiDCT8x8Fwd_16s_C1(const s16* pSrc, s16* pDst) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  forward(pSrc, pDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x8Fwd_16s_C1I(s16* pSrcDst) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  forward(pSrcDst, pSrcDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x8Inv_16s_C1(const s16* pSrc, s16* pDst) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  inverse(pSrc, pDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x8Inv_16s_C1I(s16* pSrcDst) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  inverse(pSrcDst, pSrcDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT2x4x8Fwd_16s_C1I(s16* pSrcDst) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  S16<8> rows[8];
  loadBlock(pSrcDst, rows);
  forward2x4x8(rows, pSrcDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT2x4x8Inv_16s_C1I(s16* pSrcDst) {
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  inverse2x4x8(pSrcDst, StoreWords{pSrcDst});
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x8Fwd_8u16s_C1R(const u8* pSrc, s32 srcStep, s16* pDst) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  S16<8> rows[8];
  for (int y = 0; y < 8; ++y) rows[y] = simd::loadWidened<8>(pSrc + y * std::ptrdiff_t(srcStep));
  forward8x8(rows, pDst);
  return zvpStatusOk;
}

zvpStatus zvpiDCT8x8Inv_16s8u_C1R(const s16* pSrc, u8* pDst, s32 dstStep) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  inverse8x8(pSrc, StoreClippedBytes{pDst, dstStep});
  return zvpStatusOk;
}
