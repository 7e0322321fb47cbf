// The DV decoder of the examples on frames that hold any bytes: no crash, no endless loop, errors that lie within the
// input. A frame is large and its decoder asks for the identification of its blocks: both are made here, and the input
// is what the blocks hold, then some damage to anything.
#include <algorithm>
#include <cstdlib>
#include <span>
#include <vector>

#include "dv/decoder.h"
#include "dv/layout.h"
#include "dv/system.h"
#include "support/decode_stream.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// A frame without damage, all of whose video blocks hold the payload, over and over.
Bytes makeFrame(const dv::System& system, std::span<const std::uint8_t> payload) {
  Bytes frame(system.frameBytes(), 0xFF);
  const bool rate50 = system.sequences == 12;
  const int signalType = system.height == 720 ? 0x18 : system.highDefinition ? 0x14 : system.channels == 2 ? 4 : 0;
  for (std::size_t at = 0, number = 0; at < frame.size(); at += dv::difSequenceBytes, ++number) {
    const auto sequence = std::span(frame).subspan(at, dv::difSequenceBytes);
    const int which = int(number) % system.sequences;
    const auto identify = [&](std::size_t block, dv::Section section, int numberInSection) {
      sequence[80 * block] = std::uint8_t(int(section) << 5 | 0x1F);
      sequence[80 * block + 1] = std::uint8_t(which << 4 | 7);
      sequence[80 * block + 2] = std::uint8_t(numberInSection);
    };
    identify(0, dv::Section::Header, 0);
    sequence[3] = std::uint8_t(rate50 ? 0xBF : 0x3F);
    sequence[4] = std::uint8_t(system.sampling == dv::Sampling::C411 && rate50 ? 0xF9 : 0xF8);
    const auto source = sequence.subspan(which % 2 == 0 ? 448 : 243, 5);
    source[0] = 0x60;
    source[3] = std::uint8_t(0xE0 | signalType);
    for (int i = 0; i < 135; ++i) identify(std::size_t(6 + i / 15 * 16 + 1 + i % 15), dv::Section::Video, i);
  }
  std::size_t next = 0;
  for (const dv::SegmentPlace& place : dv::segmentPlaces(system, false))
    for (std::size_t i = 0; i < dv::segmentBytes && !payload.empty(); ++i)
      if (i % 80 > 2) {
        const std::uint8_t byte = payload[next++ % payload.size()];
        frame[place.offset + i] = i % 80 == 3 ? byte & 15 : byte;  // no error is told
      }
  return frame;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  constexpr video::Preview previews[] = {{}, {2, false}, {2, true}, {4, false}, {8, false}};
  const auto systems = dv::allSystems();
  const std::size_t few = data[0] < 224 ? 5 : systems.size();  // most of them small
  const dv::System& system = systems[data[0] % few];
  // Up to 15 places of damage, of four bytes each, from the end of the input.
  std::size_t damages = std::min<std::size_t>(data[1] & 15, (size - 2) / 4);
  const auto input = std::span(data, size);
  Bytes frame = makeFrame(system, input.subspan(2, size - 2 - 4 * damages));
  for (; damages > 0; --damages) {
    const auto damage = input.subspan(size - 4 * damages, 4);
    frame[std::size_t(damage[0] << 16 | damage[1] << 8 | damage[2]) % frame.size()] ^= damage[3];
  }

  const auto decoder = dv::makeDecoder();
  if (!decoder->setPreview(previews[(data[1] >> 4) % std::size(previews)])) std::abort();
  unsigned pictures = 0;
  const video::PictureSink sink = [&](const video::Picture& picture) {
    ++pictures;
    lookAtSamples(picture);
  };
  try {
    decoder->decode({frame, 0, false}, sink);
    decoder->finish(sink);
    if (pictures == 0) std::abort();
  } catch (const video::StreamError& error) {
    if (error.position() < 0 || error.position() > std::int64_t(frame.size())) std::abort();
  }
  return 0;
}
