// A slice: its header and macroblocks, decoded into the picture (ISO/IEC 13818-2 6.2.4 to 6.2.6, ISO/IEC 11172-2
// 2.4.2.6 to 2.4.2.8).
#pragma once

#include "mpeg2/motion.h"
#include "mpeg2/tables.h"

namespace mpeg2 {

class SliceDecoder {
 public:
  // Begins a picture.
  void begin(const Sequence& sequence, const PictureHeader& picture, const Frame& target, const References& references);
  // Decodes a slice, which must go on where the one before it ended. Throws StreamError.
  void decode(const Unit& unit);
  bool complete() const { return next_ == total_; }
  int missing() const { return total_ - next_; }

 private:
  [[noreturn]] void damaged(const std::string& text) const { unit_->damaged(reader_, text); }
  int value(const Table& table, const char* what);
  int readIncrement();
  void resetDc();
  void resetVectors();
  void skipped(int count);
  void macroblock();
  void readMotionKind();
  void readVectors(int s);
  void readVector(int r, int s, bool fieldOfFrame, Vector& difference);
  int readVectorComponent(int r, int s, int t);
  unsigned readPattern();
  void readBlock(int i);
  void place(int i) const;
  void predictMacroblock();
  void setScale(unsigned code);
  bool isFrame() const { return picture_.structure == Structure::Frame; }
  int ownParity() const { return picture_.structure == Structure::BottomField; }

  const Tables& tables_ = Tables::instance();
  Sequence sequence_;
  PictureHeader picture_;
  References references_;
  View target_;
  int width_ = 0, total_ = 0, next_ = 0;  // in macroblocks

  const Unit* unit_ = nullptr;
  video::BitReader reader_;
  int scale_ = 0;
  std::int16_t dc_[3];
  int vectors_[2][2][2];  // predictors [first, second][forward, backward][x, y]
  // Of the macroblock.
  int address_ = 0, type_ = 0;
  bool fieldDct_ = false;
  Motion motion_;
  std::int16_t block_[64];
};

}  // namespace mpeg2
