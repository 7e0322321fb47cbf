// Weighted prediction: every member against the model, with weights as streams have them and at the ends of 32 bits.
#include "reference/h264/weight.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "support/compare.h"
#include "unit/h264/prediction.h"

using namespace zvptest;
namespace model = reference::h264;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;

namespace {

const std::vector<int> lengths = {2, 4, 8, 16};

struct Parameters {
  int32_t logWD, weight1, offset1, weight2, offset2;
};

// Offsets of which the double or the sum wraps to a small number.
const std::vector<int> wildOffsets = {INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1, 1 << 30, -(1 << 30), 5};

// Of a stream; at the ends of what a stream may have; of a stream but for the offsets; of 16 bits; anything.
Parameters anyParameters(Rng& rng, int offsetScale) {
  const auto offset = [&] { return rng.range(-128, 127) * offsetScale; };
  switch (rng.range(0, 6)) {
    case 6: {
      const int32_t logWD = rng.range(1, 7), weight1 = rng.range(-64, 64), offset1 = rng.pick(wildOffsets);
      const int32_t weight2 = rng.range(-64, 64), offset2 = rng.pick(wildOffsets);
      return {logWD, weight1, offset1, weight2, offset2};
    }
    case 0:
      return {rng.range(0, 7), rng.chance(2) ? 127 : -128, offset(), rng.chance(2) ? 128 : -128, offset()};
    case 1:
      return {rng.range(0, 31), rng.range(-32769, 32768), offset(), rng.range(-32769, 32768), offset()};
    case 2:
      return {int32_t(rng.next()), int32_t(rng.next()), int32_t(rng.next()), int32_t(rng.next()), int32_t(rng.next())};
    case 3:
      return {rng.chance(2) ? 0 : rng.range(-40, 40), rng.chance(2) ? INT32_MIN : INT32_MAX, INT32_MAX,
              rng.chance(2) ? INT32_MIN : 1, rng.chance(2) ? INT32_MAX : INT32_MIN};
    default:
      return {rng.range(0, 7), rng.range(-128, 127), offset(), rng.range(-128, 127), offset()};
  }
}

// s1 and s2 stand for the samples of the two predictions; one prediction alone is s2, in the destination.
using Formula = std::function<std::int64_t(int32_t s1, int32_t s2)>;

// Calls a member on random blocks, the destination being one of the sources in some rounds. call gets pointers, steps
// in the interface's unit, and the size.
template <class T> using Call = std::function<zvpStatus(const T* src1, const T* src2, T* dst, int32_t step1,
                                                        int32_t step2, int32_t dstStep, zvpSize size)>;
enum class Layout { InPlace, OneSourceStep, ThreeSteps, OneStepInPlace };

template <class T>
void expectMember(Rng& rng, Layout layout, zvpSize size, int high, const Call<T>& call, const Formula& formula) {
  const auto step = [&] { return rng.step(size.width * std::ptrdiff_t(sizeof(T)), true, sizeof(T)); };
  const auto step1 = step();
  const auto step2 = layout == Layout::OneSourceStep || layout == Layout::OneStepInPlace ? step1 : step();
  GuardedPlane<T> src1(size.width, size.height, step1, rng.guard()), src2(size.width, size.height, step2, rng.guard());
  const bool inPlace = layout == Layout::InPlace || layout == Layout::OneStepInPlace || rng.chance(4);
  GuardedPlane<T> own{size.width, size.height, inPlace ? step2 : step(), rng.guard()};
  fill(src1, rng, anyStyle(rng), 0, high);
  fill(src2, rng, anyStyle(rng), 0, high);
  fill(own, rng, Style::Uniform, 0, high);
  GuardedPlane<T>& dst = inPlace ? src2 : own;
  Expected<T> expected(dst);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) expected.set(x, y, formula(src1.get(x, y), src2.get(x, y)));
  src1.bytes().makeReadOnly();
  if (!inPlace) src2.bytes().makeReadOnly();
  ASSERT_EQ(call(src1.data(), src2.data(), dst.data(), unitStep(src1), unitStep(src2), unitStep(dst), size),
            zvpStatusOk);
  ASSERT_TRUE(sameBytes(dst.snapshot(), expected.bytes())) << size.width << "x" << size.height;
}

