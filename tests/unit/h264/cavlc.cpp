// CAVLC and Exp-Golomb: blocks that an encoder wrote, hostile bits beside the model, the cursor's reach, refusals.
#include "reference/h264/cavlc.h"

#include <gtest/gtest.h>

#include "support/cavlc_encoder.h"
#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;
using reference::h264::BitReader;
using reference::h264::CavlcShape;

namespace {

const CavlcCodes& codes() {
  static const CavlcCodes all(ZVP_TEST_DATA "/tables");
  return all;
}
// The tables in several splits: one level each, two, many of two bits, many of one bit.
const CavlcVlcTables& tablesOf(int split) {
  static const CavlcVlcTables all[] = {{codes(), 16, 16}, {codes(), 6, 10}, {codes(), 3, 2}, {codes(), 1, 1}};
  return all[split];
}
constexpr int splits = 4;

struct ScanOrders {
  std::vector<std::int32_t> orders[2] = {h264Scan(ZVP_TEST_DATA "/tables", "zigzag4x4"),
                                         h264Scan(ZVP_TEST_DATA "/tables", "field4x4")};
};
const std::int32_t* scanOf(int field) {
  static const ScanOrders scans;
  return scans.orders[field].data();
}

// One call of any member.
struct Call {
  CavlcShape shape = CavlcShape::Residual4x4;
  std::uint32_t nC = 0;
  std::int16_t maxNumCoeff = 16;
  const std::int32_t* coeffToken[3] = {};
  const std::int32_t* const* totalZeros = nullptr;
  const std::int32_t* const* runBefore = nullptr;
  const std::int32_t* scan = nullptr;

  int elements() const { return shape == CavlcShape::Residual4x4 ? 16 : shape == CavlcShape::ChromaDc420 ? 4 : 8; }
  void use(const CavlcVlcTables& tables) {
    const bool is4x4 = shape == CavlcShape::Residual4x4, is420 = shape == CavlcShape::ChromaDc420;
    for (int i = 0; i < 3; ++i)
      coeffToken[i] = is4x4 ? tables.coeffToken[i] : is420 ? tables.coeffToken420 : tables.coeffToken422;
    totalZeros = is4x4 ? tables.totalZeros4x4 : is420 ? tables.totalZeros420 : tables.totalZeros422;
    runBefore = tables.runBefore;
    if (!is4x4) maxNumCoeff = std::int16_t(elements());
  }
  template <class Element>
  zvpStatus operator()(const std::uint32_t*& word, std::int32_t& offset, std::int16_t& count, Element*& dst) const {
    constexpr bool narrow = sizeof(Element) == 2;
    switch (shape) {
      case CavlcShape::Residual4x4:
        if constexpr (narrow)
          return zvpiDecodeCAVLCCoeffs_H264_1u16s(&word, &offset, &count, &dst, nC, maxNumCoeff, coeffToken, totalZeros,
                                                  runBefore, scan);
        else
          return zvpiDecodeCAVLCCoeffs_H264_1u32s(&word, &offset, &count, &dst, nC, maxNumCoeff, coeffToken, totalZeros,
                                                  runBefore, scan);
      case CavlcShape::ChromaDc420:
        if constexpr (narrow)
          return zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(&word, &offset, &count, &dst, coeffToken[0], totalZeros,
                                                          runBefore);
        else
          return zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(&word, &offset, &count, &dst, coeffToken[0], totalZeros,
                                                          runBefore);
      default:
        if constexpr (narrow)
          return zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(&word, &offset, &count, &dst, coeffToken[0], totalZeros,
                                                             runBefore);
        else
          return zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(&word, &offset, &count, &dst, coeffToken[0], totalZeros,
                                                             runBefore);
    }
  }
  reference::h264::CavlcTables forModel() const {
    return {nC < 8 || shape != CavlcShape::Residual4x4 ? coeffToken[nC < 2   ? 0
                                                                    : nC < 4 ? 1
                                                                             : 2]
                                                       : nullptr,
            totalZeros, runBefore, scan, maxNumCoeff};
  }
};

constexpr CavlcShape allShapes[] = {CavlcShape::Residual4x4, CavlcShape::ChromaDc420, CavlcShape::ChromaDc422};

template <class Element>
class Cavlc : public ::testing::Test {};
using Elements = ::testing::Types<std::int16_t, std::int32_t>;
TYPED_TEST_SUITE(Cavlc, Elements);

// The call beside the model, over a stream in memory that ends with the last word that the model touched.
template <class Element>
void compareWithModel(const Call& call, const std::vector<std::uint32_t>& stream, std::int32_t offset, Rng& rng) {
  GuardedArray<Element> actual(std::size_t(call.elements()), rng.guard());
  fill(actual, rng, Style::Uniform, -30000, 30000);
  std::vector<Element> expected(actual.data(), actual.data() + actual.size());

  BitReader reader{stream.data(), offset};
  std::int16_t expectedCount = 77, count = 77;
  Element* expectedDst = expected.data();
  const auto expectedStatus =
      reference::h264::decodeCavlc(call.shape, reader, call.forModel(), expectedCount, expectedDst);
  ASSERT_LT(reader.furthest - stream.data(), std::ptrdiff_t(stream.size())) << "the test's stream is too short";

  GuardedArray<std::uint32_t> words(std::size_t(reader.furthest - stream.data() + 1), rng.guard());
  std::memcpy(words.data(), stream.data(), words.size() * 4);
  words.bytes().makeReadOnly();
  const std::uint32_t* word = words.data();
  Element* dst = actual.data();
  ASSERT_EQ(call(word, offset, count, dst), expectedStatus);
  EXPECT_EQ(word - words.data(), reader.word - stream.data());
  EXPECT_EQ(offset, reader.offset);
  EXPECT_EQ(count, expectedCount);
  EXPECT_EQ(dst - actual.data(), expectedDst - expected.data());
  EXPECT_TRUE(sameArray(actual.data(), expected.data(), expected.size()));
}

}  // namespace

