#include "support/bench.h"

#include <benchmark/benchmark.h>

namespace bench {

void addRow(const char* name, const std::string& caseName, Call call, Check check) {
  const std::string row = std::string(name) + "/" + caseName;
  benchmark::RegisterBenchmark(row.c_str(), [call, check](benchmark::State& state) {
    if (check && !check()) {
      state.SkipWithError("differs from the model");
      return;
    }
    constexpr int batch = 32;  // one turn through the places of a scene
    for (auto _ : state)
      for (int i = 0; i < batch; ++i) call(i);
    state.SetItemsProcessed(state.iterations() * batch);
  });
}

Scene::Scene(std::uint64_t seed) {
  zvptest::Rng rng(seed);
  for (int y = 0; y < rows; ++y)
    for (int x = 0; x < step; ++x) {
      const bool bright = (x / 24 + y / 24) % 2 != 0;
      source_[y * step + x] = std::uint8_t((bright ? 150 : 60) + x / 3 + y / 4 + rng.range(-6, 6));
      destination_[y * step + x] = std::uint8_t(rng.next());
    }
  for (int& place : places_) place = rng.range(4, 48) * step + rng.range(4, 60);
}

}  // namespace bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
