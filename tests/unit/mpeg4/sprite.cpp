// Sprite warping, global vectors and brightness against the models: blocks inside, across and far outside the sprite,
// by all numbers of points and all accuracies.
#include "reference/mpeg4/sprite.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

#include "support/compare.h"
#include "support/placed.h"
#include "zvpvc.h"

using namespace zvptest;
namespace model = reference::mpeg4;

namespace {

using Plane = GuardedPlane<std::uint8_t>;
using Points = std::array<std::int32_t, 4>;

constexpr std::size_t recordBytes = 280;

zvpRect rect(const model::Rect& r) { return {r.x, r.y, r.width, r.height}; }

// The arguments of zvpiWarpInit_MPEG4().
struct Setting {
  Points du = {}, dv = {};
  int points = 0, spriteType = 1, accuracy = 0, rounding = 0, quarterSample = 0, fcode = 1;
  model::Rect sprite = {0, 0, 64, 48}, vop = {0, 0, 64, 48};

  model::Warp warp() const {
    return {du.data(), dv.data(), points, spriteType, accuracy, rounding, quarterSample, fcode, sprite, vop};
  }
  zvpStatus init(void* memory, const std::int32_t* pDU, const std::int32_t* pDV) const {
    const zvpRect spriteRect = rect(sprite), vopRect = rect(vop);
    return zvpiWarpInit_MPEG4(memory, pDU, pDV, points, spriteType, accuracy, rounding, quarterSample, fcode,
                              &spriteRect, &vopRect);
  }
  zvpStatus init(void* memory) const { return init(memory, du.data(), dv.data()); }
};
std::ostream& operator<<(std::ostream& out, const Setting& s) {
  out << s.points << " points, type " << s.spriteType << ", accuracy " << s.accuracy << ", rounding " << s.rounding;
  out << ", sprite " << s.sprite.x << "," << s.sprite.y << " " << s.sprite.width << "x" << s.sprite.height;
  out << ", vop " << s.vop.x << "," << s.vop.y << " " << s.vop.width << "x" << s.vop.height;
  for (int i = 0; i < 4; ++i) out << " (" << s.du[std::size_t(i)] << "," << s.dv[std::size_t(i)] << ")";
  return out;
}

int anything(Rng& rng) { return int(rng.next()); }

Setting randomSetting(Rng& rng) {
  Setting s;
  s.points = rng.range(0, 4);
  s.spriteType = s.points == 4 || rng.chance(2) ? 1 : rng.pick<int>({2, 0, -1, 257});
  s.accuracy = rng.range(0, 3);
  s.rounding = rng.pick<int>({0, 1, 256});
  s.quarterSample = rng.pick<int>({0, 1, -256});
  s.fcode = rng.range(1, 7);
  const int largest = rng.pick<int>({3, 20, 70});
  s.sprite.width = rng.range(1, largest);
  s.sprite.height = rng.range(1, largest);
  s.vop.width = rng.chance(4) ? rng.range(1, 4) : rng.range(1, 400);
  s.vop.height = rng.chance(4) ? rng.range(1, 4) : rng.range(1, 400);
  for (std::int32_t* p : {&s.sprite.x, &s.sprite.y, &s.vop.x, &s.vop.y})
    *p = rng.chance(40) ? anything(rng) : rng.chance(2) ? 0 : rng.range(-30, 30);
  if (rng.chance(60)) s.vop.width = 0x7fffffff - rng.range(0, 3);
  if (rng.chance(60)) s.vop.height = rng.range(0x3fffffff, 0x40000002);
  const int reach = rng.pick<int>({1, 20, 200, 5000});
  const bool wild = rng.chance(20);
  for (Points* p : {&s.du, &s.dv})
    for (std::int32_t& d : *p) d = wild ? anything(rng) : rng.range(-reach, reach);
  return s;
}

// A record in guarded memory of exactly the size asked for, read-only once it is made.
class Record {
 public:
  Record(const Setting& setting, Rng& rng) {
    const int shift = rng.range(0, 15);
    const Guard guard = rng.guard();
    bytes_ = GuardedBytes(recordBytes + std::size_t(shift), guard);
    data_ = bytes_.data() + (guard == Guard::Before ? shift : 0);
    fill(data_, recordBytes, rng, Style::Uniform, 0, 255);
    const int given = std::max(setting.points, 1);
    Placed<std::int32_t> du({setting.du.begin(), setting.du.begin() + given}, rng);
    Placed<std::int32_t> dv({setting.dv.begin(), setting.dv.begin() + given}, rng);
    status = setting.init(data_, setting.points == 0 ? nullptr : du.readOnly().data(),
                          setting.points == 0 ? nullptr : dv.readOnly().data());
    bytes_.makeReadOnly();
  }
  const void* data() const { return data_; }
  zvpStatus status;

