#include "reference/filters/deinterlace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "support/alloc.h"
#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;
using std::uint8_t;

namespace {

using Plane = GuardedPlane<uint8_t>;

struct Frame {
  Plane plane;
  reference::Picture picture() const { return {plane.data(), plane.step()}; }
};

Frame makeFrame(Rng& rng, int width, int height, std::ptrdiff_t step, Plane::Margin margin = {}) {
  Frame frame{Plane(width, height, step, rng.guard(), margin)};
  fill(frame.plane, rng, anyStyle(rng), 0, 255);
  frame.plane.bytes().makeReadOnly();
  return frame;
}
// Frames of a sequence, alike enough for all branches of a motion test.
template <int N>
std::array<Frame, N> makeSequence(Rng& rng, int width, int height, std::ptrdiff_t step) {
  std::array<Frame, N> frames;
  const int change = rng.pick<int>({0, 1, 3, 12, 40, 255});
  const Style style = anyStyle(rng);
  for (int i = 0; i < N; ++i) {
    frames[std::size_t(i)].plane = Plane(width, height, step, rng.guard());
    Plane& plane = frames[std::size_t(i)].plane;
    if (i == 0) {
      fill(plane, rng, style, 0, 255);
      continue;
    }
    for (std::size_t k = 0; k < plane.bytes().size(); ++k) plane.bytes().data()[k] = uint8_t(rng.next());
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        plane.set(x, y, uint8_t(std::clamp(frames[0].plane.get(x, y) + rng.range(-change, change), 0, 255)));
  }
  for (auto& frame : frames) frame.plane.bytes().makeReadOnly();
  return frames;
}
// The result of a model on a copy of the destination's bytes.
template <class Model>
std::vector<uint8_t> expect(const Plane& dst, Model model) {
  std::vector<uint8_t> bytes = dst.snapshot();
  model(reference::Target{bytes.data() + (dst.data() - const_cast<Plane&>(dst).bytes().data()), dst.step()});
  return bytes;
}
Plane makeTarget(Rng& rng, int width, int height, std::ptrdiff_t step, Plane::Margin margin = {}) {
  Plane dst(width, height, step, rng.guard(), margin);
  fill(dst, rng, Style::Uniform, 0, 255);
  return dst;
}

}  // namespace

TEST(DeinterlaceTriangle, MatchesTheModelInAllLayouts) {
  Rng rng(11);
  for (int round = 0; round < rounds(600); ++round) {
    const int width = rng.range(1, 75), height = rng.range(3, 11);
    const int layout = rng.pick<int>({0, 1, 4, 16, -1, 5, 17});
    const bool inside = layout == 4 || layout == 16;
    Frame src = makeFrame(rng, width, height, rng.step(width, true), {0, 0, inside ? 2 : 0, 0});
    Plane dst = makeTarget(rng, width, height, rng.step(width, true), {0, 0, inside ? 1 : 0, 0});
    const auto weight = std::uint32_t(rng.chance(6) ? -rng.range(1, 9) : rng.range(0, 300));
    const auto expected = expect(dst, [&](reference::Target to) {
      reference::deinterlaceTriangle(src.picture(), to, {width, height}, weight, layout);
    });
    ASSERT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src.plane.data(), int(src.plane.step()), dst.data(), int(dst.step()),
                                                   {width, height}, weight, layout),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " layout " << layout;
  }
}

TEST(DeinterlaceTriangle, CentreWeightsAtTheEnd) {
  // 256 and more copy the row; at 255 the side weight is 0 too, and the centre shrinks by 255/256.
  uint8_t src[3] = {10, 200, 90}, dst[3] = {};
  for (std::uint32_t weight : {256u, 300u, 0xffffffffu}) {
    ASSERT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src, 1, dst, 1, {1, 3}, weight, 0), zvpStatusOk);
    EXPECT_EQ(dst[1], 200);
  }
  ASSERT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src, 1, dst, 1, {1, 3}, 255, 0), zvpStatusOk);
  EXPECT_EQ(dst[1], 200 * 255 / 256);
}

TEST(DeinterlaceTriangle, ChecksInOrder) {
  uint8_t src[16] = {}, dst[16] = {7};
  for (int layout : {0, 1, 4, 16}) {
    EXPECT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(nullptr, 1, dst, 1, {0, 2}, 1, layout), zvpStatusNullPointer);
    EXPECT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src, 1, nullptr, 1, {0, 2}, 1, layout), zvpStatusNullPointer);
    EXPECT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src, 1, dst, 1, {1, 2}, 1, layout), zvpStatusBadSize);
    EXPECT_EQ(zvpiDeinterlaceFilterTriangle_8u_C1R(src, 1, dst, 1, {0, 3}, 1, layout), zvpStatusBadSize);
  }
  EXPECT_EQ(dst[0], 7);
}

