// Luma and chroma interpolation: the plain entries and the Block entries.
#include "reference/h264/interpolate.h"

#include <gtest/gtest.h>

#include "support/compare.h"
#include "unit/h264/prediction.h"

using namespace zvptest;
namespace model = reference::h264;
using std::int16_t;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;

namespace {

// Of an empty block nothing is touched: an address where nothing is.
uint8_t* const nowhere = reinterpret_cast<uint8_t*>(std::uintptr_t(16));

template <class T>
model::SampleAt samplesOf(const GuardedPlane<T>& plane) {
  return [&plane](int x, int y) { return plane.get(x, y); };
}

int lumaBefore(int fraction) { return fraction != 0 ? 2 : 0; }
int lumaBehind(int fraction) { return fraction != 0 ? 3 : 0; }

H264Interpolate16u recordOf(GuardedPlane<uint16_t>& src, GuardedPlane<uint16_t>& dst, int dx, int dy, zvpSize size,
                            int bitDepth) {
  return {src.data(), unitStep(src), dst.data(), unitStep(dst), dx, dy, size, bitDepth};
}

// Heights of all kinds that the size test lets pass.
int anyHeight(Rng& rng, int multiple) {
  if (rng.chance(12)) return multiple * rng.range(-3, 0);
  return multiple * (rng.chance(8) ? rng.range(1, 48 / multiple) : rng.range(1, 16 / multiple));
}

}  // namespace

TEST(InterpolateLuma8u, MatchesTheModelAndItsReach) {
  Rng rng(101);
  for (int round = 0; round < rounds(2500); ++round) {
    const int dx = rng.range(0, 3), dy = rng.range(0, 3), width = 4 * rng.range(0, 7), height = anyHeight(rng, 4);
    const int rows = width == 0 ? 0 : std::max(height, 0);
    const bool empty = rows == 0;
    const GuardedPlane<uint8_t>::Margin margin = {empty ? 0 : lumaBefore(dx), empty ? 0 : lumaBehind(dx),
                                                  empty ? 0 : lumaBefore(dy), empty ? 0 : lumaBehind(dy)};
    auto src = randomPlane<uint8_t>(rng, width, rows, margin, true, 255);
    auto dst = randomPlane<uint8_t>(rng, width, rows, {}, true, 255);
    Expected<uint8_t> expected(dst);
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < width; ++x) expected.set(x, y, model::lumaSample(samplesOf(src), x, y, dx, dy, 255));
    src.bytes().makeReadOnly();
    ASSERT_EQ(
        zvpiInterpolateLuma_H264_8u_C1R(src.data(), unitStep(src), dst.data(), unitStep(dst), dx, dy, {width, height}),
        zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes()))
        << width << "x" << height << " at " << dx << "/" << dy << ", round " << round;
  }
}

// Positions with both fractions odd read no corner: the first and the last row end with the columns of h.
TEST(InterpolateLuma8u, DiagonalPositionsReadNoCorners) {
  Rng rng(102);
  const int step = 64, height = 8;
  for (const int width : {4, 8, 12, 16, 28})
    for (const int dx : {1, 3})
      for (const int dy : {1, 3}) {
        const int shift = dx == 3 ? 1 : 0;  // h stands one column further right
        std::vector<uint8_t> plane(std::size_t(step * (height + 5)));
        fill(plane.data(), plane.size(), rng, Style::Uniform, 0, 255);
        // The whole area in plain memory, and guarded from the first sample that is read to the last.
        const int origin = 2 * step + 2;
        const int first = 2 + shift, last = (height + 4) * step + 2 + shift + width - 1;
        for (const Guard guard : {Guard::Behind, Guard::Before}) {
          GuardedBytes area(std::size_t(last - first + 1), guard);
          std::memcpy(area.data(), &plane[std::size_t(first)], area.size());
          area.makeReadOnly();
          std::vector<uint8_t> actual(std::size_t(width * height)), wanted(actual.size());
          ASSERT_EQ(zvpiInterpolateLuma_H264_8u_C1R(area.data() + origin - first, step, actual.data(), width, dx, dy,
                                                    {width, height}),
                    zvpStatusOk);
          const auto at = [&](int x, int y) { return plane[std::size_t(origin + y * step + x)]; };
          for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
              wanted[std::size_t(y * width + x)] = uint8_t(model::lumaSample(at, x, y, dx, dy, 255));
          ASSERT_TRUE(sameBytes(actual, wanted));
        }
      }
}

