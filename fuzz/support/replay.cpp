// Runs a fuzz target over the files of its corpus and over a fixed set of seeded random inputs, as an ordinary test.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "support/random.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::exists(argv[i])) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream in(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++files;
    }
  }
  constexpr int randomInputs = 2000;
  for (int seed = 0; seed < randomInputs; ++seed) {
    zvptest::Rng rng{std::uint64_t(seed)};
    std::vector<std::uint8_t> bytes(std::size_t(rng.range(0, 400)));
    for (auto& byte : bytes) byte = std::uint8_t(rng.next());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%d files and %d random inputs\n", files, randomInputs);
  return 0;
}
