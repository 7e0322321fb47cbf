// The sample streams, whose checksums their publishers give, and the tool on them.
#include <gtest/gtest.h>

#include <png.h>

#include <algorithm>
#include <array>

#include "common/md5.h"
#include "stream_support.h"

using namespace zvptest;

namespace {

struct Sample {
  const char* name;
  int width, height;
  std::size_t pictures;
  const char* md5;
};
const Sample samples[] = {
    {"SVA_BA1_B.264", 176, 144, 17, "dab92aa2145ab44abab2beb2868dd326"},
    {"BA_MW_D.264", 176, 144, 100, "7d5d351ad061640294bf43a43150fbca"},
    {"SVA_Base_B.264", 176, 144, 17, "180dda3234bcbe57fc45587dac7d43fb"},
    {"VID_1280x720_cavlc_temporal_direct.264", 1280, 720, 40, "e7df9c88ddba7fe7c1040005ef056f62"},
    {"gizmo.264", 560, 320, 166, "de919b111889d52f3b21f4d079b251a3"},
};

}  // namespace

TEST(H264Samples, HaveTheirPublishedChecksums) {
  for (const Sample& s : samples) {
    SCOPED_TRACE(s.name);
    const Decoded decoded = decodeH264(readFile(sample(s.name)));
    EXPECT_FALSE(decoded.failed) << decoded.error;
    ASSERT_EQ(decoded.pictures.size(), s.pictures);
    EXPECT_EQ(decoded.pictures[0].format.width, s.width);
    EXPECT_EQ(decoded.pictures[0].format.height, s.height);
    EXPECT_EQ(md5Of(decoded.pictures), s.md5);
  }
}

TEST(H264Samples, PiecesOfAnySizeGiveTheSamePictures) {
  const Sample& s = samples[2];
  const Bytes stream = readFile(sample(s.name));
  for (const std::size_t piece : {1u, 2u, 3u, 5u, 64u, 1000u, 1000000u})
    EXPECT_EQ(md5Of(decodeH264(stream, piece).pictures), s.md5) << "pieces of " << piece;
}

TEST(Md5, GivesTheDigestsOfItsDefinition) {
  // RFC 1321, A.5.
  const std::pair<std::string, std::string> digests[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"}};
  for (const auto& [text, digest] : digests) {
    video::Md5 whole, parts;
    whole.add(text.data(), text.size());
    for (const char c : text) parts.add(&c, 1);
    EXPECT_EQ(whole.hex(), digest);
    EXPECT_EQ(parts.hex(), digest);
  }
}

TEST(Tool, DecodesSamples) {
  for (const Sample& s : samples) {
    const CommandResult result = run(zvp("decode --md5 ") + sample(s.name).string());
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(result.output.find(s.md5), std::string::npos) << result.output;
  }
}

TEST(Tool, WritesFiles) {
  const TemporaryDirectory scratch;
  const Sample& s = samples[4];
  const std::string input = sample(s.name).string();
  const std::size_t pictureBytes = std::size_t(s.width) * std::size_t(s.height) * 3 / 2;
  const auto pictures = decodeH264(readFile(sample(s.name)), 4096, 7).pictures;

  ASSERT_EQ(run(zvp("decode --frames 7 -o " + (scratch / "out.yuv").string() + " " + input)).exitCode, 0);
  const Bytes raw = readFile(scratch / "out.yuv");
  ASSERT_EQ(raw.size(), 7 * pictureBytes);
  for (std::size_t i = 0; i < 7; ++i)
    EXPECT_TRUE(std::equal(pictures[i].samples.begin(), pictures[i].samples.end(),
                           raw.begin() + std::ptrdiff_t(i * pictureBytes)));

  ASSERT_EQ(run(zvp("decode --frames 7 -o " + (scratch / "out.y4m").string() + " " + input)).exitCode, 0);
  const Bytes y4m = readFile(scratch / "out.y4m");
  const std::string header(y4m.begin(), std::find(y4m.begin(), y4m.end(), '\n'));
  EXPECT_EQ(header.rfind("YUV4MPEG2 W560 H320 ", 0), 0u) << header;
  ASSERT_EQ(y4m.size(), header.size() + 1 + 7 * (6 + pictureBytes));
  EXPECT_TRUE(std::equal(pictures[0].samples.begin(), pictures[0].samples.end(),
                         y4m.begin() + std::ptrdiff_t(header.size()) + 1 + 6));

  // A contact sheet of seven pictures: three columns, three rows, the last one with a single picture.
  ASSERT_EQ(run(zvp("decode --frames 7 -o " + (scratch / "out.png").string() + " " + input)).exitCode, 0);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  ASSERT_TRUE(png_image_begin_read_from_file(&image, (scratch / "out.png").c_str()));
  image.format = PNG_FORMAT_RGB;
  std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
  ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
  EXPECT_EQ(image.width, 3u * 326 + 6);
  EXPECT_EQ(image.height, 3u * (183 + 6) + 6);
  // In the middle of the first picture stands its colour there, BT.601 in the limited range.
  const auto& first = pictures[0];
  const int x = 280, y = 160;
  const double luma = (first.plane(0)[y * 560 + x] - 16) / 219.0, red = (first.plane(2)[y / 2 * 280 + x / 2] - 128) / 112.0;
  EXPECT_NEAR(pixels[((6 + 183 / 2) * image.width + 6 + 160) * 3], 255 * std::clamp(luma + red * 0.701, 0.0, 1.0), 24);
}

TEST(Tool, RefusesOddOutputs) {
  const CommandResult result = run(zvp("decode -o out.avi ") + sample("SVA_Base_B.264").string());
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.output.find(".y4m"), std::string::npos) << result.output;
}

