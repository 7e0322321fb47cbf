// SADs of candidates along a row, and the best of them.
#include "reference/measures/sad_batch.h"

#include <climits>

#include "blocks.h"
#include "reference/measures/sad.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

using Batch = zvpStatus (*)(const std::uint8_t*, std::int32_t, const std::uint8_t*, std::int32_t, std::uint16_t*,
                            std::int32_t);
using BatchIndex = zvpStatus (*)(const std::uint8_t*, std::int32_t, const std::uint8_t*, std::int32_t, std::uint16_t*,
                                 std::int32_t, std::int32_t*);
struct Member {
  int size;
  Batch batch;
  BatchIndex batchIndex;  // null: there is none
};
constexpr Member members[] = {{16, zvpiSAD16x16xN_8u16u_C1R, zvpiSAD16x16xNI_8u16u_C1R},
                              {8, zvpiSAD8x8xN_8u16u_C1R, zvpiSAD8x8xNI_8u16u_C1R},
                              {4, zvpiSAD4x4xN_8u16u_C1R, zvpiSAD4x4xNI_8u16u_C1R},
                              {2, zvpiSAD2x2xN_8u16u_C1R, nullptr}};

}  // namespace

TEST(SadBatch, MatchesTheModelAndItsReach) {
  Rng rng(31);
  for (const auto& member : members)
    for (int round = 0; round < rounds(400); ++round) {
      const int count = rng.range(8, 60), measured = count & -8;
      const auto src = makeBlock<std::uint8_t>(rng, member.size, member.size);
      const auto ref = makeBlock<std::uint8_t>(rng, member.size - 1 + measured, member.size);
      // An odd address every other time.
      GuardedBytes sads(std::size_t(2 * measured + round % 2), Guard::Behind);
      auto* const out = reinterpret_cast<std::uint16_t*>(sads.data() + round % 2);
      const auto expected =
          reference::measures::sadBatch(src.data(), src.step(), ref.data(), ref.step(), member.size, count);
      ASSERT_EQ(expected.size(), std::size_t(measured));
      ASSERT_EQ(member.batch(src.data(), std::int32_t(src.step()), ref.data(), std::int32_t(ref.step()), out, count),
                zvpStatusOk);
      ASSERT_TRUE(sameBytes(out, expected.data(), 2 * expected.size())) << member.size << " count " << count;
      if (member.batchIndex == nullptr) continue;
      std::memset(out, 0xee, 2 * expected.size());
      GuardedArray<std::int32_t> index(1, rng.guard());
      ASSERT_EQ(member.batchIndex(src.data(), std::int32_t(src.step()), ref.data(), std::int32_t(ref.step()), out,
                                  count, index.data()),
                zvpStatusOk);
      ASSERT_TRUE(sameBytes(out, expected.data(), 2 * expected.size())) << member.size << " count " << count;
      const std::int32_t best = reference::measures::indexOfBest(expected);
      ASSERT_TRUE(sameArray(index.data(), &best, 1)) << member.size << " count " << count;
    }
}

TEST(SadBatch, ResultsBehindTheWholeGroupsStay) {
  const std::vector<std::uint8_t> zero(16 * 64);
  for (const auto& member : members)
    for (const int count : {8, 13, 15}) {
      std::vector<std::uint16_t> sads(16, 4711);
      ASSERT_EQ(member.batch(zero.data(), 16, zero.data(), 64, sads.data(), count), zvpStatusOk);
      for (int i = 0; i < 16; ++i) EXPECT_EQ(sads[std::size_t(i)], i < 8 ? 0 : 4711) << member.size << ' ' << count;
    }
}

TEST(SadBatch, ShortCountsAreRefused) {
  const std::vector<std::uint8_t> zero(16 * 64);
  for (const auto& member : members)
    for (const int count : {7, 5, 1, 0, -1, -8, -9, INT_MIN, INT_MIN + 8}) {
      std::uint16_t sad = 4711;
      std::int32_t index = 4712;
      EXPECT_EQ(member.batch(zero.data(), 16, zero.data(), 64, &sad, count), zvpStatusBadSize);
      if (member.batchIndex != nullptr) {
        EXPECT_EQ(member.batchIndex(zero.data(), 16, zero.data(), 64, &sad, count, &index), zvpStatusBadSize);
      }
      EXPECT_EQ(sad, 4711);
      EXPECT_EQ(index, 4712);
    }
}

TEST(SadBatch, NullPointersAreRefusedBeforeTheCount) {
  const std::vector<std::uint8_t> zero(16 * 64);
  for (const auto& member : members)
    for (const int count : {8, 0})
      for (int present = 0; present < 16; ++present) {
        std::vector<std::uint16_t> sads(8, 4711);
        std::int32_t index = 4712;
        const auto* const src = present & 1 ? zero.data() : nullptr;
        const auto* const ref = present & 2 ? zero.data() : nullptr;
        auto* const out = present & 4 ? sads.data() : nullptr;
        if ((present & 7) != 7) {
          EXPECT_EQ(member.batch(src, 16, ref, 64, out, count), zvpStatusNullPointer);
        }
        if (member.batchIndex != nullptr && present != 15) {
          EXPECT_EQ(member.batchIndex(src, 16, ref, 64, out, count, present & 8 ? &index : nullptr),
                    zvpStatusNullPointer);
        }
        // Without a place for the index the candidates are not measured either.
        for (const std::uint16_t sad : sads) EXPECT_EQ(sad, 4711);
        EXPECT_EQ(index, 4712);
      }
}

TEST(SadBatch, TheLowestOfEqualCandidatesWins) {
  Rng rng(32);
  for (const auto& member : members) {
    if (member.batchIndex == nullptr) continue;
    for (int round = 0; round < rounds(200); ++round) {
      // Columns repeat after 3 to 11, so do the sums.
      const int period = rng.range(3, 11), count = 8 * rng.range(2, 8), width = member.size - 1 + count;
      std::vector<std::uint8_t> src(std::size_t(member.size * member.size)), ref(std::size_t(member.size * width));
      for (auto& sample : src) sample = std::uint8_t(rng.next());
      for (int y = 0; y < member.size; ++y)
        for (int x = 0; x < width; ++x)
          ref[std::size_t(y * width + x)] =
              x < period ? std::uint8_t(rng.next()) : ref[std::size_t(y * width + x - period)];
      std::vector<std::uint16_t> sads(std::size_t(count), 0);
      std::int32_t index = -2;
      ASSERT_EQ(member.batchIndex(src.data(), member.size, ref.data(), width, sads.data(), count, &index), zvpStatusOk);
      int best = 0;
      for (int i = 1; i < count; ++i)
        if (sads[std::size_t(i)] < sads[std::size_t(best)]) best = i;
      ASSERT_LT(best, period);
      ASSERT_EQ(index, best);
    }
  }
}

TEST(SadBatch, WhiteAgainstBlackFits) {
  const std::vector<std::uint8_t> black(16 * 16, 0), white(16 * 32, 255);
  for (const auto& member : members) {
    std::vector<std::uint16_t> sads(16);
    ASSERT_EQ(member.batch(black.data(), 16, white.data(), 32, sads.data(), 16), zvpStatusOk);
    for (const std::uint16_t sad : sads) EXPECT_EQ(sad, 255 * member.size * member.size);
    if (member.batchIndex == nullptr) continue;
    std::int32_t index = -2;
    ASSERT_EQ(member.batchIndex(black.data(), 16, white.data(), 32, sads.data(), 16, &index), zvpStatusOk);
    EXPECT_EQ(index, 0);
  }
}
