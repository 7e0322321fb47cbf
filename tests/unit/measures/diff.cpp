// Residual blocks.
#include "reference/measures/diff.h"

#include "blocks.h"
#include "reference/measures/sad.h"
#include "support/compare.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

template <class T>
struct Member {
  const char* name;
  zvpStatus (*call)(const T*, std::int32_t, const T*, std::int32_t, std::int16_t*, std::int32_t);
  int size;
};
constexpr Member<std::uint8_t> members8u[] = {{"zvpiSub4x4_8u16s_C1R", zvpiSub4x4_8u16s_C1R, 4},
                                              {"zvpiSub8x8_8u16s_C1R", zvpiSub8x8_8u16s_C1R, 8},
                                              {"zvpiSub16x16_8u16s_C1R", zvpiSub16x16_8u16s_C1R, 16}};
constexpr Member<std::uint16_t> members16u[] = {{"zvpiSub4x4_16u16s_C1R", zvpiSub4x4_16u16s_C1R, 4},
                                                {"zvpiSub8x8_16u16s_C1R", zvpiSub8x8_16u16s_C1R, 8}};

// What a destination must hold after the call: the residual in its place, the gaps between the rows as they were.
std::vector<std::uint8_t> withResidual(GuardedPlane<std::int16_t>& dst, const std::vector<std::int16_t>& residual) {
  std::vector<std::uint8_t> bytes = dst.snapshot();
  const std::ptrdiff_t origin = reinterpret_cast<const std::uint8_t*>(dst.data()) - dst.bytes().data();
  for (int y = 0; y < dst.height(); ++y)
    std::memcpy(bytes.data() + origin + y * dst.step(), &residual[std::size_t(y * dst.width())],
                std::size_t(2 * dst.width()));
  return bytes;
}

template <class T, class Call>
void expectResidual(const char* name, int size, std::uint64_t seed, Call call) {
  Rng rng(seed);
  for (int round = 0; round < rounds(500); ++round) {
    const auto a = makeBlock<T>(rng, size, size), b = makeBlock<T>(rng, size, size);
    const std::ptrdiff_t dstStep = rng.step(2 * size, true);
    GuardedPlane<std::int16_t> dst(size, size, dstStep, rng.guard());
    fill(dst, rng, Style::Uniform, -32768, 32767);
    std::vector<std::int16_t> residual(std::size_t(size * size));
    reference::measures::subtract(a.data(), a.step(), b.data(), b.step(), residual.data(), size, size);
    const auto expected = withResidual(dst, residual);
    ASSERT_EQ(call(a, b, dst), zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected)) << name << " round " << round;
  }
}

}  // namespace

TEST(Diff, ResidualMatchesTheModel) {
  const auto run = [](const auto& member, auto sample, std::uint64_t seed) {
    expectResidual<decltype(sample)>(member.name, member.size, seed, [&](const auto& a, const auto& b, auto& dst) {
      return member.call(a.data(), std::int32_t(a.step()), b.data(), std::int32_t(b.step()), dst.data(),
                         std::int32_t(dst.step()));
    });
  };
  for (const auto& member : members8u) run(member, std::uint8_t(), 41);
  for (const auto& member : members16u) run(member, std::uint16_t(), 42);
}

TEST(Diff, ResidualAndSadMatchTheModels) {
  expectResidual<std::uint8_t>("zvpiSubSAD8x8_8u16s_C1R", 8, 43, [](const auto& a, const auto& b, auto& dst) {
    GuardedArray<std::int32_t> sad(1, Guard::Behind);
    const zvpStatus status = zvpiSubSAD8x8_8u16s_C1R(a.data(), std::int32_t(a.step()), b.data(), std::int32_t(b.step()),
                                                     dst.data(), std::int32_t(dst.step()), sad.data());
    const auto expected = std::int32_t(reference::measures::sad(a.data(), a.step(), b.data(), b.step(), 8, 8, 0));
    EXPECT_TRUE(sameArray(sad.data(), &expected, 1));
    return status;
  });
}

