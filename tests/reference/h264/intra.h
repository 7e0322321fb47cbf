// Intra prediction by the formulas of H.264 8.3, sample by sample. Flags: 1 above, 2 left, 32 corner, 64 above right.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::h264 {

// The modes as the three exports number them. The status is that of the export behind its tests of pointer, step and
// mode; what cannot be predicted is left alone.
std::int32_t predict4x4(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags);
std::int32_t predict16x16(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags);
std::int32_t predictChroma(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags);

// 8x8 luma (8.3.2.2). zvpStatusPredictionUnavailable if the mode lacks a neighbour.
std::int32_t predict8x8(std::uint8_t* p, std::ptrdiff_t step, int mode, int flags);

// The chroma DC mode with neighbours told apart for the upper and the lower two quadrants.
void predictChromaDc(std::uint8_t* p, std::ptrdiff_t step, int flagsAbove, int flagsBelow);

}  // namespace reference::h264
