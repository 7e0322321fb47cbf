#include "mpeg2_stream.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <span>
#include <string>

#include "common/zigzag.h"
#include "mpeg2/codes.h"
#include "support/random.h"

namespace zvptest {

namespace {

using namespace mpeg2;

class Bits {
 public:
  void u(unsigned value, int bits) {
    for (int i = bits - 1; i >= 0; --i) bit(value >> i & 1);
  }
  void word(const std::string& bits) {
    for (const char c : bits) bit(c == '1');
  }
  void startCode(unsigned code) {
    while (size_ % 8 != 0) bit(0);
    u(0x100 | code, 32);
  }
  Bytes take() {
    while (size_ % 8 != 0) bit(0);
    return bytes_;
  }

 private:
  void bit(unsigned value) {
    if (size_ % 8 == 0) bytes_.push_back(0);
    bytes_.back() = std::uint8_t(bytes_.back() | value << (7 - size_ % 8));
    ++size_;
  }
  Bytes bytes_;
  std::size_t size_ = 0;
};

const char* wordOf(std::span<const Code> codes, int value) {
  for (const Code& code : codes)
    if (code.value == value) return code.bits;
  return nullptr;
}

enum Type { I = 1, P = 2, B = 3 };
enum Structure { Top = 1, Bottom = 2, Frame = 3 };
enum class Kind { Frame, Field, Halves, DualPrime };

struct Vector {
  int x = 0, y = 0;
};

class Writer {
 public:
  explicit Writer(const Mpeg2StreamOptions& options) : o_(options), rng_(options.seed) {}

  Bytes run() {
    sequence();
    bits_.startCode(0xB8);
    bits_.u(1 << 12, 25);  // time code
    bits_.u(2, 2);         // open, not broken
    int shown = 0;
    for (int i = 0; i < o_.pictures;) {
      const int between = o_.bPictures && i > 0 ? std::min(rng_.range(0, 2), o_.pictures - i - 1) : 0;
      frame(i == 0 || rng_.chance(4) ? I : P, shown + between, i == 0);
      for (int b = 0; b < between; ++b) frame(B, shown + b, false);
      i += 1 + between;
      shown += 1 + between;
    }
    bits_.startCode(0xB7);
    return bits_.take();
  }

 private:
  void matrix(std::array<int, 64>& weights, bool intra) {
    for (const int at : video::zigzag8x8) {
      const int widest = rng_.chance(4) ? 120 : 60;
      weights[std::size_t(at)] = intra && at == 0 ? 8 : rng_.range(8, widest);
      bits_.u(unsigned(weights[std::size_t(at)]), 8);
    }
  }

  void sequence() {
    bits_.startCode(0xB3);
    bits_.u(unsigned(16 * o_.widthMbs - rng_.range(0, 15)), 12);
    bits_.u(unsigned(16 * o_.heightMbs - rng_.range(0, 15)), 12);
    bits_.u(1, 4);
    bits_.u(3, 4);
    bits_.u(5000, 18);
    bits_.u(1, 1);
    bits_.u(100, 10);
    bits_.u(0, 1);
    for (std::size_t i = 0; i < 64; ++i) weights_[0][i] = defaultIntraWeights[i];
    weights_[1].fill(16);
    for (int i = 0; i < 2; ++i) {
      const bool load = o_.matrices && rng_.chance(2);
      bits_.u(load, 1);
      if (load) matrix(weights_[i], i == 0);
    }
    weights_[2] = weights_[0];
    weights_[3] = weights_[1];
    if (o_.mpeg1) return;
    bits_.startCode(0xB5);
    bits_.u(1, 4);
    bits_.u(o_.sampling422 ? 0x85 : 0x48, 8);
    bits_.u(!o_.interlaced, 1);
    bits_.u(o_.sampling422 ? 2 : 1, 2);
    bits_.u(0, 2 + 2 + 12);
    bits_.u(1, 1);
    bits_.u(0, 8 + 1 + 2 + 5);
  }

  void frame(Type type, int temporalReference, bool first) {
    if (!o_.fieldPictures || rng_.chance(3)) {
      picture(type, Frame, temporalReference, false);
      return;
    }
    const Structure structure = rng_.chance(2) ? Top : Bottom;
    picture(type, structure, temporalReference, false);
    // The second field of an I-picture may refer to the first; at the beginning there is nothing else.
    const Type second = type == I && !first && rng_.chance(2) ? P : type;
    picture(second, structure == Top ? Bottom : Top, temporalReference, true);
  }

