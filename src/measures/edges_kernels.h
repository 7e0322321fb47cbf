// Whether a 16x16 block holds edges: positions of its top left 15x15 that differ from the sample to the right or from
// the one below by more than a limit are counted row by row.
#pragma once

#include "entry.h"
#include "simd.h"

namespace zvp::measures {

// 15 bytes, of which the eighth is loaded twice.
ZVP_INLINE simd::U8<16> firstFifteen(const u8* p) {
  using Row = simd::U8<16>;
  return simd::loadBytes<Row, 8>(p) | simd::shiftBytesUp<7>(simd::loadBytes<Row, 8>(p + 7));
}

// Whether more than limit positions count. Rows below the one that settles it are not read, nor is the bottom right
// sample, which no position needs.
inline bool hasEdges(const u8* src, std::ptrdiff_t step, u8 difference, u8 limit) {
  using Row = simd::U8<16>;
  const Row bound = simd::splat<Row>(difference);
  const Row one = simd::shiftBytesDown<1>(simd::splat<Row>(1));  // in lanes 0 to 14
  Row row = simd::load<Row>(src);
  u64 counted = 0;  // at most 225, so that a byte would do
  for (int y = 0; y < 15; ++y) {
    src += step;
    const Row below = y < 14 ? simd::load<Row>(src) : firstFifteen(src);
    const Row right = simd::shiftBytesDown<1>(row);
    const Row over = subSaturate(max(absDiff(row, right), absDiff(row, below)), bound);
    counted += reduceAdd(sumAbsDiff(andNot(equal(over, simd::zero<Row>()), one), simd::zero<Row>()));
    if (counted > limit) return true;
    row = below;
  }
  return false;
}

}  // namespace zvp::measures
