// Streams of random syntax against an independent decoder: what x264 does not write.
#include <gtest/gtest.h>

#include "random_stream.h"
#include "stream_support.h"
#include "support/compare.h"

using namespace zvptest;

namespace {

// Decodes seeds streams with the options and compares them with ffmpeg. Two things are written more plainly for ffmpeg:
// its splitter takes a redundant slice for a picture of its own, and it sorts a picture with operation 5 into the lists
// of B slices by its count before the operation (against H.264 8.2.1).
void compare(RandomStreamOptions options, int seeds) {
  const TemporaryDirectory scratch;
  const auto path = scratch / "random.264";
  static const int sizes[][2] = {{1, 1}, {2, 1}, {1, 3}, {3, 2}, {5, 4}, {4, 5}};
  for (int seed = 1; seed <= rounds(seeds); ++seed) {
    options.seed = std::uint64_t(seed);
    options.widthMbs = sizes[seed % 6][0];
    options.heightMbs = sizes[seed % 6][1];
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Bytes stream = randomStream(options);
    RandomStreamOptions plain = options;  // what ffmpeg gets
    plain.omitRedundant = true;
    plain.resetsAreIdr = options.bPictures;
    writeFile(path, randomStream(plain));
    const Decoded decoded = decodeH264(stream);
    ASSERT_FALSE(decoded.failed) << "byte " << decoded.position << ": " << decoded.error;
    ASSERT_GE(int(decoded.pictures.size()), options.pictures);
    ASSERT_EQ(firstDifference(decoded.pictures, decodeWithFfmpeg(path, scratch, decoded.pictures[0].samples.size())), "");
  }
}

}  // namespace

TEST(H264Random, IntraAndPcm) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.pcm = o.slices = true;
  compare(o, 12);
}

TEST(H264Random, ConstrainedIntra) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.pcm = o.slices = o.constrainedIntra = o.cropping = true;
  compare(o, 12);
}

TEST(H264Random, BPictures) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.bPictures = o.slices = true;
  o.pictures = 16;
  compare(o, 18);
}

TEST(H264Random, ExplicitWeights) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.bPictures = o.weights = o.slices = true;
  compare(o, 12);
}

TEST(H264Random, ListModification) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.bPictures = o.modifications = o.slices = true;
  o.maxRefFrames = 6;
  compare(o, 12);
}

TEST(H264Random, MemoryManagement) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.memoryCommands = o.modifications = o.slices = true;
  o.pictures = 24;
  compare(o, 24);
}

TEST(H264Random, MemoryManagementWithBPictures) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.memoryCommands = o.modifications = o.bPictures = true;
  o.pictures = 24;
  compare(o, 24);
}

TEST(H264Random, PictureOrderType1) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.pocType = 1;
  o.bPictures = true;
  o.memoryCommands = true;
  o.pictures = 20;
  compare(o, 18);
}

TEST(H264Random, PictureOrderType2) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.pocType = 2;
  o.bPictures = true;
  o.memoryCommands = true;
  o.pictures = 20;
  compare(o, 12);
}

TEST(H264Random, GapsInFrameNum) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.gaps = o.modifications = true;
  o.pictures = 24;
  compare(o, 12);
  o.pocType = 2;
  compare(o, 12);
}

TEST(H264Random, RedundantSlices) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.redundant = o.slices = o.pcm = true;
  compare(o, 12);
}

TEST(H264Random, HighProfileTools) {
  ZVP_NEED_PROGRAM("ffmpeg");
  RandomStreamOptions o;
  o.transform8x8 = o.bPictures = o.slices = true;
  compare(o, 12);
  o.scaling = true;
  compare(o, 12);
  o.transform8x8 = false;
  o.chromaOffsets = true;
  compare(o, 12);
  o.transform8x8 = o.constrainedIntra = o.pcm = true;
  compare(o, 12);
}
