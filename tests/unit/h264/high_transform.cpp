// The transforms with quantization of the High profiles against the models.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "reference/h264/quantize.h"
#include "reference/h264/transform.h"
#include "support/compare.h"
#include "support/random.h"
#include "unit/h264/blocks.h"
#include "zvpvc.h"

using namespace zvptest;
using namespace zvptest::blocks;
using reference::quantize::Levels;
using reference::transform::Block;
using reference::transform::Value;
using std::int16_t;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;

namespace {

template <class T>
constexpr int bitsOf = 8 * int(sizeof(T));
template <class T>
constexpr int mostQp = sizeof(T) == 2 ? 51 : 87;
template <class T>
constexpr int mostChromaQp = sizeof(T) == 2 ? 39 : 75;

// A list of the caller's, or none. DC members are given its first element and no more.
class AnyList {
 public:
  AnyList(std::size_t count, int most, Rng& rng) : values_(make(count, most, rng)), elements_(values_, rng) {
    elements_.makeReadOnly();
    if (rng.chance(2)) values_.clear();
  }
  const int16_t* pointer() const { return values_.empty() ? nullptr : elements_.data(); }
  const Block& expected() const { return values_; }

 private:
  static Block make(std::size_t count, int most, Rng& rng) {
    if (rng.chance(3)) return anyElements<int16_t>(count, rng);
    Block values(count);
    for (auto& v : values) v = rng.range(1, most);
    return values;
  }
  Block values_;
  Elements<int16_t> elements_;
};

Block anyScan(Rng& rng) {
  Block scan(16);
  std::iota(scan.begin(), scan.end(), 0);
  for (std::size_t i = 15; i > 0; --i) std::swap(scan[i], scan[std::size_t(rng.range(0, int(i)))]);
  return scan;
}

template <class L>
void checkBlocks(zvpStatus (*call)(const int16_t*, L*, int32_t, int32_t*, int32_t, const int16_t*, int32_t*,
                                   const int16_t*)) {
  Rng rng(5300 + sizeof(L));
  for (int round = 0; round < rounds(1200); ++round) {
    const Block residuals = anyElements<int16_t>(16, rng, 16383), scan = anyScan(rng);
    const AnyList list(16, 14000, rng);
    const int qp = rng.range(0, mostQp<L>), intra = rng.range(0, 1);
    Elements<int16_t> src(residuals, rng), order(scan, rng);
    src.makeReadOnly();
    order.makeReadOnly();
    Elements<L> dst(Block(16, 1), rng);
    Elements<int32_t> number({77}, rng), last({77}, rng);
    ASSERT_EQ(call(src.data(), dst.data(), qp, number.data(), intra, order.data(), last.data(), list.pointer()),
              zvpStatusOk);
    const Levels expected = reference::quantize::highBlock(residuals, list.expected(), scan, qp, intra != 0, bitsOf<L>);
    ASSERT_TRUE(dst.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(number.same({expected.number}));
    ASSERT_TRUE(last.same({expected.last}));
  }
  const int16_t src[16] = {}, scan[16] = {};
  L dst[16] = {5};
  int32_t number = 6, last = 7;
  EXPECT_EQ(call(nullptr, dst, 99, &number, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(src, nullptr, 99, &number, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(src, dst, 99, nullptr, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(src, dst, 99, &number, 0, nullptr, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(src, dst, 99, &number, 0, scan, nullptr, nullptr), zvpStatusNullPointer);
  for (int qp : {-1, mostQp<L> + 1})
    EXPECT_EQ(call(src, dst, qp, &number, 0, scan, &last, nullptr), zvpStatusOutOfRange);
  EXPECT_TRUE(dst[0] == 5 && number == 6 && last == 7);
}

template <class T>
void checkLumaDc(zvpStatus (*call)(T*, T*, int32_t, int32_t*, int32_t, const int16_t*, int32_t*, const int16_t*)) {
  Rng rng(5310 + sizeof(T));
  for (int round = 0; round < rounds(1200); ++round) {
    const Block dc = anyElements<T>(16, rng, sizeof(T) == 2 ? 4080 : 16 * 16383), scan = anyScan(rng);
    const AnyList list(1, 14000, rng);
    const int qp = rng.range(0, mostQp<T>), intra = rng.range(0, 1);
    Elements<T> block(dc, rng), transformed(Block(16, 3), rng);
    Elements<int16_t> order(scan, rng);
    order.makeReadOnly();
    Elements<int32_t> number({77}, rng), last({77}, rng);
    ASSERT_EQ(
        call(block.data(), transformed.data(), qp, number.data(), intra, order.data(), last.data(), list.pointer()),
        zvpStatusOk);
    const Levels expected = reference::quantize::highLumaDc(dc, list.expected(), scan, qp, intra != 0, bitsOf<T>);
    ASSERT_TRUE(block.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(transformed.same(expected.transformed));
    ASSERT_TRUE(number.same({expected.number}));
    ASSERT_TRUE(last.same({expected.last}));
  }
  T block[16] = {5}, transformed[16] = {6};
  const int16_t scan[16] = {};
  int32_t number = 7, last = 8;
  EXPECT_EQ(call(nullptr, transformed, 99, &number, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, nullptr, 99, &number, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, nullptr, 0, scan, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, &number, 0, nullptr, &last, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, &number, 0, scan, nullptr, nullptr), zvpStatusNullPointer);
  for (int qp : {-1, mostQp<T> + 1})
    EXPECT_EQ(call(block, transformed, qp, &number, 0, scan, &last, nullptr), zvpStatusOutOfRange);
  EXPECT_TRUE(block[0] == 5 && transformed[0] == 6 && number == 7 && last == 8);
}

template <class T>
void checkChromaDc(zvpStatus (*call)(T*, T*, int32_t, int32_t*, int32_t, int32_t, const int16_t*), std::size_t count) {
  Rng rng(5320 + sizeof(T) + count);
  for (int round = 0; round < rounds(1200); ++round) {
    const int usual = sizeof(T) == 2 ? 4080 : 16 * 16383;
    const Block dc = anyElements<T>(count, rng, usual), given = anyElements<T>(count, rng, usual);
    const AnyList list(1, 14000, rng);
    const int qp = rng.range(0, mostChromaQp<T>), intra = rng.range(0, 1), needTransform = rng.range(0, 1);
    Elements<T> block(dc, rng), transformed(given, rng);
    if (needTransform == 0) transformed.makeReadOnly();
    Elements<int32_t> number({77}, rng);
    ASSERT_EQ(call(block.data(), transformed.data(), qp, number.data(), intra, needTransform, list.pointer()),
              zvpStatusOk);
    const Levels expected =
        reference::quantize::highChromaDc(dc, given, needTransform != 0, list.expected(), qp, intra != 0, bitsOf<T>);
    ASSERT_TRUE(block.same(expected.levels)) << "QP " << qp;
    ASSERT_TRUE(transformed.same(expected.transformed));
    ASSERT_TRUE(number.same({expected.number}));
  }
  T block[8] = {5}, transformed[8] = {6};
  int32_t number = 7;
  EXPECT_EQ(call(nullptr, transformed, 99, &number, 0, 1, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, nullptr, 99, &number, 0, 1, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(call(block, transformed, 99, nullptr, 0, 1, nullptr), zvpStatusNullPointer);
  for (int qp : {-1, mostChromaQp<T> + 1})
    EXPECT_EQ(call(block, transformed, qp, &number, 0, 1, nullptr), zvpStatusOutOfRange);
  EXPECT_TRUE(block[0] == 5 && transformed[0] == 6 && number == 7);
}

template <class T>
void checkInverseDc(zvpStatus (*call)(T*, int32_t, const int16_t*), std::size_t count, int most) {
  Rng rng(5330 + sizeof(T) + count);
  for (int round = 0; round < rounds(1200); ++round) {
    const Block levels = anyElements<T>(count, rng);
    const AnyList list(1, 29 * 255, rng);
    const int qp = rng.range(0, most);
    Elements<T> block(levels, rng);
    ASSERT_EQ(call(block.data(), qp, list.pointer()), zvpStatusOk);
    ASSERT_TRUE(block.same(reference::transform::highInverseDc(levels, count == 16, qp, list.expected(), bitsOf<T>)))
        << "QP " << qp;
  }
  T block[16] = {5};
  EXPECT_EQ(call(nullptr, 99, nullptr), zvpStatusNullPointer);
  for (int qp : {-1, most + 1}) EXPECT_EQ(call(block, qp, nullptr), zvpStatusOutOfRange);
  EXPECT_EQ(block[0], 5);
}

// The two members that add to a prediction differ in one argument.
zvpStatus addPrediction(const uint8_t* pred, int32_t predStep, const int16_t* levels, const int16_t* dc, uint8_t* dst,
                        int32_t dstStep, int32_t qp, int32_t hasAc, int32_t, const int16_t* list) {
  return zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR(pred, predStep, levels, dc, dst, dstStep, qp, hasAc, list);
}
zvpStatus addPrediction(const uint16_t* pred, int32_t predStep, const int32_t* levels, const int32_t* dc, uint16_t* dst,
                        int32_t dstStep, int32_t qp, int32_t hasAc, int32_t depth, const int16_t* list) {
  return zvpiTransformQuantInvAddPred4x4_H264_32s_C1IR(pred, predStep, levels, dc, dst, dstStep, qp, hasAc, depth,
                                                       list);
}

template <class Sample, class T>
void checkAddPrediction() {
  Rng rng(5340 + sizeof(T));
  for (int round = 0; round < rounds(2000); ++round) {
    const int depth = sizeof(T) == 2 ? 8 : rng.range(9, 14), maximum = (1 << depth) - 1;
    AddCase<Sample> pictures(maximum, rng);
    const Block levels = anyElements<T>(16, rng), dcValue = anyElements<T>(1, rng);
    Elements<T> coefficients(levels, rng), dc(dcValue, rng);
    coefficients.makeReadOnly();
    dc.makeReadOnly();
    const AnyList list(16, 29 * 255, rng);
    const int qp = rng.range(0, mostQp<T>), hasAc = rng.chance(3) ? 0 : 1;
    const bool given = rng.chance(2);
    const auto expected = pictures.expected(reference::transform::highResidualOf(
        levels, given ? dcValue.data() : nullptr, hasAc != 0, qp, list.expected(), bitsOf<T>));
    ASSERT_EQ(addPrediction(pictures.prediction(), pictures.predictionStep(), coefficients.data(),
                            given ? dc.data() : nullptr, pictures.destination(), pictures.destinationStep(), qp, hasAc,
                            depth, list.pointer()),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(pictures.result(), expected)) << "QP " << qp;
  }
  Sample pred[16] = {}, dst[16] = {7};
  const T levels[16] = {60};
  EXPECT_EQ(addPrediction(nullptr, 8, levels, levels, dst, 8, 99, 1, 10, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(addPrediction(pred, 8, nullptr, levels, dst, 8, 99, 1, 10, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(addPrediction(pred, 8, levels, levels, nullptr, 8, 99, 1, 10, nullptr), zvpStatusNullPointer);
  for (int qp : {-1, mostQp<T> + 1})
    EXPECT_EQ(addPrediction(pred, 8, levels, nullptr, dst, 8, qp, 1, 10, nullptr), zvpStatusOutOfRange);
  if (sizeof(T) == 4) {
    for (int depth : {8, 15, -1})
      EXPECT_EQ(addPrediction(pred, 8, levels, nullptr, dst, 8, 20, 1, depth, nullptr), zvpStatusOutOfRange);
  }
  EXPECT_EQ(dst[0], 7);
}

}  // namespace

TEST(HighTransform, ForwardBlocks) {
  checkBlocks<int16_t>(zvpiTransformQuantFwd4x4_H264_16s_C1);
  checkBlocks<int32_t>(zvpiTransformQuantFwd4x4_H264_16s32s_C1);
}
TEST(HighTransform, ForwardLumaDc) {
  checkLumaDc<int16_t>(zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I);
  checkLumaDc<int32_t>(zvpiTransformQuantFwdLumaDC4x4_H264_32s_C1I);
}
TEST(HighTransform, ForwardChromaDc) {
  checkChromaDc<int16_t>(zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I, 4);
  checkChromaDc<int32_t>(zvpiTransformQuantFwdChromaDC2x2_H264_32s_C1I, 4);
  checkChromaDc<int16_t>(zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I, 8);
  checkChromaDc<int32_t>(zvpiTransformQuantFwdChromaDC2x4_H264_32s_C1I, 8);
}
TEST(HighTransform, InverseDc) {
  checkInverseDc<int16_t>(zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I, 16, 51);
  checkInverseDc<int32_t>(zvpiTransformQuantInvLumaDC4x4_H264_32s_C1I, 16, 87);
  checkInverseDc<int16_t>(zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I, 4, 39);
  checkInverseDc<int32_t>(zvpiTransformQuantInvChromaDC2x2_H264_32s_C1I, 4, 75);
  checkInverseDc<int16_t>(zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I, 8, 39);
  checkInverseDc<int32_t>(zvpiTransformQuantInvChromaDC2x4_H264_32s_C1I, 8, 75);
}
TEST(HighTransform, InverseAddsToThePrediction) {
  checkAddPrediction<uint8_t, int16_t>();
  checkAddPrediction<uint16_t, int32_t>();
}

TEST(HighTransform, ScalingLists) {
  Rng rng(5350);
  for (int qpRem = 0; qpRem < 6; ++qpRem)
    for (int first = 0; first < 256; ++first) {  // every entry at every position
      std::vector<uint8_t> list(16);
      for (int i = 0; i < 16; ++i) list[std::size_t(i)] = uint8_t(first + i);
      Elements<uint8_t> entries(Numbers(list.begin(), list.end()), rng);
      entries.makeReadOnly();
      Elements<int16_t> inverse(Block(16, 1), rng), forward(Block(16, 1), rng);
      ASSERT_EQ(zvpiGenScaleLevel4x4_H264_8u16s_C1(entries.data(), inverse.data(), forward.data(), qpRem), zvpStatusOk);
      const auto expected = reference::transform::scalingLists(list, qpRem);
      ASSERT_TRUE(inverse.same(expected.inverse));
      ASSERT_TRUE(forward.same(expected.forward));
    }
  const uint8_t list[16] = {};
  int16_t inverse[16] = {1}, forward[16] = {2};
  const auto call = zvpiGenScaleLevel4x4_H264_8u16s_C1;
  EXPECT_EQ(call(nullptr, inverse, forward, 6), zvpStatusNullPointer);
  EXPECT_EQ(call(list, nullptr, forward, 6), zvpStatusNullPointer);
  EXPECT_EQ(call(list, inverse, nullptr, 6), zvpStatusNullPointer);
  EXPECT_EQ(call(list, inverse, forward, 6), zvpStatusOutOfRange);
  EXPECT_EQ(call(list, inverse, forward, -1), zvpStatusOutOfRange);
  EXPECT_TRUE(inverse[0] == 1 && forward[0] == 2);
}

// What an encoder makes of DC blocks a decoder takes back: within half a step of the DC at every QP and shape.
TEST(HighTransform, DcBlocksComeBack) {
  Rng rng(5351);
  for (int round = 0; round < rounds(40); ++round)
    for (int qp = 0; qp <= 39; ++qp) {
      int32_t number, last;
      int16_t transformed[16], scan[16] = {};
      // A DC is 16 times the mean of its block's residual; the inverse members give 64 times the mean.
      const double step = 0.625 * std::pow(2.0, qp / 6.0);  // of the quantizer, in samples
      const auto compare = [&](const int16_t* dc, const int16_t* back, int count) {
        for (int i = 0; i < count; ++i) EXPECT_NEAR(back[i] / 64.0, dc[i] / 16.0, step * 1.2 + 0.6) << "QP " << qp;
      };
      int16_t dc[16], back[16];
      fill(dc, 16, rng, anyStyle(rng), -2000, 2000);
      std::memcpy(back, dc, sizeof dc);
      ASSERT_EQ(zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I(back, transformed, qp, &number, 1, scan, &last, nullptr),
                0);
      ASSERT_EQ(zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I(back, qp, nullptr), 0);
      compare(dc, back, 16);
      std::memcpy(back, dc, sizeof dc);
      ASSERT_EQ(zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I(back, transformed, qp, &number, 1, 1, nullptr), 0);
      ASSERT_EQ(zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I(back, qp, nullptr), 0);
      compare(dc, back, 4);
      std::memcpy(back, dc, sizeof dc);
      ASSERT_EQ(zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I(back, transformed, qp, &number, 1, 1, nullptr), 0);
      ASSERT_EQ(zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I(back, qp, nullptr), 0);
      compare(dc, back, 8);
    }
}
