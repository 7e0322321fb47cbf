// DV streams as ffmpeg makes them, in all formats that it has.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "dv/system.h"
#include "stream_support.h"

namespace zvptest {

struct DvFormat {
  const char* name;
  const char* system;  // the decoder's name for it
  int width, height;
  const char* rate;
  const char* sampling;  // ffmpeg's pixel format
};
inline const DvFormat dvFormats[] = {
    {"Dv25Of525", "DV25, 525/60, 4:1:1", 720, 480, "30000/1001", "yuv411p"},
    {"Dv25Of625", "DV25, 625/50, 4:2:0", 720, 576, "25", "yuv420p"},
    {"Dv25Of625In411", "DV25, 625/50, 4:1:1", 720, 576, "25", "yuv411p"},
    {"Dv50Of525", "DV50, 525/60, 4:2:2", 720, 480, "30000/1001", "yuv422p"},
    {"Dv50Of625", "DV50, 625/50, 4:2:2", 720, 576, "25", "yuv422p"},
    {"Dv100Of1080At60", "DV100, 1080/60i, 4:2:2", 1280, 1080, "30000/1001", "yuv422p"},
    {"Dv100Of1080At50", "DV100, 1080/50i, 4:2:2", 1440, 1080, "25", "yuv422p"},
    {"Dv100Of720At60", "DV100, 720/60p, 4:2:2", 960, 720, "60000/1001", "yuv422p"},
    {"Dv100Of720At50", "DV100, 720/50p, 4:2:2", 960, 720, "50", "yuv422p"},
};

inline void PrintTo(const DvFormat& format, std::ostream* out) { *out << format.name; }

const dv::System& systemOf(const DvFormat& format);

enum class DvSource { Pattern, Filmed, Interlaced };  // the last one is noisy, and coded by fields where that is better
void makeDv(const DvFormat& format, DvSource source, int frames, const std::filesystem::path& file);

// All pictures as ffmpeg decodes them, in the sampling of the stream.
std::vector<Bytes> decodeDvWithFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch,
                                      std::size_t pictureBytes);

Decoded decodeDv(std::span<const std::uint8_t> stream, const video::Preview& preview = {}, std::size_t piece = 50000);

}  // namespace zvptest
