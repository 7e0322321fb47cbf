// The VC-1 interpolation: every kernel and position against the model, every place of a block around small planes, and
// what is required though it may surprise.
#include "reference/vc1/interpolate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;
using namespace reference::vc1;
using std::int32_t;
using std::ptrdiff_t;
using std::uint8_t;

namespace {

using Map = std::array<uint8_t, 256>;

// The samples around a block that have a weight, and no others.
GuardedPlane<uint8_t>::Margin reachOf(const InterpolationMember& m, int dx, int dy) {
  const int before = m.filter == Filter::Bicubic ? 1 : 0, behind = m.filter == Filter::Bicubic ? 2 : 1;
  GuardedPlane<uint8_t>::Margin margin;
  if (dx != 0) {
    margin.left = before * m.channels;
    margin.right = behind * m.channels;
  }
  if (dy != 0) {
    margin.above = before;
    margin.below = behind;
  }
  return margin;
}

GuardedPlane<uint8_t> noise(int width, int height, Rng& rng, GuardedPlane<uint8_t>::Margin margin = {}) {
  GuardedPlane<uint8_t> plane{width, height, rng.step(width + margin.left + margin.right, true), rng.guard(), margin};
  fill(plane, rng, Style::Uniform, 0, 255);
  return plane;
}

// The export on a block in memory of its exact reach against the model. size leads to the kernel, whose own size may be
// another.
void comparePlain(const InterpolationMember& m, zvpSize size, int dx, int dy, int roundControl, Style style, Rng& rng) {
  const zvpSize kernel = kernelSize(m, size);
  const int width = kernel.width * m.channels;
  auto src = noise(width, kernel.height, rng, reachOf(m, dx & 3, dy & 3));
  fill(src, rng, style, 0, 255);
  src.bytes().makeReadOnly();
  auto dst = noise(width, kernel.height, rng);
  std::vector<uint8_t> expected = dst.snapshot();
  uint8_t* const modelDst = expected.data() + (dst.data() - dst.bytes().data());
  zvpInterpolationBlock b = {src.data(), int32_t(src.step()), modelDst, int32_t(dst.step()), dx, dy,
                             size,       roundControl};
  interpolate(m, b);
  b.pDst = dst.data();
  const zvpInterpolationBlock before = b;
  ASSERT_EQ(m.qp(&b), zvpStatusOk);
  ASSERT_EQ(std::memcmp(&b, &before, sizeof b), 0);
  ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << m.name << " " << size.width << "x" << size.height << " at " << dx
                                                   << ", " << dy << ", rounding " << roundControl;
}

// A reference frame in memory of its exact size, two maps, and the calls on it.
class Frame {
 public:
  Frame(const InterpolationMember& m, zvpSize size, Rng& rng)
      : member_(m),
        size_(size),
        rng_(rng),
        plane_(noise(size.width * m.channels, size.height, rng)),
        maps_(512, rng.guard()) {
    fill(plane_, rng, anyStyle(rng), 0, 255);
    if (rng.chance(3)) fill(plane_, rng, Style::Uniform, 0, 255);
    for (std::size_t i = 0; i < 512; ++i) maps_[i] = uint8_t(rng.next());
    plane_.bytes().makeReadOnly();
    maps_.bytes().makeReadOnly();
  }
  // Bits of the modes: oppositePadding, fieldPrediction, isPredBottom, and which maps there are.
  static constexpr int modes = 32;
  zvpInterpolationICBlock block(int mode, zvpSize blockSize, zvpPoint at) {
    const bool opposite = (mode & 1) != 0, field = (mode & 2) != 0, bottom = (mode & 4) != 0;
    const auto flag = [&](bool set) { return set ? int32_t(rng_.next() | 1) : 0; };  // any value that is not 0
    zvpInterpolationICBlock b{};
    b.pSrc = plane_.data() + (field && bottom ? plane_.step() : 0);
    b.srcStep = int32_t(plane_.step());
    b.pLUTTop = (mode & 8) != 0 ? maps_.data() : nullptr;
    b.pLUTBottom = (mode & 16) != 0 ? maps_.data() + 256 : nullptr;
    b.frameSize = size_;
    b.blockSize = blockSize;
    b.blockPos = {at.x * member_.channels, at.y};
    b.dx = rng_.range(0, 3);
    b.dy = rng_.range(0, 3);
    b.oppositePadding = flag(opposite);
    b.fieldPrediction = flag(field);
    b.roundControl = rng_.range(0, 1);
    b.isPredBottom = flag(bottom);
    return b;
  }
  // The export against the model. dst has the size of the kernel.
  ::testing::AssertionResult same(zvpInterpolationICBlock b, GuardedPlane<uint8_t>& dst) {
    for (std::size_t i = 0; i < dst.bytes().size(); ++i) dst.bytes().data()[i] = 0x55;
    std::vector<uint8_t> expected = dst.snapshot();
    b.dstStep = int32_t(dst.step());
    b.pDst = expected.data() + (dst.data() - dst.bytes().data());
    interpolateInPlane(member_, b);
    b.pDst = dst.data();
    if (const auto status = member_.ic(&b); status != zvpStatusOk) return ::testing::AssertionFailure() << status;
    const auto result = sameBytes(dst.snapshot(), expected);
    if (result) return result;
    return ::testing::AssertionFailure() << result.message() << ": " << member_.icName << " " << b.blockSize.width
                                         << "x" << b.blockSize.height << " at " << b.blockPos.x << ", " << b.blockPos.y
                                         << " of " << size_.width << "x" << size_.height << ", fractions " << b.dx
                                         << ", " << b.dy << ", opposite " << b.oppositePadding << ", field "
                                         << b.fieldPrediction << ", bottom " << b.isPredBottom << ", maps "
                                         << (b.pLUTTop != nullptr) << (b.pLUTBottom != nullptr);
  }
  GuardedPlane<uint8_t> destination(zvpSize blockSize) {
    const zvpSize kernel = kernelSize(member_, blockSize);
    return noise(kernel.width * member_.channels, kernel.height, rng_);
  }
  const GuardedPlane<uint8_t>& plane() const { return plane_; }
  uint8_t map(int which, uint8_t value) const { return maps_[std::size_t(which * 256 + value)]; }

