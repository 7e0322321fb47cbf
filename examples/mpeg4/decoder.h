// The decoders of MPEG-4 Visual (ISO/IEC 14496-2), Simple profile with B-VOPs, quantization matrices and interlaced
// VOPs of Advanced Simple, and of ITU-T H.263 baseline, which is MPEG-4's short header, with Annexes D, I, J and T.
#pragma once

#include <memory>
#include <span>

#include "common/decoder.h"

namespace mpeg4 {

std::unique_ptr<video::Decoder> makeDecoder();
std::unique_ptr<video::Decoder> makeH263Decoder();

// Does this look like the beginning of an elementary stream?
bool looksLikeStream(std::span<const std::uint8_t> data);
bool looksLikeH263(std::span<const std::uint8_t> data);

}  // namespace mpeg4