  void picture(Type type, Structure structure, int temporalReference, bool second) {
    type_ = type;
    structure_ = structure;
    bits_.startCode(0);
    bits_.u(unsigned(temporalReference), 10);
    bits_.u(type, 3);
    bits_.u(0xFFFF, 16);
    for (int s = 0; s < 2; ++s) {
      wholeSamples_[s] = o_.wholeSamples && rng_.chance(2);
      for (int t = 0; t < 2; ++t) fCode_[s][t] = rng_.range(1, 4);
      if (o_.mpeg1) fCode_[s][1] = fCode_[s][0];
      if (s >= type - 1) continue;
      bits_.u(wholeSamples_[s], 1);
      bits_.u(o_.mpeg1 ? unsigned(fCode_[s][0]) : 7, 3);
    }
    bits_.u(0, 1);
    topFieldFirst_ = o_.interlaced && structure == Frame && rng_.chance(2);
    framePredictionAndDct_ = structure == Frame && (!o_.interlaced || rng_.chance(4));
    dcPrecision_ = o_.mpeg1 ? 0 : rng_.range(0, 3);
    concealment_ = o_.concealment && rng_.chance(2);
    nonLinear_ = !o_.mpeg1 && rng_.chance(2);
    tableOne_ = !o_.mpeg1 && rng_.chance(2);
    alternate_ = !o_.mpeg1 && rng_.chance(2);
    if (!o_.mpeg1) {
      bits_.startCode(0xB5);
      bits_.u(8, 4);
      for (int s = 0; s < 2; ++s)
        for (int t = 0; t < 2; ++t) bits_.u(s < type - 1 || (s == 0 && concealment_) ? unsigned(fCode_[s][t]) : 15, 4);
      bits_.u(unsigned(dcPrecision_), 2);
      bits_.u(structure, 2);
      bits_.u(topFieldFirst_, 1);
      bits_.u(framePredictionAndDct_, 1);
      bits_.u(concealment_, 1);
      bits_.u(nonLinear_, 1);
      bits_.u(tableOne_, 1);
      bits_.u(alternate_, 1);
      bits_.u(0, 1);
      bits_.u(!o_.interlaced && !o_.sampling422, 1);
      bits_.u(!o_.interlaced, 1);
      bits_.u(0, 1);
      if (o_.matrices && !second && rng_.chance(2)) matrixExtension();
    }
    slices();
  }

  void matrixExtension() {
    bits_.startCode(0xB5);
    bits_.u(3, 4);
    for (int i = 0; i < 4; ++i) {
      const bool load = i < 2 ? rng_.chance(2) : o_.sampling422 && rng_.chance(2);
      bits_.u(load, 1);
      if (!load) continue;
      matrix(weights_[i], i % 2 == 0);
      if (i < 2) weights_[i + 2] = weights_[i];
    }
  }

  bool isFrame() const { return structure_ == Frame; }
  int rows() const { return isFrame() ? o_.heightMbs : o_.heightMbs / 2; }

  void slices() {
    const int total = rows() * o_.widthMbs;
    for (int at = 0; at < total;) {
      const int row = at / o_.widthMbs;
      const int most = o_.longSlices ? total - at : o_.widthMbs - at % o_.widthMbs;
      const int end = at + (rng_.chance(2) ? most : rng_.range(1, most));
      slice(row, at, end);
      at = end;
    }
  }

  void scale() {
    const int coarsest = rng_.chance(3) ? 31 : 8, code = rng_.range(1, coarsest);
    bits_.u(unsigned(code), 5);
    scale_ = o_.mpeg1 ? code : nonLinear_ ? nonLinearScale[code] : 2 * code;
  }

  void resetDc() { std::fill_n(dc_, 3, 128 << dcPrecision_); }
  void resetVectors() { std::fill_n(&predictors_[0][0][0], 8, 0); }

