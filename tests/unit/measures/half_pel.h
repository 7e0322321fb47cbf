// What the tests of SAD and SSD at half-pel precision share.
#pragma once

#include <gtest/gtest.h>

#include "blocks.h"
#include "support/compare.h"
#include "zvpvc.h"

namespace zvptest {

template <class T>
struct HalfPelMember {
  const char* name;
  zvpStatus (*call)(const T*, std::int32_t, const T*, std::int32_t, std::int32_t*, std::int32_t);
  int width, height;
};

// All values of mcType, random blocks, against model(src, srcStep, ref, refStep, width, height, mcType).
template <class T, class Model>
void expectLikeModel(const HalfPelMember<T>& member, std::uint64_t seed, Model model) {
  Rng rng(seed);
  for (int round = 0; round < rounds(60); ++round)
    for (int mcType = 0; mcType < 16; ++mcType) {
      const auto src = makeBlock<T>(rng, member.width, member.height);
      const auto ref = makeBlock<T>(rng, member.width, member.height, halfPelMargin<T>(mcType));
      GuardedArray<std::int32_t> result(1, rng.guard());
      ASSERT_EQ(member.call(src.data(), std::int32_t(src.step()), ref.data(), std::int32_t(ref.step()), result.data(),
                            mcType),
                zvpStatusOk);
      const auto expected =
          std::int32_t(model(src.data(), src.step(), ref.data(), ref.step(), member.width, member.height, mcType));
      ASSERT_TRUE(sameArray(result.data(), &expected, 1)) << member.name << " mcType " << mcType << " round " << round;
    }
}

// Means of four depend on the two sums along the rows alone: for bytes, all pairs of sums are tried.
template <class Model>
void expectAllPairsOfSums(const HalfPelMember<std::uint8_t>& member, Model model) {
  std::uint8_t src[16 * 16] = {}, ref[17 * 17];
  for (int upper = 0; upper <= 510; ++upper)
    for (int lower = 0; lower <= 510; ++lower) {
      for (int y = 0; y <= member.height; ++y)
        for (int x = 0; x <= member.width; ++x) {
          const int sum = y % 2 == 0 ? upper : lower, part = sum / 3 <= 255 && sum - sum / 3 <= 255 ? sum / 3 : sum / 2;
          ref[y * 17 + x] = std::uint8_t(x % 2 == 0 ? part : sum - part);
        }
      std::int32_t result = -1;
      ASSERT_EQ(member.call(src, 16, ref, 17, &result, 12), zvpStatusOk);
      const int mean = (upper + lower + 2) >> 2;  // at every position, whichever row is above
      ASSERT_EQ(result, member.width * member.height * model(mean)) << upper << ' ' << lower;
    }
}

template <class T>
void expectNullRefused(const HalfPelMember<T>& member) {
  expectNullsRefused<T, std::int32_t>(
      member.name, [&](auto src, auto ref, auto result) { return member.call(src, 0, ref, 0, result, 0); });
}

// Blocks equal to the reference, a flat reference at the diagonal, halves that round up.
template <class T>
void expectWorkedExamples(const HalfPelMember<T>& member, int differenceOfOne) {
  constexpr int step = 17;
  T src[step * 17], ref[step * 17];
  const auto run = [&](int mcType) {
    std::int32_t result = -1;
    EXPECT_EQ(member.call(src, step * int(sizeof(T)), ref, step * int(sizeof(T)), &result, mcType), zvpStatusOk);
    return result;
  };
  const auto set = [](T* block, auto value) {
    for (int y = 0; y < 17; ++y)
      for (int x = 0; x < 17; ++x) block[y * step + x] = T(value(x, y));
  };
  const int all = member.width * member.height;
  set(src, [](int x, int y) { return 3 * x + 5 * y; });
  std::copy(src, src + step * 17, ref);
  EXPECT_EQ(run(0), 0) << member.name;
  for (const int value : {0, 1, 77, 254, 255}) {
    set(src, [=](int, int) { return value; });
    set(ref, [=](int, int) { return value; });
    for (const int mcType : {0, 4, 8, 12}) EXPECT_EQ(run(mcType), 0) << member.name << ' ' << value;
  }
  set(src, [](int, int) { return 11; });
  set(ref, [](int, int y) { return y % 2 == 0 ? 10 : 11; });
  EXPECT_EQ(run(4), 0) << member.name;   // 10 over 11 is 11
  EXPECT_EQ(run(12), 0) << member.name;  // 10, 10, 11, 11 give 11
  EXPECT_EQ(run(0), all / 2 * differenceOfOne) << member.name;
  EXPECT_EQ(run(8), all / 2 * differenceOfOne) << member.name;
  set(ref, [](int x, int) { return x % 2 == 0 ? 10 : 11; });
  EXPECT_EQ(run(8), 0) << member.name;
}

}  // namespace zvptest
