// Streams of random syntax against an independent decoder: what the encoders at hand do not write.
#include <gtest/gtest.h>

#include "mpeg2_stream.h"
#include "mpeg2_support.h"
#include "support/compare.h"

using namespace zvptest;

namespace {

struct Case {
  const char* name;
  Mpeg2StreamOptions options;
};
const Case cases[] = {
    {"Progressive", {}},
    {"ProgressiveB", {.bPictures = true, .matrices = true}},
    {"Concealment", {.bPictures = true, .interlaced = true, .concealment = true}},
    {"Interlaced", {.bPictures = true, .interlaced = true, .matrices = true}},
    {"Fields", {.interlaced = true, .fieldPictures = true}},
    {"FieldsB", {.bPictures = true, .interlaced = true, .fieldPictures = true}},
    {"FieldsConcealment", {.bPictures = true, .interlaced = true, .fieldPictures = true, .concealment = true}},
    {"DualPrimeOfFrames", {.interlaced = true, .dualPrime = true}},
    {"DualPrimeOfFields", {.interlaced = true, .fieldPictures = true, .dualPrime = true}},
    {"Sampling422", {.bPictures = true, .sampling422 = true, .matrices = true}},
    {"Sampling422Interlaced", {.bPictures = true, .interlaced = true, .sampling422 = true, .matrices = true}},
    {"Sampling422Fields", {.bPictures = true, .interlaced = true, .fieldPictures = true, .sampling422 = true}},
    {"Sampling422DualPrime", {.interlaced = true, .fieldPictures = true, .dualPrime = true, .sampling422 = true}},
    {"Mpeg1", {.mpeg1 = true, .matrices = true}},
    {"Mpeg1B", {.mpeg1 = true, .bPictures = true, .matrices = true}},
    {"Mpeg1WholeSamples", {.mpeg1 = true, .bPictures = true, .wholeSamples = true}},
    {"Mpeg1LongSlices", {.mpeg1 = true, .bPictures = true, .longSlices = true}},
};

class Mpeg2Random : public ::testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Syntax, Mpeg2Random, ::testing::ValuesIn(cases),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace

TEST_P(Mpeg2Random, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const auto file = scratch / "random.m2v";
  static const int sizes[][2] = {{3, 4}, {2, 2}, {5, 2}, {6, 6}, {36, 2}};
  for (int seed = 1; seed <= rounds(10); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Mpeg2StreamOptions options = GetParam().options;
    options.seed = std::uint64_t(seed);
    options.widthMbs = sizes[seed % 5][0];
    options.heightMbs = sizes[seed % 5][1];
    writeFile(file, randomMpeg2Stream(options));
    const Decoded decoded = expectThatOfFfmpeg(file, scratch, 50);
    EXPECT_EQ(int(decoded.pictures.size()), options.pictures);
    if (HasFailure()) return;
  }
}
