// Intra prediction: every mode with every set of neighbours, in memory that holds those neighbours and nothing else.
#include "reference/h264/intra.h"

#include <gtest/gtest.h>

#include "h264/intra_kernels.h"
#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

constexpr int top = 1, left = 2, corner = 32, topRight = 64;

struct Member {
  const char* name;
  int size, modes, neighbours;
  zvpStatus (*call)(std::uint8_t*, std::int32_t, std::uint32_t, std::int32_t);
  std::int32_t (*model)(std::uint8_t*, std::ptrdiff_t, int, int);
};

// The 8x8 luma predictor has no export of its own; it is called as the reconstruction calls it.
zvpStatus predict8x8(std::uint8_t* p, std::int32_t step, std::uint32_t mode, std::int32_t flags) {
  return zvp::predictIntra8x8[mode](p, step, mode, std::uint32_t(flags));
}

constexpr Member members[] = {
    {"zvpiPredictIntra_4x4_H264_8u_C1IR", 4, 9, top | left | corner | topRight, zvpiPredictIntra_4x4_H264_8u_C1IR,
     reference::h264::predict4x4},
    {"zvpiPredictIntra_16x16_H264_8u_C1IR", 16, 4, top | left | corner, zvpiPredictIntra_16x16_H264_8u_C1IR,
     reference::h264::predict16x16},
    {"zvpiPredictIntraChroma8x8_H264_8u_C1IR", 8, 4, top | left | corner, zvpiPredictIntraChroma8x8_H264_8u_C1IR,
     reference::h264::predictChroma},
    {"8x8 luma", 8, 9, top | left | corner | topRight, predict8x8, reference::h264::predict8x8},
};

class Intra : public ::testing::TestWithParam<Member> {};

// What a mode may read of what is there: memory is laid out so that nothing else is mapped.
int usedBy(const Member& m, int mode, int flags) {
  const bool nine = m.modes == 9;
  int uses;
  if (nine) {
    static const int of[9] = {top,
                              left,
                              top | left,
                              top | topRight,
                              top | left | corner,
                              top | left | corner,
                              top | left | corner,
                              top | topRight,
                              left};
    uses = of[mode];
    if (m.size == 8) uses |= mode == 1 || mode == 8 ? corner : corner | topRight;  // for filtering
  } else {
    const bool chroma = m.size == 8;
    const int of[4] = {chroma ? top | left : top, left, chroma ? top : top | left, top | left | corner};
    uses = of[mode];
  }
  return uses & flags;
}

}  // namespace

TEST_P(Intra, EveryModeWithEveryNeighbourhood) {
  const Member& m = GetParam();
  Rng rng(std::uint64_t(m.size * 10 + m.modes));
  const int bits[4] = {top, left, corner, topRight};
  for (int mode = 0; mode < m.modes; ++mode)
    for (int set = 0; set < 16; ++set)
      for (int round = 0; round < rounds(40); ++round) {
        int flags = 0;
        for (int i = 0; i < 4; ++i)
          if (set >> i & 1) flags |= bits[i];
        const int used = usedBy(m, mode, flags);
        // One guarded buffer holds whole rows, so only a first row and a last column can stand at its ends; the column
        // on the left and the row above are there only if they may be used.
        const int right = used & topRight ? m.size : 0;
        const bool hasTop = used & (top | corner | topRight), hasLeft = used & (left | corner);
        GuardedPlane<std::uint8_t> plane{m.size, m.size, rng.step(m.size + hasLeft + right, false), rng.guard(),
                                         {hasLeft, right, hasTop, 0}};
        fill(plane, rng, anyStyle(rng), 0, 255);
        std::vector<std::uint8_t> expected = plane.snapshot();
        const std::ptrdiff_t origin = plane.data() - plane.bytes().data();
        const int noise = int(rng.next()) & ~m.neighbours;  // bits without a meaning
        const auto status = m.model(expected.data() + origin, plane.step(), mode, flags);
        ASSERT_EQ(m.call(plane.data(), std::int32_t(plane.step()), std::uint32_t(mode), flags | noise), status)
            << "mode " << mode << " flags " << flags;
        ASSERT_TRUE(sameBytes(plane.snapshot(), expected)) << "mode " << mode << " flags " << flags;
      }
}

TEST_P(Intra, FlatAndExtremeSurroundings) {
  const Member& m = GetParam();
  const int all = m.neighbours;
  for (int mode = 0; mode < m.modes; ++mode)
    for (int corners = 0; corners < 16; ++corners) {
      // Each side all 0 or all 255: planes at their steepest, which the sums must hold.
      GuardedPlane<std::uint8_t> plane(m.size, m.size, 2 * m.size + 5, Guard::Behind, {1, m.size, 1, 0});
      for (int y = -1; y < m.size; ++y)
        for (int x = -1; x < 2 * m.size; ++x) {
          const bool second = y < 0 ? x >= m.size / 2 : y >= m.size / 2;
          const int choice = (y < 0 ? 0 : 2) + second;
          plane.set(x, y, corners >> choice & 1 ? 255 : 0);
        }
      std::vector<std::uint8_t> expected = plane.snapshot();
      m.model(expected.data() + (plane.data() - plane.bytes().data()), plane.step(), mode, all);
      EXPECT_EQ(m.call(plane.data(), std::int32_t(plane.step()), std::uint32_t(mode), all), zvpStatusOk);
      EXPECT_TRUE(sameBytes(plane.snapshot(), expected)) << "mode " << mode;
    }
}

