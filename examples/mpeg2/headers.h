// The headers above the slice: ISO/IEC 13818-2 6.2.2 and 6.2.3, ISO/IEC 11172-2 2.4.2.3 to 2.4.2.5.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "mpeg2/unit.h"

namespace mpeg2 {

// Start codes (6.2.1).
inline constexpr int pictureCode = 0x00, firstSliceCode = 0x01, lastSliceCode = 0xAF, userDataCode = 0xB2,
                     sequenceHeaderCode = 0xB3, sequenceErrorCode = 0xB4, extensionCode = 0xB5, sequenceEndCode = 0xB7,
                     groupCode = 0xB8;

// The kind of an extension, its first four bits (Table 6-2).
enum class Extension { Sequence = 1, SequenceDisplay = 2, QuantMatrix = 3, SequenceScalable = 5, PictureCoding = 8 };
Extension extensionOf(const Unit& unit);

// Weights by raster position.
using Weights = std::array<std::int16_t, 64>;
struct Matrices {
  Weights luma[2], chroma[2];  // intra, non-intra
};

struct Sequence {
  bool mpeg2 = false;
  int width = 0, height = 0;
  unsigned aspectCode = 0, frameRateCode = 0, bitRate = 0;  // the bit rate in 400 bit/s
  Matrices matrices;
  // Of MPEG-2.
  unsigned profileAndLevel = 0;
  bool progressive = true, lowDelay = false;
  unsigned chromaFormat = 1;  // 1: 4:2:0, 2: 4:2:2
  int rateFactor = 1, rateDivisor = 1;
  unsigned matrixCoefficients = 0;  // 0: not told

  int macroblocksX() const { return (width + 15) / 16; }
  // Of a frame: even if it may consist of field pictures.
  int macroblocksY() const { return progressive ? (height + 15) / 16 : (height + 31) / 32 * 2; }
  video::Format format() const;
  std::string profile() const;
};

enum class PictureType { I = 1, P = 2, B = 3 };
enum class Structure { TopField = 1, BottomField = 2, Frame = 3 };

struct PictureHeader {
  unsigned temporalReference = 0;
  PictureType type = PictureType::I;
  unsigned fCode[2][2] = {{1, 1}, {1, 1}};  // [forward, backward][x, y]
  bool fullSamples[2] = {false, false};     // vectors of whole samples (MPEG-1)
  // Of MPEG-2; what MPEG-1 does without saying so.
  bool coded = false;  // the picture coding extension was there
  unsigned dcPrecision = 0;
  Structure structure = Structure::Frame;
  bool topFieldFirst = false, framePredictionAndDct = true, concealmentVectors = false, nonLinearScale = false,
       tableOne = false, alternateScan = false, progressive = true;
};

Sequence parseSequenceHeader(const Unit& unit);
void parseSequenceExtension(const Unit& unit, Sequence& sequence);
void parseSequenceDisplayExtension(const Unit& unit, Sequence& sequence);
void parseQuantMatrixExtension(const Unit& unit, Matrices& matrices);
bool parseClosedGroup(const Unit& unit);
PictureHeader parsePictureHeader(const Unit& unit);
void parsePictureCodingExtension(const Unit& unit, PictureHeader& picture);

}  // namespace mpeg2
