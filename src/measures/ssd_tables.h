// The SSD kernels by block and half-pel case. A table's slots are the values of mcType >> 2.
#pragma once

#include "measures/ssd_kernels.h"

namespace zvp::measures {

// clang-format off
constexpr MeasureFn ownvc_SSD8x8_8u32s_C1R    = ssd8u<8, 8, HalfPel::none>;
constexpr MeasureFn ownvc_SSD8x8_8u32s_C1R_FH = ssd8u<8, 8, HalfPel::FH>;
constexpr MeasureFn ownvc_SSD8x8_8u32s_C1R_HF = ssd8u<8, 8, HalfPel::HF>;
constexpr MeasureFn ownvc_SSD8x8_8u32s_C1R_HH = ssd8u<8, 8, HalfPel::HH>;
constexpr MeasureFn ownvc_SSD4x4_8u32s_C1R    = ssd8u<4, 4, HalfPel::none>;
constexpr MeasureFn ownvc_SSD4x4_8u32s_C1R_FH = ssd8u<4, 4, HalfPel::FH>;
constexpr MeasureFn ownvc_SSD4x4_8u32s_C1R_HF = ssd8u<4, 4, HalfPel::HF>;
constexpr MeasureFn ownvc_SSD4x4_8u32s_C1R_HH = ssd8u<4, 4, HalfPel::HH>;
// clang-format on

constexpr MeasureTable ownvc_SSD8x8HP_8u32s_C1R_0 = {ownvc_SSD8x8_8u32s_C1R, ownvc_SSD8x8_8u32s_C1R_FH,
                                                     ownvc_SSD8x8_8u32s_C1R_HF, ownvc_SSD8x8_8u32s_C1R_HH};
constexpr MeasureTable ownvc_SSD4x4HP_8u32s_C1R_0 = {ownvc_SSD4x4_8u32s_C1R, ownvc_SSD4x4_8u32s_C1R_FH,
                                                     ownvc_SSD4x4_8u32s_C1R_HF, ownvc_SSD4x4_8u32s_C1R_HH};

}  // namespace zvp::measures
