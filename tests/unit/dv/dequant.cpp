// DV dequantization and the reduced transform.
#include "reference/dv/dequant.h"

#include <gtest/gtest.h>

#include <functional>

#include "reference/mpeg/dct.h"
#include "support/compare.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::dv;
using model::Block;
using std::int16_t;
using std::int32_t;

namespace {

Block randomBlock(Rng& rng) {
  const int limit = rng.pick<int>({1, 64, 2048, 16384, 32768});
  return randomValues<int16_t>(64, rng, anyStyle(rng), -limit, limit - 1);
}

int32_t randomStep(Rng& rng) {
  if (rng.chance(4)) return int32_t(rng.next());
  if (rng.chance(6)) return rng.pick<int32_t>({INT32_MIN, INT32_MAX, -1, 0, 65535, 65536, -32768});
  return rng.range(0, 512);
}

// Any place for each of block and two tables in one buffer, so that they may be each other, overlap or stand apart.
using InPlace = std::function<zvpStatus(int16_t* block, const int16_t* a, const int16_t* b)>;
using Expected = std::function<Block(const Block& block, const Block& a, const Block& b)>;
void expectWithOverlaps(Rng& rng, const InPlace& member, const Expected& expected) {
  for (int round = 0; round < rounds(1000); ++round) {
    const int places = rng.pick<int>({1, 9, 64, 200});
    const auto values = randomValues<int16_t>(std::size_t(63 + places), rng, anyStyle(rng), -32768, 32767);
    const int at = rng.range(0, places - 1), a = rng.range(0, places - 1), b = rng.range(0, places - 1);
    const auto part = [&](int first) { return Block(values.begin() + first, values.begin() + first + 64); };
    const Block wanted = expected(part(at), part(a), part(b));
    auto all = values;
    std::copy(wanted.begin(), wanted.end(), all.begin() + at);
    Placed<int16_t> buffer(values, rng);
    ASSERT_EQ(member(buffer.data() + at, buffer.data() + a, buffer.data() + b), zvpStatusOk);
    ASSERT_TRUE(sameArray(buffer.values().data(), all.data(), all.size())) << at << " " << a << " " << b;
  }
}

}  // namespace

