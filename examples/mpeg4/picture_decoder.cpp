#include "mpeg4/picture_decoder.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

#include "mpeg4/codes.h"
#include "zvpvc.h"

namespace mpeg4 {

namespace {

constexpr unsigned dcMarker = 0x6B001;      // 19 bits
constexpr unsigned motionMarker = 0x1F001;  // 17 bits

// Table 7-1.
int dcScaler(bool luma, int quantizer) {
  if (quantizer < 5) return 8;
  if (!luma) return quantizer < 25 ? (quantizer + 13) / 2 : quantizer - 6;
  return quantizer < 9 ? 2 * quantizer : quantizer < 25 ? quantizer + 8 : 2 * quantizer - 16;
}

// The quotient to the nearest, halves away from zero.
int divideRounded(int a, int b) { return (a >= 0 ? a + b / 2 : a - b / 2) / b; }

// A component of the chroma vector from the sum of four of luma (7.6.2.1): sixteenths of a sample become halves.
int chromaComponent(int sum) {
  static constexpr int halves[16] = {0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2};
  return halves[sum & 15] + 2 * (sum >> 4);
}

int median(int a, int b, int c) { return std::max(std::min(a, b), std::min(std::max(a, b), c)); }

// Table T.1 of H.263.
int modifiedChange(int quantizer, bool up) {
  if (quantizer == 1) return up ? 1 : 2;
  if (quantizer < 11) return up ? 1 : -1;
  if (quantizer < 21) return up ? 2 : -2;
  if (quantizer < 29) return up ? 3 : -3;
  return !up ? -3 : quantizer == 29 ? 2 : quantizer == 30 ? 1 : -5;
}

}  // namespace

void PictureDecoder::configure(const Layer& layer) {
  layer_ = layer;
  widthMbs_ = layer.widthMbs();
  count_ = widthMbs_ * layer.heightMbs();
  macroblocks_.assign(std::size_t(count_), {});
  packet_ = 0;
  std::int32_t size = 0;
  zvpiQuantInvIntraGetSize_MPEG4(&size);
  intraContext_.resize(std::size_t(size));
  zvpiQuantInvInterGetSize_MPEG4(&size);
  interContext_.resize(std::size_t(size));
  const bool matrix = layer.mpegQuantization;
  zvpiQuantInvIntraInit_MPEG4(matrix ? layer.intraMatrix.data() : nullptr, intraContext_.data(), 8);
  zvpiQuantInvInterInit_MPEG4(matrix ? layer.interMatrix.data() : nullptr, interContext_.data(), 8);
}

void PictureDecoder::decode(Unit& in, const PictureHeader& header, Frame& frame, const References& references) {
  in_ = &in;
  header_ = header;
  frame_ = &frame;
  references_ = references;
  quantizer_ = header.quantizer;
  mb_ = 0;
  ++packet_;
  if (layer_.h263)
    h263Picture();
  else
    vop();
  if (header.deblocking) deblock();
}

void PictureDecoder::checkLibrary(std::int32_t status) const {
  if (status != zvpStatusOk) in_->damaged("a block cannot be reconstructed");
}

// Packets

void PictureDecoder::vop() {
  for (;;) {
    resetVectors();
    if (layer_.dataPartitioned && header_.type != PictureType::B)
      partitionedPacket();
    else
      combinedPacket();
    in_->check();
    if (mb_ == count_) return;
    packetHeader();
    ++packet_;
  }
}

// Stuffing, a 0 and ones up to the end of the byte, and then a resync marker (6.2.5.2, E.1.2)?
bool PictureDecoder::resyncMarkerAhead() const {
  if (!layer_.resyncMarkers) return false;
  const unsigned stuffing = 8 - unsigned(in_->position() & 7);
  if (in_->peek(stuffing) != (1u << (stuffing - 1)) - 1) return false;
  unsigned zeros = 16;
  if (header_.type == PictureType::P) zeros = 15 + unsigned(header_.fcodeForward);
  if (header_.type == PictureType::B) zeros = 15 + unsigned(std::max({header_.fcodeForward, header_.fcodeBackward, 2}));
  const std::size_t here = in_->position();
  in_->skip(stuffing);
  const bool marker = in_->peek(zeros + 1) == 1;
  in_->seek(here);
  return marker;
}

void PictureDecoder::packetHeader() {
  if (!resyncMarkerAhead()) in_->damaged("macroblocks end before the picture does");
  in_->skip(1);
  in_->align();
  while (!in_->flag()) {
  }
  const int number = int(in_->bits(unsigned(std::max(1, int(std::bit_width(unsigned(count_ - 1)))))));
  // Macroblocks that take no bits may stand in front of the marker.
  for (; mb_ < std::min(number, count_) && skippedAlready(); ++mb_) {
    begin(mb_);
    bMacroblock();
  }
  if (number != mb_ || mb_ == count_)
    in_->damaged("a packet begins with macroblock " + std::to_string(number) + " and not " + std::to_string(mb_));
  quantizer_ = int(in_->bits(5));
  if (quantizer_ == 0) in_->damaged("the quantizer is 0");
  if (in_->flag()) {  // the header of the picture again
    while (in_->flag()) in_->check();
    in_->marker();
    in_->skip(std::size_t(layer_.tickBits));
    in_->marker();
    in_->skip(2 + 3);
    if (header_.type != PictureType::I) in_->skip(3);
    if (header_.type == PictureType::B) in_->skip(3);
  }
  in_->check();
}

void PictureDecoder::combinedPacket() {
  do {
    begin(mb_);
    if (header_.type == PictureType::B)
      bMacroblock();
    else
      interMacroblock();
    in_->check();
    ++mb_;
  } while (mb_ < count_ && !resyncMarkerAhead());
}

// First what must not be lost of all macroblocks, then the rest of their headers, then the coefficients (6.2.5.3).
void PictureDecoder::partitionedPacket() {
  const bool intraPicture = header_.type == PictureType::I;
  const unsigned markerBits = intraPicture ? 19 : 17, marker = intraPicture ? dcMarker : motionMarker;
  const int first = mb_;
  syntaxes_.clear();
  for (; mb_ < count_ && in_->peek(markerBits) != marker; ++mb_) {
    begin(mb_);
    Syntax syntax;
    if (readType(syntax)) {
      if (intraPicture) {
        syntax.dcCodes = dcCodes();
        readQuantizer(syntax);
        readDcs(syntax);
      } else if (!syntax.intra) {
        readVectors(syntax);
      }
    }
    in_->check();
    syntaxes_.push_back(syntax);
  }
  if (in_->bits(markerBits) != marker) in_->damaged("the marker between the parts of a packet is missing");
  const int end = mb_;
  for (mb_ = first; mb_ < end; ++mb_) {
    Syntax& syntax = syntaxes_[std::size_t(mb_ - first)];
    if (syntax.skipped) continue;
    if (syntax.intra) syntax.acPrediction = in_->flag();
    readPattern(syntax);
    if (!intraPicture) {
      syntax.dcCodes = dcCodes();
      readQuantizer(syntax);
      if (syntax.intra) readDcs(syntax);
    }
    in_->check();
  }
  for (mb_ = first; mb_ < end; ++mb_) {
    mbX_ = mb_ % widthMbs_;
    mbY_ = mb_ / widthMbs_;
    reconstruct(syntaxes_[std::size_t(mb_ - first)]);
  }
}

void PictureDecoder::h263Picture() {
  for (; mb_ < count_; ++mb_) {
    if (mb_ > 0 && mb_ % widthMbs_ == 0 && mb_ / widthMbs_ % layer_.rowsOfGroup() == 0) groupHeader();
    begin(mb_);
    interMacroblock();
    in_->check();
  }
}

// Where a group of blocks begins its header may stand: no macroblock begins with so many zeros (5.2).
void PictureDecoder::groupHeader() {
  const int zeros = std::countl_zero(in_->peek());
  if (zeros < 16 || zeros > 23) return;
  in_->skip(std::size_t(zeros) + 1);
  const int number = int(in_->bits(5));
  if (number * layer_.rowsOfGroup() * widthMbs_ != mb_)
    in_->damaged("group of blocks " + std::to_string(number) + " is out of its place");
  in_->skip(2);
  quantizer_ = int(in_->bits(5));
  if (quantizer_ == 0) in_->damaged("the quantizer is 0");
  ++packet_;
}

// Headers of macroblocks

void PictureDecoder::begin(int mb) {
  mbX_ = mb % widthMbs_;
  mbY_ = mb / widthMbs_;
  Macroblock& here = macroblocks_[std::size_t(mb)];
  here.packet = packet_;
  here.intra = false;
  frame_->motion[std::size_t(mb)] = {};
  if (mbX_ == 0) resetVectors();
}

// False if it is not coded.
bool PictureDecoder::readType(Syntax& syntax) {
  int code;
  do {
    if (header_.type != PictureType::I && in_->flag()) {
      syntax.skipped = true;
      syntax.quantizer = quantizer_;
      frame_->motion[std::size_t(mb_)].skipped = true;
      return false;
    }
    code = header_.type == PictureType::I ? mcbpcOfI.read(*in_, "mcbpc") : mcbpcOfP.read(*in_, "mcbpc");
    in_->check();
  } while (code == mcbpcStuffing);
  const MbType type = MbType(code >> 2);
  syntax.pattern = code & 3;
  syntax.intra = type == MbType::Intra || type == MbType::IntraQ;
  syntax.fourVectors = type == MbType::Inter4V || type == MbType::Inter4VQ;
  syntax.dquant = type == MbType::InterQ || type == MbType::IntraQ || type == MbType::Inter4VQ;
  macroblocks_[std::size_t(mb_)].intra = syntax.intra;
  return true;
}

void PictureDecoder::readPattern(Syntax& syntax) {
  const int luma = cbpyOfIntra.read(*in_, "cbpy");
  syntax.pattern |= (syntax.intra ? luma : 15 - luma) << 2;
}

void PictureDecoder::readQuantizer(Syntax& syntax) {
  static constexpr int change[4] = {-1, -2, 1, 2};
  if (syntax.dquant && header_.modifiedQuantization) {
    if (!in_->flag()) {
      quantizer_ = int(in_->bits(5));
      if (quantizer_ == 0) in_->damaged("the quantizer is 0");
    } else {
      quantizer_ += modifiedChange(quantizer_, in_->flag());
    }
  } else if (syntax.dquant) {
    quantizer_ = std::clamp(quantizer_ + change[in_->bits(2)], 1, 31);
  }
  syntax.quantizer = quantizer_;
}

void PictureDecoder::readDcs(Syntax& syntax) {
  if (!syntax.dcCodes) return;
  for (int block = 0; block < 6; ++block)
    in_->library("no code of a DC", [&](const std::uint8_t** pointer, std::int32_t* offset) {
      return zvpiDecodeDCIntra_MPEG4_1u16s(pointer, offset, &syntax.dc[block], block >= 4);
    });
}

// A macroblock of an I or P picture that is not partitioned.
void PictureDecoder::interMacroblock() {
  Syntax syntax;
  if (readType(syntax)) {
    if (syntax.intra && (!layer_.h263 || header_.advancedIntra)) syntax.acPrediction = in_->flag();
    if (syntax.acPrediction && layer_.h263) syntax.fromLeft = in_->flag();
    readPattern(syntax);
    syntax.dcCodes = dcCodes();
    readQuantizer(syntax);
    Motion& motion = frame_->motion[std::size_t(mb_)];
    if (layer_.interlaced) {
      if (syntax.intra || syntax.pattern != 0) syntax.fieldDct = in_->flag();
      if (!syntax.intra && !syntax.fourVectors) motion.fields = in_->flag();
      if (motion.fields)
        for (bool& bottom : motion.fromBottom) bottom = in_->flag();
    }
    if (!syntax.intra) readVectors(syntax);
  }
  reconstruct(syntax);
}

// Vectors

// The median of three neighbours (7.6.5, H.263 6.1.1).
Vector PictureDecoder::predictVector(int block) const {
  struct Place {
    int x, y, block;
  };
  static constexpr Place places[4][3] = {{{-1, 0, 1}, {0, -1, 2}, {1, -1, 2}},
                                         {{0, 0, 0}, {0, -1, 3}, {1, -1, 2}},
                                         {{-1, 0, 3}, {0, 0, 0}, {0, 0, 1}},
                                         {{0, 0, 2}, {0, 0, 0}, {0, 0, 1}}};
  Vector found[3];
  int count = 0, last = 0;
  for (int i = 0; i < 3; ++i) {
    const Place& place = places[block][i];
    const int x = mbX_ + place.x, y = mbY_ + place.y;
    if (x < 0 || x >= widthMbs_ || y < 0) continue;
    const std::size_t mb = std::size_t(y * widthMbs_ + x);
    if (macroblocks_[mb].packet != packet_) continue;
    found[i] = frame_->motion[mb].vectors[place.block];
    last = i;
    ++count;
  }
  if (count == 1) return found[last];
  return {std::int16_t(median(found[0].x, found[1].x, found[2].x)),
          std::int16_t(median(found[0].y, found[1].y, found[2].y))};
}

int PictureDecoder::readComponent(int predicted, int fcode) {
  const int code = motionCode.read(*in_, "a vector");
  const unsigned more = unsigned(fcode - 1);
  int difference = code;
  if (more > 0 && code != 0) {
    difference = ((std::abs(code) - 1) << more) + int(in_->bits(more)) + 1;
    if (code < 0) difference = -difference;
  }
  const int range = 32 << more, vector = predicted + difference;
  if (layer_.h263 && header_.unrestricted) {  // Annex D
    if (predicted < -31 && vector < -63) return vector + 64;
    if (predicted > 32 && vector > 63) return vector - 64;
    return vector;
  }
  return vector < -range ? vector + 2 * range : vector >= range ? vector - 2 * range : vector;
}

Vector PictureDecoder::readVector(Vector predicted, int fcode) {
  if (!header_.plus || !header_.unrestricted) {
    const int x = readComponent(predicted.x, fcode), y = readComponent(predicted.y, fcode);
    return {std::int16_t(x), std::int16_t(y)};
  }
  // Table D.3: a one in front of what follows a magnitude's leading one, bit by bit.
  const auto difference = [this] {
    if (in_->flag()) return 0;
    int code = 2 + int(in_->flag());
    while (in_->flag()) {
      code = 2 * code + int(in_->flag());
      if (code > 1 << 14) in_->damaged("a vector is too long");
    }
    return code & 1 ? -(code >> 1) : code >> 1;
  };
  const int x = difference(), y = difference();
  if (x == 1 && y == 1) in_->marker();
  const int toX = predicted.x + x, toY = predicted.y + y;
  if (std::abs(toX) > 1 << 13 || std::abs(toY) > 1 << 13) in_->damaged("a vector is too long");
  return {std::int16_t(toX), std::int16_t(toY)};
}

void PictureDecoder::readVectors(const Syntax& syntax) {
  Motion& motion = frame_->motion[std::size_t(mb_)];
  if (motion.fields) {
    const Vector predicted = predictVector(0);
    readFieldVectors({predicted, predicted}, header_.fcodeForward, motion.ofField);
    const Vector &top = motion.ofField[0], &bottom = motion.ofField[1];
    const int x = top.x + bottom.x;
    std::fill_n(motion.vectors, 4, Vector{std::int16_t(x >> 1 | (x & 1)), std::int16_t(top.y + bottom.y)});
    return;
  }
  for (int block = 0; block < (syntax.fourVectors ? 4 : 1); ++block)
    motion.vectors[block] = readVector(predictVector(block), header_.fcodeForward);
  if (!syntax.fourVectors) std::fill_n(motion.vectors + 1, 3, motion.vectors[0]);
}

// Predictors count lines of the frame, vectors those of a field.
void PictureDecoder::readFieldVectors(const Vector (&predicted)[2], int fcode, Vector (&vectors)[2]) {
  for (int field = 0; field < 2; ++field)
    vectors[field] = readVector({predicted[field].x, std::int16_t(predicted[field].y / 2)}, fcode);
}

// A macroblock of a B-VOP (6.2.6, 7.6.9).
void PictureDecoder::bMacroblock() {
  const Motion& there = references_.backward->motion[std::size_t(mb_)];
  Syntax syntax;
  if (skippedAlready()) {
    predict(*references_.forward, Motion().vectors, false);
    return;
  }
  enum { Direct, Interpolated, Backward, Forward } mode = Direct;
  Vector delta, forward[4], backward[4], forwardFields[2], backwardFields[2];
  bool fields = false, forwardBottom[2] = {}, backwardBottom[2] = {};
  if (!in_->flag()) {
    const bool withPattern = !in_->flag();
    const int zeros = std::countl_zero(in_->peek());
    if (zeros > 3) in_->damaged("no code of mb_type");
    in_->skip(std::size_t(zeros) + 1);
    mode = decltype(mode)(zeros);
    if (withPattern) syntax.pattern = int(in_->bits(6));
    if (mode != Direct && syntax.pattern != 0 && in_->flag())
      quantizer_ = std::clamp(quantizer_ + (in_->flag() ? 2 : -2), 1, 31);
    const bool ahead = mode == Forward || mode == Interpolated, back = mode == Backward || mode == Interpolated;
    if (layer_.interlaced) {
      if (syntax.pattern != 0) syntax.fieldDct = in_->flag();
      if (mode != Direct) fields = in_->flag();
      for (int i = 0; fields && ahead && i < 2; ++i) forwardBottom[i] = in_->flag();
      for (int i = 0; fields && back && i < 2; ++i) backwardBottom[i] = in_->flag();
    }
    const auto read = [&](Vector(&last)[2], int fcode, Vector(&ofFields)[2]) {
      if (fields) {
        readFieldVectors(last, fcode, ofFields);
        for (int i = 0; i < 2; ++i) last[i] = {ofFields[i].x, std::int16_t(2 * ofFields[i].y)};
      } else {
        last[0] = last[1] = readVector(last[0], fcode);
      }
    };
    if (ahead) read(lastForward_, header_.fcodeForward, forwardFields);
    if (back) read(lastBackward_, header_.fcodeBackward, backwardFields);
    if (mode == Direct) delta = readVector({}, 1);
  }
  syntax.quantizer = quantizer_;
  std::fill_n(forward, 4, lastForward_[0]);
  std::fill_n(backward, 4, lastBackward_[0]);
  if (mode == Direct) {
    const auto scaled = [&](const Vector& vector, std::int64_t b, std::int64_t d, Vector& to, Vector& back) {
      const auto component = [&](int of, int change, std::int16_t& toward, std::int16_t& backwards) {
        toward = std::int16_t(b * of / d + change);
        backwards = std::int16_t(change == 0 ? (b - d) * of / d : toward - of);
      };
      component(vector.x, delta.x, to.x, back.x);
      component(vector.y, delta.y, to.y, back.y);
    };
    fields = there.fields;
    for (int i = 0; fields && i < 2; ++i) {
      // The fields that a vector leads to and comes from are no whole number of frames apart.
      const int more = (i - there.fromBottom[i]) * (header_.topFieldFirst ? 1 : -1);
      const int d = std::max(1, references_.fieldDistanceOfBoth + more);
      scaled(there.ofField[i], references_.fieldDistance + more, d, forwardFields[i], backwardFields[i]);
      forwardBottom[i] = there.fromBottom[i];
      backwardBottom[i] = i == 1;
    }
    for (int i = 0; !fields && i < 4; ++i)
      scaled(there.vectors[i], references_.distance, references_.distanceOfBoth, forward[i], backward[i]);
  }
  if (mode != Backward) {
    if (fields)
      predictFields(*references_.forward, forwardFields, forwardBottom, false);
    else
      predict(*references_.forward, forward, false);
  }
  if (mode != Forward) {
    if (fields)
      predictFields(*references_.backward, backwardFields, backwardBottom, mode != Backward);
    else
      predict(*references_.backward, backward, mode != Backward);
  }
  for (int block = 0; block < 6; ++block)
    if (syntax.pattern >> (5 - block) & 1) interBlock(syntax, block);
}

// Samples

void PictureDecoder::reconstruct(const Syntax& syntax) {
  macroblocks_[std::size_t(mb_)].quantizer = syntax.quantizer;
  const Motion& motion = frame_->motion[std::size_t(mb_)];
  if (motion.fields)
    predictFields(*references_.forward, motion.ofField, motion.fromBottom, false);
  else if (!syntax.intra)
    predict(*references_.forward, motion.vectors, false);
  for (int block = 0; block < 6; ++block) {
    if (syntax.intra)
      intraBlock(syntax, block);
    else if (syntax.pattern >> (5 - block) & 1)
      interBlock(syntax, block);
  }
}

// Half-sample prediction of the macroblock, or the mean of it and what is there.
void PictureDecoder::predict(const Frame& from, const Vector (&vectors)[4], bool average) {
  const auto area = [&](int plane, int x, int y, int size, Vector vector, auto copy, auto mix) {
    const std::uint8_t* reference = from.reference(plane, x + (vector.x >> 1), y + (vector.y >> 1), size);
    const int half = (vector.x & 1) | (vector.y & 1) << 1;
    (average ? mix : copy)(reference, from.step(plane), frame_->at(plane, x, y), frame_->step(plane), half,
                           header_.rounding);
  };
  const bool one = std::all_of(vectors + 1, vectors + 4, [&](const Vector& other) { return other == vectors[0]; });
  const int x = 16 * mbX_, y = 16 * mbY_;
  if (one) {
    area(0, x, y, 16, vectors[0], zvpiCopy16x16HP_8u_C1R, zvpiInterpolateAverage16x16_8u_C1IR);
  } else {
    for (int i = 0; i < 4; ++i)
      area(0, x + 8 * (i & 1), y + 8 * (i >> 1), 8, vectors[i], zvpiCopy8x8HP_8u_C1R,
           zvpiInterpolateAverage8x8_8u_C1IR);
  }
  int sumX = 0, sumY = 0;
  for (const Vector& vector : vectors) {
    sumX += vector.x;
    sumY += vector.y;
  }
  const Vector chroma{std::int16_t(chromaComponent(sumX)), std::int16_t(chromaComponent(sumY))};
  for (int plane = 1; plane < 3; ++plane)
    area(plane, x / 2, y / 2, 8, chroma, zvpiCopy8x8HP_8u_C1R, zvpiInterpolateAverage8x8_8u_C1IR);
}

// The same for fields, each from the lines of a field (7.7.2).
void PictureDecoder::predictFields(const Frame& from, const Vector (&vectors)[2], const bool (&fromBottom)[2],
                                   bool average) {
  for (int field = 0; field < 2; ++field)
    for (int plane = 0; plane < 3; ++plane) {
      Vector vector = vectors[field];
      if (plane > 0)
        vector = {std::int16_t(chromaComponent(4 * vector.x)), std::int16_t(chromaComponent(4 * vector.y))};
      const int size = plane == 0 ? 16 : 8, x = size * mbX_, y = size / 2 * mbY_;
      const std::uint8_t* reference =
          from.fieldReference(plane, x + (vector.x >> 1), y + (vector.y >> 1), size, fromBottom[field]);
      const auto copy = plane == 0 ? zvpiCopy16x8HP_8u_C1R : zvpiCopy8x4HP_8u_C1R;
      const auto mix = plane == 0 ? zvpiInterpolateAverage16x8_8u_C1IR : zvpiInterpolateAverage8x4_8u_C1IR;
      (average ? mix : copy)(reference, 2 * from.step(plane), frame_->at(plane, x, 2 * y + field),
                             2 * frame_->step(plane), (vector.x & 1) | (vector.y & 1) << 1, header_.rounding);
    }
}

void PictureDecoder::interBlock(const Syntax& syntax, int block) {
  std::int16_t coefficients[64];
  std::int32_t last;
  in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
    if (layer_.h263)
      return zvpiReconstructCoeffsInter_H263_1u16s(pointer, offset, coefficients, &last, quantizerOf(syntax, block),
                                                   header_.modifiedQuantization);
    const bool reversible = layer_.reversible && header_.type != PictureType::B;
    return zvpiReconstructCoeffsInter_MPEG4_1u16s(pointer, offset, coefficients, &last, reversible,
                                                  header_.verticalScan, interContext_.data(), syntax.quantizer);
  });
  zvpiDCT8x8Inv_16s_C1I(coefficients);
  zvpiAdd8x8_16s8u_C1IRS(coefficients, 16, place(syntax, block), step(syntax, block));
}

