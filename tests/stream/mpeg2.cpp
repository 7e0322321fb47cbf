// MPEG-1 and MPEG-2 through the library's block readers, transform and motion compensation: against ffmpeg on streams
// of other encoders and of ffmpeg's own, in containers, with damage.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "common/zigzag.h"
#include "mpeg2/codes.h"
#include "mpeg2_support.h"
#include "support/csv.h"

using namespace zvptest;

namespace {

const std::string sampleName = "mssg_test.m2v";

struct Source {
  const char* name;
  std::string arguments;  // of ffmpeg
};
const Source sources[] = {
    {"filmed", filmed("-r 50") + " -vf scale=352:288,tinterlace=interleave_top"},
    {"fractal",
     "-f lavfi -i mandelbrot=size=176x144:rate=25:start_scale=0.4:end_scale=0.01:end_pts=60 -vf "
     "tinterlace=interleave_top,noise=alls=14:allf=t:all_seed=7"},
    {"odd", "-f lavfi -i testsrc2=size=101x75:rate=25"},
};

struct Options {
  const char* name;
  const char* arguments;
};
#define MATRIX                                                                                                   \
  "8,9,12,14,16,18,20,22,9,10,14,16,18,20,22,24,12,14,16,18,20,22,24,26,14,16,18,20,22,24,26,28,16,18,20,22,24," \
  "26,28,30,18,20,22,24,26,28,30,32,20,22,24,26,28,30,32,34,22,24,26,28,30,32,34,40"
const Options optionSets[] = {
    {"Mpeg1Intra", "-c:v mpeg1video -g 1 -q:v 4"},
    {"Mpeg1P", "-c:v mpeg1video -g 4 -q:v 3"},
    {"Mpeg1B", "-c:v mpeg1video -g 6 -bf 2 -q:v 3"},
    {"Mpeg1Slices", "-c:v mpeg1video -g 6 -bf 2 -q:v 1 -qmin 1 -slices 4"},
    {"Mpeg1Coarse", "-c:v mpeg1video -g 6 -bf 2 -q:v 28"},
    {"Mpeg1Matrices", "-c:v mpeg1video -g 6 -bf 1 -q:v 4 -intra_matrix " MATRIX " -inter_matrix " MATRIX},
    {"Intra", "-c:v mpeg2video -g 1 -q:v 4"},
    {"P", "-c:v mpeg2video -g 4 -q:v 3"},
    {"B", "-c:v mpeg2video -g 6 -bf 2 -q:v 3"},
    {"ClosedGroups", "-c:v mpeg2video -g 5 -bf 2 -q:v 4 -flags +cgop -sc_threshold 1000000000"},
    {"Interlaced", "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -flags +ilme+ildct"},
    {"InterlacedBottomFirst", "-c:v mpeg2video -g 6 -bf 2 -q:v 8 -flags +ilme+ildct -top 0"},
    {"FieldTransform", "-c:v mpeg2video -g 6 -q:v 5 -flags +ildct"},
    {"AlternateScan", "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -flags +ilme+ildct -alternate_scan 1"},
    {"TableOne", "-c:v mpeg2video -g 3 -q:v 2 -intra_vlc 1"},
    {"NonLinearScale", "-c:v mpeg2video -g 6 -bf 1 -q:v 9 -non_linear_quant 1 -qmax 28"},
    {"NonLinearCoarse", "-c:v mpeg2video -g 6 -bf 1 -q:v 24 -non_linear_quant 1 -qmax 28"},
    {"AllOfThem",
     "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -flags +ilme+ildct -alternate_scan 1 -intra_vlc 1 -non_linear_quant 1 -qmax "
     "28"},
    {"Dc8", "-c:v mpeg2video -g 3 -q:v 4 -dc 8"},
    {"Dc9", "-c:v mpeg2video -g 3 -q:v 4 -dc 9"},
    {"Dc10", "-c:v mpeg2video -g 3 -q:v 4 -dc 10"},
    {"Dc11", "-c:v mpeg2video -g 3 -q:v 4 -dc 11"},
    {"Matrices", "-c:v mpeg2video -g 6 -bf 2 -q:v 2 -intra_matrix " MATRIX " -inter_matrix " MATRIX},
    {"Slices", "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -slices 5"},
    {"FinestQuantizer", "-c:v mpeg2video -g 3 -q:v 1 -qmin 1"},
    {"Coarse", "-c:v mpeg2video -g 6 -bf 2 -q:v 30 -mbd rd"},
    {"Sampling422", "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -pix_fmt yuv422p"},
    {"Sampling422Interlaced", "-c:v mpeg2video -g 6 -bf 2 -q:v 3 -flags +ilme+ildct -pix_fmt yuv422p -intra_vlc 1"},
};
#undef MATRIX

void makeStream(const Source& source, const std::string& options, int frames, const std::filesystem::path& file) {
  runFfmpeg(source.arguments + " -r 25 -threads 1 -frames:v " + std::to_string(frames) + " -pix_fmt yuv420p " +
            options + " " + file.string());
}

class Mpeg2Stream : public ::testing::TestWithParam<Options> {};
INSTANTIATE_TEST_SUITE_P(Options, Mpeg2Stream, ::testing::ValuesIn(optionSets),
                         [](const auto& instance) { return std::string(instance.param.name); });

using Words = std::multimap<std::string, std::vector<int>>;

Words wordsOf(std::span<const mpeg2::Code> codes) {
  Words words;
  for (const mpeg2::Code& code : codes) words.insert({code.bits, {code.value}});
  return words;
}

}  // namespace

