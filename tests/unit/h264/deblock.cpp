// The deblocking filter: all members against the model, their reach, their refusals, and the rules that surprise.
#include "reference/h264/deblock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "reference/h264/deblock_exports.h"
#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;
using reference::deblock::Arguments;
using reference::deblock::Edges;
using reference::deblock::Export;
using reference::deblock::exports;
using reference::deblock::Member;
using std::int32_t;
using std::uint16_t;
using std::uint32_t;
using std::uint8_t;

namespace {

const Export& named(const std::string& name) {
  for (const auto& e : exports())
    if (name == e.name) return e;
  ADD_FAILURE() << "no member " << name;
  return exports().front();
}

// Values as the member takes them, in memory of exactly their size.
GuardedBytes asElements(const std::vector<uint32_t>& values, int bytes, Guard guard) {
  GuardedBytes array(values.size() * std::size_t(bytes), guard);
  for (std::size_t i = 0; i < values.size(); ++i)
    std::memcpy(array.data() + i * std::size_t(bytes), &values[i], std::size_t(bytes));
  array.makeReadOnly();
  return array;
}

// The call with arrays against guard pages; those that the contract skips in the middle are filled with noise.
zvpStatus call(const Export& e, const Arguments& a, Guard guard = Guard::Behind) {
  const auto alpha = asElements(a.alpha, e.member.sampleBytes, guard);
  const auto beta = asElements(a.beta, e.member.sampleBytes, guard);
  const auto tc0 = asElements(a.tc0, e.member.sampleBytes, guard);
  const auto bS = asElements({a.strengths.begin(), a.strengths.end()}, 1, guard);
  if (e.positional != nullptr)
    return e.positional(a.srcDst, int32_t(a.step), alpha.data(), beta.data(), tc0.data(), bS.data());
  if (e.mbaff != nullptr) return e.mbaff(a.srcDst, int32_t(a.step), a.alpha[0], a.beta[0], tc0.data(), bS.data());
  const H264DeblockEdges edges = {
      a.srcDst, int32_t(a.step / e.member.sampleBytes), alpha.data(), beta.data(), tc0.data(), bS.data(), a.bitDepth};
  return e.record(&edges);
}

// A macroblock's samples, of which only those exist that a call may touch.
struct Picture {
  int firstEdge = 0, lastEdge = -1;  // of those with a strength
  GuardedBytes bytes;
  std::ptrdiff_t origin = 0;  // of the macroblock, which may lie outside
  std::ptrdiff_t step = 0;

