// Comparison of whole outputs, and the digest that is the same for every compiler and instruction-set level.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zvptest {

// How many rounds of random cases a test runs: full at normal speed, fewer where ZVP_TEST_ROUNDS_PERCENT asks.
int rounds(int full);

// Adds bytes to the digest of the running test. The test program writes all digests to the file that
// ZVP_DIGEST_FILE names; builds are held against each other by these files.
void addToDigest(const void* data, std::size_t size);

// Equal byte for byte? Names the first difference. Adds the actual bytes to the digest.
::testing::AssertionResult sameBytes(const void* actual, const void* expected, std::size_t size);
inline ::testing::AssertionResult sameBytes(const std::vector<std::uint8_t>& actual,
                                            const std::vector<std::uint8_t>& expected) {
  if (actual.size() != expected.size()) return ::testing::AssertionFailure() << "sizes differ";
  return sameBytes(actual.data(), expected.data(), actual.size());
}
template <class T> ::testing::AssertionResult sameArray(const T* actual, const T* expected, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    if (actual[i] != expected[i])
      return ::testing::AssertionFailure() << "element " << i << " is " << +actual[i] << ", expected " << +expected[i];
  addToDigest(actual, count * sizeof(T));
  return ::testing::AssertionSuccess();
}

}  // namespace zvptest
