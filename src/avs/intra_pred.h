// The 8x8 intra predictors of AVS1-P2 (GB/T 20090.2, 9.8), in place in the picture, and their tables by mode. Not
// exported: they serve the reconstruction of AVS blocks.
//
// pDst is the block's first sample, dstStep the byte distance of its rows. In availability a set bit means that a
// neighbour is missing: 1 left, 4 top, 32 top-right, 64 bottom-left. Each returns 1 when it wrote the block and 0 when
// a neighbour that it needs is missing, the block then being left as it was.
//
// Reads no sample that its formula does not use: the top-right and bottom-left neighbours whole in DownLeft, the first
// of them in DC, the corner where both sides are there (never in Vertical, Horizontal and DownLeft).
#pragma once

#include <array>

#include "types.h"

extern "C" {
zvp::s32 AVSIntraPredictionVertical(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionHorizontal(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionDC(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionDownLeft(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionDownRight(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionPlane(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
zvp::s32 AVSIntraPredictionFill(zvp::u8* pDst, zvp::s32 dstStep, zvp::s32 availability);
}

namespace zvp {

using AvsIntraPredictor = s32 (*)(u8* pDst, s32 dstStep, s32 availability);

// A luma mode is masked with 7 before it is looked up.
inline constexpr std::array<AvsIntraPredictor, 8> intra_luma_pred = {
    AVSIntraPredictionVertical,  AVSIntraPredictionHorizontal, AVSIntraPredictionDC,   AVSIntraPredictionDownLeft,
    AVSIntraPredictionDownRight, AVSIntraPredictionFill,       AVSIntraPredictionFill, AVSIntraPredictionFill};
inline constexpr std::array<AvsIntraPredictor, 4> intra_chroma_pred = {
    AVSIntraPredictionDC, AVSIntraPredictionHorizontal, AVSIntraPredictionVertical, AVSIntraPredictionPlane};

}  // namespace zvp
