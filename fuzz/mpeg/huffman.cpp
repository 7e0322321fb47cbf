// Code lists and bit streams out of the fuzzer's bytes: building and both readers beside the models.
#include "reference/mpeg/huffman.h"

#include <cstdio>
#include <cstdlib>

#include "support/code_list.h"
#include "support/word_stream.h"
#include "zvpvc.h"

namespace model = reference::mpeg;

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "huffman: %s differs from the model\n", what);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 8) return 0;
  // The first bytes choose table kind and codes, the rest is the stream.
  const int entryWords = data[0] & 1 ? 2 : 3;
  zvptest::Rng rng(std::uint64_t(data[1]) << 16 | std::uint64_t(data[2]) << 8 | data[3]);
  const auto codes = zvptest::inventedCodes(rng, 1 + data[4], 1 + data[5] % 32, data[0] & 2);
  const auto list =
      zvptest::codeList(codes, zvptest::inventedWidths(rng, zvptest::longestCode(codes), 1 + data[6] % 9), entryWords);
  bool lost = false;
  const auto wanted = model::compile(list.data(), entryWords, &lost);
  std::int32_t* table = nullptr;
  require((entryWords == 2 ? zvpiHuffmanTableInitAlloc_32s : zvpiHuffmanRunLevelTableInitAlloc_32s)(
              list.data(), &table) == zvpStatusOk,
          "the status of building");
  for (std::size_t i = 0; i < wanted.size(); ++i) require(table[i] == wanted[i], "the table");
  if (lost) {
    zvpiHuffmanTableFree_32s(table);
    return 0;
  }

  std::vector<std::uint32_t> stream((size - 7) / 4 + 12);
  std::memcpy(stream.data(), data + 7, size - 7);
  model::BitReader reader{stream.data(), data[7] % 32};
  while (reader.position < std::ptrdiff_t(8 * (size - 7))) {
    const std::ptrdiff_t start = reader.position;
    reader.end = 0;
    std::int32_t wantedValue = -1, value = -1;
    std::uint8_t wantedFirst = 0, first = 0;
    std::int16_t wantedSecond = 0, second = 0;
    const bool good = entryWords == 2 ? model::decodeOne(reader, table, wantedValue)
                                      : model::decodePair(reader, table, wantedFirst, wantedSecond);
    zvptest::WordStream at(stream, start, reader.end);
    const zvpStatus status = entryWords == 2
                                 ? zvpiDecodeHuffmanOne_1u32s(&at.word, &at.offset, &value, table)
                                 : zvpiDecodeHuffmanPair_1u16s(&at.word, &at.offset, table, &first, &second);
    require(status == (good ? zvpStatusOk : zvpStatusBadVlcInput), "the status");
    require(value == wantedValue && first == wantedFirst && second == wantedSecond, "a value");
    require(at.position() == reader.position, "the cursor");
    if (reader.position == start) ++reader.position;
  }
  zvpiHuffmanTableFree_32s(table);
  return 0;
}