// The same where rows of the result overlap, for steps that are not refused: samples are done in raster order. Sources
// are tight blocks; one of them may be the destination.
template <class T> void expectOverlapping(Rng& rng, bool inPlace, zvpSize size, int32_t step, int high,
                                          const Call<T>& call, const Formula& formula) {
  const auto samples = [](zvpSize s, int32_t rowStep) {
    return std::size_t(std::abs(rowStep) * (s.height - 1) + s.width);
  };
  const auto origin = [&](std::vector<T>& v, int32_t rowStep) {
    return v.data() + (rowStep < 0 ? -rowStep * (size.height - 1) : 0);
  };
  const int32_t step1 = rng.chance(2) ? step : size.width;
  std::vector<T> src1(samples(size, step1)), dst(samples(size, step)), own(samples(size, size.width));
  for (auto* v : {&src1, &dst, &own}) fill(v->data(), v->size(), rng, anyStyle(rng), 0, high);
  std::vector<T> expected = dst;
  const int32_t step2 = inPlace ? step : size.width;
  const T* const a = origin(src1, step1);
  const T* const b = inPlace ? origin(dst, step) : own.data();
  T* const e = origin(expected, step);
  for (int y = 0; y < size.height; ++y)
    for (int x = 0; x < size.width; ++x) {
      const T s2 = (inPlace ? e : b)[y * step2 + x];
      e[y * step + x] = T(formula(a[y * step1 + x], s2));
    }
  ASSERT_EQ(call(a, b, origin(dst, step), step1, step2, step, size), zvpStatusOk);
  ASSERT_TRUE(sameBytes(dst.data(), expected.data(), dst.size() * sizeof(T)))
      << size.width << "x" << size.height << " step " << step;
}

zvpSize anySize(Rng& rng) { return {rng.pick(lengths), rng.pick(lengths)}; }

WeightBlockRecord recordOf(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t step1, int32_t step2,
                           int32_t dstStep, zvpSize size, int bitDepth) {
  return {src1, step1, src2, step2, dst, dstStep, size, bitDepth};
}

// A depth, and samples within it or of all 16 bits.
struct Depth {
  int32_t bits;
  int high;
};
Depth anyDepth(Rng& rng) {
  const int32_t bits = rng.chance(5) ? rng.range(-3, 40) : rng.range(8, 16);
  const bool within = bits >= 1 && bits <= 16 && !rng.chance(4);
  return {bits, within ? (1 << bits) - 1 : 65535};
}

}  // namespace

#define NO_FAILURE() \
  if (HasFatalFailure()) return

TEST(Weight8u, OneDirection) {
  Rng rng(301);
  for (int round = 0; round < rounds(1500); ++round) {
    const Parameters p = anyParameters(rng, 1);
    const auto member = rng.chance(2) ? zvpiUniDirWeightBlock_H264_8u_C1R : zvpiUniDirWeightBlock_H264_8u_C1IR;
    expectMember<uint8_t>(
        rng, Layout::InPlace, anySize(rng), 255,
        [&](const uint8_t*, const uint8_t*, uint8_t* dst, int32_t, int32_t, int32_t step, zvpSize size) {
          return member(dst, step, p.logWD, p.weight1, p.offset1, size);
        },
        [&](int32_t, int32_t s) { return model::weightOne(s, p.logWD, p.weight1, p.offset1, 255); });
    NO_FAILURE();
  }
}

TEST(Weight8u, TwoDirections) {
  Rng rng(302);
  for (int round = 0; round < rounds(2000); ++round) {
    const Parameters p = anyParameters(rng, 1);
    const bool three = rng.chance(2);
    expectMember<uint8_t>(
        rng, three ? Layout::ThreeSteps : Layout::OneSourceStep, anySize(rng), 255,
        [&](const uint8_t* a, const uint8_t* b, uint8_t* dst, int32_t step1, int32_t step2, int32_t step,
            zvpSize size) {
          return three ? zvpiBiDirWeightBlock_H264_8u_P3P1R(a, b, dst, step1, step2, step, p.logWD, p.weight1,
                                                            p.offset1, p.weight2, p.offset2, size)
                       : zvpiBiDirWeightBlock_H264_8u_P2P1R(a, b, dst, step1, step, p.logWD, p.weight1, p.offset1,
                                                            p.weight2, p.offset2, size);
        },
        [&](int32_t s1, int32_t s2) {
          return model::weightTwo(s1, s2, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2, 255);
        });
    NO_FAILURE();
  }
}