TEST(DeinterlaceEdgeDetect, MatchesTheModel) {
  Rng rng(12);
  for (int round = 0; round < rounds(800); ++round) {
    const int width = rng.chance(4) ? rng.range(1, 3) : rng.range(1, 75), height = rng.range(2, 9);
    const int field = rng.range(0, 1), border = rng.pick<int>({0, 1, 256, -1});
    const Plane::Margin margin = {0, 0, border == 0 && field == 0 ? 1 : 0, border == 0 && field == 1 ? 1 : 0};
    Frame src = makeFrame(rng, width, height, rng.step(width, true), margin);
    Plane dst = makeTarget(rng, width, height, rng.step(width, true));
    const auto expected = expect(dst, [&](reference::Target to) {
      reference::deinterlaceEdgeDetect(src.picture(), to, {width, height}, field, border != 0);
    });
    ASSERT_EQ(zvpiDeinterlaceEdgeDetect_8u_C1R(src.plane.data(), int(src.plane.step()), dst.data(), int(dst.step()),
                                               {width, height}, field, border),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " field " << field << " " << border;
  }
}

TEST(DeinterlaceEdgeDetect, ChecksInOrder) {
  uint8_t src[16] = {}, dst[16] = {7};
  EXPECT_EQ(zvpiDeinterlaceEdgeDetect_8u_C1R(nullptr, 1, dst, 1, {0, 1}, 0, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceEdgeDetect_8u_C1R(src, 1, nullptr, 1, {0, 1}, 0, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceEdgeDetect_8u_C1R(src, 1, dst, 1, {0, 2}, 0, 1), zvpStatusBadSize);
  EXPECT_EQ(zvpiDeinterlaceEdgeDetect_8u_C1R(src, 1, dst, 1, {1, 1}, 0, 1), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
}

TEST(DeinterlaceMedian, MatchesTheModelOddCopiesIncluded) {
  Rng rng(13);
  for (int round = 0; round < rounds(800); ++round) {
    const int width = rng.range(1, 75), height = rng.range(2, 11);
    const int field = rng.pick<int>({0, 1, 2, -1}), border = rng.pick<int>({0, 1, 256});
    // A border copy is a source step long: the rows here are as wide as that.
    const std::ptrdiff_t step = rng.step(width, border == 0);
    const int copied = border != 0 ? int(step) : width;
    const bool first = field != 1;
    const bool lastIsMade = (height - 1) % 2 == (field == 1 ? 1 : 0);
    const Plane::Margin margin = {0, copied - width, border == 0 && first ? 1 : 0, border == 0 && lastIsMade ? 1 : 0};
    Frame src = makeFrame(rng, width, height, step, margin);
    // Room on all sides of the destination: the copies go where the two steps take them.
    const std::ptrdiff_t dstStep = rng.chance(3) ? step : rng.step(std::max(width, copied), border == 0);
    const int slack = 4 + int(std::abs(step) / std::abs(dstStep));
    Plane dst = makeTarget(rng, width, height, dstStep, {0, std::max(copied, width) - width, slack, slack});
    const int threshold = rng.pick<int>({0, -5, 1, 8, 30, 255, 256, 1000, std::numeric_limits<int>::max()});
    const auto expected = expect(dst, [&](reference::Target to) {
      reference::deinterlaceMedian(src.picture(), to, {width, height}, threshold, field, border != 0);
    });
    ASSERT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src.plane.data(), int(step), dst.data(), int(dstStep),
                                                    {width, height}, threshold, field, border),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " field " << field << " " << border;
  }
}

TEST(DeinterlaceMedian, ThresholdZeroAlwaysTakesTheMedian) {
  const uint8_t src[3] = {10, 11, 10};
  uint8_t dst[3] = {};
  ASSERT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src, 1, dst, 1, {1, 3}, 0, 1, 0), zvpStatusOk);
  EXPECT_EQ(dst[1], 10);
  ASSERT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src, 1, dst, 1, {1, 3}, 2, 1, 0), zvpStatusOk);
  EXPECT_EQ(dst[1], 11);
}

TEST(DeinterlaceMedian, ChecksInOrder) {
  uint8_t src[16] = {}, dst[16] = {7};
  EXPECT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(nullptr, 1, dst, 1, {0, 1}, 0, 0, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src, 1, nullptr, 1, {0, 1}, 0, 0, 1), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src, 1, dst, 1, {0, 2}, 0, 0, 1), zvpStatusBadSize);
  EXPECT_EQ(zvpiDeinterlaceMedianThreshold_8u_C1R(src, 1, dst, 1, {1, 1}, 0, 0, 1), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
}

