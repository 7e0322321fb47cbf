#include "dv_support.h"

#include <stdexcept>

#include "dv/decoder.h"

namespace zvptest {

const dv::System& systemOf(const DvFormat& format) {
  for (const dv::System& system : dv::allSystems())
    if (system.name == std::string(format.system)) return system;
  throw std::logic_error(std::string("no system ") + format.system);
}

void makeDv(const DvFormat& format, DvSource source, int frames, const std::filesystem::path& file) {
  const std::string size = std::to_string(format.width) + "x" + std::to_string(format.height), rate = format.rate;
  std::string input, options;
  switch (source) {
    case DvSource::Pattern: input = "-f lavfi -i testsrc2=size=" + size + ":rate=" + rate; break;
    case DvSource::Filmed:
      input = filmed("-r " + rate) + " -vf scale=" + size + " -r " + rate;
      break;
    case DvSource::Interlaced:
      input = "-f lavfi -i mandelbrot=size=" + size + ":rate=" + rate +
              ":start_scale=0.4:end_scale=0.01:end_pts=60 -vf "
              "tinterlace=interleave_top,noise=alls=24:allf=t:all_seed=7 -r " +
              rate;
      options = " -flags +ildct";
  }
  runFfmpeg(input + " -frames:v " + std::to_string(frames) + " -pix_fmt " + format.sampling + " -c:v dvvideo" + options +
            " " + file.string());
}

std::vector<Bytes> decodeDvWithFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch,
                                      std::size_t pictureBytes) {
  return decodeWithFfmpeg(file, scratch, pictureBytes, "", "");
}

Decoded decodeDv(std::span<const std::uint8_t> stream, const video::Preview& preview, std::size_t piece) {
  const auto decoder = dv::makeDecoder();
  if (!decoder->setPreview(preview)) throw std::logic_error("no such preview");
  return decodeStream(*decoder, stream, piece);
}

}  // namespace zvptest
