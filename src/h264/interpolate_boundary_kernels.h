// Copies of a reference area that crosses edges of the plane, the samples beyond an edge replaced by the edge's own
// (H.264 8.4.2.2: coordinates are clamped).
//
// An area beyond one edge of an axis is repaired there. Of two opposite edges only the one that the position's sign
// selects is: a negative position is the left or the top edge's, and the other side is read as it stands. That is
// required: an area wider than the plane reads on behind it.
//
// Unit is what is replicated: a sample, or a pair of interleaved ones. T is the sample type that the record's steps
// count.
#pragma once

#include <algorithm>

#include "h264/interpolate.h"
#include "simd.h"

namespace zvp::boundary {

using namespace simd;

// What a copy may write behind the end of its row: the next row, or the slack that the scratch has at its end.
inline constexpr int overshoot = 15;

// count bytes, by 16-byte registers while there are so many, with the last one overlapping the one before.
ZVP_INLINE void copyBytes(u8* dst, const u8* src, int count) {
  if (count >= 16) {
    for (int i = 0; i < count - 16; i += 16) store(dst + i, load<U8<16>>(src + i));
    store(dst + count - 16, load<U8<16>>(src + count - 16));
  } else if (count >= 8) {
    const auto first = loadAs<u64>(src), last = loadAs<u64>(src + count - 8);
    storeAs(dst, first);
    storeAs(dst + count - 8, last);
  } else if (count >= 4) {
    const auto first = loadAs<u32>(src), last = loadAs<u32>(src + count - 4);
    storeAs(dst, first);
    storeAs(dst + count - 4, last);
  } else {
    for (int i = 0; i < count; ++i) dst[i] = src[i];
  }
}

// count bytes of one unit's repetition; writes up to overshoot bytes more.
template <class Unit>
ZVP_INLINE void fillBytes(u8* dst, const u8* unit, int count) {
  const auto value = splat<Vec<Unit, 16 / sizeof(Unit)>>(loadAs<Unit>(unit));
  for (int i = 0; i < count; i += 16) store(dst + i, value);
}

// One axis of an area: the position is pulled to where one true line is left, and the lines beyond the low edge or
// within the plane are counted.
struct Span {
  s32 below = 0;   // lines that repeat the first one
  s32 within = 0;  // lines that are copied
};
template <bool Low, bool High>
Span spanOf(s32& first, s32 needed, s32 frame) {
  Span span{0, needed};
  if constexpr (Low) {
    if (needed <= -s64(first)) first = 1 - needed;
    span.below = std::max(0, -first);
    span.within = needed - span.below;
  } else if constexpr (High) {
    if (first >= frame) first = frame - 1;
    span.within = std::min(needed, frame - first);
  }
  return span;
}

template <class T, class Unit, bool Left, bool Right, bool Top, bool Bottom>
void readEdges(H264KernelArgs<T>* args) {
  constexpr int size = sizeof(Unit);
  const Span x = spanOf<Left, Right>(args->x0, args->needWidth, args->frameWidth);
  const Span y = spanOf<Top, Bottom>(args->y0, args->needHeight, args->frameHeight);
  const std::ptrdiff_t srcStep = args->srcStep * s64(sizeof(T)), dstStep = args->dstStep * s64(sizeof(T));
  const int rowBytes = args->needWidth * size, leftBytes = x.below * size, copied = x.within * size;
  const u8* src = reinterpret_cast<const u8*>(args->pSrc) + (Top ? std::max(0, args->y0) : args->y0) * srcStep +
                  std::ptrdiff_t(Left ? std::max(0, args->x0) : args->x0) * size;
  u8* dst = reinterpret_cast<u8*>(args->pDst);
  const auto repeat = [&](s32 count, const u8* row) {
    for (; count > 0; --count, dst += dstStep) copyBytes(dst, row, rowBytes);
  };
  for (s32 row = 0; row < y.within; ++row, src += srcStep) {
    if constexpr (Left) fillBytes<Unit>(dst, src, leftBytes);
    copyBytes(dst + leftBytes, src, copied);
    if constexpr (Right) fillBytes<Unit>(dst + copied, dst + copied - size, rowBytes - copied);
    const u8* const built = dst;
    dst += dstStep;
    if constexpr (Top)
      if (row == 0) repeat(y.below, built);
  }
  if constexpr (Bottom) repeat(args->needHeight - y.within, dst - dstStep);
}

// A slot of the tables.
template <class T, class Unit, s32 Mask>
void readSlot(H264KernelArgs<T>* args) {
  constexpr bool left = (Mask & edgeLeft) != 0, right = (Mask & edgeRight) != 0, top = (Mask & edgeTop) != 0,
                 bottom = (Mask & edgeBottom) != 0;
  if constexpr (Mask == 0) {
    return;
  } else if constexpr (left && right) {
    if (args->x0 < 0)
      readSlot<T, Unit, Mask & ~edgeRight>(args);
    else
      readSlot<T, Unit, Mask & ~edgeLeft>(args);
  } else if constexpr (top && bottom) {
    if (args->y0 < 0)
      readSlot<T, Unit, Mask & ~edgeBottom>(args);
    else
      readSlot<T, Unit, Mask & ~edgeTop>(args);
  } else {
    readEdges<T, Unit, left, right, top, bottom>(args);
  }
}

}  // namespace zvp::boundary
