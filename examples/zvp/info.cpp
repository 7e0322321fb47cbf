#include <cstdio>

#include "commands.h"
#include "source.h"

namespace zvptool {

int info(const std::string& input) {
  PictureReader reader(input);
  std::int64_t pictures = 0;
  video::Format format;
  const video::PictureSink sink = [&](const video::Picture& picture) {
    format = picture.format;
    ++pictures;
  };
  while (reader.advance(sink)) {
  }
  const auto line = [](const std::string& name, const std::string& value) {
    std::printf("%-20s %s\n", name.c_str(), value.c_str());
  };
  line("file", input);
  line("format", reader.source().format());
  line("codec", reader.source().codec().name);
  for (const auto& [name, value] : reader.decoder().describe()) line(name, value);
  const video::Ratio rate = format.frameRate.known() ? format.frameRate : reader.source().frameRate();
  if (rate.known()) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", double(rate.num) / rate.den);
    line("frames per second", text);
  }
  if (format.sampleAspect.known())
    line("sample aspect ratio", std::to_string(format.sampleAspect.num) + ":" + std::to_string(format.sampleAspect.den));
  line("pictures", std::to_string(pictures));
  if (!reader.decoder().remark().empty()) line("damage", reader.decoder().remark());
  if (reader.error().empty()) return 0;
  std::fflush(stdout);
  std::fprintf(stderr, "zvp: %s\n", reader.error().c_str());
  return 1;
}

}  // namespace zvptool
