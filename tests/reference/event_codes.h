// Codes of (LAST, RUN, LEVEL) events as words of '0' and '1', and bits to read from: what the models of H.263 and
// MPEG-4 coefficient coding share.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "zvpvc.h"

namespace reference {

struct CodedEvent {
  int last, run, level;
};

// One table of a standard. Words stop short of the sign.
struct EventCode {
  std::map<std::string, CodedEvent> events;
  std::map<std::array<int, 3>, std::string> words;  // by LAST, RUN, LEVEL
  int longest = 0;
  void add(const std::string& word, const CodedEvent& event) {
    events[word] = event;
    words[{event.last, event.run, event.level}] = word;
    if (int(word.size()) > longest) longest = int(word.size());
  }
  const std::string* word(int last, int run, int level) const {
    const auto found = words.find({last, run, level});
    return found == words.end() ? nullptr : &found->second;
  }
  int largestLevel(int last, int run) const {
    int level = 0;
    while (word(last, run, level + 1)) ++level;
    return level;
  }
  int largestRun(int last, int level) const {
    int run = -1;
    while (word(last, run + 1, level)) ++run;
    return run;
  }
};

// Bits behind the end read as 0.
class BitSource {
 public:
  explicit BitSource(const std::string& bits, std::size_t position = 0) : bits_(bits), position_(position) {}
  char bit() {
    const std::size_t at = position_++;
    return at < bits_.size() ? bits_[at] : '0';
  }
  std::string take(int n) {
    std::string taken;
    for (int i = 0; i < n; ++i) taken += bit();
    return taken;
  }
  int number(int n) {
    int value = 0;
    for (int i = 0; i < n; ++i) value = 2 * value + (bit() == '1');
    return value;
  }
  int signedNumber(int n) {
    const int value = number(n);
    return value >= 1 << (n - 1) ? value - (1 << n) : value;
  }
  // Is this what comes next? Passes over it then.
  bool next(const std::string& word) {
    const std::size_t start = position_;
    if (take(int(word.size())) == word) return true;
    position_ = start;
    return false;
  }
  // The event whose word comes next, or null.
  const CodedEvent* event(const EventCode& code) {
    const std::size_t start = position_;
    std::string word;
    while (int(word.size()) < code.longest) {
      word += bit();
      const auto found = code.events.find(word);
      if (found != code.events.end()) return &found->second;
    }
    position_ = start;
    return nullptr;
  }
  std::size_t position() const { return position_; }
  void seek(std::size_t position) { position_ = position; }

 private:
  const std::string& bits_;
  std::size_t position_;
};

// The low n bits of value.
inline std::string bitsOf(int value, int n) {
  std::string bits;
  for (int i = n - 1; i >= 0; --i) bits += (unsigned(value) >> i & 1) ? '1' : '0';
  return bits;
}

using ScanTable = std::array<int, 64>;  // from position to element

struct BlockResult {
  zvpStatus status;
  std::array<std::int16_t, 64> coefficients;
  int indexLastNonZero;
  std::size_t bits;      // that the block takes; of a broken one, up to the event that breaks it
  std::size_t examined;  // the same, with an event that is good in itself but leads past the block
};

}  // namespace reference
