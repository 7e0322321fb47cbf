// Scalar models of the deinterlacers, sample by sample.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zvpvc.h"

namespace reference {

struct Picture {
  const std::uint8_t* data;
  std::ptrdiff_t step;
  int at(int x, int y) const { return data[y * step + x]; }
};
struct Target {
  std::uint8_t* data;
  std::ptrdiff_t step;
  std::uint8_t& at(int x, int y) const { return data[y * step + x]; }
};

void deinterlaceTriangle(Picture src, Target dst, zvpSize size, std::uint32_t centerWeight, int layout);
void deinterlaceEdgeDetect(Picture src, Target dst, zvpSize size, int fieldNum, bool copyBorder);
void deinterlaceMedian(Picture src, Target dst, zvpSize size, int threshold, int fieldNum, bool copyBorder);

struct BlendModel {
  int slope = 0, intercept = 0, highMotion = 0, lowMotion = 0;
  int spatialWeight[256], medianWeight[256];
  void set(int motion, int spatial) {
    spatialWeight[motion] = spatial;
    medianWeight[motion] = 256 - spatial;
  }
};
// Sorts and bounds both pairs in place, as the call does.
BlendModel blendWeights(std::int32_t* thresholds, double* weights);
void deinterlaceBlend(const Picture (&frames)[3], Target dst, zvpSize size, bool topFirst, bool topField,
                      bool copyField, const BlendModel& weights);
void deinterlaceMotionAdaptive(const Picture (&frames)[4], Target dst, zvpSize size, int threshold, int topFirst,
                               int topField, bool copyField, bool artifactProtection);

}  // namespace reference
