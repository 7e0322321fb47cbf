// DCT blocks from the stream, against the model and against blocks that the tests' own writer has coded.
#include "reference/mpeg/reconstruct.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/compare.h"
#include "support/compiled_table.h"
#include "support/dct_block.h"
#include "support/word_writer.h"

using namespace zvptest;
namespace model = reference::mpeg;

namespace {

struct Pair {
  int run, level;
};

// 0 zigzag, 1 alternate vertical, 2 alternate horizontal; room for the first runs of damaged blocks.
std::vector<std::int32_t> scanOrder(int number) {
  static const auto orders = [] {
    std::vector<std::vector<std::int32_t>> all;
    const auto rows = readTable("scans");
    for (const char* name : {"mpeg_zigzag", "mpeg_alternate_vertical", "mpeg_alternate_horizontal"})
      for (const auto& row : rows) {
        if (row.at("name") != name) continue;
        all.emplace_back(256, 0);
        for (std::size_t i = 0; i < 64; ++i) all.back()[i] = std::stoi(row.at("p" + std::to_string(i)));
      }
    return all;
  }();
  return orders.at(std::size_t(number));
}

// Codes by themselves and compiled: what a stream is written with and what it is read with.
struct Codes {
  CodeSet first, others, sizes;
  CompiledTable firstTable, othersTable, sizesTable;
  const std::int32_t* firstFor(BlockSyntax member) const { return member.intra ? sizesTable.get() : firstTable.get(); }
};

Codes standardCodes(const std::string& table, const std::string& component, const std::vector<int>& widths) {
  Codes codes{coefficientCodes("zero", true), coefficientCodes(table), dcSizeCodes(component), {}, {}, {}};
  codes.firstTable = compiledPairs(codes.first, widths);
  codes.othersTable = compiledPairs(codes.others, widths);
  codes.sizesTable = compiledValues(codes.sizes, {5, 6});
  return codes;
}

// ---- writing ----

class BlockWriter : public WordWriter {
 public:
  explicit BlockWriter(BlockSyntax member) : member_(member) {}

  void differenceBits(int difference, int size) {
    put(std::uint32_t(difference > 0 ? difference : difference + (1 << size) - 1), size);
  }
  void dc(const CodeSet& sizes, int difference) {
    int size = 0;
    while (std::abs(difference) >> size != 0) ++size;
    for (const auto& code : sizes)
      if (code.first == size) put(code.bits);
    differenceBits(difference, size);
  }
  // By its code where there is one, else, or if asked, by escape.
  void pair(const CodeSet& codes, Pair p, bool escape) {
    for (const auto& code : codes)
      if (!escape && code.first == p.run && code.second == p.level) return put(code.bits);
    for (const auto& code : codes)
      if (code.first == escapeRun) put(code.bits);
    put(std::uint32_t(p.run), 6);
    escapedLevel(p.level, std::abs(p.level) > 127);
  }
  void escapedLevel(int level, bool longForm) {
    if (member_.mpeg2) return put(std::uint32_t(level), 12);
    if (longForm) put(level < 0 ? 128 : 0, 8);
    put(std::uint32_t(level), 8);
  }
  void end(const CodeSet& codes) {
    for (const auto& code : codes)
      if (code.first == endOfBlockRun) put(code.bits);
  }
  using WordWriter::put;

 private:
  BlockSyntax member_;
};

// A block of pairs; the first of a non-intra block by its own codes.
void writeBlock(BlockWriter& writer, BlockSyntax member, const Codes& codes, int difference,
                const std::vector<Pair>& pairs, Rng& rng) {
  if (member.intra) writer.dc(codes.sizes, difference);
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const bool escape = rng.chance(8);
    writer.pair(i == 0 && !member.intra ? codes.first : codes.others, pairs[i], escape);
  }
  writer.end(codes.others);
}

std::vector<Pair> randomPairs(Rng& rng, BlockSyntax member) {
  std::vector<Pair> pairs;
  const int most = rng.chance(3) ? 64 : rng.range(1, 12), longestRun = most > 12 ? 1 : rng.pick<int>({2, 8, 40}),
            limit = rng.pick<int>({1, 3, 40, 255, 2047});
  int index = member.intra ? 0 : -1;
  for (int i = member.intra && rng.chance(6) ? most : 0; i < most || (pairs.empty() && !member.intra); ++i) {
    const int run = rng.range(0, longestRun);
    if (index + run + 1 > 63) continue;
    index += run + 1;
    const int magnitude = rng.range(1, member.mpeg2 ? limit : std::min(limit, 255));
    pairs.push_back({run, rng.chance(2) ? magnitude : -magnitude});
  }
  return pairs;
}

