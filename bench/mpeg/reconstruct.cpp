#include "reference/mpeg/reconstruct.h"

#include "support/bench.h"
#include "support/compiled_table.h"
#include "support/dct_block.h"
#include "support/word_writer.h"

namespace {

using namespace zvptest;

// A stream of blocks with a number of coefficients beside the DC or the first one, codes as frequent as their lengths
// make them, read from end to end and then again.
struct Blocks {
  BlockCase arguments;
  CompiledTable first, others;
  std::vector<std::uint32_t> words;
  std::vector<std::ptrdiff_t> starts;  // in bits
  std::int16_t block[64], prediction = 0;
  std::int32_t size = 0;

  Blocks(BlockSyntax member, int coefficients) : arguments{member, nullptr, nullptr, {}, 4, {}, 0, 2} {
    const auto firstCodes = coefficientCodes("zero", true), otherCodes = coefficientCodes("zero"),
               sizeCodes = dcSizeCodes("luma");
    first = member.intra ? compiledValues(sizeCodes, {9}) : compiledPairs(firstCodes, {8, 9});
    others = compiledPairs(otherCodes, {8, 9});
    arguments.firstTable = first.get();
    arguments.acTable = others.get();
    for (int i = 0; i < 256; ++i) arguments.scan.push_back(i % 64);
    for (int i = 0; i < 64; ++i) arguments.weights.push_back(std::int16_t(16 + i));

    Rng rng(3);
    WordWriter writer;
    const auto put = [&](const CodeSet& codes, int room) {  // the run
      for (;;) {
        std::string bits;
        while (bits.size() < 17) {
          bits += rng.chance(2) ? '1' : '0';
          for (const auto& code : codes)
            if (code.bits == bits && code.first <= room) {
              writer.put(bits);
              return code.first;
            }
        }
      }
    };
    for (int n = 0; n < bench::callsPerTurn; ++n) {
      starts.push_back(std::ptrdiff_t(writer.size()));
      int index = 0;
      if (member.intra) {
        const int sizeBits = put(sizeCodes, 11);
        writer.put(rng.next(), sizeBits);
      } else {
        index = put(firstCodes, 2);
      }
      for (int i = 0; i < coefficients && index < 63; ++i) index += 1 + put(otherCodes, std::min(62 - index, 253));
      writer.put("10");
    }
    words = writer.words();
    words.insert(words.end(), 2, 0x55555555);
  }
  void decode(int i) {
    const std::ptrdiff_t start = starts[std::size_t(i)];
    const std::uint32_t* word = words.data() + start / 32;
    std::int32_t offset = 31 - int(start % 32);
    reconstructBlock(arguments.member,
                     {&word, &offset, arguments.firstTable, arguments.acTable, arguments.scan.data(), arguments.scale,
                      arguments.weights.data(), &prediction, arguments.shift, block, &size});
  }
  bool matches() {
    for (int i = 0; i < bench::callsPerTurn; ++i) {
      reference::mpeg::BitReader reader{words.data(), starts[std::size_t(i)]};
      int scanEntries = 0;
      arguments.prediction = prediction;
      const auto wanted = wantedOutcome(arguments, reader, scanEntries);
      decode(i);
      if (wanted.size != size || wanted.prediction != prediction ||
          !std::equal(block, block + 64, wanted.block.begin()))
        return false;
    }
    return true;
  }
};

const bench::Rows rows = [](bench::Add add) {
  const std::pair<const char*, BlockSyntax> members[] = {{"zvpiReconstructDCTBlock_MPEG1_32s", {false, false}},
                                                         {"zvpiReconstructDCTBlock_MPEG2_32s", {true, false}},
                                                         {"zvpiReconstructDCTBlockIntra_MPEG1_32s", {false, true}},
                                                         {"zvpiReconstructDCTBlockIntra_MPEG2_32s", {true, true}}};
  for (const auto& [name, member] : members)
    for (const int coefficients : {0, 4, 16}) {
      auto* blocks = bench::keep<Blocks>(member, coefficients);
      add(
          name, std::to_string(coefficients) + " coefficients", [=](int i) { blocks->decode(i); },
          [=] { return blocks->matches(); });
    }
};

}  // namespace
