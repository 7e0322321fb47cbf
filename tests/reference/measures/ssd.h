// Model of the SSD at half-pel precision.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
std::uint32_t ssd(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType);
}
