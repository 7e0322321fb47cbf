// Scalar model of the CAST denoiser, block by block and sample by sample, for both layouts.
#pragma once

#include <cstdint>

#include "reference/filters/deinterlace.h"

namespace reference {

// previous.data null: the first frame. history null: none. packed: bytes Y0 Cb Y1 Cr, width in pixels.
void denoiseCast(Picture current, Picture previous, Picture edges, Target dst, zvpSize size, std::uint8_t* history,
                 const zvpDenoiseCASTParams& params, bool packed);

}  // namespace reference