namespace {

void expectBlendState(std::int32_t t0, std::int32_t t1, double w0, double w1) {
  std::int32_t thresholds[2] = {t0, t1}, modelThresholds[2] = {t0, t1};
  double weights[2] = {w0, w1}, modelWeights[2] = {w0, w1};
  zvpDeinterlaceBlendState* state = nullptr;
  ASSERT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 3}, thresholds, weights, &state), zvpStatusOk);
  const reference::BlendModel model = reference::blendWeights(modelThresholds, modelWeights);
  EXPECT_TRUE(sameArray(thresholds, modelThresholds, 2));
  EXPECT_EQ(weights[0], modelWeights[0]);
  EXPECT_EQ(weights[1], modelWeights[1]);
  const int fields[4] = {state->slope, state->intercept, state->highMotion, state->lowMotion};
  const int expected[4] = {model.slope, model.intercept, model.highMotion, model.lowMotion};
  EXPECT_TRUE(sameArray(fields, expected, 4)) << t0 << " " << t1 << " " << w0 << " " << w1;
  for (int m = 0; m < 256; ++m) {
    ASSERT_EQ(state->pWeights[m], model.spatialWeight[m]) << m << ": " << t0 << " " << t1 << " " << w0 << " " << w1;
    ASSERT_EQ(state->pWeights[256 + m], model.medianWeight[m]);
  }
  EXPECT_EQ(zvpiDeinterlaceBlendFree_8u_C1(state), zvpStatusOk);
}

}  // namespace

TEST(DeinterlaceBlendState, MatchesTheModel) {
  const int before = Allocations::live();
  Rng rng(14);
  for (int round = 0; round < rounds(4000); ++round) {
    const double scale = rng.pick<double>({1.0, 4.0, 300.0, 40000.0});
    const int threshold1 = rng.range(0, 255), threshold2 = rng.range(1, 255);
    const double weight1 = rng.range(-1000, 1000) / 1000.0 * scale, weight2 = rng.range(-1000, 1000) / 1000.0 * scale;
    expectBlendState(threshold1, threshold2, weight1, weight2);
    if (HasFatalFailure()) return;
  }
  EXPECT_EQ(Allocations::live(), before);
}

TEST(DeinterlaceBlendState, NamedCases) {
  expectBlendState(10, 5, 1.0, 0.0);  // both pairs swapped in place
  expectBlendState(5, 20, 0.0, 1.0);  // the common ramp
  expectBlendState(7, 7, 0.0, 1.0);   // a hard switch
  expectBlendState(0, 0, 0.0, 1.0);
  expectBlendState(0, 255, 3.0, 3.0);    // an intercept that saturates: slope 0
  expectBlendState(5, 9, -3.0, -3.0);    // flat below 0
  expectBlendState(5, 250, -9.0, -8.0);  // below 0 to the end
  expectBlendState(1, 2, -40000.0, 40000.0);
  std::int32_t t[2] = {9, 9};
  double w[2] = {0, 1};
  zvpDeinterlaceBlendState* state = nullptr;
  ASSERT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 3}, t, w, &state), zvpStatusOk);
  EXPECT_EQ(state->pWeights[8], 0);
  EXPECT_EQ(state->pWeights[9], 256);
  EXPECT_EQ(state->highMotion, 8);
  EXPECT_EQ(state->lowMotion, 9);
  zvpiDeinterlaceBlendFree_8u_C1(state);
}

