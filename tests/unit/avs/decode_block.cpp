#include "reference/avs/decode_block.h"

#include <gtest/gtest.h>

#include "avs/decode_block_tables.h"
#include "support/avs_tables.h"
#include "support/compare.h"
#include "support/random.h"
#include "support/word_writer.h"
#include "zvpvc.h"

using namespace zvptest;
using reference::AvsBlockKind;
using std::int16_t;
using std::int32_t;
using std::uint32_t;

namespace {

constexpr AvsBlockKind kinds[] = {AvsBlockKind::IntraLuma, AvsBlockKind::InterLuma, AvsBlockKind::Chroma};

auto decoder(AvsBlockKind kind) {
  return kind == AvsBlockKind::IntraLuma   ? zvpiDecodeLumaBlockIntra_AVS_1u16s
         : kind == AvsBlockKind::InterLuma ? zvpiDecodeLumaBlockInter_AVS_1u16s
                                           : zvpiDecodeChromaBlock_AVS_1u16s;
}

// Writes codes and follows the table switches.
class BlockWriter {
 public:
  BlockWriter(AvsBlockKind kind, WordWriter& out) : kind_(kind), out_(out), stage_(reference::avsFirstStage(kind)) {}
  void number(uint32_t value, int k) {
    const std::uint64_t code = std::uint64_t(value) + (std::uint64_t(1) << k);
    int bits = 0;
    while (code >> (bits + 1)) ++bits;
    for (int i = k; i < bits; ++i) out_.put(0, 1);
    for (int i = bits; i >= 0; --i) out_.put(uint32_t(code >> i & 1), 1);
  }
  // By the table where it has the pair and no escape is asked for.
  void event(int run, int level, bool escape) {
    const auto& codes = avsTables().codes.at(stage_.table);
    const int magnitude = std::abs(level);
    const int base = reference::avsEscapeBase(kind_, avsTables(), stage_, run);
    int found = -1;
    for (int i = 0; i < 59; ++i)
      if (codes[std::size_t(i)] == std::pair(run, level)) found = i;
    if (found >= 0 && !(escape && magnitude >= base)) {
      number(uint32_t(found), stage_.k);
    } else {
      ASSERT_GE(magnitude, base);
      number(uint32_t(level < 0 ? 59 + 2 * run : 60 + 2 * run), stage_.k);
      number(uint32_t(magnitude - base), 0);
    }
    if (magnitude > stage_.limit) stage_ = reference::avsStageOf(kind_, magnitude);
  }
  bool canWrite(int run, int level) const {
    for (const auto& code : avsTables().codes.at(stage_.table))
      if (code == std::pair(run, level)) return true;
    return std::abs(level) >= reference::avsEscapeBase(kind_, avsTables(), stage_, run);
  }
  void end() {
    const auto& codes = avsTables().codes.at(stage_.table);
    for (int i = 0; i < 59; ++i)
      if (codes[std::size_t(i)].first == 64) return number(uint32_t(i), stage_.k);
  }
  const reference::AvsStage& stage() const { return stage_; }

 private:
  AvsBlockKind kind_;
  WordWriter& out_;
  reference::AvsStage stage_;
};

std::vector<bool> bitsFrom(const std::vector<uint32_t>& words, std::size_t first) {
  std::vector<bool> bits;
  for (std::size_t i = first; i < 32 * words.size(); ++i) bits.push_back(words[i / 32] >> (31 - i % 32) & 1);
  return bits;
}

struct Decoded {
  int16_t coefficients[64];
  int32_t count;
  std::size_t position;  // in bits from the first word
  zvpStatus status;
};

// From a bit of words that end where mapped memory ends, into guarded coefficients.
Decoded decode(AvsBlockKind kind, const std::vector<uint32_t>& words, std::size_t first, int scanType, Rng& rng) {
  GuardedArray<uint32_t> stream(words.size(), rng.guard());
  std::copy(words.begin(), words.end(), stream.data());
  stream.bytes().makeReadOnly();
  GuardedArray<int16_t> coefficients(64, rng.guard());
  fill(coefficients, rng, Style::Uniform, -32768, 32767);
  const uint32_t* word = stream.data() + first / 32;
  int32_t offset = 31 - int32_t(first % 32);
  Decoded result = {};
  result.status = decoder(kind)(&word, &offset, &result.count, coefficients.data(), scanType);
  std::copy_n(coefficients.data(), 64, result.coefficients);
  result.position = std::size_t(word - stream.data()) * 32 + std::size_t(31 - offset);
  return result;
}

void expectSame(const Decoded& actual, const reference::AvsResult& expected, std::size_t first) {
  ASSERT_EQ(actual.status, zvpStatusOk);
  ASSERT_TRUE(sameArray(actual.coefficients, expected.coefficients, 64));
  ASSERT_EQ(actual.count, expected.count);
  ASSERT_EQ(actual.position, first + expected.bits);
}

}  // namespace

