// The 8x8 Hadamard sums against the model.
#include "reference/vc1/hadamard.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "support/compare.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::vc1;

namespace {

template <class T>
void expectSums(zvpStatus (*member)(const T*, std::int32_t, std::int16_t*, std::uint32_t*), int low, int high,
                int seed) {
  Rng rng{std::uint64_t(seed)};
  for (int round = 0; round < rounds(6000); ++round) {
    const std::ptrdiff_t step = rng.step(8 * sizeof(T), true);
    const Guard guard = rng.guard();
    GuardedPlane<T> src(8, 8, step, guard);
    const Style style = anyStyle(rng);
    const int divisor = rng.pick<int>({1, 8, 64});
    Values values(rng, style, low / divisor, high / divisor);
    std::int32_t samples[64];
    for (int i = 0; i < 64; ++i) {
      samples[i] = values.next();
      src.set(i % 8, i / 8, T(samples[i]));
    }
    std::vector<std::int16_t> wanted(64);
    const std::uint32_t wantedSum = model::hadamardSum(samples, wanted.data());
    Placed<std::int16_t> dst(std::vector<std::int16_t>(64, 99), rng);
    Placed<std::uint32_t> sum(std::vector<std::uint32_t>{77}, rng);
    src.bytes().makeReadOnly();
    ASSERT_EQ(member(src.data(), std::int32_t(step), dst.data(), sum.data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(dst.values().data(), wanted.data(), 64)) << "round " << round;
    ASSERT_EQ(sum.values()[0], wantedSum) << "round " << round;
  }
}

}  // namespace

TEST(Hadamard, WordsMatchTheModel) { expectSums(zvpiHadamard8x8Sum_VC1_16s, -32768, 32767, 51); }
TEST(Hadamard, BytesMatchTheModel) { expectSums(zvpiHadamard8x8Sum_VC1_8u16s, 0, 255, 52); }

TEST(Hadamard, ConstantBlocks) {
  for (const int v : {0, 1, -1, 511, -512, 512, 700}) {
    std::int16_t block[64], wanted[64] = {};
    std::fill(block, block + 64, std::int16_t(v));
    wanted[0] = std::int16_t(64 * v);  // -32768 for both -512 and 512
    std::uint32_t sum = 1;
    ASSERT_EQ(zvpiHadamard8x8Sum_VC1_16s(block, 16, block, &sum), zvpStatusOk);
    EXPECT_TRUE(sameArray(block, wanted, 64));
    EXPECT_EQ(sum, std::uint32_t(std::abs(wanted[0])));
  }
}

// A single sample of -32768 has it, or with its sign changed the same 16 bits, in all results.
TEST(Hadamard, LowestResultCountsInFull) {
  std::int16_t block[64] = {-32768}, dst[64];
  std::uint32_t sum = 0;
  ASSERT_EQ(zvpiHadamard8x8Sum_VC1_16s(block, 16, dst, &sum), zvpStatusOk);
  for (const auto y : dst) EXPECT_EQ(y, -32768);
  EXPECT_EQ(sum, 64u * 32768u);
}

TEST(Hadamard, NullPointersAreRefused) {
  std::int16_t dst[64] = {};
  const std::int16_t words[64] = {1};
  const std::uint8_t bytes[64] = {1};
  std::uint32_t sum = 5;
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_16s(nullptr, 16, dst, &sum), zvpStatusNullPointer);
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_16s(words, 16, nullptr, &sum), zvpStatusNullPointer);
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_16s(words, 16, dst, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_8u16s(nullptr, 8, dst, &sum), zvpStatusNullPointer);
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_8u16s(bytes, 8, nullptr, &sum), zvpStatusNullPointer);
  EXPECT_EQ(zvpiHadamard8x8Sum_VC1_8u16s(bytes, 8, dst, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(sum, 5u);
  for (const auto y : dst) EXPECT_EQ(y, 0);
}
