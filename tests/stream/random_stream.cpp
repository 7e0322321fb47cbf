#include "random_stream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "support/random.h"

namespace zvptest {

namespace {

enum class Type { P = 0, B = 1, I = 2 };

// A macroblock as its neighbours need it. Blocks in raster order.
struct Mb {
  int slice = -1;
  bool intra = false;
  bool ownModes = false;  // intra 4x4 or 8x8
  int modes[16] = {};
  int luma[16] = {};  // total_coeff
  int chroma[2][4] = {};
};

struct Ref {
  int frameNum;
  int longIndex = -1;  // negative: short-term
  bool existing = true;
};

const int blockX[16] = {0, 1, 0, 1, 2, 3, 2, 3, 0, 1, 0, 1, 2, 3, 2, 3};
const int blockY[16] = {0, 0, 1, 1, 0, 0, 1, 1, 2, 2, 3, 3, 2, 2, 3, 3};

// codeNum of coded_block_pattern, by pattern (Table 9-4, 4:2:0).
int cbpCode(int cbp, bool intra) {
  static const int intraOf[48] = {47, 31, 15, 0,  23, 27, 29, 30, 7,  11, 13, 14, 39, 43, 45, 46,
                                  16, 3,  5,  10, 12, 19, 21, 26, 28, 35, 37, 42, 44, 1,  2,  4,
                                  8,  17, 18, 20, 24, 6,  9,  22, 25, 32, 33, 34, 36, 40, 38, 41};
  static const int interOf[48] = {0,  16, 1,  2,  4,  8,  32, 3,  5,  10, 12, 15, 47, 7,  11, 13,
                                  14, 6,  9,  31, 35, 37, 42, 44, 33, 34, 36, 40, 39, 43, 45, 46,
                                  17, 18, 20, 24, 19, 21, 26, 28, 23, 27, 29, 30, 22, 25, 38, 41};
  const int* table = intra ? intraOf : interOf;
  return int(std::find(table, table + 48, cbp) - table);
}

class Generator {
 public:
  explicit Generator(const RandomStreamOptions& options)
      : o_(options), rng_(options.seed), codes_(ZVP_TEST_DATA "/tables") {}

  Bytes make() {
    setUp();
    appendNal(stream_, 3, 7, sequenceParameters(sequence_));
    for (const Picture& picture : pictures_) appendNal(stream_, 3, 8, pictureParameters(picture));
    idr();
    while (made_ < o_.pictures) {
      if (rng_.chance(12)) idr();
      else group();
    }
    return stream_;
  }

 private:
  bool chance(int oneIn) { return rng_.chance(oneIn); }
  int range(int low, int high) { return rng_.range(low, high); }

  std::vector<std::vector<int>> randomScaling(std::size_t count) {
    std::vector<std::vector<int>> lists(count);
    for (std::size_t i = 0; i < count; ++i) {
      if (chance(3)) continue;
      if (chance(4)) {
        lists[i] = {0};
        continue;
      }
      int value = range(8, 24);
      for (int k = 0; k < (i < 6 ? 16 : 64); ++k) lists[i].push_back(value = std::clamp(value + range(-3, 4), 4, 40));
    }
    return lists;
  }

  void setUp() {
    const bool high = o_.transform8x8 || o_.scaling || o_.chromaOffsets;
    sequence_.profile = high ? 100 : o_.bPictures || o_.weights ? 77 : 66;
    sequence_.widthMbs = o_.widthMbs;
    sequence_.heightMbs = o_.heightMbs;
    // Long enough that no short-term reference lives for a whole turn of frame_num.
    sequence_.frameNumBits = o_.memoryCommands ? range(6, 8) : range(4, 6);
    sequence_.pocType = o_.pocType;
    sequence_.pocLsbBits = range(6, 9);
    if (o_.pocType == 1) {
      for (int i = range(0, 3); i > 0; --i) sequence_.offsetForRefFrame.push_back(range(1, 9));
      sequence_.offsetForNonRef = range(-3, 3);
      sequence_.offsetForTopToBottom = range(0, 1);
    }
    sequence_.maxRefFrames = o_.maxRefFrames;
    sequence_.gaps = o_.gaps;
    sequence_.direct8x8Inference = chance(2);
    if (o_.cropping) {
      sequence_.cropRight = range(0, 7);
      sequence_.cropBottom = range(0, 7);
    }
    if (o_.scaling && chance(2)) sequence_.scaling = randomScaling(8);
    sequence_.reorderFrames = o_.bPictures && o_.pocType != 2 ? 4 : 0;
    for (unsigned id = 0; id < 2; ++id) {
      Picture p;
      p.id = id;
      p.bottomFieldPicOrder = chance(2);
      p.refCount[0] = unsigned(range(1, 3));
      p.refCount[1] = unsigned(range(1, 3));
      p.weightedPrediction = o_.weights;
      p.weightedBipred = o_.weights ? 1u : chance(2) ? 2u : 0u;
      p.initialQp = range(20, 34);
      p.chromaQpOffset[0] = range(-12, 12);
      p.chromaQpOffset[1] = o_.chromaOffsets ? range(-12, 12) : p.chromaQpOffset[0];
      p.deblockingControl = !chance(4);
      p.constrainedIntra = o_.constrainedIntra;
      p.redundant = o_.redundant;
      p.transform8x8 = o_.transform8x8;
      if (o_.scaling && chance(2)) p.scaling = randomScaling(p.transform8x8 ? 8 : 6);
      pictures_.push_back(p);
    }
    mbs_.resize(std::size_t(o_.widthMbs * o_.heightMbs));
  }

