// Copies, averages and adds at half-pel positions, against the model in reference/mc/copy.h.
#include "reference/mc/copy.h"

#include <gtest/gtest.h>

#include "mc/copy_tables.h"
#include "unit/mc/planes.h"
#include "zvpvc.h"

using namespace zvptest;
using zvp::s16;
using zvp::s32;
using zvp::u8;

namespace {

using Copy = zvpStatus (*)(const u8*, s32, u8*, s32);
using CopyHP = zvpStatus (*)(const u8*, s32, u8*, s32, s32, s32);
template <class Function>
struct Member {
  const char* name;
  Function run;
  int width, height;
};

const Member<Copy> copies[] = {{"zvpiCopy8x8_8u_C1R", zvpiCopy8x8_8u_C1R, 8, 8},
                               {"zvpiCopy16x16_8u_C1R", zvpiCopy16x16_8u_C1R, 16, 16}};
const Member<Copy> averagesInPlace[] = {{"zvpiAverage8x8_8u_C1IR", zvpiAverage8x8_8u_C1IR, 8, 8},
                                        {"zvpiAverage16x16_8u_C1IR", zvpiAverage16x16_8u_C1IR, 16, 16}};
const Member<CopyHP> halfPelCopies[] = {{"zvpiCopy8x4HP_8u_C1R", zvpiCopy8x4HP_8u_C1R, 8, 4},
                                        {"zvpiCopy8x8HP_8u_C1R", zvpiCopy8x8HP_8u_C1R, 8, 8},
                                        {"zvpiCopy16x8HP_8u_C1R", zvpiCopy16x8HP_8u_C1R, 16, 8},
                                        {"zvpiCopy16x16HP_8u_C1R", zvpiCopy16x16HP_8u_C1R, 16, 16}};
const Member<CopyHP> interpolateAverages[] = {
    {"zvpiInterpolateAverage8x4_8u_C1IR", zvpiInterpolateAverage8x4_8u_C1IR, 8, 4},
    {"zvpiInterpolateAverage8x8_8u_C1IR", zvpiInterpolateAverage8x8_8u_C1IR, 8, 8},
    {"zvpiInterpolateAverage16x8_8u_C1IR", zvpiInterpolateAverage16x8_8u_C1IR, 16, 8},
    {"zvpiInterpolateAverage16x16_8u_C1IR", zvpiInterpolateAverage16x16_8u_C1IR, 16, 16}};

// acc and rounding with bits that don't count.
s32 withStrayBits(Rng& rng, int value, int bits) {
  const bool stray = rng.chance(2);
  return stray ? s32(zvp::u32(value) | rng.next() << bits) : value;
}

// Four fills of one 8x8 block for the named cases; the reference stands 9x9 at a step of 16.
struct SmallCase {
  u8 ref[9 * 16], dst[8 * 8];
  s16 residual[64];
  SmallCase(int a, int b, int c, int d, int dstValue = 0, int residualValue = 0) {
    for (int y = 0; y < 9; ++y)
      for (int x = 0; x < 9; ++x) ref[16 * y + x] = u8(y % 2 ? (x % 2 ? d : c) : (x % 2 ? b : a));
    std::fill_n(dst, 64, u8(dstValue));
    std::fill_n(residual, 64, s16(residualValue));
  }
};

// Members without cases, against the model at whole samples.
template <class Members, class Model>
void checkWholeSample(std::uint64_t seed, const Members& members, Model model) {
  Rng rng(seed);
  for (int round = 0; round < rounds(300); ++round)
    for (const auto& member : members) {
      const auto src = inputBytes(rng, member.width, member.height);
      OutputPlane<u8> dst(rng, member.width, member.height);
      ASSERT_EQ(member.run(src.data(), stepOf(src), dst.actual.data(), dst.step()), zvpStatusOk);
      model(src.data(), src.step(), dst.expected.data(), dst.step(), member.width, member.height, 0, 0);
      ASSERT_TRUE(dst.same()) << member.name << " round " << round;
    }
}

// Every case of members with acc and rounding, against the model that takes the same arguments.
template <class Members, class Model>
void checkHalfPel(std::uint64_t seed, const Members& members, Model model) {
  Rng rng(seed);
  for (int round = 0; round < rounds(100); ++round)
    for (const auto& member : members)
      for (int acc = 0; acc < 4; ++acc)
        for (int rounding = 0; rounding < 2; ++rounding) {
          const auto src = inputBytes(rng, member.width, member.height, acc & 1, acc >> 1);
          OutputPlane<u8> dst(rng, member.width, member.height);
          const s32 accBits = withStrayBits(rng, acc, 2), roundingBits = withStrayBits(rng, rounding, 1);
          ASSERT_EQ(member.run(src.data(), stepOf(src), dst.actual.data(), dst.step(), accBits, roundingBits),
                    zvpStatusOk);
          model(src.data(), src.step(), dst.expected.data(), dst.step(), member.width, member.height, acc, rounding);
          ASSERT_TRUE(dst.same()) << member.name << " acc " << acc << " rounding " << rounding << " round " << round;
        }
}

}  // namespace