std::vector<std::uint32_t> withSlack(const BlockWriter& writer, Rng& rng) {
  auto words = writer.words();
  for (int i = 0; i < 4; ++i) words.push_back(rng.next());
  return words;
}

// ---- comparing ----

std::vector<std::int16_t> randomWeights(Rng& rng, BlockSyntax member) {
  if (member.mpeg2 && !member.intra && rng.chance(3)) return {};
  if (rng.chance(4)) return randomValues<std::int16_t>(64, rng, anyStyle(rng), -32768, 32767);
  return randomValues<std::int16_t>(64, rng, anyStyle(rng), 1, 255);
}

void randomArguments(BlockCase& c, Rng& rng) {
  c.scan = scanOrder(rng.range(0, 2));
  c.scale = rng.chance(6) ? std::int32_t(rng.next()) : rng.range(1, 112);
  c.weights = randomWeights(rng, c.member);
  c.prediction = std::int16_t(rng.chance(4) ? rng.range(-32768, 32767) : rng.range(-1024, 1024));
  c.shift = rng.chance(8) ? std::int32_t(rng.next()) : rng.range(0, 3);
}

// The block at the reader by library and model. Leaves the reader behind it.
BlockOutcome expectSameBlock(const BlockCase& c, const std::vector<std::uint32_t>& stream, model::BitReader& reader,
                             Rng& rng) {
  const std::ptrdiff_t start = reader.position;
  reader.end = 0;
  int scanEntries = 0;
  const BlockOutcome wanted = wantedOutcome(c, reader, scanEntries);
  WordStream words(stream, start, reader.end);
  const BlockOutcome actual = actualOutcome(c, words, scanEntries, rng);
  EXPECT_EQ(actual.status, wanted.status);
  EXPECT_EQ(actual.position, wanted.position);
  EXPECT_EQ(actual.size, wanted.size);
  EXPECT_EQ(actual.prediction, wanted.prediction);
  EXPECT_TRUE(sameArray(actual.block.data(), wanted.block.data(), 64));
  EXPECT_TRUE(words.offset >= 0 && words.offset <= 31);
  const std::int32_t others[] = {actual.status, std::int32_t(actual.position), actual.size, actual.prediction};
  addToDigest(others, sizeof others);
  return actual;
}

// One block from a writer, by the library alone, from the stream's first bit on.
struct Decoded {
  zvpStatus status;
  std::int32_t size;
  std::int16_t prediction;
  std::ptrdiff_t bits;
  std::vector<std::int16_t> block;
};
Decoded decode(const BlockCase& c, const BlockWriter& writer, int seed = 1) {
  Rng rng{std::uint64_t(seed)};
  const auto stream = withSlack(writer, rng);
  WordStream words(stream, 0, std::ptrdiff_t(32 * stream.size()));
  const auto outcome = actualOutcome(c, words, 256, rng);
  return {outcome.status, outcome.size, outcome.prediction, outcome.position, outcome.block};
}

BlockCase plainCase(BlockSyntax member, const Codes& codes) {
  BlockCase c{member, codes.firstFor(member), codes.othersTable.get(), scanOrder(0), 1, {}, 0, 0};
  // Weights with which a coefficient comes out as its level, but for what makes it odd in MPEG-1.
  c.weights.assign(64, member.mpeg2 ? 16 : 8);
  return c;
}

int expectedOfLevel(BlockSyntax member, int level) {
  if (member.mpeg2 || level % 2 != 0 || level == 0) return level;
  return level < 0 ? level + 1 : level - 1;
}

}  // namespace

