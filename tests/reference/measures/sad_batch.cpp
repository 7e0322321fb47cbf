#include "reference/measures/sad_batch.h"

#include "reference/measures/sad.h"

namespace reference::measures {
std::vector<std::uint16_t> sadBatch(const std::uint8_t* src, std::ptrdiff_t srcStep, const std::uint8_t* ref,
                                    std::ptrdiff_t refStep, int size, int count) {
  std::vector<std::uint16_t> sads;
  for (int i = 0; i < count / 8 * 8; ++i)
    sads.push_back(std::uint16_t(sad(src, srcStep, ref + i, refStep, size, size, 0)));
  return sads;
}

int indexOfBest(const std::vector<std::uint16_t>& sads) {
  int best = 65535, bestIndex = -1, index = 0;
  for (const std::uint16_t sad : sads) {
    if (sad < best) {
      best = sad;
      bestIndex = index;
    }
    ++index;
  }
  return bestIndex;
}
}  // namespace reference::measures
