// Coefficients of one MPEG-4 block (ISO/IEC 14496-2 7.4.1): reading by tables B-16, B-17 and B-23, the last also
// backward, reading with inverse quantization, writing, and the intra DC. Reading forward is one walk over events; what
// varies is the code and what becomes of a level.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "event_walk.h"
#include "mpeg4/coeffs_tables.h"
#include "mpeg4/quant_context.h"
#include "mpeg4/rvlc_tables.h"
#include "shared_tables.h"

namespace zvp::mpeg4 {

enum class Kind { Intra, Inter };

// Rows count neither the coefficient behind the run nor the sign.
ZVP_INLINE RowFields fieldsOf(const EventRow& row) {
  RowFields fields = rowFields(loadAs<u32>(&row));
  ++fields.step;
  ++fields.bits;
  return fields;
}

// ---- the event code, forward ------------------------------------------------------------------------------------

template <Kind K> struct Format {
  using Tables = mpeg4::Tables;
  static constexpr bool reportsOverrun = true;
  static constexpr const Tables& tables = K == Kind::Intra ? tablesB16 : tablesB17;
  static constexpr const Bounds& lmax = K == Kind::Intra ? LMAX_Intra : LMAX_Inter;
  static constexpr const Bounds& rmax = K == Kind::Intra ? RMAX_Intra : RMAX_Inter;

  ZVP_INLINE static RowFields fields(EventRow row) { return fieldsOf(row); }

  // 0: a level above the table's. 10: a run above the table's. 11: LAST, RUN and LEVEL in full, between markers.
  ZVP_INLINE static bool readEscape(ByteReader& bits, const Tables& table, Event& event) {
    const bool levelOffset = bits.read(1) == 0;
    if (!levelOffset && bits.read(1) == 1) return readInFull(bits, event);
    const u32 window = bits.peek(windowBits);
    if (window < firstWindow) return false;
    const EventRow row = table.of(window);
    RowFields taken = fields(row);
    // The escape's own row is taken as it stands in the first type and refused in the second: required.
    if (levelOffset) {
      taken.magnitude += lmax[row.last][row.run];
    } else {
      if (row.level == escapeLevel) return false;
      taken.step += rmax[row.last][row.level];
    }
    event = takeRow(bits, taken);
    return true;
  }

 private:
  // Required: LEVEL 0 is refused in intra blocks only.
  ZVP_INLINE static bool readInFull(ByteReader& bits, Event& event) {
    const u32 last = bits.read(1), run = bits.read(6), firstMarker = bits.read(1), field = bits.read(12);
    const u32 secondMarker = bits.read(1);
    const s32 level = s32(field << 20) >> 20;
    if (!firstMarker || !secondMarker || level == -2048 || (K == Kind::Intra && level == 0)) return false;
    event = {last, s32(run) + 1, level};
    return true;
  }
};

// ---- the reversible code ----------------------------------------------------------------------------------------

// Escapes: 00001, LAST (1), RUN (6), 1, LEVEL (11), 1, 0000, sign.
inline constexpr s32 reversibleEscapeBits = 30;

// Where a word was found: its row, or noRow, and how many bits of it the row does not count.
struct FoundRow {
  u32 row;
  s32 uncounted;
};
// window8 are the first 8 bits, window7 the 7 behind them.
ZVP_INLINE FoundRow findRow(const std::array<u8, 256>& first, const SecondTables& second,
                            const std::array<u8, groups + 1>& offsets, u32 window8, u32 window7) {
  const u32 index = first[window8];
  if (index < firstGroupIndex || index == noRow) return {index, 0};
  const u32 group = index - firstGroupIndex, rest = second[group][window7];
  return {rest == noRow ? noRow : offsets[group] + rest, firstBits};
}

ZVP_INLINE RowFields fieldsOf(const ReversibleRows& rows, const FoundRow& found) {
  RowFields fields = fieldsOf(rows[found.row]);
  fields.bits += found.uncounted;
  return fields;
}

class ReversibleReader {
 public:
  static constexpr bool reportsOverrun = true;
  ZVP_INLINE explicit ReversibleReader(const ReversibleRows& rows) : rows_(rows) {}

  ZVP_INLINE bool read(ByteReader& bits, Event& event) const {
    bits.fillForCode();
    const u32 window = bits.peek(firstBits + secondBits), window8 = window >> secondBits;
    if (window8 < 16) return window8 >= 8 && readEscape(bits, event);
    const FoundRow found =
        findRow(ownvc_mp4_RVLC_ind0, ownvc_mp4_RVLC_iptr, ownvc_mp4_RVLC_offs, window8, window & 127);
    if (found.row == noRow) return false;
    event = takeRow(bits, fieldsOf(rows_, found));
    return true;
  }

