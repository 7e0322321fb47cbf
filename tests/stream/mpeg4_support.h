// Streams of MPEG-4 Visual and H.263 as ffmpeg makes them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "stream_support.h"

namespace zvptest {

// Encodes pictures of a filmed scene, with a short distance between intra pictures. The file's ending chooses between
// an elementary stream (.m4v, .h263) and a container.
void makeMpeg4(const std::string& size, int frames, const std::string& options, const std::filesystem::path& file);

// All pictures of an elementary stream as ffmpeg decodes them, in I420.
std::vector<Bytes> decodeMpeg4WithFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch,
                                         std::size_t pictureBytes);

Decoded decodeMpeg4(std::span<const std::uint8_t> stream, std::size_t piece = 4096);
Decoded decodeH263(std::span<const std::uint8_t> stream, std::size_t piece = 4096);

}  // namespace zvptest
