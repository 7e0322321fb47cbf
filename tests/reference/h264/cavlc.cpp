#include "reference/h264/cavlc.h"

#include <cstdlib>
#include <cstring>

#include "zvpvc.h"

namespace reference::h264 {
namespace {

constexpr std::int32_t invalid = 0xF0F1;

std::int32_t lookUp(BitReader& reader, const std::int32_t* table) {
  std::size_t head = 0;
  for (;;) {
    const std::uint32_t bits = reader.read(table[head]);
    const std::int32_t entry = table[head + 1 + bits];
    if (entry & 0x80) {
      head = std::size_t(entry >> 8);
      continue;
    }
    reader.giveBack(entry & 0xff);
    return entry >> 8;
  }
}

}  // namespace

std::uint32_t BitReader::read(std::int32_t n) {
  const auto touch = [this](const std::uint32_t* w) {
    if (furthest == nullptr || w > furthest) furthest = w;
    std::uint32_t value;
    std::memcpy(&value, w, 4);
    return value;
  };
  const std::int32_t t = offset - n;
  std::uint32_t value;
  if (t >= 0) {
    value = touch(word) >> ((t + 1) & 31);
    offset = t;
  } else {
    value = touch(word) << ((-t - 1) & 31);
    if (t < -1) value += touch(word + 1) >> ((t + 32) & 31) >> 1;
    offset = t + 32;
    ++word;
  }
  if (n == 32) return value;
  return value & ((1u << (n & 31)) - 1u);
}

void BitReader::giveBack(std::int32_t n) {
  offset += n;
  if (offset > 31) {
    offset -= 32;
    --word;
  }
}

template <class Element>
std::int32_t decodeCavlc(CavlcShape shape, BitReader& reader, const CavlcTables& tables, std::int16_t& numCoeff,
                         Element*& dst) {
  static const int incrementAbove[6] = {0, 3, 6, 12, 24, 48};
  static const int rasterOf422[8] = {0, 2, 1, 4, 6, 3, 5, 7};
  const int elements = shape == CavlcShape::Residual4x4 ? 16 : shape == CavlcShape::ChromaDc420 ? 4 : 8;
  const bool is4x4 = shape == CavlcShape::Residual4x4, tests = shape != CavlcShape::ChromaDc422;
  const BitReader entry = reader;
  const auto bad = [&] {
    reader.word = entry.word;
    reader.offset = entry.offset;
    return std::int32_t(zvpStatusBadVlcInput);
  };

  int total, ones;
  if (is4x4 && tables.coeffToken == nullptr) {
    const int code = int(reader.read(6));
    total = (code >> 2) + 1;
    ones = code & 3;
    if (code == 3) total = ones = 0;
  } else {
    const std::int32_t value = lookUp(reader, tables.coeffToken);
    if (value == invalid) return bad();
    ones = value & 0xff;
    total = (value >> 8) & 0xff;
  }
  numCoeff = std::int16_t(total);

  std::int32_t levels[16] = {};
  if (ones > 0) {
    const std::uint32_t signs = reader.read(ones);
    for (int i = 0; i < ones; ++i) levels[i % 16] = (signs >> ((ones - 1 - i) & 31)) & 1 ? -1 : 1;
  }
  if (total == 0) return zvpStatusOk;
  for (int i = 0; i < elements; ++i) dst[i] = 0;

  int suffixLength = total > 10 && ones < 3 ? 1 : 0;
  int bonus = ones < 3 ? 1 : 0;
  std::int32_t previous = 0;
  for (int i = 0; i < total - ones; ++i) {
    if (i == 1 && previous >= 4)
      suffixLength = 2;
    else if (suffixLength < 6 && (previous & 0xffff) > incrementAbove[suffixLength])
      ++suffixLength;
    std::uint32_t prefix = 0;
    while (reader.read(1) == 0) ++prefix;
    std::int32_t level;
    if (prefix < 16) {
      int bits, base;
      if (suffixLength == 0) {
        bits = prefix < 14 ? 0 : prefix == 14 ? 4 : 12;
        base = prefix < 14 ? 1 : prefix == 14 ? 8 : 16;
      } else {
        bits = prefix < 15 ? suffixLength : 12;
        base = 1 + int(prefix << (suffixLength - 1));
      }
      const int c = bits != 0 ? int(reader.read(bits)) : int(prefix);
      const int sum = base + bonus + (c >> 1);
      level = sum & 0xffff;
      if (c % 2 != 0) level = -level;
      previous = sum;
    } else {
      const std::uint32_t c = reader.read(std::int32_t(prefix - 3));
      const std::uint32_t power = 1u << ((prefix - 3) & 31);
      const std::uint32_t sum =
          (suffixLength == 0 ? 15u : 0u) + 2u * unsigned(bonus) + power + (15u << suffixLength) + c - 4096u;
      const int code = int(sum & 0xffff);
      level = code % 2 != 0 ? (-code - 1) >> 1 : (code + 2) >> 1;
      previous = std::abs(level);
    }
    levels[(ones + i) % 16] = level;
    bonus = 0;
  }

  std::int32_t zerosLeft = 0;
  if (total < tables.maxNumCoeff) {
    if (tests && tables.totalZeros[total] == nullptr) return zvpStatusNullPointer;
    zerosLeft = lookUp(reader, tables.totalZeros[total]);
    if (zerosLeft == invalid) return bad();
  }
  for (int left = total; left >= 1; --left) {
    const int position = (elements - tables.maxNumCoeff) + zerosLeft + left - 1;
    std::int32_t run = zerosLeft;
    if (left >= 2 && zerosLeft >= 1) {
      if (tests && tables.runBefore[zerosLeft] == nullptr) return zvpStatusNullPointer;
      run = lookUp(reader, tables.runBefore[zerosLeft]);
      if (run == invalid) return bad();
    }
    if (position >= 0 && position < elements) {
      const int element = shape == CavlcShape::Residual4x4   ? tables.scan[position]
                          : shape == CavlcShape::ChromaDc422 ? rasterOf422[position]
                                                             : position;
      dst[element] = Element(levels[(total - left) % 16]);
    }
    if (is4x4 && run > zerosLeft) run = zerosLeft;
    zerosLeft -= run;
  }
  dst += elements;
  return zvpStatusOk;
}

template std::int32_t decodeCavlc(CavlcShape, BitReader&, const CavlcTables&, std::int16_t&, std::int16_t*&);
template std::int32_t decodeCavlc(CavlcShape, BitReader&, const CavlcTables&, std::int16_t&, std::int32_t*&);

std::int32_t decodeExpGolomb(BitReader& reader, std::uint32_t& value) {
  const BitReader entry = reader;
  int zeros = 0;
  while (reader.read(1) == 0)
    if (++zeros > 32) {
      reader.word = entry.word;
      reader.offset = entry.offset;
      return zvpStatusBadVlcInput;
    }
  std::uint64_t code = 1;
  for (int i = 0; i < zeros; ++i) code = 2 * code + reader.read(1);
  // With 32 zeros the leading 1 is shifted by 0 places, not by 32: the count is taken modulo 32.
  value = std::uint32_t(zeros == 32 ? code + 1 : code);
  return zvpStatusOk;
}

}  // namespace reference::h264
