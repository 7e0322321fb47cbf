// DV through the library's segment decoders, inverse quantizers and stores: against ffmpeg in every format that its
// encoder has, in preview sizes against the full ones, with damage.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

#include "dv/decoder.h"
#include "dv/layout.h"
#include "dv/tables.h"
#include "dv_support.h"
#include "support/csv.h"
#include "support/dv_segment.h"
#include "support/random.h"
#include "zvp/psnr.h"

using namespace zvptest;
using video::StoredPicture;

namespace {

const std::string sampleName = "dv-pal-interlaced.dv";
constexpr std::size_t sampleFrameBytes = 144000;

// The means of zoom x zoom samples.
StoredPicture reduced(const StoredPicture& picture, int zoom) {
  StoredPicture small;
  small.format = picture.format;
  small.format.width /= zoom;
  small.format.height /= zoom;
  for (int plane = 0; plane < 3; ++plane) {
    const int width = picture.format.planeWidth(plane);
    for (int y = 0; y < small.format.planeHeight(plane); ++y)
      for (int x = 0; x < small.format.planeWidth(plane); ++x) {
        int sum = 0, count = 0;
        for (int v = 0; v < zoom; ++v)
          for (int u = 0; u < zoom && x * zoom + u < width; ++u, ++count)
            sum += picture.plane(plane)[(y * zoom + v) * width + x * zoom + u];
        small.samples.push_back(std::uint8_t((sum + count / 2) / count));
      }
  }
  return small;
}

// How many blocks have each mode of the DCT.
std::array<int, 2> modes(const Bytes& stream, const dv::System& system) {
  std::array<int, 2> counts{};
  for (std::size_t frame = 0; frame < stream.size(); frame += system.frameBytes())
    for (const dv::SegmentPlace& place : dv::segmentPlaces(system, false))
      for (std::size_t m = 0; m < 5; ++m) ++counts[stream[frame + place.offset + 80 * m + 5] >> 6 & 1];
  return counts;
}

using Words = std::map<std::pair<int, int>, std::string>;

// A coefficient behind a run of zeros.
std::string wordOf(const Words& words, int run, int level) {
  if (const auto found = words.find({run, level}); found != words.end()) return found->second;
  if (run > 0) return words.at({run - 1, 0}) + wordOf(words, 0, level);
  std::string word = "1111111";
  for (int i = 7; i >= 0; --i) word += std::abs(level) >> i & 1 ? '1' : '0';
  return word + (level < 0 ? '1' : '0');
}

// How far the DC may go, and coefficients after dequantization: one, and all of a block together. And runs of zeros.
struct Limits {
  int dc;
  double one, sum;
  int run;
};
// Mostly in the range of samples, within which all transforms agree.
constexpr Limits agreeing = {150, 300, 1200, 50};
// Always in it: a coefficient of 4 adds no more than 1 to any sample, a DC of 2 adds 1.
constexpr Limits inRange = {60, 130, 4 * (126 - 60 / 2), 16};

// Coefficients at rising places of the scan in about so many bits. The factor tells what one of level 1 is after
// dequantization.
template <class Factor>
DvBlock makeBlock(const Words& words, int mode, int c, Factor factor, int wantedBits, const Limits& limits, Rng& rng) {
  DvBlock block;
  block.dc = rng.range(-limits.dc, limits.dc);
  block.mode = mode;
  block.classNumber = c;
  double left = limits.sum;
  for (int last = 0; int(block.bits.size()) < wantedBits;) {
    const int place = last + 1 + rng.range(0, rng.chance(2) ? 2 : limits.run);
    if (place > 63) break;
    const int most = int(std::min(limits.one, left) / factor(place));
    if (most < 1) break;
    int level = rng.range(1, std::min(most, rng.chance(2) ? 4 : 255));
    left -= level * factor(place);
    if (rng.chance(2)) level = -level;
    block.bits += wordOf(words, place - last - 1, level);
    last = place;
  }
  block.bits += words.at({dvEndOfBlockRun, 0});
  return block;
}

// A block without the codes that do not end within so many bits, and how many coefficients it keeps and loses by that.
struct Part {
  DvBlock block;
  int kept = 0, lost = 0;
};
Part withinBits(const DvBlock& block, int bits, const reference::dv::Codes& codes) {
  Part part = {block};
  part.block.bits.clear();
  for (std::size_t at = 0; at < block.bits.size();) {
    std::string word;
    std::pair<int, int> event = {0, 1};
    if (block.bits.compare(at, 7, "1111111") == 0) {
      word = block.bits.substr(at, 16);
    } else {
      while (!codes.contains(word)) word += block.bits.at(at + word.size());
      event = codes.at(word);
    }
    at += word.size();
    const bool kept = int(at) <= bits;
    if (kept || event.first == dvEndOfBlockRun) part.block.bits += word;
    if (event.second != 0) ++(kept ? part.kept : part.lost);
  }
  return part;
}

// A frame with nothing but what another one has in the blocks' own spaces, and by plane how many coefficients that are
// and how many it lacks.
struct OwnSpaces {
  Bytes frame;
  std::array<int, 3> kept{}, lost{};
};

// Replaces the segments of a frame by others of all modes, classes, quantizers and codes, which fill the spaces of
// their blocks and go on in others.
void rewrite(Bytes& frame, const dv::System& system, const Limits& limits, Rng& rng, OwnSpaces* ownSpaces = nullptr) {
  const reference::dv::Format& format =
      system.highDefinition ? reference::dv::formatDV100() : reference::dv::formatDV();
  const dv::Tables& tables = dv::Tables::instance();
  const reference::dv::Codes codes = dvCodes(false);
  const Words words = dvWords(codes);
  const Bytes original = frame;
  if (ownSpaces) ownSpaces->frame = frame;
  for (const dv::SegmentPlace& segment : dv::segmentPlaces(system, false)) {
    int qnos[5];
    const auto write = [&](const std::vector<DvBlock>& blocks, Bytes& to) {
      if (!dvWriteSegment(format, blocks, rng, to.data() + segment.offset)) return false;
      for (std::size_t m = 0; m < 5; ++m) {
        const std::size_t at = segment.offset + 80 * m;
        std::copy_n(original.begin() + std::ptrdiff_t(at), 3, to.begin() + std::ptrdiff_t(at));
        to[at + 3] = std::uint8_t(qnos[m]);
      }
      return true;
    };
    std::vector<DvBlock> blocks, partBlocks;
    std::vector<Part> parts;
    do {
      blocks.clear();
      partBlocks.clear();
      parts.clear();
      for (int m = 0; m < 5; ++m) {
        const int qno = qnos[m] = rng.range(0, 15);
        const bool fields = rng.chance(2) && !segment.macroblocks[m].edge;  // 32x8 samples have no lines to part
        for (std::size_t b = 0; b < format.at.size(); ++b) {
          const int c = rng.range(0, 3), mode = system.highDefinition ? int(fields) : rng.range(0, 1);
          const auto factor = [&](int place) {
            if (system.highDefinition)
              return tables.highWeights[system.height == 720][b >= 4][tables.scans[0][place]] *
                     tables.highSteps[c][qno] / 32.0;
            const unsigned at = tables.scans[mode][place];
            return tables.weights[mode][at] * tables.steps[mode][c][qno][at] / 8192.0;
          };
          const bool unused = system.sampling == dv::Sampling::C422 && !system.highDefinition && (b == 1 || b == 3);
          blocks.push_back(makeBlock(words, mode, c, factor, unused ? 0 : rng.chance(3) ? 250 : 60, limits, rng));
          if (!ownSpaces) continue;
          parts.push_back(withinBits(blocks.back(), 8 * format.bytes[b] - 12, codes));  // behind DC, mode and class
          partBlocks.push_back(parts.back().block);
        }
      }
    } while (!write(blocks, frame) || (ownSpaces && !write(partBlocks, ownSpaces->frame)));
    for (std::size_t i = 0; i < parts.size(); ++i) {
      const std::size_t b = i % format.at.size(), plane = b < 4 ? 0 : b == 4 ? 2 : 1;
      ownSpaces->kept[plane] += parts[i].kept;
      ownSpaces->lost[plane] += parts[i].lost;
    }
  }
}

class DvStream : public ::testing::TestWithParam<DvFormat> {};
INSTANTIATE_TEST_SUITE_P(Formats, DvStream, ::testing::ValuesIn(dvFormats),
                         [](const auto& instance) { return std::string(instance.param.name); });

class DvSystem : public ::testing::TestWithParam<DvFormat> {};
INSTANTIATE_TEST_SUITE_P(Formats, DvSystem, ::testing::ValuesIn(dvFormats),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace

TEST(DvTables, AreThoseOfTheStandard) {
  const dv::Tables& tables = dv::Tables::instance();
  int area[2][64];
  for (const CsvRow& row : readTable("dv_scans")) {
    const int mode = row.at("mode") == "2-4-8", idx = std::stoi(row.at("idx")), raster = std::stoi(row.at("raster"));
    EXPECT_EQ(tables.scans[mode][idx], unsigned(raster));
    area[mode][raster] = idx == 0 ? -1 : std::stoi(row.at("area"));
  }
  double inverse[2][64];
  for (const CsvRow& row : readTable("dv_weights")) {
    const int mode = row.at("mode") == "2-4-8", raster = std::stoi(row.at("raster"));
    inverse[mode][raster] = std::stod(row.at("inverse"));
    EXPECT_NEAR(tables.weights[mode][std::size_t(raster)], raster == 0 ? 16384 : 8192 * inverse[mode][raster], 0.5001);
  }
  int rows = 0;
  for (const CsvRow& row : readTable("dv_quant_shift")) {
    const int c = std::stoi(row.at("class")), qno = std::stoi(row.at("qno"));
    ++rows;
    for (int mode = 0; mode < 2; ++mode)
      for (int at = 1; at < 64; ++at) {
        const int step = 1 << (std::stoi(row.at("shift_area" + std::to_string(area[mode][at]))) +
                               std::stoi(row.at("initial_shift")));
        EXPECT_EQ(tables.steps[mode][c][qno][std::size_t(at)], step) << c << " " << qno << " " << mode << " " << at;
        EXPECT_NEAR(tables.factors[mode][c][qno][std::size_t(at)], 256 * step * inverse[mode][at], 0.5001);
      }
  }
  EXPECT_EQ(rows, 64);
}

TEST(DvTables, HoldTheCodesOfTheStandard) {
  // Where nine bits, behind the prefix if there is one, lead: length, run and 64 times the level.
  const std::uint32_t* table = dv::Tables::instance().huffman();
  unsigned led = 0;
  for (const auto& [word, event] : dvCodes(false)) {
    const bool prefixed = word.compare(0, 4, "1111") == 0;
    const std::string rest = prefixed ? word.substr(4) : word;
    const unsigned first = unsigned(std::stoi(rest, nullptr, 2)) << (9 - rest.size()), count = 1u << (9 - rest.size());
    for (unsigned i = first; i < first + count; ++i, ++led)
      EXPECT_EQ(table[(prefixed ? 512 : 0) + i],
                word.size() | unsigned(event.first) << 8 | unsigned(std::uint16_t(64 * event.second)) << 16)
          << word;
  }
  EXPECT_EQ(unsigned(std::count_if(table, table + 1024, [](std::uint32_t entry) { return (entry & 255) != 255; })),
            led);
}

TEST_P(DvSystem, MacroblocksTileThePicture) {
  const dv::System& system = systemOf(GetParam());
  for (const bool second : {false, true}) {
    std::vector<int> covered(std::size_t(system.width * system.height));
    std::set<std::size_t> offsets;
    for (const dv::SegmentPlace& place : dv::segmentPlaces(system, second)) {
      EXPECT_TRUE(offsets.insert(place.offset).second);
      EXPECT_LE(place.offset + dv::segmentBytes, system.frameBytes());
      for (int m = 0; m < 5; ++m) {
        const dv::Place& at = place.macroblocks[m];
        EXPECT_TRUE(!at.edge || m == 4 || system.highDefinition);
        const bool wide = (system.sampling == dv::Sampling::C411) != at.edge || (system.highDefinition && at.edge);
        const int width = wide ? 32 : 16;
        const int height = wide || (system.sampling == dv::Sampling::C422 && !system.highDefinition) ? 8 : 16;
        ASSERT_TRUE(at.x >= 0 && at.y >= 0 && at.x + width <= system.width && at.y + height <= system.height);
        for (int y = at.y; y < at.y + height; ++y)
          for (int x = at.x; x < at.x + width; ++x) ++covered[std::size_t(y * system.width + x)];
      }
    }
    EXPECT_EQ(std::count(covered.begin(), covered.end(), 1), std::ptrdiff_t(covered.size()));
  }
}

TEST_P(DvStream, IsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const DvFormat& format = GetParam();
  const dv::System& system = systemOf(format);
  const TemporaryDirectory scratch;
  for (const DvSource source : {DvSource::Pattern, DvSource::Filmed, DvSource::Interlaced}) {
    SCOPED_TRACE("source " + std::to_string(int(source)));
    const auto file = scratch / "coded.dv";
    makeDv(format, source, 3, file);
    const Bytes stream = readFile(file);
    ASSERT_EQ(stream.size(), 3 * system.frameBytes());
    const Decoded decoded = decodeDv(stream);
    ASSERT_FALSE(decoded.failed) << decoded.error;
    ASSERT_EQ(decoded.pictures.size(), 3u);
    EXPECT_EQ(decoded.pictures[0].format.width, format.width);
    EXPECT_EQ(decoded.pictures[0].format.height, format.height);
    expectAlike(decoded.pictures, decodeDvWithFfmpeg(file, scratch, decoded.pictures[0].samples.size()), 45);
    if (source != DvSource::Interlaced) continue;
    // Both transforms, or the lines of macroblocks in both orders; 720 lines are progressive.
    const auto counts = modes(stream, system);
    EXPECT_GT(counts[0], 0);
    EXPECT_EQ(counts[1] > 0, format.height != 720);
  }
}

// Every weight, step, scan and code, of which an encoder uses some rarely. Decoders differ by rounding alone.
TEST_P(DvStream, OfAnyCoefficientsIsThatOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const DvFormat& format = GetParam();
  const TemporaryDirectory scratch;
  const auto file = scratch / "coded.dv";
  makeDv(format, DvSource::Pattern, 1, file);
  Bytes stream = readFile(file);
  Rng rng(3);
  rewrite(stream, systemOf(format), agreeing, rng);
  writeFile(file, stream);
  const Decoded decoded = decodeDv(stream);
  ASSERT_EQ(decoded.pictures.size(), 1u) << decoded.error;
  const Bytes& actual = decoded.pictures[0].samples;
  const auto expected = decodeDvWithFfmpeg(file, scratch, actual.size());
  ASSERT_EQ(expected.size(), 1u);
  int largest = 0;
  for (std::size_t i = 0; i < actual.size(); ++i) largest = std::max(largest, std::abs(actual[i] - expected[0][i]));
  EXPECT_LE(largest, 3);
}

TEST_P(DvStream, HasPreviews) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const DvFormat& format = GetParam();
  const TemporaryDirectory scratch;
  for (const DvSource source : {DvSource::Filmed, DvSource::Interlaced}) {
    SCOPED_TRACE("source " + std::to_string(int(source)));
    makeDv(format, source, 2, scratch / "coded.dv");
    const Bytes stream = readFile(scratch / "coded.dv");
    const Decoded whole = decodeDv(stream);
    ASSERT_EQ(whole.pictures.size(), 2u);
    for (const auto& [preview, least] : std::initializer_list<std::pair<video::Preview, double>>{
             {{2, false}, 45}, {{4, false}, 45}, {{8, false}, 45}, {{2, true}, 30}}) {
      SCOPED_TRACE("zoom " + std::to_string(preview.zoom) + (preview.draft ? ", draft" : ""));
      const Decoded small = decodeDv(stream, preview);
      ASSERT_FALSE(small.failed) << small.error;
      // Of fields in the lines by turns a preview takes the means of each field by itself.
      const bool fields = format.height == 1080 && source == DvSource::Interlaced;
      std::vector<Bytes> expected;
      for (const StoredPicture& picture : whole.pictures) expected.push_back(reduced(picture, preview.zoom).samples);
      expectAlike(small.pictures, expected, fields ? 26 : least);
    }
  }
}

// A draft takes no more than what stands in each block's own space: it is held against ffmpeg's pictures of a stream
// that has no more, reduced by means.
TEST_P(DvStream, HasDraftsThatAreThoseOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const DvFormat& format = GetParam();
  const TemporaryDirectory scratch;
  const auto file = scratch / "coded.dv";
  makeDv(format, DvSource::Pattern, 1, file);
  Bytes stream = readFile(file);
  Rng rng(4);
  OwnSpaces ownSpaces;
  rewrite(stream, systemOf(format), inRange, rng, &ownSpaces);
  const Decoded draft = decodeDv(stream, {2, true});
  ASSERT_EQ(draft.pictures.size(), 1u) << draft.error;
  if (systemOf(format).highDefinition) {  // read as a whole all the same
    EXPECT_EQ(draft.pictures[0].samples, decodeDv(stream, {2, false}).pictures.at(0).samples);
    return;
  }
  StoredPicture whole;
  whole.format = draft.pictures[0].format;
  whole.format.width *= 2;
  whole.format.height *= 2;
  std::size_t pictureBytes = 0;
  for (int plane = 0; plane < 3; ++plane)
    pictureBytes += std::size_t(whole.format.planeWidth(plane)) * std::size_t(whole.format.planeHeight(plane));
  writeFile(file, ownSpaces.frame);
  whole.samples = decodeDvWithFfmpeg(file, scratch, pictureBytes).at(0);
  const StoredPicture expected = reduced(whole, 2);
  for (int plane = 0; plane < 3; ++plane) {
    SCOPED_TRACE("plane " + std::to_string(plane));
    const auto at = std::size_t(plane);
    EXPECT_GT(ownSpaces.lost[at], ownSpaces.kept[at] / 20);
    // The coarse dequantization leaves a coefficient below its value by less than 4, and the rounding of its factor
    // takes another half at most. The transforms are orthonormal: the squares of a block's errors add up to the same in
    // samples as in coefficients, and means of four samples have no larger ones. One is for what is rounded on the two
    // ways: samples to integers, and means, behind whose point the draft drops up to 3/4.
    const double samples = double(whole.format.planeWidth(plane)) * whole.format.planeHeight(plane);
    const double squared = ownSpaces.kept[at] * 4.5 * 4.5 / samples + 1;
    EXPECT_GE(zvptool::psnr(draft.pictures[0], expected, plane), 10 * std::log10(255 * 255 / squared));
  }
}

TEST(DvSample, IsThatOfItsPublishedDecoding) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  const Decoded decoded = decodeDv(readFile(sample(sampleName)));
  ASSERT_FALSE(decoded.failed) << decoded.error;
  ASSERT_EQ(decoded.pictures.size(), 6u);
  const auto expected = decodeDvWithFfmpeg(sample(sampleName), scratch, decoded.pictures[0].samples.size());
  EXPECT_EQ(md5Of(expected), "18c1c3b4ca2cefb08d9bd5d3c67b004e");
  expectAlike(decoded.pictures, expected, 55);
}

