// VC-1 quantization and its inverse against the models.
#include "reference/vc1/quant.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <set>
#include <string>

#include "support/compare.h"
#include "support/placed.h"
#include "unit/vc1/plane.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::vc1;

namespace {

// The members with one set of arguments each. Intra members take no size.
struct Forward {
  const char* name;
  model::Quantizer quantizer;
  std::function<zvpStatus(std::int16_t*, std::int32_t, std::int32_t, zvpSize)> call;
};
struct Inverse {
  const char* name;
  model::Quantizer quantizer;
  std::function<zvpStatus(const std::int16_t*, std::int32_t, std::int16_t*, std::int32_t, std::int32_t, zvpSize,
                          zvpSize*)>
      call;
  std::function<zvpStatus(std::int16_t*, std::int32_t, std::int32_t, zvpSize, zvpSize*)> inPlace;
};

template <class Member>
auto intraForward(Member member) {
  return [=](std::int16_t* p, std::int32_t step, std::int32_t qp, zvpSize) { return member(p, step, qp); };
}
template <class Member>
auto intra(Member member) {
  return [=](const std::int16_t* p, std::int32_t step, std::int16_t* q, std::int32_t dstStep, std::int32_t qp, zvpSize,
             zvpSize* nz) { return member(p, step, q, dstStep, qp, nz); };
}
template <class Member>
auto intraInPlace(Member member) {
  return [=](std::int16_t* p, std::int32_t step, std::int32_t qp, zvpSize, zvpSize* nz) {
    return member(p, step, qp, nz);
  };
}

const Forward forwards[] = {
    {"intra uniform", {true, true}, intraForward(zvpiQuantIntraUniform_VC1_16s_C1IR)},
    {"intra nonuniform", {true, false}, intraForward(zvpiQuantIntraNonuniform_VC1_16s_C1IR)},
    {"inter uniform", {false, true}, zvpiQuantInterUniform_VC1_16s_C1IR},
    {"inter nonuniform", {false, false}, zvpiQuantInterNonuniform_VC1_16s_C1IR},
};
const Inverse inverses[] = {
    {"intra uniform", {true, true}, intra(zvpiQuantInvIntraUniform_VC1_16s_C1R),
     intraInPlace(zvpiQuantInvIntraUniform_VC1_16s_C1IR)},
    {"intra nonuniform", {true, false}, intra(zvpiQuantInvIntraNonuniform_VC1_16s_C1R),
     intraInPlace(zvpiQuantInvIntraNonuniform_VC1_16s_C1IR)},
    {"inter uniform", {false, true}, zvpiQuantInvInterUniform_VC1_16s_C1R, zvpiQuantInvInterUniform_VC1_16s_C1IR},
    {"inter nonuniform", {false, false}, zvpiQuantInvInterNonuniform_VC1_16s_C1R,
     zvpiQuantInvInterNonuniform_VC1_16s_C1IR},
};

zvpSize randomSize(Rng& rng, bool intra) {
  if (intra) return {8, 8};
  const int width = rng.chance(2) ? 4 : 8, height = rng.chance(2) ? 4 : 8;
  return {width, height};
}

// Levels or coefficients, in many blocks with a few non-zero ones only, among them those whose products can come to 0.
void fillValues(Plane& plane, Rng& rng) {
  const Style style = anyStyle(rng);
  const int limit = rng.pick<int>({2, 40, 2048, 32767});
  Values values(rng, style, -limit - 1, limit);
  const int zeros = rng.pick<int>({1, 2, 8, 40});
  for (int y = 0; y < plane.height(); ++y)
    for (int x = 0; x < plane.width(); ++x) {
      const int value = rng.chance(6) ? rng.pick<int>({-32768, 16384, -16384, 4096}) : values.next();
      plane.set(x, y, std::int16_t(rng.chance(zeros) || zeros == 1 ? value : 0));
    }
}

std::int32_t randomScale(Rng& rng) {
  if (rng.chance(4))
    return rng.pick<std::int32_t>({0, 1, -1, 4, 65536, 65537, 131072, INT_MAX, INT_MIN, -62, 32768, 196610});
  if (rng.chance(4)) return std::int32_t(rng.next());
  return rng.range(1, 62);
}

std::vector<std::int32_t> asVector(model::NonZeroSize size) { return {size.width, size.height}; }

}  // namespace

