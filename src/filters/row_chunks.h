// Rows of any width in registers: whole registers first, then the rest by halves, so that no byte beyond the row is
// touched and no byte is handled twice.
#pragma once

#include <algorithm>

#include "simd.h"

namespace zvp {

template <int Bytes>
struct Chunk {
  static constexpr int bytes = Bytes;
  using V = simd::U8<(Bytes > 16 ? Bytes : 16)>;
  ZVP_INLINE static V load(const u8* p) { return simd::loadBytes<V, Bytes>(p); }
  ZVP_INLINE static void store(u8* p, V v) { simd::storeBytes<Bytes>(p, v); }
};

// f(chunk, x) for chunks that cover first .. end - 1 from left to right.
template <class F>
ZVP_INLINE void forChunks(std::ptrdiff_t first, std::ptrdiff_t end, F f) {
  std::ptrdiff_t x = first;
  for (; x + simd::registerBytes <= end; x += simd::registerBytes) f(Chunk<simd::registerBytes>(), x);
  const auto rest = [&]<int Bytes>(Chunk<Bytes> chunk) {
    if (end - x < Bytes) return;
    f(chunk, x);
    x += Bytes;
  };
  if constexpr (simd::registerBytes > 16) rest(Chunk<16>());
  rest(Chunk<8>());
  rest(Chunk<4>());
  rest(Chunk<2>());
  rest(Chunk<1>());
}

// Lanes whose value is below a bound of any size.
template <class V>
class Below {
 public:
  ZVP_INLINE explicit Below(s32 bound)
      : last_(simd::splat<V>(u8(std::clamp(bound, 1, 256) - 1))), any_(simd::splat<V>(bound > 0 ? 255 : 0)) {}
  ZVP_INLINE V operator()(V a) const { return equal(min(a, last_), a) & any_; }

 private:
  V last_, any_;
};

// Lanes in which a < b.
template <class V>
ZVP_INLINE V less(V a, V b) {
  return andNot(equal(max(a, b), a), simd::splat<V>(255));
}

template <class V>
ZVP_INLINE V median(V a, V b, V c) {
  return max(min(a, b), min(max(a, b), c));
}

}  // namespace zvp
