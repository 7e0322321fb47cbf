// The walk over the (LAST, RUN, LEVEL) events of a block, shared by H.263 and MPEG-4, reading and writing.
//
// A reader of events and what is done with a level are parameters: the codes of H.263 and of MPEG-4 tables B-16, B-17
// and B-23 differ in how one event is read, decoding and reconstruction in what is stored. Bit reading is serial, so
// the walk is scalar.
#pragma once

#include <bit>

#include "byte_cursor.h"
#include "event_codes.h"
#include "scan_tables.h"
#include "simd.h"

namespace zvp {

inline constexpr s32 lastPosition = 63;

// ---- scans ------------------------------------------------------------------------------------------------------

enum ScanOrder : s32 { ScanZigzag, ScanVertical, ScanHorizontal, ScanRaster };

constexpr Scan rasterScan() {
  Scan scan{};
  for (std::size_t i = 0; i < scan.size(); ++i) scan[i] = u8(i);
  return scan;
}
constexpr Scan inverseScan(const Scan& scan) {
  Scan inverse{};
  for (std::size_t i = 0; i < scan.size(); ++i) inverse[scan[i]] = u8(i);
  return inverse;
}
inline constexpr Scan scanRaster = rasterScan();
// By ScanOrder: from position to element, and back.
inline constexpr std::array<const Scan*, 4> scanOf = {&ownvc_Zigzag, &ownvc_AltScanV, &ownvc_AltScanH, &scanRaster};
inline constexpr std::array<Scan, 4> positionsOf = {inverseScan(ownvc_Zigzag), inverseScan(ownvc_AltScanV),
                                                    inverseScan(ownvc_AltScanH), scanRaster};

// Members agree on 0 to 2 as far as they know them; what any other value means is theirs.
ZVP_INLINE ScanOrder chooseScan(s32 scan, ScanOrder largest, ScanOrder otherwise) {
  return u32(scan) <= u32(largest) ? ScanOrder(scan) : otherwise;
}

// ---- reading ----------------------------------------------------------------------------------------------------

struct Event {
  u32 last;   // 0 or 1
  s32 step;   // RUN + 1
  s32 level;  // with its sign
};

ZVP_INLINE s32 withSign(s32 magnitude, u32 negative) { return (magnitude ^ -s32(negative)) + s32(negative); }

// What a row of a look-up table says. bits counts the word and the sign behind it.
struct RowFields {
  u32 last;
  s32 step, magnitude, bits;
};
// Rows hold four bytes: LAST, the run, the level and the length. Taken apart in a register, which compilers do not do
// by themselves. Whether step and bits are counted already is the row's.
ZVP_INLINE RowFields rowFields(u32 row) {
  return {row & 255, s32(row >> 8 & 255), s32(row >> 16 & 255), s32(row >> 24)};
}

ZVP_INLINE Event takeRow(ByteReader& bits, const RowFields& row) {
  const Event event = {row.last, row.step, withSign(row.magnitude, bits.peekBit(row.bits - 1))};
  bits.skip(row.bits);
  return event;
}

// Reads an event of a code with look-up tables. Format brings the row's layout, fields(row), and the reader of what
// follows the escape word, with 25 bits at hand, readEscape(bits, tables, event); both readers return false on what is
// no event.
template <class Format> class TableReader {
 public:
  using Tables = typename Format::Tables;
  static constexpr bool reportsOverrun = Format::reportsOverrun;
  ZVP_INLINE explicit TableReader(const Tables& tables) : tables_(tables) {}

  ZVP_INLINE bool read(ByteReader& bits, Event& event) const {
    bits.fillForCode();
    const u32 window = bits.peek(windowBits);
    if (window >= Tables::firstHigh) [[likely]] {
      event = takeRow(bits, Format::fields(tables_.ofHigh(window)));
      return true;
    }
    if (window >> (windowBits - eventEscapeBits) == escapeWord) {
      bits.fillForEscape();
      bits.skip(eventEscapeBits);
      return Format::readEscape(bits, tables_, event);
    }
    if (window < firstWindow) return false;
    event = takeRow(bits, Format::fields(tables_.ofRest(window)));
    return true;
  }

 private:
  const Tables& tables_;
};

// Reads events up to the one with LAST 1 and hands each coefficient to store(position, level). Starts behind
// `position`. The cursor moves on success only. *pIndxLastNonZero becomes the position reached; if an event leads past
// the block, it is not stored, and whether its position is reported is the reader's to say (H.263 does not, MPEG-4
// does).
template <class Reader, class Store> ZVP_INLINE zvpStatus walkEvents(const Reader& reader, const u8** ppBitStream,
                                                                     s32* pBitOffset, s32 position,
                                                                     s32* pIndxLastNonZero, Store store) {
  ByteReader bits(ppBitStream, pBitOffset);
  zvpStatus status = zvpStatusBadVlcCode;
  Event event;
  while (reader.read(bits, event)) {
    const s32 next = position + event.step;
    if (next > lastPosition) {
      if (Reader::reportsOverrun) position = next;
      break;
    }
    position = next;
    store(position, event.level);
    if (event.last) {
      bits.store(ppBitStream, pBitOffset);
      status = zvpStatusOk;
      break;
    }
  }
  storeAs(pIndxLastNonZero, position);
  return status;
}

ZVP_INLINE void clearBlock(s16* pCoef) { std::memset(pCoef, 0, 64 * sizeof(s16)); }

// ---- writing ----------------------------------------------------------------------------------------------------

// Bit p says that the coefficient at position p is not 0.
ZVP_INLINE u64 codedPositions(const s16* pCoef, ScanOrder order) {
  u64 elements = 0;
  for (int i = 0; i < 64; i += 16) {
    const auto a = simd::load<simd::S16<8>>(pCoef + i), b = simd::load<simd::S16<8>>(pCoef + i + 8);
    const auto zeros = equal(packSaturateS8(a, b), simd::zero<simd::S8<16>>());
    elements |= u64(u16(~signBits(zeros))) << i;
  }
  if (order == ScanRaster) return elements;
  const Scan& positions = positionsOf[std::size_t(order)];
  u64 coded = 0;
  for (; elements != 0; elements &= elements - 1) coded |= u64(1) << positions[std::size_t(std::countr_zero(elements))];
  return coded;
}

// The coefficients of a block that are not 0, in coded order.
class CodedCoefficients {
 public:
  ZVP_INLINE CodedCoefficients(const s16* pCoef, ScanOrder order, s32 firstPosition)
      : coef_(pCoef),
        scan_(*scanOf[std::size_t(order)]),
        rest_(codedPositions(pCoef, order) >> firstPosition << firstPosition),
        position_(firstPosition - 1) {}

  ZVP_INLINE bool empty() const { return rest_ == 0; }
  // Moves on. Returns the run of zeros in front; value() is the coefficient.
  ZVP_INLINE s32 next() {
    const s32 position = std::countr_zero(rest_);
    const s32 run = position - position_ - 1;
    rest_ &= rest_ - 1;
    position_ = position;
    return run;
  }
  ZVP_INLINE s32 value() const { return valueAt(position_); }
  ZVP_INLINE s32 valueAt(s32 position) const { return loadAs<s16>(coef_ + scan_[std::size_t(position)]); }
  ZVP_INLINE s32 position() const { return position_; }

 private:
  const s16* coef_;
  const Scan& scan_;
  u64 rest_;      // the positions ahead
  s32 position_;  // of the last one passed
};

// A word of a code, its sign in place.
ZVP_INLINE void putWord(ByteWriter& bits, const VlcWord& word, s32 value) {
  bits.put(word.code | u32(value < 0), s32(word.length));
}

}  // namespace zvp
