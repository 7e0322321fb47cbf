// DV segments: written from the tables with codes that overflow into other blocks, random bits beside the model, and
// what happens at the ends of spaces and blocks.
#include "reference/dv/huffman.h"

#include <gtest/gtest.h>

#include "support/alloc.h"
#include "support/compare.h"
#include "support/dv_segment.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::dv;
using std::int16_t;
using std::int32_t;
using std::uint32_t;
using std::uint8_t;

namespace {

// The library's table of a set of codes.
class Table {
 public:
  explicit Table(const model::Codes& codes) {
    const auto list1 = dvCodeList(dvListCodes(codes, false), 9), list2 = dvCodeList(dvListCodes(codes, true), 9);
    EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list1.data(), list2.data(), &table_), zvpStatusOk);
  }
  ~Table() { EXPECT_EQ(zvpiFreeHuffmanTable_DV_32u(table_), zvpStatusOk); }
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  const uint32_t* data() const { return table_; }
  std::vector<uint32_t> entries() const { return {table_, table_ + 1024}; }

 private:
  uint32_t* table_ = nullptr;
};

const model::Codes& standardCodes() {
  static const model::Codes codes = dvCodes(false);
  return codes;
}
const model::Codes& completeCodes() {
  static const model::Codes codes = dvCodes(true);
  return codes;
}

enum class Member { DV, DV100, OnePass };

const model::Format& formatOf(Member member) {
  return member == Member::DV100 ? model::formatDV100() : model::formatDV();
}

zvpStatus call(Member member, const uint8_t* stream, const uint32_t* scans, const uint32_t* table, int16_t* block,
               uint32_t* params, int32_t maxCoefficients) {
  switch (member) {
    case Member::DV: return zvpiHuffmanDecodeSegment_DV_8u16s(stream, scans, table, block, params);
    case Member::DV100: return zvpiHuffmanDecodeSegment_DV100_8u16s(stream, scans, table, block, params);
    default: return zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(stream, scans, table, block, params, maxCoefficients);
  }
}

// Every operand of the exact size that is promised, at any address.
model::Segment decode(Member member, const std::vector<uint8_t>& stream, const Table& table, int32_t maxCoefficients,
                      Rng& rng) {
  const std::size_t count = 5 * formatOf(member).at.size();
  auto scans = dvScans();
  if (member == Member::DV100) scans.resize(64);
  Placed<uint8_t> bytes(stream, rng);
  Placed<uint32_t> places(scans, rng), entries(table.entries(), rng);
  Placed<uint32_t> params(std::vector<uint32_t>(count, 0xdeadbeef), rng);
  Placed<int16_t> blocks(std::vector<int16_t>(64 * count), rng);
  EXPECT_EQ(call(member, bytes.readOnly().data(), places.readOnly().data(), entries.readOnly().data(), blocks.data(),
                 params.data(), maxCoefficients),
            zvpStatusOk);
  return {blocks.values(), params.values()};
}

void expectSame(const model::Segment& actual, const model::Segment& expected) {
  ASSERT_TRUE(sameArray(actual.params.data(), expected.params.data(), expected.params.size()));
  ASSERT_TRUE(sameArray(actual.coefficients.data(), expected.coefficients.data(), expected.coefficients.size()));
}

void expectAsModel(Member member, const std::vector<uint8_t>& stream, bool complete, int32_t maxCoefficients,
                   Rng& rng) {
  const Table table(complete ? completeCodes() : standardCodes());
  const int limit = member == Member::OnePass ? std::min(maxCoefficients & 255, 64) : 64;
  expectSame(decode(member, stream, table, maxCoefficients, rng),
             model::decodeSegment(formatOf(member), complete ? completeCodes() : standardCodes(), stream.data(),
                                  dvScans(), limit, member == Member::OnePass));
}

