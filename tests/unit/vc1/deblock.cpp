// The VC-1 deblocking filter: all members against the model, the lines that decide, the flags, reach and refusals.
#include "reference/vc1/deblock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;
using reference::vc1::deblock;
using reference::vc1::DeblockMember;
using reference::vc1::deblockMembers;
using std::int32_t;
using std::uint32_t;
using std::uint8_t;

namespace {

struct Flags {
  uint32_t value[2] = {};
};

zvpStatus call(const DeblockMember& m, uint8_t* srcDst, int32_t quant, std::ptrdiff_t step, const Flags& flags) {
  return m.pairs == nullptr ? m.plane(srcDst, quant, int32_t(step), flags.value[0])
                            : m.pairs(srcDst, quant, int32_t(step), flags.value[0], flags.value[1]);
}

// The samples that a call may touch and no others, from the first group that is not disabled to the last one.
class Picture {
 public:
  Picture(const DeblockMember& m, const Flags& flags, Rng& rng) : member_(m) {
    int first = m.lines / 4, last = -1, firstComponent = 1, lastComponent = 0;
    for (int component = 0; component < m.components; ++component)
      for (int group = 0; group < m.lines / 4; ++group)
        if ((flags.value[component] & m.mask(group)) == 0) {
          first = std::min(first, group);
          last = std::max(last, group);
          firstComponent = std::min(firstComponent, component);
          lastComponent = std::max(lastComponent, component);
        }
    if (last < 0) {  // nothing is touched: the edge lies in the inaccessible page
      step_ = rng.step(16 * m.components, true);
      bytes_ = GuardedBytes(1, Guard::Behind);
      origin_ = 1;
      return;
    }
    const int lines = 4 * (last + 1 - first), rows = m.vertical ? lines : 8;
    const std::ptrdiff_t whole = (m.vertical ? 8 : lines) * m.components;
    const std::ptrdiff_t rowBytes = whole - (m.components - 1 - lastComponent) - firstComponent;
    step_ = rng.step(whole, true);
    const std::ptrdiff_t distance = step_ < 0 ? -step_ : step_;
    bytes_ = GuardedBytes(std::size_t((rows - 1) * distance + rowBytes), rng.guard());
    origin_ =
        (step_ < 0 ? (rows - 1) * distance : 0) - firstComponent + 4 * m.across(step_) - 4 * first * m.along(step_);
  }
  std::ptrdiff_t step() const { return step_; }
  std::ptrdiff_t origin() const { return origin_; }
  uint8_t* at() { return bytes_.data() + origin_; }
  GuardedBytes& bytes() { return bytes_; }

  // Steps of about a quantizer's size at the edge, as the filter lets them through, or any samples.
  void fillSamples(Rng& rng) {
    Values values(rng, anyStyle(rng), 0, 255);
    const int spread = 1 << rng.range(0, 6), base = rng.range(0, 255), jump = rng.range(-40, 40);
    const bool near = !rng.chance(3);
    const std::ptrdiff_t across = member_.across(step_);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      const std::ptrdiff_t from = std::ptrdiff_t(i) - origin_;
      const bool behind = member_.vertical ? (from % step_ + step_) % step_ < step_ / 2 : (from >= 0) == (across > 0);
      bytes_.data()[i] =
          uint8_t(near ? std::clamp(base + (behind ? jump : 0) + rng.range(-spread, spread), 0, 255) : values.next());
    }
  }

 private:
  DeblockMember member_;
  GuardedBytes bytes_;
  std::ptrdiff_t step_ = 0, origin_ = 0;
};

int32_t anyQuant(Rng& rng) {
  switch (rng.range(0, 7)) {
    case 0:
      return rng.range(-3, 3);
    case 1:
      return int32_t(rng.next());
    case 2:
      return rng.range(200, 260);
    default:
      return rng.range(1, 31);
  }
}

uint32_t anyFlag(Rng& rng) {
  if (rng.chance(2)) return 0;
  if (rng.chance(6)) return 0xfffffff0;
  return rng.chance(2) ? rng.next() : 1u << rng.range(0, 3);
}

