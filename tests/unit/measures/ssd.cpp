// SSD at half-pel positions.
#include "reference/measures/ssd.h"

#include "half_pel.h"

using namespace zvptest;

namespace {
constexpr HalfPelMember<std::uint8_t> members[] = {{"zvpiSSD8x8_8u32s_C1R", zvpiSSD8x8_8u32s_C1R, 8, 8},
                                                   {"zvpiSSD4x4_8u32s_C1R", zvpiSSD4x4_8u32s_C1R, 4, 4}};
}

TEST(Ssd, MatchesTheModel) {
  for (const auto& member : members) expectLikeModel(member, 21, reference::measures::ssd);
}

TEST(Ssd, MeansOfFourAreExactForAllSums) {
  for (const auto& member : members) expectAllPairsOfSums(member, [](int mean) { return mean * mean; });
}

TEST(Ssd, WorkedExamples) {
  for (const auto& member : members) expectWorkedExamples(member, 1);
}

TEST(Ssd, WhiteAgainstBlackIsTheMaximum) {
  const std::vector<std::uint8_t> black(81, 0), white(81, 255);
  for (const auto& member : members)
    for (const int mcType : {0, 4, 8, 12}) {
      std::int32_t result = -1;
      ASSERT_EQ(member.call(white.data(), 9, black.data(), 9, &result, mcType), zvpStatusOk);
      EXPECT_EQ(result, 65025 * member.width * member.height);
    }
}

TEST(Ssd, NullPointersAreRefused) {
  for (const auto& member : members) expectNullRefused(member);
}
