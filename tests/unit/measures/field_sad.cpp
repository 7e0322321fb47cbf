// Frame and field activity.
#include "reference/measures/field_sad.h"

#include "blocks.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

template <class T>
zvpStatus frameFieldSad(const T* src, std::ptrdiff_t step, std::int32_t* frame, std::int32_t* field) {
  if constexpr (sizeof(T) == 1)
    return zvpiFrameFieldSAD16x16_8u32s_C1R(src, std::int32_t(step), frame, field);
  else
    return zvpiFrameFieldSAD16x16_16s32s_C1R(src, std::int32_t(step), frame, field);
}

template <class T>
void expectLikeModel(std::uint64_t seed) {
  Rng rng(seed);
  for (int round = 0; round < rounds(1000); ++round) {
    const auto src = makeBlock<T>(rng, 16, 16);
    GuardedArray<std::int32_t> result(2, rng.guard());
    ASSERT_EQ(frameFieldSad(src.data(), src.step(), &result[0], &result[1]), zvpStatusOk);
    std::int32_t expected[2];
    reference::measures::frameFieldSad(src.data(), src.step(), expected[0], expected[1]);
    ASSERT_TRUE(sameArray(result.data(), expected, 2)) << "round " << round;
  }
}

// One bright row: it counts with each neighbour that it is compared with.
template <class T>
void expectWorkedExamples() {
  constexpr int low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
  for (int bright = 0; bright < 16; ++bright) {
    std::vector<T> block(256, T(low));
    for (int x = 0; x < 16; ++x) block[std::size_t(16 * bright + x)] = T(high);
    std::int32_t frame = -1, field = -1;
    ASSERT_EQ(frameFieldSad(block.data(), 16 * std::ptrdiff_t(sizeof(T)), &frame, &field), zvpStatusOk);
    const int inHalf = bright % 8;
    EXPECT_EQ(frame, 16 * (high - low) * (inHalf == 0 || inHalf == 7 ? 1 : 2)) << bright;
    EXPECT_EQ(field, 16 * (high - low) * (bright < 2 || bright > 13 ? 1 : 2)) << bright;
  }
  std::vector<T> halves(256, T(low));
  std::fill(halves.begin() + 128, halves.end(), T(high));  // a step between rows 7 and 8 only
  std::int32_t frame = -1, field = -1;
  ASSERT_EQ(frameFieldSad(halves.data(), 16 * std::ptrdiff_t(sizeof(T)), &frame, &field), zvpStatusOk);
  EXPECT_EQ(frame, 0);
  EXPECT_EQ(field, 2 * 16 * (high - low));
  std::vector<T> lines(256);
  for (int i = 0; i < 256; ++i) lines[std::size_t(i)] = T(i / 16 % 2 == 0 ? low : high);  // the two fields apart
  ASSERT_EQ(frameFieldSad(lines.data(), 16 * std::ptrdiff_t(sizeof(T)), &frame, &field), zvpStatusOk);
  EXPECT_EQ(frame, 14 * 16 * (high - low));
  EXPECT_EQ(field, 0);
}

template <class T>
void expectNullRefused() {
  const T sample = 1;
  std::int32_t frame = 77, field = 78;
  for (int present = 0; present < 7; ++present)
    EXPECT_EQ(frameFieldSad<T>(present & 1 ? &sample : nullptr, 0, present & 2 ? &frame : nullptr,
                               present & 4 ? &field : nullptr),
              zvpStatusNullPointer);
  EXPECT_EQ(frame, 77);
  EXPECT_EQ(field, 78);
}

}  // namespace

TEST(FieldSad, MatchesTheModel) {
  expectLikeModel<std::uint8_t>(71);
  expectLikeModel<std::int16_t>(72);
}

TEST(FieldSad, WorkedExamples) {
  expectWorkedExamples<std::uint8_t>();
  expectWorkedExamples<std::int16_t>();
}

TEST(FieldSad, NullPointersAreRefused) {
  expectNullRefused<std::uint8_t>();
  expectNullRefused<std::int16_t>();
}
