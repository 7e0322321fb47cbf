// Blocks of about a dozen coefficients in the tables of each kind.
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

// Random bits are what a dense stream looks like; the words behind them end any block.
struct Stream {
  std::vector<std::uint32_t> words;
  Stream() : words(64, 0xffffffff) {
    zvptest::Rng rng(5);
    for (int i = 0; i < 40; ++i) words[std::size_t(i)] = rng.next();
  }
};

const bench::Rows rows = [](bench::Add add) {
  auto* stream = bench::keep<Stream>();
  const auto row = [&](const char* name, auto decode) {
    add(name, "random bits", [=](int i) {
      const std::uint32_t* word = stream->words.data() + i;
      std::int32_t offset = 31 - i % 32, count;
      std::int16_t coefficients[64];
      decode(&word, &offset, &count, coefficients, i & 1);
    });
  };
  row("zvpiDecodeLumaBlockIntra_AVS_1u16s", zvpiDecodeLumaBlockIntra_AVS_1u16s);
  row("zvpiDecodeLumaBlockInter_AVS_1u16s", zvpiDecodeLumaBlockInter_AVS_1u16s);
  row("zvpiDecodeChromaBlock_AVS_1u16s", zvpiDecodeChromaBlock_AVS_1u16s);
};

}  // namespace