// Annex T of H.263 quantizes chroma finer (table T.2).
int PictureDecoder::quantizerOf(const Syntax& syntax, int block) const {
  static constexpr int ofChroma[32] = {0,  1,  2,  3,  4,  5,  6,  6,  7,  8,  9,  9,  10, 10, 11, 11,
                                       12, 12, 12, 13, 13, 13, 14, 14, 14, 14, 14, 15, 15, 15, 15, 15};
  return header_.modifiedQuantization && block >= 4 ? ofChroma[syntax.quantizer] : syntax.quantizer;
}

void PictureDecoder::intraBlock(const Syntax& syntax, int block) {
  std::int16_t coefficients[64] = {};
  if (!layer_.h263)
    texture(syntax, block, coefficients);
  else if (header_.advancedIntra)
    advancedTexture(syntax, block, coefficients);
  else
    h263Texture(syntax, block, coefficients);
  zvpiDCT8x8Inv_16s_C1I(coefficients);
  std::uint8_t* to = place(syntax, block);
  for (int y = 0; y < 8; ++y) std::memset(to + y * std::ptrdiff_t(step(syntax, block)), 0, 8);
  zvpiAdd8x8_16s8u_C1IRS(coefficients, 16, to, step(syntax, block));
}

PictureDecoder::Neighbours PictureDecoder::neighboursOf(int block) const {
  struct Place {
    int x, y, block;
  };
  static constexpr Place places[6][3] = {{{-1, 0, 1}, {-1, -1, 3}, {0, -1, 2}}, {{0, 0, 0}, {0, -1, 2}, {0, -1, 3}},
                                         {{-1, 0, 3}, {-1, 0, 1}, {0, 0, 0}},   {{0, 0, 2}, {0, 0, 0}, {0, 0, 1}},
                                         {{-1, 0, 4}, {-1, -1, 4}, {0, -1, 4}}, {{-1, 0, 5}, {-1, -1, 5}, {0, -1, 5}}};
  const auto neighbour = [&](const Place& place) {
    const int x = mbX_ + place.x, y = mbY_ + place.y;
    const Macroblock* there = x < 0 || y < 0 ? nullptr : &macroblocks_[std::size_t(y * widthMbs_ + x)];
    const bool fits = there && there->packet == packet_ && there->intra;
    return Neighbour{fits ? there : nullptr, place.block};
  };
  return {neighbour(places[block][0]), neighbour(places[block][1]), neighbour(places[block][2])};
}

