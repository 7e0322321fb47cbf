// The H.264 decoder: Baseline, Extended without data partitioning and switching slices, and Main with CAVLC; frames,
// 8 bits, 4:2:0. What it cannot do is named and refused.
#pragma once

#include <memory>
#include <span>

#include "common/decoder.h"

namespace h264 {

// Takes Annex B byte streams, and the length-prefixed NAL units of MP4 and Matroska when configure() has been given
// their avcC record.
std::unique_ptr<video::Decoder> makeDecoder();

// Does this look like the beginning of an Annex B stream?
bool looksLikeStream(std::span<const std::uint8_t> data);

}  // namespace h264