TEST(DeinterlaceBlendState, RefusalsAndFailedAllocations) {
  const int before = Allocations::live();
  std::int32_t t[2] = {10, 5};
  double w[2] = {40000.0, -40000.0};
  auto* const untouched = reinterpret_cast<zvpDeinterlaceBlendState*>(w);
  zvpDeinterlaceBlendState* state = untouched;
  Allocations::reset();
  EXPECT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({2, 2}, t, w, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({2, 3}, t, w, &state), zvpStatusBadSize);
  EXPECT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 2}, t, w, &state), zvpStatusBadSize);
  EXPECT_EQ(Allocations::made(), 0);
  Allocations::failAt(1);
  EXPECT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 3}, t, w, &state), zvpStatusNoMemory);
  EXPECT_EQ(state, untouched);
  // The record of a failed table stays with the caller.
  Allocations::failAt(2);
  EXPECT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 3}, t, w, &state), zvpStatusNoMemory);
  ASSERT_NE(state, untouched);
  ASSERT_NE(state, nullptr);
  EXPECT_EQ(state->pWeights, nullptr);
  const uint8_t plane[9] = {};
  const uint8_t* planes[3] = {plane, plane, plane};
  uint8_t dst[9];
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {3, 3}, 0, 0, 0, state), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceBlendFree_8u_C1(state), zvpStatusOk);
  EXPECT_EQ(Allocations::live(), before);
  EXPECT_EQ(t[0], 10);
  EXPECT_EQ(w[0], 40000.0);
  Allocations::reset();
  ASSERT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({3, 3}, t, w, &state), zvpStatusOk);
  EXPECT_EQ(Allocations::made(), 2);
  EXPECT_EQ(t[0], 5);
  EXPECT_EQ(w[0], -32768.0);
  EXPECT_EQ(w[1], 32767.0);
  EXPECT_EQ(zvpiDeinterlaceBlendFree_8u_C1(state), zvpStatusOk);
  EXPECT_EQ(zvpiDeinterlaceBlendFree_8u_C1(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(Allocations::live(), before);
}

TEST(DeinterlaceBlend, MatchesTheModel) {
  Rng rng(15);
  for (int round = 0; round < rounds(1000); ++round) {
    const int width = rng.range(3, 75), height = rng.range(3, 10);
    const std::ptrdiff_t step = rng.step(width, true);
    const auto frames = makeSequence<3>(rng, width, height, step);
    Plane dst = makeTarget(rng, width, height, rng.step(width, true));
    std::int32_t t[2] = {rng.range(0, 255), rng.range(1, 255)}, modelT[2] = {t[0], t[1]};
    if (rng.chance(2)) t[0] = modelT[0] = rng.range(0, 20), t[1] = modelT[1] = rng.range(1, 40);
    double w[2] = {rng.range(-300, 1300) / 1000.0, rng.range(-300, 1300) / 1000.0}, modelW[2] = {w[0], w[1]};
    zvpDeinterlaceBlendState* state = nullptr;
    ASSERT_EQ(zvpiDeinterlaceBlendInitAlloc_8u_C1({width, height}, t, w, &state), zvpStatusOk);
    const auto model = reference::blendWeights(modelT, modelW);
    const int topFirst = rng.pick<int>({0, 1, 2, -1}), topField = rng.pick<int>({0, 1, 2, -1}), copy = rng.range(0, 1);
    const auto expected = expect(dst, [&](reference::Target to) {
      const reference::Picture p[3] = {frames[0].picture(), frames[1].picture(), frames[2].picture()};
      reference::deinterlaceBlend(p, to, {width, height}, topFirst != 0, topField != 0, copy != 0, model);
    });
    const uint8_t* planes[3] = {frames[0].plane.data(), frames[1].plane.data(), frames[2].plane.data()};
    ASSERT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, int(step), dst.data(), int(dst.step()), {width, height}, topFirst,
                                         topField, copy, state),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " " << topFirst << " " << topField;
    zvpiDeinterlaceBlendFree_8u_C1(state);
  }
}

TEST(DeinterlaceBlend, RecordOfAnyContentCountsAsItStands) {
  // Bounds outside 0..255; weights that do not add up to 256, the result's low eight bits being kept.
  Rng rng(16);
  std::uint16_t table[512];
  for (auto& weight : table) {
    const int largest = rng.chance(4) ? 65535 : 256;
    weight = std::uint16_t(rng.range(0, largest));
  }
  const auto frames = makeSequence<3>(rng, 40, 5, 40);
  for (int low : {-5, 0, 1, 30, 255, 256, 1000})
    for (int high : {-5, -1, 0, 30, 254, 255, 256, std::numeric_limits<int>::max()}) {
      zvpDeinterlaceBlendState state = {table, 0, 0, high, low};
      reference::BlendModel model;
      model.highMotion = high;
      model.lowMotion = low;
      std::copy_n(table, 256, model.spatialWeight);
      std::copy_n(table + 256, 256, model.medianWeight);
      Plane dst = makeTarget(rng, 40, 5, 41);
      const auto expected = expect(dst, [&](reference::Target to) {
        const reference::Picture p[3] = {frames[0].picture(), frames[1].picture(), frames[2].picture()};
        reference::deinterlaceBlend(p, to, {40, 5}, true, false, true, model);
      });
      const uint8_t* planes[3] = {frames[0].plane.data(), frames[1].plane.data(), frames[2].plane.data()};
      ASSERT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 40, dst.data(), 41, {40, 5}, 1, 0, 1, &state), zvpStatusOk);
      ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << low << " " << high;
    }
}

