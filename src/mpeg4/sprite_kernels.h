// Blocks predicted through a warp (ISO/IEC 14496-2 7.8.5, 7.8.6), global vectors (7.8.7), brightness.
//
// A warp is a walk that tells where in the sprite each next sample comes from, in 1/16 sample: affine or perspective.
// One reading serves all: bilinear, the sprite's border samples standing in for what lies beyond. It works on four
// samples at a time, whose neighbours are gathered one by one. A translation needs no walk: it reads whole rows.
#pragma once

#include <algorithm>
#include <array>

#include "mpeg4/sprite_record.h"
#include "row_pieces.h"
#include "simd.h"

namespace zvp::mpeg4 {

using simd::F64;
using simd::S16;
using simd::S32;
using simd::U16;
using simd::U64;
using simd::U8;

struct Plane {
  const u8* src;
  std::ptrdiff_t srcStep;
  u8* dst;
  std::ptrdiff_t dstStep;
};

// Weights of the four neighbours of four samples, as pairs: of the upper left and right, of the lower left and right.
struct BilinearWeights {
  S16<8> upper, lower;
  ZVP_INLINE BilinearWeights(S32<4> px, S32<4> py) {
    const auto fraction = simd::splat<S32<4>>(15);
    const auto tx = px & fraction, ty = py & fraction;
    const auto horizontal = simd::as<S16<8>>((simd::splat<S32<4>>(16) - tx) | simd::shiftLeft<16>(tx));
    lower = mulLow(horizontal, simd::as<S16<8>>(ty | simd::shiftLeft<16>(ty)));
    upper = simd::shiftLeft<4>(horizontal) - lower;
  }
};

// The samples of two rows beside four positions: left and right of each in turn.
struct Neighbours {
  U8<16> upper, lower;
};

// Where four positions meet the sprite, worked out once for all planes.
class Gather {
 public:
  ZVP_INLINE Gather(S32<4> px, S32<4> py, zvpSize sprite) : sprite_(sprite) {
    const auto column = simd::shiftRight<4>(px), row = simd::shiftRight<4>(py);
    simd::store(column_, column);
    simd::store(row_, row);
    const auto negativeOutside = column | row | (simd::splat<S32<4>>(sprite.width - 2) - column) |
                                 (simd::splat<S32<4>>(sprite.height - 2) - row);
    inside_ = (signBits(negativeOutside) & 0x8888) == 0;
  }
  ZVP_INLINE Neighbours from(const u8* src, std::ptrdiff_t step) const {
    u64 upper = 0, lower = 0;
    if (inside_) [[likely]] {
#pragma GCC unroll 4
      for (int i = 0; i < 4; ++i) {
        const u8* p = src + row_[i] * step + column_[i];
        upper |= u64(loadAs<u16>(p)) << 16 * i;
        lower |= u64(loadAs<u16>(p + step)) << 16 * i;
      }
    } else {
      for (int i = 0; i < 4; ++i) {
        const s32 left = clip(column_[i], 0, sprite_.width - 1), right = clip(column_[i] + 1, 0, sprite_.width - 1);
        const u8* above = src + clip(row_[i], 0, sprite_.height - 1) * step;
        const u8* below = src + clip(row_[i] + 1, 0, sprite_.height - 1) * step;
        upper |= u64(above[left] | above[right] << 8) << 16 * i;
        lower |= u64(below[left] | below[right] << 8) << 16 * i;
      }
    }
    return {simd::fromLow64<U8<16>>(upper), simd::fromLow64<U8<16>>(lower)};
  }

