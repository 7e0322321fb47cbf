#include "mpeg2/slice_decoder.h"

#include <zvpvc.h>

#include <algorithm>
#include <cstdlib>

#include "mpeg2/codes.h"

namespace mpeg2 {

namespace {

constexpr int mbMotion = mbForward | mbBackward;

// The library does not saturate coefficients of MPEG-2 (13818-2 7.4.3). Behind its mismatch control, which leaves an
// odd sum, this does: if the sum has become even, the control would have gone the other way. A value that no longer
// fits 16 bits has been cut already; no quantizer makes such.
void saturate(std::int16_t* block) {
  unsigned outside = 0;
  for (int i = 0; i < 64; ++i) outside |= unsigned(block[i] + 2048) >> 12;
  if (outside == 0) return;
  int sum = 0;
  for (int i = 0; i < 64; ++i) {
    block[i] = std::clamp<std::int16_t>(block[i], -2048, 2047);
    sum += block[i];
  }
  if (sum % 2 == 0) block[63] ^= 1;
}

}  // namespace

void SliceDecoder::begin(const Sequence& sequence, const PictureHeader& picture, const Frame& target,
                         const References& references) {
  sequence_ = sequence;
  picture_ = picture;
  references_ = references;
  target_ = target.view(picture.structure);
  width_ = sequence.macroblocksX();
  total_ = width_ * sequence.macroblocksY() / (isFrame() ? 1 : 2);
  next_ = 0;
}

void SliceDecoder::decode(const Unit& unit) {
  unit_ = &unit;
  reader_ = unit.reader();
  int row = unit.code() - firstSliceCode;
  if (sequence_.mpeg2 && sequence_.height > 2800) row += int(reader_.bits(3) << 7);
  setScale(reader_.bits(5));
  while (reader_.flag()) {  // intra_slice and what is reserved, too, come as one and eight bits
    reader_.skip(8);
    if (reader_.overrun()) damaged("slice header ends early");
  }
  resetDc();
  resetVectors();
  type_ = mbIntra;  // nothing that a skipped macroblock could go on with

  const int first = row * width_ + readIncrement() - 1;
  if (first != next_)
    damaged("slice begins at macroblock " + std::to_string(first) + " instead of " + std::to_string(next_));
  for (;;) {
    if (next_ >= total_) damaged("more macroblocks than the picture has");
    address_ = next_++;
    macroblock();
    if (reader_.overrun()) damaged("slice ends early");
    if (reader_.peek() >> 9 == 0) return;
    skipped(readIncrement() - 1);
  }
}

int SliceDecoder::value(const Table& table, const char* what) {
  const std::uint32_t* word = reader_.word();
  std::int32_t offset = reader_.offset(), result;
  if (zvpiDecodeHuffmanOne_1u32s(&word, &offset, &result, table.get()) != zvpStatusOk)
    damaged(std::string("bad code of ") + what);
  reader_.setCursor(word, offset);
  return result;
}

int SliceDecoder::readIncrement() {
  for (int increment = 0;;) {
    const int value = this->value(tables_.addressIncrement, "macroblock_address_increment");
    if (value == escapeIncrement)
      increment += 33;
    else if (value != stuffingIncrement)
      return increment + value;
    else if (sequence_.mpeg2)
      damaged("macroblock stuffing in MPEG-2");
    if (reader_.overrun()) damaged("slice ends early");
    if (increment > total_) damaged("more macroblocks than the picture has");
  }
}

void SliceDecoder::resetDc() {
  // The predictor is 128 samples, as coded (13818-2 Table 7-2); the library's of MPEG-1 is eight times that.
  std::fill_n(dc_, 3, std::int16_t(sequence_.mpeg2 ? 128 << picture_.dcPrecision : 1024));
}

void SliceDecoder::resetVectors() { std::fill_n(&vectors_[0][0][0], 8, 0); }

void SliceDecoder::setScale(unsigned code) {
  if (code == 0) damaged("quantizer scale 0");
  scale_ = !sequence_.mpeg2 ? int(code) : picture_.nonLinearScale ? nonLinearScale[code] : int(2 * code);
}

// Macroblocks without data (13818-2 7.6.6): the sample at the same place in P pictures, what was done before in B.
void SliceDecoder::skipped(int count) {
  if (count == 0) return;
  if (count > total_ - next_) damaged("more macroblocks than the picture has");
  if (picture_.type == PictureType::I) damaged("skipped macroblock in an I-picture");
  if (picture_.type == PictureType::B && (type_ & mbIntra)) damaged("skipped macroblock behind an intra one");
  resetDc();
  motion_.kind = isFrame() ? MotionKind::Frame : MotionKind::Field;
  if (picture_.type == PictureType::P) {
    resetVectors();
    motion_.used[0] = true;
    motion_.used[1] = false;
  }
  for (int s = 0; s < 2; ++s) {
    const int unitOfVector = picture_.fullSamples[s] ? 2 : 1;
    motion_.vectors[0][s] = {vectors_[0][s][0] * unitOfVector, vectors_[0][s][1] * unitOfVector};
    motion_.fields[0][s] = ownParity();
  }
  for (; count > 0; --count) {
    address_ = next_++;
    predictMacroblock();
  }
}

void SliceDecoder::macroblock() {
  static constexpr const char* names[3] = {"macroblock_type of an I-picture", "macroblock_type of a P-picture",
                                           "macroblock_type of a B-picture"};
  const int pictureType = int(picture_.type) - 1;
  type_ = value(tables_.macroblockType[pictureType], names[pictureType]);

  motion_.kind = isFrame() ? MotionKind::Frame : MotionKind::Field;
  const bool intra = type_ & mbIntra, choice = isFrame() && !picture_.framePredictionAndDct;
  if ((type_ & mbMotion) && (choice || !isFrame())) readMotionKind();
  fieldDct_ = choice && (type_ & (mbIntra | mbPattern)) && reader_.flag();
  if (type_ & mbQuant) setScale(reader_.bits(5));

  const bool concealment = intra && picture_.concealmentVectors;
  if ((type_ & mbForward) || concealment) readVectors(0);
  if (type_ & mbBackward) readVectors(1);
  if (concealment) reader_.skip(1);  // marker
  if (intra) {
    if (!concealment) resetVectors();
  } else {
    resetDc();
    motion_.used[0] = type_ & mbForward;
    motion_.used[1] = type_ & mbBackward;
    if (picture_.type == PictureType::P && !(type_ & mbForward)) {  // the same place (7.6.3.5)
      resetVectors();
      motion_.kind = isFrame() ? MotionKind::Frame : MotionKind::Field;
      motion_.used[0] = true;
      motion_.vectors[0][0] = {};
      motion_.fields[0][0] = ownParity();
    }
    predictMacroblock();
  }

  const int blocks = sequence_.chromaFormat == 2 ? 8 : 6;
  const unsigned pattern = intra ? 0xFF : type_ & mbPattern ? readPattern() : 0;
  for (int i = 0; i < blocks; ++i)
    if (pattern >> (7 - i) & 1) {
      readBlock(i);
      place(i);
    }
}

void SliceDecoder::readMotionKind() {
  const unsigned code = reader_.bits(2);
  if (code == 0) damaged("reserved motion type");
  if (code == 3) {
    if (picture_.type != PictureType::P) damaged("dual prime in a B-picture");
    motion_.kind = MotionKind::DualPrime;
  } else if (isFrame()) {
    motion_.kind = code == 1 ? MotionKind::Field : MotionKind::Frame;
  } else {
    motion_.kind = code == 1 ? MotionKind::Field : MotionKind::Halves;
  }
}

// motion_vectors(s), 6.2.5.2, and the predictors behind it, Tables 7-9 and 7-10.
void SliceDecoder::readVectors(int s) {
  const bool two = isFrame() ? motion_.kind == MotionKind::Field : motion_.kind == MotionKind::Halves;
  const bool fields = motion_.kind == MotionKind::Field || motion_.kind == MotionKind::Halves;
  const bool fieldOfFrame = isFrame() && motion_.kind != MotionKind::Frame;
  Vector difference;
  for (int r = 0; r < (two ? 2 : 1); ++r) {
    if (fields) motion_.fields[r][s] = int(reader_.bits(1));
    readVector(r, s, fieldOfFrame, difference);
  }
  if (!two) std::copy_n(vectors_[0][s], 2, vectors_[1][s]);
  if (motion_.kind != MotionKind::DualPrime) return;
  const Vector& vector = motion_.vectors[0][0];
  if (isFrame()) {
    motion_.dualPrime[0] = dualPrimeVector(vector, difference, picture_.topFieldFirst ? 1 : 3, -1);
    motion_.dualPrime[1] = dualPrimeVector(vector, difference, picture_.topFieldFirst ? 3 : 1, 1);
  } else {
    motion_.dualPrime[0] = dualPrimeVector(vector, difference, 1, ownParity() == 0 ? -1 : 1);
  }
}

void SliceDecoder::readVector(int r, int s, bool fieldOfFrame, Vector& difference) {
  const auto readDifference = [&] {
    if (motion_.kind != MotionKind::DualPrime || !reader_.flag()) return 0;
    return reader_.flag() ? -1 : 1;  // B-11
  };
  auto& predictor = vectors_[r][s];
  predictor[0] = readVectorComponent(r, s, 0);
  difference.x = readDifference();
  // Predictors are in lines of the frame, vectors of fields in lines of the field.
  if (fieldOfFrame) predictor[1] >>= 1;
  const int y = readVectorComponent(r, s, 1);
  difference.y = readDifference();
  predictor[1] = fieldOfFrame ? 2 * y : y;
  const int unitOfVector = picture_.fullSamples[s] ? 2 : 1;
  motion_.vectors[r][s] = {predictor[0] * unitOfVector, y * unitOfVector};
}

// The predictor and the difference (7.6.3.1).
int SliceDecoder::readVectorComponent(int r, int s, int t) {
  const unsigned residualBits = picture_.fCode[s][t] - 1;
  if (residualBits > 8) damaged("f_code out of range");
  const int code = value(tables_.motionCode, "motion_code");
  int delta = std::abs(code);
  if (residualBits != 0 && code != 0) delta = ((delta - 1) << residualBits) + int(reader_.bits(residualBits)) + 1;
  const int half = 16 << residualBits;
  int vector = vectors_[r][s][t] + (code < 0 ? -delta : delta);
  if (vector < -half) vector += 2 * half;
  if (vector >= half) vector -= 2 * half;
  return vector;
}

// One bit a block, the first on top of eight.
unsigned SliceDecoder::readPattern() {
  const unsigned pattern = unsigned(value(tables_.codedBlockPattern, "coded_block_pattern"));
  if (sequence_.chromaFormat == 2) return pattern << 2 | reader_.bits(2);
  if (pattern == 0) damaged("coded_block_pattern 0");
  return pattern << 2;
}

void SliceDecoder::readBlock(int i) {
  const bool intra = type_ & mbIntra, luma = i < 4;
  const Table& coefficients = tables_.coefficients[intra && picture_.tableOne];
  const std::int32_t* scan = tables_.scans[picture_.alternateScan];
  const std::int16_t* weights = (luma ? sequence_.matrices.luma : sequence_.matrices.chroma)[!intra].data();
  // A first code that there is not would not be told (twelve zeros begin none).
  if (!intra && reader_.peek() >> 20 == 0) damaged("bad code of a coefficient");
  const std::uint32_t* word = reader_.word();
  std::int32_t offset = reader_.offset(), last = 0;
  zvpStatus status;
  if (intra) {
    std::int16_t* dc = &dc_[luma ? 0 : 1 + i % 2];
    const std::int32_t* sizes = tables_.dcSize[!luma].get();
    status = sequence_.mpeg2
                 ? zvpiReconstructDCTBlockIntra_MPEG2_32s(&word, &offset, sizes, coefficients.get(), scan, scale_,
                                                          weights, dc, 3 - int(picture_.dcPrecision), block_, &last)
                 : zvpiReconstructDCTBlockIntra_MPEG1_32s(&word, &offset, sizes, coefficients.get(), scan, scale_,
                                                          weights, dc, block_, &last);
  } else {
    // Of weights times scale under 6 the library makes some of MPEG-1's zeros odd, which 11172-2 2.4.4.2 leaves alone;
    // other decoders do so too, and no default weight is as small.
    const auto read = sequence_.mpeg2 ? zvpiReconstructDCTBlock_MPEG2_32s : zvpiReconstructDCTBlock_MPEG1_32s;
    status = read(&word, &offset, coefficients.get(), coefficients.get(), scan, scale_, weights, block_, &last);
  }
  reader_.setCursor(word, offset);
  if (status != zvpStatusOk || last > 63) damaged("bad code of a coefficient");
  if (reader_.overrun()) damaged("slice ends early");
  if (sequence_.mpeg2) saturate(block_);
}

// Transforms the block and puts it into the picture, or adds it to the prediction.
void SliceDecoder::place(int i) const {
  const int x = address_ % width_, y = address_ / width_;
  const bool luma = i < 4;
  const Plane& plane = target_.planes[luma ? 0 : 1 + i % 2];
  const bool tall = plane.height == target_.planes[0].height;  // a macroblock has 16 lines of this plane
  const int column = luma ? 16 * x + i % 2 * 8 : 8 * x;
  const int lower = luma ? i / 2 : i >= 6;  // the second block downwards
  const bool fields = fieldDct_ && tall;
  std::uint8_t* to = plane.at(column, (tall ? 16 : 8) * y + lower * (fields ? 1 : 8));
  const int step = fields ? 2 * plane.step : plane.step;
  std::int16_t samples[64];
  zvpiDCT8x8Inv_16s_C1(block_, samples);
  if (type_ & mbIntra) {
    static constexpr std::uint8_t black[8] = {};  // as a reference all of whose rows are this one
    zvpiMC8x8_8u_C1(black, 0, samples, 16, to, step, 0, 0);
  } else {
    zvpiAdd8x8_16s8u_C1IRS(samples, 16, to, step);
  }
}

void SliceDecoder::predictMacroblock() {
  if (!predict(picture_, target_, references_, motion_, address_ % width_, address_ / width_))
    damaged("macroblock " + std::to_string(address_) + " is predicted from outside its references");
}

}  // namespace mpeg2