  // ---- Pictures

  void idr() {
    poc_ = 0;
    frameNum_ = 0;
    previousRefFrameNum_ = 0;
    previousFrameNum_ = 0;
    frameNumOffset_ = 0;
    refs_.clear();
    maxLongIndexPlus1_ = 0;
    lastWasNonRef_ = false;
    ++idrPicId_;
    picture(Type::I, true, 0, true);
  }

  // A picture, and maybe some that come after it in the stream and before it on the screen.
  void group() {
    const int before = o_.bPictures && o_.pocType != 2 ? range(0, 3) : 0;
    const int step = 2 * range(1, 2);
    const int base = poc_;
    const bool reset = o_.memoryCommands && before == 0 && chance(8);
    poc_ = base + step * (before + 1);
    const bool nonRef = before == 0 && !reset && chance(4) && !(o_.pocType == 2 && lastWasNonRef_);
    Type type = chance(6) ? Type::I : o_.bPictures && chance(3) ? Type::B : Type::P;
    if (reset && o_.bPictures) type = Type::I;
    picture(type, !nonRef, poc_, false, reset);
    if (reset) poc_ = 0;
    std::vector<int> order;
    for (int i = 1; i <= before; ++i) order.push_back(base + step * i);
    while (!order.empty()) {
      const std::size_t pick = std::size_t(range(0, int(order.size()) - 1));
      picture(chance(8) ? Type::P : Type::B, chance(3), order[pick], false);
      order.erase(order.begin() + std::ptrdiff_t(pick));
    }
  }

  void addGap() {
    for (int missing = range(1, 3); missing > 0; --missing) {
      const int frameNum = (previousRefFrameNum_ + 1) % maxFrameNum();
      slide();
      refs_.push_back({frameNum, -1, false});
      advanceFrameNumOffset(frameNum);
      previousRefFrameNum_ = frameNum;
    }
  }

  int maxFrameNum() const { return 1 << sequence_.frameNumBits; }

  // Sliding window: the oldest short-term reference makes room.
  void slide() {
    while (refs_.size() >= std::max(1u, o_.maxRefFrames)) {
      refs_.erase(std::find_if(refs_.begin(), refs_.end(), [](const Ref& ref) { return ref.longIndex < 0; }));
    }
  }

  void advanceFrameNumOffset(int frameNum) {
    if (previousFrameNum_ > frameNum) frameNumOffset_ += maxFrameNum();
    previousFrameNum_ = frameNum;
  }

  // What types 1 and 2 make of the frame number alone.
  int expectedPoc(bool ref) const {
    const int absolute = frameNumOffset_ + frameNum_;
    if (sequence_.pocType == 2) return 2 * absolute - (ref ? 0 : 1);
    const auto& offsets = sequence_.offsetForRefFrame;
    int frames = offsets.empty() ? 0 : absolute;
    if (!ref && frames > 0) --frames;
    int expected = 0;
    for (int i = 0; i < frames; ++i) expected += offsets[std::size_t(i) % offsets.size()];
    return expected + (ref ? 0 : sequence_.offsetForNonRef);
  }