 private:
  InterpolationMember member_;
  zvpSize size_;
  Rng& rng_;
  GuardedPlane<uint8_t> plane_;
  GuardedArray<uint8_t> maps_;
};

const InterpolationMember& bicubicMember() { return interpolationMembers()[0]; }
const InterpolationMember& bilinearMember() { return interpolationMembers()[1]; }

// A 16x16, whole-sample block of a plane by its place: what is read there, row by row.
using Samples16 = std::array<std::array<uint8_t, 16>, 16>;
Samples16 wholeSamples(zvpInterpolationICBlock b) {
  Samples16 block{};
  b.blockSize = {16, 16};
  b.pDst = block[0].data();
  b.dstStep = 16;
  b.dx = b.dy = 0;
  EXPECT_EQ(zvpiInterpolateICBicubicBlock_VC1_8u_C1R(&b), zvpStatusOk);
  return block;
}
// A 32x32 frame whose samples are their row's number, with 100 added from column 16 on.
struct NumberedFrame {
  std::array<uint8_t, 32 * 32> samples{};
  Map top{}, bottom{};  // add 50, add 150
  NumberedFrame() {
    for (int i = 0; i < 32 * 32; ++i) samples[std::size_t(i)] = uint8_t(i / 32 + (i % 32 >= 16 ? 100 : 0));
    for (int i = 0; i < 256; ++i) {
      top[std::size_t(i)] = uint8_t(i + 50);
      bottom[std::size_t(i)] = uint8_t(i + 150);
    }
  }
  zvpInterpolationICBlock block(int x, int y, bool maps, bool opposite, bool field = false, bool isBottom = false) {
    zvpInterpolationICBlock b{};
    b.pSrc = samples.data() + (isBottom ? 32 : 0);
    b.srcStep = 32;
    b.pLUTTop = maps ? top.data() : nullptr;
    b.pLUTBottom = maps ? bottom.data() : nullptr;
    b.frameSize = {32, 32};
    b.blockPos = {x, y};
    b.oppositePadding = opposite;
    b.fieldPrediction = field;
    b.isPredBottom = isBottom;
    return b;
  }
};

}  // namespace

