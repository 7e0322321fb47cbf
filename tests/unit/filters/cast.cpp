#include "reference/filters/cast.h"

#include <gtest/gtest.h>

#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;
using std::uint8_t;

namespace {

using Plane = GuardedPlane<uint8_t>;
constexpr zvpDenoiseCASTParams defaults = {16, 0, 8, 4, 4, 128, 16, 12, 6, 192};

auto entry(bool packed) { return packed ? zvpiFilterDenoiseCASTYUV422_8u_C2R : zvpiFilterDenoiseCAST_8u_C1R; }

zvpDenoiseCASTParams anyParams(Rng& rng) {
  zvpDenoiseCASTParams params = defaults;
  if (rng.chance(3)) return params;
  params.temporalDiffThreshold = uint8_t(rng.pick<int>({0, 1, 5, 16, 100, 255}));
  params.motionPixelThreshold = uint8_t(rng.pick<int>({0, 1, 4, 15, 255}));
  params.strongEdgeThreshold = uint8_t(rng.pick<int>({0, 8, 128, 255}));
  if (rng.chance(2)) {
    params.blockWidth = uint8_t(rng.pick<int>({1, 2, 3, 4, 5, 8, 16, 17, 40, 255}));
    params.blockHeight = uint8_t(rng.pick<int>({1, 2, 3, 4, 5, 8, 255}));
  }
  params.edgePixelWeight = uint8_t(rng.pick<int>({0, 128, 255}));
  params.flatPixelWeight = uint8_t(rng.pick<int>({0, 16, 255}));
  params.spatialThresholdLuma = uint8_t(rng.pick<int>({0, 1, 12, 80, 255}));
  params.spatialThresholdChroma = uint8_t(rng.pick<int>({0, 1, 6, 80, 255}));
  params.historyInit = uint8_t(rng.pick<int>({0, 1, 127, 128, 192, 200, 255}));
  return params;
}

std::size_t historySize(const zvpDenoiseCASTParams& p, zvpSize size, bool packed) {
  const int rowBytes = packed ? 2 * size.width : size.width, group = (packed ? 4 : 1) * p.blockWidth;
  return std::size_t((rowBytes + group - 1) / group) * (packed ? 4u : 1u) *
         std::size_t((size.height + p.blockHeight - 1) / p.blockHeight);
}

void runRandom(bool packed, std::uint64_t seed) {
  Rng rng(seed);
  for (int round = 0; round < rounds(700); ++round) {
    const zvpSize size = {packed ? 2 * rng.range(1, 40) : rng.range(1, 80), rng.range(1, 14)};
    const int rowBytes = packed ? 2 * size.width : size.width;
    const zvpDenoiseCASTParams params = anyParams(rng);
    const std::ptrdiff_t step = rng.step(rowBytes, true);
    Plane current(rowBytes, size.height, step, rng.guard()), previous(rowBytes, size.height, step, rng.guard());
    Plane edges{rowBytes, size.height, rng.step(rowBytes, true), rng.guard()};
    Plane dst{rowBytes, size.height, rng.step(rowBytes, true), rng.guard()};
    fill(current, rng, anyStyle(rng), 0, 255);
    fill(previous, rng, Style::Uniform, 0, 255);
    fill(edges, rng, anyStyle(rng), 0, 30);
    fill(dst, rng, Style::Uniform, 0, 255);
    const int noise = rng.pick<int>({0, 2, 17, 255});
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < rowBytes; ++x)
        if (!rng.chance(9))
          previous.set(x, y, uint8_t(std::clamp(current.get(x, y) + rng.range(-noise, noise), 0, 255)));
    const bool first = rng.chance(4), withHistory = !rng.chance(3);
    GuardedArray<uint8_t> history(historySize(params, size, packed), rng.guard());
    fill(history, rng, Style::Uniform, 0, 255);
    std::vector<uint8_t> expectedHistory = history.bytes().bytes(), expected = dst.snapshot();
    reference::denoiseCast({current.data(), step}, {first ? nullptr : previous.data(), step},
                           {edges.data(), edges.step()},
                           {expected.data() + (dst.data() - dst.bytes().data()), dst.step()}, size,
                           withHistory ? expectedHistory.data() : nullptr, params, packed);
    current.bytes().makeReadOnly();
    previous.bytes().makeReadOnly();
    edges.bytes().makeReadOnly();
    ASSERT_EQ(
        entry(packed)(current.data(), first ? nullptr : previous.data(), int(step), edges.data(), int(edges.step()),
                      size, dst.data(), int(dst.step()), withHistory ? history.data() : nullptr, &params),
        zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected))
        << size.width << "x" << size.height << " blocks " << int(params.blockWidth) << "x" << int(params.blockHeight);
    ASSERT_TRUE(sameBytes(history.bytes().bytes(), expectedHistory));
  }
}

}  // namespace

