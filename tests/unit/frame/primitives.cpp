// The internal memory and image primitives.
#include "primitives.h"

#include <gtest/gtest.h>

#include "reference/frame/lowpass.h"
#include "support/alloc.h"
#include "support/compare.h"
#include "support/random.h"

using namespace zvptest;
using zvp::s16;
using zvp::s32;
using zvp::u8;

namespace {

template <class T> void expectMalloc(T* (*allocate)(s32)) {
  Allocations::reset();
  EXPECT_EQ(allocate(0), nullptr);
  EXPECT_EQ(allocate(-7), nullptr);
  EXPECT_EQ(Allocations::made(), 0);
  T* block = allocate(13);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(Allocations::made(), 1);
  EXPECT_EQ(Allocations::lastLength(), 13 * sizeof(T));
  Allocations::failAt(1);
  EXPECT_EQ(allocate(1), nullptr);
  zvpsFree(block);
}

}  // namespace

TEST(Primitives, MallocCountsElements) {
  const int before = Allocations::live();
  expectMalloc(zvpsMalloc_8u);
  expectMalloc(zvpsMalloc_8s);
  expectMalloc(zvpsMalloc_16u);
  expectMalloc(zvpsMalloc_32s);
  zvpiFree(zvpsMalloc_8u(1));
  EXPECT_EQ(Allocations::live(), before);
}

TEST(Primitives, PointersAreCheckedBeforeLengths) {
  u8 byte = 9;
  s16 word = 9;
  EXPECT_EQ(zvpsCopy_8u(nullptr, &byte, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpsCopy_8u(&byte, nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpsCopy_8u(&byte, &byte, 0), zvpStatusBadSize);
  EXPECT_EQ(zvpsCopy_16s(nullptr, &word, -1), zvpStatusNullPointer);
  EXPECT_EQ(zvpsCopy_16s(&word, nullptr, -1), zvpStatusNullPointer);
  EXPECT_EQ(zvpsCopy_16s(&word, &word, -1), zvpStatusBadSize);
  EXPECT_EQ(zvpsZero_8u(nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpsZero_8u(&byte, 0), zvpStatusBadSize);
  EXPECT_EQ(zvpsZero_16s(nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpsZero_16s(&word, 0), zvpStatusBadSize);
  EXPECT_EQ(zvpsSet_8u(1, nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpsSet_8u(1, &byte, 0), zvpStatusBadSize);
  for (const zvpSize size : {zvpSize{0, 1}, zvpSize{1, 0}, zvpSize{-3, 4}, zvpSize{4, -3}}) {
    EXPECT_EQ(zvpiCopy_8u_C1R(nullptr, 1, &byte, 1, size), zvpStatusNullPointer);
    EXPECT_EQ(zvpiCopy_8u_C1R(&byte, 1, nullptr, 1, size), zvpStatusNullPointer);
    EXPECT_EQ(zvpiCopy_8u_C1R(&byte, 1, &byte, 1, size), zvpStatusBadSize);
    EXPECT_EQ(zvpiSet_8u_C1R(1, nullptr, 1, size), zvpStatusNullPointer);
    EXPECT_EQ(zvpiSet_8u_C1R(1, &byte, 1, size), zvpStatusBadSize);
  }
  EXPECT_EQ(byte, 9);
  EXPECT_EQ(word, 9);
}

TEST(Primitives, CopiesRunForward) {
  // One element ahead of the source a forward copy repeats the first element.
  u8 bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(zvpsCopy_8u(bytes, bytes + 1, 7), zvpStatusOk);
  for (u8 byte : bytes) EXPECT_EQ(byte, 1);
  s16 words[6] = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(zvpsCopy_16s(words + 2, words, 4), zvpStatusOk);
  const s16 moved[6] = {3, 4, 5, 6, 5, 6};
  EXPECT_TRUE(sameArray(words, moved, 6));
  s16 pairs[6] = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ(zvpsCopy_16s(pairs, pairs + 2, 4), zvpStatusOk);
  const s16 repeated[6] = {1, 2, 1, 2, 1, 2};
  EXPECT_TRUE(sameArray(pairs, repeated, 6));
}

TEST(Primitives, RowsAndRunsOfAllLengths) {
  Rng rng(1);
  for (int round = 0; round < rounds(400); ++round) {
    const int width = rng.range(1, 70), height = rng.range(1, 9);
    GuardedPlane<u8> src{width, height, rng.step(width, true), rng.guard()};
    GuardedPlane<u8> dst{width, height, rng.step(width, true), rng.guard()};
    fill(src, rng, Style::Uniform, 0, 255);
    fill(dst, rng, Style::Uniform, 0, 255);
    auto expected = dst.snapshot();
    GuardedPlane<u8> model = std::move(dst);
    ASSERT_EQ(zvpiCopy_8u_C1R(src.data(), s32(src.step()), model.data(), s32(model.step()), {width, height}), 0);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) ASSERT_EQ(model.get(x, y), src.get(x, y));
    const auto value = u8(rng.next());
    ASSERT_EQ(zvpiSet_8u_C1R(value, model.data(), s32(model.step()), {width, height}), 0);
    // The gaps between the rows are as they were.
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) {
        ASSERT_EQ(model.get(x, y), value);
        expected[std::size_t(&model.data()[y * model.step() + x] - model.bytes().data())] = value;
      }
    ASSERT_TRUE(sameBytes(model.snapshot(), expected));
  }
}

TEST(Lowpass, ChecksInOrder) {
  u8 area[49] = {}, out = 77;
  u8* const centre = area + 24;
  const zvpSize one = {1, 1};
  Allocations::reset();
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(nullptr, 0, &out, 0, {0, 0}, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 0, nullptr, 0, {0, 0}, 0), zvpStatusNullPointer);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 0, &out, 0, {0, 1}, 0), zvpStatusBadSize);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 0, &out, 0, {1, 0}, 0), zvpStatusBadSize);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 0, &out, 1, one, 0), zvpStatusBadStep);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 7, &out, -1, one, 0), zvpStatusBadStep);
  EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 7, &out, 1, one, 3), zvpStatusBadMaskSize);
  EXPECT_EQ(Allocations::made(), 0);
  const int before = Allocations::live();
  for (const auto& [mask, buffers] : {std::pair(33, 3), std::pair(55, 6)}) {
    for (int n = 1; n <= buffers; ++n) {
      Allocations::failAt(n);
      EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 7, &out, 1, one, mask), zvpStatusNoMemory);
    }
    Allocations::failAt(buffers + 1);
    EXPECT_EQ(out, 77);
    EXPECT_EQ(zvpiFilterLowpass_8u_C1R(centre, 7, &out, 1, one, mask), zvpStatusOk);
    EXPECT_EQ(out, 0);
    out = 77;
    Allocations::reset();
  }
  EXPECT_EQ(Allocations::live(), before);
}

