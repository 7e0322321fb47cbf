#include "reference/h263/coeffs.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "h263/coeffs_tables.h"
#include "support/byte_stream.h"
#include "support/coefficient_calls.h"
#include "support/compare.h"
#include "support/event_tables.h"
#include "support/levels.h"
#include "support/placed.h"

using namespace zvptest;
using reference::BlockResult;
using std::int16_t;
using std::int32_t;
using std::uint8_t;

namespace {

enum class Member { DecodeInter, DecodeIntra, ReconInter, ReconIntra };
constexpr Member readers[] = {Member::DecodeInter, Member::DecodeIntra, Member::ReconInter, Member::ReconIntra};

struct Mode {
  Member member;
  int advIntra, modQuant, scan, QP;
  bool adv() const { return advIntra != 0 && (member == Member::DecodeIntra || member == Member::ReconIntra); }
  bool recon() const { return member == Member::ReconInter || member == Member::ReconIntra; }
  bool leadingDc() const { return member == Member::ReconIntra && !adv(); }
  int first() const { return (member == Member::DecodeIntra || member == Member::ReconIntra) && !adv() ? 1 : 0; }
  const reference::ScanTable& scanTable() const {
    const ScanName named[] = {ScanName::Zigzag, ScanName::Vertical, ScanName::Horizontal};
    if (recon() && !adv()) return zvptest::scanTable(ScanName::Zigzag);
    if (scan >= 0 && scan <= 2) return zvptest::scanTable(named[scan]);
    return zvptest::scanTable(recon() ? ScanName::Zigzag : ScanName::Raster);
  }
  int value(int level) const { return recon() ? reference::h263Dequantize(level, QP, adv(), modQuant != 0) : level; }
};

Mode anyMode(Rng& rng) {
  Mode mode = {};
  mode.member = readers[rng.range(0, 3)];
  mode.advIntra = anyFlag(rng);
  mode.modQuant = anyFlag(rng);
  mode.scan = anyScan(rng);
  mode.QP = rng.chance(4) ? rng.pick<int>({1, 2, 30, 31}) : rng.range(1, 31);
  return mode;
}

zvpStatus callReader(const Mode& mode, const uint8_t** byte, int32_t* offset, int16_t* coefficients, int32_t* index,
                     int coded = 1) {
  switch (mode.member) {
    case Member::DecodeInter:
      return zvpiDecodeCoeffsInter_H263_1u16s(byte, offset, coefficients, index, mode.modQuant, mode.scan);
    case Member::DecodeIntra:
      return zvpiDecodeCoeffsIntra_H263_1u16s(byte, offset, coefficients, index, mode.advIntra, mode.modQuant,
                                              mode.scan);
    case Member::ReconInter:
      return zvpiReconstructCoeffsInter_H263_1u16s(byte, offset, coefficients, index, mode.QP, mode.modQuant);
    default:
      return zvpiReconstructCoeffsIntra_H263_1u16s(byte, offset, coefficients, index, coded, mode.QP, mode.advIntra,
                                                   mode.scan, mode.modQuant);
  }
}

auto readerOf(const Mode& mode) {
  return [&](auto... arguments) { return callReader(mode, arguments...); };
}

// The model's block with what the members do about the DC. start is the cursor's bit in the stream.
struct Expected {
  zvpStatus status;
  std::vector<int16_t> coefficients;
  int index;
  std::size_t position;  // of the cursor afterwards
  std::size_t end;       // of the bits that count as consumed
};
Expected expectedRead(const Mode& mode, const std::string& bits, std::size_t start, const std::vector<int16_t>& before,
                      bool coded) {
  std::size_t events = start;
  int dc = before[0];
  if (mode.leadingDc()) {
    const int code = reference::BitSource(bits, start).number(8);
    if (reference::h263Dc(code) < 0) return {zvpStatusBadVlcCode, before, -1, start, start};
    dc = reference::h263Dc(code) * 8;
    events += 8;
    if (!coded) {
      Expected result = {zvpStatusOk, before, 0, events, events};
      result.coefficients[0] = int16_t(dc);
      return result;
    }
  }
  const BlockResult block =
      reference::h263ReadCoeffs(h263Code(mode.adv()), bits.substr(std::min(events, bits.size())), mode.modQuant != 0,
                                mode.first(), mode.scanTable(), [&](int level) { return mode.value(level); });
  Expected result = {block.status,
                     {block.coefficients.begin(), block.coefficients.end()},
                     block.indexLastNonZero,
                     block.status == zvpStatusOk ? events + block.bits : events,
                     events + block.examined};
  if (mode.first() == 1) result.coefficients[0] = int16_t(dc);
  return result;
}

void checkRead(const Mode& mode, const std::string& bits, std::size_t start, Rng& rng) {
  const std::vector<int16_t> before = randomValues<int16_t>(64, rng, Style::Uniform, -32768, 32767);
  const bool coded = !rng.chance(8);
  const Expected expected = expectedRead(mode, bits, start, before, coded);
  std::string readable = bits;
  readable.resize(8 * readableBytes(expected.end), '0');
  InputStream stream(readable, start, readableBytes(expected.end), rng.guard());
  Placed<int16_t> coefficients(before, rng);
  int32_t index = 1234;
  const zvpStatus status = callReader(mode, &stream.byte, &stream.offset, coefficients.data(), &index, coded ? 256 : 0);
  ASSERT_EQ(status, expected.status);
  ASSERT_TRUE(sameArray(coefficients.values().data(), expected.coefficients.data(), 64));
  ASSERT_EQ(index, expected.index);
  ASSERT_EQ(stream.position(), expected.position);
}

}  // namespace

