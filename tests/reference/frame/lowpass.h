// Model of the box filter: each output pixel from its whole window.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference {
void lowpass(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* dst, std::ptrdiff_t dstStep, int width,
             int height, int windowSize);
}
