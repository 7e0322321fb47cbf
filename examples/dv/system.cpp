#include "dv/system.h"

#include <algorithm>
#include <map>

namespace dv {

namespace {

using video::Ratio;

constexpr Ratio rate525{30000, 1001}, rate625{25, 1};
constexpr System systems[] = {
    {"DV25, 525/60, 4:1:1", Sampling::C411, 720, 480, 10, 1, false, rate525, {8, 9}, {32, 27}},
    {"DV25, 625/50, 4:2:0", Sampling::C420, 720, 576, 12, 1, false, rate625, {16, 15}, {64, 45}},
    {"DV25, 625/50, 4:1:1", Sampling::C411, 720, 576, 12, 1, false, rate625, {16, 15}, {64, 45}},
    {"DV50, 525/60, 4:2:2", Sampling::C422, 720, 480, 10, 2, false, rate525, {8, 9}, {32, 27}},
    {"DV50, 625/50, 4:2:2", Sampling::C422, 720, 576, 12, 2, false, rate625, {16, 15}, {64, 45}},
    {"DV100, 1080/60i, 4:2:2", Sampling::C422, 1280, 1080, 10, 4, true, rate525, {3, 2}, {3, 2}},
    {"DV100, 1080/50i, 4:2:2", Sampling::C422, 1440, 1080, 12, 4, true, rate625, {4, 3}, {4, 3}},
    {"DV100, 720/60p, 4:2:2", Sampling::C422, 960, 720, 10, 2, true, {60000, 1001}, {4, 3}, {4, 3}},
    {"DV100, 720/50p, 4:2:2", Sampling::C422, 960, 720, 12, 2, true, {50, 1}, {4, 3}, {4, 3}},
};

// By the signal type (STYPE of the VAUX source pack), the field rate (DSF of the header) and the application that wrote
// the stream (APT of the header): of 25 Mb/s in 625/50, IEC 61834 has 4:2:0 and SMPTE 314M 4:1:1.
const System* systemOf(int signalType, bool rate50, int application) {
  switch (signalType) {
    case 0x00: return &systems[!rate50 ? 0 : application == 0 ? 1 : 2];
    case 0x04: return &systems[rate50 ? 4 : 3];
    case 0x14: return &systems[rate50 ? 6 : 5];
    case 0x18: return &systems[rate50 ? 8 : 7];
    default: return nullptr;
  }
}

// What was told, and which of it most often.
class Votes {
 public:
  void add(int value) { ++counts_[value]; }
  int most() const { return counts_.empty() ? 0 : winner()->second; }
  int value() const { return counts_.empty() ? 0 : winner()->first; }

 private:
  std::map<int, int>::const_iterator winner() const {
    return std::max_element(counts_.begin(), counts_.end(), [](auto& a, auto& b) { return a.second < b.second; });
  }
  std::map<int, int> counts_;
};

constexpr std::uint8_t videoSourcePack = 0x60, videoControlPack = 0x61;
constexpr std::size_t packBytes = 5;

}  // namespace

std::span<const System> allSystems() { return systems; }

std::optional<FrameKind> frameKind(std::span<const std::uint8_t> data) {
  Votes headers, types, displays;
  for (int sequence = 0; sequence < leastSequences; ++sequence) {
    const auto at = data.subspan(std::size_t(sequence) * difSequenceBytes, difSequenceBytes);
    // FSP of the block's identification; DSF and APT.
    if (isDifBlock(at, Section::Header, sequence, 0)) headers.add((at[1] & 4) << 2 | at[3] >> 7 << 3 | (at[4] & 7));
    // VAUX blocks hold 15 packs each. The two that matter are the first of the first block or the tenth of the third,
    // in turn from sequence to sequence.
    const auto packs = at.subspan(sequence % 2 == 0 ? 5 * difBlockBytes + 3 + 9 * packBytes : 3 * difBlockBytes + 3);
    if (packs[0] == videoSourcePack) types.add(packs[3] & 0x1F);
    if (packs[packBytes] == videoControlPack) displays.add(packs[packBytes + 2] & 7);
  }
  if (headers.most() <= leastSequences / 2) return std::nullopt;
  const int header = headers.value(), application = header & 7, display = displays.value();
  FrameKind kind;
  kind.system = systemOf(types.value(), (header & 8) != 0, application);
  kind.wide = display == 2 || (application == 0 && display == 7);
  kind.secondOfPair = (header & 16) == 0;
  return kind;
}

}  // namespace dv