// The first row and column, for blocks that are predicted from this one.
void PictureDecoder::remember(int block, const std::int16_t* coefficients) {
  Macroblock& here = macroblocks_[std::size_t(mb_)];
  for (int i = 1; i < 8; ++i) {
    here.row[block][i] = coefficients[i];
    here.column[block][i] = coefficients[8 * i];
  }
}

// Coefficients with prediction of DC and AC (7.4.3).
void PictureDecoder::texture(const Syntax& syntax, int block, std::int16_t* coefficients) {
  const Neighbours near = neighboursOf(block);
  const bool fromAbove =
      std::abs(near.left.dc() - near.aboveLeft.dc()) < std::abs(near.aboveLeft.dc() - near.above.dc());
  const Neighbour& from = fromAbove ? near.above : near.left;

  if (syntax.dcCodes && layer_.dataPartitioned)
    coefficients[0] = syntax.dc[block];
  else if (syntax.dcCodes)
    in_->library("no code of a DC", [&](const std::uint8_t** pointer, std::int32_t* offset) {
      return zvpiDecodeDCIntra_MPEG4_1u16s(pointer, offset, coefficients, block >= 4);
    });
  if (syntax.pattern >> (5 - block) & 1) {
    const int scan = header_.verticalScan ? 1 : !syntax.acPrediction ? 0 : fromAbove ? 2 : 1;
    in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
      std::int32_t last;
      return zvpiDecodeCoeffsIntra_MPEG4_1u16s(pointer, offset, coefficients, &last, layer_.reversible, syntax.dcCodes,
                                               scan);
    });
  }
  const auto limited = [](int level) { return std::int16_t(std::clamp(level, -2048, 2047)); };
  const int scaler = dcScaler(block < 4, syntax.quantizer);
  coefficients[0] = limited(coefficients[0] + divideRounded(from.dc(), scaler));
  macroblocks_[std::size_t(mb_)].dc[block] = limited(coefficients[0] * scaler);
  if (syntax.acPrediction && from.mb)
    for (int i = 1; i < 8; ++i) {
      const int there = fromAbove ? from.mb->row[from.block][i] : from.mb->column[from.block][i];
      std::int16_t& level = coefficients[fromAbove ? i : 8 * i];
      level = limited(level + divideRounded(there * from.mb->quantizer, syntax.quantizer));
    }
  remember(block, coefficients);
  checkLibrary(zvpiQuantInvIntra_MPEG4_16s_C1I(coefficients, 63, intraContext_.data(), syntax.quantizer, block >= 4));
}