TEST(Diff, ResidualsOf16BitsWrap) {
  const std::vector<std::uint16_t> low(64, 0), high(64, 65535), middle(64, 32768);
  std::vector<std::int16_t> dst(64);
  ASSERT_EQ(zvpiSub8x8_16u16s_C1R(high.data(), 16, low.data(), 16, dst.data(), 16), zvpStatusOk);
  for (const std::int16_t value : dst) EXPECT_EQ(value, -1);
  ASSERT_EQ(zvpiSub8x8_16u16s_C1R(low.data(), 16, high.data(), 16, dst.data(), 16), zvpStatusOk);
  for (const std::int16_t value : dst) EXPECT_EQ(value, 1);
  ASSERT_EQ(zvpiSub8x8_16u16s_C1R(low.data(), 16, middle.data(), 16, dst.data(), 16), zvpStatusOk);
  for (const std::int16_t value : dst) EXPECT_EQ(value, -32768);
}

TEST(Diff, ResidualOf16BitsMayTakeThePlaceOfASource) {
  Rng rng(44);
  for (const auto& member : members16u)
    for (int round = 0; round < rounds(200); ++round) {
      const auto fixed = makeBlock<std::uint16_t>(rng, member.size, member.size);
      const std::ptrdiff_t step = rng.step(2 * member.size, true);
      GuardedPlane<std::uint16_t> place(member.size, member.size, step, rng.guard());
      fill(place, rng, anyStyle(rng), 0, 65535);
      std::vector<std::int16_t> residual(std::size_t(member.size * member.size));
      const bool first = rng.chance(2);
      const auto& a = first ? place : fixed;
      const auto& b = first ? fixed : place;
      reference::measures::subtract(a.data(), a.step(), b.data(), b.step(), residual.data(), member.size, member.size);
      ASSERT_EQ(member.call(a.data(), std::int32_t(a.step()), b.data(), std::int32_t(b.step()),
                            reinterpret_cast<std::int16_t*>(place.data()), std::int32_t(place.step())),
                zvpStatusOk);
      for (int y = 0; y < member.size; ++y)
        for (int x = 0; x < member.size; ++x)
          ASSERT_EQ(std::int16_t(place.get(x, y)), residual[std::size_t(y * member.size + x)]);
    }
}

TEST(Diff, EqualBlocksGiveZero) {
  std::uint8_t block[64];
  for (int i = 0; i < 64; ++i) block[i] = std::uint8_t(37 * i);
  std::vector<std::int16_t> dst(64, 5);
  std::int32_t sad = 5;
  ASSERT_EQ(zvpiSubSAD8x8_8u16s_C1R(block, 8, block, 8, dst.data(), 16, &sad), zvpStatusOk);
  EXPECT_EQ(sad, 0);
  for (const std::int16_t value : dst) EXPECT_EQ(value, 0);
}

TEST(Diff, NullPointersAreRefused) {
  const auto refused = [](const auto& member, auto sample) {
    expectNullsRefused<decltype(sample), std::int16_t>(
        member.name, [&](auto a, auto b, auto dst) { return member.call(a, 0, b, 0, dst, 0); });
  };
  for (const auto& member : members8u) refused(member, std::uint8_t(1));
  for (const auto& member : members16u) refused(member, std::uint16_t(1));
  const std::uint8_t sample = 1;
  std::int16_t dst = 77;
  std::int32_t sad = 78;
  for (int present = 0; present < 15; ++present)
    EXPECT_EQ(zvpiSubSAD8x8_8u16s_C1R(present & 1 ? &sample : nullptr, 0, present & 2 ? &sample : nullptr, 0,
                                      present & 4 ? &dst : nullptr, 0, present & 8 ? &sad : nullptr),
              zvpStatusNullPointer);
  EXPECT_EQ(dst, 77);
  EXPECT_EQ(sad, 78);
}
