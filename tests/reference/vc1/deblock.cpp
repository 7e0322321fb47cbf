#include "reference/vc1/deblock.h"

#include <cstdlib>

namespace reference::vc1 {
namespace {

// Filters a line with P5 at p. False: it fails one of the tests that, in the deciding line, end the group.
bool filterLine(std::uint8_t* p, std::ptrdiff_t across, std::int32_t quant) {
  int s[9];  // s[1] to s[8] are P1 to P8
  for (int i = 1; i <= 8; ++i) s[i] = p[(i - 5) * across];

  const int clip = (s[4] - s[5]) / 2;
  if (clip == 0) return false;
  const int a0 = (2 * (s[3] - s[6]) - 5 * (s[4] - s[5]) + 4) >> 3;
  if (std::abs(a0) >= quant) return false;
  const int a1 = (2 * (s[1] - s[4]) - 5 * (s[2] - s[3]) + 4) >> 3;
  const int a2 = (2 * (s[5] - s[8]) - 5 * (s[6] - s[7]) + 4) >> 3;
  const int a3 = std::abs(a1) < std::abs(a2) ? std::abs(a1) : std::abs(a2);
  if (a3 >= std::abs(a0)) return false;

  int d = 5 * ((a0 < 0 ? -a3 : a3) - a0) / 8;
  if (clip * d > 0) {
    if (std::abs(d) > std::abs(clip)) d = clip;
  } else {
    d = 0;
  }
  p[-across] = std::uint8_t(s[4] - d);
  p[0] = std::uint8_t(s[5] + d);
  return true;
}

}  // namespace

const std::vector<DeblockMember>& deblockMembers() {
#define NAMED(FUNCTION) #FUNCTION
#define PLANE(FUNCTION, VERTICAL, LINES) \
  { NAMED(FUNCTION), VERTICAL, LINES, 1, FUNCTION, nullptr }
#define PAIRS(FUNCTION, VERTICAL) \
  { NAMED(FUNCTION), VERTICAL, 8, 2, nullptr, FUNCTION }
  static const std::vector<DeblockMember> all = {
      PLANE(zvpiFilterDeblockingLuma_VerEdge_VC1_8u_C1IR, true, 16),
      PLANE(zvpiFilterDeblockingLuma_HorEdge_VC1_8u_C1IR, false, 16),
      PLANE(zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C1IR, true, 8),
      PLANE(zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C1IR, false, 8),
      PAIRS(zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C2IR, true),
      PAIRS(zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C2IR, false),
  };
#undef PAIRS
#undef PLANE
#undef NAMED
  return all;
}

void deblock(const DeblockMember& member, std::uint8_t* srcDst, std::int32_t quant, std::ptrdiff_t step,
             const std::uint32_t (&flags)[2]) {
  const std::ptrdiff_t across = member.across(step), along = member.along(step);
  for (int component = 0; component < member.components; ++component)
    for (int group = 0; group < member.lines / 4; ++group) {
      if ((flags[component] & member.mask(group)) != 0) continue;
      std::uint8_t* const first = srcDst + component + 4 * group * along;
      if (!filterLine(first + 2 * along, across, quant)) continue;
      for (const int line : {0, 1, 3}) filterLine(first + line * along, across, quant);
    }
}

}  // namespace reference::vc1