TEST(Reconstruct, StandardTablesAtEveryOffset) {
  Rng rng(1);
  const std::vector<std::vector<int>> splits = {{17}, {8, 9}, {5, 5, 7}, {4, 4, 4, 5}};
  for (const char* table : {"zero", "one"})
    for (const auto& widths : splits) {
      const Codes codes = standardCodes(table, rng.chance(2) ? "luma" : "chroma", widths);
      for (const auto member : blockMembers)
        for (int lead = 0; lead < 32; ++lead) {
          BlockWriter writer(member);
          writer.put(rng.next(), lead);
          constexpr int blocks = 6;
          for (int i = 0; i < blocks; ++i) {
            const int difference = rng.range(-2047, 2047);
            const auto pairs = randomPairs(rng, member);
            writeBlock(writer, member, codes, difference, pairs, rng);
          }
          const auto stream = withSlack(writer, rng);
          model::BitReader reader{stream.data(), lead};
          for (int i = 0; i < blocks; ++i) {
            BlockCase c{member, codes.firstFor(member), codes.othersTable.get(), {}, 1, {}, 0, 0};
            randomArguments(c, rng);
            const auto outcome = expectSameBlock(c, stream, reader, rng);
            ASSERT_EQ(outcome.status, zvpStatusOk);
            ASSERT_FALSE(HasFailure()) << "MPEG-" << 1 + member.mpeg2 << " intra " << member.intra << " lead " << lead;
          }
          ASSERT_EQ(reader.position, std::ptrdiff_t(writer.size()));
        }
    }
}

// The levels that were written are the coefficients that come out, without the model.
TEST(Reconstruct, RoundTrip) {
  Rng rng(2);
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  for (int round = 0; round < rounds(2000); ++round) {
    const auto member = blockMembers[rng.range(0, 3)];
    BlockCase c = plainCase(member, codes);
    c.scan = scanOrder(rng.range(0, 2));
    c.prediction = std::int16_t(rng.range(-2000, 2000));
    c.shift = member.mpeg2 ? rng.range(0, 3) : 0;
    const int difference = rng.range(-255, 255);
    const auto pairs = randomPairs(rng, member);
    BlockWriter writer(member);
    writeBlock(writer, member, codes, difference, pairs, rng);

    std::vector<std::int16_t> expected(64, 0);
    int index = member.intra ? 0 : -1;
    const int dc = member.mpeg2 ? c.prediction + difference : c.prediction + 8 * difference;
    if (member.intra) expected[0] = std::int16_t(dc * (1 << c.shift));
    for (const Pair& p : pairs) {
      index += p.run + 1;
      expected[std::size_t(c.scan[std::size_t(index)])] = std::int16_t(expectedOfLevel(member, p.level));
    }
    const int sum = std::accumulate(expected.begin(), expected.end(), 0);
    if (member.mpeg2 && sum % 2 == 0) expected[63] ^= 1;

    const Decoded got = decode(c, writer);
    ASSERT_EQ(got.status, zvpStatusOk);
    ASSERT_EQ(got.bits, std::ptrdiff_t(writer.size()));
    ASSERT_EQ(got.size, index == 0 && member.mpeg2 && !member.intra ? 1 : index);
    ASSERT_EQ(got.prediction, member.intra ? dc : c.prediction);
    ASSERT_TRUE(sameArray(got.block.data(), expected.data(), 64));
  }
}

// Where nothing saturates, a block is what the inverse quantizer makes of its levels.
TEST(Reconstruct, AgreesWithTheInverseQuantizer) {
  Rng rng(3);
  const Codes codes = standardCodes("one", "chroma", {8, 9});
  for (int round = 0; round < rounds(500); ++round) {
    const BlockSyntax member{true, rng.chance(2)};
    BlockCase c = plainCase(member, codes);
    const int scan = rng.range(0, 1);
    c.scan = scanOrder(scan);
    c.scale = rng.range(1, 112);
    c.weights = randomValues<std::int16_t>(64, rng, Style::Uniform, 1, 255);
    std::vector<std::int16_t> levels(64, 0), expected(64);
    const int difference = rng.range(-255, 255);
    if (member.intra) levels[0] = std::int16_t(difference);
    int index = member.intra ? 0 : -1;
    std::vector<Pair> pairs;
    for (int i = rng.range(1, 20); i > 0; --i) {
      const int run = rng.range(0, 2);
      index += run + 1;
      const int limit = std::max(1, 2040 * 16 / (c.weights[std::size_t(c.scan[std::size_t(index)])] * c.scale) - 1);
      const int magnitude = rng.range(1, std::min(limit, 2047));
      pairs.push_back({run, rng.chance(2) ? magnitude : -magnitude});
      levels[std::size_t(index)] = std::int16_t(pairs.back().level);
    }
    BlockWriter writer(member);
    writeBlock(writer, member, codes, difference, pairs, rng);
    ASSERT_EQ(zvpiScanInv_16s_C1(levels.data(), expected.data(), 63, scan), zvpStatusOk);
    if (member.intra)
      zvpiQuantInvIntra_MPEG2_16s_C1I(expected.data(), c.scale, c.weights.data());
    else
      zvpiQuantInv_MPEG2_16s_C1I(expected.data(), c.scale, c.weights.data());
    bool saturated = false;
    for (const auto value : expected) saturated |= value <= -2047 || value >= 2046;
    if (saturated) continue;
    const Decoded got = decode(c, writer);
    ASSERT_EQ(got.status, zvpStatusOk);
    ASSERT_TRUE(sameArray(got.block.data(), expected.data(), 64));
  }
}

