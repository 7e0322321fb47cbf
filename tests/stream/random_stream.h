// Makes H.264 streams whose every syntax element is drawn at random among what the standard allows: features that
// common encoders do not use come up here. The samples are noise; an independent decoder says what they should be.
#pragma once

#include <cstdint>

#include "h264_writer.h"

namespace zvptest {

struct RandomStreamOptions {
  std::uint64_t seed = 1;
  int widthMbs = 4, heightMbs = 3;
  int pictures = 12;
  unsigned maxRefFrames = 4;
  unsigned pocType = 0;
  bool bPictures = false;         // B slices with direct prediction in spatial mode, and pictures out of order
  bool pcm = false;               // I_PCM macroblocks
  bool weights = false;           // explicit weights in P and B slices; otherwise B slices may have implicit ones
  bool memoryCommands = false;    // all memory management operations, long-term references
  bool modifications = false;     // reference list modification
  bool gaps = false;              // in frame_num; without B pictures
  bool slices = false;            // several slices a picture, of different types
  bool redundant = false;         // redundant slices with other contents
  bool omitRedundant = false;     // the same stream, but without the redundant slices
  bool resetsAreIdr = false;      // the same stream, but with IDR pictures in the place of those with operation 5,
                                  // which are intra pictures where there are B pictures
  bool transform8x8 = false;
  bool scaling = false;           // scaling matrices
  bool chromaOffsets = false;     // different QP offsets of Cb and Cr
  bool constrainedIntra = false;
  bool cropping = false;
};

Bytes randomStream(const RandomStreamOptions& options);

}  // namespace zvptest
