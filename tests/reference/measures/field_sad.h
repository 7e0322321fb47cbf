// Models of the frame and field activity of a 16x16 block.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
void frameFieldSad(const std::uint8_t* src, std::ptrdiff_t step, std::int32_t& frame, std::int32_t& field);
void frameFieldSad(const std::int16_t* src, std::ptrdiff_t step, std::int32_t& frame, std::int32_t& field);
}  // namespace reference::measures