TEST(DvSample, PiecesOfAnySizeGiveTheSamePictures) {
  const Bytes stream = readFile(sample(sampleName));
  const std::string md5 = md5Of(decodeDv(stream).pictures);
  for (const std::size_t piece : {79u, 4096u, 144000u, 200000u, 1000000u})
    EXPECT_EQ(md5Of(decodeDv(stream, {}, piece).pictures), md5) << "pieces of " << piece;
}

// Pairs of frames of 720 lines share a shuffling: in the second ones, which ffmpeg's encoder never writes, it goes on
// where that of the first ones ends.
TEST(DvPairs, AreThoseOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const DvFormat& format : dvFormats) {
    if (format.height != 720) continue;
    const auto file = scratch / "coded.dv";
    makeDv(format, DvSource::Pattern, 2, file);
    Bytes stream = readFile(file);
    for (std::size_t at = systemOf(format).frameBytes() + 1; at < stream.size(); at += 80) stream[at] &= 0xFB;  // FSP
    writeFile(file, stream);
    const Decoded decoded = decodeDv(stream);
    ASSERT_EQ(decoded.pictures.size(), 2u) << decoded.error;
    expectAlike(decoded.pictures, decodeDvWithFfmpeg(file, scratch, decoded.pictures[0].samples.size()), 45);
  }
}