TEST(H263Tables, AreTheStandards) {
  const struct {
    const zvp::h263::Tables& tables;
    const zvp::h263::OwnH263VlcParams& words;
    bool adv;
  } codes[] = {{zvp::h263::coefTables, zvp::h263::h263_VLCParams, false},
               {zvp::h263::advCoefTables, zvp::h263::h263_advVLCParams, true}};
  for (const auto& code : codes) {
    // Every window of 13 bits, which the three tables cover between them.
    for (int w = 16; w < 8192; ++w) {
      if (w >> 6 == 3) continue;
      const std::string bits = reference::bitsOf(w, 13);
      reference::BitSource in(bits);
      const reference::CodedEvent* event = in.event(h263Code(code.adv));
      ASSERT_TRUE(event) << bits;
      const unsigned row = w >= 1024  ? code.tables.high[(w >> 6) - 16]
                           : w >= 256 ? code.tables.middle[(w >> 3) - 32]
                                      : code.tables.low[(w >> 1) - 8];
      ASSERT_EQ(int(row & 255), event->last);
      ASSERT_EQ(int(row >> 8 & 255), event->run + 1);
      ASSERT_EQ(int(row >> 16 & 255), event->level);
      ASSERT_EQ(row >> 24, in.position() + 1);
    }
    int last = 0, run = 0, level = 0;
    for (const auto& [event, word] : h263Code(code.adv).words) {
      last = event[0], run = event[1], level = event[2];
      const int32_t row = (last ? code.words.pOffsLast : code.words.pOffs)[run] + level - 1;
      ASSERT_LT(row, (last ? code.words.pOffsLast : code.words.pOffs)[run + 1]);
      ASSERT_EQ(reference::bitsOf(int(code.words.pVlc[row].code), int(code.words.pVlc[row].length)), word + '0');
    }
    ASSERT_EQ(code.words.maxRunLast, run);
  }
}