// The centre sample in 16-bit lanes: sums at both ends of their range, side by side in all orders.
TEST(InterpolateLuma8u, CentreIsExactAtTheExtremesOfItsSums) {
  const int step = 9;
  for (const auto& [dx, dy] : {std::pair(2, 1), std::pair(2, 2), std::pair(1, 2)})
    for (int columns = 0; columns < 729; ++columns) {  // a column of each kind at each of the six taps
      uint8_t area[9 * 9] = {};
      for (int x = 0, kinds = columns; x < 9; ++x, kinds = x == 6 ? columns : kinds / 3)
        for (int y = 0; y < 9; ++y) {
          const bool negativeTap = y == 1 || y == 4;  // of the block's first row
          area[y * step + x] = kinds % 3 == 2 ? 128 : (kinds % 3 == 1) == negativeTap ? 0 : 255;
        }
      const auto at = [&](int x, int y) { return area[(y + 2) * step + x + 2]; };
      uint8_t actual[16], wanted[16];
      ASSERT_EQ(zvpiInterpolateLuma_H264_8u_C1R(area + 2 * step + 2, step, actual, 4, dx, dy, {4, 4}), zvpStatusOk);
      for (int i = 0; i < 16; ++i) wanted[i] = uint8_t(model::lumaSample(at, i % 4, i / 4, dx, dy, 255));
      ASSERT_TRUE(sameBytes(actual, wanted, 16)) << columns;
    }
}

TEST(InterpolateLuma8u, ChecksInOrder) {
  const uint8_t src[400] = {};
  uint8_t dst[256] = {7};
  const uint8_t* const s = src + 100;
  const auto call = [&](const uint8_t* from, uint8_t* to, int dx, int dy, zvpSize size) {
    return zvpiInterpolateLuma_H264_8u_C1R(from, 16, to, 16, dx, dy, size);
  };
  const zvpSize good = {4, 4};
  EXPECT_EQ(call(nullptr, dst, 4, 0, {3, 3}), zvpStatusNullPointer);
  EXPECT_EQ(call(s, nullptr, 4, 0, {3, 3}), zvpStatusNullPointer);
  for (const int bad : {4, -1, 1 << 30, INT32_MIN}) {
    EXPECT_EQ(call(s, dst, bad, 0, {3, 3}), zvpStatusBadArgument);
    EXPECT_EQ(call(s, dst, 0, bad, good), zvpStatusBadArgument);
  }
  for (const int width : {1, 2, 3, 5, 6, 32, 36, 64, -4, -16, INT32_MIN})
    EXPECT_EQ(call(s, dst, 1, 1, {width, 4}), zvpStatusBadSize) << width;
  for (const int height : {1, 2, 3, 5, 18, -1, -2, INT32_MAX})
    EXPECT_EQ(call(s, dst, 1, 1, {4, height}), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
  for (const zvpSize empty : {zvpSize{0, 4}, zvpSize{4, 0}, zvpSize{16, -4}, zvpSize{28, INT32_MIN}, zvpSize{0, 0}})
    for (int fraction = 0; fraction < 16; ++fraction)
      EXPECT_EQ(call(nowhere, nowhere, fraction & 3, fraction >> 2, empty), zvpStatusOk);
  EXPECT_EQ(call(s, dst, 0, 0, {12, 4}), zvpStatusOk);
  EXPECT_EQ(dst[0], 0);
}

TEST(InterpolateChroma8u, MatchesTheModelAndItsReach) {
  Rng rng(103);
  for (int round = 0; round < rounds(2000); ++round) {
    const int dx = rng.chance(3) ? 0 : rng.range(0, 7), dy = rng.chance(3) ? 0 : rng.range(0, 7);
    const int width = 2 * rng.range(0, 7), height = anyHeight(rng, 2);
    const int rows = width == 0 ? 0 : std::max(height, 0);
    const bool empty = rows == 0;
    auto src = randomPlane<uint8_t>(rng, width, rows, {0, !empty && dx != 0, 0, !empty && dy != 0}, true, 255);
    auto dst = randomPlane<uint8_t>(rng, width, rows, {}, true, 255);
    Expected<uint8_t> expected(dst);
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < width; ++x) expected.set(x, y, model::chromaSample(samplesOf(src), x, y, dx, dy));
    src.bytes().makeReadOnly();
    ASSERT_EQ(zvpiInterpolateChroma_H264_8u_C1R(src.data(), unitStep(src), dst.data(), unitStep(dst), dx, dy,
                                                {width, height}),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes())) << width << "x" << height << " at " << dx << "/" << dy;
  }
}