TEST(Lowpass, MatchesTheModelAndItsReach) {
  Rng rng(2);
  for (int round = 0; round < rounds(300); ++round) {
    const int window = rng.chance(2) ? 3 : 5, border = window / 2;
    const int width = rng.range(1, 40), height = rng.range(1, 12);
    GuardedPlane<u8> src{width, height, rng.step(width + 2 * border, false), rng.guard(),
                         {border, border, border, border}};
    GuardedPlane<u8> dst{width, height, rng.step(width, false), rng.guard()};
    fill(src, rng, anyStyle(rng), 0, 255);
    fill(dst, rng, Style::Uniform, 0, 255);
    std::vector<u8> expected = dst.snapshot();
    reference::lowpass(src.data(), src.step(), expected.data(), dst.step(), width, height, window);
    src.bytes().makeReadOnly();
    ASSERT_EQ(zvpiFilterLowpass_8u_C1R(src.data(), s32(src.step()), dst.data(), s32(dst.step()), {width, height},
                                       window * 11),
              zvpStatusOk);
    ASSERT_TRUE(sameBytes(dst.snapshot(), expected));
  }
}

TEST(Lowpass, AllWhiteStaysWhite) {
  std::vector<u8> white(20 * 20, 255), out(16 * 16);
  for (int mask : {33, 55}) {
    ASSERT_EQ(zvpiFilterLowpass_8u_C1R(&white[42], 20, out.data(), 16, {16, 16}, mask), zvpStatusOk);
    for (u8 pixel : out) ASSERT_EQ(pixel, 255);
  }
}
