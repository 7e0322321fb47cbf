#include "reference/mpeg4/coeffs.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "mpeg4/rvlc_tables.h"
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

enum class Member { Intra, Inter, Recon };

// A context for inverse inter quantization in memory of exactly its size, at any address.
class QuantContext {
 public:
  QuantContext(Rng& rng, bool matrix, int bitsPerPixel) : bitsPerPixel_(bitsPerPixel) {
    int32_t size = 0;
    EXPECT_EQ(zvpiQuantInvInterGetSize_MPEG4(&size), zvpStatusOk);
    const std::size_t shift = std::size_t(rng.range(0, 15));
    bytes_ = GuardedBytes(std::size_t(size) + shift, Guard::Before);
    data_ = bytes_.data() + shift;
    weights_.assign(64, 0);
    if (matrix) fill(weights_.data(), 64, rng, rng.chance(3) ? Style::Extremes : Style::Uniform, 1, 255);
    EXPECT_EQ(zvpiQuantInvInterInit_MPEG4(matrix ? weights_.data() : nullptr, data_, bitsPerPixel), zvpStatusOk);
    bytes_.makeReadOnly();
  }
  const void* data() const { return data_; }
  bool matrix() const { return weights_[0] != 0; }
  int largestQP() const { return (1 << (bitsPerPixel_ - 3)) - 1; }
  int dequantize(int level, int QP, std::size_t element) const {
    return reference::mpeg4Dequantize(level, QP, weights_[element], bitsPerPixel_);
  }

 private:
  int bitsPerPixel_;
  GuardedBytes bytes_;
  uint8_t* data_ = nullptr;
  std::vector<uint8_t> weights_;
};

struct Mode {
  Member member;
  int rvlc, skipDC, scan, QP;
  bool intra() const { return member == Member::Intra; }
  int first() const { return intra() && skipDC ? 1 : 0; }
  const reference::ScanTable& scanTable() const {
    if (scan == 0) return zvptest::scanTable(ScanName::Zigzag);
    if (scan == 1) return zvptest::scanTable(ScanName::Vertical);
    if (member == Member::Recon) return zvptest::scanTable(ScanName::Zigzag);
    return zvptest::scanTable(scan == 2 && intra() ? ScanName::Horizontal : ScanName::Raster);
  }
};

zvpStatus callReader(const Mode& mode, const void* context, const uint8_t** byte, int32_t* offset,
                     int16_t* coefficients, int32_t* index) {
  switch (mode.member) {
    case Member::Intra:
      return zvpiDecodeCoeffsIntra_MPEG4_1u16s(byte, offset, coefficients, index, mode.rvlc, mode.skipDC, mode.scan);
    case Member::Inter:
      return zvpiDecodeCoeffsInter_MPEG4_1u16s(byte, offset, coefficients, index, mode.rvlc, mode.scan);
    default:
      return zvpiReconstructCoeffsInter_MPEG4_1u16s(byte, offset, coefficients, index, mode.rvlc, mode.scan, context,
                                                    mode.QP);
  }
}

template <class Block> void controlMismatch(Block& block) {
  int sum = 0;
  for (int16_t value : block) sum += value;
  if (sum % 2 == 0) block[63] = int16_t(block[63] % 2 ? block[63] - 1 : block[63] + 1);
}

BlockResult expectedRead(const Mode& mode, const QuantContext& context, const std::string& bits) {
  const bool recon = mode.member == Member::Recon;
  const auto value = [&](int level, std::size_t element) {
    return recon ? context.dequantize(level, mode.QP, element) : level;
  };
  if (!mode.rvlc) {
    BlockResult block =
        reference::mpeg4ReadCoeffs(mpeg4Code(mode.intra()), mode.intra(), bits, mode.first(), mode.scanTable(), value);
    if (recon && context.matrix() && block.status == zvpStatusOk) controlMismatch(block.coefficients);
    return block;
  }
  BlockResult block =
      reference::mpeg4ReadReversible(reversibleCode(mode.intra()), bits, mode.first(), mode.scanTable());
  if (recon && block.status == zvpStatusOk) {
    for (std::size_t i = 0; i < 64; ++i)
      if (block.coefficients[i]) block.coefficients[i] = int16_t(value(block.coefficients[i], i));
    if (context.matrix()) controlMismatch(block.coefficients);
  }
  return block;
}

struct Scene {
  Mode mode;
  QuantContext context;
};
Scene anyScene(Rng& rng) {
  Mode mode = {};
  mode.member = Member(rng.range(0, 2));
  mode.rvlc = anyFlag(rng);
  mode.skipDC = anyFlag(rng);
  mode.scan = anyScan(rng);
  const bool matrix = rng.chance(2);
  QuantContext context(rng, matrix, rng.chance(2) ? 8 : rng.range(4, 12));
  mode.QP = rng.chance(4) ? context.largestQP() : rng.range(1, context.largestQP());
  return {mode, std::move(context)};
}

void checkRead(const Scene& scene, const std::string& bits, std::size_t start, Rng& rng) {
  const Mode& mode = scene.mode;
  const BlockResult expected = expectedRead(mode, scene.context, bits.substr(start));
  std::vector<int16_t> block(expected.coefficients.begin(), expected.coefficients.end());
  const std::vector<int16_t> before = randomValues<int16_t>(64, rng, Style::Uniform, -32768, 32767);
  if (mode.first() == 1) block[0] = before[0];
  const std::size_t size = readableBytes(start + expected.examined);
  std::string readable = bits;
  readable.resize(8 * size, '0');
  InputStream stream(readable, start, size, rng.guard());
  Placed<int16_t> coefficients(before, rng);
  int32_t index = 1234;
  ASSERT_EQ(callReader(mode, scene.context.data(), &stream.byte, &stream.offset, coefficients.data(), &index),
            expected.status);
  ASSERT_TRUE(sameArray(coefficients.values().data(), block.data(), 64));
  ASSERT_EQ(index, expected.indexLastNonZero);
  ASSERT_EQ(stream.position(), start + (expected.status == zvpStatusOk ? expected.bits : 0));
}

