// Decodes the macroblocks of a picture: VOPs of ISO/IEC 14496-2 (6.2.5 to 6.2.7, 7.3 to 7.6), with or without data
// partitioning, and pictures of ITU-T H.263 (5.2 to 5.4). The bits of blocks, dequantization, transform and motion
// compensation are the library's.
#pragma once

#include <cstdint>
#include <vector>

#include "mpeg4/frame.h"
#include "mpeg4/headers.h"
#include "mpeg4/unit.h"

namespace mpeg4 {

struct References {
  const Frame* forward = nullptr;   // of P and B pictures
  const Frame* backward = nullptr;  // of B pictures
  // Where a B picture lies between them (7.6.9.5.2), in ticks behind the forward one.
  int distance = 0, distanceOfBoth = 1;
  int fieldDistance = 0, fieldDistanceOfBoth = 1;  // in fields
};

class PictureDecoder {
 public:
  // Room and quantizers for pictures of this layer.
  void configure(const Layer& layer);
  // The rest of the unit, behind the header.
  void decode(Unit& in, const PictureHeader& header, Frame& frame, const References& references);

 private:
  // What the stream tells of a macroblock in front of its coefficients.
  struct Syntax {
    bool skipped = false, intra = false, fourVectors = false, dquant = false;
    int pattern = 0;  // 32 the first block of luma, 1 Cr
    int quantizer = 1;
    bool fieldDct = false;  // luma blocks hold lines of one field
    bool acPrediction = false, dcCodes = true;
    bool fromLeft = false;    // where Annex I of H.263 predicts from
    std::int16_t dc[6] = {};  // differences that came ahead of the coefficients
  };
  // What neighbours look at.
  struct Macroblock {
    std::uint32_t packet = 0;  // nothing is predicted across packets
    bool intra = false;
    int quantizer = 1;
    // The DC, dequantized, and the first column and row of the block, quantized; with Annex I of H.263 dequantized.
    std::int16_t dc[6] = {};
    std::int16_t column[6][8] = {}, row[6][8] = {};
  };

  void vop();
  void h263Picture();
  void packetHeader();
  bool resyncMarkerAhead() const;
  void combinedPacket();
  void partitionedPacket();
  void groupHeader();

  void begin(int mb);
  bool readType(Syntax& syntax);
  void readQuantizer(Syntax& syntax);
  // Has the DC of intra blocks a code of its own (6.3.5)? The quantizer is that in front of the macroblock.
  bool dcCodes() const {
    const int threshold = header_.intraDcThreshold;
    return threshold == 0 || (threshold < 7 && quantizer_ < 11 + 2 * threshold);
  }
  void readPattern(Syntax& syntax);
  void readDcs(Syntax& syntax);
  void readVectors(const Syntax& syntax);
  void readFieldVectors(const Vector (&predicted)[2], int fcode, Vector (&vectors)[2]);
  Vector predictVector(int block) const;
  Vector readVector(Vector predicted, int fcode);
  int readComponent(int predicted, int fcode);
  void interMacroblock();
  void resetVectors() {
    for (int i = 0; i < 2; ++i) lastForward_[i] = lastBackward_[i] = {};
  }
  void bMacroblock();
  bool skippedAlready() const {
    return header_.type == PictureType::B && references_.backward->motion[std::size_t(mb_)].skipped;
  }

  void reconstruct(const Syntax& syntax);
  // The blocks left, above left and above that an intra block may be predicted from.
  struct Neighbour {
    const Macroblock* mb = nullptr;  // null: there is none
    int block = 0;
    int dc() const { return mb ? mb->dc[block] : 1024; }
  };
  struct Neighbours {
    Neighbour left, aboveLeft, above;
  };
  Neighbours neighboursOf(int block) const;
  void remember(int block, const std::int16_t* coefficients);
  void intraBlock(const Syntax& syntax, int block);
  void texture(const Syntax& syntax, int block, std::int16_t* coefficients);
  void advancedTexture(const Syntax& syntax, int block, std::int16_t* coefficients);
  void h263Texture(const Syntax& syntax, int block, std::int16_t* coefficients);
  int quantizerOf(const Syntax& syntax, int block) const;
  void deblock();
  void interBlock(const Syntax& syntax, int block);
  void predict(const Frame& from, const Vector (&vectors)[4], bool average);
  void predictFields(const Frame& from, const Vector (&vectors)[2], const bool (&fromBottom)[2], bool average);
  void checkLibrary(std::int32_t status) const;

  std::uint8_t* place(const Syntax& syntax, int block) {
    const int x = 16 * mbX_, y = 16 * mbY_;
    if (block >= 4) return frame_->at(block - 3, x / 2, y / 2);
    return frame_->at(0, x + 8 * (block & 1), y + (syntax.fieldDct ? 1 : 8) * (block >> 1));
  }
  std::int32_t step(const Syntax& syntax, int block) const {
    return block >= 4 ? frame_->step(block - 3) : frame_->step(0) * (syntax.fieldDct ? 2 : 1);
  }

  Layer layer_;
  int widthMbs_ = 0, count_ = 0;
  std::vector<std::uint8_t> intraContext_, interContext_;
  std::vector<Macroblock> macroblocks_;
  std::vector<Syntax> syntaxes_;  // of a partitioned packet
  std::uint32_t packet_ = 0;

  Unit* in_ = nullptr;
  PictureHeader header_;
  Frame* frame_ = nullptr;
  References references_;
  int quantizer_ = 1;
  int mb_ = 0, mbX_ = 0, mbY_ = 0;           // the current macroblock
  Vector lastForward_[2], lastBackward_[2];  // for both fields
};

}  // namespace mpeg4
