// Damaged streams: no crash, no hang, an error that tells where. Run it under the sanitizers for what a crash misses.
#include <gtest/gtest.h>

#include <chrono>

#include "dv/decoder.h"
#include "dv_support.h"
#include "h264/decoder.h"
#include "mpeg2/decoder.h"
#include "mpeg2_stream.h"
#include "mpeg4/decoder.h"
#include "mpeg4_support.h"
#include "random_stream.h"
#include "stream_support.h"
#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int mutations = 300;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int mutations = 300;
#else
constexpr int mutations = 40;
#endif
#else
constexpr int mutations = 40;
#endif

// Where units begin, at their start codes; the end of the stream comes last.
std::vector<std::size_t> nalUnits(const Bytes& stream) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i + 3 < stream.size(); ++i)
    if (stream[i] == 0 && stream[i + 1] == 0 && stream[i + 2] == 1) starts.push_back(i > 0 && stream[i - 1] == 0 ? i - 1 : i);
  starts.push_back(stream.size());
  return starts;
}

// The DIF blocks of a DV stream.
std::vector<std::size_t> difBlocks(const Bytes& stream) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i < stream.size(); i += dv::difBlockBytes) starts.push_back(i);
  starts.push_back(stream.size());
  return starts;
}

// The units of an MPEG-4 stream begin with start codes of three bytes; those of H.263 with two zeros and 80 to 83.
std::vector<std::size_t> h263Pictures(const Bytes& stream) {
  std::vector<std::size_t> starts;
  for (std::size_t i = 0; i + 2 < stream.size(); ++i)
    if (stream[i] == 0 && stream[i + 1] == 0 && (stream[i + 2] & 0xFC) == 0x80) starts.push_back(i);
  starts.push_back(stream.size());
  return starts;
}

struct Codec {
  std::vector<std::size_t> (*unitStarts)(const Bytes& stream);
  std::unique_ptr<video::Decoder> (*makeDecoder)();
  int largestPiece;
  std::vector<video::Preview> previews;
};
const Codec h264Codec{nalUnits, h264::makeDecoder, 9000, {{}}};
const Codec mpeg2Codec{nalUnits, mpeg2::makeDecoder, 9000, {{}}};
const Codec dvCodec{difBlocks, dv::makeDecoder, 200000, {{}, {2, false}, {2, true}, {4, false}, {8, false}}};
const Codec mpeg4Codec{nalUnits, mpeg4::makeDecoder, 9000, {{}}};
const Codec h263Codec{h263Pictures, mpeg4::makeH263Decoder, 9000, {{}}};

Bytes mutate(const Bytes& stream, const Codec& codec, Rng& rng) {
  Bytes result = stream;
  const auto anywhere = [&](std::size_t size) { return std::size_t((std::uint64_t(rng.next()) * size) >> 32); };
  const auto flip = [&](int count) {
    for (; count > 0 && !result.empty(); --count)
      result[anywhere(result.size())] ^= std::uint8_t(1u << rng.range(0, 7));
  };
  const auto unit = [&](std::size_t& from, std::size_t& to) {
    const auto starts = codec.unitStarts(result);
    const std::size_t i = anywhere(starts.size() - 1);
    from = starts[i];
    to = starts[i + 1];
  };
  std::size_t from, to;
  switch (rng.range(0, 7)) {
    case 0: flip(1); break;
    case 1: flip(rng.range(2, 40)); break;
    case 2:  // in the headers
      for (int i = rng.range(1, 4); i > 0; --i)
        result[anywhere(std::min<std::size_t>(result.size(), 64))] ^= std::uint8_t(1u << rng.range(0, 7));
      break;
    case 3: result.resize(anywhere(result.size())); break;
    case 4: {  // a piece is missing
      const std::size_t at = anywhere(result.size());
      result.erase(result.begin() + std::ptrdiff_t(at),
                   result.begin() + std::ptrdiff_t(std::min(result.size(), at + anywhere(200) + 1)));
      break;
    }
    case 5: {  // a unit comes twice
      unit(from, to);
      const Bytes copy(result.begin() + std::ptrdiff_t(from), result.begin() + std::ptrdiff_t(to));
      std::size_t otherFrom, otherTo;
      unit(otherFrom, otherTo);
      result.insert(result.begin() + std::ptrdiff_t(rng.chance(2) ? to : otherTo), copy.begin(), copy.end());
      break;
    }
    case 6:  // a unit is missing
      unit(from, to);
      result.erase(result.begin() + std::ptrdiff_t(from), result.begin() + std::ptrdiff_t(to));
      break;
    default: {  // bytes of one value in the middle: endless prefixes, runs of zeros
      const std::size_t at = anywhere(result.size());
      std::fill(result.begin() + std::ptrdiff_t(at),
                result.begin() + std::ptrdiff_t(std::min(result.size(), at + anywhere(600) + 1)),
                std::uint8_t(rng.chance(2) ? 0 : rng.chance(2) ? 0xFF : rng.next()));
    }
  }
  if (rng.chance(4)) flip(rng.range(1, 5));
  return result;
}

