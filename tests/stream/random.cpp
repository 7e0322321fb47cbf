// Streams of random syntax against an independent decoder: what x264 does not write.
#include <gtest/gtest.h>

#include "random_stream.h"
#include "stream_support.h"
#include "support/compare.h"

using namespace zvptest;

namespace {

struct Case {
  const char* name;
  int seeds;
  RandomStreamOptions options;
};
const Case cases[] = {
    {"IntraAndPcm", 12, {.pcm = true, .slices = true}},
    {"ConstrainedIntra", 12, {.pcm = true, .slices = true, .constrainedIntra = true, .cropping = true}},
    {"BPictures", 18, {.pictures = 16, .bPictures = true, .slices = true}},
    {"ExplicitWeights", 12, {.bPictures = true, .weights = true, .slices = true}},
    {"ListModification", 12, {.maxRefFrames = 6, .bPictures = true, .modifications = true, .slices = true}},
    {"MemoryManagement", 24, {.pictures = 24, .memoryCommands = true, .modifications = true, .slices = true}},
    {"MemoryManagementWithBPictures",
     24,
     {.pictures = 24, .bPictures = true, .memoryCommands = true, .modifications = true}},
    {"PictureOrderType1", 18, {.pictures = 20, .pocType = 1, .bPictures = true, .memoryCommands = true}},
    {"PictureOrderType2", 12, {.pictures = 20, .pocType = 2, .bPictures = true, .memoryCommands = true}},
    {"GapsInFrameNum", 12, {.pictures = 24, .modifications = true, .gaps = true}},
    {"GapsInPictureOrderType2", 12, {.pictures = 24, .pocType = 2, .modifications = true, .gaps = true}},
    {"RedundantSlices", 12, {.pcm = true, .slices = true, .redundant = true}},
    {"Transform8x8", 12, {.bPictures = true, .slices = true, .transform8x8 = true}},
    {"Transform8x8AndScaling", 12, {.bPictures = true, .slices = true, .transform8x8 = true, .scaling = true}},
    {"ScalingAndChromaOffsets", 12, {.bPictures = true, .slices = true, .scaling = true, .chromaOffsets = true}},
    {"HighProfileTools",
     12,
     {.bPictures = true,
      .pcm = true,
      .slices = true,
      .transform8x8 = true,
      .scaling = true,
      .chromaOffsets = true,
      .constrainedIntra = true}},
};

class H264Random : public ::testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Syntax, H264Random, ::testing::ValuesIn(cases),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace

// Two things are written more plainly for ffmpeg: its splitter takes a redundant slice for a picture of its own, and it
// sorts a picture with operation 5 into the lists of B slices by its count before the operation (against H.264 8.2.1).
TEST_P(H264Random, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const auto path = scratch / "random.264";
  static const int sizes[][2] = {{1, 1}, {2, 1}, {1, 3}, {3, 2}, {5, 4}, {4, 5}};
  for (int seed = 1; seed <= rounds(GetParam().seeds); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomStreamOptions options = GetParam().options;
    options.seed = std::uint64_t(seed);
    options.widthMbs = sizes[seed % 6][0];
    options.heightMbs = sizes[seed % 6][1];
    RandomStreamOptions plain = options;
    plain.omitRedundant = true;
    plain.resetsAreIdr = options.bPictures;
    writeFile(path, randomStream(plain));
    const Decoded decoded = decodeH264(randomStream(options));
    ASSERT_FALSE(decoded.failed) << "byte " << decoded.position << ": " << decoded.error;
    ASSERT_GE(int(decoded.pictures.size()), options.pictures);
    ASSERT_EQ(firstDifference(decoded.pictures, decodeWithFfmpeg(path, scratch, decoded.pictures[0].samples.size())), "");
  }
}