TEST(Vc1Interpolate, EveryPositionMatchesTheModelWithinItsReach) {
  Rng rng(830);
  for (int round = 0; round < rounds(40); ++round)
    for (const auto& m : interpolationMembers())
      for (const zvpSize size : sizesOf(m))
        for (int position = 0; position < 32; ++position) {
          const Style style = anyStyle(rng);
          comparePlain(m, size, position & 3, position >> 2 & 3, position >> 4, style, rng);
          if (HasFatalFailure()) return;
        }
}

// Samples at the ends of the range where the taps are negative and positive: sums at the ends of theirs.
TEST(Vc1Interpolate, BicubicSumsAtTheirEnds) {
  for (int position = 1; position < 16; ++position)
    for (int phases = 0; phases < 256; ++phases) {
      const int dx = position & 3, dy = position >> 2;
      // Per column and row of a 4x4 tile, whether it is high.
      std::array<uint8_t, 19 * 19> src{};
      for (int y = 0; y < 19; ++y)
        for (int x = 0; x < 19; ++x) {
          const bool high = ((phases >> (x & 3)) & 1) != ((phases >> (4 + (y & 3))) & 1);
          src[std::size_t(y * 19 + x)] = high ? 255 : 0;
        }
      for (int roundControl = 0; roundControl < 2; ++roundControl) {
        std::array<uint8_t, 256> actual{}, expected{};
        zvpInterpolationBlock b = {src.data() + 20, 19, expected.data(), 16, dx, dy, {16, 16}, roundControl};
        interpolate(bicubicMember(), b);
        b.pDst = actual.data();
        ASSERT_EQ(bicubicMember().qp(&b), zvpStatusOk);
        ASSERT_TRUE(sameBytes(actual.data(), expected.data(), 256)) << dx << " " << dy << " " << phases;
      }
    }
}

TEST(Vc1Interpolate, OtherSizesRunTheKernelsThatTheRuleNames) {
  Rng rng(831);
  for (const auto& m : interpolationMembers())
    for (int round = 0; round < rounds(300); ++round) {
      zvpSize size;
      if (m.filter == Filter::Bicubic) {
        const int kind = rng.range(0, 2);  // whose sum of (width >> 4) and (height >> 4) is 0 to 2
        size.width = rng.range(0, 15) + (kind == 0 ? 0 : 16);
        size.height = rng.range(0, 15) + (kind == 2 ? 16 : 0);
        if (rng.chance(3)) std::swap(size.width, size.height);
      } else {
        size.width = rng.chance(2) ? 8 * rng.range(1, 2) : rng.range(-20, 40);
        size.height = rng.range(-20, 40);
      }
      const int dx = m.filter == Filter::Bicubic ? rng.range(0, 3) : int(rng.next());
      const int dy = m.filter == Filter::Bicubic ? rng.range(0, 3) : int(rng.next());
      const int roundControl = m.filter == Filter::Bicubic ? rng.range(0, 1) : int(rng.next());
      comparePlain(m, size, dx, dy, roundControl, Style::Uniform, rng);
      if (HasFatalFailure()) return;
    }
}

TEST(Vc1Interpolate, WholeSamplesAreCopiedWhateverTheRounding) {
  Rng rng(832);
  for (const auto& m : interpolationMembers())
    for (const zvpSize size : sizesOf(m))
      for (int roundControl = 0; roundControl < 2; ++roundControl) {
        const int width = size.width * m.channels;
        const auto src = noise(width, size.height, rng);
        auto dst = noise(width, size.height, rng);
        const zvpInterpolationBlock b = {src.data(), int32_t(src.step()), dst.data(), int32_t(dst.step()), 0, 0,
                                         size,       roundControl};
        ASSERT_EQ(m.qp(&b), zvpStatusOk);
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < width; ++x) ASSERT_EQ(dst.get(x, y), src.get(x, y)) << m.name;
      }
}