TEST(AvsTables, AreTheStandards) {
  const auto check = [](const zvp::AvsVlcTable& table, const std::string& name) {
    for (std::size_t i = 0; i < 64; ++i) {
      EXPECT_EQ(table.codes[i].run, avsTables().codes.at(name)[i].first) << name << " " << i;
      EXPECT_EQ(table.codes[i].level, avsTables().codes.at(name)[i].second) << name << " " << i;
    }
    for (std::size_t run = 0; run < 32; ++run)
      EXPECT_EQ(table.refAbsLevel[run], avsTables().refAbsLevel.at(name)[run]) << name << " " << run;
  };
  const zvp::AvsVlcTable* const intra[] = {&zvp::VLC0_Intra, &zvp::VLC1_Intra, &zvp::VLC2_Intra, &zvp::VLC3_Intra,
                                           &zvp::VLC4_Intra, &zvp::VLC5_Intra, &zvp::VLC6_Intra};
  const zvp::AvsVlcTable* const inter[] = {&zvp::VLC0_Inter, &zvp::VLC1_Inter, &zvp::VLC2_Inter, &zvp::VLC3_Inter,
                                           &zvp::VLC4_Inter, &zvp::VLC5_Inter, &zvp::VLC6_Inter};
  const zvp::AvsVlcTable* const chroma[] = {&zvp::VLC0_Chroma, &zvp::VLC1_Chroma, &zvp::VLC2_Chroma, &zvp::VLC3_Chroma,
                                            &zvp::VLC4_Chroma};
  for (int i = 0; i < 7; ++i) check(*intra[i], "VLC" + std::to_string(i) + "_Intra");
  for (int i = 0; i < 7; ++i) check(*inter[i], "VLC" + std::to_string(i) + "_Inter");
  for (int i = 0; i < 5; ++i) check(*chroma[i], "VLC" + std::to_string(i) + "_Chroma");
  for (const auto& row : readTable("scans"))
    for (int field = 0; field < 2; ++field)
      if (row.at("name") == (field ? "avs_field" : "avs_frame_zigzag"))
        for (std::size_t i = 0; i < 64; ++i) {
          EXPECT_EQ(zvp::AVSScan[std::size_t(field)][i], std::stoi(row.at("p" + std::to_string(i))));
          EXPECT_EQ(reference::avsScan(field)[i], std::stoi(row.at("p" + std::to_string(i))));
        }
}

