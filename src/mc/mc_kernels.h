// Motion compensation with a residual: a prediction from one reference, or the average of two, plus 16-bit values,
// saturated to bytes (ISO/IEC 13818-2 7.6). A kernel has its width, its layout and the half-pel case of each reference
// fixed; roundControl reaches it whole, 0 and 1 being the values that pictures use.
#pragma once

#include "mc/residual.h"

namespace zvp::mc {

// Samples that stand in rows of W bytes, the right neighbour of each Channels bytes on, and how their residual stands.
template <int W, int Channels = 1, class R = Residual<W>>
struct Layout {
  static constexpr int width = W, channels = Channels;
  using Residual = R;
};
using Interleaved = Layout<16, 2>;                                // U, V, U, V, residual too
using InterleavedOfPlanes = Layout<16, 2, PlanarChromaResidual>;  // residual in two planes

// A block whose height, an even number, is an argument, and one whose height is the kernel's own.
template <class L>
using McKernel = zvpStatus (*)(Rows<const u8> ref, typename L::Residual residual, Rows<u8> dst, int height,
                               s32 roundControl);
template <class L>
using McBKernel = zvpStatus (*)(Rows<const u8> forward, Rows<const u8> backward, typename L::Residual residual,
                                Rows<u8> dst, int height, s32 roundControl);
template <class L>
using MclKernel = zvpStatus (*)(Rows<const u8> ref, typename L::Residual residual, Rows<u8> dst, s32 roundControl);
template <class L>
using MclBKernel = zvpStatus (*)(Rows<const u8> forward, Rows<const u8> backward, typename L::Residual residual,
                                 Rows<u8> dst, s32 roundControl);

// dst = clip(p + residual). Two rows at a time: the rows of four blocks or five take no more registers than there are.
template <class L, class P>
ZVP_INLINE zvpStatus compensate(P p, typename L::Residual residual, Rows<u8> dst, int height) {
  const auto row = [&](int y) __attribute__((always_inline)) {
    simd::storeBytes<L::width>(dst.row(y), residual.addTo(p.row(y), y));
  };
  forRowsInGroupsOf<2>(height, row, p, residual, dst);
  return zvpStatusOk;
}

// The same sample by sample, for any roundControl.
template <class L>
[[gnu::noinline]] zvpStatus compensateAnyRounding(HalfPel c, Rows<const u8> ref, typename L::Residual residual,
                                                  Rows<u8> dst, int height, s32 roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < L::width; ++x)
      dst.row(y)[x] = clipU8(predictSample(c, ref, x, y, L::channels, roundControl) + residual.at(x, y));
  return zvpStatusOk;
}
template <class L>
[[gnu::noinline]] zvpStatus compensateAnyRounding(HalfPel caseF, Rows<const u8> forward, HalfPel caseB,
                                                  Rows<const u8> backward, typename L::Residual residual, Rows<u8> dst,
                                                  int height, s32 roundControl) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < L::width; ++x) {
      const s32 pF = predictSample(caseF, forward, x, y, L::channels, roundControl);
      const s32 pB = predictSample(caseB, backward, x, y, L::channels, roundControl);
      dst.row(y)[x] = clipU8(wrapAdd(wrapAdd(pF, pB), 2 * residual.at(x, y) + 1) / 2);
    }
  return zvpStatusOk;
}

// A height of 0 does nothing.
template <class L, HalfPel C>
zvpStatus mcBlock(Rows<const u8> ref, typename L::Residual residual, Rows<u8> dst, int height, s32 roundControl) {
  if (height <= 0) return zvpStatusOk;
  const auto use = [&](auto p) __attribute__((always_inline)) { return compensate<L>(p, residual, dst, height); };
  return withPrediction<L::width, L::channels, C>(
      ref, roundControl, use, [&] { return compensateAnyRounding<L>(C, ref, residual, dst, height, roundControl); });
}
// (pF + pB + 2 * residual + 1) / 2, clipped, is the rounded average plus the residual, clipped: they differ below 0
// only.
template <class L, HalfPel F, HalfPel B>
zvpStatus mcBlock(Rows<const u8> forward, Rows<const u8> backward, typename L::Residual residual, Rows<u8> dst,
                  int height, s32 roundControl) {
  if (height <= 0) return zvpStatusOk;
  const auto use = [&](auto p) __attribute__((always_inline)) { return compensate<L>(p, residual, dst, height); };
  return withPrediction<L::width, L::channels, F, B>(forward, backward, roundControl, use, [&] {
    return compensateAnyRounding<L>(F, forward, B, backward, residual, dst, height, roundControl);
  });
}

template <class L, int H, HalfPel C>
zvpStatus mclBlock(Rows<const u8> ref, typename L::Residual residual, Rows<u8> dst, s32 roundControl) {
  return mcBlock<L, C>(ref, residual, dst, H, roundControl);
}
template <class L, int H, HalfPel F, HalfPel B>
zvpStatus mclBlock(Rows<const u8> forward, Rows<const u8> backward, typename L::Residual residual, Rows<u8> dst,
                   s32 roundControl) {
  return mcBlock<L, F, B>(forward, backward, residual, dst, H, roundControl);
}

}  // namespace zvp::mc