  void picture(Type type, bool ref, int poc, bool isIdr, bool reset = false) {
    ++made_;
    asIdr_ = reset && o_.resetsAreIdr;
    if (asIdr_) ++idrPicId_;
    if (!isIdr) {
      // Not behind a picture that is no reference: ffmpeg looks for gaps from that one's frame_num on.
      if (o_.gaps && chance(4) && !lastWasNonRef_) addGap();
      frameNum_ = (previousRefFrameNum_ + 1) % maxFrameNum();
      advanceFrameNumOffset(frameNum_);
    }
    lastWasNonRef_ = !ref;
    bool usable = false;
    for (const Ref& entry : refs_) usable = usable || entry.existing;
    if (!usable) type = Type::I;
    p_ = &pictures_[std::size_t(range(0, 1))];
    idr_ = isIdr;
    refIdc_ = ref ? unsigned(range(1, 3)) : 0;
    pocBottomDelta_ = p_->bottomFieldPicOrder && sequence_.pocType == 0 ? range(0, 1) : 0;
    pocLsb_ = poc & ((1 << sequence_.pocLsbBits) - 1);
    deltaPoc_ = sequence_.pocType == 1 ? poc - expectedPoc(ref) : 0;
    commands_.clear();
    std::vector<Ref> after = refs_;
    longReference_ = false;
    if (isIdr) {
      longReference_ = o_.memoryCommands && chance(2);
      after = {{0, longReference_ ? 0 : -1}};
      maxLongIndexPlus1_ = longReference_ ? 1 : 0;
    } else if (ref) {
      after = mark(reset);
    }

    if (afterReset_ || chance(4)) {  // behind operation 5 the slice headers alone may not tell pictures apart
      Rbsp delimiter;
      delimiter.u(7, 3);
      appendNal(stream_, 0, 9, delimiter);
    }
    afterReset_ = reset;

    for (Mb& mb : mbs_) mb = Mb();
    const int count = int(mbs_.size());
    std::vector<int> starts = {0};
    if (o_.slices)
      for (int i = range(0, 3); i > 0; --i) starts.push_back(range(0, count - 1));
    std::sort(starts.begin(), starts.end());
    starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
    // Across an edge between a P and a B slice ffmpeg does not see that list 0 of one and list 1 of the other hold the
    // same picture (against 8.7.2.1), so pictures with both are not filtered at slice edges.
    mixed_ = o_.slices && type == Type::B && p_->deblockingControl && chance(3);
    for (std::size_t i = 0; i < starts.size(); ++i) {
      const int end = i + 1 < starts.size() ? starts[i + 1] : count;
      Type sliceType = type;
      if (o_.slices && type != Type::I && chance(3)) sliceType = mixed_ ? Type::P : Type::I;
      slice(sliceType, starts[i], end, 0);
    }
    if (o_.redundant && chance(2)) {
      const std::vector<Mb> kept = mbs_;
      const int from = range(0, count - 1);
      const Bytes primary = stream_;
      slice(type, from, range(from + 1, count), unsigned(range(1, 3)));
      if (o_.omitRedundant) stream_ = primary;
      mbs_ = kept;
    }

    refs_ = after;
    if (ref) previousRefFrameNum_ = frameNum_;
    if (reset) {
      previousRefFrameNum_ = 0;
      previousFrameNum_ = 0;
      frameNumOffset_ = 0;
    }
  }

  struct Command {
    unsigned operation;
    std::vector<unsigned> values;
  };