TEST(InterpolateChromaPairs8u, MatchesTheModelAndItsReach) {
  Rng rng(104);
  for (int round = 0; round < rounds(2000); ++round) {
    const int dx = rng.chance(3) ? 0 : rng.range(0, 7), dy = rng.chance(3) ? 0 : rng.range(0, 7);
    const int width = 2 * rng.range(0, 7), height = anyHeight(rng, 2);
    const int rows = width == 0 ? 0 : std::max(height, 0);
    const bool empty = rows == 0;
    auto src =
        randomPlane<uint8_t>(rng, 2 * width, rows, {0, !empty && dx != 0 ? 2 : 0, 0, !empty && dy != 0}, true, 255);
    const auto step = rng.step(width, true);
    GuardedPlane<uint8_t> dst[2] = {{width, rows, step, rng.guard()}, {width, rows, step, rng.guard()}};
    std::vector<Expected<uint8_t>> expected;
    for (int plane = 0; plane < 2; ++plane) {
      fill(dst[plane], rng, Style::Uniform, 0, 255);
      expected.emplace_back(dst[plane]);
      const auto at = [&](int x, int y) { return src.get(2 * x + plane, y); };
      for (int y = 0; y < rows; ++y)
        for (int x = 0; x < width; ++x) expected.back().set(x, y, model::chromaSample(at, x, y, dx, dy));
    }
    src.bytes().makeReadOnly();
    ASSERT_EQ(zvpiInterpolateChroma_H264_8u_C2P2R(src.data(), unitStep(src), dst[0].data(), dst[1].data(),
                                                  int32_t(step), dx, dy, {width, height}),
              zvpStatusOk);
    for (int plane = 0; plane < 2; ++plane)
      ASSERT_TRUE(sameBytes(dst[plane].snapshot(), expected[std::size_t(plane)].bytes())) << plane;
  }
}

TEST(InterpolateChroma8u, ChecksInOrder) {
  const uint8_t src[400] = {};
  uint8_t dst[64] = {7}, second[64] = {7};
  const auto plain = [&](const uint8_t* from, uint8_t* to, int dx, int dy, zvpSize size) {
    return zvpiInterpolateChroma_H264_8u_C1R(from, 16, to, 8, dx, dy, size);
  };
  const auto pairs = [&](const uint8_t* from, uint8_t* to, int dx, int dy, zvpSize size) {
    return zvpiInterpolateChroma_H264_8u_C2P2R(from, 16, to, second, 8, dx, dy, size);
  };
  const auto expectChecks = [&](const auto& call) {
    EXPECT_EQ(call(nullptr, dst, 8, 0, {3, 3}), zvpStatusNullPointer);
    EXPECT_EQ(call(src, nullptr, 8, 0, {3, 3}), zvpStatusNullPointer);
    for (const int bad : {8, -1, INT32_MIN}) {
      EXPECT_EQ(call(src, dst, bad, 0, zvpSize{3, 3}), zvpStatusBadArgument);
      EXPECT_EQ(call(src, dst, 0, bad, zvpSize{2, 2}), zvpStatusBadArgument);
    }
    for (const int width : {1, 3, 5, 7, 15, 16, 18, 32, -2, INT32_MIN})
      EXPECT_EQ(call(src, dst, 1, 1, zvpSize{width, 2}), zvpStatusBadSize) << width;
    for (const int height : {1, 3, 17, -1, INT32_MAX})
      EXPECT_EQ(call(src, dst, 1, 1, zvpSize{2, height}), zvpStatusBadSize);
    for (const zvpSize empty : {zvpSize{0, 2}, zvpSize{2, 0}, zvpSize{14, -2}, zvpSize{8, INT32_MIN}})
      for (int fraction = 0; fraction < 4; ++fraction)
        EXPECT_EQ(call(nowhere, nowhere, fraction & 1, fraction >> 1, empty), zvpStatusOk);
  };
  expectChecks(plain);
  expectChecks(pairs);
  EXPECT_EQ(zvpiInterpolateChroma_H264_8u_C2P2R(src, 16, dst, nullptr, 8, 8, 0, {3, 3}), zvpStatusNullPointer);
  EXPECT_EQ(dst[0], 7);
  EXPECT_EQ(second[0], 7);
}

