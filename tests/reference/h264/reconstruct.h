// Macroblock reconstruction, one coefficient after the other.
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference::h264 {

// How levels are scaled: by flat matrices (table is null), by a table for QP % 6, or, with bypass at QP 0, not at all.
struct Scaling {
  const std::int16_t* table;
  int qp;
  bool bypass;
};

// Coefficients are read from the cursor, which moves on, and left alone; the buffer's content after a call of the
// library is not part of the model. Bits of cbp and of the flags as in the exports.
void addLuma4x4(const std::int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t cbp,
                const Scaling& scaling);
void addLuma8x8(const std::int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t cbp,
                const Scaling& scaling);
void addChroma(const std::int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step, std::uint32_t cbp,
               const Scaling (&scalings)[2]);

// Intra macroblocks. The status is that of the exports behind their tests of pointers and QP; after an error the cursor
// is where it was. size is 4 or 8.
std::int32_t intraLuma(const std::int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, const std::int32_t* modes,
                       std::uint32_t cbp, const Scaling& scaling, int edgeFlags, bool half, int size);
std::int32_t intraLuma16x16(const std::int16_t*& cursor, std::uint8_t* p, std::ptrdiff_t step, std::uint32_t mode,
                            std::uint32_t cbp, const Scaling& scaling, int edgeFlags);
std::int32_t intraChroma(const std::int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step,
                         std::uint32_t mode, std::uint32_t cbp, const Scaling (&scalings)[2], int edgeFlags);
std::int32_t intraChromaHalves(const std::int16_t*& cursor, std::uint8_t* const (&planes)[2], std::ptrdiff_t step,
                               std::uint32_t mode, std::uint32_t cbp, const Scaling (&scalings)[2], int edgeFlagsTop,
                               int edgeFlagsBottom);

}  // namespace reference::h264