// Any of the ways in which an event can be written.
std::string anyForm(Rng& rng, bool intra, bool rvlc, int last, int run, int level) {
  const auto& code = rvlc ? reversibleCode(intra) : mpeg4Code(intra);
  std::vector<std::string> forms;
  if (const std::string* word = code.word(last, run, std::abs(level)))
    forms.insert(forms.end(), 6, *word + (level < 0 ? '1' : '0'));
  if (rvlc) {
    forms.push_back(reference::mpeg4ReversibleEscape(last, run, level));
  } else {
    forms.push_back(reference::mpeg4Escape1(code, last, run, level));
    forms.push_back(reference::mpeg4Escape2(code, last, run, level));
    forms.push_back(reference::mpeg4Escape3(last, run, level));
  }
  for (;;)
    if (const std::string& form = rng.pick(forms); !form.empty()) return form;
}

std::string writeBlock(Rng& rng, bool intra, bool rvlc, const std::vector<WrittenEvent>& events) {
  std::string bits;
  for (std::size_t i = 0; i < events.size(); ++i)
    bits += anyForm(rng, intra, rvlc, i + 1 == events.size(), events[i].run, events[i].level);
  return bits;
}

void expectWords(const zvp::mpeg4::OwnMp4VlcParams& params, const reference::EventCode& code) {
  for (const auto& [event, word] : code.words) {
    const auto [last, run, level] = event;
    const zvp::VlcWord& stored = params.pVlc[params.pOffs[last][run] + level - 1];
    ASSERT_EQ(reference::bitsOf(int(stored.code), int(stored.length)), word + '0');
  }
}

}  // namespace

TEST(Mpeg4Tables, EventCodesAreTheStandards) {
  using namespace zvp::mpeg4;
  for (bool intra : {false, true}) {
    const Tables& tables = intra ? tablesB16 : tablesB17;
    const auto& code = mpeg4Code(intra);
    for (unsigned w = 8; w < 4096; ++w) {
      const EventRow row = w >= 512   ? tables.high[(w - 512) >> 5]
                           : w >= 128 ? tables.middle[(w - 128) >> 2]
                                      : tables.low[w - 8];
      const std::string bits = reference::bitsOf(int(w), 12);
      reference::BitSource in(bits);
      const reference::CodedEvent* event = in.event(code);
      if (w >> 5 == 3) {
        ASSERT_FALSE(event);
        ASSERT_EQ(row, (EventRow{0, 0, 255, 7}));
        continue;
      }
      ASSERT_TRUE(event) << bits;
      ASSERT_EQ(int(row.last), event->last);
      ASSERT_EQ(int(row.run), event->run);
      ASSERT_EQ(int(row.level), event->level);
      ASSERT_EQ(std::size_t(row.length), in.position());
    }
    const OwnMp4VlcParams& words = intra ? mVLC_TB16 : mVLC_TB17;
    for (int last : {0, 1}) {
      for (int run = 0; run <= words.maxRun[last]; ++run) {
        ASSERT_EQ((intra ? LMAX_Intra : LMAX_Inter)[std::size_t(last)][run], code.largestLevel(last, run));
        ASSERT_EQ(words.pLmax[last][run], code.largestLevel(last, run));
      }
      for (int level = 1; code.word(last, 0, level); ++level)
        ASSERT_EQ((intra ? RMAX_Intra : RMAX_Inter)[std::size_t(last)][level], code.largestRun(last, level) + 1);
      ASSERT_EQ(words.maxRun[last], code.largestRun(last, 1));
    }
    expectWords(words, code);
  }
}

// All windows of 15 bits, from both ends.
TEST(Mpeg4Tables, ReversibleCodesAreTheStandards) {
  using namespace zvp::mpeg4;
  const struct {
    bool backward;
    const std::array<uint8_t, 256>& first;
    const SecondTables& second;
    const std::array<uint8_t, 17>& offsets;
    const ReversibleRows& intraRows;
    const ReversibleRows& interRows;
  } directions[] = {
      {false, ownvc_mp4_RVLC_ind0, ownvc_mp4_RVLC_iptr, ownvc_mp4_RVLC_offs, tableB23_Forw_Intra, tableB23_Forw_Inter},
      {true, ownvc_mp4_RVLCb_ind0, ownvc_mp4_RVLCb_iptr, ownvc_mp4_RVLCb_offs, tableB23_Back_Intra,
       tableB23_Back_Inter}};
  for (const auto& tables : directions) {
    EXPECT_EQ(tables.second[0], nullptr);
    for (int w = 0; w < 1 << 15; ++w) {
      // The first 8 bits of a backward reader are the window's lowest.
      const int window8 = tables.backward ? w & 255 : w >> 7, window7 = tables.backward ? w >> 8 : w & 127;
      if (tables.backward ? (window8 & 15) == 0 : window8 < 16) continue;
      const std::string bits = reference::bitsOf(w, 15);
      std::string word;
      for (std::size_t n = 3; n <= 15; ++n) {
        const std::string part = tables.backward ? bits.substr(15 - n) : bits.substr(0, n);
        if (reversibleCode(true).events.count(part)) word = part;
      }
      int row = tables.first[std::size_t(window8)], uncounted = 0;
      if (row >= 100 && row != 255) {
        const int group = row - 100, rest = tables.second[std::size_t(group)][window7];
        row = rest == 255 ? 255 : tables.offsets[std::size_t(group)] + rest;
        uncounted = 8;
      }
      ASSERT_EQ(row == 255, word.empty()) << bits;
      if (word.empty()) continue;
      for (bool intra : {false, true}) {
        const EventRow& found = (intra ? tables.intraRows : tables.interRows)[std::size_t(row)];
        const reference::CodedEvent& event = reversibleCode(intra).events.at(word);
        ASSERT_EQ(int(found.last), event.last);
        ASSERT_EQ(int(found.run), event.run);
        ASSERT_EQ(int(found.level), event.level);
        ASSERT_EQ(std::size_t(found.length + uncounted), word.size());
      }
    }
  }
  expectWords(mVLC_TB23a, reversibleCode(true));
  expectWords(mVLC_TB23b, reversibleCode(false));
  EXPECT_EQ(l1_lmax_TB23a[43], 1);
  EXPECT_EQ(l1_lmax_TB23a[44], 0);
  EXPECT_EQ(l1_lmax_TB23b[43], 1);
  EXPECT_EQ(l1_lmax_TB23b[44], 0);
}

