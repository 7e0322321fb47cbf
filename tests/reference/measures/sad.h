// Models of the SAD at half-pel precision, for bytes and for 16-bit samples.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
std::uint32_t sad(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType);
std::uint32_t sad(const std::uint16_t* src, std::ptrdiff_t srcStep, const std::uint16_t* ref, std::ptrdiff_t refStep,
                  int width, int height, int mcType);
}  // namespace reference::measures
