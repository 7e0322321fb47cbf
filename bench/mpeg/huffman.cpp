#include "reference/mpeg/huffman.h"

#include "support/bench.h"
#include "support/code_list.h"
#include "support/word_writer.h"
#include "zvpvc.h"

namespace {

// A stream of random codes of ISO/IEC 13818-2 table B-14.
struct Stream {
  std::vector<std::uint32_t> words;
  std::int32_t* table = nullptr;
  const std::uint32_t* word = nullptr;
  std::int32_t offset = 31;
  Stream(bool pairs, const std::vector<int>& widths) {
    zvptest::Rng rng(7);
    const auto codes = zvptest::coefficientCodes("zero");
    const auto list = zvptest::codeList(codes, widths, pairs ? 3 : 2);
    (pairs ? zvpiHuffmanRunLevelTableInitAlloc_32s : zvpiHuffmanTableInitAlloc_32s)(list.data(), &table);
    zvptest::WordWriter writer;
    for (int i = 0; i < 4000; ++i) {
      // A code is as frequent as its length makes it.
      std::string bits;
      const auto begun = [&](const zvptest::TestCode& code) {
        return bits.compare(0, code.bits.size(), code.bits) == 0;
      };
      auto code = codes.end();
      for (; code == codes.end() && bits.size() < 17; code = std::find_if(codes.begin(), codes.end(), begun))
        bits += rng.chance(2) ? '1' : '0';
      if (code != codes.end()) writer.put(code->bits);
    }
    words = writer.words();
    words.insert(words.end(), 4, 0x55555555);
  }
  void rewindAtEnd() {
    if (word == nullptr || word >= words.data() + words.size() - 4) {
      word = words.data();
      offset = 31;
    }
  }
  bool matches(bool pairs) {
    rewindAtEnd();
    reference::mpeg::BitReader reader{words.data(), (word - words.data()) * 32 + 31 - offset};
    for (int i = 0; i < 100; ++i) {
      std::int32_t value = 0, wantedValue = 0;
      std::uint8_t run = 0, wantedRun = 0;
      std::int16_t level = 0, wantedLevel = 0;
      if (pairs) {
        reference::mpeg::decodePair(reader, table, wantedRun, wantedLevel);
        zvpiDecodeHuffmanPair_1u16s(&word, &offset, table, &run, &level);
      } else {
        reference::mpeg::decodeOne(reader, table, wantedValue);
        zvpiDecodeHuffmanOne_1u32s(&word, &offset, &value, table);
      }
      if (run != wantedRun || level != wantedLevel || value != wantedValue || offset != reader.offset()) return false;
    }
    return true;
  }
};

const bench::Rows rows = [](bench::Add add) {
  const std::pair<const char*, std::vector<int>> splits[] = {
      {"one level", {17}}, {"8 and 9 bits", {8, 9}}, {"four levels", {4, 4, 4, 5}}};
  for (const auto& [name, widths] : splits) {
    auto* values = bench::keep<Stream>(false, widths);
    auto* value = bench::keep<std::int32_t>();
    add(
        "zvpiDecodeHuffmanOne_1u32s", name,
        [=](int) {
          values->rewindAtEnd();
          zvpiDecodeHuffmanOne_1u32s(&values->word, &values->offset, value, values->table);
        },
        [=] { return values->matches(false); });
    auto* pairs = bench::keep<Stream>(true, widths);
    auto* run = bench::keep<std::uint8_t>();
    auto* level = bench::keep<std::int16_t>();
    add(
        "zvpiDecodeHuffmanPair_1u16s", name,
        [=](int) {
          pairs->rewindAtEnd();
          zvpiDecodeHuffmanPair_1u16s(&pairs->word, &pairs->offset, pairs->table, run, level);
        },
        [=] { return pairs->matches(true); });
  }
  for (const bool pairs : {false, true}) {
    const auto codes = zvptest::coefficientCodes("zero");
    auto* list = bench::keep<std::vector<std::int32_t>>(zvptest::codeList(codes, {8, 9}, pairs ? 3 : 2));
    const auto build = pairs ? zvpiHuffmanRunLevelTableInitAlloc_32s : zvpiHuffmanTableInitAlloc_32s;
    add(pairs ? "zvpiHuffmanRunLevelTableInitAlloc_32s" : "zvpiHuffmanTableInitAlloc_32s", "build and free", [=](int) {
      std::int32_t* table = nullptr;
      build(list->data(), &table);
      zvpiHuffmanTableFree_32s(table);
    });
  }
};

}  // namespace
