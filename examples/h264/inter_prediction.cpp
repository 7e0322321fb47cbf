#include "h264/inter_prediction.h"

#include "h264/motion.h"

namespace h264 {

constexpr int lumaMargin = Frame::lumaMargin;

void InterPredictor::beginSlice(Frame& frame, const SliceHeader& slice, const PictureParameters& pps,
                                const RefLists& lists) {
  frame_ = &frame;
  const bool b = slice.type == SliceType::B;
  weighting_ = Weighting::Default;
  if (b ? pps.weightedBipred == 1 : pps.weightedPrediction) weighting_ = Weighting::Explicit;
  if (b && pps.weightedBipred == 2) weighting_ = Weighting::Implicit;

  // To the library the frame is the coded frame with its margin, so that a vector that leaves the frame by less needs
  // no repair of the edges.
  luma_.srcStep = std::int32_t(frame.steps[0]);
  luma_.frameSize = {16 * frame.widthMbs + 2 * lumaMargin, 16 * frame.heightMbs + 2 * lumaMargin};
  chroma_.srcStep = std::int32_t(frame.steps[1]);
  chroma_.frameSize = {luma_.frameSize.width / 2, luma_.frameSize.height / 2};

  for (int list = 0; list < (b ? 2 : 1); ++list) {
    weights_[list] = slice.weights[list];
    for (int i = 0; i < int(slice.refCount[list]); ++i) {
      if (!lists.usable(list, i)) continue;
      const Frame& ref = *lists.entries[list][i];
      for (int plane = 0; plane < 3; ++plane) {
        const int margin = plane == 0 ? lumaMargin : lumaMargin / 2;
        planes_[list][i][plane] = ref.planes[plane] - margin * ref.steps[plane] - margin;
      }
    }
  }

  if (weighting_ == Weighting::Explicit) {
    logDenominator_[0] = slice.logWeightDenominator[0];
    logDenominator_[1] = slice.logWeightDenominator[1];
    const std::int16_t luma = std::int16_t(1 << logDenominator_[0]), chroma = std::int16_t(1 << logDenominator_[1]);
    const ExplicitWeight plain{{luma, chroma, chroma}, {0, 0, 0}};
    for (int list = 0; list < (b ? 2 : 1); ++list)
      for (unsigned i = 0; i < slice.refCount[list]; ++i) weighted_[list][i] = !(slice.weights[list][i] == plain);
  } else if (weighting_ == Weighting::Implicit) {
    for (int i = 0; i < int(slice.refCount[0]); ++i)
      for (int j = 0; j < int(slice.refCount[1]); ++j) {
        implicit_[i][j] = 32;
        if (!lists.usable(0, i) || !lists.usable(1, j)) continue;
        const Frame &ref0 = *lists.entries[0][i], &ref1 = *lists.entries[1][j];
        std::int32_t scale = 0;
        if (ref1.longTerm() || !distanceScale(frame.poc(), ref0, ref1, scale)) continue;
        if (scale >> 2 >= -64 && scale >> 2 <= 128) implicit_[i][j] = std::int16_t(scale >> 2);
      }
  }
}

void InterPredictor::interpolate(int list, int ref, int x, int y, int width, int height, Mv mv, const Target& to) {
  const auto& planes = planes_[list][ref];
  luma_.pSrc[0] = planes[0];
  luma_.pDst[0] = to.planes[0];
  luma_.dstStep = to.steps[0];
  luma_.blockSize = {width, height};
  luma_.blockPos = {x + lumaMargin, y + lumaMargin};
  luma_.motionVector = {mv.x, mv.y};
  zvpiInterpolateLumaBlock_H264_8u_P1R(&luma_);
  chroma_.pSrc[0] = planes[1];
  chroma_.pSrc[1] = planes[2];
  chroma_.pDst[0] = to.planes[1];
  chroma_.pDst[1] = to.planes[2];
  chroma_.dstStep = to.steps[1];
  chroma_.blockSize = {width / 2, height / 2};
  chroma_.blockPos = {(x + lumaMargin) / 2, (y + lumaMargin) / 2};
  chroma_.motionVector = {mv.x, mv.y};
  zvpiInterpolateChromaBlock_H264_8u_P2R(&chroma_);
}

void InterPredictor::combine(int plane, const Target& first, const Target& second, zvpSize size, int ref0, int ref1) {
  std::uint8_t* dst = first.planes[plane];
  const std::uint8_t* other = second.planes[plane];
  const std::int32_t dstStep = first.steps[plane != 0], otherStep = second.steps[plane != 0];
  if (weighting_ == Weighting::Explicit && (weighted_[0][ref0] || weighted_[1][ref1])) {
    const ExplicitWeight &a = weights_[0][ref0], &b = weights_[1][ref1];
    zvpiBiDirWeightBlock_H264_8u_P3P1R(dst, other, dst, dstStep, otherStep, dstStep, int(logDenominator_[plane != 0]),
                                       a.weight[plane], a.offset[plane], b.weight[plane], b.offset[plane], size);
  } else if (weighting_ == Weighting::Implicit && implicit_[ref0][ref1] != 32) {
    const int weight = implicit_[ref0][ref1];
    zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(dst, other, dst, dstStep, otherStep, dstStep, 64 - weight, weight, size);
  } else {
    zvpiInterpolateBlock_H264_8u_P3P1R(dst, other, dst, std::uint32_t(size.width), std::uint32_t(size.height), dstStep,
                                       otherStep, dstStep);
  }
}

void InterPredictor::predict(int x, int y, int width, int height, int ref0, Mv mv0, int ref1, Mv mv1) {
  Target to;
  to.planes[0] = frame_->planes[0] + y * frame_->steps[0] + x;
  for (int plane = 1; plane < 3; ++plane) to.planes[plane] = frame_->planes[plane] + y / 2 * frame_->steps[1] + x / 2;
  to.steps[0] = std::int32_t(frame_->steps[0]);
  to.steps[1] = std::int32_t(frame_->steps[1]);
  const zvpSize sizes[2] = {{width, height}, {width / 2, height / 2}};

  if (ref0 >= 0 && ref1 >= 0) {
    const Target second{{scratch_[0], scratch_[1], scratch_[2]}, {16, 16}};
    interpolate(0, ref0, x, y, width, height, mv0, to);
    interpolate(1, ref1, x, y, width, height, mv1, second);
    for (int plane = 0; plane < 3; ++plane) combine(plane, to, second, sizes[plane != 0], ref0, ref1);
    return;
  }
  const int list = ref0 >= 0 ? 0 : 1, ref = ref0 >= 0 ? ref0 : ref1;
  interpolate(list, ref, x, y, width, height, ref0 >= 0 ? mv0 : mv1, to);
  if (weighting_ != Weighting::Explicit || !weighted_[list][ref]) return;
  const ExplicitWeight& weight = weights_[list][ref];
  for (int plane = 0; plane < 3; ++plane)
    zvpiUniDirWeightBlock_H264_8u_C1IR(to.planes[plane], to.steps[plane != 0], int(logDenominator_[plane != 0]),
                                       weight.weight[plane], weight.offset[plane], sizes[plane != 0]);
}

}  // namespace h264
