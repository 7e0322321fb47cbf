// Model of the VC-1 deblocking filter (SMPTE 421M 8.6): group by group, the deciding line first, a line at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zvpvc.h"

namespace reference::vc1 {

// One of the exports. Components is 2 for interleaved chroma.
struct DeblockMember {
  const char* name;
  bool vertical;
  int lines;  // along the edge, of one component
  int components;
  zvpStatus (*plane)(std::uint8_t*, std::int32_t, std::int32_t, std::uint32_t);
  zvpStatus (*pairs)(std::uint8_t*, std::int32_t, std::int32_t, std::uint32_t, std::uint32_t);

  // Bytes from a sample of a line to the next one, and from a line to the next.
  std::ptrdiff_t across(std::ptrdiff_t step) const { return vertical ? components : step; }
  std::ptrdiff_t along(std::ptrdiff_t step) const { return vertical ? step : components; }
  // The flag's bits that disable a group.
  std::uint32_t mask(int group) const { return lines == 16 ? 1u << group : group == 0 ? 3u : 12u; }
};
const std::vector<DeblockMember>& deblockMembers();

// flags[0] for the plane or for U, flags[1] for V.
void deblock(const DeblockMember& member, std::uint8_t* srcDst, std::int32_t quant, std::ptrdiff_t step,
             const std::uint32_t (&flags)[2]);

}  // namespace reference::vc1
