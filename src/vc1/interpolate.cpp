// Exports of the VC-1 interpolation: the null tests, the block or its padded copy, the kernel.
#include <cstddef>

#include "entry.h"
#include "vc1/interpolate_dispatch.h"
#include "vc1/interpolate_padding.h"

using namespace zvp;
using namespace zvp::vc1;

static_assert(offsetof(zvpInterpolationBlock, pSrc) == 0 && offsetof(zvpInterpolationBlock, srcStep) == 8 &&
              offsetof(zvpInterpolationBlock, pDst) == 16 && offsetof(zvpInterpolationBlock, dstStep) == 24 &&
              offsetof(zvpInterpolationBlock, dx) == 28 && offsetof(zvpInterpolationBlock, dy) == 32 &&
              offsetof(zvpInterpolationBlock, roiSize) == 36 && offsetof(zvpInterpolationBlock, roundControl) == 44 &&
              sizeof(zvpInterpolationBlock) == 48);
static_assert(offsetof(zvpInterpolationICBlock, pSrc) == 0 && offsetof(zvpInterpolationICBlock, srcStep) == 8 &&
              offsetof(zvpInterpolationICBlock, pDst) == 16 && offsetof(zvpInterpolationICBlock, dstStep) == 24 &&
              offsetof(zvpInterpolationICBlock, pLUTTop) == 32 && offsetof(zvpInterpolationICBlock, pLUTBottom) == 40 &&
              offsetof(zvpInterpolationICBlock, frameSize) == 48 &&
              offsetof(zvpInterpolationICBlock, blockSize) == 56 && offsetof(zvpInterpolationICBlock, blockPos) == 64 &&
              offsetof(zvpInterpolationICBlock, dx) == 72 && offsetof(zvpInterpolationICBlock, dy) == 76 &&
              offsetof(zvpInterpolationICBlock, oppositePadding) == 80 &&
              offsetof(zvpInterpolationICBlock, fieldPrediction) == 84 &&
              offsetof(zvpInterpolationICBlock, roundControl) == 88 &&
              offsetof(zvpInterpolationICBlock, isPredBottom) == 92 && sizeof(zvpInterpolationICBlock) == 96);

namespace {

template <class Record> ZVP_INLINE bool lacksPointers(const Record* record) {
  return anyNull(record) || anyNull(record->pSrc, record->pDst);
}

template <zvpStatus predict(const BlockPlace&)> ZVP_INLINE zvpStatus predictBlock(const zvpInterpolationBlock* b) {
  if (lacksPointers(b)) return zvpStatusNullPointer;
  const auto& [width, height] = b->roiSize;
  return predict({b->pSrc, b->srcStep, b->pDst, b->dstStep, b->dx, b->dy, width, height, b->roundControl});
}

template <int Channels, zvpStatus predict(const BlockPlace&)>
ZVP_INLINE zvpStatus predictInPlane(const zvpInterpolationICBlock* b) {
  if (lacksPointers(b)) return zvpStatusNullPointer;
  const auto& [width, height] = b->blockSize;
  BlockPlace place = {nullptr, 0, b->pDst, b->dstStep, b->dx, b->dy, width, height, b->roundControl};
  Neighbourhood<Channels> neighbourhood(*b);
  if (neighbourhood.liesInPlane()) {
    place.src = neighbourhood.blockInPlane();
    place.srcStep = neighbourhood.planeStep();
  } else {
    place.src = neighbourhood.copy();
    place.srcStep = neighbourhood.pitch;
  }
  return predict(place);
}

}  // namespace

zvpStatus zvpiInterpolateQPBicubic_VC1_8u_C1R(const zvpInterpolationBlock* pBlock) {
  return predictBlock<predictBicubic>(pBlock);
}
zvpStatus zvpiInterpolateQPBilinear_VC1_8u_C1R(const zvpInterpolationBlock* pBlock) {
  return predictBlock<predictBilinear>(pBlock);
}
zvpStatus zvpiInterpolateQPBilinear_VC1_8u_C2R(const zvpInterpolationBlock* pBlock) {
  return predictBlock<predictBilinearPairs>(pBlock);
}
zvpStatus zvpiInterpolateICBicubicBlock_VC1_8u_C1R(const zvpInterpolationICBlock* pBlock) {
  return predictInPlane<1, predictBicubic>(pBlock);
}
zvpStatus zvpiInterpolateICBilinearBlock_VC1_8u_C1R(const zvpInterpolationICBlock* pBlock) {
  return predictInPlane<1, predictBilinear>(pBlock);
}
zvpStatus zvpiInterpolateICBilinearBlock_VC1_8u_C2R(const zvpInterpolationICBlock* pBlock) {
  return predictInPlane<2, predictBilinearPairs>(pBlock);
}
