// The VC-1 transforms against the models.
#include "reference/vc1/transform.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <string>

#include "support/compare.h"
#include "unit/vc1/plane.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::vc1;

namespace {

struct Shape {
  const char* name;
  int width, height;
  zvpStatus (*inverse)(const std::int16_t*, std::int32_t, std::int16_t*, std::int32_t, zvpSize);
  zvpStatus (*inverseInPlace)(std::int16_t*, std::int32_t, zvpSize);
  zvpStatus (*forward)(const std::int16_t*, std::int32_t, std::int16_t*, std::int32_t);
  zvpStatus (*forwardInPlace)(std::int16_t*, std::int32_t);
};

constexpr Shape shapes[] = {
    {"8x8", 8, 8, zvpiTransform8x8Inv_VC1_16s_C1R, zvpiTransform8x8Inv_VC1_16s_C1IR, zvpiTransform8x8Fwd_VC1_16s_C1R,
     zvpiTransform8x8Fwd_VC1_16s_C1IR},
    {"8x4", 8, 4, zvpiTransform8x4Inv_VC1_16s_C1R, zvpiTransform8x4Inv_VC1_16s_C1IR, zvpiTransform8x4Fwd_VC1_16s_C1R,
     zvpiTransform8x4Fwd_VC1_16s_C1IR},
    {"4x8", 4, 8, zvpiTransform4x8Inv_VC1_16s_C1R, zvpiTransform4x8Inv_VC1_16s_C1IR, zvpiTransform4x8Fwd_VC1_16s_C1R,
     zvpiTransform4x8Fwd_VC1_16s_C1IR},
    {"4x4", 4, 4, zvpiTransform4x4Inv_VC1_16s_C1R, zvpiTransform4x4Inv_VC1_16s_C1IR, zvpiTransform4x4Fwd_VC1_16s_C1R,
     zvpiTransform4x4Fwd_VC1_16s_C1IR},
};

// Values around the limits within which sums of the inverse transform keep 16 bits, and of the whole range.
void fillValues(Plane& plane, Rng& rng) {
  const int limit = rng.pick<int>({3, 200, 1000, 2911, 2912, 2913, 4096, 32767});
  const Style style = anyStyle(rng);
  Values values(rng, style, limit == 32767 ? -32768 : -limit, limit);
  for (int y = 0; y < plane.height(); ++y)
    for (int x = 0; x < plane.width(); ++x) plane.set(x, y, std::int16_t(values.next()));
  if (rng.chance(4)) {
    const int x = rng.range(0, plane.width() - 1), y = rng.range(0, plane.height() - 1);
    plane.set(x, y, rng.pick<std::int16_t>({-32768, 32767, -2913, 2913, -2912, 2912}));
  }
}

model::Corner randomPromise(Rng& rng) {
  const auto size = [&] { return rng.chance(10) ? rng.pick<int>({INT_MIN, -1, 0, 9, INT_MAX}) : rng.range(0, 8); };
  const int width = size();
  return {width, rng.chance(2) ? width : size()};
}

// The corner's elements in a block; those outside it are what a call must not see.
Block inBlock(const Plane& corner, int width, int height) {
  Block values(std::size_t(width * height), 12345);
  for (int y = 0; y < corner.height(); ++y)
    for (int x = 0; x < corner.width(); ++x) values[std::size_t(y * width + x)] = corner.get(x, y);
  return values;
}

zvpSize sizeOf(model::Corner corner) { return {corner.width, corner.height}; }

template <class Test>
void forAllShapes(int roundsOfEach, Test test) {
  Rng rng(11);
  for (const Shape& shape : shapes)
    for (int round = 0; round < rounds(roundsOfEach); ++round) {
      SCOPED_TRACE(std::string(shape.name) + " round " + std::to_string(round));
      test(shape, rng);
      if (::testing::Test::HasFailure()) return;
    }
}

}  // namespace