TEST(Mpeg4Tables, DcSizesAreTheStandards) {
  for (const auto& row : readTable("mpeg4_dc_size")) {
    const auto& table = row.at("table") == "B-13" ? zvp::mpeg4::mVLC_DCSIZE_TB13 : zvp::mpeg4::mVLC_DCSIZE_TB14;
    const zvp::VlcWord& word = table[std::size_t(std::stoi(row.at("size")))];
    EXPECT_EQ(reference::bitsOf(int(word.code), int(word.length)), row.at("code_bits"));
  }
}

TEST(Mpeg4Read, BlocksWrittenFromTheTablesComeBack) {
  Rng rng(81);
  for (int round = 0; round < rounds(10000); ++round) {
    const Scene scene = anyScene(rng);
    const Mode& mode = scene.mode;
    const auto events = anyEvents(rng, mode.first(), 2047);
    const std::size_t start = std::size_t(rng.range(0, 15));
    std::string bits = randomBits(rng, int(start));
    bits += writeBlock(rng, mode.intra(), mode.rvlc != 0, events);
    std::vector<int16_t> expected(64, 0);
    int position = mode.first() - 1;
    for (const auto& event : events) {
      position += event.run + 1;
      const std::size_t element = std::size_t(mode.scanTable()[std::size_t(position)]);
      expected[element] =
          int16_t(mode.member == Member::Recon ? scene.context.dequantize(event.level, mode.QP, element) : event.level);
    }
    if (mode.member == Member::Recon && scene.context.matrix()) controlMismatch(expected);
    if (mode.first() == 1) expected[0] = 77;
    checkReadWhole(bits, start, expected, position, rng,
                   [&](auto... arguments) { return callReader(mode, scene.context.data(), arguments...); });
    checkRead(scene, bits, start, rng);
    if (HasFatalFailure()) return;
  }
}

TEST(Mpeg4Read, RandomBitsGoAsInTheModel) {
  Rng rng(82);
  for (int round = 0; round < rounds(12000); ++round) {
    const Scene scene = anyScene(rng);
    std::string bits = rng.chance(2) ? randomBits(rng, 2400) : unevenBits(rng, 2400);
    const std::size_t start = std::size_t(rng.range(0, 15));
    if (rng.chance(2)) {  // a good beginning, and perhaps one bit of it wrong
      std::string block = writeBlock(rng, scene.mode.intra(), scene.mode.rvlc != 0, anyEvents(rng, 0, 2047));
      if (rng.chance(2)) {
        char& bit = block[std::size_t(rng.range(0, int(block.size()) - 1))];
        bit = bit == '0' ? '1' : '0';
      }
      bits.replace(start, block.size(), block);
    }
    checkRead(scene, bits, start, rng);
    if (HasFatalFailure()) return;
  }
}

// Every escape of a kind behind a good event: lead, six bits and a marker and so on, each bit turned over.
TEST(Mpeg4Read, EscapesBitByBit) {
  Rng rng(83);
  for (int round = 0; round < rounds(300); ++round) {
    const Scene scene = anyScene(rng);
    const bool rvlc = scene.mode.rvlc != 0;
    const int level = rng.pick<int>({1, -1, 2047, -2047, 300});
    const int run = rng.range(0, 60);
    const std::string good = *(rvlc ? reversibleCode(scene.mode.intra()) : mpeg4Code(scene.mode.intra())).word(0, 0, 1);
    const std::string escape =
        rvlc ? reference::mpeg4ReversibleEscape(1, run, level) : reference::mpeg4Escape3(1, run, level);
    for (std::size_t turned = 0; turned <= escape.size(); ++turned) {
      std::string bits = good + "0" + escape + randomBits(rng, 2400);
      if (turned < escape.size()) bits[good.size() + 1 + turned] = bits[good.size() + 1 + turned] == '0' ? '1' : '0';
      checkRead(scene, bits, 0, rng);
      if (HasFatalFailure()) return;
    }
  }
}

namespace {

struct Read {
  zvpStatus status;
  int index;
  std::size_t position;
  int16_t coefficients[64];
};
Read readInto(const Mode& mode, const std::string& bits, Rng& rng) {
  const QuantContext context(rng, false, 8);
  InputStream stream(bits, 0, readableBytes(bits.size()), rng.guard());
  Read read = {};
  read.coefficients[0] = 77;
  read.status = callReader(mode, context.data(), &stream.byte, &stream.offset, read.coefficients, &read.index);
  read.position = stream.position();
  return read;
}

constexpr Mode plain(Member member) { return {member, 0, 0, 0, 3}; }

}  // namespace