namespace {

// The sample's first two frames, and what they are without damage.
struct DamagedFrame {
  Bytes stream = readFile(sample(sampleName));
  std::vector<StoredPicture> intact;
  const dv::System& system = systemOf(dvFormats[1]);
  std::vector<dv::SegmentPlace> places = dv::segmentPlaces(system, false);

  DamagedFrame() {
    stream.resize(2 * sampleFrameBytes);
    intact = decodeDv(stream).pictures;
  }
  // The second frame's.
  std::span<std::uint8_t> segment(std::size_t i) {
    return std::span(stream).subspan(sampleFrameBytes + places[i].offset, dv::segmentBytes);
  }
  // Does the picture equal the other inside, and the second intact one outside the segment's macroblocks?
  void expect(const StoredPicture& picture, std::size_t i, const StoredPicture* inside) const {
    for (int plane = 0; plane < 3; ++plane) {
      const int size = plane == 0 ? 16 : 8, shift = plane == 0 ? 0 : 1;
      const int width = picture.format.planeWidth(plane), height = picture.format.planeHeight(plane);
      std::vector<const StoredPicture*> from(std::size_t(width * height), &intact[1]);
      for (const dv::Place& at : places[i].macroblocks)
        for (int y = 0; y < size; ++y)
          for (int x = 0; x < size; ++x)
            from[std::size_t(((at.y >> shift) + y) * width + (at.x >> shift) + x)] = inside;
      int wrong = 0;
      for (std::size_t at = 0; at < from.size(); ++at)
        wrong += from[at] && picture.plane(plane)[at] != from[at]->plane(plane)[at];
      EXPECT_EQ(wrong, 0) << "plane " << plane;
    }
  }
};

}  // namespace

