// Top and Bottom entries, plane expansion and the mean of two blocks.
#include <gtest/gtest.h>

#include <algorithm>

#include "reference/h264/interpolate.h"
#include "support/compare.h"
#include "unit/h264/prediction.h"

using namespace zvptest;
namespace model = reference::h264;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;

namespace {

enum class Edge { Top, Bottom };

// One call of the member for the sample type.
template <class T>
zvpStatus callMember(Edge edge, bool luma, const T* src, int32_t srcStep, T* dst, int32_t dstStep, int dx, int dy,
                     int32_t outPixels, zvpSize size, int bitDepth) {
  if constexpr (sizeof(T) == 1) {
    const auto member = edge == Edge::Top
                            ? (luma ? zvpiInterpolateLumaTop_H264_8u_C1R : zvpiInterpolateChromaTop_H264_8u_C1R)
                            : (luma ? zvpiInterpolateLumaBottom_H264_8u_C1R : zvpiInterpolateChromaBottom_H264_8u_C1R);
    return member(src, srcStep, dst, dstStep, dx, dy, outPixels, size);
  } else {
    const auto member =
        edge == Edge::Top ? (luma ? zvpiInterpolateLumaTop_H264_16u_C1R : zvpiInterpolateChromaTop_H264_16u_C1R)
                          : (luma ? zvpiInterpolateLumaBottom_H264_16u_C1R : zvpiInterpolateChromaBottom_H264_16u_C1R);
    const H264Interpolate16u record = {src, srcStep, dst, dstStep, dx, dy, size, bitDepth};
    return member(&record, outPixels);
  }
}

// The row that is read for row y of the block's surround.
int sourceRow(Edge edge, bool luma, int y, int height, int outPixels) {
  if (edge == Edge::Bottom) return std::min(y, height - 1 - outPixels);
  if (!luma && outPixels < 0) return y + outPixels;  // the copy begins that much higher
  return std::max(y, outPixels);
}

template <class T>
void expectEdge(std::uint64_t seed, Edge edge, bool luma, int count) {
  Rng rng(seed);
  const std::vector<int> lengths = luma ? std::vector<int>{4, 8, 16} : std::vector<int>{2, 4, 8, 16};
  for (int round = 0; round < count; ++round) {
    const int fractions = luma ? 3 : 7;
    const int dx = rng.chance(3) ? 0 : rng.range(1, fractions), dy = rng.chance(3) ? 0 : rng.range(1, fractions);
    zvpSize size;
    if (sizeof(T) == 1) {
      size = luma ? zvpSize{4 * rng.range(1, 7), 4 * rng.range(1, rng.chance(6) ? 12 : 4)}
                  : zvpSize{2 * rng.range(1, 7), 2 * rng.range(1, rng.chance(6) ? 24 : 8)};
    } else {
      do size = {rng.pick(lengths), rng.pick(lengths)};
      while (luma && size.width + size.height == 20);
    }
    const int outPixels = rng.range(-8, size.height + 8);
    const int bitDepth = sizeof(T) == 1 ? 8 : rng.range(8, 14), high = (1 << bitDepth) - 1;
    const int left = luma && dx != 0 ? 2 : 0, right = dx == 0 ? 0 : luma ? 3 : 4;
    const int above = luma && dy != 0 ? 2 : 0, below = dy == 0 ? 0 : luma ? 3 : 1;
    int first = INT32_MAX, last = INT32_MIN;
    for (int y = -above; y < size.height + below; ++y) {
      first = std::min(first, sourceRow(edge, luma, y, size.height, outPixels));
      last = std::max(last, sourceRow(edge, luma, y, size.height, outPixels));
    }
    // Exactly the rows that are read: row 0 of the plane is row first of the source.
    const auto minimum = std::ptrdiff_t(sizeof(T)) * std::max(8, size.width + left + right);
    GuardedPlane<T> src{size.width, last - first + 1, rng.step(minimum, sizeof(T) == 1, sizeof(T)), rng.guard(),
                        {left, right, 0, 0}};
    GuardedPlane<T> dst{size.width, size.height, rng.step(minimum, sizeof(T) == 1, sizeof(T)), rng.guard()};
    fill(src, rng, anyStyle(rng), 0, high);
    fill(dst, rng, Style::Uniform, 0, high);
    Expected<T> expected(dst);
    const auto at = [&](int x, int y) { return src.get(x, sourceRow(edge, luma, y, size.height, outPixels) - first); };
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x)
        expected.set(x, y, luma ? model::lumaSample(at, x, y, dx, dy, high) : model::chromaSample(at, x, y, dx, dy));
    src.bytes().makeReadOnly();
    const T* const place = src.data() - std::ptrdiff_t(first) * unitStep(src);
    ASSERT_EQ(
        callMember<T>(edge, luma, place, unitStep(src), dst.data(), unitStep(dst), dx, dy, outPixels, size, bitDepth),
        zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes())) << size.width << "x" << size.height << " at " << dx << "/"
                                                             << dy << ", out " << outPixels << ", round " << round;
  }
}

}  // namespace