TEST(Weight8u, Implicit) {
  Rng rng(303);
  for (int round = 0; round < rounds(2000); ++round) {
    Parameters p = anyParameters(rng, 1);
    if (rng.chance(2)) {  // as the standard derives them: -64..128, 64 together
      p.weight1 = rng.range(-64, 128);
      p.weight2 = 64 - p.weight1;
    }
    const bool three = rng.chance(2);
    // The member with three steps takes any size.
    const zvpSize size = three ? zvpSize{rng.range(1, 70), rng.range(1, 20)} : anySize(rng);
    expectMember<uint8_t>(
        rng, three ? Layout::ThreeSteps : Layout::OneSourceStep, size, 255,
        [&](const uint8_t* a, const uint8_t* b, uint8_t* dst, int32_t step1, int32_t step2, int32_t step, zvpSize s) {
          return three ? zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(a, b, dst, step1, step2, step, p.weight1, p.weight2,
                                                                    s)
                       : zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(a, b, dst, step1, step, p.weight1, p.weight2, s);
        },
        [&](int32_t s1, int32_t s2) { return model::weightImplicit(s1, s2, p.weight1, p.weight2, 255); });
    NO_FAILURE();
  }
}

TEST(Weight8u, WeightedAverage) {
  Rng rng(304);
  for (int round = 0; round < rounds(1500);) {
    Parameters p = anyParameters(rng, 1);
    if (rng.chance(2)) p = {rng.range(-2, 6), rng.range(-40, 40), rng.range(-128, 127), rng.range(-40, 40), 0};
    // What is clipped must lie within -256..511 for every pair of samples.
    bool within = true;
    for (const int s : {0, 255})
      for (const int d : {0, 255}) {
        const int32_t v = model::weightedAverage(s, d, p.weight1, p.weight2, p.logWD, p.offset1);
        within = within && v >= -256 && v <= 511;
      }
    if (!within || std::abs(std::int64_t(p.weight1)) > 1 << 20 || std::abs(std::int64_t(p.weight2)) > 1 << 20) continue;
    ++round;
    expectMember<uint8_t>(
        rng, Layout::OneStepInPlace, anySize(rng), 255,
        [&](const uint8_t* src, const uint8_t*, uint8_t* dst, int32_t step, int32_t, int32_t, zvpSize size) {
          return zvpiWeightedAverage_H264_8u_C1IR(src, dst, step, p.weight1, p.weight2, p.logWD, p.offset1, size);
        },
        [&](int32_t s, int32_t d) {
          const int32_t v = model::weightedAverage(s, d, p.weight1, p.weight2, p.logWD, p.offset1);
          return v < 0 ? 0 : v > 255 ? 255 : v;
        });
    NO_FAILURE();
  }
}

TEST(Weight16u, OneDirection) {
  Rng rng(305);
  for (int round = 0; round < rounds(1500); ++round) {
    const Depth depth = anyDepth(rng);
    const Parameters p = anyParameters(rng, 1 << rng.range(0, 6));
    expectMember<uint16_t>(
        rng, Layout::InPlace, anySize(rng), depth.high,
        [&](const uint16_t*, const uint16_t*, uint16_t* dst, int32_t, int32_t, int32_t step, zvpSize size) {
          return zvpiUnidirWeight_H264_16u_IP2P1R(dst, step, p.logWD, p.weight1, p.offset1, size, depth.bits);
        },
        [&](int32_t, int32_t s) {
          return model::weightOne(s, p.logWD, p.weight1, p.offset1, model::highest(depth.bits));
        });
    NO_FAILURE();
  }
}

TEST(Weight16u, TwoDirectionsAndImplicit) {
  Rng rng(306);
  for (int round = 0; round < rounds(2500); ++round) {
    const Depth depth = anyDepth(rng);
    Parameters p = anyParameters(rng, 1 << rng.range(0, 6));
    const bool implicit = rng.chance(2);
    if (implicit && rng.chance(2)) p.weight2 = 64 - (p.weight1 = rng.range(-64, 128));
    expectMember<uint16_t>(
        rng, Layout::ThreeSteps, anySize(rng), depth.high,
        [&](const uint16_t* a, const uint16_t* b, uint16_t* dst, int32_t step1, int32_t step2, int32_t step,
            zvpSize size) {
          const auto record = recordOf(a, b, dst, step1, step2, step, size, depth.bits);
          return implicit
                     ? zvpiBidirWeightImplicit_H264_16u_P2P1R(&record, p.weight1, p.weight2)
                     : zvpiBidirWeight_H264_16u_P2P1R(&record, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2);
        },
        [&](int32_t s1, int32_t s2) {
          const int32_t high = model::highest(depth.bits);
          return implicit ? model::weightImplicit(s1, s2, p.weight1, p.weight2, high)
                          : model::weightTwo(s1, s2, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2, high);
        });
    NO_FAILURE();
  }
}

