// Streams of x264 over its CAVLC options, against ffmpeg.
#include <gtest/gtest.h>

#include "stream_support.h"

using namespace zvptest;

namespace {

// Sources that differ in motion, texture and size; the odd sizes are coded with cropping.
struct Source {
  const char* name;
  std::string arguments;  // of ffmpeg
};
const Source sources[] = {
    {"test", "-f lavfi -i testsrc=size=176x144:rate=25 -frames:v 24"},
    {"fractal", "-f lavfi -i mandelbrot=size=202x150:rate=25 -frames:v 20"},
    {"filmed", filmed() + " -frames:v 24 -vf scale=318:182"},
};

struct Sources {
  TemporaryDirectory directory;
  bool made[3] = {};

  std::filesystem::path get(std::size_t i) {
    const auto path = directory / (std::string(sources[i].name) + ".y4m");
    if (made[i]) return path;
    runFfmpeg(sources[i].arguments + " -pix_fmt yuv420p " + path.string());
    made[i] = true;
    return path;
  }
};

struct Options {
  const char* name;
  const char* arguments;
};
const Options optionSets[] = {
    {"Baseline", "--profile baseline --qp 26"},
    {"FinestQuantizer", "--profile baseline --qp 1 --no-deblock"},
    {"LowRate", "--profile baseline --qp 51"},
    {"Slices", "--profile baseline --qp 10 --slices 3"},
    {"SlicesOfFewMacroblocks", "--profile main --slice-max-mbs 7 --bframes 2 --crf 28"},
    {"SlicesOfFewBytes", "--profile main --slice-max-size 300 --bframes 2 --crf 20 --constrained-intra"},
    {"ConstrainedIntra", "--profile baseline --constrained-intra --crf 24 --slice-max-size 200"},
    {"SpatialDirect", "--profile main --bframes 3 --direct spatial --weightb --qp 24"},
    {"TemporalDirect", "--profile main --bframes 3 --direct temporal --weightb --qp 24"},
    {"TemporalDirectPlain", "--profile main --bframes 3 --direct temporal --no-weightb --qp 30 --slices 4"},
    {"TemporalDirectSmall", "--profile main --bframes 2 --level 2 --direct temporal --partitions all --subme 9 --qp 20"},
    {"PyramidStrict", "--profile main --bframes 5 --b-pyramid strict --ref 8 --direct auto --partitions all --subme 9"},
    {"Pyramid", "--profile main --bframes 16 --b-pyramid normal --ref 16 --direct auto --partitions all --me umh"},
    {"WeightedP", "--profile main --weightp 2 --ref 5 --bframes 0"},
    {"WeightedPSimple", "--profile main --weightp 1 --ref 5 --bframes 2"},
    {"AllPartitions", "--profile main --partitions all --ref 4 --b-adapt 2 --crf 18 --deblock 3:-3"},
    {"NoPartitions", "--profile main --partitions none --crf 33 --deblock -6:6"},
    {"NoDeblocking", "--profile main --no-deblock --crf 26"},
    {"OpenGop", "--profile main --keyint 10 --open-gop --bframes 3 --crf 23"},
    {"ShortGop", "--profile main --keyint 5 --bframes 3 --crf 23"},
    {"IntraRefresh", "--profile main --intra-refresh --keyint 12 --crf 23"},
    {"IntraOnly", "--profile main --keyint 1 --crf 20"},
    {"ChromaQpUp", "--profile main --chroma-qp-offset 12 --crf 26"},
    {"ChromaQpDown", "--profile main --chroma-qp-offset -12 --crf 30 --aq-mode 2"},
    {"NoDirect", "--profile main --no-psy --trellis 2 --direct none --crf 26"},
    {"FullRange", "--profile main --range pc --colormatrix bt709 --sar 4:3 --crf 26"},
    {"High", "--profile high --8x8dct --crf 24 --bframes 3 --direct auto"},
    {"HighSlices", "--profile high --8x8dct --keyint 1 --qp 12 --slice-max-mbs 17"},
    {"HighSmallSlices", "--profile high --8x8dct --keyint 1 --crf 20 --slice-max-size 250"},
    {"HighConstrainedIntra", "--profile high --8x8dct --bframes 3 --slice-max-size 400 --constrained-intra --crf 18"},
    {"HighMatrices", "--profile high --8x8dct --cqm jvt --crf 22 --bframes 2"},
    {"HighMatrices4x4", "--profile high --no-8x8dct --cqm jvt --crf 28 --bframes 2"},
    {"HighFlatLowRate", "--profile high --8x8dct --qp 47 --bframes 2"},
    {"HighFinestQuantizer", "--profile high --8x8dct --qp 1"},
};

class X264 : public ::testing::TestWithParam<Options> {
 protected:
  static void SetUpTestSuite() { made = new Sources; }
  static void TearDownTestSuite() {
    delete made;
    made = nullptr;
  }
  static Sources* made;
};
Sources* X264::made = nullptr;

// x264 with CAVLC on the source, decoded by both.
void compare(Sources& made, std::size_t source, const std::string& options) {
  const auto coded = made.directory / "coded.264";
  const CommandResult result =
      run("x264 --quiet --threads 1 --no-cabac " + options + " -o " + coded.string() + " " + made.get(source).string());
  ASSERT_EQ(result.exitCode, 0) << options << ": " << result.output;
  const Decoded decoded = decodeH264(readFile(coded), 3001);
  ASSERT_FALSE(decoded.failed) << options << ": byte " << decoded.position << ": " << decoded.error;
  ASSERT_FALSE(decoded.pictures.empty());
  EXPECT_EQ(firstDifference(decoded.pictures,
                            decodeWithFfmpeg(coded, made.directory, decoded.pictures[0].samples.size())),
            "")
      << options << ", source " << sources[source].name;
}

}  // namespace