TEST(Mpeg2Tables, HoldTheCodesOfTheStandard) {
  using namespace mpeg2;
  const auto value = [](const CsvRow& row, const char* name) { return std::stoi(row.at(name)); };
  Words expected;
  for (const CsvRow& row : readTable("mpeg12_macroblock_address_increment"))
    expected.insert({row.at("code_bits"),
                     {row.at("kind") == "escape"     ? escapeIncrement
                      : row.at("kind") == "stuffing" ? stuffingIncrement
                                                     : value(row, "increment")}});
  EXPECT_EQ(wordsOf(addressIncrement), expected);

  std::map<std::string, Words> types;
  for (const CsvRow& row : readTable("mpeg12_macroblock_type"))
    types[row.at("picture")].insert(
        {row.at("code_bits"),
         {value(row, "quant") * mbQuant + value(row, "forward") * mbForward + value(row, "backward") * mbBackward +
          value(row, "pattern") * mbPattern + value(row, "intra") * mbIntra}});
  EXPECT_EQ(wordsOf(macroblockTypeI), types["I"]);
  EXPECT_EQ(wordsOf(macroblockTypeP), types["P"]);
  EXPECT_EQ(wordsOf(macroblockTypeB), types["B"]);

  expected.clear();
  for (const CsvRow& row : readTable("mpeg12_coded_block_pattern"))
    expected.insert({row.at("code_bits"), {value(row, "cbp")}});
  EXPECT_EQ(wordsOf(codedBlockPattern), expected);
  expected.clear();
  for (const CsvRow& row : readTable("mpeg12_motion_code"))
    expected.insert({row.at("code_bits"), {value(row, "motion_code")}});
  EXPECT_EQ(wordsOf(motionCode), expected);

  std::map<std::string, Words> sizes;
  for (const CsvRow& row : readTable("mpeg12_dct_dc_size"))
    sizes[row.at("component")].insert({row.at("code_bits"), {value(row, "size")}});
  EXPECT_EQ(wordsOf(dcSizeLuma), sizes["luma"]);
  EXPECT_EQ(wordsOf(dcSizeChroma), sizes["chroma"]);

  const auto expectCoefficients = [&](const char* table, std::span<const RunLevelCode> codes, const char* endOfBlock) {
    Words words, rows;
    for (const RunLevelCode& code : codes) words.insert({code.bits, {code.run, code.level}});
    for (const CsvRow& row : readTable(table)) {
      const std::string& kind = row.at("kind");
      if (kind == "coef") {
        rows.insert({row.at("code_bits"), {value(row, "run"), value(row, "level")}});
      } else if (kind != "first") {
        EXPECT_EQ(row.at("code_bits"), kind == "eob" ? endOfBlock : escapeCode);
      }
    }
    EXPECT_EQ(words, rows);
  };
  expectCoefficients("mpeg12_dct_coefficients_table_zero", dctCoefficientsZero, endOfBlockZero);
  expectCoefficients("mpeg12_dct_coefficients_table_one", dctCoefficientsOne, endOfBlockOne);

  for (const CsvRow& row : readTable("mpeg12_quantiser_scale"))
    EXPECT_EQ(nonLinearScale[value(row, "code")], value(row, "non_linear"));
  for (const CsvRow& row : readTable("mpeg12_scans"))
    EXPECT_EQ((row.at("scan") == "zigzag" ? video::zigzag8x8 : alternateScan)[value(row, "idx")], value(row, "raster"));
  for (const CsvRow& row : readTable("mpeg12_quant_matrices"))
    EXPECT_EQ(row.at("matrix") == "intra" ? defaultIntraWeights[value(row, "raster")] : 16, value(row, "value"));
}