TEST(H263Read, BlocksWrittenFromTheTablesComeBack) {
  Rng rng(61);
  for (int round = 0; round < rounds(8000); ++round) {
    const Mode mode = anyMode(rng);
    const std::vector<WrittenEvent> events = anyEvents(rng, mode.first(), mode.modQuant ? 1023 : 127);
    const std::size_t start = std::size_t(rng.range(0, 15));
    std::string bits = randomBits(rng, int(start));
    std::vector<int16_t> expected(64, 0);
    int dc = 77;
    if (mode.leadingDc()) {
      const int code = rng.range(1, 127) + (rng.chance(2) ? 128 : 0);
      bits += reference::bitsOf(code, 8);
      dc = code == 255 ? 1024 : 8 * code;
    }
    int position = mode.first() - 1;
    for (std::size_t i = 0; i < events.size(); ++i) {
      const int last = i + 1 == events.size();
      const std::string* word = h263Code(mode.adv()).word(last, events[i].run, std::abs(events[i].level));
      // Any level may come in an escape; Annex T's longer one holds small levels too, and its 0.
      if (word && !rng.chance(6))
        bits += *word + (events[i].level < 0 ? '1' : '0');
      else
        bits += reference::h263Escape(last, events[i].run, events[i].level, mode.modQuant != 0);
      position += events[i].run + 1;
      expected[std::size_t(mode.scanTable()[std::size_t(position)])] = int16_t(mode.value(events[i].level));
    }
    if (mode.first() == 1) expected[0] = int16_t(dc);
    checkReadWhole(bits, start, expected, position, rng, readerOf(mode));
    checkRead(mode, bits, start, rng);
    if (HasFatalFailure()) return;
  }
}

TEST(H263Read, RandomBitsGoAsInTheModel) {
  Rng rng(62);
  for (int round = 0; round < rounds(12000); ++round) {
    const Mode mode = anyMode(rng);
    const std::string bits = rng.chance(2) ? randomBits(rng, 2400) : unevenBits(rng, 2400);
    const std::size_t start = std::size_t(rng.range(0, 15));
    checkRead(mode, bits, start, rng);
    if (HasFatalFailure()) return;
  }
}

// Escapes by themselves at each offset, with every LEVEL, and in Annex T every value behind -128.
TEST(H263Read, EveryEscape) {
  Rng rng(63);
  for (int level = -128; level < 128; ++level)
    for (int extension = 0; extension < (level == -128 ? 2048 : 1); ++extension) {
      Mode mode = anyMode(rng);
      const std::size_t start = std::size_t(rng.range(0, 7));
      std::string bits = randomBits(rng, int(start));
      if (mode.leadingDc()) bits += "00000001";
      bits += "00000111" + reference::bitsOf(rng.range(0, 63), 6) + reference::bitsOf(level, 8);
      bits += reference::bitsOf(extension, 11);
      checkRead(mode, bits, start, rng);
      if (HasFatalFailure()) return;
    }
}

TEST(H263Read, PositionsPast63ReportTheLastOneStored) {
  Rng rng(64);
  for (int modQuant : {0, 1}) {
    // 64 ones with LAST 0: the last lands on position 63, and what follows is one too many.
    std::string bits;
    for (int i = 0; i < 65; ++i) bits += "100";
    InputStream stream(bits, 0, readableBytes(bits.size()), rng.guard());
    int16_t coefficients[64];
    int32_t index;
    EXPECT_EQ(zvpiDecodeCoeffsInter_H263_1u16s(&stream.byte, &stream.offset, coefficients, &index, modQuant, 0),
              zvpStatusBadVlcCode);
    EXPECT_EQ(index, 63);
    EXPECT_EQ(stream.position(), 0u);
    for (int16_t value : coefficients) EXPECT_EQ(value, 1);
  }
  // A first run that leaves the block at once.
  const std::string bits = reference::h263Escape(1, 63, 5, false);
  InputStream stream(bits, 0, readableBytes(bits.size()), rng.guard());
  int16_t coefficients[64] = {9};
  int32_t index = 5;
  EXPECT_EQ(zvpiDecodeCoeffsIntra_H263_1u16s(&stream.byte, &stream.offset, coefficients, &index, 0, 0, 0),
            zvpStatusBadVlcCode);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(coefficients[0], 9);
  EXPECT_EQ(zvpiDecodeCoeffsInter_H263_1u16s(&stream.byte, &stream.offset, coefficients, &index, 0, 0), zvpStatusOk);
  EXPECT_EQ(index, 63);
  EXPECT_EQ(coefficients[63], 5);
}