TEST(DvDamage, OfASegmentStaysInItsMacroblocks) {
  DamagedFrame frame;
  ASSERT_EQ(frame.intact.size(), 2u);
  const Bytes original = frame.stream;
  Rng rng(5);
  for (int round = 0; round < 12; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    frame.stream = original;
    const std::size_t i = std::size_t(rng.range(0, int(frame.places.size()) - 1));
    const auto segment = frame.segment(i);
    const int m = rng.range(0, 4);
    const auto block = segment.subspan(std::size_t(80 * m), 80);
    const StoredPicture* inside = &frame.intact[0];  // as it was in the picture before
    switch (round % 6) {
      case 0: std::fill(segment.begin(), segment.end(), std::uint8_t(0)); break;
      case 1: std::fill(segment.begin(), segment.end(), std::uint8_t(0xFF)); break;
      case 2: block[2] ^= std::uint8_t(1 << rng.range(0, 7)); break;
      case 3: block[0] ^= 0x20; break;
      case 4: block[3] |= round < 6 ? 0x70 : 0xF0; break;
      default:  // the blocks are in their places, and what they hold is noise
        inside = nullptr;
        for (std::size_t at = 0; at < segment.size(); ++at) {
          const std::uint32_t noise = rng.next();
          if (at % 80 > 3) segment[at] = std::uint8_t(noise);
        }
    }
    const Decoded decoded = decodeDv(frame.stream);
    EXPECT_FALSE(decoded.failed) << decoded.error;
    ASSERT_EQ(decoded.pictures.size(), 2u);
    EXPECT_EQ(decoded.pictures[0].samples, frame.intact[0].samples);
    frame.expect(decoded.pictures[1], i, inside);
    if (!inside) {
      EXPECT_NE(decoded.pictures[1].samples, frame.intact[1].samples);
    }
  }
}

