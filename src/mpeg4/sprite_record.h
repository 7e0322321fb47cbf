// The warp record of a picture, as it lies in the caller's memory from the first multiple of 16 on. Only the fields
// that the number of warping points needs are set.
#pragma once

#include "types.h"

namespace zvp::mpeg4 {

struct WarpSpec {
  s32 roundingType;   // 0 or 1; 0 for a static sprite
  s32 quarterSample;  // 0 or 1
  s32 numWarpingPoints, warpingAccuracy, spriteType;
  s32 mvMin, mvMax;
  s32 spriteX, spriteY, spriteWidth, spriteHeight;
  s32 chromaSpriteX, chromaSpriteY, chromaSpriteWidth, chromaSpriteHeight;
  s32 vopX, vopY;
  // From here on for one point and more. Points and translations are in 1/16 sample.
  s32 point0X, point0Y, point1X, point1Y, point2X, point2Y;
  s32 virtual1X, virtual1Y, virtual2X, virtual2Y;  // where the map takes the corners at powers of two
  s32 chromaShiftX, chromaShiftY;
  s32 widthPow2, heightPow2, log2Width, log2Height;
  s32 bilinearRound;
  s32 chosenPow2;  // what the affine increments are scaled by
  // Perspective: X = (A x + B y + C) / (G x + H y + I), Y = (D x + E y + F) / (G x + H y + I).
  double persA, persB, persC, persD, persE, persF, persG, persH, persDet, persI;
  u32 magic;
  s32 gmcBias;
  s32 affineRound, affineDyX, affineDyY, affineDxX, affineDxY, affineShift;
  s32 unused[2];

  static constexpr s32 staticSprite = 1;  // the spriteType
  static constexpr u32 validMagic = 0x434D4151;
};
static_assert(sizeof(WarpSpec) == 264 && offsetof(WarpSpec, point0X) == 68 &&
              offsetof(WarpSpec, bilinearRound) == 132 && offsetof(WarpSpec, persA) == 144 &&
              offsetof(WarpSpec, magic) == 224 && offsetof(WarpSpec, affineShift) == 252);

}  // namespace zvp::mpeg4
