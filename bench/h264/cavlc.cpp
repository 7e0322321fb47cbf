// CAVLC blocks as an encoder writes them, sparse and full, and Exp-Golomb codes.
#include "reference/h264/cavlc.h"

#include <cstring>

#include "support/bench.h"
#include "support/cavlc_encoder.h"
#include "zvpvc.h"

using namespace zvptest;
using namespace reference::h264;

namespace {

const std::int32_t zigzag[16] = {0, 1, 4, 8, 5, 2, 3, 6, 9, 12, 13, 10, 7, 11, 14, 15};

struct Codes {
  CavlcCodes codes{ZVP_TEST_DATA "/tables"};
  CavlcVlcTables tables{codes, 8, 8};
};
const Codes& standard() {
  static const Codes all;
  return all;
}

// Blocks of one kind, 32 of them, each with its own place in the stream.
template <class Element>
class Blocks {
 public:
  Blocks(CavlcShape shape, int nC, int density, int size) : shape_(shape), nC_(nC) {
    const int elements = shape == CavlcShape::Residual4x4 ? 16 : shape == CavlcShape::ChromaDc420 ? 4 : 8;
    Rng rng(std::uint64_t(density * 100 + size));
    BitWriter out;
    for (Place& place : places_) {
      std::vector<int> levels(static_cast<std::size_t>(elements));
      for (int i = 0; i < elements; ++i)
        if (rng.range(0, 15) < density - i / 2) levels[std::size_t(i)] = rng.chance(3) ? rng.range(-size, size) : 1;
      levels[0] = 1;
      place = {out.size() / 32, std::int32_t(31 - out.size() % 32)};
      putCavlcBlock(out, levels, nC, standard().codes);
    }
    out.put(~0ull, 64);
    words_ = out.words();
  }
  zvpStatus decode(int i, const std::uint32_t*& word, std::int32_t& offset, std::int16_t& count, Element* dst) const {
    const CavlcVlcTables& t = standard().tables;
    word = words_.data() + places_[i & 31].word;
    offset = places_[i & 31].offset;
    if constexpr (sizeof(Element) == 2) {
      if (shape_ == CavlcShape::Residual4x4)
        return zvpiDecodeCAVLCCoeffs_H264_1u16s(&word, &offset, &count, &dst, std::uint32_t(nC_), 16, t.coeffToken,
                                                t.totalZeros4x4, t.runBefore, zigzag);
      return shape_ == CavlcShape::ChromaDc420
                 ? zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(&word, &offset, &count, &dst, t.coeffToken420,
                                                            t.totalZeros420, t.runBefore)
                 : zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(&word, &offset, &count, &dst, t.coeffToken422,
                                                               t.totalZeros422, t.runBefore);
    } else {
      if (shape_ == CavlcShape::Residual4x4)
        return zvpiDecodeCAVLCCoeffs_H264_1u32s(&word, &offset, &count, &dst, std::uint32_t(nC_), 16, t.coeffToken,
                                                t.totalZeros4x4, t.runBefore, zigzag);
      return shape_ == CavlcShape::ChromaDc420
                 ? zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(&word, &offset, &count, &dst, t.coeffToken420,
                                                            t.totalZeros420, t.runBefore)
                 : zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(&word, &offset, &count, &dst, t.coeffToken422,
                                                               t.totalZeros422, t.runBefore);
    }
  }
  bool agrees() const {
    const CavlcVlcTables& t = standard().tables;
    const bool is4x4 = shape_ == CavlcShape::Residual4x4, is420 = shape_ == CavlcShape::ChromaDc420;
    for (int i = 0; i < 32; ++i) {
      Element actual[16] = {}, expected[16] = {};
      const std::uint32_t* word;
      std::int32_t offset;
      std::int16_t count;
      if (decode(i, word, offset, count, actual) != zvpStatusOk) return false;
      BitReader reader{words_.data() + places_[i].word, places_[i].offset};
      const CavlcTables tables = {!is4x4    ? is420 ? t.coeffToken420 : t.coeffToken422
                                  : nC_ < 8 ? t.coeffToken[nC_ < 2   ? 0
                                                           : nC_ < 4 ? 1
                                                                     : 2]
                                            : nullptr,
                                  is4x4   ? t.totalZeros4x4
                                  : is420 ? t.totalZeros420
                                          : t.totalZeros422,
                                  t.runBefore, zigzag,
                                  is4x4   ? 16
                                  : is420 ? 4
                                          : 8};
      Element* dst = expected;
      std::int16_t expectedCount;
      decodeCavlc(shape_, reader, tables, expectedCount, dst);
      if (std::memcmp(actual, expected, sizeof actual) != 0 || word != reader.word || offset != reader.offset)
        return false;
    }
    return true;
  }