TEST(H263Read, DequantizesAsTold) {
  Rng rng(65);
  const auto inter = [&](int level, int QP, int modQuant) {
    const std::string bits = reference::h263Escape(1, 0, level, true);
    InputStream stream(bits, 0, readableBytes(bits.size()), rng.guard());
    int16_t coefficients[64];
    int32_t index;
    EXPECT_EQ(zvpiReconstructCoeffsInter_H263_1u16s(&stream.byte, &stream.offset, coefficients, &index, QP, modQuant),
              zvpStatusOk);
    return coefficients[0];
  };
  EXPECT_EQ(inter(1, 2, 0), 5);
  EXPECT_EQ(inter(-1, 2, 0), -5);
  EXPECT_EQ(inter(1, 3, 0), 9);
  EXPECT_EQ(inter(127, 31, 0), 2047);
  EXPECT_EQ(inter(-127, 31, 0), -2048);
  EXPECT_EQ(inter(127, 31, 1), 127 * 62 + 31);
  EXPECT_EQ(inter(-1023, 31, 1), int16_t(-1023 * 62 - 31));
}

TEST(H263Read, ABlockThatIsNotCodedHasItsDcAlone) {
  Rng rng(66);
  for (int code = 0; code < 256; ++code)
    for (std::size_t start = 0; start < 8; ++start) {
      const bool good = code != 0 && code != 128;
      const std::string bits = randomBits(rng, int(start)) + reference::bitsOf(code, 8);
      InputStream stream(bits, start, (bits.size() + 7) / 8, rng.guard());
      std::vector<int16_t> expected = randomValues<int16_t>(64, rng, Style::Uniform, -32768, 32767);
      Placed<int16_t> coefficients(expected, rng);
      int32_t index = 44;
      EXPECT_EQ(zvpiReconstructCoeffsIntra_H263_1u16s(&stream.byte, &stream.offset, coefficients.data(), &index, 0, 7,
                                                      0, 2, 1),
                good ? zvpStatusOk : zvpStatusBadVlcCode);
      if (good) expected[0] = int16_t(code == 255 ? 1024 : 8 * code);
      EXPECT_TRUE(sameArray(coefficients.values().data(), expected.data(), 64));
      EXPECT_EQ(index, good ? 0 : -1);
      EXPECT_EQ(stream.position(), start + (good ? 8 : 0));
    }
}

TEST(H263Dc, EveryCodeAtEveryOffset) {
  Rng rng(67);
  for (int code = 0; code < 256; ++code)
    for (std::size_t start = 0; start < 8; ++start) {
      const std::string bits = randomBits(rng, int(start)) + reference::bitsOf(code, 8);
      InputStream stream(bits, start, (bits.size() + 7) / 8, rng.guard());  // no byte that the code does not reach
      Placed<int16_t> dc(std::vector<int16_t>(1, 999), rng);
      const int value = reference::h263Dc(code);
      EXPECT_EQ(zvpiDecodeDCIntra_H263_1u16s(&stream.byte, &stream.offset, dc.data()),
                value < 0 ? zvpStatusBadVlcCode : zvpStatusOk);
      EXPECT_EQ(dc.values()[0], value < 0 ? 999 : value);
      EXPECT_EQ(stream.position(), start + (value < 0 ? 0 : 8));
    }
}

