// Model of the 8x8 Hadamard transform: the product of matrices, and the sum of the magnitudes of what is stored.
#pragma once

#include <cstdint>

namespace reference::vc1 {

// src: 64 samples without gaps.
std::uint32_t hadamardSum(const std::int32_t* src, std::int16_t* dst);

}  // namespace reference::vc1