TEST(Copy, WholeSampleMembers) { checkWholeSample(301, copies, reference::mc::copy); }

TEST(Copy, HalfPelMembers) { checkHalfPel(302, halfPelCopies, reference::mc::copy); }

TEST(Copy, KernelsOfFourByEight) {
  // No export leads to this table.
  Rng rng(303);
  for (int round = 0; round < rounds(100); ++round)
    for (int slot = 0; slot < 8; ++slot) {
      const auto src = inputBytes(rng, 4, 8, slot / 2 & 1, slot / 4);
      OutputPlane<u8> dst(rng, 4, 8);
      zvp::mc::ownvc_Copy4x8HP_8u_C1R_0[std::size_t(slot)](src.data(), src.step(), dst.actual.data(), dst.step());
      reference::mc::copy(src.data(), src.step(), dst.expected.data(), dst.step(), 4, 8, slot / 2, slot & 1);
      ASSERT_TRUE(dst.same()) << "slot " << slot << " round " << round;
    }
}

TEST(Copy, KernelsOfInterleavedChroma) {
  // With two channels the right neighbour stands two bytes on; each channel is predicted for itself.
  Rng rng(304);
  const auto check = [&](auto kernel, int pairs, int height, int acc, int rounding) {
    const auto src = inputBytes(rng, 2 * pairs, height, acc & 1 ? 2 : 0, acc >> 1);
    OutputPlane<u8> dst(rng, 2 * pairs, height);
    kernel(src.data(), src.step(), dst.actual.data(), dst.step());
    for (int channel = 0; channel < 2; ++channel) {
      u8 samples[9 * 16], predicted[8 * 8];
      for (int y = 0; y < height + (acc >> 1); ++y)
        for (int x = 0; x < pairs + (acc & 1); ++x) samples[16 * y + x] = src.get(2 * x + channel, y);
      reference::mc::copy(samples, 16, predicted, 8, pairs, height, acc, rounding);
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < pairs; ++x) dst.expected.set(2 * x + channel, y, predicted[8 * y + x]);
    }
    ASSERT_TRUE(dst.same()) << pairs << " pairs, acc " << acc << " rounding " << rounding;
  };
  using namespace zvp::mc;
  for (int round = 0; round < rounds(50); ++round) {
    check(copyBlock<16, 8, HalfPel::hf, Rounding::up, 2>, 8, 8, 1, 0);
    check(copyBlock<16, 8, HalfPel::hh, Rounding::down, 2>, 8, 8, 3, 1);
    check(copyBlock<16, 4, HalfPel::fh, Rounding::up, 2>, 8, 4, 2, 0);
    check(copyBlock<8, 4, HalfPel::hf, Rounding::down, 2>, 4, 4, 1, 1);
    check(copyBlock<8, 4, HalfPel::hh, Rounding::up, 2>, 4, 4, 3, 0);
  }
}

