#include "entry.h"
#include "mpeg/huffman_kernels.h"

using namespace zvp;
using namespace zvp::mpeg;

zvpStatus zvpiHuffmanTableInitAlloc_32s(const s32* pSrcTable, s32** ppDstSpec) {
  if (anyNull(pSrcTable, ppDstSpec)) return zvpStatusNullPointer;
  return compile<TableKind::Value>(pSrcTable, ppDstSpec);
}

zvpStatus zvpiHuffmanRunLevelTableInitAlloc_32s(const s32* pSrcTable, s32** ppDstSpec) {
  if (anyNull(pSrcTable, ppDstSpec)) return zvpStatusNullPointer;
  return compile<TableKind::RunLevel>(pSrcTable, ppDstSpec);
}

zvpStatus zvpiHuffmanTableFree_32s(s32* pDecodeTable) {
  if (anyNull(pDecodeTable)) return zvpStatusNullPointer;
  zvpsFree(pDecodeTable);
  return zvpStatusOk;
}

zvpStatus zvpiDecodeHuffmanOne_1u32s(const u32** ppBitStream, s32* pBitOffset, s32* pDecodedValue,
                                     const s32* pDecodeTable) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDecodedValue, pDecodeTable)) return zvpStatusNullPointer;
  BitWindow window(ppBitStream, pBitOffset);
  const s32 value = lookUpValue(pDecodeTable, window);
  window.store(ppBitStream, pBitOffset);
  storeAs(pDecodedValue, value);
  return value == unusedValue ? zvpStatusBadVlcInput : zvpStatusOk;
}

zvpStatus zvpiDecodeHuffmanPair_1u16s(const u32** ppBitStream, s32* pBitOffset, const s32* pDecodeTable,
                                      u8* pFirstValue, s16* pSecondValue) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDecodeTable, pFirstValue, pSecondValue))
    return zvpStatusNullPointer;
  BitWindow window(ppBitStream, pBitOffset);
  const s32 entry = lookUp(pDecodeTable, window);
  if (valueOf(entry) == unusedValue) return zvpStatusBadVlcInput;  // required: the cursor stays where it was
  window.store(ppBitStream, pBitOffset);
  *pFirstValue = runOf(entry);
  storeAs(pSecondValue, levelOf(entry));
  return zvpStatusOk;
}
