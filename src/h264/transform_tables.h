// Constants of 4x4 quantization beyond the scales of residual_tables.h: the forward factors in the shapes that the
// members use, the roundings, and the positions' weights.
#pragma once

#include <array>

#include "h264/residual_tables.h"
#include "types.h"

namespace zvp {

// Forward factors by QP % 6 and position class: 2^21 over normAdjust4x4 times the norms of the transforms, as encoders
// have settled on them.
inline constexpr std::array<std::array<s32, 3>, 6> FwdQuantTable = {{{13107, 5243, 8066},
                                                                     {11916, 4660, 7490},
                                                                     {10082, 4194, 6554},
                                                                     {9362, 3647, 5825},
                                                                     {8192, 3355, 5243},
                                                                     {7282, 2893, 4559}}};

namespace detail {

// Rows of three classes spread over the sixteen positions.
template <class T>
constexpr std::array<std::array<T, 16>, 6> byPosition(const std::array<std::array<s32, 3>, 6>& classes, s32 scale = 1) {
  std::array<std::array<T, 16>, 6> table{};
  for (std::size_t row = 0; row < 6; ++row)
    for (std::size_t i = 0; i < 16; ++i) table[row][i] = T(classes[row][std::size_t(QuantIndex[i])] * scale);
  return table;
}

template <class F>
constexpr auto byQp(F f) {
  std::array<decltype(f(0)), 90> table{};
  for (int qp = 0; qp < 90; ++qp) table[std::size_t(qp)] = f(qp);
  return table;
}

// Entry k is 2^(k + shift) / 6. With entries k and k + 1 that is one sixth and one third of 2^(k + shift).
constexpr std::array<s32, 16> sixths(int shift) {
  std::array<s32, 16> table{};
  for (int k = 0; k < 16; ++k) table[std::size_t(k)] = s32((s64(1) << (k + shift)) / 6);
  return table;
}

constexpr std::array<u16, 256> reciprocals() {
  std::array<u16, 256> table{};
  for (u32 i = 1; i < 256; ++i) table[i] = u16(i == 1 ? 65535 : 65536 / i);
  return table;
}

}  // namespace detail

// Forward factors by QP % 6 and raster position, in 16 and in 32 bits.
inline constexpr std::array<std::array<s16, 16>, 6> FwdQuantTable_16s_0 = detail::byPosition<s16>(FwdQuantTable);
inline constexpr const auto& zvpH264FwdQuant_16s = FwdQuantTable_16s_0;
inline constexpr std::array<std::array<s32, 16>, 6> zvpH264FwdQuant_32s = detail::byPosition<s32>(FwdQuantTable);
inline constexpr const auto& QuantCoef_0 = zvpH264FwdQuant_32s;
static_assert(FwdQuantTable_16s_0[0] == std::array<s16, 16>{13107, 8066, 13107, 8066, 8066, 5243, 8066, 5243, 13107,
                                                            8066, 13107, 8066, 8066, 5243, 8066, 5243});
static_assert(zvpH264FwdQuant_32s[5][0] == 7282 && zvpH264FwdQuant_32s[5][5] == 2893 &&
              zvpH264FwdQuant_32s[5][1] == 4559);

// normAdjust4x4 by QP % 6 and raster position, and 16 times that: LevelScale4x4 of flat scaling lists.
inline constexpr std::array<std::array<s16, 16>, 6> InvQuantTable_def_0 = detail::byPosition<s16>(normAdjust4x4);
inline constexpr std::array<std::array<s16, 16>, 6> InvLevelScale_4x4_default_0 =
    detail::byPosition<s16>(normAdjust4x4, 16);
static_assert(InvQuantTable_def_0[0][0] == 10 && InvQuantTable_def_0[0][1] == 13 && InvQuantTable_def_0[5][15] == 29);
static_assert(InvLevelScale_4x4_default_0[0][0] == 160 && InvLevelScale_4x4_default_0[0][1] == 208 &&
              InvLevelScale_4x4_default_0[0][2] == 160 && InvLevelScale_4x4_default_0[0][3] == 208);

// QP / 6 and QP % 6.
inline constexpr std::array<u8, 90> h264_qp6_0 = detail::byQp([](int qp) { return u8(qp / 6); });
inline constexpr std::array<u8, 90> h264_qp_rem_0 = detail::byQp([](int qp) { return u8(qp % 6); });
inline constexpr std::array<std::array<u8, 2>, 90> zvpH264QpDevide = detail::byQp([](int qp) {
  return std::array<u8, 2>{u8(qp / 6), u8(qp % 6)};
});
static_assert(h264_qp6_0[89] == 14 && h264_qp_rem_0[89] == 5 && zvpH264QpDevide[52] == std::array<u8, 2>{8, 4});

// Roundings of zvpiQuantizeResidual4x4Fwd: entry QP / 6 for inter blocks, the next for intra ones; for the shift of
// QP / 6 + 11 and for that of QP / 6 + 15.
inline constexpr std::array<s32, 16> zvpH264QuantResid_RoundValDef_32s = detail::sixths(11);
inline constexpr std::array<s32, 16> zvpH264QuantResid_RoundValGiven_32s = detail::sixths(15);
static_assert(zvpH264QuantResid_RoundValDef_32s[0] == 341 && zvpH264QuantResid_RoundValDef_32s[1] == 682 &&
              zvpH264QuantResid_RoundValDef_32s[2] == 1365 && zvpH264QuantResid_RoundValDef_32s[15] == 11184810);
static_assert(zvpH264QuantResid_RoundValGiven_32s[0] == 5461 && zvpH264QuantResid_RoundValGiven_32s[1] == 10922);

// The squared norms of the transform's basis, for the prediction's coefficients in switching pictures (H.264 8.6.1).
inline constexpr std::array<s32, 16> MATR_0 = {16, 20, 16, 20, 20, 25, 20, 25, 16, 20, 16, 20, 20, 25, 20, 25};

// 65536 / i.
inline constexpr std::array<u16, 256> dt_0 = detail::reciprocals();
static_assert(dt_0[0] == 0 && dt_0[1] == 65535 && dt_0[2] == 32768 && dt_0[3] == 21845 && dt_0[255] == 257);

}  // namespace zvp
