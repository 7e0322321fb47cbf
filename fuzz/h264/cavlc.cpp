// CAVLC blocks and Exp-Golomb codes of any bits, beside the model, in memory that ends where the model stopped reading.
//
// Byte 0 chooses the member, byte 1 nC, byte 2 the bit that the cursor begins at and the split of the tables. The rest
// is the stream, with ones behind it.
#include "reference/h264/cavlc.h"

#include <cstdlib>
#include <cstring>

#include "support/cavlc_tables.h"
#include "support/guarded.h"
#include "zvpvc.h"

using namespace zvptest;
using namespace reference::h264;

namespace {

const CavlcVlcTables& tablesOf(int split) {
  static const CavlcCodes codes(ZVP_TEST_DATA "/tables");
  static const CavlcVlcTables all[] = {{codes, 16, 16}, {codes, 6, 10}, {codes, 3, 2}, {codes, 1, 1}};
  return all[split & 3];
}

void require(bool holds) {
  if (!holds) std::abort();
}

struct Input {
  CavlcShape shape;
  bool fifteen;
  std::uint32_t nC;
  std::int32_t offset;
  const CavlcVlcTables& tables;
  std::vector<std::uint32_t> stream;
  Guard guard;
};

template <class Element>
zvpStatus decode(const Input& in, const CavlcTables& t, const std::int32_t* const* token, const std::uint32_t** word,
                 std::int32_t* offset, std::int16_t* count, Element** dst) {
  if constexpr (sizeof(Element) == 2) {
    if (in.shape == CavlcShape::Residual4x4)
      return zvpiDecodeCAVLCCoeffs_H264_1u16s(word, offset, count, dst, in.nC, std::int16_t(t.maxNumCoeff), token,
                                              t.totalZeros, t.runBefore, t.scan);
    return in.shape == CavlcShape::ChromaDc420 ? zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(
                                                     word, offset, count, dst, t.coeffToken, t.totalZeros, t.runBefore)
                                               : zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(
                                                     word, offset, count, dst, t.coeffToken, t.totalZeros, t.runBefore);
  } else {
    if (in.shape == CavlcShape::Residual4x4)
      return zvpiDecodeCAVLCCoeffs_H264_1u32s(word, offset, count, dst, in.nC, std::int16_t(t.maxNumCoeff), token,
                                              t.totalZeros, t.runBefore, t.scan);
    return in.shape == CavlcShape::ChromaDc420 ? zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(
                                                     word, offset, count, dst, t.coeffToken, t.totalZeros, t.runBefore)
                                               : zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(
                                                     word, offset, count, dst, t.coeffToken, t.totalZeros, t.runBefore);
  }
}

template <class Element>
void runBlock(const Input& in) {
  const CavlcVlcTables& t = in.tables;
  static const std::int32_t zigzag[16] = {0, 1, 4, 8, 5, 2, 3, 6, 9, 12, 13, 10, 7, 11, 14, 15};
  const bool is4x4 = in.shape == CavlcShape::Residual4x4, is420 = in.shape == CavlcShape::ChromaDc420;
  const std::size_t elements = is4x4 ? 16 : is420 ? 4 : 8;
  const std::int32_t* token = !is4x4      ? is420 ? t.coeffToken420 : t.coeffToken422
                              : in.nC < 8 ? t.coeffToken[in.nC < 2   ? 0
                                                         : in.nC < 4 ? 1
                                                                     : 2]
                                          : nullptr;
  const CavlcTables tables = {token,
                              is4x4   ? t.totalZeros4x4
                              : is420 ? t.totalZeros420
                                      : t.totalZeros422,
                              t.runBefore, zigzag, is4x4 ? (in.fifteen ? 15 : 16) : int(elements)};
  BitReader reader{in.stream.data(), in.offset};
  std::vector<Element> expected(elements, 99);
  Element* expectedDst = expected.data();
  std::int16_t expectedCount = 88, count = 88;
  const auto expectedStatus = decodeCavlc(in.shape, reader, tables, expectedCount, expectedDst);

  GuardedArray<std::uint32_t> words(std::size_t(reader.furthest - in.stream.data() + 1), in.guard);
  require(words.size() <= in.stream.size());
  std::memcpy(words.data(), in.stream.data(), words.size() * 4);
  words.bytes().makeReadOnly();
  GuardedArray<Element> actual(elements, in.guard);
  for (std::size_t i = 0; i < elements; ++i) actual[i] = 99;
  const std::uint32_t* word = words.data();
  std::int32_t offset = in.offset;
  Element* dst = actual.data();
  require(decode(in, tables, t.coeffToken, &word, &offset, &count, &dst) == expectedStatus);
  require(word - words.data() == reader.word - in.stream.data() && offset == reader.offset && count == expectedCount);
  require(dst - actual.data() == expectedDst - expected.data());
  require(std::memcmp(actual.data(), expected.data(), elements * sizeof(Element)) == 0);
}

void runExpGolomb(const Input& in, bool isSigned) {
  BitReader reader{in.stream.data(), in.offset};
  std::uint32_t value = 0;
  const auto expectedStatus = decodeExpGolomb(reader, value);
  const std::int32_t expected = std::int32_t(!isSigned ? value - 1 : value & 1 ? 0u - (value >> 1) : value >> 1);
  GuardedArray<std::uint32_t> words(std::size_t(reader.furthest - in.stream.data() + 1), in.guard);
  std::memcpy(words.data(), in.stream.data(), words.size() * 4);
  words.bytes().makeReadOnly();
  const std::uint32_t* word = words.data();
  std::int32_t offset = in.offset, wide = 7;
  require(zvpiDecodeExpGolombOne_H264_1u32s(&word, &offset, &wide, isSigned) == expectedStatus);
  require(word - words.data() == reader.word - in.stream.data() && offset == reader.offset);
  require(wide == (expectedStatus == zvpStatusOk ? expected : 7));
  word = words.data();
  offset = in.offset;
  std::int16_t narrow = 7;
  require(zvpiDecodeExpGolombOne_H264_1u16s(&word, &offset, &narrow, isSigned) == expectedStatus);
  require(word - words.data() == reader.word - in.stream.data() && offset == reader.offset);
  require(narrow == (expectedStatus == zvpStatusOk ? std::int16_t(expected) : 7));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 4) return 0;
  const int member = data[0] % 10;
  Input in = {member < 4   ? CavlcShape::Residual4x4
              : member < 6 ? CavlcShape::ChromaDc420
                           : CavlcShape::ChromaDc422,
              member % 4 >= 2,
              std::uint32_t(data[1] % 20),
              data[2] & 31,
              tablesOf(data[2] >> 5),
              std::vector<std::uint32_t>((size - 3 + 3) / 4),
              data[2] & 0x80 ? Guard::Before : Guard::Behind};
  std::memcpy(in.stream.data(), data + 3, size - 3);
  // The longest block behind the last prefix that the data leave open: sixteen levels, and suffixes of any length count
  // as one word.
  in.stream.resize(in.stream.size() + 64, 0xffffffff);
  if (member >= 8)
    runExpGolomb(in, member == 9);
  else if (member % 2 == 0)
    runBlock<std::int16_t>(in);
  else
    runBlock<std::int32_t>(in);
  return 0;
}
