#include "h264/ref_lists.h"

#include <algorithm>

namespace h264 {

namespace {

using Frames = std::vector<Frame*>;

// The order before modification (8.2.4.2.1, 8.2.4.2.3).
Frames initialList(const SliceHeader& slice, const SequenceParameters& sps, const Frames& stored, std::int32_t poc,
                   int list) {
  Frames before, after, longTerm;
  for (Frame* frame : stored) {
    if (frame->longTerm()) longTerm.push_back(frame);
    if (!frame->shortTerm()) continue;
    if (slice.type != SliceType::B) before.push_back(frame);
    else if (frame->nonExisting && sps.pocType == 0) continue;
    else (frame->poc() <= poc ? before : after).push_back(frame);
  }
  const auto descending = [&](const Frame* a, const Frame* b) { return a->poc() > b->poc(); };
  const auto ascending = [&](const Frame* a, const Frame* b) { return a->poc() < b->poc(); };
  if (slice.type == SliceType::B) {
    std::stable_sort(before.begin(), before.end(), descending);
    std::stable_sort(after.begin(), after.end(), ascending);
  } else {
    std::stable_sort(before.begin(), before.end(),
                     [](const Frame* a, const Frame* b) { return a->frameNumWrap > b->frameNumWrap; });
  }
  std::stable_sort(longTerm.begin(), longTerm.end(),
                   [](const Frame* a, const Frame* b) { return a->longTermIndex < b->longTermIndex; });
  Frames result = list == 0 ? before : after;
  const Frames& second = list == 0 ? after : before;
  result.insert(result.end(), second.begin(), second.end());
  result.insert(result.end(), longTerm.begin(), longTerm.end());
  return result;
}

// Modification (8.2.4.3).
bool modify(const SliceHeader& slice, const SequenceParameters& sps, const Frames& stored, int list,
            Frame* (&entries)[maxRefs]) {
  const unsigned count = slice.refCount[list];
  const std::int64_t maxPicNum = sps.maxFrameNum();
  std::int64_t predicted = slice.frameNum;
  unsigned place = 0;
  for (const ListModification& modification : slice.modifications[list]) {
    if (place >= count) return false;
    Frame* found = nullptr;
    if (modification.idc == 2) {
      for (Frame* frame : stored)
        if (frame->longTerm() && frame->longTermIndex == modification.value) found = frame;
    } else {
      const std::int64_t difference = std::int64_t(modification.value) + 1;
      if (difference > maxPicNum) return false;
      predicted += modification.idc == 0 ? -difference : difference;
      if (predicted < 0) predicted += maxPicNum;
      if (predicted >= maxPicNum) predicted -= maxPicNum;
      const std::int64_t picNum = predicted > std::int64_t(slice.frameNum) ? predicted - maxPicNum : predicted;
      for (Frame* frame : stored)
        if (frame->shortTerm() && frame->frameNumWrap == picNum) found = frame;
    }
    if (!found) return false;
    // The picture moves to its place; those from there on move back, and its own later entry closes up.
    Frame* moved = found;
    for (unsigned i = place; i < count; ++i) {
      std::swap(moved, entries[i]);
      if (moved == found) break;
    }
    ++place;
  }
  return true;
}

}  // namespace

bool makeRefLists(const SliceHeader& slice, const SequenceParameters& sps, const Frames& stored, std::int32_t poc,
                  RefLists& lists) {
  lists = RefLists();
  const int listCount = slice.type == SliceType::B ? 2 : slice.type == SliceType::P ? 1 : 0;
  Frames initial[2];
  for (int list = 0; list < listCount; ++list) initial[list] = initialList(slice, sps, stored, poc, list);
  if (listCount == 2 && initial[1].size() > 1 && initial[0] == initial[1]) std::swap(initial[1][0], initial[1][1]);
  for (int list = 0; list < listCount; ++list) {
    const std::size_t count = std::min<std::size_t>(slice.refCount[list], initial[list].size());
    std::copy_n(initial[list].begin(), count, lists.entries[list]);
    if (!modify(slice, sps, stored, list, lists.entries[list])) return false;
  }
  return true;
}

}  // namespace h264