TEST(Weight16u, MeanOfAnySize) {
  Rng rng(307);
  for (int round = 0; round < rounds(800); ++round) {
    expectMember<uint16_t>(
        rng, Layout::ThreeSteps, {rng.range(2, 16), rng.range(2, 16)}, 65535,
        [&](const uint16_t* a, const uint16_t* b, uint16_t* dst, int32_t step1, int32_t step2, int32_t step,
            zvpSize size) {
          const auto record = recordOf(a, b, dst, step1, step2, step, size, rng.range(-5, 40));
          return zvpiBidir_H264_16u_P2P1R(&record);
        },
        [](int32_t s1, int32_t s2) { return (s1 + s2 + 1) >> 1; });
    NO_FAILURE();
  }
}

// A step between the width and its negative, as far as a member takes one.
TEST(Weight, RowsThatOverlap) {
  Rng rng(308);
  for (int round = 0; round < rounds(1500); ++round) {
    Parameters p = anyParameters(rng, 1);
    if (rng.chance(2)) p.weight2 = 64 - (p.weight1 = rng.range(-64, 128));
    const bool inPlace = rng.chance(2);
    zvpSize size = anySize(rng);
    expectOverlapping<uint8_t>(
        rng, true, size, rng.range(1 - size.width, -1), 255,
        [&](const uint8_t*, const uint8_t*, uint8_t* dst, int32_t, int32_t, int32_t step, zvpSize s) {
          return zvpiUniDirWeightBlock_H264_8u_C1R(dst, step, p.logWD, p.weight1, p.offset1, s);
        },
        [&](int32_t, int32_t s) { return model::weightOne(s, p.logWD, p.weight1, p.offset1, 255); });
    NO_FAILURE();
    expectOverlapping<uint8_t>(
        rng, inPlace, size, rng.range(1 - size.width, -1), 255,
        [&](const uint8_t* a, const uint8_t* b, uint8_t* dst, int32_t step1, int32_t step2, int32_t step, zvpSize s) {
          return zvpiBiDirWeightBlock_H264_8u_P3P1R(a, b, dst, step1, step2, step, p.logWD, p.weight1, p.offset1,
                                                    p.weight2, p.offset2, s);
        },
        [&](int32_t s1, int32_t s2) {
          return model::weightTwo(s1, s2, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2, 255);
        });
    NO_FAILURE();
    expectOverlapping<uint16_t>(
        rng, inPlace, size, rng.range(1 - size.width, -1), 1023,
        [&](const uint16_t* a, const uint16_t* b, uint16_t* dst, int32_t step1, int32_t step2, int32_t step,
            zvpSize s) {
          const auto record = recordOf(a, b, dst, step1, step2, step, s, 10);
          return zvpiBidirWeight_H264_16u_P2P1R(&record, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2);
        },
        [&](int32_t s1, int32_t s2) {
          return model::weightTwo(s1, s2, p.logWD, p.weight1, p.offset1, p.weight2, p.offset2, 1023);
        });
    NO_FAILURE();
    // These two check no step.
    if (rng.chance(2)) size = {rng.range(1, 40), rng.range(1, 20)};
    expectOverlapping<uint8_t>(
        rng, inPlace, size, rng.range(1 - size.width, size.width - 1), 255,
        [&](const uint8_t* a, const uint8_t* b, uint8_t* dst, int32_t step1, int32_t step2, int32_t step, zvpSize s) {
          return zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(a, b, dst, step1, step2, step, p.weight1, p.weight2, s);
        },
        [&](int32_t s1, int32_t s2) { return model::weightImplicit(s1, s2, p.weight1, p.weight2, 255); });
    NO_FAILURE();
    size = {rng.range(2, 16), rng.range(2, 16)};
    expectOverlapping<uint16_t>(
        rng, inPlace, size, rng.range(1 - size.width, size.width - 1), 65535,
        [&](const uint16_t* a, const uint16_t* b, uint16_t* dst, int32_t step1, int32_t step2, int32_t step,
            zvpSize s) {
          const auto record = recordOf(a, b, dst, step1, step2, step, s, 8);
          return zvpiBidir_H264_16u_P2P1R(&record);
        },
        [](int32_t s1, int32_t s2) { return (s1 + s2 + 1) >> 1; });
    NO_FAILURE();
  }
}

