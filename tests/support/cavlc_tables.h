// The standard's CAVLC code tables (H.264 tables 9-5 and 9-7 to 9-10) in the form that the decoder takes, split into
// levels of any width, with 0xF0F1 on all bits that are no code; and the codes themselves, for encoding.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace zvptest {

struct VlcCode {
  std::string bits;
  int value;
};

namespace detail {

// The rows of a CSV file behind its comment lines and its header row.
inline std::vector<std::vector<std::string>> readCsv(const std::string& path) {
  std::ifstream in(path);
  if (!in) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    std::abort();
  }
  std::vector<std::vector<std::string>> rows;
  bool header = true;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (header) {
      header = false;
      continue;
    }
    std::vector<std::string> row;
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell);
    rows.push_back(row);
  }
  return rows;
}

inline std::size_t appendVlcLevel(std::vector<std::int32_t>& table, const std::vector<VlcCode>& codes,
                                  std::size_t prefix, int width, int furtherWidth) {
  std::size_t longest = 0;
  for (const VlcCode& code : codes) longest = std::max(longest, code.bits.size() - prefix);
  const std::size_t bits = std::min<std::size_t>(std::size_t(width), longest);
  const std::size_t head = table.size();
  table.push_back(std::int32_t(bits));
  table.resize(table.size() + (std::size_t(1) << bits), 0xF0F1 << 8);
  for (std::size_t index = 0; index < std::size_t(1) << bits; ++index) {
    std::string indexBits;
    for (std::size_t i = bits; i-- > 0;) indexBits += (index >> i) & 1 ? '1' : '0';
    std::vector<VlcCode> longer;
    for (const VlcCode& code : codes) {
      const std::string rest = code.bits.substr(prefix);
      if (rest.size() <= bits && indexBits.compare(0, rest.size(), rest) == 0)
        table[head + 1 + index] = code.value << 8 | std::int32_t(bits - rest.size());
      else if (rest.size() > bits && rest.compare(0, bits, indexBits) == 0)
        longer.push_back(code);
    }
    if (!longer.empty()) {
      const std::size_t next = appendVlcLevel(table, longer, prefix + bits, furtherWidth, furtherWidth);
      table[head + 1 + index] = std::int32_t(next << 8 | 0x80);
    }
  }
  return head;
}

}  // namespace detail

// The first level is indexed by up to width bits, the further ones by up to furtherWidth.
inline std::vector<std::int32_t> buildVlcTable(const std::vector<VlcCode>& codes, int width, int furtherWidth) {
  std::vector<std::int32_t> table;
  detail::appendVlcLevel(table, codes, 0, width, furtherWidth);
  return table;
}

// The codes of the standard. coeff_token values are TotalCoeff * 256 + TrailingOnes.
struct CavlcCodes {
  std::map<int, std::vector<VlcCode>> coeffToken;  // by the lowest nC of the class: 0, 2, 4, 8; -1 and -2 for chroma DC
  std::vector<std::vector<VlcCode>> totalZeros4x4{16}, totalZeros420{4}, totalZeros422{8};  // by TotalCoeff
  std::vector<std::vector<VlcCode>> runBefore{8};                                           // by zerosLeft, 7 for more

  explicit CavlcCodes(const std::string& directory) {
    for (const auto& row : detail::readCsv(directory + "/h264_coeff_token.csv"))
      coeffToken[std::stoi(row[0])].push_back({row[3], std::stoi(row[2]) << 8 | std::stoi(row[1])});
    for (const auto& row : detail::readCsv(directory + "/h264_total_zeros.csv")) {
      auto& tables = row[0] == "4x4" ? totalZeros4x4 : row[0] == "2x2" ? totalZeros420 : totalZeros422;
      tables[std::size_t(std::stoi(row[1]))].push_back({row[3], std::stoi(row[2])});
    }
    for (const auto& row : detail::readCsv(directory + "/h264_run_before.csv"))
      runBefore[std::size_t(std::stoi(row[0]))].push_back({row[2], std::stoi(row[1])});
  }
};

// The tables of a decoder. Index 0 of the arrays by number is null.
class CavlcVlcTables {
 public:
  CavlcVlcTables(const CavlcCodes& codes, int width, int furtherWidth) {
    const auto add = [&](const std::vector<VlcCode>& list) {
      tables_.push_back(buildVlcTable(list, width, furtherWidth));
      return tables_.back().data();  // moving a vector keeps its data
    };
    const int classes[3] = {0, 2, 4};
    for (int i = 0; i < 3; ++i) coeffToken[i] = add(codes.coeffToken.at(classes[i]));
    coeffToken420 = add(codes.coeffToken.at(-1));
    coeffToken422 = add(codes.coeffToken.at(-2));
    for (std::size_t i = 1; i < 16; ++i) totalZeros4x4[i] = add(codes.totalZeros4x4[i]);
    for (std::size_t i = 1; i < 4; ++i) totalZeros420[i] = add(codes.totalZeros420[i]);
    for (std::size_t i = 1; i < 8; ++i) totalZeros422[i] = add(codes.totalZeros422[i]);
    for (std::size_t i = 1; i < 16; ++i) runBefore[i] = i > 7 ? runBefore[7] : add(codes.runBefore[i]);
  }
  CavlcVlcTables(const CavlcVlcTables&) = delete;
  CavlcVlcTables& operator=(const CavlcVlcTables&) = delete;

  const std::int32_t* coeffToken[3] = {};
  const std::int32_t* coeffToken420 = nullptr;
  const std::int32_t* coeffToken422 = nullptr;
  const std::int32_t* totalZeros4x4[16] = {};
  const std::int32_t* totalZeros420[4] = {};
  const std::int32_t* totalZeros422[8] = {};
  const std::int32_t* runBefore[16] = {};

 private:
  std::vector<std::vector<std::int32_t>> tables_;
};

// A scan order of H.264 tables 8-2 and 8-3, from coding order to raster.
inline std::vector<std::int32_t> h264Scan(const std::string& directory, const std::string& name) {
  std::vector<std::int32_t> scan;
  for (const auto& row : detail::readCsv(directory + "/h264_scans.csv"))
    if (row[0] == name) scan.push_back(std::stoi(row[4]));
  return scan;
}

}  // namespace zvptest
