#include "dv/tables.h"

#include <zvpvc.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <numbers>
#include <vector>

#include "common/zigzag.h"
#include "dv/codes.h"

namespace dv {

namespace {

// The code lists from which the library makes its decoding table: one of the codes that have at most nine bits with
// their signs, one of those behind the prefix 1111, without it.
class CodeLists {
 public:
  CodeLists() {
    std::int32_t code = 0;
    int bits = codeLengths[0].bits;
    const Event* event = codedEvents;
    for (const CodeLength& length : codeLengths) {
      code <<= length.bits - bits;
      bits = length.bits;
      for (int i = 0; i < length.count; ++i) add(code++, bits, *event++);
    }
    for (int run = firstLongRun; run <= lastLongRun; ++run)
      add(std::int32_t(zeroRunPrefix) << 6 | run, zeroRunBits, {std::uint8_t(run), 0});
  }
  // The form that the library takes: the longest length, two words that it passes over, and for each length the number
  // of its codes, and the code, run and level of each.
  std::vector<std::int32_t> list(int which) const {
    std::vector<std::int32_t> words{longest, 0, 0};
    for (int bits = 1; bits <= longest; ++bits) {
      const auto& entries = entries_[which][bits];
      words.push_back(std::int32_t(entries.size() / 3));
      words.insert(words.end(), entries.begin(), entries.end());
    }
    return words;
  }