TEST(H263Dc, IsWrittenInEightBits) {
  Rng rng(68);
  std::vector<int> values = {-32768, -1, 0, 32767, 128, 256 + 128, -128, 255};
  for (int dc = 0; dc < 300; ++dc) values.push_back(dc);
  for (int dc : values)
    for (std::size_t start = 0; start < 12; ++start) {
      const std::string bits = reference::bitsOf(dc == 128 ? 255 : dc, 8);
      OutputStream stream(bits, start, rng);
      EXPECT_EQ(zvpiEncodeDCIntra_H263_16s1u(int16_t(dc), &stream.byte, &stream.offset), zvpStatusOk);
      EXPECT_TRUE(sameBytes(stream.bytes(), stream.expected()));
      EXPECT_EQ(stream.position(), start + 8);
    }
}

namespace {

struct WriteMode {
  bool intra;
  int advIntra, modQuant, scan;
  bool adv() const { return intra && advIntra != 0; }
  int first() const { return intra && !adv() ? 1 : 0; }
  const reference::ScanTable& scanTable() const {
    return zvptest::scanTable(scan >= 0 && scan <= 2 ? ScanName(scan) : ScanName::Raster);
  }
};

WriteMode anyWriteMode(Rng& rng) {
  WriteMode mode = {};
  mode.intra = rng.chance(2);
  mode.advIntra = anyFlag(rng);
  mode.modQuant = anyFlag(rng);
  mode.scan = anyScan(rng);
  return mode;
}

zvpStatus callWriter(const WriteMode& mode, const int16_t* coefficients, uint8_t** byte, int32_t* offset, int count) {
  return mode.intra ? zvpiEncodeCoeffsIntra_H263_16s1u(coefficients, byte, offset, count, mode.advIntra, mode.modQuant,
                                                       mode.scan)
                    : zvpiEncodeCoeffsInter_H263_16s1u(coefficients, byte, offset, count, mode.modQuant, mode.scan);
}
auto writerOf(const WriteMode& mode) {
  return [&](auto... arguments) { return callWriter(mode, arguments...); };
}

}  // namespace

TEST(H263Write, GoesAsInTheModel) {
  Rng rng(69);
  for (int round = 0; round < rounds(12000); ++round) {
    const WriteMode mode = anyWriteMode(rng);
    const std::vector<int16_t> block = anyBlock(rng, rng.pick<int>({1, 3, 12, 127, 130, 1023, 32767}));
    // The right count mostly; too small or too large else.
    int count = std::max(countNonZero(block, mode.first()), 1);
    if (rng.chance(3)) count = rng.range(1, 64);
    const std::string bits = reference::h263WriteCoeffs(h263Code(mode.adv()), block.data(), count, mode.modQuant != 0,
                                                        mode.first(), mode.scanTable());
    checkWritten(bits, block, count, rng, writerOf(mode));
    if (HasFatalFailure()) return;
  }
}

TEST(H263Write, WhatIsWrittenIsReadBack) {
  Rng rng(70);
  for (int round = 0; round < rounds(6000); ++round) {
    WriteMode mode = anyWriteMode(rng);
    std::vector<int16_t> block = anyBlock(rng, mode.modQuant ? rng.pick<int>({3, 127, 1023}) : rng.pick<int>({3, 127}));
    if (countNonZero(block, mode.first()) == 0) block[63] = -1;
    const Mode reader = {mode.intra ? Member::DecodeIntra : Member::DecodeInter, mode.advIntra, mode.modQuant,
                         mode.scan, 1};
    checkReadBack(block, countNonZero(block, mode.first()), writerOf(mode), readerOf(reader));
    if (HasFatalFailure()) return;
  }
}

