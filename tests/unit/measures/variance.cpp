// Mean absolute deviation, variance and sum.
#include "reference/measures/variance.h"

#include "blocks.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {
struct MeanAbsDev {
  zvpStatus (*call)(const std::uint8_t*, std::int32_t, std::int32_t*);
  int size;
};
constexpr MeanAbsDev meanAbsDevs[] = {{zvpiMeanAbsDev8x8_8u32s_C1R, 8}, {zvpiMeanAbsDev16x16_8u32s_C1R, 16}};
}  // namespace

TEST(Variance, MeanAbsDevMatchesTheModel) {
  Rng rng(61);
  for (const auto& member : meanAbsDevs)
    for (int round = 0; round < rounds(800); ++round) {
      const auto src = makeBlock<std::uint8_t>(rng, member.size, member.size);
      GuardedArray<std::int32_t> result(1, rng.guard());
      ASSERT_EQ(member.call(src.data(), std::int32_t(src.step()), result.data()), zvpStatusOk);
      const std::int32_t expected = reference::measures::meanAbsDev(src.data(), src.step(), member.size);
      ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << member.size << " round " << round;
    }
}

// A mean of exactly half rounds up: half the samples 10, the others 11.
TEST(Variance, MeanRoundsHalvesUp) {
  for (const auto& member : meanAbsDevs) {
    std::vector<std::uint8_t> block(std::size_t(member.size * member.size), 10);
    std::fill(block.begin(), block.begin() + member.size * member.size / 2, std::uint8_t(11));
    block[0] = 12;
    block[1] = 10;  // the sum is the same; only around 11 the deviation is half the samples and one
    std::int32_t result = -1;
    ASSERT_EQ(member.call(block.data(), member.size, &result), zvpStatusOk);
    EXPECT_EQ(result, member.size * member.size / 2 + 2);
    block.back() = 9;  // one less: the mean rounds down, to 10
    ASSERT_EQ(member.call(block.data(), member.size, &result), zvpStatusOk);
    EXPECT_EQ(result, member.size * member.size / 2 + 1);
  }
}

TEST(Variance, Variance16x16MatchesTheModel) {
  Rng rng(62);
  for (int round = 0; round < rounds(1500); ++round) {
    const auto src = makeBlock<std::uint8_t>(rng, 16, 16);
    GuardedArray<std::uint32_t> result(1, rng.guard());
    ASSERT_EQ(zvpiVariance16x16_8u32s(src.data(), std::int32_t(src.step()), result.data()), zvpStatusOk);
    const std::uint32_t expected = reference::measures::variance16x16(src.data(), src.step());
    ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << "round " << round;
  }
}

// The square of the sum of an all-white block is above 2^31: it is taken unsigned.
TEST(Variance, BrightBlocksDoNotOverflow) {
  std::vector<std::uint8_t> block(256, 255);
  std::uint32_t variance = 1;
  ASSERT_EQ(zvpiVariance16x16_8u32s(block.data(), 16, &variance), zvpStatusOk);
  EXPECT_EQ(variance, 0u);
  block[77] = 254;
  ASSERT_EQ(zvpiVariance16x16_8u32s(block.data(), 16, &variance), zvpStatusOk);
  EXPECT_EQ(variance, 255u * 65025 + 64516 - 65279u * 65279u / 256);
}

TEST(Variance, VarSum8x8MatchesTheModel) {
  Rng rng(63);
  for (int round = 0; round < rounds(3000); ++round) {
    const auto src = makeBlock<std::uint8_t>(rng, 8, 8);
    GuardedArray<std::int32_t> result(2, rng.guard());
    ASSERT_EQ(zvpiVarSum8x8_8u32s_C1R(src.data(), std::int32_t(src.step()), &result[0], &result[1]), zvpStatusOk);
    std::int32_t expected[2];
    reference::measures::varSum8x8(src.data(), src.step(), expected[0], expected[1]);
    ASSERT_TRUE(sameArray(result.data(), expected, 2)) << "round " << round;
  }
}

// Rounding to single precision after each operation shows in the result: bright, almost flat blocks, whose variance is
// the difference of two large numbers.
TEST(Variance, VarSum8x8RoundsEachOperation) {
  Rng rng(64);
  bool exactWouldDiffer = false;
  for (int round = 0; round < rounds(20000); ++round) {
    std::uint8_t block[64];
    const int base = rng.range(100, 250), spread = rng.range(1, 5);
    std::int64_t sum = 0, squares = 0;
    for (auto& sample : block) {
      sample = std::uint8_t(base + rng.range(0, spread));
      sum += sample;
      squares += sample * sample;
    }
    std::int32_t result[2], expected[2];
    ASSERT_EQ(zvpiVarSum8x8_8u32s_C1R(block, 8, &result[0], &result[1]), zvpStatusOk);
    reference::measures::varSum8x8(block, 8, expected[0], expected[1]);
    ASSERT_TRUE(sameArray(result, expected, 2)) << "round " << round;
    exactWouldDiffer = exactWouldDiffer || (64 * squares - sum * sum) / 4096 != expected[0];
  }
  EXPECT_TRUE(exactWouldDiffer || rounds(20000) < 20000);
}

TEST(Variance, VarSum8x8OfFlatBlocks) {
  for (int value = 0; value < 256; ++value) {
    const std::vector<std::uint8_t> block(64, std::uint8_t(value));
    std::int32_t variance = -1, sum = -1;
    ASSERT_EQ(zvpiVarSum8x8_8u32s_C1R(block.data(), 8, &variance, &sum), zvpStatusOk);
    EXPECT_EQ(variance, 0);
    EXPECT_EQ(sum, 64 * value);
  }
}

TEST(Variance, NullPointersAreRefused) {
  const std::uint8_t sample = 1;
  std::int32_t result = 77, sum = 78;
  std::uint32_t variance = 79;
  for (const auto& member : meanAbsDevs)
    for (int present = 0; present < 3; ++present)
      EXPECT_EQ(member.call(present & 1 ? &sample : nullptr, 0, present & 2 ? &result : nullptr), zvpStatusNullPointer);
  for (int present = 0; present < 3; ++present)
    EXPECT_EQ(zvpiVariance16x16_8u32s(present & 1 ? &sample : nullptr, 0, present & 2 ? &variance : nullptr),
              zvpStatusNullPointer);
  for (int present = 0; present < 7; ++present)
    EXPECT_EQ(zvpiVarSum8x8_8u32s_C1R(present & 1 ? &sample : nullptr, 0, present & 2 ? &result : nullptr,
                                      present & 4 ? &sum : nullptr),
              zvpStatusNullPointer);
  EXPECT_EQ(result, 77);
  EXPECT_EQ(sum, 78);
  EXPECT_EQ(variance, 79u);
}