TEST(DvDamage, IsTold) {
  DamagedFrame frame;
  const TemporaryDirectory scratch;
  for (const std::size_t i : {0u, 100u, 323u}) std::ranges::fill(frame.segment(i), std::uint8_t(0));
  writeFile(scratch / "damaged.dv", frame.stream);
  for (const char* command : {"decode ", "info "}) {
    const CommandResult result = run(zvp(command) + (scratch / "damaged.dv").string());
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(result.output.find("3 damaged video segments in 1 frame "), std::string::npos) << result.output;
  }
}

TEST(DvDamage, OfHeadersIsOutvoted) {
  const DamagedFrame frame;
  Bytes stream = frame.stream;
  for (const std::size_t sequence : {0u, 3u, 4u, 7u}) {
    const std::size_t at = sequence * dv::difSequenceBytes;
    for (std::size_t i = 0; i < 6 * 80; ++i) stream[at + i] ^= std::uint8_t(0xA5 + i);
  }
  const Decoded decoded = decodeDv(stream);
  EXPECT_FALSE(decoded.failed) << decoded.error;
  EXPECT_EQ(md5Of(decoded.pictures), md5Of(frame.intact));
}

TEST(DvDamage, EndsInAnErrorWhereNothingIsLeft) {
  const DamagedFrame frame;
  const auto fails = [&](Bytes stream, std::size_t pictures, std::int64_t position, video::StreamError::Kind kind,
                         const std::string& text) {
    SCOPED_TRACE(text);
    const Decoded decoded = decodeDv(stream);
    EXPECT_TRUE(decoded.failed);
    EXPECT_EQ(decoded.pictures.size(), pictures);
    EXPECT_EQ(decoded.position, position);
    EXPECT_EQ(decoded.kind, kind);
    EXPECT_NE(decoded.error.find(text), std::string::npos) << decoded.error;
  };
  using Kind = video::StreamError::Kind;
  Bytes stream = frame.stream;
  stream.resize(stream.size() - 1);
  fails(stream, 1, sampleFrameBytes, Kind::Damaged, "ends early");

  stream = frame.stream;
  stream.erase(stream.begin() + sampleFrameBytes, stream.begin() + sampleFrameBytes + 80);
  fails(stream, 1, sampleFrameBytes, Kind::Damaged, "no DV frame");

  stream = frame.stream;
  for (std::size_t i = 0; i < 163; ++i) stream[sampleFrameBytes + frame.places[i].offset] = 0;
  fails(stream, 1, sampleFrameBytes, Kind::Damaged, "163 of the 324 video segments");
  stream[sampleFrameBytes + frame.places[0].offset] = frame.stream[sampleFrameBytes + frame.places[0].offset];
  EXPECT_EQ(decodeDv(stream).pictures.size(), 2u);

  stream = frame.stream;
  for (std::size_t sequence = 0; sequence < 12; ++sequence) {  // a signal type that there is not
    const std::size_t at = sampleFrameBytes + sequence * dv::difSequenceBytes + (sequence % 2 == 0 ? 448u : 243u);
    ASSERT_EQ(stream[at], 0x60);
    stream[at + 3] = std::uint8_t((stream[at + 3] & 0xE0) | 5);
  }
  fails(stream, 1, sampleFrameBytes, Kind::Unsupported, "signal type");
}

