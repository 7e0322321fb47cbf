// Partitioned packets of MPEG-4 with reversible codes, which no encoder at hand writes: random macroblocks written here
// with the library's encoders of coefficients, decoded by the decoder of the examples and by ffmpeg.
#include <gtest/gtest.h>

#include <map>

#include "mpeg4_support.h"
#include "support/csv.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

constexpr int widthMbs = 5, heightMbs = 4, count = widthMbs * heightMbs;

class StreamWriter {
 public:
  explicit StreamWriter(bool reversible, std::uint64_t seed) : rng_(seed), reversible_(reversible) {
    for (const CsvRow& row : readTable("mpeg4_mcbpc"))
      if (!row.at("mb_type").empty())
        mcbpc_[row.at("vop") + row.at("mb_type") + row.at("cbpc")] = row.at("code_bits");
    for (const CsvRow& row : readTable("mpeg4_cbpy")) cbpy_[row.at("cbpy_intra")] = row.at("code_bits");
    for (const CsvRow& row : readTable("mpeg4_mvd")) motion_[row.at("motion_code")] = row.at("code_bits");
  }

  Bytes make(int pictures) {
    layer();
    for (int i = 0; i < pictures; ++i) vop(i, i % 3 != 0);
    return bytes_;
  }
  int coded = 0;  // blocks

 private:
  void put(const std::string& digits) { digits_ += digits; }
  void put(unsigned value, int bits) {
    for (int i = bits - 1; i >= 0; --i) digits_ += value >> i & 1 ? '1' : '0';
  }
  void stuff() {
    digits_ += '0';
    while (digits_.size() % 8 != 0) digits_ += '1';
  }
  // Writes what stands behind a start code.
  void unit(unsigned code) {
    stuff();
    bytes_.insert(bytes_.end(), {0, 0, 1, std::uint8_t(code)});
    for (std::size_t i = 0; i < digits_.size(); i += 8)
      bytes_.push_back(std::uint8_t(std::stoi(digits_.substr(i, 8), nullptr, 2)));
    digits_.clear();
  }

  void layer() {
    put(0, 1 + 8 + 1);
    put("0001" "0" "00" "1");
    put(25, 16);
    put("101");
    put(16 * widthMbs, 13);
    put("1");
    put(16 * heightMbs, 13);
    put("1" "0" "1" "0" "0" "0" "1" "0" "1");
    put(reversible_, 1);
    put("0");
    bytes_.insert(bytes_.end(), {0, 0, 1, 0});
    unit(0x20);
  }

  void vop(int number, bool predicted) {
    predicted_ = predicted;
    put(predicted ? "01" : "00");
    put(number > 0 && number % 25 == 0 ? "101" : "01");
    put(unsigned(number % 25), 5);
    put("11");
    if (predicted) put(unsigned(rng_.range(0, 1)), 1);
    put(0, 3);
    put(unsigned(rng_.range(1, 6)), 5);
    if (predicted) put(1, 3);
    for (int mb = 0; mb < count;) {
      if (mb > 0) {
        stuff();
        put(1, 17);
        put(unsigned(mb), 5);
        put(unsigned(rng_.range(1, 6)), 5);
        put("0");
      }
      const int end = std::min(count, mb + rng_.range(1, 9));
      packet(end - mb);
      mb = end;
    }
    unit(0xB6);
  }

  void packet(int macroblocks) {
    std::string second, third;
    for (; macroblocks > 0; --macroblocks) {
      if (predicted_) {
        const bool skipped = rng_.chance(5);
        put(skipped, 1);
        if (skipped) continue;
      }
      const bool intra = !predicted_ || rng_.chance(4);
      const bool four = !intra && rng_.chance(3);
      const int pattern = rng_.range(0, 63);
      put(mcbpc_.at((predicted_ ? "P" : "I") + std::to_string(intra ? 3 : four ? 2 : 0) + std::to_string(pattern & 3)));
      std::string dcs;
      for (int block = 0; intra && block < 6; ++block)
        dcs += coded_([&](std::uint8_t** to, std::int32_t* offset) {
          const int dc = rng_.range(-9, 9);
          return zvpiEncodeDCIntra_MPEG4_16s1u(std::int16_t(dc), to, offset, block >= 4);
        });
      if (!predicted_) put(dcs);
      for (int i = 0; i < (intra ? 0 : four ? 8 : 2); ++i)
        put(motion_.at(std::to_string(rng_.chance(4) ? rng_.range(-32, 31) : rng_.range(-3, 3))));
      if (intra) second += rng_.chance(2) ? '1' : '0';
      second += cbpy_.at(std::to_string(intra ? pattern >> 2 : 15 - (pattern >> 2)));
      if (predicted_) second += dcs;
      for (int block = 0; block < 6; ++block)
        if (pattern >> (5 - block) & 1) third += coefficients(intra);
    }
    if (predicted_) put(0x1F001, 17);
    else put(0x6B001, 19);
    put(second);
    put(third);
  }

  std::string coefficients(bool intra) {
    std::int16_t block[64] = {};
    int events = 0;
    for (int wanted = rng_.range(1, rng_.chance(4) ? 20 : 4); wanted > 0; --wanted) {
      const int at = rng_.chance(3) ? rng_.range(1, 63) : rng_.range(1, 12);
      if (block[at] != 0) continue;
      const int level = rng_.chance(8) ? rng_.range(5, 20) : rng_.range(1, 3);
      block[at] = std::int16_t(rng_.chance(2) ? level : -level);
      ++events;
    }
    ++coded;
    return coded_([&](std::uint8_t** to, std::int32_t* offset) {
      return intra ? zvpiEncodeCoeffsIntra_MPEG4_16s1u(block, to, offset, events, reversible_, 1, 0)
                   : zvpiEncodeCoeffsInter_MPEG4_16s1u(block, to, offset, events, reversible_, 0);
    });
  }

  template <class Write> std::string coded_(Write write) {
    std::uint8_t bytes[300] = {};
    std::uint8_t* to = bytes;
    std::int32_t offset = 0;
    EXPECT_EQ(write(&to, &offset), zvpStatusOk);
    std::string digits;
    for (std::ptrdiff_t i = 0; i < 8 * (to - bytes) + offset; ++i) digits += bytes[i / 8] >> (7 - i % 8) & 1 ? '1' : '0';
    return digits;
  }

  Rng rng_;
  bool reversible_, predicted_ = false;
  std::map<std::string, std::string> mcbpc_, cbpy_, motion_;
  std::string digits_;
  Bytes bytes_;
};

}  // namespace

TEST(Mpeg4Partitions, OfRandomMacroblocksAreThoseOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const bool reversible : {false, true})
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
      SCOPED_TRACE((reversible ? "reversible, seed " : "plain, seed ") + std::to_string(seed));
      StreamWriter writer(reversible, seed);
      const Bytes stream = writer.make(9);
      EXPECT_GT(writer.coded, 200);
      writeFile(scratch / "coded.m4v", stream);
      const Decoded decoded = decodeMpeg4(stream);
      ASSERT_FALSE(decoded.failed) << decoded.error << " at " << decoded.position;
      ASSERT_EQ(decoded.pictures.size(), 9u);
      expectAlike(decoded.pictures,
                  decodeMpeg4WithFfmpeg(scratch / "coded.m4v", scratch, decoded.pictures[0].samples.size()), 54);
    }
}
