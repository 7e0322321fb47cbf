// Segments as an encoder fills them, with codes that overflow into other blocks.
#include "reference/dv/huffman.h"

#include <vector>

#include "support/bench.h"
#include "support/dv_segment.h"
#include "zvpvc.h"

namespace {

using namespace zvptest;
namespace model = reference::dv;

struct Segments {
  const model::Format& format;
  const model::Codes codes = dvCodes(false);
  std::vector<std::uint8_t> streams[bench::callsPerTurn];
  std::uint32_t* table = nullptr;
  std::int16_t blocks[40 * 64];
  std::uint32_t params[40];

  explicit Segments(const model::Format& f) : format(f) {
    const auto list1 = dvCodeList(dvListCodes(codes, false), 9), list2 = dvCodeList(dvListCodes(codes, true), 9);
    zvpiInitAllocHuffmanTable_DV_32u(list1.data(), list2.data(), &table);
    const auto words = dvWords(codes);
    Rng rng(3);
    for (auto& stream : streams) {
      stream.resize(400);
      do {
        std::vector<DvBlock> all;
        while (all.size() < 5 * format.at.size())
          all.push_back(dvRandomBlock(rng, words, rng.chance(3) ? rng.range(100, 220) : rng.range(10, 60)));
        if (dvWriteSegment(format, all, rng, stream.data())) break;
      } while (true);
    }
  }
  const std::uint8_t* stream(int i) const { return streams[i & 31].data(); }
  std::int16_t* cleared() {
    std::fill(blocks, blocks + 64 * 5 * format.at.size(), std::int16_t(0));
    return blocks;
  }
  bool same(const model::Segment& expected) const {
    return std::equal(expected.params.begin(), expected.params.end(), params) &&
           std::equal(expected.coefficients.begin(), expected.coefficients.end(), blocks);
  }
};

// Each row includes the clearing of its blocks.
const bench::Rows rows = [](bench::Add add) {
  const auto row = [&](const char* name, const std::string& caseName, const model::Format& format, bool onePass,
                       int limit, auto decode) {
    auto* s = bench::keep<Segments>(format);
    const auto call = [=](int i) { decode(s->stream(i), dvScans().data(), s->table, s->cleared(), s->params); };
    add(name, caseName, call, [=] {
      call(7);
      return s->same(model::decodeSegment(s->format, s->codes, s->stream(7), dvScans(), limit, onePass));
    });
  };
  row("zvpiHuffmanDecodeSegment_DV_8u16s", "full segment", model::formatDV(), false, 64,
      zvpiHuffmanDecodeSegment_DV_8u16s);
  row("zvpiHuffmanDecodeSegment_DV100_8u16s", "full segment", model::formatDV100(), false, 64,
      zvpiHuffmanDecodeSegment_DV100_8u16s);
  for (const int limit : {1, 10, 64})
    row("zvpiHuffmanDecodeSegmentOnePass_DV_8u16s", std::to_string(limit) + " places", model::formatDV(), true, limit,
        [limit](auto... arguments) { zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(arguments..., limit); });
  add("zvpiInitAllocHuffmanTable_DV_32u", "standard codes, with the free", [codes = dvCodes(false)](int) {
    static const auto list1 = dvCodeList(dvListCodes(codes, false), 9), list2 = dvCodeList(dvListCodes(codes, true), 9);
    std::uint32_t* table = nullptr;
    zvpiInitAllocHuffmanTable_DV_32u(list1.data(), list2.data(), &table);
    zvpiFreeHuffmanTable_DV_32u(table);
  });
};

}  // namespace