TEST(DenoiseCast, PlaneMatchesTheModel) { runRandom(false, 21); }
TEST(DenoiseCast, Packed422MatchesTheModel) { runRandom(true, 22); }

TEST(DenoiseCast, DefaultParameters) {
  zvpDenoiseCASTParams params;
  std::memset(&params, 99, sizeof params);
  EXPECT_EQ(zvpiFilterDenoiseCASTInit(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiFilterDenoiseCASTInit(&params), zvpStatusOk);
  EXPECT_EQ(std::memcmp(&params, &defaults, sizeof params), 0);
}

TEST(DenoiseCast, NullParametersMeanTheDefaults) {
  Rng rng(23);
  std::vector<uint8_t> current(64 * 16), previous(64 * 16), edges(64 * 16);
  fill(current.data(), current.size(), rng, Style::Smooth, 0, 255);
  previous = current;
  for (int i = 0; i < 40; ++i) previous[std::size_t(rng.range(0, 64 * 16 - 1))] = uint8_t(rng.next());
  fill(edges.data(), edges.size(), rng, Style::Uniform, 0, 16);
  for (bool packed : {false, true}) {
    const zvpSize size = {packed ? 32 : 64, 16};
    std::vector<uint8_t> a(64 * 16), b(64 * 16), ha(64, 192), hb(64, 192);
    ASSERT_EQ(
        entry(packed)(current.data(), previous.data(), 64, edges.data(), 64, size, a.data(), 64, ha.data(), nullptr),
        zvpStatusOk);
    ASSERT_EQ(
        entry(packed)(current.data(), previous.data(), 64, edges.data(), 64, size, b.data(), 64, hb.data(), &defaults),
        zvpStatusOk);
    EXPECT_TRUE(sameBytes(a, b));
    EXPECT_TRUE(sameBytes(ha, hb));
  }
}

TEST(DenoiseCast, ThePreviousFrameMayBeTheDestination) {
  Rng rng(24);
  for (bool packed : {false, true})
    for (int round = 0; round < rounds(60); ++round) {
      const int rowBytes = 4 * rng.range(1, 20), height = rng.range(1, 13);
      const zvpSize size = {packed ? rowBytes / 2 : rowBytes, height};
      const auto count = std::size_t(rowBytes * height);
      zvpDenoiseCASTParams params = anyParams(rng);
      std::vector<uint8_t> current(count), both(count), edges(count, 4), apart(count);
      fill(current.data(), count, rng, Style::Smooth, 0, 255);
      for (std::size_t i = 0; i < count; ++i) both[i] = uint8_t(std::clamp(current[i] + rng.range(-20, 20), 0, 255));
      const std::vector<uint8_t> previous = both;
      apart = both;
      ASSERT_EQ(entry(packed)(current.data(), previous.data(), rowBytes, edges.data(), rowBytes, size, apart.data(),
                              rowBytes, nullptr, &params),
                zvpStatusOk);
      ASSERT_EQ(entry(packed)(current.data(), both.data(), rowBytes, edges.data(), rowBytes, size, both.data(),
                              rowBytes, nullptr, &params),
                zvpStatusOk);
      ASSERT_TRUE(sameBytes(both, apart));
    }
}

TEST(DenoiseCast, HistoryOfAStillAndOfAMovingBlock) {
  const std::vector<uint8_t> a(16, 50), b(16, 150), edges(16);
  std::vector<uint8_t> dst(16);
  uint8_t h = 0;
  const auto step = [&](bool moved) {
    EXPECT_EQ(zvpiFilterDenoiseCAST_8u_C1R(a.data(), moved ? b.data() : a.data(), 4, edges.data(), 4, {4, 4},
                                           dst.data(), 4, &h, nullptr),
              zvpStatusOk);
    return int(h);
  };
  ASSERT_EQ(zvpiFilterDenoiseCAST_8u_C1R(a.data(), nullptr, 4, edges.data(), 4, {4, 4}, dst.data(), 4, &h, nullptr), 0);
  EXPECT_EQ(h, 192);
  EXPECT_EQ(step(false), 196);
  EXPECT_EQ(step(false), 200);
  EXPECT_EQ(step(false), 200);
  EXPECT_EQ(step(true), 100);
  EXPECT_EQ(step(false), 128);
  EXPECT_EQ(step(false), 132);
  h = 100;
  EXPECT_EQ(step(true), 128);
  EXPECT_EQ(step(true), 64);
  EXPECT_EQ(step(true), 128);
}

TEST(DenoiseCast, OneMovedPixelMovesTheBlock) {
  std::vector<uint8_t> a(16, 50), b(16, 50), edges(16), dst(16);
  b[5] = 50 + 17;
  uint8_t h = 192;
  ASSERT_EQ(zvpiFilterDenoiseCAST_8u_C1R(a.data(), b.data(), 4, edges.data(), 4, {4, 4}, dst.data(), 4, &h, nullptr),
            0);
  EXPECT_EQ(h, 96);
  b[5] = 50 + 16;
  h = 192;
  ASSERT_EQ(zvpiFilterDenoiseCAST_8u_C1R(a.data(), b.data(), 4, edges.data(), 4, {4, 4}, dst.data(), 4, &h, nullptr),
            0);
  EXPECT_EQ(h, 196);
}

TEST(DenoiseCast, ACutBlockCountsItsLastColumnAndRowForTheMissingOnes) {
  // One pixel is all that is left of a 4x4 block: its flag counts 16 times.
  const uint8_t a = 10, b = 200, edge = 0;
  uint8_t dst = 0, h = 192;
  zvpDenoiseCASTParams params = defaults;
  params.motionPixelThreshold = 15;
  ASSERT_EQ(zvpiFilterDenoiseCAST_8u_C1R(&a, &b, 1, &edge, 1, {1, 1}, &dst, 1, &h, &params), zvpStatusOk);
  EXPECT_EQ(h, 96);
  params.motionPixelThreshold = 16;
  h = 192;
  ASSERT_EQ(zvpiFilterDenoiseCAST_8u_C1R(&a, &b, 1, &edge, 1, {1, 1}, &dst, 1, &h, &params), zvpStatusOk);
  EXPECT_EQ(h, 196);
}

TEST(DenoiseCast, AStillBlockWithoutHistoryOrWeightIsLeftOut) {
  const std::vector<uint8_t> a(16, 50), edges(16);
  std::vector<uint8_t> dst(16, 77);
  zvpDenoiseCASTParams params = defaults;
  params.historyInit = 0;
  ASSERT_EQ(
      zvpiFilterDenoiseCAST_8u_C1R(a.data(), a.data(), 4, edges.data(), 4, {4, 4}, dst.data(), 4, nullptr, &params),
      zvpStatusOk);
  for (uint8_t value : dst) EXPECT_EQ(value, 77);
}

TEST(DenoiseCast, AnEdgeAtTheThresholdIsNotStrong) {
  // 40 among 50s: all near, mean (8 * 50 + 40 + 4) / 9 = 49.
  std::vector<uint8_t> a(9, 50), dst(9);
  a[4] = 40;
  std::vector<uint8_t> edges(9, 8);
  ASSERT_EQ(
      zvpiFilterDenoiseCAST_8u_C1R(a.data(), nullptr, 3, edges.data(), 3, {3, 3}, dst.data(), 3, nullptr, nullptr),
      zvpStatusOk);
  EXPECT_EQ(dst[4], (240 * 49 + 40 * 16 + 128) >> 8);
  edges[4] = 9;
  ASSERT_EQ(
      zvpiFilterDenoiseCAST_8u_C1R(a.data(), nullptr, 3, edges.data(), 3, {3, 3}, dst.data(), 3, nullptr, nullptr),
      zvpStatusOk);
  EXPECT_EQ(dst[4], (128 * 49 + 40 * 128 + 128) >> 8);
}

TEST(DenoiseCast, ChecksInOrder) {
  uint8_t bytes[64] = {}, dst[64] = {7};
  for (bool packed : {false, true}) {
    const auto call = [&](const uint8_t* current, const uint8_t* edges, uint8_t* to, zvpSize size) {
      return entry(packed)(current, bytes, 8, edges, 8, size, to, 8, nullptr, nullptr);
    };
    EXPECT_EQ(call(nullptr, bytes, dst, {0, 0}), zvpStatusNullPointer);
    EXPECT_EQ(call(bytes, nullptr, dst, {0, 0}), zvpStatusNullPointer);
    EXPECT_EQ(call(bytes, bytes, nullptr, {0, 0}), zvpStatusNullPointer);
    EXPECT_EQ(call(bytes, bytes, dst, {0, 4}), zvpStatusBadSize);
    EXPECT_EQ(call(bytes, bytes, dst, {2, 0}), zvpStatusBadSize);
    EXPECT_EQ(call(bytes, bytes, dst, {-2, 4}), zvpStatusBadSize);
  }
  EXPECT_EQ(zvpiFilterDenoiseCASTYUV422_8u_C2R(bytes, bytes, 8, bytes, 8, {3, 1}, dst, 8, nullptr, nullptr),
            zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
}