TEST_P(X264, DecodesToTheBit) {
  ZVP_NEED_PROGRAM("ffmpeg");
  ZVP_NEED_PROGRAM("x264");
  for (std::size_t source = 0; source < std::size(sources); ++source) compare(*made, source, GetParam().arguments);
}
INSTANTIATE_TEST_SUITE_P(Options, X264, ::testing::ValuesIn(optionSets),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(X264Quantizers, DecodeToTheBit) {
  ZVP_NEED_PROGRAM("ffmpeg");
  ZVP_NEED_PROGRAM("x264");
  Sources made;
  for (int qp = 1; qp <= 51; ++qp)
    compare(made, std::size_t(qp % 3), "--profile " + std::string(qp % 2 ? "main" : "high") + " --frames 5 --qp " +
                                           std::to_string(qp));
}

TEST(X264Sizes, DecodeToTheBit) {
  ZVP_NEED_PROGRAM("ffmpeg");
  ZVP_NEED_PROGRAM("x264");
  Sources made;
  for (const auto& [width, height] : std::vector<std::pair<int, int>>{
           {16, 16}, {16, 64}, {64, 16}, {18, 34}, {30, 46}, {62, 2}, {2, 62}, {130, 98}, {254, 6}}) {
    const std::string size = std::to_string(width) + ":" + std::to_string(height);
    const auto scaled = made.directory / "scaled.y4m", coded = made.directory / "coded.264";
    runFfmpeg("-i " + made.get(1).string() + " -frames:v 12 -vf scale=" + size + " " + scaled.string());
    const CommandResult result = run("x264 --quiet --threads 1 --no-cabac --me esa --merange 64 --bframes 2 --crf 20 -o " +
                                     coded.string() + " " + scaled.string());
    ASSERT_EQ(result.exitCode, 0) << size << ": " << result.output;
    const Decoded decoded = decodeH264(readFile(coded));
    ASSERT_FALSE(decoded.failed) << size << ": " << decoded.error;
    ASSERT_FALSE(decoded.pictures.empty());
    EXPECT_EQ(decoded.pictures[0].format.width, width);
    EXPECT_EQ(decoded.pictures[0].format.height, height);
    EXPECT_EQ(firstDifference(decoded.pictures,
                              decodeWithFfmpeg(coded, made.directory, decoded.pictures[0].samples.size())),
              "")
        << size;
  }
}