TEST(Copy, AverageOfTwo) {
  Rng rng(305);
  const auto check = [&](auto run, int size) {
    const auto src1 = inputBytes(rng, size, size), src2 = inputBytes(rng, size, size);
    OutputPlane<u8> dst(rng, size, size);
    ASSERT_EQ(run(src1.data(), stepOf(src1), src2.data(), stepOf(src2), dst.actual.data(), dst.step()), zvpStatusOk);
    reference::mc::average(src1.data(), src1.step(), src2.data(), src2.step(), dst.expected.data(), dst.step(), size,
                           size);
    ASSERT_TRUE(dst.same()) << size;
  };
  for (int round = 0; round < rounds(300); ++round) {
    check(zvpiAverage8x8_8u_C1R, 8);
    check(zvpiAverage16x16_8u_C1R, 16);
  }
}

TEST(Copy, AverageInPlace) { checkWholeSample(306, averagesInPlace, reference::mc::interpolateAverage); }

TEST(Copy, InterpolateAverage) { checkHalfPel(307, interpolateAverages, reference::mc::interpolateAverage); }

TEST(Copy, AddInPlace) {
  Rng rng(308);
  for (int round = 0; round < rounds(500); ++round) {
    const bool small = rng.chance(2);
    const auto residual = inputPlane<s16>(rng, 8, 8, 0, 0, small ? -300 : -32768, small ? 300 : 32767);
    OutputPlane<u8> dst(rng, 8, 8);
    ASSERT_EQ(zvpiAdd8x8_16s8u_C1IRS(residual.data(), stepOf(residual), dst.actual.data(), dst.step()), zvpStatusOk);
    reference::mc::add8x8(residual.data(), residual.step(), dst.expected.data(), dst.step(), dst.expected.data(),
                          dst.step(), 0, 0);
    ASSERT_TRUE(dst.same()) << "round " << round;
  }
}

TEST(Copy, AddToHalfPel) {
  Rng rng(309);
  for (int round = 0; round < rounds(100); ++round)
    for (int acc = 0; acc < 4; ++acc)
      for (int rounding = 0; rounding < 2; ++rounding) {
        const bool small = rng.chance(2);
        const auto residual = inputPlane<s16>(rng, 8, 8, 0, 0, small ? -300 : -32768, small ? 300 : 32767);
        const auto ref = inputBytes(rng, 8, 8, acc & 1, acc >> 1);
        OutputPlane<u8> dst(rng, 8, 8);
        const s32 accBits = withStrayBits(rng, acc, 2), roundingBits = withStrayBits(rng, rounding, 1);
        ASSERT_EQ(zvpiAdd8x8HP_16s8u_C1RS(residual.data(), stepOf(residual), ref.data(), stepOf(ref), dst.actual.data(),
                                          dst.step(), accBits, roundingBits),
                  zvpStatusOk);
        reference::mc::add8x8(residual.data(), residual.step(), ref.data(), ref.step(), dst.expected.data(), dst.step(),
                              acc, rounding);
        ASSERT_TRUE(dst.same()) << "acc " << acc << " rounding " << rounding << " round " << round;
      }
}

TEST(Copy, AddConstant) {
  Rng rng(310);
  for (int round = 0; round < rounds(500); ++round) {
    s32 value = rng.range(-300, 300);
    if (rng.chance(3)) value = s32(rng.next());
    if (rng.chance(10)) value = rng.pick(std::vector<s32>{-32768, 32767, 32768, -256, -255, 255, 256});
    OutputPlane<u8> dst(rng, 8, 8);
    ASSERT_EQ(zvpiAddC8x8_16s8u_C1IR(value, dst.actual.data(), dst.step()), zvpStatusOk);
    reference::mc::addConstant8x8(value, dst.expected.data(), dst.step());
    ASSERT_TRUE(dst.same()) << "value " << value << " round " << round;
  }
}

