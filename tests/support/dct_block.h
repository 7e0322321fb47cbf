// One call of a member that reconstructs DCT blocks, its arguments where a caller might put them: for tests and fuzz
// targets.
#pragma once

#include "reference/mpeg/reconstruct.h"
#include "support/placed.h"
#include "support/word_stream.h"
#include "zvpvc.h"

namespace zvptest {

using reference::mpeg::BlockSyntax;

inline constexpr BlockSyntax blockMembers[] = {{false, false}, {true, false}, {false, true}, {true, true}};

struct BlockPointers {
  const std::uint32_t** stream;
  std::int32_t* offset;
  const std::int32_t *firstTable, *acTable, *scan;
  std::int32_t scale;
  const std::int16_t* weights;
  std::int16_t* prediction;
  std::int32_t shift;
  std::int16_t* block;
  std::int32_t* size;
};

inline zvpStatus reconstructBlock(BlockSyntax member, const BlockPointers& p) {
  if (!member.intra)
    return (member.mpeg2 ? zvpiReconstructDCTBlock_MPEG2_32s : zvpiReconstructDCTBlock_MPEG1_32s)(
        p.stream, p.offset, p.firstTable, p.acTable, p.scan, p.scale, p.weights, p.block, p.size);
  if (!member.mpeg2)
    return zvpiReconstructDCTBlockIntra_MPEG1_32s(p.stream, p.offset, p.firstTable, p.acTable, p.scan, p.scale,
                                                  p.weights, p.prediction, p.block, p.size);
  return zvpiReconstructDCTBlockIntra_MPEG2_32s(p.stream, p.offset, p.firstTable, p.acTable, p.scan, p.scale, p.weights,
                                                p.prediction, p.shift, p.block, p.size);
}

struct BlockCase {
  BlockSyntax member;
  const std::int32_t *firstTable, *acTable;
  std::vector<std::int32_t> scan;  // 256 entries, of which the call gets those that it may read
  std::int32_t scale = 1;
  std::vector<std::int16_t> weights;  // none: a null pointer
  std::int16_t prediction = 0;
  std::int32_t shift = 0;
};

struct BlockOutcome {
  zvpStatus status;
  std::ptrdiff_t position;
  std::int32_t size;
  std::int16_t prediction;
  std::vector<std::int16_t> block;
  bool operator==(const BlockOutcome& other) const {
    return status == other.status && position == other.position && size == other.size &&
           prediction == other.prediction && block == other.block;
  }
};

inline constexpr std::int32_t unwrittenSize = -1234567;

// What the model makes of the block at the reader, which it leaves behind it.
inline BlockOutcome wantedOutcome(const BlockCase& c, reference::mpeg::BitReader& reader, int& scanEntries) {
  const auto result =
      reference::mpeg::reconstruct(c.member,
                                   {c.firstTable, c.acTable, c.scan.data(), c.scale,
                                    c.weights.empty() ? nullptr : c.weights.data(), c.prediction, c.shift & 31},
                                   reader);
  scanEntries = result.scanEntries;
  return {result.good ? zvpStatusOk : zvpStatusBadVlcInput,
          reader.position,
          result.good ? result.size : unwrittenSize,
          c.member.intra ? result.prediction : c.prediction,
          {result.block.begin(), result.block.end()}};
}

// What the library makes of it, in memory that ends where the model stopped looking.
inline BlockOutcome actualOutcome(const BlockCase& c, WordStream& stream, int scanEntries, Rng& rng) {
  Placed<std::int32_t> scan({c.scan.begin(), c.scan.begin() + scanEntries}, rng), size({unwrittenSize}, rng);
  const bool weighted = !c.weights.empty();
  Placed<std::int16_t> weights(weighted ? c.weights : std::vector<std::int16_t>(1), rng),
      prediction({c.prediction}, rng), block(randomValues<std::int16_t>(64, rng, Style::Uniform, -32768, 32767), rng);
  scan.readOnly();
  weights.readOnly();
  const zvpStatus status = reconstructBlock(
      c.member, {&stream.word, &stream.offset, c.firstTable, c.acTable, scan.data(), c.scale,
                 weighted ? weights.data() : nullptr, prediction.data(), c.shift, block.data(), size.data()});
  return {status, stream.position(), size.values()[0], prediction.values()[0], block.values()};
}

}  // namespace zvptest