// Sums that lie just where the rounding decides, worked by hand.
TEST(Vc1Interpolate, RoundingAtHalfSamples) {
  const auto first = [](const InterpolationMember& m, const uint8_t* at, int dx, int dy, int roundControl) {
    uint8_t dst[256] = {};
    const zvpInterpolationBlock b = {at, 24, dst, 16, dx, dy, {8, 8}, roundControl};
    EXPECT_EQ(m.qp(&b), zvpStatusOk);
    return int(dst[0]);
  };
  std::array<uint8_t, 24 * 24> src{};
  uint8_t* const at = src.data() + 24 * 4 + 4;
  at[0] = 3;
  at[1] = 5;
  // 9 * 8 = 72, and 72 + 8 = 80 = 5 * 16; bilinear (3 + 5 + 1) >> 1 = 4.
  EXPECT_EQ(first(bicubicMember(), at, 2, 0, 0), 5);
  EXPECT_EQ(first(bicubicMember(), at, 2, 0, 1), 4);
  EXPECT_EQ(first(bilinearMember(), at, 2, 0, 0), 4);
  at[1] = 4;
  EXPECT_EQ(first(bilinearMember(), at, 2, 0, 0), 4);
  EXPECT_EQ(first(bilinearMember(), at, 2, 0, 1), 3);
  // Vertically the rounding control adds to one less: 72 + 7 = 79, 72 + 8 = 80.
  at[1] = 0;
  at[24] = 5;
  EXPECT_EQ(first(bicubicMember(), at, 0, 2, 0), 4);
  EXPECT_EQ(first(bicubicMember(), at, 0, 2, 1), 5);
  // Both: the first pass shifts by 1 and rounds by the control alone. t = 9 * 28 >> 1 = 126, (9 * 126 + 64) >> 7 = 9.
  src.fill(0);
  at[0] = 28;
  EXPECT_EQ(first(bicubicMember(), at, 2, 2, 0), 9);
  at[0] = 11;  // t = 49 or 50; 9 * 49 + 64 = 505, 9 * 50 + 63 = 513
  EXPECT_EQ(first(bicubicMember(), at, 2, 2, 0), 3);
  EXPECT_EQ(first(bicubicMember(), at, 2, 2, 1), 4);
  // Four samples: (1 + 2 + 3 + 4 + 2) >> 2 = 3, and (10 + 1) >> 2 = 2.
  at[0] = 1;
  at[1] = 2;
  at[24] = 3;
  at[25] = 4;
  EXPECT_EQ(first(bilinearMember(), at, 2, 2, 0), 3);
  EXPECT_EQ(first(bilinearMember(), at, 2, 2, 1), 2);
}

TEST(Vc1Interpolate, NullPointersAreRefused) {
  for (const auto& m : interpolationMembers()) {
    uint8_t src[64] = {}, dst[64], untouched[64];
    std::fill(std::begin(dst), std::end(dst), uint8_t(7));
    std::fill(std::begin(untouched), std::end(untouched), uint8_t(7));
    EXPECT_EQ(m.qp(nullptr), zvpStatusNullPointer);
    EXPECT_EQ(m.ic(nullptr), zvpStatusNullPointer);
    zvpInterpolationBlock b{};
    zvpInterpolationICBlock ic{};
    b.roiSize = ic.blockSize = {4, 4};
    EXPECT_EQ(m.qp(&b), zvpStatusNullPointer);
    EXPECT_EQ(m.ic(&ic), zvpStatusNullPointer);
    b.pSrc = ic.pSrc = src;
    EXPECT_EQ(m.qp(&b), zvpStatusNullPointer);
    EXPECT_EQ(m.ic(&ic), zvpStatusNullPointer);
    b.pSrc = ic.pSrc = nullptr;
    b.pDst = ic.pDst = dst;
    EXPECT_EQ(m.qp(&b), zvpStatusNullPointer);
    EXPECT_EQ(m.ic(&ic), zvpStatusNullPointer);
    EXPECT_TRUE(sameBytes(dst, untouched, sizeof dst));
  }
}

