#include "reference/mc/copy.h"

#include <algorithm>
#include <cstring>

namespace reference::mc {
namespace {

unsigned predict(const std::uint8_t* a, std::ptrdiff_t step, int acc, int rounding) {
  const unsigned down = unsigned(rounding) & 1;
  switch (acc & 3) {
    case 0:
      return a[0];
    case 1:
      return (a[0] + a[1] + 1 - down) >> 1;
    case 2:
      return (a[0] + a[step] + 1 - down) >> 1;
    default:
      return (a[0] + a[1] + a[step] + a[step + 1] + 2 - down) >> 2;
  }
}

std::uint8_t clip(std::int32_t value) { return std::uint8_t(std::clamp(value, 0, 255)); }

}  // namespace

void copy(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* dst, std::ptrdiff_t dstStep, int width,
          int height, int acc, int rounding) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      dst[y * dstStep + x] = std::uint8_t(predict(src + y * srcStep + x, srcStep, acc, rounding));
}

void average(const std::uint8_t* src1, std::ptrdiff_t src1Step, const std::uint8_t* src2, std::ptrdiff_t src2Step,
             std::uint8_t* dst, std::ptrdiff_t dstStep, int width, int height) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      dst[y * dstStep + x] = std::uint8_t((src1[y * src1Step + x] + src2[y * src2Step + x] + 1) >> 1);
}

void interpolateAverage(const std::uint8_t* src, std::ptrdiff_t srcStep, std::uint8_t* srcDst,
                        std::ptrdiff_t srcDstStep, int width, int height, int acc, int rounding) {
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::uint8_t& sample = srcDst[y * srcDstStep + x];
      sample = std::uint8_t((sample + predict(src + y * srcStep + x, srcStep, acc, rounding) + 1) >> 1);
    }
}

void add8x8(const void* residual, std::ptrdiff_t residualStep, const std::uint8_t* ref, std::ptrdiff_t refStep,
            std::uint8_t* dst, std::ptrdiff_t dstStep, int acc, int rounding) {
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      std::int16_t r;
      std::memcpy(&r, static_cast<const char*>(residual) + y * residualStep + 2 * x, sizeof r);
      dst[y * dstStep + x] = clip(std::int32_t(predict(ref + y * refStep + x, refStep, acc, rounding)) + r);
    }
}

void addConstant8x8(std::int32_t value, std::uint8_t* srcDst, std::ptrdiff_t srcDstStep) {
  const std::int32_t low = std::int16_t(std::uint32_t(value) & 0xffff);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) srcDst[y * srcDstStep + x] = clip(srcDst[y * srcDstStep + x] + low);
}

}  // namespace reference::mc
