// Entropy decoding of AVS blocks: one loop for the three kinds, which differ in tables, code orders and bounds. Bit
// reading is serial, so this is scalar.
#include <algorithm>

#include "avs/decode_block_tables.h"
#include "bit_cursor.h"
#include "entry.h"

using namespace zvp;

namespace {

// An Exp-Golomb code of order k with its leading 1, so that its number is the value less 1 << k. The prefix has no
// bound; of a code that does not fit 32 bits the low ones remain.
ZVP_INLINE u32 readCode(WordCursor& cursor, s32 k) {
  u32 bits = cursor.readZeroRun() + u32(k);
  u32 value = bits < 32 ? u32(1) << bits : 0;
  for (; bits > 32; bits -= std::min(bits - 32, 32u)) cursor.skip(s32(std::min(bits - 32, 32u)));
  if (bits > 0) value |= cursor.read(s32(bits));
  return value;
}

struct Event {
  s16 run, level;
};

template <class Code>
zvpStatus decodeBlock(const Code& code, const u32** ppBitStream, s32* pBitOffset, s32* pNumCoeff, s16* pDstCoeffs,
                      s32 scanType) {
  if (nullCursor(ppBitStream) || anyNull(pBitOffset, pNumCoeff, pDstCoeffs)) return zvpStatusNullPointer;
  constexpr u32 positions = 64;
  WordCursor cursor{*ppBitStream, loadAs<s32>(pBitOffset)};
  const AvsVlcStage* stage = code.stages.data();
  const AvsVlcStage* const lastStage = &code.stages.back();
  Event events[positions];  // at the position of their coefficient
  u32 n = 0;
  for (;;) {
    const u32 number = readCode(cursor, stage->k) - (1u << stage->k);
    u32 run, magnitude;
    bool negative;
    if (number < avsCodes) {
      const AvsRunLevel pair = stage->table->codes[number];
      run = pair.run;
      if (run >= positions - n) break;  // the end of block, too: its run is 64
      negative = pair.level < 0;
      magnitude = u32(negative ? -pair.level : pair.level);
    } else {
      run = (number - avsCodes) >> 1;
      negative = (number & 1) != 0;
      const u32 value = readCode(cursor, 0);
      if (run >= positions - n) break;
      const std::size_t bound = std::min<std::size_t>(stage->limit, code.maxRun.size() - 1);
      const u32 reference = s32(run) <= code.maxRun[bound] ? stage->table->refAbsLevel[run] : 1;
      magnitude = reference + value - 1;
    }
    events[n + run] = {s16(run), s16(negative ? 0 - magnitude : magnitude)};
    n += run + 1;
    if (magnitude > stage->limit)
      while (stage != lastStage && magnitude > stage->limit) ++stage;
  }
  *ppBitStream = cursor.word;
  storeAs(pBitOffset, cursor.offset);
  storeAs(pNumCoeff, scanType == 0 ? s32(n) : 63);
  std::memset(pDstCoeffs, 0, positions * sizeof(s16));
  const auto& scan = AVSScan[std::size_t(scanType & 1)];
  // The last event is the lowest frequency.
  s32 position = -1;
  for (s32 i = s32(n) - 1; i >= 0;) {
    const Event event = events[i];
    position += event.run + 1;
    storeAs(pDstCoeffs + scan[std::size_t(position)], event.level);
    i -= event.run + 1;
  }
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiDecodeLumaBlockIntra_AVS_1u16s(const u32** ppBitStream, s32* pBitOffset, s32* pNumCoeff, s16* pDstCoeffs,
                                             s32 scanType) {
  return decodeBlock(avsIntraLuma, ppBitStream, pBitOffset, pNumCoeff, pDstCoeffs, scanType);
}

zvpStatus zvpiDecodeLumaBlockInter_AVS_1u16s(const u32** ppBitStream, s32* pBitOffset, s32* pNumCoeff, s16* pDstCoeffs,
                                             s32 scanType) {
  return decodeBlock(avsInterLuma, ppBitStream, pBitOffset, pNumCoeff, pDstCoeffs, scanType);
}

zvpStatus zvpiDecodeChromaBlock_AVS_1u16s(const u32** ppBitStream, s32* pBitOffset, s32* pNumCoeff, s16* pDstCoeffs,
                                          s32 scanType) {
  return decodeBlock(avsChroma, ppBitStream, pBitOffset, pNumCoeff, pDstCoeffs, scanType);
}
