// Models of the VC-1 transforms on dense blocks, row by row and column by column.
#pragma once

#include <cstdint>

namespace reference::vc1 {

struct Corner {
  int width, height;
};

// What an inverse transform of a block looks at when it is promised that nothing else counts.
Corner cornerRead(int width, int height, Corner promised);

// src and dst are width x height values without gaps; they may be one block.
void transformInverse(int width, int height, const std::int16_t* src, Corner promised, std::int16_t* dst);
void transformForward(int width, int height, const std::int16_t* src, std::int16_t* dst);

}  // namespace reference::vc1
