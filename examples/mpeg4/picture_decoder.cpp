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
  if (layer_.h263) h263Picture();
  else vop();
}

void PictureDecoder::checkLibrary(std::int32_t status) const {
  if (status != zvpStatusOk) in_->damaged("a block cannot be reconstructed");
}

// Packets

void PictureDecoder::vop() {
  for (;;) {
    lastForward_ = lastBackward_ = {};
    if (layer_.dataPartitioned && header_.type != PictureType::B) partitionedPacket();
    else combinedPacket();
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
    if (header_.type == PictureType::B) bMacroblock();
    else interMacroblock();
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
  if (mbX_ == 0) lastForward_ = lastBackward_ = {};
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
  if (syntax.dquant) quantizer_ = std::clamp(quantizer_ + change[in_->bits(2)], 1, 31);
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
    if (syntax.intra && !layer_.h263) syntax.acPrediction = in_->flag();
    readPattern(syntax);
    syntax.dcCodes = dcCodes();
    readQuantizer(syntax);
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
  for (int block = 0; block < (syntax.fourVectors ? 4 : 1); ++block)
    motion.vectors[block] = readVector(predictVector(block), header_.fcodeForward);
  if (!syntax.fourVectors) std::fill_n(motion.vectors + 1, 3, motion.vectors[0]);
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
  Vector delta;
  if (!in_->flag()) {
    const bool withPattern = !in_->flag();
    const int zeros = std::countl_zero(in_->peek());
    if (zeros > 3) in_->damaged("no code of mb_type");
    in_->skip(std::size_t(zeros) + 1);
    mode = decltype(mode)(zeros);
    if (withPattern) syntax.pattern = int(in_->bits(6));
    if (mode != Direct && syntax.pattern != 0 && in_->flag())
      quantizer_ = std::clamp(quantizer_ + (in_->flag() ? 2 : -2), 1, 31);
    if (mode == Forward || mode == Interpolated) lastForward_ = readVector(lastForward_, header_.fcodeForward);
    if (mode == Backward || mode == Interpolated) lastBackward_ = readVector(lastBackward_, header_.fcodeBackward);
    if (mode == Direct) delta = readVector({}, 1);
  }
  syntax.quantizer = quantizer_;
  Vector forward[4], backward[4];
  std::fill_n(forward, 4, lastForward_);
  std::fill_n(backward, 4, lastBackward_);
  if (mode == Direct) {
    const std::int64_t b = references_.distance, d = references_.distanceOfBoth;
    const auto scaled = [&](int vector, int change, std::int16_t& to, std::int16_t& back) {
      to = std::int16_t(b * vector / d + change);
      back = std::int16_t(change == 0 ? (b - d) * vector / d : to - vector);
    };
    for (int i = 0; i < 4; ++i) {
      scaled(there.vectors[i].x, delta.x, forward[i].x, backward[i].x);
      scaled(there.vectors[i].y, delta.y, forward[i].y, backward[i].y);
    }
  }
  if (mode != Backward) predict(*references_.forward, forward, false);
  if (mode != Forward) predict(*references_.backward, backward, mode != Backward);
  for (int block = 0; block < 6; ++block)
    if (syntax.pattern >> (5 - block) & 1) interBlock(syntax, block);
}

// Samples

void PictureDecoder::reconstruct(const Syntax& syntax) {
  macroblocks_[std::size_t(mb_)].quantizer = syntax.quantizer;
  if (!syntax.intra) predict(*references_.forward, frame_->motion[std::size_t(mb_)].vectors, false);
  for (int block = 0; block < 6; ++block) {
    if (syntax.intra) intraBlock(syntax, block);
    else if (syntax.pattern >> (5 - block) & 1) interBlock(syntax, block);
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

void PictureDecoder::interBlock(const Syntax& syntax, int block) {
  std::int16_t coefficients[64];
  std::int32_t last;
  in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
    if (layer_.h263)
      return zvpiReconstructCoeffsInter_H263_1u16s(pointer, offset, coefficients, &last, syntax.quantizer, 0);
    const bool reversible = layer_.reversible && header_.type != PictureType::B;
    return zvpiReconstructCoeffsInter_MPEG4_1u16s(pointer, offset, coefficients, &last, reversible, 0,
                                                  interContext_.data(), syntax.quantizer);
  });
  zvpiDCT8x8Inv_16s_C1I(coefficients);
  zvpiAdd8x8_16s8u_C1IRS(coefficients, 16, place(block), step(block));
}

void PictureDecoder::intraBlock(const Syntax& syntax, int block) {
  const bool coded = syntax.pattern >> (5 - block) & 1;
  std::int16_t coefficients[64] = {};
  std::int32_t last = 0;
  if (layer_.h263) {
    in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
      return zvpiReconstructCoeffsIntra_H263_1u16s(pointer, offset, coefficients, &last, coded, syntax.quantizer, 0, 0,
                                                   0);
    });
  } else {
    // Prediction of DC and AC (7.4.3): left, above left and above.
    struct Place {
      int x, y, block;
    };
    static constexpr Place places[6][3] = {
        {{-1, 0, 1}, {-1, -1, 3}, {0, -1, 2}}, {{0, 0, 0}, {0, -1, 2}, {0, -1, 3}},   {{-1, 0, 3}, {-1, 0, 1}, {0, 0, 0}},
        {{0, 0, 2}, {0, 0, 0}, {0, 0, 1}},     {{-1, 0, 4}, {-1, -1, 4}, {0, -1, 4}}, {{-1, 0, 5}, {-1, -1, 5}, {0, -1, 5}}};
    Macroblock& here = macroblocks_[std::size_t(mb_)];
    const Macroblock* neighbours[3] = {};
    int dcs[3];
    for (int i = 0; i < 3; ++i) {
      const Place& place = places[block][i];
      const int x = mbX_ + place.x, y = mbY_ + place.y;
      const Macroblock* there = x < 0 || y < 0 ? nullptr : &macroblocks_[std::size_t(y * widthMbs_ + x)];
      if (there && there->packet == packet_ && there->intra) neighbours[i] = there;
      dcs[i] = neighbours[i] ? neighbours[i]->dc[place.block] : 1024;
    }
    const bool fromAbove = std::abs(dcs[0] - dcs[1]) < std::abs(dcs[1] - dcs[2]);
    const int which = fromAbove ? 2 : 0;

    if (syntax.dcCodes) {
      if (layer_.dataPartitioned)
        coefficients[0] = syntax.dc[block];
      else
        in_->library("no code of a DC", [&](const std::uint8_t** pointer, std::int32_t* offset) {
          return zvpiDecodeDCIntra_MPEG4_1u16s(pointer, offset, coefficients, block >= 4);
        });
    }
    if (coded) {
      const int scan = !syntax.acPrediction ? 0 : fromAbove ? 2 : 1;
      in_->library("no code of coefficients", [&](const std::uint8_t** pointer, std::int32_t* offset) {
        return zvpiDecodeCoeffsIntra_MPEG4_1u16s(pointer, offset, coefficients, &last, layer_.reversible,
                                                 syntax.dcCodes, scan);
      });
    }
    const int scaler = dcScaler(block < 4, syntax.quantizer);
    coefficients[0] =
        std::int16_t(std::clamp(coefficients[0] + divideRounded(dcs[which], scaler), -2048, 2047));
    here.dc[block] = std::int16_t(std::clamp(coefficients[0] * scaler, -2048, 2047));
    const int along = fromAbove ? 1 : 8;
    if (const Macroblock* there = neighbours[which]; syntax.acPrediction && there) {
      const int from = places[block][which].block;
      for (int i = 1; i < 8; ++i) {
        const int predicted = fromAbove ? there->row[from][i] : there->column[from][i];
        coefficients[along * i] = std::int16_t(
            std::clamp(coefficients[along * i] + divideRounded(predicted * there->quantizer, syntax.quantizer), -2048, 2047));
      }
    }
    for (int i = 1; i < 8; ++i) {
      here.row[block][i] = coefficients[i];
      here.column[block][i] = coefficients[8 * i];
    }
    checkLibrary(zvpiQuantInvIntra_MPEG4_16s_C1I(coefficients, 63, intraContext_.data(), syntax.quantizer, block >= 4));
  }
  zvpiDCT8x8Inv_16s_C1I(coefficients);
  std::uint8_t* to = place(block);
  for (int y = 0; y < 8; ++y) std::memset(to + y * std::ptrdiff_t(step(block)), 0, 8);
  zvpiAdd8x8_16s8u_C1IRS(coefficients, 16, to, step(block));
}

}  // namespace mpeg4
