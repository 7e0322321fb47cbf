#include "reference/dv/dequant.h"

#include <algorithm>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::dv;

// Blocks as segment decoding leaves them. Calls work on copies of one block, which the times include.
struct Blocks {
  model::Block source[32], weights = model::Block(64), steps = model::Block(64);
  std::int16_t work[32][64];
  Blocks() {
    zvptest::Rng rng(1);
    for (auto& block : source)
      for (int i = 0; i < 64; ++i)
        block.push_back(std::int16_t(rng.chance(3) ? rng.range(-200 / (1 + i), 200 / (1 + i)) * 64 : 0));
    for (std::size_t i = 0; i < 64; ++i) {
      weights[i] = std::int16_t(8192 + 128 * i);
      steps[i] = std::int16_t(1 << (i % 4));
    }
  }
  std::int16_t* fresh(int i) {
    std::copy(source[i & 31].begin(), source[i & 31].end(), work[i & 31]);
    return work[i & 31];
  }
  bool same(const model::Block& expected, const std::int16_t* actual) const {
    return std::equal(expected.begin(), expected.end(), actual);
  }
};

const bench::Rows rows = [](bench::Add add) {
  auto* b = bench::keep<Blocks>();
  const auto row = [&](const char* name, auto member, auto expected) {
    add(
        name, "", [=](int i) { member(b->fresh(i)); },
        [=] {
          auto* actual = b->fresh(5);
          member(actual);
          return b->same(expected(b->source[5]), actual);
        });
  };
  row(
      "zvpiQuantInv_DV_16s_C1I", [=](std::int16_t* x) { zvpiQuantInv_DV_16s_C1I(x, b->weights.data()); },
      [=](const model::Block& x) { return model::dequantize(x, b->weights); });
  row(
      "zvpiQuantWeightBlockInv_DV_16s_C1I",
      [=](std::int16_t* x) { zvpiQuantWeightBlockInv_DV_16s_C1I(x, b->weights.data(), b->steps.data()); },
      [=](const model::Block& x) { return model::dequantizeWeighted(x, b->weights, b->steps); });
  row(
      "zvpiQuantWeightBlockInv_DV100_16s_C1I",
      [=](std::int16_t* x) { zvpiQuantWeightBlockInv_DV100_16s_C1I(x, b->weights.data(), 24); },
      [=](const model::Block& x) { return model::dequantizeDV100(x, b->weights, 24); });
  row("zvpiDCT8x4x2To4x4Inv_DV_16s_C1I", zvpiDCT8x4x2To4x4Inv_DV_16s_C1I, [](model::Block x) {
    zvpiDCT2x4x8Inv_16s_C1I(x.data());
    return model::reduced(x);
  });
};

}  // namespace
