#include "mpeg2/tables.h"

#include <zvpvc.h>

#include <cstring>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "common/zigzag.h"
#include "mpeg2/codes.h"

namespace mpeg2 {

namespace {

constexpr int endOfBlockRun = 254, escapeRun = 255;  // as the library has them

// The library's list of codes: those of one bit, those of two, and so on.
class CodeList {
 public:
  explicit CodeList(int valuesOfCode) : valuesOfCode_(valuesOfCode) {}
  void add(const std::string& bits, std::initializer_list<int> values) {
    if (lengths_.size() < bits.size()) lengths_.resize(bits.size());
    auto& codes = lengths_[bits.size() - 1];
    codes.push_back(std::stoi(bits, nullptr, 2));
    codes.insert(codes.end(), values);
  }
  std::vector<std::int32_t> list(std::initializer_list<int> widths) const {
    std::vector<std::int32_t> list = {0, int(widths.size())};
    list.insert(list.end(), widths);
    for (const auto& codes : lengths_) {
      list.push_back(int(codes.size()) / (1 + valuesOfCode_));
      list.insert(list.end(), codes.begin(), codes.end());
    }
    list.push_back(-1);
    return list;
  }
  int longest() const { return int(lengths_.size()); }

 private:
  int valuesOfCode_;
  std::vector<std::vector<std::int32_t>> lengths_;
};

// One level: the longest code has 11 bits.
Table valueTable(std::span<const Code> codes) {
  CodeList list(1);
  for (const Code& code : codes) list.add(code.bits, {code.value});
  std::int32_t* table;
  if (zvpiHuffmanTableInitAlloc_32s(list.list({list.longest()}).data(), &table) != zvpStatusOk) throw std::bad_alloc();
  return Table(table);
}

Table coefficientTable(std::span<const RunLevelCode> codes, const char* endOfBlock) {
  CodeList list(2);
  for (const RunLevelCode& code : codes)
    for (const bool negative : {false, true})
      list.add(code.bits + std::string(negative ? "1" : "0"), {code.run, negative ? -code.level : code.level});
  list.add(endOfBlock, {endOfBlockRun, 0});
  list.add(escapeCode, {escapeRun, 0});
  std::int32_t* table;
  if (zvpiHuffmanRunLevelTableInitAlloc_32s(list.list({9, list.longest() - 9}).data(), &table) != zvpStatusOk)
    throw std::bad_alloc();
  return Table(table);
}

}  // namespace

void FreeTable::operator()(std::int32_t* table) const { zvpiHuffmanTableFree_32s(table); }

Tables::Tables()
    : addressIncrement(valueTable(mpeg2::addressIncrement)),
      macroblockType{valueTable(macroblockTypeI), valueTable(macroblockTypeP), valueTable(macroblockTypeB)},
      codedBlockPattern(valueTable(mpeg2::codedBlockPattern)),
      motionCode(valueTable(mpeg2::motionCode)),
      dcSize{valueTable(dcSizeLuma), valueTable(dcSizeChroma)},
      coefficients{coefficientTable(dctCoefficientsZero, endOfBlockZero),
                   coefficientTable(dctCoefficientsOne, endOfBlockOne)} {
  for (int i = 0; i < 256; ++i) {
    scans[0][i] = i < 64 ? video::zigzag8x8[i] : -1;  // what is no position is not stored to
    scans[1][i] = i < 64 ? alternateScan[i] : -1;
  }
}

const Tables& Tables::instance() {
  static const Tables tables;
  return tables;
}

}  // namespace mpeg2
