#include "support/guarded.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZVPTEST_POISON
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ZVPTEST_POISON
#endif
#if defined(ZVPTEST_POISON)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace zvptest {
namespace {
// A function, since buffers may be made before main.
std::size_t pageSize() {
  static const std::size_t size = std::size_t(sysconf(_SC_PAGESIZE));
  return size;
}
constexpr std::uint8_t slackByte = 0xa5;
}  // namespace

GuardedBytes::GuardedBytes(std::size_t size, Guard guard) : size_(size) {
  const std::size_t page = pageSize();
  const std::size_t usable = (size + page - 1) / page * page;
  mapSize_ = usable + 2 * page;
  void* map = mmap(nullptr, mapSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map == MAP_FAILED || (usable != 0 && mprotect(static_cast<char*>(map) + page, usable, PROT_READ | PROT_WRITE))) {
    std::perror("guarded memory");
    std::abort();
  }
  map_ = static_cast<std::uint8_t*>(map);
  data_ = guard == Guard::Before ? map_ + page : map_ + page + usable - size;
  slack_ = guard == Guard::Before ? data_ + size : map_ + page;
  slackSize_ = usable - size;
  std::memset(slack_, slackByte, slackSize_);
  ASAN_POISON_MEMORY_REGION(slack_, slackSize_);
}

GuardedBytes::~GuardedBytes() {
  if (map_ == nullptr) return;
  ASAN_UNPOISON_MEMORY_REGION(slack_, slackSize_);
  for (std::size_t i = 0; i < slackSize_; ++i)
    if (slack_[i] != slackByte) {
      std::fprintf(stderr, "A write %td bytes from the start of a buffer of %zu bytes.\n", slack_ + i - data_, size_);
      std::abort();
    }
  munmap(map_, mapSize_);
}

void GuardedBytes::makeReadOnly() { mprotect(map_ + pageSize(), mapSize_ - 2 * pageSize(), PROT_READ); }
void GuardedBytes::makeWritable() { mprotect(map_ + pageSize(), mapSize_ - 2 * pageSize(), PROT_READ | PROT_WRITE); }

}  // namespace zvptest
