// Model of the DV stores: the planes of a macroblock are put together as it stands in the frame, reduced, and read
// pixel by pixel.
#pragma once

#include <cstdint>
#include <vector>

namespace reference::dv {

enum class Chroma { C422, C411, C411Edge, C420, EvenHalf100, OddHalf100 };

// Zoom: 1, 2, 4, 8, or blocks that are 4x4 already.
enum class Size { Full, Half, Quarter, Eighth, From4x4 };

// Pixels of a macroblock in the frame at that size.
int storedWidth(Chroma chroma, Size size);
int storedHeight(Chroma chroma, Size size);

// Rows of Y Cb Y Cr without gaps. src: the macroblock's blocks (512 elements for the halves, both of them).
std::vector<std::uint8_t> store(Chroma chroma, Size size, const std::int16_t* src);

}  // namespace reference::dv
