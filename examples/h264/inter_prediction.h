// Inter prediction of one partition: interpolation, and the weighting or averaging of two predictions
// (H.264 8.4.2).
#pragma once

#include <cstdint>

#include "h264/frame.h"
#include "h264/ref_lists.h"
#include "h264/slice_header.h"
#include "zvpvc.h"

namespace h264 {

class InterPredictor {
 public:
  void beginSlice(Frame& frame, const SliceHeader& slice, const PictureParameters& pps, const RefLists& lists);

  // Predicts a block of the current frame at luma position (x, y). A negative reference index: the list is not used.
  void predict(int x, int y, int width, int height, int ref0, Mv mv0, int ref1, Mv mv1);

 private:
  enum class Weighting { Default, Explicit, Implicit };
  struct Target {
    std::uint8_t* planes[3];
    std::int32_t steps[2];
  };
  void interpolate(int list, int ref, int x, int y, int width, int height, Mv mv, const Target& to);
  void combine(int plane, const Target& first, const Target& second, zvpSize size, int ref0, int ref1);

  Frame* frame_ = nullptr;
  Weighting weighting_ = Weighting::Default;
  unsigned logDenominator_[2] = {0, 0};
  const ExplicitWeight* weights_[2] = {};
  // Explicit weights that change nothing, and implicit ones that are equal, are left out.
  bool weighted_[2][maxRefs] = {};
  std::int16_t implicit_[maxRefs][maxRefs] = {};  // weight of list 1, of 64
  const std::uint8_t* planes_[2][maxRefs][3] = {};  // top left of the margin
  H264InterpolateBlock8u luma_{}, chroma_{};
  alignas(16) std::uint8_t scratch_[3][16 * 16];
};

}  // namespace h264
