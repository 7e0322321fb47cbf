#include "reference/h263/coeffs.h"

#include <algorithm>
#include <cstdlib>

namespace reference {

BlockResult h263ReadCoeffs(const EventCode& code, const std::string& bits, bool modQuant, int firstPosition,
                           const ScanTable& scan, const std::function<int(int)>& value) {
  BlockResult result = {zvpStatusBadVlcCode, {}, firstPosition - 1, 0, 0};
  BitSource in(bits);
  for (;;) {
    int last, run, level;
    if (in.next("0000011")) {
      last = in.number(1);
      run = in.number(6);
      level = in.signedNumber(8);
      if (level == 0 || (level == -128 && !modQuant)) return result;
      if (level == -128) {
        const int low = in.number(5);
        level = in.signedNumber(6) * 32 + low;
      }
    } else {
      const CodedEvent* event = in.event(code);
      if (!event) return result;
      last = event->last;
      run = event->run;
      level = in.bit() == '1' ? -event->level : event->level;
    }
    result.examined = in.position();
    if (result.indexLastNonZero + run + 1 > 63) return result;
    result.bits = in.position();
    result.indexLastNonZero += run + 1;
    result.coefficients[std::size_t(scan[std::size_t(result.indexLastNonZero)])] = std::int16_t(value(level));
    if (last) {
      result.status = zvpStatusOk;
      return result;
    }
  }
}

int h263Dequantize(int level, int QP, bool advIntra, bool modQuant) {
  if (advIntra) return level * 2 * QP;
  const int odd = QP % 2 == 1 ? QP : QP - 1;
  const int value = level >= 0 ? level * 2 * QP + odd : level * 2 * QP - odd;
  return modQuant ? value : std::clamp(value, -2048, 2047);
}

int h263Dc(int code) {
  if (code == 0 || code == 128) return -1;
  return code == 255 ? 128 : code;
}

std::string h263Escape(int last, int run, int level, bool modQuant) {
  const std::string head = "0000011" + bitsOf(last, 1) + bitsOf(run, 6);
  if (modQuant && std::abs(level) >= 128) return head + "10000000" + bitsOf(level, 5) + bitsOf(level >> 5, 6);
  return head + bitsOf(level, 8);
}

std::string h263WriteCoeffs(const EventCode& code, const std::int16_t* coefficients, int countNonZero, bool modQuant,
                            int firstPosition, const ScanTable& scan) {
  std::string bits;
  // magnitude chooses the word and the form of the escape, value gives the sign and the escape's bits.
  const auto put = [&](int last, int run, int magnitude, int value) {
    if (const std::string* word = code.word(last, run, magnitude)) {
      bits += *word + (value < 0 ? '1' : '0');
      return;
    }
    bits += "0000011" + bitsOf(last, 1) + bitsOf(run, 6);
    if (modQuant && magnitude >= 128)
      bits += "10000000" + bitsOf(value, 5) + bitsOf(value >> 5, 6);
    else
      bits += bitsOf(value, 8);
  };
  int events = 0, run = 0, magnitude = 0, value = 0;
  bool any = false;
  for (int position = firstPosition; position < 64; ++position) {
    value = coefficients[scan[std::size_t(position)]];
    if (value == 0) {
      ++run;
      continue;
    }
    any = true;
    magnitude = std::abs(value);
    if (events == countNonZero - 1) break;
    put(0, run, magnitude, value);
    ++events;
    run = 0;
  }
  if (any) put(1, run, magnitude, value);
  return bits;
}

}  // namespace reference
