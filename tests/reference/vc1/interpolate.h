// Model of the VC-1 interpolation (SMPTE 421M 8.3.6.5): sample by sample, and the padded copy step by step.
#pragma once

#include <cstdint>
#include <vector>

#include "zvpvc.h"

namespace reference::vc1 {

enum class Filter { Bicubic, Bilinear };

// A filter on one plane or on interleaved pairs, with its two exports.
struct InterpolationMember {
  const char *name, *icName;
  Filter filter;
  int channels;
  zvpStatus (*qp)(const zvpInterpolationBlock*);
  zvpStatus (*ic)(const zvpInterpolationICBlock*);
};
const std::vector<InterpolationMember>& interpolationMembers();

// The sizes that it has kernels for.
std::vector<zvpSize> sizesOf(const InterpolationMember& member);

// The size that the kernel for a size has, in samples.
zvpSize kernelSize(const InterpolationMember& member, zvpSize size);

void interpolate(const InterpolationMember& member, const zvpInterpolationBlock& block);
void interpolateInPlane(const InterpolationMember& member, const zvpInterpolationICBlock& block);

}  // namespace reference::vc1
