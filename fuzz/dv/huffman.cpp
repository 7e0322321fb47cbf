// DV segments of any bits beside the model, in memory of exactly their size.
#include "reference/dv/huffman.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/dv_segment.h"
#include "support/guarded.h"
#include "zvpvc.h"

namespace {

using namespace zvptest;
namespace model = reference::dv;

std::vector<std::uint32_t> makeTable(const model::Codes& codes) {
  const auto list1 = dvCodeList(dvListCodes(codes, false), 9), list2 = dvCodeList(dvListCodes(codes, true), 9);
  std::uint32_t* table = nullptr;
  if (zvpiInitAllocHuffmanTable_DV_32u(list1.data(), list2.data(), &table) != zvpStatusOk) std::abort();
  std::vector<std::uint32_t> copy(table, table + 1024);
  zvpiFreeHuffmanTable_DV_32u(table);
  return copy;
}

template <class T>
GuardedArray<T> guarded(const std::vector<T>& values, Guard guard) {
  GuardedArray<T> array(values.size(), guard);
  std::memcpy(array.data(), values.data(), values.size() * sizeof(T));
  return array;
}

}  // namespace

// Byte 0 chooses the member, the code set and the guard, byte 1 the places to decode; the rest is the segment.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  static const model::Codes codeSets[2] = {dvCodes(false), dvCodes(true)};
  static const std::vector<std::uint32_t> tables[2] = {makeTable(codeSets[0]), makeTable(codeSets[1])};
  const int member = data[0] % 3, set = data[0] >> 6 & 1, maxCoefficients = data[1];
  const Guard guard = data[0] & 0x80 ? Guard::Behind : Guard::Before;
  const model::Format& format = member == 1 ? model::formatDV100() : model::formatDV();

  std::vector<std::uint8_t> segment(400);
  std::memcpy(segment.data(), data + 2, std::min<std::size_t>(size - 2, 400));
  auto places = dvScans();
  if (member == 1) places.resize(64);
  const std::size_t count = 5 * format.at.size();
  auto stream = guarded(segment, guard);
  auto scans = guarded(places, guard), table = guarded(tables[set], guard);
  auto params = guarded(std::vector<std::uint32_t>(count, 0xdeadbeef), guard);
  auto blocks = guarded(std::vector<std::int16_t>(64 * count), guard);
  const zvpStatus status =
      member == 0   ? zvpiHuffmanDecodeSegment_DV_8u16s(stream.data(), scans.data(), table.data(), blocks.data(),
                                                        params.data())
      : member == 1 ? zvpiHuffmanDecodeSegment_DV100_8u16s(stream.data(), scans.data(), table.data(), blocks.data(),
                                                           params.data())
                    : zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(stream.data(), scans.data(), table.data(),
                                                               blocks.data(), params.data(), maxCoefficients);
  const auto expected = model::decodeSegment(format, codeSets[set], segment.data(), dvScans(),
                                             member == 2 ? std::min(maxCoefficients, 64) : 64, member == 2);
  if (status != zvpStatusOk || std::memcmp(params.data(), expected.params.data(), 4 * count) != 0 ||
      std::memcmp(blocks.data(), expected.coefficients.data(), 128 * count) != 0) {
    std::fprintf(stderr, "dv huffman: member %d differs from the model\n", member);
    std::abort();
  }
  return 0;
}
