// Differences between a block and a half-pel prediction, against the model in reference/mc/getdiff.h.
#include "reference/mc/getdiff.h"

#include <gtest/gtest.h>

#include "reference/mc/members.h"
#include "unit/mc/motion.h"
#include "zvpvc.h"

using namespace zvptest;
using reference::mc::getDiff;
using reference::mc::getDiffChroma;
using reference::mc::getDiffChromaMembers;
using reference::mc::getDiffMembers;

namespace {

using s16 = std::int16_t;
using s32 = std::int32_t;
using u8 = std::uint8_t;

}  // namespace

TEST(GetDiff, OneReference) {
  Rng rng(331);
  for (int round = 0; round < rounds(600); ++round)
    for (const auto& member : getDiffMembers) {
      const auto cur = inputBytes(rng, member.width, member.height);
      const ReferencePlane ref(rng, member.width, member.height, 1);
      OutputPlane<s16> diff(rng, member.width, member.height), predictor(rng, member.width, member.height);
      OutputPlane<s16> again = OutputPlane<s16>(rng, member.width, member.height);
      const s32 roundControl = anyRoundControl(rng);
      const auto run = [&](OutputPlane<s16>& out, s16* predictorTop) {
        return member.one(cur.data(), stepOf(cur), ref.data(), ref.step(), out.actual.data(), out.step(), predictorTop,
                          predictor.step(), ref.mcType, roundControl);
      };
      ASSERT_EQ(run(diff, predictor.actual.data()), zvpStatusOk);
      getDiff(member.width, member.height, {cur.data(), cur.step()}, ref.model(), {diff.expected.data(), diff.step()},
              {predictor.expected.data(), predictor.step()}, roundControl);
      ASSERT_TRUE(diff.same()) << member.name << " mcType " << ref.mcType << " roundControl " << roundControl
                               << " round " << round;
      ASSERT_TRUE(predictor.same()) << member.name << " mcType " << ref.mcType << " roundControl " << roundControl
                                    << " round " << round;

      ASSERT_EQ(run(again, nullptr), zvpStatusOk);
      getDiff(member.width, member.height, {cur.data(), cur.step()}, ref.model(), {again.expected.data(), again.step()},
              {nullptr, 0}, roundControl);
      ASSERT_TRUE(again.same()) << member.name << " without predictor, mcType " << ref.mcType << " roundControl "
                                << roundControl << " round " << round;
    }
}

TEST(GetDiff, TwoReferences) {
  Rng rng(332);
  for (int round = 0; round < rounds(600); ++round)
    for (const auto& member : getDiffMembers) {
      const auto cur = inputBytes(rng, member.width, member.height);
      const ReferencePlane forward(rng, member.width, member.height, 1);
      const ReferencePlane backward(rng, member.width, member.height, 1);
      OutputPlane<s16> diff(rng, member.width, member.height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.two(cur.data(), stepOf(cur), forward.data(), forward.step(), forward.mcType, backward.data(),
                           backward.step(), backward.mcType, diff.actual.data(), diff.step(), roundControl),
                zvpStatusOk);
      getDiff(member.width, member.height, {cur.data(), cur.step()}, forward.model(), backward.model(),
              {diff.expected.data(), diff.step()}, roundControl);
      ASSERT_TRUE(diff.same()) << member.nameB << " mcTypes " << forward.mcType << ", " << backward.mcType
                               << " roundControl " << roundControl << " round " << round;
    }
}

TEST(GetDiff, InterleavedChromaOneReference) {
  Rng rng(333);
  for (int round = 0; round < rounds(1000); ++round)
    for (const auto& member : getDiffChromaMembers) {
      const auto cur = inputBytes(rng, 16, member.height);
      const ReferencePlane ref(rng, 16, member.height, 2);
      OutputPlane<s16> u(rng, 8, member.height), v(rng, 8, member.height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.one(cur.data(), stepOf(cur), ref.data(), ref.step(), u.actual.data(), u.step(), v.actual.data(),
                           v.step(), ref.mcType, roundControl),
                zvpStatusOk);
      getDiffChroma(8, member.height, {cur.data(), cur.step()}, ref.model(), {u.expected.data(), u.step()},
                    {v.expected.data(), v.step()}, roundControl);
      ASSERT_TRUE(u.same()) << member.name << " U, mcType " << ref.mcType << " roundControl " << roundControl;
      ASSERT_TRUE(v.same()) << member.name << " V, mcType " << ref.mcType << " roundControl " << roundControl;
    }
}

