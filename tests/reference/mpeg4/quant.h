// Models of the MPEG-4 quantizers, element by element. weights is null for flat quantization.
#pragma once

#include <cstdint>

namespace reference::mpeg4 {

// Forward models return the count of non-zero results.
int quantInter(std::int16_t* block, const std::uint8_t* weights, int bitsPerPixel, int qp);
int quantIntra(std::int16_t* block, const std::uint8_t* weights, int bitsPerPixel, int qp, bool chroma);
void quantInvInter(std::int16_t* block, int last, const std::uint8_t* weights, int bitsPerPixel, int qp);
void quantInvIntra(std::int16_t* block, int last, const std::uint8_t* weights, int bitsPerPixel, int qp, bool chroma);

}  // namespace reference::mpeg4
