// Reference picture lists (H.264 8.2.4), for frames.
#pragma once

#include <vector>

#include "h264/frame.h"
#include "h264/slice_header.h"

namespace h264 {

struct RefLists {
  Frame* entries[2][maxRefs] = {};  // null: there is no such picture
  bool usable(int list, int i) const { return entries[list][i] && !entries[list][i]->nonExisting; }
};

// The lists of a P or B slice of a picture with the given count. FrameNumWrap of the frames is up to date. False if a
// modification names a picture that is not there.
bool makeRefLists(const SliceHeader& slice, const SequenceParameters& sps, const std::vector<Frame*>& stored,
                  std::int32_t poc, RefLists& lists);

}  // namespace h264