  void slice(int row, int begin, int end) {
    bits_.startCode(unsigned(row) + 1);
    scale();
    if (rng_.chance(4)) {
      bits_.u(0x100, 9);
      if (rng_.chance(2)) bits_.u(0x1FF, 9);
    }
    bits_.u(0, 1);
    resetDc();
    resetVectors();
    int last = row * o_.widthMbs - 1;
    bool skippable = false;  // in B
    for (int at = begin; at < end; ++at) {
      address_ = at;
      if (at != begin && at != end - 1 && type_ != I && rng_.chance(5)) {
        if (type_ == P) {
          const int count = std::min(rng_.chance(4) ? rng_.range(1, 80) : 1, end - 1 - at);
          at += count - 1;
          resetVectors();
          resetDc();
          continue;
        }
        // ffmpeg does not double whole-sample vectors there.
        if (skippable && predictorsFit() && !o_.wholeSamples) {
          resetDc();
          continue;
        }
      }
      int increment = at - last;
      if (o_.mpeg1 && rng_.chance(6)) bits_.word(wordOf(addressIncrement, stuffingIncrement));
      for (; increment > 33; increment -= 33) bits_.word(wordOf(addressIncrement, escapeIncrement));
      bits_.word(wordOf(addressIncrement, increment));
      last = at;
      skippable = macroblock();
    }
  }

  // Do the vectors with which a skipped macroblock of a B-picture goes on stay in the reference here?
  bool predictorsFit() const {
    for (int s = 0; s < 2; ++s) {
      const int factor = wholeSamples_[s] ? 2 : 1;
      if (used_[s] && !fits({predictors_[0][s][0] * factor, predictors_[0][s][1] * factor}, 16,
                            address_ / o_.widthMbs * 16, 16 * rows()))
        return false;
    }
    return true;
  }

  bool fits(const Vector& v, int height, int y, int referenceHeight) const {
    const int left = 2 * (address_ % o_.widthMbs * 16) + v.x, top = 2 * y + v.y;
    return left >= 0 && top >= 0 && left <= 2 * (16 * o_.widthMbs - 16) && top <= 2 * (referenceHeight - height);
  }

  // Writes a macroblock; can one behind it be skipped?
  bool macroblock() {
    const std::span<const Code> types = type_ == I   ? std::span<const Code>(macroblockTypeI)
                                        : type_ == P ? std::span<const Code>(macroblockTypeP)
                                                     : std::span<const Code>(macroblockTypeB);
    const Code& type = types[std::size_t(rng_.range(0, int(types.size()) - 1))];
    const int flags = type.value;
    const bool intra = flags & mbIntra;
    bits_.word(type.bits);
    kind_ = isFrame() ? Kind::Frame : Kind::Field;
    if ((flags & (mbForward | mbBackward)) && (!isFrame() || !framePredictionAndDct_)) chooseKind();
    fieldDct_ = isFrame() && !framePredictionAndDct_ && (flags & (mbIntra | mbPattern)) && rng_.chance(2);
    if (isFrame() && !framePredictionAndDct_ && (flags & (mbIntra | mbPattern))) bits_.u(fieldDct_, 1);
    if (flags & mbQuant) scale();
    if ((flags & mbForward) || (intra && concealment_)) vectors(0);
    if (flags & mbBackward) vectors(1);
    if (intra && concealment_) bits_.u(1, 1);
    if (intra && !concealment_) resetVectors();
    if (!intra) {
      resetDc();
      used_[0] = flags & mbForward;
      used_[1] = flags & mbBackward;
      if (type_ == P && !(flags & mbForward)) resetVectors();
    }
    const int blocks = o_.sampling422 ? 8 : 6;
    unsigned pattern = intra ? (1u << blocks) - 1 : 0;
    if (flags & mbPattern) {
      pattern = unsigned(rng_.range(1, (1 << blocks) - 1));
      bits_.word(wordOf(codedBlockPattern, int(pattern >> (blocks - 6))));
      if (o_.sampling422) bits_.u(pattern & 3, 2);
    }
    for (int i = 0; i < blocks; ++i)
      if (pattern >> (blocks - 1 - i) & 1) block(i, intra);
    return !intra;
  }

  void chooseKind() {
    const bool dual = o_.dualPrime && type_ == P && rng_.chance(2);
    if (dual) {
      kind_ = Kind::DualPrime;
      bits_.u(3, 2);
    } else if (isFrame()) {
      kind_ = rng_.chance(3) ? Kind::Frame : Kind::Field;
      bits_.u(kind_ == Kind::Field ? 1 : 2, 2);
    } else {
      kind_ = rng_.chance(2) ? Kind::Halves : Kind::Field;
      bits_.u(kind_ == Kind::Field ? 1 : 2, 2);
    }
  }

