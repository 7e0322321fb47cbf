// DV stores: all members against the model, what they read and write, and their ways with null pointers.
#include "reference/dv/store.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "support/compare.h"
#include "support/dv_segment.h"
#include "support/dv_stores.h"
#include "support/placed.h"

using namespace zvptest;
using reference::dv::Chroma;
using reference::dv::Size;
using std::int16_t;
using std::int32_t;
using std::uint8_t;

namespace {

bool isHalves(const DvStore& member) { return member.chroma == Chroma::EvenHalf100; }
int width(const DvStore& member) { return reference::dv::storedWidth(member.chroma, member.size); }
int height(const DvStore& member) { return reference::dv::storedHeight(member.chroma, member.size); }

// The elements from the first that a member reads of a macroblock to the last.
std::size_t reachOf(const DvStore& member) {
  const std::size_t lastBlock = member.size == Size::Eighth ? 1 : member.size == Size::From4x4 ? 16 : 64;
  return isHalves(member) ? 5 * 512 : 320 + lastBlock;
}

std::vector<int16_t> randomSource(std::size_t count, Rng& rng) {
  const int limit = rng.pick<int>({4, 128, 140, 300, 32768});
  return randomValues<int16_t>(count, rng, anyStyle(rng), -limit, limit - 1);
}

// Five macroblocks in memory of their own, and places for their pixels.
struct Call {
  const DvStore& member;
  std::vector<std::vector<int16_t>> values;
  std::vector<Placed<int16_t>> sources;
  std::vector<GuardedPlane<uint8_t>> planes;
  std::vector<int16_t*> src;
  std::vector<uint8_t*> dst;
  int32_t step;

  Call(const DvStore& m, Rng& rng) : member(m) {
    const int stored = member.count;
    step = member.hasStep ? int32_t(rng.step(2 * width(member), true)) : 2 * width(member);
    for (int i = 0; i < (isHalves(member) ? 1 : stored); ++i) {
      values.push_back(randomSource(reachOf(member), rng));
      sources.emplace_back(values.back(), rng);
      sources.back().readOnly();
      src.push_back(sources.back().data());
    }
    for (int i = 0; i < stored; ++i) {
      planes.emplace_back(2 * width(member), height(member), step, rng.guard());
      fill(planes.back(), rng, Style::Uniform, 0, 255);
      dst.push_back(planes.back().data());
    }
  }
  // Room behind what the member reads, so that the model may look at whole blocks.
  std::vector<int16_t> blocksOf(int i) const {
    auto blocks = values[isHalves(member) ? 0 : std::size_t(i)];
    if (isHalves(member)) blocks.erase(blocks.begin(), blocks.begin() + i / 2 * 512);
    blocks.resize(512);
    return blocks;
  }
  std::vector<std::vector<uint8_t>> snapshots() const {
    std::vector<std::vector<uint8_t>> all;
    for (const auto& plane : planes) all.push_back(plane.snapshot());
    return all;
  }
  // The planes with the macroblocks before `end` stored.
  std::vector<std::vector<uint8_t>> expected(int end) {
    std::vector<std::vector<uint8_t>> all;
    for (int i = 0; i < member.count; ++i) {
      GuardedPlane<uint8_t>& plane = planes[std::size_t(i)];
      const auto before = plane.snapshot();
      if (i < end) {
        const auto pixels = dvStored(member, i, blocksOf(i).data());
        for (int y = 0; y < height(member); ++y)
          for (int x = 0; x < 2 * width(member); ++x)
            plane.set(x, y, pixels[std::size_t(y * 2 * width(member) + x)]);
      }
      all.push_back(plane.snapshot());
      std::memcpy(plane.bytes().data(), before.data(), before.size());
    }
    return all;
  }
  zvpStatus run() { return member.call(src.data(), dst.data(), step); }
};

void expectSame(const std::vector<std::vector<uint8_t>>& actual, const std::vector<std::vector<uint8_t>>& expected) {
  for (std::size_t i = 0; i < actual.size(); ++i) ASSERT_TRUE(sameBytes(actual[i], expected[i])) << "macroblock " << i;
}

const DvStore& storeNamed(const std::string& part) {
  for (const DvStore& member : dvStores())
    if (std::string(member.name).find("zvpiYCrCb" + part + "_16s8u") == 0) return member;
  throw std::runtime_error("no member " + part);
}

// Stores one macroblock, the first of five, into rows without gaps.
std::vector<uint8_t> storeOne(const std::string& name, std::vector<int16_t>& blocks) {
  const DvStore& member = storeNamed(name);
  std::vector<uint8_t> pixels(std::size_t(2 * width(member) * height(member))), rest(pixels);
  std::vector<int16_t*> src(5, blocks.data());
  std::vector<uint8_t*> dst(10, rest.data());
  dst[0] = pixels.data();
  EXPECT_EQ(member.call(src.data(), dst.data(), 2 * width(member)), zvpStatusOk);
  return pixels;
}

}  // namespace