 private:
  GuardedBytes bytes_;
  std::uint8_t* data_ = nullptr;
};

Plane spritePlane(int width, int height, Rng& rng) {
  const std::ptrdiff_t step = rng.step(width, true);
  const Guard guard = rng.guard();
  Plane plane(width, height, step, guard);
  const Style style = anyStyle(rng);
  fill(plane, rng, style, 0, 255);
  plane.bytes().makeReadOnly();
  return plane;
}
Plane blockPlane(const model::Rect& block, Rng& rng) {
  const std::ptrdiff_t step = rng.step(block.width, true);
  const Guard guard = rng.guard();
  Plane plane(block.width, block.height, step, guard);
  fill(plane, rng, Style::Uniform, 0, 255);
  return plane;
}
model::Picture picture(const Plane& plane) { return {plane.data(), plane.step(), plane.width(), plane.height()}; }

// The plane's bytes with the block put in: what a call must leave.
std::vector<std::uint8_t> withBlock(const Plane& before, const std::vector<std::uint8_t>& block) {
  Plane copy(before.width(), before.height(), before.step(), Guard::Behind);
  const auto bytes = before.snapshot();
  std::memcpy(copy.bytes().data(), bytes.data(), bytes.size());
  for (int y = 0; y < copy.height(); ++y)
    for (int x = 0; x < copy.width(); ++x) copy.set(x, y, block[std::size_t(y * copy.width() + x)]);
  return copy.snapshot();
}

// A block that meets the sprite where the warp is slight, or lies anywhere; whole macroblocks above all.
model::Rect randomBlock(const model::Rect& around, int macroblock, Rng& rng) {
  model::Rect r = {0, 0, macroblock, macroblock};
  if (rng.chance(2)) {
    r.width = rng.range(1, 35);
    r.height = rng.range(1, 20);
  }
  const int margin = rng.pick<int>({0, 20, 300});
  r.x = rng.chance(60) ? anything(rng) : int(unsigned(around.x) + unsigned(rng.range(-margin, margin + around.width)));
  r.y = rng.chance(60) ? anything(rng) : int(unsigned(around.y) + unsigned(rng.range(-margin, margin + around.height)));
  return r;
}

void expectLuma(const Setting& s, const model::Rect& block, Rng& rng) {
  const model::Warp warp = s.warp();
  const Record record(s, rng);
  ASSERT_EQ(record.status, zvpStatusOk);
  const Plane sprite = spritePlane(s.sprite.width, s.sprite.height, rng);
  Plane dst = blockPlane(block, rng);
  std::vector<std::uint8_t> wanted(std::size_t(block.width * block.height));
  model::warpLuma(warp, picture(sprite), block, wanted.data());
  const auto expected = withBlock(dst, wanted);
  const zvpRect dstRect = rect(block);
  ASSERT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(sprite.data(), int(sprite.step()), dst.data(), int(dst.step()), &dstRect,
                                      record.data()),
            zvpStatusOk);
  ASSERT_TRUE(sameBytes(dst.snapshot(), expected))
      << s << " block " << block.x << "," << block.y << " " << block.width << "x" << block.height;
}