TEST(InterpolateLuma16u, MatchesTheModelAndItsReach) {
  Rng rng(105);
  const std::vector<zvpSize> sizes = {{4, 4}, {4, 8}, {8, 4}, {8, 8}, {8, 16}, {16, 8}, {16, 16}};
  for (int round = 0; round < rounds(1500); ++round) {
    const int dx = rng.range(0, 3), dy = rng.range(0, 3),
              bitDepth = rng.chance(3) ? rng.range(1, 16) : rng.range(8, 14);
    const zvpSize size = rng.pick(sizes);
    const int high = rng.chance(4) ? 65535 : (1 << bitDepth) - 1;  // samples above the depth too
    auto src = randomPlane<uint16_t>(rng, size.width, size.height,
                                     {lumaBefore(dx), lumaBehind(dx), lumaBefore(dy), lumaBehind(dy)}, false, high);
    auto dst = randomPlane<uint16_t>(rng, size.width, size.height, {}, false, 65535);
    Expected<uint16_t> expected(dst);
    const int clip = dx == 0 && dy == 0 ? 65535 : (1 << bitDepth) - 1;
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) expected.set(x, y, model::lumaSample(samplesOf(src), x, y, dx, dy, clip));
    src.bytes().makeReadOnly();
    const H264Interpolate16u record = recordOf(src, dst, dx, dy, size, bitDepth);
    ASSERT_EQ(zvpiInterpolateLuma_H264_16u_C1R(&record), zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes()))
        << size.width << "x" << size.height << " at " << dx << "/" << dy << ", depth " << bitDepth;
  }
}

TEST(InterpolateLuma16u, TakesOddAddresses) {
  Rng rng(106);
  for (int position = 0; position < 16; ++position) {
    const int dx = position & 3, dy = position >> 2, step = 30;
    GuardedBytes src(std::size_t(2 * step * 21 + 1), Guard::Behind), dst(std::size_t(2 * 16 * 16 + 1), Guard::Behind);
    fill(src.data(), src.size(), rng, Style::Uniform, 0, 255);
    uint8_t* const from = src.data() + 1 + 2 * (2 * step + 2);
    const auto sample = [&](int x, int y) {
      uint16_t value;
      std::memcpy(&value, from + 2 * (y * step + x), sizeof value);
      return value & 0x3ff;
    };
    for (int y = -2; y < 19; ++y)
      for (int x = -2; x < 28; ++x) {
        const uint16_t value = uint16_t(sample(x, y));
        std::memcpy(from + 2 * (y * step + x), &value, sizeof value);
      }
    H264Interpolate16u record = {nullptr, step, nullptr, 16, dx, dy, {16, 16}, 10};
    uint8_t* const to = dst.data() + 1;
    std::memcpy(&record.pSrc, &from, sizeof from);
    std::memcpy(&record.pDst, &to, sizeof to);
    ASSERT_EQ(zvpiInterpolateLuma_H264_16u_C1R(&record), zvpStatusOk);
    for (int i = 0; i < 256; ++i) {
      uint16_t value;
      std::memcpy(&value, to + 2 * i, sizeof value);
      ASSERT_EQ(value, model::lumaSample(sample, i % 16, i / 16, dx, dy, 1023));
    }
  }
}

TEST(InterpolateLuma16u, ChecksInOrder) {
  const uint16_t src[900] = {};
  uint16_t dst[256] = {7};
  const H264Interpolate16u good = {src + 300, 30, dst, 16, 1, 1, {16, 16}, 8};
  const auto with = [&](auto change) {
    H264Interpolate16u record = good;
    change(record);
    return zvpiInterpolateLuma_H264_16u_C1R(&record);
  };
  const auto spoilAll = [](H264Interpolate16u& r) {
    r.dx = 4;
    r.roiSize = {17, 5};
  };
  EXPECT_EQ(zvpiInterpolateLuma_H264_16u_C1R(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              spoilAll(r);
              r.pSrc = nullptr;
            }),
            zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              spoilAll(r);
              r.pDst = nullptr;
            }),
            zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              spoilAll(r);
              r.srcStep = 16;
            }),
            zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) {
              spoilAll(r);
              r.dstStep = 16;
            }),
            zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) { r.dstStep = 15; }), zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) { r.srcStep = -30; }), zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) {
              r.dx = -1;
              r.roiSize = {12, 12};
            }),
            zvpStatusBadArgument);
  EXPECT_EQ(with([&](auto& r) {
              r.dy = 4;
              r.roiSize = {12, 12};
            }),
            zvpStatusBadArgument);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {12, 16}; }), zvpStatusBadSize);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {16, 12}; }), zvpStatusBadSize);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {4, 16}; }), zvpStatusBadSize);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {16, 4}; }), zvpStatusBadSize);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {0, 0}; }), zvpStatusBadSize);
  EXPECT_EQ(with([&](auto& r) { r.roiSize = {-4, 4}; }), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
  EXPECT_EQ(with([](auto&) {}), zvpStatusOk);
  EXPECT_EQ(dst[0], 0);
}

