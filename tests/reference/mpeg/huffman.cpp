#include "reference/mpeg/huffman.h"

#include <algorithm>
#include <set>
#include <string>

namespace reference::mpeg {
namespace {

constexpr std::int32_t unused = 15790337;

struct ListedCode {
  std::string bits;
  std::vector<std::int32_t> values;
};

std::vector<ListedCode> listedCodes(const std::int32_t* p, int entryWords) {
  std::vector<ListedCode> codes;
  for (int length = 1;; ++length) {
    const std::int32_t count = *p++;
    if (count < 0) return codes;
    for (int i = 0; i < count; ++i, p += entryWords) {
      ListedCode code;
      for (int bit = length - 1; bit >= 0; --bit)
        code.bits += bit < 32 && (std::uint32_t(p[0]) >> bit & 1) != 0 ? '1' : '0';
      code.values.assign(p + 1, p + entryWords);
      codes.push_back(code);
    }
  }
}

std::size_t number(const std::string& bits) {
  std::size_t n = 0;
  for (char c : bits) n = 2 * n + std::size_t(c - '0');
  return n;
}

}  // namespace

std::uint32_t BitReader::read(int n) {
  std::uint32_t value = 0;
  for (int i = 0; i < n; ++i, ++position) value = value * 2 + (words[position / 32] >> (31 - position % 32) & 1);
  end = std::max(end, position);
  return value;
}

std::vector<std::int32_t> compile(const std::int32_t* list, int entryWords, bool* lost) {
  const int levels = list[1];
  const std::int32_t* const widths = list + 2;
  const auto codes = listedCodes(widths + levels, entryWords);
  const auto wordsAt = [&](int level) { return (std::size_t(1) << widths[level]) + 1; };

  // One sub-table for each beginning that reaches over a level's end.
  std::size_t capacity = wordsAt(0);
  std::set<std::string> beginnings;
  for (const auto& code : codes)
    for (std::size_t k = 0, depth = 0; k + 1 < std::size_t(levels); ++k) {
      depth += std::size_t(widths[k]);
      if (depth >= code.bits.size()) break;
      if (beginnings.insert(code.bits.substr(0, depth)).second) capacity += wordsAt(int(k) + 1);
    }

  std::vector<std::int32_t> table(capacity, unused);
  std::size_t next = wordsAt(0);
  table[0] = widths[0];
  for (const auto& code : codes) {
    std::size_t current = 0, depth = 0;
    for (int k = 0; k < levels; ++k) {
      const std::size_t width = std::size_t(widths[k]), room = capacity - current - 1;
      if (depth + width >= code.bits.size()) {
        // All indices that begin with the rest of the code.
        const std::string rest = code.bits.substr(depth);
        const std::size_t spare = width - rest.size(), count = std::size_t(1) << spare;
        if ((number(rest) + 1) * count > room) break;
        for (std::size_t i = 0; i < count; ++i) {
          const std::int64_t value = entryWords == 2
                                         ? code.values[0] * std::int64_t(256)
                                         : code.values[1] * std::int64_t(65536) + (code.values[0] & 255) * 256;
          table[current + 1 + number(rest) * count + i] = std::int32_t(value + std::int64_t(spare));
        }
        break;
      }
      const std::size_t index = number(code.bits.substr(depth, width));
      if (k + 1 == levels || index >= room) break;
      std::int32_t& entry = table[current + 1 + index];
      depth += width;
      if (entry == unused) {
        if (next + wordsAt(k + 1) > capacity) break;
        entry = std::int32_t(next * 256 + 128);
        table[next] = widths[k + 1];
        current = next;
        next += wordsAt(k + 1);
      } else if ((entry & 255) == 128 && (entryWords == 3 || (entry & 0xff00) != 0)) {
        current = std::size_t(entry >> 8);
      } else if ((entry & 255) == 128 && lost != nullptr) {
        *lost = true;
      }
    }
  }
  return table;
}

Lookup lookUp(BitReader& reader, const std::int32_t* table) {
  std::int32_t at = 0, entry;
  do {
    entry = table[at + 1 + std::int32_t(reader.read(table[at]))];
    at = entry >> 8;
  } while ((entry & 128) != 0);
  return {entry};
}

bool decodeOne(BitReader& reader, const std::int32_t* table, std::int32_t& value) {
  const Lookup found = lookUp(reader, table);
  value = found.entry >> 8;
  if (found.bad()) return false;
  reader.position -= found.spare();
  return true;
}

bool decodePair(BitReader& reader, const std::int32_t* table, std::uint8_t& first, std::int16_t& second) {
  const std::ptrdiff_t start = reader.position;
  const Lookup found = lookUp(reader, table);
  if (found.bad()) {
    reader.position = start;
    return false;
  }
  reader.position -= found.spare();
  first = std::uint8_t(found.entry >> 8);
  second = std::int16_t(found.entry >> 16);
  return true;
}

}  // namespace reference::mpeg
