#include "h264/slice_decoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "common/zigzag.h"
#include "h264/deblocking.h"
#include "zvpvc.h"

namespace h264 {

namespace {

// Raster place of the 4x4 blocks in coded order, and their columns and rows.
constexpr std::uint8_t rasterOf[16] = {0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15};

// Table 9-4 for 4:2:0.
constexpr std::uint8_t cbpIntra[48] = {47, 31, 15, 0,  23, 27, 29, 30, 7,  11, 13, 14, 39, 43, 45, 46,
                                       16, 3,  5,  10, 12, 19, 21, 26, 28, 35, 37, 42, 44, 1,  2,  4,
                                       8,  17, 18, 20, 24, 6,  9,  22, 25, 32, 33, 34, 36, 40, 38, 41};
constexpr std::uint8_t cbpInter[48] = {0,  16, 1,  2,  4,  8,  32, 3,  5,  10, 12, 15, 47, 7,  11, 13,
                                       14, 6,  9,  31, 35, 37, 42, 44, 33, 34, 36, 40, 39, 43, 45, 46,
                                       17, 18, 20, 24, 19, 21, 26, 28, 23, 27, 29, 30, 22, 25, 38, 41};

// Lists that a partition uses: bit 0 list 0, bit 1 list 1.
enum Lists : std::uint8_t { L0 = 1, L1 = 2, Bi = 3 };

struct BType {
  MbShape shape;
  std::uint8_t lists[2];
};
// Table 7-14, mb_type 1 to 21.
constexpr BType bTypes[22] = {{},
                              {MbShape::Whole, {L0, L0}},
                              {MbShape::Whole, {L1, L1}},
                              {MbShape::Whole, {Bi, Bi}},
                              {MbShape::Rows, {L0, L0}},
                              {MbShape::Columns, {L0, L0}},
                              {MbShape::Rows, {L1, L1}},
                              {MbShape::Columns, {L1, L1}},
                              {MbShape::Rows, {L0, L1}},
                              {MbShape::Columns, {L0, L1}},
                              {MbShape::Rows, {L1, L0}},
                              {MbShape::Columns, {L1, L0}},
                              {MbShape::Rows, {L0, Bi}},
                              {MbShape::Columns, {L0, Bi}},
                              {MbShape::Rows, {L1, Bi}},
                              {MbShape::Columns, {L1, Bi}},
                              {MbShape::Rows, {Bi, L0}},
                              {MbShape::Columns, {Bi, L0}},
                              {MbShape::Rows, {Bi, L1}},
                              {MbShape::Columns, {Bi, L1}},
                              {MbShape::Rows, {Bi, Bi}},
                              {MbShape::Columns, {Bi, Bi}}};

struct SubType {
  std::uint8_t lists;
  std::uint8_t width, height;  // of the parts, in 4x4 blocks
};
// Tables 7-17 and 7-18; B sub-type 0 is direct.
constexpr SubType pSubTypes[4] = {{L0, 2, 2}, {L0, 2, 1}, {L0, 1, 2}, {L0, 1, 1}};
constexpr SubType bSubTypes[13] = {{0, 0, 0},  {L0, 2, 2}, {L1, 2, 2}, {Bi, 2, 2}, {L0, 2, 1}, {L0, 1, 2}, {L1, 2, 1},
                                   {L1, 1, 2}, {Bi, 2, 1}, {Bi, 1, 2}, {L0, 1, 1}, {L1, 1, 1}, {Bi, 1, 1}};

constexpr std::int32_t scan4x4[16] = {0, 1, 4, 8, 5, 2, 3, 6, 9, 12, 13, 10, 7, 11, 14, 15};
constexpr std::int32_t scanAsCoded[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

// Bits of Cb and of Cr in the library's coded-block pattern.
constexpr std::uint32_t planeBits[2] = {1u << 17 | 0xFu << 19, 1u << 18 | 0xFu << 23};

}  // namespace

// An inter macroblock while its syntax is read.
struct SliceDecoder::InterMb {
  MbShape shape = MbShape::Whole;
  std::uint8_t lists[4] = {};        // by quarter
  SubType sub[4] = {};               // by quarter, where the shape is Quarters
  unsigned direct = 0;               // quarters that are predicted in direct mode
  MbShape directShape = MbShape::Whole;
  std::int8_t refs[2][4];
  bool refsAreZero = false;          // P_8x8ref0
};

void SliceDecoder::damaged(const char* text) const {
  nal_->damaged(in_, std::string(text) + ", macroblock " + std::to_string(mb_));
}

void SliceDecoder::decode(const Nal& nal, const SliceHeader& slice, const PictureParameters& pps, const RefLists& lists,
                          const LevelScales& scales, const std::vector<std::uint8_t>* groups, PictureState& picture) {
  nal_ = &nal;
  slice_ = &slice;
  pps_ = &pps;
  lists_ = &lists;
  scales_ = &scales;
  splitChroma_ = pps.chromaQpOffset[0] != pps.chromaQpOffset[1];
  groups_ = groups;
  picture_ = &picture;
  sliceNumber_ = std::int32_t(picture.slices.size());
  picture.slices.push_back({slice.deblockingDisabled, slice.alphaOffset, slice.betaOffset});
  for (int list = 0; list < 2; ++list)
    for (int i = 0; i < maxRefs; ++i) usableRefs_[list][i] = i < int(slice.refCount[list]) && lists.usable(list, i);
  lumaStep_ = std::int32_t(picture.frame->steps[0]);
  chromaStep_ = std::int32_t(picture.frame->steps[1]);
  qp_ = slice.qp;
  motion_.beginSlice(picture, slice, lists);
  if (!slice.intra()) predictor_.beginSlice(*picture.frame, slice, pps, lists);
  in_ = nal.reader();
  in_.seek(slice.dataBit);

  int mb = int(slice.firstMb);
  const auto begin = [&] {
    mb_ = mb;
    if (mb < 0) damaged("slice runs past the end of the picture");
    beginMacroblock(mb);
  };
  for (;;) {
    if (!slice.intra()) {
      std::uint32_t run = in_.ue();
      if (run > std::uint32_t(picture.mbs.size())) damaged("mb_skip_run is out of range");
      for (; run > 0; --run) {
        begin();
        skipped();
        endMacroblock();
        mb = nextMacroblock(mb);
      }
      if (in_.atEnd()) break;
    }
    begin();
    macroblock();
    endMacroblock();
    mb = nextMacroblock(mb);
    if (in_.atEnd()) break;
  }
  if (in_.overrun()) damaged("slice data end early");
}

int SliceDecoder::nextMacroblock(int mb) const {
  const int count = int(picture_->mbs.size());
  const int group = groups_ ? (*groups_)[std::size_t(mb)] : 0;
  do {
    if (++mb == count) return -1;
  } while (groups_ && (*groups_)[std::size_t(mb)] != group);
  return mb;
}

void SliceDecoder::beginMacroblock(int mb) {
  const int width = picture_->widthMbs;
  mbY_ = mb / width;
  mbX_ = mb - mbY_ * width;
  info_ = &picture_->mbs[std::size_t(mb)];
  if (info_->slice >= 0) damaged("macroblock is coded twice");
  const auto at = [&](bool inside, int distance) -> const MbInfo* {
    return inside && (info_ - distance)->slice == sliceNumber_ ? info_ - distance : nullptr;
  };
  near_.a = at(mbX_ > 0, 1);
  near_.b = at(mbY_ > 0, width);
  near_.c = at(mbY_ > 0 && mbX_ + 1 < width, width - 1);
  near_.d = at(mbY_ > 0 && mbX_ > 0, width + 1);
  info_->slice = sliceNumber_;
  const Frame& frame = *picture_->frame;
  luma_ = frame.planes[0] + std::ptrdiff_t(16 * mbY_) * lumaStep_ + 16 * mbX_;
  for (int plane = 0; plane < 2; ++plane)
    chroma_[plane] = frame.planes[1 + plane] + std::ptrdiff_t(8 * mbY_) * chromaStep_ + 8 * mbX_;
  motion_.beginMacroblock(mb, near_);
}

void SliceDecoder::endMacroblock() {
  if (in_.overrun()) damaged("slice data end early");
  ++picture_->decodedMbs;
  ++picture_->rowMbs[std::size_t(mbY_)];
}

void SliceDecoder::macroblock() {
  const std::uint32_t type = in_.ue();
  switch (slice_->type) {
    case SliceType::P:
      if (type < 5) return inter(type);
      if (type <= 30) return intra(type - 5);
      break;
    case SliceType::B:
      if (type == 0) return direct16x16();
      if (type < 23) return inter(type);
      if (type <= 48) return intra(type - 23);
      break;
    default:
      if (type <= 25) return intra(type);
      break;
  }
  damaged("mb_type is out of range");
}

// ---- Inter macroblocks

void SliceDecoder::requireRef(int list, int ref) const {
  if (!usableRefs_[list][ref]) damaged("reference to a picture that is not there");
}

void SliceDecoder::skipped() {
  info_->kind = MbKind::Inter;
  info_->transform8x8 = false;
  setQp(qp_);
  noResidual();
  InterMb mb;
  if (slice_->type == SliceType::P) {
    requireRef(0, 0);
    const Mv mv = motion_.skipVector();
    info_->shape = MbShape::Whole;
    motion_.storeWhole(0, mv, Motion::unused, Mv());
    predictor_.predict(16 * mbX_, 16 * mbY_, 16, 16, 0, mv, Motion::unused, Mv());
    return;
  }
  mb.direct = 15;
  if (!motion_.directMacroblock(mb.directShape)) damaged("direct mode refers to a picture that is not there");
  info_->shape = mb.shape = mb.directShape;
  predictInter(mb);
}

void SliceDecoder::direct16x16() {
  skipped();  // the motion is that of B_Skip; a residual follows
  const std::uint32_t code = in_.ue();
  if (code > 47) damaged("coded_block_pattern is out of range");
  const unsigned cbp = cbpInter[code];
  if (cbp == 0) return;
  if ((cbp & 15) && pps_->transform8x8 && picture_->sps->direct8x8Inference) info_->transform8x8 = in_.flag();
  readQpDelta();
  readResidual(cbp, false);
  reconstructInter();
}

void SliceDecoder::inter(unsigned type) {
  const bool b = slice_->type == SliceType::B;
  const int lists = b ? 2 : 1;
  InterMb mb;
  std::memset(mb.refs, Motion::unused, sizeof mb.refs);
  if (b ? type == 22 : type >= 3) {
    mb.shape = MbShape::Quarters;
    mb.refsAreZero = !b && type == 4;
    readSubTypes(mb);
  } else if (b) {
    mb.shape = bTypes[type].shape;
    for (int quarter = 0; quarter < 4; ++quarter)
      mb.lists[quarter] = bTypes[type].lists[mb.shape == MbShape::Columns ? quarter & 1 : quarter >> 1];
  } else {
    mb.shape = type == 0 ? MbShape::Whole : type == 1 ? MbShape::Rows : MbShape::Columns;
    std::memset(mb.lists, L0, 4);
  }
  info_->kind = MbKind::Inter;
  info_->transform8x8 = false;
  readRefs(mb);

  if (mb.shape == MbShape::Whole) {
    Mv mv[2];
    for (int list = 0; list < lists; ++list)
      if (mb.refs[list][0] >= 0) mv[list] = readVector(motion_.predictWhole(list, mb.refs[list][0]));
    info_->shape = MbShape::Whole;
    motion_.storeWhole(mb.refs[0][0], mv[0], mb.refs[1][0], mv[1]);
    predictor_.predict(16 * mbX_, 16 * mbY_, 16, 16, mb.refs[0][0], mv[0], mb.refs[1][0], mv[1]);
  } else {
    for (int list = 0; list < lists; ++list) motion_.load(list);
    if (mb.direct && !motion_.direct(mb.direct, mb.directShape))
      damaged("direct mode refers to a picture that is not there");
    readVectors(mb);
    info_->shape = mb.shape;
    if (mb.shape == MbShape::Quarters) {
      for (int quarter = 0; quarter < 4; ++quarter)
        if (!(mb.direct >> quarter & 1) && mb.sub[quarter].width * mb.sub[quarter].height < 4)
          info_->shape = MbShape::Blocks;
      if (mb.direct && mb.directShape == MbShape::Blocks) info_->shape = MbShape::Blocks;
    }
    motion_.store();
    predictInter(mb);
  }

  const std::uint32_t code = in_.ue();
  if (code > 47) damaged("coded_block_pattern is out of range");
  const unsigned cbp = cbpInter[code];
  if (cbp == 0) {
    setQp(qp_);
    noResidual();
    return;
  }
  if ((cbp & 15) && pps_->transform8x8 && mayUse8x8(mb)) info_->transform8x8 = in_.flag();
  readQpDelta();
  readResidual(cbp, false);
  reconstructInter();
}

// May transform_size_8x8_flag follow? Not with parts smaller than 8x8.
bool SliceDecoder::mayUse8x8(const InterMb& mb) const {
  if (mb.shape != MbShape::Quarters) return true;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const bool whole = mb.direct >> quarter & 1 ? picture_->sps->direct8x8Inference
                                                : mb.sub[quarter].width == 2 && mb.sub[quarter].height == 2;
    if (!whole) return false;
  }
  return true;
}

void SliceDecoder::readSubTypes(InterMb& mb) {
  const bool b = slice_->type == SliceType::B;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const std::uint32_t type = in_.ue();
    if (type > (b ? 12u : 3u)) damaged("sub_mb_type is out of range");
    mb.sub[quarter] = b ? bSubTypes[type] : pSubTypes[type];
    mb.lists[quarter] = mb.sub[quarter].lists;
    if (b && type == 0) mb.direct |= 1u << quarter;
  }
}

