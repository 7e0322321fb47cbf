// Model of H.264 weighted sample prediction, in 32-bit arithmetic that wraps.
#pragma once

#include <cstdint>

namespace reference::h264 {

// Upper bound of the clip for a depth.
std::int32_t highest(std::int32_t bitDepth);

std::int32_t weightOne(std::int32_t s, std::int32_t logWD, std::int32_t weight, std::int32_t offset, std::int32_t high);
std::int32_t weightTwo(std::int32_t s1, std::int32_t s2, std::int32_t logWD, std::int32_t weight1, std::int32_t offset1,
                       std::int32_t weight2, std::int32_t offset2, std::int32_t high);
std::int32_t weightImplicit(std::int32_t s1, std::int32_t s2, std::int32_t weight1, std::int32_t weight2,
                            std::int32_t high);
// Before the clip.
std::int32_t weightedAverage(std::int32_t src, std::int32_t dst, std::int32_t weight1, std::int32_t weight2,
                             std::int32_t logWD, std::int32_t offset);

}  // namespace reference::h264