TEST(Quant, ForwardMatchesTheModel) {
  Rng rng(21);
  for (const auto& member : forwards)
    for (int round = 0; round < rounds(4000); ++round) {
      const zvpSize size = randomSize(rng, member.quantizer.intra);
      const int qp = rng.range(2, 62);
      Plane block = randomPlane(rng, size.width, size.height);
      fillValues(block, rng);
      Block wanted = valuesOf(block);
      model::quantize(member.quantizer, wanted.data(), qp, size.width, size.height);
      const auto expected = with(block, wanted);
      ASSERT_EQ(member.call(block.data(), std::int32_t(block.step()), qp, size), zvpStatusOk);
      ASSERT_TRUE(sameBytes(block.snapshot(), expected)) << member.name << " QP " << qp << " round " << round;
    }
}

TEST(Quant, ForwardOfEveryValue) {
  for (const auto& member : forwards)
    for (int qp = 2; qp <= 62; ++qp)
      for (int base = -32768; base < 32768; base += 63) {
        std::int16_t block[64], wanted[64];
        for (int i = 0; i < 64; ++i) block[i] = wanted[i] = std::int16_t(std::min(base + i, 32767));
        model::quantize(member.quantizer, wanted, qp, 8, 8);
        ASSERT_EQ(member.call(block, 16, qp, {8, 8}), zvpStatusOk);
        ASSERT_TRUE(std::equal(block, block + 64, wanted)) << member.name << " QP " << qp << " from " << base;
      }
}

// Multipliers below the reciprocal: c * QP < 2^(16 + shift), so multiples fall short of their quotient.
const std::set<int> inexactQps = {19, 21, 27, 41, 55};

// Division towards zero, but for the multiples of five QPs, which come out one too small in magnitude. At 55 the
// multiplier 2383 falls short by 7 in 55: values one above a multiple do too from 2383 / 7 times 55 on.
TEST(Quant, ForwardUniformDivides) {
  for (int qp = 2; qp <= 62; ++qp)
    for (int base = -32768; base < 32768; base += 64) {
      std::int16_t block[64];
      for (int i = 0; i < 64; ++i) block[i] = std::int16_t(base + i);
      ASSERT_EQ(zvpiQuantInterUniform_VC1_16s_C1IR(block, 16, qp, {8, 8}), zvpStatusOk);
      for (int i = 0; i < 64; ++i) {
        const int x = base + i, exact = x / qp, short1 = exact - (x > 0 ? 1 : -1);
        const bool multiple = x != 0 && x % qp == 0;
        if (inexactQps.count(qp) && multiple)
          ASSERT_EQ(block[i], short1) << x << " / " << qp;
        else if (qp == 55 && exact != 0 && std::abs(x % qp) == 1)
          ASSERT_EQ(block[i], std::abs(x) <= 340 * 55 + 1 ? exact : short1) << x << " / " << qp;
        else
          ASSERT_EQ(block[i], exact) << x << " / " << qp;
      }
    }
  std::int16_t block[16] = {32756};
  ASSERT_EQ(zvpiQuantInterUniform_VC1_16s_C1IR(block, 8, 19, {4, 4}), zvpStatusOk);
  EXPECT_EQ(block[0], 1723);
}

TEST(Quant, ForwardRoundsTowardsZero) {
  std::int16_t block[64] = {9, -3, 3, -1, 1, -2};
  ASSERT_EQ(zvpiQuantIntraUniform_VC1_16s_C1IR(block, 16, 2), zvpStatusOk);
  const std::int16_t halves[64] = {9, -1, 1, 0, 0, -1};  // the DC stays
  EXPECT_TRUE(sameArray(block, halves, 64));
  std::int16_t thirds[16] = {-1, -3, -4, 3, 2};
  ASSERT_EQ(zvpiQuantInterUniform_VC1_16s_C1IR(thirds, 8, 3, {4, 4}), zvpStatusOk);
  const std::int16_t wanted[16] = {0, -1, -1, 1, 0};
  EXPECT_TRUE(sameArray(thirds, wanted, 16));
}

