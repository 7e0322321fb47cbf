// The tables of the coding standards in tests/data/tables: lines of '#' comments, a header row, data without quotes.
#pragma once

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zvptest {

using CsvRow = std::map<std::string, std::string>;  // by the name in the header row

inline std::vector<std::string> splitCells(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream in(line);
  for (std::string cell; std::getline(in, cell, ',');) cells.push_back(cell);
  if (!line.empty() && line.back() == ',') cells.emplace_back();
  return cells;
}

// All rows of tests/data/tables/<name>.csv. Throws if the file is not there or holds no row.
inline std::vector<CsvRow> readTable(const std::string& name) {
  std::ifstream in(std::string(ZVP_TEST_DATA "/tables/") + name + ".csv");
  std::vector<std::string> header;
  std::vector<CsvRow> rows;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    const auto cells = splitCells(line);
    if (header.empty()) {
      header = cells;
      continue;
    }
    CsvRow row;
    for (std::size_t i = 0; i < header.size(); ++i) row[header[i]] = i < cells.size() ? cells[i] : "";
    rows.push_back(row);
  }
  if (rows.empty()) throw std::runtime_error("no table " + name);
  return rows;
}

}  // namespace zvptest