// Decodes mutations of the stream. What is wrong is told with its place, and it ends in good time.
void decodeMutations(const Bytes& stream, const Codec& codec, int count, std::uint64_t seedBase) {
  int failures = 0;
  for (int seed = 1; seed <= count; ++seed) {
    SCOPED_TRACE("mutation " + std::to_string(seed));
    Rng rng(seedBase + std::uint64_t(seed));
    const Bytes mutated = mutate(stream, codec, rng);
    const std::size_t piece = std::size_t(rng.range(1, codec.largestPiece));
    const auto decoder = codec.makeDecoder();
    ASSERT_TRUE(decoder->setPreview(codec.previews[std::size_t(seed) % codec.previews.size()]));
    const auto begin = std::chrono::steady_clock::now();
    const Decoded decoded = decodeStream(*decoder, mutated, piece, 0);
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    EXPECT_LT(seconds, 10);
    if (!decoded.failed) continue;
    ++failures;
    EXPECT_FALSE(decoded.error.empty());
    EXPECT_GE(decoded.position, 0);
    EXPECT_LE(decoded.position, std::int64_t(mutated.size()));
  }
  EXPECT_GT(failures, 0) << "no mutation is noticed";
}

// The stream's beginning: whole NAL units of at most this many bytes. Mutations of the two large samples would take
// hours under a sanitizer; ZVP_TEST_WHOLE_SAMPLES asks for it.
Bytes beginning(const Bytes& stream, std::size_t most) {
  if (std::getenv("ZVP_TEST_WHOLE_SAMPLES") || stream.size() <= most) return stream;
  std::size_t end = 0;
  for (const std::size_t start : nalUnits(stream))
    if (start <= most) end = start;
  return Bytes(stream.begin(), stream.begin() + std::ptrdiff_t(end));
}

class DamagedSample : public ::testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(DamagedSample, EndsInAnError) {
  const std::string name = GetParam();
  const std::size_t most = name == "VID_1280x720_cavlc_temporal_direct.264" ? 70000 : 40000;
  decodeMutations(beginning(readFile(sample(name)), most), h264Codec, rounds(mutations), 1000);
}
INSTANTIATE_TEST_SUITE_P(H264, DamagedSample,
                         ::testing::Values("SVA_BA1_B.264", "BA_MW_D.264", "SVA_Base_B.264",
                                           "VID_1280x720_cavlc_temporal_direct.264", "gizmo.264"),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           for (char& c : name)
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           return name;
                         });

TEST(DamagedRandomStream, EndsInAnError) {
  for (int kind = 0; kind < 8; ++kind) {
    RandomStreamOptions o;
    o.seed = std::uint64_t(kind);
    o.slices = true;
    o.pcm = kind & 1;
    o.bPictures = kind & 2;
    o.memoryCommands = o.modifications = kind & 4;
    o.weights = kind == 3;
    o.transform8x8 = o.scaling = o.chromaOffsets = kind >= 6;
    o.gaps = kind == 1 || kind == 5;
    if (o.gaps) o.bPictures = o.memoryCommands = false;
    o.pocType = unsigned(kind % 3);
    SCOPED_TRACE("kind " + std::to_string(kind));
    decodeMutations(randomStream(o), h264Codec, rounds(mutations / 2), 5000);
  }
}

TEST(DamagedDv, EndsInAnErrorOrIsLeftOut) {
  Bytes stream = readFile(sample("dv-pal-interlaced.dv"));
  stream.resize(2 * 144000);
  decodeMutations(stream, dvCodec, rounds(mutations), 20000);
}

class DamagedDvFormat : public ::testing::TestWithParam<DvFormat> {};