TEST(Transform, InverseMatchesTheModel) {
  forAllShapes(5000, [](const Shape& shape, Rng& rng) {
    const auto promise = randomPromise(rng);
    const auto corner = model::cornerRead(shape.width, shape.height, promise);
    Plane src = randomPlane(rng, corner.width, corner.height), dst = randomPlane(rng, shape.width, shape.height);
    fillValues(src, rng);
    Block wanted(std::size_t(shape.width * shape.height));
    model::transformInverse(shape.width, shape.height, inBlock(src, shape.width, shape.height).data(), promise,
                            wanted.data());
    const auto expected = with(dst, wanted);
    src.bytes().makeReadOnly();
    ASSERT_EQ(shape.inverse(src.data(), std::int32_t(src.step()), dst.data(), std::int32_t(dst.step()),
                            sizeOf(promise)),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << "promised " << promise.width << "x" << promise.height;
  });
}

TEST(Transform, InverseInPlaceMatchesTheModel) {
  forAllShapes(3000, [](const Shape& shape, Rng& rng) {
    const auto promise = randomPromise(rng);
    Plane block = randomPlane(rng, shape.width, shape.height);
    fillValues(block, rng);
    Block wanted = valuesOf(block);
    model::transformInverse(shape.width, shape.height, wanted.data(), promise, wanted.data());
    const auto expected = with(block, wanted);
    ASSERT_EQ(shape.inverseInPlace(block.data(), std::int32_t(block.step()), sizeOf(promise)), zvpStatusOk);
    ASSERT_TRUE(sameBytes(block.snapshot(), expected)) << "promised " << promise.width << "x" << promise.height;
  });
}

TEST(Transform, ForwardMatchesTheModel) {
  forAllShapes(3000, [](const Shape& shape, Rng& rng) {
    Plane src = randomPlane(rng, shape.width, shape.height), dst = randomPlane(rng, shape.width, shape.height);
    fillValues(src, rng);
    Block wanted = valuesOf(src);
    model::transformForward(shape.width, shape.height, wanted.data(), wanted.data());
    const auto expected = with(dst, wanted), expectedInPlace = with(src, wanted);
    ASSERT_EQ(shape.forward(src.data(), std::int32_t(src.step()), dst.data(), std::int32_t(dst.step())), zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected));
    ASSERT_EQ(shape.forwardInPlace(src.data(), std::int32_t(src.step())), zvpStatusOk);
    ASSERT_TRUE(sameBytes(src.snapshot(), expectedInPlace));
  });
}

TEST(Transform, SourceAndDestinationMayOverlap) {
  forAllShapes(500, [](const Shape& shape, Rng& rng) {
    std::array<std::int16_t, 160> memory;
    fill(memory.data(), memory.size(), rng, Style::Uniform, -3000, 3000);
    const int from = rng.range(0, 80), to = rng.range(0, 80);
    Block wanted(std::size_t(shape.width * shape.height));
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x)
        wanted[std::size_t(y * shape.width + x)] = memory[std::size_t(from + 10 * y + x)];
    const bool inverse = rng.chance(2);
    auto expected = memory;
    if (inverse)
      model::transformInverse(shape.width, shape.height, wanted.data(), {8, 8}, wanted.data());
    else
      model::transformForward(shape.width, shape.height, wanted.data(), wanted.data());
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x)
        expected[std::size_t(to + 10 * y + x)] = wanted[std::size_t(y * shape.width + x)];
    if (inverse)
      ASSERT_EQ(shape.inverse(&memory[std::size_t(from)], 20, &memory[std::size_t(to)], 20, {8, 8}), zvpStatusOk);
    else
      ASSERT_EQ(shape.forward(&memory[std::size_t(from)], 20, &memory[std::size_t(to)], 20), zvpStatusOk);
    ASSERT_TRUE(sameArray(memory.data(), expected.data(), memory.size()));
  });
}

// Every DC: as a promise of 1x1 or less, as part of the whole block, and by the formula.
TEST(Transform, DcByEveryPath) {
  for (const Shape& shape : shapes) {
    const int row = shape.width == 8 ? 12 : 17, column = shape.height == 8 ? 12 : 17;
    for (int dc = -32768; dc < 32768; dc += dc % 7 ? 1 : 3) {
      const auto wanted = std::int16_t((((dc * row + 4) >> 3) * column + 64) >> 7);
      for (const zvpSize promise : {zvpSize{1, 1}, zvpSize{0, 0}, zvpSize{2, 2}, zvpSize{3, 4}, zvpSize{8, 8}}) {
        std::int16_t block[64] = {std::int16_t(dc)};
        ASSERT_EQ(shape.inverseInPlace(block, 2 * shape.width, promise), zvpStatusOk);
        for (int i = 0; i < shape.width * shape.height; ++i)
          ASSERT_EQ(block[i], wanted) << shape.name << " dc " << dc << " promised " << promise.width;
      }
    }
  }
}

