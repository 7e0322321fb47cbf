// Model of the edge test.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::measures {
std::uint8_t hasEdges(const std::uint8_t* src, std::ptrdiff_t step, std::uint8_t difference, std::uint8_t limit);
}