TEST(DvStore, AllMembersMatchTheModel) {
  Rng rng(1);
  for (const DvStore& member : dvStores())
    for (int round = 0; round < rounds(120); ++round) {
      Call call(member, rng);
      const auto expected = call.expected(member.count);
      ASSERT_EQ(call.run(), zvpStatusOk) << member.name;
      expectSame(call.snapshots(), expected);
      if (HasFatalFailure()) FAIL() << member.name << " step " << call.step;
    }
}

// Blocks 64 and 192 of 4:2:2, and all but the first elements of small blocks, may be anything: nobody reads them.
TEST(DvStore, WhatIsNotReadHasNoEffect) {
  Rng rng(2);
  for (const DvStore& member : dvStores()) {
    if (member.chroma != Chroma::C422 && member.size != Size::Eighth && member.size != Size::From4x4) continue;
    auto blocks = randomSource(384, rng);
    const std::size_t used = member.size == Size::Eighth ? 1 : member.size == Size::From4x4 ? 16 : 64;
    auto others = blocks;
    for (std::size_t i = 0; i < 384; ++i) {
      const bool unused = member.chroma == Chroma::C422 && (i / 64 == 1 || i / 64 == 3);
      if (unused || i % 64 >= used) others[i] = int16_t(rng.next());
    }
    std::string name = member.name;
    name = name.substr(9, name.rfind("_16s8u") - 9);
    EXPECT_EQ(storeOne(name, blocks), storeOne(name, others)) << member.name;
  }
}

TEST(DvStore, SamplesAreClippedExactly) {
  for (const DvStore& member : dvStores())
    for (const auto& [value, stored] : std::vector<std::pair<int, int>>{
             {126, 254}, {127, 255}, {128, 255}, {129, 255}, {32767, 255}, {0, 128}, {-1, 127}, {-127, 1},
             {-128, 0}, {-129, 0}, {-32768, 0}}) {
      std::vector<int16_t> blocks(5 * 512, int16_t(value));
      std::string name = member.name;
      const auto pixels = storeOne(name.substr(9, name.rfind("_16s8u") - 9), blocks);
      EXPECT_EQ(pixels, std::vector<uint8_t>(pixels.size(), uint8_t(stored))) << member.name << " " << value;
    }
}

TEST(DvStore, MeansAreTruncatedTowardZero) {
  for (const char* format : {"422", "411", "420"}) {
    const std::string prefix = std::string(format) + "ToYCbCr422_ZoomOut";
    for (const auto& [sum, half, quarter] : std::vector<std::array<int, 3>>{
             {-1, 128, 128}, {-3, 128, 128}, {-4, 127, 128}, {-15, 125, 128}, {-16, 124, 127}, {3, 128, 128},
             {4, 129, 128}, {15, 131, 128}, {16, 132, 129}}) {
      std::vector<int16_t> blocks(384);
      for (const std::size_t block : {0u, 256u, 320u}) {
        blocks[block] = int16_t(sum - 7);
        blocks[block + 9] = 7;
      }
      auto pixels = storeOne(prefix + "2_5MBDV", blocks);
      EXPECT_EQ(pixels[0], half) << sum;
      EXPECT_EQ(pixels[1], half) << sum;
      EXPECT_EQ(pixels[3], half) << sum;
      pixels = storeOne(prefix + "4_5MBDV", blocks);
      EXPECT_EQ(pixels[0], quarter) << sum;
      EXPECT_EQ(pixels[1], quarter) << sum;
      EXPECT_EQ(pixels[3], quarter) << sum;
    }
  }
}

