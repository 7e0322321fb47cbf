#include "entry.h"
#include "h263/coeffs_kernels.h"

using namespace zvp;
using namespace zvp::h263;

zvpStatus zvpiDecodeDCIntra_H263_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pDC) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pDC)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const u32 code = peekByte(*ppBitStream, loadAs<s32>(pBitOffset));
  if (!isDcCode(code)) return zvpStatusBadVlcCode;
  storeAs(pDC, s16(dcOfCode(code)));
  ++*ppBitStream;
  return zvpStatusOk;
}

zvpStatus zvpiDecodeCoeffsInter_H263_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                           s32 modQuantFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const auto decode = modQuantFlag ? ownDecodeCoeffs_ModQ_H263 : ownDecodeCoeffs_H263;
  return decode(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, coefTables, 0, scan);
}

zvpStatus zvpiDecodeCoeffsIntra_H263_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                           s32 advIntraFlag, s32 modQuantFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  const auto decode = modQuantFlag ? ownDecodeCoeffs_ModQ_H263 : ownDecodeCoeffs_H263;
  if (advIntraFlag) return decode(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, advCoefTables, 0, scan);
  const s16 dc = loadAs<s16>(pCoef);
  const zvpStatus status = decode(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, coefTables, 1, scan);
  storeAs(pCoef, dc);
  return status;
}

zvpStatus zvpiReconstructCoeffsInter_H263_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                s32* pIndxLastNonZero, s32 QP, s32 modQuantFlag) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  if (QP < 1 || QP > 31) return zvpStatusBadQuantizer;
  const auto recon = modQuantFlag ? ownReconCoeffs_ModQ_H263 : ownReconCoeffs_H263;
  return recon(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, 0, QP);
}

zvpStatus zvpiReconstructCoeffsIntra_H263_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                s32* pIndxLastNonZero, s32 coded, s32 QP, s32 advIntraFlag, s32 scan,
                                                s32 modQuantFlag) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef, pIndxLastNonZero)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  if (QP < 1 || QP > 31) return zvpStatusBadQuantizer;
  if (advIntraFlag) {
    const auto recon = modQuantFlag ? ownReconCoeffs_AdvIntra_ModQ_H263 : ownReconCoeffs_AdvIntra_H263;
    return recon(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, QP, scan);
  }
  const u32 dcCode = peekByte(*ppBitStream, loadAs<s32>(pBitOffset));
  if (!isDcCode(dcCode)) {
    storeAs(pIndxLastNonZero, -1);
    return zvpStatusBadVlcCode;
  }
  ++*ppBitStream;  // required: a failure behind the DC leaves the cursor there
  zvpStatus status = zvpStatusOk;
  if (coded) {
    const auto recon = modQuantFlag ? ownReconCoeffs_ModQ_H263 : ownReconCoeffs_H263;
    status = recon(ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, 1, QP);
  } else {
    storeAs(pIndxLastNonZero, 0);
  }
  storeAs(pCoef, s16(dcOfCode(dcCode) * 8));
  return status;
}

zvpStatus zvpiEncodeCoeffsInter_H263_16s1u(const s16* pCoef, u8** ppBitStream, s32* pBitOffset, s32 countNonZero,
                                           s32 modQuantFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  if (countNonZero < 1 || countNonZero > 64) return zvpStatusOutOfRange;
  const auto encode = modQuantFlag ? ownEncodeCoeffs_ModQ_H263_16s1u : ownEncodeCoeffs_H263_16s1u;
  return encode(pCoef, ppBitStream, pBitOffset, countNonZero, h263_VLCParams, 0, scan);
}

zvpStatus zvpiEncodeCoeffsIntra_H263_16s1u(const s16* pCoef, u8** ppBitStream, s32* pBitOffset, s32 countNonZero,
                                           s32 advIntraFlag, s32 modQuantFlag, s32 scan) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pCoef)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  if (countNonZero < 1 || countNonZero > 64) return zvpStatusOutOfRange;
  const auto encode = modQuantFlag ? ownEncodeCoeffs_ModQ_H263_16s1u : ownEncodeCoeffs_H263_16s1u;
  return encode(pCoef, ppBitStream, pBitOffset, countNonZero, advIntraFlag ? h263_advVLCParams : h263_VLCParams,
                advIntraFlag ? 0 : 1, scan);
}

zvpStatus zvpiEncodeDCIntra_H263_16s1u(s16 dc, u8** ppBitStream, s32* pBitOffset) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset)) return zvpStatusNullPointer;
  if (badBitOffset(pBitOffset)) return zvpStatusBadBitOffset;
  ByteWriter bits(ppBitStream, pBitOffset);
  bits.put(dc == 128 ? dcCodeFor128 : u8(dc), 8);
  bits.store(ppBitStream, pBitOffset);
  return zvpStatusOk;
}
