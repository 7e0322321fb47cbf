// The SAD kernels by block and half-pel case. A table's slots are the values of mcType >> 2.
#pragma once

#include "measures/sad_kernels.h"

namespace zvp::measures {

// clang-format off
constexpr MeasureFn ownvc_SAD16x16_8u32s_C1R     = sad8u<16, 16, HalfPel::none>;
constexpr MeasureFn ownvc_SAD16x16_8u32s_C1R_FH  = sad8u<16, 16, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD16x16_8u32s_C1R_HF  = sad8u<16, 16, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD16x16_8u32s_C1R_HH  = sad8u<16, 16, HalfPel::HH>;
constexpr MeasureFn ownvc_SAD16x8_8u32s_C1R      = sad8u<16, 8, HalfPel::none>;
constexpr MeasureFn ownvc_SAD16x8_8u32s_C1R_FH   = sad8u<16, 8, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD16x8_8u32s_C1R_HF   = sad8u<16, 8, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD16x8_8u32s_C1R_HH   = sad8u<16, 8, HalfPel::HH>;
constexpr MeasureFn ownvc_SAD8x8_8u32s_C1R       = sad8u<8, 8, HalfPel::none>;
constexpr MeasureFn ownvc_SAD8x8_8u32s_C1R_FH    = sad8u<8, 8, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD8x8_8u32s_C1R_HF    = sad8u<8, 8, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD8x8_8u32s_C1R_HH    = sad8u<8, 8, HalfPel::HH>;
constexpr MeasureFn ownvc_SAD16x16_16u32s_C1R    = sad16u<16, 16, HalfPel::none>;
constexpr MeasureFn ownvc_SAD16x16_16u32s_C1R_FH = sad16u<16, 16, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD16x16_16u32s_C1R_HF = sad16u<16, 16, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD16x16_16u32s_C1R_HH = sad16u<16, 16, HalfPel::HH>;
constexpr MeasureFn ownvc_SAD8x8_16u32s_C1R      = sad16u<8, 8, HalfPel::none>;
constexpr MeasureFn ownvc_SAD8x8_16u32s_C1R_FH   = sad16u<8, 8, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD8x8_16u32s_C1R_HF   = sad16u<8, 8, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD8x8_16u32s_C1R_HH   = sad16u<8, 8, HalfPel::HH>;
constexpr MeasureFn ownvc_SAD4x4_16u32s_C1R      = sad16u<4, 4, HalfPel::none>;
constexpr MeasureFn ownvc_SAD4x4_16u32s_C1R_FH   = sad16u<4, 4, HalfPel::FH>;
constexpr MeasureFn ownvc_SAD4x4_16u32s_C1R_HF   = sad16u<4, 4, HalfPel::HF>;
constexpr MeasureFn ownvc_SAD4x4_16u32s_C1R_HH   = sad16u<4, 4, HalfPel::HH>;
// clang-format on

constexpr MeasureTable ownvc_SAD16x16HP_8u32s_C1R_0 = {ownvc_SAD16x16_8u32s_C1R, ownvc_SAD16x16_8u32s_C1R_FH,
                                                       ownvc_SAD16x16_8u32s_C1R_HF, ownvc_SAD16x16_8u32s_C1R_HH};
constexpr MeasureTable ownvc_SAD16x8HP_8u32s_C1R_0 = {ownvc_SAD16x8_8u32s_C1R, ownvc_SAD16x8_8u32s_C1R_FH,
                                                      ownvc_SAD16x8_8u32s_C1R_HF, ownvc_SAD16x8_8u32s_C1R_HH};
constexpr MeasureTable ownvc_SAD8x8HP_8u32s_C1R_0 = {ownvc_SAD8x8_8u32s_C1R, ownvc_SAD8x8_8u32s_C1R_FH,
                                                     ownvc_SAD8x8_8u32s_C1R_HF, ownvc_SAD8x8_8u32s_C1R_HH};
constexpr MeasureTable ownvc_SAD16x16HP_16u32s_C1R_0 = {ownvc_SAD16x16_16u32s_C1R, ownvc_SAD16x16_16u32s_C1R_FH,
                                                        ownvc_SAD16x16_16u32s_C1R_HF, ownvc_SAD16x16_16u32s_C1R_HH};
constexpr MeasureTable ownvc_SAD8x8HP_16u32s_C1R_0 = {ownvc_SAD8x8_16u32s_C1R, ownvc_SAD8x8_16u32s_C1R_FH,
                                                      ownvc_SAD8x8_16u32s_C1R_HF, ownvc_SAD8x8_16u32s_C1R_HH};
constexpr MeasureTable ownvc_SAD4x4HP_16u32s_C1R_0 = {ownvc_SAD4x4_16u32s_C1R, ownvc_SAD4x4_16u32s_C1R_FH,
                                                      ownvc_SAD4x4_16u32s_C1R_HF, ownvc_SAD4x4_16u32s_C1R_HH};

}  // namespace zvp::measures
