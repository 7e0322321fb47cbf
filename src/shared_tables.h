// Constant tables that several families use.
#pragma once

#include <array>

#include "types.h"

namespace zvp {

namespace detail {
constexpr std::array<u32, 33> lowBitMasks() {
  std::array<u32, 33> masks{};
  for (int n = 0; n <= 32; ++n) masks[std::size_t(n)] = u32((u64(1) << n) - 1);
  return masks;
}
constexpr std::array<u8, 768> clampTable() {
  std::array<u8, 768> table{};
  for (int i = 0; i < 768; ++i) table[std::size_t(i)] = clipU8(i - 256);
  return table;
}
}  // namespace detail

// Entry n has the n low bits set.
inline constexpr std::array<u32, 33> bit_mask = detail::lowBitMasks();
// The MPEG-4 coefficient decoders' own copy.
inline constexpr std::array<u32, 33> ownvc_BitMask = detail::lowBitMasks();
static_assert(bit_mask[0] == 0 && bit_mask[1] == 1 && bit_mask[31] == 0x7fffffff && bit_mask[32] == 4294967295u);

// Entry i is i - 256 clipped to 0..255.
inline constexpr std::array<u8, 768> ClampTbl = detail::clampTable();
static_assert(ClampTbl[0] == 0 && ClampTbl[256] == 0 && ClampTbl[257] == 1 && ClampTbl[511] == 255 && ClampTbl[767] == 255);

// Stand-ins for blocks that were not coded.
alignas(32) inline constexpr std::array<u8, 32> zeroArray{};
alignas(32) inline constexpr std::array<s16, 16> zeroArray16{};
alignas(32) inline constexpr std::array<s32, 16> zeroArray32{};

}  // namespace zvp