TEST(Copy, AverageOfFourIsExact) {
  // The averages and the low bit of the difference depend on the pair's sum alone; so pairs of all sums are all cases.
  using namespace zvp::mc;
  using zvp::simd::splat;
  u8 first[511], second[511];
  const auto lane = [](Row row) { return int(zvp::simd::low32(row) & 255); };
  for (int a = 0; a < 256; ++a)
    for (int b = 0; b < 256; ++b) {
      ASSERT_EQ(lane(average(splat<Row>(u8(a)), splat<Row>(u8(b)))), (a + b + 1) / 2);
      ASSERT_EQ((a ^ b) & 1, (a + b) & 1);
      first[a + b] = u8(a);
      second[a + b] = u8(b);
    }
  for (int ab = 0; ab < 511; ++ab)
    for (int cd = 0; cd < 511; ++cd) {
      const Row a = splat<Row>(first[ab]), b = splat<Row>(second[ab]), c = splat<Row>(first[cd]);
      const Row d = splat<Row>(second[cd]);
      ASSERT_EQ(lane(averageOfFour<Rounding::up>(average(a, b), a ^ b, average(c, d), c ^ d)), (ab + cd + 2) / 4);
      ASSERT_EQ(lane(averageOfFour<Rounding::down>(average(a, b), a ^ b, average(c, d), c ^ d)), (ab + cd + 1) / 4);
    }
}