TEST(Reconstruct, AllEscapes) {
  Rng rng(4);
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  for (const auto member : blockMembers) {
    const auto one = [&](int run, int level, bool longForm, bool first) {
      BlockWriter writer(member);
      if (member.intra) writer.dc(codes.sizes, 0);
      if (!member.intra && !first) writer.put("10");  // run 0, level 1
      writer.put("000001");
      writer.put(std::uint32_t(run), 6);
      writer.escapedLevel(level, longForm);
      writer.end(codes.others);
      const BlockCase c = plainCase(member, codes);
      const Decoded got = decode(c, writer);
      const int index = first && !member.intra ? run : run + 1;
      if (index > 63) {
        ASSERT_EQ(got.status, zvpStatusBadVlcInput);
        ASSERT_EQ(got.size, unwrittenSize);
        return;
      }
      ASSERT_EQ(got.status, zvpStatusOk);
      ASSERT_EQ(got.bits, std::ptrdiff_t(writer.size()));
      const auto at = std::size_t(c.scan[std::size_t(index)]);
      if (at != 63) {
        ASSERT_EQ(got.block[at], expectedOfLevel(member, level)) << run << " " << level;
      }
      const auto stream = withSlack(writer, rng);
      model::BitReader reader{stream.data(), 0};
      expectSameBlock(c, stream, reader, rng);
      ASSERT_FALSE(HasFailure()) << run << " " << level;
    };
    for (const bool first : {true, false}) {
      for (int run = 0; run < 64; ++run) ASSERT_NO_FATAL_FAILURE(one(run, 77, false, first));
      if (member.mpeg2)
        for (int level = -2048; level < 2048; ++level) ASSERT_NO_FATAL_FAILURE(one(2, level, false, first));
      else
        for (int level = -256; level < 256; ++level) {
          if (level != 0 && level > -128 && level < 128) {
            ASSERT_NO_FATAL_FAILURE(one(2, level, false, first));
          }
          ASSERT_NO_FATAL_FAILURE(one(2, level, true, first));
        }
    }
  }
}