TEST(InterpolateChroma16u, MatchesTheModelAndReadsTheNextColumnAndRow) {
  Rng rng(107);
  const std::vector<int> lengths = {2, 4, 8, 16};
  for (int round = 0; round < rounds(1000); ++round) {
    const int dx = rng.chance(3) ? 0 : rng.range(0, 7), dy = rng.chance(3) ? 0 : rng.range(0, 7);
    const int width = rng.pick(lengths), height = rng.pick(lengths), high = rng.chance(2) ? 65535 : 1023;
    const auto step = [&](int samples) { return 2 * std::max<std::ptrdiff_t>(8, rng.step(samples, false)); };
    GuardedPlane<uint16_t> src{width, height, step(width + 1), rng.guard(), {0, 1, 0, 1}};
    GuardedPlane<uint16_t> dst{width, height, step(width), rng.guard()};
    fill(src, rng, anyStyle(rng), 0, high);
    fill(dst, rng, Style::Uniform, 0, 65535);
    Expected<uint16_t> expected(dst);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) expected.set(x, y, model::chromaSample(samplesOf(src), x, y, dx, dy));
    src.bytes().makeReadOnly();
    const H264Interpolate16u record = recordOf(src, dst, dx, dy, {width, height}, 10);
    ASSERT_EQ(zvpiInterpolateChroma_H264_16u_C1R(&record), zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes())) << width << "x" << height << " at " << dx << "/" << dy;
  }
}

// Steps from 8 on pass whatever the width. Rows then overlap, in the source and in the destination; the later one stays.
TEST(InterpolateChroma16u, AStepBelowTheWidthOverlapsRows) {
  Rng rng(117);
  for (int round = 0; round < rounds(200); ++round) {
    const int dx = rng.range(0, 7), dy = rng.range(0, 7), height = 1 << rng.range(1, 4);
    const int srcStep = rng.range(8, 16), dstStep = rng.range(8, 15);
    std::vector<uint16_t> src(17 * 16 + 17), actual(15 * 15 + 16);
    for (uint16_t& sample : src) sample = uint16_t(rng.range(0, 65535));
    for (uint16_t& sample : actual) sample = uint16_t(rng.range(0, 65535));
    auto wanted = actual;
    const auto at = [&](int x, int y) { return src[std::size_t(y * srcStep + x)]; };
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < 16; ++x)
        wanted[std::size_t(y * dstStep + x)] = uint16_t(model::chromaSample(at, x, y, dx, dy));
    const H264Interpolate16u record = {src.data(), srcStep, actual.data(), dstStep, dx, dy, {16, height}, 16};
    ASSERT_EQ(zvpiInterpolateChroma_H264_16u_C1R(&record), zvpStatusOk);
    ASSERT_EQ(actual, wanted) << height << " rows, step " << dstStep;
  }
}

TEST(InterpolateChroma16u, ChecksInOrder) {
  const uint16_t src[900] = {};
  uint16_t dst[256] = {7};
  const H264Interpolate16u good = {src, 30, dst, 16, 1, 1, {16, 16}, 8};
  const auto with = [&](auto change) {
    H264Interpolate16u record = good;
    change(record);
    return zvpiInterpolateChroma_H264_16u_C1R(&record);
  };
  EXPECT_EQ(zvpiInterpolateChroma_H264_16u_C1R(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              r.pSrc = nullptr;
              r.srcStep = 0;
            }),
            zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              r.pDst = nullptr;
              r.srcStep = 0;
            }),
            zvpStatusNullPointer);
  EXPECT_EQ(with([&](auto& r) {
              r.srcStep = 7;
              r.dx = 8;
              r.roiSize = {2, 2};
            }),
            zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) {
              r.dstStep = 7;
              r.dx = 8;
              r.roiSize = {2, 2};
            }),
            zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) { r.dstStep = -16; }), zvpStatusBadStep);
  EXPECT_EQ(with([&](auto& r) {
              r.dx = 8;
              r.roiSize = {3, 3};
            }),
            zvpStatusBadArgument);
  EXPECT_EQ(with([&](auto& r) {
              r.dy = -1;
              r.roiSize = {3, 3};
            }),
            zvpStatusBadArgument);
  for (const int bad : {-2, 0, 1, 3, 6, 12, 14, 32}) {
    EXPECT_EQ(with([&](auto& r) { r.roiSize.width = bad; }), zvpStatusBadSize);
    EXPECT_EQ(with([&](auto& r) { r.roiSize.height = bad; }), zvpStatusBadSize);
  }
  EXPECT_EQ(dst[0], 7);
  // A width of 16 with a step of 8 is carried out.
  EXPECT_EQ(with([&](auto& r) { r.srcStep = r.dstStep = 8; }), zvpStatusOk);
  EXPECT_EQ(dst[0], 0);
}

