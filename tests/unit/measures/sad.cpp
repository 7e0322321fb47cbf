// SAD at half-pel and at whole-pel positions.
#include "reference/measures/sad.h"

#include "half_pel.h"

using namespace zvptest;

namespace {

constexpr HalfPelMember<std::uint8_t> members8u[] = {{"zvpiSAD16x16_8u32s", zvpiSAD16x16_8u32s, 16, 16},
                                                     {"zvpiSAD16x8_8u32s_C1R", zvpiSAD16x8_8u32s_C1R, 16, 8},
                                                     {"zvpiSAD8x8_8u32s_C1R", zvpiSAD8x8_8u32s_C1R, 8, 8}};
constexpr HalfPelMember<std::uint16_t> members16u[] = {{"zvpiSAD16x16_16u32s_C1R", zvpiSAD16x16_16u32s_C1R, 16, 16},
                                                       {"zvpiSAD8x8_16u32s_C1R", zvpiSAD8x8_16u32s_C1R, 8, 8},
                                                       {"zvpiSAD4x4_16u32s_C1R", zvpiSAD4x4_16u32s_C1R, 4, 4}};
struct WholePelMember {
  const char* name;
  zvpStatus (*call)(const std::uint8_t*, std::int32_t, const std::uint8_t*, std::int32_t, std::int32_t*);
  int width, height;
};
constexpr WholePelMember wholePelMembers[] = {{"zvpiSAD8x16_8u32s_C1R", zvpiSAD8x16_8u32s_C1R, 8, 16},
                                              {"zvpiSAD8x4_8u32s_C1R", zvpiSAD8x4_8u32s_C1R, 8, 4},
                                              {"zvpiSAD4x8_8u32s_C1R", zvpiSAD4x8_8u32s_C1R, 4, 8}};

constexpr auto model = [](auto... arguments) { return reference::measures::sad(arguments...); };

}  // namespace

TEST(Sad, HalfPelMatchesTheModel) {
  for (const auto& member : members8u) expectLikeModel(member, 11, model);
  for (const auto& member : members16u) expectLikeModel(member, 12, model);
}

TEST(Sad, MeansOfFourAreExactForAllSums) {
  for (const auto& member : members8u) expectAllPairsOfSums(member, [](int mean) { return mean; });
}

TEST(Sad, MeansOfFourAreExactForSumsOf16Bits) {
  Rng rng(13);
  for (const auto& member : members16u)
    for (int round = 0; round < rounds(3000); ++round) {
      // Sums at the ends of the range, where an addition of two samples would overflow, and anywhere.
      const auto anySum = [&] {
        return rng.chance(3) ? rng.range(0, 3) : rng.chance(2) ? rng.range(131067, 131070) : rng.range(0, 131070);
      };
      const int upper = anySum(), lower = anySum();
      std::uint16_t src[16 * 16] = {}, ref[17 * 17];
      for (int y = 0; y < 17; ++y)
        for (int x = 0; x < 17; ++x) {
          const int sum = y % 2 == 0 ? upper : lower;
          ref[y * 17 + x] = std::uint16_t(x % 2 == 0 ? sum / 2 : sum - sum / 2);
        }
      std::int32_t result = -1;
      ASSERT_EQ(member.call(src, 32, ref, 34, &result, 12), zvpStatusOk);
      ASSERT_EQ(result, member.width * member.height * ((upper + lower + 2) >> 2)) << upper << ' ' << lower;
    }
}

TEST(Sad, WorkedExamples) {
  for (const auto& member : members8u) expectWorkedExamples(member, 1);
  for (const auto& member : members16u) expectWorkedExamples(member, 1);
}

TEST(Sad, WhiteAgainstBlackIsTheMaximum) {
  const std::vector<std::uint8_t> black(17 * 17, 0), white(17 * 17, 255);
  const std::vector<std::uint16_t> low(17 * 17, 0), high(17 * 17, 65535);
  for (const int mcType : {0, 4, 8, 12}) {
    for (const auto& member : members8u) {
      std::int32_t result = -1;
      ASSERT_EQ(member.call(white.data(), 17, black.data(), 17, &result, mcType), zvpStatusOk);
      EXPECT_EQ(result, 255 * member.width * member.height);
      ASSERT_EQ(member.call(black.data(), 17, white.data(), 17, &result, mcType), zvpStatusOk);
      EXPECT_EQ(result, 255 * member.width * member.height);
    }
    for (const auto& member : members16u) {
      std::int32_t result = -1;
      ASSERT_EQ(member.call(high.data(), 34, low.data(), 34, &result, mcType), zvpStatusOk);
      EXPECT_EQ(result, 65535 * member.width * member.height);
      ASSERT_EQ(member.call(low.data(), 34, high.data(), 34, &result, mcType), zvpStatusOk);
      EXPECT_EQ(result, 65535 * member.width * member.height);
    }
  }
}

TEST(Sad, NullPointersAreRefused) {
  for (const auto& member : members8u) expectNullRefused(member);
  for (const auto& member : members16u) expectNullRefused(member);
  for (const auto& member : wholePelMembers)
    expectNullsRefused<std::uint8_t, std::int32_t>(
        member.name, [&](auto src, auto ref, auto result) { return member.call(src, 0, ref, 0, result); });
}

TEST(Sad, WholePelMatchesTheModel) {
  Rng rng(14);
  for (const auto& member : wholePelMembers)
    for (int round = 0; round < rounds(600); ++round) {
      const auto src = makeBlock<std::uint8_t>(rng, member.width, member.height);
      const auto ref = makeBlock<std::uint8_t>(rng, member.width, member.height);
      GuardedArray<std::int32_t> result(1, rng.guard());
      ASSERT_EQ(member.call(src.data(), std::int32_t(src.step()), ref.data(), std::int32_t(ref.step()), result.data()),
                zvpStatusOk);
      const auto expected =
          std::int32_t(model(src.data(), src.step(), ref.data(), ref.step(), member.width, member.height, 0));
      ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << member.name << " round " << round;
    }
}
