// Picture order count (H.264 8.2.1), for frames.
#pragma once

#include <cstdint>

#include "h264/slice_header.h"

namespace h264 {

class PictureOrder {
 public:
  struct Counts {
    std::int32_t top, bottom;
  };
  // For the picture that the slice begins. Call once a picture, and once for each frame inferred for a gap.
  Counts next(const SequenceParameters& sps, const SliceHeader& slice);
  // Behind a picture that has been decoded and, if it has operation 5, reset: top is its count afterwards.
  void finished(const SliceHeader& slice, std::int32_t top);

 private:
  // Type 0: of the previous reference picture.
  std::int32_t previousMsb_ = 0;
  std::uint32_t previousLsb_ = 0;
  std::int32_t msb_ = 0;
  // Types 1 and 2: of the previous picture.
  std::uint32_t previousFrameNum_ = 0;
  std::int64_t previousOffset_ = 0;
  std::int64_t offset_ = 0;
};

}  // namespace h264