// The least step that is taken: the sample left of a row is then the last one of the row above it, and counts as it was
// before the call.
TEST_P(Intra, AStepOfOneRow) {
  const Member& m = GetParam();
  Rng rng(std::uint64_t(m.size * 20 + m.modes));
  for (int mode = 0; mode < m.modes; ++mode)
    for (int round = 0; round < rounds(40); ++round) {
      const int flags = rng.chance(3) ? int(rng.next()) & m.neighbours : m.neighbours;
      std::vector<std::uint8_t> picture(std::size_t(m.size * (m.size + 3)));
      fill(picture.data(), picture.size(), rng, anyStyle(rng), 0, 255);
      std::vector<std::uint8_t> expected = picture;
      const int origin = 2 * m.size;
      const auto status = m.model(expected.data() + origin, m.size, mode, flags);
      ASSERT_EQ(m.call(picture.data() + origin, m.size, std::uint32_t(mode), flags), status);
      ASSERT_TRUE(sameBytes(picture, expected)) << "mode " << mode << " flags " << flags;
    }
}

INSTANTIATE_TEST_SUITE_P(Members, Intra, ::testing::ValuesIn(members), [](const auto& test) {
  std::string name;
  for (const char c : std::string(test.param.name)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
});

// ---- refusals -------------------------------------------------------------------------------------------------------

TEST(IntraRefusals, InOrder) {
  for (const Member& m : members) {
    if (m.call == predict8x8) continue;
    GuardedPlane<std::uint8_t> plane(m.size, m.size, 64, Guard::Behind, {1, 0, 1, 0});
    Rng rng(4);
    fill(plane, rng, Style::Uniform, 0, 255);
    const auto before = plane.snapshot();
    const std::uint32_t badMode = std::uint32_t(m.modes);
    EXPECT_EQ(m.call(nullptr, 0, badMode, 0), zvpStatusNullPointer);
    for (const int step : {m.size - 1, 0, -1, -64, std::numeric_limits<int>::min()}) {
      EXPECT_EQ(m.call(nullptr, step, 0, 0), zvpStatusNullPointer);
      EXPECT_EQ(m.call(plane.data(), step, badMode, 0), zvpStatusBadStep);
      EXPECT_EQ(m.call(plane.data(), step, 0, -1), zvpStatusBadStep);
    }
    for (const std::uint32_t mode : {badMode, badMode + 1, 0x80000000u, ~0u})
      for (const int flags : {0, -1}) EXPECT_EQ(m.call(plane.data(), 64, mode, flags), zvpStatusOutOfRange);
    for (int mode = 0; m.size > 4 && mode < 4; ++mode) {
      const int dc = m.size == 16 ? 2 : 0;
      if (mode == dc) continue;
      EXPECT_EQ(m.call(plane.data(), 64, std::uint32_t(mode), 0), zvpStatusPredictionUnavailable);
    }
    EXPECT_TRUE(sameBytes(plane.snapshot(), before)) << m.name;
  }
}

// ---- edge cases by name -----------------------------------------------------------------------------------------

TEST(IntraEdgeCases, PlaneNeedsTheCorner) {
  std::uint8_t picture[40 * 40] = {};
  std::uint8_t* const block = picture + 41;
  EXPECT_EQ(zvpiPredictIntra_16x16_H264_8u_C1IR(block, 40, 3, top | left), zvpStatusPredictionUnavailable);
  EXPECT_EQ(zvpiPredictIntra_16x16_H264_8u_C1IR(block, 40, 3, top | left | corner), zvpStatusOk);
  EXPECT_EQ(zvpiPredictIntraChroma8x8_H264_8u_C1IR(block, 40, 3, top | left), zvpStatusPredictionUnavailable);
}

TEST(IntraEdgeCases, DownRightWithoutACornerTakes128) {
  std::uint8_t picture[8 * 8] = {};
  std::uint8_t* const block = picture + 9;
  EXPECT_EQ(zvpiPredictIntra_4x4_H264_8u_C1IR(block, 8, 4, top | left), zvpStatusWarnPredictionFallback);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(block[9 * i], 64);
  EXPECT_EQ(block[1], 32);
  EXPECT_EQ(block[3], 0);
  EXPECT_EQ(picture[0], 0);
}

TEST(IntraEdgeCases, VerticalWithoutARowAboveGives128) {
  std::uint8_t block[16] = {};
  EXPECT_EQ(zvpiPredictIntra_4x4_H264_8u_C1IR(block, 4, 0, 0), zvpStatusWarnPredictionFallback);
  for (const std::uint8_t s : block) EXPECT_EQ(s, 128);
}

TEST(IntraEdgeCases, DcWithoutNeighboursGives128) {
  for (const Member& m : members) {
    if (m.modes == 9 && m.size == 8) continue;
    std::vector<std::uint8_t> block(std::size_t(m.size * m.size));
    EXPECT_EQ(m.call(block.data(), m.size, m.size == 8 ? 0 : 2, 0), zvpStatusOk) << m.name;
    for (const std::uint8_t s : block) ASSERT_EQ(s, 128) << m.name;
  }
}
