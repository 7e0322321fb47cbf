// The transforms of 4x4 blocks, with and without scaling, against the models.
#include "reference/h264/transform.h"

#include <gtest/gtest.h>

#include <cmath>

#include "h264/transform_tables.h"
#include "support/compare.h"
#include "support/random.h"
#include "unit/h264/blocks.h"
#include "zvpvc.h"

using namespace zvptest;
using namespace zvptest::blocks;
using reference::transform::Block;
using reference::transform::Value;
using std::int16_t;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;
namespace model = reference::transform;

namespace {

template <class T>
void checkPlainTransform(zvpStatus (*transform)(const T*, T*), Block (*expected)(const Block&), Rng& rng) {
  for (int round = 0; round < rounds(1200); ++round) {
    const Block in = anyElements<T>(16, rng);
    Elements<T> src(in, rng), dst(Block(16, 77), rng);
    src.makeReadOnly();
    ASSERT_EQ(transform(src.data(), dst.data()), zvpStatusOk);
    ASSERT_TRUE(dst.same(expected(in))) << "round " << round;
    Elements<T> both(in, rng);
    ASSERT_EQ(transform(both.data(), both.data()), zvpStatusOk);
    ASSERT_TRUE(both.same(expected(in)));
  }
  Elements<T> some(Block(16, 1), rng);
  EXPECT_EQ(transform(nullptr, some.data()), zvpStatusNullPointer);
  EXPECT_EQ(transform(some.data(), nullptr), zvpStatusNullPointer);
  EXPECT_TRUE(some.same(Block(16, 1)));
}

// A DC from elsewhere, which half of the calls have.
template <class T>
struct AnyDc {
  AnyDc(Rng& rng) : value(anyElements<T>(1, rng)[0]), element({value}, rng), given(rng.chance(2)) {
    element.makeReadOnly();
  }
  const T* pointer() const { return given ? element.data() : nullptr; }
  const Value* expected() const { return given ? &value : nullptr; }
  Value value;
  Elements<T> element;
  bool given;
};

template <class T>
void checkInPlaceDc(zvpStatus (*call)(T*, int32_t), Block (*expected)(const Block&, int), std::size_t count, int seed) {
  Rng rng{std::uint64_t(seed)};
  for (int round = 0; round < rounds(2000); ++round) {
    const Block in = anyElements<T>(count, rng);
    const int qp = rng.range(0, 51);
    Elements<T> block(in, rng);
    ASSERT_EQ(call(block.data(), qp), zvpStatusOk);
    ASSERT_TRUE(block.same(expected(in, qp))) << "QP " << qp;
  }
  Elements<T> block(Block(count, 5), rng);
  EXPECT_EQ(call(nullptr, 99), zvpStatusNullPointer);
  for (int qp : {-1, 52, 1 << 30, -(1 << 30)}) EXPECT_EQ(call(block.data(), qp), zvpStatusOutOfRange);
  EXPECT_TRUE(block.same(Block(count, 5)));
}

}  // namespace

TEST(Transform, TablesFollowTheirRules) {
  for (std::size_t i = 0; i < 16; ++i) {
    const int position = model::positionClass(int(i));
    EXPECT_EQ(zvp::QuantIndex[i], position);
    EXPECT_EQ(zvp::MATR_0[i], position == 0 ? 16 : position == 1 ? 25 : 20);
    for (std::size_t row = 0; row < 6; ++row) {
      EXPECT_EQ(zvp::FwdQuantTable_16s_0[row][i], model::forwardFactor[row][position]);
      EXPECT_EQ(zvp::zvpH264FwdQuant_16s[row][i], model::forwardFactor[row][position]);
      EXPECT_EQ(zvp::zvpH264FwdQuant_32s[row][i], model::forwardFactor[row][position]);
      EXPECT_EQ(zvp::InvQuantTable_def_0[row][i], model::normAdjust[row][position]);
      EXPECT_EQ(zvp::InvLevelScale_4x4_default_0[row][i], 16 * model::normAdjust[row][position]);
    }
  }
  const int roundings[16] = {341,   682,    1365,   2730,   5461,    10922,   21845,   43690,
                             87381, 174762, 349525, 699050, 1398101, 2796202, 5592405, 11184810};
  for (std::size_t k = 0; k < 16; ++k) {
    EXPECT_EQ(zvp::zvpH264QuantResid_RoundValDef_32s[k], roundings[k]);
    if (k < 12) {
      EXPECT_EQ(zvp::zvpH264QuantResid_RoundValGiven_32s[k], roundings[k + 4]);
    }
  }
  for (std::size_t qp = 0; qp < 90; ++qp) {
    EXPECT_EQ(zvp::h264_qp6_0[qp] * 6 + zvp::h264_qp_rem_0[qp], int(qp));
    EXPECT_LT(zvp::h264_qp_rem_0[qp], 6);
    EXPECT_EQ(zvp::zvpH264QpDevide[qp][0], zvp::h264_qp6_0[qp]);
    EXPECT_EQ(zvp::zvpH264QpDevide[qp][1], zvp::h264_qp_rem_0[qp]);
  }
}

