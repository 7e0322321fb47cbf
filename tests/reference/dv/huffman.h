// Model of DV segment decoding, bit by bit: spaces are lists of bits, codes are words looked for one length after the
// other. And the decoding table, entry by entry.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace reference::dv {

// (run, level) by code word, the sign bit in the word; without the escape.
using Codes = std::map<std::string, std::pair<int, int>>;

// The 2^bits entries of one list of codes; prefixBits is added to the lengths.
std::vector<std::uint32_t> tableEntries(const Codes& codes, int bits, int prefixBits);

struct Format {
  std::vector<int> at, bytes;  // the spaces of a macroblock
  bool twoScans;
};
const Format& formatDV();
const Format& formatDV100();

struct Segment {
  std::vector<std::int16_t> coefficients;  // 64 a block
  std::vector<std::uint32_t> params;
};
// stream: 400 bytes. limit: places of the scan. onePass: each block's own space alone.
Segment decodeSegment(const Format& format, const Codes& codes, const std::uint8_t* stream,
                      const std::vector<std::uint32_t>& scans, int limit, bool onePass);

}  // namespace reference::dv
