// Exports: sprite warping, global motion vectors, sprite brightness.
#include "entry.h"
#include "mc/copy_tables.h"
#include "mpeg4/caller_record.h"
#include "mpeg4/sprite_init.h"
#include "mpeg4/sprite_kernels.h"

using namespace zvp;
using namespace zvp::mpeg4;

namespace {

// Whether the `size` samples from start on, and `more` behind them, are all of the sprite's extent.
ZVP_INLINE bool within(s32 start, s32 size, s32 more, s32 extent) {
  return start >= 0 && start <= s64(extent) - size - more;
}

// No warp: a block copied from (x, y) in the sprite.
template <int Macroblock> void copyUnwarped(const Plane& plane, s32 x, s32 y, zvpSize block, zvpSize sprite) {
  const bool inside = within(x, block.width, 0, sprite.width) && within(y, block.height, 0, sprite.height);
  if (inside && block.width == Macroblock && block.height == Macroblock)
    mc::copyBlock<Macroblock, Macroblock, mc::HalfPel::ff>(plane.src + y * plane.srcStep + x, plane.srcStep, plane.dst,
                                                           plane.dstStep);
  else
    copyTranslated(plane, x, y, block, sprite);
}

// Whether half-pel prediction of a whole macroblock does it: no sample beyond the sprite is needed.
template <int Macroblock> bool predictsWhole(s32 x, s32 y, zvpSize block, zvpSize sprite) {
  return block.width == Macroblock && block.height == Macroblock && within(x, Macroblock, 1, sprite.width) &&
         within(y, Macroblock, 1, sprite.height);
}
ZVP_INLINE void predictHalfPel(mc::CopyKernel kernel, const Plane& plane, s32 x, s32 y) {
  kernel(plane.src + y * plane.srcStep + x, plane.srcStep, plane.dst, plane.dstStep);
}

}  // namespace

zvpStatus zvpiWarpGetSize_MPEG4(s32* pSize) {
  if (anyNull(pSize)) return zvpStatusNullPointer;
  storeAs(pSize, recordSize<WarpSpec>);
  return zvpStatusOk;
}

zvpStatus zvpiWarpInit_MPEG4(void* pSpec, const s32* pDU, const s32* pDV, s32 numWarpingPoints, s32 spriteType,
                             s32 warpingAccuracy, s32 roundingType, s32 quarterSample, s32 fcode,
                             const zvpRect* pSpriteRect, const zvpRect* pVopRect) {
  if (anyNull(pSpec)) return zvpStatusNullPointer;
  if (numWarpingPoints < 0 || numWarpingPoints > 4) return zvpStatusOutOfRange;
  if (numWarpingPoints == 4 && spriteType != WarpSpec::staticSprite) return zvpStatusOutOfRange;
  if (warpingAccuracy < 0 || warpingAccuracy > 3 || fcode < 1 || fcode > 7) return zvpStatusOutOfRange;
  const zvpRect sprite = loadAs<zvpRect>(pSpriteRect), vop = loadAs<zvpRect>(pVopRect);
  if (sprite.width < 1 || sprite.height < 1 || vop.width < 1 || vop.height < 1) return zvpStatusBadSize;

  auto& spec = *recordAt<WarpSpec>(pSpec);
  spec.magic = WarpSpec::validMagic;
  spec.roundingType = roundingType != 0 && spriteType != WarpSpec::staticSprite;
  spec.quarterSample = quarterSample != 0;
  spec.numWarpingPoints = numWarpingPoints;
  spec.warpingAccuracy = warpingAccuracy;
  spec.spriteType = spriteType;
  spec.mvMin = -(16 << fcode);
  spec.mvMax = (16 << fcode) - 1;
  spec.spriteX = sprite.x;
  spec.spriteY = sprite.y;
  spec.spriteWidth = sprite.width;
  spec.spriteHeight = sprite.height;
  spec.chromaSpriteX = sprite.x / 2;
  spec.chromaSpriteY = sprite.y / 2;
  spec.chromaSpriteWidth = wrapAdd(sprite.width, 1) >> 1;
  spec.chromaSpriteHeight = wrapAdd(sprite.height, 1) >> 1;
  spec.vopX = vop.x;
  spec.vopY = vop.y;
  if (numWarpingPoints == 0) return zvpStatusOk;
  if (anyNull(pDU, pDV)) return zvpStatusNullPointer;  // required: the record is stamped by now
  spec.bilinearRound = 128 - (spec.roundingType << (3 - warpingAccuracy));
  if (numWarpingPoints == 4)
    initPerspective(spec, pDU, pDV, vop.width, vop.height);
  else
    initAffine(spec, pDU, pDV, vop.width, vop.height);
  return zvpStatusOk;
}

