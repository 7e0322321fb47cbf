#include "h264/motion.h"

#include <algorithm>

namespace h264 {

namespace {

// Place of each 4x4 block in decoding order, by row and column.
constexpr int codedOrder[4][4] = {{0, 1, 4, 5}, {2, 3, 6, 7}, {8, 9, 12, 13}, {10, 11, 14, 15}};

std::int16_t middle(std::int16_t a, std::int16_t b, std::int16_t c) {
  return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

// The smaller of two reference indices, of which negative ones do not count.
int minPositive(int a, int b) { return a >= 0 && b >= 0 ? std::min(a, b) : std::max(a, b); }

}  // namespace

bool distanceScale(std::int32_t current, const Frame& ref0, const Frame& ref1, std::int32_t& scale) {
  const std::int64_t far = std::int64_t(ref1.poc()) - ref0.poc();
  if (ref0.longTerm() || far == 0) return false;
  const std::int64_t near = std::int64_t(current) - ref0.poc();
  const std::int32_t tb = std::int32_t(std::clamp<std::int64_t>(near, -128, 127));
  const std::int32_t td = std::int32_t(std::clamp<std::int64_t>(far, -128, 127));
  const std::int32_t tx = (16384 + std::abs(td / 2)) / td;
  scale = std::clamp((tb * tx + 32) >> 6, -1024, 1023);
  return true;
}

void Motion::beginSlice(PictureState& picture, const SliceHeader& slice, const RefLists& lists) {
  picture_ = &picture;
  frame_ = picture.frame;
  lists_ = slice.type == SliceType::B ? 2 : slice.type == SliceType::P ? 1 : 0;
  spatial_ = slice.directSpatial;
  inference8x8_ = picture.sps->direct8x8Inference;
  for (int list = 0; list < 2; ++list)
    for (int i = 0; i < maxRefs; ++i)
      stores_[list][i] = lists.usable(list, i) ? std::int8_t(lists.entries[list][i]->index) : std::int8_t(-1);
  if (lists_ != 2) return;
  const Frame* collocated = lists.entries[1][0];
  collocated_ = lists.usable(1, 0) ? collocated : nullptr;
  if (!collocated_) return;
  collocatedShortTerm_ = collocated->shortTerm();
  if (spatial_) return;
  std::memset(storeToRef0_, -1, sizeof storeToRef0_);
  for (int i = maxRefs - 1; i >= 0; --i) {
    const Frame* entry = lists.entries[0][i];
    if (!entry || i >= int(slice.refCount[0])) continue;
    scaled_[i] = distanceScale(frame_->poc(), *entry, *collocated, scale_[i]);
    if (collocated->storeSerials[entry->index] == entry->serial) storeToRef0_[entry->index] = std::int8_t(i);
  }
}

void Motion::load(int list) {
  const MbMotion* motion = frame_->motion[list].get();
  const MbRefs* refs = frame_->refs.get();
  const int width = picture_->widthMbs;
  Mv* mv = mv_[list];
  std::int8_t* ref = ref_[list];
  for (int y = 0; y < 4; ++y) std::memset(&ref[at(0, y)], unavailable, 4);
  if (near_.a) {
    const Mv* from = motion[mb_ - 1].mv;
    for (int y = 0; y < 4; ++y) {
      mv[at(-1, y)] = from[4 * y + 3];
      ref[at(-1, y)] = refs[mb_ - 1].index[list][(y & 2) + 1];
    }
  } else {
    for (int y = 0; y < 4; ++y) ref[at(-1, y)] = unavailable;
  }
  if (near_.b) {
    std::memcpy(&mv[at(0, -1)], &motion[mb_ - width].mv[12], 4 * sizeof(Mv));
    const std::int8_t* from = refs[mb_ - width].index[list];
    ref[at(0, -1)] = ref[at(1, -1)] = from[2];
    ref[at(2, -1)] = ref[at(3, -1)] = from[3];
  } else {
    std::memset(&ref[at(0, -1)], unavailable, 4);
  }
  if (near_.c) {
    mv[at(4, -1)] = motion[mb_ - width + 1].mv[12];
    ref[at(4, -1)] = refs[mb_ - width + 1].index[list][2];
  } else {
    ref[at(4, -1)] = unavailable;
  }
  if (near_.d) {
    mv[at(-1, -1)] = motion[mb_ - width - 1].mv[15];
    ref[at(-1, -1)] = refs[mb_ - width - 1].index[list][3];
  } else {
    ref[at(-1, -1)] = unavailable;
  }
}

Mv Motion::median(const Block& a, const Block& b, const Block& c, int ref) {
  if (b.ref == unavailable && c.ref == unavailable && a.ref != unavailable) return a.mv;
  const bool fromA = a.ref == ref, fromB = b.ref == ref, fromC = c.ref == ref;
  if (fromA + fromB + fromC == 1) return fromA ? a.mv : fromB ? b.mv : c.mv;
  // Vectors of blocks that are not there or do not use the list count as zero.
  const Mv zero, mvA = a.ref < 0 ? zero : a.mv, mvB = b.ref < 0 ? zero : b.mv, mvC = c.ref < 0 ? zero : c.mv;
  return {middle(mvA.x, mvB.x, mvC.x), middle(mvA.y, mvB.y, mvC.y)};
}

Motion::Block Motion::wholeA(int list) const {
  if (!near_.a) return {unavailable, {}};
  return {frame_->refs[std::size_t(mb_ - 1)].index[list][1], frame_->motion[list][std::size_t(mb_ - 1)].mv[3]};
}

Motion::Block Motion::wholeB(int list) const {
  if (!near_.b) return {unavailable, {}};
  const std::size_t b = std::size_t(mb_ - picture_->widthMbs);
  return {frame_->refs[b].index[list][2], frame_->motion[list][b].mv[12]};
}

Motion::Block Motion::wholeC(int list) const {
  if (near_.c) {
    const std::size_t c = std::size_t(mb_ - picture_->widthMbs + 1);
    return {frame_->refs[c].index[list][2], frame_->motion[list][c].mv[12]};
  }
  if (near_.d) {
    const std::size_t d = std::size_t(mb_ - picture_->widthMbs - 1);
    return {frame_->refs[d].index[list][3], frame_->motion[list][d].mv[15]};
  }
  return {unavailable, {}};
}

Motion::Block Motion::blockC(int list, int bx, int by, int width) const {
  const int cx = bx + width, cy = by - 1;
  const bool there = cy < 0 || (cx < 4 && codedOrder[cy][cx] < codedOrder[by][bx]);
  if (there && ref_[list][at(cx, cy)] != unavailable) return {ref_[list][at(cx, cy)], mv_[list][at(cx, cy)]};
  return {ref_[list][at(bx - 1, cy)], mv_[list][at(bx - 1, cy)]};
}

Mv Motion::predictWhole(int list, int ref) const { return median(wholeA(list), wholeB(list), wholeC(list), ref); }

Mv Motion::predictRow(int list, int half, int ref) const {
  const Block preferred = half == 0 ? blockB(list, 0, 0) : blockA(list, 0, 2);
  return preferred.ref == ref ? preferred.mv : predict(list, 0, 2 * half, 4, ref);
}

Mv Motion::predictColumn(int list, int half, int ref) const {
  const Block preferred = half == 0 ? blockA(list, 0, 0) : blockC(list, 2, 0, 2);
  return preferred.ref == ref ? preferred.mv : predict(list, 2 * half, 0, 2, ref);
}

Mv Motion::predict(int list, int bx, int by, int width, int ref) const {
  return median(blockA(list, bx, by), blockB(list, bx, by), blockC(list, bx, by, width), ref);
}

Mv Motion::skipVector() const {
  const Block a = wholeA(0), b = wholeB(0);
  if (a.ref == unavailable || b.ref == unavailable || (a.ref == 0 && a.mv == Mv()) || (b.ref == 0 && b.mv == Mv()))
    return {};
  return median(a, b, wholeC(0), 0);
}

void Motion::storeWhole(int ref0, Mv mv0, int ref1, Mv mv1) {
  const int ref[2] = {ref0, ref1};
  const Mv mv[2] = {mv0, mv1};
  MbRefs& refs = frame_->refs[std::size_t(mb_)];
  for (int list = 0; list < 2; ++list) {
    std::memset(refs.index[list], ref[list], 4);
    std::memset(refs.store[list], ref[list] < 0 ? -1 : stores_[list][ref[list]], 4);
    if (list < lists_) std::fill_n(frame_->motion[list][std::size_t(mb_)].mv, 16, mv[list]);
  }
}

void Motion::store() {
  MbRefs& refs = frame_->refs[std::size_t(mb_)];
  for (int list = 0; list < 2; ++list) {
    if (list >= lists_) {
      std::memset(refs.index[list], unused, 4);
      std::memset(refs.store[list], -1, 4);
      continue;
    }
    Mv* to = frame_->motion[list][std::size_t(mb_)].mv;
    for (int y = 0; y < 4; ++y) std::memcpy(to + 4 * y, &mv_[list][at(0, y)], 4 * sizeof(Mv));
    for (int quarter = 0; quarter < 4; ++quarter) {
      const int ref = ref_[list][at(2 * (quarter & 1), quarter & 2)];
      refs.index[list][quarter] = std::int8_t(ref);
      refs.store[list][quarter] = ref < 0 ? std::int8_t(-1) : stores_[list][ref];
    }
  }
}

void Motion::storeIntra() {
  std::memset(&frame_->refs[std::size_t(mb_)], -1, sizeof(MbRefs));
  for (int list = 0; list < lists_; ++list)
    std::fill_n(frame_->motion[list][std::size_t(mb_)].mv, 16, Mv());
}

bool Motion::direct(unsigned mask, MbShape& shape) {
  if (!collocated_) return false;
  return spatial_ ? directSpatial(mask, shape, false) : directTemporal(mask, shape);
}

bool Motion::directMacroblock(MbShape& shape) {
  if (!collocated_) return false;
  if (spatial_) {
    if (!directSpatial(15, shape, true)) return false;
    if (shape == MbShape::Whole) return true;
  } else if (!directTemporal(15, shape)) {
    return false;
  }
  store();
  return true;
}

bool Motion::directSpatial(unsigned mask, MbShape& shape, bool storeIfWhole) {
  int ref[2];
  Mv mv[2];
  for (int list = 0; list < 2; ++list) {
    const Block a = wholeA(list), b = wholeB(list), c = wholeC(list);
    ref[list] = minPositive(a.ref, minPositive(b.ref, c.ref));
    if (ref[list] >= 0) mv[list] = median(a, b, c, ref[list]);
    else ref[list] = unused;
  }
  if (ref[0] < 0 && ref[1] < 0) ref[0] = ref[1] = 0;
  for (int list = 0; list < 2; ++list)
    if (ref[list] >= 0 && stores_[list][ref[list]] < 0) return false;

  // Blocks that stand still in the collocated picture stand still here.
  const Mv zero;
  const bool mayStand = collocatedShortTerm_ && ((ref[0] == 0 && mv[0] != zero) || (ref[1] == 0 && mv[1] != zero));
  unsigned asked = 0, standing = 0;  // bit i: 4x4 block i in raster order
  const MbRefs& colRefs = collocated_->refs[std::size_t(mb_)];
  for (int quarter = 0; quarter < 4; ++quarter) {
    if (!(mask >> quarter & 1)) continue;
    const int bx = 2 * (quarter & 1), by = quarter & 2;
    asked |= 0x33u << (4 * by + bx);
    if (!mayStand) continue;
    const int colList = colRefs.index[0][quarter] >= 0 ? 0 : 1;
    if (colRefs.index[colList][quarter] != 0) continue;
    const Mv* colMv = collocated_->motion[colList][std::size_t(mb_)].mv;
    const auto stands = [](Mv v) { return v.x >= -1 && v.x <= 1 && v.y >= -1 && v.y <= 1; };
    if (inference8x8_) {
      if (stands(colMv[12 * (by / 2) + 3 * (bx / 2)])) standing |= 0x33u << (4 * by + bx);
    } else {
      for (int y = by; y < by + 2; ++y)
        for (int x = bx; x < bx + 2; ++x)
          if (stands(colMv[4 * y + x])) standing |= 1u << (4 * y + x);
    }
  }

  const Mv still[2] = {ref[0] == 0 ? zero : mv[0], ref[1] == 0 ? zero : mv[1]};
  if (standing == 0 || standing == asked) {
    shape = MbShape::Whole;
    const Mv* all = standing == 0 ? mv : still;
    if (storeIfWhole) {
      storeWhole(ref[0], all[0], ref[1], all[1]);
      return true;
    }
  } else {
    shape = inference8x8_ ? MbShape::Quarters : MbShape::Blocks;
  }
  for (int block = 0; block < 16; ++block) {
    if (!(asked >> block & 1)) continue;
    const int place = at(block & 3, block >> 2);
    for (int list = 0; list < 2; ++list) {
      ref_[list][place] = std::int8_t(ref[list]);
      mv_[list][place] = standing >> block & 1 ? still[list] : mv[list];
    }
  }
  return true;
}

bool Motion::directTemporal(unsigned mask, MbShape& shape) {
  const MbRefs& colRefs = collocated_->refs[std::size_t(mb_)];
  if (stores_[1][0] < 0) return false;
  bool same = true;
  int firstRef = unavailable;
  Mv first[2];
  for (int quarter = 0; quarter < 4; ++quarter) {
    if (!(mask >> quarter & 1)) continue;
    const int bx = 2 * (quarter & 1), by = quarter & 2;
    const int colList = colRefs.index[0][quarter] >= 0 ? 0 : 1;
    const bool colIntra = colRefs.index[colList][quarter] < 0;
    const int ref = colIntra ? 0 : storeToRef0_[colRefs.store[colList][quarter]];
    if (ref < 0 || stores_[0][ref] < 0) return false;
    setRef(0, bx, by, 2, 2, ref);
    setRef(1, bx, by, 2, 2, 0);
    const Mv* colMv = collocated_->motion[colList][std::size_t(mb_)].mv;
    for (int y = by; y < by + 2; ++y)
      for (int x = bx; x < bx + 2; ++x) {
        const int col = inference8x8_ ? 12 * (by / 2) + 3 * (bx / 2) : 4 * y + x;
        const Mv from = colIntra ? Mv() : colMv[col];
        Mv mv0 = from, mv1;
        if (scaled_[ref]) {
          mv0 = {std::int16_t((scale_[ref] * from.x + 128) >> 8), std::int16_t((scale_[ref] * from.y + 128) >> 8)};
          mv1 = {std::int16_t(mv0.x - from.x), std::int16_t(mv0.y - from.y)};
        }
        mv_[0][at(x, y)] = mv0;
        mv_[1][at(x, y)] = mv1;
        if (firstRef == unavailable) {
          firstRef = ref;
          first[0] = mv0;
          first[1] = mv1;
        }
        same = same && ref == firstRef && mv0 == first[0] && mv1 == first[1];
      }
  }
  shape = same ? MbShape::Whole : inference8x8_ ? MbShape::Quarters : MbShape::Blocks;
  return true;
}

}  // namespace h264
