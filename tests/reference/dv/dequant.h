// Models of DV dequantization, one element after the other.
#pragma once

#include <cstdint>
#include <vector>

namespace reference::dv {

using Block = std::vector<std::int16_t>;  // 64 elements

Block dequantize(const Block& block, const Block& table);
Block dequantizeWeighted(const Block& block, const Block& weights, const Block& steps);
Block dequantizeDV100(const Block& block, const Block& weights, std::int32_t step);
// The samples of an 8x8 block with the means of their 2x2 in the first 16 elements.
Block reduced(const Block& samples);
// The sum over an n x n area of samples, divided by their number toward zero.
int meanTowardZero(int sum, int samples);

}  // namespace reference::dv