// ---- what an encoder wrote --------------------------------------------------------------------------------------

TYPED_TEST(Cavlc, DecodesWhatAnEncoderWrote) {
  using Element = TypeParam;
  Rng rng(sizeof(Element));
  const int nCs[] = {0, 1, 2, 3, 4, 7, 8, 16};
  for (int round = 0; round < rounds(3000); ++round)
    for (const CavlcShape shape : allShapes) {
      Call call;
      call.shape = shape;
      if (shape == CavlcShape::Residual4x4) {
        call.scan = scanOf(rng.range(0, 1));
        call.maxNumCoeff = rng.chance(2) ? 16 : 15;
      }
      call.use(tablesOf(rng.range(0, splits - 1)));

      // Some blocks in a row, behind bits of something else.
      BitWriter stream;
      const int start = rng.range(0, 31);
      stream.put(rng.next(), start);
      const int blocks = rng.range(1, 6);
      std::vector<std::vector<int>> levels;
      std::vector<std::uint32_t> nC;
      std::vector<std::size_t> ends;
      const int size = 1 << rng.range(0, 13);  // up to levels of any prefix below 16 and some beyond
      for (int b = 0; b < blocks; ++b) {
        std::vector<int> block(std::size_t(call.maxNumCoeff));
        const int density = rng.range(0, 8);
        for (int& level : block)
          if (rng.range(0, 7) < density) level = rng.chance(2) ? rng.range(-1, 1) : rng.range(-size, size);
        levels.push_back(block);
        nC.push_back(std::uint32_t(nCs[rng.range(0, 7)]));
        putCavlcBlock(stream, block,
                      shape == CavlcShape::Residual4x4   ? int(nC.back())
                      : shape == CavlcShape::ChromaDc420 ? -1
                                                         : -2,
                      codes());
        ends.push_back(stream.size());
      }
      // Look-ups may read on by a level's bits.
      std::vector<std::uint32_t> words = stream.words();
      words.push_back(0xffffffff);

      std::vector<Element> buffer(std::size_t(blocks * call.elements()), Element(12345));
      const std::uint32_t* word = words.data();
      std::int32_t offset = 31 - start;
      Element* dst = buffer.data();
      std::vector<Element> expected(buffer.size(), Element(12345));
      Element* out = expected.data();
      static const int raster422[8] = {0, 2, 1, 4, 6, 3, 5, 7};
      for (int b = 0; b < blocks; ++b) {
        call.nC = nC[std::size_t(b)];
        std::int16_t count = -1;
        ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
        const auto& block = levels[std::size_t(b)];
        int nonZero = 0;
        for (int level : block) nonZero += level != 0;
        EXPECT_EQ(count, nonZero);
        EXPECT_EQ(std::size_t(32 * (word - words.data()) + 31 - offset), ends[std::size_t(b)]);
        if (nonZero == 0) continue;
        std::fill(out, out + call.elements(), Element(0));
        for (std::size_t i = 0; i < block.size(); ++i) {
          const std::size_t element = shape == CavlcShape::ChromaDc420 ? i
                                      : shape == CavlcShape::ChromaDc422
                                          ? std::size_t(raster422[i])
                                          : std::size_t(call.scan[i + 16 - block.size()]);
          out[element] = Element(block[i]);
        }
        out += call.elements();
      }
      EXPECT_EQ(dst - buffer.data(), out - expected.data());
      ASSERT_TRUE(sameArray(buffer.data(), expected.data(), buffer.size()));
    }
}