 private:
  zvpSize sprite_;
  s32 column_[4], row_[4];
  bool inside_;  // both neighbours of each, in both directions, are samples of the sprite
};

ZVP_INLINE S32<4> blend(const Neighbours& n, const BilinearWeights& w, S32<4> rounding) {
  return simd::shiftRight<8>(mulAddPairs(widenLow(n.upper), w.upper) + mulAddPairs(widenLow(n.lower), w.lower) +
                             rounding);
}

// Fills the planes' blocks from where the walk leads. The planes share their geometry and so the walk.
template <std::size_t Planes, class Walk> ZVP_INLINE void warpAlong(Walk walk, const std::array<Plane, Planes>& planes,
                                                                    zvpSize block, zvpSize sprite, s32 bilinearRound) {
  const auto rounding = simd::splat<S32<4>>(bilinearRound);
  for (s32 y = 0; y < block.height; ++y, walk.nextRow()) {
    auto inRow = walk.row();
    for (s32 x = 0; x < block.width; x += 8) {
      S32<4> result[Planes][2];
#pragma GCC unroll 2
      for (int half = 0; half < 2; ++half) {
        S32<4> px, py;
        inRow.next(px, py);
        const BilinearWeights weights(px, py);
        const Gather gather(px, py, sprite);
        for (std::size_t p = 0; p < Planes; ++p)
          result[p][half] = blend(gather.from(planes[p].src, planes[p].srcStep), weights, rounding);
      }
      for (std::size_t p = 0; p < Planes; ++p) {
        const auto words = packSaturateS16(result[p][0], result[p][1]);
        const auto bytes = packSaturateU8(words, words);
        u8* dst = planes[p].dst + y * planes[p].dstStep + x;
        if (block.width - x >= 8) {
          simd::storeBytes<8>(dst, bytes);
        } else {
          u8 last[8];
          simd::storeBytes<8>(last, bytes);
          std::memcpy(dst, last, std::size_t(block.width - x));
        }
      }
    }
  }
}

// ---- affine -----------------------------------------------------------------------------------------------------

// A position in fixed point and its increments for a column and for a row.
struct AffineMap {
  s32 x, y;
  s32 columnX, columnY, rowX, rowY;
  s32 shift;  // to 1/16 sample
};

class AffineWalk {
 public:
  ZVP_INLINE AffineWalk(const AffineMap& map, s32 warpingAccuracy)
      : x_(firstFour(map.x, map.columnX)),
        y_(firstFour(map.y, map.columnY)),
        columnsX_(splat(wrapMul(4, map.columnX))),
        columnsY_(splat(wrapMul(4, map.columnY))),
        rowX_(splat(map.rowX)),
        rowY_(splat(map.rowY)),
        mask_(splat(s32(~u32(0) << (3 - warpingAccuracy)))),
        shift_(map.shift & 31) {}

  struct Row {
    const AffineWalk& walk;
    S32<4> x, y;
    ZVP_INLINE void next(S32<4>& px, S32<4>& py) {
      px = simd::shiftRight(x, walk.shift_) & walk.mask_;
      py = simd::shiftRight(y, walk.shift_) & walk.mask_;
      x = x + walk.columnsX_;
      y = y + walk.columnsY_;
    }
  };
  ZVP_INLINE Row row() const { return {*this, x_, y_}; }
  ZVP_INLINE void nextRow() {
    x_ = x_ + rowX_;
    y_ = y_ + rowY_;
  }

