#include "dv/picture.h"

namespace dv {

namespace {

// The step is known to the compiler, which makes the loop one over registers.
template <int step> void takeEvery(const std::uint8_t* from, std::uint8_t* to, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) to[i] = from[step * i];
}

}  // namespace

void PackedPicture::split(int chromaShiftX, int chromaShiftY, std::vector<std::uint8_t> (&planes)[3]) const {
  const std::ptrdiff_t width = width_, height = height_;
  planes[0].resize(std::size_t(width * height));
  takeEvery<2>(samples_.data(), planes[0].data(), width * height);
  const std::ptrdiff_t chromaWidth = (width + (1 << chromaShiftX) - 1) >> chromaShiftX;
  const std::ptrdiff_t chromaHeight = (height + (1 << chromaShiftY) - 1) >> chromaShiftY;
  for (int plane = 1; plane < 3; ++plane) {
    planes[plane].resize(std::size_t(chromaWidth * chromaHeight));
    for (std::ptrdiff_t y = 0; y < chromaHeight; ++y) {
      const std::uint8_t* from = samples_.data() + (y << chromaShiftY) * step() + 2 * plane - 1;
      std::uint8_t* to = planes[plane].data() + y * chromaWidth;
      if (chromaShiftX == 1) takeEvery<4>(from, to, chromaWidth);
      else takeEvery<8>(from, to, chromaWidth);
    }
  }
}

}  // namespace dv
