#include "h264/dpb.h"

#include <algorithm>

namespace h264 {

void Dpb::configure(const SequenceParameters& sps) {
  if (sps.widthMbs != widthMbs_ || sps.heightMbs != heightMbs_) stores_.clear();
  for (auto& store : stores_) store->inUse = false;
  stored_.clear();
  widthMbs_ = sps.widthMbs;
  heightMbs_ = sps.heightMbs;
  capacity_ = std::size_t(sps.dpbFrames());
  reorderFrames_ = sps.reorderFrames();
  maxRefFrames_ = sps.maxRefFrames;
  maxFrameNum_ = sps.maxFrameNum();
  maxLongTermIndexPlus1_ = 0;
}

Frame& Dpb::takeStore() {
  Frame* free = nullptr;
  for (auto& store : stores_)
    if (!store->inUse && (!free || (!free->allocated() && store->allocated()))) free = store.get();
  if (!free) {
    stores_.push_back(std::make_unique<Frame>());
    free = stores_.back().get();
    free->widthMbs = widthMbs_;
    free->heightMbs = heightMbs_;
    free->index = int(stores_.size()) - 1;
  }
  free->inUse = true;
  free->nonExisting = false;
  free->reference = Reference::None;
  free->waitsForOutput = false;
  free->serial = ++serial_;
  return *free;
}

Frame& Dpb::newFrame() {
  Frame& frame = takeStore();
  frame.allocate();
  return frame;
}

void Dpb::noteSerials(std::uint32_t (&serials)[maxStores]) const {
  for (std::size_t i = 0; i < stores_.size(); ++i) serials[i] = stores_[i]->serial;
}

void Dpb::updateFrameNums(std::uint32_t frameNum) {
  for (Frame* frame : stored_)
    if (frame->shortTerm())
      frame->frameNumWrap = std::int32_t(frame->frameNum) - (frame->frameNum > frameNum ? std::int32_t(maxFrameNum_) : 0);
}

void Dpb::addInferred(std::uint32_t frameNum, std::int32_t poc, const video::PictureSink& sink) {
  updateFrameNums(frameNum);
  slideWindow();
  dropUnused();
  makeRoom(sink);
  Frame& frame = takeStore();
  frame.nonExisting = true;
  frame.frameNum = frameNum;
  frame.frameNumWrap = std::int32_t(frameNum);
  frame.topPoc = frame.bottomPoc = poc;
  frame.reference = Reference::ShortTerm;
  stored_.push_back(&frame);
}

// Sliding window marking (8.2.5.3): makes room for one more reference.
void Dpb::slideWindow() {
  for (;;) {
    Frame* oldest = nullptr;
    unsigned references = 0;
    for (Frame* frame : stored_) {
      if (frame->reference == Reference::None) continue;
      ++references;
      if (frame->shortTerm() && (!oldest || frame->frameNumWrap < oldest->frameNumWrap)) oldest = frame;
    }
    if (!oldest || references < std::max(maxRefFrames_, 1u)) return;
    oldest->reference = Reference::None;
  }
}

Frame* Dpb::shortTermByPicNum(std::int32_t picNum) {
  for (Frame* frame : stored_)
    if (frame->shortTerm() && frame->frameNumWrap == picNum) return frame;
  return nullptr;
}

Frame* Dpb::longTermByIndex(std::uint32_t index) {
  for (Frame* frame : stored_)
    if (frame->longTerm() && frame->longTermIndex == index) return frame;
  return nullptr;
}

// Adaptive memory control marking (8.2.5.4). A command that names a picture which is not there, as may be after a lost
// picture, has no effect.
void Dpb::applyCommands(Frame& current, const SliceHeader& slice) {
  const auto freeLongTerm = [this](std::uint32_t index) {
    if (Frame* frame = longTermByIndex(index)) frame->reference = Reference::None;
  };
  for (const MemoryCommand& command : slice.memoryCommands) {
    const std::int32_t picNum =
        std::int32_t(std::int64_t(slice.frameNum) - std::int64_t(command.differenceOfPicNums) - 1);
    switch (command.operation) {
      case 1:
        if (Frame* frame = shortTermByPicNum(picNum)) frame->reference = Reference::None;
        break;
      case 2: freeLongTerm(command.longTerm); break;
      case 3:
        if (Frame* frame = shortTermByPicNum(picNum)) {
          freeLongTerm(command.longTerm);
          frame->reference = Reference::LongTerm;
          frame->longTermIndex = command.longTerm;
        }
        break;
      case 4:
        maxLongTermIndexPlus1_ = command.longTerm;
        for (Frame* frame : stored_)
          if (frame->longTerm() && frame->longTermIndex >= maxLongTermIndexPlus1_) frame->reference = Reference::None;
        break;
      case 5:
        for (Frame* frame : stored_) frame->reference = Reference::None;
        maxLongTermIndexPlus1_ = 0;
        break;
      default:  // 6
        freeLongTerm(command.longTerm);
        current.reference = Reference::LongTerm;
        current.longTermIndex = command.longTerm;
        break;
    }
  }
}

void Dpb::store(Frame& frame, const SliceHeader& slice, const video::PictureSink& sink) {
  const bool reset = slice.has(5);
  if (slice.idr) {
    for (Frame* other : stored_) other->reference = Reference::None;
    if (slice.noOutputOfPriorPics)
      for (Frame* other : stored_) other->waitsForOutput = false;
    frame.reference = slice.longTermReference ? Reference::LongTerm : Reference::ShortTerm;
    frame.longTermIndex = 0;
    maxLongTermIndexPlus1_ = slice.longTermReference ? 1 : 0;
  } else if (slice.refIdc != 0) {
    updateFrameNums(slice.frameNum);
    frame.reference = Reference::ShortTerm;
    applyCommands(frame, slice);
    // This is the sliding window where it is asked for. Where it is not, it only meets a stream that keeps more
    // references than it has announced.
    slideWindow();
  }
  if (slice.idr || reset) {
    while (outputFirst(sink)) {
    }
  }
  if (reset) {
    // The picture counts as if it had been one with frame_num 0 (8.2.1).
    const std::int32_t poc = frame.poc();
    frame.topPoc -= poc;
    frame.bottomPoc -= poc;
    frame.frameNum = 0;
  }
  dropUnused();
  // A picture that nothing refers to needs no place once it is due before all that wait (C.4.5.2).
  while (frame.reference == Reference::None && stored_.size() >= capacity_) {
    const bool first = std::none_of(stored_.begin(), stored_.end(), [&](const Frame* other) {
      return other->waitsForOutput && other->poc() < frame.poc();
    });
    if (first) {
      output(frame, sink);
      frame.inUse = false;
      return;
    }
    outputFirst(sink);
    dropUnused();
  }
  makeRoom(sink);
  frame.waitsForOutput = true;
  stored_.push_back(&frame);
  while (waiting() > reorderFrames_) outputFirst(sink);
  dropUnused();
}

void Dpb::flush(const video::PictureSink& sink) {
  while (outputFirst(sink)) {
  }
  dropUnused();
}

int Dpb::waiting() const {
  return int(std::count_if(stored_.begin(), stored_.end(), [](const Frame* frame) { return frame->waitsForOutput; }));
}

// Outputs the waiting picture that is first in output order (C.4.5.3); false if none waits.
bool Dpb::outputFirst(const video::PictureSink& sink) {
  Frame* first = nullptr;
  for (Frame* frame : stored_)
    if (frame->waitsForOutput && (!first || frame->poc() < first->poc())) first = frame;
  if (!first) return false;
  output(*first, sink);
  return true;
}

void Dpb::output(Frame& frame, const video::PictureSink& sink) {
  frame.waitsForOutput = false;
  video::Picture picture;
  picture.format = frame.format;
  for (int plane = 0; plane < 3; ++plane) {
    const int shift = plane != 0;
    picture.steps[plane] = frame.steps[plane];
    picture.planes[plane] =
        frame.planes[plane] + (frame.cropTop >> shift) * frame.steps[plane] + (frame.cropLeft >> shift);
  }
  sink(picture);
}

void Dpb::dropUnused() {
  std::erase_if(stored_, [](Frame* frame) {
    if (frame->waitsForOutput || frame->reference != Reference::None) return false;
    frame->inUse = false;
    return true;
  });
}

// Outputs pictures until a frame buffer is free (C.4.5.3). A damaged stream may keep more references than the buffer
// holds; the oldest is then given up.
void Dpb::makeRoom(const video::PictureSink& sink) {
  while (stored_.size() >= capacity_) {
    if (!outputFirst(sink)) {
      Frame* oldest = stored_.front();
      for (Frame* frame : stored_)
        if (frame->shortTerm() && (!oldest->shortTerm() || frame->frameNumWrap < oldest->frameNumWrap)) oldest = frame;
      oldest->reference = Reference::None;
    }
    dropUnused();
  }
}

}  // namespace h264