void expectChroma(const Setting& s, const model::Rect& block, Rng& rng) {
  const model::Warp warp = s.warp();
  const Record record(s, rng);
  ASSERT_EQ(record.status, zvpStatusOk);
  const Plane cb = spritePlane(warp.chroma.width, warp.chroma.height, rng);
  const Plane cr = spritePlane(warp.chroma.width, warp.chroma.height, rng);
  Plane dstCb = blockPlane(block, rng), dstCr = blockPlane(block, rng);
  std::vector<std::uint8_t> wanted(std::size_t(block.width * block.height));
  model::warpChroma(warp, picture(cb), block, wanted.data());
  const auto expectedCb = withBlock(dstCb, wanted);
  model::warpChroma(warp, picture(cr), block, wanted.data());
  const auto expectedCr = withBlock(dstCr, wanted);
  const zvpRect dstRect = rect(block);
  ASSERT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(cb.data(), int(cb.step()), cr.data(), int(cr.step()), dstCb.data(),
                                        int(dstCb.step()), dstCr.data(), int(dstCr.step()), &dstRect, record.data()),
            zvpStatusOk);
  const auto where = [&] {
    std::ostringstream text;
    text << s << " block " << block.x << "," << block.y << " " << block.width << "x" << block.height;
    return text.str();
  };
  ASSERT_TRUE(sameBytes(dstCb.snapshot(), expectedCb)) << "first plane, " << where();
  ASSERT_TRUE(sameBytes(dstCr.snapshot(), expectedCr)) << "second plane, " << where();
}

// Corners moved a little from where they are, so that blocks stay near the sprite.
Setting gentleSetting(int points, Rng& rng) {
  Setting s = randomSetting(rng);
  s.points = points;
  s.spriteType = points == 4 || rng.chance(2) ? 1 : 2;
  s.sprite = {rng.pick<int>({0, 5, -8}), 0, 64, 0};
  s.sprite.y = rng.pick<int>({0, -3, 6});
  s.sprite.height = rng.range(30, 60);
  s.vop = {s.sprite.x, s.sprite.y, s.sprite.width, s.sprite.height};
  for (Points* p : {&s.du, &s.dv})
    for (std::int32_t& d : *p) d = rng.range(-9, 9);
  return s;
}

}  // namespace

TEST(Sprite, RecordSize) {
  std::int32_t size = -1;
  EXPECT_EQ(zvpiWarpGetSize_MPEG4(nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiWarpGetSize_MPEG4(&size), zvpStatusOk);
  EXPECT_EQ(size, int(recordBytes));
}

TEST(Sprite, LumaMatchesTheModel) {
  Rng rng(1);
  for (int round = 0; round < rounds(6000); ++round) {
    const Setting s = randomSetting(rng);
    const model::Rect block = randomBlock(s.sprite, 16, rng);
    ASSERT_NO_FATAL_FAILURE(expectLuma(s, block, rng)) << "round " << round;
  }
}

TEST(Sprite, ChromaMatchesTheModel) {
  Rng rng(2);
  for (int round = 0; round < rounds(6000); ++round) {
    const Setting s = randomSetting(rng);
    const model::Rect block = randomBlock(s.warp().chroma, 8, rng);
    ASSERT_NO_FATAL_FAILURE(expectChroma(s, block, rng)) << "round " << round;
  }
}

TEST(Sprite, SlightWarpsMatchTheModel) {
  Rng rng(3);
  for (int round = 0; round < rounds(4000); ++round) {
    const Setting s = gentleSetting(round % 5, rng);
    const model::Rect luma = randomBlock(s.sprite, 16, rng);
    ASSERT_NO_FATAL_FAILURE(expectLuma(s, luma, rng)) << "round " << round;
    const model::Rect chroma = randomBlock(s.warp().chroma, 8, rng);
    ASSERT_NO_FATAL_FAILURE(expectChroma(s, chroma, rng)) << "round " << round;
  }
}

// Without warp or with a translation: past the last of all positions, at the lower right, come the first ones.
TEST(Sprite, BlocksAcrossTheLastPositionMatchTheModel) {
  Rng rng(9);
  for (int round = 0; round < rounds(2000); ++round) {
    Setting s = gentleSetting(round % 2, rng);
    const auto across = [&](model::Rect block) {
      const bool both = rng.chance(2), right = both || rng.chance(2);
      if (right) block.x = INT32_MAX - rng.range(0, 45);
      if (both || !right) block.y = INT32_MAX - rng.range(0, 45);
      return block;
    };
    const model::Rect luma = across(randomBlock(s.sprite, 16, rng));
    ASSERT_NO_FATAL_FAILURE(expectLuma(s, luma, rng)) << "round " << round;
    const model::Rect chroma = across(randomBlock(s.warp().chroma, 8, rng));
    ASSERT_NO_FATAL_FAILURE(expectChroma(s, chroma, rng)) << "round " << round;
  }
}

TEST(Sprite, LastPositionIsFollowedByTheFirst) {
  std::uint8_t sprite[8 * 8];
  for (int i = 0; i < 64; ++i) sprite[i] = std::uint8_t(3 * i);
  const zvpRect r = {INT32_MAX - 3, INT32_MAX - 2, 16, 16};  // four columns and three rows ahead of the end
  std::uint8_t expected[16 * 16];
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) expected[16 * y + x] = sprite[(y < 3 ? 56 : 0) + (x < 4 ? 7 : 0)];
  for (int points = 0; points <= 1; ++points) {
    Setting s;
    s.points = points;
    s.du = s.dv = {1, 0, 0, 0};  // half a sample, which makes no difference out here
    s.sprite = s.vop = {0, 0, 8, 8};
    alignas(16) std::uint8_t record[recordBytes];
    ASSERT_EQ(s.init(record), zvpStatusOk);
    std::uint8_t dst[2][16 * 16] = {};
    ASSERT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(sprite, 8, dst[0], 16, &r, record), zvpStatusOk);
    EXPECT_TRUE(sameBytes(dst[0], expected, sizeof expected)) << points << " points";
    s.sprite = {0, 0, 16, 16};
    ASSERT_EQ(s.init(record), zvpStatusOk);
    ASSERT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(sprite, 8, sprite, 8, dst[0], 16, dst[1], 16, &r, record), zvpStatusOk);
    EXPECT_TRUE(sameBytes(dst[0], expected, sizeof expected)) << points << " points";
    EXPECT_TRUE(sameBytes(dst[1], expected, sizeof expected)) << points << " points";
  }
}

