#include "mpeg2_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

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
  const auto expected = decodeWithFfmpeg(file, scratch, decoded.pictures[0].samples.size(), "-f mpegvideo", "");
  expectAlike(decoded.pictures, expected, least);
  for (std::size_t i = 0; i < std::min(expected.size(), decoded.pictures.size()); ++i) {
    const Bytes& actual = decoded.pictures[i].samples;
    int largest = 0;
    for (std::size_t at = 0; at < actual.size(); ++at)
      largest = std::max(largest, std::abs(actual[at] - expected[i][at]));
    if (largest == 0) continue;
    EXPECT_LE(largest, 3) << "picture " << i << ", the first that differs";
    break;
  }
  return decoded;
}

}  // namespace zvptest