TEST(Mpeg4Read, LevelZeroInAnEscape) {
  Rng rng(84);
  const std::string bits = reference::mpeg4Escape3(0, 2, 0) + reference::mpeg4Escape3(1, 0, 5);
  const Read intra = readInto(plain(Member::Intra), bits, rng);
  EXPECT_EQ(intra.status, zvpStatusBadVlcCode);
  EXPECT_EQ(intra.index, -1);
  const Read inter = readInto(plain(Member::Inter), bits, rng);
  EXPECT_EQ(inter.status, zvpStatusOk);
  EXPECT_EQ(inter.index, 3);
  EXPECT_EQ(inter.coefficients[8], 0);
  EXPECT_EQ(inter.coefficients[16], 5);
  const Read recon = readInto(plain(Member::Recon), bits, rng);
  EXPECT_EQ(recon.status, zvpStatusOk);
  EXPECT_EQ(recon.coefficients[8], -3);  // as a negative level, QP being 3
  EXPECT_EQ(recon.coefficients[16], 33);
}

TEST(Mpeg4Read, AnEscapeWithinAnEscape) {
  Rng rng(85);
  const std::string closing = *mpeg4Code(true).word(1, 0, 1) + "0";
  const Read first = readInto(plain(Member::Intra),
                              "00000110"
                              "00000111" +
                                  closing,
                              rng);
  EXPECT_EQ(first.status, zvpStatusOk);
  EXPECT_EQ(first.coefficients[0], -(255 + 27));
  EXPECT_EQ(first.coefficients[1], 1);
  const Read inter = readInto(plain(Member::Inter),
                              "00000110"
                              "00000110" +
                                  closing,
                              rng);
  EXPECT_EQ(inter.coefficients[0], 255 + 12);
  for (Member member : {Member::Intra, Member::Inter}) {
    const Read second = readInto(plain(member),
                                 "000001110"
                                 "00000110" +
                                     closing,
                                 rng);
    EXPECT_EQ(second.status, zvpStatusBadVlcCode);
    EXPECT_EQ(second.index, -1);
    EXPECT_EQ(second.position, 0u);
  }
}

TEST(Mpeg4Read, PositionsPast63AreReported) {
  Rng rng(86);
  for (int run : {62, 63}) {
    const std::string bits = *mpeg4Code(false).word(0, 0, 1) + "1" + reference::mpeg4Escape3(1, run, 9);
    const Read read = readInto(plain(Member::Inter), bits, rng);
    EXPECT_EQ(read.status, run == 62 ? zvpStatusOk : zvpStatusBadVlcCode);
    EXPECT_EQ(read.index, run + 1);
    EXPECT_EQ(read.coefficients[0], -1);
    EXPECT_EQ(read.coefficients[63], run == 62 ? 9 : 0);
    EXPECT_EQ(read.position, run == 62 ? bits.size() : 0);
  }
}

TEST(Mpeg4Read, ScansDifferByMember) {
  Rng rng(87);
  const auto elementOfPosition4 = [&](Member member, int scan) {
    Mode mode = plain(member);
    mode.scan = scan;
    const Read read = readInto(mode, reference::mpeg4Escape3(1, 4, 1), rng);
    return std::find_if(read.coefficients, read.coefficients + 64, [](int16_t value) { return value != 0; }) -
           read.coefficients;
  };
  const int zigzag = 9, vertical = 1, horizontal = 8, raster = 4;
  const struct {
    int scan, intra, inter, recon;
  } table[] = {{0, zigzag, zigzag, zigzag},
               {1, vertical, vertical, vertical},
               {2, horizontal, raster, zigzag},
               {-1, raster, raster, zigzag},
               {3, raster, raster, zigzag}};
  for (const auto& row : table) {
    EXPECT_EQ(elementOfPosition4(Member::Intra, row.scan), row.intra);
    EXPECT_EQ(elementOfPosition4(Member::Inter, row.scan), row.inter);
    EXPECT_EQ(elementOfPosition4(Member::Recon, row.scan), row.recon);
  }
}

TEST(Mpeg4Read, AReversibleBlockIsReadBeforeTheContextIsLookedAt) {
  Rng rng(88);
  const std::string bits = *reversibleCode(false).word(1, 0, 1) + "0";
  const QuantContext context(rng, false, 8);
  uint8_t notAContext[200] = {};
  const struct {
    const void* spec;
    int QP;
    zvpStatus status;
  } cases[] = {{nullptr, 0, zvpStatusNullPointer},
               {notAContext, 0, zvpStatusBadContext},
               {context.data(), 32, zvpStatusBadQuantizer},
               {context.data(), 0, zvpStatusBadQuantizer},
               {context.data(), 31, zvpStatusOk}};
  for (const auto& c : cases) {
    for (int rvlc : {0, 256}) {
      InputStream stream(rvlc ? bits : *mpeg4Code(false).word(1, 0, 1) + "0", 0, 6, rng.guard());
      int16_t coefficients[64] = {77};
      int32_t index = 55;
      EXPECT_EQ(zvpiReconstructCoeffsInter_MPEG4_1u16s(&stream.byte, &stream.offset, coefficients, &index, rvlc, 0,
                                                       c.spec, c.QP),
                c.status);
      const bool read = rvlc || c.status == zvpStatusOk;
      EXPECT_EQ(index, read ? 0 : 55);
      EXPECT_EQ(stream.position(), read ? bits.size() : 0);
      EXPECT_EQ(coefficients[0], c.status == zvpStatusOk ? 93 : read ? 1 : 77);
    }
    // A bad stream comes before a bad context.
    InputStream broken("00000000", 0, 4, rng.guard());
    int16_t coefficients[64];
    int32_t index;
    EXPECT_EQ(
        zvpiReconstructCoeffsInter_MPEG4_1u16s(&broken.byte, &broken.offset, coefficients, &index, 1, 0, c.spec, c.QP),
        zvpStatusBadVlcCode);
  }
}

