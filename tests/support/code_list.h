// Variable-length codes for tests: the MPEG tables of tests/data, invented prefix-free sets, and the lists that the
// compilers of the library take.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/csv.h"
#include "support/random.h"

namespace zvptest {

struct TestCode {
  std::string bits;
  int first = 0, second = 0;  // value, or run and level
};
using CodeSet = std::vector<TestCode>;

constexpr int endOfBlockRun = 254, escapeRun = 255;

// DCT coefficients table zero or one with signed levels, end of block as run 254 and escape as run 255. The codes of
// the first coefficient of a non-intra block have the short code of (0, 1) and no end of block.
inline CodeSet coefficientCodes(const std::string& name, bool firstOfBlock = false) {
  CodeSet codes;
  for (const auto& row : readTable("mpeg12_dct_coefficients_table_" + name)) {
    const std::string& kind = row.at("kind");
    const std::string& bits = row.at("code_bits");
    if (kind == "escape") codes.push_back({bits, escapeRun, 0});
    if (kind == "eob" && !firstOfBlock) codes.push_back({bits, endOfBlockRun, 0});
    if (kind != "coef" && !(kind == "first" && firstOfBlock)) continue;
    const int run = std::stoi(row.at("run")), level = std::stoi(row.at("level"));
    if (firstOfBlock && kind == "coef" && run == 0 && level == 1) continue;
    codes.push_back({bits + '0', run, level});
    codes.push_back({bits + '1', run, -level});
  }
  return codes;
}

inline CodeSet dcSizeCodes(const std::string& component) {
  CodeSet codes;
  for (const auto& row : readTable("mpeg12_dct_dc_size"))
    if (row.at("component") == component) codes.push_back({row.at("code_bits"), std::stoi(row.at("size")), 0});
  return codes;
}

// A prefix-free set made by splitting words, some of them left out if there is to be a bad code.
inline CodeSet inventedCodes(Rng& rng, int count, int longest, bool complete) {
  std::vector<std::string> words = {"0", "1"};
  for (int tries = 0; int(words.size()) < count && tries < 4 * count; ++tries) {
    // A late word often, so that some become long.
    const std::size_t at = std::size_t(rng.chance(2) ? rng.range(0, int(words.size()) - 1) : int(words.size()) - 1);
    if (int(words[at].size()) >= longest) continue;
    words.push_back(words[at] + '1');
    words[at] += '0';
  }
  CodeSet codes;
  for (const auto& word : words)
    if (complete || !rng.chance(4) || codes.empty()) codes.push_back({word, int(rng.next()), int(rng.next())});
  return codes;
}

inline int longestCode(const CodeSet& codes) {
  std::size_t longest = 0;
  for (const auto& code : codes) longest = std::max(longest, code.bits.size());
  return int(longest);
}

// Level widths of at most widest bits that reach the longest code.
inline std::vector<int> inventedWidths(Rng& rng, int longest, int widest) {
  std::vector<int> widths;
  for (int sum = 0; sum < longest; sum += widths.back()) widths.push_back(rng.range(1, widest));
  if (rng.chance(4)) widths.push_back(rng.range(1, widest));  // a level that no code needs
  return widths;
}

// The list in the library's layout; entryWords is 2 for a value list, 3 for a run-level list.
inline std::vector<std::int32_t> codeList(const CodeSet& codes, const std::vector<int>& widths, int entryWords) {
  std::vector<std::int32_t> list = {-77, std::int32_t(widths.size())};  // the first word is not read
  list.insert(list.end(), widths.begin(), widths.end());
  for (int length = 1; length <= longestCode(codes); ++length) {
    const std::size_t countAt = list.size();
    list.push_back(0);
    for (const auto& code : codes) {
      if (int(code.bits.size()) != length) continue;
      std::uint32_t word = 0;
      for (char bit : code.bits) word = word * 2 + std::uint32_t(bit == '1');
      list.push_back(std::int32_t(word));
      list.push_back(code.first);
      if (entryWords == 3) list.push_back(code.second);
      ++list[countAt];
    }
  }
  list.push_back(-1);
  return list;
}

}  // namespace zvptest
