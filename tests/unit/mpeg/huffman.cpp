// Compiled code tables word by word, and the two readers, against the models.
#include "reference/mpeg/huffman.h"

#include <gtest/gtest.h>

#include "support/alloc.h"
#include "support/compare.h"
#include "support/compiled_table.h"
#include "support/placed.h"
#include "support/word_stream.h"
#include "support/word_writer.h"

using namespace zvptest;
namespace model = reference::mpeg;

namespace {

enum Kind { Value = 2, RunLevel = 3 };  // words of a list entry

using Table = CompiledTable;

zvpStatus compileInto(Kind kind, const std::int32_t* list, std::int32_t** table) {
  return kind == Value ? zvpiHuffmanTableInitAlloc_32s(list, table)
                       : zvpiHuffmanRunLevelTableInitAlloc_32s(list, table);
}

Table compiled(Kind kind, const std::vector<std::int32_t>& list) {
  Rng rng(list.size());
  Placed<std::int32_t> placed(list, rng);
  std::int32_t* table = nullptr;
  EXPECT_EQ(compileInto(kind, placed.readOnly().data(), &table), zvpStatusOk);
  return Table(table);
}

void expectSameTable(const Table& table, const std::vector<std::int32_t>& wanted) {
  ASSERT_EQ(Allocations::lastLength(), 4 * wanted.size());
  ASSERT_TRUE(sameArray(table.get(), wanted.data(), wanted.size()));
}

// One read at a position, by library and model, value and cursor compared.
void expectSameRead(Kind kind, const std::int32_t* table, const std::vector<std::uint32_t>& stream,
                    model::BitReader& reader) {
  const std::ptrdiff_t start = reader.position;
  std::int32_t wantedValue = 0, value = -1;
  std::uint8_t wantedFirst = 3, first = 3;
  std::int16_t wantedSecond = 4, second = 4;
  reader.end = 0;
  const bool good = kind == Value ? model::decodeOne(reader, table, wantedValue)
                                  : model::decodePair(reader, table, wantedFirst, wantedSecond);
  WordStream cursor(stream, start, reader.end);
  const zvpStatus status = kind == Value
                               ? zvpiDecodeHuffmanOne_1u32s(&cursor.word, &cursor.offset, &value, table)
                               : zvpiDecodeHuffmanPair_1u16s(&cursor.word, &cursor.offset, table, &first, &second);
  ASSERT_EQ(status, good ? zvpStatusOk : zvpStatusBadVlcInput);
  ASSERT_EQ(cursor.position(), reader.position);
  ASSERT_GE(cursor.offset, 0);
  ASSERT_LE(cursor.offset, 31);
  ASSERT_EQ(value, kind == Value ? wantedValue : -1);
  ASSERT_EQ(first, wantedFirst);
  ASSERT_EQ(second, wantedSecond);
  const std::int32_t results[] = {status, value, first, second};
  addToDigest(results, sizeof results);
}

// Writes codes behind a number of filler bits and reads them back, the values being those of the set.
void expectRoundTrip(Kind kind, const CodeSet& codes, const Table& table, Rng& rng, int lead) {
  WordWriter writer;
  for (int i = 0; i < lead; ++i) writer.put(rng.next(), 1);
  std::vector<const TestCode*> written;
  for (int i = 0; i < 40; ++i) {
    written.push_back(&rng.pick(codes));
    writer.put(written.back()->bits);
  }
  auto stream = writer.words();
  for (int i = 0; i < 4; ++i) stream.push_back(rng.next());  // what the look-ahead sees
  model::BitReader reader{stream.data(), lead};
  for (const auto* code : written) {
    const auto before = reader.position;
    ASSERT_NO_FATAL_FAILURE(expectSameRead(kind, table.get(), stream, reader)) << code->bits;
    if (kind == Value && (code->first << 8 >> 8) == 61681) return;  // an invented value that reads as a bad code
    if (kind == RunLevel && (code->first & 255) == 241 && std::int16_t(code->second) == 240) return;
    ASSERT_EQ(reader.position - before, std::ptrdiff_t(code->bits.size())) << code->bits;
  }
}

CodeSet valuesOf(CodeSet codes) {  // distinct 24-bit values for a set of pairs
  int n = 0;
  for (auto& code : codes) code.first = 3 * n++ - 100;
  return codes;
}

}  // namespace