// ---- backward ---------------------------------------------------------------------------------------------------

namespace {

zvpStatus callBackward(bool intra, int skipDC, const uint8_t** byte, int32_t* offset, int16_t* coefficients,
                       int32_t* index) {
  return intra ? zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(byte, offset, coefficients, index, skipDC)
               : zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s(byte, offset, coefficients, index);
}

// One block against the model, in a stream that ends with the cursor's byte.
void checkBackward(bool intra, int skipDC, const std::string& bits, std::size_t last, Rng& rng) {
  const int first = intra && skipDC ? 1 : 0;
  const BlockResult expected = reference::mpeg4ReadBackward(reversibleCode(intra), bits, last, first);
  // Four bytes in front of the byte of the last bit that counts as consumed, and none behind the cursor.
  const std::size_t begin = last + 1 - expected.bits;
  const std::size_t firstByte = begin / 8 >= 4 ? begin / 8 - 4 : 0;
  const std::size_t cut = 8 * firstByte;
  InputStream stream(bits.substr(cut, last + 1 - cut), last - cut, last / 8 + 1 - firstByte, rng.guard());
  const std::vector<int16_t> before = randomValues<int16_t>(64, rng, Style::Uniform, -32768, 32767);
  Placed<int16_t> coefficients(before, rng);
  std::vector<int16_t> block(expected.coefficients.begin(), expected.coefficients.end());
  if (first == 1) block[0] = before[0];
  int32_t index = 99;
  ASSERT_EQ(callBackward(intra, skipDC, &stream.byte, &stream.offset, coefficients.data(), &index), expected.status);
  ASSERT_TRUE(sameArray(coefficients.values().data(), block.data(), 64));
  ASSERT_EQ(index, expected.indexLastNonZero);
  const std::size_t cursor = expected.status == zvpStatusOk ? last - expected.bits : last;
  ASSERT_EQ(stream.position() + 8 * firstByte, cursor);
}

struct Packet {
  std::string bits;
  std::vector<std::size_t> ends;  // behind each block
};
// Noise, a code with LAST 1 for the first block to end at, and blocks.
Packet anyPacket(Rng& rng, bool intra, int first, int blocks) {
  Packet packet = {randomBits(rng, rng.range(64, 80)), {}};
  packet.bits += anyForm(rng, intra, true, 1, 0, 1);
  for (int i = 0; i < blocks; ++i) {
    packet.bits += writeBlock(rng, intra, true, anyEvents(rng, first, 2047));
    packet.ends.push_back(packet.bits.size());
  }
  return packet;
}

}  // namespace

TEST(Mpeg4Backward, GivesTheBlocksThatForwardGives) {
  Rng rng(91);
  for (int round = 0; round < rounds(800); ++round) {
    const bool intra = rng.chance(2);
    const int skipDC = intra ? anyFlag(rng) : 0, first = skipDC ? 1 : 0;
    const Packet packet = anyPacket(rng, intra, first, rng.range(1, 12));
    const auto bytes = packBits(packet.bits + std::string(40, '1'));
    // Back through the packet, and each block again forward, in raster order, since backward leaves the coded one.
    const uint8_t* byte = bytes.data() + (packet.ends.back() - 1) / 8;
    int32_t offset = int32_t((packet.ends.back() - 1) % 8);
    for (std::size_t i = packet.ends.size(); i-- > 0;) {
      std::array<int16_t, 64> backward = {5}, again = {5};
      int32_t index = 0, indexAgain = 0;
      ASSERT_EQ(callBackward(intra, skipDC, &byte, &offset, backward.data(), &index), zvpStatusOk);
      const std::size_t before = std::size_t(byte - bytes.data()) * 8 + std::size_t(offset) + 1;
      if (i > 0) {
        ASSERT_EQ(before, packet.ends[i - 1]);
      }
      const uint8_t* in = bytes.data() + before / 8;
      int32_t inOffset = int32_t(before % 8);
      ASSERT_EQ(intra ? zvpiDecodeCoeffsIntra_MPEG4_1u16s(&in, &inOffset, again.data(), &indexAgain, 1, skipDC, -1)
                      : zvpiDecodeCoeffsInter_MPEG4_1u16s(&in, &inOffset, again.data(), &indexAgain, 1, -1),
                zvpStatusOk);
      ASSERT_EQ(std::size_t(in - bytes.data()) * 8 + std::size_t(inOffset), packet.ends[i]);
      ASSERT_TRUE(sameArray(backward.data(), again.data(), 64));
      ASSERT_EQ(index, indexAgain);
    }
  }
}

// A forward reader fails at the damage; a backward one brings the blocks behind it.
TEST(Mpeg4Backward, ACutPacketGivesItsTail) {
  Rng rng(92);
  int saved = 0;
  for (int round = 0; round < rounds(300); ++round) {
    const bool intra = rng.chance(2);
    Packet packet = anyPacket(rng, intra, 0, 8);
    const std::size_t cut = packet.ends[3] - 5;
    // All bits in front of the cut are lost; noise stands there.
    packet.bits.replace(0, cut, randomBits(rng, int(cut)));
    const auto bytes = packBits(packet.bits);
    const uint8_t* byte = bytes.data() + (packet.ends.back() - 1) / 8;
    int32_t offset = int32_t((packet.ends.back() - 1) % 8);
    for (std::size_t i = 7; i > 4; --i) {
      int16_t coefficients[64];
      int32_t index;
      ASSERT_EQ(callBackward(intra, 0, &byte, &offset, coefficients, &index), zvpStatusOk);
      ASSERT_EQ(std::size_t(byte - bytes.data()) * 8 + std::size_t(offset) + 1, packet.ends[i - 1]);
      ++saved;
    }
  }
  EXPECT_EQ(saved, 3 * rounds(300));
}