void PictureDecoder::h263Texture(const Syntax& syntax, int block, std::int16_t* coefficients) {
  in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
    std::int32_t last;
    return zvpiReconstructCoeffsIntra_H263_1u16s(pointer, offset, coefficients, &last,
                                                 syntax.pattern >> (5 - block) & 1, quantizerOf(syntax, block), 0, 0,
                                                 header_.modifiedQuantization);
  });
}

// With Annex I of H.263 coefficients are predicted after dequantization (I.3).
void PictureDecoder::advancedTexture(const Syntax& syntax, int block, std::int16_t* coefficients) {
  if (syntax.pattern >> (5 - block) & 1) {
    const int scan = !syntax.acPrediction ? 0 : syntax.fromLeft ? 1 : 2;
    in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
      std::int32_t last;
      return zvpiReconstructCoeffsIntra_H263_1u16s(pointer, offset, coefficients, &last, 1, quantizerOf(syntax, block),
                                                   1, scan, header_.modifiedQuantization);
    });
  }
  const Neighbours near = neighboursOf(block);
  int dc;
  if (syntax.acPrediction) {
    const Neighbour& from = syntax.fromLeft ? near.left : near.above;
    dc = from.dc();
    if (from.mb)
      for (int i = 1; i < 8; ++i) {
        const int there = syntax.fromLeft ? from.mb->column[from.block][i] : from.mb->row[from.block][i];
        std::int16_t& coefficient = coefficients[syntax.fromLeft ? 8 * i : i];
        coefficient = std::int16_t(std::clamp(coefficient + there, -2048, 2047));
      }
  } else if (near.left.mb && near.above.mb) {
    dc = (near.left.dc() + near.above.dc()) / 2;
  } else {
    dc = near.left.mb ? near.left.dc() : near.above.dc();
  }
  coefficients[0] = std::int16_t(std::clamp((coefficients[0] + dc) | 1, 0, 2047));
  macroblocks_[std::size_t(mb_)].dc[block] = coefficients[0];
  remember(block, coefficients);
}

