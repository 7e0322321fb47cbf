#include "entry.h"
#include "mpeg4/caller_record.h"
#include "mpeg4/coeffs_kernels.h"

using namespace zvp;
using namespace zvp::mpeg4;

namespace {

// Clears the block and sets the position that the kernels go on behind. Under skipDC the DC stays.
void prepareBlock(s16* pCoef, s32* pIndxLastNonZero, bool skipDC) {
  const s16 dc = skipDC ? loadAs<s16>(pCoef) : s16(0);
  clearBlock(pCoef);
  storeAs(pCoef, dc);
  storeAs(pIndxLastNonZero, skipDC ? 0 : -1);
}

}  // namespace

zvpStatus zvpiDecodeDCIntra_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pDC, s32 blockType) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDC)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const auto decode = blockType == 0 ? decodeDc<Component::Luma> : decodeDc<Component::Chroma>;
  return decode(ppBitStream, pBitOffset, pDC);
}

zvpStatus zvpiDecodeCoeffsIntra_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                            s32 rvlcFlag, s32 skipDC, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const Scan& elements = *scanOf[std::size_t(chooseScan(scan, ScanHorizontal, ScanRaster))];
  prepareBlock(pCoef, pIndxLastNonZero, skipDC != 0);
  if (rvlcFlag)
    return ownpmp4_DecodeRVLCF_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, tableB23_Forw_Intra,
                                           elements);
  return ownpmp4_DecodeCoeffsIntra_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, elements);
}

zvpStatus zvpiDecodeCoeffsInter_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                            s32 rvlcFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const Scan& elements = *scanOf[std::size_t(chooseScan(scan, ScanVertical, ScanRaster))];
  prepareBlock(pCoef, pIndxLastNonZero, false);
  if (rvlcFlag)
    return ownpmp4_DecodeRVLCF_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, tableB23_Forw_Inter,
                                           elements);
  return ownpmp4_DecodeCoeffsInter_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, elements);
}

zvpStatus zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                    s32* pIndxLastNonZero, s32 skipDC) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  prepareBlock(pCoef, pIndxLastNonZero, skipDC != 0);
  return ownpmp4_DecodeRVLCB_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, tableB23_Back_Intra);
}

zvpStatus zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                    s32* pIndxLastNonZero) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  prepareBlock(pCoef, pIndxLastNonZero, false);
  return ownpmp4_DecodeRVLCB_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, tableB23_Back_Inter);
}

zvpStatus zvpiReconstructCoeffsInter_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                 s32* pIndxLastNonZero, s32 rvlcFlag, s32 scan,
                                                 const void* pQuantInvSpec, s32 QP) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const Scan& elements = *scanOf[scan == 1 ? ScanVertical : ScanZigzag];
  if (rvlcFlag) {
    prepareBlock(pCoef, pIndxLastNonZero, false);
    const zvpStatus status = ownpmp4_DecodeRVLCF_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero,
                                                             tableB23_Forw_Inter, elements);
    // Required: record and quantizer are looked at only now.
    return status != zvpStatusOk ? status : zvpiQuantInvInter_MPEG4_16s_C1I(pCoef, lastPosition, pQuantInvSpec, QP);
  }
  if (anyNull(pQuantInvSpec)) return zvpStatusNullPointer;
  const InverseQuant& spec = *recordAt<const InverseQuant>(pQuantInvSpec);
  if (const zvpStatus bad = check(spec, InverseQuant::interMagic, QP)) return bad;
  prepareBlock(pCoef, pIndxLastNonZero, false);
  return ownpmp4_ReconstructCoeffsInter_MPEG4_1u16s(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, elements, spec,
                                                    QP);
}

zvpStatus zvpiEncodeDCIntra_MPEG4_16s1u(s16 dc, u8** ppBitStream, s32* pBitOffset, s32 blockType) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  encodeDc(dc, ppBitStream, pBitOffset, blockType == 1 ? mVLC_DCSIZE_TB14 : mVLC_DCSIZE_TB13);
  return zvpStatusOk;
}

zvpStatus zvpiEncodeCoeffsIntra_MPEG4_16s1u(const s16* pCoef, u8** ppBitStream, s32* pBitOffset, s32 countNonZero,
                                            s32 rvlcFlag, s32 skipDC, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const s32 firstPosition = skipDC ? 1 : 0;
  if (countNonZero < 1 || countNonZero > 64 - firstPosition) return zvpStatusOutOfRange;
  const ScanOrder order = chooseScan(scan, ScanHorizontal, scan == -1 ? ScanRaster : ScanZigzag);
  if (rvlcFlag)
    return encodeCoeffs(intraReversibleWriter, pCoef, ppBitStream, pBitOffset, countNonZero, firstPosition, order);
  return encodeCoeffs(intraEventWriter, pCoef, ppBitStream, pBitOffset, countNonZero, firstPosition, order);
}

zvpStatus zvpiEncodeCoeffsInter_MPEG4_16s1u(const s16* pCoef, u8** ppBitStream, s32* pBitOffset, s32 countNonZero,
                                            s32 rvlcFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  if (countNonZero < 1 || countNonZero > 64) return zvpStatusOutOfRange;
  const ScanOrder order = chooseScan(scan, ScanVertical, scan == -1 ? ScanRaster : ScanZigzag);
  if (rvlcFlag) return encodeCoeffs(interReversibleWriter, pCoef, ppBitStream, pBitOffset, countNonZero, 0, order);
  return encodeCoeffs(interEventWriter, pCoef, ppBitStream, pBitOffset, countNonZero, 0, order);
}
