#include "reference/mc/predict.h"

namespace reference::mc {

std::int32_t predict(const Reference& ref, int x, int y, int channels, std::int32_t roundControl) {
  const std::uint8_t* a = ref.top + y * ref.step + x;
  const auto mean = [&](unsigned sum, int count) {
    return std::int32_t(sum + unsigned(count / 2) - unsigned(roundControl)) / count;
  };
  const bool halfX = ref.mcType & 8, halfY = ref.mcType & 4;
  if (halfX && halfY) return mean(unsigned(a[0]) + a[channels] + a[ref.step] + a[ref.step + channels], 4);
  if (halfX) return mean(unsigned(a[0]) + a[channels], 2);
  if (halfY) return mean(unsigned(a[0]) + a[ref.step], 2);
  return a[0];
}

}  // namespace reference::mc