TEST(Huffman, StandardTablesAtEveryOffset) {
  Rng rng(1);
  const CodeSet pairs[] = {coefficientCodes("zero"), coefficientCodes("one"), coefficientCodes("zero", true)};
  const std::vector<std::vector<int>> splits = {{16, 1}, {8, 9}, {5, 5, 7}, {3, 6, 2, 6}, {4, 4, 4, 4, 1}};
  for (const auto& codes : pairs)
    for (const auto& widths : splits) {
      const auto list = codeList(codes, widths, RunLevel), values = codeList(valuesOf(codes), widths, Value);
      const Table table = compiled(RunLevel, list);
      expectSameTable(table, model::compile(list.data(), RunLevel));
      const Table valueTable = compiled(Value, values);
      expectSameTable(valueTable, model::compile(values.data(), Value));
      for (int lead = 0; lead < 32; ++lead) {
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(RunLevel, codes, table, rng, lead));
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(Value, valuesOf(codes), valueTable, rng, lead));
      }
    }
  for (const char* component : {"luma", "chroma"})
    for (const auto& widths : {std::vector<int>{10}, {3, 8}, {2, 2, 2, 6}}) {
      const auto codes = dcSizeCodes(component);
      const Table table = compiled(Value, codeList(codes, widths, Value));
      for (int lead = 0; lead < 32; ++lead) ASSERT_NO_FATAL_FAILURE(expectRoundTrip(Value, codes, table, rng, lead));
    }
}

// The value of each code as the table tells it, without the models.
TEST(Huffman, EveryCodeHasItsValue) {
  const auto codes = coefficientCodes("zero");
  const Table table = compiled(RunLevel, codeList(codes, {8, 4, 5}, RunLevel));
  for (const auto& code : codes) {
    WordWriter writer;
    writer.put(code.bits);
    writer.put(0x2aaaaaaa, 32);
    const std::uint32_t* word = writer.words().data();
    std::int32_t offset = 31;
    std::uint8_t run;
    std::int16_t level;
    ASSERT_EQ(zvpiDecodeHuffmanPair_1u16s(&word, &offset, table.get(), &run, &level), zvpStatusOk);
    EXPECT_EQ(run, code.first);
    EXPECT_EQ(level, code.second);
    EXPECT_EQ(offset, 31 - int(code.bits.size()));
  }
}

TEST(Huffman, InventedTablesOfSeveralLevels) {
  Rng rng(2);
  for (int round = 0; round < rounds(150); ++round) {
    const Kind kind = rng.chance(2) ? Value : RunLevel;
    const bool complete = rng.chance(2);
    const int count = rng.range(2, 120), longest = rng.chance(4) ? 32 : rng.range(1, 17),
              widest = rng.chance(2) ? 3 : 9;
    const auto codes = inventedCodes(rng, count, longest, complete);
    const auto list = codeList(codes, inventedWidths(rng, longestCode(codes), widest), kind);
    const Table table = compiled(kind, list);
    bool lost = false;
    const auto wanted = model::compile(list.data(), kind, &lost);
    ASSERT_NO_FATAL_FAILURE(expectSameTable(table, wanted));
    if (lost) continue;
    std::vector<std::uint32_t> noise(12);
    for (auto& word : noise) word = rng.next();
    model::BitReader reader{noise.data(), rng.range(0, 31)};
    while (reader.position < 200) {
      const auto before = reader.position;
      ASSERT_NO_FATAL_FAILURE(expectSameRead(kind, table.get(), noise, reader));
      if (reader.position == before) ++reader.position;  // a bad pair
    }
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(kind, codes, table, rng, rng.range(0, 31)));
  }
}

