// AVS blocks of any bits, beside the model, in words that end where the model stopped reading.
#include "reference/avs/decode_block.h"

#include <cstdlib>
#include <cstring>

#include "support/avs_tables.h"
#include "support/guarded.h"
#include "zvpvc.h"

// Byte 0 chooses kind and scan, byte 1 the first bit; the rest is the stream, with ones behind it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zvptest;
  using reference::AvsBlockKind;
  if (size < 2) return 0;
  const auto kind = AvsBlockKind(data[0] % 3);
  const int scanType = data[0] >> 7;
  const std::size_t first = data[1] % 32;
  std::vector<std::uint32_t> words((size - 2 + 3) / 4 + 16, 0xffffffff);
  for (std::size_t i = 2; i < size; ++i) {
    const int shift = 24 - 8 * int((i - 2) % 4);
    std::uint32_t& word = words[(i - 2) / 4];
    word = (word & ~(0xffu << shift)) | std::uint32_t(data[i]) << shift;
  }
  std::vector<bool> bits;
  for (std::size_t i = first; i < 32 * words.size(); ++i) bits.push_back(words[i / 32] >> (31 - i % 32) & 1);
  const auto expected = reference::avsDecodeBlock(kind, avsTables(), bits, scanType);
  const std::size_t used = (first + expected.bits + 31) / 32;
  words.resize(used, 0xffffffff);

  GuardedArray<std::uint32_t> stream(used, data[0] & 64 ? Guard::Behind : Guard::Before);
  std::memcpy(stream.data(), words.data(), 4 * used);
  const std::uint32_t* word = stream.data();
  std::int32_t offset = 31 - std::int32_t(first), count = -1;
  std::int16_t coefficients[64];
  const auto decode = kind == AvsBlockKind::IntraLuma   ? zvpiDecodeLumaBlockIntra_AVS_1u16s
                      : kind == AvsBlockKind::InterLuma ? zvpiDecodeLumaBlockInter_AVS_1u16s
                                                        : zvpiDecodeChromaBlock_AVS_1u16s;
  if (decode(&word, &offset, &count, coefficients, scanType) != zvpStatusOk) std::abort();
  if (count != expected.count || std::memcmp(coefficients, expected.coefficients, sizeof coefficients) != 0 ||
      std::size_t(word - stream.data()) * 32 + std::size_t(31 - offset) != first + expected.bits)
    std::abort();
  return 0;
}
