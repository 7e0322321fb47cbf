// MPEG-4 Visual and H.263 through the library's coefficient readers, quantizers, transform and motion compensation:
// against ffmpeg, with every tool that its encoders have and the decoder takes, and what it refuses by name.
#include <gtest/gtest.h>

#include <cmath>

#include "mpeg4/codes.h"
#include "mpeg4/decoder.h"
#include "mpeg4_support.h"
#include "support/csv.h"

using namespace zvptest;

namespace {

const std::string sampleName = "pv_m4vtestinput.m4v";

double wholePsnr(const Bytes& a, const Bytes& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += double((a[i] - b[i]) * (a[i] - b[i]));
  return sum == 0 ? INFINITY : 10 * std::log10(65025.0 * double(a.size()) / sum);
}

struct Stream {
  const char* name;
  const char* size;
  const char* file;  // its ending tells the format
  const char* options;
};

void PrintTo(const Stream& stream, std::ostream* out) { *out << stream.name; }

const Stream streams[] = {
    {"Intra", "176x144", "coded.m4v", "-c:v mpeg4 -q:v 3 -g 1"},
    {"Plain", "176x144", "coded.m4v", "-c:v mpeg4 -q:v 4"},
    {"OddSize", "179x133", "coded.m4v", "-c:v mpeg4 -q:v 2"},
    {"SmallerThanAMacroblock", "10x6", "coded.m4v", "-c:v mpeg4 -q:v 2"},
    {"CoarseQuantizer", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 31 -bf 2"},
    {"FineQuantizer", "176x144", "coded.m4v", "-c:v mpeg4 -q:v 1 -qmin 1 -bf 1"},
    {"ChangingQuantizer", "352x288", "coded.m4v", "-c:v mpeg4 -b:v 300k -bf 2 -mbd rd -mpv_flags +qp_rd"},
    {"FourVectorsAndAcPrediction", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 5 -flags +mv4+aic+bitexact"},
    {"LongVectors", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 5 -me_range 200 -vf scale=352x288,setpts=PTS,framestep=5"},
    {"Bidirectional", "176x144", "coded.m4v", "-c:v mpeg4 -q:v 3 -bf 2"},
    {"BidirectionalWithFourVectors", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 4 -bf 3 -flags +mv4+bitexact"},
    {"Matrices", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 5 -mpeg_quant 1"},
    {"MatricesOfItsOwn", "176x144", "coded.m4v",
     "-c:v mpeg4 -q:v 3 -mpeg_quant 1 -bf 1 -intra_matrix "
     "8,9,10,11,12,13,14,15,9,10,11,12,13,14,15,16,10,11,12,13,14,15,16,17,11,12,13,14,15,16,17,18,12,13,14,15,16,17,"
     "18,"
     "19,13,14,15,16,17,18,19,20,14,15,16,17,18,19,20,21,15,16,17,18,19,20,21,99"},
    {"MatricesAndMore", "350x286", "coded.m4v",
     "-c:v mpeg4 -q:v 2 -bf 3 -mpeg_quant 1 -flags +mv4+aic+bitexact -ps 400"},
    {"FieldDct", "352x288", "coded.m4v",
     "-vf scale=352x288,tinterlace=interleave_top -c:v mpeg4 -q:v 3 -flags +ildct+bitexact"},
    {"FieldPrediction", "352x288", "coded.m4v",
     "-vf scale=352x288,tinterlace=interleave_top -c:v mpeg4 -q:v 3 -flags +ilme+bitexact"},
    {"FieldsWithMore", "352x288", "coded.m4v",
     "-vf scale=352x288,tinterlace=interleave_top -c:v mpeg4 -q:v 4 -bf 2 -mpeg_quant 1 -flags "
     "+ilme+ildct+mv4+aic+bitexact"},
    {"FieldsWithVerticalScan", "352x288", "coded.m4v",
     "-vf scale=352x288,tinterlace=interleave_top -c:v mpeg4 -q:v 4 -bf 2 -alternate_scan 1 -flags "
     "+ilme+ildct+bitexact"},
    {"BottomFieldFirst", "352x288", "coded.m4v",
     "-vf scale=352x288,tinterlace=interleave_top -c:v mpeg4 -q:v 4 -bf 3 -top 0 -flags +ilme+ildct+bitexact"},
    {"Packets", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 4 -ps 300 -bf 2"},
    {"PacketsOfSkippedMacroblocks", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 31 -bf 2 -ps 30"},
    {"Partitions", "352x288", "coded.m4v", "-c:v mpeg4 -q:v 4 -ps 400 -data_partitioning 1"},
    {"PartitionsWithMore", "176x144", "coded.m4v",
     "-c:v mpeg4 -q:v 3 -ps 400 -data_partitioning 1 -bf 1 -flags +mv4+aic+bitexact"},
    {"Mp4", "176x144", "coded.mp4", "-c:v mpeg4 -q:v 4 -bf 2"},
    {"Avi", "176x144", "coded.avi", "-c:v mpeg4 -q:v 4 -bf 2"},
    {"H263", "176x144", "coded.h263", "-c:v h263 -q:v 4"},
    {"H263Small", "128x96", "coded.h263", "-c:v h263 -q:v 1 -qmin 1"},
    {"H263OfGroups", "352x288", "coded.h263", "-c:v h263 -q:v 4 -ps 300"},
    {"H263Large", "704x576", "coded.h263", "-c:v h263 -q:v 12 -ps 500"},
    {"H263CoarseQuantizer", "352x288", "coded.h263", "-c:v h263 -q:v 31"},
    {"H263ChangingQuantizer", "352x288", "coded.h263", "-c:v h263 -b:v 200k -mbd rd -mpv_flags +qp_rd"},
    {"H263In3gp", "176x144", "coded.3gp", "-c:v h263 -q:v 4"},
    {"H263InAvi", "176x144", "coded.avi", "-c:v h263 -q:v 4"},
    {"H263Plus", "200x120", "coded.h263", "-c:v h263p -q:v 4"},
    {"H263PlusAdvancedIntraAndModifiedQuantization", "352x288", "coded.h263", "-c:v h263p -flags +aic+bitexact -q:v 4"},
    {"H263PlusAdvancedIntraCoarse", "176x144", "coded.h263", "-c:v h263p -flags +aic+bitexact -q:v 20"},
    {"H263PlusDeblocking", "352x288", "coded.h263", "-c:v h263p -flags +loop+mv4+bitexact -q:v 9"},
    {"H263PlusOfAll", "200x120", "coded.h263", "-c:v h263p -umv 1 -flags +loop+mv4+aic+bitexact -q:v 12"},
    {"H263PlusUnrestricted", "352x288", "coded.h263", "-c:v h263p -umv 1 -q:v 4"},
};

class Mpeg4Stream : public ::testing::TestWithParam<Stream> {};
INSTANTIATE_TEST_SUITE_P(Streams, Mpeg4Stream, ::testing::ValuesIn(streams),
                         [](const auto& instance) { return std::string(instance.param.name); });

// The value that a code of digits reads as, and that all of it and no more is read.
template <class Codes> int valueOf(const Codes& codes, const std::string& digits) {
  Bytes bytes(4);
  for (std::size_t i = 0; i < digits.size(); ++i) bytes[i / 8] |= std::uint8_t((digits[i] == '1') << (7 - i % 8));
  mpeg4::Unit unit;
  unit.load(bytes, 0);
  const int value = codes.read(unit, "anything");
  EXPECT_EQ(unit.position(), digits.size());
  return value;
}

}  // namespace

TEST(Mpeg4Codes, AreThoseOfTheStandards) {
  for (const char* name : {"mpeg4_mcbpc", "h263_mcbpc"})
    for (const CsvRow& row : readTable(name)) {
      const bool stuffing = row.at("mb_type").empty();
      const int value = stuffing ? mpeg4::mcbpcStuffing : 4 * std::stoi(row.at("mb_type")) + std::stoi(row.at("cbpc"));
      const bool intra = (row.count("vop") ? row.at("vop") : row.at("picture")) == "I";
      EXPECT_EQ(intra ? valueOf(mpeg4::mcbpcOfI, row.at("code_bits")) : valueOf(mpeg4::mcbpcOfP, row.at("code_bits")),
                value)
          << name << " " << row.at("code_bits");
    }
  for (const char* name : {"mpeg4_cbpy", "h263_cbpy"})
    for (const CsvRow& row : readTable(name)) {
      EXPECT_EQ(valueOf(mpeg4::cbpyOfIntra, row.at("code_bits")), std::stoi(row.at("cbpy_intra")));
      EXPECT_EQ(15 - std::stoi(row.at("cbpy_intra")), std::stoi(row.at("cbpy_inter")));
    }
  for (const CsvRow& row : readTable("mpeg4_mvd"))
    EXPECT_EQ(valueOf(mpeg4::motionCode, row.at("code_bits")), std::stoi(row.at("motion_code")));
}

TEST(Mpeg4Matrices, AreThoseOfTheStandard) {
  for (const CsvRow& row : readTable("mpeg4_quant_matrices")) {
    const auto& matrix = row.at("matrix") == "intra" ? mpeg4::defaultIntraMatrix : mpeg4::defaultInterMatrix;
    EXPECT_EQ(matrix[std::stoi(row.at("raster"))], std::stoi(row.at("value")));
  }
}

TEST_P(Mpeg4Stream, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const Stream& stream = GetParam();
  const TemporaryDirectory scratch;
  const auto file = scratch / stream.file;
  makeMpeg4(stream.size, 14, stream.options, file);
  const std::string extension = file.extension().string();
  if (extension != ".m4v" && extension != ".h263") {  // the tool opens containers
    const CommandResult result = run(zvp("compare ") + file.string());
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(result.output.find("14 frames"), std::string::npos) << result.output;
    return;
  }
  const Bytes bytes = readFile(file);
  const Decoded decoded = extension == ".m4v" ? decodeMpeg4(bytes) : decodeH263(bytes);
  ASSERT_FALSE(decoded.failed) << decoded.error << " at " << decoded.position;
  ASSERT_FALSE(decoded.pictures.empty());
  const video::Format& format = decoded.pictures[0].format;
  EXPECT_EQ(std::to_string(format.width) + "x" + std::to_string(format.height), stream.size);
  expectNear(decoded.pictures, decodeMpeg4WithFfmpeg(file, scratch, decoded.pictures[0].samples.size()), 54);
}

TEST(Mpeg4Sample, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const Decoded decoded = decodeMpeg4(readFile(sample(sampleName)));
  ASSERT_FALSE(decoded.failed) << decoded.error;
  ASSERT_EQ(decoded.pictures.size(), 90u);
  const auto expected = decodeMpeg4WithFfmpeg(sample(sampleName), scratch, decoded.pictures[0].samples.size());
  EXPECT_EQ(md5Of(expected), "641b133645cfa4d09612b439e723ad55");
  expectNear(decoded.pictures, expected, 53);
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_GE(wholePsnr(decoded.pictures[i].samples, expected[i]), 56) << "picture " << i;
}

TEST(Mpeg4Sample, PiecesOfAnySizeGiveTheSamePictures) {
  const Bytes stream = readFile(sample(sampleName));
  const std::string md5 = md5Of(decodeMpeg4(stream, 50000).pictures);
  for (const std::size_t piece : {1u, 7u, 4096u}) EXPECT_EQ(md5Of(decodeMpeg4(stream, piece).pictures), md5) << piece;
}

TEST(H263Pieces, OfAnySizeGiveTheSamePictures) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  makeMpeg4("176x144", 5, "-c:v h263 -q:v 6", scratch / "coded.h263");
  const Bytes stream = readFile(scratch / "coded.h263");
  const std::string md5 = md5Of(decodeH263(stream, 50000).pictures);
  for (const std::size_t piece : {1u, 7u, 4096u}) {
    const Decoded decoded = decodeH263(stream, piece);
    EXPECT_EQ(decoded.pictures.size(), 5u);
    EXPECT_EQ(md5Of(decoded.pictures), md5) << piece;
  }
}

TEST(Mpeg4ShortHeaders, AreH263) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  makeMpeg4("176x144", 5, "-c:v h263 -q:v 6", scratch / "coded.h263");
  Bytes stream = readFile(scratch / "coded.h263");
  const std::string md5 = md5Of(decodeH263(stream).pictures);
  EXPECT_EQ(md5Of(decodeMpeg4(stream).pictures), md5);
  stream.insert(stream.begin(), {0, 0, 1, 0});  // a video object
  const Decoded decoded = decodeMpeg4(stream, 1000);
  EXPECT_FALSE(decoded.failed) << decoded.error;
  EXPECT_EQ(decoded.pictures.size(), 5u);
  EXPECT_EQ(md5Of(decoded.pictures), md5);
}

TEST(Mpeg4Refusals, NameWhatIsMissing) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  struct Case {
    const char* file;
    const char* options;
    const char* text;
  };
  for (const Case& c : {Case{"coded.m4v", "-c:v mpeg4 -flags +qpel", "quarter-sample motion compensation"},
                        Case{"coded.h263", "-c:v h263p -obmc 1", "Annex F"},
                        Case{"coded.h263", "-c:v h263p -structured_slices 1 -ps 300", "Annex K"}}) {
    SCOPED_TRACE(c.options);
    const auto file = scratch / c.file;
    makeMpeg4("176x144", 2, c.options, file);
    const Bytes bytes = readFile(file);
    const Decoded decoded = file.extension() == ".m4v" ? decodeMpeg4(bytes) : decodeH263(bytes);
    EXPECT_TRUE(decoded.failed);
    EXPECT_EQ(decoded.kind, video::StreamError::Kind::Unsupported) << decoded.error;
    EXPECT_NE(decoded.error.find(c.text), std::string::npos) << decoded.error;
  }
}

TEST(Mpeg4Damage, EndsInAnErrorThatTellsWhere) {
  const Bytes stream = readFile(sample(sampleName));
  const Decoded whole = decodeMpeg4(stream);
  for (const std::size_t size : {30000u, 20001u}) {
    const Decoded decoded = decodeMpeg4(Bytes(stream.begin(), stream.begin() + std::ptrdiff_t(size)));
    EXPECT_TRUE(decoded.failed);
    EXPECT_EQ(decoded.kind, video::StreamError::Kind::Damaged);
    EXPECT_LE(decoded.position, std::int64_t(size));
    EXPECT_GT(decoded.position, std::int64_t(size) - 3000);
    ASSERT_GT(decoded.pictures.size(), 10u);  // those in front of it are whole
    for (std::size_t i = 0; i < decoded.pictures.size(); ++i)
      EXPECT_TRUE(decoded.pictures[i].samples == whole.pictures[i].samples) << i;
  }
  // A stream that begins with a P-VOP.
  std::size_t vops = 0, second = 0;
  for (std::size_t i = 0; i + 4 < stream.size() && vops < 2; ++i)
    if (stream[i] == 0 && stream[i + 1] == 0 && stream[i + 2] == 1 && stream[i + 3] == 0xB6) {
      if (++vops == 1)
        second = i;
      else {
        Bytes cut(stream.begin(), stream.begin() + std::ptrdiff_t(second));
        cut.insert(cut.end(), stream.begin() + std::ptrdiff_t(i), stream.end());
        const Decoded decoded = decodeMpeg4(cut);
        EXPECT_TRUE(decoded.failed);
        EXPECT_TRUE(decoded.pictures.empty());
        EXPECT_NE(decoded.error.find("intra picture"), std::string::npos) << decoded.error;
      }
    }
}

TEST(Mpeg4Tool, ComparesAndTells) {
  const CommandResult compared = run(zvp("compare ") + sample(sampleName).string());
  EXPECT_EQ(compared.exitCode, 0) << compared.output;
  EXPECT_NE(compared.output.find("alike within rounding, 90 frames"), std::string::npos) << compared.output;
  const CommandResult told = run(zvp("info ") + sample(sampleName).string());
  EXPECT_EQ(told.exitCode, 0) << told.output;
  for (const char* text : {"MPEG-4 Visual elementary stream", "Simple", "176x144", "partitioned"})
    EXPECT_NE(told.output.find(text), std::string::npos) << told.output;
}

TEST(Mpeg4Tool, DecodesContainersToTheSamePictures) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const auto decode = [](const std::filesystem::path& file) {
    const CommandResult result = run("(" + zvp("decode --md5 ") + file.string() + " 2> /dev/null)");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    return result.output;
  };
  for (const auto& [plain, codec] : {std::pair{"coded.m4v", "mpeg4 -bf 2"}, std::pair{"coded.h263", "h263"}}) {
    makeMpeg4("176x144", 8, std::string("-q:v 4 -c:v ") + codec, scratch / plain);
    for (const char* ending : {"mp4", "avi", "mkv"}) {
      const auto file = scratch / (std::string("coded.") + ending);
      if (std::string(plain) == "coded.h263" && std::string(ending) == "mp4") continue;  // 3gp is its MP4
      makeMpeg4("176x144", 8, std::string("-q:v 4 -c:v ") + codec, file);
      EXPECT_EQ(decode(file), decode(scratch / plain)) << file;
    }
  }
}
