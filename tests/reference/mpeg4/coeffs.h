// Model of the MPEG-4 coefficient readers and writers, word by word on the standard's tables.
#pragma once

#include <functional>

#include "reference/event_codes.h"

namespace reference {

// What is stored for a level at an element of the block; its low 16 bits are kept.
using LevelValue = std::function<int(int level, std::size_t element)>;

// By table B-16 (intra) or B-17. bits starts at the cursor.
BlockResult mpeg4ReadCoeffs(const EventCode& code, bool intra, const std::string& bits, int firstPosition,
                            const ScanTable& scan, const LevelValue& value);
// By table B-23.
BlockResult mpeg4ReadReversible(const EventCode& code, const std::string& bits, int firstPosition,
                                const ScanTable& scan);
// By table B-23, backward from the sign bit at index `last` of bits. The result's bits is what the block takes, in
// front of that index and with it; its coefficients are in coded order; element 0 is not looked after where the first
// position is 1. There must be enough bits in front.
BlockResult mpeg4ReadBackward(const EventCode& code, const std::string& bits, std::size_t last, int firstPosition);

std::string mpeg4WriteCoeffs(const EventCode& code, const std::int16_t* coefficients, int countNonZero,
                             int firstPosition, const ScanTable& scan);
std::string mpeg4WriteReversible(const EventCode& code, const std::int16_t* coefficients, int countNonZero,
                                 int firstPosition, const ScanTable& scan);

// Single escapes. Those of type 1 and 2 exist only where the rest has a word; else the string is empty.
std::string mpeg4Escape1(const EventCode& code, int last, int run, int level);
std::string mpeg4Escape2(const EventCode& code, int last, int run, int level);
std::string mpeg4Escape3(int last, int run, int level);
std::string mpeg4ReversibleEscape(int last, int run, int level);

// Inverse quantization of an inter level; a weight of 0 stands for no matrix.
int mpeg4Dequantize(int level, int QP, int weight, int bitsPerPixel);

struct DcResult {
  zvpStatus status;
  int value;
  bool written;      // with a marker of 0 the value is written nevertheless
  std::size_t bits;  // that the code, the value and the marker take
};
DcResult mpeg4ReadDc(const std::string& bits, bool chroma);
std::string mpeg4WriteDc(int dc, bool chroma);

}  // namespace reference
