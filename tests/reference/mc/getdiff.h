// Scalar model of the differences between a block and a half-pel prediction.
#pragma once

#include "reference/mc/predict.h"

namespace reference::mc {

// 16-bit values at a step in bytes. A null top is not written.
struct Values {
  void* top;
  std::ptrdiff_t step;
};
struct Current {
  const std::uint8_t* top;
  std::ptrdiff_t step;
};

void getDiff(int width, int height, const Current& cur, const Reference& ref, const Values& diff,
             const Values& predictor, std::int32_t roundControl);
void getDiff(int width, int height, const Current& cur, const Reference& forward, const Reference& backward,
             const Values& diff, std::int32_t roundControl);
// Interleaved chroma: width counts pairs.
void getDiffChroma(int width, int height, const Current& cur, const Reference& ref, const Values& diffU,
                   const Values& diffV, std::int32_t roundControl);
void getDiffChroma(int width, int height, const Current& cur, const Reference& forward, const Reference& backward,
                   const Values& diffU, const Values& diffV, std::int32_t roundControl);

}  // namespace reference::mc