// ---- Block entries ----------------------------------------------------------------------------------------------

namespace {

template <class T>
struct BlockTypes;
template <>
struct BlockTypes<uint8_t> {
  using Record = H264InterpolateBlock8u;
  static constexpr auto luma = zvpiInterpolateLumaBlock_H264_8u_P1R;
  static constexpr auto chroma = zvpiInterpolateChromaBlock_H264_8u_P2R;
};
template <>
struct BlockTypes<uint16_t> {
  using Record = H264InterpolateBlock16u;
  static constexpr auto luma = zvpiInterpolateLumaBlock_H264_16u_P1R;
  static constexpr auto chroma = zvpiInterpolateChromaBlock_H264_16u_P2R;
};

enum class Kind { Luma, Chroma, Pairs };

// A vector and a position that put the block anywhere: within the frame, over its edges, far away.
int anyVector(Rng& rng, int unit) {
  switch (rng.range(0, 5)) {
    case 0:
      return 0;
    case 1:
      return unit * rng.range(-40, 40);
    case 2:
      return rng.range(-9000, 9000);
    case 3:
      return rng.chance(2) ? INT32_MAX - rng.range(0, 7) : INT32_MIN + rng.range(0, 7);
    default:
      return rng.range(-40 * unit, 40 * unit);
  }
}

// small: frames that the reference area may cross on both sides, with memory behind them, since the far side is read
// as it stands. Otherwise frames larger than any area, guarded at their very edges.
template <class T>
void expectBlocks(std::uint64_t seed, Kind kind, bool small, int count) {
  Rng rng(seed);
  const bool luma = kind == Kind::Luma;
  const int planes = kind == Kind::Chroma ? 2 : 1, outputs = luma ? 1 : 2, perSample = kind == Kind::Pairs ? 2 : 1;
  const auto axisOf = luma ? model::lumaAxis : model::chromaAxis;
  for (int round = 0; round < count; ++round) {
    const int unit = luma ? 4 : 8, bitDepth = sizeof(T) == 1 ? 8 : rng.range(8, 14), high = (1 << bitDepth) - 1;
    const zvpSize block = luma ? zvpSize{4 * rng.range(1, 7), 4 * rng.range(1, rng.chance(6) ? 10 : 4)}
                               : zvpSize{2 * rng.range(1, 7), 2 * rng.range(1, rng.chance(6) ? 20 : 8)};
    const zvpSize frame = small ? zvpSize{rng.range(1, 12), rng.range(1, 12)}
                                : zvpSize{block.width + rng.range(5, 30), block.height + rng.range(5, 30)};
    const int vx = anyVector(rng, unit), vy = anyVector(rng, unit);
    zvpPoint position = {rng.range(-20, frame.width + 20), rng.range(-20, frame.height + 20)};
    const bool zero = vx == 0 && vy == 0;
    if (zero && !small) {  // read without a test: keep it inside
      position = {rng.range(0, frame.width - block.width), rng.range(0, frame.height - block.height)};
    }
    const auto x = axisOf(vx, position.x, block.width, frame.width);
    const auto y = axisOf(vy, position.y, block.height, frame.height);
    typename GuardedPlane<T>::Margin margin{};
    if (small) margin = {zero ? 40 * perSample : 0, 70 * perSample, zero ? 40 : 0, 70};
    const auto rowBytes = (frame.width * perSample + margin.left + margin.right) * std::ptrdiff_t(sizeof(T));
    const auto srcStep = rng.step(rowBytes, true, sizeof(T));
    const auto dstStep = rng.step(block.width * std::ptrdiff_t(sizeof(T)), true, sizeof(T));
    std::vector<GuardedPlane<T>> src, dst;
    std::vector<Expected<T>> expected;
    for (int i = 0; i < planes; ++i) {
      src.emplace_back(frame.width * perSample, frame.height, srcStep, rng.guard(), margin);
      fill(src.back(), rng, anyStyle(rng), 0, high);
      src.back().bytes().makeReadOnly();
    }
    for (int i = 0; i < outputs; ++i) {
      dst.emplace_back(block.width, block.height, dstStep, rng.guard());
      fill(dst.back(), rng, Style::Uniform, 0, high);
    }
    for (int i = 0; i < outputs; ++i) {
      expected.emplace_back(dst[std::size_t(i)]);
      const auto& from = src[std::size_t(kind == Kind::Chroma ? i : 0)];
      const auto at = [&](int column, int row) {
        const int cx = zero ? x.whole + column : x.clamp(x.whole + column);
        const int cy = zero ? y.whole + row : y.clamp(y.whole + row);
        return from.get(cx * perSample + (kind == Kind::Pairs ? i : 0), cy);
      };
      for (int row = 0; row < block.height; ++row)
        for (int column = 0; column < block.width; ++column)
          expected.back().set(column, row,
                              luma ? model::lumaSample(at, column, row, x.fraction, y.fraction, high)
                                   : model::chromaSample(at, column, row, x.fraction, y.fraction));
    }
    typename BlockTypes<T>::Record record{};
    record.pSrc[0] = src[0].data();
    if (planes == 2) record.pSrc[1] = src[1].data();
    record.srcStep = unitStep(src[0]);
    record.pDst[0] = dst[0].data();
    if (outputs == 2) record.pDst[1] = dst[1].data();
    record.dstStep = unitStep(dst[0]);
    record.frameSize = frame;
    record.blockSize = block;
    record.blockPos = position;
    record.motionVector = {vx, vy};
    if constexpr (sizeof(T) == 2) record.bitDepth = bitDepth;
    // The upper half of the step's slot: garbage, or the sign of a 64-bit value.
    const int32_t upper = rng.chance(2) ? int32_t(rng.next()) : record.srcStep >> 31;
    std::memcpy(reinterpret_cast<uint8_t*>(&record) + 20, &upper, sizeof upper);
    zvpStatus status = zvpStatusFail;
    if constexpr (sizeof(T) == 1) {
      if (kind == Kind::Pairs) status = zvpiInterpolateChromaBlock_H264_8u_C2P2R(&record);
    }
    if (kind != Kind::Pairs) status = luma ? BlockTypes<T>::luma(&record) : BlockTypes<T>::chroma(&record);
    ASSERT_EQ(status, zvpStatusOk);
    for (int i = 0; i < outputs; ++i)
      ASSERT_TRUE(sameBytes(dst[std::size_t(i)].snapshot(), expected[std::size_t(i)].bytes()))
          << block.width << "x" << block.height << " at " << position.x << "," << position.y << " vector " << vx << ","
          << vy << " frame " << frame.width << "x" << frame.height << ", output " << i << ", round " << round;
  }
}

}  // namespace