  // Draws the marking of a reference picture; returns the references behind it.
  std::vector<Ref> mark(bool reset) {
    std::vector<Ref> refs = refs_;
    const bool full = refs_.size() >= o_.maxRefFrames;
    const bool noShort = std::all_of(refs_.begin(), refs_.end(), [](const Ref& entry) { return entry.longIndex >= 0; });
    adaptive_ = reset || (full && noShort) || (o_.memoryCommands && chance(2));
    if (!adaptive_) {
      slide();
      std::swap(refs, refs_);  // the list of this picture is that before the marking
      refs.push_back({frameNum_});
      return refs;
    }
    int longIndex = -1;
    const auto dropLong = [&](int index) { std::erase_if(refs, [&](const Ref& ref) { return ref.longIndex == index; }); };
    const auto unmark = [&](std::size_t at) {
      const Ref ref = refs[at];
      if (ref.longIndex >= 0) commands_.push_back({2, {unsigned(ref.longIndex)}});
      else commands_.push_back({1, {picNumDifference(ref)}});
      refs.erase(refs.begin() + std::ptrdiff_t(at));
    };
    if (reset) {
      commands_.push_back({5, {}});
      refs.clear();
      maxLongIndexPlus1_ = 0;
    } else {
      if (chance(3) || (maxLongIndexPlus1_ == 0 && chance(2))) {
        maxLongIndexPlus1_ = range(0, int(o_.maxRefFrames));
        commands_.push_back({4, {unsigned(maxLongIndexPlus1_)}});
        std::erase_if(refs, [&](const Ref& ref) { return ref.longIndex >= maxLongIndexPlus1_; });
      }
      if (!refs.empty() && chance(4)) unmark(std::size_t(range(0, int(refs.size()) - 1)));
      if (maxLongIndexPlus1_ > 0 && chance(2)) {
        std::vector<std::size_t> shorts;
        for (std::size_t i = 0; i < refs.size(); ++i)
          if (refs[i].longIndex < 0 && refs[i].existing) shorts.push_back(i);
        if (!shorts.empty()) {
          const Ref chosen = refs[rng_.pick(shorts)];
          const int index = range(0, maxLongIndexPlus1_ - 1);
          commands_.push_back({3, {picNumDifference(chosen), unsigned(index)}});
          dropLong(index);
          for (Ref& ref : refs)
            if (ref.longIndex < 0 && ref.frameNum == chosen.frameNum) ref.longIndex = index;
        }
      }
    }
    if (maxLongIndexPlus1_ > 0 && chance(4)) {
      longIndex = range(0, maxLongIndexPlus1_ - 1);
      dropLong(longIndex);
    }
    while (refs.size() + 1 > o_.maxRefFrames) unmark(std::size_t(range(0, int(refs.size()) - 1)));
    if (longIndex >= 0) commands_.push_back({6, {unsigned(longIndex)}});
    refs.push_back({reset ? 0 : frameNum_, longIndex});
    return refs;
  }

  unsigned picNumDifference(const Ref& ref) const {  // difference_of_pic_nums_minus1
    return unsigned((frameNum_ - ref.frameNum + maxFrameNum()) % maxFrameNum() - 1);
  }

  // ---- Slices

  void slice(Type type, int from, int to, unsigned redundantCount) {
    type_ = type;
    sliceNumber_ = redundantCount > 0 ? 1000 : from;
    Rbsp out;
    out.ue(std::uint64_t(from));
    out.ue(std::uint64_t(type));
    out.ue(p_->id);
    out.u(asIdr_ ? 0 : std::uint64_t(frameNum_), sequence_.frameNumBits);
    if (idr_ || asIdr_) out.ue(std::uint64_t(idrPicId_ & 7));
    if (sequence_.pocType == 0) {
      out.u(asIdr_ ? 0 : std::uint64_t(pocLsb_), sequence_.pocLsbBits);
      if (p_->bottomFieldPicOrder) out.se(pocBottomDelta_);
    }
    if (sequence_.pocType == 1) {
      out.se(asIdr_ ? 0 : deltaPoc_);
      if (p_->bottomFieldPicOrder) out.se(0);
    }
    if (p_->redundant) out.ue(redundantCount);
    if (type == Type::B) out.u(1, 1);  // direct_spatial_mv_pred_flag
    const int lists = type == Type::B ? 2 : type == Type::P ? 1 : 0;
    if (lists > 0) {
      const bool fits = p_->refCount[0] <= refs_.size() && (lists == 1 || p_->refCount[1] <= refs_.size());
      const bool own = !fits || chance(2);
      out.u(own, 1);
      for (int list = 0; list < lists; ++list) {
        refCount_[list] = own ? unsigned(range(1, int(refs_.size()))) : p_->refCount[list];
        if (own) out.ue(refCount_[list] - 1);
      }
      for (int list = 0; list < lists; ++list) modification(out, list);
    }
    if ((type == Type::P && p_->weightedPrediction) || (type == Type::B && p_->weightedBipred == 1)) weights(out, lists);
    if (refIdc_ != 0) marking(out);
    qp_ = std::clamp(p_->initialQp + range(-8, 8), 12, o_.scaling ? 32 : 44);
    out.se(qp_ - p_->initialQp);
    if (p_->deblockingControl) {
      const int idc = mixed_ ? range(1, 2) : range(0, 2);
      out.ue(std::uint64_t(idc));
      if (idc != 1) {
        out.se(range(-6, 6));
        out.se(range(-6, 6));
      }
    }
    macroblocks(out, from, to);
    appendNal(stream_, refIdc_, idr_ || asIdr_ ? 5 : 1, out);
  }

