#include "reference/vc1/transform.h"

#include <algorithm>

#include "support/fresh_blocks.h"
#include "zvpvc.h"

namespace {

using Value = std::int16_t;
namespace model = reference::vc1;

// Values lie in the first columns and rows.
struct Blocks : bench::FreshBlocks {
  int count;
  Blocks(int width, int height, zvpSize nonZero, int limit) : count(width * height) {
    fillCorner(width, std::min(width, nonZero.width), std::min(height, nonZero.height), limit);
  }
};

template <class Model>
bool agrees(const Blocks& blocks, const Value* actual, Model wanted) {
  Value values[64];
  wanted(blocks.source[5], values);
  return std::equal(values, values + blocks.count, actual);
}

template <int width, int height, class Inverse, class InverseInPlace, class Forward, class ForwardInPlace>
void addShape(bench::Add add, const std::string& shape, Inverse inverse, InverseInPlace inverseInPlace, Forward forward,
              ForwardInPlace forwardInPlace) {
  constexpr int step = 2 * width;
  const auto name = [&](const char* rest) { return "zvpiTransform" + shape + rest; };
  const std::pair<const char*, int> corners[] = {{"DC alone", 1}, {"2x2", 2}, {"4x4", 4}, {"all", 8}};
  for (const auto& [caseName, size] : corners) {
    const zvpSize nonZero = {size, size};
    auto* blocks = bench::keep<Blocks>(width, height, nonZero, 1000);
    add(name("Inv_VC1_16s_C1R").c_str(), caseName,
        [=](int i) { inverse(blocks->source[i & 31], step, blocks->work[i & 31], step, nonZero); });
    add(
        name("Inv_VC1_16s_C1IR").c_str(), caseName,
        [=](int i) { inverseInPlace(blocks->fresh(i), step, nonZero); },
        [=] {
          auto* actual = blocks->fresh(5);
          inverseInPlace(actual, step, nonZero);
          return agrees(*blocks, actual, [=](const Value* in, Value* out) {
            model::transformInverse(width, height, in, {size, size}, out);
          });
        });
  }
  auto* large = bench::keep<Blocks>(width, height, zvpSize{8, 8}, 32767);
  add(name("Inv_VC1_16s_C1R").c_str(), "beyond 16 bits between the passes",
      [=](int i) { inverse(large->source[i & 31], step, large->work[i & 31], step, zvpSize{8, 8}); });
  auto* samples = bench::keep<Blocks>(width, height, zvpSize{8, 8}, 255);
  add(name("Fwd_VC1_16s_C1R").c_str(), "samples",
      [=](int i) { forward(samples->source[i & 31], step, samples->work[i & 31], step); });
  add(
      name("Fwd_VC1_16s_C1IR").c_str(), "samples", [=](int i) { forwardInPlace(samples->fresh(i), step); },
      [=] {
        auto* actual = samples->fresh(5);
        forwardInPlace(actual, step);
        return agrees(*samples, actual,
                      [](const Value* in, Value* out) { model::transformForward(width, height, in, out); });
      });
}

const bench::Rows rows = [](bench::Add add) {
  addShape<8, 8>(add, "8x8", zvpiTransform8x8Inv_VC1_16s_C1R, zvpiTransform8x8Inv_VC1_16s_C1IR,
                 zvpiTransform8x8Fwd_VC1_16s_C1R, zvpiTransform8x8Fwd_VC1_16s_C1IR);
  addShape<8, 4>(add, "8x4", zvpiTransform8x4Inv_VC1_16s_C1R, zvpiTransform8x4Inv_VC1_16s_C1IR,
                 zvpiTransform8x4Fwd_VC1_16s_C1R, zvpiTransform8x4Fwd_VC1_16s_C1IR);
  addShape<4, 8>(add, "4x8", zvpiTransform4x8Inv_VC1_16s_C1R, zvpiTransform4x8Inv_VC1_16s_C1IR,
                 zvpiTransform4x8Fwd_VC1_16s_C1R, zvpiTransform4x8Fwd_VC1_16s_C1IR);
  addShape<4, 4>(add, "4x4", zvpiTransform4x4Inv_VC1_16s_C1R, zvpiTransform4x4Inv_VC1_16s_C1IR,
                 zvpiTransform4x4Fwd_VC1_16s_C1R, zvpiTransform4x4Fwd_VC1_16s_C1IR);
};

}  // namespace
