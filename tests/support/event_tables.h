// The event codes and scans of tests/data/tables in the form that the models take.
#pragma once

#include "reference/event_codes.h"
#include "support/csv.h"

namespace zvptest {

// h263_tcoef, h263_adv_intra_tcoef, mpeg4_b16_intra or mpeg4_b17_inter.
inline reference::EventCode readEventCode(const std::string& name) {
  reference::EventCode code;
  for (const auto& row : readTable(name))
    code.add(row.at("code_bits"), {std::stoi(row.at("last")), std::stoi(row.at("run")), std::stoi(row.at("level"))});
  return code;
}

inline const reference::EventCode& h263Code(bool advIntra) {
  static const reference::EventCode plain = readEventCode("h263_tcoef");
  static const reference::EventCode annexI = readEventCode("h263_adv_intra_tcoef");
  return advIntra ? annexI : plain;
}

// Table B-16 for intra blocks, B-17 for inter blocks.
inline const reference::EventCode& mpeg4Code(bool intra) {
  static const reference::EventCode b16 = readEventCode("mpeg4_b16_intra");
  static const reference::EventCode b17 = readEventCode("mpeg4_b17_inter");
  return intra ? b16 : b17;
}

// Table B-23.
inline const reference::EventCode& reversibleCode(bool intra) {
  static const std::array<reference::EventCode, 2> codes = [] {
    std::array<reference::EventCode, 2> both;
    for (const auto& row : readTable("mpeg4_b23_rvlc"))
      for (const std::string kind : {"inter", "intra"})
        both[kind == "intra"].add(
            row.at("code_bits"),
            {std::stoi(row.at(kind + "_last")), std::stoi(row.at(kind + "_run")), std::stoi(row.at(kind + "_level"))});
    return both;
  }();
  return codes[intra];
}

enum class ScanName { Zigzag, Vertical, Horizontal, Raster };

inline const reference::ScanTable& scanTable(ScanName name) {
  static const std::array<reference::ScanTable, 4> all = [] {
    std::array<reference::ScanTable, 4> scans;
    for (std::size_t i = 0; i < 64; ++i) scans[3][i] = int(i);
    const char* const names[] = {"mpeg_zigzag", "mpeg_alternate_vertical", "mpeg_alternate_horizontal"};
    for (const auto& row : readTable("scans"))
      for (std::size_t s = 0; s < 3; ++s)
        if (row.at("name") == names[s])
          for (std::size_t i = 0; i < 64; ++i)
            scans[s][i] = std::stoi(row.at(std::string("p").append(std::to_string(i))));
    return scans;
  }();
  return all[std::size_t(name)];
}

}  // namespace zvptest