TEST_P(Mpeg2Stream, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const Source& source : sources) {
    SCOPED_TRACE(source.name);
    const auto file = scratch / "coded.m2v";
    makeStream(source, GetParam().arguments, 8, file);
    EXPECT_EQ(expectThatOfFfmpeg(file, scratch, 60).pictures.size(), 8u);
  }
}

TEST(Mpeg2Sample, IsThatOfItsPublishedDecoding) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const Decoded decoded = expectThatOfFfmpeg(sample(sampleName), scratch, 64);
  ASSERT_EQ(decoded.pictures.size(), 3u);
  EXPECT_EQ(decoded.pictures[0].format.width, 128);
  EXPECT_EQ(decoded.pictures[0].format.height, 128);
  EXPECT_EQ(md5Of(decodeWithFfmpeg(sample(sampleName), scratch, 128 * 128 * 3 / 2, "-f mpegvideo", "")),
            "89e1d9cf57ca89c3978ec4eb899dad63");
}

TEST(Mpeg2Sample, PiecesOfAnySizeGiveTheSamePictures) {
  const Bytes stream = readFile(sample(sampleName));
  const std::string md5 = md5Of(decodeMpeg2(stream).pictures);
  for (const std::size_t piece : {1u, 2u, 3u, 5u, 64u, 1000u, 1000000u})
    EXPECT_EQ(md5Of(decodeMpeg2(stream, piece).pictures), md5) << "pieces of " << piece;
}

TEST(Mpeg2Tool, ComparesWithLibavcodec) {
  const CommandResult result = run(zvp("compare ") + sample(sampleName).string());
  EXPECT_EQ(result.exitCode, 0) << result.output;
  EXPECT_NE(result.output.find("alike within rounding, 3 frames"), std::string::npos) << result.output;
}

TEST(Mpeg2Tool, TellsWhatAFileHolds) {
  const CommandResult result = run(zvp("info ") + sample(sampleName).string());
  EXPECT_EQ(result.exitCode, 0) << result.output;
  for (const char* text : {"MPEG-2, Main profile, Main level", "128x128", "4:2:0", "interlaced", "25.000"})
    EXPECT_NE(result.output.find(text), std::string::npos) << text << " in " << result.output;
}

TEST(Mpeg2Tool, OpensContainers) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const char* codec : {"mpeg1video", "mpeg2video"})
    for (const char* ending : {"mpg", "vob", "ts", "mkv", "avi", "mp4", "m2v"}) {
      SCOPED_TRACE(std::string(codec) + " in " + ending);
      const auto file = scratch / (std::string("coded.") + ending);
      makeStream(sources[1], std::string("-c:v ") + codec + " -g 6 -bf 2 -q:v 4", 9, file);
      const CommandResult result = run(zvp("compare ") + file.string());
      EXPECT_EQ(result.exitCode, 0) << result.output;
      EXPECT_NE(result.output.find("alike within rounding, 9 frames"), std::string::npos) << result.output;
    }
}

