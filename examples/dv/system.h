// The systems of DV, and how a stream tells which one it is (IEC 61834-2; SMPTE 314M; SMPTE 370M): a frame is cut into
// DIF sequences of 150 blocks of 80 bytes, and each sequence repeats in its header and its auxiliary data what the
// frame is.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "common/decoder.h"

namespace dv {

enum class Sampling { C411, C420, C422 };

struct System {
  const char* name;
  Sampling sampling;
  int width, height;
  int sequences;  // of a channel
  int channels;
  bool highDefinition;  // 100 Mb/s: eight blocks in a macroblock, steps and weights of its own
  video::Ratio frameRate;
  video::Ratio normalAspect, wideAspect;  // of a sample, for pictures of 4:3 and of 16:9

  std::size_t frameBytes() const;
};

inline constexpr std::size_t difBlockBytes = 80, difSequenceBytes = 150 * difBlockBytes,
                             segmentBytes = 5 * difBlockBytes;
// What the shortest frame has: enough to tell what a frame is.
inline constexpr int leastSequences = 10;

inline std::size_t System::frameBytes() const { return std::size_t(channels * sequences) * difSequenceBytes; }

// All that this decoder knows.
std::span<const System> allSystems();

enum class Section { Header, Subcode, Vaux, Audio, Video };  // section type of a DIF block, its top three bits

// Is this the block of that section and number in that DIF sequence, by the first three of its bytes?
inline bool isDifBlock(std::span<const std::uint8_t> block, Section section, int sequence, int number) {
  return block[0] >> 5 == int(section) && block[1] >> 4 == sequence && block[2] == number;
}

struct FrameKind {
  const System* system = nullptr;  // null: one that this decoder does not know
  bool wide = false;
  bool secondOfPair = false;  // 720 lines: frames come in pairs, which share the shuffling of four channels
};

// What the frame that begins here is, by the majority of its first ten DIF sequences, so that damage to some does no
// harm. data: of at least these. Nothing if they are no DIF sequences.
std::optional<FrameKind> frameKind(std::span<const std::uint8_t> data);

}  // namespace dv