TEST(Sprite, GlobalVectorMatchesTheModel) {
  Rng rng(4);
  for (int round = 0; round < rounds(10000); ++round) {
    Setting s = rng.chance(2) ? randomSetting(rng) : gentleSetting(0, rng);
    s.points = rng.range(0, 3);
    const bool wild = rng.chance(30);
    const int x = wild ? anything(rng) : rng.range(0, 700);
    const int y = wild ? anything(rng) : rng.range(0, 500);
    const Record record(s, rng);
    ASSERT_EQ(record.status, zvpStatusOk);
    std::int16_t wanted[2];
    model::globalVector(s.warp(), x, y, wanted);
    Placed<std::int16_t> mv({1111, 2222}, rng);
    ASSERT_EQ(zvpiCalcGlobalMV_MPEG4(x, y, mv.data(), record.data()), zvpStatusOk);
    ASSERT_TRUE(sameArray(mv.values().data(), wanted, 2)) << s << " at " << x << "," << y << " round " << round;
  }
}

TEST(Sprite, BrightnessOfEverySampleByEveryFactor) {
  for (int factor = -112; factor <= 1648; ++factor) {
    std::uint8_t row[256], wanted[256];
    for (int i = 0; i < 256; ++i) {
      row[i] = std::uint8_t(i);
      wanted[i] = model::brightened(std::uint8_t(i), factor);
    }
    ASSERT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 256, 256, 1, factor), zvpStatusOk);
    ASSERT_TRUE(sameBytes(row, wanted, 256)) << "factor " << factor;
  }
}

TEST(Sprite, BrightnessOfBlocks) {
  Rng rng(5);
  for (int round = 0; round < rounds(3000); ++round) {
    const model::Rect size = {0, 0, rng.range(1, 120), rng.range(1, 9)};
    const int factor = rng.range(-112, 1648);
    Plane plane = blockPlane(size, rng);
    std::vector<std::uint8_t> wanted;
    for (int y = 0; y < size.height; ++y)
      for (int x = 0; x < size.width; ++x) wanted.push_back(model::brightened(plane.get(x, y), factor));
    const auto expected = withBlock(plane, wanted);
    ASSERT_EQ(
        zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(plane.data(), int(plane.step()), size.width, size.height, factor),
        zvpStatusOk);
    ASSERT_TRUE(sameBytes(plane.snapshot(), expected)) << size.width << "x" << size.height << " factor " << factor;
  }
}

