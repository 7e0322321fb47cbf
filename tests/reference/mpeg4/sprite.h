// Models of sprite warping: the mapping as equations, every sample on its own.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::mpeg4 {

struct Rect {
  std::int32_t x, y, width, height;
};

// What zvpiWarpInit_MPEG4() is given, and what comes of it.
struct Warp {
  Warp(const std::int32_t* du, const std::int32_t* dv, int points, int spriteType, int accuracy, int rounding,
       int quarterSample, int fcode, Rect sprite, Rect vop);

  int points, spriteType, accuracy, rounding, quarterSample;
  std::int32_t mvMin, mvMax;
  Rect sprite, chroma, vop;
  std::int32_t point0[2] = {}, virtual1[2] = {}, virtual2[2] = {}, chromaShift[2] = {};  // x, y
  std::int32_t bilinearRound = 0, pow2 = 0, bias = 0, affineRound = 0, affineShift = 0;
  std::int32_t perColumn[2] = {}, perRow[2] = {};
  double A = 0, B = 0, C = 0, D = 0, E = 0, F = 0, G = 0, H = 0, I = 0;
};

struct Picture {
  const std::uint8_t* origin;  // the sprite's top left sample
  std::ptrdiff_t step;
  std::int32_t width, height;
};

// dst is width * height samples without gaps.
void warpLuma(const Warp& warp, const Picture& sprite, Rect block, std::uint8_t* dst);
void warpChroma(const Warp& warp, const Picture& sprite, Rect block, std::uint8_t* dst);  // of one plane
void globalVector(const Warp& warp, std::int32_t x, std::int32_t y, std::int16_t* mv);
std::uint8_t brightened(std::uint8_t sample, int factor);

}  // namespace reference::mpeg4
