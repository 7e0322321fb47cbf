// Exports of CAVLC and Exp-Golomb decoding.
#include "bit_cursor.h"
#include "entry.h"
#include "h264/cavlc_kernels.h"

using namespace zvp;

namespace {

template <class Element>
zvpStatus decode4x4(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff, Element** ppDstCoeffs, u32 vlcSelect,
                    s16 maxNumCoeff, const s32* const* ppTblCoeffToken, const s32* const* ppTblTotalZeros,
                    const s32* const* ppTblRunBefore, const s32* pScanOrder) {
  if (anyNull(ppBitStream, pBitOffset, ppDstCoeffs, pNumCoeff, ppTblCoeffToken, ppTblTotalZeros, ppTblRunBefore,
              pScanOrder) ||
      *ppBitStream == nullptr || *ppDstCoeffs == nullptr)
    return zvpStatusNullPointer;
  if (maxNumCoeff != 16 && maxNumCoeff != 15) return zvpStatusOutOfRange;
  if (s32(vlcSelect) < 0) return zvpStatusOutOfRange;
  const s32* coeffToken = nullptr;
  if (vlcSelect < 8) {
    coeffToken = ppTblCoeffToken[vlcSelect < 2 ? 0 : vlcSelect < 4 ? 1 : 2];
    if (coeffToken == nullptr) return zvpStatusNullPointer;
  }
  return decodeBlock<Residual4x4>(ppBitStream, pBitOffset,
                                  {coeffToken, ppTblTotalZeros, ppTblRunBefore, pScanOrder, maxNumCoeff}, pNumCoeff,
                                  ppDstCoeffs);
}

template <class Shape, class Element>
ZVP_INLINE zvpStatus decodeChromaDc(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff, Element** ppDstCoeffs,
                                    const s32* pTblCoeffToken, const s32* const* ppTblTotalZeros,
                                    const s32* const* ppTblRunBefore) {
  if (anyNull(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros, ppTblRunBefore) ||
      *ppBitStream == nullptr || *ppDstCoeffs == nullptr)
    return zvpStatusNullPointer;
  return decodeBlock<Shape>(ppBitStream, pBitOffset,
                            {pTblCoeffToken, ppTblTotalZeros, ppTblRunBefore, nullptr, Shape::elements}, pNumCoeff,
                            ppDstCoeffs);
}

template <class Element>
ZVP_INLINE zvpStatus decodeExpGolomb(const u32** ppBitStream, s32* pBitOffset, Element* pDst, bool isSigned) {
  if (anyNull(ppBitStream, pBitOffset, pDst) || *ppBitStream == nullptr) return zvpStatusNullPointer;
  if (u32(*pBitOffset) > 31) return zvpStatusBadArgument;
  BitWindow reader(*ppBitStream, *pBitOffset);
  u32 value;
  if (!readExpGolomb(reader, value)) return zvpStatusBadVlcInput;
  const u32 half = value >> 1;
  *pDst = Element(!isSigned ? value - 1 : value % 2 != 0 ? 0 - half : half);
  *ppBitStream = reader.word();
  *pBitOffset = reader.offset();
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiDecodeCAVLCCoeffs_H264_1u16s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff, s16** ppDstCoeffs,
                                           u32 vlcSelect, s16 maxNumCoeff, const s32* const* ppTblCoeffToken,
                                           const s32* const* ppTblTotalZeros, const s32* const* ppTblRunBefore,
                                           const s32* pScanOrder) {
  return decode4x4(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, vlcSelect, maxNumCoeff, ppTblCoeffToken,
                   ppTblTotalZeros, ppTblRunBefore, pScanOrder);
}

zvpStatus zvpiDecodeCAVLCCoeffs_H264_1u32s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff, s32** ppDstCoeffs,
                                           u32 vlcSelect, s16 maxNumCoeff, const s32* const* ppTblCoeffToken,
                                           const s32* const* ppTblTotalZeros, const s32* const* ppTblRunBefore,
                                           const s32* pScanOrder) {
  return decode4x4(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, vlcSelect, maxNumCoeff, ppTblCoeffToken,
                   ppTblTotalZeros, ppTblRunBefore, pScanOrder);
}

// The only member with a short cut, and with its tests behind it: both required. Neither short code needs the tables.
zvpStatus zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff,
                                                   s16** ppDstCoeffs, const s32* pTblCoeffToken,
                                                   const s32* const* ppTblTotalZeros,
                                                   const s32* const* ppTblRunBefore) {
  if (anyNull(ppBitStream, pBitOffset, pNumCoeff) || *ppBitStream == nullptr) return zvpStatusNullPointer;
  const auto code = peekShortChromaDc(*ppBitStream, *pBitOffset);
  if (code.kind == ShortChromaDc::None)
    return decodeChromaDc<ChromaDc420>(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros,
                                       ppTblRunBefore);
  if (code.kind == ShortChromaDc::OneCoefficient) {
    if (nullCursor(ppDstCoeffs)) return zvpStatusNullPointer;
    const s32 level = code.negative ? -1 : 1;
    storeAs(*ppDstCoeffs, u64(u16(level)) << (16 * code.position));
    *ppDstCoeffs = advanceBytes(*ppDstCoeffs, 8);
  }
  *pNumCoeff = code.kind == ShortChromaDc::OneCoefficient;
  WordCursor cursor{*ppBitStream, *pBitOffset};
  cursor.skip(code.bits);
  *ppBitStream = cursor.word;
  *pBitOffset = cursor.offset;
  return zvpStatusOk;
}

zvpStatus zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff,
                                                   s32** ppDstCoeffs, const s32* pTblCoeffToken,
                                                   const s32* const* ppTblTotalZeros,
                                                   const s32* const* ppTblRunBefore) {
  return decodeChromaDc<ChromaDc420>(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros,
                                     ppTblRunBefore);
}

zvpStatus zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff,
                                                      s16** ppDstCoeffs, const s32* pTblCoeffToken,
                                                      const s32* const* ppTblTotalZeros,
                                                      const s32* const* ppTblRunBefore) {
  return decodeChromaDc<ChromaDc422>(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros,
                                     ppTblRunBefore);
}

zvpStatus zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(const u32** ppBitStream, s32* pBitOffset, s16* pNumCoeff,
                                                      s32** ppDstCoeffs, const s32* pTblCoeffToken,
                                                      const s32* const* ppTblTotalZeros,
                                                      const s32* const* ppTblRunBefore) {
  return decodeChromaDc<ChromaDc422>(ppBitStream, pBitOffset, pNumCoeff, ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros,
                                     ppTblRunBefore);
}

// The 16-bit member looks at the low byte of isSigned, the 32-bit one at all of it: required.
zvpStatus zvpiDecodeExpGolombOne_H264_1u16s(const u32** ppBitStream, s32* pBitOffset, s16* pDst, s32 isSigned) {
  return decodeExpGolomb(ppBitStream, pBitOffset, pDst, u8(isSigned) != 0);
}

zvpStatus zvpiDecodeExpGolombOne_H264_1u32s(const u32** ppBitStream, s32* pBitOffset, s32* pDst, s32 isSigned) {
  return decodeExpGolomb(ppBitStream, pBitOffset, pDst, isSigned != 0);
}