// ---- hostile bits -----------------------------------------------------------------------------------------------

TYPED_TEST(Cavlc, AgreesWithTheModelOnAnyBits) {
  Rng rng(10 + sizeof(TypeParam));
  for (int round = 0; round < rounds(6000); ++round) {
    Call call;
    call.shape = allShapes[rng.range(0, 2)];
    call.nC = std::uint32_t(rng.range(0, 12));
    call.scan = scanOf(rng.range(0, 1));
    call.maxNumCoeff = rng.chance(2) ? 16 : 15;
    call.use(tablesOf(rng.range(0, splits - 1)));
    std::vector<std::uint32_t> stream(64, 0xffffffff);  // ones end every prefix
    const int density = rng.range(0, 3);                // of ones: a half, a quarter, an eighth, a sixteenth
    for (std::size_t i = 0; i < 48; ++i) {
      stream[i] = rng.next();
      for (int d = 0; d < density; ++d) stream[i] &= rng.next();
    }
    compareWithModel<TypeParam>(call, stream, rng.range(0, 31), rng);
    if (this->HasFailure()) FAIL() << "round " << round;
  }
}

TYPED_TEST(Cavlc, LongPrefixesFollowTheCursorsFormulas) {
  Rng rng(20 + sizeof(TypeParam));
  for (int prefix = 10; prefix < 140; ++prefix)
    for (int start = 0; start < 32; start += rng.range(1, 5)) {
      Call call;
      call.nC = 8;
      call.scan = scanOf(0);
      call.use(tablesOf(rng.range(0, splits - 1)));
      BitWriter stream;
      stream.put(rng.next(), start);
      stream.put(std::uint64_t(rng.range(0, 15) << 2 | rng.range(0, 2)), 6);  // levels without and with the bonus
      stream.put(rng.next(), 2);
      stream.put(0, prefix % 64);
      stream.put(0, prefix / 64 * 64 > 63 ? 63 : 0);
      stream.put(0, prefix / 64 * 64 > 63 ? 1 : 0);
      stream.put(1, 1);
      for (int i = 0; i < 40; ++i) stream.put(rng.next() | rng.next(), 32);
      std::vector<std::uint32_t> words = stream.words();
      words.resize(words.size() + 8, 0xffffffff);
      compareWithModel<TypeParam>(call, words, 31 - start, rng);
      if (this->HasFailure()) FAIL() << "prefix " << prefix << " at " << start;
    }
}

TYPED_TEST(Cavlc, OddTablesFollowTheCursorsFormulas) {
  Rng rng(30 + sizeof(TypeParam));
  // Both bits of the second level end a code of one bit, so that two bits are given back; counts beyond the standard's.
  const std::vector<std::int32_t> token = {
      2, 3 << 10 | 1 << 8,     7 << 16 | 5 << 8 | 1, 20 << 16 | 0 << 8 | 0, 5 << 8 | 0x80,
      1, 2 << 16 | 1 << 8 | 2, 2 << 16 | 2 << 8 | 2};
  const std::vector<std::int32_t> number = {3,      1 << 8 | 2, 1 << 8 | 2, 0, 0,          9 << 8 | 0x80,
                                            2 << 8, 14 << 8,    3 << 8,     1, 2 << 8 | 4, 0xF0F1 << 8};
  std::vector<const std::int32_t*> tables(64, number.data());
  for (int round = 0; round < rounds(4000); ++round) {
    Call call;
    call.shape = allShapes[rng.range(0, 2)];
    call.scan = scanOf(0);
    call.use(tablesOf(0));
    call.maxNumCoeff = rng.chance(2) && call.shape == CavlcShape::Residual4x4 ? 15 : call.maxNumCoeff;
    for (auto& table : call.coeffToken) table = token.data();
    if (call.shape == CavlcShape::ChromaDc420 && sizeof(TypeParam) == 2) continue;  // has codes of its own
    call.totalZeros = call.runBefore = tables.data();
    std::vector<std::uint32_t> stream(40, 0xffffffff);
    for (std::size_t i = 1; i < 30; ++i) stream[i] = rng.next();
    // The words ahead of the cursor may be given back to: the stream begins before it.
    GuardedArray<TypeParam> actual(std::size_t(call.elements()), rng.guard());
    std::vector<TypeParam> expected(actual.size(), TypeParam(-5));
    std::fill(actual.data(), actual.data() + actual.size(), TypeParam(-5));
    std::int32_t offset = rng.range(-3, 35);  // out of range as well
    BitReader reader{stream.data() + 1, offset};
    std::int16_t count = 7, expectedCount = 7;
    TypeParam *dst = actual.data(), *expectedDst = expected.data();
    const auto status = reference::h264::decodeCavlc(call.shape, reader, call.forModel(), expectedCount, expectedDst);
    const std::uint32_t* word = stream.data() + 1;
    ASSERT_EQ(call(word, offset, count, dst), status);
    EXPECT_EQ(word - stream.data(), reader.word - stream.data());
    EXPECT_EQ(offset, reader.offset);
    EXPECT_EQ(count, expectedCount);
    ASSERT_TRUE(sameArray(actual.data(), expected.data(), expected.size())) << round;
  }
}