TEST(AvsDecodeBlock, BlocksWrittenFromTheTablesComeBack) {
  Rng rng(31);
  for (int round = 0; round < rounds(6000); ++round) {
    const AvsBlockKind kind = kinds[rng.range(0, 2)];
    const int scanType = rng.range(0, 1);
    WordWriter out;
    const int before = rng.range(0, 70);
    for (int i = 0; i < before; ++i) out.put(uint32_t(rng.range(0, 1)), 1);
    const std::size_t first = out.size();
    BlockWriter writer(kind, out);
    // Events, high frequency first, and the block that they make.
    std::vector<std::pair<int, int>> events;
    int n = 0;
    const int largest = rng.pick<int>({1, 2, 4, 12, 60, 3000}), longest = rng.pick<int>({0, 1, 4, 30});
    const int wanted = rng.chance(5) ? 64 : rng.range(0, 20);
    for (int tries = 0; tries < 300 && int(events.size()) < wanted; ++tries) {
      const int run = rng.range(0, longest), level = rng.range(1, largest) * (rng.chance(2) ? 1 : -1);
      if (n + run > 63 || !writer.canWrite(run, level)) continue;
      writer.event(run, level, rng.chance(3));
      events.emplace_back(run, level);
      n += run + 1;
    }
    writer.end();
    const std::size_t last = out.size();
    int16_t expected[64] = {};
    int position = -1;
    for (auto event = events.rbegin(); event != events.rend(); ++event)
      expected[reference::avsScan(scanType)[position += event->first + 1]] = int16_t(event->second);
    const Decoded actual = decode(kind, out.words(), first, scanType, rng);
    ASSERT_EQ(actual.status, zvpStatusOk);
    ASSERT_TRUE(sameArray(actual.coefficients, expected, 64));
    ASSERT_EQ(actual.count, scanType == 0 ? n : 63);
    ASSERT_EQ(actual.position, last);
    expectSame(actual, reference::avsDecodeBlock(kind, avsTables(), bitsFrom(out.words(), first), scanType), first);
  }
}

TEST(AvsDecodeBlock, RandomBitsGoAsInTheModel) {
  Rng rng(32);
  for (int round = 0; round < rounds(6000); ++round) {
    const AvsBlockKind kind = kinds[rng.range(0, 2)];
    std::vector<uint32_t> words(40);
    for (auto& word : words) word = rng.chance(6) ? rng.next() >> rng.range(0, 31) : rng.next();
    for (int i = 0; i < 20; ++i) words.push_back(0xffffffff);  // an end for every prefix and every block
    const std::size_t first = std::size_t(rng.range(0, 63));
    const int scanType = kind == AvsBlockKind::Chroma ? rng.range(0, 1) : rng.pick<int>({0, 1, 2, 3, -1});
    const auto expected = reference::avsDecodeBlock(kind, avsTables(), bitsFrom(words, first), scanType);
    // Not one word more than the codes take.
    words.resize((first + expected.bits + 31) / 32);
    expectSame(decode(kind, words, first, scanType, rng), expected, first);
  }
}

TEST(AvsDecodeBlock, AnEmptyBlockIsCleared) {
  Rng rng(33);
  for (AvsBlockKind kind : kinds)
    for (int scanType : {0, 1}) {
      WordWriter out;
      BlockWriter(kind, out).end();
      const Decoded actual = decode(kind, out.words(), 0, scanType, rng);
      for (int16_t value : actual.coefficients) EXPECT_EQ(value, 0);
      EXPECT_EQ(actual.count, scanType == 0 ? 0 : 63);
    }
}

TEST(AvsDecodeBlock, ALevelAtTheLimitDoesNotSwitch) {
  Rng rng(34);
  for (AvsBlockKind kind : kinds)
    for (int magnitude = 1; magnitude < 14; ++magnitude) {
      WordWriter out;
      BlockWriter writer(kind, out);
      writer.event(0, magnitude, false);
      const int limit = writer.stage().limit;
      if (!writer.canWrite(1, -std::min(limit, 20))) continue;
      writer.event(1, -std::min(limit, 20), false);
      EXPECT_EQ(writer.stage().limit, limit);
      writer.event(0, 30000, true);
      EXPECT_EQ(writer.stage().limit, 65535);
      writer.end();
      const std::size_t bits = out.size();
      const Decoded actual = decode(kind, out.words(), 0, 0, rng);
      EXPECT_EQ(actual.count, 4);
      EXPECT_EQ(actual.position, bits);
      EXPECT_EQ(actual.coefficients[0], 30000);
      EXPECT_EQ(actual.coefficients[8], -std::min(limit, 20));  // behind its run of one
    }
}

TEST(AvsDecodeBlock, SixtyFourEventsTakeOneMoreCode) {
  Rng rng(35);
  for (AvsBlockKind kind : kinds) {
    WordWriter out;
    BlockWriter writer(kind, out);
    for (int i = 0; i < 64; ++i) writer.event(0, i % 2 ? 1 : -1, false);
    writer.event(0, 1, false);  // consumed and ignored
    const std::size_t bits = out.size();
    const Decoded actual = decode(kind, out.words(), 0, 0, rng);
    EXPECT_EQ(actual.count, 64);
    EXPECT_EQ(actual.position, bits);
    for (int16_t value : actual.coefficients) EXPECT_EQ(std::abs(value), 1);
  }
}

