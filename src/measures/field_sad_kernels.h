// Activity of a 16x16 block between neighbouring rows of the frame, and between those of its two fields.
#pragma once

#include "measures/sad_kernels.h"

namespace zvp::measures {

template <template <int> class Sum>
zvpStatus frameFieldSad(const u8* src, std::ptrdiff_t step, s32* frame, s32* field) {
  using T = typename Sum<16>::Element;
  constexpr int widthBytes = 16 * int(sizeof(T)), bytes = std::min(widthBytes, simd::registerBytes);
  using Row = simd::Vec<T, bytes / int(sizeof(T))>;
  Sum<bytes> frameSum, fieldSum;
  for (int x = 0; x < widthBytes; x += bytes) {
    const u8* p = src + x;
    Row twoAbove = simd::zero<Row>(), above = twoAbove;
#pragma GCC unroll 16
    for (int y = 0; y < 16; ++y, p += step) {
      const Row row = simd::load<Row>(p);
      if (y >= 1 && y != 8) frameSum.add(row, above);  // the halves of the macroblock are measured apart: required
      if (y >= 2) fieldSum.add(row, twoAbove);
      twoAbove = above;
      above = row;
    }
  }
  storeAs(frame, s32(frameSum.template total<14 * 16>()));
  storeAs(field, s32(fieldSum.template total<14 * 16>()));
  return zvpStatusOk;
}

constexpr auto ownvc_FrameFieldSAD16x16_8u32s_C1R = frameFieldSad<SumAbsDiff8u>;
constexpr auto ownvc_FrameFieldSAD16x16_16s32s_C1R = frameFieldSad<SumAbsDiff16s>;

}  // namespace zvp::measures
