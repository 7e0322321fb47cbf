// MPEG-1 and MPEG-2 streams, decoded here and by ffmpeg.
#pragma once

#include "stream_support.h"

namespace zvptest {

Decoded decodeMpeg2(std::span<const std::uint8_t> stream, std::size_t piece = 4096);

// Decodes the elementary stream here and by ffmpeg, and compares them by expectNear().
Decoded expectThatOfFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch, double least);

}  // namespace zvptest
