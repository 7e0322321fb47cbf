// Scalar model of the half-pel copies, averages and adds. acc: bit 0 half in x, bit 1 half in y; rounding: bit 0.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::mc {

void copy(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* dst, std::ptrdiff_t dstStep, int width,
          int height, int acc, int rounding);
void average(const std::uint8_t* src1, std::ptrdiff_t src1Step, const std::uint8_t* src2, std::ptrdiff_t src2Step,
             std::uint8_t* dst, std::ptrdiff_t dstStep, int width, int height);
void interpolateAverage(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* srcDst,
                        std::ptrdiff_t srcDstStep, int width, int height, int acc, int rounding);
void add8x8(const void* residual, std::ptrdiff_t residualStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
            std::uint8_t* dst, std::ptrdiff_t dstStep, int acc, int rounding);
void addConstant8x8(std::int32_t value, std::uint8_t* srcDst, std::ptrdiff_t srcDstStep);

}  // namespace reference::mc