// A member on a picture whose lines lie in rows of eight samples, as a test writes them down.
std::vector<std::array<uint8_t, 8>> filtered(const DeblockMember& m, std::vector<std::array<uint8_t, 8>> lines,
                                             int32_t quant, const Flags& flags) {
  const std::ptrdiff_t step = 40;
  std::vector<uint8_t> plane(40 * 20);
  uint8_t* const at = plane.data() + 4 * 40 + 8;
  const auto sample = [&](std::size_t line, int i) -> uint8_t& {
    const int perComponent = m.lines;
    const auto component = int(line) / perComponent, place = int(line) % perComponent;
    return at[component + place * m.along(step) + (i - 4) * m.across(step)];
  };
  for (std::size_t line = 0; line < lines.size(); ++line)
    for (int i = 0; i < 8; ++i) sample(line, i) = lines[line][std::size_t(i)];
  EXPECT_EQ(call(m, at, quant, step, flags), zvpStatusOk) << m.name;
  for (std::size_t line = 0; line < lines.size(); ++line)
    for (int i = 0; i < 8; ++i) lines[line][std::size_t(i)] = sample(line, i);
  return lines;
}

// All lines of a member alike but the third of each group.
std::vector<std::array<uint8_t, 8>> linesOf(const DeblockMember& m, std::array<uint8_t, 8> line,
                                            std::array<uint8_t, 8> deciding) {
  std::vector<std::array<uint8_t, 8>> lines;
  for (int i = 0; i < m.lines * m.components; ++i) lines.push_back(i % 4 == 2 ? deciding : line);
  return lines;
}

// A step of 8 in a flat picture: a0 = (-16 + 40 + 4) >> 3 = 3, so d = 5 * -3 / 8 = -1 and the step shrinks to 6.
constexpr std::array<uint8_t, 8> step8 = {100, 100, 100, 100, 108, 108, 108, 108};
constexpr std::array<uint8_t, 8> step8Filtered = {100, 100, 100, 101, 107, 108, 108, 108};

}  // namespace

TEST(Vc1Deblock, MatchesTheModelAndItsReach) {
  Rng rng(840);
  int changed = 0, total = 0;
  for (int round = 0; round < rounds(4000); ++round)
    for (const auto& m : deblockMembers()) {
      Flags flags;
      flags.value[0] = anyFlag(rng);
      flags.value[1] = anyFlag(rng);
      Picture picture(m, flags, rng);
      picture.fillSamples(rng);
      const int32_t quant = anyQuant(rng);
      const auto before = picture.bytes().bytes();
      auto expected = before;
      deblock(m, expected.data() + picture.origin(), quant, picture.step(), flags.value);
      changed += expected != before;
      ++total;
      ASSERT_EQ(call(m, picture.at(), quant, picture.step(), flags), zvpStatusOk);
      ASSERT_TRUE(sameBytes(picture.bytes().bytes(), expected))
          << m.name << ", round " << round << ", quantizer " << quant << ", flags " << flags.value[0] << " "
          << flags.value[1];
    }
  EXPECT_GT(changed, total / 5);  // or the data are not such that the filter is tested
}

// Every step across the edge with every slope beside it, so that each limit is met from both sides.
TEST(Vc1Deblock, EveryStepAndSlope) {
  Rng rng(841);
  for (const auto& m : deblockMembers())
    for (int p4 = 0; p4 < 256; p4 += rounds(100) < 100 ? 5 : 1)
      for (int p5 = 0; p5 < 256; ++p5) {
        std::vector<std::array<uint8_t, 8>> lines(std::size_t(m.lines * m.components));
        for (auto& line : lines) {
          const int reach = 1 << rng.range(0, 7);
          for (std::size_t i = 0; i < 8; ++i)
            line[i] = uint8_t(std::clamp((i < 4 ? p4 : p5) + rng.range(-reach, reach), 0, 255));
          line[3] = uint8_t(p4);
          line[4] = uint8_t(p5);
        }
        const int32_t quant = rng.range(1, 230);
        // The model sees the lines as columns of a plane.
        std::vector<uint8_t> plane(lines.size() * 8), after(lines.size() * 8);
        for (std::size_t i = 0; i < lines.size(); ++i)
          for (std::size_t k = 0; k < 8; ++k) plane[k * lines.size() + i] = lines[i][k];
        DeblockMember columns = m;
        columns.vertical = false;
        columns.components = 1;
        columns.lines = int(lines.size());
        deblock(columns, plane.data() + 4 * lines.size(), quant, std::ptrdiff_t(lines.size()), Flags().value);
        lines = filtered(m, lines, quant, {});
        for (std::size_t i = 0; i < lines.size(); ++i)
          for (std::size_t k = 0; k < 8; ++k) after[k * lines.size() + i] = lines[i][k];
        ASSERT_TRUE(sameBytes(after, plane)) << m.name << ", P4 " << p4 << ", P5 " << p5 << ", quantizer " << quant;
      }
}

