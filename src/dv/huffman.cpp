#include "dv/huffman_kernels.h"
#include "entry.h"

using namespace zvp;
using namespace zvp::dv;

zvpStatus zvpiInitAllocHuffmanTable_DV_32u(const s32* pHuffTable1, const s32* pHuffTable2, u32** ppHuffTable) {
  if (anyNull(pHuffTable1, pHuffTable2, ppHuffTable)) return zvpStatusNullPointer;
  return makeTable(pHuffTable1, pHuffTable2, ppHuffTable);
}

zvpStatus zvpiFreeHuffmanTable_DV_32u(u32* pHuffTable) {
  if (anyNull(pHuffTable)) return zvpStatusNullPointer;
  zvpsFree(pHuffTable);
  return zvpStatusOk;
}

zvpStatus zvpiHuffmanDecodeSegment_DV_8u16s(const u8* pStream, const u32* pZigzagTables, const u32* pHuffTable,
                                            s16* pBlock, u32* pBlockParam) {
  if (anyNull(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam)) return zvpStatusNullPointer;
  decodeSegment<layoutDV, Passes::Three>(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam, blockCoefficients);
  return zvpStatusOk;
}

zvpStatus zvpiHuffmanDecodeSegment_DV100_8u16s(const u8* pStream, const u32* pZigzagTables, const u32* pHuffTable,
                                               s16* pBlock, u32* pBlockParam) {
  if (anyNull(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam)) return zvpStatusNullPointer;
  decodeSegment<layoutDV100, Passes::Three>(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam,
                                            blockCoefficients);
  return zvpStatusOk;
}

zvpStatus zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(const u8* pStream, const u32* pZigzagTables, const u32* pHuffTable,
                                                   s16* pBlock, u32* pBlockParam, s32 maxCoefficients) {
  if (anyNull(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam)) return zvpStatusNullPointer;
  const s32 limit = std::min<s32>(u8(maxCoefficients), blockCoefficients);  // a scan has no more places
  decodeSegment<layoutDV, Passes::One>(pStream, pZigzagTables, pHuffTable, pBlock, pBlockParam, limit);
  return zvpStatusOk;
}