  // Reference list modification, and which entries of the list may be used afterwards.
  void modification(Rbsp& out, int list) {
    std::vector<Ref> entries;
    if (o_.gaps) {  // P lists only: short-term references by falling, long-term ones by rising number
      std::vector<Ref> shorts(refs_.begin(), refs_.end());
      std::reverse(shorts.begin(), shorts.end());
      std::vector<Ref> longs;
      for (const Ref& ref : shorts) (ref.longIndex < 0 ? entries : longs).push_back(ref);
      std::sort(longs.begin(), longs.end(), [](const Ref& a, const Ref& b) { return a.longIndex < b.longIndex; });
      entries.insert(entries.end(), longs.begin(), longs.end());
    }
    std::vector<Ref> usable;
    for (const Ref& ref : refs_)
      if (ref.existing) usable.push_back(ref);
    bool modify = o_.modifications && chance(2);
    if (o_.gaps) {
      entries.resize(std::min<std::size_t>(entries.size(), refCount_[list]));
      const bool any = std::any_of(entries.begin(), entries.end(), [](const Ref& ref) { return ref.existing; });
      modify = modify || !any;
    }
    out.u(modify, 1);
    if (modify) {
      int predicted = frameNum_;
      for (unsigned i = 0; i < unsigned(range(1, int(refCount_[list]))); ++i) {
        const Ref ref = rng_.pick(usable);
        if (ref.longIndex >= 0) {
          out.ue(2);
          out.ue(std::uint64_t(ref.longIndex));
        } else {
          // The distance on the circle of frame numbers, in whichever direction.
          const int up = (ref.frameNum - predicted + maxFrameNum()) % maxFrameNum();
          const bool add = up != 0 && chance(2);
          out.ue(add ? 1 : 0);
          out.ue(std::uint64_t((add ? up : maxFrameNum() - up) - 1));
          predicted = ref.frameNum;
        }
        if (o_.gaps) {
          // Moves to place i; the entries behind close up.
          entries.insert(entries.begin() + std::min<std::ptrdiff_t>(i, std::ptrdiff_t(entries.size())), ref);
          for (std::size_t k = i + 1; k < entries.size(); ++k)
            if (entries[k].frameNum == ref.frameNum && entries[k].longIndex == ref.longIndex) {
              entries.erase(entries.begin() + std::ptrdiff_t(k));
              break;
            }
          entries.resize(std::min<std::size_t>(entries.size(), refCount_[list]));
        }
      }
      out.ue(3);
    }
    allowed_[list].clear();
    for (unsigned i = 0; i < refCount_[list]; ++i)
      if (!o_.gaps || entries[i].existing) allowed_[list].push_back(i);
  }

  void weights(Rbsp& out, int lists) {
    const int denominators[2] = {range(0, 5), range(0, 5)};
    for (const int denominator : denominators) out.ue(std::uint64_t(denominator));
    for (int list = 0; list < lists; ++list)
      for (unsigned i = 0; i < refCount_[list]; ++i)
        for (int planes = 0; planes < 2; ++planes) {
          const bool given = chance(2);
          out.u(given, 1);
          for (int k = 0; given && k < 1 + planes; ++k) {
            out.se((1 << denominators[planes]) + range(-20, 20));
            out.se(range(-30, 30));
          }
        }
  }

  void marking(Rbsp& out) {
    if (idr_ || asIdr_) {
      out.u(0, 1);
      out.u(idr_ && longReference_, 1);
      return;
    }
    out.u(adaptive_, 1);
    if (!adaptive_) return;
    for (const Command& command : commands_) {
      out.ue(command.operation);
      for (const unsigned value : command.values) out.ue(value);
    }
    out.ue(0);
  }

  // ---- Macroblocks

  void macroblocks(Rbsp& out, int from, int to) {
    int skipped = 0;
    for (mb_ = from; mb_ < to; ++mb_) {
      Mb& mb = mbs_[std::size_t(mb_)];
      mb = Mb();
      mb.slice = sliceNumber_;
      const bool skipAllowed = type_ == Type::B || (type_ == Type::P && allowed_[0][0] == 0);
      if (skipAllowed && chance(4)) {
        ++skipped;
        continue;
      }
      if (type_ != Type::I) out.ue(std::uint64_t(skipped));
      skipped = 0;
      macroblock(out, mb);
    }
    if (skipped > 0) out.ue(std::uint64_t(skipped));
  }

