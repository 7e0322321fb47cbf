#include "h264/cavlc_tables.h"

#include <algorithm>
#include <cstring>

#include "h264/cavlc_codes.h"

namespace h264 {

namespace {

constexpr std::int32_t invalidCode = 0xF0F1;

struct Code {
  const char* bits;  // what is left to read
  std::int32_t value;
};

// Writes the level that tells codes apart by their next width bits, and the levels below it, behind the end of table;
// the codes all begin alike up to here. An entry is a value and the bits that were read too many, or a link.
void appendLevel(std::vector<std::int32_t>& table, const std::vector<Code>& codes, std::size_t widest) {
  std::size_t longest = 0;
  for (const Code& code : codes) longest = std::max(longest, std::strlen(code.bits));
  const std::size_t width = std::min(longest, widest), head = table.size(), entries = std::size_t(1) << width;
  table.push_back(std::int32_t(width));
  table.resize(head + 1 + entries, invalidCode * 256);
  for (std::size_t index = 0; index < entries; ++index) {
    std::vector<Code> longer;
    for (const Code& code : codes) {
      const std::size_t length = std::strlen(code.bits);
      bool matches = true;
      for (std::size_t bit = 0; bit < std::min(length, width); ++bit)
        matches = matches && (code.bits[bit] == '1') == ((index >> (width - 1 - bit) & 1) != 0);
      if (!matches) continue;
      if (length <= width) table[head + 1 + index] = code.value * 256 + std::int32_t(width - length);
      else longer.push_back({code.bits + width, code.value});
    }
    if (longer.empty()) continue;
    table[head + 1 + index] = std::int32_t(table.size()) * 256 + 0x80;
    appendLevel(table, longer, widest);
  }
}

std::vector<std::int32_t> makeTable(const std::vector<Code>& codes, std::size_t widest) {
  std::vector<std::int32_t> table;
  appendLevel(table, codes, widest);
  return table;
}

template <std::size_t Rows> std::vector<Code> coeffTokens(const char* const (&codes)[Rows][4], std::size_t most) {
  std::vector<Code> result;
  for (std::size_t total = 0; total < Rows && total <= most; ++total)
    for (std::size_t ones = 0; ones < 4; ++ones)
      if (*codes[total][ones]) result.push_back({codes[total][ones], std::int32_t(total << 8 | ones)});
  return result;
}

// Values 0 to most of a row of codes.
template <std::size_t Size> std::vector<Code> numbers(const char* const (&codes)[Size], std::size_t most) {
  std::vector<Code> result;
  for (std::size_t value = 0; value < Size && value <= most; ++value)
    if (codes[value]) result.push_back({codes[value], std::int32_t(value)});
  return result;
}

}  // namespace

CavlcTables::CavlcTables() {
  storage_.reserve(64);
  const auto add = [this](const std::vector<Code>& codes) {
    storage_.push_back(makeTable(codes, 8));
    return storage_.back().data();
  };
  for (std::size_t limit : {16, 15}) {
    Set& set = limit == 16 ? full : ac;
    for (std::size_t i = 0; i < 3; ++i) set.coeffToken[i] = add(coeffTokens(coeffTokenCodes[i], limit));
    std::fill(std::begin(set.totalZeros), std::end(set.totalZeros), nullptr);
    for (std::size_t total = 1; total < 16; ++total)
      set.totalZeros[total] = total < limit ? add(numbers(totalZerosCodes[total - 1], limit - total)) : nullptr;
  }
  runBefore[0] = nullptr;
  for (std::size_t left = 1; left < 16; ++left)
    runBefore[left] = add(numbers(runBeforeCodes[std::min<std::size_t>(left, 7) - 1], left));
  chromaDcCoeffToken = add(coeffTokens(coeffTokenChromaDcCodes, 4));
  std::fill(std::begin(chromaDcTotalZeros), std::end(chromaDcTotalZeros), nullptr);
  for (std::size_t total = 1; total < 4; ++total)
    chromaDcTotalZeros[total] = add(numbers(totalZerosChromaDcCodes[total - 1], 4 - total));
}

const CavlcTables& CavlcTables::instance() {
  static const CavlcTables tables;
  return tables;
}

}  // namespace h264