TEST(Sprite, BrightnessChecksInOrder) {
  std::uint8_t row[4] = {10, 128, 200, 255};
  const std::uint8_t before[4] = {10, 128, 200, 255};
  EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(nullptr, 4, 4, 1, 9999), zvpStatusNullPointer);
  EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(nullptr, 4, 4, 1, 0), zvpStatusNullPointer);
  for (const int factor : {-113, 1649, INT32_MIN, INT32_MAX})
    EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, 4, 1, factor), zvpStatusOutOfRange);
  EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, 4, 1, 0), zvpStatusOk);
  for (const int empty : {0, -1, INT32_MIN}) {
    EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, empty, 1, 100), zvpStatusOk);
    EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, 4, empty, 100), zvpStatusOk);
  }
  EXPECT_TRUE(sameBytes(row, before, 4));
  EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, 4, 1, 100), zvpStatusOk);
  const std::uint8_t doubled[4] = {20, 255, 255, 255};  // weight 2048
  EXPECT_TRUE(sameBytes(row, doubled, 4));
  EXPECT_EQ(zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(row, 4, 4, 1, -112), zvpStatusOk);
  const std::uint8_t black[4] = {0, 0, 0, 0};  // weight -123
  EXPECT_TRUE(sameBytes(row, black, 4));
}

TEST(Sprite, InitChecksInOrder) {
  alignas(16) std::uint8_t memory[recordBytes], before[recordBytes];
  for (std::size_t i = 0; i < recordBytes; ++i) memory[i] = before[i] = std::uint8_t(3 * i + 1);
  const Points d = {};
  const auto with = [](auto change) {
    Setting s;
    s.points = 2;
    change(s);
    return s;
  };
  const std::vector<Setting> outOfRange = {with([](Setting& s) { s.points = -1; }),
                                           with([](Setting& s) { s.points = 5; }),
                                           with([](Setting& s) { s.accuracy = -1; }),
                                           with([](Setting& s) { s.accuracy = 4; }),
                                           with([](Setting& s) { s.fcode = 0; }),
                                           with([](Setting& s) { s.fcode = 8; }),
                                           with([](Setting& s) {
                                             s.points = 4;
                                             s.spriteType = 2;
                                           })};
  const std::vector<Setting> badSize = {
      with([](Setting& s) { s.sprite.width = 0; }), with([](Setting& s) { s.sprite.height = 0; }),
      with([](Setting& s) { s.vop.width = -1; }), with([](Setting& s) { s.vop.height = INT32_MIN; })};
  for (const Setting& s : outOfRange) {
    EXPECT_EQ(s.init(nullptr, d.data(), d.data()), zvpStatusNullPointer);
    EXPECT_EQ(s.init(memory, nullptr, nullptr), zvpStatusOutOfRange) << s;
    Setting both = s;
    both.sprite.width = 0;
    EXPECT_EQ(both.init(memory), zvpStatusOutOfRange) << s;
  }
  for (const Setting& s : badSize) {
    EXPECT_EQ(s.init(nullptr, d.data(), d.data()), zvpStatusNullPointer);
    EXPECT_EQ(s.init(memory, nullptr, d.data()), zvpStatusBadSize) << s;
  }
  EXPECT_TRUE(sameBytes(memory, before, recordBytes));

  // The differences are tested last, when the record is stamped already.
  std::int16_t mv[2];
  EXPECT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, memory), zvpStatusBadContext);
  for (const int points : {1, 2, 3, 4}) {
    Setting s;
    s.points = points;
    EXPECT_EQ(s.init(memory, nullptr, d.data()), zvpStatusNullPointer);
    EXPECT_EQ(s.init(memory, d.data(), nullptr), zvpStatusNullPointer);
  }
  std::uint32_t magic;
  std::memcpy(&magic, memory + 224, 4);
  EXPECT_EQ(magic, 0x434D4151u);
  EXPECT_EQ(Setting().init(memory, nullptr, nullptr), zvpStatusOk);  // without points nobody asks for them
}