TEST(Mpeg4Backward, GoesAsInTheModel) {
  Rng rng(93);
  for (int round = 0; round < rounds(8000); ++round) {
    const bool intra = rng.chance(2);
    const int skipDC = intra ? anyFlag(rng) : 0;
    Packet packet = anyPacket(rng, intra, skipDC ? 1 : 0, 1);
    std::string bits = randomBits(rng, 2200) + packet.bits;  // as far as a reader may ever go back
    if (rng.chance(2)) {
      const int turned = rng.range(1, std::min<int>(int(packet.bits.size()), 100));
      char& bit = bits[bits.size() - std::size_t(turned)];
      bit = bit == '0' ? '1' : '0';
    }
    if (rng.chance(8)) bits += randomBits(rng, rng.range(1, 9));
    checkBackward(intra, skipDC, bits, bits.size() - 1, rng);
    if (HasFatalFailure()) return;
  }
}

TEST(Mpeg4Backward, EscapesBitByBit) {
  Rng rng(94);
  for (int round = 0; round < rounds(100); ++round) {
    const bool intra = rng.chance(2);
    const int run = rng.range(0, 63), level = rng.pick<int>({1, -2047, 5, -1024});
    const std::string escape = reference::mpeg4ReversibleEscape(1, run, level);
    const std::string front = randomBits(rng, 2200) + reversibleCode(intra).words.at({1, 0, 1}) + "0";
    for (std::size_t turned = 0; turned <= escape.size(); ++turned) {
      std::string bits = front + escape;
      if (turned < escape.size()) bits[front.size() + turned] = bits[front.size() + turned] == '0' ? '1' : '0';
      checkBackward(intra, 0, bits, bits.size() - 1, rng);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(Mpeg4Backward, OneEventStandsWhereForwardPutsIt) {
  Rng rng(95);
  for (int skipDC : {0, 1})
    for (int run = 0; run + skipDC < 64; ++run) {
      const std::string bits = std::string(64, '0') + reversibleCode(true).words.at({1, 3, 1}) + "1" +
                               reference::mpeg4ReversibleEscape(1, run, -700);
      InputStream stream(bits, bits.size() - 1, (bits.size() + 7) / 8, Guard::Behind);
      int16_t coefficients[64] = {77};
      int32_t index;
      ASSERT_EQ(callBackward(true, skipDC, &stream.byte, &stream.offset, coefficients, &index), zvpStatusOk);
      EXPECT_EQ(index, skipDC + run);
      EXPECT_EQ(coefficients[skipDC + run], -700);
      EXPECT_EQ(stream.position(), bits.size() - 31);
      if (skipDC) {
        EXPECT_EQ(coefficients[0], 77);
      }
      for (int i = skipDC; i < 64; ++i)
        if (i != skipDC + run) {
          ASSERT_EQ(coefficients[i], 0);
        }
    }
}

// More than 64 positions: too many coefficients fail, a run that is too long shows in the index.
TEST(Mpeg4Backward, DamagedBlocksStayInsideTheBlock) {
  Rng rng(96);
  const std::string one = reversibleCode(false).words.at({0, 0, 1}) + "0";
  const std::string last = reversibleCode(false).words.at({1, 0, 1}) + "0";
  const std::string front = randomBits(rng, 2200) + last;
  for (int events = 60; events < 70; ++events) {
    std::string bits = front;
    for (int i = 1; i < events; ++i) bits += one;
    checkBackward(false, 0, bits + last, bits.size() + last.size() - 1, rng);
    checkBackward(true, 1, bits + last, bits.size() + last.size() - 1, rng);
  }
  for (int run : {1, 30, 62, 63})
    for (int events : {1, 2, 40, 62, 63, 64}) {
      std::string bits = front + reference::mpeg4ReversibleEscape(0, run, 900);
      for (int i = 1; i < events; ++i) bits += one;
      bits += last;
      checkBackward(false, 0, bits, bits.size() - 1, rng);
      checkBackward(true, 1, bits, bits.size() - 1, rng);
    }
}

// ---- the intra DC -----------------------------------------------------------------------------------------------

TEST(Mpeg4Dc, ValuesAreWrittenAndReadBack) {
  Rng rng(97);
  for (int dc = -4095; dc <= 4095; ++dc) {
    const int encodeType = rng.pick<int>({0, 1, 2, -1});
    const bool chroma = encodeType == 1;
    const std::string bits = reference::mpeg4WriteDc(dc, chroma);
    const std::size_t start = std::size_t(rng.range(0, 15));
    OutputStream out(bits, start, rng);
    ASSERT_EQ(zvpiEncodeDCIntra_MPEG4_16s1u(int16_t(dc), &out.byte, &out.offset, encodeType), zvpStatusOk);
    ASSERT_TRUE(sameBytes(out.bytes(), out.expected()));
    ASSERT_EQ(out.position(), start + bits.size());
    // Three bytes from the cursor's on, and the fourth only if the code reaches into it.
    const std::string stream = randomBits(rng, int(start)) + bits;
    const std::size_t size = start / 8 + std::max<std::size_t>(3, (start % 8 + bits.size() + 7) / 8);
    InputStream in(stream, start, size, rng.guard());
    Placed<int16_t> value(std::vector<int16_t>(1, 999), rng);
    const int decodeType = chroma ? rng.pick<int>({1, 2, 256}) : 0;
    ASSERT_EQ(zvpiDecodeDCIntra_MPEG4_1u16s(&in.byte, &in.offset, value.data(), decodeType), zvpStatusOk);
    ASSERT_EQ(value.values()[0], dc);
    ASSERT_EQ(in.position(), start + bits.size());
  }
}

TEST(Mpeg4Dc, RandomBitsGoAsInTheModel) {
  Rng rng(98);
  for (int round = 0; round < rounds(8000); ++round) {
    const bool chroma = rng.chance(2);
    const std::size_t start = std::size_t(rng.range(0, 7));
    std::string bits(std::size_t(rng.range(0, 13)), '0');
    bits += randomBits(rng, 40);
    const auto expected = reference::mpeg4ReadDc(bits, chroma);
    const std::size_t size = std::max<std::size_t>(3, (start + expected.bits + 7) / 8);
    InputStream in{randomBits(rng, int(start)) + bits, start, size, rng.guard()};
    int16_t value = 999;
    ASSERT_EQ(zvpiDecodeDCIntra_MPEG4_1u16s(&in.byte, &in.offset, &value, chroma), expected.status);
    ASSERT_EQ(value, expected.written ? expected.value : 999);
    ASSERT_EQ(in.position(), start + (expected.status == zvpStatusOk ? expected.bits : 0));
  }
}

TEST(Mpeg4Dc, Examples) {
  EXPECT_EQ(reference::mpeg4WriteDc(-1, false), "110");
  EXPECT_EQ(reference::mpeg4WriteDc(256, false),
            "00000001"
            "100000000"
            "1");
  // Values that have no code stay inside the stream all the same.
  for (int dc : {4096, -4096, 32767, -32768}) {
    uint8_t bytes[8] = {};
    uint8_t* byte = bytes;
    int32_t offset = 0;
    EXPECT_EQ(zvpiEncodeDCIntra_MPEG4_16s1u(int16_t(dc), &byte, &offset, 1), zvpStatusOk);
    EXPECT_LE(byte - bytes, 4);
  }
}

// ---- writing ----------------------------------------------------------------------------------------------------

namespace {

struct WriteMode {
  bool intra;
  int rvlc, skipDC, scan;
  int first() const { return intra && skipDC ? 1 : 0; }
  const reference::ScanTable& scanTable() const {
    if (scan == 1) return zvptest::scanTable(ScanName::Vertical);
    if (scan == 2 && intra) return zvptest::scanTable(ScanName::Horizontal);
    return zvptest::scanTable(scan == -1 ? ScanName::Raster : ScanName::Zigzag);
  }
  std::string bits(const int16_t* coefficients, int count) const {
    return rvlc ? reference::mpeg4WriteReversible(reversibleCode(intra), coefficients, count, first(), scanTable())
                : reference::mpeg4WriteCoeffs(mpeg4Code(intra), coefficients, count, first(), scanTable());
  }
};

WriteMode anyWriteMode(Rng& rng) {
  WriteMode mode = {};
  mode.intra = rng.chance(2);
  mode.rvlc = anyFlag(rng);
  mode.skipDC = anyFlag(rng);
  mode.scan = anyScan(rng);
  return mode;
}

zvpStatus callWriter(const WriteMode& mode, const int16_t* coefficients, uint8_t** byte, int32_t* offset, int count) {
  return mode.intra
             ? zvpiEncodeCoeffsIntra_MPEG4_16s1u(coefficients, byte, offset, count, mode.rvlc, mode.skipDC, mode.scan)
             : zvpiEncodeCoeffsInter_MPEG4_16s1u(coefficients, byte, offset, count, mode.rvlc, mode.scan);
}

auto writerOf(const WriteMode& mode) {
  return [&](auto... arguments) { return callWriter(mode, arguments...); };
}

void checkWrite(const WriteMode& mode, const std::vector<int16_t>& block, int count, Rng& rng) {
  checkWritten(mode.bits(block.data(), count), block, count, rng, writerOf(mode));
}

}  // namespace

TEST(Mpeg4Write, GoesAsInTheModel) {
  Rng rng(99);
  for (int round = 0; round < rounds(12000); ++round) {
    const WriteMode mode = anyWriteMode(rng);
    const std::vector<int16_t> block = anyBlock(rng, rng.pick<int>({1, 3, 12, 30, 60, 2047, 32767}));
    int count = std::max(countNonZero(block, mode.first()), 1);
    if (rng.chance(3)) count = rng.range(1, 64 - mode.first());
    checkWrite(mode, block, count, rng);
    if (HasFatalFailure()) return;
  }
}

// Every run and level of interest, alone and with something behind it: each form and the borders between them.
TEST(Mpeg4Write, EveryEvent) {
  Rng rng(100);
  for (bool intra : {false, true})
    for (int rvlc : {0, 1})
      for (int last : {0, 1})
        for (int run = 0; run < 63; ++run)
          for (int level : {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 20, 27, 28, 54, 55, 2047, 2048, 32767}) {
            std::vector<int16_t> block(64, 0);
            block[std::size_t(run)] = int16_t(rng.chance(2) ? level : -level);
            if (!last) block[63] = 1;
            checkWrite({intra, rvlc, 0, -1}, block, last ? 1 : 2, rng);
            if (HasFatalFailure()) return;
          }
}

TEST(Mpeg4Write, WhatIsWrittenIsReadBack) {
  Rng rng(101);
  for (int round = 0; round < rounds(6000); ++round) {
    WriteMode mode = anyWriteMode(rng);
    mode.scan = rng.pick<int>({0, 1, -1});  // where readers and writers agree
    std::vector<int16_t> block = anyBlock(rng, rng.pick<int>({3, 12, 60, 2047}));
    if (countNonZero(block, mode.first()) == 0) block[63] = -1;
    const Mode reader = {mode.intra ? Member::Intra : Member::Inter, mode.rvlc, mode.skipDC, mode.scan, 1};
    checkReadBack(block, countNonZero(block, mode.first()), writerOf(mode),
                  [&](auto... arguments) { return callReader(reader, nullptr, arguments...); });
    if (HasFatalFailure()) return;
  }
}

TEST(Mpeg4Write, TheLargestLevelOfRun0DecidesOnType2) {
  Rng rng(104);
  const auto& code = mpeg4Code(false);
  const auto written = [&](const std::vector<int16_t>& block, int count) {
    checkWrite({false, 0, 0, -1}, block, count, rng);
    return reference::mpeg4WriteCoeffs(code, block.data(), count, 0, scanTable(ScanName::Raster));
  };
  std::vector<int16_t> far(64, 0);
  far[1] = 3;  // LAST 1, run 1: 2 is the largest level, 4 would be type 1
  EXPECT_EQ(written(far, 1), reference::mpeg4Escape1(code, 1, 1, 3));
  far[1] = 0, far[2] = 3;  // one more run: level 3 has words up to run 0, and 2 - 0 - 1 is too far
  EXPECT_EQ(written(far, 1), reference::mpeg4Escape3(1, 2, 3));
  std::vector<int16_t> second(64, 0);
  second[13] = 3, second[63] = 1;  // LAST 0, run 13: level 3 has words up to run 6, 13 - 6 - 1 is 6
  EXPECT_EQ(written(second, 2).substr(0, 9), "000001110");
}

TEST(Mpeg4Write, Run44WithLastIsAnEscapeInTheReversibleCode) {
  for (bool intra : {false, true}) {
    std::vector<int16_t> block(64, 0);
    block[44] = 1;
    uint8_t bytes[8] = {};
    uint8_t* byte = bytes;
    int32_t offset = 0;
    ASSERT_TRUE(reversibleCode(intra).word(1, 44, 1));
    ASSERT_EQ(callWriter({intra, 1, 0, -1}, block.data(), &byte, &offset, 1), zvpStatusOk);
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 4), packBits(reference::mpeg4ReversibleEscape(1, 44, 1)));
    EXPECT_EQ(8 * (byte - bytes) + offset, 30);
  }
}

TEST(Mpeg4Write, CountsThatAreTooLargeLeaveTheBlockOpen) {
  Rng rng(102);
  std::vector<int16_t> block(64, 0);
  block[0] = 2;
  checkWrite({true, 0, 0, 0}, block, 2, rng);
  EXPECT_EQ(reference::mpeg4WriteCoeffs(mpeg4Code(true), block.data(), 2, 0, scanTable(ScanName::Zigzag)), "1100");
  // Nothing at all for a block of zeros.
  for (int rvlc : {0, 1}) {
    const WriteMode mode = {true, rvlc, 1, 0};
    expectNothingWritten(block.data(), 63, writerOf(mode));
  }
}

// ---- refusals ---------------------------------------------------------------------------------------------------

// Each one alone and before those that come later; nothing is written.
TEST(Mpeg4Checks, Readers) {
  Rng rng(103);
  const QuantContext context(rng, true, 8);
  for (bool later : {false, true})
    for (Member member : {Member::Intra, Member::Inter, Member::Recon}) {
      const Mode mode = {member, 0, 0, 0, later ? 0 : 5};
      expectReaderRefusals(
          [&](auto... arguments) { return callReader(mode, later ? nullptr : context.data(), arguments...); });
    }
  for (bool intra : {false, true})
    expectReaderRefusals([&](auto... arguments) { return callBackward(intra, 0, arguments...); });
  const std::vector<uint8_t> bytes(64, 0xaa);
  uint8_t wrong[200] = {};
  int16_t coefficients[64] = {77};
  int32_t index = 99;
  // The context behind the cursor, the quantizer behind the context; a context of the other kind is none.
  uint8_t intraContext[200];
  EXPECT_EQ(zvpiQuantInvIntraInit_MPEG4(nullptr, intraContext, 8), zvpStatusOk);
  const uint8_t* byte = bytes.data();
  int32_t offset = 0;
  const auto recon = [&](const void* spec, int QP) {
    return zvpiReconstructCoeffsInter_MPEG4_1u16s(&byte, &offset, coefficients, &index, 0, 0, spec, QP);
  };
  EXPECT_EQ(recon(nullptr, 0), zvpStatusNullPointer);
  EXPECT_EQ(recon(wrong, 0), zvpStatusBadContext);
  EXPECT_EQ(recon(intraContext, 0), zvpStatusBadContext);
  for (int QP : {0, 32, -1, INT32_MIN, INT32_MAX}) EXPECT_EQ(recon(context.data(), QP), zvpStatusBadQuantizer);
  for (int bits = 4; bits <= 12; ++bits) {
    const QuantContext deep(rng, false, bits);
    EXPECT_EQ(recon(deep.data(), deep.largestQP() + 1), zvpStatusBadQuantizer);
  }
  EXPECT_EQ(byte, bytes.data());
  EXPECT_EQ(offset, 0);
  EXPECT_EQ(index, 99);
  EXPECT_EQ(coefficients[0], 77);
}

TEST(Mpeg4Checks, WritersAndDc) {
  for (bool intra : {false, true})
    for (int skipDC : {0, 256}) {
      const WriteMode mode = {intra, 0, skipDC, 0};
      expectWriterRefusals(intra && skipDC ? 63 : 64, writerOf(mode));
    }
  expectDcWriterRefusals(
      [](uint8_t** byte, int32_t* offset) { return zvpiEncodeDCIntra_MPEG4_16s1u(1, byte, offset, 0); });
  expectDcReaderRefusals([](const uint8_t** byte, int32_t* offset, int16_t* dc) {
    return zvpiDecodeDCIntra_MPEG4_1u16s(byte, offset, dc, 0);
  });
}