 private:
  ZVP_INLINE static S32<4> splat(s32 value) { return simd::splat<S32<4>>(value); }
  ZVP_INLINE static S32<4> firstFour(s32 start, s32 step) {
    return simd::lanes(std::array<s32, 4>{start, wrapAdd(start, step), wrapAdd(start, wrapMul(step, 2)),
                                          wrapAdd(start, wrapMul(step, 3))});
  }
  S32<4> x_, y_, columnsX_, columnsY_, rowX_, rowY_, mask_;
  int shift_;
};

inline AffineMap lumaAffine(const WarpSpec& spec, s32 x, s32 y) {
  const s32 shift = wrapAdd(spec.affineShift, spec.warpingAccuracy - 3);
  const s32 dx = wrapSub(x, spec.vopX), dy = wrapSub(y, spec.vopY);
  const auto start = [&](s32 point0, s32 sprite, s32 perColumn, s32 perRow) {
    const s32 origin = wrapShl(wrapSub(point0, wrapMul(16, sprite)), shift);
    return wrapAdd(wrapAdd(wrapAdd(origin, wrapMul(perColumn, dx)), wrapMul(perRow, dy)), spec.affineRound);
  };
  return {start(spec.point0X, spec.spriteX, spec.affineDxX, spec.affineDyX),
          start(spec.point0Y, spec.spriteY, spec.affineDxY, spec.affineDyY),
          spec.affineDxX,
          spec.affineDxY,
          spec.affineDyX,
          spec.affineDyY,
          shift};
}

// A chroma sample lies between four of luma: at twice its position and a half, hence four times and 1 over two.
inline AffineMap chromaAffine(const WarpSpec& spec, s32 x, s32 y) {
  const s32 shift = wrapAdd(spec.affineShift, spec.warpingAccuracy - 1);
  const auto centre = [](s32 v, s32 vop) { return s32(4 * u32(v) - 2 * u32(vop) + 1); };
  const s32 I = centre(x, spec.vopX), J = centre(y, spec.vopY);
  const auto start = [&](s32 point0, s32 sprite, s32 perColumn, s32 perRow) {
    const u32 origin = (u32(point0) - 8) * (2 * u32(spec.chosenPow2)) + 4 * u32(spec.affineRound);
    const u32 spriteOrigin = u32(wrapShl(wrapMul(16, sprite), shift));
    return s32(origin + u32(perColumn) * u32(I) + u32(perRow) * u32(J) - spriteOrigin);
  };
  return {start(spec.point0X, spec.chromaSpriteX, spec.affineDxX, spec.affineDyX),
          start(spec.point0Y, spec.chromaSpriteY, spec.affineDxY, spec.affineDyY),
          wrapMul(4, spec.affineDxX),
          wrapMul(4, spec.affineDxY),
          wrapMul(4, spec.affineDyX),
          wrapMul(4, spec.affineDyY),
          shift};
}

// ---- perspective ------------------------------------------------------------------------------------------------

// Two numerators and their denominator.
struct Homogeneous {
  F64<2> xy;
  double d;
  Homogeneous() = default;
  Homogeneous(double x, double y, double denominator) : xy(simd::lanes(std::array<double, 2>{x, y})), d(denominator) {}
  ZVP_INLINE void operator+=(const Homogeneous& step) {
    xy = xy + step.xy;
    d += step.d;
  }
};
struct PerspectiveMap {
  Homogeneous start, column, row;
  s32 shift;             // of a quotient, to 1/16 sample
  s32 originX, originY;  // of the sprite, in 1/16 sample
};

class PerspectiveWalk {
 public:
  ZVP_INLINE explicit PerspectiveWalk(const PerspectiveMap& map) : map_(map) {}

  // Sums are carried from sample to sample and from row to row, one addition each: products would differ in the last
  // bits.
  struct Row {
    const PerspectiveMap& map;
    Homogeneous at;
    ZVP_INLINE void next(S32<4>& px, S32<4>& py) {
      S32<4> xy[4];  // x and y in the lower two lanes
#pragma GCC unroll 4
      for (auto& sample : xy) {
        sample = nearest(at.xy * simd::splat<F64<2>>(1.0 / at.d));
        at += map.column;
      }
      const auto first = simd::as<U64<2>>(interleaveLow(xy[0], xy[1]));
      const auto second = simd::as<U64<2>>(interleaveLow(xy[2], xy[3]));
      px = position(interleaveLow(first, second), map.originX);
      py = position(interleaveHigh(first, second), map.originY);
    }

   private:
    // Required: slightly more than a half away from zero. What does not fit becomes INT32_MIN.
    ZVP_INLINE static S32<4> nearest(F64<2> q) {
      const auto sign = simd::as<U64<2>>(q) & simd::splat<U64<2>>(u64(1) << 63);
      const auto half = sign | simd::as<U64<2>>(simd::splat<F64<2>>(0.5000000001));
      return toInteger(q + simd::as<F64<2>>(half));
    }
    ZVP_INLINE S32<4> position(U64<2> quotients, s32 origin) const {
      return simd::shiftLeft(simd::as<S32<4>>(quotients), map.shift) - simd::splat<S32<4>>(origin);
    }
  };
  ZVP_INLINE Row row() const { return {map_, map_.start}; }
  ZVP_INLINE void nextRow() { map_.start += map_.row; }