// The places of the blocks, by a block number in every sample: 10 for the first and so on.
TEST(DvStore, BlocksStandAsInTheDrawings) {
  std::vector<int16_t> blocks(5 * 512);
  for (std::size_t i = 0; i < blocks.size(); ++i) blocks[i] = int16_t(int(i / 64 % 8 + 1) * 10 - 128);
  const auto row = [](std::initializer_list<int> luma, int pixelsEach, int cb, int cr) {
    std::vector<uint8_t> bytes;
    for (const int y : luma)
      for (int i = 0; i < pixelsEach; ++i) {
        bytes.push_back(uint8_t(y));
        bytes.push_back(uint8_t(bytes.size() % 4 == 1 ? cb : cr));
      }
    return bytes;
  };
  const auto rows = [](const std::vector<uint8_t>& upper, const std::vector<uint8_t>& lower, int each) {
    std::vector<uint8_t> bytes;
    for (int i = 0; i < each; ++i) bytes.insert(bytes.end(), upper.begin(), upper.end());
    for (int i = 0; i < each && !lower.empty(); ++i) bytes.insert(bytes.end(), lower.begin(), lower.end());
    return bytes;
  };
  const struct {
    const char* suffix;
    int size;
  } sizes[] = {{"5MBDV", 8}, {"ZoomOut2_5MBDV", 4}, {"ZoomOut4_5MBDV", 2}, {"ZoomOut8_5MBDV", 1}};
  for (const auto& s : sizes) {
    EXPECT_EQ(storeOne(std::string("422ToYCbCr422_") + s.suffix, blocks),
              rows(row({10, 30}, s.size, 60, 50), {}, s.size));
    EXPECT_EQ(storeOne(std::string("411ToYCbCr422_") + s.suffix, blocks),
              rows(row({10, 20, 30, 40}, s.size, 60, 50), {}, s.size));
    const auto square = rows(row({10, 20}, s.size, 60, 50), row({30, 40}, s.size, 60, 50), s.size);
    EXPECT_EQ(storeOne(std::string("420ToYCbCr422_") + s.suffix, blocks), square);
    std::string edge = s.suffix;
    edge.replace(edge.find("5MB"), 3, "Edge");
    EXPECT_EQ(storeOne("411ToYCbCr422_" + edge, blocks), square);
  }
  EXPECT_EQ(storeOne("422ToYCbCr422_8x4x5MB_DV", blocks), rows(row({10, 30}, 4, 60, 50), {}, 4));
  EXPECT_EQ(storeOne("411ToYCbCr422_16x4x5MB_DV", blocks), rows(row({10, 20, 30, 40}, 4, 60, 50), {}, 4));
  const auto square = rows(row({10, 20}, 4, 60, 50), row({30, 40}, 4, 60, 50), 4);
  EXPECT_EQ(storeOne("411ToYCbCr422_8x8MB_DV", blocks), square);
  EXPECT_EQ(storeOne("420ToYCbCr422_8x8x5MB_DV", blocks), square);

  std::vector<uint8_t> even(8 * 32), odd(8 * 32), rest(8 * 32);
  std::vector<uint8_t*> dst(10, rest.data());
  dst[8] = even.data();
  dst[9] = odd.data();
  EXPECT_EQ(zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(blocks.data(), dst.data(), 32), zvpStatusOk);
  EXPECT_EQ(even, rows(row({10, 20}, 8, 70, 50), {}, 8));
  EXPECT_EQ(odd, rows(row({30, 40}, 8, 80, 60), {}, 8));
}

