#include "reference/mpeg4/coeffs.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace reference {
namespace {

using SignedEvent = CodedEvent;  // the level with its sign
using ReadEvent = std::function<std::optional<SignedEvent>(BitSource&)>;

SignedEvent signedEvent(const CodedEvent& event, BitSource& in) {
  return {event.last, event.run, in.bit() == '1' ? -event.level : event.level};
}

BlockResult readForward(const std::string& bits, int firstPosition, const ScanTable& scan, const LevelValue& value,
                        const ReadEvent& read) {
  BlockResult result = {zvpStatusBadVlcCode, {}, firstPosition - 1, 0, 0};
  BitSource in(bits);
  while (const auto event = read(in)) {
    result.indexLastNonZero += event->run + 1;
    result.examined = in.position();
    if (result.indexLastNonZero > 63) return result;
    result.bits = in.position();
    const std::size_t element = std::size_t(scan[std::size_t(result.indexLastNonZero)]);
    result.coefficients[element] = std::int16_t(value(event->level, element));
    if (event->last) {
      result.status = zvpStatusOk;
      return result;
    }
  }
  return result;
}

const char* const escape = "0000011";

std::optional<SignedEvent> readEvent(const EventCode& code, bool intra, BitSource& in) {
  if (!in.next(escape)) {
    const CodedEvent* event = in.event(code);
    if (!event) return {};
    return signedEvent(*event, in);
  }
  if (in.bit() == '0') {
    if (in.next(escape)) return signedEvent({0, 0, 255 + code.largestLevel(0, 0)}, in);
    const CodedEvent* event = in.event(code);
    if (!event) return {};
    return signedEvent({event->last, event->run, event->level + code.largestLevel(event->last, event->run)}, in);
  }
  if (in.bit() == '0') {
    if (in.next(escape)) return {};
    const CodedEvent* event = in.event(code);
    if (!event) return {};
    return signedEvent({event->last, event->run + code.largestRun(event->last, event->level) + 1, event->level}, in);
  }
  SignedEvent event;
  event.last = in.number(1);
  event.run = in.number(6);
  const bool marker = in.bit() == '1';
  event.level = in.signedNumber(12);
  if (!marker || in.bit() == '0' || event.level == -2048 || (intra && event.level == 0)) return {};
  return event;
}

// Of 30 bits.
std::optional<SignedEvent> reversibleEscape(const std::string& word) {
  BitSource in(word);
  if (!in.next("00001")) return {};
  SignedEvent event;
  event.last = in.number(1);
  event.run = in.number(6);
  const bool marker = in.bit() == '1';
  event.level = in.number(11);
  if (!marker || event.level == 0 || !in.next("10000")) return {};
  if (in.bit() == '1') event.level = -event.level;
  return event;
}

std::string writeEvents(const std::int16_t* coefficients, int countNonZero, int firstPosition, const ScanTable& scan,
                        const std::function<std::string(int last, int run, int level)>& put) {
  std::string bits;
  int run = 0, count = 0;
  for (int position = firstPosition; position < 64; ++position) {
    const int level = coefficients[scan[std::size_t(position)]];
    if (level == 0) {
      ++run;
      continue;
    }
    const bool last = ++count == countNonZero;
    bits += put(last, run, level);
    if (last) break;
    run = 0;
  }
  return bits;
}

std::string wordOf(const EventCode& code, int last, int run, int magnitude, bool negative) {
  const std::string* word = code.word(last, run, magnitude);
  return word ? *word + (negative ? '1' : '0') : "";
}

// By size.
const std::vector<std::string>& dcSizeCodes(bool chroma) {
  static const std::vector<std::string> luma = {"011",       "11",         "10",         "010",     "001",
                                                "0001",      "00001",      "000001",     "0000001", "00000001",
                                                "000000001", "0000000001", "00000000001"};
  static const std::vector<std::string> chrominance = {
      "11",      "10",       "01",        "001",        "0001",        "00001",       "000001",
      "0000001", "00000001", "000000001", "0000000001", "00000000001", "000000000001"};
  return chroma ? chrominance : luma;
}

}  // namespace

BlockResult mpeg4ReadCoeffs(const EventCode& code, bool intra, const std::string& bits, int firstPosition,
                            const ScanTable& scan, const LevelValue& value) {
  return readForward(bits, firstPosition, scan, value, [&](BitSource& in) { return readEvent(code, intra, in); });
}

BlockResult mpeg4ReadReversible(const EventCode& code, const std::string& bits, int firstPosition,
                                const ScanTable& scan) {
  return readForward(
      bits, firstPosition, scan, [](int level, std::size_t) { return level; },
      [&](BitSource& in) -> std::optional<SignedEvent> {
        const std::size_t start = in.position();
        if (in.next("00001")) {
          in.seek(start);
          return reversibleEscape(in.take(30));
        }
        const CodedEvent* event = in.event(code);
        if (!event) return {};
        return signedEvent(*event, in);
      });
}

