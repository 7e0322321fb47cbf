// The shared tables against their rules, and the helpers of the entries.
#include <gtest/gtest.h>

#include <algorithm>

#include "entry.h"
#include "scan_tables.h"
#include "shared_tables.h"

using namespace zvp;

TEST(Tables, MasksOfLowBits) {
  for (const auto& table : {bit_mask, ownvc_BitMask}) {
    ASSERT_EQ(table.size(), 33u);
    u32 expected = 0;
    for (u32 mask : table) {
      EXPECT_EQ(mask, expected);
      expected = 2 * expected + 1;
    }
  }
  EXPECT_EQ(bit_mask[0], 0u);
  EXPECT_EQ(bit_mask[32], 4294967295u);
}

TEST(Tables, ZeroBlocks) {
  static_assert(sizeof zeroArray == 32 && sizeof zeroArray16 == 32 && sizeof zeroArray32 == 64);
  EXPECT_TRUE(std::all_of(zeroArray.begin(), zeroArray.end(), [](u8 value) { return value == 0; }));
  EXPECT_TRUE(std::all_of(zeroArray16.begin(), zeroArray16.end(), [](s16 value) { return value == 0; }));
  EXPECT_TRUE(std::all_of(zeroArray32.begin(), zeroArray32.end(), [](s32 value) { return value == 0; }));
}

TEST(Tables, Clamp) {
  ASSERT_EQ(ClampTbl.size(), 768u);
  for (int i = 0; i < 768; ++i) EXPECT_EQ(ClampTbl[std::size_t(i)], std::min(std::max(i - 256, 0), 255));
}

// The zig-zag from its rule: diagonals of alternating direction.
TEST(Tables, Zigzag) {
  std::size_t position = 0;
  for (int diagonal = 0; diagonal < 15; ++diagonal)
    for (int i = 0; i <= diagonal; ++i) {
      const int x = diagonal % 2 == 0 ? i : diagonal - i, y = diagonal - x;
      if (x < 8 && y < 8) {
        EXPECT_EQ(ownvc_Zigzag[position++], 8 * y + x) << position;
      }
    }
  EXPECT_EQ(position, 64u);
}

// The standards draw the alternate scans (ISO/IEC 13818-2 figure 7-3, ISO/IEC 14496-2 7.4.2) as the coded position of
// each place of the block.
TEST(Tables, AlternateScans) {
  constexpr u8 horizontal[64] = {0,  1,  2,  3,  10, 11, 12, 13, 4,  5,  8,  9,  17, 16, 15, 14, 6,  7,  19, 18, 26, 27,
                                 28, 29, 20, 21, 24, 25, 30, 31, 32, 33, 22, 23, 34, 35, 42, 43, 44, 45, 36, 37, 40, 41,
                                 46, 47, 48, 49, 38, 39, 50, 51, 56, 57, 58, 59, 52, 53, 54, 55, 60, 61, 62, 63};
  constexpr u8 vertical[64] = {0,  4,  6,  20, 22, 36, 38, 52, 1,  5,  7,  21, 23, 37, 39, 53, 2,  8,  19, 24, 34, 40,
                               50, 54, 3,  9,  18, 25, 35, 41, 51, 55, 10, 17, 26, 30, 42, 46, 56, 60, 11, 16, 27, 31,
                               43, 47, 57, 61, 12, 15, 28, 32, 44, 48, 58, 62, 13, 14, 29, 33, 45, 49, 59, 63};
  for (u8 place = 0; place < 64; ++place) {
    EXPECT_EQ(ownvc_AltScanH[horizontal[place]], place);
    EXPECT_EQ(ownvc_AltScanV[vertical[place]], place);
  }
}

TEST(Entry, NullTests) {
  int value = 0;
  int* pointer = &value;
  int* null = nullptr;
  EXPECT_FALSE(anyNull(&value));
  EXPECT_TRUE(anyNull(&value, null));
  EXPECT_TRUE(anyNull(null, &value));
  EXPECT_FALSE(nullCursor(&pointer));
  EXPECT_TRUE(nullCursor(&null));
  EXPECT_TRUE(nullCursor<int>(nullptr));
}

TEST(Types, ArithmeticThatWraps) {
  EXPECT_EQ(wrapAdd(2147483647, 1), -2147483647 - 1);
  EXPECT_EQ(wrapSub(-2147483647 - 1, 1), 2147483647);
  EXPECT_EQ(wrapMul(65536, 65536), 0);
  EXPECT_EQ(wrapMul(-2147483647 - 1, -1), -2147483647 - 1);
  EXPECT_EQ(wrapNeg(-2147483647 - 1), -2147483647 - 1);
  EXPECT_EQ(wrapShl(1, 31), -2147483647 - 1);
  EXPECT_EQ(wrapShl(3, 33), 6);
  EXPECT_EQ(clipU8(-1), 0);
  EXPECT_EQ(clipU8(256), 255);
  EXPECT_EQ(clipU8(77), 77);
  EXPECT_EQ(clipS16(-32769), -32768);
  EXPECT_EQ(clipS16(32768), 32767);
}