// What the blocks of a segment that found room must come back as. Noise stands in the bits that the writer left, QNO
// among them.
model::Segment expectedOf(Member member, const std::vector<DvBlock>& blocks, const uint8_t* stream) {
  model::Segment expected;
  const std::size_t perMacroblock = formatOf(member).at.size();
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    std::vector<int16_t> coefficients(64);
    coefficients[0] = int16_t(blocks[i].dc * 128);
    const std::size_t scan = member == Member::DV100 ? 0 : 64 * std::size_t(blocks[i].mode);
    int position = 0;
    for (const auto& [run, level] : blocks[i].events) {
      position += run + 1;
      coefficients[dvScans()[scan + std::size_t(position)]] = int16_t(level * 64);
    }
    expected.coefficients.insert(expected.coefficients.end(), coefficients.begin(), coefficients.end());
    expected.params.push_back(1u | uint32_t(blocks[i].mode) << 6 | uint32_t(blocks[i].classNumber) << 4 |
                              uint32_t(position) << 8 | (stream[80 * (i / perMacroblock) + 3] & 15u) << 16);
  }
  return expected;
}

// A segment of empty blocks, into which tests write bits of their own.
class Segment {
 public:
  explicit Segment(Member member) : format_(formatOf(member)), stream_(400) {
    for (int m = 0; m < 5; ++m)
      for (int b = 0; b < int(format_.at.size()); ++b) put(m, b, 0, "0000000000000110");
  }
  // From a bit of a block's space on.
  void put(int m, int b, int at, const std::string& bits) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
      const int bit = 8 * (80 * m + format_.at[std::size_t(b)]) + at + int(i), shift = 7 - bit % 8;
      uint8_t& byte = stream_[std::size_t(bit / 8)];
      byte = uint8_t((byte & ~(1 << shift)) | (bits[i] == '1') << shift);
    }
  }
  int bits(int b) const { return 8 * format_.bytes[std::size_t(b)]; }
  std::vector<uint8_t>& stream() { return stream_; }

 private:
  const model::Format& format_;
  std::vector<uint8_t> stream_;
};

std::string repeated(const std::string& bits, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += bits;
  return all;
}

// Codes of one place each that fill so many bits, 6 or more.
std::string codesOf(int bits) { return repeated("0100", bits % 3) + repeated("000", (bits - 4 * (bits % 3)) / 3); }
int placesOf(int bits) { return bits % 3 + (bits - 4 * (bits % 3)) / 3; }

int positionOf(const model::Segment& segment, int block) { return int(segment.params[std::size_t(block)] >> 8 & 255); }
bool endOf(const model::Segment& segment, int block) { return segment.params[std::size_t(block)] & 1; }
int coefficientOf(const model::Segment& segment, int block, int place) {
  return segment.coefficients[std::size_t(64 * block) + dvScans()[std::size_t(place)]];
}

}  // namespace

TEST(DvTable, HoldsTheCodes) {
  for (const bool complete : {false, true}) {
    const model::Codes& codes = complete ? completeCodes() : standardCodes();
    const Table table(codes);
    auto expected = model::tableEntries(dvListCodes(codes, false), 9, 0);
    const auto second = model::tableEntries(dvListCodes(codes, true), 9, 4);
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_TRUE(sameArray(table.data(), expected.data(), 1024));
  }
}

TEST(DvTable, TakesOtherWidthsAndFullWords) {
  const model::Codes list1 = {{"0", {300, 40000}}, {"10", {-1, -1}}, {"1101", {255, -512}}};
  const model::Codes list2 = {{"1", {7, 511}}, {"0000000000001", {8, 512}}};
  Rng rng(29);
  for (const int bits1 : {4, 6, 12})
    for (const int bits2 : {13, 14}) {
      auto words1 = dvCodeList(list1, bits1), words2 = dvCodeList(list2, bits2);
      words2[4] |= int32_t(0xfffffff0);  // what stands ahead of a code is not looked at
      Allocations::reset();
      uint32_t* table = nullptr;
      Placed<int32_t> placed1(words1, rng), placed2(words2, rng);
      ASSERT_EQ(zvpiInitAllocHuffmanTable_DV_32u(placed1.readOnly().data(), placed2.readOnly().data(), &table),
                zvpStatusOk);
      EXPECT_EQ(Allocations::made(), 1);
      auto expected = model::tableEntries(list1, bits1, 0);
      const auto second = model::tableEntries(list2, bits2, 4);
      expected.insert(expected.end(), second.begin(), second.end());
      EXPECT_EQ(Allocations::lastLength(), 4 * expected.size());
      EXPECT_TRUE(sameArray(table, expected.data(), expected.size()));
      EXPECT_EQ(zvpiFreeHuffmanTable_DV_32u(table), zvpStatusOk);
    }
}