  void vectors(int s) {
    const int y = address_ / o_.widthMbs * 16;
    if (kind_ == Kind::Frame) {
      vector(0, s, 16, y, 16 * rows());
    } else if (kind_ == Kind::DualPrime) {
      dualPrime();
    } else if (isFrame()) {
      for (int r = 0; r < 2; ++r) {
        bits_.u(rng_.next() & 1, 1);
        vector(r, s, 8, y / 2, 8 * o_.heightMbs);
      }
      return;
    } else if (kind_ == Kind::Halves) {
      for (int r = 0; r < 2; ++r) {
        bits_.u(rng_.next() & 1, 1);
        vector(r, s, 8, y + 8 * r, 16 * rows());
      }
      return;
    } else {
      bits_.u(rng_.next() & 1, 1);
      vector(0, s, 16, y, 16 * rows());
    }
    std::copy_n(predictors_[0][s], 2, predictors_[1][s]);
  }

  int half(int s, int t) const { return 16 << (fCode_[s][t] - 1); }

  // A vector that stays in the reference, for a block of this height at line y.
  Vector choose(int s, int height, int y, int referenceHeight) {
    const int factor = wholeSamples_[s] ? 2 : 1, x = address_ % o_.widthMbs * 16;
    const auto range = [&](int low, int high, int t) {
      // Of fields in frames only half of f_code's vertical range may be used (ISO/IEC 13818-2 7.6.3.2).
      const int most = half(s, t) / (t == 1 && isFrame() && kind_ != Kind::Frame ? 2 : 1);
      const int from = std::max(low / factor, -most), to = std::min(high / factor, most - 1);
      return rng_.chance(4) ? rng_.chance(2) ? from : to : rng_.range(from, to);
    };
    Vector v;
    v.x = range(-2 * x, 2 * (16 * o_.widthMbs - 16 - x), 0);
    v.y = range(-2 * y, 2 * (referenceHeight - height - y), 1);
    return v;
  }

  void component(int value, int predictor, int s, int t) {
    int delta = value - predictor;
    while (delta < -half(s, t)) delta += 2 * half(s, t);
    while (delta >= half(s, t)) delta -= 2 * half(s, t);
    const int residualBits = fCode_[s][t] - 1, magnitude = std::abs(delta);
    const int code = magnitude == 0 ? 0 : ((magnitude - 1) >> residualBits) + 1;
    bits_.word(wordOf(motionCode, delta < 0 ? -code : code));
    if (code != 0 && residualBits != 0) bits_.u(unsigned(magnitude - 1) & ((1u << residualBits) - 1), residualBits);
  }

  void vector(int r, int s, int height, int y, int referenceHeight) {
    const Vector v = choose(s, height, y, referenceHeight);
    auto& predictor = predictors_[r][s];
    const bool fieldOfFrame = isFrame() && kind_ != Kind::Frame;
    component(v.x, predictor[0], s, 0);
    component(v.y, fieldOfFrame ? predictor[1] >> 1 : predictor[1], s, 1);
    predictor[0] = v.x;
    predictor[1] = fieldOfFrame ? 2 * v.y : v.y;
  }

  void dualPrime() {
    const int y = address_ / o_.widthMbs * (isFrame() ? 8 : 16), height = isFrame() ? 8 : 16;
    const int referenceHeight = 8 * o_.heightMbs;
    Vector v, difference;
    for (;;) {
      v = choose(0, height, y, referenceHeight);
      difference.x = rng_.range(-1, 1);
      difference.y = rng_.range(-1, 1);
      const auto derived = [&](int distance, int shift) {
        const auto scaled = [&](int c) { return (c * distance + (c > 0)) >> 1; };
        return fits({scaled(v.x) + difference.x, scaled(v.y) + difference.y + shift}, height, y, referenceHeight);
      };
      if (isFrame() ? derived(topFieldFirst_ ? 1 : 3, -1) && derived(topFieldFirst_ ? 3 : 1, 1)
                    : derived(1, structure_ == Top ? -1 : 1))
        break;
    }
    const auto putDifference = [&](int d) { bits_.word(d == 0 ? "0" : d > 0 ? "10" : "11"); };
    auto& predictor = predictors_[0][0];
    component(v.x, predictor[0], 0, 0);
    putDifference(difference.x);
    component(v.y, isFrame() ? predictor[1] >> 1 : predictor[1], 0, 1);
    putDifference(difference.y);
    predictor[0] = v.x;
    predictor[1] = isFrame() ? 2 * v.y : v.y;
  }