  Picture(const Member& m, const std::vector<uint8_t>& strengths, Rng& rng) {
    const auto active = [&](int e) {
      const auto* s = &strengths[std::size_t(m.strengthsPerEdge() * e)];
      return (s[0] | s[1] | s[2] | s[3]) != 0;
    };
    const int edges = m.edgeCount();
    while (firstEdge < edges && !active(firstEdge)) ++firstEdge;
    for (int e = firstEdge; e < edges; ++e)
      if (active(e)) lastEdge = e;
    const std::ptrdiff_t place = m.sampleBytes * m.components();
    if (lastEdge < 0) {  // nothing may be touched: the macroblock lies in the inaccessible page
      bytes = GuardedBytes(1, Guard::Behind);
      origin = 1;
      step = rng.step(16 * place, true, m.sampleBytes);
      return;
    }
    const int low = 4 * firstEdge - m.depth(), count = 4 * (lastEdge - firstEdge) + 2 * m.depth();
    const bool vertical = m.edges == Edges::Vertical;
    const int rows = vertical ? m.lines() : count;
    const std::ptrdiff_t rowBytes = (vertical ? count : m.lines()) * place;
    step = rng.step(rowBytes, true, m.mbaff() || m.sampleBytes == 1 ? m.sampleBytes : 2);
    const std::ptrdiff_t distance = step < 0 ? -step : step;
    bytes = GuardedBytes(std::size_t((rows - 1) * distance + rowBytes), rng.guard());
    const std::ptrdiff_t topLeft = step < 0 ? (rows - 1) * distance : 0;
    origin = topLeft - low * (vertical ? place : step);
  }
  uint8_t* at() { return bytes.data() + origin; }
};

// Samples with steps at the edges of the size that filters let through, and all other kinds.
void fillSamples(GuardedBytes& bytes, int sampleBytes, int maximum, Rng& rng) {
  Values values(rng, anyStyle(rng), 0, maximum);
  const int spread = rng.range(0, 3) == 0 ? maximum / 2 : std::max(2, maximum >> rng.range(3, 7));
  const int base = rng.range(0, maximum);
  const bool near = rng.chance(2);
  for (std::size_t i = 0; i + std::size_t(sampleBytes) <= bytes.size(); i += std::size_t(sampleBytes)) {
    const int value = near ? std::clamp(base + rng.range(-spread, spread), 0, maximum) : values.next();
    std::memcpy(bytes.data() + i, &value, std::size_t(sampleBytes));
  }
}

uint32_t anyThreshold(Rng& rng, uint32_t most, bool wide) {
  if (wide && rng.chance(4)) return rng.chance(2) ? rng.next() : most + uint32_t(rng.range(0, 1100));
  switch (rng.range(0, 5)) {
    case 0:
      return 0;
    case 1:
      return 1;
    case 2:
      return most;
    case 3:
      return most - uint32_t(rng.range(0, 3));
    default:
      return uint32_t(rng.range(0, int(most)));
  }
}

Arguments anyArguments(const Export& e, Rng& rng) {
  const Member& m = e.member;
  Arguments a{};
  a.bitDepth = m.sampleBytes == 1 ? 8 : rng.range(8, 16);
  const uint32_t most = m.sampleBytes == 1 ? 255 : 65535;
  const bool likely = rng.chance(2);  // as real streams have them
  const uint32_t scale = m.sampleBytes == 1 ? 1u : 1u << (a.bitDepth - 8);
  for (int i = 0; i < m.thresholdCount(); ++i) {
    a.alpha.push_back(likely ? uint32_t(rng.range(4, 255)) * scale : anyThreshold(rng, most, e.mbaff != nullptr));
    a.beta.push_back(likely ? uint32_t(rng.range(2, 18)) * scale : anyThreshold(rng, most, e.mbaff != nullptr));
  }
  for (int i = 0; i < m.tc0Count(); ++i)
    a.tc0.push_back(likely ? uint32_t(rng.range(0, 25)) * scale : anyThreshold(rng, most, false));
  a.strengths.resize(std::size_t(m.strengthCount()));
  for (auto& bS : a.strengths) bS = uint8_t(rng.next());  // between the edges' strengths: not to be read
  const bool anyByte = rng.chance(8);
  for (int edge = 0; edge < m.edgeCount(); ++edge) {
    const int kind = rng.range(0, 5);
    for (int g = 0; g < 4; ++g) {
      static constexpr int ranges[][2] = {{0, 0}, {4, 4}, {1, 3}, {0, 3}, {0, 4}, {0, 255}};
      const auto& range = ranges[kind < 5 ? kind : anyByte ? 5 : 4];
      a.strengths[std::size_t(m.strengthsPerEdge() * edge + g)] = uint8_t(rng.range(range[0], range[1]));
    }
  }
  return a;
}

}  // namespace

TEST(Deblock, MatchesTheModelAndItsReach) {
  Rng rng(590);
  for (int round = 0; round < rounds(1000); ++round)
    for (const auto& e : exports()) {
      Arguments a = anyArguments(e, rng);
      Picture picture(e.member, a.strengths, rng);
      const int maximum = e.member.sampleBytes == 1 ? 255 : rng.chance(4) ? 65535 : (1 << a.bitDepth) - 1;
      fillSamples(picture.bytes, e.member.sampleBytes, maximum, rng);
      a.step = picture.step;
      std::vector<uint8_t> expected = picture.bytes.bytes();
      if (picture.lastEdge < 0) {
        picture.bytes.makeReadOnly();
      } else {
        a.srcDst = expected.data() + picture.origin;
        filter(e.member, a);
      }
      a.srcDst = picture.at();
      ASSERT_EQ(call(e, a, rng.guard()), zvpStatusOk);
      ASSERT_TRUE(sameBytes(picture.bytes.bytes(), expected)) << e.name << ", round " << round;
    }
}

// Every p1 - q1, p0, q0 and tc0: the movement of the nearest samples over its whole domain, where the limit of byte
// arithmetic lies.
TEST(Deblock, NearestSamplesOverTheirWholeDomain) {
  const auto& e = named("zvpiFilterDeblockingChroma_HorEdge_H264_8u_C2IR");
  Rng rng(591);
  std::vector<uint8_t> plane(16 * 4), expected;
  const uint8_t most[2] = {255, 255};
  uint8_t tc0[8] = {};
  Arguments a{nullptr, 16, {255, 255}, {255, 255}, std::vector<uint32_t>(8), {1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}, 8};
  const auto extreme = [&] { return uint8_t(rng.chance(3) ? rng.chance(2) ? 0 : 255 : rng.range(0, 255)); };
  for (int p0 = 0; p0 < 256; ++p0)
    for (int q0 = 0; q0 < 256; ++q0) {
      for (std::size_t i = 0; i < 16; ++i) {
        plane[i] = extreme();
        plane[16 + i] = uint8_t(p0);
        plane[32 + i] = uint8_t(q0);
        plane[48 + i] = extreme();
      }
      for (std::size_t g = 0; g < 4; ++g) a.tc0[g] = tc0[g] = extreme();
      expected = plane;
      a.srcDst = expected.data() + 32;
      filter(e.member, a);
      ASSERT_EQ(e.positional(plane.data() + 32, 16, most, most, tc0, a.strengths.data()), zvpStatusOk);
      ASSERT_TRUE(sameBytes(plane, expected)) << p0 << " " << q0;
    }
}