// A value below QP >> 1 passes zero when that is taken off, and must end at zero all the same.
TEST(Quant, NonuniformHasADeadZone) {
  for (int qp = 2; qp <= 62; ++qp) {
    if (inexactQps.count(qp)) continue;
    std::int16_t block[64] = {5};
    for (int i = 1; i < 64; ++i) block[i] = std::int16_t((i - 32) % (2 * qp));
    std::int16_t wanted[64] = {5};
    for (int i = 1; i < 64; ++i) {
      const int magnitude = std::abs(block[i]);
      wanted[i] = std::int16_t(magnitude < qp + qp / 2 ? 0 : block[i] < 0 ? -1 : 1);
    }
    ASSERT_EQ(zvpiQuantIntraNonuniform_VC1_16s_C1IR(block, 16, qp), zvpStatusOk);
    EXPECT_TRUE(sameArray(block, wanted, 64)) << qp;
  }
}

TEST(Quant, InverseMatchesTheModel) {
  Rng rng(22);
  for (const auto& member : inverses)
    for (int round = 0; round < rounds(6000); ++round) {
      const zvpSize size = randomSize(rng, member.quantizer.intra);
      const std::int32_t qp = randomScale(rng);
      Plane src = randomPlane(rng, size.width, size.height), dst = randomPlane(rng, size.width, size.height);
      fillValues(src, rng);
      const Block levels = valuesOf(src);
      Block wanted(levels.size());
      const auto corner = model::dequantize(member.quantizer, levels.data(), wanted.data(), qp, size.width, size.height,
                                            !member.quantizer.intra);
      const auto expected = with(dst, wanted);
      Placed<std::int32_t> nonZero({-5, -6}, rng);
      src.bytes().makeReadOnly();
      ASSERT_EQ(member.call(src.data(), std::int32_t(src.step()), dst.data(), std::int32_t(dst.step()), qp, size,
                            reinterpret_cast<zvpSize*>(nonZero.data())),
                zvpStatusOk);
      ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << member.name << " QP " << qp << " round " << round;
      ASSERT_EQ(nonZero.values(), asVector(corner)) << member.name << " QP " << qp << " round " << round;
    }
}

TEST(Quant, InverseInPlaceMatchesTheModel) {
  Rng rng(23);
  for (const auto& member : inverses)
    for (int round = 0; round < rounds(6000); ++round) {
      const zvpSize size = randomSize(rng, member.quantizer.intra);
      const std::int32_t qp = randomScale(rng);
      Plane block = randomPlane(rng, size.width, size.height);
      fillValues(block, rng);
      Block wanted = valuesOf(block);
      const auto corner =
          model::dequantize(member.quantizer, wanted.data(), wanted.data(), qp, size.width, size.height, false);
      const auto expected = with(block, wanted);
      Placed<std::int32_t> nonZero({-5, -6}, rng);
      ASSERT_EQ(member.inPlace(block.data(), std::int32_t(block.step()), qp, size,
                               reinterpret_cast<zvpSize*>(nonZero.data())),
                zvpStatusOk);
      ASSERT_TRUE(sameBytes(block.snapshot(), expected)) << member.name << " QP " << qp << " round " << round;
      ASSERT_EQ(nonZero.values(), asVector(corner)) << member.name << " QP " << qp << " round " << round;
    }
}

TEST(Quant, CornerOfEveryElement) {
  for (const zvpSize size : {zvpSize{4, 4}, zvpSize{8, 4}, zvpSize{4, 8}, zvpSize{8, 8}})
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) {
        std::int16_t block[64] = {}, dst[64];
        block[y * size.width + x] = -1;
        zvpSize corner = {-1, -1};
        ASSERT_EQ(zvpiQuantInvInterUniform_VC1_16s_C1R(block, 2 * size.width, dst, 2 * size.width, 3, size, &corner),
                  zvpStatusOk);
        EXPECT_EQ(corner.width, x + 1);
        EXPECT_EQ(corner.height, y + 1);
        if (size.width + size.height < 16) continue;
        ASSERT_EQ(zvpiQuantInvIntraNonuniform_VC1_16s_C1IR(block, 16, 7, &corner), zvpStatusOk);
        EXPECT_EQ(corner.width, x + 1);
        EXPECT_EQ(corner.height, y + 1);
      }
}

