// The deblocking filter: a macroblock a call, all its edges of strength 1 to 3, or the first one of strength 4.
// Filtering in place smooths the pictures from turn to turn; the thresholds are such that the edges go on being
// filtered.
#include <cstring>
#include <vector>

#include "reference/h264/deblock_exports.h"
#include "support/bench.h"

namespace {

using namespace reference::deblock;

// Macroblocks side by side and the arrays of each, in samples of the export's type.
class Macroblocks {
 public:
  static constexpr int step = 512, rows = 96, count = 32;

  Macroblocks(const Export& e, bool strong) : export_(e), plane_(std::size_t(step * rows)) {
    zvptest::Rng rng(5);
    const int bytes = e.member.sampleBytes, scale = bytes == 1 ? 1 : 4;
    for (std::size_t i = 0; i < plane_.size(); i += std::size_t(bytes)) {
      const int x = int(i) % step / bytes, y = int(i) / step;
      const int value = (110 + x / 6 + y / 3 + (x / 4 + y / 4) % 3 * 4 + rng.range(-2, 2)) * scale % (256 * scale);
      std::memcpy(&plane_[i], &value, std::size_t(bytes));
    }
    for (auto& place : arguments_) {
      place.alpha = {50u * unsigned(scale), 45u * unsigned(scale)};
      place.beta = {11u * unsigned(scale), 10u * unsigned(scale)};
      place.bitDepth = bytes == 1 ? 8 : 10;
      for (int i = 0; i < 16; ++i) {
        const int bS = strong && i < 4 ? 4 : rng.range(1, 3);
        place.strengths.push_back(std::uint8_t(bS));
        place.tc0.push_back(std::uint32_t((bS + 1) * scale));
      }
      place.step = step;
    }
    for (const auto& place : arguments_)
      for (const auto* values : {&place.alpha, &place.beta, &place.tc0})
        for (std::uint32_t value : *values) {
          elements_.resize(elements_.size() + std::size_t(bytes));
          std::memcpy(&elements_[elements_.size() - std::size_t(bytes)], &value, std::size_t(bytes));
        }
    for (int i = 0; i < count; ++i) {
      const std::uint8_t* alpha = elements_.data() + i * 20 * bytes;
      records_[i] = {at(plane_, i),         step / bytes,      alpha,
                     alpha + 2 * bytes,     alpha + 4 * bytes, arguments_[i].strengths.data(),
                     arguments_[i].bitDepth};
    }
  }

  void call(int i) {
    const H264DeblockEdges& r = records_[i & 31];
    const auto* alpha = static_cast<const std::uint8_t*>(r.pAlpha);
    const auto* tc0 = static_cast<const std::uint8_t*>(r.pThresholds);
    auto* src = static_cast<std::uint8_t*>(r.pSrcDst);
    if (export_.positional != nullptr)
      export_.positional(src, step, alpha, alpha + 2, tc0, r.pBS);
    else if (export_.mbaff != nullptr)
      export_.mbaff(src, step, alpha[0], alpha[2], tc0, r.pBS);
    else
      export_.record(&r);
  }

  bool sameAsModel() {
    auto expected = plane_;
    for (int i = 0; i < count; ++i) {
      arguments_[i].srcDst = at(expected, i);
      filter(export_.member, arguments_[i]);
    }
    for (int i = 0; i < count; ++i) call(i);
    return plane_ == expected;
  }

 private:
  std::uint8_t* at(std::vector<std::uint8_t>& plane, int i) const {
    const int side = 16 * export_.member.sampleBytes;
    return plane.data() + (8 + i / 8 * 20) * step + side + i % 8 * side;
  }

  Export export_;
  std::vector<std::uint8_t> plane_, elements_;
  Arguments arguments_[count];
  H264DeblockEdges records_[count];
};

const bench::Rows rows = [](bench::Add add) {
  for (const auto& e : exports())
    for (const bool strong : {false, true}) {
      auto* macroblocks = bench::keep<Macroblocks>(e, strong);
      add(
          e.name, strong ? "first edge strong" : "normal", [=](int i) { macroblocks->call(i); },
          [=] { return macroblocks->sameAsModel(); });
    }
};

}  // namespace
