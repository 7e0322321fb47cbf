// Models of the batch of candidates along a row and of the choice of the best one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference::measures {
std::vector<std::uint16_t> sadBatch(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref,
                                    std::ptrdiff_t refStep, int size, int count);
int indexOfBest(const std::vector<std::uint16_t>& sads);
}  // namespace reference::measures
