// Sequence and picture parameter sets (H.264 7.3.2.1, 7.3.2.2, E.1.1). What these decoders cannot do is kept here as
// parsed; the decoder refuses it when a slice makes use of the set.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/decoder.h"
#include "h264/nal.h"
#include "h264/scaling.h"

namespace h264 {

struct SequenceParameters {
  unsigned profile = 0;
  unsigned constraints = 0;  // constraint_set0_flag is bit 7
  unsigned level = 0;
  unsigned id = 0;
  unsigned chromaFormat = 1;
  unsigned bitDepthLuma = 8, bitDepthChroma = 8;
  bool losslessBypass = false;
  ScalingLists scaling;
  unsigned frameNumBits = 4;  // log2_max_frame_num
  unsigned pocType = 0;
  unsigned pocLsbBits = 4;
  bool deltaPocAlwaysZero = false;
  std::int32_t offsetForNonRef = 0;
  std::int32_t offsetForTopToBottom = 0;
  std::vector<std::int32_t> offsetForRefFrame;
  unsigned maxRefFrames = 0;
  bool gapsInFrameNum = false;
  int widthMbs = 0, heightMbs = 0;  // of a frame
  bool frameMbsOnly = true;
  bool mbaff = false;
  bool direct8x8Inference = false;
  int cropLeft = 0, cropRight = 0, cropTop = 0, cropBottom = 0;  // in luma samples

  // VUI
  video::Ratio sampleAspect;
  video::Ratio frameRate;
  bool fullRange = false;
  unsigned matrixCoefficients = 2;
  bool bitstreamRestriction = false;
  unsigned numReorderFrames = 0;
  unsigned maxDecFrameBuffering = 0;

  int mbCount() const { return widthMbs * heightMbs; }
  std::uint32_t maxFrameNum() const { return 1u << frameNumBits; }
  int width() const { return 16 * widthMbs - cropLeft - cropRight; }
  int height() const { return 16 * heightMbs - cropTop - cropBottom; }
  int dpbFrames() const;      // frames that the decoded picture buffer holds (A.3.1, C.4)
  int reorderFrames() const;  // the most pictures that precede one in decoding order and follow it in output order
  video::Format format() const;
  // What keeps the stream from being decoded; empty if nothing does.
  std::string unsupported() const;
  bool operator==(const SequenceParameters&) const = default;
};

// How macroblocks are shared out among slice groups (7.4.2.2).
struct SliceGroups {
  unsigned count = 1;
  unsigned mapType = 0;
  unsigned runLength[8] = {};
  unsigned topLeft[8] = {}, bottomRight[8] = {};
  bool changeDirection = false;
  unsigned changeRate = 1;
  std::vector<std::uint8_t> ids;  // map type 6
  bool operator==(const SliceGroups&) const = default;
};

struct PictureParameters {
  unsigned id = 0;
  unsigned sequenceId = 0;
  bool cabac = false;
  bool bottomFieldPicOrder = false;
  SliceGroups groups;
  unsigned refCount[2] = {1, 1};
  bool weightedPrediction = false;
  unsigned weightedBipred = 0;
  int initialQp = 26;
  int initialQs = 26;
  int chromaQpOffset[2] = {0, 0};
  bool deblockingControl = false;
  bool constrainedIntra = false;
  bool redundantPictures = false;
  bool transform8x8 = false;
  ScalingLists scaling;
  std::string unsupported() const;
  bool operator==(const PictureParameters&) const = default;
};

SequenceParameters parseSequenceParameters(const Nal& nal);
// The sequence parameters are those that the set names; they may be null when that set has not come yet, which matters
// for nothing but the scaling lists of the 8x8 transform.
PictureParameters parsePictureParameters(const Nal& nal, const SequenceParameters* const sequences[32]);

std::string profileName(const SequenceParameters& sps);

}  // namespace h264
