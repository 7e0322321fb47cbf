// Forward quantization, with and without the transform, against the models.
#include "reference/h264/quantize.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/compare.h"
#include "support/random.h"
#include "unit/h264/blocks.h"
#include "zvpvc.h"

using namespace zvptest;
using namespace zvptest::blocks;
using reference::quantize::Levels;
using reference::transform::Block;
using std::int16_t;
using std::int32_t;
using std::int8_t;
using std::uint8_t;
namespace model = reference::quantize;

namespace {

Block anyScan(Rng& rng) {
  Block scan(16);
  std::iota(scan.begin(), scan.end(), 0);
  for (std::size_t i = 15; i > 0; --i) std::swap(scan[i], scan[std::size_t(rng.range(0, int(i)))]);
  return scan;
}

// Factors as scaling lists give them, or of the whole range of their type; none for the default ones.
template <class T>
Block anyFactors(Rng& rng, bool always) {
  if (!always && rng.chance(2)) return {};
  if (rng.chance(3)) return anyElements<T>(16, rng);
  Block factors(16);
  for (auto& f : factors) f = rng.range(10, 14000);
  return factors;
}

// A member of the set without transforms.
template <class C, class L, class F>
void checkPlain(zvpStatus (*quantize)(const C*, L*, int32_t*, int32_t*, const F*, const int16_t*, int32_t, int32_t),
                int mostQp, bool needsTable) {
  Rng rng{std::uint64_t(5200 + mostQp + int(sizeof(L)) + needsTable)};
  for (int round = 0; round < rounds(1200); ++round) {
    const Block c = anyElements<C>(16, rng, 20000), scan = anyScan(rng), factors = anyFactors<F>(rng, needsTable);
    const int qp = !needsTable && rng.chance(20) ? rng.range(-100, -1) : rng.range(0, mostQp);
    const int intra = rng.chance(2) ? 0 : rng.chance(2) ? 1 : -1;
    Elements<C> src(c, rng);
    Elements<L> dst(Block(16, 1), rng);
    Elements<F> table(factors.empty() ? Block(16) : factors, rng);
    Elements<int16_t> order(scan, rng);
    Elements<int32_t> number({77}, rng), last({77}, rng);
    src.makeReadOnly();
    table.makeReadOnly();
    order.makeReadOnly();
    ASSERT_EQ(quantize(src.data(), dst.data(), number.data(), last.data(), factors.empty() ? nullptr : table.data(),
                       order.data(), qp, intra),
              zvpStatusOk);
    const Levels expected = model::plain(c, factors, scan, qp, intra != 0, 8 * int(sizeof(L)));
    ASSERT_TRUE(dst.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(number.same({expected.number}));
    ASSERT_TRUE(last.same({expected.last}));
  }
  const C src[16] = {};
  L dst[16] = {5};
  const F table[16] = {};
  const int16_t scan[16] = {};
  int32_t number = 6, last = 7;
  EXPECT_EQ(quantize(nullptr, dst, &number, &last, table, scan, 99, 0), zvpStatusNullPointer);
  EXPECT_EQ(quantize(src, nullptr, &number, &last, table, scan, 99, 0), zvpStatusNullPointer);
  EXPECT_EQ(quantize(src, dst, nullptr, &last, table, scan, 99, 0), zvpStatusNullPointer);
  EXPECT_EQ(quantize(src, dst, &number, nullptr, table, scan, 99, 0), zvpStatusNullPointer);
  EXPECT_EQ(quantize(src, dst, &number, &last, nullptr, scan, 99, 0),
            needsTable ? zvpStatusNullPointer : zvpStatusOutOfRange);
  EXPECT_EQ(quantize(src, dst, &number, &last, table, nullptr, 99, 0), zvpStatusNullPointer);
  EXPECT_EQ(quantize(src, dst, &number, &last, table, scan, mostQp + 1, 0), zvpStatusOutOfRange);
  EXPECT_TRUE(dst[0] == 5 && number == 6 && last == 7);
  // The gap that stays: a negative QP is refused by one member only.
  EXPECT_EQ(quantize(src, dst, &number, &last, table, scan, -1, 0), needsTable ? zvpStatusOutOfRange : zvpStatusOk);
}

}  // namespace

TEST(Quantize, PlainBlocks) {
  checkPlain<int16_t, int16_t, int16_t>(zvpiQuantizeResidual4x4Fwd_H264_16s_C1, 51, false);
  checkPlain<int32_t, int32_t, int32_t>(zvpiQuantizeResidual4x4Fwd_H264_32s_C1, 87, false);
  checkPlain<int16_t, int32_t, int16_t>(zvpiQuantizeResidual4x4Fwd_H264_16s32s_C1, 51, true);
}

TEST(Quantize, BaselineBlock) {
  Rng rng(5210);
  int refused = 0;
  for (int round = 0; round < rounds(2000); ++round) {
    const Block residuals = anyElements<int16_t>(16, rng, 700), scan = anyScan(rng);
    const int qp = rng.chance(2) ? rng.range(0, 51) : rng.range(0, 12);
    const int intra = rng.chance(2) ? 0 : rng.chance(2) ? 1 : 256;  // the low byte counts
    Elements<int16_t> block(residuals, rng), order(scan, rng);
    order.makeReadOnly();
    Elements<int8_t> number({77}, rng);
    Elements<uint8_t> last({77}, rng);
    const Levels expected = model::baselineBlock(residuals, scan, qp, intra == 1);
    ASSERT_EQ(
        zvpiTransformQuantResidual_H264_16s_C1I(block.data(), qp, number.data(), intra, order.data(), last.data()),
        expected.tooLarge ? zvpStatusValueTooLarge : zvpStatusOk);
    Block content = expected.levels;  // what is not done is transformed
    content.insert(content.end(), expected.transformed.begin() + std::ptrdiff_t(content.size()),
                   expected.transformed.end());
    ASSERT_TRUE(block.same(content)) << "QP " << qp;
    ASSERT_TRUE(number.same({expected.number}));
    ASSERT_TRUE(last.same({expected.last}));
    refused += expected.tooLarge;
  }
  EXPECT_GT(refused, rounds(2000) / 50);
  int16_t block[16] = {9}, scan[16] = {};
  int8_t number = 3;
  uint8_t last = 4;
  const auto call = zvpiTransformQuantResidual_H264_16s_C1I;
  EXPECT_EQ(call(nullptr, 99, &number, 0, scan, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, 99, nullptr, 0, scan, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, 99, &number, 0, nullptr, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, 99, &number, 0, scan, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, 52, &number, 0, scan, &last), zvpStatusOutOfRange);
  EXPECT_EQ(call(block, -1, &number, 0, scan, &last), zvpStatusOutOfRange);
  EXPECT_TRUE(block[0] == 9 && number == 3 && last == 4);
}

TEST(Quantize, BaselineLumaDc) {
  Rng rng(5211);
  int refused = 0;
  for (int round = 0; round < rounds(2000); ++round) {
    const Block dc = anyElements<int16_t>(16, rng), given = anyElements<int16_t>(16, rng, 30000), scan = anyScan(rng);
    const int qp = rng.chance(2) ? rng.range(0, 51) : rng.range(0, 18), transform = rng.pick<int>({0, 1, -1, 256});
    Elements<int16_t> block(dc, rng), transformed(given, rng), order(scan, rng);
    const bool needTransform = (transform & 255) != 0;
    if (!needTransform) transformed.makeReadOnly();
    order.makeReadOnly();
    Elements<int8_t> number({77}, rng);
    Elements<uint8_t> last({77}, rng);
    const Levels expected = model::baselineLumaDc(dc, given, needTransform, scan, qp);
    ASSERT_EQ(zvpiTransformQuantLumaDC_H264_16s_C1I(block.data(), transformed.data(), qp, number.data(), transform,
                                                    order.data(), last.data()),
              expected.tooLarge ? zvpStatusValueTooLarge : zvpStatusOk);
    ASSERT_TRUE(block.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(transformed.same(expected.transformed));
    ASSERT_TRUE(number.same({expected.number}));
    ASSERT_TRUE(last.same({expected.last}));
    refused += expected.tooLarge;
  }
  EXPECT_GT(refused, rounds(2000) / 50);
  int16_t block[16] = {9}, transformed[16] = {8}, scan[16] = {};
  int8_t number = 3;
  uint8_t last = 4;
  const auto call = zvpiTransformQuantLumaDC_H264_16s_C1I;
  EXPECT_EQ(call(nullptr, transformed, 99, &number, 1, scan, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, nullptr, 99, &number, 1, scan, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, nullptr, 1, scan, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, &number, 1, nullptr, &last), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, &number, 1, scan, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 52, &number, 1, scan, &last), zvpStatusOutOfRange);
  EXPECT_EQ(call(block, transformed, -1, &number, 1, scan, &last), zvpStatusOutOfRange);
  EXPECT_TRUE(block[0] == 9 && transformed[0] == 8 && number == 3 && last == 4);
}

TEST(Quantize, BaselineChromaDc) {
  Rng rng(5212);
  int refused = 0;
  for (int round = 0; round < rounds(2000); ++round) {
    const Block dc = anyElements<int16_t>(4, rng), given = anyElements<int16_t>(4, rng, 30000);
    const int qp = rng.range(0, 39), transform = rng.pick<int>({0, 1, -1, 256}), intra = rng.pick<int>({0, 1, 256});
    Elements<int16_t> block(dc, rng), transformed(given, rng);
    const bool needTransform = (transform & 255) != 0;
    if (!needTransform) transformed.makeReadOnly();
    Elements<int8_t> number({77}, rng);
    const Levels expected = model::baselineChromaDc(dc, given, needTransform, qp, intra == 1);
    ASSERT_EQ(
        zvpiTransformQuantChromaDC_H264_16s_C1I(block.data(), transformed.data(), qp, number.data(), intra, transform),
        expected.tooLarge ? zvpStatusValueTooLarge : zvpStatusOk);
    ASSERT_TRUE(block.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(transformed.same(expected.transformed));
    ASSERT_TRUE(number.same({expected.number}));
    refused += expected.tooLarge;
  }
  EXPECT_GT(refused, rounds(2000) / 50);
  int16_t block[4] = {9}, transformed[4] = {8};
  int8_t number = 3;
  const auto call = zvpiTransformQuantChromaDC_H264_16s_C1I;
  EXPECT_EQ(call(nullptr, transformed, 99, &number, 1, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(block, nullptr, 99, &number, 1, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, nullptr, 1, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 40, &number, 1, 1), zvpStatusOutOfRange);
  EXPECT_EQ(call(block, transformed, -1, &number, 1, 1), zvpStatusOutOfRange);
  EXPECT_TRUE(block[0] == 9 && transformed[0] == 8 && number == 3);
}

namespace {

// The coefficient at element 0 whose level is this at QP 0: (c * 13107 + a third) >> shift.
int coefficientFor(int level, int shift) { return int((std::int64_t(level) << shift) / 13107) + 1; }

const int16_t raster[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

zvpStatus quantizeDcOfBlock(int level, int8_t& number, int16_t (&block)[16]) {
  // A flat residual of r has 16 r as its DC: the nearest below the level's coefficient, made up by single samples.
  const int target = coefficientFor(std::abs(level), 15) * (level < 0 ? -1 : 1);
  for (int i = 0; i < 16; ++i) block[i] = int16_t(target / 16 + (i < std::abs(target % 16) ? (level < 0 ? -1 : 1) : 0));
  uint8_t last;
  return zvpiTransformQuantResidual_H264_16s_C1I(block, 0, &number, 0, raster, &last);
}
zvpStatus quantizeChromaDc(int level, int8_t& number, int16_t (&dc)[4]) {
  int16_t transformed[4] = {int16_t(coefficientFor(std::abs(level), 16) * (level < 0 ? -1 : 1)), 0, 0, 0};
  return zvpiTransformQuantChromaDC_H264_16s_C1I(dc, transformed, 0, &number, 0, 0);
}

}  // namespace

TEST(Quantize, LimitOfLevels) {
  int8_t number = 0;
  int16_t block[16], dc[4] = {};
  EXPECT_EQ(quantizeDcOfBlock(2063, number, block), zvpStatusOk);
  EXPECT_EQ(block[0], 2063);
  EXPECT_EQ(quantizeDcOfBlock(2064, number, block), zvpStatusValueTooLarge);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(quantizeDcOfBlock(-3000, number, block), zvpStatusOk);
  EXPECT_EQ(block[0], -3000);
  EXPECT_EQ(quantizeChromaDc(2063, number, dc), zvpStatusOk);
  EXPECT_EQ(dc[0], 2063);
  EXPECT_EQ(quantizeChromaDc(-2063, number, dc), zvpStatusOk);
  EXPECT_EQ(dc[0], -2063);
  EXPECT_EQ(quantizeChromaDc(2064, number, dc), zvpStatusValueTooLarge);
  EXPECT_EQ(quantizeChromaDc(-3000, number, dc), zvpStatusValueTooLarge);
}

TEST(Quantize, CountsTellOfTheDc) {
  int16_t block[16] = {};
  int8_t number = 9;
  uint8_t last = 9;
  EXPECT_EQ(zvpiTransformQuantResidual_H264_16s_C1I(block, 20, &number, 1, raster, &last), zvpStatusOk);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(last, 0);
  std::fill(block, block + 16, int16_t(40));  // a DC alone
  EXPECT_EQ(zvpiTransformQuantResidual_H264_16s_C1I(block, 20, &number, 1, raster, &last), zvpStatusOk);
  EXPECT_EQ(number, -1);
  EXPECT_GT(block[0], 0);
}
