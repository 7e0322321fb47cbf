// The AVS 2D-VLC tables of tests/data/tables in the form that the model takes.
#pragma once

#include "reference/avs/decode_block.h"
#include "support/csv.h"

namespace zvptest {

inline const reference::AvsTables& avsTables() {
  static const reference::AvsTables all = [] {
    reference::AvsTables tables;
    for (const auto& row : readTable("avs_vlc")) {
      auto& codes = tables.codes[row.at("table")];
      codes.resize(64, {64, 0});
      codes[std::size_t(std::stoi(row.at("code_number")))] = {std::stoi(row.at("run")), std::stoi(row.at("level"))};
    }
    for (const auto& row : readTable("avs_ref_abs_level")) {
      auto& levels = tables.refAbsLevel[row.at("table")];
      levels.resize(32, 0);
      levels[std::size_t(std::stoi(row.at("run")))] = std::stoi(row.at("ref_abs_level"));
    }
    return tables;
  }();
  return all;
}

}  // namespace zvptest