// Every place from wholly before to wholly behind the plane, in all modes.
TEST(Vc1Interpolate, EveryPlaceAroundAPlane) {
  Rng rng(833);
  const int stride = rounds(100) < 100 ? 3 : 1;
  for (const auto& m : interpolationMembers())
    for (const zvpSize size : sizesOf(m))
      for (int mode = 0; mode < Frame::modes; ++mode) {
        const int pictureRows = size.height + 6, height = pictureRows * ((mode & 2) != 0 ? 2 : 1);
        Frame frame(m, {size.width + 5, height}, rng);
        auto dst = frame.destination(size);
        for (int y = -size.height - 5; y < pictureRows + 6; ++y)
          for (int x = -size.width - 5 + (stride == 1 ? 0 : rng.range(0, 2)); x < size.width + 11; x += stride) {
            const auto b = frame.block(mode, size, {x, y});
            ASSERT_TRUE(frame.same(b, dst));
          }
      }
}

// Planes smaller than the neighbourhood, odd ones too, blocks of all sizes, places far outside.
TEST(Vc1Interpolate, AnyPlaneAndBlock) {
  Rng rng(834);
  for (int round = 0; round < rounds(3000); ++round)
    for (const auto& m : interpolationMembers()) {
      const int mode = rng.range(0, Frame::modes - 1);
      zvpSize size;
      size.width = rng.chance(2) ? 4 << rng.range(0, m.channels == 1 ? 2 : 1) : rng.range(1, 16);
      size.height = rng.chance(2) ? 4 << rng.range(0, 2) : rng.range(1, 16);
      zvpSize plane;
      plane.width = rng.range(1, 30);
      plane.height = rng.range((mode & 3) != 0 ? 2 : 1, 40);
      Frame frame(m, plane, rng);
      auto dst = frame.destination(size);
      for (int i = 0; i < 4; ++i) {
        zvpPoint at;
        at.x = rng.chance(8) ? rng.range(-1000000, 1000000) : rng.range(-25, plane.width + 10);
        at.y = rng.chance(8) ? rng.range(-1000000, 1000000) : rng.range(-25, plane.height + 10);
        zvpInterpolationICBlock b = frame.block(mode, size, at);
        // A block that lies in the plane is predicted from there by the kernel of its size, so it must have that size.
        if (b.pLUTTop == nullptr && b.pLUTBottom == nullptr) {
          const zvpSize kernel = kernelSize(m, size);
          if (kernel.width != size.width || kernel.height != size.height) continue;
        }
        ASSERT_TRUE(frame.same(b, dst)) << "round " << round;
      }
    }
}

TEST(Vc1Interpolate, PlacesAtTheEndsOfTheirRange) {
  Rng rng(835);
  for (const auto& m : interpolationMembers())
    for (int mode = 0; mode < Frame::modes; ++mode) {
      Frame frame(m, {20, 24}, rng);
      const zvpSize size = {8, 8};
      auto dst = frame.destination(size);
      auto far = dst.snapshot();
      for (const int32_t x : {INT32_MIN, -100, 100, INT32_MAX})
        for (const int32_t y : {INT32_MIN, INT32_MIN + 1, INT32_MAX - 1, INT32_MAX}) {
          // The nearest place of the same parities, still with no sample inside.
          zvpInterpolationICBlock near = frame.block(mode, size, {x < 0 ? -100 : 100, (y < 0 ? -100 : 100) + (y & 1)});
          zvpInterpolationICBlock b = near;
          b.blockPos = {x, y};
          near.pDst = b.pDst = dst.data();
          near.dstStep = b.dstStep = int32_t(dst.step());
          ASSERT_EQ(m.ic(&near), zvpStatusOk);
          far = dst.snapshot();
          for (std::size_t i = 0; i < dst.bytes().size(); ++i) dst.bytes().data()[i] = uint8_t(rng.next());
          ASSERT_EQ(m.ic(&b), zvpStatusOk);
          for (int row = 0; row < dst.height(); ++row)
            for (int column = 0; column < dst.width(); ++column)
              ASSERT_EQ(dst.get(column, row),
                        far[std::size_t(&dst.data()[row * dst.step() + column] - dst.bytes().data())])
                  << m.icName << " " << x << " " << y;
        }
    }
}

