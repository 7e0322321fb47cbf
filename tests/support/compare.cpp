#include "support/compare.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace zvptest {
namespace {

std::map<std::string, std::uint64_t>& digests() {
  static std::map<std::string, std::uint64_t> all;
  return all;
}

class DigestWriter : public ::testing::Environment {
 public:
  void TearDown() override {
    const char* name = std::getenv("ZVP_DIGEST_FILE");
    if (name == nullptr) return;
    std::FILE* file = std::fopen(name, "w");
    ASSERT_NE(file, nullptr) << name;
    for (const auto& [test, digest] : digests()) std::fprintf(file, "%s %016" PRIx64 "\n", test.c_str(), digest);
    std::fclose(file);
  }
};
const auto* const writer = ::testing::AddGlobalTestEnvironment(new DigestWriter);

}  // namespace

int rounds(int full) {
  static const char* const text = std::getenv("ZVP_TEST_ROUNDS_PERCENT");
  const int percent = text != nullptr ? std::atoi(text) : 100;
  return full * percent < 100 ? 1 : full * percent / 100;
}

void addToDigest(const void* data, std::size_t size) {
  static const ::testing::TestInfo* current = nullptr;
  static std::uint64_t* digest = nullptr;
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  if (info == nullptr) return;
  if (info != current) {
    current = info;
    const std::string name = std::string(info->test_suite_name()) + "." + info->name();
    digest = &digests().try_emplace(name, 0xcbf29ce484222325u).first->second;
  }
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  for (std::size_t i = 0; i < size; ++i) *digest = (*digest ^ bytes[i]) * 0x100000001b3u;
}

::testing::AssertionResult sameBytes(const void* actual, const void* expected, std::size_t size) {
  addToDigest(actual, size);
  const auto* a = static_cast<const std::uint8_t*>(actual);
  const auto* e = static_cast<const std::uint8_t*>(expected);
  std::size_t different = 0, first = 0;
  for (std::size_t i = size; i-- > 0;)
    if (a[i] != e[i]) {
      ++different;
      first = i;
    }
  if (different == 0) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << different << " of " << size << " bytes differ, the first at " << first
                                       << ": " << int(a[first]) << ", expected " << int(e[first]);
}

}  // namespace zvptest