TEST_P(DamagedDvFormat, EndsInAnErrorOrIsLeftOut) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  makeDv(GetParam(), DvSource::Interlaced, 1, scratch / "coded.dv");
  decodeMutations(readFile(scratch / "coded.dv"), dvCodec, rounds(mutations / 4), 30000);
}
INSTANTIATE_TEST_SUITE_P(Formats, DamagedDvFormat, ::testing::ValuesIn(dvFormats),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(DamagedMpeg2, EndsInAnError) {
  decodeMutations(readFile(sample("mssg_test.m2v")), mpeg2Codec, rounds(mutations), 40000);
}

TEST(DamagedMpeg2, OfRandomSyntaxEndsInAnError) {
  for (int kind = 0; kind < 8; ++kind) {
    SCOPED_TRACE("kind " + std::to_string(kind));
    Mpeg2StreamOptions o;
    o.seed = std::uint64_t(kind);
    o.mpeg1 = kind < 2;
    o.longSlices = o.wholeSamples = kind == 1;
    o.interlaced = o.fieldPictures = kind >= 3;
    o.dualPrime = kind == 4 || kind == 5;
    o.bPictures = !o.dualPrime;
    o.concealment = kind >= 5;
    o.sampling422 = kind == 3 || kind == 4;
    o.matrices = kind % 2;
    decodeMutations(randomMpeg2Stream(o), mpeg2Codec, rounds(mutations / 2), 60000);
  }
}

class DamagedMpeg2Options : public ::testing::TestWithParam<const char*> {};

TEST_P(DamagedMpeg2Options, EndsInAnError) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const auto file = scratch / "coded.m2v";
  runFfmpeg(std::string("-f lavfi -i mandelbrot=size=101x75:rate=25:start_scale=0.4 -vf "
                        "tinterlace=interleave_top,noise=alls=14:allf=t:all_seed=7 -r 25 -threads 1 -frames:v 6 ") +
            GetParam() + " " + file.string());
  decodeMutations(readFile(file), mpeg2Codec, rounds(mutations), 50000);
}
INSTANTIATE_TEST_SUITE_P(Streams, DamagedMpeg2Options,
                         ::testing::Values("-pix_fmt yuv420p -c:v mpeg1video -g 6 -bf 2 -q:v 4",
                                           "-pix_fmt yuv422p -c:v mpeg2video -g 6 -bf 2 -q:v 3 -flags +ilme+ildct"));

TEST(DamagedMpeg4, EndsInAnError) {
  Bytes stream = readFile(sample("pv_m4vtestinput.m4v"));
  stream.resize(15000);
  decodeMutations(stream, mpeg4Codec, rounds(mutations), 40000);
}

TEST(DamagedMpeg4, OfAllKindsEndsInAnError) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  int kind = 0;
  for (const char* options : {"-q:v 6 -bf 2 -flags +mv4+aic", "-q:v 5 -mpeg_quant 1 -ps 200 -bf 1",
                              "-q:v 4 -ps 300 -data_partitioning 1", "-q:v 5 -bf 2 -flags +ilme+ildct"}) {
    SCOPED_TRACE(options);
    makeMpeg4("176x144", 8, std::string("-c:v mpeg4 ") + options, scratch / "coded.m4v");
    decodeMutations(readFile(scratch / "coded.m4v"), mpeg4Codec, rounds(mutations / 2),
                    50000 + 1000 * std::uint64_t(kind++));
  }
}

TEST(DamagedH263, EndsInAnError) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  int kind = 0;
  for (const char* options : {"h263 -q:v 6 -ps 200", "h263p -umv 1 -flags +loop+mv4 -q:v 6", "h263p -flags +aic -q:v 6"}) {
    SCOPED_TRACE(options);
    makeMpeg4("176x144", 8, std::string("-c:v ") + options, scratch / "coded.h263");
    decodeMutations(readFile(scratch / "coded.h263"), h263Codec, rounds(mutations / 2),
                    60000 + 1000 * std::uint64_t(kind++));
  }
}

// A container's parameters may hold anything: pictures, too, which nobody wants.
TEST(DamagedParameters, HoldAStream) {
  for (const auto& [name, codec] : {std::pair{"SVA_Base_B.264", &h264Codec}, std::pair{"mssg_test.m2v", &mpeg2Codec},
                                    std::pair{"pv_m4vtestinput.m4v", &mpeg4Codec}}) {
    SCOPED_TRACE(name);
    const Bytes stream = readFile(sample(name));
    const auto decoder = codec->makeDecoder();
    decoder->configure(stream);
    EXPECT_FALSE(decodeStream(*decoder, stream, 4096).pictures.empty());
  }
}

TEST(DamagedTool, SaysWhere) {
  const TemporaryDirectory scratch;
  const Bytes stream = readFile(sample("SVA_Base_B.264"));
  int failures = 0;
  for (int seed = 1; seed <= 20; ++seed) {
    Rng rng(9000 + std::uint64_t(seed));
    const auto path = scratch / "damaged.264";
    writeFile(path, mutate(stream, h264Codec, rng));
    const CommandResult result =
        run("timeout 10 " + zvp("decode -o ") + (scratch / "damaged.yuv").string() + " " + path.string());
    EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 1) << result.exitCode << ": " << result.output;
    if (result.exitCode != 1) continue;
    ++failures;
    EXPECT_NE(result.output.find("zvp: "), std::string::npos) << result.output;
  }
  EXPECT_GT(failures, 0);
}
