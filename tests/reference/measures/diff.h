// Models of the residual block. dst gets width * height values, row after row.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
void subtract(const std::uint8_t* a, std::ptrdiff_t aStep, const std::uint8_t* b, std::ptrdiff_t bStep,
              std::int16_t* dst, int width, int height);
void subtract(const std::uint16_t* a, std::ptrdiff_t aStep, const std::uint16_t* b, std::ptrdiff_t bStep,
              std::int16_t* dst, int width, int height);
}  // namespace reference::measures