// Every weight and every sample, at offsets that bring sums to their ends.
TEST(Weight8u, EveryWeightOfOneDirection) {
  uint8_t block[256];
  for (int32_t logWD = 0; logWD <= 8; ++logWD)
    for (int32_t weight = -130; weight <= 130; ++weight)
      for (const int32_t offset : {-129, -128, -1, 0, 127, 128}) {
        for (int s = 0; s < 256; ++s) block[s] = uint8_t(s);
        ASSERT_EQ(zvpiUniDirWeightBlock_H264_8u_C1R(block, 16, logWD, weight, offset, {16, 16}), zvpStatusOk);
        for (int s = 0; s < 256; ++s)
          ASSERT_EQ(block[s], model::weightOne(s, logWD, weight, offset, 255))
              << s << " logWD " << logWD << " weight " << weight << " offset " << offset;
      }
}

// Every pair of weights whose sum is near the ends, on pairs of samples at theirs.
TEST(Weight8u, EndsOfTwoDirections) {
  const uint8_t ends[16] = {0, 1, 2, 3, 63, 64, 65, 127, 128, 129, 191, 192, 252, 253, 254, 255};
  const int32_t weights[] = {-129, -128, -127, -64, -1, 0, 1, 2, 63, 64, 65, 126, 127, 128, 129};
  uint8_t a[256], b[256], out[256];
  for (int i = 0; i < 256; ++i) a[i] = ends[i / 16], b[i] = ends[i % 16];
  for (int32_t logWD = 0; logWD <= 8; ++logWD)
    for (const int32_t weight1 : weights)
      for (const int32_t weight2 : weights)
        for (const int32_t offset : {-129, -128, -1, 0, 127, 128}) {
          ASSERT_EQ(
              zvpiBiDirWeightBlock_H264_8u_P2P1R(a, b, out, 16, 16, logWD, weight1, offset, weight2, offset, {16, 16}),
              zvpStatusOk);
          for (int i = 0; i < 256; ++i)
            ASSERT_EQ(out[i], model::weightTwo(a[i], b[i], logWD, weight1, offset, weight2, offset, 255))
                << int(a[i]) << ' ' << int(b[i]) << " logWD " << logWD << " weights " << weight1 << ' ' << weight2
                << " offsets " << offset;
        }
}

// Implicit weights around those that the standard derives, on every pair of samples.
TEST(Weight8u, EveryImplicitWeight) {
  uint8_t a[256], b[256], out[256];
  for (int i = 0; i < 256; ++i) b[i] = uint8_t(i);
  for (int32_t weight1 = -66; weight1 <= 130; ++weight1)
    for (int s1 = 0; s1 < 256; ++s1) {
      std::memset(a, s1, sizeof a);
      ASSERT_EQ(zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(a, b, out, 16, 16, weight1, 64 - weight1, {16, 16}),
                zvpStatusOk);
      for (int s2 = 0; s2 < 256; ++s2)
        if (out[s2] != model::weightImplicit(s1, s2, weight1, 64 - weight1, 255))
          FAIL() << s1 << ' ' << s2 << " weight " << weight1;
    }
}

TEST(Weight8u, WorkedCases) {
  uint8_t block[4] = {0, 9, 200, 255}, a[4] = {0, 10, 255, 3}, b[4] = {1, 12, 254, 3}, out[4];
  EXPECT_EQ(zvpiUniDirWeightBlock_H264_8u_C1R(block, 2, 0, 1, 0, {2, 2}), zvpStatusOk);
  const uint8_t same[4] = {0, 9, 200, 255};
  EXPECT_TRUE(sameBytes(block, same, 4));
  EXPECT_EQ(zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(a, b, out, 2, 2, 32, 32, {2, 2}), zvpStatusOk);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(out[i], (a[i] + b[i] + 1) >> 1);
  // Two equal offsets count once.
  EXPECT_EQ(zvpiBiDirWeightBlock_H264_8u_P2P1R(a, b, out, 2, 2, 5, 32, -7, 32, -7, {2, 2}), zvpStatusOk);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(out[i], std::max(0, ((a[i] + b[i] + 1) >> 1) - 7));
}