TEST(InterpolateBlock, LumaInsideAndAcrossEdges) {
  expectBlocks<uint8_t>(111, Kind::Luma, false, rounds(1500));
  expectBlocks<uint16_t>(112, Kind::Luma, false, rounds(800));
}

TEST(InterpolateBlock, LumaOfTwoOppositeEdgesTheLowOneIsRepaired) {
  expectBlocks<uint8_t>(113, Kind::Luma, true, rounds(800));
  expectBlocks<uint16_t>(114, Kind::Luma, true, rounds(400));
}

TEST(InterpolateBlock, ChromaInsideAndAcrossEdges) {
  expectBlocks<uint8_t>(115, Kind::Chroma, false, rounds(1000));
  expectBlocks<uint16_t>(116, Kind::Chroma, false, rounds(500));
  expectBlocks<uint8_t>(117, Kind::Pairs, false, rounds(1000));
}

TEST(InterpolateBlock, ChromaOfTwoOppositeEdgesTheLowOneIsRepaired) {
  expectBlocks<uint8_t>(118, Kind::Chroma, true, rounds(600));
  expectBlocks<uint16_t>(119, Kind::Chroma, true, rounds(300));
  expectBlocks<uint8_t>(120, Kind::Pairs, true, rounds(600));
}

TEST(InterpolateBlock, ABlockBesideThePlaneIsItsEdge) {
  uint8_t plane[8 * 8], out[16];
  for (int i = 0; i < 64; ++i) plane[i] = uint8_t(3 * i);
  H264InterpolateBlock8u record = {{plane, nullptr}, 8, {out, nullptr}, 4, {8, 8}, {4, 4}, {2, 2}, {0, 0}};
  struct Case {
    zvpPoint vector;
    int column, row;  // -1: as the block's
  };
  for (const Case& c : {Case{{-400, 0}, 0, -1}, Case{{400, 0}, 7, -1}, Case{{0, -400}, -1, 0}, Case{{0, 400}, -1, 7},
                        Case{{-400, 400}, 0, 7}}) {
    record.motionVector = c.vector;
    ASSERT_EQ(zvpiInterpolateLumaBlock_H264_8u_P1R(&record), zvpStatusOk);
    for (int i = 0; i < 16; ++i) {
      const int x = c.column < 0 ? 2 + i % 4 : c.column, y = c.row < 0 ? 2 + i / 4 : c.row;
      ASSERT_EQ(out[i], plane[8 * y + x]);
    }
  }
}

