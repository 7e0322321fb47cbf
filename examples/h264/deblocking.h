// The deblocking filter (H.264 8.7): boundary strengths and thresholds of each macroblock; the library filters.
#pragma once

#include "h264/picture_state.h"

namespace h264 {

// QPc for a luma QP and chroma_qp_index_offset (Table 8-15).
int chromaQp(int qp, int offset);

// Filters a row of macroblocks. The rows before it have been filtered; this one and the next are decoded, since intra
// prediction looks at samples that are not filtered yet.
void deblockRow(const PictureState& picture, int row);

}  // namespace h264