TEST(DeinterlaceBlend, ChecksInOrder) {
  std::uint16_t table[512] = {};
  zvpDeinterlaceBlendState state = {table, 0, 0, 0, 0};
  const uint8_t plane[9] = {};
  const uint8_t* planes[3] = {plane, plane, plane};
  uint8_t dst[9] = {7};
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(nullptr, 3, dst, 3, {2, 2}, 0, 0, 0, &state), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, nullptr, 3, {2, 2}, 0, 0, 0, &state), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {2, 2}, 0, 0, 0, nullptr), zvpStatusNullPointer);
  for (auto& p : planes) {
    p = nullptr;
    EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {2, 2}, 0, 0, 0, &state), zvpStatusNullPointer);
    p = plane;
  }
  state.pWeights = nullptr;
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {2, 2}, 0, 0, 0, &state), zvpStatusNullPointer);
  state.pWeights = table;
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {2, 3}, 0, 0, 0, &state), zvpStatusBadSize);
  EXPECT_EQ(zvpiDeinterlaceBlend_8u_C1(planes, 3, dst, 3, {3, 2}, 0, 0, 0, &state), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
}

TEST(DeinterlaceMotionAdaptive, MatchesTheModel) {
  Rng rng(17);
  for (int round = 0; round < rounds(1500); ++round) {
    const int width = rng.range(1, 75), height = rng.range(1, 10);
    const std::ptrdiff_t step = rng.step(width, true);
    const auto frames = makeSequence<4>(rng, width, height, step);
    Plane dst = makeTarget(rng, width, height, rng.step(width, true));
    const int threshold = rng.pick<int>({0, -3, 1, 4, 12, 60, 255, 256, 5000});
    const int topFirst = rng.range(0, 1), topField = rng.range(0, 1), copy = rng.range(0, 1);
    const int protection = rng.pick<int>({0, 1, 256});
    const auto expected = expect(dst, [&](reference::Target to) {
      const reference::Picture p[4] = {frames[0].picture(), frames[1].picture(), frames[2].picture(),
                                       frames[3].picture()};
      reference::deinterlaceMotionAdaptive(p, to, {width, height}, threshold, topFirst, topField, copy != 0,
                                           protection != 0);
    });
    const uint8_t* planes[4] = {frames[0].plane.data(), frames[1].plane.data(), frames[2].plane.data(),
                                frames[3].plane.data()};
    ASSERT_EQ(zvpiDeinterlaceMotionAdaptive_8u_C1(planes, int(step), dst.data(), int(dst.step()), {width, height},
                                                  threshold, topFirst, topField, copy, protection),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << width << "x" << height << " " << topFirst << topField;
  }
}

TEST(DeinterlaceMotionAdaptive, TheUpperBoundStopsAt235) {
  // The sample is 250, its neighbours 240: above 235, so the guard replaces it although they are only 10 apart.
  const uint8_t rows[3] = {240, 250, 240};
  const uint8_t* planes[4] = {rows, rows, rows, rows};
  uint8_t dst[3] = {};
  ASSERT_EQ(zvpiDeinterlaceMotionAdaptive_8u_C1(planes, 1, dst, 1, {1, 3}, 10, 1, 0, 0, 1), zvpStatusOk);
  EXPECT_EQ(dst[1], 240);
  ASSERT_EQ(zvpiDeinterlaceMotionAdaptive_8u_C1(planes, 1, dst, 1, {1, 3}, 10, 1, 0, 0, 0), zvpStatusOk);
  EXPECT_EQ(dst[1], 250);
}

TEST(DeinterlaceMotionAdaptive, ChecksInOrder) {
  const uint8_t plane[9] = {};
  const uint8_t* planes[4] = {plane, plane, plane, plane};
  uint8_t dst[9] = {7};
  const auto call = [&](const uint8_t* const* src, uint8_t* to, zvpSize size) {
    return zvpiDeinterlaceMotionAdaptive_8u_C1(src, 3, to, 3, size, 1, 0, 0, 1, 0);
  };
  EXPECT_EQ(call(nullptr, dst, {0, 0}), zvpStatusNullPointer);
  EXPECT_EQ(call(planes, nullptr, {0, 0}), zvpStatusNullPointer);
  for (auto& p : planes) {
    p = nullptr;
    EXPECT_EQ(call(planes, dst, {0, 0}), zvpStatusNullPointer);
    p = plane;
  }
  EXPECT_EQ(call(planes, dst, {0, 1}), zvpStatusBadSize);
  EXPECT_EQ(call(planes, dst, {1, 0}), zvpStatusBadSize);
  EXPECT_EQ(dst[0], 7);
}