unsigned SliceDecoder::readRef(int list) {
  const unsigned count = slice_->refCount[list];
  const std::uint32_t ref = count == 1 ? 0 : count == 2 ? !in_.flag() : in_.ue();
  if (ref >= count) damaged("ref_idx is out of range");
  requireRef(list, int(ref));
  return ref;
}

void SliceDecoder::readRefs(InterMb& mb) {
  for (int list = 0; list < (slice_->type == SliceType::B ? 2 : 1); ++list)
    for (int quarter = 0; quarter < 4; ++quarter) {
      if (!(mb.lists[quarter] >> list & 1)) continue;
      // Quarters of one partition share a reference.
      const int first = mb.shape == MbShape::Whole ? 0
                        : mb.shape == MbShape::Rows ? quarter & 2
                        : mb.shape == MbShape::Columns ? quarter & 1
                                                       : quarter;
      if (first != quarter) {
        mb.refs[list][quarter] = mb.refs[list][first];
      } else if (mb.refsAreZero) {
        requireRef(list, 0);
        mb.refs[list][quarter] = 0;
      } else {
        mb.refs[list][quarter] = std::int8_t(readRef(list));
      }
    }
}

Mv SliceDecoder::readVector(Mv predicted) {
  const std::int32_t x = in_.se(), y = in_.se();
  return {std::int16_t(unsigned(predicted.x) + unsigned(x)), std::int16_t(unsigned(predicted.y) + unsigned(y))};
}