// ---- edge cases by name -----------------------------------------------------------------------------------------

TYPED_TEST(Cavlc, ABlockWithoutCoefficientsLeavesTheDestinationAlone) {
  for (const CavlcShape shape : allShapes) {
    Call call;
    call.shape = shape;
    call.scan = scanOf(0);
    call.use(tablesOf(1));
    BitWriter stream;
    const int nC = shape == CavlcShape::Residual4x4 ? 0 : shape == CavlcShape::ChromaDc420 ? -1 : -2;
    const std::vector<int> none(std::size_t(call.elements()), 0);
    std::vector<int> one = none;
    one[2] = -5;
    putCavlcBlock(stream, none, nC, codes());
    putCavlcBlock(stream, one, nC, codes());
    stream.put(~0ull, 64);
    std::vector<TypeParam> block(std::size_t(call.elements()), 9);
    const std::uint32_t* word = stream.words().data();
    std::int32_t offset = 31;
    std::int16_t count = 5;
    TypeParam* dst = block.data();
    ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(dst, block.data());
    EXPECT_EQ(block, std::vector<TypeParam>(block.size(), 9));
    ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(dst, block.data() + block.size());
    EXPECT_EQ(std::count(block.begin(), block.end(), TypeParam(-5)), 1);
  }
}

TYPED_TEST(Cavlc, TheSixBitCode) {
  for (std::uint32_t code = 0; code < 64; ++code) {
    const int ones = int(code & 3), total = code == 3 ? 0 : int(code >> 2) + 1;
    if (ones > total && code != 3) continue;
    std::vector<std::uint32_t> words(16, 0xffffffff);
    words[0] = code << 26 | 0x3ffffff;
    Call call;
    call.nC = 8;
    call.scan = scanOf(0);
    call.use(tablesOf(1));
    TypeParam block[16] = {};
    const std::uint32_t* word = words.data();
    std::int32_t offset = 31;
    std::int16_t count = -1;
    TypeParam* dst = block;
    ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
    EXPECT_EQ(count, total) << code;
  }
}

TYPED_TEST(Cavlc, FifteenCoefficientsBeginAtScanPositionOne) {
  BitWriter stream;
  std::vector<int> levels(15);
  levels[0] = 3;
  putCavlcBlock(stream, levels, 0, codes());
  stream.put(~0ull, 64);
  Call call;
  call.maxNumCoeff = 15;
  call.scan = scanOf(0);
  call.use(tablesOf(1));
  TypeParam block[16];
  std::fill(block, block + 16, TypeParam(8));
  const std::uint32_t* word = stream.words().data();
  std::int32_t offset = 31;
  std::int16_t count;
  TypeParam* dst = block;
  ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(block[i], i == 1 ? 3 : 0) << i;
}

TYPED_TEST(Cavlc, SixteenCoefficientsInABlockOfFifteenStayInside) {
  BitWriter stream;
  std::vector<int> levels(16);
  for (int i = 0; i < 16; ++i) levels[std::size_t(i)] = i + 1;
  putCavlcBlock(stream, levels, 0, codes());
  stream.put(~0ull, 64);
  Call call;
  call.maxNumCoeff = 15;
  call.scan = scanOf(0);
  call.use(tablesOf(1));
  GuardedArray<TypeParam> block(16, Guard::Behind);
  const std::uint32_t* word = stream.words().data();
  std::int32_t offset = 31;
  std::int16_t count;
  TypeParam* dst = block.data();
  ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
  EXPECT_EQ(count, 16);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(block[std::size_t(scanOf(0)[i])], i == 0 ? 0 : i) << i;
}

