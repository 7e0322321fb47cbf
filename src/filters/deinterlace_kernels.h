// The deinterlacers, a row at a time. All arithmetic stays in unsigned bytes but for the two weighted sums, whose
// weights add up to at most 256, so that they fit 16 bits. (A caller's own blend table may hold others: the sum wraps.)
#pragma once

#include "filters/row_chunks.h"
#include "types.h"

namespace zvp {

// (a * wa + b * wb) >> 8 in each lane, of which the low eight bits count; all of it where wa + wb <= 256.
template <class V, class W>
ZVP_INLINE V weightedSum(V a, V b, W aLow, W aHigh, W bLow, W bHigh) {
  const auto wide = [](auto v) { return simd::as<W>(v); };
  const W low = mulLow(wide(widenLow(a)), aLow) + mulLow(wide(widenLow(b)), bLow);
  const W high = mulLow(wide(widenHigh(a)), aHigh) + mulLow(wide(widenHigh(b)), bHigh);
  using S = decltype(widenLow(a));
  return packSaturateU8(simd::as<S>(simd::shiftRight<8>(low)), simd::as<S>(simd::shiftRight<8>(high)));
}

// ((above + below) * side + centre * weight) >> 8 with 2 * side + weight <= 256.
inline void triangleRow(const u8* src, std::ptrdiff_t step, u8* dst, s32 width, u16 side, u16 weight) {
  forChunks(0, width, [&]<int Bytes>(Chunk<Bytes> chunk, std::ptrdiff_t x) {
    using V = typename Chunk<Bytes>::V;
    using W = simd::U16<simd::Lanes<V>::count / 2>;
    const V a = chunk.load(src - step + x), c = chunk.load(src + x), b = chunk.load(src + step + x);
    const W s = simd::splat<W>(side), w = simd::splat<W>(weight);
    const auto blend = [&](auto up, auto mid, auto down) {
      return simd::shiftRight<8>(mulLow(simd::as<W>(up + down), s) + mulLow(simd::as<W>(mid), w));
    };
    using S = decltype(widenLow(a));
    chunk.store(dst + x, packSaturateU8(simd::as<S>(blend(widenLow(a), widenLow(c), widenLow(b))),
                                        simd::as<S>(blend(widenHigh(a), widenHigh(c), widenHigh(b)))));
  });
}

// The mean along the direction, of the two diagonals and the vertical, in which the rows differ least: a diagonal must
// beat the vertical, and of equal diagonals the one that falls to the left is asked.
template <int Bytes>
ZVP_INLINE auto edgeDirected(Chunk<Bytes> chunk, const u8* above, const u8* below) {
  using V = typename Chunk<Bytes>::V;
  const V a0 = chunk.load(above), al = chunk.load(above - 1), ar = chunk.load(above + 1);
  const V b0 = chunk.load(below), bl = chunk.load(below - 1), br = chunk.load(below + 1);
  const V falling = absDiff(al, br), rising = absDiff(ar, bl);
  const V diagonal = select(less(falling, rising), average(al, br), average(ar, bl));
  return select(less(min(falling, rising), absDiff(a0, b0)), diagonal, average(a0, b0));
}

// Columns 1 .. width - 2 between two rows; the outer columns are copied from row.
inline void edgeDirectedRow(const u8* above, const u8* below, const u8* row, u8* dst, s32 width) {
  dst[0] = row[0];
  forChunks(1, std::ptrdiff_t(width) - 1, [&]<int Bytes>(Chunk<Bytes> chunk, std::ptrdiff_t x) {
    chunk.store(dst + x, edgeDirected(chunk, above + x, below + x));
  });
  dst[width - 1] = row[width - 1];
}

// The median of three rows where it is at least threshold away from the middle one.
inline void medianRow(const u8* src, std::ptrdiff_t step, u8* dst, s32 width, s32 threshold) {
  forChunks(0, width, [&]<int Bytes>(Chunk<Bytes> chunk, std::ptrdiff_t x) {
    using V = typename Chunk<Bytes>::V;
    const V c = chunk.load(src + x), m = median(chunk.load(src - step + x), c, chunk.load(src + step + x));
    chunk.store(dst + x, select(Below<V>(threshold)(absDiff(m, c)), c, m));
  });
}

// One row of the three-frame blend and what it looks at: the rows above and below of the previous, current and next
// frame, the row itself in the current frame, and in the frame that it is compared with.
struct BlendRow {
  const u8 *previousAbove, *previousBelow, *above, *below, *nextAbove, *nextBelow, *row, *other;
};
struct BlendWeights {
  const u16 *ofSpatial, *ofMedian;  // by motion
  s32 lowMotion, highMotion;
};

template <int Bytes>
ZVP_INLINE auto blendMotion(Chunk<Bytes> chunk, const BlendRow& in, std::ptrdiff_t x) {
  const auto at = [&](const u8* p) { return chunk.load(p + x); };
  const auto above = at(in.above), below = at(in.below);
  const auto field = average(average(absDiff(at(in.previousAbove), above), absDiff(at(in.nextAbove), above)),
                             average(absDiff(at(in.previousBelow), below), absDiff(at(in.nextBelow), below)));
  return max(field, absDiff(at(in.row), at(in.other)));
}

// A column at the frame's side: no diagonals and no motion bounds; the spatial value is one neighbour.
inline u8 blendSide(const BlendRow& in, const BlendWeights& weights, std::ptrdiff_t x, bool topField) {
  const Chunk<1> chunk;
  const u32 motion = low32(blendMotion(chunk, in, x)) & 255;
  const u32 med = low32(median(chunk.load(in.above + x), chunk.load(in.row + x), chunk.load(in.below + x))) & 255;
  const u32 spatial = topField ? in.below[x] : in.above[x];
  return u8((spatial * weights.ofSpatial[motion] + med * weights.ofMedian[motion]) >> 8);
}

inline void blendRow(const BlendRow& in, u8* dst, s32 width, const BlendWeights& weights, bool topField) {
  dst[0] = blendSide(in, weights, 0, topField);
  forChunks(1, std::ptrdiff_t(width) - 1, [&]<int Bytes>(Chunk<Bytes> chunk, std::ptrdiff_t x) {
    using V = typename Chunk<Bytes>::V;
    constexpr int lanes = simd::Lanes<V>::count;
    using W = simd::U16<lanes / 2>;
    const V motion = blendMotion(chunk, in, x);
    const V med = median(chunk.load(in.above + x), chunk.load(in.row + x), chunk.load(in.below + x));
    const V low = Below<V>(weights.lowMotion)(motion);
    if (allSet(low)) return chunk.store(dst + x, med);
    const V spatial = edgeDirected(chunk, in.above + x, in.below + x);
    // Not above the upper bound; the bound plus one may not wrap.
    const V notHigh = Below<V>(weights.highMotion < 255 ? weights.highMotion + 1 : 256)(motion);
    V result = select(low, med, spatial);
    const V blended = andNot(low, notHigh);
    if (!noneSet(blended)) {
      u8 motions[lanes];
      simd::store(motions, motion);
      // In the order in which widening splits the lanes: the low and the high eight bytes of each 16.
      const auto lookUp = [&](const u16* byMotion, W (&halves)[2]) {
        u16 looked[lanes];
        for (int i = 0; i < lanes; ++i) looked[i] = byMotion[motions[i]];
        for (int i = 0; i < lanes; i += 16)
          for (int half = 0; half < 2; ++half)
            std::memcpy(reinterpret_cast<u8*>(&halves[half]) + i, looked + i + 8 * half, 16);
      };
      W ofSpatial[2], ofMedian[2];
      lookUp(weights.ofSpatial, ofSpatial);
      lookUp(weights.ofMedian, ofMedian);
      result = select(blended, weightedSum(spatial, med, ofSpatial[0], ofSpatial[1], ofMedian[0], ofMedian[1]), result);
    }
    chunk.store(dst + x, result);
  });
  dst[width - 1] = blendSide(in, weights, std::ptrdiff_t(width) - 1, topField);
}

// One row of the motion-adaptive member: four frames at the row, and which of them is the kept field's.
struct MotionRow {
  const u8* frame[4];
  std::ptrdiff_t step;
  int kept;  // 1 or 2; the sample comes from the frame before it
};

// How far the neighbours may lie on the same side of a sample before it counts as an artifact.
inline constexpr u8 stillGuard = 30, movedGuard = 6;
// The guard's upper end stops at nominal white and its lower end at 0: the asymmetry is required.
inline constexpr u8 guardCeiling = 235;

inline void motionAdaptiveRow(const MotionRow& in, u8* dst, s32 width, s32 threshold, bool artifactProtection) {
  forChunks(0, width, [&]<int Bytes>(Chunk<Bytes> chunk, std::ptrdiff_t x) {
    using V = typename Chunk<Bytes>::V;
    V up[4], down[4];
    for (int i = 0; i < 4; ++i) {
      up[i] = chunk.load(in.frame[i] - in.step + x);
      down[i] = chunk.load(in.frame[i] + in.step + x);
    }
    const V sample = chunk.load(in.frame[in.kept - 1] + x);
    V motion = absDiff(sample, chunk.load(in.frame[in.kept] + x));
    constexpr int pairs[5][2] = {{1, 0}, {1, 2}, {1, 3}, {0, 2}, {2, 3}};
    for (const auto& [i, j] : pairs) motion = max(motion, max(absDiff(down[i], down[j]), absDiff(up[i], up[j])));
    const V still = Below<V>(threshold)(motion);

    const V guard = select(still, simd::splat<V>(stillGuard), simd::splat<V>(movedGuard));
    const V low = subSaturate(sample, guard);
    const V high = min(addSaturate(sample, guard), simd::splat<V>(guardCeiling));
    const V u = in.kept == 2 ? up[2] : up[1], d = in.kept == 2 ? down[2] : down[1];
    V outside = less(max(u, d), low) | less(high, min(u, d));
    if (!artifactProtection) outside = andNot(still, outside);
    chunk.store(dst + x, select(outside, average(u, d), sample));
  });
}

}  // namespace zvp
