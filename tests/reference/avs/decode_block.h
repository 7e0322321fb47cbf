// Model of the AVS block decoders, bit by bit, on tables read from the standard's lists.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace reference {

enum class AvsBlockKind { IntraLuma, InterLuma, Chroma };

// (run, level) by code number, and RefAbsLevel by run, by the table's name.
struct AvsTables {
  std::map<std::string, std::vector<std::pair<int, int>>> codes;
  std::map<std::string, std::vector<int>> refAbsLevel;
};

struct AvsStage {
  std::string table;
  int k, limit;
};
// The stage that a block begins in, and the one that a level of this magnitude leads to.
AvsStage avsFirstStage(AvsBlockKind kind);
AvsStage avsStageOf(AvsBlockKind kind, int magnitude);
// The level that the second code of an escape counts from.
int avsEscapeBase(AvsBlockKind kind, const AvsTables& tables, const AvsStage& stage, int run);

const int* avsScan(bool field);

struct AvsResult {
  std::int16_t coefficients[64];
  int count;
  std::size_t bits;  // consumed
};
// stream holds one bit an element, from the cursor on. Bits behind its end read as 1.
AvsResult avsDecodeBlock(AvsBlockKind kind, const AvsTables& tables, const std::vector<bool>& stream, int scanType);

}  // namespace reference
