#include "avs/intra_pred.h"

#include <gtest/gtest.h>

#include "reference/avs/intra_pred.h"
#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;
using reference::AvsPredictor;
using std::uint8_t;

namespace {

struct Named {
  zvp::AvsIntraPredictor call;
  AvsPredictor model;
};
constexpr Named predictors[] = {{AVSIntraPredictionVertical, AvsPredictor::Vertical},
                                {AVSIntraPredictionHorizontal, AvsPredictor::Horizontal},
                                {AVSIntraPredictionDC, AvsPredictor::Dc},
                                {AVSIntraPredictionDownLeft, AvsPredictor::DownLeft},
                                {AVSIntraPredictionDownRight, AvsPredictor::DownRight},
                                {AVSIntraPredictionPlane, AvsPredictor::Plane},
                                {AVSIntraPredictionFill, AvsPredictor::Fill}};

// How far a predictor looks, for the smallest memory that it may be given.
GuardedPlane<uint8_t>::Margin reach(AvsPredictor p, int availability) {
  const bool left = (availability & 1) == 0, top = (availability & 4) == 0;
  const bool right = top && (availability & 32) == 0, below = left && (availability & 64) == 0;
  switch (p) {
    case AvsPredictor::Vertical:
      return {0, 0, top, 0};
    case AvsPredictor::Horizontal:
      return {left, 0, 0, 0};
    case AvsPredictor::Dc:
      return {left, right, top, below};
    case AvsPredictor::DownLeft:
      return {left && top, left && right ? 8 : 0, left && top, top && below ? 8 : 0};
    case AvsPredictor::DownRight:
    case AvsPredictor::Plane:
      return {left && top, 0, left && top, 0};
    default:
      return {};
  }
}

}  // namespace

TEST(AvsIntraPrediction, MatchesTheModels) {
  Rng rng(41);
  for (int round = 0; round < rounds(3000); ++round)
    for (const Named& predictor : predictors) {
      const int availability = rng.next() & 0x77;
      const auto margin = reach(predictor.model, availability);
      GuardedPlane<uint8_t> picture{8, 8, rng.step(8 + margin.left + margin.right, true), rng.guard(), margin};
      fill(picture, rng, anyStyle(rng), 0, 255);
      std::vector<uint8_t> expected = picture.snapshot();
      const bool written = reference::avsPredict(
          predictor.model, expected.data() + (picture.data() - picture.bytes().data()), picture.step(), availability);
      ASSERT_EQ(predictor.call(picture.data(), int(picture.step()), availability), written ? 1 : 0);
      ASSERT_TRUE(sameBytes(picture.snapshot(), expected))
          << "predictor " << int(predictor.model) << " availability " << availability;
    }
}

TEST(AvsIntraPrediction, TablesAreInTheOrderOfTheModes) {
  const zvp::AvsIntraPredictor luma[8] = {
      AVSIntraPredictionVertical,  AVSIntraPredictionHorizontal, AVSIntraPredictionDC,   AVSIntraPredictionDownLeft,
      AVSIntraPredictionDownRight, AVSIntraPredictionFill,       AVSIntraPredictionFill, AVSIntraPredictionFill};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(zvp::intra_luma_pred[i], luma[i]);
  EXPECT_EQ(zvp::intra_chroma_pred[0], AVSIntraPredictionDC);
  EXPECT_EQ(zvp::intra_chroma_pred[1], AVSIntraPredictionHorizontal);
  EXPECT_EQ(zvp::intra_chroma_pred[2], AVSIntraPredictionVertical);
  EXPECT_EQ(zvp::intra_chroma_pred[3], AVSIntraPredictionPlane);
  // Mode 6 fills with 128, whatever the neighbours.
  for (int availability : {0, 5, 0x65}) {
    uint8_t block[64] = {};
    EXPECT_EQ(zvp::intra_luma_pred[6](block, 8, availability), 1);
    for (uint8_t value : block) EXPECT_EQ(value, 128);
  }
}

TEST(AvsIntraPrediction, NamedCases) {
  // With no left column the corner is the first top sample.
  uint8_t picture[9 * 24] = {};
  uint8_t* const dst = picture + 24 + 8;
  for (int x = 0; x < 8; ++x) dst[x - 24] = uint8_t(100 + 20 * x % 70);
  dst[-25] = 1;  // not read
  EXPECT_EQ(AVSIntraPredictionDC(dst, 24, 1 | 32 | 64), 1);
  EXPECT_EQ(dst[0], (3 * dst[-24] + dst[-23] + 2) >> 2);
  EXPECT_EQ(dst[7], (dst[6 - 24] + 3 * dst[7 - 24] + 2) >> 2);
  // Flat neighbours give a flat plane.
  for (int value : {0, 1, 77, 255}) {
    std::memset(picture, value, sizeof picture);
    EXPECT_EQ(AVSIntraPredictionPlane(dst, 24, 0), 1);
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 8; ++x) EXPECT_EQ(dst[y * 24 + x], value);
  }
  // Horizontal does not look at the top.
  for (int y = 0; y < 8; ++y) dst[y * 24 - 1] = uint8_t(y);
  EXPECT_EQ(AVSIntraPredictionHorizontal(dst, 24, 4 | 32 | 64), 1);
  EXPECT_EQ(dst[3 * 24 + 5], 3);
}
