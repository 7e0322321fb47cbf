// Model of the H.263 coefficient readers and writers, word by word on the standard's tables.
#pragma once

#include <functional>

#include "reference/event_codes.h"

namespace reference {

// bits starts at the cursor. A level is stored as value(level), its low 16 bits.
BlockResult h263ReadCoeffs(const EventCode& code, const std::string& bits, bool modQuant, int firstPosition,
                           const ScanTable& scan, const std::function<int(int)>& value);
// What a level becomes.
int h263Dequantize(int level, int QP, bool advIntra, bool modQuant);
// The DC of its eight bits; -1 for what is no code.
int h263Dc(int code);

std::string h263WriteCoeffs(const EventCode& code, const std::int16_t* coefficients, int countNonZero, bool modQuant,
                            int firstPosition, const ScanTable& scan);

// The escape of a level, signed.
std::string h263Escape(int last, int run, int level, bool modQuant);

}  // namespace reference