  void block(int i, bool intra) {
    const bool luma = i < 4;
    int place = -1;
    if (intra) {
      dcOf(luma ? 0 : 1 + i % 2);
      place = 0;
    }
    const auto& weights = weights_[(luma ? 0 : 2) + !intra];
    double left = intra ? 300 : 500;
    bool first = !intra;
    for (int count = rng_.range(!intra, 12); count > 0 && left > 0; --count) {
      const int longest = rng_.chance(3) ? 20 : 2, run = rng_.range(0, longest);
      if (place + run + 1 > 63) {
        if (!first) break;
        continue;
      }
      place += run + 1;
      const int at = (alternate_ ? alternateScan : video::zigzag8x8)[place];
      const double factor = weights[std::size_t(at)] * scale_ / (o_.mpeg1 ? 8.0 : 16.0);
      const int most = std::clamp(int(std::min(left, 200.0) / factor), 1, o_.mpeg1 ? 255 : 2047);
      const int largest = rng_.chance(2) ? std::min(most, 3) : most;
      int level = rng_.range(1, largest);
      left = std::max(0.0, left - level * factor);
      if (rng_.chance(2)) level = -level;
      coefficient(run, level, intra, first);
      first = false;
    }
    if (first) coefficient(0, 1, intra, true);
    bits_.word(intra && tableOne_ ? endOfBlockOne : endOfBlockZero);
  }

  void dcOf(int component) {
    const int value = rng_.range(64 << dcPrecision_, 192 << dcPrecision_);
    const int difference = value - dc_[component];
    dc_[component] = value;
    int size = 0;
    while (std::abs(difference) >> size != 0) ++size;
    bits_.word(component == 0 ? wordOf(dcSizeLuma, size) : wordOf(dcSizeChroma, size));
    if (size > 0) bits_.u(unsigned(difference < 0 ? difference + (1 << size) - 1 : difference), size);
  }

  void coefficient(int run, int level, bool intra, bool first) {
    if (first && run == 0 && std::abs(level) == 1) {
      bits_.word(level < 0 ? "11" : "10");
      return;
    }
    const std::span<const RunLevelCode> codes = intra && tableOne_ ? std::span<const RunLevelCode>(dctCoefficientsOne)
                                                                   : std::span<const RunLevelCode>(dctCoefficientsZero);
    for (const RunLevelCode& code : codes)
      if (code.run == run && code.level == std::abs(level) && !rng_.chance(10)) {
        bits_.word(code.bits);
        bits_.u(level < 0, 1);
        return;
      }
    bits_.word(escapeCode);
    bits_.u(unsigned(run), 6);
    if (!o_.mpeg1) {
      bits_.u(unsigned(level) & 0xFFF, 12);
    } else if (std::abs(level) < 128) {
      bits_.u(unsigned(level) & 0xFF, 8);
    } else {
      bits_.u(level < 0 ? 0x80 : 0, 8);
      bits_.u(unsigned(level) & 0xFF, 8);
    }
  }

  const Mpeg2StreamOptions o_;
  Rng rng_;
  Bits bits_;
  std::array<int, 64> weights_[4];  // intra, non-intra; those of chroma

  Type type_ = I;
  Structure structure_ = Frame;
  int fCode_[2][2];
  bool wholeSamples_[2];
  bool topFieldFirst_ = false, framePredictionAndDct_ = true, concealment_ = false, nonLinear_ = false,
       tableOne_ = false, alternate_ = false;
  int dcPrecision_ = 0;

  int scale_ = 0, dc_[3], predictors_[2][2][2], address_ = 0;
  Kind kind_ = Kind::Frame;
  bool fieldDct_ = false, used_[2] = {false, false};
};

}  // namespace

Bytes randomMpeg2Stream(const Mpeg2StreamOptions& options) { return Writer(options).run(); }

}  // namespace zvptest
