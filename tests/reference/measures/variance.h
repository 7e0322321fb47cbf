// Models of the block statistics.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
std::int32_t meanAbsDev(const std::uint8_t* src, std::ptrdiff_t step, int size);
std::uint32_t variance16x16(const std::uint8_t* src, std::ptrdiff_t step);
void varSum8x8(const std::uint8_t* src, std::ptrdiff_t step, std::int32_t& variance, std::int32_t& sum);
}  // namespace reference::measures
