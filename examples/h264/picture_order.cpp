#include "h264/picture_order.h"

#include <algorithm>

namespace h264 {

PictureOrder::Counts PictureOrder::next(const SequenceParameters& sps, const SliceHeader& slice) {
  // Sums are formed in 64 bits and cut to 32: a damaged stream may make them as large as it likes.
  const auto narrow = [](std::int64_t value) { return std::int32_t(std::uint32_t(std::uint64_t(value))); };

  if (sps.pocType == 0) {
    if (slice.idr) {
      previousMsb_ = 0;
      previousLsb_ = 0;
    }
    const std::int64_t maxLsb = std::int64_t(1) << sps.pocLsbBits, lsb = slice.pocLsb, previous = previousLsb_;
    std::int64_t msb = previousMsb_;
    if (lsb < previous && previous - lsb >= maxLsb / 2) msb += maxLsb;
    else if (lsb > previous && lsb - previous > maxLsb / 2) msb -= maxLsb;
    msb_ = narrow(msb);
    return {narrow(msb + lsb), narrow(msb + lsb + slice.deltaPocBottom)};
  }

  if (slice.idr) offset_ = 0;
  else offset_ = previousOffset_ + (previousFrameNum_ > slice.frameNum ? std::int64_t(sps.maxFrameNum()) : 0);
  previousOffset_ = offset_;
  previousFrameNum_ = slice.frameNum;

  if (sps.pocType == 1) {
    const std::int64_t cycle = std::int64_t(sps.offsetForRefFrame.size());
    std::int64_t frames = cycle == 0 ? 0 : offset_ + slice.frameNum;
    if (slice.refIdc == 0 && frames > 0) --frames;
    std::int64_t expected = 0;
    if (frames > 0) {
      std::int64_t perCycle = 0;
      for (const std::int32_t delta : sps.offsetForRefFrame) perCycle += delta;
      expected = std::int64_t(std::uint64_t((frames - 1) / cycle) * std::uint64_t(perCycle));
      for (std::int64_t i = 0; i <= (frames - 1) % cycle; ++i) expected += sps.offsetForRefFrame[std::size_t(i)];
    }
    if (slice.refIdc == 0) expected += sps.offsetForNonRef;
    const std::int64_t top = expected + slice.deltaPoc[0];
    return {narrow(top), narrow(top + sps.offsetForTopToBottom + slice.deltaPoc[1])};
  }

  const std::int32_t count = slice.idr ? 0 : narrow(2 * (offset_ + slice.frameNum) - (slice.refIdc == 0 ? 1 : 0));
  return {count, count};
}

void PictureOrder::finished(const SliceHeader& slice, std::int32_t top) {
  if (slice.has(5)) {
    previousMsb_ = 0;
    previousLsb_ = std::uint32_t(top);
    previousOffset_ = 0;
    previousFrameNum_ = 0;
  } else if (slice.refIdc != 0) {
    previousMsb_ = msb_;
    previousLsb_ = slice.pocLsb;
  }
}

}  // namespace h264