void SliceDecoder::readVectors(const InterMb& mb) {
  for (int list = 0; list < (slice_->type == SliceType::B ? 2 : 1); ++list) {
    const auto place = [&](int bx, int by, int width, int height, Mv mv) {
      motion_.setMv(list, bx, by, width, height, mv);
    };
    // Vectors that are not used are zero: later macroblocks predict from them.
    if (mb.shape == MbShape::Quarters) {
      for (int quarter = 0; quarter < 4; ++quarter)
        if (!(mb.direct >> quarter & 1)) {
          motion_.setRef(list, 2 * (quarter & 1), quarter & 2, 2, 2, mb.refs[list][quarter]);
          if (mb.refs[list][quarter] < 0) place(2 * (quarter & 1), quarter & 2, 2, 2, Mv());
        }
      for (int quarter = 0; quarter < 4; ++quarter) {
        if (!(mb.lists[quarter] >> list & 1)) continue;
        const int bx = 2 * (quarter & 1), by = quarter & 2, ref = mb.refs[list][quarter];
        const int width = mb.sub[quarter].width, height = mb.sub[quarter].height;
        for (int y = by; y < by + 2; y += height)
          for (int x = bx; x < bx + 2; x += width)
            place(x, y, width, height, readVector(motion_.predict(list, x, y, width, ref)));
      }
      continue;
    }
    const bool rows = mb.shape == MbShape::Rows;
    for (int half = 0; half < 2; ++half) {
      const int bx = rows ? 0 : 2 * half, by = rows ? 2 * half : 0, width = rows ? 4 : 2, height = rows ? 2 : 4;
      const int ref = mb.refs[list][rows ? 2 * half : half];
      Mv mv;
      if (ref >= 0)
        mv = readVector(rows ? motion_.predictRow(list, half, ref) : motion_.predictColumn(list, half, ref));
      motion_.setRef(list, bx, by, width, height, ref);
      place(bx, by, width, height, mv);
    }
  }
}

