// The SIMD layer: value types that name their lanes and free functions that name the operation, one instruction each.
//
// Vec<T, N> holds N lanes of T in one register of 16 bytes or, where the compile-time level has them, 32. Kernels ask
// for registerBytes and hold no #if. What SSE2 lacks is put together here once and becomes the single instruction at
// the levels that have it. With ZVP_SIMD_PLAIN the layer is loops over arrays: the tests hold the two against each
// other. Each operation stands on one line with its instruction and with its meaning in terms of lanes a and b.
//
// Operations that move lanes between registers (interleave, pack, shift of bytes) work on each 16-byte half of a
// 32-byte register by itself, as the instructions do; so a widening and the packing behind it cancel at either width.
#pragma once

#include <array>
#include <bit>

#include "types.h"

#if !defined(ZVP_SIMD_PLAIN)
#include <immintrin.h>
#endif

namespace zvp::simd {

#if defined(__AVX2__) && !defined(ZVP_SIMD_PLAIN)
inline constexpr int registerBytes = 32;
#else
inline constexpr int registerBytes = 16;
#endif

#if defined(ZVP_SIMD_PLAIN)
template <class T, int N> struct Vec {
  T lane[N];
};
#else
namespace detail {
template <int Bytes> struct Register;
template <> struct Register<16> { using Type = __m128i; };
#if defined(__AVX2__)
template <> struct Register<32> { using Type = __m256i; };
#endif
}  // namespace detail
template <class T, int N> struct Vec {
  typename detail::Register<N * int(sizeof(T))>::Type v;
};
#endif

template <int N> using U8 = Vec<u8, N>;
template <int N> using S8 = Vec<s8, N>;
template <int N> using U16 = Vec<u16, N>;
template <int N> using S16 = Vec<s16, N>;
template <int N> using U32 = Vec<u32, N>;
template <int N> using S32 = Vec<s32, N>;
template <int N> using U64 = Vec<u64, N>;
template <int N> using F32 = Vec<float, N>;
template <int N> using F64 = Vec<double, N>;

template <class V> struct Lanes;
template <class T, int N> struct Lanes<Vec<T, N>> {
  using Type = T;
  static constexpr int count = N, bytes = N * int(sizeof(T));
};

namespace detail {
constexpr s32 saturate(s64 value, s64 low, s64 high) { return s32(value < low ? low : value > high ? high : value); }
}  // namespace detail

// ---- loads, stores, reinterpretation ----------------------------------------------------------------------------

// The same bits as lanes of another type.
template <class To, class From> ZVP_INLINE To as(From from) {
  static_assert(Lanes<To>::bytes == Lanes<From>::bytes);
  return std::bit_cast<To>(from);
}

// A whole register from any address.
template <class V> ZVP_INLINE V load(const void* p) {
  V r;
  std::memcpy(&r, p, sizeof r);
  return r;
}
template <class T, int N> ZVP_INLINE void store(void* p, Vec<T, N> v) { std::memcpy(p, &v, sizeof v); }

#if defined(ZVP_SIMD_PLAIN)
// The first Bytes bytes at p in the low lanes, zeros above them. Touches those bytes only.
template <class V, int Bytes> ZVP_INLINE V loadBytes(const void* p) {
  V r{};
  std::memcpy(&r, p, Bytes);
  return r;
}
template <class V> ZVP_INLINE V load8x2(const void* p, const void* q) {
  V r{};
  std::memcpy(&r, p, 8);
  std::memcpy(reinterpret_cast<u8*>(&r) + 8, q, 8);
  return r;
}
template <int Bytes, class T, int N> ZVP_INLINE void storeBytes(void* p, Vec<T, N> v) { std::memcpy(p, &v, Bytes); }
template <class T, int N> ZVP_INLINE void storeHigh8(void* p, Vec<T, N> v) {
  std::memcpy(p, reinterpret_cast<const u8*>(&v) + 8, 8);
}
template <class V> ZVP_INLINE V fromLow64(u64 bits) { return loadBytes<V, 8>(&bits); }
template <class V> ZVP_INLINE V splat(typename Lanes<V>::Type value) {
  V r;
  for (auto& lane : r.lane) lane = value;
  return r;
}
#else
// The first Bytes bytes at p in the low lanes, zeros above them. Touches those bytes only.
template <class V, int Bytes> ZVP_INLINE V loadBytes(const void* p) {
  static_assert(Bytes == 1 || Bytes == 2 || Bytes == 4 || Bytes == 8 || Bytes == Lanes<V>::bytes);
  if constexpr (Bytes == Lanes<V>::bytes) return load<V>(p);
  else if constexpr (Bytes == 8) return {_mm_loadl_epi64(static_cast<const __m128i*>(p))};
  else if constexpr (Bytes == 4) return {_mm_cvtsi32_si128(loadAs<s32>(p))};
  else if constexpr (Bytes == 2) return {_mm_cvtsi32_si128(loadAs<u16>(p))};
  else return {_mm_cvtsi32_si128(*static_cast<const u8*>(p))};
}
// Eight bytes at p in the low half, eight at q in the high half.
template <class V> ZVP_INLINE V load8x2(const void* p, const void* q) {
  return {_mm_castpd_si128(_mm_loadh_pd(_mm_castsi128_pd(_mm_loadl_epi64(static_cast<const __m128i*>(p))),
                                        static_cast<const double*>(q)))};
}
// The low Bytes bytes of the register.
template <int Bytes, class T, int N> ZVP_INLINE void storeBytes(void* p, Vec<T, N> v) {
  static_assert(Bytes == 1 || Bytes == 2 || Bytes == 4 || Bytes == 8 || Bytes == int(sizeof v));
  if constexpr (Bytes == int(sizeof v)) store(p, v);
  else if constexpr (Bytes == 8) _mm_storel_epi64(static_cast<__m128i*>(p), v.v);
  else if constexpr (Bytes == 4) storeAs(p, _mm_cvtsi128_si32(v.v));
  else if constexpr (Bytes == 2) storeAs(p, u16(_mm_cvtsi128_si32(v.v)));
  else storeAs(p, u8(_mm_cvtsi128_si32(v.v)));
}
// The high eight bytes of a 16-byte register. _mm_storeh_pd would be a store through an aligned double*, and two
// instructions with GCC.
template <class T, int N> ZVP_INLINE void storeHigh8(void* p, Vec<T, N> v) {
  _mm_storeh_pi(static_cast<__m64*>(p), _mm_castsi128_ps(v.v));
}
// Eight bytes of a general register in the low half of a 16-byte one, zeros above them.
template <class V> ZVP_INLINE V fromLow64(u64 bits) { return {_mm_cvtsi64_si128(s64(bits))}; }
// One value in all lanes.
template <class V> ZVP_INLINE V splat(typename Lanes<V>::Type value) {
  constexpr int size = sizeof(typename Lanes<V>::Type);
  if constexpr (std::is_same_v<typename Lanes<V>::Type, float>) return as<V>(splat<S32<Lanes<V>::count>>(std::bit_cast<s32>(value)));
  else
  if constexpr (std::is_same_v<typename Lanes<V>::Type, double>) return as<V>(splat<U64<Lanes<V>::count>>(std::bit_cast<u64>(value)));
  else
#if defined(__AVX2__)
  if constexpr (Lanes<V>::bytes == 32) {
    if constexpr (size == 1) return {_mm256_set1_epi8(char(value))};
    else if constexpr (size == 2) return {_mm256_set1_epi16(short(value))};
    else if constexpr (size == 4) return {_mm256_set1_epi32(int(value))};
    else return {_mm256_set1_epi64x(s64(value))};
  } else
#endif
  {
    if constexpr (size == 1) return {_mm_set1_epi8(char(value))};
    else if constexpr (size == 2) return {_mm_set1_epi16(short(value))};
    else if constexpr (size == 4) return {_mm_set1_epi32(int(value))};
    else return {_mm_set1_epi64x(s64(value))};
  }
}
#endif

template <class V> ZVP_INLINE V zero() { return splat<V>(0); }

// Lanes from a constant or computed array.
template <class T, std::size_t N> ZVP_INLINE Vec<T, int(N)> lanes(const std::array<T, N>& values) {
  return load<Vec<T, int(N)>>(values.data());
}

// ---- operations lane by lane ------------------------------------------------------------------------------------
// ZVP_LANES2(name, lane type, instruction, meaning): for 16-byte registers and, where there are any, 32-byte ones.

#if defined(ZVP_SIMD_PLAIN)
#define ZVP_LANES1(NAME, T, OP, MEANING)                            \
  template <int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> x) {         \
    Vec<T, N> r;                                                    \
    for (int i = 0; i < N; ++i) {                                   \
      const auto a = x.lane[i];                                     \
      r.lane[i] = T(MEANING);                                       \
    }                                                               \
    return r;                                                       \
  }
