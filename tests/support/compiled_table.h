// Compiled code tables that go away by themselves.
#pragma once

#include <memory>

#include "support/code_list.h"
#include "zvpvc.h"

namespace zvptest {

struct FreeTable {
  void operator()(std::int32_t* table) const { zvpiHuffmanTableFree_32s(table); }
};
using CompiledTable = std::unique_ptr<std::int32_t[], FreeTable>;

// Null if building fails.
inline CompiledTable compiledValues(const CodeSet& codes, const std::vector<int>& widths) {
  std::int32_t* table = nullptr;
  zvpiHuffmanTableInitAlloc_32s(codeList(codes, widths, 2).data(), &table);
  return CompiledTable(table);
}
inline CompiledTable compiledPairs(const CodeSet& codes, const std::vector<int>& widths) {
  std::int32_t* table = nullptr;
  zvpiHuffmanRunLevelTableInitAlloc_32s(codeList(codes, widths, 3).data(), &table);
  return CompiledTable(table);
}

}  // namespace zvptest