TEST(DvStore, ChromaOf411IsInterpolatedToTheRight) {
  std::vector<int16_t> blocks(384);
  const int16_t cb[8] = {-5, -6, 8, 11, 100, 101, -128, 40};
  std::copy(cb, cb + 8, blocks.begin() + 320);
  const auto chroma = [](const std::vector<uint8_t>& pixels, std::size_t first, int count) {
    std::vector<int> samples;
    for (int i = 0; i < count; ++i) samples.push_back(pixels[first + 4 * std::size_t(i) + 1] - 128);
    return samples;
  };
  EXPECT_EQ(chroma(storeOne("411ToYCbCr422_5MBDV", blocks), 0, 16),
            (std::vector<int>{-5, -5, -6, 1, 8, 9, 11, 55, 100, 100, 101, -13, -128, -44, 40, 40}));
  const auto edge = storeOne("411ToYCbCr422_EdgeDV", blocks);
  EXPECT_EQ(chroma(edge, 0, 8), (std::vector<int>{-5, -5, -6, 1, 8, 9, 11, 11}));
  EXPECT_EQ(chroma(edge, 8 * 32, 8), (std::vector<int>{100, 100, 101, -13, -128, -44, 40, 40}));
}

// Blocks through the reduced transform and the members for 4x4 blocks, or through the transform and ZoomOut2.
TEST(DvStore, FourByFourBlocksComeOutAsAtHalfSize) {
  Rng rng(3);
  const std::pair<const char*, const char*> pairs[] = {
      {"422ToYCbCr422_8x4x5MB_DV", "422ToYCbCr422_ZoomOut2_5MBDV"},
      {"411ToYCbCr422_16x4x5MB_DV", "411ToYCbCr422_ZoomOut2_5MBDV"},
      {"411ToYCbCr422_8x8MB_DV", "411ToYCbCr422_ZoomOut2_EdgeDV"},
      {"420ToYCbCr422_8x8x5MB_DV", "420ToYCbCr422_ZoomOut2_5MBDV"}};
  for (const auto& [from4x4, half] : pairs)
    for (int round = 0; round < rounds(50); ++round) {
      auto blocks = randomValues<int16_t>(384, rng, anyStyle(rng), -100, 100);
      auto small = blocks;
      for (std::size_t i = 0; i < 384; i += 64) {
        zvpiDCT2x4x8Inv_16s_C1I(&blocks[i]);
        zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(&small[i]);
      }
      ASSERT_EQ(storeOne(from4x4, small), storeOne(half, blocks)) << half;
    }
}

TEST(DvStore, NullPointersInTheirOrder) {
  Rng rng(4);
  for (const DvStore& member : dvStores()) {
    Call call(member, rng);
    const auto before = call.snapshots();
    EXPECT_EQ(member.call(nullptr, call.dst.data(), call.step), zvpStatusNullPointer) << member.name;
    EXPECT_EQ(member.call(call.src.data(), nullptr, call.step), zvpStatusNullPointer) << member.name;
    expectSame(call.snapshots(), before);
    if (member.nulls == DvNulls::None) continue;
    for (int slot = 0; slot < member.count; ++slot) {
      if (!isHalves(member)) {
        Call source(member, rng);
        source.src[std::size_t(slot)] = nullptr;
        const auto expected = source.expected(slot);
        EXPECT_EQ(source.run(), member.nulls == DvNulls::Tested ? zvpStatusNullPointer : zvpStatusOk) << member.name;
        expectSame(source.snapshots(), expected);
      }
      if (member.nulls == DvNulls::Tested) {
        Call destination(member, rng);
        destination.dst[std::size_t(slot)] = nullptr;
        const auto expected = destination.expected(slot);
        EXPECT_EQ(destination.run(), zvpStatusNullPointer) << member.name;
        expectSame(destination.snapshots(), expected);
      }
    }
  }
}

TEST(DvStore, ThereAreTwentyOneMembers) { EXPECT_EQ(dvStores().size(), 21u); }