  const Mb* neighbour(int dx, int dy) const {
    const int x = mb_ % o_.widthMbs + dx, y = mb_ / o_.widthMbs + dy;
    if (x < 0 || y < 0 || x >= o_.widthMbs) return nullptr;
    const Mb& mb = mbs_[std::size_t(y * o_.widthMbs + x)];
    return mb.slice == sliceNumber_ ? &mb : nullptr;
  }
  bool intraUsable(const Mb* mb) const { return mb && (mb->intra || !p_->constrainedIntra); }

  void macroblock(Rbsp& out, Mb& mb) {
    const int intraOffset = type_ == Type::I ? 0 : type_ == Type::P ? 5 : 23;
    if (type_ == Type::I || chance(5)) {
      mb.intra = true;
      if (o_.pcm && chance(5)) return pcm(out, mb, intraOffset);
      return intra(out, mb, intraOffset);
    }
    inter(out, mb);
  }

  void pcm(Rbsp& out, Mb& mb, int offset) {
    out.ue(std::uint64_t(offset + 25));
    out.align(0);
    const int style = range(0, 2), base = range(0, 255);
    for (int i = 0; i < 384; ++i)
      out.u(style == 0 ? std::uint64_t(range(0, 255)) : style == 1 ? 0u : std::uint64_t((base + i / 16) & 255), 8);
    std::fill(std::begin(mb.luma), std::end(mb.luma), 16);
    for (auto& plane : mb.chroma) std::fill(std::begin(plane), std::end(plane), 16);
  }

  // A mode of 4x4 or 8x8 prediction that the neighbours allow.
  int blockMode(bool left, bool top, bool corner) {
    std::vector<int> modes = {2};
    if (left) modes.insert(modes.end(), {1, 8});
    if (top) modes.insert(modes.end(), {0, 3, 7});
    if (left && top && corner) modes.insert(modes.end(), {4, 5, 6});
    return rng_.pick(modes);
  }

  void intra(Rbsp& out, Mb& mb, int offset) {
    const bool left = intraUsable(neighbour(-1, 0)), top = intraUsable(neighbour(0, -1));
    const bool corner = intraUsable(neighbour(-1, -1));
    const int cbpLuma = chance(3) ? 0 : range(0, 15), cbpChroma = range(0, 2);
    const bool whole = chance(3);
    bool use8x8 = false;
    const auto chromaMode = [&] {
      std::vector<unsigned> modes = {0};
      if (left) modes.push_back(1);
      if (top) modes.push_back(2);
      if (left && top && corner) modes.push_back(3);
      out.ue(rng_.pick(modes));
    };
    if (whole) {
      std::vector<int> modes = {2};
      if (top) modes.push_back(0);
      if (left) modes.push_back(1);
      if (left && top && corner) modes.push_back(3);
      const int luma = cbpLuma != 0 ? 15 : 0;
      out.ue(std::uint64_t(offset + 1 + rng_.pick(modes) + 4 * cbpChroma + (luma ? 12 : 0)));
      chromaMode();
      residual(out, mb, luma, cbpChroma, true, false);
      return;
    }
    out.ue(std::uint64_t(offset));
    if (p_->transform8x8) {
      use8x8 = chance(2);
      out.u(use8x8, 1);
    }
    mb.ownModes = true;
    const int size = use8x8 ? 2 : 1;
    for (int block = 0; block < 16; block += size * size) {
      const int x = blockX[block], y = blockY[block];
      const bool l = x > 0 || left, t = y > 0 || top;
      const bool c = x > 0 && y > 0 ? true : x > 0 ? top : y > 0 ? left : corner;
      const int predicted = predictedMode(mb, x, y), mode = blockMode(l, t, c);
      for (int v = y; v < y + size; ++v)
        for (int u = x; u < x + size; ++u) mb.modes[4 * v + u] = mode;
      out.u(mode == predicted, 1);
      if (mode != predicted) out.u(std::uint64_t(mode < predicted ? mode : mode - 1), 3);
    }
    chromaMode();
    const int cbp = cbpLuma | cbpChroma << 4;
    out.ue(std::uint64_t(cbpCode(cbp, true)));
    if (cbp) residual(out, mb, cbpLuma, cbpChroma, false, use8x8);
  }

  int predictedMode(const Mb& mb, int x, int y) const {
    int least = 8;
    for (int side = 0; side < 2; ++side) {
      const int nx = side == 0 ? x - 1 : x, ny = side == 0 ? y : y - 1;
      const Mb* other = nx < 0 ? neighbour(-1, 0) : ny < 0 ? neighbour(0, -1) : &mb;
      if (!other || (!other->intra && p_->constrainedIntra)) return 2;
      least = std::min(least, other->ownModes ? other->modes[4 * (ny & 3) + (nx & 3)] : 2);
    }
    return least;
  }

