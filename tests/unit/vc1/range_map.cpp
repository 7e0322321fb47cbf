// VC-1 range mapping against the model.
#include "reference/vc1/range_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <iterator>

#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::vc1;

namespace {

using Picture = GuardedPlane<std::uint8_t>;

Picture randomPicture(Rng& rng, int width, int height) {
  const std::ptrdiff_t step = rng.step(width, true);
  const Guard guard = rng.guard();
  Picture picture(width, height, step, guard);
  const Style style = anyStyle(rng);
  fill(picture.bytes().data(), picture.bytes().size(), rng, style, 0, 255);
  return picture;
}

std::vector<std::uint8_t> mapped(Picture& dst, const Picture& src, int rangeMap) {
  const auto before = dst.snapshot();
  for (int y = 0; y < dst.height(); ++y)
    for (int x = 0; x < dst.width(); ++x) dst.set(x, y, model::rangeMapped(src.get(x, y), rangeMap));
  auto after = dst.snapshot();
  std::copy(before.begin(), before.end(), dst.bytes().data());
  return after;
}

}  // namespace

TEST(RangeMap, MatchesTheModel) {
  Rng rng(41);
  for (int round = 0; round < rounds(4000); ++round) {
    const int width = rng.chance(4) ? rng.range(1, 200) : rng.range(1, 70), height = rng.range(1, 9);
    const int rangeMap = rng.range(0, 7);
    Picture src = randomPicture(rng, width, height), dst = randomPicture(rng, width, height);
    const auto expected = mapped(dst, src, rangeMap), expectedInPlace = mapped(src, src, rangeMap);
    src.bytes().makeReadOnly();
    ASSERT_EQ(zvpiRangeMapping_VC1_8u_C1R(src.data(), std::int32_t(src.step()), dst.data(), std::int32_t(dst.step()),
                                          {width, height}, rangeMap),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " round " << round;
    src.bytes().makeWritable();
    ASSERT_EQ(zvpiRangeMapping_VC1_8u_C1R(src.data(), std::int32_t(src.step()), src.data(), std::int32_t(src.step()),
                                          {width, height}, rangeMap),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(src.snapshot(), expectedInPlace)) << width << "x" << height << " round " << round;
  }
}

TEST(RangeMap, EverySampleOfEveryMap) {
  for (int rangeMap = 0; rangeMap < 8; ++rangeMap) {
    std::uint8_t samples[256], wanted[256];
    for (int i = 0; i < 256; ++i) {
      samples[i] = std::uint8_t(i);
      wanted[i] = model::rangeMapped(samples[i], rangeMap);
    }
    ASSERT_EQ(zvpiRangeMapping_VC1_8u_C1R(samples, 256, samples, 256, {256, 1}, rangeMap), zvpStatusOk);
    EXPECT_TRUE(sameArray(samples, wanted, 256));
    EXPECT_EQ(samples[128], 128);
  }
  std::uint8_t white = 255;
  ASSERT_EQ(zvpiRangeMapping_VC1_8u_C1R(&white, 1, &white, 1, {1, 1}, 7), zvpStatusOk);
  EXPECT_EQ(white, 255);
}

// Samples that no map takes to 0, so that whatever is written shows, on every side of what is passed.
TEST(RangeMap, ChecksInOrder) {
  std::uint8_t source[64], destination[64] = {};
  std::fill(std::begin(source), std::end(source), std::uint8_t(200));
  const std::uint8_t* const src = source + 24;
  std::uint8_t* const dst = destination + 24;
  EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(nullptr, 4, dst, 4, {4, 4}, 8), zvpStatusNullPointer);
  EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(src, 4, nullptr, 4, {4, 4}, 8), zvpStatusNullPointer);
  for (const int rangeMap : {-1, 8, INT_MIN, INT_MAX}) {
    EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {4, 4}, rangeMap), zvpStatusOutOfRange);
    EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {4, 0}, rangeMap), zvpStatusOutOfRange);
  }
  for (const int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {4, size}, 0), zvpStatusOk);
    EXPECT_EQ(zvpiRangeMapping_VC1_8u_C1R(src, 4, dst, 4, {size, 4}, 7), zvpStatusOk);
  }
  for (const auto sample : destination) EXPECT_EQ(sample, 0);
}