TEST(Transform, PlainTransforms) {
  Rng rng(5100);
  checkPlainTransform<int16_t>(
      zvpiTransformResidual4x4Fwd_H264_16s_C1, [](const Block& b) { return model::wrap(model::forward(b), 16); }, rng);
  checkPlainTransform<int32_t>(
      zvpiTransformResidual4x4Fwd_H264_32s_C1, [](const Block& b) { return model::wrap(model::forward(b), 32); }, rng);
  checkPlainTransform<int16_t>(
      zvpiTransformResidual4x4Inv_H264_16s_C1, [](const Block& b) { return model::inverse(b, 16); }, rng);
  checkPlainTransform<int32_t>(
      zvpiTransformResidual4x4Inv_H264_32s_C1, [](const Block& b) { return model::inverse(b, 32); }, rng);
}

TEST(Transform, Prediction) {
  Rng rng(5101);
  for (int round = 0; round < rounds(2000); ++round) {
    GuardedPlane<uint8_t> src = anyPlane4x4<uint8_t>(rng);
    fill(src, rng, anyStyle(rng), 0, 255);
    Block samples;
    for (int i = 0; i < 16; ++i) samples.push_back(src.get(i % 4, i / 4));
    src.bytes().makeReadOnly();
    Elements<int16_t> dst(Block(16, 9), rng);
    ASSERT_EQ(zvpiTransformPrediction_H264_8u16s_C1(src.data(), int32_t(src.step()), dst.data()), zvpStatusOk);
    ASSERT_TRUE(dst.same(model::forward(samples)));
  }
  uint8_t bytes[16] = {};
  int16_t out[16];
  EXPECT_EQ(zvpiTransformPrediction_H264_8u16s_C1(nullptr, 4, out), zvpStatusNullPointer);
  EXPECT_EQ(zvpiTransformPrediction_H264_8u16s_C1(bytes, 4, nullptr), zvpStatusNullPointer);
}

TEST(Transform, DequantTransformAtAStep) {
  Rng rng(5102);
  for (int round = 0; round < rounds(1200); ++round) {
    GuardedPlane<int16_t> block = anyPlane4x4<int16_t>(rng, false);
    fill(block, rng, Style::Uniform, 0, 0);
    const Block levels = anyElements<int16_t>(16, rng);
    for (int i = 0; i < 16; ++i) block.set(i % 4, i / 4, int16_t(levels[std::size_t(i)]));
    const AnyDc<int16_t> dc(rng);
    const int qp = rng.range(0, 51), hasAc = rng.chance(3) ? 0 : rng.chance(2) ? 1 : 256;
    const Block expected = model::residualOf(levels, dc.expected(), hasAc != 0, qp);
    GuardedPlane<int16_t> result = std::move(block);
    std::vector<uint8_t> before = result.snapshot();
    ASSERT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(result.data(), int32_t(result.step()), dc.pointer(), hasAc, qp),
              zvpStatusOk);
    for (int i = 0; i < 16; ++i) {
      const auto value = int16_t(expected[std::size_t(i)]);
      std::memcpy(&before[std::size_t(i / 4 * result.step() + i % 4 * 2)], &value, 2);
    }
    ASSERT_TRUE(sameBytes(result.snapshot(), before)) << "QP " << qp;
  }
  int16_t block[16] = {3};
  EXPECT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(nullptr, 0, nullptr, 1, 52), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(block, 0, nullptr, 1, 52), zvpStatusOutOfRange);
  EXPECT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(block, 0, nullptr, 1, -1), zvpStatusOutOfRange);
  EXPECT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(block, 7, nullptr, 1, 51), zvpStatusBadStep);
  EXPECT_EQ(zvpiDequantTransformResidual_H264_16s_C1I(block, -8, nullptr, 1, 0), zvpStatusBadStep);
  EXPECT_EQ(block[0], 3);
}

