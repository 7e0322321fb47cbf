// Model of the VC-1 range mapping of a sample.
#pragma once

#include <cstdint>

namespace reference::vc1 {

std::uint8_t rangeMapped(std::uint8_t sample, int rangeMap);

}  // namespace reference::vc1
