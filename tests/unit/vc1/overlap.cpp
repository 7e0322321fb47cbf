// VC-1 overlap smoothing against the model.
#include "reference/vc1/overlap.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/compare.h"
#include "unit/vc1/plane.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::vc1;

namespace {

using Picture = GuardedPlane<std::uint8_t>;
using Bytes = std::vector<std::uint8_t>;

// One edge: its two sources, and the picture with the samples on both sides of the edge.
struct Edge {
  bool vertical;
  int lines;
  Plane sources[2];

  Edge(bool isVertical, int lineCount, Rng& rng) : vertical(isVertical), lines(lineCount) {
    const int limit = rng.pick<int>({4, 300, 32767});
    const Style style = anyStyle(rng);
    for (auto& source : sources) {
      source = vertical ? randomPlane(rng, 2, lines) : randomPlane(rng, lines, 2);
      Values values(rng, style, limit == 4 ? 0 : -limit - 1, limit == 4 ? 255 : limit);
      for (int y = 0; y < source.height(); ++y)
        for (int x = 0; x < source.width(); ++x) source.set(x, y, std::int16_t(values.next()));
    }
  }
  std::int16_t* data(int i) { return sources[i].data(); }
  std::int32_t step(int i) const { return std::int32_t(sources[i].step()); }

  std::int16_t get(int at, int line) const {
    const auto& source = sources[at / 2];
    return vertical ? source.get(at % 2, line) : source.get(line, at % 2);
  }
  // Samples y0 to y3 of the line to the picture, and, for vertical edges, to the sources.
  void set(Picture& picture, int line, const std::int32_t* y, int channel, int channels) {
    for (int at = 0; at < 4; ++at) {
      if (vertical) picture.set(channels * (at - 2) + channel, line, model::clipped(y[at]));
      else picture.set(channels * line + channel, at - 2, model::clipped(y[at]));
      if (vertical) sources[at / 2].set(at % 2, line, std::int16_t(y[at]));
    }
  }
  // Eight lines, the i-th of them being rowOf(i).
  template <class RowOf>
  void smooth(Picture& picture, RowOf rowOf, int channel = 0, int channels = 1) {
    model::LineAcrossEdge group[8];
    for (int i = 0; i < 8; ++i)
      for (int at = 0; at < 4; ++at) group[i].samples[at] = get(at, rowOf(i));
    model::smoothLines(group, 8);
    for (int i = 0; i < 8; ++i) set(picture, rowOf(i), group[i].smoothed, channel, channels);
  }
};

Picture randomPicture(Rng& rng, bool vertical, int lines, int channels) {
  const int width = vertical ? 2 * channels : lines * channels;
  Picture::Margin margin;
  if (vertical) margin.left = 2 * channels;
  else margin.above = 2;
  const std::ptrdiff_t step = rng.step(width + margin.left, true);
  const Guard guard = rng.guard();
  Picture picture(width, vertical ? lines : 2, step, guard, margin);
  fill(picture.bytes().data(), picture.bytes().size(), rng, Style::Uniform, 0, 255);
  return picture;
}

void putBack(GuardedBytes& bytes, const Bytes& content) { std::copy(content.begin(), content.end(), bytes.data()); }

// What a call makes of picture and edges must be what the model makes of them; all start from the same bytes.
template <class Model, class Call>
void expectSame(Picture& picture, std::vector<Edge*> edges, Model smooth, Call call) {
  std::vector<GuardedBytes*> buffers = {&picture.bytes()};
  for (Edge* edge : edges)
    for (auto& source : edge->sources) buffers.push_back(&source.bytes());
  std::vector<Bytes> before, expected;
  for (auto* buffer : buffers) before.push_back(buffer->bytes());
  smooth();
  for (std::size_t i = 0; i < buffers.size(); ++i) {
    expected.push_back(buffers[i]->bytes());
    putBack(*buffers[i], before[i]);
  }
  for (Edge* edge : edges)
    if (!edge->vertical)
      for (auto& source : edge->sources) source.bytes().makeReadOnly();
  ASSERT_EQ(call(), zvpStatusOk);
  for (std::size_t i = 0; i < buffers.size(); ++i)
    ASSERT_TRUE(sameBytes(buffers[i]->bytes(), expected[i])) << "buffer " << i;
}

const auto inOrder = [](int i) { return i; };

std::uint32_t randomFlag(Rng& rng) { return rng.chance(4) ? rng.next() : std::uint32_t(rng.range(0, 15)); }

}  // namespace

