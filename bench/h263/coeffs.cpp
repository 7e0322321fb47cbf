// Blocks of about eight events, read and written in each mode. A writer's row also makes the stream that readers read.
#include <cstring>

#include "support/coefficient_blocks.h"
#include "zvpvc.h"

namespace {

using bench::CoefficientBlocks;

struct Mode {
  const char* name;
  bool intra;
  int advIntra, modQuant, scan;
};
constexpr Mode modes[] = {{"inter", false, 0, 0, 0},         {"inter, Annex T", false, 0, 1, 0},
                          {"intra", true, 0, 0, 0},          {"intra, Annex T", true, 0, 1, 0},
                          {"intra, Annex I", true, 1, 0, 1}, {"intra, Annexes I and T", true, 1, 1, 2}};

zvpStatus write(const CoefficientBlocks& blocks, int i, const Mode& mode, std::uint8_t** byte, std::int32_t* offset) {
  const bool skipDc = mode.intra && !mode.advIntra;
  const int count = skipDc ? blocks.counts[i] : blocks.countWithDc(i);
  return mode.intra ? zvpiEncodeCoeffsIntra_H263_16s1u(blocks.levels[i], byte, offset, count, mode.advIntra,
                                                       mode.modQuant, mode.scan)
                    : zvpiEncodeCoeffsInter_H263_16s1u(blocks.levels[i], byte, offset, count, mode.modQuant, mode.scan);
}

// A block's stream, behind a DC where one is wanted.
CoefficientBlocks* streamsOf(const Mode& mode, bool withDc) {
  auto* blocks = bench::keep<CoefficientBlocks>();
  for (int i = 0; i < bench::callsPerTurn; ++i) {
    std::uint8_t* byte = blocks->streams[i];
    std::int32_t offset = blocks->offsets[i];
    if (withDc) zvpiEncodeDCIntra_H263_16s1u(std::int16_t(20 + i), &byte, &offset);
    write(*blocks, i, mode, &byte, &offset);
  }
  return blocks;
}

zvpStatus read(const Mode& mode, const std::uint8_t** byte, std::int32_t* offset, std::int16_t* levels,
               std::int32_t* index) {
  return mode.intra
             ? zvpiDecodeCoeffsIntra_H263_1u16s(byte, offset, levels, index, mode.advIntra, mode.modQuant, mode.scan)
             : zvpiDecodeCoeffsInter_H263_1u16s(byte, offset, levels, index, mode.modQuant, mode.scan);
}

const bench::Rows rows = [](bench::Add add) {
  for (const Mode& mode : modes) {
    const auto* blocks = streamsOf(mode, false);
    add(
        mode.intra ? "zvpiDecodeCoeffsIntra_H263_1u16s" : "zvpiDecodeCoeffsInter_H263_1u16s", mode.name,
        [=](int i) {
          const std::uint8_t* byte = blocks->streams[i];
          std::int32_t offset = blocks->offsets[i], index;
          std::int16_t levels[64];
          read(mode, &byte, &offset, levels, &index);
        },
        [=] {
          for (int i = 0; i < bench::callsPerTurn; ++i) {
            const std::uint8_t* byte = blocks->streams[i];
            std::int32_t offset = blocks->offsets[i], index;
            std::int16_t levels[64] = {blocks->levels[i][0]};
            if (read(mode, &byte, &offset, levels, &index) != zvpStatusOk) return false;
            if (std::memcmp(levels, blocks->levels[i], sizeof levels) != 0) return false;
          }
          return true;
        });
    const bool leadingDc = mode.intra && !mode.advIntra;
    const auto* withDc = leadingDc ? streamsOf(mode, true) : blocks;
    add(mode.intra ? "zvpiReconstructCoeffsIntra_H263_1u16s" : "zvpiReconstructCoeffsInter_H263_1u16s", mode.name,
        [=](int i) {
          const std::uint8_t* byte = withDc->streams[i];
          std::int32_t offset = withDc->offsets[i], index;
          std::int16_t coefficients[64];
          if (mode.intra)
            zvpiReconstructCoeffsIntra_H263_1u16s(&byte, &offset, coefficients, &index, 1, 1 + i % 31, mode.advIntra,
                                                  mode.scan, mode.modQuant);
          else
            zvpiReconstructCoeffsInter_H263_1u16s(&byte, &offset, coefficients, &index, 1 + i % 31, mode.modQuant);
        });
    auto* out = bench::keep<CoefficientBlocks>();
    add(mode.intra ? "zvpiEncodeCoeffsIntra_H263_16s1u" : "zvpiEncodeCoeffsInter_H263_16s1u", mode.name, [=](int i) {
      std::uint8_t* byte = out->streams[i];
      std::int32_t offset = out->offsets[i];
      write(*out, i, mode, &byte, &offset);
    });
  }
  auto* blocks = bench::keep<CoefficientBlocks>();
  for (auto& stream : blocks->streams) std::memset(stream, 0x55, sizeof stream);
  add("zvpiDecodeDCIntra_H263_1u16s", "", [=](int i) {
    const std::uint8_t* byte = blocks->streams[i];
    std::int32_t offset = blocks->offsets[i];
    std::int16_t dc;
    zvpiDecodeDCIntra_H263_1u16s(&byte, &offset, &dc);
  });
  add("zvpiEncodeDCIntra_H263_16s1u", "", [=](int i) {
    std::uint8_t* byte = blocks->streams[i];
    std::int32_t offset = blocks->offsets[i];
    zvpiEncodeDCIntra_H263_16s1u(std::int16_t(i + 1), &byte, &offset);
  });
};

}  // namespace
