#include "mpeg4_support.h"

#include "mpeg4/decoder.h"

namespace zvptest {

void makeMpeg4(const std::string& size, int frames, const std::string& options, const std::filesystem::path& file) {
  const std::string format = file.extension() == ".m4v" ? " -f m4v " : " ";
  runFfmpeg(filmed() + " -frames:v " + std::to_string(frames) + " -vf scale=" + size +
            " -threads 1 -g 6 -flags +bitexact " + options + format + file.string());
}

std::vector<Bytes> decodeMpeg4WithFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch,
                                         std::size_t pictureBytes) {
  const std::string extension = file.extension().string();
  return decodeWithFfmpeg(file, scratch, pictureBytes, extension == ".m4v" ? "-f m4v" : "-f h263", "-pix_fmt yuv420p");
}

Decoded decodeMpeg4(std::span<const std::uint8_t> stream, std::size_t piece) {
  return decodeStream(*mpeg4::makeDecoder(), stream, piece);
}

Decoded decodeH263(std::span<const std::uint8_t> stream, std::size_t piece) {
  return decodeStream(*mpeg4::makeH263Decoder(), stream, piece);
}

}  // namespace zvptest