 private:
  static constexpr int longest = 9;
  void add(std::int32_t code, int bits, Event event) {
    if (event.amplitude == 0) {
      addSigned(code, bits, event.run, 0);
    } else {
      addSigned(code << 1, bits + 1, event.run, event.amplitude);
      addSigned(code << 1 | 1, bits + 1, event.run, -std::int32_t(event.amplitude));
    }
  }
  void addSigned(std::int32_t code, int bits, std::int32_t run, std::int32_t level) {
    const bool prefixed = bits > 4 && code >> (bits - 4) == 0b1111;
    if (prefixed) {
      bits -= 4;
      code &= (1 << bits) - 1;
    }
    auto& entries = entries_[prefixed][bits];
    entries.insert(entries.end(), {code, run, level});
  }
  std::vector<std::int32_t> entries_[2][longest + 1];
};

// The orders in which the coefficients are coded: diagonals, up and down in turn. In the 2-4-8 mode a coefficient of
// the sums (rows 0 to 3) and the one of the same frequency of the differences (rows 4 to 7) stand close to each other.
constexpr std::uint8_t scan248[64] = {0,  32, 1,  33, 8,  40, 2,  34, 9,  41, 16, 48, 24, 56, 17, 49,
                                      10, 42, 3,  35, 4,  36, 11, 43, 18, 50, 25, 57, 26, 58, 19, 51,
                                      12, 44, 5,  37, 6,  38, 13, 45, 20, 52, 27, 59, 28, 60, 21, 53,
                                      14, 46, 7,  39, 15, 47, 22, 54, 29, 61, 30, 62, 23, 55, 31, 63};
constexpr const std::uint8_t* scanOrders[2] = {video::zigzag8x8, scan248};

// Areas of equal quantization: where each ends in the scan.
constexpr int areas = 4, areaEnds[areas] = {6, 21, 43, 64};

// The quantization steps as shifts. Their rows are the same for all classes, but for where a class begins.
struct StepRow {
  std::uint8_t shifts[areas];
};
constexpr StepRow stepRows[] = {{{3, 3, 4, 4}}, {{2, 3, 3, 4}}, {{2, 2, 3, 3}}, {{1, 2, 2, 3}}, {{1, 1, 2, 2}},
                                {{0, 1, 1, 2}}, {{0, 0, 1, 1}}, {{0, 0, 0, 1}}, {{0, 0, 0, 0}}};
// By class and quantization number: the row. Class 3 was halved before quantization besides.
constexpr std::uint8_t stepRowOf[4][16] = {{3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 8, 8, 8, 8, 8, 8},
                                           {1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 8, 8, 8},
                                           {0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8},
                                           {0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 8, 8}};

// The weight of a coefficient, by which the encoder multiplied.
double weight(int mode, int v, int h) {
  const auto cosine = [](int m) { return std::cos(m * std::numbers::pi / 16); };
  const double w[8] = {1,
                       cosine(4) / (4 * cosine(7) * cosine(2)),
                       cosine(4) / (2 * cosine(6)),
                       1 / (2 * cosine(5)),
                       7.0 / 8,
                       cosine(4) / cosine(3),
                       cosine(4) / cosine(2),
                       cosine(4) / cosine(1)};
  return w[h] * w[mode == 0 ? v : 2 * (v % 4)] / 2;
}

// 100 Mb/s (SMPTE 370M): inverse weights in 1/32, in the order of the scan, and steps by quantization number, which the
// class number shifts.
constexpr std::int16_t highInverseWeights[2][2][64] = {
    {{128, 16, 16, 17, 17, 17, 18, 18, 18, 18, 18,  18, 19, 18,  18,  19,  19,  19,  19,  19, 19, 42,
      38,  40, 40, 40, 38, 42, 44, 43, 41, 41, 41,  41, 43, 44,  45,  45,  42,  42,  42,  45, 45, 48,
      46,  43, 43, 46, 48, 49, 48, 44, 48, 49, 101, 98, 98, 101, 104, 109, 104, 116, 116, 123},
     {128, 16, 16, 17, 17, 17,  25,  25,  25,  25,  26,  25,  26,  25,  26,  26,  26,  27,  27,  26, 26, 42,
      38,  40, 40, 40, 38, 42,  44,  43,  41,  41,  41,  41,  43,  44,  91,  91,  84,  84,  84,  91, 91, 96,
      93,  86, 86, 93, 96, 197, 191, 177, 191, 197, 203, 197, 197, 203, 209, 219, 209, 232, 232, 246}},
    {{128, 16, 16, 17, 17, 17, 18, 18, 18, 18, 18,  18,  19,  18,  18,  19,  19,  19,  19,  19, 19, 42,
      38,  40, 40, 40, 38, 42, 44, 43, 41, 41, 41,  41,  43,  44,  68,  68,  63,  63,  63,  68, 68, 96,
      92,  86, 86, 92, 96, 98, 96, 88, 96, 98, 202, 196, 196, 202, 208, 218, 208, 232, 232, 246},
     {128, 24,  24,  26,  26,  26,  36,  36,  36,  36,  36,  36,  38,  36,  36,  38,  38,  38,  38,  38,  38,  84,
      76,  80,  80,  80,  76,  84,  88,  86,  82,  82,  82,  82,  86,  88,  182, 182, 168, 168, 168, 182, 182, 192,
      186, 192, 172, 186, 192, 394, 382, 354, 382, 394, 406, 394, 394, 406, 418, 438, 418, 464, 464, 492}}};
constexpr std::int32_t highStepsOfClass0[16] = {1, 1, 2, 3, 4, 5, 6, 7, 8, 16, 18, 20, 22, 24, 28, 52};

std::int16_t rounded(double value) { return std::int16_t(std::min(std::lround(value), 32767L)); }

}  // namespace

Tables::Tables() {
  const CodeLists lists;
  std::uint32_t* made = nullptr;
  if (zvpiInitAllocHuffmanTable_DV_32u(lists.list(0).data(), lists.list(1).data(), &made) != zvpStatusOk)
    throw std::bad_alloc();
  huffman_.reset(made);

  // A segment decoder scales amplitudes by 64 and the DC by 128; the inverse transforms want the amplitude times its
  // step by the inverse weight, and four times the DC.
  for (int mode = 0; mode < 2; ++mode) {
    int area = 0;
    for (int i = 0; i < 64; ++i) {
      const unsigned at = scans[mode][i] = scanOrders[mode][i];
      while (i >= areaEnds[area]) ++area;
      const double inverse = 1 / weight(mode, int(at / 8), int(at % 8));
      weights[mode][at] = i == 0 ? 1 << 14 : rounded(inverse * (1 << 13));
      for (int c = 0; c < 4; ++c)
        for (int qno = 0; qno < 16; ++qno) {
          const int step = 1 << (stepRows[stepRowOf[c][qno]].shifts[area] + (c == 3));
          steps[mode][c][qno][at] = std::int16_t(i == 0 ? 1 : step);
          factors[mode][c][qno][at] = i == 0 ? 1 << 9 : rounded(inverse * step * (1 << 8));
        }
    }
  }

  for (int lines = 0; lines < 2; ++lines)
    for (int chroma = 0; chroma < 2; ++chroma)
      for (int i = 0; i < 64; ++i) highWeights[lines][chroma][scanOrders[0][i]] = highInverseWeights[lines][chroma][i];
  for (int c = 0; c < 4; ++c)
    for (int qno = 0; qno < 16; ++qno) highSteps[c][qno] = highStepsOfClass0[qno] << c;
}

void Tables::FreeHuffman::operator()(std::uint32_t* table) const { zvpiFreeHuffmanTable_DV_32u(table); }

const Tables& Tables::instance() {
  static const Tables tables;
  return tables;
}

}  // namespace dv