// Nothing but the block is mapped: the frame is claimed to be large, and no copy of the neighbourhood is made.
TEST(Vc1Interpolate, WithoutMapsABlockInThePlaneIsReadInPlace) {
  Rng rng(836);
  for (const auto& m : interpolationMembers())
    for (const zvpSize size : sizesOf(m))
      for (int field = 0; field < 2; ++field) {
        const int rows = field != 0 ? 2 * size.height - 1 : size.height;
        auto src = noise(size.width * m.channels, rows, rng);
        src.bytes().makeReadOnly();
        auto dst = noise(size.width * m.channels, size.height, rng);
        zvpInterpolationICBlock b{};
        b.blockPos = {1 * m.channels, 1};
        b.srcStep = int32_t(src.step());
        b.pSrc = src.data() - b.blockPos.x - b.blockPos.y * src.step() * (1 + field);
        b.pDst = dst.data();
        b.dstStep = int32_t(dst.step());
        b.frameSize = {size.width + 3, (size.height + 3) * (1 + field)};
        b.blockSize = size;
        b.fieldPrediction = field;
        ASSERT_EQ(m.ic(&b), zvpStatusOk);
        for (int y = 0; y < size.height; ++y)
          for (int x = 0; x < size.width * m.channels; ++x) ASSERT_EQ(dst.get(x, y), src.get(x, y * (1 + field)));
      }
}

TEST(Vc1Interpolate, AMapIsUsedInsideThePlaneToo) {
  NumberedFrame f;
  auto rows = wholeSamples(f.block(2, 3, true, false));
  for (int y = 0; y < 8; ++y) EXPECT_EQ(rows[std::size_t(y)][0], 3 + y + ((3 + y) % 2 == 0 ? 50 : 150)) << y;
  rows = wholeSamples(f.block(2, 4, true, false));
  for (int y = 0; y < 8; ++y) EXPECT_EQ(rows[std::size_t(y)][0], 4 + y + (y % 2 == 0 ? 50 : 150)) << y;
  rows = wholeSamples(f.block(2, 4, true, false, true, true));  // rows 1, 3, ... of the frame
  EXPECT_EQ(rows[0][0], uint8_t(9 + 150));
  auto oneMap = f.block(2, 4, true, false);
  oneMap.pLUTBottom = nullptr;
  rows = wholeSamples(oneMap);
  EXPECT_EQ(rows[0][0], 4 + 50);
  EXPECT_EQ(rows[1][0], 5);
}

TEST(Vc1Interpolate, AboveAFrame) {
  NumberedFrame f;
  for (const int y : {-40, -41}) {
    auto rows = wholeSamples(f.block(2, y, false, true));
    for (int i = 0; i < 16; ++i) EXPECT_EQ(rows[std::size_t(i)][0], (y + i) % 2 == 0 ? 0 : 1) << y << " " << i;
    rows = wholeSamples(f.block(2, y, true, true));
    for (int i = 0; i < 16; ++i)
      EXPECT_EQ(rows[std::size_t(i)][0], (y + i) % 2 == 0 ? 0 + 50 : 1 + 150) << y << " " << i;
    rows = wholeSamples(f.block(2, y, true, false));
    for (int i = 0; i < 16; ++i) EXPECT_EQ(rows[std::size_t(i)][0], 0 + 50) << y << " " << i;
  }
  for (const int y : {-6, -7}) {  // in part
    const auto rows = wholeSamples(f.block(2, y, true, true));
    for (int i = 0; i < 16; ++i) {
      const int row = y + i < 0 ? (y + i) & 1 : y + i;
      EXPECT_EQ(rows[std::size_t(i)][0], row + (row % 2 == 0 ? 50 : 150)) << y << " " << i;
    }
  }
}