TEST(Deblock, NullPointersAreRefusedOneByOne) {
  Rng rng(592);
  for (const auto& e : exports()) {
    Arguments a = anyArguments(e, rng);
    std::fill(a.strengths.begin(), a.strengths.end(), uint8_t(4));
    std::fill(a.alpha.begin(), a.alpha.end(), 255u);
    std::fill(a.beta.begin(), a.beta.end(), 255u);
    Picture picture(e.member, a.strengths, rng);
    fillSamples(picture.bytes, e.member.sampleBytes, 255, rng);
    picture.bytes.makeReadOnly();
    const auto step = int32_t(picture.step / e.member.sampleBytes);
    const auto array = asElements(a.tc0, e.member.sampleBytes, Guard::Behind);
    const auto bS = asElements({a.strengths.begin(), a.strengths.end()}, 1, Guard::Behind);
    uint8_t* const src = picture.at();
    const uint8_t *some = array.data(), *strengths = bS.data();
    if (e.positional != nullptr) {
      EXPECT_EQ(e.positional(nullptr, step, some, some, some, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.positional(src, step, nullptr, some, some, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.positional(src, step, some, nullptr, some, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.positional(src, step, some, some, nullptr, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.positional(src, step, some, some, some, nullptr), zvpStatusNullPointer);
    } else if (e.mbaff != nullptr) {
      EXPECT_EQ(e.mbaff(nullptr, step, 255, 255, some, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.mbaff(src, step, 255, 255, nullptr, strengths), zvpStatusNullPointer);
      EXPECT_EQ(e.mbaff(src, step, 255, 255, some, nullptr), zvpStatusNullPointer);
      EXPECT_EQ(e.mbaff(src, step, 0, 0, nullptr, strengths), zvpStatusNullPointer);  // before alpha is looked at
    } else {
      EXPECT_EQ(e.record(nullptr), zvpStatusNullPointer);
      const H264DeblockEdges edges = {src, step, some, some, some, strengths, 8};
      for (int i = 0; i < 5; ++i) {
        H264DeblockEdges bad = edges;
        if (i == 0) bad.pSrcDst = nullptr;
        if (i == 1) bad.pAlpha = nullptr;
        if (i == 2) bad.pBeta = nullptr;
        if (i == 3) bad.pThresholds = nullptr;
        if (i == 4) bad.pBS = nullptr;
        EXPECT_EQ(e.record(&bad), zvpStatusNullPointer) << e.name << ", pointer " << i;
      }
    }
  }
}

TEST(Deblock, MembersThatAreNotProvidedOnlySaySo) {
  EXPECT_EQ(zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_8u_C1IR(nullptr), zvpStatusError);
  EXPECT_EQ(zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_16u_C1IR(nullptr), zvpStatusError);
  const H264DeblockEdges edges{};
  EXPECT_EQ(zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_8u_C1IR(&edges), zvpStatusError);
  EXPECT_EQ(zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_16u_C1IR(&edges), zvpStatusError);
}

TEST(Deblock, NothingIsDoneWithoutStrengthOrThreshold) {
  Rng rng(593);
  for (const auto& e : exports())
    for (int reason = 0; reason < 3; ++reason) {
      Arguments a = anyArguments(e, rng);
      std::fill(a.strengths.begin(), a.strengths.end(), uint8_t(4));
      Picture picture(e.member, a.strengths, rng);
      fillSamples(picture.bytes, e.member.sampleBytes, 3, rng);
      picture.bytes.makeReadOnly();
      std::fill(a.alpha.begin(), a.alpha.end(), reason == 0 ? 0u : 255u);
      std::fill(a.beta.begin(), a.beta.end(), reason == 1 ? 0u : 255u);
      if (reason == 2) std::fill(a.strengths.begin(), a.strengths.end(), uint8_t(0));
      a.srcDst = picture.at();
      a.step = picture.step;
      EXPECT_EQ(call(e, a), zvpStatusOk);
    }
}

namespace {

// Eight columns of a horizontal chroma edge, 100 above and 104 below, filtered with these strengths.
std::vector<uint8_t> chromaRowAbove(const std::vector<uint8_t>& strengths, uint32_t tc0) {
  const auto& e = named("zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR");
  std::vector<uint8_t> plane(8 * 4, 100);
  std::fill(plane.begin() + 16, plane.end(), uint8_t(104));
  Arguments a{plane.data() + 16, 8, {40, 40}, {10, 10}, std::vector<uint32_t>(8, tc0), strengths, 8};
  a.strengths.resize(12, 0);
  EXPECT_EQ(call(e, a), zvpStatusOk);
  addToDigest(plane.data(), plane.size());
  return {plane.begin() + 8, plane.begin() + 16};
}

}  // namespace

TEST(Deblock, FirstGroupDecidesAboutTheWholeHorizontalChromaEdge) {
  // Strong: (2 * 100 + 100 + 104 + 2) >> 2.
  EXPECT_EQ(chromaRowAbove({4, 0, 0, 0}, 0), std::vector<uint8_t>(8, 101));
  // Normal with tc0 + 1 on the last six columns: ((104 - 100) * 4 + (100 - 104) + 4) >> 3 is 2, at most 1 with tc0 0.
  EXPECT_EQ(chromaRowAbove({1, 4, 4, 4}, 0), std::vector<uint8_t>(8, 101));
  EXPECT_EQ(chromaRowAbove({1, 4, 4, 4}, 1), std::vector<uint8_t>(8, 102));
  EXPECT_EQ(chromaRowAbove({0, 4, 4, 4}, 1), (std::vector<uint8_t>{100, 100, 102, 102, 102, 102, 102, 102}));
}

TEST(Deblock, ChromaTc0OfAllOnesLeavesNoRoom) {
  EXPECT_EQ(chromaRowAbove({1, 1, 1, 1}, 255), std::vector<uint8_t>(8, 100));
  EXPECT_EQ(chromaRowAbove({1, 1, 1, 1}, 254), std::vector<uint8_t>(8, 102));
}

TEST(Deblock, SecondHorizontalChromaEdgeIsNeverStrong) {
  const auto& e = named("zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR");
  std::vector<uint8_t> plane(8 * 8, 100);
  std::fill(plane.begin() + 32, plane.end(), uint8_t(104));
  Arguments a{plane.data(), 8, {40, 40}, {10, 10}, std::vector<uint32_t>(8, 1), std::vector<uint8_t>(12, 0), 8};
  std::fill(a.strengths.begin() + 8, a.strengths.end(), uint8_t(4));
  EXPECT_EQ(call(e, a), zvpStatusOk);
  EXPECT_EQ(plane[31], 102);  // the strong filter leaves 101
  EXPECT_EQ(plane[32], 102);
}

TEST(Deblock, DeepSamplesStopAtTheDepthsMaximum) {
  const auto& e = named("zvpiFilterDeblockingChromaHorEdge_H264_16u_C1IR");
  // p1 p0 | q0 q1 that move p0 up by 9: ((1020 - 1020) * 4 + (1023 - 950) + 4) >> 3.
  std::vector<uint16_t> plane(8 * 4);
  for (int i = 0; i < 8; ++i) {
    plane[std::size_t(i)] = 1023;
    plane[std::size_t(8 + i)] = plane[std::size_t(16 + i)] = 1020;
    plane[std::size_t(24 + i)] = 950;
  }
  Arguments a{reinterpret_cast<uint8_t*>(plane.data() + 16),
              16,
              {100, 100},
              {100, 100},
              std::vector<uint32_t>(8, 20),
              std::vector<uint8_t>(12, 0),
              10};
  std::fill(a.strengths.begin(), a.strengths.begin() + 4, uint8_t(2));
  EXPECT_EQ(call(e, a), zvpStatusOk);
  EXPECT_EQ(plane[8], 1023);
  EXPECT_EQ(plane[16], 1011);
}

TEST(Deblock, SecondSamplesMoveWhenTheNearestDoNot) {
  const auto& e = named("zvpiFilterDeblockingLuma_HorEdge_H264_8u_C1IR");
  // delta is 0, yet p1 and q1 move by up to tc0.
  const int column[8] = {100, 103, 100, 100, 100, 100, 103, 100};
  std::vector<uint8_t> plane;
  for (int value : column) plane.insert(plane.end(), 16, uint8_t(value));
  Arguments a{plane.data() + 64, 16, {40, 0}, {10, 0}, std::vector<uint32_t>(16, 1), std::vector<uint8_t>(16, 0), 8};
  std::fill(a.strengths.begin(), a.strengths.begin() + 4, uint8_t(1));
  EXPECT_EQ(call(e, a), zvpStatusOk);
  const int expected[8] = {100, 103, 101, 100, 100, 101, 103, 100};
  for (int y = 0; y < 8; ++y) EXPECT_EQ(plane[std::size_t(16 * y)], expected[y]) << y;
}