zvpStatus zvpiWarpLuma_MPEG4_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, const zvpRect* pDstRect,
                                    const void* pSpec) {
  if (anyNull(pSpec, pSrc, pDst)) return zvpStatusNullPointer;
  const auto& spec = *recordAt<const WarpSpec>(pSpec);
  if (spec.magic != WarpSpec::validMagic) return zvpStatusBadContext;
  const zvpRect r = loadAs<zvpRect>(pDstRect);
  if (r.width < 1 || r.height < 1) return zvpStatusOk;
  const zvpSize block = {r.width, r.height}, sprite = lumaSprite(spec);
  const std::array<Plane, 1> plane = {{{pSrc, srcStep, pDst, dstStep}}};
  switch (spec.numWarpingPoints) {
    case 0:
      copyUnwarped<16>(plane[0], wrapSub(r.x, spec.spriteX), wrapSub(r.y, spec.spriteY), block, sprite);
      break;
    case 1: {
      const s32 x = wrapSub(wrapAdd(wrapSub(r.x, spec.spriteX), spec.point0X >> 4), spec.vopX);
      const s32 y = wrapSub(wrapAdd(wrapSub(r.y, spec.spriteY), spec.point0Y >> 4), spec.vopY);
      const s32 tx = spec.point0X & 15, ty = spec.point0Y & 15;  // 0 or 8
      if (predictsWhole<16>(x, y, block, sprite))
        predictHalfPel(mc::ownvc_Copy16x16HP_8u_C1R_0[mc::copySlot((ty >> 2) + (tx >> 3), spec.roundingType)], plane[0],
                       x, y);
      else
        ownvc_WarpLumaNWP1_MPEG4_8u_C1R(plane[0], x, y, tx, ty, spec.bilinearRound, block, sprite);
      break;
    }
    case 4:
      ownvc_WarpLumaNWP4_MPEG4_8u_C1R(plane, r, spec);
      break;
    default:
      ownvc_WarpLumaNWP23_MPEG4_8u_C1R(plane, r, spec);
  }
  return zvpStatusOk;
}

zvpStatus zvpiWarpChroma_MPEG4_8u_P2R(const u8* pSrcCb, s32 srcStepCb, const u8* pSrcCr, s32 srcStepCr, u8* pDstCb,
                                      s32 dstStepCb, u8* pDstCr, s32 dstStepCr, const zvpRect* pDstRect,
                                      const void* pSpec) {
  if (anyNull(pSpec, pSrcCb, pDstCb, pSrcCr, pDstCr)) return zvpStatusNullPointer;
  const auto& spec = *recordAt<const WarpSpec>(pSpec);
  if (spec.magic != WarpSpec::validMagic) return zvpStatusBadContext;
  const zvpRect r = loadAs<zvpRect>(pDstRect);
  if (r.width < 1 || r.height < 1) return zvpStatusOk;
  const zvpSize block = {r.width, r.height}, sprite = chromaSprite(spec);
  const std::array<Plane, 2> planes = {
      {{pSrcCb, srcStepCb, pDstCb, dstStepCb}, {pSrcCr, srcStepCr, pDstCr, dstStepCr}}};
  switch (spec.numWarpingPoints) {
    case 0:
      for (const Plane& plane : planes)
        copyUnwarped<8>(plane, wrapSub(r.x, spec.chromaSpriteX), wrapSub(r.y, spec.chromaSpriteY), block, sprite);
      break;
    case 1: {
      const s32 x = wrapSub(wrapAdd(wrapSub(r.x, spec.chromaSpriteX), spec.chromaShiftX >> 4), spec.vopX / 2);
      const s32 y = wrapSub(wrapAdd(wrapSub(r.y, spec.chromaSpriteY), spec.chromaShiftY >> 4), spec.vopY / 2);
      const s32 tx = spec.chromaShiftX & 15, ty = spec.chromaShiftY & 15;
      const bool halfPel = ((tx | ty) & 7) == 0;
      for (const Plane& plane : planes)
        if (halfPel && predictsWhole<8>(x, y, block, sprite))
          predictHalfPel(mc::ownvc_Copy8x8HP_8u_C1R_0[mc::copySlot((tx >> 3) + (ty >> 2), spec.roundingType)], plane, x,
                         y);
        else
          ownvc_WarpChromaNWP1_MPEG4_8u_C1R(plane, x, y, tx, ty, spec.bilinearRound, block, sprite);
      break;
    }
    case 4:
      ownvc_WarpChromaNWP4_MPEG4_8u_P2R(planes, r, spec);
      break;
    default:
      ownvc_WarpChromaNWP23_MPEG4_8u_P2R(planes, r, spec);
  }
  return zvpStatusOk;
}

zvpStatus zvpiCalcGlobalMV_MPEG4(s32 xOffset, s32 yOffset, s16* pGMV, const void* pSpec) {
  if (anyNull(pSpec, pGMV)) return zvpStatusNullPointer;
  const auto& spec = *recordAt<const WarpSpec>(pSpec);
  if (spec.magic != WarpSpec::validMagic) return zvpStatusBadContext;
  zvpPoint mv = {0, 0};
  if (spec.numWarpingPoints == 1)
    mv = {s16(spec.point0X >> (3 - spec.quarterSample)), s16(spec.point0Y >> (3 - spec.quarterSample))};
  else if (spec.numWarpingPoints != 0)
    mv = ownvc_CalcGlobalMV_MPEG4(xOffset, yOffset, spec);
  storeAs(pGMV, s16(clip(mv.x, spec.mvMin, spec.mvMax)));
  storeAs(pGMV + 1, s16(clip(mv.y, spec.mvMin, spec.mvMax)));
  return zvpStatusOk;
}

zvpStatus zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(u8* pSrcDst, s32 srcDstStep, s32 width, s32 height,
                                                   s32 brightnessChangeFactor) {
  const s32 factor = brightnessChangeFactor;
  if (anyNull(pSrcDst)) return zvpStatusNullPointer;
  if (factor < -112 || factor > 1648) return zvpStatusOutOfRange;
  if (factor == 0) return zvpStatusOk;
  const s32 weight = (factor * 1024 + (factor < 0 ? -50 : 50)) / 100 + 1024;
  ownvc_ChangeSpriteBrightness_MPEG4_8u_C1IR(pSrcDst, srcDstStep, {width, height}, weight);
  return zvpStatusOk;
}
