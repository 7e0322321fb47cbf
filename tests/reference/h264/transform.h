// Models of the transforms of 4x4 blocks and of what the decoder's side does with them. Elements are wide integers;
// where a member keeps 16 or 32 bits, the model cuts them down to that.
#pragma once

#include <cstdint>
#include <vector>

namespace reference::transform {

using Value = std::int64_t;
using Block = std::vector<Value>;  // 16 elements in raster order; 4 and 8 of chroma DC in rows of two

// The low bits of a value as a signed number.
Value wrap(Value value, int bits);
Block wrap(Block block, int bits);

Block forward(const Block& residuals);               // in full
Block inverse(const Block& coefficients, int bits);  // each sum kept in that many bits, but for the last of 16-bit ones
Block hadamard(const Block& dc, int bits);           // of 16: the first pass keeps that many bits; of 4 and 8: in full

extern const int normAdjust[6][3];  // by QP % 6 and the class of the position
extern const int forwardFactor[6][3];
int positionClass(int raster);

// Flat matrices, 16 bits. dc is null where element 0 is scaled as the others.
Block residualOf(const Block& levels, const Value* dc, bool hasAc, int qp);
Block dequantLumaDc(const Block& levels, int qp);
Block dequantChromaDc(const Block& levels, int qp);

// Switching pictures: samples of a block, coefficients of chroma DC.
Block switchingBlock(const Block& levels, const Block& prediction, const Value* dc, bool hasAc, int qp, int qs,
                     bool isSwitching);
Block switchingChromaDc(const Block& levels, const Block& prediction, int qp, int qs, bool isSwitching);

// Scaling lists; bits is that of the elements. scales holds 16 values, of which DC blocks use the first, or none for
// the default ones.
Block highResidualOf(const Block& levels, const Value* dc, bool hasAc, int qp, const Block& scales, int bits);
Block highInverseDc(const Block& levels, bool luma, int qp, const Block& scales, int bits);
struct Lists {
  Block inverse, forward;
};
Lists scalingLists(const std::vector<std::uint8_t>& list, int qpRem);

}  // namespace reference::transform