BlockResult mpeg4ReadBackward(const EventCode& code, const std::string& bits, std::size_t last, int firstPosition) {
  BlockResult result = {zvpStatusBadVlcCode, {}, 63, 0, 0};
  const int start = firstPosition - 1;
  std::vector<SignedEvent> events;  // the block's, last one first
  std::size_t end = last + 1;       // behind the event to read
  int& q = result.indexLastNonZero;
  for (;;) {
    // The event that ends here: an escape, or the word that stands in front of the sign.
    std::optional<SignedEvent> event;
    std::size_t length = 0;
    if (bits.substr(end - 5, 4) == "0000") {
      event = reversibleEscape(bits.substr(end - 30, 30));
      length = 30;
    } else {
      for (int n = 3; n <= code.longest; ++n) {
        const auto found = code.events.find(bits.substr(end - 1 - std::size_t(n), std::size_t(n)));
        if (found == code.events.end()) continue;
        event = found->second;
        if (bits[end - 1] == '1') event->level = -event->level;
        length = std::size_t(n) + 1;
      }
    }
    if (!event) break;
    if (events.empty() && !event->last) break;
    if (!events.empty() && event->last) {
      // From the front, as a forward reader would have it; what leads past the block is left out.
      result.coefficients.fill(0);
      int position = start;
      for (auto each = events.rbegin(); each != events.rend(); ++each) {
        position += each->run + 1;
        if (position < 64) result.coefficients[std::size_t(position)] = std::int16_t(each->level);
      }
      q = position;
      result.status = zvpStatusOk;
      break;
    }
    if (start >= q) break;
    result.coefficients[std::size_t(q)] = std::int16_t(event->level);
    q -= event->run + 1;
    events.push_back(*event);
    end -= length;
  }
  result.bits = result.examined = last + 1 - end;
  return result;
}

std::string mpeg4Escape1(const EventCode& code, int last, int run, int level) {
  const int magnitude = std::abs(level) - code.largestLevel(last, run);
  const std::string word = wordOf(code, last, run, magnitude, level < 0);
  return word.empty() ? "" : escape + ("0" + word);
}

std::string mpeg4Escape2(const EventCode& code, int last, int run, int level) {
  const int rest = run - code.largestRun(last, std::abs(level)) - 1;
  const std::string word = wordOf(code, last, rest, std::abs(level), level < 0);
  return word.empty() ? "" : escape + ("10" + word);
}

std::string mpeg4Escape3(int last, int run, int level) {
  return escape + ("11" + bitsOf(last, 1)) + bitsOf(run, 6) + "1" + bitsOf(level, 12) + "1";
}

std::string mpeg4ReversibleEscape(int last, int run, int level) {
  return "00001" + bitsOf(last, 1) + bitsOf(run, 6) + "1" + bitsOf(std::abs(level), 11) + "10000" +
         (level < 0 ? "1" : "0");
}

std::string mpeg4WriteCoeffs(const EventCode& code, const std::int16_t* coefficients, int countNonZero,
                             int firstPosition, const ScanTable& scan) {
  return writeEvents(coefficients, countNonZero, firstPosition, scan, [&](int last, int run, int level) {
    for (const std::string& bits : {wordOf(code, last, run, std::abs(level), level < 0),
                                    mpeg4Escape1(code, last, run, level), mpeg4Escape2(code, last, run, level)})
      if (!bits.empty()) return bits;
    return mpeg4Escape3(last, run, level);
  });
}

std::string mpeg4WriteReversible(const EventCode& code, const std::int16_t* coefficients, int countNonZero,
                                 int firstPosition, const ScanTable& scan) {
  return writeEvents(coefficients, countNonZero, firstPosition, scan, [&](int last, int run, int level) {
    const std::string bits = wordOf(code, last, run, std::abs(level), level < 0);
    // The one event that has a word and takes the escape all the same.
    return bits.empty() || (last && run == 44) ? mpeg4ReversibleEscape(last, run, level) : bits;
  });
}

int mpeg4Dequantize(int level, int QP, int weight, int bitsPerPixel) {
  const int bound = 1 << (bitsPerPixel + 3);
  std::int64_t value;
  if (weight == 0) {
    const int odd = QP % 2 == 1 ? QP : QP - 1;
    value = level > 0 ? level * 2 * QP + odd : level * 2 * QP - odd;
  } else {
    const std::int64_t product = std::int64_t(2 * level + (level > 0 ? 1 : -1)) * weight * QP;
    value = product / 16;  // toward zero, as the shifts of both signs come out
  }
  return int(std::clamp<std::int64_t>(value, -bound, bound - 1));
}

DcResult mpeg4ReadDc(const std::string& bits, bool chroma) {
  BitSource in(bits);
  int size = 0;
  while (size <= 12 && !in.next(dcSizeCodes(chroma)[std::size_t(size)])) ++size;
  if (size > 12) return {zvpStatusBadVlcCode, 0, false, 0};
  const int value = in.number(size);
  const bool upper = size > 0 && value >> (size - 1);
  const int dc = size == 0 ? 0 : upper ? value : value - (1 << size) + 1;
  const bool marker = size <= 8 || in.bit() == '1';
  return {marker ? zvpStatusOk : zvpStatusBadVlcCode, dc, true, in.position()};
}

std::string mpeg4WriteDc(int dc, bool chroma) {
  int size = 0;
  while (std::abs(dc) >> size) ++size;
  return dcSizeCodes(chroma)[std::size_t(size)] + bitsOf(dc > 0 ? dc : dc - 1, size) + (size > 8 ? "1" : "");
}

}  // namespace reference
