#include "h264/scaling.h"

#include <algorithm>
#include <cstring>

#include "common/zigzag.h"

namespace h264 {

const std::uint8_t zigzag4x4[16] = {0, 1, 4, 8, 5, 2, 3, 6, 9, 12, 13, 10, 7, 11, 14, 15};

namespace {

// Tables 7-3 and 7-4, intra and inter.
constexpr std::uint8_t default4x4[2][16] = {{6, 13, 13, 20, 20, 20, 28, 28, 28, 28, 32, 32, 32, 37, 37, 42},
                                            {10, 14, 14, 20, 20, 20, 24, 24, 24, 24, 27, 27, 27, 30, 30, 34}};
constexpr std::uint8_t default8x8[2][64] = {
    {6,  10, 10, 13, 11, 13, 16, 16, 16, 16, 18, 18, 18, 18, 18, 23, 23, 23, 23, 23, 23, 25,
     25, 25, 25, 25, 25, 25, 27, 27, 27, 27, 27, 27, 27, 27, 29, 29, 29, 29, 29, 29, 29, 31,
     31, 31, 31, 31, 31, 33, 33, 33, 33, 33, 36, 36, 36, 36, 38, 38, 38, 40, 40, 42},
    {9,  13, 13, 15, 13, 15, 17, 17, 17, 17, 19, 19, 19, 19, 19, 21, 21, 21, 21, 21, 21, 22,
     22, 22, 22, 22, 22, 22, 24, 24, 24, 24, 24, 24, 24, 24, 25, 25, 25, 25, 25, 25, 25, 27,
     27, 27, 27, 27, 27, 28, 28, 28, 28, 28, 30, 30, 30, 30, 32, 32, 32, 33, 33, 35}};

// normAdjust by remainder of QP and class of the position (8-315, 8-318).
constexpr std::uint8_t norm4x4[6][3] = {{10, 16, 13}, {11, 18, 14}, {13, 20, 16}, {14, 23, 18}, {16, 25, 20}, {18, 29, 23}};
constexpr std::uint8_t norm8x8[6][6] = {{20, 18, 32, 19, 25, 24}, {22, 19, 35, 21, 28, 26}, {26, 23, 42, 24, 33, 31},
                                        {28, 25, 45, 26, 35, 33}, {32, 28, 51, 30, 40, 38}, {36, 32, 58, 34, 46, 43}};
constexpr int class4x4(int x, int y) { return (x & 1) != (y & 1) ? 2 : x & 1; }
constexpr int class8x8(int x, int y) {
  if (x % 4 == 0 && y % 4 == 0) return 0;
  if (x % 2 == 1 && y % 2 == 1) return 1;
  if (x % 4 == 2 && y % 4 == 2) return 2;
  if ((x % 4 == 0 && y % 2 == 1) || (x % 2 == 1 && y % 4 == 0)) return 3;
  if (x % 2 == 0 && y % 2 == 0) return 4;
  return 5;
}

ScalingLists::Kind parseList(video::BitReader& in, std::uint8_t* list, int size) {
  std::int64_t last = 8, next = 8;
  for (int i = 0; i < size; ++i) {
    if (next != 0) {
      next = (last + in.se()) & 255;
      if (i == 0 && next == 0) return ScalingLists::Kind::Default;
    }
    if (next != 0) last = next;
    if (list) list[i] = std::uint8_t(last);
  }
  return ScalingLists::Kind::Given;
}

}  // namespace

ScalingLists parseScalingLists(video::BitReader& in, int count) {
  ScalingLists lists;
  lists.present = true;
  for (int i = 0; i < count; ++i) {
    if (!in.flag()) continue;
    if (i < 6) lists.kinds[i] = parseList(in, lists.lists4x4[i], 16);
    else if (i < 8) lists.kinds[i] = parseList(in, lists.lists8x8[i - 6], 64);
    else parseList(in, nullptr, 64);
  }
  return lists;
}

LevelScales makeLevelScales(const ScalingLists& sequence, const ScalingLists& picture) {
  // The picture's lists, for each one that is absent the one before it; the first of a row of such lists falls back to
  // the sequence's where that has a matrix, otherwise to the default (Table 7-2).
  std::uint8_t weights4x4[6][16], weights8x8[2][64];
  std::memset(weights4x4, 16, sizeof weights4x4);
  std::memset(weights8x8, 16, sizeof weights8x8);
  bool first = true;
  for (const ScalingLists* lists : {&sequence, &picture}) {
    if (!lists->present) continue;
    for (int i = 0; i < 8; ++i) {
      const bool small = i < 6;
      std::uint8_t* to = small ? weights4x4[i] : weights8x8[i - 6];
      const std::size_t size = small ? 16 : 64;
      const bool inter = small ? i >= 3 : i == 7;
      const bool startsRow = i == 0 || i == 3 || i >= 6;
      const std::uint8_t* standard = small ? default4x4[inter] : default8x8[inter];
      switch (lists->kinds[i]) {
        case ScalingLists::Kind::Given:
          std::memcpy(to, small ? lists->lists4x4[i] : lists->lists8x8[i - 6], size);
          break;
        case ScalingLists::Kind::Default: std::memcpy(to, standard, size); break;
        case ScalingLists::Kind::Absent:
          if (!startsRow) std::memcpy(to, weights4x4[i - 1], size);
          else if (first) std::memcpy(to, standard, size);
          break;
      }
    }
    first = false;
  }

  LevelScales scales;
  for (int list = 0; list < 6; ++list)
    for (int place = 0; place < 16; ++place) {
      const int raster = zigzag4x4[place], weight = weights4x4[list][place];
      scales.flat = scales.flat && weight == 16;
      for (int qp = 0; qp < 6; ++qp)
        scales.scale4x4[list][qp][raster] = std::int16_t(weight * norm4x4[qp][class4x4(raster & 3, raster >> 2)]);
    }
  for (int list = 0; list < 2; ++list)
    for (int place = 0; place < 64; ++place) {
      const int raster = video::zigzag8x8[place];
      for (int qp = 0; qp < 6; ++qp)
        scales.scale8x8[list][qp][raster] =
            std::int16_t(weights8x8[list][place] * norm8x8[qp][class8x8(raster & 7, raster >> 3)]);
    }
  return scales;
}

}  // namespace h264