// Prediction from the motion that is stored in the frame, in the largest blocks that share it.
void SliceDecoder::predictInter(const InterMb& mb) {
  const Frame& frame = *picture_->frame;
  const MbRefs& refs = frame.refs[std::size_t(mb_)];
  const Mv* mv0 = frame.motion[0][std::size_t(mb_)].mv;
  const Mv* mv1 = frame.motion[1][std::size_t(mb_)].mv;
  const auto predict = [&](int bx, int by, int width, int height) {
    const int block = 4 * by + bx, quarter = (by & 2) + (bx >> 1);
    const int ref0 = refs.index[0][quarter], ref1 = refs.index[1][quarter];
    predictor_.predict(16 * mbX_ + 4 * bx, 16 * mbY_ + 4 * by, 4 * width, 4 * height, ref0, mv0[block], ref1,
                       ref1 < 0 ? Mv() : mv1[block]);
  };
  if (mb.direct == 15 && mb.directShape == MbShape::Whole) return predict(0, 0, 4, 4);
  if (mb.shape == MbShape::Rows) {
    predict(0, 0, 4, 2);
    predict(0, 2, 4, 2);
    return;
  }
  if (mb.shape == MbShape::Columns) {
    predict(0, 0, 2, 4);
    predict(2, 0, 2, 4);
    return;
  }
  for (int quarter = 0; quarter < 4; ++quarter) {
    const int bx = 2 * (quarter & 1), by = quarter & 2;
    int width = mb.sub[quarter].width, height = mb.sub[quarter].height;
    if (mb.direct >> quarter & 1) width = height = mb.directShape == MbShape::Blocks ? 1 : 2;
    for (int y = by; y < by + 2; y += height)
      for (int x = bx; x < bx + 2; x += width) predict(x, y, width, height);
  }
}

