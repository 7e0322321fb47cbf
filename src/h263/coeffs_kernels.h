// Coefficients of one H.263 block: reading, reading with dequantization, writing. All members are one walk over events.
// What varies: the code (TCOEF, or INTRA TCOEF of Annex I), the first position, the escape (Annex T extends it), and
// what becomes of a level.
#pragma once

#include <cstdlib>

#include "event_walk.h"
#include "h263/coeffs_tables.h"

namespace zvp::h263 {

// The escape word is followed by LAST (1), RUN (6) and LEVEL (8).
enum class Escape {
  Plain,
  ModQuant,  // LEVEL -128: the level follows in 11 bits, the 5 low ones first
};

inline constexpr s32 extendedLevel = -128;

template <Escape Kind> struct Format {
  using Tables = h263::Tables;
  static constexpr bool reportsOverrun = false;

  ZVP_INLINE static RowFields fields(u32 row) { return rowFields(row); }
  ZVP_INLINE static bool readEscape(ByteReader& bits, const Tables&, Event& event) {
    const u32 last = bits.read(1), run = bits.read(6);
    s32 level = s8(bits.read(8));
    if (level == 0) return false;
    if (level == extendedLevel) {
      if (Kind == Escape::Plain) return false;
      bits.fillForCode();
      const u32 low = bits.read(5), high = bits.read(6);
      level = s32((high << 5 | low) << 21) >> 21;
    }
    event = {last, s32(run) + 1, level};
    return true;
  }
};

// ---- reading ----------------------------------------------------------------------------------------------------

template <Escape Kind> zvpStatus decodeCoeffs(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                              s32* pIndxLastNonZero, const Tables& tables, s32 firstPosition,
                                              s32 scan) {
  const Scan& elements = *scanOf[std::size_t(chooseScan(scan, ScanHorizontal, ScanRaster))];
  clearBlock(pCoef);
  return walkEvents(TableReader<Format<Kind>>(tables), ppBitStream, pBitOffset, firstPosition - 1, pIndxLastNonZero,
                    [&](s32 position, s32 level) { storeAs(pCoef + elements[std::size_t(position)], s16(level)); });
}

inline constexpr auto ownDecodeCoeffs_H263 = decodeCoeffs<Escape::Plain>;
inline constexpr auto ownDecodeCoeffs_ModQ_H263 = decodeCoeffs<Escape::ModQuant>;

// H.263 6.2.1. Only the plain mode clips; a level 0 counts as positive.
template <Escape Kind> zvpStatus reconCoeffs(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                             s32 firstPosition, s32 QP) {
  const s32 step = 2 * QP, offset = QP - (~QP & 1);
  clearBlock(pCoef);
  return walkEvents(TableReader<Format<Kind>>(coefTables), ppBitStream, pBitOffset, firstPosition - 1, pIndxLastNonZero,
                    [&](s32 position, s32 level) {
                      s32 value = level * step + (level < 0 ? -offset : offset);
                      if (Kind == Escape::Plain) value = clip(value, -2048, 2047);
                      storeAs(pCoef + ownvc_Zigzag[std::size_t(position)], s16(value));
                    });
}

inline constexpr auto ownReconCoeffs_H263 = reconCoeffs<Escape::Plain>;
inline constexpr auto ownReconCoeffs_ModQ_H263 = reconCoeffs<Escape::ModQuant>;

// Annex I.3: no offset, and no clipping here.
template <Escape Kind> zvpStatus reconCoeffsAdvIntra(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                     s32* pIndxLastNonZero, s32 QP, s32 scan) {
  const Scan& elements = *scanOf[std::size_t(chooseScan(scan, ScanHorizontal, ScanZigzag))];
  const s32 step = 2 * QP;
  clearBlock(pCoef);
  return walkEvents(
      TableReader<Format<Kind>>(advCoefTables), ppBitStream, pBitOffset, -1, pIndxLastNonZero,
      [&](s32 position, s32 level) { storeAs(pCoef + elements[std::size_t(position)], s16(level * step)); });
}

inline constexpr auto ownReconCoeffs_AdvIntra_H263 = reconCoeffsAdvIntra<Escape::Plain>;
inline constexpr auto ownReconCoeffs_AdvIntra_ModQ_H263 = reconCoeffsAdvIntra<Escape::ModQuant>;

// ---- the intra DC -----------------------------------------------------------------------------------------------

inline constexpr u32 dcCodeFor128 = 255;

// The 8 bits at the cursor. The second byte is loaded only if they reach into it.
ZVP_INLINE u32 peekByte(const u8* p, s32 offset) {
  return offset == 0 ? *p : (u32(p[0]) << 8 | p[1]) >> (8 - offset) & 255;
}
ZVP_INLINE bool isDcCode(u32 code) { return (code & 127) != 0; }
ZVP_INLINE s32 dcOfCode(u32 code) { return code == dcCodeFor128 ? 128 : s32(code); }

// ---- writing ----------------------------------------------------------------------------------------------------

template <Escape Kind> ZVP_INLINE void putEscape(ByteWriter& bits, u32 last, s32 run, s32 magnitude, s32 value) {
  const bool extended = Kind == Escape::ModQuant && magnitude >= 128;
  const u32 level = extended ? u8(extendedLevel) : u8(value);
  bits.put(escapeWord << 15 | last << 14 | u32(run) << 8 | level, 22);
  if (extended) bits.put((u32(value) & 31) << 6 | (u32(value) >> 5 & 63), 11);
}

template <Escape Kind>
ZVP_INLINE void putEvent(ByteWriter& bits, const OwnH263VlcParams& code, u32 last, s32 run, s32 magnitude, s32 value) {
  const s32* const offsets = last ? code.pOffsLast : code.pOffs;
  if (run <= (last ? code.maxRunLast : code.maxRun)) {
    const s32 row = offsets[run] + magnitude - 1;
    if (row < offsets[run + 1]) return putWord(bits, code.pVlc[row], value);
  }
  putEscape<Kind>(bits, last, run, magnitude, value);
}

// Required where countNonZero is above the number of coefficients: the one that was written last comes again, with
// LAST 1, the zeros behind it as its run, and the value at position 63 for its sign and for the escape's level.
template <Escape Kind> zvpStatus encodeCoeffs(const s16* pCoef, u8** ppBitStream, s32* pBitOffset, s32 countNonZero,
                                              const OwnH263VlcParams& code, s32 firstPosition, s32 scan) {
  CodedCoefficients coefficients(pCoef, chooseScan(scan, ScanHorizontal, ScanRaster), firstPosition);
  if (coefficients.empty()) return zvpStatusOk;
  ByteWriter bits(ppBitStream, pBitOffset);
  s32 run, value, magnitude;
  for (s32 event = 1;; ++event) {
    run = coefficients.next();
    value = coefficients.value();
    magnitude = std::abs(value);
    if (event == countNonZero) break;
    putEvent<Kind>(bits, code, 0, run, magnitude, value);
    if (coefficients.empty()) {
      run = lastPosition - coefficients.position();
      value = coefficients.valueAt(lastPosition);
      break;
    }
  }
  putEvent<Kind>(bits, code, 1, run, magnitude, value);
  bits.store(ppBitStream, pBitOffset);
  return zvpStatusOk;
}

inline constexpr auto ownEncodeCoeffs_H263_16s1u = encodeCoeffs<Escape::Plain>;
inline constexpr auto ownEncodeCoeffs_ModQ_H263_16s1u = encodeCoeffs<Escape::ModQuant>;

}  // namespace zvp::h263
