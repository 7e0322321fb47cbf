// The map from macroblock to slice group (H.264 8.2.2), for frames.
#pragma once

#include <cstdint>
#include <vector>

#include "h264/parameter_sets.h"

namespace h264 {

// One entry a macroblock, in raster order. Map types 3 to 5 depend on the slice's slice_group_change_cycle. False if
// the parameters do not fit the picture.
bool sliceGroupMap(const SliceGroups& groups, std::uint32_t changeCycle, int widthMbs, int heightMbs,
                   std::vector<std::uint8_t>& map);

}  // namespace h264
