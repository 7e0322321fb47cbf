// The scans of 8x8 blocks against the published orders.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "reference/mpeg/quant.h"
#include "support/compare.h"
#include "support/csv.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::mpeg;

namespace {

struct Scan {
  int raster[64];
};

Scan published(const std::string& name) {
  for (const auto& row : readTable("scans"))
    if (row.at("name") == name) {
      Scan scan;
      for (int i = 0; i < 64; ++i) scan.raster[i] = std::stoi(row.at("p" + std::to_string(i)));
      return scan;
    }
  throw std::runtime_error("no scan " + name);
}

// Any selector but 1 and 2 means the zigzag.
const Scan& scanFor(int selector) {
  static const Scan zigzag = published("mpeg_zigzag"), vertical = published("mpeg_alternate_vertical"),
                    horizontal = published("mpeg_alternate_horizontal");
  return selector == 2 ? horizontal : selector == 1 ? vertical : zigzag;
}
const std::vector<int> selectors = {0, 1, 2, 3, -1, 257, 258, INT32_MAX, INT32_MIN};

}  // namespace

TEST(Scan, ForwardMatchesTheModel) {
  Rng rng(1);
  for (int round = 0; round < rounds(12000); ++round) {
    auto values = randomValues<std::int16_t>(64, rng, anyStyle(rng), -32768, 32767);
    const int zeros = rng.range(0, 9);  // in tenths
    for (auto& value : values)
      if (rng.range(0, 9) < zeros) value = 0;
    Placed<std::int16_t> src(values, rng), dst(randomValues<std::int16_t>(64, rng, Style::Uniform, -9, 9), rng);
    const int count = rng.chance(2) ? rng.range(1, 24) : rng.range(1, 64), selector = rng.pick(selectors);
    std::int16_t wanted[64];
    model::scanForward(values.data(), wanted, count, scanFor(selector).raster);
    ASSERT_EQ(zvpiScanFwd_16s_C1(src.readOnly().data(), dst.data(), count, selector), zvpStatusOk);
    ASSERT_TRUE(sameArray(dst.values().data(), wanted, 64)) << "count " << count << " scan " << selector;
  }
}

TEST(Scan, InverseMatchesTheModelAndReadsNoFurther) {
  Rng rng(2);
  for (int round = 0; round < rounds(12000); ++round) {
    const int last = rng.range(0, 63), selector = rng.pick(selectors);
    const auto values = randomValues<std::int16_t>(std::size_t(last) + 1, rng, anyStyle(rng), -32768, 32767);
    Placed<std::int16_t> src(values, rng), dst(randomValues<std::int16_t>(64, rng, Style::Uniform, -9, 9), rng);
    std::int16_t wanted[64];
    model::scanInverse(values.data(), wanted, last, scanFor(selector).raster);
    ASSERT_EQ(zvpiScanInv_16s_C1(src.readOnly().data(), dst.data(), last, selector), zvpStatusOk);
    ASSERT_TRUE(sameArray(dst.values().data(), wanted, 64)) << "last " << last << " scan " << selector;
  }
}

TEST(Scan, ThereAndBack) {
  Rng rng(3);
  for (const int selector : {0, 1, 2}) {
    std::int16_t src[64], coded[64], back[64];
    fill(src, 64, rng, Style::Uniform, -32768, 32767);
    ASSERT_EQ(zvpiScanFwd_16s_C1(src, coded, 64, selector), zvpStatusOk);
    ASSERT_EQ(zvpiScanInv_16s_C1(coded, back, 63, selector), zvpStatusOk);
    EXPECT_TRUE(sameArray(back, src, 64));
  }
}

TEST(Scan, ChecksInOrder) {
  const std::int16_t src[64] = {};
  std::int16_t dst[64];
  std::fill(dst, dst + 64, std::int16_t(77));
  using Member = zvpStatus (*)(const std::int16_t*, std::int16_t*, std::int32_t, std::int32_t);
  const struct {
    Member scan;
    int tooLow, lowest, highest;
  } members[] = {{zvpiScanFwd_16s_C1, 0, 1, 64}, {zvpiScanInv_16s_C1, -1, 0, 63}};
  for (const auto& m : members) {
    EXPECT_EQ(m.scan(nullptr, dst, m.tooLow, 0), zvpStatusNullPointer);
    EXPECT_EQ(m.scan(src, nullptr, m.tooLow, 0), zvpStatusNullPointer);
    EXPECT_EQ(m.scan(nullptr, dst, 5, 0), zvpStatusNullPointer);
    EXPECT_EQ(m.scan(src, nullptr, 5, 0), zvpStatusNullPointer);
    for (const int n : {m.tooLow, m.highest + 1, INT32_MAX, INT32_MIN})
      EXPECT_EQ(m.scan(src, dst, n, 0), zvpStatusOutOfRange) << n;
  }
  for (const auto x : dst) EXPECT_EQ(x, 77);
  for (const auto& m : members) {
    EXPECT_EQ(m.scan(src, dst, m.lowest, 0), zvpStatusOk);
    EXPECT_EQ(m.scan(src, dst, m.highest, 0), zvpStatusOk);
  }
}

TEST(Scan, CountOfOneFindsTheOnlyValue) {
  std::int16_t src[64] = {}, dst[64];
  src[8] = -9;
  ASSERT_EQ(zvpiScanFwd_16s_C1(src, dst, 1, 0), zvpStatusOk);
  std::int16_t wanted[64] = {};
  wanted[2] = -9;
  EXPECT_TRUE(sameArray(dst, wanted, 64));
}

// Counts on both sides of 20: the short path drops what exceeds the count, and ends with the block if there is less.
TEST(Scan, CountDecidesThePath) {
  std::int16_t all[64], few[64] = {5, 6}, dst[64];
  std::fill(all, all + 64, std::int16_t(3));
  for (const int count : {1, 19, 20, 64}) {
    ASSERT_EQ(zvpiScanFwd_16s_C1(all, dst, count, 1), zvpStatusOk);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(dst[i], i < count || count >= 20 ? 3 : 0) << count;
    ASSERT_EQ(zvpiScanFwd_16s_C1(few, dst, count, 1), zvpStatusOk);
    EXPECT_EQ(dst[4], count == 1 ? 0 : 6);
  }
}