// Small tables of several levels with bad codes, on bits that nobody has coded: runs that leave the block, first runs
// that leave the scan, levels and sizes of any value.
TEST(Reconstruct, InventedTablesAndDamage) {
  Rng rng(5);
  int bad = 0, beyond = 0;
  for (int round = 0; round < rounds(4000); ++round) {
    const auto member = blockMembers[rng.range(0, 3)];
    const bool complete = rng.chance(2);
    const auto inventedPairs = [&] {
      const int count = rng.range(2, 40), longest = rng.range(2, 17);
      auto codes = inventedCodes(rng, count, longest, complete);
      for (auto& code : codes)
        if (!rng.chance(16)) code.first = rng.chance(8) ? rng.range(253, 255) : rng.range(0, 6);
      const auto widths = inventedWidths(rng, longestCode(codes), 6);
      return compiledPairs(codes, widths);
    };
    const auto inventedSizes = [&] {
      const int count = rng.range(2, 20), longest = rng.range(2, 17);
      auto codes = inventedCodes(rng, count, longest, complete);
      for (auto& code : codes)
        if (!rng.chance(4)) code.first = rng.range(0, rng.chance(2) ? 33 : 12);
      const auto widths = inventedWidths(rng, longestCode(codes), 6);
      return compiledValues(codes, widths);
    };
    const CompiledTable first = member.intra ? inventedSizes() : inventedPairs(), others = inventedPairs();
    BlockCase c{member, first.get(), others.get(), {}, 1, {}, 0, 0};
    randomArguments(c, rng);
    if (rng.chance(4)) fill(c.scan.data(), 64, rng, Style::Uniform, 0, 63);  // positions that come again
    for (std::size_t i = 64; i < 256; ++i)
      c.scan[i] = rng.chance(2) ? rng.range(0, 63) : rng.pick<std::int32_t>({-1, 64, 1000000, INT32_MIN, INT32_MAX});
    std::vector<std::uint32_t> noise(160);
    for (auto& word : noise) {
      word = rng.next();
      if (rng.chance(3)) word &= rng.next();
    }
    model::BitReader reader{noise.data(), rng.range(0, 31)};
    const auto outcome = expectSameBlock(c, noise, reader, rng);
    bad += outcome.status == zvpStatusBadVlcInput;
    beyond += outcome.size > 63;
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
  EXPECT_GT(bad, rounds(100));
  EXPECT_GT(beyond, rounds(10));
}

// Bits flipped in good blocks.
TEST(Reconstruct, DamagedBlocks) {
  Rng rng(6);
  const Codes codes = standardCodes("zero", "luma", {6, 6, 5});
  for (int round = 0; round < rounds(3000); ++round) {
    const auto member = blockMembers[rng.range(0, 3)];
    BlockWriter writer(member);
    const auto pairs = randomPairs(rng, member);
    writeBlock(writer, member, codes, rng.range(-100, 100), pairs, rng);
    auto stream = withSlack(writer, rng);
    for (int i = 0; i < 100; ++i) stream.push_back(rng.next());
    for (int i = rng.range(1, 3); i > 0; --i) {
      const auto bit = std::size_t(rng.range(0, int(writer.size()) - 1));
      stream[bit / 32] ^= 0x80000000u >> bit % 32;
    }
    BlockCase c{member, codes.firstFor(member), codes.othersTable.get(), {}, 1, {}, 0, 0};
    randomArguments(c, rng);
    model::BitReader reader{stream.data(), 0};
    expectSameBlock(c, stream, reader, rng);
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
}

TEST(Reconstruct, BadFirstCodes) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  for (const auto member : blockMembers) {
    if (member.intra) continue;
    BlockWriter writer(member);
    writer.put(0, 17);  // no code
    BlockCase c = plainCase(member, codes);
    c.scan[241] = 5;
    writer.put(0, 31 - 16);
    const Decoded got = decode(c, writer);
    // Run 241 with the unused entry's level: its low 8 bits in MPEG-1, all 16 in MPEG-2.
    std::vector<std::int16_t> expected(64, 0);
    expected[5] = member.mpeg2 ? 240 : -15;
    EXPECT_TRUE(sameArray(got.block.data(), expected.data(), 64));
    if (!member.mpeg2) {
      EXPECT_EQ(got.status, zvpStatusOk);
      EXPECT_EQ(got.size, 241);
      EXPECT_EQ(got.bits, 16);  // all levels, the spare bit given back
    } else {
      EXPECT_EQ(got.status, zvpStatusBadVlcInput);  // the next code is bad too
      EXPECT_EQ(got.size, unwrittenSize);
      // Going on from 241 & 63 = 49: fourteen more steps fit.
      for (const int run : {13, 14}) {
        BlockWriter more(member);
        more.put(0, 16);
        more.pair(codes.others, {run, 7}, true);
        more.end(codes.others);
        const Decoded went = decode(c, more);
        EXPECT_EQ(went.status, run == 13 ? zvpStatusOk : zvpStatusBadVlcInput);
        EXPECT_EQ(went.size, run == 13 ? 63 : unwrittenSize);
        EXPECT_EQ(went.block[63], run == 13 ? 7 : 0);
      }
    }
    // A position that is none is left alone.
    for (const std::int32_t position : {-1, 64, 1 << 30}) {
      c.scan[241] = position;
      expected[5] = 0;
      const Decoded nothing = decode(c, writer);
      EXPECT_TRUE(sameArray(nothing.block.data(), expected.data(), 64));
    }
  }
}

// An end of block has no meaning as a first code: its run is one like others.
TEST(Reconstruct, FirstCodeIsNeverAnEnd) {
  const CodeSet codes = {{"00", endOfBlockRun, 3}, {"01", 64, 9}, {"1", endOfBlockRun, 0}};
  const CompiledTable table = compiledPairs(codes, {2});
  for (const bool mpeg2 : {false, true}) {
    BlockCase c{{mpeg2, false}, table.get(), table.get(), scanOrder(0), 1, {}, 0, 0};
    c.weights.assign(64, mpeg2 ? 16 : 8);
    c.scan[254] = 9;
    c.scan[64] = 10;
    BlockWriter writer(c.member);
    writer.put("001");
    const Decoded end = decode(c, writer);
    EXPECT_EQ(end.status, zvpStatusOk);
    EXPECT_EQ(end.block[9], 3);
    EXPECT_EQ(end.size, mpeg2 ? 254 & 63 : 254);
    EXPECT_EQ(end.bits, mpeg2 ? 3 : 2);
    BlockWriter run64(c.member);
    run64.put("011");
    const Decoded wrapped = decode(c, run64);
    EXPECT_EQ(wrapped.status, zvpStatusOk);
    EXPECT_EQ(wrapped.block[10], 9);
    EXPECT_EQ(wrapped.size, mpeg2 ? 1 : 64);  // index 0 is told as 1
  }
}

TEST(Reconstruct, LevelsOfTablesHave8Or16Bits) {
  // 300 is 44 in 8 bits, 200 is -56.
  const CodeSet codes = {{"00", 0, 300}, {"01", 0, 200}, {"1", endOfBlockRun, 0}};
  const CodeSet sizes = {{"0", 0, 0}, {"1", 1, 0}};
  const CompiledTable pairs = compiledPairs(codes, {2}), values = compiledValues(sizes, {1});
  for (const auto member : blockMembers) {
    BlockCase c{member, member.intra ? values.get() : pairs.get(), pairs.get(), scanOrder(0), 1, {}, 0, 0};
    c.weights.assign(64, member.mpeg2 ? 16 : 8);
    BlockWriter writer(member);
    if (member.intra) writer.put("0");
    writer.put("0001001");  // the pairs 300, 200, 300 and the end
    const Decoded got = decode(c, writer);
    ASSERT_EQ(got.status, zvpStatusOk);
    const bool wide = member.mpeg2 && !member.intra;
    const auto at = [&](int i) { return got.block[std::size_t(c.scan[std::size_t(i + member.intra)])]; };
    EXPECT_EQ(at(0), expectedOfLevel(member, wide ? 300 : 44));
    EXPECT_EQ(at(1), expectedOfLevel(member, wide ? 200 : -56));
    EXPECT_EQ(at(2), expectedOfLevel(member, wide ? 300 : 44));
  }
}

TEST(Reconstruct, DcSizesOfAnyValue) {
  const CodeSet pairs = {{"0", endOfBlockRun, 0}, {"1", 63, 0}};
  const CompiledTable others = compiledPairs(pairs, {1});
  for (const bool mpeg2 : {false, true})
    for (const int size : {0, 1, 3, 11, 16, 31, 32, 33, 127, 128, 255, 256 + 3, 61681, -1, -256}) {
      const CompiledTable sizes = compiledValues({{"11", size, 0}}, {3});
      BlockCase c{{mpeg2, true}, sizes.get(), others.get(), scanOrder(0), 1, {}, 100, 1};
      c.weights.assign(64, 16);
      // MPEG-2 takes 8 bits with their sign.
      const int used = mpeg2 ? int(std::int8_t(size)) : size, bits = used < 1 || used > 32 ? 0 : used;
      BlockWriter writer(c.member);
      writer.put("11");
      if (bits > 0) writer.put(0x80000001u >> (32 - bits), bits);  // a one and zeros, and a one if there is room
      writer.put("0");
      // A value that reads as a bad code leaves MPEG-1's reader behind all three bits.
      const bool skips = size == 61681 && !mpeg2;
      if (skips) writer.put("0");
      const std::int64_t difference = bits == 0 ? 0 : std::int64_t(0x80000001u >> (32 - bits));
      const auto dc = std::int16_t(std::uint16_t(100 + difference * (mpeg2 ? 1 : 8)));
      const Decoded got = decode(c, writer);
      EXPECT_EQ(got.status, zvpStatusOk) << size;
      EXPECT_EQ(got.bits, std::ptrdiff_t(writer.size())) << size;
      EXPECT_EQ(got.prediction, dc) << size;
      EXPECT_EQ(got.block[0], mpeg2 ? std::int16_t(std::uint16_t(dc * 2)) : dc) << size;
      EXPECT_EQ(got.size, 0);
    }
}

// ---- worked examples ----

TEST(Reconstruct, IntraOfMpeg1WithoutAnything) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  BlockCase c = plainCase({false, true}, codes);
  c.prediction = 1024;
  BlockWriter writer(c.member);
  writer.dc(codes.sizes, 0);
  writer.end(codes.others);
  const Decoded got = decode(c, writer);
  std::vector<std::int16_t> expected(64, 0);
  expected[0] = 1024;
  EXPECT_EQ(got.status, zvpStatusOk);
  EXPECT_EQ(got.size, 0);
  EXPECT_EQ(got.prediction, 1024);
  EXPECT_TRUE(sameArray(got.block.data(), expected.data(), 64));
}