// A record that was refused for want of differences maps blocks by whatever its memory held, within their bounds.
TEST(Sprite, RefusedRecordsHarmNobody) {
  Rng rng(10);
  for (int round = 0; round < rounds(1500); ++round) {
    Setting s = gentleSetting(round % 4 + 1, rng);
    const Guard guard = rng.guard();
    GuardedBytes memory(recordBytes, guard);
    fill(memory.data(), recordBytes, rng, Style::Uniform, 0, 255);
    if (rng.chance(2)) {  // extremes, aligned as the record's numbers are
      for (std::size_t i = 0; i < recordBytes; i += 4) {
        const std::int32_t extreme = rng.pick<std::int32_t>({INT32_MIN, INT32_MAX, -1, 0, 1, 31, 32});
        std::memcpy(memory.data() + i, &extreme, 4);
      }
    }
    ASSERT_EQ(s.init(memory.data(), nullptr, s.dv.data()), zvpStatusNullPointer);
    memory.makeReadOnly();

    const model::Rect block = randomBlock(s.sprite, 16, rng);
    const zvpRect dstRect = rect(block);
    const Plane luma = spritePlane(s.sprite.width, s.sprite.height, rng);
    const model::Rect chroma = s.warp().chroma;
    const Plane cb = spritePlane(chroma.width, chroma.height, rng), cr = spritePlane(chroma.width, chroma.height, rng);
    Plane first = blockPlane(block, rng), second = blockPlane(block, rng);
    const auto expectBlockAlone = [&](Plane& plane, auto predict) {
      std::fill_n(plane.bytes().data(), plane.bytes().size(), std::uint8_t(0x11));
      predict();
      for (int y = 0; y < plane.height(); ++y)
        for (int x = 0; x < plane.width(); ++x) plane.set(x, y, 0x11);
      for (const std::uint8_t byte : plane.snapshot()) ASSERT_EQ(byte, 0x11) << s;
    };
    ASSERT_NO_FATAL_FAILURE(expectBlockAlone(first, [&] {
      EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(luma.data(), int(luma.step()), first.data(), int(first.step()), &dstRect,
                                          memory.data()),
                zvpStatusOk);
    }));
    const auto predictChroma = [&] {
      EXPECT_EQ(
          zvpiWarpChroma_MPEG4_8u_P2R(cb.data(), int(cb.step()), cr.data(), int(cr.step()), first.data(),
                                      int(first.step()), second.data(), int(second.step()), &dstRect, memory.data()),
          zvpStatusOk);
    };
    ASSERT_NO_FATAL_FAILURE(expectBlockAlone(first, predictChroma));
    ASSERT_NO_FATAL_FAILURE(expectBlockAlone(second, predictChroma));
    Placed<std::int16_t> mv({0, 0}, rng);
    const int x = rng.chance(8) ? anything(rng) : rng.range(0, 700);
    const int y = rng.chance(8) ? anything(rng) : rng.range(0, 500);
    ASSERT_EQ(zvpiCalcGlobalMV_MPEG4(x, y, mv.data(), memory.data()), zvpStatusOk);
    for (const int v : mv.values()) ASSERT_TRUE(v >= -(16 << s.fcode) && v < 16 << s.fcode) << s;
  }
}

TEST(Sprite, InitWritesWithinItsRecord) {
  Rng rng(6);
  for (int shift = 0; shift < 16; ++shift)
    for (int points = 0; points <= 4; ++points) {
      alignas(16) std::uint8_t memory[320], before[320];
      fill(memory, sizeof memory, rng, Style::Uniform, 0, 255);
      std::copy(memory, memory + sizeof memory, before);
      Setting s;
      s.points = points;
      ASSERT_EQ(s.init(memory + shift), zvpStatusOk);
      const std::size_t start = shift == 0 ? 0 : 16;
      const std::size_t used = points == 0 ? 68 : 264;
      for (std::size_t i = 0; i < sizeof memory; ++i)
        if (i < start || i >= start + 264 || (i - start >= used && (i - start) / 4 != 56)) {
          ASSERT_EQ(memory[i], before[i]) << i;
        }
    }
}

