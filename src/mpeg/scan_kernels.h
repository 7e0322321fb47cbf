// Raster order to scan order and back. A gather of 16-bit elements through a byte table is serial work: it stays
// scalar.
#pragma once

#include <array>
#include <utility>

#include "scan_tables.h"
#include "simd.h"

namespace zvp::mpeg {

// By the scan argument; whatever is neither 1 nor 2 means the zigzag.
ZVP_INLINE const Scan& scanTable(s32 scan) {
  return scan == 2 ? ownvc_AltScanH : scan == 1 ? ownvc_AltScanV : ownvc_Zigzag;
}

ZVP_INLINE void clearBlock(s16* block) {
  for (int i = 0; i < 64; i += simd::registerBytes / 2)
    simd::store(block + i, simd::zero<simd::S16<simd::registerBytes / 2>>());
}

// The table is a template argument so that the offsets become constants of a straight run of moves.
template <const Scan& table>
void scanAll(const s16* src, s16* dst) {
  [&]<std::size_t... i>(std::index_sequence<i...>) { (storeAs(dst + i, loadAs<s16>(src + table[i])), ...); }
  (std::make_index_sequence<64>());
}
inline void scanAll(const s16* src, s16* dst, s32 scan) {
  if (scan == 2) return scanAll<ownvc_AltScanH>(src, dst);
  if (scan == 1) return scanAll<ownvc_AltScanV>(src, dst);
  scanAll<ownvc_Zigzag>(src, dst);
}

// The first count non-zero elements; what would come behind them is dropped. Ends at the block's end too, should the
// count exceed what the block holds.
inline void scanSome(const s16* src, s16* dst, const Scan& table, s32 count) {
  clearBlock(dst);
  for (std::size_t i = 0; i < 64 && count > 0; ++i) {
    const s16 value = loadAs<s16>(src + table[i]);
    storeAs(dst + i, value);
    count -= value != 0;
  }
}

inline void unscan(const s16* src, s16* dst, const Scan& table, s32 last) {
  clearBlock(dst);
  for (std::size_t i = 0; i <= std::size_t(last); ++i) storeAs(dst + table[i], loadAs<s16>(src + i));
}

}  // namespace zvp::mpeg
