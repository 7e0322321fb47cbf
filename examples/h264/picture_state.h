// What the slices of one picture share: the frame under construction and a record of each macroblock.
#pragma once

#include <cstdint>
#include <vector>

#include "h264/frame.h"
#include "h264/slice_header.h"

namespace h264 {

enum class MbKind : std::uint8_t { Intra4x4, Intra8x8, Intra16x16, Pcm, Inter };

// How finely the motion of an inter macroblock is divided. Deblocking looks no closer.
enum class MbShape : std::uint8_t { Whole, Rows, Columns, Quarters, Blocks };  // 16x16, 16x8, 8x16, 8x8, smaller

// Block indices are raster order within the macroblock (4x4) or the chroma block (2x2), unlike the coded order.
struct alignas(64) MbInfo {
  std::int32_t slice = -1;  // number of the slice in the picture; negative: not decoded yet
  MbKind kind = MbKind::Inter;
  MbShape shape = MbShape::Whole;
  std::uint8_t qp = 0;
  std::uint8_t chromaQp[2] = {};    // of Cb and Cr
  bool transform8x8 = false;
  std::uint16_t coded = 0;          // bit i: luma block i, or the 8x8 block that it is part of, has coefficients
  std::int8_t modesRight[4] = {};   // Intra4x4PredMode or Intra8x8PredMode of the right column and the bottom row
  std::int8_t modesBottom[4] = {};
  alignas(8) std::uint8_t counts[24] = {};  // total_coeff of 16 luma, 4 Cb and 4 Cr blocks

  bool intra() const { return kind != MbKind::Inter; }
};
static_assert(sizeof(MbInfo) == 64);

// What deblocking wants to know of a slice.
struct SliceInfo {
  unsigned deblockingDisabled = 0;
  int alphaOffset = 0, betaOffset = 0;
};

struct PictureState {
  const SequenceParameters* sps = nullptr;
  Frame* frame = nullptr;
  int widthMbs = 0, heightMbs = 0;
  std::vector<MbInfo> mbs;
  std::vector<SliceInfo> slices;
  std::vector<int> rowMbs;  // macroblocks decoded in each row
  int decodedMbs = 0;
  int deblockedRows = 0;

  void begin(const SequenceParameters& sequence, Frame& target) {
    sps = &sequence;
    frame = &target;
    widthMbs = sequence.widthMbs;
    heightMbs = sequence.heightMbs;
    mbs.resize(std::size_t(sequence.mbCount()));
    for (MbInfo& mb : mbs) mb.slice = -1;
    slices.clear();
    rowMbs.assign(std::size_t(heightMbs), 0);
    decodedMbs = 0;
    deblockedRows = 0;
  }
  bool complete() const { return decodedMbs == widthMbs * heightMbs; }
};

}  // namespace h264
