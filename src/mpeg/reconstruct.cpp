#include "entry.h"
#include "mpeg/reconstruct_kernels.h"
#include "mpeg/reconstruct_tables.h"

using namespace zvp;
using namespace zvp::mpeg;

zvpStatus zvpiReconstructDCTBlock_MPEG1_32s(const u32** ppBitStream, s32* pBitOffset, const s32* pDCTable,
                                            const s32* pACTable, const s32* pScanMatrix, s32 QP, const s16* pQPMatrix,
                                            s16* pDstBlock, s32* pDstSize) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDCTable, pACTable, pScanMatrix, pQPMatrix, pDstBlock, pDstSize))
    return zvpStatusNullPointer;
  return BlockDecoder<Standard::MPEG1, Coding::NonIntra>(
             {ppBitStream, pBitOffset, pACTable, pScanMatrix, QP, pQPMatrix, pDstBlock, pDstSize})
      .nonIntra(pDCTable);
}

zvpStatus zvpiReconstructDCTBlock_MPEG2_32s(const u32** ppBitStream, s32* pBitOffset, const s32* pDCTable,
                                            const s32* pACTable, const s32* pScanMatrix, s32 QP, const s16* pQPMatrix,
                                            s16* pDstBlock, s32* pDstSize) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDCTable, pACTable, pScanMatrix, pDstBlock, pDstSize))
    return zvpStatusNullPointer;
  const s16* weights = pQPMatrix != nullptr ? pQPMatrix : Qmatrix_0.data();
  return BlockDecoder<Standard::MPEG2, Coding::NonIntra>(
             {ppBitStream, pBitOffset, pACTable, pScanMatrix, QP, weights, pDstBlock, pDstSize})
      .nonIntra(pDCTable);
}

zvpStatus zvpiReconstructDCTBlockIntra_MPEG1_32s(const u32** ppBitStream, s32* pBitOffset, const s32* pDCSizeTable,
                                                 const s32* pACTable, const s32* pScanMatrix, s32 QP,
                                                 const s16* pQPMatrix, s16* pDCPred, s16* pDstBlock, s32* pDstSize) {
  if (nullCursor(ppBitStream) ||
      anyNull(pBitOffset, pDCSizeTable, pACTable, pScanMatrix, pQPMatrix, pDCPred, pDstBlock, pDstSize))
    return zvpStatusNullPointer;
  return BlockDecoder<Standard::MPEG1, Coding::Intra>(
             {ppBitStream, pBitOffset, pACTable, pScanMatrix, QP, pQPMatrix, pDstBlock, pDstSize})
      .intra(pDCSizeTable, pDCPred, 0);
}

zvpStatus zvpiReconstructDCTBlockIntra_MPEG2_32s(const u32** ppBitStream, s32* pBitOffset, const s32* pDCSizeTable,
                                                 const s32* pACTable, const s32* pScanMatrix, s32 QP,
                                                 const s16* pQPMatrix, s16* pDCPred, s32 shiftDCVal, s16* pDstBlock,
                                                 s32* pDstSize) {
  if (nullCursor(ppBitStream) ||
      anyNull(pBitOffset, pDCSizeTable, pACTable, pScanMatrix, pQPMatrix, pDCPred, pDstBlock, pDstSize))
    return zvpStatusNullPointer;
  return BlockDecoder<Standard::MPEG2, Coding::Intra>(
             {ppBitStream, pBitOffset, pACTable, pScanMatrix, QP, pQPMatrix, pDstBlock, pDstSize})
      .intra(pDCSizeTable, pDCPred, shiftDCVal);
}