TEST(InterpolateTop, Luma) {
  expectEdge<uint8_t>(201, Edge::Top, true, rounds(1000));
  expectEdge<uint16_t>(202, Edge::Top, true, rounds(500));
}
TEST(InterpolateTop, ChromaBeginsHigherForANegativeCount) {
  expectEdge<uint8_t>(203, Edge::Top, false, rounds(1000));
  expectEdge<uint16_t>(204, Edge::Top, false, rounds(500));
}
TEST(InterpolateBottom, Luma) {
  expectEdge<uint8_t>(205, Edge::Bottom, true, rounds(1000));
  expectEdge<uint16_t>(206, Edge::Bottom, true, rounds(500));
}
TEST(InterpolateBottom, Chroma) {
  expectEdge<uint8_t>(207, Edge::Bottom, false, rounds(1000));
  expectEdge<uint16_t>(208, Edge::Bottom, false, rounds(500));
}

TEST(InterpolateBottom, WithNoRowOutTheLastRowIsRepeated) {
  uint8_t rows[6 * 4], out[16];
  for (int i = 0; i < 24; ++i) rows[i] = uint8_t(10 * i);
  // Half a sample down: the last row of the block is that of rows 3 and 3 and not of rows 3 and 4.
  ASSERT_EQ(zvpiInterpolateChromaBottom_H264_8u_C1R(rows, 4, out, 4, 0, 4, 0, {4, 4}), zvpStatusOk);
  for (int x = 0; x < 4; ++x) {
    EXPECT_EQ(out[8 + x], (rows[8 + x] + rows[12 + x] + 1) / 2);
    EXPECT_EQ(out[12 + x], rows[12 + x]);
  }
}

TEST(InterpolateTopAndBottom, OutPixelsMayBeAnything) {
  Rng rng(209);
  for (const int outPixels : {INT32_MIN, INT32_MAX}) {
    // With a step of 0 every row is the same one.
    uint8_t row[9], out[16];
    fill(row, sizeof row, rng, Style::Uniform, 0, 255);
    for (const Edge edge : {Edge::Top, Edge::Bottom}) {
      ASSERT_EQ(callMember<uint8_t>(edge, true, row + 2, 0, out, 4, 2, 2, outPixels, {4, 4}, 8), zvpStatusOk);
      const auto at = [&](int x, int) { return row[x + 2]; };
      for (int i = 0; i < 16; ++i) ASSERT_EQ(out[i], model::lumaSample(at, i % 4, 0, 2, 2, 255));
    }
  }
}

TEST(InterpolateTopAndBottom, ChecksAreThoseOfThePlainEntries) {
  const uint8_t src[1024] = {};
  uint8_t dst[256] = {7};
  for (const bool luma : {true, false})
    for (const Edge edge : {Edge::Top, Edge::Bottom}) {
      const auto call = [&](const uint8_t* from, uint8_t* to, int dx, int dy, zvpSize size) {
        return callMember<uint8_t>(edge, luma, from, 32, to, 16, dx, dy, 1, size, 8);
      };
      const int badFraction = luma ? 4 : 8;
      EXPECT_EQ(call(nullptr, dst, badFraction, 0, {3, 3}), zvpStatusNullPointer);
      EXPECT_EQ(call(src + 300, nullptr, badFraction, 0, {3, 3}), zvpStatusNullPointer);
      EXPECT_EQ(call(src + 300, dst, badFraction, 0, {3, 3}), zvpStatusBadArgument);
      EXPECT_EQ(call(src + 300, dst, 0, -1, {4, 4}), zvpStatusBadArgument);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {3, 4}), zvpStatusBadSize);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {32, 4}), zvpStatusBadSize);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {4, 3}), zvpStatusBadSize);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {0, 4}), zvpStatusOk);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {4, 0}), zvpStatusOk);
      EXPECT_EQ(call(src + 300, dst, 1, 1, {4, -4}), zvpStatusOk);

      const uint16_t src16[1024] = {};
      uint16_t dst16[512] = {7};
      const auto call16 = [&](const uint16_t* from, uint16_t* to, int step, int dx, zvpSize size) {
        return callMember<uint16_t>(edge, luma, from, step, to, step, dx, 0, 1, size, 8);
      };
      EXPECT_EQ(call16(nullptr, dst16, 1, badFraction, {3, 3}), zvpStatusNullPointer);
      EXPECT_EQ(call16(src16 + 300, nullptr, 1, badFraction, {3, 3}), zvpStatusNullPointer);
      EXPECT_EQ(call16(src16 + 300, dst16, luma ? 2 : 7, badFraction, {3, 3}), zvpStatusBadStep);
      EXPECT_EQ(call16(src16 + 300, dst16, 16, badFraction, {3, 3}), zvpStatusBadArgument);
      EXPECT_EQ(call16(src16 + 300, dst16, 16, 1, {3, 4}), zvpStatusBadSize);
      EXPECT_EQ(call16(src16 + 300, dst16, 16, 1, {4, 3}), zvpStatusBadSize);
      EXPECT_EQ(call16(src16 + 300, dst16, 32, 1, {4, 16}), luma ? zvpStatusBadSize : zvpStatusOk);
      EXPECT_EQ(dst16[0], luma ? 7 : 0);
      using Entry16 = zvpStatus (*)(const H264Interpolate16u*, int32_t);
      for (const Entry16 entry : {zvpiInterpolateLumaTop_H264_16u_C1R, zvpiInterpolateLumaBottom_H264_16u_C1R,
                                  zvpiInterpolateChromaTop_H264_16u_C1R, zvpiInterpolateChromaBottom_H264_16u_C1R})
        EXPECT_EQ(entry(nullptr, 0), zvpStatusNullPointer);
    }
  EXPECT_EQ(dst[0], 7);
}

