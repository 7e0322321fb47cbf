#include "h264/frame.h"

namespace h264 {

void Frame::allocate() {
  if (allocated()) return;
  static_cast<video::PaddedPlanes&>(*this) = video::PaddedPlanes(16 * widthMbs, 16 * heightMbs);
  const std::size_t mbs = std::size_t(widthMbs) * std::size_t(heightMbs);
  for (auto& list : motion) list = std::make_unique_for_overwrite<MbMotion[]>(mbs);
  refs = std::make_unique_for_overwrite<MbRefs[]>(mbs);
}

}  // namespace h264
