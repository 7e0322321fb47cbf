// One block from the stream to dequantized coefficients (ISO/IEC 11172-2 2.4.3.7 and 2.4.4, ISO/IEC 13818-2 7.2 to
// 7.4). Intra and non-intra blocks of both standards share the frame; where they differ, the four stand side by side,
// by the template arguments. Bits are serial work: this stays scalar.
//
// Much that looks like an omission is required, since callers see it: bad codes have no test of their own (they read as
// run 241), MPEG-2 does not saturate, and MPEG-1 makes values odd by one of two signs.
#pragma once

#include "mpeg/huffman_kernels.h"
#include "mpeg/scan_kernels.h"

namespace zvp::mpeg {

enum class Standard { MPEG1, MPEG2 };
enum class Coding { Intra, NonIntra };

inline constexpr s32 endOfBlockRun = 254, escapeRun = 255;

ZVP_INLINE s32 signOf(s32 x) { return (x > 0) - (x < 0); }

struct RunLevel {
  s32 run, level;
};

template <Standard standard> ZVP_INLINE RunLevel readEscape(BitWindow& window) {
  if constexpr (standard == Standard::MPEG2) {
    const u32 bits = window.read(18);
    return {s32(bits >> 12), s32(bits << 20) >> 20};
  } else {
    const s32 run = s32(window.read(6));
    const u32 level = window.read(8);
    if ((level & 127) != 0) return {run, s8(level)};
    return {run, s32(window.read(8)) - (level == 128 ? 256 : 0)};
  }
}

template <Standard standard, Coding coding> ZVP_INLINE RunLevel readRunLevel(const s32* table, BitWindow& window) {
  constexpr bool wideLevel = standard == Standard::MPEG2 && coding == Coding::NonIntra;
  const s32 entry = lookUp(table, window);
  const s32 run = runOf(entry);
  if (run == escapeRun) return readEscape<standard>(window);
  return {run, wideLevel ? levelOf(entry) : s8(entry >> 16)};
}

// The intra DC's difference. Sizes that cannot be read, as a bad code's, count as none.
template <Standard standard> ZVP_INLINE s32 readDcDifference(const s32* sizeTable, BitWindow& window) {
  const s32 size = standard == Standard::MPEG1 ? lookUpValue(sizeTable, window) : s16(lookUp(sizeTable, window)) >> 8;
  if (size < 1 || size > 32) return 0;
  const u32 bits = window.read(size);
  return s32(bits >> (size - 1) != 0 ? bits : bits - (~0u >> (32 - size)));
}

// The first coefficient of a non-intra block: no end of block here, so the commonest code is one bit and its sign.
template <Standard standard> ZVP_INLINE RunLevel readFirst(const s32* table, BitWindow& window) {
  if (window.peek(1) == 0) return readRunLevel<standard, Coding::NonIntra>(table, window);
  return {0, window.read(2) == 2 ? 1 : -1};
}

// What makes an even value odd in MPEG-1: its own sign, which leaves 0 alone, or the level's.
enum class OddBy { Value, Level };

template <Standard standard, Coding coding, OddBy oddBy> ZVP_INLINE s16 dequantize(s32 level, s32 weight, s32 scale) {
  const s32 twice = coding == Coding::Intra ? 2 * level : 2 * level + signOf(level);
  const s16 value = s16(wrapMul(wrapMul(twice, weight), scale) / (standard == Standard::MPEG1 ? 16 : 32));
  if constexpr (standard == Standard::MPEG2) return value;
  const s16 odd = (value & 1) != 0 ? value : s16(value - signOf(oddBy == OddBy::Value ? value : level));
  return s16(clip(odd, -2048, 2047));
}

// What all four take, under the names of their arguments.
struct BlockArguments {
  const u32** ppBitStream;
  s32* pBitOffset;
  const s32* pACTable;
  const s32* pScanMatrix;
  s32 QP;
  const s16* pQPMatrix;
  s16* pDstBlock;
  s32* pDstSize;
};

template <Standard standard, Coding coding> class BlockDecoder {
 public:
  ZVP_INLINE explicit BlockDecoder(const BlockArguments& arguments)
      : arguments_(arguments), window_(arguments.ppBitStream, arguments.pBitOffset) {
    clearBlock(arguments.pDstBlock);
  }

  ZVP_INLINE zvpStatus intra(const s32* sizeTable, s16* pDCPred, s32 shift) {
    constexpr s32 scale = standard == Standard::MPEG1 ? 8 : 1;
    const s32 difference = readDcDifference<standard>(sizeTable, window_);
    const s16 dc = s16(wrapAdd(wrapMul(difference, scale), loadAs<s16>(pDCPred)));
    storeAs(pDCPred, dc);
    put(0, s16(wrapShl(dc, shift)));
    return others(0);
  }

  ZVP_INLINE zvpStatus nonIntra(const s32* firstTable) {
    const RunLevel first = readFirst<standard>(firstTable, window_);
    // Required: the matrix is read at this run before anything tests it. What stands there may be no position.
    const s32 position = loadAs<s32>(arguments_.pScanMatrix + first.run);
    if (position >= 0 && position < 64) put(position, dequantized<OddBy::Value>(first.level, position));
    if (standard == Standard::MPEG1 && first.run > 63) return finish(first.run);
    return others(first.run & 63);
  }

 private:
  ZVP_INLINE zvpStatus others(s32 idx) {
    constexpr OddBy oddBy = coding == Coding::Intra ? OddBy::Value : OddBy::Level;
    for (;;) {
      const RunLevel next = readRunLevel<standard, coding>(arguments_.pACTable, window_);
      if (next.run == endOfBlockRun) break;
      idx += next.run + 1;
      if (idx > 63) {
        window_.store(arguments_.ppBitStream, arguments_.pBitOffset);
        return zvpStatusBadVlcInput;
      }
      const s32 position = loadAs<s32>(arguments_.pScanMatrix + idx);
      put(position, dequantized<oddBy>(next.level, position));
    }
    if constexpr (standard == Standard::MPEG2) controlMismatch();
    constexpr bool neverZero = standard == Standard::MPEG2 && coding == Coding::NonIntra;
    return finish(neverZero && idx == 0 ? 1 : idx);
  }

  ZVP_INLINE zvpStatus finish(s32 size) {
    window_.store(arguments_.ppBitStream, arguments_.pBitOffset);
    storeAs(arguments_.pDstSize, size);
    return zvpStatusOk;
  }

  template <OddBy oddBy> ZVP_INLINE s16 dequantized(s32 level, s32 position) const {
    const s32 weight = loadAs<s16>(arguments_.pQPMatrix + position);
    return dequantize<standard, coding, oddBy>(level, weight, arguments_.QP);
  }

  ZVP_INLINE void put(s32 position, s16 value) {
    storeAs(arguments_.pDstBlock + position, value);
    sum_ ^= u32(value);
  }

  // Odd: one less, even: one more.
  ZVP_INLINE void controlMismatch() {
    s16* const last = arguments_.pDstBlock + 63;
    if ((sum_ & 1) == 0) storeAs(last, s16(loadAs<s16>(last) ^ 1));
  }

  BlockArguments arguments_;
  BitWindow window_;
  u32 sum_ = 0;  // of all that was stored; only its last bit is right, and wanted
};

}  // namespace zvp::mpeg