TYPED_TEST(Cavlc, ARunAboveTheZerosLeftEndsThem) {
  // Three levels, ten zeros by a crooked total_zeros, then runs of 12: the first takes all ten.
  const std::int32_t total[] = {1, 10 << 8 | 1, 10 << 8 | 1}, run[] = {1, 12 << 8 | 1, 12 << 8 | 1};
  std::vector<const std::int32_t*> totals(17, total), runs(17, run);
  BitWriter stream;
  stream.put(detail::vlcBits(codes().coeffToken.at(0), 3 << 8 | 3));
  stream.put(0b010, 3);
  stream.put(0, 32);
  Call call;
  call.scan = scanOf(0);
  call.use(tablesOf(1));
  call.totalZeros = totals.data();
  call.runBefore = runs.data();
  TypeParam block[16];
  const std::uint32_t* word = stream.words().data();
  std::int32_t offset = 31;
  std::int16_t count;
  TypeParam* dst = block;
  ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
  EXPECT_EQ(dst, block + 16);
  for (int p = 0; p < 16; ++p) EXPECT_EQ(block[scanOf(0)[p]], p == 12 || p == 0 ? 1 : p == 1 ? -1 : 0) << p;
}

TYPED_TEST(Cavlc, AllCoefficientsNeedNoTotalZeros) {
  for (const CavlcShape shape : allShapes) {
    Call call;
    call.shape = shape;
    call.scan = scanOf(0);
    call.use(tablesOf(1));
    BitWriter stream;
    std::vector<int> levels(std::size_t(call.elements()), 2);
    putCavlcBlock(stream, levels,
                  shape == CavlcShape::Residual4x4   ? 0
                  : shape == CavlcShape::ChromaDc420 ? -1
                                                     : -2,
                  codes());
    const std::size_t end = stream.size();
    stream.put(0, 32);
    const std::int32_t* const none[17] = {};
    call.totalZeros = call.runBefore = none;
    TypeParam block[16];
    const std::uint32_t* word = stream.words().data();
    std::int32_t offset = 31;
    std::int16_t count;
    TypeParam* dst = block;
    ASSERT_EQ(call(word, offset, count, dst), zvpStatusOk);
    EXPECT_EQ(count, call.elements());
    EXPECT_EQ(std::size_t(32 * (word - stream.words().data()) + 31 - offset), end);
  }
}

// ---- the short codes of the 16-bit 4:2:0 member -----------------------------------------------------------------

TEST(CavlcChromaDc, ShortCodesNeedNoTablesAndNoWordBehind) {
  const int positions[8] = {3, 2, 1, 1, 0, 0, 0, 0}, bits[8] = {5, 5, 4, 4, 3, 3, 3, 3};
  for (std::uint32_t peek = 8; peek < 32; ++peek)
    for (int start = 0; start < 32; ++start) {
      const int length = peek < 16 ? 2 : bits[peek & 7];
      std::vector<std::uint32_t> all(2);
      for (int i = 0; i < 5; ++i)
        if (peek >> (4 - i) & 1) all[std::size_t((start + i) / 32)] |= 1u << (31 - (start + i) % 32);
      GuardedArray<std::uint32_t> words(start + length > 32 ? 2 : 1, Guard::Behind);
      std::copy_n(all.data(), words.size(), words.data());
      words.bytes().makeReadOnly();
      GuardedArray<std::int16_t> block(4, Guard::Behind);
      const std::int16_t untouched = 100;
      std::fill(block.data(), block.data() + 4, untouched);
      const std::uint32_t* word = words.data();
      std::int32_t offset = 31 - start;
      std::int16_t count = 9;
      std::int16_t* dst = block.data();
      ASSERT_EQ(zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(&word, &offset, &count, peek < 16 ? nullptr : &dst, nullptr,
                                                         nullptr, nullptr),
                zvpStatusOk);
      EXPECT_EQ(32 * (word - words.data()) + 31 - offset, start + length);
      EXPECT_EQ(count, peek < 16 ? 0 : 1);
      EXPECT_EQ(dst - block.data(), peek < 16 ? 0 : 4);
      for (int i = 0; i < 4; ++i) {
        if (peek < 16) {
          EXPECT_EQ(block[std::size_t(i)], untouched);
        } else {
          EXPECT_EQ(block[std::size_t(i)], i != positions[peek & 7] ? 0 : peek & 8 ? -1 : 1);
        }
      }
    }
}

