// The DV decoder: 25 Mb/s (525/60 4:1:1, 625/50 4:2:0 and 4:1:1), 50 Mb/s (4:2:2) and 100 Mb/s (1080 and 720 lines), at
// full size and in preview sizes.
#pragma once

#include <memory>
#include <span>

#include "common/decoder.h"

namespace dv {

// Takes streams of DIF blocks, as files of their own have them and, frame by frame, AVI and QuickTime. Pictures have
// the stream's own sampling. A video segment that is missing or marked as bad stays as it was in the picture before.
std::unique_ptr<video::Decoder> makeDecoder();

// Does this look like the beginning of a stream of DIF blocks?
bool looksLikeStream(std::span<const std::uint8_t> data);

}  // namespace dv
