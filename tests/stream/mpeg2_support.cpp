#include "mpeg2_support.h"

#include <gtest/gtest.h>

#include "mpeg2/decoder.h"

namespace zvptest {

Decoded decodeMpeg2(std::span<const std::uint8_t> stream, std::size_t piece) {
  return decodeStream(*mpeg2::makeDecoder(), stream, piece);
}

Decoded expectThatOfFfmpeg(const std::filesystem::path& file, const TemporaryDirectory& scratch, double least) {
  Decoded decoded = decodeMpeg2(readFile(file));
  EXPECT_FALSE(decoded.failed) << decoded.error;
  if (decoded.pictures.empty()) {
    ADD_FAILURE() << "no picture";
    return decoded;
  }
  expectNear(decoded.pictures,
             decodeWithFfmpeg(file, scratch, decoded.pictures[0].samples.size(), "-f mpegvideo", ""), least);
  return decoded;
}

}  // namespace zvptest
