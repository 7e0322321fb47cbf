#include "support/bench.h"

#include <benchmark/benchmark.h>

namespace bench {
namespace {
bool anyDifferent = false;
}

void addRow(const char* name, const std::string& caseName, Turn turn, Check check) {
  const std::string row = std::string(name) + "/" + caseName;
  benchmark::RegisterBenchmark(row.c_str(), [turn, check](benchmark::State& state) {
    if (check && !check()) {
      anyDifferent = true;
      state.SkipWithError("differs from the model");
      return;
    }
    for (auto _ : state) turn();
    state.SetItemsProcessed(state.iterations() * callsPerTurn);
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
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return bench::anyDifferent ? 1 : 0;
}
