// MPEG-2 quantization and its inverse against the models.
#include "reference/mpeg/quant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/compare.h"
#include "support/csv.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::mpeg;

namespace {

std::vector<std::int16_t> randomBlock(Rng& rng) {
  const int limit = rng.pick<int>({1, 3, 40, 2048, 32768});
  auto block = randomValues<std::int16_t>(64, rng, anyStyle(rng), -limit, limit - 1);
  if (rng.chance(2)) std::fill(block.begin() + rng.range(0, 63), block.end(), std::int16_t(0));
  return block;
}

std::int32_t randomScale(Rng& rng) {
  if (rng.chance(8)) return rng.pick<std::int32_t>({-1, 32767, 32768, 65535, 65536, 0x7fffffff, INT32_MIN, -112});
  if (rng.chance(10)) return std::int32_t(rng.next() | 1);
  return rng.range(1, 112);
}

std::vector<float> randomReciprocals(Rng& rng) {
  std::vector<float> matrix(64);
  for (float& r : matrix) {
    r = 1.0f / float(rng.range(1, 255));
    if (rng.chance(20)) r = rng.pick<float>({0.0f, -0.25f, 1e30f, -1e30f, 1e-30f, 3.0e38f});
  }
  return matrix;
}

std::vector<std::int16_t> randomWeights(Rng& rng) {
  return rng.chance(4) ? randomValues<std::int16_t>(64, rng, anyStyle(rng), -32768, 32767)
                       : randomValues<std::int16_t>(64, rng, anyStyle(rng), 1, 255);
}

// The default intra matrix as the tables tell it, each reciprocal rounded to six decimals by way of its text.
std::vector<float> defaultReciprocals() {
  std::vector<float> reciprocals(64);
  for (const auto& row : readTable("mpeg12_quant_matrices")) {
    if (row.at("matrix") != "intra") continue;
    char text[32];
    std::snprintf(text, sizeof text, "%.6f", 1.0 / std::stoi(row.at("value")));
    reciprocals[std::size_t(std::stoi(row.at("raster")))] = std::strtof(text, nullptr);
  }
  return reciprocals;
}

using ModelForward = int (*)(std::int16_t*, std::int32_t, const float*);
using Forward = zvpStatus (*)(std::int16_t*, std::int32_t, const float*, std::int32_t*);

void expectForward(Forward forward, ModelForward expected, bool hasDefault, int seed) {
  const auto defaults = defaultReciprocals();
  Rng rng{std::uint64_t(seed)};
  for (int round = 0; round < rounds(8000); ++round) {
    auto wanted = randomBlock(rng);
    const auto matrix = randomReciprocals(rng);
    const bool given = rng.chance(2);
    const std::int32_t scale = randomScale(rng);
    Placed<std::int16_t> block(wanted, rng);
    Placed<float> reciprocals(matrix, rng);
    Placed<std::int32_t> count({-1}, rng);
    const int wantedCount = expected(wanted.data(), scale,
                                     given        ? matrix.data()
                                     : hasDefault ? defaults.data()
                                                  : nullptr);
    ASSERT_EQ(forward(block.data(), scale, given ? reciprocals.readOnly().data() : nullptr, count.data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(block.values().data(), wanted.data(), 64)) << "QP " << scale << " round " << round;
    ASSERT_EQ(count.values()[0], wantedCount);
  }
}

using Inverse = zvpStatus (*)(std::int16_t*, std::int32_t, const std::int16_t*);
using ModelInverse = void (*)(std::int16_t*, std::int32_t, const std::int16_t*);

void expectInverse(Inverse inverse, ModelInverse expected, bool mayBeNull, int seed) {
  Rng rng{std::uint64_t(seed)};
  for (int round = 0; round < rounds(8000); ++round) {
    auto wanted = randomBlock(rng);
    const auto weights = randomWeights(rng);
    const bool given = !mayBeNull || rng.chance(2);
    const std::int32_t scale = rng.chance(20) ? 0 : randomScale(rng);
    Placed<std::int16_t> block(wanted, rng), matrix(weights, rng);
    expected(wanted.data(), scale, given ? weights.data() : nullptr);
    ASSERT_EQ(inverse(block.data(), scale, given ? matrix.readOnly().data() : nullptr), zvpStatusOk);
    ASSERT_TRUE(sameArray(block.values().data(), wanted.data(), 64)) << "QP " << scale << " round " << round;
  }
}

}  // namespace

TEST(Quant, IntraMatchesTheModel) { expectForward(zvpiQuantIntra_MPEG2_16s_C1I, model::quantIntra, true, 1); }
TEST(Quant, InterMatchesTheModel) { expectForward(zvpiQuant_MPEG2_16s_C1I, model::quantInter, false, 2); }
TEST(Quant, InverseIntraMatchesTheModel) {
  expectInverse(zvpiQuantInvIntra_MPEG2_16s_C1I, model::quantInvIntra, false, 3);
}
TEST(Quant, InverseInterMatchesTheModel) { expectInverse(zvpiQuantInv_MPEG2_16s_C1I, model::quantInvInter, true, 4); }

// The integer reciprocal over every coefficient.
TEST(Quant, FlatWeightsOverTheWholeRange) {
  for (const int scale : {2, 3, 4, 7, 16, 31, 62, 112, 2047, 65535, 65536, 131073}) {
    for (int base = -32768; base < 32768; base += 64) {
      std::int16_t block[64], wanted[64];
      for (int i = 0; i < 64; ++i) block[i] = wanted[i] = std::int16_t(base + i);
      std::int32_t count = -1;
      const int wantedCount = model::quantInter(wanted, scale, nullptr);
      ASSERT_EQ(zvpiQuant_MPEG2_16s_C1I(block, scale, nullptr, &count), zvpStatusOk);
      ASSERT_TRUE(sameArray(block, wanted, 64)) << "QP " << scale;
      ASSERT_EQ(count, wantedCount);
    }
  }
}

TEST(Quant, ForwardChecksInOrder) {
  std::int16_t block[64];
  std::fill(block, block + 64, std::int16_t(77));
  std::int32_t count = 5;
  const float matrix[64] = {};
  for (const Forward forward : {zvpiQuantIntra_MPEG2_16s_C1I, zvpiQuant_MPEG2_16s_C1I}) {
    EXPECT_EQ(forward(nullptr, 4, matrix, &count), zvpStatusNullPointer);
    EXPECT_EQ(forward(block, 4, matrix, nullptr), zvpStatusNullPointer);
    EXPECT_EQ(forward(nullptr, 0, matrix, &count), zvpStatusNullPointer);
    EXPECT_EQ(forward(block, 0, matrix, nullptr), zvpStatusNullPointer);
    EXPECT_EQ(forward(block, 0, matrix, &count), zvpStatusDivideByZero);
    EXPECT_EQ(forward(block, 0, nullptr, &count), zvpStatusDivideByZero);
  }
  EXPECT_EQ(count, 5);
  for (const auto x : block) EXPECT_EQ(x, 77);
}

TEST(Quant, InverseChecksInOrder) {
  std::int16_t block[64];
  std::fill(block, block + 64, std::int16_t(77));
  const std::int16_t weights[64] = {};
  EXPECT_EQ(zvpiQuantInvIntra_MPEG2_16s_C1I(nullptr, 4, weights), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantInvIntra_MPEG2_16s_C1I(block, 4, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantInv_MPEG2_16s_C1I(nullptr, 4, weights), zvpStatusNullPointer);
  EXPECT_EQ(zvpiQuantInv_MPEG2_16s_C1I(nullptr, 4, nullptr), zvpStatusNullPointer);
  for (const auto x : block) EXPECT_EQ(x, 77);
}

TEST(Quant, IntraLeavesTheDcAlone) {
  std::int16_t block[64] = {1000, 160};
  std::int32_t count = -1;
  ASSERT_EQ(zvpiQuantIntra_MPEG2_16s_C1I(block, 1, nullptr, &count), zvpStatusOk);
  EXPECT_EQ(block[0], 1000);
  EXPECT_EQ(block[1], 160);  // 160 * 16 / 16
  EXPECT_EQ(count, 1);
}

TEST(Quant, ScaleOfOneWithoutMatrixOnlyCounts) {
  for (const std::int32_t scale : {1, -1, -30, INT32_MIN}) {
    std::int16_t block[64] = {1000, 0, -32768, 0, 5};
    std::int32_t count = -1;
    ASSERT_EQ(zvpiQuant_MPEG2_16s_C1I(block, scale, nullptr, &count), zvpStatusOk);
    const std::int16_t unchanged[64] = {1000, 0, -32768, 0, 5};
    EXPECT_TRUE(sameArray(block, unchanged, 64));
    EXPECT_EQ(count, 3);
  }
}

TEST(Quant, ZeroBlockGetsItsMismatchBit) {
  std::int16_t block[64] = {};
  ASSERT_EQ(zvpiQuantInv_MPEG2_16s_C1I(block, 10, nullptr), zvpStatusOk);
  std::int16_t wanted[64] = {};
  wanted[63] = 1;
  EXPECT_TRUE(sameArray(block, wanted, 64));
  // With element 63 odd and the sum even it is decremented.
  std::int16_t intra[64] = {1};
  intra[63] = 1;
  std::int16_t weights[64];
  std::fill(weights, weights + 64, std::int16_t(16));
  ASSERT_EQ(zvpiQuantInvIntra_MPEG2_16s_C1I(intra, 1, weights), zvpStatusOk);
  EXPECT_EQ(intra[63], 0);
}
