// A sample of a block whose step counts bytes and whose rows may start at any address.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace reference::measures {
template <class T>
int sample(const T* block, std::ptrdiff_t step, int x, int y) {
  T value;
  std::memcpy(&value, reinterpret_cast<const std::uint8_t*>(block) + y * step + x * std::ptrdiff_t(sizeof(T)),
              sizeof value);
  return value;
}
}  // namespace reference::measures