TEST(Reconstruct, DcDifferenceOfThreeBits) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  for (const bool mpeg2 : {false, true}) {
    BlockCase c = plainCase({mpeg2, true}, codes);
    c.prediction = 500;
    c.shift = 2;
    BlockWriter writer(c.member);
    for (const auto& code : codes.sizes)
      if (code.first == 3) writer.put(code.bits);
    writer.put("011");
    writer.end(codes.others);
    const Decoded got = decode(c, writer);
    EXPECT_EQ(got.prediction, mpeg2 ? 496 : 468);
    EXPECT_EQ(got.block[0], mpeg2 ? 496 * 4 : 468);
    EXPECT_EQ(got.block[63], mpeg2 ? 1 : 0);  // the shifted DC is even
  }
}

TEST(Reconstruct, OddStepOfMpeg1) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  const struct {
    std::int16_t weight;
    std::int32_t scale;
    int level;
    std::int16_t asFirst, asOther;
  } cases[] = {
      {16, 1, 1, 3, 3},         {2, 8, 1, 3, 3},
      {1, 2, 1, 0, -1},         {1, 2, -1, 0, 1},
      {16, 2, 1, 5, 5},         {16, 2, -1, -5, -5},
      {255, 31, 3, 2047, 2047}, {255, 31, -3, -2048, -2048},
      {16, 1, 255, 511, 511},   {196, 25, 53, -2048, 2047},  // -32768 in 16 bits, less 1
  };
  for (const auto& e : cases)
    for (const bool first : {true, false}) {
      BlockCase c = plainCase({false, false}, codes);
      c.weights.assign(64, e.weight);
      c.scale = e.scale;
      BlockWriter writer(c.member);
      if (!first) writer.pair(codes.first, {0, 1}, false);
      writer.pair(first ? codes.first : codes.others, {0, e.level}, false);
      writer.end(codes.others);
      const Decoded got = decode(c, writer);
      EXPECT_EQ(got.block[first ? 0 : 1], first ? e.asFirst : e.asOther)
          << e.weight << " " << e.scale << " " << e.level;
      EXPECT_EQ(got.size, first ? 0 : 1);
    }
}

