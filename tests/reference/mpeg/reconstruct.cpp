#include "reference/mpeg/reconstruct.h"

#include <algorithm>

namespace reference::mpeg {
namespace {

struct Pair {
  int run, level;
};

int lowBitsSigned(std::uint32_t value, int bits) {
  const std::int64_t modulus = std::int64_t(1) << bits, low = value & std::uint32_t(modulus - 1);
  return int(low >= modulus / 2 ? low - modulus : low);
}

int sign(int x) { return x < 0 ? -1 : x > 0 ? 1 : 0; }

std::int32_t entryOf(BitReader& reader, const std::int32_t* table) {
  const Lookup found = lookUp(reader, table);
  reader.position -= found.spare();
  return found.entry;
}

Pair readPair(BlockSyntax syntax, BitReader& reader, const std::int32_t* table) {
  const std::int32_t entry = entryOf(reader, table);
  const auto field = std::uint32_t(entry);
  const int run = int(field >> 8 & 255);
  if (run != 255)
    return {run, syntax.mpeg2 && !syntax.intra ? lowBitsSigned(field >> 16, 16) : lowBitsSigned(field >> 16, 8)};
  const int escapedRun = int(reader.read(6));
  if (syntax.mpeg2) return {escapedRun, lowBitsSigned(reader.read(12), 12)};
  const std::uint32_t level = reader.read(8);
  if (level == 0) return {escapedRun, int(reader.read(8))};
  if (level == 128) return {escapedRun, int(reader.read(8)) - 256};
  return {escapedRun, lowBitsSigned(level, 8)};
}

std::int64_t readDifference(BlockSyntax syntax, BitReader& reader, const std::int32_t* table) {
  std::int32_t size = 0;
  if (syntax.mpeg2)
    size = lowBitsSigned(std::uint32_t(entryOf(reader, table)) >> 8, 8);
  else
    decodeOne(reader, table, size);
  if (size < 1 || size > 32) return 0;
  const std::int64_t bits = reader.read(size), half = std::int64_t(1) << (size - 1);
  return bits >= half ? bits : bits - (2 * half - 1);
}

enum class Odd { BySignOfValue, BySignOfLevel };

std::int16_t dequantized(BlockSyntax syntax, const BlockInput& input, int level, std::int32_t position, Odd odd) {
  const std::int64_t weight = input.weights != nullptr ? input.weights[position] : 16;
  const int steps = syntax.intra ? 2 * level : 2 * level + sign(level);
  const auto product = std::int32_t(std::uint32_t(std::uint64_t(steps * weight * input.scale)));
  auto value = std::int16_t(std::uint16_t(product / (syntax.mpeg2 ? 32 : 16)));
  if (syntax.mpeg2) return value;
  if (value % 2 == 0) {
    const int by = odd == Odd::BySignOfValue ? sign(value) : sign(level);
    value = std::int16_t(std::uint16_t(value - by));
  }
  return std::clamp<std::int16_t>(value, -2048, 2047);
}

}  // namespace

BlockResult reconstruct(BlockSyntax syntax, const BlockInput& input, BitReader& reader) {
  BlockResult result;
  std::int64_t sum = 0;
  int index = 0;
  if (syntax.intra) {
    const std::int64_t difference = readDifference(syntax, reader, input.firstTable);
    const std::int64_t dc = input.prediction + (syntax.mpeg2 ? difference : 8 * difference);
    result.prediction = std::int16_t(std::uint16_t(dc));
    result.block[0] =
        syntax.mpeg2 ? std::int16_t(std::uint16_t(std::uint64_t(result.prediction) << input.shift)) : result.prediction;
    sum = result.block[0];
  } else {
    Pair first{};
    const bool shortCode = reader.read(1) == 1;
    if (shortCode) {
      first = {0, reader.read(1) == 1 ? -1 : 1};
    } else {
      --reader.position;
      first = readPair(syntax, reader, input.firstTable);
    }
    result.scanEntries = std::max(64, first.run + 1);
    const std::int32_t position = input.scan[first.run];
    if (position >= 0 && position <= 63) {
      result.block[std::size_t(position)] = dequantized(syntax, input, first.level, position, Odd::BySignOfValue);
      sum = result.block[std::size_t(position)];
    }
    if (!syntax.mpeg2 && first.run >= 64) {
      result.good = true;
      result.size = first.run;
      return result;
    }
    index = first.run % 64;
  }
  for (;;) {
    const Pair next = readPair(syntax, reader, input.acTable);
    if (next.run == 254) break;
    index += next.run + 1;
    if (index > 63) return result;
    const std::int32_t position = input.scan[index];
    auto& element = result.block[std::size_t(position)];
    element = dequantized(syntax, input, next.level, position, syntax.intra ? Odd::BySignOfValue : Odd::BySignOfLevel);
    sum += element;
  }
  if (syntax.mpeg2 && sum % 2 == 0) result.block[63] = std::int16_t(result.block[63] + (result.block[63] % 2 ? -1 : 1));
  result.good = true;
  result.size = syntax.mpeg2 && !syntax.intra && index == 0 ? 1 : index;
  return result;
}

}  // namespace reference::mpeg