TEST(GetDiff, InterleavedChromaTwoReferences) {
  Rng rng(334);
  for (int round = 0; round < rounds(800); ++round)
    for (const auto& member : getDiffChromaMembers) {
      const auto cur = inputBytes(rng, 16, member.height);
      const ReferencePlane forward(rng, 16, member.height, 2), backward(rng, 16, member.height, 2);
      OutputPlane<s16> u(rng, 8, member.height), v(rng, 8, member.height);
      const s32 roundControl = anyRoundControl(rng);
      ASSERT_EQ(member.two(cur.data(), stepOf(cur), forward.data(), forward.step(), forward.mcType, backward.data(),
                           backward.step(), backward.mcType, u.actual.data(), u.step(), v.actual.data(), v.step(),
                           roundControl),
                zvpStatusOk);
      getDiffChroma(8, member.height, {cur.data(), cur.step()}, forward.model(), backward.model(),
                    {u.expected.data(), u.step()}, {v.expected.data(), v.step()}, roundControl);
      ASSERT_TRUE(u.same()) << member.nameB << " U, mcTypes " << forward.mcType << ", " << backward.mcType;
      ASSERT_TRUE(v.same()) << member.nameB << " V, mcTypes " << forward.mcType << ", " << backward.mcType;
    }
}

TEST(GetDiff, WholePelFourByFour) {
  Rng rng(335);
  for (int round = 0; round < rounds(1000); ++round) {
    const auto cur = inputBytes(rng, 4, 4);
    const ReferencePlane ref(rng, 4, 4, 1, 0);
    OutputPlane<s16> diff(rng, 4, 4);
    ASSERT_EQ(zvpiGetDiff4x4_8u16s_C1(cur.data(), stepOf(cur), ref.data(), ref.step(), diff.actual.data(), diff.step()),
              zvpStatusOk);
    getDiff(4, 4, {cur.data(), cur.step()}, ref.model(), {diff.expected.data(), diff.step()}, {nullptr, 0}, 0);
    ASSERT_TRUE(diff.same()) << "round " << round;
  }
}

TEST(GetDiff, McGivesTheBlockBack) {
  Rng rng(336);
  for (int round = 0; round < rounds(30); ++round)
    for (const auto& member : getDiffMembers)
      for (s32 roundControl = 0; roundControl < 2; ++roundControl)
        for (s32 types = 0; types < 16; ++types) {
          const auto cur = inputBytes(rng, member.width, member.height);
          const ReferencePlane forward(rng, member.width, member.height, 1, 4 * (types & 3));
          const ReferencePlane backward(rng, member.width, member.height, 1, types & 12);
          s16 diff[256];
          const s32 diffStep = 2 * member.width;
          GuardedPlane<u8> back(member.width, member.height, cur.step(), Guard::Behind);
          const auto wanted = cur.snapshot();
          std::memcpy(back.bytes().data(), wanted.data(), wanted.size());
          const auto rows = [&] {
            for (int y = 0; y < member.height; ++y) std::fill_n(back.data() + y * back.step(), member.width, u8(99));
          };

          rows();
          ASSERT_EQ(member.one(cur.data(), stepOf(cur), forward.data(), forward.step(), diff, diffStep, nullptr, 0,
                               forward.mcType, roundControl),
                    zvpStatusOk);
          ASSERT_EQ(member.undoOne(forward.data(), forward.step(), diff, diffStep, back.data(), stepOf(back),
                                   forward.mcType, roundControl),
                    zvpStatusOk);
          ASSERT_TRUE(sameBytes(back.snapshot(), wanted)) << member.name << " mcType " << forward.mcType;

          rows();
          ASSERT_EQ(member.two(cur.data(), stepOf(cur), forward.data(), forward.step(), forward.mcType, backward.data(),
                               backward.step(), backward.mcType, diff, diffStep, roundControl),
                    zvpStatusOk);
          ASSERT_EQ(member.undoTwo(forward.data(), forward.step(), forward.mcType, backward.data(), backward.step(),
                                   backward.mcType, diff, diffStep, back.data(), stepOf(back), roundControl),
                    zvpStatusOk);
          ASSERT_TRUE(sameBytes(back.snapshot(), wanted))
              << member.nameB << " mcTypes " << forward.mcType << ", " << backward.mcType;
        }
}