TEST(Copy, NullPointersAreRefused) {
  Rng rng(311);
  OutputPlane<u8> dst(rng, 16, 16);
  dst.actual.bytes().makeReadOnly();
  u8* out = dst.actual.data();
  const auto src = inputBytes(rng, 17, 17);
  const s32 step = stepOf(src), outStep = dst.step();
  s16 residual[64] = {};
  for (const auto* members : {&copies, &averagesInPlace})
    for (const auto& member : *members) {
      EXPECT_EQ(member.run(nullptr, step, out, outStep), zvpStatusNullPointer) << member.name;
      EXPECT_EQ(member.run(src.data(), step, nullptr, outStep), zvpStatusNullPointer) << member.name;
    }
  for (const auto* members : {&halfPelCopies, &interpolateAverages})
    for (const auto& member : *members)
      for (int acc = 0; acc < 4; ++acc) {
        EXPECT_EQ(member.run(nullptr, step, out, outStep, acc, 0), zvpStatusNullPointer) << member.name;
        EXPECT_EQ(member.run(src.data(), step, nullptr, outStep, acc, 0), zvpStatusNullPointer) << member.name;
      }
  for (auto run : {zvpiAverage8x8_8u_C1R, zvpiAverage16x16_8u_C1R}) {
    EXPECT_EQ(run(nullptr, step, src.data(), step, out, outStep), zvpStatusNullPointer);
    EXPECT_EQ(run(src.data(), step, nullptr, step, out, outStep), zvpStatusNullPointer);
    EXPECT_EQ(run(src.data(), step, src.data(), step, nullptr, outStep), zvpStatusNullPointer);
  }
  EXPECT_EQ(zvpiAdd8x8_16s8u_C1IRS(nullptr, 16, out, outStep), zvpStatusNullPointer);
  EXPECT_EQ(zvpiAdd8x8_16s8u_C1IRS(residual, 16, nullptr, outStep), zvpStatusNullPointer);
  EXPECT_EQ(zvpiAdd8x8HP_16s8u_C1RS(nullptr, 16, src.data(), step, out, outStep, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiAdd8x8HP_16s8u_C1RS(residual, 16, nullptr, step, out, outStep, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiAdd8x8HP_16s8u_C1RS(residual, 16, src.data(), step, nullptr, outStep, 0, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiAddC8x8_16s8u_C1IR(5, nullptr, outStep), zvpStatusNullPointer);
  EXPECT_TRUE(dst.same());
}

TEST(Copy, AccFiveIsOneAndRoundingTwoIsZero) {
  SmallCase test(10, 11, 50, 60);
  ASSERT_EQ(zvpiCopy8x8HP_8u_C1R(test.ref, 16, test.dst, 8, 5, 2), zvpStatusOk);
  EXPECT_EQ(test.dst[0], 11);  // half in x, rounded up
  ASSERT_EQ(zvpiCopy8x8HP_8u_C1R(test.ref, 16, test.dst, 8, 5, 3), zvpStatusOk);
  EXPECT_EQ(test.dst[0], 10);
}

TEST(Copy, RoundingMakesNoDifferenceAtWholeSamples) {
  SmallCase up(1, 2, 3, 4), down(1, 2, 3, 4);
  ASSERT_EQ(zvpiCopy8x8HP_8u_C1R(up.ref, 16, up.dst, 8, 0, 0), zvpStatusOk);
  ASSERT_EQ(zvpiCopy8x8HP_8u_C1R(down.ref, 16, down.dst, 8, 0, 1), zvpStatusOk);
  EXPECT_TRUE(sameArray(up.dst, down.dst, 64));
  for (const auto& table :
       {zvp::mc::ownvc_Copy16x16HP_8u_C1R_0, zvp::mc::ownvc_Copy16x8HP_8u_C1R_0, zvp::mc::ownvc_Copy8x8HP_8u_C1R_0,
        zvp::mc::ownvc_Copy8x4HP_8u_C1R_0, zvp::mc::ownvc_Copy4x8HP_8u_C1R_0,
        zvp::mc::ownvc_InterpolateAverage16x16HP_8u_C1IR_0, zvp::mc::ownvc_InterpolateAverage16x8HP_8u_C1IR_0,
        zvp::mc::ownvc_InterpolateAverage8x8HP_8u_C1IR_0, zvp::mc::ownvc_InterpolateAverage8x4HP_8u_C1IR_0})
    EXPECT_EQ(table[0], table[1]);
  EXPECT_EQ(zvp::mc::ownvc_Add8x8HP_16s8u_C1RS_0[0], zvp::mc::ownvc_Add8x8HP_16s8u_C1RS_0[1]);
}

TEST(Copy, OuterAverageRoundsUp) {
  for (int rounding = 0; rounding < 2; ++rounding)
    for (int acc = 0; acc < 4; ++acc) {
      SmallCase test(2, 2, 2, 2, 1);
      ASSERT_EQ(zvpiInterpolateAverage8x8_8u_C1IR(test.ref, 16, test.dst, 8, acc, rounding), zvpStatusOk);
      EXPECT_EQ(test.dst[0], 2);
      EXPECT_EQ(test.dst[63], 2);
    }
}

TEST(Copy, AddSaturates) {
  SmallCase black(0, 0, 0, 0, 255, -300), white(0, 0, 0, 0, 0, 300);
  ASSERT_EQ(zvpiAdd8x8_16s8u_C1IRS(black.residual, 16, black.dst, 8), zvpStatusOk);
  ASSERT_EQ(zvpiAdd8x8_16s8u_C1IRS(white.residual, 16, white.dst, 8), zvpStatusOk);
  for (int i = 0; i < 64; ++i) {
    EXPECT_EQ(black.dst[i], 0);
    EXPECT_EQ(white.dst[i], 255);
  }
}

TEST(Copy, ConstantIsTakenAsSixteenBits) {
  SmallCase test(0, 0, 0, 0, 77);
  ASSERT_EQ(zvpiAddC8x8_16s8u_C1IR(65536, test.dst, 8), zvpStatusOk);
  EXPECT_EQ(test.dst[9], 77);
  ASSERT_EQ(zvpiAddC8x8_16s8u_C1IR(65535, test.dst, 8), zvpStatusOk);
  EXPECT_EQ(test.dst[9], 76);
}
