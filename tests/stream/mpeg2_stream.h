// Streams of random MPEG-1 and MPEG-2 syntax: what the encoders at hand don't write, field pictures, dual prime,
// concealment vectors, whole-sample vectors, slices over several rows. Vectors stay in their references and samples in
// a moderate range, in which all transforms agree.
#pragma once

#include <cstdint>

#include "stream_support.h"

namespace zvptest {

struct Mpeg2StreamOptions {
  std::uint64_t seed = 1;
  int widthMbs = 3, heightMbs = 4;  // of a frame; even rows if it is interlaced
  int pictures = 7;
  bool mpeg1 = false;
  bool bPictures = false;
  bool interlaced = false;     // field prediction and transform in frames
  bool fieldPictures = false;  // some frames are pairs of fields
  bool dualPrime = false;      // not with B-pictures
  bool concealment = false;
  bool sampling422 = false;
  bool matrices = false;      // in the sequence header and, of MPEG-2, in extensions
  bool wholeSamples = false;  // vectors of MPEG-1
  bool longSlices = false;    // over rows, in MPEG-1
};
Bytes randomMpeg2Stream(const Mpeg2StreamOptions& options);

}  // namespace zvptest