TEST(DvTool, ComparesWithLibavcodec) {
  const CommandResult result = run(zvp("compare ") + sample(sampleName).string());
  EXPECT_EQ(result.exitCode, 0) << result.output;
  EXPECT_NE(result.output.find("alike within rounding, 6 frames"), std::string::npos) << result.output;

  // A segment that libavcodec decodes and the library's decoder takes for damaged is a difference.
  DamagedFrame frame;
  const TemporaryDirectory scratch;
  frame.segment(20)[2] ^= 1;
  writeFile(scratch / "damaged.dv", frame.stream);
  // The pattern stands still in most places: make the place differ.
  std::ranges::fill(frame.segment(20).subspan(4, 76), std::uint8_t(0x5A));
  writeFile(scratch / "damaged.dv", frame.stream);
  const CommandResult damaged = run(zvp("compare ") + (scratch / "damaged.dv").string());
  EXPECT_EQ(damaged.exitCode, 1) << damaged.output;
  EXPECT_NE(damaged.output.find("frame 1 differs"), std::string::npos) << damaged.output;
}

TEST(DvTool, OpensContainers) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const DvFormat& format : dvFormats) {
    if (systemOf(format).highDefinition && format.width != 1440) continue;
    makeDv(format, DvSource::Pattern, 2, scratch / "coded.dv");
    const CommandResult plain = run("(" + zvp("decode --md5 ") + (scratch / "coded.dv").string() + " 2> /dev/null)");
    EXPECT_EQ(plain.exitCode, 0) << plain.output;
    for (const char* ending : {"avi", "mov"}) {
      SCOPED_TRACE(std::string(format.name) + " in " + ending);
      const auto file = scratch / (std::string("coded.") + ending);
      runFfmpeg("-i " + (scratch / "coded.dv").string() + " -c:v copy -an " + file.string());
      const CommandResult result = run("(" + zvp("decode --md5 ") + file.string() + " 2> /dev/null)");
      EXPECT_EQ(result.exitCode, 0) << result.output;
      EXPECT_EQ(result.output, plain.output);
      const CommandResult compared = run(zvp("compare ") + file.string());
      EXPECT_EQ(compared.exitCode, 0) << compared.output;
      const CommandResult told = run(zvp("info ") + file.string());
      EXPECT_EQ(told.exitCode, 0) << told.output;
      EXPECT_NE(told.output.find(format.system), std::string::npos) << told.output;
    }
  }
}

