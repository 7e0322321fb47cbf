// From warping points to a mapping (ISO/IEC 14496-2 7.8.4, 7.8.5). Everything is 32-bit arithmetic that wraps, written
// on unsigned numbers where there is no division or right shift.
#pragma once

#include <bit>

#include "mpeg4/sprite_record.h"

namespace zvp::mpeg4 {

// n / d to the nearest integer. d is above 0.
constexpr s32 roundedQuotient(u32 n, s32 d) {
  const s32 half = s32(n) < 0 ? -(d >> 1) : d >> 1;
  return s32(n + u32(half)) / d;
}

struct PowerOfTwo {
  s32 value, log2;
};
// The smallest that is not below size, 2^31 wrapping to a negative number.
constexpr PowerOfTwo powerOfTwoFor(s32 size) {
  const int log2 = int(std::bit_width(u32(size - 1)));
  return {s32(u32(1) << log2), log2};
}

// Where the corner at `extent` from the origin along one axis would be mapped to if it stood at the power of two
// beyond: `corner` and `point0` are the mapped corner's and the mapped origin's displacements, both in 1/16 sample.
constexpr s32 extrapolated(u32 corner, u32 point0, s32 extent, s32 pow2) {
  return roundedQuotient(corner * u32(pow2) + point0 * (u32(extent) - u32(pow2)), extent);
}

// One to three points.
inline void initAffine(WarpSpec& spec, const s32* pDU, const s32* pDV, s32 width, s32 height) {
  const s32 points = spec.numWarpingPoints, a = spec.warpingAccuracy;
  const u32 i0 = u32(spec.vopX), j0 = u32(spec.vopY), W = u32(width), H = u32(height);
  const auto du = [&](int k) { return loadAs<u32>(pDU + k); };
  const auto dv = [&](int k) { return loadAs<u32>(pDV + k); };

  spec.point0X = s32(8 * (du(0) + 2 * i0));
  spec.point0Y = s32(8 * (dv(0) + 2 * j0));
  const s32 s = 3 - a, u = spec.point0X >> s, v = spec.point0Y >> s;
  const bool sprite = spec.spriteType == WarpSpec::staticSprite;
  spec.chromaShiftX = wrapShl(sprite ? wrapAdd(u, 1) >> 1 : (u >> 1) | (u & 1), s);
  spec.chromaShiftY = wrapShl(sprite ? wrapAdd(v, 1) >> 1 : (v >> 1) | (v & 1), s);
  if (points == 1) return;

  // The first point's displacement from the picture's corner.
  const u32 shift0X = u32(spec.point0X) - 16 * i0, shift0Y = u32(spec.point0Y) - 16 * j0;

  spec.point1X = s32((du(0) + du(1)) * 8 + 16 * (W + i0));
  spec.point1Y = s32(8 * (dv(0) + dv(1) + 2 * j0));
  const PowerOfTwo across = powerOfTwoFor(width);
  spec.widthPow2 = across.value;
  spec.log2Width = across.log2;
  spec.virtual1X = s32(16 * (u32(across.value) + i0) +
                       u32(extrapolated(u32(spec.point1X) - 16 * i0 - 16 * W, shift0X, width, across.value)));
  spec.virtual1Y = s32(16 * j0 + u32(extrapolated(u32(spec.point1Y) - 16 * j0, shift0Y, width, across.value)));
  PowerOfTwo down = {};
  if (points == 3) {
    spec.point2X = s32((du(0) + du(2)) * 8 + 16 * i0);
    spec.point2Y = s32((dv(0) + dv(2)) * 8 + 16 * (j0 + H));
    down = powerOfTwoFor(height);
    spec.heightPow2 = down.value;
    spec.log2Height = down.log2;
    spec.virtual2X = s32(16 * i0 + u32(extrapolated(u32(spec.point2X) - 16 * i0, shift0X, height, down.value)));
    spec.virtual2Y = s32(16 * (j0 + u32(down.value)) +
                         u32(extrapolated(u32(spec.point2Y) - 16 * j0 - 16 * H, shift0Y, height, down.value)));
  }

  // Increments for a column and for a row, scaled to the larger of the two powers. Two points turn and stretch alike in
  // both directions.
  const s32 ex = wrapSub(spec.virtual1X, spec.point0X), ey = wrapSub(spec.virtual1Y, spec.point0Y);
  PowerOfTwo scale = across;
  spec.affineDxX = ex;
  spec.affineDxY = ey;
  spec.affineDyX = wrapNeg(ey);
  spec.affineDyY = ex;
  if (points == 3) {
    const s32 fx = wrapSub(spec.virtual2X, spec.point0X), fy = wrapSub(spec.virtual2Y, spec.point0Y);
    const s32 lift = down.log2 - across.log2;
    if (lift > 0) scale = down;
    spec.affineDxX = lift > 0 ? wrapShl(ex, lift) : ex;
    spec.affineDxY = lift > 0 ? wrapShl(ey, lift) : ey;
    spec.affineDyX = lift > 0 ? fx : wrapShl(fx, -lift);
    spec.affineDyY = lift > 0 ? fy : wrapShl(fy, -lift);
  }
  spec.gmcBias = (120 << (a + 1)) << 4;
  spec.chosenPow2 = scale.value;
  spec.affineShift = scale.log2 - a + 3;
  spec.affineRound = wrapShl(1, scale.log2 - a + 2);
}

// Four points. The order of the multiplications in double precision matters to the last bit.
inline void initPerspective(WarpSpec& spec, const s32* pDU, const s32* pDV, s32 width, s32 height) {
  // A sum of differences, from the corner (2 * origin), in units of the accuracy.
  const auto scaled = [&](u32 sum) { return s32(sum << spec.warpingAccuracy); };
  const auto corners = [&](const s32* p, u32 origin, u32 right, u32 below, s32(&out)[4]) {
    const u32 d1 = loadAs<u32>(p + 1), d2 = loadAs<u32>(p + 2), d3 = loadAs<u32>(p + 3);
    const u32 start = 2 * origin + loadAs<u32>(p);
    out[0] = scaled(start);
    out[1] = scaled(start + d1 + 2 * right);
    out[2] = scaled(start + d2 + 2 * below);
    out[3] = scaled(start + d1 + d2 + d3 + 2 * right + 2 * below);
  };
  s32 xs[4], ys[4];
  corners(pDU, u32(spec.vopX), u32(width), 0, xs);
  corners(pDV, u32(spec.vopY), 0, u32(height), ys);

  const auto differences = [](const s32(&p)[4], s32& bend, s32& fromBelow, s32& fromRight) {
    bend = s32(u32(p[3]) + u32(p[0]) - u32(p[1]) - u32(p[2]));
    fromBelow = wrapSub(p[2], p[3]);
    fromRight = wrapSub(p[1], p[3]);
  };
  s32 A, B, C, D, E, F;
  differences(xs, A, B, C);
  differences(ys, D, E, F);
  const auto determinant = [](s32 p, s32 q, s32 r, s32 s) { return wrapSub(wrapMul(p, q), wrapMul(r, s)); };
  spec.persG = wrapMul(determinant(A, E, B, D), height);
  spec.persDet = determinant(E, C, B, F);
  spec.persH = wrapMul(determinant(D, C, A, F), width);

  const double W = width, H = height, det = spec.persDet;
  const double x0 = xs[0], x1 = xs[1], x2 = xs[2], y0 = ys[0], y1 = ys[1], y2 = ys[2];
  spec.persA = (x1 - x0) * det * H + x1 * spec.persG;
  spec.persB = (x2 - x0) * det * W + x2 * spec.persH;
  spec.persC = x0 * det * W * H;
  spec.persD = (y1 - y0) * det * H + spec.persG * y1;
  spec.persE = (y2 - y0) * det * W + spec.persH * y2;
  spec.persF = y0 * det * W * H;
  spec.persI = det * W * H;
}

}  // namespace zvp::mpeg4
