// Integer names, function attributes and the arithmetic that is meant to wrap: what every source file includes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "zvpvc.h"

#define ZVP_INLINE [[gnu::always_inline]] inline

namespace zvp {

using u8 = std::uint8_t;
using s8 = std::int8_t;
using u16 = std::uint16_t;
using s16 = std::int16_t;
using u32 = std::uint32_t;
using s32 = std::int32_t;
using u64 = std::uint64_t;
using s64 = std::int64_t;

// 32-bit arithmetic modulo 2^32, for sums and products whose overflow the contract defines as wrapping.
ZVP_INLINE constexpr s32 wrapAdd(s32 a, s32 b) { return s32(u32(a) + u32(b)); }
ZVP_INLINE constexpr s32 wrapSub(s32 a, s32 b) { return s32(u32(a) - u32(b)); }
ZVP_INLINE constexpr s32 wrapMul(s32 a, s32 b) { return s32(u32(a) * u32(b)); }
ZVP_INLINE constexpr s32 wrapNeg(s32 a) { return s32(0u - u32(a)); }
// The count is taken modulo 32, as the shift instructions take it.
ZVP_INLINE constexpr s32 wrapShl(s32 a, s32 count) { return s32(u32(a) << (count & 31)); }

ZVP_INLINE constexpr s32 clip(s32 value, s32 low, s32 high) { return value < low ? low : value > high ? high : value; }
ZVP_INLINE constexpr u8 clipU8(s32 value) { return u8(clip(value, 0, 255)); }
ZVP_INLINE constexpr s16 clipS16(s32 value) { return s16(clip(value, -32768, 32767)); }

// Rows of elements wider than a byte may start at any address: elements come and go by memcpy.
template <class T> ZVP_INLINE T loadAs(const void* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
template <class T> ZVP_INLINE void storeAs(void* p, T value) { std::memcpy(p, &value, sizeof value); }

// Row y of a plane whose step counts bytes. The step is widened before it is multiplied.
template <class T> ZVP_INLINE T* advanceBytes(T* p, std::ptrdiff_t bytes) {
  using Byte = std::conditional_t<std::is_const_v<T>, const u8, u8>;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(p) + bytes);
}

}  // namespace zvp