TEST(DvTool, WritesPreviews) {
  const TemporaryDirectory scratch;
  const Bytes stream = readFile(sample(sampleName));
  const std::string output = (scratch / "out.yuv").string(), input = sample(sampleName).string();
  for (const auto& [arguments, preview] :
       std::initializer_list<std::pair<std::string, video::Preview>>{{"--zoom 2", {2, false}},
                                                                     {"--zoom 4", {4, false}},
                                                                     {"--zoom 8", {8, false}},
                                                                     {"--zoom 2 --draft", {2, true}}}) {
    ASSERT_EQ(run(zvp("decode " + arguments + " -o " + output + " " + input)).exitCode, 0);
    Bytes expected;
    for (const StoredPicture& picture : decodeDv(stream, preview).pictures)
      expected.insert(expected.end(), picture.samples.begin(), picture.samples.end());
    EXPECT_EQ(expected.size(), 6 * 720 * 576 * 3 / 2 / std::size_t(preview.zoom * preview.zoom));
    EXPECT_TRUE(readFile(output) == expected) << arguments;
  }
}

TEST(DvTool, RefusesPreviewsThatThereAreNot) {
  for (const std::string& arguments :
       {"--zoom 4 --draft " + sample(sampleName).string(), "--draft " + sample(sampleName).string(),
        "--zoom 2 " + sample("SVA_Base_B.264").string()}) {
    const CommandResult result = run(zvp("decode ") + arguments);
    EXPECT_EQ(result.exitCode, 1) << result.output;
    EXPECT_NE(result.output.find("no such preview"), std::string::npos) << result.output;
  }
}