TEST(Transform, DequantTransformAndAdd) {
  Rng rng(5103);
  for (int round = 0; round < rounds(1500); ++round) {
    AddCase<uint8_t> pictures(255, rng);
    const Block levels = anyElements<int16_t>(16, rng);
    Elements<int16_t> coefficients(levels, rng);
    coefficients.makeReadOnly();
    const AnyDc<int16_t> dc(rng);
    const int qp = rng.range(0, 51), hasAc = rng.chance(3) ? 0 : 1;
    const bool none = dc.given && rng.chance(4);  // without levels the DC alone is used
    Block residual = model::residualOf(levels, dc.expected(), hasAc != 0 && !none, qp);
    for (auto& r : residual) r = std::clamp<Value>(r, -256, 256);
    const auto expected = pictures.expected(residual);
    ASSERT_EQ(zvpiDequantTransformResidualAndAdd_H264_16s_C1I(
                  pictures.prediction(), none ? nullptr : coefficients.data(), dc.pointer(), pictures.destination(),
                  pictures.predictionStep(), pictures.destinationStep(), qp, hasAc),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(pictures.result(), expected)) << "QP " << qp;
  }
  const auto call = zvpiDequantTransformResidualAndAdd_H264_16s_C1I;
  uint8_t samples[16] = {}, out[16] = {7};
  int16_t levels[16] = {100}, dc = 64;
  EXPECT_EQ(call(nullptr, levels, &dc, out, 4, 4, 52, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(samples, levels, &dc, nullptr, 4, 4, 52, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(samples, nullptr, nullptr, out, 4, 4, 52, 1), zvpStatusNullPointer);
  EXPECT_EQ(call(samples, nullptr, nullptr, out, 4, 4, 30, 0), zvpStatusNullPointer);
  EXPECT_EQ(call(samples, nullptr, &dc, out, 4, 4, 52, 1), zvpStatusOutOfRange);
  EXPECT_EQ(call(samples, levels, nullptr, out, 4, 4, -1, 1), zvpStatusOutOfRange);
  EXPECT_EQ(out[0], 7);
}

TEST(Transform, DequantDcBlocks) {
  checkInPlaceDc<int16_t>(zvpiTransformDequantLumaDC_H264_16s_C1I, model::dequantLumaDc, 16, 5104);
  // Up to QP 51, unlike the forward member.
  checkInPlaceDc<int16_t>(zvpiTransformDequantChromaDC_H264_16s_C1I, model::dequantChromaDc, 4, 5105);
}

TEST(Transform, SwitchingBlocks) {
  Rng rng(5106);
  for (int round = 0; round < rounds(1500); ++round) {
    const Block levels = anyElements<int16_t>(16, rng), prediction = anyElements<int16_t>(16, rng);
    Elements<int16_t> block(levels, rng), coefficients(prediction, rng);
    coefficients.makeReadOnly();
    const AnyDc<int16_t> dc(rng);
    const int qp = rng.range(0, 51), qs = rng.range(0, 51), hasAc = rng.chance(4) ? 0 : 1, switching = rng.range(0, 1);
    // QP is not read when QS scales the levels.
    const int passedQp = switching != 0 ? rng.range(-9, 99) : qp;
    ASSERT_EQ(zvpiDequantTransformResidual_SISP_H264_16s_C1I(block.data(), coefficients.data(), dc.pointer(), hasAc,
                                                             passedQp, qs, switching),
              zvpStatusOk);
    ASSERT_TRUE(
        block.same(model::switchingBlock(levels, prediction, dc.expected(), hasAc != 0, qp, qs, switching != 0)))
        << "QP " << qp << " QS " << qs;

    const Block dcLevels(levels.begin(), levels.begin() + 4), dcPrediction(prediction.begin(), prediction.begin() + 4);
    Elements<int16_t> chroma(dcLevels, rng), chromaPrediction(dcPrediction, rng);
    chromaPrediction.makeReadOnly();
    ASSERT_EQ(
        zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(chroma.data(), chromaPrediction.data(), passedQp, qs, switching),
        zvpStatusOk);
    ASSERT_TRUE(chroma.same(model::switchingChromaDc(dcLevels, dcPrediction, qp, qs, switching != 0)))
        << "QP " << qp << " QS " << qs;
  }
  int16_t block[16] = {4};
  EXPECT_EQ(zvpiDequantTransformResidual_SISP_H264_16s_C1I(nullptr, block, nullptr, 1, 0, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiDequantTransformResidual_SISP_H264_16s_C1I(block, nullptr, nullptr, 1, 0, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(nullptr, block, 0, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(block, nullptr, 0, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(block[0], 4);
}

// The inverse of the forward coefficients by 64 over the norms of their basis is the residual again.
TEST(Transform, InverseUndoesForward) {
  Rng rng(5107);
  const double weights[3] = {16, 25, 20};
  for (int round = 0; round < rounds(500); ++round) {
    int16_t residual[16], coefficients[16], back[16];
    fill(residual, 16, rng, anyStyle(rng), -255, 255);
    ASSERT_EQ(zvpiTransformResidual4x4Fwd_H264_16s_C1(residual, coefficients), zvpStatusOk);
    for (int i = 0; i < 16; ++i)
      coefficients[i] = int16_t(std::lround(coefficients[i] * 64 / weights[model::positionClass(i)]));
    ASSERT_EQ(zvpiTransformResidual4x4Inv_H264_16s_C1(coefficients, back), zvpStatusOk);
    ASSERT_TRUE(sameArray(back, residual, 16)) << "round " << round;
  }
}