TEST(Vc1Deblock, NullPointerIsRefused) {
  for (const auto& m : deblockMembers()) {
    EXPECT_EQ(call(m, nullptr, 10, 64, {}), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(call(m, nullptr, 0, 0, Flags{{15, 15}}), zvpStatusNullPointer) << m.name;
  }
}

TEST(Vc1Deblock, TheThirdLineDecides) {
  for (const auto& m : deblockMembers()) {
    EXPECT_EQ(filtered(m, linesOf(m, step8, step8), 9, {}), linesOf(m, step8Filtered, step8Filtered)) << m.name;
    const std::array<uint8_t, 8> equal = {90, 95, 100, 104, 104, 110, 115, 120};
    EXPECT_EQ(filtered(m, linesOf(m, step8, equal), 9, {}), linesOf(m, step8, equal)) << m.name << ": P4 = P5";
    const std::array<uint8_t, 8> byOne = {100, 100, 120, 100, 101, 80, 101, 101};
    EXPECT_EQ(filtered(m, linesOf(m, step8, byOne), 99, {}), linesOf(m, step8, byOne)) << m.name << ": clip is 0";
  }
}

TEST(Vc1Deblock, ADecidingLineWithoutMovementReleasesItsGroup) {
  // P3 - P6 = 20, P4 - P5 = 2: a0 = (40 - 10 + 4) >> 3 = 4, clip 1; d = 5 * -4 / 8 = -2 opposes clip and becomes 0.
  const std::array<uint8_t, 8> still = {120, 120, 120, 102, 100, 100, 100, 100};
  for (const auto& m : deblockMembers())
    EXPECT_EQ(filtered(m, linesOf(m, step8, still), 9, {}), linesOf(m, step8Filtered, still)) << m.name;
}

TEST(Vc1Deblock, LimitsAreStrict) {
  for (const auto& m : deblockMembers()) {
    EXPECT_EQ(filtered(m, linesOf(m, step8, step8), 3, {}), linesOf(m, step8, step8)) << m.name << ": |a0| = quantizer";
    EXPECT_EQ(filtered(m, linesOf(m, step8, step8), 4, {}), linesOf(m, step8Filtered, step8Filtered)) << m.name;
    for (const int32_t quant : {0, -1, INT32_MIN})
      EXPECT_EQ(filtered(m, linesOf(m, step8, step8), quant, {}), linesOf(m, step8, step8)) << m.name << quant;
    for (const int32_t quant : {255, 256, 65536 + 2, INT32_MAX})
      EXPECT_EQ(filtered(m, linesOf(m, step8, step8), quant, {}), linesOf(m, step8Filtered, step8Filtered)) << quant;
    // P1 - P4 = 12 and P5 - P8 = 12: |a1| = |a2| = (24 + 4) >> 3 = 3 = |a0|.
    const std::array<uint8_t, 8> steep = {112, 100, 100, 100, 108, 108, 108, 96};
    EXPECT_EQ(filtered(m, linesOf(m, step8, steep), 9, {}), linesOf(m, step8, steep)) << m.name << ": a3 = |a0|";
    const std::array<uint8_t, 8> lessSteep = {112, 100, 100, 100, 108, 108, 108, 98};  // |a2| = 3, then 2
    const std::array<uint8_t, 8> oneSide = {112, 100, 100, 100, 108, 108, 108, 106};   // |a2| = 1: d = 5 * -2 / 8 = -1
    EXPECT_EQ(filtered(m, linesOf(m, step8, lessSteep), 9, {}), linesOf(m, step8, lessSteep)) << m.name;
    auto moved = oneSide;
    moved[3] = 101;
    moved[4] = 107;
    EXPECT_EQ(filtered(m, linesOf(m, step8, oneSide), 9, {}), linesOf(m, step8Filtered, moved)) << m.name;
  }
}

// Each bit alone, and what it disables.
TEST(Vc1Deblock, FlagsDisableGroups) {
  for (const auto& m : deblockMembers())
    for (int component = 0; component < m.components; ++component)
      for (int bit = 0; bit < 32; ++bit) {
        Flags flags;
        flags.value[component] = 1u << bit;
        auto expected = linesOf(m, step8Filtered, step8Filtered);
        const int group = m.lines == 16 ? bit : bit / 2;
        if (bit < 4)
          for (int line = 0; line < 4; ++line) expected[std::size_t(component * m.lines + 4 * group + line)] = step8;
        EXPECT_EQ(filtered(m, linesOf(m, step8, step8), 9, flags), expected) << m.name << ", bit " << bit;
      }
}
