#include "reference/avs/decode_block.h"

#include <algorithm>
#include <cstdlib>

namespace reference {
namespace {

const char* suffix(AvsBlockKind kind) {
  return kind == AvsBlockKind::IntraLuma ? "_Intra" : kind == AvsBlockKind::InterLuma ? "_Inter" : "_Chroma";
}

AvsStage stage(AvsBlockKind kind, int number, int k, int limit) {
  return {"VLC" + std::to_string(number) + suffix(kind), k, limit};
}

class BitReader {
 public:
  explicit BitReader(const std::vector<bool>& bits) : bits_(bits) {}
  int bit() {
    const std::size_t at = position_++;
    return at < bits_.size() ? bits_[at] : 1;
  }
  // The code's value with its leading 1, in 32 bits.
  std::uint32_t code(int k) {
    int zeros = 0;
    while (bit() == 0) ++zeros;
    std::uint32_t value = 1;
    for (int i = 0; i < zeros + k; ++i) value = 2 * value + std::uint32_t(bit());
    return value;
  }
  std::size_t position() const { return position_; }

 private:
  const std::vector<bool>& bits_;
  std::size_t position_ = 0;
};

}  // namespace

AvsStage avsFirstStage(AvsBlockKind kind) { return stage(kind, 0, kind == AvsBlockKind::InterLuma ? 3 : 2, 0); }

AvsStage avsStageOf(AvsBlockKind kind, int m) {
  switch (kind) {
    case AvsBlockKind::IntraLuma:
      if (m == 1) return stage(kind, 1, 2, 1);
      if (m == 2) return stage(kind, 2, 2, 2);
      if (m <= 4) return stage(kind, 3, 2, 4);
      if (m <= 7) return stage(kind, 4, 2, 7);
      if (m <= 10) return stage(kind, 5, 2, 10);
      return stage(kind, 6, 2, 65535);
    case AvsBlockKind::InterLuma:
      if (m == 1) return stage(kind, 1, 2, 1);
      if (m == 2) return stage(kind, 2, 2, 2);
      if (m == 3) return stage(kind, 3, 2, 3);
      if (m <= 6) return stage(kind, 4, 2, 6);
      if (m <= 9) return stage(kind, 5, 2, 9);
      return stage(kind, 6, 2, 65535);
    default:
      if (m == 1) return stage(kind, 1, 0, 1);
      if (m == 2) return stage(kind, 2, 1, 2);
      if (m <= 4) return stage(kind, 3, 1, 4);
      return stage(kind, 4, 0, 65535);
  }
}

int avsEscapeBase(AvsBlockKind kind, const AvsTables& tables, const AvsStage& stage, int run) {
  static const int intra[12] = {22, 14, 9, 6, 6, 4, 4, 4, 2, 2, 2, 1};
  static const int inter[12] = {25, 18, 13, 9, 6, 6, 6, 4, 4, 4, 3, 1};
  static const int chroma[6] = {24, 19, 10, 7, 7, 4};
  const int* bounds = kind == AvsBlockKind::IntraLuma ? intra : kind == AvsBlockKind::InterLuma ? inter : chroma;
  const int m = std::min(stage.limit, kind == AvsBlockKind::Chroma ? 5 : 11);
  if (run > bounds[m]) return 1;
  return tables.refAbsLevel.at(stage.table).at(std::size_t(run));
}

const int* avsScan(bool field) {
  // Frame: the zigzag, walked. Field: the standard's list.
  static const std::vector<int> frame = [] {
    std::vector<int> scan;
    for (int sum = 0; sum < 15; ++sum)
      for (int i = 0; i <= sum; ++i) {
        const int row = sum % 2 == 0 ? sum - i : i, column = sum - row;
        if (row < 8 && column < 8) scan.push_back(8 * row + column);
      }
    return scan;
  }();
  static const int fieldScan[64] = {0,  8,  16, 1,  24, 32, 9,  17, 40, 48, 25, 2,  10, 56, 33, 18,
                                    3,  41, 49, 26, 11, 19, 4,  57, 34, 12, 42, 27, 20, 50, 35, 28,
                                    5,  13, 58, 43, 36, 21, 6,  29, 51, 44, 14, 22, 37, 59, 52, 30,
                                    45, 60, 38, 53, 46, 61, 54, 7,  62, 15, 23, 31, 39, 47, 55, 63};
  return field ? fieldScan : frame.data();
}

AvsResult avsDecodeBlock(AvsBlockKind kind, const AvsTables& tables, const std::vector<bool>& stream, int scanType) {
  BitReader in(stream);
  AvsStage now = avsFirstStage(kind);
  std::vector<std::pair<int, std::int64_t>> events;  // run, level
  int n = 0;
  for (;;) {
    const std::uint32_t number = in.code(now.k) - (1u << now.k);
    std::int64_t run, level;
    if (number < 59) {
      run = tables.codes.at(now.table)[number].first;
      level = tables.codes.at(now.table)[number].second;
      if (n + run > 63) break;
    } else {
      run = (number - 59) >> 1;
      const std::uint32_t v = in.code(0);
      if (n + run > 63) break;
      const std::uint32_t magnitude = std::uint32_t(avsEscapeBase(kind, tables, now, int(run))) + v - 1;
      level = number & 1 ? -std::int64_t(magnitude) : std::int64_t(magnitude);
    }
    events.emplace_back(int(run), level);
    if (std::llabs(level) > now.limit) now = avsStageOf(kind, int(std::min<long long>(std::llabs(level), 1 << 20)));
    n += int(run) + 1;
  }
  AvsResult result = {};
  int position = -1;
  for (auto event = events.rbegin(); event != events.rend(); ++event) {
    position += event->first + 1;
    result.coefficients[avsScan(scanType & 1)[position]] = std::int16_t(event->second);
  }
  result.count = scanType == 0 ? n : 63;
  result.bits = in.position();
  return result;
}

}  // namespace reference
