#include "reference/avs/intra_pred.h"

#include <algorithm>
#include <vector>

namespace reference {
namespace {

// Sample i of a side: 1..8 the side itself, 9..16 its continuation, read only when it is asked for.
struct Neighbours {
  const std::uint8_t* dst;
  std::ptrdiff_t step;
  int availability;

  bool missing(int bit) const { return (availability & bit) != 0; }
  int top(int i) const {
    if (i == 0) return missing(1) ? top(1) : dst[-step - 1];
    if (i > 8 && missing(32)) i = 8;
    return dst[-step + std::min(i, 16) - 1];
  }
  int left(int i) const {
    if (i == 0) return missing(4) ? left(1) : dst[-step - 1];
    if (i > 8 && missing(64)) i = 8;
    return dst[(std::min(i, 16) - 1) * step - 1];
  }
  int smoothTop(int i) const { return (top(i) + 2 * top(i + 1) + top(i + 2) + 2) >> 2; }
  int smoothLeft(int i) const { return (left(i) + 2 * left(i + 1) + left(i + 2) + 2) >> 2; }
  // Along the border from the left column's end (-8) over the corner (0) to the top row's end (8).
  int border(int i) const { return i < 0 ? left(-i) : i > 0 ? top(i) : int(dst[-step - 1]); }
};

int sample(AvsPredictor predictor, const Neighbours& n, int x, int y) {
  switch (predictor) {
    case AvsPredictor::Vertical:
      return n.top(x + 1);
    case AvsPredictor::Horizontal:
      return n.left(y + 1);
    case AvsPredictor::Dc:
      if (n.missing(1) && n.missing(4)) return 128;
      if (n.missing(1)) return n.smoothTop(x);
      if (n.missing(4)) return n.smoothLeft(y);
      return (n.smoothTop(x) + n.smoothLeft(y)) >> 1;
    case AvsPredictor::DownLeft:
      return (n.smoothTop(x + y + 1) + n.smoothLeft(x + y + 1)) >> 1;
    case AvsPredictor::DownRight:
      return (n.border(x - y - 1) + 2 * n.border(x - y) + n.border(x - y + 1) + 2) >> 2;
    case AvsPredictor::Plane: {
      int h = 0, v = 0;
      for (int i = 1; i <= 4; ++i) {
        h += i * (n.top(4 + i) - n.top(4 - i));
        v += i * (n.left(4 + i) - n.left(4 - i));
      }
      const int b = (17 * h + 16) >> 5, c = (17 * v + 16) >> 5, a = 16 * (n.top(8) + n.left(8));
      return std::clamp((a + b * (x - 3) + c * (y - 3) + 16) >> 5, 0, 255);
    }
    default:
      return 128;
  }
}

}  // namespace

bool avsPredict(AvsPredictor predictor, std::uint8_t* dst, std::ptrdiff_t step, int availability) {
  const Neighbours n = {dst, step, availability};
  const bool needsTop =
      predictor != AvsPredictor::Horizontal && predictor != AvsPredictor::Dc && predictor != AvsPredictor::Fill;
  const bool needsLeft =
      predictor != AvsPredictor::Vertical && predictor != AvsPredictor::Dc && predictor != AvsPredictor::Fill;
  if ((needsTop && n.missing(4)) || (needsLeft && n.missing(1))) return false;
  std::uint8_t block[64];
  for (int i = 0; i < 64; ++i) block[i] = std::uint8_t(sample(predictor, n, i % 8, i / 8));
  for (int i = 0; i < 64; ++i) dst[i / 8 * step + i % 8] = block[i];
  return true;
}

}  // namespace reference
