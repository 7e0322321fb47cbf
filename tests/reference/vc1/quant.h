// Models of VC-1 quantization on dense blocks, element by element.
#pragma once

#include <cstdint>

namespace reference::vc1 {

struct NonZeroSize {
  int width, height;
};

// What distinguishes the members.
struct Quantizer {
  bool intra;    // the DC is passed over
  bool uniform;
};

// block holds width x height values without gaps; 8x8 for intra blocks.
void quantize(Quantizer quantizer, std::int16_t* block, int qp, int width, int height);

// src and dst may be one block. zerosInSource: which of them is searched for zeros.
NonZeroSize dequantize(Quantizer quantizer, const std::int16_t* src, std::int16_t* dst, std::int32_t qp, int width,
                       int height, bool zerosInSource);

}  // namespace reference::vc1