// ---- Intra macroblocks

unsigned SliceDecoder::intraEdges() const {
  const auto usable = [&](const MbInfo* mb) { return mb && (mb->intra() || !pps_->constrainedIntra); };
  return (usable(near_.a) ? 0u : 1u) | (usable(near_.b) ? 0u : 4u) | (usable(near_.d) ? 0u : 16u) |
         (usable(near_.c) ? 0u : 32u);  // bit 5, for the caller: the macroblock above right
}

void SliceDecoder::intra(unsigned type) {
  motion_.storeIntra();
  info_->transform8x8 = false;
  if (type == 25) return pcm();
  const unsigned edges = intraEdges();
  std::int32_t modes[16];
  if (type == 0) {
    info_->transform8x8 = pps_->transform8x8 && in_.flag();
    info_->kind = info_->transform8x8 ? MbKind::Intra8x8 : MbKind::Intra4x4;
    readIntraModes(modes);
  } else {
    info_->kind = MbKind::Intra16x16;
    modes[0] = std::int32_t(type - 1) & 3;
  }
  const std::uint32_t chromaMode = in_.ue();
  if (chromaMode > 3) damaged("intra_chroma_pred_mode is out of range");
  unsigned cbp;
  if (type == 0) {
    const std::uint32_t code = in_.ue();
    if (code > 47) damaged("coded_block_pattern is out of range");
    cbp = cbpIntra[code];
  } else {
    cbp = (type - 1) / 4 % 3 * 16 + (type >= 13 ? 15 : 0);
  }
  if (cbp != 0 || type != 0) {
    readQpDelta();
    readResidual(cbp, type != 0);
  } else {
    setQp(qp_);
    noResidual();
  }
  reconstructIntraLuma(modes, edges);
  reconstructChroma(true, chromaMode, edges);
}

void SliceDecoder::pcm() {
  info_->kind = MbKind::Pcm;
  setQp(0);
  info_->coded = 0xFFFF;
  std::memset(info_->counts, 16, sizeof info_->counts);
  in_.seek((in_.position() + 7) & ~7u);
  if (in_.position() + 384 * 8 > in_.end()) damaged("slice data end within an I_PCM macroblock");
  const auto copy = [this](std::uint8_t* to, std::ptrdiff_t step, int size) {
    for (int y = 0; y < size; ++y)
      for (int x = 0; x < size; ++x) to[y * step + x] = std::uint8_t(in_.bits(8));
  };
  copy(luma_, lumaStep_, 16);
  for (std::uint8_t* plane : chroma_) copy(plane, chromaStep_, 8);
}

