// Motion compensation with a residual, against the model in reference/mc/mc.h.
#include "reference/mc/mc.h"

#include <gtest/gtest.h>

#include "mc/mc_tables.h"
#include "reference/mc/members.h"
#include "unit/mc/motion.h"
#include "zvpvc.h"

using namespace zvptest;
using reference::mc::mcMembers;
using reference::mc::mcPlanesMembers;
using zvp::s16;
using zvp::s32;
using zvp::u8;

namespace {

// Residual values of the size that pictures have, or of the full range.
GuardedPlane<s16> anyResidual(Rng& rng, int width, int height) {
  const int limit = rng.chance(2) ? 300 : 32768;
  return inputPlane<s16>(rng, width, height, 0, 0, -limit, std::min(limit, 32767));
}

// Two residual planes of one step.
struct ResidualPlanes {
  GuardedPlane<s16> u, v;
  ResidualPlanes(Rng& rng, int width, int height) {
    const auto step = rng.step(2 * width, true);
    for (auto* plane : {&u, &v}) {
      *plane = GuardedPlane<s16>(width, height, step, rng.guard());
      const int limit = rng.chance(2) ? 300 : 32768;
      fill(*plane, rng, anyStyle(rng), -limit, std::min(limit, 32767));
      plane->bytes().makeReadOnly();
    }
  }
  s32 step() const { return stepOf(u); }
  reference::mc::Residual model() const { return {u.data(), u.step(), v.data()}; }
};

// The first sample of a 16x16 call over samples a, b, c, d that repeat, with one residual value everywhere.
int firstOfOne(int a, int b, int c, int d, int residual, s32 mcType, s32 roundControl) {
  u8 ref[17 * 17], dst[256];
  for (int y = 0; y < 17; ++y)
    for (int x = 0; x < 17; ++x) ref[17 * y + x] = u8(y % 2 ? (x % 2 ? d : c) : (x % 2 ? b : a));
  s16 values[256];
  std::fill_n(values, 256, s16(residual));
  EXPECT_EQ(zvpiMC16x16_8u_C1(ref, 17, values, 32, dst, 16, mcType, roundControl), zvpStatusOk);
  return dst[0];
}
int firstOfTwo(int forward, int backward, int residual) {
  u8 refs[2][64], dst[64];
  std::fill_n(refs[0], 64, u8(forward));
  std::fill_n(refs[1], 64, u8(backward));
  s16 values[64];
  std::fill_n(values, 64, s16(residual));
  EXPECT_EQ(zvpiMC8x8B_8u_C1(refs[0], 8, 0, refs[1], 8, 0, values, 16, dst, 8, 0), zvpStatusOk);
  return dst[0];
}

}  // namespace

TEST(Mc, OneReference) {
  Rng rng(321);
  for (int round = 0; round < rounds(400); ++round)
    for (const auto& member : mcMembers) {
      const auto [width, height, channels] = member.shape;
      const ReferencePlane ref(rng, width, height, channels);
      const auto residual = anyResidual(rng, width, height);
      OutputPlane<u8> dst(rng, width, height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.one(ref.data(), ref.step(), residual.data(), stepOf(residual), dst.actual.data(), dst.step(),
                           ref.mcType, roundControl),
                zvpStatusOk);
      compensate(member.shape, ref.model(), {residual.data(), residual.step()}, {dst.expected.data(), dst.step()},
                 roundControl);
      ASSERT_TRUE(dst.same()) << member.name << " mcType " << ref.mcType << " roundControl " << roundControl
                              << " round " << round;
    }
}