TEST(AvsDecodeBlock, AnEscapeThatLeavesTheBlockTakesItsSecondCode) {
  Rng rng(36);
  for (AvsBlockKind kind : kinds) {
    WordWriter out;
    BlockWriter writer(kind, out);
    writer.event(0, 1, false);
    writer.number(59 + 2 * 63, writer.stage().k);  // run 63 from position 1
    writer.number(5, 0);
    const std::size_t bits = out.size();
    const Decoded actual = decode(kind, out.words(), 0, 0, rng);
    EXPECT_EQ(actual.count, 1);
    EXPECT_EQ(actual.position, bits);
    EXPECT_EQ(actual.coefficients[0], 1);
  }
}

TEST(AvsDecodeBlock, AnEscapeAboveTheRunBoundCountsFromOne) {
  Rng rng(37);
  for (AvsBlockKind kind : kinds) {
    WordWriter out;
    BlockWriter writer(kind, out);
    writer.number(60 + 2 * 40, writer.stage().k);
    writer.number(0, 0);
    BlockWriter next(kind, out);
    next.number(uint32_t(kind == AvsBlockKind::InterLuma ? 2
                         : kind == AvsBlockKind::Chroma  ? 0
                                                         : 8),
                kind == AvsBlockKind::Chroma ? 0 : 2);  // the end of block of the table for magnitude 1
    const Decoded actual = decode(kind, out.words(), 0, 0, rng);
    EXPECT_EQ(actual.count, 41);
    EXPECT_EQ(actual.coefficients[reference::avsScan(false)[40]], 1);
    EXPECT_EQ(actual.position, out.size());
  }
}

TEST(AvsDecodeBlock, PrefixesWithoutBoundStayInsideTheStream) {
  Rng rng(38);
  for (int zeros : {31, 32, 33, 63, 64, 100, 1000}) {
    std::vector<uint32_t> words(std::size_t(2 * zeros / 32 + 40), 0);
    for (std::size_t i = std::size_t(zeros) / 32 + 1; i < words.size(); ++i) words[i] = rng.next() | 1;
    words[std::size_t(zeros) / 32] = 1u << (31 - zeros % 32);
    for (int i = 0; i < 20; ++i) words.push_back(0xffffffff);
    for (AvsBlockKind kind : kinds) {
      const auto expected = reference::avsDecodeBlock(kind, avsTables(), bitsFrom(words, 0), 0);
      std::vector<uint32_t> exact(words.begin(), words.begin() + std::ptrdiff_t((expected.bits + 31) / 32));
      expectSame(decode(kind, exact, 0, 0, rng), expected, 0);
    }
  }
}

TEST(AvsDecodeBlock, NullPointersLeaveAllUntouched) {
  const uint32_t stream[4] = {0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff};
  const uint32_t* const nothing = nullptr;
  for (AvsBlockKind kind : kinds) {
    const uint32_t* word = stream;
    const uint32_t* null = nothing;
    int32_t offset = 31, count = 99;
    int16_t coefficients[64] = {77};
    EXPECT_EQ(decoder(kind)(nullptr, &offset, &count, coefficients, 0), zvpStatusNullPointer);
    EXPECT_EQ(decoder(kind)(&null, &offset, &count, coefficients, 0), zvpStatusNullPointer);
    EXPECT_EQ(decoder(kind)(&word, nullptr, &count, coefficients, 0), zvpStatusNullPointer);
    EXPECT_EQ(decoder(kind)(&word, &offset, nullptr, coefficients, 0), zvpStatusNullPointer);
    EXPECT_EQ(decoder(kind)(&word, &offset, &count, nullptr, 0), zvpStatusNullPointer);
    EXPECT_EQ(word, stream);
    EXPECT_EQ(offset, 31);
    EXPECT_EQ(count, 99);
    EXPECT_EQ(coefficients[0], 77);
  }
}
