// Motion vectors and reference indices of a macroblock: prediction from the neighbours (H.264 8.4.1.3), P_Skip
// (8.4.1.1) and the direct modes of B slices (8.4.1.2).
//
// The motion of the macroblock under construction, with that of the blocks around it, is kept in a small grid: 4x4
// blocks in rows of eight, the macroblock's own at columns 1 to 4 of rows 1 to 4.
#pragma once

#include <cstdint>
#include <cstring>

#include "h264/picture_state.h"
#include "h264/ref_lists.h"

namespace h264 {

// Which neighbours belong to the same slice, and so may be looked at: A left, B above, C above right, D above left.
struct Neighbours {
  const MbInfo* a = nullptr;
  const MbInfo* b = nullptr;
  const MbInfo* c = nullptr;
  const MbInfo* d = nullptr;
};

class Motion {
 public:
  static constexpr int unavailable = -2, unused = -1;

  void beginSlice(PictureState& picture, const SliceHeader& slice, const RefLists& lists);
  void beginMacroblock(int mb, const Neighbours& neighbours) {
    mb_ = mb;
    near_ = neighbours;
  }

  // Fetches the blocks around the macroblock into the grid, and clears the macroblock's own references.
  void load(int list);

  // Vectors of the partitions of 16x16, 16x8 and 8x16, and of a block of the grid; bx, by, width count 4x4 blocks.
  Mv predictWhole(int list, int ref) const;
  Mv predictRow(int list, int half, int ref) const;
  Mv predictColumn(int list, int half, int ref) const;
  Mv predict(int list, int bx, int by, int width, int ref) const;

  void setRef(int list, int bx, int by, int width, int height, int ref) {
    for (int y = by; y < by + height; ++y) std::memset(&ref_[list][at(bx, y)], ref, std::size_t(width));
  }
  void setMv(int list, int bx, int by, int width, int height, Mv mv) {
    for (int y = by; y < by + height; ++y)
      for (int x = bx; x < bx + width; ++x) mv_[list][at(x, y)] = mv;
  }

  // Motion of the whole macroblock at once, straight into the frame; the grid has no part in it.
  void storeWhole(int ref0, Mv mv0, int ref1, Mv mv1);
  // From the grid into the frame.
  void store();
  // Marks an intra macroblock.
  void storeIntra();

  Mv skipVector() const;
  // Direct prediction of the 8x8 blocks in the mask, into the grid. Tells how finely the motion is divided: Whole if
  // it is the same in all blocks of the mask. False if it needs a picture that is not there.
  bool direct(unsigned mask, MbShape& shape);
  // The same for a macroblock that is predicted in direct mode as a whole, and into the frame.
  bool directMacroblock(MbShape& shape);

 private:
  struct Block {
    int ref;
    Mv mv;
  };
  static constexpr int at(int bx, int by) { return 8 * (by + 1) + bx + 1; }
  static Mv median(const Block& a, const Block& b, const Block& c, int ref);
  Block wholeA(int list) const;
  Block wholeB(int list) const;
  Block wholeC(int list) const;
  Block blockA(int list, int bx, int by) const { return {ref_[list][at(bx - 1, by)], mv_[list][at(bx - 1, by)]}; }
  Block blockB(int list, int bx, int by) const { return {ref_[list][at(bx, by - 1)], mv_[list][at(bx, by - 1)]}; }
  Block blockC(int list, int bx, int by, int width) const;
  bool directSpatial(unsigned mask, MbShape& shape, bool storeIfWhole);
  bool directTemporal(unsigned mask, MbShape& shape);

  const PictureState* picture_ = nullptr;
  Frame* frame_ = nullptr;
  int lists_ = 1;
  bool spatial_ = false, inference8x8_ = false;
  std::int8_t stores_[2][maxRefs] = {};       // frame store of each list entry
  const Frame* collocated_ = nullptr;         // RefPicList1[0]
  bool collocatedShortTerm_ = false;
  std::int8_t storeToRef0_[maxStores] = {};   // index in list 0 of what the collocated picture calls store i
  std::int32_t scale_[maxRefs] = {};          // DistScaleFactor for each entry of list 0
  bool scaled_[maxRefs] = {};

  int mb_ = 0;
  Neighbours near_;
  alignas(16) Mv mv_[2][40];
  std::int8_t ref_[2][40];
};

// DistScaleFactor (8.4.1.2.3); false if vectors to ref0 are not to be scaled.
bool distanceScale(std::int32_t current, const Frame& ref0, const Frame& ref1, std::int32_t& scale);

}  // namespace h264