TEST(ExpandPlane, MatchesTheModel) {
  Rng rng(211);
  for (int round = 0; round < rounds(600); ++round) {
    const int width = rng.range(1, 40), height = 2 * rng.range(1, 12), margin = rng.range(1, 21),
              kind = rng.range(0, 2);
    GuardedPlane<uint8_t> plane{width, height, rng.step(width + 2 * margin, true), rng.guard(),
                                {margin, margin, margin, margin}};
    fill(plane, rng, Style::Uniform, 0, 255);
    Expected<uint8_t> expected(plane);
    model::expandPlane([&](int x, int y) { return plane.get(x, y); },
                       [&](int x, int y, uint8_t v) { expected.set(x, y, v); }, width, height, margin, kind);
    ASSERT_EQ(zvpiExpandPlane_H264_8u_C1R(plane.data(), width, height, int32_t(plane.step()), uint32_t(margin),
                                          uint32_t(kind)),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(plane.snapshot(), expected.bytes()))
        << width << "x" << height << "+" << margin << ", " << kind;
  }
}

// The rows that a field writes around a plane of four rows, by the formulas: (e + 1) / 2 below and e / 2 above the top
// field, e / 2 below and (e + 1) / 2 above the bottom field.
TEST(ExpandPlane, RowsOfFields) {
  for (const int margin : {1, 2, 3, 4})
    for (const uint32_t kind : {1u, 2u}) {
      const int step = 1 + 2 * 4, rows = 4 + 2 * 6;
      std::vector<uint8_t> memory(std::size_t(step * rows), 0);
      uint8_t* const plane = &memory[std::size_t(6 * step + 4)];
      for (int y = 0; y < 4; ++y) plane[y * step] = uint8_t(y + 1);
      ASSERT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 1, 4, step, uint32_t(margin), kind), zvpStatusOk);
      const int above = kind == 1 ? margin / 2 : (margin + 1) / 2, below = kind == 1 ? (margin + 1) / 2 : margin / 2;
      const int first = kind == 1 ? 0 : 1;
      for (int y = -6; y < 10; ++y) {
        const bool own = (y - first) % 2 == 0 && y >= first - 2 * above && y <= first + 2 + 2 * below;
        const int value = !own ? 0 : y < first ? first + 1 : y > first + 2 ? first + 3 : y + 1;
        for (int x = -4; x <= 4; ++x) {
          const bool untouched = x == 0 && y >= 0 && y < 4;
          const bool written = own && x >= -margin && x <= margin;
          ASSERT_EQ(plane[y * step + x], untouched ? y + 1 : written ? value : 0) << x << "," << y << " kind " << kind;
        }
      }
    }
}

