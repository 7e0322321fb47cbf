// Decodes the macroblocks of a slice: syntax (H.264 7.3.4, 7.3.5, with CAVLC), prediction and residual. Samples,
// coefficients and edges are the library's work; this file decides what it is asked for.
#pragma once

#include <cstdint>
#include <vector>

#include "common/bit_reader.h"
#include "h264/cavlc_tables.h"
#include "h264/inter_prediction.h"
#include "h264/motion.h"
#include "h264/picture_state.h"
#include "h264/scaling.h"

namespace h264 {

class SliceDecoder {
 public:
  // Decodes the slice that the NAL unit holds into the picture. The group map has an entry for each macroblock, or is
  // null where there is one slice group. Throws StreamError.
  void decode(const Nal& nal, const SliceHeader& slice, const PictureParameters& pps, const RefLists& lists,
              const LevelScales& scales, const std::vector<std::uint8_t>* groups, PictureState& picture);

 private:
  struct InterMb;

  [[noreturn]] void damaged(const char* text) const;
  void beginMacroblock(int mb);
  void endMacroblock();
  int nextMacroblock(int mb) const;

  void macroblock();
  void skipped();
  void intra(unsigned type);
  void pcm();
  void inter(unsigned type);
  void direct16x16();

  void readSubTypes(InterMb& mb);
  void readRefs(InterMb& mb);
  void readVectors(const InterMb& mb);
  unsigned readRef(int list);
  Mv readVector(Mv predicted);
  void requireRef(int list, int ref) const;

  void readIntraModes(std::int32_t (&modes)[16]);
  void setQp(int qp);
  void readQpDelta();
  unsigned intraEdges() const;  // neighbours that intra prediction may not use, as the library takes them
  void predictInter(const InterMb& mb);
  bool mayUse8x8(const InterMb& mb) const;

  // Reads the coefficients and sets the blocks that have some.
  void readResidual(unsigned cbp, bool intra16x16);
  void noResidual();
  int readBlock(const std::uint8_t* count, std::int16_t maxCoefficients, const std::int32_t* scan, std::int16_t*& to);
  int readChromaDc(std::int16_t*& to);
  void loadCounts();
  void storeCounts();

  void reconstructInter();
  void reconstructIntraLuma(const std::int32_t (&modes)[16], unsigned edges);
  void reconstructChroma(bool intra, unsigned mode, unsigned edges);

  // The slice.
  const Nal* nal_ = nullptr;
  const SliceHeader* slice_ = nullptr;
  const PictureParameters* pps_ = nullptr;
  const RefLists* lists_ = nullptr;
  const LevelScales* scales_ = nullptr;
  const std::vector<std::uint8_t>* groups_ = nullptr;
  PictureState* picture_ = nullptr;
  std::int32_t sliceNumber_ = 0;
  bool usableRefs_[2][maxRefs] = {};
  const CavlcTables& tables_ = CavlcTables::instance();
  video::BitReader in_;
  int qp_ = 0;

  // The macroblock.
  int mb_ = 0, mbX_ = 0, mbY_ = 0;
  MbInfo* info_ = nullptr;
  Neighbours near_;
  std::uint8_t* luma_ = nullptr;
  std::uint8_t* chroma_[2] = {};
  std::int32_t lumaStep_ = 0, chromaStep_ = 0;

  Motion motion_;
  InterPredictor predictor_;

  // total_coeff around and in the macroblock, in rows of eight: a block's left neighbour is one place before it, the
  // upper one eight. Luma at rows 1 to 4, columns 4 to 7; the chroma planes behind it.
  static constexpr int lumaCount(int bx, int by) { return 8 * (by + 1) + bx + 4; }
  static constexpr int chromaCount(int plane, int bx, int by) { return 40 + 24 * plane + 8 * (by + 1) + bx + 4; }
  static constexpr std::uint8_t noCount = 64;
  alignas(16) std::uint8_t counts_[40 + 2 * 24];

  // Which blocks have coefficients, as the library's coded-block pattern has it; with the 8x8 transform luma is its
  // bits 0 to 3. The coefficients in coded order; those of Cb and Cr one after the other where their QPs differ.
  std::uint32_t lumaBlocks_ = 0, chromaBlocks_ = 0;
  bool splitChroma_ = false;
  alignas(64) std::int16_t lumaCoefficients_[16 + 16 * 16];
  alignas(64) std::int16_t chromaCoefficients_[2][2 * 4 + 8 * 16];
};

}  // namespace h264
