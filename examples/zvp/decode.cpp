#include <cstdio>

#include "commands.h"
#include "common/md5.h"
#include "progress.h"
#include "source.h"
#include "writers.h"

namespace zvptool {

int decode(const DecodeOptions& options) {
  PictureReader reader(options.input, options.preview);
  std::unique_ptr<Writer> writer;
  if (!options.output.empty()) writer = makeWriter(options.output, reader.source().frameRate());
  video::Md5 md5;
  Progress progress;
  const auto wanted = [&] { return options.frames == 0 || progress.frames() < options.frames; };
  const video::PictureSink sink = [&](const video::Picture& picture) {
    if (!wanted()) return;
    if (writer) writer->add(picture);
    if (options.md5) md5.add(picture);
    progress.count();
  };
  while (wanted() && reader.advance(sink)) {
  }
  if (writer) writer->finish();
  progress.finish();
  if (options.md5) std::printf("%s\n", md5.hex().c_str());
  const std::string remark = reader.decoder().remark();
  if (!remark.empty()) std::fprintf(stderr, "zvp: %s: %s\n", options.input.c_str(), remark.c_str());
  if (wanted() && !reader.error().empty()) {
    std::fprintf(stderr, "zvp: %s\n", reader.error().c_str());
    return 1;
  }
  if (progress.frames() == 0) {
    std::fprintf(stderr, "zvp: %s: no picture in %s\n", options.input.c_str(), reader.source().format().c_str());
    return 1;
  }
  return 0;
}

}  // namespace zvptool