// Rows may share the memory of their margins: what is filled later stays, and the rows above are whole copies.
TEST(ExpandPlane, MarginsThatRowsShare) {
  Rng rng(212);
  for (int round = 0; round < rounds(200); ++round) {
    const int width = rng.range(1, 24), height = 2 * rng.range(1, 6), margin = rng.range(1, 12);
    const int step = width + rng.range(margin, 2 * margin - 1);
    std::vector<uint8_t> actual(std::size_t(step * (height + 2 * margin) + 2 * margin));
    fill(actual.data(), actual.size(), rng, Style::Uniform, 0, 255);
    auto wanted = actual;
    const int origin = margin * step + margin;
    const auto at = [&](int x, int y) -> uint8_t& { return wanted[std::size_t(origin + y * step + x)]; };
    for (int y = height; y < height + margin; ++y)
      for (int x = 0; x < width; ++x) at(x, y) = at(x, height - 1);
    for (int y = 0; y < height + margin; ++y) {
      for (int x = -margin; x < 0; ++x) at(x, y) = at(0, y);
      for (int x = width; x < width + margin; ++x) at(x, y) = at(width - 1, y);
    }
    for (int y = -1; y >= -margin; --y)
      for (int x = -margin; x < width + margin; ++x) at(x, y) = at(x, 0);
    ASSERT_EQ(zvpiExpandPlane_H264_8u_C1R(actual.data() + origin, width, height, step, uint32_t(margin), 0),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(actual, wanted)) << width << "x" << height << "+" << margin << ", step " << step;
  }
}

TEST(ExpandPlane, ChecksInOrder) {
  uint8_t plane[64] = {7};
  EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(nullptr, 0, 1, 8, 0, 3), zvpStatusNullPointer);
  for (const int height : {1, 3, 0, -1, -2})
    EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 4, height, 8, 0, 3), zvpStatusBadSize);
  EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 0, 4, 8, 0, 3), zvpStatusBadSize);
  EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 4, 4, 8, 0, 3), zvpStatusOk);
  EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 4, 4, 8, 1, 3), zvpStatusBadArgument);
  EXPECT_EQ(zvpiExpandPlane_H264_8u_C1R(plane, 4, 4, 8, UINT32_MAX, UINT32_MAX), zvpStatusBadArgument);
  EXPECT_EQ(plane[0], 7);
}

TEST(MeanOfBlocks, AllSizes) {
  Rng rng(221);
  for (int round = 0; round < rounds(1000); ++round) {
    const int width = rng.range(2, 16), height = rng.range(2, 16);
    const bool one = rng.chance(2);
    const auto step = [&] { return rng.step(width, true); };
    const auto step1 = step(), step2 = one ? step1 : step(), step3 = one ? step1 : step();
    GuardedPlane<uint8_t> src1(width, height, step1, rng.guard()), src2(width, height, step2, rng.guard());
    GuardedPlane<uint8_t> dst(width, height, step3, rng.guard());
    fill(src1, rng, anyStyle(rng), 0, 255);
    fill(src2, rng, anyStyle(rng), 0, 255);
    fill(dst, rng, Style::Uniform, 0, 255);
    const bool inPlace = one && rng.chance(2);
    GuardedPlane<uint8_t>& to = inPlace ? src2 : dst;
    Expected<uint8_t> expected(to);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) expected.set(x, y, (src1.get(x, y) + src2.get(x, y) + 1) / 2);
    src1.bytes().makeReadOnly();
    if (!inPlace) src2.bytes().makeReadOnly();
    ASSERT_EQ(
        one ? zvpiInterpolateBlock_H264_8u_P2P1R(src1.data(), src2.data(), to.data(), uint32_t(width), uint32_t(height),
                                                 int32_t(step1))
            : zvpiInterpolateBlock_H264_8u_P3P1R(src1.data(), src2.data(), to.data(), uint32_t(width), uint32_t(height),
                                                 int32_t(step1), int32_t(step2), int32_t(step3)),
        zvpStatusOk);
    ASSERT_TRUE(sameBytes(to.snapshot(), expected.bytes())) << width << "x" << height;
  }
}

TEST(MeanOfBlocks, ChecksInOrder) {
  const uint8_t src[256] = {};
  uint8_t dst[256] = {7};
  const auto both = [&](const uint8_t* a, const uint8_t* b, uint8_t* to, uint32_t width, uint32_t height) {
    const zvpStatus status = zvpiInterpolateBlock_H264_8u_P2P1R(a, b, to, width, height, 16);
    EXPECT_EQ(zvpiInterpolateBlock_H264_8u_P3P1R(a, b, to, width, height, 16, 16, 16), status);
    return status;
  };
  EXPECT_EQ(both(nullptr, src, dst, 1, 1), zvpStatusNullPointer);
  EXPECT_EQ(both(src, nullptr, dst, 1, 1), zvpStatusNullPointer);
  EXPECT_EQ(both(src, src, nullptr, 1, 1), zvpStatusNullPointer);
  for (const uint32_t bad : {0u, 1u, 17u, 0x80000004u, UINT32_MAX}) {
    EXPECT_EQ(both(src, src, dst, bad, 4), zvpStatusBadSize);
    EXPECT_EQ(both(src, src, dst, 4, bad), zvpStatusBadSize);
  }
  EXPECT_EQ(dst[0], 7);
}