#define ZVP_LANES2(NAME, T, OP, MEANING)                              \
  template <int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> x, Vec<T, N> y) { \
    Vec<T, N> r;                                                      \
    for (int i = 0; i < N; ++i) {                                     \
      const auto a = x.lane[i], b = y.lane[i];                        \
      r.lane[i] = T(MEANING);                                         \
    }                                                                 \
    return r;                                                         \
  }
#define ZVP_BITS2(NAME, OP, MEANING)                                                                 \
  template <class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> x, Vec<T, N> y) {                    \
    Vec<T, N> r;                                                                                     \
    for (int i = 0; i < N; ++i) {                                                                    \
      const auto a = x.lane[i], b = y.lane[i];                                                       \
      r.lane[i] = T(MEANING);                                                                        \
    }                                                                                                \
    return r;                                                                                        \
  }
#elif defined(__AVX2__)
#define ZVP_LANES1(NAME, T, OP, MEANING)                                                                        \
  ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a) { return {_mm_##OP(a.v)}; }                  \
  ZVP_INLINE Vec<T, 32 / sizeof(T)> NAME(Vec<T, 32 / sizeof(T)> a) { return {_mm256_##OP(a.v)}; }
#define ZVP_LANES2(NAME, T, OP, MEANING)                                                                        \
  ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a, Vec<T, 16 / sizeof(T)> b) {                  \
    return {_mm_##OP(a.v, b.v)};                                                                                \
  }                                                                                                             \
  ZVP_INLINE Vec<T, 32 / sizeof(T)> NAME(Vec<T, 32 / sizeof(T)> a, Vec<T, 32 / sizeof(T)> b) {                  \
    return {_mm256_##OP(a.v, b.v)};                                                                             \
  }
#define ZVP_BITS2(NAME, OP, MEANING)                                                  \
  template <class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a, Vec<T, N> b) {     \
    if constexpr (sizeof a == 16) return {_mm_##OP##_si128(a.v, b.v)};                \
    else return {_mm256_##OP##_si256(a.v, b.v)};                                      \
  }
#else
#define ZVP_LANES1(NAME, T, OP, MEANING) \
  ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a) { return {_mm_##OP(a.v)}; }
#define ZVP_LANES2(NAME, T, OP, MEANING)                                                        \
  ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a, Vec<T, 16 / sizeof(T)> b) {  \
    return {_mm_##OP(a.v, b.v)};                                                                \
  }
#define ZVP_BITS2(NAME, OP, MEANING)                                               \
  template <class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a, Vec<T, N> b) {  \
    return {_mm_##OP##_si128(a.v, b.v)};                                           \
  }
#endif

ZVP_BITS2(operator&, and, a & b)
ZVP_BITS2(operator|, or, a | b)
ZVP_BITS2(operator^, xor, a ^ b)
ZVP_BITS2(andNot, andnot, ~a & b)  // b where the mask a is clear

// Sums and differences modulo the lane's width.
ZVP_LANES2(operator+, u8, add_epi8, a + b)
ZVP_LANES2(operator+, s8, add_epi8, a + b)
ZVP_LANES2(operator+, u16, add_epi16, a + b)
ZVP_LANES2(operator+, s16, add_epi16, a + b)
ZVP_LANES2(operator+, u32, add_epi32, a + b)
ZVP_LANES2(operator+, s32, add_epi32, u32(a) + u32(b))
ZVP_LANES2(operator+, u64, add_epi64, a + b)
ZVP_LANES2(operator-, u8, sub_epi8, a - b)
ZVP_LANES2(operator-, s8, sub_epi8, a - b)
ZVP_LANES2(operator-, u16, sub_epi16, a - b)
ZVP_LANES2(operator-, s16, sub_epi16, a - b)
ZVP_LANES2(operator-, u32, sub_epi32, a - b)
ZVP_LANES2(operator-, s32, sub_epi32, u32(a) - u32(b))
ZVP_LANES2(operator-, u64, sub_epi64, a - b)

ZVP_LANES2(addSaturate, u8, adds_epu8, detail::saturate(a + b, 0, 255))
ZVP_LANES2(addSaturate, s8, adds_epi8, detail::saturate(a + b, -128, 127))
ZVP_LANES2(addSaturate, u16, adds_epu16, detail::saturate(a + b, 0, 65535))
ZVP_LANES2(addSaturate, s16, adds_epi16, detail::saturate(a + b, -32768, 32767))
ZVP_LANES2(subSaturate, u8, subs_epu8, detail::saturate(a - b, 0, 255))
ZVP_LANES2(subSaturate, s8, subs_epi8, detail::saturate(a - b, -128, 127))
ZVP_LANES2(subSaturate, u16, subs_epu16, detail::saturate(a - b, 0, 65535))
ZVP_LANES2(subSaturate, s16, subs_epi16, detail::saturate(a - b, -32768, 32767))

ZVP_LANES2(average, u8, avg_epu8, (a + b + 1) >> 1)
ZVP_LANES2(average, u16, avg_epu16, (a + b + 1) >> 1)
ZVP_LANES2(min, u8, min_epu8, a < b ? a : b)
ZVP_LANES2(max, u8, max_epu8, a > b ? a : b)
ZVP_LANES2(min, s16, min_epi16, a < b ? a : b)
ZVP_LANES2(max, s16, max_epi16, a > b ? a : b)

// Products: the low 16 bits, the high 16 bits, and sums of two neighbouring signed products.
ZVP_LANES2(mulLow, u16, mullo_epi16, u32(a) * b)
ZVP_LANES2(mulLow, s16, mullo_epi16, a * b)
ZVP_LANES2(mulHigh, u16, mulhi_epu16, (u32(a) * b) >> 16)
ZVP_LANES2(mulHigh, s16, mulhi_epi16, (a * b) >> 16)

// Masks: all ones where the relation holds.
ZVP_LANES2(equal, u8, cmpeq_epi8, a == b ? -1 : 0)
ZVP_LANES2(equal, s8, cmpeq_epi8, a == b ? -1 : 0)
ZVP_LANES2(equal, u16, cmpeq_epi16, a == b ? -1 : 0)
ZVP_LANES2(equal, s16, cmpeq_epi16, a == b ? -1 : 0)
ZVP_LANES2(equal, u32, cmpeq_epi32, a == b ? -1 : 0)
ZVP_LANES2(equal, s32, cmpeq_epi32, a == b ? -1 : 0)
ZVP_LANES2(greater, s8, cmpgt_epi8, a > b ? -1 : 0)
ZVP_LANES2(greater, s16, cmpgt_epi16, a > b ? -1 : 0)
ZVP_LANES2(greater, s32, cmpgt_epi32, a > b ? -1 : 0)

// A mask's choice: a where it is set, b elsewhere. The mask's lanes are all ones or all zeros.
template <class M, class T, int N> ZVP_INLINE Vec<T, N> select(M mask, Vec<T, N> a, Vec<T, N> b) {
  const auto m = as<Vec<T, N>>(mask);
  return (a & m) | andNot(m, b);
}

#if defined(ZVP_SIMD_PLAIN) || defined(__AVX2__)
ZVP_LANES1(abs, s16, abs_epi16, a < 0 ? -a : a)  // -32768 stays
ZVP_LANES1(abs, s32, abs_epi32, a < 0 ? 0u - u32(a) : u32(a))
ZVP_LANES2(mulLow, s32, mullo_epi32, u32(a) * u32(b))
ZVP_LANES2(min, s32, min_epi32, a < b ? a : b)
ZVP_LANES2(max, s32, max_epi32, a > b ? a : b)
ZVP_LANES2(min, u16, min_epu16, a < b ? a : b)
ZVP_LANES2(max, u16, max_epu16, a > b ? a : b)
#else
ZVP_INLINE S16<8> abs(S16<8> a) {  // -32768 stays
  const S16<8> sign = {_mm_srai_epi16(a.v, 15)};
  return (a ^ sign) - sign;
}
ZVP_INLINE S32<4> abs(S32<4> a) {
  const S32<4> sign = {_mm_srai_epi32(a.v, 31)};
  return (a ^ sign) - sign;
}
ZVP_INLINE S32<4> mulLow(S32<4> a, S32<4> b) {
  const __m128i even = _mm_mul_epu32(a.v, b.v);
  const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a.v, 32), _mm_srli_epi64(b.v, 32));
  return {_mm_unpacklo_epi32(_mm_shuffle_epi32(even, 0x08), _mm_shuffle_epi32(odd, 0x08))};
}
ZVP_INLINE S32<4> min(S32<4> a, S32<4> b) { return select(greater(b, a), a, b); }
ZVP_INLINE S32<4> max(S32<4> a, S32<4> b) { return select(greater(a, b), a, b); }
ZVP_INLINE U16<8> min(U16<8> a, U16<8> b) { return a - subSaturate(a, b); }
ZVP_INLINE U16<8> max(U16<8> a, U16<8> b) { return b + subSaturate(a, b); }
#endif

// Single precision. min and max give b where a lane is not a number. toInteger drops the fraction; its lanes must fit.
#if defined(ZVP_SIMD_PLAIN)
ZVP_LANES2(operator*, float, mul_ps, a* b)
ZVP_LANES2(operator/, float, div_ps, a / b)
ZVP_LANES2(min, float, min_ps, a < b ? a : b)
ZVP_LANES2(max, float, max_ps, a > b ? a : b)
template <int N> ZVP_INLINE F32<N> toFloat(S32<N> a) {
  F32<N> r;
  for (int i = 0; i < N; ++i) r.lane[i] = float(a.lane[i]);
  return r;
}
template <int N> ZVP_INLINE S32<N> toInteger(F32<N> a) {
  S32<N> r;
  for (int i = 0; i < N; ++i) r.lane[i] = s32(a.lane[i]);
  return r;
}
#else
#define ZVP_FLOAT2(NAME, OP)                                                                            \
  ZVP_INLINE F32<4> NAME(F32<4> a, F32<4> b) {                                                          \
    return {_mm_castps_si128(_mm_##OP(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v)))};                  \
  }
ZVP_FLOAT2(operator*, mul_ps)
ZVP_FLOAT2(operator/, div_ps)
ZVP_FLOAT2(min, min_ps)
ZVP_FLOAT2(max, max_ps)
#undef ZVP_FLOAT2
ZVP_INLINE F32<4> toFloat(S32<4> a) { return {_mm_castps_si128(_mm_cvtepi32_ps(a.v))}; }
ZVP_INLINE S32<4> toInteger(F32<4> a) { return {_mm_cvttps_epi32(_mm_castsi128_ps(a.v))}; }
#endif

// Double precision. toInteger drops the fraction and gives INT32_MIN for what does not fit; its upper two lanes are 0.
#if defined(ZVP_SIMD_PLAIN)
ZVP_LANES2(operator+, double, add_pd, a + b)
ZVP_LANES2(operator*, double, mul_pd, a* b)
ZVP_INLINE S32<4> toInteger(F64<2> a) {
  S32<4> r{};
  for (int i = 0; i < 2; ++i)
    r.lane[i] = a.lane[i] > -2147483649.0 && a.lane[i] < 2147483648.0 ? s32(a.lane[i]) : INT32_MIN;
  return r;
}
#else
ZVP_INLINE F64<2> operator+(F64<2> a, F64<2> b) {
  return {_mm_castpd_si128(_mm_add_pd(_mm_castsi128_pd(a.v), _mm_castsi128_pd(b.v)))};
}
ZVP_INLINE F64<2> operator*(F64<2> a, F64<2> b) {
  return {_mm_castpd_si128(_mm_mul_pd(_mm_castsi128_pd(a.v), _mm_castsi128_pd(b.v)))};
}
ZVP_INLINE S32<4> toInteger(F64<2> a) { return {_mm_cvttpd_epi32(_mm_castsi128_pd(a.v))}; }
#endif

// |a - b| of unsigned lanes.
template <int N> ZVP_INLINE U8<N> absDiff(U8<N> a, U8<N> b) { return subSaturate(a, b) | subSaturate(b, a); }
template <int N> ZVP_INLINE U16<N> absDiff(U16<N> a, U16<N> b) { return subSaturate(a, b) | subSaturate(b, a); }

// ---- shifts -----------------------------------------------------------------------------------------------------
// shiftRight is arithmetic on signed lanes and logical on unsigned ones. A count of the lane's width or more gives 0,
// or the sign. The template form takes a constant.

#if defined(ZVP_SIMD_PLAIN)
template <class T, int N> ZVP_INLINE Vec<T, N> shiftLeft(Vec<T, N> x, int count) {
  for (auto& a : x.lane) a = count >= int(8 * sizeof(T)) ? T(0) : T(u64(a) << count);
  return x;
}
template <class T, int N> ZVP_INLINE Vec<T, N> shiftRight(Vec<T, N> x, int count) {
  constexpr int width = 8 * sizeof(T);
  for (auto& a : x.lane) a = count < width ? T(a >> count) : a < 0 ? T(-1) : T(0);
  return x;
}
template <int Count, class T, int N> ZVP_INLINE Vec<T, N> shiftLeft(Vec<T, N> x) { return shiftLeft(x, Count); }
template <int Count, class T, int N> ZVP_INLINE Vec<T, N> shiftRight(Vec<T, N> x) { return shiftRight(x, Count); }
#else
#define ZVP_SHIFT16(NAME, T, IMM, RUN)                                                                               \
  template <int Count> ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a) {                            \
    return {_mm_##IMM(a.v, Count)};                                                                                  \
  }                                                                                                                  \
  ZVP_INLINE Vec<T, 16 / sizeof(T)> NAME(Vec<T, 16 / sizeof(T)> a, int count) {                                      \
    return {_mm_##RUN(a.v, _mm_cvtsi32_si128(count))};                                                               \
  }
#if defined(__AVX2__)
#define ZVP_SHIFT(NAME, T, IMM, RUN)                                                                                 \
  ZVP_SHIFT16(NAME, T, IMM, RUN)                                                                                     \
  template <int Count> ZVP_INLINE Vec<T, 32 / sizeof(T)> NAME(Vec<T, 32 / sizeof(T)> a) {                            \
    return {_mm256_##IMM(a.v, Count)};                                                                               \
  }                                                                                                                  \
  ZVP_INLINE Vec<T, 32 / sizeof(T)> NAME(Vec<T, 32 / sizeof(T)> a, int count) {                                      \
    return {_mm256_##RUN(a.v, _mm_cvtsi32_si128(count))};                                                            \
  }
#else
#define ZVP_SHIFT ZVP_SHIFT16
#endif
ZVP_SHIFT(shiftLeft, u16, slli_epi16, sll_epi16)
ZVP_SHIFT(shiftLeft, s16, slli_epi16, sll_epi16)
ZVP_SHIFT(shiftLeft, u32, slli_epi32, sll_epi32)
ZVP_SHIFT(shiftLeft, s32, slli_epi32, sll_epi32)
ZVP_SHIFT(shiftLeft, u64, slli_epi64, sll_epi64)
ZVP_SHIFT(shiftRight, u16, srli_epi16, srl_epi16)
ZVP_SHIFT(shiftRight, s16, srai_epi16, sra_epi16)
ZVP_SHIFT(shiftRight, u32, srli_epi32, srl_epi32)
ZVP_SHIFT(shiftRight, s32, srai_epi32, sra_epi32)
ZVP_SHIFT(shiftRight, u64, srli_epi64, srl_epi64)
#undef ZVP_SHIFT
#undef ZVP_SHIFT16
#endif

// ---- widening, packing, moving lanes ----------------------------------------------------------------------------
// In a 32-byte register each 16-byte half is worked on by itself.

#if defined(ZVP_SIMD_PLAIN)
namespace detail {
// Lane i of the result for lane i of 16-byte half h: f(h, i within the half).
template <class V, class F> ZVP_INLINE V byHalves(F f) {
  V r;
  constexpr int perHalf = 16 / sizeof(r.lane[0]);
  for (int i = 0; i < Lanes<V>::count; ++i) r.lane[i] = f(i / perHalf * perHalf, i % perHalf);
  return r;
}
// Packs two registers of lanes twice as wide: the half's lanes of a, then those of b.
template <class V, class W, class F> ZVP_INLINE V packHalves(W a, W b, F f) {
  constexpr int n = 16 / sizeof(a.lane[0]);
  return byHalves<V>([&](int base, int i) { return f(i < n ? a.lane[base / 2 + i] : b.lane[base / 2 + i - n]); });
}
}  // namespace detail

template <class T, int N> ZVP_INLINE Vec<T, N> interleaveLow(Vec<T, N> a, Vec<T, N> b) {
  return detail::byHalves<Vec<T, N>>([&](int h, int i) { return i % 2 ? b.lane[h + i / 2] : a.lane[h + i / 2]; });
}
template <class T, int N> ZVP_INLINE Vec<T, N> interleaveHigh(Vec<T, N> a, Vec<T, N> b) {
  constexpr int n = 8 / sizeof(T);
  return detail::byHalves<Vec<T, N>>(
      [&](int h, int i) { return i % 2 ? b.lane[h + n + i / 2] : a.lane[h + n + i / 2]; });
}
template <int N> ZVP_INLINE U8<2 * N> packSaturateU8(S16<N> a, S16<N> b) {
  return detail::packHalves<U8<2 * N>>(a, b, [](s16 x) { return u8(detail::saturate(x, 0, 255)); });
}
template <int N> ZVP_INLINE S8<2 * N> packSaturateS8(S16<N> a, S16<N> b) {
  return detail::packHalves<S8<2 * N>>(a, b, [](s16 x) { return s8(detail::saturate(x, -128, 127)); });
}
template <int N> ZVP_INLINE S16<2 * N> packSaturateS16(S32<N> a, S32<N> b) {
  return detail::packHalves<S16<2 * N>>(a, b, [](s32 x) { return s16(detail::saturate(x, -32768, 32767)); });
}
template <int N> ZVP_INLINE U16<2 * N> packSaturateU16(S32<N> a, S32<N> b) {
  return detail::packHalves<U16<2 * N>>(a, b, [](s32 x) { return u16(detail::saturate(x, 0, 65535)); });
}
template <int N> ZVP_INLINE S32<N / 2> mulAddPairs(S16<N> a, S16<N> b) {
  S32<N / 2> r;
  for (int i = 0; i < N / 2; ++i)
    r.lane[i] = wrapAdd(a.lane[2 * i] * b.lane[2 * i], a.lane[2 * i + 1] * b.lane[2 * i + 1]);
  return r;
}
template <int N> ZVP_INLINE U64<N / 8> sumAbsDiff(U8<N> a, U8<N> b) {
  U64<N / 8> r{};
  for (int i = 0; i < N; ++i) r.lane[i / 8] += u64(a.lane[i] > b.lane[i] ? a.lane[i] - b.lane[i] : b.lane[i] - a.lane[i]);
  return r;
}
template <int Control, class T, int N> ZVP_INLINE Vec<T, N> shuffle32(Vec<T, N> a) {
  const auto x = as<U32<int(sizeof a / 4)>>(a);
  return as<Vec<T, N>>(
      detail::byHalves<U32<int(sizeof a / 4)>>([&](int h, int i) { return x.lane[h + ((Control >> (2 * i)) & 3)]; }));
}
template <int Control, class T, int N> ZVP_INLINE Vec<T, N> shuffleLow16(Vec<T, N> a) {
  const auto x = as<U16<int(sizeof a / 2)>>(a);
  return as<Vec<T, N>>(detail::byHalves<U16<int(sizeof a / 2)>>(
      [&](int h, int i) { return x.lane[h + (i < 4 ? (Control >> (2 * i)) & 3 : i)]; }));
}
template <int Control, class T, int N> ZVP_INLINE Vec<T, N> shuffleHigh16(Vec<T, N> a) {
  const auto x = as<U16<int(sizeof a / 2)>>(a);
  return as<Vec<T, N>>(detail::byHalves<U16<int(sizeof a / 2)>>(
      [&](int h, int i) { return x.lane[h + (i < 4 ? i : 4 + ((Control >> (2 * (i - 4))) & 3))]; }));
}
template <class T, int N> ZVP_INLINE Vec<T, N> evenLanes32(Vec<T, N> a, Vec<T, N> b) {
  const auto x = as<U32<int(sizeof a / 4)>>(a), y = as<U32<int(sizeof a / 4)>>(b);
  return as<Vec<T, N>>(detail::byHalves<U32<int(sizeof a / 4)>>(
      [&](int h, int i) { return i < 2 ? x.lane[h + 2 * i] : y.lane[h + 2 * i - 4]; }));
}
template <class T, int N> ZVP_INLINE Vec<T, N> oddLanes32(Vec<T, N> a, Vec<T, N> b) {
  const auto x = as<U32<int(sizeof a / 4)>>(a), y = as<U32<int(sizeof a / 4)>>(b);
  return as<Vec<T, N>>(detail::byHalves<U32<int(sizeof a / 4)>>(
      [&](int h, int i) { return i < 2 ? x.lane[h + 2 * i + 1] : y.lane[h + 2 * i - 3]; }));
}
template <int Count, class T, int N> ZVP_INLINE Vec<T, N> shiftBytesUp(Vec<T, N> a) {
  const auto x = as<U8<int(sizeof a)>>(a);
  return as<Vec<T, N>>(detail::byHalves<U8<int(sizeof a)>>(
      [&](int h, int i) { return i < Count ? u8(0) : x.lane[h + i - Count]; }));
}
template <int Count, class T, int N> ZVP_INLINE Vec<T, N> shiftBytesDown(Vec<T, N> a) {
  const auto x = as<U8<int(sizeof a)>>(a);
  return as<Vec<T, N>>(detail::byHalves<U8<int(sizeof a)>>(
      [&](int h, int i) { return i + Count > 15 ? u8(0) : x.lane[h + i + Count]; }));
}
template <class T, int N> ZVP_INLINE u32 signBits(Vec<T, N> a) {
  const auto x = as<U8<int(sizeof a)>>(a);
  u32 bits = 0;
  for (int i = 0; i < int(sizeof a); ++i) bits |= u32(x.lane[i] >> 7) << i;
  return bits;
}
template <int Lane> ZVP_INLINE S16<8> withLane(S16<8> a, s16 value) {
  a.lane[Lane] = value;
  return a;
}
ZVP_INLINE S16<8> withLow32(S16<8> a, S16<8> b) {
  std::memcpy(&a, &b, 4);
  return a;
}
template <class T, int N> ZVP_INLINE u32 low32(Vec<T, N> a) { return as<U32<int(sizeof a / 4)>>(a).lane[0]; }
template <class T, int N> ZVP_INLINE u64 low64(Vec<T, N> a) { return as<U64<int(sizeof a / 8)>>(a).lane[0]; }
#else
// a0 b0 a1 b1 ... of the low or the high eight bytes.
#define ZVP_INTERLEAVE(T, WIDTH)                                      \
  ZVP_LANES2(interleaveLow, T, unpacklo_epi##WIDTH, )                 \
  ZVP_LANES2(interleaveHigh, T, unpackhi_epi##WIDTH, )
ZVP_INTERLEAVE(u8, 8)
ZVP_INTERLEAVE(s8, 8)
ZVP_INTERLEAVE(u16, 16)
ZVP_INTERLEAVE(s16, 16)
ZVP_INTERLEAVE(u32, 32)
ZVP_INTERLEAVE(s32, 32)
ZVP_INTERLEAVE(u64, 64)
#undef ZVP_INTERLEAVE

// Lanes of half the width: those of a, then those of b.
#if defined(__AVX2__)
#define ZVP_PACK(NAME, FROM, TO, OP)                                                                               \
  ZVP_INLINE Vec<TO, 16 / sizeof(TO)> NAME(Vec<FROM, 16 / sizeof(FROM)> a, Vec<FROM, 16 / sizeof(FROM)> b) {       \
    return {_mm_##OP(a.v, b.v)};                                                                                   \
  }                                                                                                                \
  ZVP_INLINE Vec<TO, 32 / sizeof(TO)> NAME(Vec<FROM, 32 / sizeof(FROM)> a, Vec<FROM, 32 / sizeof(FROM)> b) {       \
    return {_mm256_##OP(a.v, b.v)};                                                                                \
  }
ZVP_PACK(packSaturateU16, s32, u16, packus_epi32)
#else
#define ZVP_PACK(NAME, FROM, TO, OP)                                                                               \
  ZVP_INLINE Vec<TO, 16 / sizeof(TO)> NAME(Vec<FROM, 16 / sizeof(FROM)> a, Vec<FROM, 16 / sizeof(FROM)> b) {       \
    return {_mm_##OP(a.v, b.v)};                                                                                   \
  }
#endif
ZVP_PACK(packSaturateU8, s16, u8, packus_epi16)
ZVP_PACK(packSaturateS8, s16, s8, packs_epi16)
ZVP_PACK(packSaturateS16, s32, s16, packs_epi32)
ZVP_PACK(mulAddPairs, s16, s32, madd_epi16)   // a0 * b0 + a1 * b1, ...
ZVP_PACK(sumAbsDiff, u8, u64, sad_epu8)       // the sum over each eight bytes of |a - b|
#undef ZVP_PACK
#if !defined(__AVX2__)
ZVP_INLINE U16<8> packSaturateU16(S32<4> a, S32<4> b) {
  // Below 32768 the signed packing of x - 32768 saturates at the right places, but the subtraction must not wrap.
  const S32<4> bias = splat<S32<4>>(32768);
  const S32<4> x = andNot(shiftRight<31>(a), a) - bias, y = andNot(shiftRight<31>(b), b) - bias;
  return as<U16<8>>(packSaturateS16(x, y) ^ splat<S16<8>>(-32768));
}
#endif

// Lane i of each half becomes lane (Control >> 2 i) & 3: of the 32-bit lanes, or of the low or high four 16-bit ones.
#if defined(__AVX2__)
#define ZVP_SHUFFLE(NAME, OP, OP256)                                              \
  template <int Control, class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a) { \
    if constexpr (sizeof a == 16) return {_mm_##OP(a.v, Control)};                \
    else return {_mm256_##OP256(a.v, Control)};                                   \
  }
#else
#define ZVP_SHUFFLE(NAME, OP, OP256) \
  template <int Control, class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a) { return {_mm_##OP(a.v, Control)}; }
#endif
ZVP_SHUFFLE(shuffle32, shuffle_epi32, shuffle_epi32)
ZVP_SHUFFLE(shuffleLow16, shufflelo_epi16, shufflelo_epi16)
ZVP_SHUFFLE(shuffleHigh16, shufflehi_epi16, shufflehi_epi16)
// The 32-bit lanes 0 and 2, or 1 and 3, of a's half, then those of b's.
#if defined(__AVX2__)
#define ZVP_EVERY_OTHER(NAME, CONTROL)                                                                            \
  template <class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a, Vec<T, N> b) {                                  \
    if constexpr (sizeof a == 16)                                                                                  \
      return {_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), CONTROL))};            \
    else                                                                                                           \
      return {_mm256_castps_si256(                                                                                 \
          _mm256_shuffle_ps(_mm256_castsi256_ps(a.v), _mm256_castsi256_ps(b.v), CONTROL))};                        \
  }
#else
#define ZVP_EVERY_OTHER(NAME, CONTROL)                                                                    \
  template <class T, int N> ZVP_INLINE Vec<T, N> NAME(Vec<T, N> a, Vec<T, N> b) {                          \
    return {_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v), CONTROL))};      \
  }
#endif
ZVP_EVERY_OTHER(evenLanes32, 0x88)
ZVP_EVERY_OTHER(oddLanes32, 0xdd)
#undef ZVP_EVERY_OTHER
// By bytes, zeros coming in: up is toward the higher lanes.
ZVP_SHUFFLE(shiftBytesUp, slli_si128, slli_si256)
ZVP_SHUFFLE(shiftBytesDown, srli_si128, srli_si256)
#undef ZVP_SHUFFLE

// The top bit of each byte, byte 0 in bit 0.
template <class T, int N> ZVP_INLINE u32 signBits(Vec<T, N> a) {
#if defined(__AVX2__)
  if constexpr (sizeof a == 32) return u32(_mm256_movemask_epi8(a.v));
  else
#endif
    return u32(_mm_movemask_epi8(a.v));
}
// The 16-bit lanes with one of them replaced.
template <int Lane> ZVP_INLINE S16<8> withLane(S16<8> a, s16 value) { return {_mm_insert_epi16(a.v, value, Lane)}; }
// The same with the lowest 32 bits replaced by those of b.
ZVP_INLINE S16<8> withLow32(S16<8> a, S16<8> b) {
  return {_mm_castps_si128(_mm_move_ss(_mm_castsi128_ps(a.v), _mm_castsi128_ps(b.v)))};
}
// The lowest 32 or 64 bits.
template <class T, int N> ZVP_INLINE u32 low32(Vec<T, N> a) {
#if defined(__AVX2__)
  if constexpr (sizeof a == 32) return u32(_mm256_cvtsi256_si32(a.v));
  else
#endif
    return u32(_mm_cvtsi128_si32(a.v));
}
template <class T, int N> ZVP_INLINE u64 low64(Vec<T, N> a) {
#if defined(__AVX2__)
  if constexpr (sizeof a == 32) return u64(_mm_cvtsi128_si64(_mm256_castsi256_si128(a.v)));
  else
#endif
    return u64(_mm_cvtsi128_si64(a.v));
}
#endif
#undef ZVP_LANES1
#undef ZVP_LANES2
#undef ZVP_BITS2

// ---- put together of the above ----------------------------------------------------------------------------------

// Bytes as 16-bit lanes; the halves of S16 as 32-bit ones with their sign.
template <int N> ZVP_INLINE S16<N / 2> widenLow(U8<N> a) { return as<S16<N / 2>>(interleaveLow(a, zero<U8<N>>())); }
template <int N> ZVP_INLINE S16<N / 2> widenHigh(U8<N> a) { return as<S16<N / 2>>(interleaveHigh(a, zero<U8<N>>())); }
template <int N> ZVP_INLINE S32<N / 2> widenLow(S16<N> a) {
  return shiftRight<16>(as<S32<N / 2>>(interleaveLow(a, a)));
}
template <int N> ZVP_INLINE S32<N / 2> widenHigh(S16<N> a) {
  return shiftRight<16>(as<S32<N / 2>>(interleaveHigh(a, a)));
}
template <int N> ZVP_INLINE S32<N / 2> widenLow(U16<N> a) { return as<S32<N / 2>>(interleaveLow(a, zero<U16<N>>())); }
template <int N> ZVP_INLINE S32<N / 2> widenHigh(U16<N> a) { return as<S32<N / 2>>(interleaveHigh(a, zero<U16<N>>())); }

// The low 16 bits of 32-bit lanes, without saturation: those of a, then those of b.
template <int N> ZVP_INLINE S16<2 * N> packTruncateS16(S32<N> a, S32<N> b) {
  return packSaturateS16(shiftRight<16>(shiftLeft<16>(a)), shiftRight<16>(shiftLeft<16>(b)));
}
// The low eight bits of 16-bit lanes, without saturation.
template <int N> ZVP_INLINE U8<2 * N> packTruncateU8(S16<N> a, S16<N> b) {
  const auto mask = splat<S16<N>>(255);
  return packSaturateU8(a & mask, b & mask);
}

// Bytes Count.. of low followed by the first bytes of high, in each half.
template <int Count, class T, int N> ZVP_INLINE Vec<T, N> concatShift(Vec<T, N> low, Vec<T, N> high) {
  static_assert(Count > 0 && Count < 16);
  return shiftBytesDown<Count>(low) | shiftBytesUp<16 - Count>(high);
}

// Two registers of half the width as one, and the halves of one.
#if defined(ZVP_SIMD_PLAIN)
template <class T, int N> ZVP_INLINE Vec<T, 2 * N> join(Vec<T, N> low, Vec<T, N> high) {
  Vec<T, 2 * N> r;
  std::memcpy(&r, &low, sizeof low);
  std::memcpy(reinterpret_cast<u8*>(&r) + sizeof low, &high, sizeof high);
  return r;
}
template <class T, int N> ZVP_INLINE Vec<T, N / 2> lowHalf(Vec<T, N> a) { return load<Vec<T, N / 2>>(&a); }
template <class T, int N> ZVP_INLINE Vec<T, N / 2> highHalf(Vec<T, N> a) {
  return load<Vec<T, N / 2>>(reinterpret_cast<const u8*>(&a) + sizeof a / 2);
}
#elif defined(__AVX2__)
template <class T, int N> ZVP_INLINE Vec<T, 2 * N> join(Vec<T, N> low, Vec<T, N> high) {
  return {_mm256_inserti128_si256(_mm256_castsi128_si256(low.v), high.v, 1)};
}
template <class T, int N> ZVP_INLINE Vec<T, N / 2> lowHalf(Vec<T, N> a) { return {_mm256_castsi256_si128(a.v)}; }
template <class T, int N> ZVP_INLINE Vec<T, N / 2> highHalf(Vec<T, N> a) { return {_mm256_extracti128_si256(a.v, 1)}; }
#endif

// N bytes at p as N 16-bit lanes in order, N being 8 or, with 32-byte registers, 16.
template <int N> ZVP_INLINE S16<N> loadWidened(const u8* p) {
  if constexpr (N == 8) return widenLow(loadBytes<U8<16>, 8>(p));
#if defined(__AVX2__) && !defined(ZVP_SIMD_PLAIN)
  else return {_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
#endif
}

// N / W rows of W bytes, row after row, W being 4, 8, 16 or 32. Touches those bytes only.
template <int W, int N> ZVP_INLINE U8<N> loadRows(const u8* p, std::ptrdiff_t step) {
  if constexpr (W == N) {
    return load<U8<N>>(p);
  } else if constexpr (N == 16 && W == 8) {
    return load8x2<U8<16>>(p, p + step);
  } else if constexpr (N == 16 && W == 4) {
    const auto a = loadBytes<U32<4>, 4>(p), b = loadBytes<U32<4>, 4>(p + step);
    const auto c = loadBytes<U32<4>, 4>(p + 2 * step), d = loadBytes<U32<4>, 4>(p + 3 * step);
    return as<U8<16>>(interleaveLow(as<U64<2>>(interleaveLow(a, b)), as<U64<2>>(interleaveLow(c, d))));
  }
#if defined(__AVX2__) || defined(ZVP_SIMD_PLAIN)
  else {
    return join(loadRows<W, N / 2>(p, step), loadRows<W, N / 2>(p + N / 2 / W * step, step));
  }
#endif
}
template <int W, int N> ZVP_INLINE void storeRows(u8* p, std::ptrdiff_t step, U8<N> v) {
  if constexpr (W == N) {
    store(p, v);
  } else if constexpr (N == 16 && W == 8) {
    storeBytes<8>(p, v);
    storeHigh8(p + step, v);
  } else if constexpr (N == 16 && W == 4) {
    storeBytes<4>(p, v);
    storeBytes<4>(p + step, shuffle32<0x55>(v));
    storeBytes<4>(p + 2 * step, shuffle32<0xaa>(v));
    storeBytes<4>(p + 3 * step, shuffle32<0xff>(v));
  }
#if defined(__AVX2__) || defined(ZVP_SIMD_PLAIN)
  else {
    storeRows<W, N / 2>(p, step, lowHalf(v));
    storeRows<W, N / 2>(p + N / 2 / W * step, step, highHalf(v));
  }
#endif
}

// Sums over all lanes.
ZVP_INLINE u64 reduceAdd(U64<2> a) { return low64(a + as<U64<2>>(shuffle32<0x4e>(a))); }
ZVP_INLINE s32 reduceAdd(S32<4> a) {
  a = a + shuffle32<0x4e>(a);
  return s32(low32(a + shuffle32<0xb1>(a)));
}
ZVP_INLINE s32 reduceAdd(S16<8> a) { return reduceAdd(mulAddPairs(a, splat<S16<8>>(1))); }
#if defined(__AVX2__) || defined(ZVP_SIMD_PLAIN)
ZVP_INLINE u64 reduceAdd(U64<4> a) { return reduceAdd(lowHalf(a) + highHalf(a)); }
ZVP_INLINE s32 reduceAdd(S32<8> a) { return reduceAdd(lowHalf(a) + highHalf(a)); }
ZVP_INLINE s32 reduceAdd(S16<16> a) { return reduceAdd(mulAddPairs(a, splat<S16<16>>(1))); }
#endif

// Whether no bit, or every bit, is set. For masks, and for "is there any non-zero lane".
template <class T, int N> ZVP_INLINE bool noneSet(Vec<T, N> a) {
  return signBits(equal(as<U8<int(sizeof a)>>(a), zero<U8<int(sizeof a)>>())) == u32((u64(1) << sizeof a) - 1);
}
template <class T, int N> ZVP_INLINE bool allSet(Vec<T, N> a) {
  return signBits(equal(as<U8<int(sizeof a)>>(a), splat<U8<int(sizeof a)>>(255))) == u32((u64(1) << sizeof a) - 1);
}

// Rows become columns, in place: four rows of four 32-bit lanes, eight of eight 16-bit lanes.
ZVP_INLINE void transpose(S32<4> (&r)[4]) {
  const auto a = as<U64<2>>(interleaveLow(r[0], r[1])), b = as<U64<2>>(interleaveLow(r[2], r[3]));
  const auto c = as<U64<2>>(interleaveHigh(r[0], r[1])), d = as<U64<2>>(interleaveHigh(r[2], r[3]));
  r[0] = as<S32<4>>(interleaveLow(a, b));
  r[1] = as<S32<4>>(interleaveHigh(a, b));
  r[2] = as<S32<4>>(interleaveLow(c, d));
  r[3] = as<S32<4>>(interleaveHigh(c, d));
}
ZVP_INLINE void transpose(S16<8> (&r)[8]) {
  S32<4> low[4], high[4];  // rows 0-3 and 4-7 of columns 0-3 (low) and 4-7 (high), in pairs of rows
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) {
    low[i] = as<S32<4>>(interleaveLow(r[2 * i], r[2 * i + 1]));
    high[i] = as<S32<4>>(interleaveHigh(r[2 * i], r[2 * i + 1]));
  }
  transpose(low);
  transpose(high);
#pragma GCC unroll 4
  for (int i = 0; i < 4; ++i) {
    r[i] = as<S16<8>>(low[i]);
    r[4 + i] = as<S16<8>>(high[i]);
  }
}
// A 4x4 block of 16-bit lanes in two registers, rows 0-1 and 2-3, in place.
ZVP_INLINE void transpose4x4(S16<8>& rows01, S16<8>& rows23) {
  const auto a = interleaveLow(rows01, rows23), b = interleaveHigh(rows01, rows23);  // 0 2 / 1 3 interleaved
  const auto c = interleaveLow(a, b), d = interleaveHigh(a, b);
  rows01 = c;
  rows23 = d;
}

}  // namespace zvp::simd