// An open group at the beginning: the B-pictures in front of the I-picture lack a reference.
TEST(Mpeg2Damage, OfACutIsLeftOut) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const auto file = scratch / "coded.m2v";
  makeStream(sources[1], "-c:v mpeg2video -g 6 -bf 2 -q:v 4", 18, file);
  const Bytes stream = readFile(file);
  const std::array<std::uint8_t, 4> header = {0, 0, 1, 0xB3};
  const auto second = std::search(stream.begin() + 4, stream.end(), header.begin(), header.end());
  ASSERT_NE(second, stream.end());
  const Bytes cut(second, stream.end());
  const Decoded whole = decodeMpeg2(stream), rest = decodeMpeg2(cut);
  ASSERT_FALSE(rest.failed) << rest.error;
  ASSERT_GE(rest.pictures.size(), 6u);
  ASSERT_LT(rest.pictures.size(), whole.pictures.size());
  EXPECT_EQ(rest.pictures.back().samples, whole.pictures.back().samples);
  writeFile(scratch / "cut.m2v", cut);
  const CommandResult result = run(zvp("info ") + (scratch / "cut.m2v").string());
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_NE(result.output.find("left out for want of"), std::string::npos) << result.output;
  expectThatOfFfmpeg(scratch / "cut.m2v", scratch, 60);
}

TEST(Mpeg2Damage, IsTold) {
  using Kind = video::StreamError::Kind;
  const Bytes original = readFile(sample(sampleName));
  const auto fails = [](const Bytes& stream, std::size_t pictures, Kind kind, const std::string& text) {
    SCOPED_TRACE(text);
    const Decoded decoded = decodeMpeg2(stream);
    EXPECT_TRUE(decoded.failed);
    EXPECT_EQ(decoded.pictures.size(), pictures);
    EXPECT_EQ(decoded.kind, kind);
    EXPECT_GE(decoded.position, 0);
    EXPECT_LE(decoded.position, std::int64_t(stream.size()));
    EXPECT_NE(decoded.error.find(text), std::string::npos) << decoded.error;
  };
  const auto find = [&](std::uint8_t code, std::size_t from = 0) {
    const std::array<std::uint8_t, 4> start = {0, 0, 1, code};
    return std::size_t(
        std::search(original.begin() + std::ptrdiff_t(from), original.end(), start.begin(), start.end()) -
        original.begin());
  };
  Bytes stream = original;
  stream.resize(find(1, find(0, find(0) + 1)));  // up to the first slice of the second picture
  fails(stream, 1, Kind::Damaged, "without slices");
  stream = original;
  stream.insert(stream.end(), {0, 0, 1});
  const Decoded open = decodeMpeg2(stream, 1);
  EXPECT_EQ(open.position, std::int64_t(stream.size())) << open.error;
  EXPECT_EQ(open.pictures.size(), 3u);
  stream = original;
  stream.resize(stream.size() / 2 * 2 - 200);
  fails(stream, 2, Kind::Damaged, "");
  stream = original;
  stream.erase(stream.begin() + std::ptrdiff_t(find(2)), stream.begin() + std::ptrdiff_t(find(3)));
  fails(stream, 0, Kind::Damaged, "slice begins at macroblock 16 instead of 8");
  stream = original;
  stream[find(0) + 5] = std::uint8_t((stream[find(0) + 5] & 0xC7) | 4 << 3);
  fails(stream, 0, Kind::Unsupported, "D-pictures");
  stream = original;
  stream[find(0xB5) + 5] = std::uint8_t(stream[find(0xB5) + 5] | 6);
  fails(stream, 0, Kind::Unsupported, "4:4:4");
  stream = original;
  const std::array<std::uint8_t, 10> scalable = {0, 0, 1, 0xB5, 0x50, 0, 0, 0, 0, 0};
  stream.insert(stream.begin() + std::ptrdiff_t(find(0xB8)), scalable.begin(), scalable.end());
  fails(stream, 0, Kind::Unsupported, "scalable");
  stream = original;
  stream[6] = 160;  // higher by two rows than what is coded
  fails(stream, 0, Kind::Damaged, "16 macroblocks of a picture are missing");
}