TEST(Mc, TwoReferences) {
  Rng rng(322);
  for (int round = 0; round < rounds(400); ++round)
    for (const auto& member : mcMembers) {
      const auto [width, height, channels] = member.shape;
      const ReferencePlane forward(rng, width, height, channels), backward(rng, width, height, channels);
      const auto residual = anyResidual(rng, width, height);
      OutputPlane<u8> dst(rng, width, height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(
          member.two(forward.data(), forward.step(), forward.mcType, backward.data(), backward.step(), backward.mcType,
                     residual.data(), stepOf(residual), dst.actual.data(), dst.step(), roundControl),
          zvpStatusOk);
      compensate(member.shape, forward.model(), backward.model(), {residual.data(), residual.step()},
                 {dst.expected.data(), dst.step()}, roundControl);
      ASSERT_TRUE(dst.same()) << member.nameB << " mcTypes " << forward.mcType << ", " << backward.mcType
                              << " roundControl " << roundControl << " round " << round;
    }
}

TEST(Mc, OneReferenceWithResidualPlanes) {
  Rng rng(323);
  for (int round = 0; round < rounds(800); ++round)
    for (const auto& member : mcPlanesMembers) {
      const ReferencePlane ref(rng, 16, member.height, 2);
      const ResidualPlanes residual(rng, 8, member.height);
      OutputPlane<u8> dst(rng, 16, member.height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.one(ref.data(), ref.step(), residual.u.data(), residual.v.data(), residual.step(),
                           dst.actual.data(), dst.step(), ref.mcType, roundControl),
                zvpStatusOk);
      compensate({16, member.height, 2}, ref.model(), residual.model(), {dst.expected.data(), dst.step()},
                 roundControl);
      ASSERT_TRUE(dst.same()) << member.name << " mcType " << ref.mcType << " roundControl " << roundControl
                              << " round " << round;
    }
}

TEST(Mc, TwoReferencesWithResidualPlanes) {
  Rng rng(324);
  for (int round = 0; round < rounds(800); ++round)
    for (const auto& member : mcPlanesMembers) {
      const ReferencePlane forward(rng, 16, member.height, 2), backward(rng, 16, member.height, 2);
      const ResidualPlanes residual(rng, 8, member.height);
      OutputPlane<u8> dst(rng, 16, member.height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.two(forward.data(), forward.step(), forward.mcType, backward.data(), backward.step(),
                           backward.mcType, residual.u.data(), residual.v.data(), residual.step(), dst.actual.data(),
                           dst.step(), roundControl),
                zvpStatusOk);
      compensate({16, member.height, 2}, forward.model(), backward.model(), residual.model(),
                 {dst.expected.data(), dst.step()}, roundControl);
      ASSERT_TRUE(dst.same()) << member.nameB << " mcTypes " << forward.mcType << ", " << backward.mcType
                              << " roundControl " << roundControl << " round " << round;
    }
}

TEST(Mc, NullPointersAreRefused) {
  // mcType and roundControl are whatever they are: pointers come first, and nothing else is tested.
  Rng rng(325);
  const auto ref = inputBytes(rng, 18, 17);
  const auto residual = inputPlane<s16>(rng, 16, 16, 0, 0, -300, 300);
  OutputPlane<u8> dst(rng, 16, 16);
  dst.actual.bytes().makeReadOnly();
  const u8* r = ref.data();
  const s16* v = residual.data();
  u8* out = dst.actual.data();
  const s32 step = stepOf(ref), dataStep = stepOf(residual), outStep = dst.step();
  for (const auto& m : mcMembers) {
    EXPECT_EQ(m.one(nullptr, step, v, dataStep, out, outStep, 12, 1), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(r, step, nullptr, dataStep, out, outStep, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(r, step, v, dataStep, nullptr, outStep, 4, 7), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.two(nullptr, step, 0, r, step, 0, v, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 4, nullptr, step, 8, v, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 4, r, step, 8, nullptr, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 12, r, step, 12, v, dataStep, nullptr, outStep, 9), zvpStatusNullPointer) << m.nameB;
  }
  for (const auto& m : mcPlanesMembers) {
    EXPECT_EQ(m.one(nullptr, step, v, v, dataStep, out, outStep, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(r, step, nullptr, v, dataStep, out, outStep, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(r, step, v, nullptr, dataStep, out, outStep, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(r, step, v, v, dataStep, nullptr, outStep, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.two(nullptr, step, 0, r, step, 0, v, v, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 0, nullptr, step, 0, v, v, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 0, r, step, 0, nullptr, v, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 0, r, step, 0, v, nullptr, dataStep, out, outStep, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(r, step, 0, r, step, 0, v, v, dataStep, nullptr, outStep, 0), zvpStatusNullPointer) << m.nameB;
  }
  EXPECT_TRUE(dst.same());
}

TEST(Mc, RoundControlOfFour) {
  EXPECT_EQ(firstOfOne(1, 1, 1, 0, 0, 12, 1), 1);
  EXPECT_EQ(firstOfOne(1, 1, 1, 0, 0, 12, 0), 1);
  EXPECT_EQ(firstOfOne(1, 1, 0, 0, 0, 12, 1), 0);
  EXPECT_EQ(firstOfOne(1, 1, 0, 0, 0, 12, 0), 1);
}

TEST(Mc, WholePelIgnoresRoundControl) {
  for (s32 roundControl : {0, 1, 2, -5, 1000000}) EXPECT_EQ(firstOfOne(77, 1, 2, 3, 5, 0, roundControl), 82);
}

TEST(Mc, WholeValueOfRoundControlCounts) {
  // (10 + 20 + 1 - 7) / 2, (10 + 20 + 30 + 40 + 2 - 402) / 4 and, truncated toward zero, (0 + 0 + 1 - 4) / 2.
  EXPECT_EQ(firstOfOne(10, 20, 30, 40, 0, 8, 7), 12);
  EXPECT_EQ(firstOfOne(10, 20, 30, 40, 80, 12, 402), 5);
  EXPECT_EQ(firstOfOne(0, 0, 0, 0, 10, 8, 4), 9);
}

TEST(Mc, SumsAreClipped) {
  EXPECT_EQ(firstOfOne(200, 200, 200, 200, 100, 0, 0), 255);
  EXPECT_EQ(firstOfOne(10, 10, 10, 10, -30, 0, 0), 0);
  EXPECT_EQ(firstOfOne(255, 255, 255, 255, 32767, 12, 0), 255);
  EXPECT_EQ(firstOfOne(0, 0, 0, 0, -32768, 12, 1), 0);
}

TEST(Mc, AverageOfTwoRoundsUp) {
  EXPECT_EQ(firstOfTwo(0, 1, 0), 1);
  EXPECT_EQ(firstOfTwo(0, 0, -1), 0);
  EXPECT_EQ(firstOfTwo(3, 4, 2), 6);
}

TEST(Mc, ResidualIsNotOptional) {
  u8 ref[256] = {}, dst[256];
  EXPECT_EQ(zvpiMC16x16_8u_C1(ref, 16, nullptr, 0, dst, 16, 0, 0), zvpStatusNullPointer);
}

TEST(Mc, OnlyTwoBitsOfTheTypeCount) {
  EXPECT_EQ(firstOfOne(10, 50, 20, 60, 0, 5, 0), firstOfOne(10, 50, 20, 60, 0, 4, 0));
  EXPECT_EQ(firstOfOne(10, 50, 20, 60, 0, 4, 0), 15);
  EXPECT_EQ(firstOfOne(10, 50, 20, 60, 0, -1, 0), firstOfOne(10, 50, 20, 60, 0, 12, 0));
  EXPECT_EQ(firstOfOne(10, 50, 20, 60, 0, 16 + 8, 0), 30);
}

TEST(Mc, KernelOfNoRowsDoesNothing) {
  for (const auto kernel : zvp::mc::MC16xHFunctionTable) kernel({nullptr, 0}, {{nullptr, 0}}, {nullptr, 0}, 0, 0);
  for (const auto kernel : zvp::mc::MC8xHBFunctionNV12Table_pxmx)
    kernel({nullptr, 0}, {nullptr, 0}, {{nullptr, 0}, {nullptr, 0}}, {nullptr, 0}, 0, 1);
}

TEST(Mc, BothSlotsOfAPairHoldOneKernel) {
  using namespace zvp::mc;
  for (std::size_t slot = 0; slot < 32; slot += 2) {
    EXPECT_EQ(MC8xHBFunctionTable[slot], MC8xHBFunctionTable[slot + 1]);
    EXPECT_EQ(MC16xHUVBFunctionTable[slot], MC16xHUVBFunctionTable[slot + 1]);
    if (slot < 8) {
      EXPECT_EQ(MC8xHFunctionTable[slot], MC8xHFunctionTable[slot + 1]);
    }
  }
}
