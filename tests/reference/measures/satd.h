// Model of the SATD: tile by tile, each step of the transform as it is written down.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
std::int32_t satd(const std::uint8_t* a, std::ptrdiff_t aStep, const std::uint8_t* b, std::ptrdiff_t bStep, int width,
                  int height);
}
