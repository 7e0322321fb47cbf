// DCT blocks out of the fuzzer's bytes: the four members beside the model, with the standard's tables or invented ones.
#include "reference/mpeg/reconstruct.h"

#include <cstdio>
#include <cstdlib>

#include "support/compiled_table.h"
#include "support/dct_block.h"

using namespace zvptest;

namespace {

constexpr std::size_t headBytes = 12;
constexpr std::size_t blockWords = 160;  // the most that a block of invented codes can look at

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "reconstruct: %s differs from the model\n", what);
  std::abort();
}

CompiledTable invented(Rng& rng, bool sizes) {
  const int count = rng.range(2, 42), longest = rng.range(2, 17);
  const bool complete = rng.chance(2);
  auto codes = inventedCodes(rng, count, longest, complete);
  for (auto& code : codes) {
    if (rng.chance(12)) continue;  // any value at all
    code.first = sizes ? rng.range(0, 12) : rng.chance(8) ? rng.range(253, 255) : rng.range(0, 5);
  }
  const auto widths = inventedWidths(rng, longestCode(codes), 7);
  return sizes ? compiledValues(codes, widths) : compiledPairs(codes, widths);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < headBytes + 4) return 0;
  static const CompiledTable standardFirst = compiledPairs(coefficientCodes("zero", true), {8, 9}),
                             standardOthers[2] = {compiledPairs(coefficientCodes("zero"), {8, 9}),
                                                  compiledPairs(coefficientCodes("one"), {9, 8})},
                             standardSizes[2] = {compiledValues(dcSizeCodes("luma"), {9}),
                                                 compiledValues(dcSizeCodes("chroma"), {5, 5})};
  // The head chooses member, tables and arguments, the rest is the stream.
  Rng rng(std::uint64_t(data[1]) << 16 | std::uint64_t(data[2]) << 8 | data[3]);
  BlockCase c{blockMembers[data[0] & 3], nullptr, nullptr, {}, 0, {}, 0, 0};
  CompiledTable inventedFirst, inventedOthers;
  if (data[0] & 4) {
    inventedFirst = invented(rng, c.member.intra);
    inventedOthers = invented(rng, false);
    c.firstTable = inventedFirst.get();
    c.acTable = inventedOthers.get();
  } else {
    c.firstTable = c.member.intra ? standardSizes[data[0] >> 3 & 1].get() : standardFirst.get();
    c.acTable = standardOthers[data[0] >> 4 & 1].get();
  }
  c.scan.resize(256);
  for (std::size_t i = 0; i < 256; ++i)
    c.scan[i] = i < 64 || rng.chance(2) ? rng.range(0, 63) : std::int32_t(rng.next());
  c.scale = data[0] & 32 ? std::int32_t(rng.next()) : 1 + data[4] % 112;
  c.weights =
      randomValues<std::int16_t>(64, rng, Style::Uniform, data[0] & 64 ? -32768 : 1, data[0] & 64 ? 32767 : 255);
  if (data[0] & 128 && c.member.mpeg2 && !c.member.intra) c.weights.clear();
  c.prediction = std::int16_t(data[5] << 8 | data[6]);
  c.shift = std::int32_t(std::int8_t(data[7]));

  const std::size_t streamBytes = size - headBytes;
  std::vector<std::uint32_t> stream(streamBytes / 4 + 1 + blockWords);
  std::memcpy(stream.data(), data + headBytes, streamBytes);
  reference::mpeg::BitReader reader{stream.data(), data[8] % 32};
  while (reader.position < std::ptrdiff_t(8 * streamBytes)) {
    const std::ptrdiff_t start = reader.position;
    reader.end = 0;
    int scanEntries = 0;
    const BlockOutcome wanted = wantedOutcome(c, reader, scanEntries);
    WordStream words(stream, start, reader.end);
    const BlockOutcome actual = actualOutcome(c, words, scanEntries, rng);
    require(actual.status == wanted.status, "the status");
    require(actual == wanted, "a result");
    c.prediction = actual.prediction;
  }
  return 0;
}