 private:
  struct Place {
    std::size_t word;
    std::int32_t offset;
  };
  CavlcShape shape_;
  int nC_;
  Place places_[32];
  std::vector<std::uint32_t> words_;
};

template <class Element>
void addBlocks(bench::Add add, const char* name, const char* what, CavlcShape shape, int nC, int density, int size) {
  auto* blocks = bench::keep<Blocks<Element>>(shape, nC, density, size);
  auto* block = bench::keep<std::vector<Element>>(16);
  add(
      name, what,
      [=](int i) {
        const std::uint32_t* word;
        std::int32_t offset;
        std::int16_t count;
        blocks->decode(i, word, offset, count, block->data());
      },
      [=] { return blocks->agrees(); });
}

const bench::Rows rows = [](bench::Add add) {
  const CavlcShape luma = CavlcShape::Residual4x4, dc420 = CavlcShape::ChromaDc420, dc422 = CavlcShape::ChromaDc422;
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCCoeffs_H264_1u16s", "sparse", luma, 0, 4, 2);
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCCoeffs_H264_1u16s", "half full", luma, 4, 11, 6);
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCCoeffs_H264_1u16s", "full", luma, 8, 22, 40);
  addBlocks<std::int32_t>(add, "zvpiDecodeCAVLCCoeffs_H264_1u32s", "sparse", luma, 0, 4, 2);
  addBlocks<std::int32_t>(add, "zvpiDecodeCAVLCCoeffs_H264_1u32s", "full", luma, 8, 22, 40);
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s", "single", dc420, -1, 0, 1);
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s", "mixed", dc420, -1, 10, 6);
  addBlocks<std::int32_t>(add, "zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s", "mixed", dc420, -1, 10, 6);
  addBlocks<std::int16_t>(add, "zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s", "mixed", dc422, -2, 10, 6);
  addBlocks<std::int32_t>(add, "zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s", "mixed", dc422, -2, 10, 6);

  // Codes of one kind after another; a turn begins anew.
  auto* stream = bench::keep<BitWriter>();
  Rng rng(3);
  auto* numbers = bench::keep<std::vector<std::uint32_t>>();
  for (int i = 0; i < bench::callsPerTurn; ++i) {
    numbers->push_back(std::uint32_t(rng.range(0, (1 << rng.range(0, 9)) - 1)));
    putExpGolomb(*stream, numbers->back());
  }
  stream->put(~0ull, 64);
  struct Cursor {
    const std::uint32_t* word;
    std::int32_t offset;
  };
  auto* cursor = bench::keep<Cursor>();
  const auto next = [=](int i) {
    if (i == 0) *cursor = {stream->words().data(), 31};
  };
  add(
      "zvpiDecodeExpGolombOne_H264_1u16s", "ue(v) up to 511",
      [=](int i) {
        next(i);
        std::int16_t value;
        zvpiDecodeExpGolombOne_H264_1u16s(&cursor->word, &cursor->offset, &value, 0);
      },
      [=] {
        for (int i = 0; i < bench::callsPerTurn; ++i) {
          next(i);
          std::int16_t value;
          if (zvpiDecodeExpGolombOne_H264_1u16s(&cursor->word, &cursor->offset, &value, 0) != zvpStatusOk ||
              std::uint32_t(value) != (*numbers)[std::size_t(i)])
            return false;
        }
        return true;
      });
  add("zvpiDecodeExpGolombOne_H264_1u32s", "se(v) up to 511", [=](int i) {
    next(i);
    std::int32_t value;
    zvpiDecodeExpGolombOne_H264_1u32s(&cursor->word, &cursor->offset, &value, 1);
  });
};

}  // namespace