// Null pointers, then steps, then sizes.
TEST(Weight, ChecksInOrder) {
  uint8_t a[400] = {}, b[400] = {}, out[400] = {7};
  uint16_t a16[400] = {}, b16[400] = {}, out16[400] = {7};
  struct Member {
    const char* name;
    bool twoSources;
    std::function<zvpStatus(bool null1, bool null2, bool nullDst, int32_t step1, int32_t step2, int32_t step, zvpSize)>
        call;
  };
  const auto u8Source = [](uint8_t* p, bool null) { return null ? nullptr : p; };
  const auto u16Source = [](uint16_t* p, bool null) { return null ? nullptr : p; };
  const auto record = [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
    return WeightBlockRecord{u16Source(a16, n1), s1, u16Source(b16, n2), s2, u16Source(out16, nd), sd, size, 8};
  };
  const std::vector<Member> members = {
      {"one", false,
       [&](bool, bool, bool nd, int32_t, int32_t, int32_t sd, zvpSize size) {
         return zvpiUniDirWeightBlock_H264_8u_C1R(u8Source(out, nd), sd, 0, 1, 0, size);
       }},
      {"one in place", false,
       [&](bool, bool, bool nd, int32_t, int32_t, int32_t sd, zvpSize size) {
         return zvpiUniDirWeightBlock_H264_8u_C1IR(u8Source(out, nd), sd, 0, 1, 0, size);
       }},
      {"one, 16 bits", false,
       [&](bool, bool, bool nd, int32_t, int32_t, int32_t sd, zvpSize size) {
         return zvpiUnidirWeight_H264_16u_IP2P1R(u16Source(out16, nd), sd, 0, 1, 0, size, 8);
       }},
      {"two", true,
       [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         return zvpiBiDirWeightBlock_H264_8u_P2P1R(u8Source(a, n1), u8Source(b, n2), u8Source(out, nd),
                                                   std::min(s1, s2), sd, 0, 1, 0, 1, 0, size);
       }},
      {"two, three steps", true,
       [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         return zvpiBiDirWeightBlock_H264_8u_P3P1R(u8Source(a, n1), u8Source(b, n2), u8Source(out, nd), s1, s2, sd, 0,
                                                   1, 0, 1, 0, size);
       }},
      {"implicit", true,
       [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         return zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(u8Source(a, n1), u8Source(b, n2), u8Source(out, nd),
                                                           std::min(s1, s2), sd, 32, 32, size);
       }},
      {"average", true,
       [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         return zvpiWeightedAverage_H264_8u_C1IR(u8Source(a, n1 || n2), u8Source(out, nd), std::min({s1, s2, sd}), 1, 0,
                                                 0, 0, size);
       }},
      {"two, 16 bits", true,
       [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         const auto r = record(n1, n2, nd, s1, s2, sd, size);
         return zvpiBidirWeight_H264_16u_P2P1R(&r, 0, 1, 0, 1, 0);
       }},
      {"implicit, 16 bits", true, [&](bool n1, bool n2, bool nd, int32_t s1, int32_t s2, int32_t sd, zvpSize size) {
         const auto r = record(n1, n2, nd, s1, s2, sd, size);
         return zvpiBidirWeightImplicit_H264_16u_P2P1R(&r, 32, 32);
       }}};
  const zvpSize badSize = {3, 3};
  for (const Member& m : members) {
    SCOPED_TRACE(m.name);
    EXPECT_EQ(m.call(false, false, true, 0, 0, 0, badSize), zvpStatusNullPointer);
    EXPECT_EQ(m.call(false, false, false, 16, 16, 2, badSize), zvpStatusBadStep);
    if (m.twoSources) {
      EXPECT_EQ(m.call(true, false, false, 0, 0, 0, badSize), zvpStatusNullPointer);
      EXPECT_EQ(m.call(false, true, false, 0, 0, 0, badSize), zvpStatusNullPointer);
      EXPECT_EQ(m.call(false, false, false, 2, 16, 16, badSize), zvpStatusBadStep);
      EXPECT_EQ(m.call(false, false, false, 16, 2, 16, badSize), zvpStatusBadStep);
      EXPECT_EQ(m.call(false, false, false, 15, 15, 16, {16, 2}), zvpStatusBadStep);
    }
    EXPECT_EQ(m.call(false, false, false, 16, 16, 15, {16, 2}), zvpStatusBadStep);
    // A negative width is a large one; a negative step is larger still than any width.
    EXPECT_EQ(m.call(false, false, false, 16, 16, 16, {-2, 2}), zvpStatusBadStep);
    EXPECT_EQ(m.call(false, false, false, -1, -1, -1, {-2, 2}), zvpStatusBadSize);
    for (const int bad : {0, 1, 3, 5, 12, 15, 17, 32}) {
      EXPECT_EQ(m.call(false, false, false, 32, 32, 32, {bad, 4}), zvpStatusBadSize) << bad;
      EXPECT_EQ(m.call(false, false, false, 32, 32, 32, {4, bad}), zvpStatusBadSize) << bad;
    }
    EXPECT_EQ(m.call(false, false, false, 32, 32, 32, {4, -4}), zvpStatusBadSize);
    EXPECT_EQ(out[0], 7);
    EXPECT_EQ(out16[0], 7);
    if (m.twoSources) {  // a step equal to the width
      EXPECT_EQ(m.call(false, false, false, 16, 16, 16, {16, 16}), zvpStatusOk);
      EXPECT_EQ(out[0] + out16[0], 7);
      out[0] = 7;
      out16[0] = 7;
    } else {
      EXPECT_EQ(m.call(false, false, false, 16, 16, 16, {16, 16}), zvpStatusOk);
    }
  }
  EXPECT_EQ(zvpiBidirWeight_H264_16u_P2P1R(nullptr, 0, 1, 0, 1, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiBidirWeightImplicit_H264_16u_P2P1R(nullptr, 1, 1), zvpStatusNullPointer);
}

TEST(Weight, MembersWithFewerChecks) {
  uint8_t a[64] = {}, out[64] = {7};
  const auto implicit = [&](const uint8_t* s1, const uint8_t* s2, uint8_t* dst, zvpSize size) {
    return zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(s1, s2, dst, 0, 0, 0, 32, 32, size);
  };
  EXPECT_EQ(implicit(nullptr, a, out, {0, 0}), zvpStatusNullPointer);
  EXPECT_EQ(implicit(a, nullptr, out, {0, 0}), zvpStatusNullPointer);
  EXPECT_EQ(implicit(a, a, nullptr, {0, 0}), zvpStatusNullPointer);
  for (const zvpSize empty : {zvpSize{0, 0}, zvpSize{0, 4}, zvpSize{4, 0}, zvpSize{-16, 4}, zvpSize{16, -4},
                              zvpSize{INT32_MIN, INT32_MIN}, zvpSize{INT32_MIN, 4}})
    EXPECT_EQ(implicit(a, a, out, empty), zvpStatusOk);
  EXPECT_EQ(zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(a, a, out, 0, 0, 32, 32, {0, 0}), zvpStatusBadSize);
  EXPECT_EQ(out[0], 7);
  EXPECT_EQ(implicit(a, a, out, {3, 1}), zvpStatusOk);  // steps below the width and all
  EXPECT_EQ(out[0], 0);

  uint16_t a16[256] = {}, out16[256] = {7};
  const auto mean = [&](const uint16_t* s1, const uint16_t* s2, uint16_t* dst, zvpSize size) {
    const WeightBlockRecord record = {s1, 0, s2, 0, dst, 0, size, 0};
    return zvpiBidir_H264_16u_P2P1R(&record);
  };
  EXPECT_EQ(zvpiBidir_H264_16u_P2P1R(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(mean(nullptr, a16, out16, {1, 1}), zvpStatusNullPointer);
  EXPECT_EQ(mean(a16, nullptr, out16, {1, 1}), zvpStatusNullPointer);
  EXPECT_EQ(mean(a16, a16, nullptr, {1, 1}), zvpStatusNullPointer);
  for (const int bad : {-2, 0, 1, 17, INT32_MIN}) {
    EXPECT_EQ(mean(a16, a16, out16, {bad, 4}), zvpStatusBadSize);
    EXPECT_EQ(mean(a16, a16, out16, {4, bad}), zvpStatusBadSize);
  }
  EXPECT_EQ(out16[0], 7);
  EXPECT_EQ(mean(a16, a16, out16, {3, 3}), zvpStatusOk);  // a width of 3 is carried out
  EXPECT_EQ(out16[0], 0);
  EXPECT_EQ(zvpiUniDirWeightBlock_H264_8u_C1R(out, 8, 0, 1, 0, {3, 4}), zvpStatusBadSize);
}
