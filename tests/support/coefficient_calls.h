// What the tests of coefficient readers and writers with a cursor over bytes do alike. A call is given as a function of
// what all members take: read(ppByte, pOffset, coefficients, pIndex), write(coefficients, ppByte, pOffset, count) and the
// same for a DC, readDc(ppByte, pOffset, pDc) and writeDc(ppByte, pOffset).
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/byte_stream.h"
#include "support/compare.h"
#include "support/placed.h"
#include "zvpvc.h"

namespace zvptest {

// The block that a reader makes of the bits from bit start on, all of which it takes. What it must not write is 77.
template <class Read>
void checkReadWhole(const std::string& bits, std::size_t start, const std::vector<std::int16_t>& expected,
                    int expectedIndex, Rng& rng, Read read) {
  InputStream stream(bits, start, readableBytes(bits.size()), rng.guard());
  Placed<std::int16_t> coefficients(std::vector<std::int16_t>(64, 77), rng);
  std::int32_t index = -7;
  ASSERT_EQ(read(&stream.byte, &stream.offset, coefficients.data(), &index), zvpStatusOk);
  ASSERT_TRUE(sameArray(coefficients.values().data(), expected.data(), 64));
  ASSERT_EQ(index, expectedIndex);
  ASSERT_EQ(stream.position(), bits.size());
}

// The bits that a writer makes of a block, from any bit on, and nothing else.
template <class Write>
void checkWritten(const std::string& bits, const std::vector<std::int16_t>& block, int count, Rng& rng, Write write) {
  const std::size_t start = std::size_t(rng.range(0, 15));
  OutputStream stream(bits, start, rng);
  Placed<std::int16_t> coefficients(block, rng);
  coefficients.readOnly();
  ASSERT_EQ(write(coefficients.data(), &stream.byte, &stream.offset, count), zvpStatusOk);
  ASSERT_TRUE(sameBytes(stream.bytes(), stream.expected()));
  ASSERT_EQ(stream.position(), start + bits.size());
}

// The reader takes what the writer makes of a block, and ends where it ended. What neither looks at is as in the block.
template <class Write, class Read>
void checkReadBack(const std::vector<std::int16_t>& block, int count, Write write, Read read) {
  std::uint8_t bytes[300] = {};
  std::uint8_t* out = bytes;
  std::int32_t outOffset = 3;
  ASSERT_EQ(write(block.data(), &out, &outOffset, count), zvpStatusOk);
  const std::uint8_t* in = bytes;
  std::int32_t inOffset = 3, index;
  std::int16_t back[64] = {block[0]};
  ASSERT_EQ(read(&in, &inOffset, back, &index), zvpStatusOk);
  ASSERT_TRUE(sameArray(back, block.data(), 64));
  ASSERT_EQ(in, out);
  ASSERT_EQ(inOffset, outOffset);
}

// A block in which the writer finds nothing leaves cursor and bytes as they are, at every bit.
template <class Write> void expectNothingWritten(const std::int16_t* block, int count, Write write) {
  std::uint8_t bytes[2] = {0xab, 0xcd};
  for (std::int32_t start = 0; start < 8; ++start) {
    std::uint8_t* byte = bytes;
    std::int32_t offset = start;
    EXPECT_EQ(write(block, &byte, &offset, count), zvpStatusOk);
    EXPECT_EQ(byte, bytes);
    EXPECT_EQ(offset, start);
  }
  EXPECT_EQ(bytes[0], 0xab);
  EXPECT_EQ(bytes[1], 0xcd);
}

// ---- refusals: each null pointer, before a bad offset; then each bad offset; nothing is written ------------------

inline constexpr std::int32_t badOffsets[] = {8, -1, 256, INT32_MIN, INT32_MAX};

template <class Read> void expectReaderRefusals(Read read) {
  const std::vector<std::uint8_t> bytes(64, 0x55);
  const std::uint8_t* byte = bytes.data() + 32;
  const std::uint8_t* null = nullptr;
  std::int16_t coefficients[64] = {77};
  std::int32_t index = 99;
  for (std::int32_t offset : {7, 8}) {
    EXPECT_EQ(read(nullptr, &offset, coefficients, &index), zvpStatusNullPointer);
    EXPECT_EQ(read(&null, &offset, coefficients, &index), zvpStatusNullPointer);
    EXPECT_EQ(read(&byte, nullptr, coefficients, &index), zvpStatusNullPointer);
    EXPECT_EQ(read(&byte, &offset, nullptr, &index), zvpStatusNullPointer);
    EXPECT_EQ(read(&byte, &offset, coefficients, nullptr), zvpStatusNullPointer);
  }
  for (const std::int32_t bad : badOffsets) {
    std::int32_t offset = bad;
    EXPECT_EQ(read(&byte, &offset, coefficients, &index), zvpStatusBadBitOffset);
    EXPECT_EQ(offset, bad);
  }
  EXPECT_EQ(byte, bytes.data() + 32);
  EXPECT_EQ(index, 99);
  EXPECT_EQ(coefficients[0], 77);
}

// Behind these each count that is out of range.
template <class Write> void expectWriterRefusals(int largestCount, Write write) {
  const std::int16_t coefficients[64] = {1, 1};
  std::uint8_t out[8] = {0x77};
  std::uint8_t* byte = out;
  std::uint8_t* null = nullptr;
  for (const int count : {1, 0})
    for (const std::int32_t bad : badOffsets) {
      std::int32_t offset = bad;
      EXPECT_EQ(write(nullptr, &byte, &offset, count), zvpStatusNullPointer);
      EXPECT_EQ(write(coefficients, nullptr, &offset, count), zvpStatusNullPointer);
      EXPECT_EQ(write(coefficients, &null, &offset, count), zvpStatusNullPointer);
      EXPECT_EQ(write(coefficients, &byte, nullptr, count), zvpStatusNullPointer);
      EXPECT_EQ(write(coefficients, &byte, &offset, count), zvpStatusBadBitOffset);
      EXPECT_EQ(offset, bad);
    }
  std::int32_t offset = 0;
  for (const int wrong : {0, largestCount + 1, -1, INT32_MIN, INT32_MAX})
    EXPECT_EQ(write(coefficients, &byte, &offset, wrong), zvpStatusOutOfRange);
  EXPECT_EQ(byte, out);
  EXPECT_EQ(offset, 0);
  EXPECT_EQ(out[0], 0x77);
}

template <class ReadDc> void expectDcReaderRefusals(ReadDc readDc) {
  const std::uint8_t bytes[8] = {0xff};
  const std::uint8_t* byte = bytes;
  const std::uint8_t* null = nullptr;
  std::int16_t dc = 5;
  for (const std::int32_t bad : badOffsets) {
    std::int32_t offset = bad;
    EXPECT_EQ(readDc(nullptr, &offset, &dc), zvpStatusNullPointer);
    EXPECT_EQ(readDc(&null, &offset, &dc), zvpStatusNullPointer);
    EXPECT_EQ(readDc(&byte, nullptr, &dc), zvpStatusNullPointer);
    EXPECT_EQ(readDc(&byte, &offset, nullptr), zvpStatusNullPointer);
    EXPECT_EQ(readDc(&byte, &offset, &dc), zvpStatusBadBitOffset);
    EXPECT_EQ(offset, bad);
  }
  EXPECT_EQ(byte, bytes);
  EXPECT_EQ(dc, 5);
}

template <class WriteDc> void expectDcWriterRefusals(WriteDc writeDc) {
  std::uint8_t out[8] = {0x77};
  std::uint8_t* byte = out;
  std::uint8_t* null = nullptr;
  for (const std::int32_t bad : badOffsets) {
    std::int32_t offset = bad;
    EXPECT_EQ(writeDc(nullptr, &offset), zvpStatusNullPointer);
    EXPECT_EQ(writeDc(&null, &offset), zvpStatusNullPointer);
    EXPECT_EQ(writeDc(&byte, nullptr), zvpStatusNullPointer);
    EXPECT_EQ(writeDc(&byte, &offset), zvpStatusBadBitOffset);
    EXPECT_EQ(offset, bad);
  }
  EXPECT_EQ(byte, out);
  EXPECT_EQ(out[0], 0x77);
}

}  // namespace zvptest
