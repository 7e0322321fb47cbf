// What no encoder at hand writes: partitioned packets of MPEG-4 with reversible codes, DCs among the other
// coefficients, quantizers that change in any place. Random macroblocks are written here with the library's encoders of
// coefficients, and decoded by the decoder of the examples and by ffmpeg.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "mpeg4_support.h"
#include "support/csv.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;

namespace {

constexpr int widthMbs = 5, heightMbs = 4, count = widthMbs * heightMbs;

enum class Packets { Combined, Partitioned, Reversible };

class StreamWriter {
 public:
  explicit StreamWriter(Packets packets, std::uint64_t seed)
      : rng_(seed), partitioned_(packets != Packets::Combined), reversible_(packets == Packets::Reversible) {
    for (const CsvRow& row : readTable("mpeg4_mcbpc"))
      if (!row.at("mb_type").empty()) mcbpc_[row.at("vop") + row.at("mb_type") + row.at("cbpc")] = row.at("code_bits");
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
    put("0001"
        "0"
        "00"
        "1");
    put(25, 16);
    put("101");
    put(16 * widthMbs, 13);
    put("1");
    put(16 * heightMbs, 13);
    put("1"
        "0"
        "1"
        "0"
        "0"
        "0"
        "1"
        "0");
    put(partitioned_, 1);
    if (partitioned_) put(reversible_, 1);
    put("0");
    bytes_.insert(bytes_.end(), {0, 0, 1, 0});
    unit(0x20);
  }

  void time(int number) {
    put("01");
    put(unsigned(number), 5);
    put("1");
  }
  void vop(int number, bool predicted) {
    predicted_ = predicted;
    put(predicted ? "01" : "00");
    time(number);
    put("1");
    if (predicted) put(unsigned(rng_.range(0, 1)), 1);
    threshold_ = partitioned_ ? 0 : rng_.range(0, 7);
    put(unsigned(threshold_), 3);
    newQuantizer();
    if (predicted) put(1, 3);
    for (int mb = 0; mb < count;) {
      if (mb > 0) {
        stuff();
        put(1, 17);
        put(unsigned(mb), 5);
        newQuantizer();
        const bool again = rng_.chance(2);  // the header of the picture
        put(again, 1);
        if (again) {
          time(number);
          put(predicted ? "01" : "00");
          put(unsigned(threshold_), 3);
          if (predicted) put(1, 3);
        }
      }
      const int end = std::min(count, mb + rng_.range(1, 9));
      packet(end - mb);
      mb = end;
    }
    unit(0xB6);
  }

  void newQuantizer() {
    quantizer_ = rng_.range(1, rng_.chance(2) ? 6 : 31);
    put(unsigned(quantizer_), 5);
  }
  // Two bits that change it.
  std::string quantizerChange() {
    const int change = rng_.range(0, 3);
    quantizer_ = std::clamp(quantizer_ + std::array{-1, -2, 1, 2}[std::size_t(change)], 1, 31);
    return std::string(1, change & 2 ? '1' : '0') + (change & 1 ? '1' : '0');
  }
  std::string dc(int block) {
    const int most = std::max(1, 70 / std::max(8, 2 * quantizer_)), value = rng_.range(-most, most);
    return coded_([&](std::uint8_t** to, std::int32_t* offset) {
      return zvpiEncodeDCIntra_MPEG4_16s1u(std::int16_t(value), to, offset, block >= 4);
    });
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
      const bool four = !intra && rng_.chance(3), changes = !four && rng_.chance(3);
      const int pattern = rng_.range(0, 63), type = (intra ? 3 : four ? 2 : 0) + changes;
      put(mcbpc_.at((predicted_ ? "P" : "I") + std::to_string(type) + std::to_string(pattern & 3)));
      const std::string prediction(intra ? 1 : 0, rng_.chance(2) ? '1' : '0');
      const std::string luma = cbpy_.at(std::to_string(intra ? pattern >> 2 : 15 - (pattern >> 2)));
      const bool dcCodes = threshold_ == 0 || (threshold_ < 7 && quantizer_ < 11 + 2 * threshold_);
      const std::string change = changes ? quantizerChange() : "";
      std::string vectors, dcs, blocks;
      for (int i = 0; i < (intra ? 0 : four ? 8 : 2); ++i) {
        const int most = rng_.chance(4) ? 31 : 3;
        vectors += motion_.at(std::to_string(rng_.range(-most, most)));
      }
      for (int block = 0; block < 6; ++block) {
        if (intra && dcCodes) (partitioned_ ? dcs : blocks) += dc(block);
        if (pattern >> (5 - block) & 1) blocks += coefficients(intra, dcCodes);
      }
      if (!partitioned_) {
        put(prediction + luma + change + vectors + blocks);
        continue;
      }
      put(predicted_ ? vectors : change + dcs);
      second += prediction + luma + (predicted_ ? change + dcs : "");
      third += blocks;
    }
    if (!partitioned_) return;
    if (predicted_)
      put(0x1F001, 17);
    else
      put(0x6B001, 19);
    put(second);
    put(third);
  }