void SliceDecoder::readIntraModes(std::int32_t (&modes)[16]) {
  // Modes around and in the macroblock, in rows of eight as the motion grid; negative: not available, which makes
  // the predicted mode DC.
  constexpr int dc = 2;
  std::int8_t grid[5 * 8];
  const auto column = [&](const MbInfo* mb, const std::int8_t* modesOf, int first, int step) {
    for (int i = 0; i < 4; ++i) {
      std::int8_t mode = dc;
      if (!mb || (!mb->intra() && pps_->constrainedIntra)) mode = -1;
      else if (mb->kind == MbKind::Intra4x4 || mb->kind == MbKind::Intra8x8) mode = modesOf[i];
      grid[first + i * step] = mode;
    }
  };
  column(near_.a, near_.a ? near_.a->modesRight : nullptr, 8, 8);
  column(near_.b, near_.b ? near_.b->modesBottom : nullptr, 1, 1);
  const int size = info_->transform8x8 ? 2 : 1;  // of a block, in 4x4 blocks
  for (int block = 0; block < 16; block += size * size) {
    const int raster = rasterOf[block];
    std::int8_t* here = grid + 8 * (raster >> 2) + 8 + (raster & 3) + 1;
    int mode = std::min(here[-1], here[-8]);
    if (mode < 0) mode = dc;
    const std::uint32_t ahead = in_.peek();
    if (ahead >> 31) {
      in_.skip(1);
    } else {
      const int coded = int(ahead >> 28);
      in_.skip(4);
      mode = coded < mode ? coded : coded + 1;
    }
    for (int y = 0; y < size; ++y) std::memset(here + 8 * y, mode, std::size_t(size));
    modes[block / (size * size)] = mode;
  }
  for (int i = 0; i < 4; ++i) {
    info_->modesRight[i] = grid[8 * i + 8 + 4];
    info_->modesBottom[i] = grid[8 * 4 + 1 + i];
  }
}

// ---- Residual

void SliceDecoder::setQp(int qp) {
  info_->qp = std::uint8_t(qp);
  for (int plane = 0; plane < 2; ++plane)
    info_->chromaQp[plane] = std::uint8_t(chromaQp(qp, pps_->chromaQpOffset[plane]));
}

void SliceDecoder::readQpDelta() {
  const std::int32_t delta = in_.se();
  if (delta < -26 || delta > 25) damaged("mb_qp_delta is out of range");
  qp_ = (qp_ + delta + 52) % 52;
  setQp(qp_);
}

void SliceDecoder::noResidual() {
  lumaBlocks_ = chromaBlocks_ = 0;
  info_->coded = 0;
  std::memset(info_->counts, 0, sizeof info_->counts);
}

void SliceDecoder::loadCounts() {
  if (near_.a) {
    const std::uint8_t* left = near_.a->counts;
    for (int y = 0; y < 4; ++y) counts_[lumaCount(-1, y)] = left[4 * y + 3];
    for (int plane = 0; plane < 2; ++plane)
      for (int y = 0; y < 2; ++y) counts_[chromaCount(plane, -1, y)] = left[16 + 4 * plane + 2 * y + 1];
  } else {
    for (int y = 0; y < 4; ++y) counts_[lumaCount(-1, y)] = noCount;
    for (int plane = 0; plane < 2; ++plane)
      for (int y = 0; y < 2; ++y) counts_[chromaCount(plane, -1, y)] = noCount;
  }
  if (near_.b) {
    const std::uint8_t* top = near_.b->counts;
    std::memcpy(&counts_[lumaCount(0, -1)], top + 12, 4);
    for (int plane = 0; plane < 2; ++plane) std::memcpy(&counts_[chromaCount(plane, 0, -1)], top + 18 + 4 * plane, 2);
  } else {
    std::memset(&counts_[lumaCount(0, -1)], noCount, 4);
    for (int plane = 0; plane < 2; ++plane) std::memset(&counts_[chromaCount(plane, 0, -1)], noCount, 2);
  }
  for (int y = 0; y < 4; ++y) std::memset(&counts_[lumaCount(0, y)], 0, 4);
  for (int plane = 0; plane < 2; ++plane)
    for (int y = 0; y < 2; ++y) std::memset(&counts_[chromaCount(plane, 0, y)], 0, 2);
}

