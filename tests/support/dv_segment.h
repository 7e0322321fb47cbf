// The AC codes and scans of DV in the forms that decoder and model take, and a writer of segments.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "reference/dv/huffman.h"
#include "support/csv.h"
#include "support/random.h"

namespace zvptest {

constexpr int dvEndOfBlockRun = 127;

// Those that begin with 1111 and those that do not, signs included, the escape left out. complete: with words for the
// short runs that the standard leaves unassigned, so that no pattern is without a code.
inline reference::dv::Codes dvCodes(bool complete) {
  reference::dv::Codes codes;
  for (const auto& row : readTable("dv_vlc")) {
    const std::string &kind = row.at("kind"), &bits = row.at("code_bits");
    if (kind == "eob") codes[bits] = {dvEndOfBlockRun, 0};
    if (kind == "zero_run") codes[bits] = {std::stoi(row.at("run")), 0};
    if (kind != "coef") continue;
    const int run = std::stoi(row.at("run")), amplitude = std::stoi(row.at("amplitude"));
    codes[bits + '0'] = {run, amplitude};
    codes[bits + '1'] = {run, -amplitude};
  }
  if (complete)
    for (const int run : {0, 1, 2, 3, 4, 5, 62, 63}) {
      std::string word = "1111110";
      for (int i = 5; i >= 0; --i) word += run >> i & 1 ? '1' : '0';
      codes[word] = {run, 0};
    }
  return codes;
}

// The codes of the second list without their 1111, or those of the first.
inline reference::dv::Codes dvListCodes(const reference::dv::Codes& codes, bool second) {
  reference::dv::Codes list;
  for (const auto& [word, runLevel] : codes)
    if ((word.compare(0, 4, "1111") == 0) == second) list[second ? word.substr(4) : word] = runLevel;
  return list;
}

// As the maker of the table takes it. The words that are not read, and the upper bytes of the first, are noise.
inline std::vector<std::int32_t> dvCodeList(const reference::dv::Codes& codes, int longest) {
  std::vector<std::int32_t> list = {std::int32_t(0x5a5a5a00 + longest), -5, 1 << 30};
  for (int length = 1; length <= longest; ++length) {
    const std::size_t countAt = list.size();
    list.push_back(0);
    for (const auto& [word, runLevel] : codes) {
      if (int(word.size()) != length) continue;
      list.insert(list.end(), {std::stoi(word, nullptr, 2), runLevel.first, runLevel.second});
      ++list[countAt];
    }
  }
  return list;
}

// 64 words for the 8-8-DCT, then 64 for the 2-4-8-DCT.
inline const std::vector<std::uint32_t>& dvScans() {
  static const std::vector<std::uint32_t> scans = [] {
    std::vector<std::uint32_t> places(128);
    for (const auto& row : readTable("dv_scans"))
      places[std::size_t((row.at("mode") == "8x8" ? 0 : 64) + std::stoi(row.at("idx")))] =
          std::uint32_t(std::stoi(row.at("raster")));
    return places;
  }();
  return scans;
}

struct DvBlock {
  int dc = 0, mode = 0, classNumber = 0;
  std::vector<std::pair<int, int>> events;  // run, level; level 0 for a code of zeros
  std::string bits;                         // of the AC codes with the end of block
};

// Random events whose codes take about so many bits, all of place 63 at most, and the words that say them.
inline DvBlock dvRandomBlock(Rng& rng, const std::map<std::pair<int, int>, std::string>& words, int wantedBits) {
  DvBlock block;
  block.dc = rng.range(-256, 255);
  block.mode = rng.range(0, 1);
  block.classNumber = rng.range(0, 3);
  const int longestRun = rng.pick<int>({0, 1, 3, 12, 62}), largest = rng.pick<int>({1, 2, 8, 30, 255});
  int position = 0;
  while (int(block.bits.size()) < wantedBits && position < 63) {
    const int run = std::min(rng.range(0, longestRun), 62 - position);
    int level = rng.range(1, largest);
    if (rng.chance(2)) level = -level;
    const auto word = words.find({run, level});
    if (word != words.end() && !rng.chance(12)) {
      block.events.emplace_back(run, level);
      block.bits += word->second;
      position += run + 1;
      continue;
    }
    if (run > 0) {
      block.events.emplace_back(run - 1, 0);
      block.bits += words.at({run - 1, 0});
    }
    block.events.emplace_back(0, level);
    position += run + 1;
    const auto alone = words.find({0, level});
    if (alone != words.end() && !rng.chance(12)) {
      block.bits += alone->second;
    } else {
      block.bits += "1111111";
      for (int i = 7; i >= 0; --i) block.bits += std::abs(level) >> i & 1 ? '1' : '0';
      block.bits += level < 0 ? '1' : '0';
    }
  }
  block.bits += "0110";
  return block;
}

inline std::map<std::pair<int, int>, std::string> dvWords(const reference::dv::Codes& codes) {
  std::map<std::pair<int, int>, std::string> words;
  for (const auto& [word, runLevel] : codes) words[runLevel] = word;
  return words;
}

// A segment as an encoder lays it out: what does not fit a block's own space goes to the free spaces of its macroblock,
// what does not fit there to those of the segment. Bits that nobody needs are noise. False if not all found room.
inline bool dvWriteSegment(const reference::dv::Format& format, const std::vector<DvBlock>& blocks, Rng& rng,
                           std::uint8_t* stream) {
  const std::size_t perMacroblock = format.at.size();
  for (int i = 0; i < 400; ++i) stream[i] = std::uint8_t(rng.next());
  struct Space {
    int at, end;  // bits of the stream
  };
  const auto put = [&](std::string& bits, Space& space) {
    std::size_t n = 0;
    for (; n < bits.size() && space.at < space.end; ++n, ++space.at) {
      const int shift = 7 - space.at % 8;
      std::uint8_t& byte = stream[space.at / 8];
      byte = std::uint8_t((byte & ~(1 << shift)) | (bits[n] == '1') << shift);
    }
    bits.erase(0, n);
  };
  const auto share = [&](std::vector<std::string*>& rests, std::vector<Space>& spaces) {
    for (std::string* rest : rests)
      for (Space& space : spaces) put(*rest, space);
  };
  std::vector<std::string> rests;
  for (const DvBlock& block : blocks) rests.push_back(block.bits);
  std::vector<Space> ofSegment;
  std::vector<std::string*> all;
  for (std::size_t m = 0; m < 5; ++m) {
    std::vector<Space> ofMacroblock;
    std::vector<std::string*> here;
    for (std::size_t b = 0; b < perMacroblock; ++b) {
      const std::size_t i = m * perMacroblock + b;
      Space space = {8 * int(80 * m + std::size_t(format.at[b])), 0};
      space.end = space.at + 8 * format.bytes[b];
      std::string header;
      for (int k = 8; k >= 0; --k) header += blocks[i].dc >> k & 1 ? '1' : '0';
      for (int k = 2; k >= 0; --k) header += (blocks[i].mode << 2 | blocks[i].classNumber) >> k & 1 ? '1' : '0';
      put(header, space);
      put(rests[i], space);
      ofMacroblock.push_back(space);
      here.push_back(&rests[i]);
    }
    share(here, ofMacroblock);
    ofSegment.insert(ofSegment.end(), ofMacroblock.begin(), ofMacroblock.end());
    all.insert(all.end(), here.begin(), here.end());
  }
  share(all, ofSegment);
  return std::all_of(rests.begin(), rests.end(), [](const std::string& rest) { return rest.empty(); });
}

}  // namespace zvptest