TEST(DvTable, NoCodesAreAnEmptyTable) {
  const int32_t list[3] = {0, 1, 2};
  uint32_t* table = nullptr;
  ASSERT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list, list, &table), zvpStatusOk);
  EXPECT_EQ(Allocations::lastLength(), 8u);
  EXPECT_EQ(table[0], 255u);
  EXPECT_EQ(table[1], 255u);
  EXPECT_EQ(zvpiFreeHuffmanTable_DV_32u(table), zvpStatusOk);
}

TEST(DvTable, RefusalsInOrder) {
  const auto list = dvCodeList(dvListCodes(standardCodes(), false), 9);
  uint32_t something = 0, *table = &something;
  EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(nullptr, list.data(), &table), zvpStatusNullPointer);
  EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list.data(), nullptr, &table), zvpStatusNullPointer);
  EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list.data(), list.data(), nullptr), zvpStatusNullPointer);
  EXPECT_EQ(table, &something);
  EXPECT_EQ(zvpiFreeHuffmanTable_DV_32u(nullptr), zvpStatusNullPointer);

  const int before = Allocations::live();
  Allocations::reset();
  Allocations::failAt(1);
  EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list.data(), list.data(), &table), zvpStatusNoMemory);
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(Allocations::live(), before);
  // Sizes that no allocation could have.
  Allocations::reset();
  for (const int32_t bits : {29, 31, 32, 64, 255}) {
    const int32_t huge[3] = {bits, 0, 0};
    table = &something;
    EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(list.data(), huge, &table), zvpStatusNoMemory);
    EXPECT_EQ(table, nullptr);
    table = &something;
    EXPECT_EQ(zvpiInitAllocHuffmanTable_DV_32u(huge, list.data(), &table), zvpStatusNoMemory);
    EXPECT_EQ(table, nullptr);
  }
  EXPECT_EQ(Allocations::made(), 0);
}