TEST(Sprite, BlockFunctionsCheckInOrder) {
  Rng rng(7);
  Setting s;
  s.points = 1;
  const Record record(s, rng);
  alignas(16) const std::uint8_t blank[recordBytes] = {};
  std::vector<std::uint8_t> src(64 * 48, 7), dst(256, 9);
  const zvpRect r = {0, 0, 8, 8};
  std::uint8_t* d = dst.data();
  const std::uint8_t* p = src.data();
  for (const void* spec : {record.data(), static_cast<const void*>(blank)}) {
    EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(nullptr, 64, d, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(p, 64, nullptr, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(nullptr, 32, p, 32, d, 16, d, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, nullptr, 32, d, 16, d, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, p, 32, nullptr, 16, d, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, p, 32, d, 16, nullptr, 16, &r, spec), zvpStatusNullPointer);
    EXPECT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, nullptr, spec), zvpStatusNullPointer);
  }
  std::int16_t mv[2] = {5, 6};
  EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(p, 64, d, 16, &r, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, p, 32, d, 16, d + 8, 16, &r, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, nullptr), zvpStatusNullPointer);
  EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(p, 64, d, 16, &r, blank), zvpStatusBadContext);
  EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, p, 32, d, 16, d + 8, 16, &r, blank), zvpStatusBadContext);
  EXPECT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, blank), zvpStatusBadContext);
  // An empty block.
  for (int points = 0; points <= 4; ++points) {
    s.points = points;
    const Record any(s, rng);
    for (const zvpRect& empty :
         {zvpRect{0, 0, 0, 8}, zvpRect{0, 0, 8, 0}, zvpRect{0, 0, -8, 8}, zvpRect{0, 0, 8, INT32_MIN}}) {
      EXPECT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(p, 64, d, 16, &empty, any.data()), zvpStatusOk);
      EXPECT_EQ(zvpiWarpChroma_MPEG4_8u_P2R(p, 32, p, 32, d, 16, d + 8, 16, &empty, any.data()), zvpStatusOk);
    }
  }
  EXPECT_EQ(mv[0], 5);
  EXPECT_EQ(mv[1], 6);
  for (const auto x : dst) EXPECT_EQ(x, 9);
}

// A picture of one column: the power of two is 1, and with the finest accuracy the rounding constant's shift is -1.
TEST(Sprite, OneColumnPicture) {
  Rng rng(8);
  Setting s;
  s.vop.width = s.vop.height = 1;
  for (s.accuracy = 0; s.accuracy < 4; ++s.accuracy)
    for (s.points = 2; s.points <= 3; ++s.points) {
      for (Points* p : {&s.du, &s.dv})
        for (std::int32_t& d : *p) d = rng.range(-3, 3);
      expectLuma(s, {3, 4, 16, 16}, rng);
      expectChroma(s, {3, 4, 8, 8}, rng);
    }
}

// Left of the sprite the affine reading repeats column 0, still interpolated vertically.
TEST(Sprite, LeftOfTheSpriteRowsAreStillBlended) {
  Setting s;
  s.points = 2;
  s.accuracy = 3;
  s.dv = {1, 0, 0, 0};  // half a sample down
  alignas(16) std::uint8_t record[recordBytes];
  ASSERT_EQ(s.init(record), zvpStatusOk);
  std::vector<std::uint8_t> sprite(64 * 48);
  for (int y = 0; y < 48; ++y)
    for (int x = 0; x < 64; ++x) sprite[std::size_t(64 * y + x)] = std::uint8_t(x == 0 ? 4 * y : 255);
  std::uint8_t block[4];
  const zvpRect r = {-40, 5, 4, 1};
  ASSERT_EQ(zvpiWarpLuma_MPEG4_8u_C1R(sprite.data(), 64, block, 4, &r, record), zvpStatusOk);
  for (const auto x : block) EXPECT_EQ(x, 22);  // between 20 and 24
}

TEST(Sprite, QuarterSamplesDoubleTheVectorOfATranslation) {
  Setting s;
  s.points = 1;
  s.fcode = 7;
  s.du = {9, 0, 0, 0};
  s.dv = {-5, 0, 0, 0};
  alignas(16) std::uint8_t record[recordBytes];
  std::int16_t mv[2];
  ASSERT_EQ(s.init(record), zvpStatusOk);
  ASSERT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, record), zvpStatusOk);
  EXPECT_EQ(mv[0], 9);
  EXPECT_EQ(mv[1], -5);
  s.quarterSample = 1;
  ASSERT_EQ(s.init(record), zvpStatusOk);
  ASSERT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, record), zvpStatusOk);
  EXPECT_EQ(mv[0], 18);
  EXPECT_EQ(mv[1], -10);
  // Cut to 16 bits before the clip: 40000 becomes -25536 and so the lower bound.
  s.quarterSample = 0;
  s.du[0] = 40000;
  ASSERT_EQ(s.init(record), zvpStatusOk);
  ASSERT_EQ(zvpiCalcGlobalMV_MPEG4(0, 0, mv, record), zvpStatusOk);
  EXPECT_EQ(mv[0], -2048);
}