TEST(Reconstruct, NullWeightsOfMpeg2AreSixteen) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  BlockCase c = plainCase({true, false}, codes);
  c.weights.clear();
  c.scale = 2;
  BlockWriter writer(c.member);
  writer.put("10");
  writer.end(codes.others);
  const Decoded got = decode(c, writer);
  EXPECT_EQ(got.block[0], 3);
  EXPECT_EQ(got.block[63], 0);  // the sum is odd
  EXPECT_EQ(got.size, 1);
}

TEST(Reconstruct, MismatchControl) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  const BlockCase c = plainCase({true, false}, codes);
  const struct {
    std::vector<Pair> pairs;
    std::int16_t last;
    std::int32_t size;
  } cases[] = {
      {{{0, 3}}, 0, 1},           {{{0, 4}}, 1, 1},   {{{0, 3}, {62, 1}}, 0, 63},   {{{0, 4}, {62, 1}}, 1, 63},
      {{{0, 4}, {62, 2}}, 3, 63}, {{{63, 2}}, 3, 63}, {{{0, 3}, {62, -1}}, -2, 63}, {{{0, 2}, {62, -2}}, -1, 63},
  };
  for (const auto& e : cases) {
    BlockWriter writer(c.member);
    for (std::size_t i = 0; i < e.pairs.size(); ++i) writer.pair(i == 0 ? codes.first : codes.others, e.pairs[i], true);
    writer.end(codes.others);
    const Decoded got = decode(c, writer);
    EXPECT_EQ(got.status, zvpStatusOk);
    EXPECT_EQ(got.block[63], e.last);
    EXPECT_EQ(got.size, e.size);
  }
}