 private:
  ZVP_INLINE static bool readEscape(ByteReader& bits, Event& event) {
    bits.fillForEscape();
    const u32 word = bits.read(reversibleEscapeBits);
    const u32 firstMarker = word >> 17 & 1, level = word >> 6 & 2047, secondMarker = word >> 5 & 1, tail = word & 31;
    if (!firstMarker || !secondMarker || level == 0 || tail > 1) return false;
    event = {word >> 24 & 1, s32(word >> 18 & 63) + 1, withSign(s32(level), tail)};
    return true;
  }
  const ReversibleRows& rows_;
};

// The event that ends here and its length, sign included. False where there is none. Nothing is consumed.
ZVP_INLINE bool peekBackward(BackwardByteReader& reader, const ReversibleRows& rows, Event& event, s32& bits) {
  reader.fillForCode();
  const u32 negative = reader.peek(0, 1), window8 = reader.peek(1, firstBits);
  RowFields fields;
  if ((window8 & 15) != 0) {
    const FoundRow found = findRow(ownvc_mp4_RVLCb_ind0, ownvc_mp4_RVLCb_iptr, ownvc_mp4_RVLCb_offs, window8,
                                   reader.peek(1 + firstBits, secondBits));
    if (found.row == noRow) return false;
    fields = fieldsOf(rows, found);
  } else {
    // Behind the sign 0000, marker, LEVEL (11), marker, RUN (6), LAST (1), 00001, in the order of reading.
    reader.fillForEscape();
    const u32 level = reader.peek(6, 11), last = reader.peek(24, 1);
    if (!reader.peek(5, 1) || !reader.peek(17, 1) || level == 0 || reader.peek(25, 5) != 1) return false;
    fields = {last, s32(reader.peek(18, 6)) + 1, s32(level), reversibleEscapeBits};
  }
  event = {fields.last, fields.step, withSign(fields.magnitude, negative)};
  bits = fields.bits;
  return true;
}

// ---- reading ----------------------------------------------------------------------------------------------------

// The kernels go on behind *pIndxLastNonZero. pCoef has been cleared.
template <class Reader> ZVP_INLINE zvpStatus readLevels(const Reader& reader, const u8** ppBitStream, s32* pBitOffset,
                                                        s16* pCoef, s32* pIndxLastNonZero, const Scan& elements) {
  return walkEvents(reader, ppBitStream, pBitOffset, loadAs<s32>(pIndxLastNonZero), pIndxLastNonZero,
                    [&](s32 position, s32 level) { storeAs(pCoef + elements[std::size_t(position)], s16(level)); });
}

template <Kind K> zvpStatus decodeEvents(const u8** ppBitStream, s32* pBitOffset, s16* pCoef, s32* pIndxLastNonZero,
                                         const Scan& elements) {
  return readLevels(TableReader<Format<K>>(Format<K>::tables), ppBitStream, pBitOffset, pCoef, pIndxLastNonZero,
                    elements);
}
inline constexpr auto ownpmp4_DecodeCoeffsIntra_MPEG4_1u16s = decodeEvents<Kind::Intra>;
inline constexpr auto ownpmp4_DecodeCoeffsInter_MPEG4_1u16s = decodeEvents<Kind::Inter>;

inline zvpStatus ownpmp4_DecodeRVLCF_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                 s32* pIndxLastNonZero, const ReversibleRows& rows,
                                                 const Scan& elements) {
  return readLevels(ReversibleReader(rows), ppBitStream, pBitOffset, pCoef, pIndxLastNonZero, elements);
}

// Events come in from position 63 downward, since where the block begins is known only when the final code of the block
// before, the first one with LAST 1, shows up. Then they move to the front; of a block that fails they stay.
inline zvpStatus ownpmp4_DecodeRVLCB_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                 s32* pIndxLastNonZero, const ReversibleRows& rows) {
  BackwardByteReader reader(ppBitStream, pBitOffset);
  const s32 start = loadAs<s32>(pIndxLastNonZero);
  struct Placed {
    s32 position;
    s16 level;
  } placed[64];
  s32 count = 0, position = lastPosition, down = 0;
  zvpStatus status = zvpStatusBadVlcCode;
  Event event;
  for (s32 bits; peekBackward(reader, rows, event, bits); reader.skip(bits)) {
    if (count == 0 && !event.last) break;
    if (count != 0 && event.last) {
      reader.store(ppBitStream, pBitOffset);
      down = position - start;
      position = lastPosition - down;
      status = zvpStatusOk;
      break;
    }
    if (position <= start) break;
    placed[count++] = {position, s16(event.level)};
    position -= event.step;
  }
  // Runs of a damaged block may have led to a place in front of its start, down being negative: then the block keeps
  // what fits, as a forward reader would have found it, and the position past its end is reported.
  for (s32 i = 0; i < count; ++i) {
    const s32 at = placed[i].position - down;
    if (at <= lastPosition) storeAs(pCoef + at, placed[i].level);
  }
  storeAs(pIndxLastNonZero, position);
  return status;
}

