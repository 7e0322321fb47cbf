// Writes H.264 syntax: parameter sets, slice headers, NAL units. What to write, the tests decide.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/cavlc_encoder.h"

namespace zvptest {

using Bytes = std::vector<std::uint8_t>;

// Syntax elements into a raw byte sequence payload.
class Rbsp {
 public:
  void u(std::uint64_t value, int bits) { bits_.put(value, bits); }
  void ue(std::uint64_t value) { putExpGolomb(bits_, value); }
  void se(std::int64_t value) { ue(std::uint64_t(value > 0 ? 2 * value - 1 : -2 * value)); }
  void te(unsigned value, unsigned largest) {
    if (largest == 1) u(value == 0, 1);
    else if (largest > 1) ue(value);
  }
  void align(unsigned bit) {
    while (bits_.size() % 8 != 0) u(bit, 1);
  }
  BitWriter& bits() { return bits_; }
  std::size_t size() const { return bits_.size(); }
  // With the stop bit.
  Bytes finish() {
    u(1, 1);
    align(0);
    Bytes bytes;
    for (std::size_t i = 0; i < bits_.size(); i += 8)
      bytes.push_back(std::uint8_t(bits_.words()[i / 32] >> (24 - i % 32)));
    return bytes;
  }

 private:
  BitWriter bits_;
};

// Appends a NAL unit with its start code and emulation prevention bytes.
inline void appendNal(Bytes& stream, unsigned refIdc, unsigned type, Rbsp payload) {
  stream.insert(stream.end(), {0, 0, 0, 1, std::uint8_t(refIdc << 5 | type)});
  int zeros = 0;
  for (const std::uint8_t byte : payload.finish()) {
    if (zeros >= 2 && byte <= 3) {
      stream.push_back(3);
      zeros = 0;
    }
    stream.push_back(byte);
    zeros = byte == 0 ? zeros + 1 : 0;
  }
}

// The parameters of a sequence, as far as the tests vary them.
struct Sequence {
  unsigned profile = 66;
  int widthMbs = 1, heightMbs = 1;
  int frameNumBits = 4;
  unsigned pocType = 0;
  int pocLsbBits = 8;
  bool deltaPocAlwaysZero = false;
  int offsetForNonRef = 0, offsetForTopToBottom = 0;
  std::vector<int> offsetForRefFrame;
  unsigned maxRefFrames = 1;
  bool gaps = false;
  bool direct8x8Inference = true;
  int cropRight = 0, cropBottom = 0;        // in units of two samples
  std::vector<std::vector<int>> scaling;    // 8 lists in coding order; an empty one is not sent; no list: no matrix
  unsigned reorderFrames = 0, bufferFrames = 16;
};

struct Picture {
  unsigned id = 0;
  bool bottomFieldPicOrder = false;
  unsigned refCount[2] = {1, 1};
  bool weightedPrediction = false;
  unsigned weightedBipred = 0;
  int initialQp = 26;
  int chromaQpOffset[2] = {0, 0};
  bool deblockingControl = true, constrainedIntra = false, redundant = false;
  bool transform8x8 = false;
  std::vector<std::vector<int>> scaling;  // 6 or 8 lists
  // Slice groups: 1 group, or a map type with its parameters.
  unsigned groups = 1, mapType = 0;
  std::vector<unsigned> runLengths, topLeft, bottomRight, ids;
  bool changeDirection = false;
  unsigned changeRate = 1;
  bool highSyntax() const { return transform8x8 || !scaling.empty() || chromaQpOffset[0] != chromaQpOffset[1]; }
};

inline void putScalingLists(Rbsp& out, const std::vector<std::vector<int>>& lists) {
  for (const auto& list : lists) {
    out.u(!list.empty(), 1);
    int last = 8;
    for (const int value : list) {  // a list of a single 0 stands for the default
      int delta = value - last;
      if (delta > 127) delta -= 256;
      if (delta < -128) delta += 256;
      out.se(delta);
      last = value;
    }
  }
}

inline Rbsp sequenceParameters(const Sequence& s) {
  Rbsp out;
  out.u(s.profile, 8);
  out.u(0, 8);
  out.u(40, 8);
  out.ue(0);
  if (s.profile == 100) {
    out.ue(1);
    out.ue(0);
    out.ue(0);
    out.u(0, 1);
    out.u(!s.scaling.empty(), 1);
    putScalingLists(out, s.scaling);
  }
  out.ue(std::uint64_t(s.frameNumBits - 4));
  out.ue(s.pocType);
  if (s.pocType == 0) out.ue(std::uint64_t(s.pocLsbBits - 4));
  if (s.pocType == 1) {
    out.u(s.deltaPocAlwaysZero, 1);
    out.se(s.offsetForNonRef);
    out.se(s.offsetForTopToBottom);
    out.ue(s.offsetForRefFrame.size());
    for (const int offset : s.offsetForRefFrame) out.se(offset);
  }
  out.ue(s.maxRefFrames);
  out.u(s.gaps, 1);
  out.ue(std::uint64_t(s.widthMbs - 1));
  out.ue(std::uint64_t(s.heightMbs - 1));
  out.u(1, 1);
  out.u(s.direct8x8Inference, 1);
  const bool crop = s.cropRight != 0 || s.cropBottom != 0;
  out.u(crop, 1);
  if (crop) {
    out.ue(0);
    out.ue(std::uint64_t(s.cropRight));
    out.ue(0);
    out.ue(std::uint64_t(s.cropBottom));
  }
  out.u(1, 1);    // VUI
  out.u(0, 8);    // aspect ratio to pic_struct: none
  out.u(1, 1);    // bitstream restriction
  out.u(1, 1);
  for (const unsigned value : {0u, 0u, 16u, 16u, s.reorderFrames, s.bufferFrames}) out.ue(value);
  return out;
}

inline Rbsp pictureParameters(const Picture& p) {
  Rbsp out;
  out.ue(p.id);
  out.ue(0);
  out.u(0, 1);
  out.u(p.bottomFieldPicOrder, 1);
  out.ue(p.groups - 1);
  if (p.groups > 1) {
    out.ue(p.mapType);
    if (p.mapType == 0)
      for (const unsigned run : p.runLengths) out.ue(run - 1);
    if (p.mapType == 2)
      for (std::size_t i = 0; i + 1 < p.groups; ++i) {
        out.ue(p.topLeft[i]);
        out.ue(p.bottomRight[i]);
      }
    if (p.mapType >= 3 && p.mapType <= 5) {
      out.u(p.changeDirection, 1);
      out.ue(p.changeRate - 1);
    }
    if (p.mapType == 6) {
      out.ue(p.ids.size() - 1);
      for (const unsigned id : p.ids) out.u(id, p.groups > 4 ? 3 : p.groups > 2 ? 2 : 1);
    }
  }
  for (const unsigned count : p.refCount) out.ue(count - 1);
  out.u(p.weightedPrediction, 1);
  out.u(p.weightedBipred, 2);
  out.se(p.initialQp - 26);
  out.se(0);
  out.se(p.chromaQpOffset[0]);
  out.u(p.deblockingControl, 1);
  out.u(p.constrainedIntra, 1);
  out.u(p.redundant, 1);
  if (p.highSyntax()) {
    out.u(p.transform8x8, 1);
    out.u(!p.scaling.empty(), 1);
    putScalingLists(out, p.scaling);
    out.se(p.chromaQpOffset[1]);
  }
  return out;
}

}  // namespace zvptest
