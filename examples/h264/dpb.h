// The decoded picture buffer: which frames are references (H.264 8.2.5), and in which order pictures are output (C.4).
#pragma once

#include <memory>
#include <vector>

#include "common/decoder.h"
#include "h264/frame.h"
#include "h264/slice_header.h"

namespace h264 {

class Dpb {
 public:
  // Empties the buffer for a new sequence; frames that wait for output are lost, so flush() first.
  void configure(const SequenceParameters& sps);

  // A store for the next picture, allocated and marked as in use.
  Frame& newFrame();
  void release(Frame& frame) { frame.inUse = false; }

  // Works out FrameNumWrap of the short-term references for a picture of this frame_num (8.2.4.1).
  void updateFrameNums(std::uint32_t frameNum);

  // Infers the frames between the previous reference frame and frame_num (8.2.5.2). poc gives the picture order count
  // of an inferred frame.
  template <class Poc> void fillGap(std::uint32_t from, std::uint32_t to, const video::PictureSink& sink, Poc poc) {
    for (std::uint32_t frameNum = from; frameNum != to; frameNum = (frameNum + 1) & (maxFrameNum_ - 1))
      addInferred(frameNum, poc(frameNum), sink);
  }

  // Marks the references as the finished picture asks, stores the picture and outputs what is due. A picture with
  // operation 5 comes out with frame_num 0 and its picture order counts made relative.
  void store(Frame& frame, const SliceHeader& slice, const video::PictureSink& sink);
  // Outputs all that wait.
  void flush(const video::PictureSink& sink);

  const std::vector<Frame*>& stored() const { return stored_; }
  // For each store the serial number of the frame that it holds.
  void noteSerials(std::uint32_t (&serials)[maxStores]) const;

 private:
  void addInferred(std::uint32_t frameNum, std::int32_t poc, const video::PictureSink& sink);
  void slideWindow();
  void applyCommands(Frame& current, const SliceHeader& slice);
  Frame* shortTermByPicNum(std::int32_t picNum);
  Frame* longTermByIndex(std::uint32_t index);
  void dropUnused();
  bool outputFirst(const video::PictureSink& sink);
  void output(Frame& frame, const video::PictureSink& sink);
  void makeRoom(const video::PictureSink& sink);
  int waiting() const;
  Frame& takeStore();

  std::vector<std::unique_ptr<Frame>> stores_;
  std::vector<Frame*> stored_;  // in decoding order
  int widthMbs_ = 0, heightMbs_ = 0;
  std::size_t capacity_ = 1;
  int reorderFrames_ = 0;
  unsigned maxRefFrames_ = 0;
  std::uint32_t maxFrameNum_ = 16;
  std::uint32_t maxLongTermIndexPlus1_ = 0;
  std::uint32_t serial_ = 0;
};

}  // namespace h264
