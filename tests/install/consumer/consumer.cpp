// The same in C++, with both headers.
#include <zvpcore.h>
#include <zvpvc.h>

#include <cstdint>
#include <cstdio>
#include <string_view>

int main() {
  const zvpVersionRecord& record = *zvpvcGetLibVersion();
  void* block = zvpMalloc(100);
  const bool aligned = block != nullptr && reinterpret_cast<std::uintptr_t>(block) % 64 == 0;
  zvpFree(block);
  std::puts(record.Version);
  return aligned && std::string_view(record.Version) == "6.1 build 137.56" ? 0 : 1;
}
