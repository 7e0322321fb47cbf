// The cursor over 32-bit words against a list of single bits, at the end of mapped memory.
#include "bit_cursor.h"

#include <gtest/gtest.h>

#include "support/random.h"

using namespace zvptest;
using zvp::u32;
using zvp::WordCursor;

namespace {

u32 bitAt(const GuardedArray<u32>& words, int position) {
  return (words[std::size_t(position / 32)] >> (31 - position % 32)) & 1;
}

}  // namespace

TEST(WordCursor, ReadsEveryLengthAtEveryOffset) {
  Rng rng(1);
  GuardedArray<u32> words(2, Guard::Behind);
  for (int start = 0; start < 32; ++start)
    for (int n = 1; n <= 32; ++n) {
      words[0] = rng.next();
      words[1] = rng.next();
      u32 expected = 0;
      for (int i = 0; i < n; ++i) expected = 2 * expected + bitAt(words, start + i);
      WordCursor cursor{words.data(), 31 - start};
      EXPECT_EQ(cursor.peek(n), expected);
      EXPECT_EQ(cursor.read(n), expected);
      EXPECT_EQ(cursor.word, words.data() + (start + n) / 32);
      EXPECT_EQ(cursor.offset, 31 - (start + n) % 32);
      cursor.giveBack(n);
      EXPECT_EQ(cursor.word, words.data());
      EXPECT_EQ(cursor.offset, 31 - start);
      cursor.skip(n);
      EXPECT_EQ(cursor.word, words.data() + (start + n) / 32);
      EXPECT_EQ(cursor.offset, 31 - (start + n) % 32);
    }
}

TEST(WordCursor, LoadsNoWordThatTheReadDoesNotReach) {
  GuardedArray<u32> last(1, Guard::Behind);
  last[0] = 0x80000001;
  for (int start = 0; start < 32; ++start) {
    WordCursor cursor{last.data(), 31 - start};
    cursor.read(32 - start);
    EXPECT_EQ(cursor.word, last.data() + 1);
    EXPECT_EQ(cursor.offset, 31);
    WordCursor run{last.data(), 31 - start};
    EXPECT_EQ(run.readZeroRun(), start == 0 ? 0u : u32(31 - start));
  }
}

TEST(WordCursor, ZeroRunsCrossWords) {
  GuardedArray<u32> words(4, Guard::Behind);
  for (int start = 0; start < 32; ++start)
    for (int one = start; one < 128; ++one) {
      for (int i = 0; i < 4; ++i) words[std::size_t(i)] = 0;
      words[std::size_t(one / 32)] = 1u << (31 - one % 32);
      if (start > 0) words[0] |= ~0u << (32 - start);  // bits behind the cursor do not count
      WordCursor cursor{words.data(), 31 - start};
      EXPECT_EQ(cursor.readZeroRun(), u32(one - start));
      EXPECT_EQ(cursor.word, words.data() + (one + 1) / 32);
      EXPECT_EQ(cursor.offset, 31 - (one + 1) % 32);
    }
}