// Annex J of H.263: edges of blocks are smoothed across, first those between rows of blocks, then those between
// columns.
void PictureDecoder::deblock() {
  static constexpr int strengths[32] = {0, 1, 1, 2, 2, 3, 3, 4,  4,  4,  5,  5,  6,  6,  7,  7,
                                        7, 8, 8, 8, 9, 9, 9, 10, 10, 10, 11, 11, 11, 12, 12, 12};
  // Four samples across an edge, which lies in front of the third.
  const auto filter = [](std::uint8_t* edge, std::ptrdiff_t across, int strength) {
    const int a = edge[-2 * across], b = edge[-across], c = edge[0], d = edge[across];
    const int difference = (a - 4 * b + 4 * c - d) / 8, size = std::abs(difference);
    const int ramp = std::max(0, size - std::max(0, 2 * (size - strength)));
    const int change = difference < 0 ? -ramp : ramp;
    const int outer = std::clamp((a - d) / 4, -(ramp / 2), ramp / 2);
    edge[-2 * across] = std::uint8_t(a - outer);
    edge[-across] = std::uint8_t(std::clamp(b + change, 0, 255));
    edge[0] = std::uint8_t(std::clamp(c - change, 0, 255));
    edge[across] = std::uint8_t(d + outer);
  };
  for (int direction = 0; direction < 2; ++direction)
    for (int plane = 0; plane < 3; ++plane) {
      const int blocks = plane == 0 ? 2 : 1;  // of a macroblock, along a side
      const std::ptrdiff_t step = frame_->step(plane);
      for (int y = 0; y < blocks * layer_.heightMbs(); ++y)
        for (int x = 0; x < blocks * widthMbs_; ++x) {
          if ((direction == 0 ? y : x) == 0) continue;
          const int here = y / blocks * widthMbs_ + x / blocks;
          const int before =
              direction == 0 ? (y - 1) / blocks * widthMbs_ + x / blocks : y / blocks * widthMbs_ + (x - 1) / blocks;
          const bool hereCoded = !frame_->motion[std::size_t(here)].skipped;
          if (!hereCoded && frame_->motion[std::size_t(before)].skipped) continue;
          Syntax syntax;
          syntax.quantizer = macroblocks_[std::size_t(hereCoded ? here : before)].quantizer;
          const int strength = strengths[quantizerOf(syntax, plane == 0 ? 0 : 4)];
          std::uint8_t* edge = frame_->at(plane, 8 * x, 8 * y);
          for (int i = 0; i < 8; ++i)
            filter(edge + i * (direction == 0 ? 1 : step), direction == 0 ? step : 1, strength);
        }
    }
}

}  // namespace mpeg4
