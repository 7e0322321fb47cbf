// Scalar model of the motion compensation with a residual.
#pragma once

#include "reference/mc/predict.h"

namespace reference::mc {

// 16-bit residual values. With a second plane the values of odd bytes, V, stand there, and those of even ones in first.
struct Residual {
  const void* first;
  std::ptrdiff_t step;
  const void* second = nullptr;
};
struct Result {
  std::uint8_t* top;
  std::ptrdiff_t step;
};
struct Shape {
  int width, height;  // width in bytes
  int channels = 1;
};

void compensate(const Shape& shape, const Reference& ref, const Residual& residual, const Result& dst,
                std::int32_t roundControl);
void compensate(const Shape& shape, const Reference& forward, const Reference& backward, const Residual& residual,
                const Result& dst, std::int32_t roundControl);

}  // namespace reference::mc
