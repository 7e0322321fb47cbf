// SATD.
#include "reference/measures/satd.h"

#include "blocks.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

struct Member {
  const char* name;
  zvpStatus (*call)(const std::uint8_t*, std::int32_t, const std::uint8_t*, std::int32_t, std::int32_t*);
  int width, height;
};
constexpr Member members[] = {{"zvpiSATD4x4_8u32s_C1R", zvpiSATD4x4_8u32s_C1R, 4, 4},
                              {"zvpiSATD4x8_8u32s_C1R", zvpiSATD4x8_8u32s_C1R, 4, 8},
                              {"zvpiSATD8x4_8u32s_C1R", zvpiSATD8x4_8u32s_C1R, 8, 4},
                              {"zvpiSATD8x8_8u32s_C1R", zvpiSATD8x8_8u32s_C1R, 8, 8},
                              {"zvpiSATD8x16_8u32s_C1R", zvpiSATD8x16_8u32s_C1R, 8, 16},
                              {"zvpiSATD16x8_8u32s_C1R", zvpiSATD16x8_8u32s_C1R, 16, 8},
                              {"zvpiSATD16x16_8u32s_C1R", zvpiSATD16x16_8u32s_C1R, 16, 16}};

}  // namespace

TEST(Satd, MatchesTheModel) {
  Rng rng(51);
  for (const auto& member : members)
    for (int round = 0; round < rounds(1000); ++round) {
      const auto a = makeBlock<std::uint8_t>(rng, member.width, member.height);
      const auto b = makeBlock<std::uint8_t>(rng, member.width, member.height);
      GuardedArray<std::int32_t> result(1, rng.guard());
      ASSERT_EQ(member.call(a.data(), std::int32_t(a.step()), b.data(), std::int32_t(b.step()), result.data()),
                zvpStatusOk);
      const std::int32_t expected =
          reference::measures::satd(a.data(), a.step(), b.data(), b.step(), member.width, member.height);
      ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << member.name << " round " << round;
    }
}

// Each basis pattern of the transform at full range, in all tiles or in one, drives one coefficient to its extreme.
TEST(Satd, ExtremesOfEachCoefficient) {
  constexpr int sign[4][4] = {{1, 1, 1, 1}, {1, 1, -1, -1}, {1, -1, -1, 1}, {1, -1, 1, -1}};
  for (const auto& member : members) {
    const int tiles = member.width * member.height / 16;
    for (int v = 0; v < 4; ++v)
      for (int u = 0; u < 4; ++u)
        for (int only = -1; only < tiles; ++only) {
          std::uint8_t a[256] = {}, b[256] = {};
          for (int y = 0; y < member.height; ++y)
            for (int x = 0; x < member.width; ++x) {
              if (only >= 0 && y / 4 * (member.width / 4) + x / 4 != only) continue;
              (sign[v][y % 4] * sign[u][x % 4] > 0 ? a : b)[16 * y + x] = 255;
            }
          std::int32_t result = -1;
          ASSERT_EQ(member.call(a, 16, b, 16, &result), zvpStatusOk);
          ASSERT_EQ(result, 16 * 255 * (only < 0 ? tiles : 1)) << member.name << ' ' << u << ' ' << v << ' ' << only;
        }
  }
}

TEST(Satd, WorkedExamples) {
  std::vector<std::uint8_t> a(256), b(256);
  for (int i = 0; i < 256; ++i) a[std::size_t(i)] = std::uint8_t(31 * i);
  for (const auto& member : members) {
    std::int32_t result = -1;
    ASSERT_EQ(member.call(a.data(), 16, a.data(), 16, &result), zvpStatusOk);
    EXPECT_EQ(result, 0) << member.name;
  }
  std::fill(a.begin(), a.end(), 8);
  std::fill(b.begin(), b.end(), 7);
  for (const auto& member : members) {  // residual 1 everywhere: one term of 16 in each tile
    std::int32_t result = -1;
    ASSERT_EQ(member.call(a.data(), 16, b.data(), 16, &result), zvpStatusOk);
    EXPECT_EQ(result, member.width * member.height) << member.name;
    ASSERT_EQ(member.call(b.data(), 16, a.data(), 16, &result), zvpStatusOk);
    EXPECT_EQ(result, member.width * member.height) << member.name;
  }
}

TEST(Satd, NullPointersAreRefused) {
  for (const auto& member : members)
    expectNullsRefused<std::uint8_t, std::int32_t>(
        member.name, [&](auto a, auto b, auto result) { return member.call(a, 0, b, 0, result); });
}