  void ref(Rbsp& out, int list) { out.te(rng_.pick(allowed_[list]), refCount_[list] - 1); }
  void vector(Rbsp& out) {
    for (int i = 0; i < 2; ++i) out.se(chance(20) ? range(-300, 300) : chance(3) ? 0 : range(-20, 20));
  }

  void inter(Rbsp& out, Mb& mb) {
    static const int pairs[9][2] = {{1, 1}, {2, 2}, {1, 2}, {2, 1}, {1, 3}, {2, 3}, {3, 1}, {3, 2}, {3, 3}};
    int lists[4] = {}, parts = 0;  // by partition; bit 0 list 0, bit 1 list 1
    bool eights = false, mayUse8x8 = true, refs = true;
    int subParts[4] = {1, 1, 1, 1};
    if (type_ == Type::P) {
      const bool zeroAllowed = allowed_[0][0] == 0;
      const int type = range(0, zeroAllowed ? 4 : 3);
      out.ue(std::uint64_t(type));
      parts = type == 0 ? 1 : type < 3 ? 2 : 4;
      eights = parts == 4;
      refs = type != 4;
      for (int& list : lists) list = 1;
    } else {
      const int type = range(0, 22);
      out.ue(std::uint64_t(type));
      if (type == 0) mayUse8x8 = sequence_.direct8x8Inference;
      else if (type <= 3) parts = 1, lists[0] = type;
      else if (type <= 21) parts = 2, std::copy_n(pairs[(type - 4) / 2], 2, lists);
      else parts = 4, eights = true;
    }
    if (eights)
      for (int i = 0; i < 4; ++i) {
        if (type_ == Type::P) {
          const int sub = range(0, 3);
          out.ue(std::uint64_t(sub));
          subParts[i] = sub == 0 ? 1 : sub == 3 ? 4 : 2;
        } else {
          static const int subLists[13] = {0, 1, 2, 3, 1, 1, 2, 2, 3, 3, 1, 2, 3};
          static const int counts[13] = {0, 1, 1, 1, 2, 2, 2, 2, 2, 2, 4, 4, 4};
          const int sub = range(0, 12);
          out.ue(std::uint64_t(sub));
          lists[i] = subLists[sub];
          subParts[i] = counts[sub];
          if (sub == 0) mayUse8x8 = mayUse8x8 && sequence_.direct8x8Inference;
        }
        mayUse8x8 = mayUse8x8 && subParts[i] <= 1;
      }
    for (int list = 0; list < 2; ++list)
      for (int i = 0; i < parts; ++i)
        if (refs && (lists[i] >> list & 1)) ref(out, list);
    for (int list = 0; list < 2; ++list)
      for (int i = 0; i < parts; ++i)
        if (lists[i] >> list & 1)
          for (int k = 0; k < subParts[i]; ++k) vector(out);
    const int cbpLuma = chance(2) ? 0 : range(0, 15), cbpChroma = chance(2) ? 0 : range(0, 2);
    const int cbp = cbpLuma | cbpChroma << 4;
    out.ue(std::uint64_t(cbpCode(cbp, false)));
    bool use8x8 = false;
    if (cbpLuma && p_->transform8x8 && mayUse8x8) {
      use8x8 = chance(2);
      out.u(use8x8, 1);
    }
    if (cbp) residual(out, mb, cbpLuma, cbpChroma, false, use8x8);
  }

  // ---- Residual

  // Random levels, in coding order, whose magnitudes sum up to the budget at most.
  std::vector<int> levels(int count, int budget) {
    std::vector<int> result(std::size_t(count), 0);
    const int wanted = chance(4) ? 0 : chance(4) ? range(1, count) : range(1, 4);
    for (int i = 0; i < wanted && budget > 0; ++i) {
      const std::size_t at = std::size_t(chance(2) ? range(0, count - 1) : range(0, std::min(count - 1, 5)));
      if (result[at] != 0) continue;
      const int most = chance(20) ? budget : chance(3) ? std::min(budget, 12) : 1;
      const int magnitude = range(1, std::min(most, 2000));
      result[at] = chance(2) ? magnitude : -magnitude;
      budget -= magnitude;
    }
    return result;
  }