TEST(Huffman, DamagedCodes) {
  Rng rng(3);
  const auto codes = coefficientCodes("zero");
  const Table table = compiled(RunLevel, codeList(codes, {6, 6, 5}, RunLevel));
  const Table values = compiled(Value, codeList(dcSizeCodes("luma"), {4, 5, 3}, Value));
  for (int lead = 0; lead < 32; ++lead) {
    // Twelve zero bits begin no coefficient's code.
    WordWriter writer;
    writer.put(rng.next(), lead);
    writer.put(0, 32);
    writer.put(0, 32);
    model::BitReader reader{writer.words().data(), lead};
    ASSERT_NO_FATAL_FAILURE(expectSameRead(RunLevel, table.get(), writer.words(), reader));
    ASSERT_EQ(reader.position, lead);  // no trace
    const std::vector<std::uint32_t> ones(3, ~0u);
    std::int32_t value;
    model::BitReader valueReader{ones.data(), lead};
    ASSERT_TRUE(model::decodeOne(valueReader, values.get(), value));
    ASSERT_EQ(value, 11);
  }
  const Table gap = compiled(Value, codeList({{"00", 1}, {"01", 2}, {"1011", 3}}, {2, 3}, Value));
  const std::vector<std::uint32_t> bad = {0x80000000, 0};
  model::BitReader reader{bad.data(), 0};
  ASSERT_NO_FATAL_FAILURE(expectSameRead(Value, gap.get(), bad, reader));
  EXPECT_EQ(reader.position, 5);  // both levels, the spare bit not given back
}

