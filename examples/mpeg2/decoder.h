// The MPEG-1 and MPEG-2 video decoder: ISO/IEC 11172-2 and the Main and 4:2:2 profiles of ISO/IEC 13818-2, with frame
// and field pictures. D-pictures, 4:4:4 and scalable streams are refused by name.
#pragma once

#include <memory>
#include <span>

#include "common/decoder.h"

namespace mpeg2 {

// Takes elementary streams and the packets of containers. Pictures come in display order, as large as the sequence
// header says. Pictures in front of the first I-picture, and B-pictures that lack one of their references, are left
// out.
std::unique_ptr<video::Decoder> makeDecoder();

// Does this look like the beginning of an elementary stream: a sequence header without, or with, the extension of
// MPEG-2 behind it?
bool looksLikeMpeg1(std::span<const std::uint8_t> data);
bool looksLikeMpeg2(std::span<const std::uint8_t> data);

}  // namespace mpeg2