TEST(InterpolateBlock, ChecksInOrder) {
  uint8_t plane[32 * 32] = {}, out[2][256] = {{7}, {7}};
  const H264InterpolateBlock8u good = {{plane, plane}, 32, {out[0], out[1]}, 16, {32, 32}, {8, 8}, {4, 4}, {5, 5}};
  const auto with = [&](auto entry, auto change) {
    H264InterpolateBlock8u record = good;
    record.blockSize = {3, 3};
    change(record);
    return entry(&record);
  };
  const auto luma = zvpiInterpolateLumaBlock_H264_8u_P1R;
  const auto chroma = zvpiInterpolateChromaBlock_H264_8u_P2R;
  const auto pairs = zvpiInterpolateChromaBlock_H264_8u_C2P2R;
  for (const auto entry : {luma, chroma, pairs}) {
    EXPECT_EQ(entry(nullptr), zvpStatusNullPointer);
    EXPECT_EQ(with(entry, [](auto& r) { r.pSrc[0] = nullptr; }), zvpStatusNullPointer);
    EXPECT_EQ(with(entry, [](auto& r) { r.pDst[0] = nullptr; }), zvpStatusNullPointer);
    const zvpStatus second = entry == chroma ? zvpStatusNullPointer : zvpStatusBadSize;
    EXPECT_EQ(with(entry, [](auto& r) { r.pSrc[1] = nullptr; }), second);
    EXPECT_EQ(with(entry, [](auto& r) { r.pDst[1] = nullptr; }), second);
    EXPECT_EQ(with(entry, [](auto&) {}), zvpStatusBadSize);
    for (const int width : {1, 3, 5, 34, 64, -2, -4})
      EXPECT_EQ(with(entry, [&](auto& r) { r.blockSize = {width, 4}; }), zvpStatusBadSize);
    for (const int height : {1, 3, 5, 33, -1})
      EXPECT_EQ(with(entry, [&](auto& r) { r.blockSize = {4, height}; }), zvpStatusBadSize);
    for (const zvpSize empty : {zvpSize{0, 4}, zvpSize{4, 0}, zvpSize{8, -4}})
      for (const zvpPoint vector : {zvpPoint{0, 0}, zvpPoint{3, 3}, zvpPoint{-4000, 4001}})
        EXPECT_EQ(with(entry,
                       [&](auto& r) {
                         r.blockSize = empty;
                         r.motionVector = vector;
                       }),
                  zvpStatusOk);
  }
  EXPECT_EQ(with(luma, [](auto& r) { r.blockSize = {2, 4}; }), zvpStatusBadSize);
  EXPECT_EQ(with(luma, [](auto& r) { r.blockSize = {4, 2}; }), zvpStatusBadSize);
  EXPECT_EQ(with(chroma, [](auto& r) { r.blockSize = {16, 4}; }), zvpStatusBadSize);
  EXPECT_EQ(with(pairs, [](auto& r) { r.blockSize = {16, 4}; }), zvpStatusBadSize);
  EXPECT_EQ(out[0][0], 7);
  EXPECT_EQ(out[1][0], 7);

  uint16_t plane16[64] = {}, out16[2][64] = {};
  const H264InterpolateBlock16u good16 = {{plane16, plane16}, 8, {out16[0], out16[1]}, 8, {8, 8}, {3, 3}, {}, {}, 8};
  for (const auto entry : {zvpiInterpolateLumaBlock_H264_16u_P1R, zvpiInterpolateChromaBlock_H264_16u_P2R}) {
    const bool two = entry == zvpiInterpolateChromaBlock_H264_16u_P2R;
    EXPECT_EQ(entry(nullptr), zvpStatusNullPointer);
    for (int i = 0; i < 4; ++i) {
      H264InterpolateBlock16u record = good16;
      if (i < 2)
        record.pSrc[i] = nullptr;
      else
        record.pDst[i - 2] = nullptr;
      EXPECT_EQ(entry(&record), two || i % 2 == 0 ? zvpStatusNullPointer : zvpStatusBadSize);
    }
    EXPECT_EQ(entry(&good16), zvpStatusBadSize);
  }
}
