// A frame store: samples, the motion that later pictures look at, and what the decoded picture buffer knows about it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#include "common/padded_planes.h"
#include "h264/parameter_sets.h"

namespace h264 {

struct Mv {
  std::int16_t x = 0, y = 0;
  bool operator==(const Mv&) const = default;
};

// Motion of one macroblock in one list: a vector for each 4x4 block in raster order.
struct MbMotion {
  Mv mv[16];
};

// What a macroblock refers to, for each list and 8x8 block: the index in the slice's list, and the frame store, by which
// references of different slices and pictures are told apart. Negative: the list is not used.
struct MbRefs {
  std::int8_t index[2][4];
  std::int8_t store[2][4];
};

inline constexpr int maxStores = 32;

enum class Reference : std::uint8_t { None, ShortTerm, LongTerm };

struct Frame : video::PaddedPlanes {
  // Fixed by the sequence parameters.
  int widthMbs = 0, heightMbs = 0;
  int index = 0;  // of the frame store
  std::unique_ptr<MbMotion[]> motion[2];
  std::unique_ptr<MbRefs[]> refs;

  // Fixed by the picture.
  bool inUse = false;
  bool nonExisting = false;  // inferred for a gap in frame_num
  std::uint32_t serial = 0;  // counts frames: tells pictures apart that took the same store one after the other
  std::uint32_t storeSerials[maxStores] = {};  // which frame each store held when this picture was decoded
  std::uint32_t frameNum = 0;
  std::int32_t topPoc = 0, bottomPoc = 0;
  std::int32_t poc() const { return std::min(topPoc, bottomPoc); }
  video::Format format;
  int cropLeft = 0, cropTop = 0;

  // Changes over time.
  Reference reference = Reference::None;
  std::int32_t frameNumWrap = 0;  // with respect to the current picture; PicNum of a frame
  std::uint32_t longTermIndex = 0;
  bool waitsForOutput = false;

  bool shortTerm() const { return reference == Reference::ShortTerm; }
  bool longTerm() const { return reference == Reference::LongTerm; }

  // Storage for samples and motion, made when it is first needed: inferred frames have none.
  void allocate();
  bool allocated() const { return planes[0] != nullptr; }
};

}  // namespace h264
