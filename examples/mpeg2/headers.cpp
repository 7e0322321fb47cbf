#include "mpeg2/headers.h"

#include <numeric>

#include "common/zigzag.h"
#include "mpeg2/codes.h"

namespace mpeg2 {

namespace {

using video::BitReader;
using video::Ratio;

void checkEnd(const Unit& unit, const BitReader& reader, const char* what) {
  if (reader.overrun()) unit.damaged(reader, std::string(what) + " ends early");
}

BitReader extensionReader(const Unit& unit) {
  BitReader reader = unit.reader();
  reader.skip(4);
  return reader;
}

// Downloaded weights come in zigzag order whatever scan the pictures use (6.3.11).
Weights readWeights(const Unit& unit, BitReader& reader) {
  Weights weights;
  for (const std::uint8_t at : video::zigzag8x8) {
    weights[at] = std::int16_t(reader.bits(8));
    if (weights[at] == 0) unit.damaged(reader, "weight 0 in a quantizer matrix");
  }
  return weights;
}

constexpr Ratio frameRates[16] = {{},      {24000, 1001}, {24, 1},       {25, 1}, {30000, 1001},
                                  {30, 1}, {50, 1},       {60000, 1001}, {60, 1}};
constexpr Ratio displayAspects[16] = {{}, {}, {4, 3}, {16, 9}, {221, 100}};
// Height of a sample to its width, in 1/10000 (ISO/IEC 11172-2 2.4.3.2).
constexpr int sampleHeights[16] = {0,    10000, 6735,  7031,  7615,  8055,  8437,  8935,
                                   9157, 9815,  10255, 10695, 10950, 11575, 12015, 0};

Ratio reduced(std::int64_t num, std::int64_t den) {
  const std::int64_t divisor = std::gcd(num, den);
  return divisor == 0 ? Ratio{} : Ratio{int(num / divisor), int(den / divisor)};
}

}  // namespace

video::Format Sequence::format() const {
  video::Format format;
  format.width = width;
  format.height = height;
  format.chromaShiftX = 1;
  format.chromaShiftY = chromaFormat == 1 ? 1 : 0;
  const Ratio rate = frameRates[frameRateCode];
  if (rate.known())
    format.frameRate = reduced(std::int64_t(rate.num) * rateFactor, std::int64_t(rate.den) * rateDivisor);
  if (aspectCode == 1) {
    format.sampleAspect = {1, 1};
  } else if (!mpeg2) {
    if (sampleHeights[aspectCode] > 0) format.sampleAspect = reduced(10000, sampleHeights[aspectCode]);
  } else if (const Ratio aspect = displayAspects[aspectCode]; aspect.known()) {
    format.sampleAspect = reduced(std::int64_t(aspect.num) * height, std::int64_t(aspect.den) * width);
  }
  format.matrix = matrixCoefficients == 1 ? video::Matrix::Bt709 : video::Matrix::Bt601;
  return format;
}

std::string Sequence::profile() const {
  if (!mpeg2) return "MPEG-1";
  if (profileAndLevel & 0x80) return (profileAndLevel & 0x70) == 0 ? "MPEG-2, 4:2:2 profile" : "MPEG-2";
  static constexpr const char* profiles[8] = {"", "High", "Spatially Scalable", "SNR Scalable", "Main", "Simple",
                                              "", ""};
  static constexpr const char* levels[16] = {"", "", "", "", "High", "", "High 1440", "", "Main", "", "Low"};
  const char* profile = profiles[profileAndLevel >> 4 & 7];
  const char* level = levels[profileAndLevel & 15] ? levels[profileAndLevel & 15] : "";
  std::string text = "MPEG-2";
  if (*profile) text += std::string(", ") + profile + " profile";
  if (*level) text += std::string(", ") + level + " level";
  return text;
}

Extension extensionOf(const Unit& unit) { return Extension(unit.reader().bits(4)); }

Sequence parseSequenceHeader(const Unit& unit) {
  BitReader reader = unit.reader();
  Sequence sequence;
  sequence.width = int(reader.bits(12));
  sequence.height = int(reader.bits(12));
  sequence.aspectCode = reader.bits(4);
  sequence.frameRateCode = reader.bits(4);
  sequence.bitRate = reader.bits(18);
  reader.skip(1 + 10 + 1);  // marker, size of the buffer, constrained parameters
  if (reader.flag()) {
    sequence.matrices.luma[0] = readWeights(unit, reader);
  } else {
    for (std::size_t i = 0; i < 64; ++i) sequence.matrices.luma[0][i] = defaultIntraWeights[i];
  }
  if (reader.flag())
    sequence.matrices.luma[1] = readWeights(unit, reader);
  else
    sequence.matrices.luma[1].fill(16);
  for (int i = 0; i < 2; ++i) sequence.matrices.chroma[i] = sequence.matrices.luma[i];
  checkEnd(unit, reader, "sequence header");
  if (sequence.width == 0 || sequence.height == 0) unit.damaged(unit.reader(), "picture without size");
  return sequence;
}

void parseSequenceExtension(const Unit& unit, Sequence& sequence) {
  BitReader reader = extensionReader(unit);
  sequence.mpeg2 = true;
  sequence.profileAndLevel = reader.bits(8);
  sequence.progressive = reader.flag();
  sequence.chromaFormat = reader.bits(2);
  sequence.width += int(reader.bits(2) << 12);
  sequence.height += int(reader.bits(2) << 12);
  sequence.bitRate += reader.bits(12) << 18;
  reader.skip(1 + 8);  // marker, size of the buffer
  sequence.lowDelay = reader.flag();
  sequence.rateFactor = int(reader.bits(2)) + 1;
  sequence.rateDivisor = int(reader.bits(5)) + 1;
  checkEnd(unit, reader, "sequence extension");
  if (sequence.chromaFormat == 0) unit.damaged(reader, "reserved chroma format");
  if (sequence.chromaFormat == 3) unit.unsupported("4:4:4");
}

void parseSequenceDisplayExtension(const Unit& unit, Sequence& sequence) {
  BitReader reader = extensionReader(unit);
  reader.skip(3);
  if (!reader.flag()) return;
  reader.skip(16);  // primaries, transfer
  sequence.matrixCoefficients = reader.bits(8);
  checkEnd(unit, reader, "sequence display extension");
}

void parseQuantMatrixExtension(const Unit& unit, Matrices& matrices) {
  BitReader reader = extensionReader(unit);
  for (int i = 0; i < 2; ++i)
    if (reader.flag()) matrices.luma[i] = matrices.chroma[i] = readWeights(unit, reader);
  for (int i = 0; i < 2; ++i)
    if (reader.flag()) matrices.chroma[i] = readWeights(unit, reader);
  checkEnd(unit, reader, "quant matrix extension");
}

bool parseClosedGroup(const Unit& unit) {
  BitReader reader = unit.reader();
  reader.skip(25);  // time code
  const bool closed = reader.flag();
  checkEnd(unit, reader, "group of pictures header");
  return closed;
}

PictureHeader parsePictureHeader(const Unit& unit) {
  BitReader reader = unit.reader();
  PictureHeader picture;
  picture.temporalReference = reader.bits(10);
  const unsigned type = reader.bits(3);
  if (type == 4) unit.unsupported("D-pictures");
  if (type < 1 || type > 3) unit.damaged(reader, "picture of reserved type " + std::to_string(type));
  picture.type = PictureType(type);
  reader.skip(16);  // vbv_delay
  const int directions = picture.type == PictureType::I ? 0 : picture.type == PictureType::P ? 1 : 2;
  for (int s = 0; s < directions; ++s) {
    picture.fullSamples[s] = reader.flag();
    // MPEG-2 says these again in the picture coding extension, and then 0 may stand here.
    picture.fCode[s][0] = picture.fCode[s][1] = reader.bits(3);
  }
  checkEnd(unit, reader, "picture header");
  return picture;
}

void parsePictureCodingExtension(const Unit& unit, PictureHeader& picture) {
  BitReader reader = extensionReader(unit);
  picture.coded = true;
  for (auto& direction : picture.fCode)
    for (unsigned& code : direction) code = reader.bits(4);
  picture.fullSamples[0] = picture.fullSamples[1] = false;
  picture.dcPrecision = reader.bits(2);
  const unsigned structure = reader.bits(2);
  if (structure == 0) unit.damaged(reader, "reserved picture structure");
  picture.structure = Structure(structure);
  picture.topFieldFirst = reader.flag();
  picture.framePredictionAndDct = reader.flag();
  picture.concealmentVectors = reader.flag();
  picture.nonLinearScale = reader.flag();
  picture.tableOne = reader.flag();
  picture.alternateScan = reader.flag();
  reader.skip(2);  // repeat_first_field, chroma_420_type
  picture.progressive = reader.flag();
  checkEnd(unit, reader, "picture coding extension");
}

}  // namespace mpeg2
