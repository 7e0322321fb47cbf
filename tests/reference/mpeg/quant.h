// Models of MPEG-2 quantization and of the scans, element by element.
#pragma once

#include <cstdint>

namespace reference::mpeg {

// Return the count of non-zero results. reciprocals has 64 entries; for the non-intra model it may be null.
int quantIntra(std::int16_t* block, std::int32_t qp, const float* reciprocals);
int quantInter(std::int16_t* block, std::int32_t qp, const float* reciprocals);
void quantInvIntra(std::int16_t* block, std::int32_t qp, const std::int16_t* weights);
void quantInvInter(std::int16_t* block, std::int32_t qp, const std::int16_t* weights);  // weights may be null
void scanForward(const std::int16_t* src, std::int16_t* dst, int count, const int* table);
void scanInverse(const std::int16_t* src, std::int16_t* dst, int last, const int* table);

}  // namespace reference::mpeg