TEST(Overlap, LumaVerticalEdge) {
  Rng rng(31);
  for (int round = 0; round < rounds(4000); ++round) {
    const bool field = rng.chance(2);
    const std::uint32_t flag = randomFlag(rng);
    // As many rows as the enabled lines reach, so that a guard page stands behind them.
    int rows = 1;
    for (int line = 0; line < 16; ++line)
      if (model::isLumaLineEnabled(line, flag)) rows = std::max(rows, model::rowOfLumaLine(line, field) + 1);
    Edge edge(true, rows, rng);
    Picture picture = randomPicture(rng, true, rows, 1);
    const std::uint32_t fieldMode = field ? rng.pick<std::uint32_t>({1, 2, 0x80000000u}) : 0;
    expectSame(
        picture, {&edge},
        [&] {
          for (int first = 0; first < 16; first += 8)
            if (model::isLumaLineEnabled(first, flag))
              edge.smooth(picture, [=](int i) { return model::rowOfLumaLine(first + i, field); });
        },
        [&] {
          return zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(edge.data(0), edge.step(0), edge.data(1), edge.step(1),
                                                         picture.data(), std::int32_t(picture.step()), fieldMode, flag);
        });
    if (HasFatalFailure()) FAIL() << "round " << round << " flag " << flag << " field " << field;
  }
}

TEST(Overlap, LumaHorizontalEdge) {
  Rng rng(32);
  for (int round = 0; round < rounds(4000); ++round) {
    const std::uint32_t flag = randomFlag(rng);
    const int columns = (flag & 12) != 0 ? 16 : 8;
    Edge edge(false, columns, rng);
    Picture picture = randomPicture(rng, false, columns, 1);
    expectSame(
        picture, {&edge},
        [&] {
          for (int first = 0; first < 16; first += 8)
            if (model::isLumaLineEnabled(first, flag)) edge.smooth(picture, [=](int i) { return first + i; });
        },
        [&] {
          return zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(edge.data(0), edge.step(0), edge.data(1), edge.step(1),
                                                         picture.data(), std::int32_t(picture.step()), flag);
        });
    if (HasFatalFailure()) FAIL() << "round " << round << " flag " << flag;
  }
}

TEST(Overlap, ChromaEdges) {
  Rng rng(33);
  for (int round = 0; round < rounds(6000); ++round) {
    const bool vertical = rng.chance(2);
    Edge edge(vertical, 8, rng);
    Picture picture = randomPicture(rng, vertical, 8, 1);
    const auto member =
        vertical ? zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R : zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R;
    expectSame(
        picture, {&edge}, [&] { edge.smooth(picture, inOrder); },
        [&] {
          return member(edge.data(0), edge.step(0), edge.data(1), edge.step(1), picture.data(),
                        std::int32_t(picture.step()));
        });
    if (HasFatalFailure()) FAIL() << "round " << round << " vertical " << vertical;
  }
}

TEST(Overlap, InterleavedChromaEdges) {
  Rng rng(34);
  for (int round = 0; round < rounds(6000); ++round) {
    const bool vertical = rng.chance(2);
    Edge u(vertical, 8, rng), v(vertical, 8, rng);
    Picture picture = randomPicture(rng, vertical, 8, 2);
    const auto member =
        vertical ? zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R : zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R;
    expectSame(
        picture, {&u, &v},
        [&] {
          u.smooth(picture, inOrder, 0, 2);
          v.smooth(picture, inOrder, 1, 2);
        },
        [&] {
          return member(u.data(0), u.step(0), u.data(1), u.step(1), v.data(0), v.step(0), v.data(1), v.step(1),
                        picture.data(), std::int32_t(picture.step()));
        });
    if (HasFatalFailure()) FAIL() << "round " << round << " vertical " << vertical;
  }
}