void SliceDecoder::storeCounts() {
  for (int y = 0; y < 4; ++y) std::memcpy(info_->counts + 4 * y, &counts_[lumaCount(0, y)], 4);
  for (int plane = 0; plane < 2; ++plane)
    for (int y = 0; y < 2; ++y)
      std::memcpy(info_->counts + 16 + 4 * plane + 2 * y, &counts_[chromaCount(plane, 0, y)], 2);
}

int SliceDecoder::readBlock(const std::uint8_t* count, std::int16_t maxCoefficients, const std::int32_t* scan,
                            std::int16_t*& to) {
  if (in_.overrun()) damaged("slice data end early");
  // nC (9.2.1): the mean of the neighbours' counts, or the one that there is.
  const unsigned sum = unsigned(count[-1]) + count[-8];
  const std::uint32_t context = (sum < noCount ? (sum + 1) >> 1 : sum) & 31;
  const CavlcTables::Set& set = maxCoefficients == 16 ? tables_.full : tables_.ac;
  const std::uint32_t* word = in_.word();
  std::int32_t offset = in_.offset();
  std::int16_t total = 0;
  const zvpStatus status = zvpiDecodeCAVLCCoeffs_H264_1u16s(&word, &offset, &total, &to, context, maxCoefficients,
                                                            set.coeffToken, set.totalZeros, tables_.runBefore, scan);
  in_.setCursor(word, offset);
  if (status != zvpStatusOk || total > maxCoefficients) damaged("illegal code among the coefficients");
  return total;
}

int SliceDecoder::readChromaDc(std::int16_t*& to) {
  if (in_.overrun()) damaged("slice data end early");
  const std::uint32_t* word = in_.word();
  std::int32_t offset = in_.offset();
  std::int16_t total = 0;
  const zvpStatus status = zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(
      &word, &offset, &total, &to, tables_.chromaDcCoeffToken, tables_.chromaDcTotalZeros, tables_.runBefore);
  in_.setCursor(word, offset);
  if (status != zvpStatusOk) damaged("illegal code among the coefficients");
  return total;
}

void SliceDecoder::readResidual(unsigned cbp, bool intra16x16) {
  loadCounts();
  lumaBlocks_ = chromaBlocks_ = 0;
  std::int16_t* luma = lumaCoefficients_;
  if (intra16x16 && readBlock(&counts_[lumaCount(0, 0)], 16, scan4x4, luma) > 0) lumaBlocks_ |= 1;
  const std::int16_t most = intra16x16 ? 15 : 16;
  unsigned coded = 0;
  for (int quarter = 0; quarter < 4; ++quarter) {
    if (!(cbp >> quarter & 1)) continue;
    std::int16_t* const block8x8 = luma;
    std::int16_t interleaved[16];
    bool any = false;
    if (info_->transform8x8) std::memset(block8x8, 0, 64 * sizeof *block8x8);
    for (int part = 0; part < 4; ++part) {
      const int block = 4 * quarter + part, raster = rasterOf[block];
      std::uint8_t* count = &counts_[lumaCount(raster & 3, raster >> 2)];
      if (!info_->transform8x8) {
        const int total = readBlock(count, most, scan4x4, luma);
        *count = std::uint8_t(total);
        if (total > 0) {
          lumaBlocks_ |= 2u << block;
          coded |= 1u << raster;
        }
        continue;
      }
      // Coefficient k of the part is coefficient 4k + part of the 8x8 block.
      std::int16_t* to = interleaved;
      const int total = readBlock(count, 16, scanAsCoded, to);
      *count = std::uint8_t(total);
      if (total == 0) continue;
      any = true;
      for (int k = 0; k < 16; ++k) block8x8[video::zigzag8x8[4 * k + part]] = interleaved[k];
    }
    if (any) {
      luma += 64;
      lumaBlocks_ |= 1u << quarter;
      coded |= 0x33u << (8 * (quarter >> 1) + 2 * (quarter & 1));
    }
  }
  info_->coded = std::uint16_t(coded);

  std::int16_t* chroma[2] = {chromaCoefficients_[0], chromaCoefficients_[1]};
  if (cbp & 48)
    for (int plane = 0; plane < 2; ++plane)
      if (readChromaDc(chroma[splitChroma_ ? plane : 0]) > 0) chromaBlocks_ |= 1u << (17 + plane);
  if (cbp & 32)
    for (int plane = 0; plane < 2; ++plane)
      for (int block = 0; block < 4; ++block) {
        std::uint8_t* count = &counts_[chromaCount(plane, block & 1, block >> 1)];
        const int total = readBlock(count, 15, scan4x4, chroma[splitChroma_ ? plane : 0]);
        *count = std::uint8_t(total);
        if (total > 0) chromaBlocks_ |= 1u << (19 + 4 * plane + block);
      }
  storeCounts();
}

