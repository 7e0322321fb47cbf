#include "support/guarded.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace zvptest {

GuardedBytes::GuardedBytes(std::size_t size, Guard guard) : size_(size) {
  static const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
  const std::size_t usable = (size + page - 1) / page * page;
  mapSize_ = usable + 2 * page;
  void* map = mmap(nullptr, mapSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (map == MAP_FAILED || (usable != 0 && mprotect(static_cast<char*>(map) + page, usable, PROT_READ | PROT_WRITE))) {
    std::perror("guarded memory");
    std::abort();
  }
  map_ = static_cast<std::uint8_t*>(map);
  data_ = guard == Guard::Before ? map_ + page : map_ + page + usable - size;
}

GuardedBytes::~GuardedBytes() {
  if (map_ != nullptr) munmap(map_, mapSize_);
}

void GuardedBytes::makeReadOnly() {
  const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
  mprotect(map_ + page, mapSize_ - 2 * page, PROT_READ);
}

void GuardedBytes::makeWritable() {
  const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
  mprotect(map_ + page, mapSize_ - 2 * page, PROT_READ | PROT_WRITE);
}

}  // namespace zvptest