  std::string coefficients(bool intra, bool dcCodes) {
    std::int16_t block[64] = {};
    int events = 0;
    if (intra && !dcCodes && rng_.chance(2)) {
      block[0] = std::int16_t(rng_.chance(2) ? 1 : -1);
      ++events;
    }
    for (int wanted = rng_.range(1, rng_.chance(4) ? 20 : 4); wanted > 0; --wanted) {
      const int at = rng_.chance(3) ? rng_.range(1, 63) : rng_.range(1, 12);
      if (block[at] != 0) continue;
      const int level =
          rng_.chance(8) ? std::max(1, 120 / quantizer_ - rng_.range(0, 15)) : rng_.range(1, 1 + 4 / quantizer_);
      block[at] = std::int16_t(rng_.chance(2) ? level : -level);
      ++events;
    }
    ++coded;
    return coded_([&](std::uint8_t** to, std::int32_t* offset) {
      return intra ? zvpiEncodeCoeffsIntra_MPEG4_16s1u(block, to, offset, events, reversible_, dcCodes, 0)
                   : zvpiEncodeCoeffsInter_MPEG4_16s1u(block, to, offset, events, reversible_, 0);
    });
  }

  template <class Write> std::string coded_(Write write) {
    std::uint8_t bytes[300] = {};
    std::uint8_t* to = bytes;
    std::int32_t offset = 0;
    EXPECT_EQ(write(&to, &offset), zvpStatusOk);
    std::string digits;
    for (std::ptrdiff_t i = 0; i < 8 * (to - bytes) + offset; ++i)
      digits += bytes[i / 8] >> (7 - i % 8) & 1 ? '1' : '0';
    return digits;
  }

  Rng rng_;
  bool partitioned_, reversible_, predicted_ = false;
  int threshold_ = 0, quantizer_ = 1;
  std::map<std::string, std::string> mcbpc_, cbpy_, motion_;
  std::string digits_;
  Bytes bytes_;
};

}  // namespace

TEST(Mpeg4Random, MacroblocksAreThoseOfFfmpeg) {
  ZVP_NEED_PROGRAM("ffmpeg");
  const TemporaryDirectory scratch;
  for (const Packets packets : {Packets::Combined, Packets::Partitioned, Packets::Reversible})
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
      SCOPED_TRACE("packets " + std::to_string(int(packets)) + ", seed " + std::to_string(seed));
      StreamWriter writer(packets, seed);
      const Bytes stream = writer.make(9);
      EXPECT_GT(writer.coded, 200);
      writeFile(scratch / "coded.m4v", stream);
      const Decoded decoded = decodeMpeg4(stream);
      ASSERT_FALSE(decoded.failed) << decoded.error << " at " << decoded.position;
      ASSERT_EQ(decoded.pictures.size(), 9u);
      expectNear(decoded.pictures,
                 decodeMpeg4WithFfmpeg(scratch / "coded.m4v", scratch, decoded.pictures[0].samples.size()), 52);
    }
}