 private:
  PerspectiveMap map_;
};

inline PerspectiveMap lumaPerspective(const WarpSpec& spec, s32 x, s32 y) {
  const double dx = wrapSub(x, spec.vopX), dy = wrapSub(y, spec.vopY);
  PerspectiveMap map;
  map.start = {spec.persA * dx + spec.persB * dy + spec.persC, spec.persD * dx + spec.persE * dy + spec.persF,
               spec.persG * dx + spec.persH * dy + spec.persI};
  map.column = {spec.persA, spec.persD, spec.persG};
  map.row = {spec.persB, spec.persE, spec.persH};
  map.shift = 3 - spec.warpingAccuracy;
  map.originX = wrapMul(16, spec.spriteX);
  map.originY = wrapMul(16, spec.spriteY);
  return map;
}

inline PerspectiveMap chromaPerspective(const WarpSpec& spec, s32 x, s32 y) {
  const auto centre = [](s32 v, s32 vop) { return double(s32(4 * u32(v) - 2 * u32(vop) + 1)); };
  const double I = centre(x, spec.vopX), J = centre(y, spec.vopY), S = 2 << spec.warpingAccuracy;
  const double K = (2 * spec.persI + spec.persG * I + spec.persH * J) * S;
  PerspectiveMap map;
  map.start = {2 * spec.persA * I + 2 * spec.persB * J + 4 * spec.persC - K,
               2 * spec.persD * I + 2 * spec.persE * J + 4 * spec.persF - K,
               4 * (spec.persG * I + spec.persH * J) + 8 * spec.persI};
  map.column = {8 * spec.persA - 4 * spec.persG * S, 8 * spec.persD - 4 * spec.persG * S, 16 * spec.persG};
  map.row = {8 * spec.persB - 4 * spec.persH * S, 8 * spec.persE - 4 * spec.persH * S, 16 * spec.persH};
  map.shift = 3 - spec.warpingAccuracy;
  map.originX = wrapMul(16, spec.chromaSpriteX);
  map.originY = wrapMul(16, spec.chromaSpriteY);
  return map;
}

// ---- translation ------------------------------------------------------------------------------------------------

// Samples x to x + count - 1 of a row of width samples, the first and last standing in for those beyond.
inline void copyClamped(const u8* row, s64 x, s32 width, u8* dst, s32 count) {
  const s32 left = s32(std::clamp<s64>(-x, 0, count)), right = s32(std::clamp<s64>(x + count - width, 0, count));
  std::memset(dst, row[0], std::size_t(left));
  if (left + right < count) std::memcpy(dst + left, row + (x + left), std::size_t(count - left - right));
  std::memset(dst + count - right, row[width - 1], std::size_t(right));
}

inline const u8* clampedRow(const Plane& plane, s64 y, s32 height) {
  return plane.src + std::ptrdiff_t(std::clamp<s64>(y, 0, height - 1)) * plane.srcStep;
}

// Positions have 32 bits: -2^31 follows 2^31 - 1. How many of count positions from start on come before that happens.
constexpr s32 beforeWrap(s32 start, s32 count) { return s32(std::min<s64>(count, (s64(1) << 31) - start)); }

// A block copied from (x, y), in samples, which may lie anywhere. Columns beyond the wrap are left of the sprite.
ZVP_INLINE void copyTranslated(const Plane& plane, s32 x, s32 y, zvpSize block, zvpSize sprite) {
  const s32 columns = beforeWrap(x, block.width);
  for (s32 i = 0; i < block.height; ++i) {
    const u8* row = clampedRow(plane, wrapAdd(y, i), sprite.height);
    u8* dst = plane.dst + i * plane.dstStep;
    copyClamped(row, x, sprite.width, dst, columns);
    if (columns < block.width) [[unlikely]]
      std::memset(dst + columns, row[0], std::size_t(block.width - columns));
  }
}

// A block whose positions do not wrap, read at (x, y), in samples, and (tx, ty) sixteenths. In half samples this is the
// rounding of half-pel prediction, so luma is done here too. Eight columns at a time; the sums have 16 bits.
inline void readPart(const Plane& plane, s32 x, s32 y, s32 tx, s32 ty, s32 bilinearRound, zvpSize block,
                     zvpSize sprite) {
  const auto splat = [](s32 w) { return simd::splat<U16<8>>(u16(w)); };
  const auto upperLeft = splat((16 - tx) * (16 - ty)), upperRight = splat(tx * (16 - ty));
  const auto lowerLeft = splat((16 - tx) * ty), lowerRight = splat(tx * ty), rounding = splat(bilinearRound);
  struct Samples {
    U16<8> left, right;
  };
  forEachPiece<8, 1>(block.width, [&](auto columns, s32 column) {
    constexpr s32 needed = columns + 1;
    const s64 first = s64(x) + column;
    const bool inside = first >= 0 && first + needed <= sprite.width;
    const auto samplesOf = [&](s64 row) -> Samples {
      const u8* p = clampedRow(plane, row, sprite.height);
      u8 clamped[needed];
      if (inside) {
        p += first;
      } else {
        copyClamped(p, first, sprite.width, clamped, needed);
        p = clamped;
      }
      const auto left = simd::loadBytes<U8<16>, columns>(p), right = simd::loadBytes<U8<16>, columns>(p + 1);
      return {simd::as<U16<8>>(simd::widenLow(left)), simd::as<U16<8>>(simd::widenLow(right))};
    };
    Samples upper = samplesOf(y);
    for (s32 i = 0; i < block.height; ++i) {
      const Samples lower = samplesOf(s64(y) + i + 1);
      const auto sum = mulLow(upper.left, upperLeft) + mulLow(upper.right, upperRight) + mulLow(lower.left, lowerLeft) +
                       mulLow(lower.right, lowerRight) + rounding;
      const auto words = simd::as<S16<8>>(simd::shiftRight<8>(sum));
      simd::storeBytes<columns>(plane.dst + i * plane.dstStep + column, simd::packSaturateU8(words, words));
      upper = lower;
    }
  });
}

// Any block read there: in parts where its positions wrap, as hardly any do.
inline void readTranslated(const Plane& plane, s32 x, s32 y, s32 tx, s32 ty, s32 bilinearRound, zvpSize block,
                           zvpSize sprite) {
  Plane part = plane;
  zvpSize size;
  for (s32 top = 0; top < block.height; top += size.height) {
    const s32 partY = wrapAdd(y, top);
    size.height = beforeWrap(partY, block.height - top);
    for (s32 left = 0; left < block.width; left += size.width) {
      const s32 partX = wrapAdd(x, left);
      size.width = beforeWrap(partX, block.width - left);
      part.dst = plane.dst + top * plane.dstStep + left;
      readPart(part, partX, partY, tx, ty, bilinearRound, size, sprite);
    }
  }
}

// ---- kernels ----------------------------------------------------------------------------------------------------

inline zvpSize lumaSprite(const WarpSpec& spec) { return {spec.spriteWidth, spec.spriteHeight}; }
inline zvpSize chromaSprite(const WarpSpec& spec) { return {spec.chromaSpriteWidth, spec.chromaSpriteHeight}; }

inline constexpr auto ownvc_WarpLumaNWP1_MPEG4_8u_C1R = readTranslated;
inline constexpr auto ownvc_WarpChromaNWP1_MPEG4_8u_C1R = readTranslated;

inline void ownvc_WarpLumaNWP23_MPEG4_8u_C1R(const std::array<Plane, 1>& plane, const zvpRect& r,
                                             const WarpSpec& spec) {
  warpAlong(AffineWalk(lumaAffine(spec, r.x, r.y), spec.warpingAccuracy), plane, {r.width, r.height}, lumaSprite(spec),
            spec.bilinearRound);
}
inline void ownvc_WarpChromaNWP23_MPEG4_8u_P2R(const std::array<Plane, 2>& planes, const zvpRect& r,
                                               const WarpSpec& spec) {
  warpAlong(AffineWalk(chromaAffine(spec, r.x, r.y), spec.warpingAccuracy), planes, {r.width, r.height},
            chromaSprite(spec), spec.bilinearRound);
}
inline void ownvc_WarpLumaNWP4_MPEG4_8u_C1R(const std::array<Plane, 1>& plane, const zvpRect& r, const WarpSpec& spec) {
  warpAlong(PerspectiveWalk(lumaPerspective(spec, r.x, r.y)), plane, {r.width, r.height}, lumaSprite(spec),
            spec.bilinearRound);
}
inline void ownvc_WarpChromaNWP4_MPEG4_8u_P2R(const std::array<Plane, 2>& planes, const zvpRect& r,
                                              const WarpSpec& spec) {
  warpAlong(PerspectiveWalk(chromaPerspective(spec, r.x, r.y)), planes, {r.width, r.height}, chromaSprite(spec),
            spec.bilinearRound);
}

// One component of a macroblock's mean vector: start and the map's displacements of 16x16 samples added up, then
// brought from 256 times the accuracy to half or quarter samples.
inline s32 meanDisplacement(const WarpSpec& spec, s32 x, s32 y, s32 point0, s32 offset, s32 perColumn, s32 perRow) {
  constexpr int N = simd::registerBytes / 4;
  const s32 a = spec.warpingAccuracy;
  const int shift = spec.affineShift > 31 ? 31 : spec.affineShift & 31;
  std::array<s32, N> first;
  for (int i = 0; i < N; ++i)
    first[std::size_t(i)] = s32(u32(spec.affineRound) + (u32(x) + u32(i)) * u32(perColumn) + u32(y) * u32(perRow));
  auto row = simd::lanes(first);
  const auto nextColumns = simd::splat<S32<N>>(wrapMul(perColumn, N)), nextRow = simd::splat<S32<N>>(perRow);
  auto sums = simd::zero<S32<N>>();
  for (int j = 0; j < 16; ++j, row = row + nextRow) {
    auto at = row;
    for (int i = 0; i < 16; i += N, at = at + nextColumns) sums = sums + simd::shiftRight(at, shift);
  }
  s32 S = wrapSub(wrapShl(wrapSub(point0 >> (3 - a), wrapShl(offset, a + 1)), 8), spec.gmcBias);
  S = wrapAdd(S, reduceAdd(sums));
  const s32 down = a + 8 - spec.quarterSample;
  return wrapAdd(wrapSub(S, S < 0 ? 1 : 0), 1 << (down - 1)) >> down;
}

inline zvpPoint ownvc_CalcGlobalMV_MPEG4(s32 x, s32 y, const WarpSpec& spec) {
  return {meanDisplacement(spec, x, y, spec.point0X, x, spec.affineDxX, spec.affineDyX),
          meanDisplacement(spec, x, y, spec.point0Y, y, spec.affineDxY, spec.affineDyY)};
}

// (sample * weight + 520) >> 10, limited to a byte. weight is -123..17900: sums of two 16-bit products hold it all.
inline void ownvc_ChangeSpriteBrightness_MPEG4_8u_C1IR(u8* srcDst, std::ptrdiff_t step, zvpSize size, s32 weight) {
  const auto brightened = [&](auto samples) {
    constexpr int N = sizeof samples;
    const auto one = simd::splat<S16<N / 2>>(1);
    const auto factors = simd::as<S16<N / 2>>(simd::splat<S32<N / 4>>(s32(u32(weight) & 0xffff) | 520 << 16));
    const auto scaled = [&](S16<N / 2> s) {
      return packSaturateS16(simd::shiftRight<10>(mulAddPairs(interleaveLow(s, one), factors)),
                             simd::shiftRight<10>(mulAddPairs(interleaveHigh(s, one), factors)));
    };
    return packSaturateU8(scaled(widenLow(samples)), scaled(widenHigh(samples)));
  };
  for (s32 y = 0; y < size.height; ++y, srcDst += step)
    forEachPiece<simd::registerBytes, 1>(size.width, [&](auto width, s32 x) {
      using Samples = U8<width == simd::registerBytes ? width : 16>;
      simd::storeBytes<width>(srcDst + x, brightened(simd::loadBytes<Samples, width>(srcDst + x)));
    });
}

}  // namespace zvp::mpeg4
