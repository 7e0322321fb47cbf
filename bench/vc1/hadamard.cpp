#include "reference/vc1/hadamard.h"

#include <algorithm>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

using bench::Scene;

struct Blocks {
  Scene scene{1};
  std::int16_t words[32][64], dst[64];
  std::uint32_t sum = 0;
  Blocks() {
    for (int i = 0; i < 32; ++i)
      for (int k = 0; k < 64; ++k) words[i][k] = std::int16_t(scene.source(i)[k / 8 * Scene::step + k % 8] - 128);
  }
  bool agrees(const std::int32_t* samples) const {
    std::int16_t wanted[64];
    return reference::vc1::hadamardSum(samples, wanted) == sum && std::equal(wanted, wanted + 64, dst);
  }
};

const bench::Rows rows = [](bench::Add add) {
  auto* b = bench::keep<Blocks>();
  const auto words = [=](int i) { zvpiHadamard8x8Sum_VC1_16s(b->words[i & 31], 16, b->dst, &b->sum); };
  const auto bytes = [=](int i) {
    zvpiHadamard8x8Sum_VC1_8u16s(b->scene.source(i), Scene::step, b->dst, &b->sum);
  };
  add("zvpiHadamard8x8Sum_VC1_16s", "differences", words, [=] {
    words(5);
    std::int32_t samples[64];
    std::copy(b->words[5], b->words[5] + 64, samples);
    return b->agrees(samples);
  });
  add("zvpiHadamard8x8Sum_VC1_8u16s", "samples", bytes, [=] {
    bytes(5);
    std::int32_t samples[64];
    for (int k = 0; k < 64; ++k) samples[k] = b->scene.source(5)[k / 8 * Scene::step + k % 8];
    return b->agrees(samples);
  });
};

}  // namespace