TEST(Tool, ComparesWithLibavcodec) {
  for (const Sample& s : samples) {
    const CommandResult result = run(zvp("compare ") + sample(s.name).string());
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(result.output.find("bit-exact, " + std::to_string(s.pictures) + " frames"), std::string::npos)
        << result.output;
  }
}

TEST(Tool, TellsWhatAFileHolds) {
  const CommandResult result = run(zvp("info ") + sample("gizmo.264").string());
  EXPECT_EQ(result.exitCode, 0) << result.output;
  for (const char* text : {"H.264", "Constrained Baseline", "560x320", "CAVLC", "166"})
    EXPECT_NE(result.output.find(text), std::string::npos) << text << " in " << result.output;
}

TEST(Tool, OpensContainers) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const char* name : {"gizmo.264", "VID_1280x720_cavlc_temporal_direct.264"}) {
    const Sample& s = *std::find_if(std::begin(samples), std::end(samples),
                                    [&](const Sample& other) { return std::string(other.name) == name; });
    for (const char* ending : {"mp4", "mkv", "ts", "avi"}) {
      const auto file = scratch / (std::string("sample.") + ending);
      const CommandResult muxed = run("ffmpeg -y -v error -nostdin -f h264 -i " + sample(name).string() +
                                      " -fflags +genpts -c copy " + file.string());
      if (muxed.exitCode != 0) continue;  // not every container takes streams without time stamps
      const CommandResult result = run(zvp("decode --md5 ") + file.string());
      EXPECT_EQ(result.exitCode, 0) << ending << ": " << result.output;
      EXPECT_NE(result.output.find(s.md5), std::string::npos) << ending << ": " << result.output;
    }
  }
}

TEST(Tool, TellsWhereAStreamIsBroken) {
  const TemporaryDirectory scratch;
  const Sample& s = samples[1];
  Bytes stream = readFile(sample(s.name));
  stream.resize(stream.size() / 2);
  stream.insert(stream.end(), 3, 0x55);
  writeFile(scratch / "cut.264", stream);
  const CommandResult result =
      run(zvp("decode -o " + (scratch / "cut.yuv").string() + " " + (scratch / "cut.264").string()));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.output.find("byte "), std::string::npos) << result.output;
  // The pictures before the place are all there, those that waited for their turn too, and they are right.
  const auto pictures = decodeH264(readFile(sample(s.name))).pictures;
  const Bytes raw = readFile(scratch / "cut.yuv");
  const std::size_t pictureBytes = pictures[0].samples.size(), written = raw.size() / pictureBytes;
  EXPECT_GE(written, 40u);
  const std::array<std::uint8_t, 3> startCode = {0, 0, 1};
  const auto last = std::find_end(stream.begin(), stream.end(), startCode.begin(), startCode.end());
  EXPECT_EQ(written, decodeH264(Bytes(stream.begin(), last)).pictures.size());  // one slice a picture
  EXPECT_EQ(raw.size() % pictureBytes, 0u);
  for (std::size_t i = 0; i < written; ++i)
    EXPECT_TRUE(std::equal(pictures[i].samples.begin(), pictures[i].samples.end(),
                           raw.begin() + std::ptrdiff_t(i * pictureBytes)))
        << "picture " << i;
}

TEST(Tool, TellsWhatItCannotDecode) {
  ZVP_NEED_PROGRAM("ffmpeg");
  ZVP_NEED_PROGRAM("x264");
  const TemporaryDirectory scratch;
  const auto source = scratch / "source.y4m", coded = scratch / "coded.264";
  runFfmpeg("-f lavfi -i testsrc=size=64x48:rate=25 -frames:v 3 -pix_fmt yuv420p " + source.string());
  const std::pair<std::string, std::string> cases[] = {
      {"--profile main", "CABAC"},
      {"--no-cabac --tff", "interlaced"},
      {"--no-cabac --output-csp i422", "4:2:2"},
      {"--no-cabac --qp 0", "lossless"},
  };
  for (const auto& [options, feature] : cases) {
    ASSERT_EQ(run("x264 --quiet " + options + " -o " + coded.string() + " " + source.string()).exitCode, 0);
    for (const char* command : {"decode ", "compare ", "info "}) {
      const CommandResult result = run(zvp(command) + coded.string());
      EXPECT_EQ(result.exitCode, 1) << result.output;
      EXPECT_NE(result.output.find("not supported: "), std::string::npos) << result.output;
      EXPECT_NE(result.output.find(feature), std::string::npos) << result.output;
      EXPECT_NE(result.output.find("byte "), std::string::npos) << result.output;
    }
  }
}

TEST(Tool, TellsWhatItCannotOpen) {
  const TemporaryDirectory scratch;
  writeFile(scratch / "empty.264", {});
  writeFile(scratch / "noise.bin", Bytes(500, 0x7E));
  for (const char* name : {"empty.264", "noise.bin", "missing.264"}) {
    const CommandResult result = run(zvp("decode ") + (scratch / name).string());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output.find("zvp: "), std::string::npos) << result.output;
  }
}