TEST(Reconstruct, LevelsOfEscapes) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  const struct {
    bool mpeg2;
    const char* bits;
    std::int16_t value;
  } cases[] = {{true, "100000000000", -2048},    {true, "011111111111", 2047},
               {false, "0000000011001000", 199},  // 200, made odd
               {false, "1000000011001000", -55},  // -56, made odd
               {false, "0000000000000000", 0},   {false, "1000000000000000", -255},
               {false, "10000001", -127},        {false, "01111111", 127}};
  for (const auto& e : cases)
    for (const bool intra : {false, true}) {
      const BlockCase c = plainCase({e.mpeg2, intra}, codes);
      BlockWriter writer(c.member);
      if (intra) writer.dc(codes.sizes, 0);
      writer.put("000001");
      writer.put(3, 6);
      writer.put(std::string(e.bits));
      writer.end(codes.others);
      const Decoded got = decode(c, writer);
      EXPECT_EQ(got.status, zvpStatusOk);
      EXPECT_EQ(got.block[std::size_t(c.scan[std::size_t(3 + intra)])], e.value) << e.bits;
    }
}

TEST(Reconstruct, LastIndexIs63) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  for (const auto member : blockMembers)
    for (const int more : {0, 1}) {
      const BlockCase c = plainCase(member, codes);
      BlockWriter writer(member);
      if (member.intra) writer.dc(codes.sizes, 1);
      for (int i = member.intra; i < 64 + more; ++i)
        writer.pair(i == 0 ? codes.first : codes.others, {0, i < 64 ? 1 : 5}, false);
      const auto afterPairs = std::ptrdiff_t(writer.size());
      writer.end(codes.others);
      const Decoded got = decode(c, writer);
      EXPECT_EQ(got.status, more ? zvpStatusBadVlcInput : zvpStatusOk);
      EXPECT_EQ(got.size, more ? unwrittenSize : 63);
      EXPECT_EQ(got.bits, more ? afterPairs : std::ptrdiff_t(writer.size()));
      for (std::size_t i = 1; i < 63; ++i) ASSERT_EQ(got.block[i], 1);
      // 64 ones have an even sum; a block that leaves its bounds sees no mismatch control.
      const bool intraOfMpeg1 = member.intra && !member.mpeg2;
      EXPECT_EQ(got.block[0], intraOfMpeg1 ? 8 : 1);
      EXPECT_EQ(got.block[63], member.mpeg2 && !more ? 0 : 1);
    }
}

TEST(Reconstruct, NullPointersComeFirstAndLeaveAllAlone) {
  const Codes codes = standardCodes("zero", "luma", {8, 9});
  const std::uint32_t words[4] = {0x80000000, 0, 0, 0};
  const auto scan = scanOrder(0);
  const std::vector<std::int16_t> weights(64, 16);
  for (const auto member : blockMembers)
    for (int absent = 0; absent < 10; ++absent) {
      if (absent == 8 && !member.intra) continue;
      const std::uint32_t *cursor = absent == 9 ? nullptr : words, *const before = cursor;
      std::int32_t offset = 7, size = 77;
      std::int16_t prediction = 5, block[64];
      std::fill_n(block, 64, std::int16_t(-9));
      const auto unless = [&](int number, auto* p) { return absent == number ? nullptr : p; };
      const BlockPointers pointers{unless(0, &cursor),
                                   unless(1, &offset),
                                   unless(2, codes.firstFor(member)),
                                   unless(3, codes.othersTable.get()),
                                   unless(4, scan.data()),
                                   0,
                                   unless(5, weights.data()),
                                   unless(8, &prediction),
                                   0,
                                   unless(6, &block[0]),
                                   unless(7, &size)};
      const bool allowed = absent == 5 && member.mpeg2 && !member.intra;
      const zvpStatus status = reconstructBlock(member, pointers);
      if (allowed) {
        EXPECT_NE(status, zvpStatusNullPointer);
        continue;
      }
      EXPECT_EQ(status, zvpStatusNullPointer) << absent;
      EXPECT_EQ(cursor, before);
      EXPECT_EQ(offset, 7);
      EXPECT_EQ(size, 77);
      EXPECT_EQ(prediction, 5);
      EXPECT_EQ(std::count(block, block + 64, -9), 64);
    }
}
