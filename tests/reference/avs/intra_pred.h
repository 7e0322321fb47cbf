// Models of the AVS intra predictors, sample by sample.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference {

enum class AvsPredictor { Vertical, Horizontal, Dc, DownLeft, DownRight, Plane, Fill };

// Writes the block, or returns false when a neighbour that it needs is missing.
bool avsPredict(AvsPredictor predictor, std::uint8_t* dst, std::ptrdiff_t step, int availability);

}  // namespace reference
