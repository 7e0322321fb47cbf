// Blocks of about eight events, read and written by each code. A writer also makes the streams that readers read.
#include <array>
#include <cstring>
#include <string>

#include "support/coefficient_blocks.h"
#include "zvpvc.h"

namespace {

using bench::CoefficientBlocks;

struct Mode {
  const char* name;
  bool intra;
  int rvlc, skipDC, scan;
};
constexpr Mode modes[] = {{"intra", true, 0, 1, 0},
                          {"intra, vertical scan", true, 0, 0, 1},
                          {"intra, reversible", true, 1, 1, 0},
                          {"inter", false, 0, 0, 0},
                          {"inter, reversible", false, 1, 0, 0}};

zvpStatus write(const CoefficientBlocks& blocks, int i, const Mode& mode, std::uint8_t** byte, std::int32_t* offset) {
  const int count = mode.skipDC ? blocks.counts[i] : blocks.countWithDc(i);
  return mode.intra ? zvpiEncodeCoeffsIntra_MPEG4_16s1u(blocks.levels[i], byte, offset, count, mode.rvlc, mode.skipDC,
                                                        mode.scan)
                    : zvpiEncodeCoeffsInter_MPEG4_16s1u(blocks.levels[i], byte, offset, count, mode.rvlc, mode.scan);
}

zvpStatus read(const Mode& mode, const std::uint8_t** byte, std::int32_t* offset, std::int16_t* levels,
               std::int32_t* index) {
  return mode.intra ? zvpiDecodeCoeffsIntra_MPEG4_1u16s(byte, offset, levels, index, mode.rvlc, mode.skipDC, mode.scan)
                    : zvpiDecodeCoeffsInter_MPEG4_1u16s(byte, offset, levels, index, mode.rvlc, mode.scan);
}

// Streams that are written, read back once for the check, and read again.
struct Streams : CoefficientBlocks {
  int ends[bench::callsPerTurn];  // in bits from the stream's start
  explicit Streams(const Mode& mode) {
    for (int i = 0; i < bench::callsPerTurn; ++i) {
      // In front stands what a backward reader takes for the end of a block: bytes of a code with LAST 1.
      std::uint8_t* byte = streams[i] + 16;
      std::int32_t offset = offsets[i];
      const std::int16_t one[64] = {1};
      zvpiEncodeCoeffsIntra_MPEG4_16s1u(one, &byte, &offset, 1, 1, 0, 0);
      offsets[i] = int(byte - streams[i]) * 8 + offset;
      write(*this, i, mode, &byte, &offset);
      ends[i] = int(byte - streams[i]) * 8 + offset;
    }
  }
};

const bench::Rows rows = [](bench::Add add) {
  for (const Mode& mode : modes) {
    auto* blocks = bench::keep<Streams>(mode);
    const auto readBlock = [=](int i, std::int16_t* levels, auto reader) {
      const std::uint8_t* byte = blocks->streams[i] + blocks->offsets[i] / 8;
      std::int32_t offset = blocks->offsets[i] % 8, index;
      return reader(&byte, &offset, levels, &index);
    };
    const auto decode = [=](auto... cursor) { return read(mode, cursor...); };
    add(
        mode.intra ? "zvpiDecodeCoeffsIntra_MPEG4_1u16s" : "zvpiDecodeCoeffsInter_MPEG4_1u16s", mode.name,
        [=](int i) {
          std::int16_t levels[64];
          readBlock(i, levels, decode);
        },
        [=] {
          for (int i = 0; i < bench::callsPerTurn; ++i) {
            std::int16_t levels[64] = {blocks->levels[i][0]};
            if (readBlock(i, levels, decode) != zvpStatusOk) return false;
            if (std::memcmp(levels, blocks->levels[i], sizeof levels) != 0) return false;
          }
          return true;
        });
    if (!mode.intra) {
      for (bool matrix : {false, true}) {
        auto* context = bench::keep<std::array<std::uint8_t, 160>>();
        std::uint8_t weights[64];
        for (int i = 0; i < 64; ++i) weights[i] = std::uint8_t(16 + i / 3);
        zvpiQuantInvInterInit_MPEG4(matrix ? weights : nullptr, context->data(), 8);
        add("zvpiReconstructCoeffsInter_MPEG4_1u16s", std::string(mode.name) + (matrix ? ", matrix" : ", flat"),
            [=](int i) {
              std::int16_t coefficients[64];
              readBlock(i, coefficients, [=](auto... cursor) {
                return zvpiReconstructCoeffsInter_MPEG4_1u16s(cursor..., mode.rvlc, mode.scan, context->data(),
                                                              1 + i % 31);
              });
            });
      }
    }
    if (mode.rvlc)
      add(mode.intra ? "zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s" : "zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s", "",
          [=](int i) {
            const std::uint8_t* byte = blocks->streams[i] + (blocks->ends[i] - 1) / 8;
            std::int32_t offset = (blocks->ends[i] - 1) % 8, index;
            std::int16_t levels[64];
            if (mode.intra)
              zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(&byte, &offset, levels, &index, mode.skipDC);
            else
              zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s(&byte, &offset, levels, &index);
          });
    auto* out = bench::keep<CoefficientBlocks>();
    add(mode.intra ? "zvpiEncodeCoeffsIntra_MPEG4_16s1u" : "zvpiEncodeCoeffsInter_MPEG4_16s1u", mode.name, [=](int i) {
      std::uint8_t* byte = out->streams[i];
      std::int32_t offset = out->offsets[i];
      write(*out, i, mode, &byte, &offset);
    });
  }
  auto* dcs = bench::keep<CoefficientBlocks>();
  const auto dcOf = [](int i) { return std::int16_t((i - 16) * (1 << i % 8)); };
  for (int i = 0; i < bench::callsPerTurn; ++i) {
    std::uint8_t* byte = dcs->streams[i];
    std::int32_t offset = dcs->offsets[i];
    zvpiEncodeDCIntra_MPEG4_16s1u(dcOf(i), &byte, &offset, i & 1);
  }
  add("zvpiDecodeDCIntra_MPEG4_1u16s", "", [=](int i) {
    const std::uint8_t* byte = dcs->streams[i];
    std::int32_t offset = dcs->offsets[i];
    std::int16_t dc;
    zvpiDecodeDCIntra_MPEG4_1u16s(&byte, &offset, &dc, i & 1);
  });
  auto* dcOut = bench::keep<CoefficientBlocks>();
  add("zvpiEncodeDCIntra_MPEG4_16s1u", "", [=](int i) {
    std::uint8_t* byte = dcOut->streams[i];
    std::int32_t offset = dcOut->offsets[i];
    zvpiEncodeDCIntra_MPEG4_16s1u(dcOf(i), &byte, &offset, i & 1);
  });
};

}  // namespace
