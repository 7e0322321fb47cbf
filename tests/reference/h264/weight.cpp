#include "reference/h264/weight.h"

namespace reference::h264 {

namespace {

using s32 = std::int32_t;
using u32 = std::uint32_t;

s32 clipTo(s32 value, s32 high) { return value < 0 ? 0 : value > high ? high : value; }
s32 powerOfTwo(s32 exponent) { return s32(u32(1) << (exponent & 31)); }
s32 half(u32 a, u32 b) { return s32(a + b + 1) >> 1; }

}  // namespace

s32 highest(s32 bitDepth) { return s32(u32(powerOfTwo(bitDepth)) - 1); }

s32 weightOne(s32 s, s32 logWD, s32 weight, s32 offset, s32 high) {
  u32 sum = u32(s) * u32(weight);
  if (logWD != 0) sum += u32(powerOfTwo(s32(u32(logWD) - 1)));
  return clipTo(s32(u32(s32(sum) >> (logWD & 31)) + u32(offset)), high);
}

s32 weightTwo(s32 s1, s32 s2, s32 logWD, s32 weight1, s32 offset1, s32 weight2, s32 offset2, s32 high) {
  const u32 sum = u32(s1) * u32(weight1) + u32(s2) * u32(weight2) + u32(powerOfTwo(logWD));
  const s32 shifted = s32(sum) >> ((u32(logWD) + 1) & 31);
  return clipTo(s32(u32(shifted) + u32(half(u32(offset1), u32(offset2)))), high);
}

s32 weightImplicit(s32 s1, s32 s2, s32 weight1, s32 weight2, s32 high) {
  return clipTo(s32(u32(s1) * u32(weight1) + u32(s2) * u32(weight2) + 32) >> 6, high);
}

s32 weightedAverage(s32 src, s32 dst, s32 weight1, s32 weight2, s32 logWD, s32 offset) {
  const u32 rounding = logWD < 1 ? 0 : u32(powerOfTwo(logWD - 1));
  const u32 sum = u32(src) * u32(weight1) + rounding + u32(dst) * u32(weight2);
  return s32(u32(s32(sum) >> (logWD & 31)) + u32(offset));
}

}  // namespace reference::h264
