#include "reference/measures/field_sad.h"

#include <cstdlib>

#include "reference/measures/block.h"

namespace reference::measures {
namespace {
template <class T>
void activity(const T* src, std::ptrdiff_t step, std::int32_t& frame, std::int32_t& field) {
  const auto rows = [=](int a, int b) {
    std::int32_t sum = 0;
    for (int x = 0; x < 16; ++x) sum += std::abs(sample(src, step, x, a) - sample(src, step, x, b));
    return sum;
  };
  frame = field = 0;
  for (int i = 0; i <= 6; ++i) {
    frame += rows(i, i + 1) + rows(i + 8, i + 9);
    field += rows(2 * i, 2 * i + 2) + rows(2 * i + 1, 2 * i + 3);
  }
}
}  // namespace

void frameFieldSad(const std::uint8_t* src, std::ptrdiff_t step, std::int32_t& frame, std::int32_t& field) {
  activity(src, step, frame, field);
}
void frameFieldSad(const std::int16_t* src, std::ptrdiff_t step, std::int32_t& frame, std::int32_t& field) {
  activity(src, step, frame, field);
}
}  // namespace reference::measures