TEST(Quant, CornerOfZeros) {
  std::int16_t block[64] = {}, dst[64];
  zvpSize corner = {-1, -1};
  ASSERT_EQ(zvpiQuantInvInterNonuniform_VC1_16s_C1R(block, 16, dst, 16, 3, {8, 8}, &corner), zvpStatusOk);
  EXPECT_EQ(corner.width, 0);
  EXPECT_EQ(corner.height, 0);
  for (const int dc : {0, 700}) {
    block[0] = std::int16_t(dc);
    corner = {-1, -1};
    ASSERT_EQ(zvpiQuantInvIntraUniform_VC1_16s_C1R(block, 16, dst, 16, 3, &corner), zvpStatusOk);
    EXPECT_EQ(dst[0], dc);
    EXPECT_EQ(corner.width, 1);
    EXPECT_EQ(corner.height, 1);
  }
}

TEST(Quant, ProductsThatComeToZero) {
  std::int16_t block[16] = {}, dst[16];
  block[2 * 4 + 3] = -32768;  // times 2
  zvpSize corner = {-1, -1};
  ASSERT_EQ(zvpiQuantInvInterUniform_VC1_16s_C1R(block, 8, dst, 8, 2, {4, 4}, &corner), zvpStatusOk);
  EXPECT_EQ(dst[11], 0);
  EXPECT_EQ(corner.width, 4);
  EXPECT_EQ(corner.height, 3);
  ASSERT_EQ(zvpiQuantInvInterUniform_VC1_16s_C1IR(block, 8, 2, {4, 4}, &corner), zvpStatusOk);
  EXPECT_EQ(block[11], 0);
  EXPECT_EQ(corner.width, 0);
  EXPECT_EQ(corner.height, 0);
}

TEST(Quant, ForwardChecksInOrder) {
  std::int16_t block[64], same[64];
  std::fill(block, block + 64, std::int16_t(77));
  std::fill(same, same + 64, std::int16_t(77));
  for (const auto& member : forwards) {
    for (const int qp : {1, 2, 63}) EXPECT_EQ(member.call(nullptr, 16, qp, {3, 8}), zvpStatusNullPointer);
    for (const int qp : {1, 63, 0, -2, INT_MAX, INT_MIN}) {
      EXPECT_EQ(member.call(block, 16, qp, {3, 8}), zvpStatusOutOfRange);
      EXPECT_EQ(member.call(block, 16, qp, {8, 8}), zvpStatusOutOfRange);
    }
    if (member.quantizer.intra) continue;
    for (const int bad : {0, 3, 5, 7, 9, 16, -4, -8, INT_MIN, INT_MAX}) {
      EXPECT_EQ(member.call(block, 16, 2, {bad, 8}), zvpStatusBadSize);
      EXPECT_EQ(member.call(block, 16, 62, {4, bad}), zvpStatusBadSize);
    }
  }
  EXPECT_TRUE(sameArray(block, same, 64));
}

TEST(Quant, InverseChecksInOrder) {
  std::int16_t block[64], same[64];
  std::fill(block, block + 64, std::int16_t(77));
  std::fill(same, same + 64, std::int16_t(77));
  zvpSize corner = {-7, -8};
  for (const auto& member : inverses) {
    EXPECT_EQ(member.call(nullptr, 16, block, 16, 3, {3, 3}, &corner), zvpStatusNullPointer);
    EXPECT_EQ(member.call(block, 16, nullptr, 16, 3, {3, 3}, &corner), zvpStatusNullPointer);
    EXPECT_EQ(member.call(block, 16, block, 16, 3, {3, 3}, nullptr), zvpStatusNullPointer);
    EXPECT_EQ(member.inPlace(nullptr, 16, 3, {3, 3}, &corner), zvpStatusNullPointer);
    EXPECT_EQ(member.inPlace(block, 16, 3, {3, 3}, nullptr), zvpStatusNullPointer);
    if (member.quantizer.intra) continue;
    for (const int bad : {0, 3, 5, 7, 9, 16, -4, -8, INT_MIN, INT_MAX})
      for (const zvpSize size : {zvpSize{bad, 8}, zvpSize{4, bad}}) {
        EXPECT_EQ(member.call(block, 16, block, 16, 3, size, &corner), zvpStatusBadSize);
        EXPECT_EQ(member.inPlace(block, 16, 3, size, &corner), zvpStatusBadSize);
      }
  }
  EXPECT_TRUE(sameArray(block, same, 64));
  EXPECT_EQ(corner.width, -7);
  EXPECT_EQ(corner.height, -8);
}