  // So that no sum of scaled coefficients leaves 16 bits, as the standard asks of streams.
  int budget(int qp, int share) const { return std::max(1, share / ((o_.scaling ? 3 * 29 : 29) << (qp / 6))); }

  static int total(const std::vector<int>& list) { return int(list.size()) - int(std::count(list.begin(), list.end(), 0)); }

  int context(int left, int top) const {  // -1: not available
    return left >= 0 && top >= 0 ? (left + top + 1) >> 1 : left >= 0 ? left : top >= 0 ? top : 0;
  }
  int lumaContext(const Mb& mb, int x, int y) const {
    const Mb *a = x > 0 ? &mb : neighbour(-1, 0), *b = y > 0 ? &mb : neighbour(0, -1);
    return context(a ? a->luma[4 * y + ((x + 3) & 3)] : -1, b ? b->luma[4 * ((y + 3) & 3) + x] : -1);
  }
  int chromaContext(const Mb& mb, int plane, int x, int y) const {
    const Mb *a = x > 0 ? &mb : neighbour(-1, 0), *b = y > 0 ? &mb : neighbour(0, -1);
    return context(a ? a->chroma[plane][2 * y + (x ^ 1)] : -1, b ? b->chroma[plane][2 * (y ^ 1) + x] : -1);
  }

  void residual(Rbsp& out, Mb& mb, int cbpLuma, int cbpChroma, bool whole, bool use8x8) {
    const int delta = chance(3) ? std::clamp(qp_ + range(-6, 6), 10, o_.scaling ? 32 : 46) - qp_ : 0;
    out.se(delta);
    qp_ += delta;
    if (whole) {
      const auto dc = levels(16, budget(qp_, 24000));
      putCavlcBlock(out.bits(), dc, lumaContext(mb, 0, 0), codes_);
    }
    for (int block = 0; block < 16; ++block) {
      if (!(cbpLuma >> (block / 4) & 1)) continue;
      const int x = blockX[block], y = blockY[block];
      auto list = levels(whole ? 15 : 16, budget(qp_, whole ? 10000 : use8x8 ? 10000 : 24000));
      // In deblocking ffmpeg takes an 8x8 block that the pattern names for one with coefficients (against 8.7.2.1).
      if (use8x8 && block % 4 == 0 && total(list) == 0) list[0] = 1;
      putCavlcBlock(out.bits(), list, lumaContext(mb, x, y), codes_);
      mb.luma[4 * y + x] = total(list);
    }
    // The QPs of chroma are at most 39 and at most 12 above that of luma.
    const int chromaQp = std::min(39, qp_ + 12);
    if (cbpChroma > 0)
      for (int plane = 0; plane < 2; ++plane) putCavlcBlock(out.bits(), levels(4, budget(chromaQp, 20000)), -1, codes_);
    if (cbpChroma > 1)
      for (int plane = 0; plane < 2; ++plane)
        for (int block = 0; block < 4; ++block) {
          const auto list = levels(15, budget(chromaQp, 10000));
          putCavlcBlock(out.bits(), list, chromaContext(mb, plane, block & 1, block >> 1), codes_);
          mb.chroma[plane][block] = total(list);
        }
  }

  const RandomStreamOptions o_;
  Rng rng_;
  const CavlcCodes codes_;
  Bytes stream_;
  Sequence sequence_;
  std::vector<Picture> pictures_;

  int made_ = 0;
  int poc_ = 0;  // of the picture that is last on the screen so far
  int frameNum_ = 0, previousRefFrameNum_ = 0, previousFrameNum_ = 0, frameNumOffset_ = 0;
  int idrPicId_ = 0;
  bool lastWasNonRef_ = false, afterReset_ = false;
  std::vector<Ref> refs_;  // in decoding order
  int maxLongIndexPlus1_ = 0;

  const Picture* p_ = nullptr;
  bool idr_ = false, asIdr_ = false, mixed_ = false, adaptive_ = false, longReference_ = false;
  unsigned refIdc_ = 0;
  int pocLsb_ = 0, pocBottomDelta_ = 0, deltaPoc_ = 0;
  std::vector<Command> commands_;
  std::vector<Mb> mbs_;

  Type type_ = Type::I;
  int sliceNumber_ = 0, qp_ = 0, mb_ = 0;
  unsigned refCount_[2] = {1, 1};
  std::vector<unsigned> allowed_[2];
};

}  // namespace

Bytes randomStream(const RandomStreamOptions& options) { return Generator(options).make(); }

}  // namespace zvptest