TEST(Huffman, ChecksInOrderAndLeavesOutputsAlone) {
  const auto list = codeList({{"1", 7}}, {3}, Value);
  auto* const untouched = reinterpret_cast<std::int32_t*>(std::uintptr_t(0x1000));
  std::int32_t* table = untouched;
  for (const Kind kind : {Value, RunLevel}) {
    EXPECT_EQ(compileInto(kind, nullptr, &table), zvpStatusNullPointer);
    EXPECT_EQ(compileInto(kind, list.data(), nullptr), zvpStatusNullPointer);
  }
  EXPECT_EQ(table, untouched);
  EXPECT_EQ(zvpiHuffmanTableFree_32s(nullptr), zvpStatusNullPointer);

  const std::uint32_t words[2] = {};
  const std::uint32_t *cursor = words, *none = nullptr;
  std::int32_t offset = 5, value = 9;
  const std::int32_t decodeTable[3] = {1, 0xF0F101, 0xF0F101};
  EXPECT_EQ(zvpiDecodeHuffmanOne_1u32s(nullptr, &offset, &value, decodeTable), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanOne_1u32s(&none, &offset, &value, decodeTable), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanOne_1u32s(&cursor, nullptr, &value, decodeTable), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanOne_1u32s(&cursor, &offset, nullptr, decodeTable), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanOne_1u32s(&cursor, &offset, &value, nullptr), zvpStatusNullPointer);
  std::uint8_t first = 1;
  std::int16_t second = 2;
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(nullptr, &offset, decodeTable, &first, &second), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(&none, &offset, decodeTable, &first, &second), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(&cursor, nullptr, decodeTable, &first, &second), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(&cursor, &offset, nullptr, &first, &second), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(&cursor, &offset, decodeTable, nullptr, &second), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeHuffmanPair_1u16s(&cursor, &offset, decodeTable, &first, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(cursor, words);
  EXPECT_EQ(offset, 5);
  EXPECT_EQ(value, 9);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST(Huffman, AllocationsFailCleanly) {
  const auto codes = coefficientCodes("zero");
  for (const Kind kind : {Value, RunLevel}) {
    const auto list = codeList(codes, {8, 9}, kind);
    const int before = Allocations::live();
    auto* const untouched = reinterpret_cast<std::int32_t*>(std::uintptr_t(0x1000));
    std::int32_t* table = untouched;
    Allocations::reset();
    for (int n = 1; n <= 2; ++n) {
      Allocations::failAt(n);
      EXPECT_EQ(compileInto(kind, list.data(), &table), zvpStatusNoMemory);
      EXPECT_EQ(table, untouched);
      EXPECT_EQ(Allocations::live(), before);
    }
    Allocations::reset();
    EXPECT_EQ(compileInto(kind, list.data(), &table), zvpStatusOk);
    EXPECT_EQ(Allocations::made(), 2);
    EXPECT_EQ(Allocations::live(), before + 1);
    EXPECT_EQ(zvpiHuffmanTableFree_32s(table), zvpStatusOk);
    EXPECT_EQ(Allocations::live(), before);

    // No code at all: the list of codes would have no length, so nothing is even asked for.
    table = untouched;
    Allocations::reset();
    for (const auto& empty : {std::vector<std::int32_t>{0, 1, 3, -1}, {0, 2, 3, 3, 0, 0, 0, -5}})
      EXPECT_EQ(compileInto(kind, empty.data(), &table), zvpStatusNoMemory);
    EXPECT_EQ(Allocations::made(), 0);
    EXPECT_EQ(table, untouched);
  }
}

TEST(Huffman, ShortCodeFillsItsEntries) {
  const Table table = compiled(Value, codeList({{"1", 7}}, {3}, Value));
  const std::int32_t wanted[9] = {3,          0xF0F101,   0xF0F101,   0xF0F101,  0xF0F101,
                                  7 << 8 | 2, 7 << 8 | 2, 7 << 8 | 2, 7 << 8 | 2};
  EXPECT_TRUE(sameArray(table.get(), wanted, 9));
  const std::uint32_t words[1] = {0x80000000};
  const std::uint32_t* word = words;
  std::int32_t offset = 31, value = 0;
  ASSERT_EQ(zvpiDecodeHuffmanOne_1u32s(&word, &offset, &value, table.get()), zvpStatusOk);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(word, words);
  EXPECT_EQ(offset, 30);
}

TEST(Huffman, ReadsAcrossTheWord) {
  // Width 4, codes of length 1 to 4; the lookup begins at the last bit of a word.
  const Table table = compiled(Value, codeList({{"1", 1}, {"01", 2}, {"001", 3}, {"0001", 4}}, {4}, Value));
  const struct {
    std::uint32_t words[2];
    std::int32_t value;
    std::ptrdiff_t ahead;
    std::int32_t offset;
  } cases[] = {
      {{1, 0}, 1, 1, 31}, {{0, 0x80000000}, 2, 1, 30}, {{0, 0x40000000}, 3, 1, 29}, {{0, 0x20000000}, 4, 1, 28}};
  for (const auto& c : cases) {
    const std::uint32_t* word = c.words;
    std::int32_t offset = 0, value = 0;
    ASSERT_EQ(zvpiDecodeHuffmanOne_1u32s(&word, &offset, &value, table.get()), zvpStatusOk);
    EXPECT_EQ(value, c.value);
    EXPECT_EQ(word, c.words + c.ahead);
    EXPECT_EQ(offset, c.offset);
  }
  // All bits of the lookup go back but those before the word's end: the cursor moves back into the first word.
  const std::uint32_t words[2] = {2, 0};
  const std::uint32_t* word = words;
  std::int32_t offset = 1, value = 0;
  ASSERT_EQ(zvpiDecodeHuffmanOne_1u32s(&word, &offset, &value, table.get()), zvpStatusOk);
  EXPECT_EQ(word, words);
  EXPECT_EQ(offset, 0);
}

// With 257 words before them, sub-tables of 17 words each stand at 257, 274, ..., 512: the sixteenth at a multiple of
// 256. In a value table the second code below its prefix does not find it and lands in the root; the run-level table
// finds it.
TEST(Huffman, ValueTableDoesNotFollowMultiplesOf256) {
  CodeSet codes;
  for (int prefix = 0; prefix < 20; ++prefix)
    for (int rest = 0; rest < 2; ++rest) {
      std::string bits;
      for (int bit = 7; bit >= 0; --bit) bits += char('0' + (prefix >> bit & 1));
      for (int bit = 3; bit >= 0; --bit) bits += char('0' + ((5 + 3 * rest) >> bit & 1));
      codes.push_back({bits, 1000 + 2 * prefix + rest, prefix});
    }
  for (const Kind kind : {Value, RunLevel}) {
    const auto list = codeList(codes, {8, 4}, kind);
    const Table table = compiled(kind, list);
    expectSameTable(table, model::compile(list.data(), kind));
    ASSERT_EQ(table[1 + 15], 512 << 8 | 128);
    const std::int32_t inSubTable = table[512 + 1 + 8], inRoot = table[1 + 8];
    EXPECT_EQ(inSubTable, kind == Value ? 0xF0F101 : 15 << 16 | ((1000 + 31) & 255) << 8);
    EXPECT_EQ(inRoot, kind == Value ? (1000 + 31) << 8 : (257 + 8 * 17) << 8 | 128);
  }
}

// Codes that the levels do not reach are dropped, and lists that are not prefix-free stay inside the allocation.
TEST(Huffman, DropsWhatFindsNoRoom) {
  const auto list = codeList({{"1", 1}, {"0000", 2}, {"01", 3}}, {3}, Value);
  const Table table = compiled(Value, list);
  expectSameTable(table, model::compile(list.data(), Value));
  EXPECT_EQ(table[1], 0xF0F101);
  Rng rng(5);
  for (int round = 0; round < rounds(300); ++round) {
    CodeSet codes;
    for (int i = rng.range(1, 60); i > 0; --i) {
      std::string bits;
      for (int n = rng.range(1, 14); n > 0; --n) bits += char('0' + rng.range(0, 1));
      codes.push_back({bits, rng.chance(9) ? 61681 : rng.range(0, 500), rng.chance(2) ? 240 : 1});
    }
    const Kind kind = rng.chance(2) ? Value : RunLevel;
    const int longest = rng.range(1, 14);
    const auto anyList = codeList(codes, inventedWidths(rng, longest, 5), kind);
    const Table any = compiled(kind, anyList);
    ASSERT_NO_FATAL_FAILURE(expectSameTable(any, model::compile(anyList.data(), kind)));
  }
}

// As above, with a second level wider than the first: the lost code lands behind the root, in the first sub-table.
TEST(Huffman, LostCodesGoOnBehindTheirTable) {
  CodeSet codes;
  for (int prefix = 0; prefix < 64; ++prefix)
    for (int rest = 0; rest < 2; ++rest) {
      std::string bits;
      for (int bit = 5; bit >= 0; --bit) bits += char('0' + (prefix >> bit & 1));
      bits += rest ? "1111111" : "0000000";
      codes.push_back({bits, 2 * prefix + rest, 0});
    }
  const auto list = codeList(codes, {6, 7}, Value);
  const Table table = compiled(Value, list);
  bool lost = false;
  expectSameTable(table, model::compile(list.data(), Value, &lost));
  EXPECT_TRUE(lost);
  ASSERT_EQ(table[64], (65 + 63 * 129) << 8 | 128);
  ASSERT_EQ((65 + 63 * 129) % 256, 0);
  EXPECT_EQ(table[1 + 127], 127 << 8);  // as index 127 of the root, which has 64
  EXPECT_EQ(table[65 + 63 * 129 + 128], 0xF0F101);
}