TEST(DvSegment, SegmentsWrittenFromTheTablesComeBack) {
  Rng rng(1);
  const Table table(standardCodes());
  const auto words = dvWords(standardCodes());
  int written = 0;
  for (int round = 0; round < rounds(600); ++round) {
    const Member member = rng.chance(2) ? Member::DV : Member::DV100;
    std::vector<DvBlock> blocks;
    const int usual = rng.range(1, 90), rare = rng.range(100, 500), oneIn = rng.range(3, 12);
    const std::size_t count = 5 * formatOf(member).at.size();
    while (blocks.size() < count) blocks.push_back(dvRandomBlock(rng, words, rng.chance(oneIn) ? rare : usual));
    std::vector<uint8_t> stream(400);
    const bool allFit = dvWriteSegment(formatOf(member), blocks, rng, stream.data());
    const auto actual = decode(member, stream, table, 0, rng);
    expectSame(actual, model::decodeSegment(formatOf(member), standardCodes(), stream.data(), dvScans(), 64, false));
    if (allFit) expectSame(actual, expectedOf(member, blocks, stream.data()));
    written += allFit;
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(written, rounds(600) / 4);
}

TEST(DvSegment, RandomBitsGoAsInTheModel) {
  Rng rng(2);
  for (int round = 0; round < rounds(900); ++round) {
    const Member member = rng.pick<Member>({Member::DV, Member::DV100, Member::OnePass});
    std::vector<uint8_t> stream(400);
    // All ones are escapes, zeros the shortest code; where there are few ones blocks do not end.
    const int density = rng.range(0, 3);
    for (auto& byte : stream) {
      const uint32_t bits = rng.next(), more = rng.next();
      byte = uint8_t(density == 0 ? bits & more : density == 1 ? bits | more : bits);
    }
    const bool complete = rng.chance(2);
    const int32_t maxCoefficients = rng.chance(4) ? int32_t(rng.next()) : rng.range(0, 64);
    expectAsModel(member, stream, complete, maxCoefficients, rng);
    if (HasFatalFailure()) FAIL() << "round " << round;
  }
}

// Every bit of a good segment changed, and random bytes of it.
TEST(DvSegment, DamagedSegmentsGoAsInTheModel) {
  Rng rng(3);
  const auto words = dvWords(standardCodes());
  for (const Member member : {Member::DV, Member::DV100}) {
    std::vector<DvBlock> blocks;
    const std::size_t count = 5 * formatOf(member).at.size();
    while (blocks.size() < count) blocks.push_back(dvRandomBlock(rng, words, rng.chance(5) ? 300 : 20));
    std::vector<uint8_t> stream(400);
    dvWriteSegment(formatOf(member), blocks, rng, stream.data());
    for (int bit = 0; bit < 3200; bit += rounds(100) < 100 ? 37 : 3) {
      auto damaged = stream;
      damaged[std::size_t(bit / 8)] = uint8_t(damaged[std::size_t(bit / 8)] ^ (1 << bit % 8));
      expectAsModel(member, damaged, false, 0, rng);
      if (HasFatalFailure()) FAIL() << "bit " << bit;
    }
  }
}

TEST(DvSegment, AConstantByteGoesAsInTheModel) {
  Rng rng(4);
  for (int value = 0; value < 256; ++value)
    for (const Member member : {Member::DV, Member::DV100, Member::OnePass})
      expectAsModel(member, std::vector<uint8_t>(400, uint8_t(value)), value % 2 == 0, 64, rng);
}

TEST(DvSegment, HeadersAndParams) {
  Rng rng(5);
  const Table table(standardCodes());
  for (const Member member : {Member::DV, Member::DV100, Member::OnePass}) {
    Segment segment(member);
    const int perMacroblock = int(formatOf(member).at.size());
    for (int m = 0; m < 5; ++m) segment.stream()[std::size_t(80 * m + 3)] = uint8_t(0xf0 + 3 * m);
    segment.put(1, 2, 0, "100000000111");  // -256, 2-4-8, class 3
    segment.put(1, 3, 0, "011111111010");  // 255, 8-8, class 2
    segment.put(1, 4, 0, "111111111101");  // -1, 2-4-8, class 1
    const auto actual = decode(member, segment.stream(), table, 64, rng);
    const int first = perMacroblock;
    EXPECT_EQ(coefficientOf(actual, first + 2, 0), -32768);
    EXPECT_EQ(coefficientOf(actual, first + 3, 0), 255 * 128);
    EXPECT_EQ(coefficientOf(actual, first + 4, 0), -128);
    EXPECT_EQ(actual.params[std::size_t(first + 2)], 0x30071u);
    EXPECT_EQ(actual.params[std::size_t(first + 3)], 0x30021u);
    EXPECT_EQ(actual.params[std::size_t(first + 4)], 0x30051u);
    EXPECT_EQ(actual.params[std::size_t(4 * perMacroblock)], 0xc0001u);
  }
}

TEST(DvSegment, TheModeBitChoosesTheScanExceptInDv100) {
  Rng rng(6);
  const Table table(standardCodes());
  for (const Member member : {Member::DV, Member::DV100, Member::OnePass}) {
    Segment segment(member);
    segment.put(2, 1, 0, "000000000100" "000" "0110");  // one coefficient in a 2-4-8 block
    const auto actual = decode(member, segment.stream(), table, 64, rng);
    const std::size_t block = 2 * formatOf(member).at.size() + 1;
    EXPECT_EQ(actual.coefficients[64 * block + (member == Member::DV100 ? 1 : 32)], 64);
    EXPECT_EQ(actual.params[block], 0x141u);
  }
}

TEST(DvSegment, ACodeSplitOverTwoSpacesIsOneCode) {
  Rng rng(7);
  const Table table(standardCodes());
  // Block 0 holds codes up to `left` bits before its end; the code that begins there goes on behind block 1's end.
  const std::string escape = "1111111" "11111111" "1", zeros = "1111110001000";
  for (const std::string& code : {escape, zeros, std::string("111110111111" "1"), std::string("1000" "0")})
    for (int left = 0; left < int(code.size()); ++left) {
      Segment segment(Member::DV);
      const std::string codes = codesOf(segment.bits(0) - 12 - left);
      const std::string split = code + "0110";
      segment.put(0, 0, 12, codes + split.substr(0, std::size_t(left)));
      segment.put(0, 1, 16, split.substr(std::size_t(left)));
      const auto actual = decode(Member::DV, segment.stream(), table, 64, rng);
      expectSame(actual, model::decodeSegment(model::formatDV(), standardCodes(), segment.stream().data(), dvScans(),
                                              64, false));
      EXPECT_TRUE(endOf(actual, 0)) << code << " " << left;
      if (code == escape) {
        EXPECT_EQ(coefficientOf(actual, 0, positionOf(actual, 0)), -255 * 64) << left;
      }
    }
}

TEST(DvSegment, AnEscapeNeedsSixteenBitsOfSpace) {
  Rng rng(8);
  const Table table(standardCodes());
  for (int left = 7; left <= 16; ++left) {
    Segment segment(Member::OnePass);
    const int filled = segment.bits(4) - 12 - left, places = placesOf(filled);
    segment.put(0, 4, 12, codesOf(filled) + (std::string("1111111") + "00011001" + "0").substr(0, std::size_t(left)));
    const auto actual = decode(Member::OnePass, segment.stream(), table, 64, rng);
    EXPECT_EQ(positionOf(actual, 4), left < 16 ? places : places + 1);
    EXPECT_FALSE(endOf(actual, 4));
    if (left == 16) {
      EXPECT_EQ(coefficientOf(actual, 4, places + 1), 25 * 64);
    }
  }
}

TEST(DvSegment, ABlockThatEndsWithItsSpaceIsInNeitherList) {
  Rng rng(9);
  const Table table(standardCodes());
  Segment segment(Member::DV);
  // Block 4 needs more; block 0 ends exactly with its space, so that block 1's space takes the rest.
  segment.put(0, 0, 0, "000000000000" + repeated("000", 32) + "0110");
  ASSERT_EQ(12 + 96 + 4, segment.bits(0));
  segment.put(0, 4, 0, "000000000000" + repeated("000", 22) + "10");  // 1001s: four and its sign
  segment.put(0, 1, 16, "011" "0110");
  const auto actual = decode(Member::DV, segment.stream(), table, 64, rng);
  EXPECT_EQ(positionOf(actual, 0), 32);
  EXPECT_TRUE(endOf(actual, 0));
  EXPECT_EQ(positionOf(actual, 4), 23);
  EXPECT_EQ(coefficientOf(actual, 4, 23), -4 * 64);
  EXPECT_TRUE(endOf(actual, 4));
}

TEST(DvSegment, BehindPlace63OneMoreCodeIsRead) {
  Rng rng(10);
  const Table table(standardCodes());
  for (const bool end : {true, false}) {
    Segment segment(Member::DV);
    // 61 zeros by one code, then one coefficient at place 63 and an end of block or another code.
    const std::string start = std::string("000000000000") + "1111110111101" + "001";
    segment.put(0, 0, 0, start + (end ? "0110" : "000"));
    segment.put(0, 5, 0, "000000000000" + repeated("000", 22) + "01");  // two bits of a code
    segment.put(0, 0, int(start.size()) + (end ? 4 : 3), "00" "0110");
    const auto actual = decode(Member::DV, segment.stream(), table, 64, rng);
    EXPECT_EQ(positionOf(actual, 0), 63);
    EXPECT_EQ(coefficientOf(actual, 0, 63), -64);
    EXPECT_EQ(endOf(actual, 0), end);
    // The bits behind that code went to block 5: 010 and its sign, the end of block.
    EXPECT_EQ(positionOf(actual, 5), 23);
    EXPECT_EQ(coefficientOf(actual, 5, 23), 2 * 64);
    EXPECT_TRUE(endOf(actual, 5));
  }
}

TEST(DvSegment, ARunBeyondTheBlockEndsItWithoutTheFlag) {
  Rng rng(11);
  const Table table(standardCodes());
  Segment segment(Member::DV);
  segment.put(3, 1, 12, std::string("1111110111101") + "01111" "0110");        // 62 zeros, then run 1
  segment.put(3, 2, 12, std::string("1111110111101") + "1111110001010" "0110");  // 62 zeros, then 11
  const auto actual = decode(Member::DV, segment.stream(), table, 64, rng);
  for (const int block : {19, 20}) {
    EXPECT_EQ(positionOf(actual, block), 62);
    EXPECT_FALSE(endOf(actual, block));
    for (int place = 1; place < 64; ++place) EXPECT_EQ(coefficientOf(actual, block, place), 0);
  }
}

TEST(DvSegment, APatternWithoutACodeLosesTheSpacesThatItIsOffered) {
  Rng rng(12);
  const Table table(standardCodes());
  Segment segment(Member::DV);
  segment.put(0, 0, 12, "000" "1111110000001" "0110");                 // run 1 has a shorter word
  segment.put(0, 5, 12, repeated("000", 22) + "00");                    // needs one bit more
  segment.put(1, 0, 12, repeated("0100", 25));                          // needs an end of block
  segment.put(1, 1, 16, "0110");
  const auto actual = decode(Member::DV, segment.stream(), table, 64, rng);
  EXPECT_EQ(positionOf(actual, 0), 1);
  EXPECT_FALSE(endOf(actual, 0));
  EXPECT_EQ(positionOf(actual, 5), 22);  // nothing was left for it
  EXPECT_FALSE(endOf(actual, 5));
  EXPECT_TRUE(endOf(actual, 6));
  EXPECT_EQ(positionOf(actual, 6), 25);
  expectAsModel(Member::DV, segment.stream(), false, 64, rng);
}

TEST(DvSegment, MaxCoefficientsCountByTheirLowByte) {
  Rng rng(13);
  const Table table(standardCodes());
  Segment segment(Member::OnePass);
  segment.put(0, 0, 12, "000" "0100" "001" "0110");
  const struct {
    int32_t value;
    int position;
    bool end;
  } cases[] = {{0, 0, false},   {1, 0, false},      {2, 1, false},     {3, 2, false},    {4, 3, true},
               {64, 3, true},   {65, 3, true},      {255, 3, true},    {256, 0, false},  {0x102, 1, false},
               {-1, 3, true},   {-254, 1, false}};
  for (const auto& c : cases) {
    const auto actual = decode(Member::OnePass, segment.stream(), table, c.value, rng);
    EXPECT_EQ(positionOf(actual, 0), c.position) << c.value;
    EXPECT_EQ(endOf(actual, 0), c.end) << c.value;
    EXPECT_EQ(endOf(actual, 1), (c.value & 255) != 0) << c.value;
  }
}

TEST(DvSegment, NullPointersLeaveAllUntouched) {
  const Table table(standardCodes());
  const std::vector<uint8_t> stream(400, 0x55);
  for (const Member member : {Member::DV, Member::DV100, Member::OnePass}) {
    std::vector<int16_t> blocks(64 * 40, 7);
    std::vector<uint32_t> params(40, 9);
    const auto* s = stream.data();
    const auto* z = dvScans().data();
    auto *b = blocks.data();
    auto *p = params.data();
    EXPECT_EQ(call(member, nullptr, z, table.data(), b, p, 64), zvpStatusNullPointer);
    EXPECT_EQ(call(member, s, nullptr, table.data(), b, p, 64), zvpStatusNullPointer);
    EXPECT_EQ(call(member, s, z, nullptr, b, p, 64), zvpStatusNullPointer);
    EXPECT_EQ(call(member, s, z, table.data(), nullptr, p, 64), zvpStatusNullPointer);
    EXPECT_EQ(call(member, s, z, table.data(), b, nullptr, 64), zvpStatusNullPointer);
    EXPECT_EQ(blocks, std::vector<int16_t>(64 * 40, 7));
    EXPECT_EQ(params, std::vector<uint32_t>(40, 9));
  }
}