// 5 rows are more than the 4x4 corner has, 3 columns more than the 2x2 corner has.
TEST(Transform, CornersAreLimitedBothWays) {
  std::int16_t tall[64] = {}, wanted[64];
  tall[32] = 100;
  model::transformInverse(8, 8, tall, {8, 8}, wanted);
  ASSERT_EQ(zvpiTransform8x8Inv_VC1_16s_C1IR(tall, 16, {2, 5}), zvpStatusOk);
  EXPECT_TRUE(sameArray(tall, wanted, 64));
  std::int16_t wide[16] = {0, 0, 100};
  model::transformInverse(4, 4, wide, {4, 4}, wanted);
  ASSERT_EQ(zvpiTransform4x4Inv_VC1_16s_C1IR(wide, 8, {3, 1}), zvpStatusOk);
  EXPECT_TRUE(sameArray(wide, wanted, 16));
  EXPECT_NE(wide[0], 0);
}

// 90 in row 3 makes 135 between the passes; row 4 has (9 * 135 + 65) >> 7, and 64 would make it 9.
TEST(Transform, LowerRowsRoundUpByOneMore) {
  const std::int16_t column[8] = {16, -4, -17, -9, 10, 17, 4, -16};
  for (const zvpSize promise : {zvpSize{1, 4}, zvpSize{8, 8}}) {
    std::int16_t block[64] = {};
    block[24] = 90;
    ASSERT_EQ(zvpiTransform8x8Inv_VC1_16s_C1IR(block, 16, promise), zvpStatusOk);
    for (int i = 0; i < 64; ++i) EXPECT_EQ(block[i], column[i / 8]);
  }
}

TEST(Transform, ForwardOfZerosIsZero) {
  for (const Shape& shape : shapes) {
    std::int16_t block[64] = {};
    const std::int16_t zeros[64] = {};
    ASSERT_EQ(shape.forwardInPlace(block, 2 * shape.width), zvpStatusOk);
    EXPECT_TRUE(sameArray(block, zeros, 64));
  }
}

// Three roundings on the way, each of at most half a step, and the one that is left out of the middle of the inverse.
TEST(Transform, InverseTakesBackTheForward) {
  forAllShapes(500, [](const Shape& shape, Rng& rng) {
    std::int16_t samples[64], block[64];
    const Style style = anyStyle(rng);
    fill(samples, 64, rng, style, -255, 255);
    std::copy(samples, samples + 64, block);
    ASSERT_EQ(shape.forwardInPlace(block, 2 * shape.width), zvpStatusOk);
    ASSERT_EQ(shape.inverseInPlace(block, 2 * shape.width, {8, 8}), zvpStatusOk);
    for (int i = 0; i < shape.width * shape.height; ++i) ASSERT_LE(std::abs(block[i] - samples[i]), 2);
  });
}

TEST(Transform, NullPointersAreRefused) {
  std::int16_t block[64], same[64];
  std::fill(block, block + 64, std::int16_t(77));
  std::fill(same, same + 64, std::int16_t(77));
  for (const Shape& shape : shapes) {
    EXPECT_EQ(shape.inverse(nullptr, 16, block, 16, {8, 8}), zvpStatusNullPointer);
    EXPECT_EQ(shape.inverse(block, 16, nullptr, 16, {8, 8}), zvpStatusNullPointer);
    EXPECT_EQ(shape.inverse(nullptr, 16, nullptr, 16, {1, 1}), zvpStatusNullPointer);
    EXPECT_EQ(shape.inverseInPlace(nullptr, 16, {1, 1}), zvpStatusNullPointer);
    EXPECT_EQ(shape.forward(nullptr, 16, block, 16), zvpStatusNullPointer);
    EXPECT_EQ(shape.forward(block, 16, nullptr, 16), zvpStatusNullPointer);
    // The 8x4 forward member in place makes no check, so it cannot be asked.
    if (shape.forwardInPlace != zvpiTransform8x4Fwd_VC1_16s_C1IR) {
      EXPECT_EQ(shape.forwardInPlace(nullptr, 16), zvpStatusNullPointer);
    }
  }
  EXPECT_TRUE(sameArray(block, same, 64));
}