// ---- Reconstruction

void SliceDecoder::reconstructInter() {
  if (lumaBlocks_) {
    std::int16_t* cursor = lumaCoefficients_;
    const std::uint32_t qp = info_->qp;
    if (info_->transform8x8)
      zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, lumaBlocks_, qp,
                                                   scales_->scale8x8[1][qp % 6], 0);
    else if (scales_->flat)
      zvpiReconstructLumaInterMB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, lumaBlocks_, qp);
    else
      zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, lumaBlocks_, qp,
                                                   scales_->scale4x4[3][qp % 6], 0);
  }
  if (chromaBlocks_) reconstructChroma(false, 0, 0);
}

void SliceDecoder::reconstructIntraLuma(const std::int32_t (&modes)[16], unsigned edges) {
  std::int16_t* cursor = lumaCoefficients_;
  const std::uint32_t qp = info_->qp;
  const std::int16_t* scale = scales_->scale4x4[0][qp % 6];
  // The library's flag of the corner is that of the macroblock above left for 16x16, above right for the others.
  const std::uint8_t corner = std::uint8_t(edges & 21), right = std::uint8_t((edges & 5) | (edges & 32) >> 1);
  zvpStatus status;
  switch (info_->kind) {
    case MbKind::Intra16x16:
      status = scales_->flat ? zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(
                                   &cursor, luma_, lumaStep_, std::uint32_t(modes[0]), lumaBlocks_, qp, corner)
                             : zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(&cursor, luma_, lumaStep_,
                                                                               std::uint32_t(modes[0]), lumaBlocks_, qp,
                                                                               corner, scale, 0);
      break;
    case MbKind::Intra4x4:
      status = scales_->flat ? zvpiReconstructLumaIntraMB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, modes, lumaBlocks_,
                                                                         qp, right)
                             : zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, modes,
                                                                            lumaBlocks_, qp, right, scale);
      break;
    default: {
      // It takes the sample above left for usable if the two sides are, unless told that it is not so.
      const bool sides = (edges & 5) == 0, sample = (edges & 16) == 0;
      status = zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(&cursor, luma_, lumaStep_, modes, lumaBlocks_, qp,
                                                            std::uint8_t(right | (sides != sample ? 8 : 0)),
                                                            scales_->scale8x8[0][qp % 6]);
      break;
    }
  }
  if (status < 0) damaged("intra prediction from samples that are not there");
}

// One call for both planes where their QPs are equal. Otherwise one for Cb, which for an intra macroblock predicts both
// planes, and one that adds the residual of Cr.
void SliceDecoder::reconstructChroma(bool intra, unsigned mode, unsigned edges) {
  const std::uint8_t corner = std::uint8_t(edges & 21);
  for (int part = 0; part < (splitChroma_ ? 2 : 1); ++part) {
    std::int16_t* cursor = chromaCoefficients_[part];
    const std::uint32_t qp = info_->chromaQp[part];
    const std::uint32_t blocks = splitChroma_ ? chromaBlocks_ & planeBits[part] : chromaBlocks_;
    const auto scale = [&](int plane) { return scales_->scale4x4[(intra ? 1 : 4) + plane][qp % 6]; };
    zvpStatus status = zvpStatusOk;
    if (intra && part == 0)
      status = scales_->flat ? zvpiReconstructChromaIntraMB_H264_16s8u_P2R(&cursor, chroma_[0], chroma_[1], chromaStep_,
                                                                           mode, blocks, qp, corner)
                             : zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(&cursor, chroma_[0], chroma_[1],
                                                                              chromaStep_, mode, blocks, qp, corner,
                                                                              scale(0), scale(1), 0);
    else if (scales_->flat)
      zvpiReconstructChromaInterMB_H264_16s8u_P2R(&cursor, chroma_[0], chroma_[1], chromaStep_, blocks, qp);
    else
      zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(&cursor, chroma_[0], chroma_[1], chromaStep_, blocks, qp, scale(0),
                                                     scale(1), 0);
    if (status < 0) damaged("intra chroma prediction from samples that are not there");
  }
}

}  // namespace h264
