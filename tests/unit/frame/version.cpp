#include <gtest/gtest.h>

#include <cstring>

#include "zvpvc.h"

TEST(Version, RecordIsTheConstantOne) {
  const zvpVersionRecord* record = zvpvcGetLibVersion();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record, zvpvcGetLibVersion());
  EXPECT_EQ(record->major, 6);
  EXPECT_EQ(record->minor, 1);
  EXPECT_EQ(record->majorBuild, 137);
  EXPECT_EQ(record->build, 799);
  const char target[4] = {'m', 'x', 0, 0};
  EXPECT_EQ(std::memcmp(record->targetCpu, target, sizeof target), 0);
  EXPECT_STREQ(record->Name, "libzvpvcmx.so.6.1");
  EXPECT_STREQ(record->Version, "6.1 build 137.56");
  EXPECT_STREQ(record->BuildDate, "Mar 17 2010");
}
