#include "reference/dv/huffman.h"

#include <deque>

namespace reference::dv {
namespace {

using Bits = std::deque<bool>;

int takeBits(Bits& bits, int count) {
  int value = 0;
  for (; count > 0; --count) {
    value = 2 * value + bits.front();
    bits.pop_front();
  }
  return value;
}

struct Block {
  std::int16_t* coefficients;
  const std::uint32_t* scan;
  Bits saved;
  int position = 0;
  bool endOfBlock = false;
};

// The next code in whole, or false: then it is not there, or there is none that begins so.
bool takeCode(Bits& bits, const Codes& codes, std::string& word, int& run, int& level) {
  word.clear();
  for (const bool bit : bits) {
    word += bit ? '1' : '0';
    if (word == "1111111" || word.size() > 13) break;
    const auto found = codes.find(word);
    if (found != codes.end()) {
      run = found->second.first;
      level = found->second.second;
      takeBits(bits, int(word.size()));
      return true;
    }
  }
  if (word != "1111111" || bits.size() < 16) return false;
  takeBits(bits, 7);
  run = 0;
  level = takeBits(bits, 8);
  if (takeBits(bits, 1)) level = -level;
  return true;
}

// 1 done with bits left, 0 done without, -1 not done.
int decodeAC(Block& block, Bits& bits, const Codes& codes, int limit) {
  bits.insert(bits.begin(), block.saved.begin(), block.saved.end());
  block.saved.clear();
  while (block.position < limit) {
    std::string word;
    int run, level;
    if (!takeCode(bits, codes, word, run, level)) {
      block.saved.swap(bits);
      return -1;
    }
    if (block.position + run + 1 >= limit) {
      if (word.compare(0, 4, "1111") != 0) block.endOfBlock = word == "0110";
      break;
    }
    block.position += run + 1;
    block.coefficients[block.scan[block.position]] = std::int16_t(level * 64);
  }
  return bits.empty() ? 0 : 1;
}

// Blocks read from spaces, each in order, until one of the two runs out.
void share(std::deque<Block*>& blocks, std::deque<Bits*>& spaces, const Codes& codes, int limit) {
  while (!blocks.empty() && !spaces.empty()) {
    const int result = decodeAC(*blocks.front(), *spaces.front(), codes, limit);
    if (result != -1) blocks.pop_front();
    if (result != 1) spaces.pop_front();
  }
}

}  // namespace

std::vector<std::uint32_t> tableEntries(const Codes& codes, int bits, int prefixBits) {
  std::vector<std::uint32_t> entries;
  for (int index = 0; index < 1 << bits; ++index) {
    std::string word;
    std::uint32_t entry = 255;
    for (int i = bits - 1; i >= 0; --i) {
      word += index >> i & 1 ? '1' : '0';
      const auto found = codes.find(word);
      if (found == codes.end()) continue;
      const auto [run, level] = found->second;
      entry = std::uint32_t(std::uint16_t(level * 64)) * 65536 + std::uint32_t(run & 255) * 256 +
              std::uint32_t(int(word.size()) + prefixBits);
    }
    entries.push_back(entry);
  }
  return entries;
}

const Format& formatDV() {
  static const Format format = {{4, 18, 32, 46, 60, 70}, {14, 14, 14, 14, 10, 10}, true};
  return format;
}
const Format& formatDV100() {
  static const Format format = {{4, 14, 24, 34, 44, 54, 64, 72}, {10, 10, 10, 10, 10, 10, 8, 8}, false};
  return format;
}

Segment decodeSegment(const Format& format, const Codes& codes, const std::uint8_t* stream,
                      const std::vector<std::uint32_t>& scans, int limit, bool onePass) {
  const int blocksOfMacroblock = int(format.at.size()), count = 5 * blocksOfMacroblock;
  Segment segment;
  segment.coefficients.resize(std::size_t(64 * count));
  std::vector<Block> blocks(static_cast<std::size_t>(count));
  std::vector<Bits> spaces(static_cast<std::size_t>(count));
  std::deque<Block*> unfinished;
  std::deque<Bits*> left;
  for (int m = 0; m < 5; ++m) {
    std::deque<Block*> unfinishedHere;
    std::deque<Bits*> leftHere;
    for (int b = 0; b < blocksOfMacroblock; ++b) {
      const auto i = std::size_t(m * blocksOfMacroblock + b);
      Block& block = blocks[i];
      Bits& bits = spaces[i];
      const std::uint8_t* space = stream + 80 * m + format.at[std::size_t(b)];
      for (int k = 0; k < 8 * format.bytes[std::size_t(b)]; ++k) bits.push_back(space[k / 8] >> (7 - k % 8) & 1);
      block.coefficients = segment.coefficients.data() + 64 * i;
      const int dc = takeBits(bits, 9), mode = takeBits(bits, 1);
      takeBits(bits, 2);
      block.coefficients[0] = std::int16_t((dc < 256 ? dc : dc - 512) * 128);
      block.scan = scans.data() + (format.twoScans ? 64 * mode : 0);
      const int result = decodeAC(block, bits, codes, limit);
      if (result == 1) leftHere.push_back(&bits);
      if (result == -1) unfinishedHere.push_back(&block);
    }
    if (onePass) continue;
    share(unfinishedHere, leftHere, codes, limit);
    unfinished.insert(unfinished.end(), unfinishedHere.begin(), unfinishedHere.end());
    left.insert(left.end(), leftHere.begin(), leftHere.end());
  }
  share(unfinished, left, codes, limit);
  for (int i = 0; i < count; ++i) {
    const std::uint8_t* macroblock = stream + 80 * (i / blocksOfMacroblock);
    const Block& block = blocks[std::size_t(i)];
    segment.params.push_back(std::uint32_t(block.endOfBlock ? 1 : 0) +
                             (macroblock[format.at[std::size_t(i % blocksOfMacroblock)] + 1] & 112u) +
                             std::uint32_t(block.position) * 256 + (macroblock[3] & 15u) * 65536);
  }
  return segment;
}

}  // namespace reference::dv