// Dequantizes while it reads. spec has been checked, and QP against it.
inline zvpStatus ownpmp4_ReconstructCoeffsInter_MPEG4_1u16s(const u8** ppBitStream, s32* pBitOffset, s16* pCoef,
                                                            s32* pIndxLastNonZero, const Scan& elements,
                                                            const InverseQuant& spec, s32 QP) {
  const ClipRow& bounds = boundsOf(spec);
  const s32 low = bounds.front(), high = bounds.back();
  const TableReader<Format<Kind::Inter>> reader(Format<Kind::Inter>::tables);
  const s32 before = loadAs<s32>(pIndxLastNonZero);
  // Required in both: a level 0, which an escape can carry, goes with the negative ones.
  if (spec.matrixFlag == 0) {
    const s32 step = 2 * QP, offset = QP - (~QP & 1);
    return walkEvents(reader, ppBitStream, pBitOffset, before, pIndxLastNonZero, [&](s32 position, s32 level) {
      const s32 value = level * step + (level > 0 ? offset : -offset);
      storeAs(pCoef + elements[std::size_t(position)], s16(clip(value, low, high)));
    });
  }
  s32 sum = 0;
  const zvpStatus status =
      walkEvents(reader, ppBitStream, pBitOffset, before, pIndxLastNonZero, [&](s32 position, s32 level) {
        const std::size_t element = elements[std::size_t(position)];
        const s32 weight = wrapMul(spec.weights[element], QP);
        const s32 product = level > 0 ? wrapMul(2 * level + 1, weight) : wrapAdd(wrapMul(2 * level - 1, weight), 15);
        const s32 value = clip(product >> 4, low, high);
        sum += value;
        storeAs(pCoef + element, s16(value));
      });
  if (status == zvpStatusOk) controlMismatch(pCoef, (sum & 1) != 0);
  return status;
}

// ---- the intra DC -----------------------------------------------------------------------------------------------

// Longer values are followed by a marker bit.
inline constexpr s32 largestDcSizeWithoutMarker = 8;

enum class Component { Luma, Chroma };

// The size code that begins with the top bit of bits: its length and the size, above 12 for what is no code. Beyond the
// first few codes it is a run of zeros and a 1.
struct DcSize {
  s32 codeBits, size;
};
template <Component C> ZVP_INLINE DcSize readDcSize(u32 bits) {
  const s32 zeros = std::countl_zero(bits);
  const bool second = bits >> 30 & 1, third = bits >> 29 & 1;
  if constexpr (C == Component::Luma) {
    if (zeros == 0) return {2, second ? 1 : 2};
    if (zeros == 1) return {3, third ? 0 : 3};
    return {zeros + 1, zeros + 2};
  } else {
    if (zeros == 0) return {2, second ? 0 : 1};
    return {zeros + 1, zeros + 1};
  }
}

// Three bytes hold every size code, and a fourth is loaded only if the value goes on in it.
template <Component C> zvpStatus decodeDc(const u8** ppBitStream, s32* pBitOffset, s16* pDC) {
  const u8* const p = loadAs<const u8*>(ppBitStream);
  const s32 offset = loadAs<s32>(pBitOffset);
  u32 bits = (u32(p[0]) << 24 | u32(p[1]) << 16 | u32(p[2]) << 8) << offset;
  const auto [codeBits, size] = readDcSize<C>(bits);
  if (size > largestDcSize) return zvpStatusBadVlcCode;
  const bool hasMarker = size > largestDcSizeWithoutMarker;
  const s32 end = offset + codeBits + size + s32(hasMarker);
  if (end > 24) bits |= u32(p[3]) << offset;
  s32 dc = 0;
  if (size != 0) {
    const u32 value = bits << codeBits >> (32 - size);
    dc = s32(value) - (value >> (size - 1) ? 0 : (1 << size) - 1);
  }
  storeAs(pDC, s16(dc));
  if (hasMarker && !(bits << (codeBits + size) >> 31)) return zvpStatusBadVlcCode;  // required: behind the store
  storeAs(ppBitStream, p + (end >> 3));
  storeAs(pBitOffset, end & 7);
  return zvpStatusOk;
}