TEST(Overlap, FlatAreasStayFlat) {
  for (int v = 0; v < 256; ++v) {
    std::int16_t plane[64];
    std::uint8_t picture[64] = {};
    std::fill(plane, plane + 64, std::int16_t(v));
    ASSERT_EQ(zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(plane + 2, 16, plane + 4, 16, picture + 4, 8), zvpStatusOk);
    for (int i = 0; i < 64; ++i) {
      ASSERT_EQ(plane[i], v);
      ASSERT_EQ(picture[i], i % 8 >= 2 && i % 8 < 6 ? v : 0);
    }
  }
}

// A step from 100 to 104: 7 * 100 + 104 + 4 is 101 * 8, 100 + 7 * 104 + 4 is 104 * 8, and 3 does not get there.
TEST(Overlap, RoundingTakesTurns) {
  std::int16_t left[16], right[16];
  std::uint8_t picture[32];
  for (int i = 0; i < 16; ++i) {
    left[i] = 100;
    right[i] = 104;
  }
  ASSERT_EQ(zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(left, 4, right, 4, picture + 2, 4), zvpStatusOk);
  const std::uint8_t even[4] = {101, 101, 103, 103}, odd[4] = {100, 101, 103, 104};
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 4; ++x) EXPECT_EQ(picture[4 * y + x], (y % 2 ? odd : even)[x]) << x << " " << y;
}

// 7 * 32767 + 32768 + 2 * 32767 leaves 16 bits: the picture gets 255, the source the low 16 bits.
TEST(Overlap, LargeSamplesWrapInTheSourceAlone) {
  std::int16_t left[16], right[16];
  std::uint8_t picture[32];
  for (int i = 0; i < 16; ++i) {
    left[i] = i % 2 ? 32767 : -32768;
    right[i] = 32767;
  }
  ASSERT_EQ(zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(left, 4, right, 4, picture + 2, 4), zvpStatusOk);
  EXPECT_EQ(picture[1], 255);
  EXPECT_EQ(left[1], std::int16_t((7 * 32767 + 32768 + 2 * 32767 + 3) >> 3));
}

TEST(Overlap, NothingIsEnabled) {
  std::int16_t plane[64] = {};
  std::uint8_t picture[64];
  std::fill(picture, picture + 64, std::uint8_t(9));
  for (const std::uint32_t flag : {0u, 16u, 0xfffffff0u}) {
    EXPECT_EQ(zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(plane, 4, plane, 4, picture, 4, 1, flag), zvpStatusOk);
    EXPECT_EQ(zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(plane, 4, plane, 4, picture, 4, flag), zvpStatusOk);
  }
  for (const auto sample : picture) EXPECT_EQ(sample, 9);
}

TEST(Overlap, NullPointersAreRefused) {
  std::int16_t plane[64];
  std::uint8_t picture[64], same[64];
  std::fill(plane, plane + 64, std::int16_t(77));
  std::fill(picture, picture + 64, std::uint8_t(9));
  std::fill(same, same + 64, std::uint8_t(9));
  for (unsigned missing = 0; missing < 5; ++missing) {
    const auto source = [&](unsigned i) { return i == missing ? nullptr : plane + 16; };
    const auto out = [&](unsigned i) { return i == missing ? nullptr : picture + 16; };
    for (const auto member : {zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R, zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R})
      EXPECT_EQ(member(source(0), 4, source(1), 4, source(2), 4, source(3), 4, out(4), 8), zvpStatusNullPointer);
    if (missing >= 3) continue;
    EXPECT_EQ(zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(source(0), 4, source(1), 4, out(2), 4), zvpStatusNullPointer);
    EXPECT_EQ(zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R(source(0), 4, source(1), 4, out(2), 4), zvpStatusNullPointer);
    for (const std::uint32_t flag : {0u, 15u}) {
      EXPECT_EQ(zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(source(0), 4, source(1), 4, out(2), 4, 0, flag),
                zvpStatusNullPointer);
      EXPECT_EQ(zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(source(0), 4, source(1), 4, out(2), 4, flag),
                zvpStatusNullPointer);
    }
  }
  EXPECT_TRUE(sameArray(picture, same, 64));
  for (const auto sample : plane) EXPECT_EQ(sample, 77);
}