TEST(DvDequant, OneTableMatchesTheModel) {
  Rng rng(1);
  for (int round = 0; round < rounds(4000); ++round) {
    const Block block = randomBlock(rng), factors = randomBlock(rng);
    Placed<int16_t> data(block, rng), table(factors, rng);
    ASSERT_EQ(zvpiQuantInv_DV_16s_C1I(data.data(), table.readOnly().data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(data.values().data(), model::dequantize(block, factors).data(), 64));
  }
  expectWithOverlaps(
      rng, [](int16_t* block, const int16_t* a, const int16_t*) { return zvpiQuantInv_DV_16s_C1I(block, a); },
      [](const Block& block, const Block& a, const Block&) { return model::dequantize(block, a); });
}

TEST(DvDequant, WeightsAndStepsMatchTheModel) {
  Rng rng(2);
  for (int round = 0; round < rounds(4000); ++round) {
    const Block block = randomBlock(rng), weights = randomBlock(rng), steps = randomBlock(rng);
    Placed<int16_t> data(block, rng), w(weights, rng), q(steps, rng);
    ASSERT_EQ(zvpiQuantWeightBlockInv_DV_16s_C1I(data.data(), w.readOnly().data(), q.readOnly().data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(data.values().data(), model::dequantizeWeighted(block, weights, steps).data(), 64));
  }
  expectWithOverlaps(rng, zvpiQuantWeightBlockInv_DV_16s_C1I, model::dequantizeWeighted);
}

TEST(DvDequant, Dv100MatchesTheModel) {
  Rng rng(3);
  for (int round = 0; round < rounds(4000); ++round) {
    const Block block = randomBlock(rng), weights = randomBlock(rng);
    const int32_t step = randomStep(rng);
    Placed<int16_t> data(block, rng), w(weights, rng);
    ASSERT_EQ(zvpiQuantWeightBlockInv_DV100_16s_C1I(data.data(), w.readOnly().data(), step), zvpStatusOk);
    ASSERT_TRUE(sameArray(data.values().data(), model::dequantizeDV100(block, weights, step).data(), 64)) << step;
  }
  const int32_t step = 0x12345;
  expectWithOverlaps(
      rng,
      [&](int16_t* block, const int16_t* a, const int16_t*) {
        return zvpiQuantWeightBlockInv_DV100_16s_C1I(block, a, step);
      },
      [&](const Block& block, const Block& a, const Block&) { return model::dequantizeDV100(block, a, step); });
}

// Every value of an element with factors at the ends of their range.
TEST(DvDequant, AllValuesMatchTheModel) {
  for (const int factor : {-32768, -32767, -1, 0, 1, 3, 16384, 32767})
    for (int first = -32768; first < 32768; first += 64) {
      Block block(64), table(64, int16_t(factor)), steps(64, int16_t(~factor));
      for (std::size_t i = 0; i < 64; ++i) block[i] = int16_t(first + int(i));
      Block actual = block;
      zvpiQuantInv_DV_16s_C1I(actual.data(), table.data());
      ASSERT_TRUE(sameArray(actual.data(), model::dequantize(block, table).data(), 64)) << factor;
      actual = block;
      zvpiQuantWeightBlockInv_DV_16s_C1I(actual.data(), table.data(), steps.data());
      ASSERT_TRUE(sameArray(actual.data(), model::dequantizeWeighted(block, table, steps).data(), 64)) << factor;
      actual = block;
      zvpiQuantWeightBlockInv_DV100_16s_C1I(actual.data(), table.data(), factor * 5);
      ASSERT_TRUE(sameArray(actual.data(), model::dequantizeDV100(block, table, factor * 5).data(), 64)) << factor;
    }
}

TEST(DvDequant, SmallResultsLoseTheirTwoLowestBits) {
  Block block(64, 3), table(64, 16384);
  block[1] = 4;
  block[2] = -1;
  EXPECT_EQ(zvpiQuantInv_DV_16s_C1I(block.data(), table.data()), zvpStatusOk);
  EXPECT_EQ(block[0], 0);
  EXPECT_EQ(block[1], 4);
  EXPECT_EQ(block[2], -4);
}

TEST(DvDequant, Dv100DropsTheScale) {
  Block block(64, 64), table(64, 1);
  table[0] = 1000;  // has no effect
  table[2] = 32;
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV100_16s_C1I(block.data(), table.data(), 1), zvpStatusOk);
  EXPECT_EQ(block[0], 2);
  EXPECT_EQ(block[1], 0);
  EXPECT_EQ(block[2], 1);
}

TEST(DvReducedTransform, MatchesTheModel) {
  Rng rng(4);
  for (int round = 0; round < rounds(3000); ++round) {
    const bool usual = rng.chance(2);
    Block block = usual ? randomValues<int16_t>(64, rng, anyStyle(rng), -256, 255) : randomBlock(rng);
    if (rng.chance(2)) std::fill(block.begin() + rng.range(1, 63), block.end(), int16_t(0));
    Block samples = block;
    if (usual)
      reference::mpeg::integerInverse(reference::mpeg::Dct::TwoFourEight, block.data(), samples.data());
    else
      ASSERT_EQ(zvpiDCT2x4x8Inv_16s_C1I(samples.data()), zvpStatusOk);
    Placed<int16_t> data(block, rng);
    ASSERT_EQ(zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(data.data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(data.values().data(), model::reduced(samples).data(), 64));
  }
}

TEST(DvReducedTransform, KeepsTheOther48Samples) {
  Block block(64);
  block[0] = -8 * 37;
  block[3] = 200;
  Block samples = block;
  zvpiDCT2x4x8Inv_16s_C1I(samples.data());
  EXPECT_EQ(zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(block.data()), zvpStatusOk);
  for (std::size_t i = 16; i < 64; ++i) EXPECT_EQ(block[i], samples[i]);
  Block flat(64);
  flat[0] = -8 * 37;
  EXPECT_EQ(zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(flat.data()), zvpStatusOk);
  EXPECT_EQ(flat, Block(64, -37));
}

TEST(DvDequant, NullPointersLeaveAllUntouched) {
  Block block(64, 99), table(64, 3);
  auto *b = block.data(), *t = table.data();
  EXPECT_EQ(zvpiQuantInv_DV_16s_C1I(nullptr, t), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantInv_DV_16s_C1I(b, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV_16s_C1I(nullptr, t, t), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV_16s_C1I(b, nullptr, t), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV_16s_C1I(b, t, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV100_16s_C1I(nullptr, t, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantWeightBlockInv_DV100_16s_C1I(b, nullptr, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(block, Block(64, 99));
}