TEST(H263Write, CountsThatAreTooLargeRepeatTheLastEvent) {
  Rng rng(71);
  const auto& code = h263Code(false);
  std::vector<int16_t> block(64, 0);
  block[0] = -3;  // position 63 holds 0: the repetition has a plus sign, and as an escape the level 0
  std::string bits = *code.word(0, 0, 3) + "1" + "0000011" + "1" + reference::bitsOf(63, 6) + "00000000";
  OutputStream escaped(bits, 5, rng);
  ASSERT_EQ(zvpiEncodeCoeffsInter_H263_16s1u(block.data(), &escaped.byte, &escaped.offset, 2, 0, 0), zvpStatusOk);
  EXPECT_TRUE(sameBytes(escaped.bytes(), escaped.expected()));
  block[0] = 0;
  block[63] = -1;  // comes twice, the second time without a run
  bits = reference::h263Escape(0, 63, -1, false) + *code.word(1, 0, 1) + "1";
  OutputStream repeated(bits, 0, rng);
  ASSERT_EQ(zvpiEncodeCoeffsInter_H263_16s1u(block.data(), &repeated.byte, &repeated.offset, 9, 0, 0), zvpStatusOk);
  EXPECT_TRUE(sameBytes(repeated.bytes(), repeated.expected()));
}

TEST(H263Write, OneCoefficientIsOneEvent) {
  Rng rng(72);
  std::vector<int16_t> block(64, 0);
  block[8] = 2;  // zigzag position 2
  const std::string bits = reference::h263Escape(1, 2, 2, false);
  ASSERT_FALSE(h263Code(false).word(1, 2, 2));
  OutputStream stream(bits, 2, rng);
  ASSERT_EQ(zvpiEncodeCoeffsInter_H263_16s1u(block.data(), &stream.byte, &stream.offset, 1, 0, 0), zvpStatusOk);
  EXPECT_TRUE(sameBytes(stream.bytes(), stream.expected()));
}

TEST(H263Write, AnnexTExtendsFrom128On) {
  Rng rng(73);
  for (int level : {127, 128, -127, -128, 1023, -1024}) {
    std::vector<int16_t> block(64, 0);
    block[0] = int16_t(level);
    const std::string bits = reference::h263Escape(1, 0, level, true);
    EXPECT_EQ(bits.size(), std::abs(level) >= 128 ? 33u : 22u);
    OutputStream stream(bits, 0, rng);
    ASSERT_EQ(zvpiEncodeCoeffsInter_H263_16s1u(block.data(), &stream.byte, &stream.offset, 1, 1, 0), zvpStatusOk);
    EXPECT_TRUE(sameBytes(stream.bytes(), stream.expected()));
  }
}

TEST(H263Write, ABlockOfZerosWritesNothing) {
  const int16_t block[64] = {5};
  const WriteMode mode = {true, 0, 0, 0};
  expectNothingWritten(block, 1, writerOf(mode));
}

// Each refusal, alone and before the ones that come later; nothing is written.
TEST(H263Checks, InTheirOrder) {
  for (Member member : readers) {
    Mode mode = {member, 0, 0, 0, 31};
    expectReaderRefusals(readerOf(mode));
    for (int32_t bad : {0, 32, -1, INT32_MIN, 257}) {
      mode.QP = bad;
      expectReaderRefusals(readerOf(mode));
      if (!mode.recon()) continue;
      const uint8_t bytes[8] = {0x55};
      const uint8_t* byte = bytes;
      int32_t offset = 7, index = 99;
      int16_t coefficients[64] = {77};
      EXPECT_EQ(callReader(mode, &byte, &offset, coefficients, &index), zvpStatusBadQuantizer);
      EXPECT_EQ(byte, bytes);
      EXPECT_EQ(offset, 7);
      EXPECT_EQ(index, 99);
      EXPECT_EQ(coefficients[0], 77);
    }
  }
  for (bool intra : {false, true}) {
    const WriteMode mode = {intra, 0, 0, 0};
    expectWriterRefusals(64, writerOf(mode));
  }
  expectDcReaderRefusals(zvpiDecodeDCIntra_H263_1u16s);
  expectDcWriterRefusals(
      [](uint8_t** byte, int32_t* offset) { return zvpiEncodeDCIntra_H263_16s1u(1, byte, offset); });
}