// The caller keeps to values of 12 bits; of others the size code is that of 12.
ZVP_INLINE void encodeDc(s32 dc, u8** ppBitStream, s32* pBitOffset, const std::array<VlcWord, 13>& sizes) {
  const s32 size = s32(std::bit_width(u32(std::abs(dc))));
  const VlcWord& code = sizes[std::size_t(std::min(size, largestDcSize))];
  ByteWriter bits(ppBitStream, pBitOffset);
  bits.put(code.code, s32(code.length));
  if (size != 0) bits.put(u32(dc > 0 ? dc : dc - 1) & ownvc_BitMask[std::size_t(size)], size);
  if (size > largestDcSizeWithoutMarker) bits.put(1, 1);
  bits.store(ppBitStream, pBitOffset);
}

// ---- writing ----------------------------------------------------------------------------------------------------

struct CodedLevel {
  u32 last;
  s32 run, value;
};

ZVP_INLINE void putLevelWord(ByteWriter& bits, const OwnMp4VlcParams& code, u32 last, s32 run, s32 magnitude,
                             s32 value) {
  putWord(bits, code.pVlc[code.pOffs[last][run] + magnitude - 1], value);
}

// An event code: the table's words and the pairs of a level and the largest run that it has a word for, those of LAST 1
// from lastPair on.
struct EventWriter {
  const OwnMp4VlcParams& code;
  const LevelRun* levelRuns;
  std::size_t lastPair;

  ZVP_INLINE void put(ByteWriter& bits, const CodedLevel& coded) const {
    const auto [last, run, value] = coded;
    const s32 magnitude = std::abs(value);
    const s32* const lmax = code.pLmax[last];
    if (run <= code.maxRun[last]) {
      if (magnitude <= lmax[run]) return putLevelWord(bits, code, last, run, magnitude, value);
      if (magnitude <= 2 * lmax[run]) {
        bits.put(escapeWord << 1, 8);
        return putLevelWord(bits, code, last, run, magnitude - lmax[run], value);
      }
    }
    if (magnitude <= lmax[0]) {
      const LevelRun* pair = levelRuns + (last ? lastPair : 0);
      while (pair->level < magnitude) ++pair;
      const s32 rest = run - pair->run - 1;
      if (rest <= pair->run) {
        bits.put(escapeWord << 2 | 2, 9);
        return putLevelWord(bits, code, last, rest, magnitude, value);
      }
    }
    bits.put(escapeWord << 2 | 3, 9);
    bits.put(last << 20 | u32(run) << 14 | 1u << 13 | (u32(value) & 4095) << 1 | 1, 21);
  }
};

struct ReversibleWriter {
  const OwnMp4VlcParams& code;

  ZVP_INLINE void put(ByteWriter& bits, const CodedLevel& coded) const {
    const auto [last, run, value] = coded;
    const s32 magnitude = std::abs(value);
    if (run <= code.maxRun[last] && magnitude <= code.pLmax[last][run])
      return putLevelWord(bits, code, last, run, magnitude, value);
    const u32 level = u32(magnitude) & 2047;
    bits.put(1u << 25 | last << 24 | u32(run) << 18 | 1u << 17 | level << 6 | 1u << 5 | u32(value < 0),
             reversibleEscapeBits);
  }
};

// Required: without countNonZero coefficients in the block no event gets LAST 1.
template <class Writer> zvpStatus encodeCoeffs(const Writer& writer, const s16* pCoef, u8** ppBitStream,
                                               s32* pBitOffset, s32 countNonZero, s32 firstPosition, ScanOrder scan) {
  CodedCoefficients coefficients(pCoef, scan, firstPosition);
  if (coefficients.empty()) return zvpStatusOk;
  ByteWriter bits(ppBitStream, pBitOffset);
  for (s32 event = 1; event <= countNonZero && !coefficients.empty(); ++event) {
    const s32 run = coefficients.next();
    writer.put(bits, {u32(event == countNonZero), run, coefficients.value()});
  }
  bits.store(ppBitStream, pBitOffset);
  return zvpStatusOk;
}

inline constexpr EventWriter intraEventWriter = {mVLC_TB16, mVLC_RMAX_TB21.data(), lastPairTB21};
inline constexpr EventWriter interEventWriter = {mVLC_TB17, mVLC_RMAX_TB22.data(), lastPairTB22};
inline constexpr ReversibleWriter intraReversibleWriter = {mVLC_TB23a};
inline constexpr ReversibleWriter interReversibleWriter = {mVLC_TB23b};

}  // namespace zvp::mpeg4