TEST(Vc1Interpolate, BelowAFrame) {
  NumberedFrame f;
  for (const int y : {26, 27, 61, 62}) {
    auto rows = wholeSamples(f.block(2, y, false, true));
    for (int i = 0; i < 16; ++i)
      EXPECT_EQ(rows[std::size_t(i)][0], y + i < 32 ? y + i : 30 + ((y + i) & 1)) << y << " " << i;
    rows = wholeSamples(f.block(2, y, true, true));
    for (int i = 0; i < 16; ++i) {
      const int row = y + i < 32 ? y + i : 30 + ((y + i) & 1);
      // Wholly below with an even place each row has the map of the other parity.
      const bool top = (row % 2 == 0) != (y == 62);
      EXPECT_EQ(rows[std::size_t(i)][0], row + (top ? 50 : 150)) << y << " " << i;
    }
  }
  // Without that padding the last row has the map of the neighbourhood's second row: with an even place pLUTTop.
  EXPECT_EQ(wholeSamples(f.block(2, 24, true, false))[15][0], 31 + 50);
  EXPECT_EQ(wholeSamples(f.block(2, 25, true, false))[15][0], 31 + 150);
}

TEST(Vc1Interpolate, BeyondAField) {
  NumberedFrame f;
  for (const bool bottom : {false, true})
    for (const int y : {-6, -40, 10, 50}) {
      const int field = bottom ? 1 : 0, map = bottom ? 150 : 50;
      auto rows = wholeSamples(f.block(2, y, true, true, true, bottom));
      for (int i = 0; i < 16; ++i) {
        const int row = y + i;
        const int expected = row < 0 ? 0 + 50 : row >= 16 ? 31 + 150 : 2 * row + field + map;
        EXPECT_EQ(rows[std::size_t(i)][0], expected) << y << " " << i;
      }
      rows = wholeSamples(f.block(2, y, true, false, true, bottom));
      for (int i = 0; i < 16; ++i)
        EXPECT_EQ(rows[std::size_t(i)][0], 2 * std::clamp(y + i, 0, 15) + field + map) << y << " " << i;
    }
}

TEST(Vc1Interpolate, BesideAFrame) {
  NumberedFrame f;
  auto rows = wholeSamples(f.block(-8, 2, false, false));  // in part
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(rows[std::size_t(i)][0], 2 + i);
    EXPECT_EQ(rows[std::size_t(i)][15], 2 + i);
  }
  rows = wholeSamples(f.block(24, 2, false, false));
  for (int i = 0; i < 16; ++i) EXPECT_EQ(rows[std::size_t(i)][15], 2 + i + 100);
  rows = wholeSamples(f.block(40, 2, false, false));
  for (int i = 0; i < 16; ++i)
    for (int x = 0; x < 16; ++x) EXPECT_EQ(rows[std::size_t(i)][std::size_t(x)], 2 + i + 100);
  // Wholly to the left with a block 16 wide: the block's columns have the row below. Only the neighbourhood's last row,
  // which is not one of the block's, has its own sample.
  rows = wholeSamples(f.block(-40, 2, false, false));
  for (int i = 0; i < 16; ++i)
    for (int x = 0; x < 16; ++x) EXPECT_EQ(rows[std::size_t(i)][std::size_t(x)], 3 + i);
  // Maps go by the row of the neighbourhood: its first row is y - 1.
  rows = wholeSamples(f.block(40, 2, true, false));  // A is pLUTBottom for row 1
  for (int i = 0; i < 16; ++i) EXPECT_EQ(rows[std::size_t(i)][0], uint8_t(2 + i + 100 + (i % 2 == 0 ? 50 : 150)));
  rows = wholeSamples(f.block(40, -1, true, false));  // A is pLUTTop, for row -2
  for (int i = 0; i < 16; ++i)
    EXPECT_EQ(rows[std::size_t(i)][0], uint8_t(std::max(i - 1, 0) + 100 + (i % 2 == 0 ? 150 : 50))) << i;
}
