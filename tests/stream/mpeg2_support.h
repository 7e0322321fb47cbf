// MPEG-1 and MPEG-2 streams, decoded here and by ffmpeg.
#pragma once

#include "stream_support.h"

namespace zvptest {

Decoded decodeMpeg2(std::span<const std::uint8_t> stream, std::size_t piece = 4096);

// Decodes the elementary stream here and by ffmpeg: no plane further apart than this many dB, and where pictures begin
// to differ, no sample by more than three. What follows may have drifted, since transforms round differently.
Decoded expectThatOfFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch, double least);

}  // namespace zvptest