TEST(GetDiff, NullPointersAreRefused) {
  Rng rng(337);
  const auto cur = inputBytes(rng, 16, 16), ref = inputBytes(rng, 18, 17);
  OutputPlane<s16> diff(rng, 16, 16), other(rng, 16, 16);
  diff.actual.bytes().makeReadOnly();
  other.actual.bytes().makeReadOnly();
  const u8 *c = cur.data(), *r = ref.data();
  s16 *d = diff.actual.data(), *e = other.actual.data();
  const s32 cs = stepOf(cur), rs = stepOf(ref), ds = diff.step(), es = other.step();
  for (const auto& m : getDiffMembers) {
    EXPECT_EQ(m.one(nullptr, cs, r, rs, d, ds, e, es, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, nullptr, rs, d, ds, e, es, 4, 1), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, r, rs, nullptr, ds, e, es, 12, 9), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, r, rs, nullptr, ds, nullptr, es, 12, 9), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.two(nullptr, cs, r, rs, 0, r, rs, 0, d, ds, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, nullptr, rs, 0, r, rs, 0, d, ds, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, r, rs, 4, nullptr, rs, 8, d, ds, 1), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, r, rs, 4, r, rs, 8, nullptr, ds, 1), zvpStatusNullPointer) << m.nameB;
  }
  for (const auto& m : getDiffChromaMembers) {
    EXPECT_EQ(m.one(nullptr, cs, r, rs, d, ds, e, es, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, nullptr, rs, d, ds, e, es, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, r, rs, nullptr, ds, e, es, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.one(c, cs, r, rs, d, ds, nullptr, es, 0, 0), zvpStatusNullPointer) << m.name;
    EXPECT_EQ(m.two(nullptr, cs, r, rs, 0, r, rs, 0, d, ds, e, es, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, nullptr, rs, 0, r, rs, 0, d, ds, e, es, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, r, rs, 0, nullptr, rs, 0, d, ds, e, es, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, r, rs, 0, r, rs, 0, nullptr, ds, e, es, 0), zvpStatusNullPointer) << m.nameB;
    EXPECT_EQ(m.two(c, cs, r, rs, 0, r, rs, 0, d, ds, nullptr, es, 0), zvpStatusNullPointer) << m.nameB;
  }
  EXPECT_EQ(zvpiGetDiff4x4_8u16s_C1(nullptr, cs, r, rs, d, ds), zvpStatusNullPointer);
  EXPECT_EQ(zvpiGetDiff4x4_8u16s_C1(c, cs, nullptr, rs, d, ds), zvpStatusNullPointer);
  EXPECT_EQ(zvpiGetDiff4x4_8u16s_C1(c, cs, r, rs, nullptr, ds), zvpStatusNullPointer);
  EXPECT_TRUE(diff.same());
  EXPECT_TRUE(other.same());
}

TEST(GetDiff, WholePelIgnoresRoundControl) {
  u8 cur[64], ref[64];
  std::fill_n(cur, 64, u8(10));
  std::fill_n(ref, 64, u8(250));
  for (s32 roundControl : {0, 1, 5, -1}) {
    s16 diff[64], predictor[64];
    ASSERT_EQ(zvpiGetDiff8x8_8u16s_C1(cur, 8, ref, 8, diff, 16, predictor, 16, 0, roundControl), zvpStatusOk);
    EXPECT_EQ(diff[63], -240);
    EXPECT_EQ(predictor[63], 250);
  }
}

TEST(GetDiff, AverageOfTwoRoundsUp) {
  const auto residual = [](int current, int forward, int backward) {
    u8 cur[64], refF[64], refB[64];
    std::fill_n(cur, 64, u8(current));
    std::fill_n(refF, 64, u8(forward));
    std::fill_n(refB, 64, u8(backward));
    s16 diff[64];
    EXPECT_EQ(zvpiGetDiff8x8B_8u16s_C1(cur, 8, refF, 8, 0, refB, 8, 0, diff, 16, 1), zvpStatusOk);
    return int(diff[0]);
  };
  EXPECT_EQ(residual(10, 9, 10), 0);
  EXPECT_EQ(residual(10, 12, 13), -3);
  EXPECT_EQ(residual(255, 0, 0), 255);
}
