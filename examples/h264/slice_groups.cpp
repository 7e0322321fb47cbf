#include "h264/slice_groups.h"

#include <algorithm>

namespace h264 {

namespace {

using Map = std::vector<std::uint8_t>;

void interleaved(const SliceGroups& groups, Map& map) {
  for (std::size_t i = 0; i < map.size();)
    for (unsigned group = 0; group < groups.count; ++group)
      for (unsigned k = 0; k < groups.runLength[group] && i < map.size(); ++k) map[i++] = std::uint8_t(group);
}

void dispersed(const SliceGroups& groups, int width, Map& map) {
  for (std::size_t i = 0; i < map.size(); ++i) {
    const unsigned x = unsigned(i) % unsigned(width), y = unsigned(i) / unsigned(width);
    map[i] = std::uint8_t((x + ((y * groups.count) / 2)) % groups.count);
  }
}

bool foreground(const SliceGroups& groups, int width, Map& map) {
  std::fill(map.begin(), map.end(), std::uint8_t(groups.count - 1));
  for (unsigned group = groups.count - 1; group-- > 0;) {
    const unsigned from = groups.topLeft[group], to = groups.bottomRight[group], w = unsigned(width);
    if (from > to || to >= map.size() || from % w > to % w) return false;
    for (unsigned y = from / w; y <= to / w; ++y)
      for (unsigned x = from % w; x <= to % w; ++x) map[std::size_t(y) * w + x] = std::uint8_t(group);
  }
  return true;
}

// A spiral from the middle, as the standard walks it (8.2.2.4).
void boxOut(const SliceGroups& groups, unsigned unitsInGroup0, int width, int height, Map& map) {
  std::fill(map.begin(), map.end(), std::uint8_t(1));
  const int direction = groups.changeDirection ? 1 : 0;
  int x = (width - direction) / 2, y = (height - direction) / 2;
  int left = x, right = x, top = y, bottom = y;
  int dx = direction - 1, dy = direction;
  for (unsigned k = 0; k < unitsInGroup0;) {
    std::uint8_t& unit = map[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    const bool vacant = unit == 1;
    if (vacant) {
      unit = 0;
      ++k;
    }
    if (dx == -1 && x == left) {
      left = std::max(left - 1, 0);
      x = left;
      dx = 0;
      dy = 2 * direction - 1;
    } else if (dx == 1 && x == right) {
      right = std::min(right + 1, width - 1);
      x = right;
      dx = 0;
      dy = 1 - 2 * direction;
    } else if (dy == -1 && y == top) {
      top = std::max(top - 1, 0);
      y = top;
      dx = 1 - 2 * direction;
      dy = 0;
    } else if (dy == 1 && y == bottom) {
      bottom = std::min(bottom + 1, height - 1);
      y = bottom;
      dx = 2 * direction - 1;
      dy = 0;
    } else {
      x += dx;
      y += dy;
    }
  }
}

}  // namespace

bool sliceGroupMap(const SliceGroups& groups, std::uint32_t changeCycle, int width, int height, Map& map) {
  const std::size_t size = std::size_t(width) * std::size_t(height);
  map.assign(size, 0);
  if (groups.count == 1) return true;
  const std::uint64_t changed = std::uint64_t(changeCycle) * groups.changeRate;
  const unsigned unitsInGroup0 = unsigned(std::min<std::uint64_t>(changed, size));
  const unsigned upperLeft = groups.changeDirection ? unsigned(size) - unitsInGroup0 : unitsInGroup0;
  const std::uint8_t first = groups.changeDirection ? 1 : 0, second = groups.changeDirection ? 0 : 1;
  switch (groups.mapType) {
    case 0: interleaved(groups, map); return true;
    case 1: dispersed(groups, width, map); return true;
    case 2: return foreground(groups, width, map);
    case 3: boxOut(groups, unitsInGroup0, width, height, map); return true;
    case 4:  // raster scan
      for (std::size_t i = 0; i < size; ++i) map[i] = i < upperLeft ? first : second;
      return true;
    case 5: {  // wipe, column by column
      std::size_t k = 0;
      for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
          map[std::size_t(y) * std::size_t(width) + std::size_t(x)] = k++ < upperLeft ? first : second;
      return true;
    }
    default:  // explicit
      if (groups.ids.size() != size) return false;
      std::copy(groups.ids.begin(), groups.ids.end(), map.begin());
      return true;
  }
}

}  // namespace h264