TEST(CavlcChromaDc, OrderOfTests) {
  const CavlcVlcTables& tables = tablesOf(1);
  const std::uint32_t one = 0x80000000, none = 0x40000000, long1 = 0x3fffffff;
  std::int32_t offset = 31;
  std::int16_t count = 3, block[4] = {1, 2, 3, 4}, *dst = block, *noBlock = nullptr;
  const std::uint32_t *word = &one, *noWord = nullptr;
  const auto call = zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s;
  const auto token = tables.coeffToken420;
  const auto zeros = tables.totalZeros420;
  const auto runs = tables.runBefore;
  EXPECT_EQ(call(nullptr, &offset, &count, &dst, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&noWord, &offset, &count, &dst, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, nullptr, &count, &dst, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, nullptr, &dst, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, nullptr, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, &noBlock, token, zeros, runs), zvpStatusNullPointer);
  word = &none;
  EXPECT_EQ(call(&word, &offset, &count, nullptr, nullptr, nullptr, nullptr), zvpStatusOk);
  EXPECT_EQ(count, 0);
  offset = 31;
  count = 3;
  word = &long1;
  EXPECT_EQ(call(&word, &offset, &count, nullptr, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, &noBlock, token, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, &dst, nullptr, zeros, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, &dst, token, nullptr, runs), zvpStatusNullPointer);
  EXPECT_EQ(call(&word, &offset, &count, &dst, token, zeros, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(word, &long1);
  EXPECT_EQ(offset, 31);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(dst, block);
  EXPECT_EQ(block[2], 3);
}

// ---- refusals ---------------------------------------------------------------------------------------------------

namespace {

// Each argument null in turn, with what else is wrong behind it.
template <class Decode>
void nullsFirst(Decode decode, int pointers) {
  for (int null = 0; null < pointers; ++null) EXPECT_EQ(decode(null), zvpStatusNullPointer) << "argument " << null;
}

}  // namespace

TYPED_TEST(Cavlc, RefusesInOrder) {
  const CavlcVlcTables& tables = tablesOf(0);
  const std::uint32_t stream[4] = {0x12345678, ~0u, ~0u, ~0u};
  for (const CavlcShape shape : allShapes) {
    if (shape == CavlcShape::ChromaDc420 && sizeof(TypeParam) == 2) continue;  // CavlcChromaDc.OrderOfTests
    const int pointers = shape == CavlcShape::Residual4x4 ? 10 : 9;
    TypeParam block[16];
    std::fill(block, block + 16, TypeParam(4));
    std::int32_t offset = 31;
    std::int16_t count = 3;
    Call good;
    good.shape = shape;
    good.use(tables);
    const auto decode = [&](int null) {
      const std::uint32_t* word = null == 8 ? nullptr : stream;
      TypeParam* dst = null == 7 ? nullptr : block;
      const auto a = null == 0 ? nullptr : &word;
      const auto b = null == 1 ? nullptr : &offset;
      const auto c = null == 2 ? nullptr : &count;
      const auto d = null == 3 ? nullptr : &dst;
      const auto e4 = null == 4 ? nullptr : good.coeffToken;
      const auto e = null == 4 ? nullptr : good.coeffToken[0];
      const auto f = null == 5 ? nullptr : good.totalZeros;
      const auto g = null == 6 ? nullptr : good.runBefore;
      const auto scan = null == 9 ? nullptr : scanOf(0);
      const std::uint32_t nC = null >= 0 ? 0x80000000 : 0;
      const std::int16_t max = null >= 0 ? 4 : 16;
      if constexpr (sizeof(TypeParam) == 2) {
        if (shape == CavlcShape::Residual4x4)
          return zvpiDecodeCAVLCCoeffs_H264_1u16s(a, b, c, d, nC, max, e4, f, g, scan);
        return zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(a, b, c, d, e, f, g);
      } else {
        if (shape == CavlcShape::Residual4x4)
          return zvpiDecodeCAVLCCoeffs_H264_1u32s(a, b, c, d, nC, max, e4, f, g, scan);
        if (shape == CavlcShape::ChromaDc420) return zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(a, b, c, d, e, f, g);
        return zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(a, b, c, d, e, f, g);
      }
    };
    nullsFirst(decode, pointers);
    EXPECT_EQ(offset, 31);
    EXPECT_EQ(count, 3);
    for (const TypeParam element : block) EXPECT_EQ(element, 4);
    EXPECT_EQ(decode(-1), zvpStatusOk);
  }

  // Numbers of the 4x4 members, and the late test of the chosen table.
  for (int choice = 0; choice < 3; ++choice) {
    Call call;
    call.scan = scanOf(0);
    call.use(tables);
    call.coeffToken[choice] = nullptr;
    const std::uint32_t nCs[3][2] = {{0, 1}, {2, 3}, {4, 7}};
    TypeParam block[16] = {};
    TypeParam* dst = block;
    std::int32_t offset = 31;
    std::int16_t count = 3;
    const std::uint32_t* word = stream;
    for (const std::uint32_t nC : nCs[choice]) {
      call.nC = nC;
      for (const int max : {14, 17, 0, -16, 4}) {
        call.maxNumCoeff = std::int16_t(max);
        EXPECT_EQ(call(word, offset, count, dst), zvpStatusOutOfRange);
      }
      call.maxNumCoeff = 15;
      call.nC = nC | 0x80000000;
      EXPECT_EQ(call(word, offset, count, dst), zvpStatusOutOfRange);
      call.nC = nC;
      EXPECT_EQ(call(word, offset, count, dst), zvpStatusNullPointer);
    }
    EXPECT_EQ(word, stream);
    EXPECT_EQ(offset, 31);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(dst, block);
    call.nC = 0x7fffffff;  // far above 8
    EXPECT_EQ(call(word, offset, count, dst), zvpStatusOk);
  }
}

TYPED_TEST(Cavlc, ABadCodeRestoresTheCursor) {
  const std::int32_t bad[] = {1, 0xF0F1 << 8, 0xF0F1 << 8};
  std::vector<const std::int32_t*> allBad(17, bad);
  for (const CavlcShape shape : allShapes)
    for (int where = 0; where < 3; ++where) {
      Call call;
      call.shape = shape;
      call.scan = scanOf(0);
      call.use(tablesOf(1));
      BitWriter stream;
      std::vector<int> levels(std::size_t(call.elements()));
      levels[1] = 5;
      levels[3] = -2;
      putCavlcBlock(stream, levels,
                    shape == CavlcShape::Residual4x4   ? 0
                    : shape == CavlcShape::ChromaDc420 ? -1
                                                       : -2,
                    codes());
      stream.put(~0ull, 64);
      if (where == 0)
        for (auto& table : call.coeffToken) table = bad;
      if (where == 1) call.totalZeros = allBad.data();
      if (where == 2) call.runBefore = allBad.data();
      TypeParam block[16];
      std::fill(block, block + 16, TypeParam(6));
      const std::uint32_t* word = stream.words().data();
      std::int32_t offset = 31;
      std::int16_t count = 9;
      TypeParam* dst = block;
      EXPECT_EQ(call(word, offset, count, dst), zvpStatusBadVlcInput);
      EXPECT_EQ(word, stream.words().data());
      EXPECT_EQ(offset, 31);
      EXPECT_EQ(dst, block);
      EXPECT_EQ(count, where == 0 ? 9 : 2);     // known once the token is good
      EXPECT_EQ(block[0], where == 0 ? 6 : 0);  // zeroed by then
      EXPECT_EQ(block[call.elements() - 1], where == 0 ? 6 : 0);
    }
}

TYPED_TEST(Cavlc, AMissingTableIsFoundLate) {
  const std::int32_t* const none[17] = {};
  for (const CavlcShape shape : {CavlcShape::Residual4x4, CavlcShape::ChromaDc420})
    for (int where = 1; where < 3; ++where) {
      Call call;
      call.shape = shape;
      call.scan = scanOf(0);
      call.use(tablesOf(0));
      BitWriter stream;
      std::vector<int> levels(std::size_t(call.elements()));
      levels[1] = 5;
      levels[3] = -2;
      const int nC = shape == CavlcShape::Residual4x4 ? 0 : -1;
      putCavlcBlock(stream, levels, nC, codes());
      stream.put(~0ull, 64);
      (where == 1 ? call.totalZeros : call.runBefore) = none;
      TypeParam block[16];
      const std::uint32_t* word = stream.words().data();
      std::int32_t offset = 31;
      std::int16_t count = 9;
      TypeParam* dst = block;
      EXPECT_EQ(call(word, offset, count, dst), zvpStatusNullPointer);
      EXPECT_EQ(count, 2);
      EXPECT_EQ(dst, block);
      // Behind coeff_token and levels, and behind total_zeros: as far as the model comes without looking for tables.
      BitReader reader{stream.words().data(), 31};
      std::int16_t modelCount;
      std::vector<TypeParam> modelBlock(16);
      TypeParam* modelDst = modelBlock.data();
      EXPECT_EQ(reference::h264::decodeCavlc(shape, reader, call.forModel(), modelCount, modelDst),
                zvpStatusNullPointer);
      EXPECT_EQ(word, reader.word);
      EXPECT_EQ(offset, reader.offset);
      EXPECT_NE(offset, 31);
    }
}

// ---- the cursor -------------------------------------------------------------------------------------------------

TEST(CavlcCursor, MovesOnWhenAReadEndsAtBitZero) {
  // Offset 4 and a code of five bits: the next word is not needed, but the pointer stands on it.
  GuardedArray<std::uint32_t> words(1, Guard::Behind);
  words[0] = 0b00101;  // codeNum 4
  const std::uint32_t* word = words.data();
  std::int32_t offset = 4, value = -1;
  ASSERT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(&word, &offset, &value, 0), zvpStatusOk);
  EXPECT_EQ(value, 4);
  EXPECT_EQ(word, words.data() + 1);
  EXPECT_EQ(offset, 31);
}

TEST(ExpGolomb, ReadsEveryLengthAtEveryOffset) {
  Rng rng(40);
  for (int start = 0; start < 32; ++start)
    for (int zeros = 0; zeros <= 34; ++zeros)
      for (int round = 0; round < rounds(4); ++round) {
        BitWriter stream;
        stream.put(rng.next(), start);
        stream.put(0, zeros);
        stream.put(1, 1);
        const std::uint64_t suffix = zeros == 0 || zeros > 32 ? 0
                                     : round == 0             ? 0
                                     : round == 1             ? (1ull << zeros) - 1
                                                              : rng.next() & ((1ull << zeros) - 1);
        if (zeros <= 32) stream.put(suffix, zeros);
        // A bad code may be read to the end of the word of its 33rd zero, no further.
        const int needed = zeros <= 32 ? int(stream.size()) : start + 33;
        GuardedArray<std::uint32_t> words(std::size_t((needed + 31) / 32), rng.guard());
        std::copy_n(stream.words().data(), words.size(), words.data());
        words.bytes().makeReadOnly();

        const std::uint64_t codeNum = zeros == 32 ? suffix : (1ull << (zeros & 31)) - 1 + suffix;
        const std::int64_t signedValue = codeNum % 2 != 0 ? std::int64_t(codeNum / 2 + 1) : -std::int64_t(codeNum / 2);
        for (const int isSigned : {0, 1, 0x100, -1}) {
          const std::uint32_t* word = words.data();
          std::int32_t offset = 31 - start, wide = 1234;
          const auto status = zvpiDecodeExpGolombOne_H264_1u32s(&word, &offset, &wide, isSigned);
          const std::uint32_t* word16 = words.data();
          std::int32_t offset16 = 31 - start;
          std::int16_t narrow = 1234;
          EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(&word16, &offset16, &narrow, isSigned), status);
          EXPECT_EQ(word16, word);
          EXPECT_EQ(offset16, offset);
          if (zeros > 32) {
            EXPECT_EQ(status, zvpStatusBadVlcInput);
            EXPECT_EQ(word, words.data());
            EXPECT_EQ(offset, 31 - start);
            EXPECT_EQ(wide, 1234);
            EXPECT_EQ(narrow, 1234);
            continue;
          }
          ASSERT_EQ(status, zvpStatusOk);
          EXPECT_EQ(32 * (word - words.data()) + 31 - offset, std::ptrdiff_t(stream.size()));
          if (!(zeros == 32 && codeNum == 0xffffffff)) {  // codeNum + 1 is 0 there
            EXPECT_EQ(wide, std::int32_t(isSigned != 0 ? signedValue : std::int64_t(codeNum)));
            EXPECT_EQ(narrow, std::int16_t((isSigned & 0xff) != 0 ? signedValue : std::int64_t(codeNum)));
          }
          BitReader reader{words.data(), 31 - start};
          std::uint32_t model;
          ASSERT_EQ(reference::h264::decodeExpGolomb(reader, model), zvpStatusOk);
          EXPECT_EQ(std::uint32_t(wide), isSigned == 0 ? model - 1 : model % 2 != 0 ? 0 - model / 2 : model / 2);
        }
      }
}

TEST(ExpGolomb, RefusesInOrder) {
  const std::uint32_t stream[2] = {0, 0};
  const std::uint32_t *word = stream, *noWord = nullptr;
  std::int32_t offset = 32, wide = 7;
  std::int16_t narrow = 7;
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(nullptr, &offset, &wide, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(&noWord, &offset, &wide, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(&word, nullptr, &wide, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(&word, &offset, nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(nullptr, &offset, &narrow, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(&noWord, &offset, &narrow, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(&word, nullptr, &narrow, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(&word, &offset, nullptr, 0), zvpStatusNullPointer);
  for (const std::int32_t bad : {32, -1, 1 << 30, std::int32_t(0x80000000)}) {
    offset = bad;
    EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u32s(&word, &offset, &wide, 0), zvpStatusBadArgument);
    EXPECT_EQ(zvpiDecodeExpGolombOne_H264_1u16s(&word, &offset, &narrow, 0), zvpStatusBadArgument);
    EXPECT_EQ(offset, bad);
  }
  EXPECT_EQ(word, stream);
  EXPECT_EQ(wide, 7);
  EXPECT_EQ(narrow, 7);
}
