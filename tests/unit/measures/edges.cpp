// The edge test.
#include "reference/measures/edges.h"

#include "blocks.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

TEST(Edges, MatchesTheModel) {
  Rng rng(81);
  for (int round = 0; round < rounds(4000); ++round) {
    const auto src = makeBlock<std::uint8_t>(rng, 16, 16);
    // Thresholds near the numbers that the block gives, and anywhere; the bytes above the lowest are noise.
    const int difference = rng.chance(2) ? rng.range(0, 12) : rng.range(0, 255);
    const int limit = rng.chance(4) ? rng.range(220, 226) : rng.range(0, 255);
    const auto noise = std::int32_t(rng.next() & 0xffffff00u);
    GuardedBytes result(1, rng.guard());
    ASSERT_EQ(zvpiEdgesDetect16x16_8u_C1R(src.data(), std::int32_t(src.step()), noise | difference, noise | limit,
                                          result.data()),
              zvpStatusOk);
    const std::uint8_t expected =
        reference::measures::hasEdges(src.data(), src.step(), std::uint8_t(difference), std::uint8_t(limit));
    ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << "round " << round;
  }
}

// Exactly n positions count, found by raising single samples; both sides of each threshold.
TEST(Edges, BothSidesOfTheThresholds) {
  std::vector<std::uint8_t> block(256, 100);
  const auto edges = [&](int difference, int limit) {
    std::uint8_t result = 9;
    EXPECT_EQ(zvpiEdgesDetect16x16_8u_C1R(block.data(), 16, difference, limit, &result), zvpStatusOk);
    return int(result);
  };
  EXPECT_EQ(edges(0, 0), 0);
  int counted = 0;
  for (int y = 1; y < 15; y += 2)
    for (int x = 1; x < 15; x += 2) {
      block[std::size_t(16 * y + x)] = 110;  // the sample, the one to its left and the one above it
      counted += 3;
      ASSERT_EQ(edges(9, counted - 1), 1);
      ASSERT_EQ(edges(9, counted), 0);
      ASSERT_EQ(edges(10, 0), 0);
    }
}

// At most 225 positions count, though each may differ both ways.
TEST(Edges, TheCountEndsAt225) {
  std::vector<std::uint8_t> board(256);
  for (int i = 0; i < 256; ++i) board[std::size_t(i)] = (i / 16 + i) % 2 == 0 ? 0 : 255;
  for (const auto& [limit, expected] : {std::pair(224, 1), std::pair(225, 0), std::pair(255, 0), std::pair(-1, 0)}) {
    std::uint8_t result = 9;
    ASSERT_EQ(zvpiEdgesDetect16x16_8u_C1R(board.data(), 16, 254, limit, &result), zvpStatusOk);
    EXPECT_EQ(result, expected) << limit;
  }
}

// Row 15 and column 15 are neighbours only; the last sample is nobody's and is not read.
TEST(Edges, LastRowAndColumn) {
  for (int i = 0; i < 256; ++i) {
    std::vector<std::uint8_t> block(256, 100);
    block[std::size_t(i)] = 200;
    const int x = i % 16, y = i / 16;
    const int counted = int(x < 15 && y < 15) + int(x > 0 && y < 15) + int(y > 0 && x < 15);
    std::uint8_t result = 9;
    if (counted > 0) {
      ASSERT_EQ(zvpiEdgesDetect16x16_8u_C1R(block.data(), 16, 99, counted - 1, &result), zvpStatusOk);
      EXPECT_EQ(result, 1) << i;
    }
    ASSERT_EQ(zvpiEdgesDetect16x16_8u_C1R(block.data(), 16, 99, counted, &result), zvpStatusOk);
    EXPECT_EQ(result, 0) << i;
  }
  GuardedBytes block(15 * 16 + 15, Guard::Behind);
  std::memset(block.data(), 50, block.size());
  block.data()[15 * 16 + 14] = 60;
  block.makeReadOnly();
  std::uint8_t result = 9;
  ASSERT_EQ(zvpiEdgesDetect16x16_8u_C1R(block.data(), 16, 9, 0, &result), zvpStatusOk);
  EXPECT_EQ(result, 1);
}

TEST(Edges, NullPointersAreRefused) {
  const std::uint8_t sample = 1;
  std::uint8_t result = 77;
  EXPECT_EQ(zvpiEdgesDetect16x16_8u_C1R(nullptr, 0, 0, 0, &result), zvpStatusNullPointer);
  EXPECT_EQ(zvpiEdgesDetect16x16_8u_C1R(&sample, 0, 0, 0, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiEdgesDetect16x16_8u_C1R(nullptr, 0, 0, 0, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(result, 77);
}
