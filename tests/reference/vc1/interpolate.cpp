#include "reference/vc1/interpolate.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace reference::vc1 {
namespace {

using std::ptrdiff_t;
using std::uint8_t;

// A place between samples, with a step of any size.
struct Place {
  const uint8_t* src;
  ptrdiff_t srcStep;
  uint8_t* dst;
  ptrdiff_t dstStep;
  int dx, dy, roundControl;
};

constexpr int taps[4][4] = {{0, 64, 0, 0}, {-4, 53, 18, -3}, {-1, 9, 9, -1}, {-3, 18, 53, -4}};
constexpr int verticalShift[12] = {6, 4, 6, 5, 3, 5, 3, 1, 3, 5, 3, 5};
constexpr int horizontalShift[3] = {6, 4, 6};

uint8_t clip(int value) { return uint8_t(std::clamp(value, 0, 255)); }

uint8_t bicubic(const Place& p, const uint8_t* at) {
  const auto vertical = [&](const uint8_t* column, int shift) {
    int sum = (1 << (shift - 1)) - 1 + p.roundControl;
    for (int k = 0; k < 4; ++k) sum += taps[p.dy][k] * column[(k - 1) * p.srcStep];
    return sum >> shift;
  };
  if (p.dx == 0 && p.dy == 0) return *at;
  if (p.dx == 0) return clip(vertical(at, verticalShift[p.dy - 1]));
  if (p.dy == 0) {
    const int shift = horizontalShift[p.dx - 1];
    int sum = (1 << (shift - 1)) - p.roundControl;
    for (int k = 0; k < 4; ++k) sum += taps[p.dx][k] * at[k - 1];
    return clip(sum >> shift);
  }
  int sum = 64 - p.roundControl;
  for (int k = 0; k < 4; ++k)
    sum += taps[p.dx][k] * std::int16_t(vertical(at + k - 1, verticalShift[p.dx * 3 + p.dy - 1]));
  return clip(sum >> 7);
}

uint8_t bilinear(const Place& p, const uint8_t* at, int channels) {
  const int dx = p.dx & 3, dy = p.dy & 3;
  int sum = 8 - (p.roundControl & 1) + (4 - dx) * (4 - dy) * at[0];
  if (dx != 0) sum += dx * (4 - dy) * at[channels];
  if (dy != 0) sum += (4 - dx) * dy * at[p.srcStep];
  if (dx != 0 && dy != 0) sum += dx * dy * at[p.srcStep + channels];
  return uint8_t(sum >> 4);
}

void predict(const InterpolationMember& m, const Place& p, zvpSize size) {
  const zvpSize kernel = kernelSize(m, size);
  for (int y = 0; y < kernel.height; ++y)
    for (int x = 0; x < kernel.width * m.channels; ++x) {
      const uint8_t* const at = p.src + y * p.srcStep + x;
      p.dst[y * p.dstStep + x] = m.filter == Filter::Bicubic ? bicubic(p, at) : bilinear(p, at, m.channels);
    }
}

// Rows that are asked for beyond the picture. Row 0 takes the second branch as well.
int edgeRow(int limit, int correction, int row) {
  if (row >= limit) row = limit + correction - 1;
  if (row < 1) row = correction;
  // A correction that is meant for the other edge, in a frame lower than the neighbourhood, must not lead outside.
  return std::clamp(row, 0, limit - 1);
}

}  // namespace

const std::vector<InterpolationMember>& interpolationMembers() {
#define MEMBER(QP, IC, FILTER, CHANNELS) \
  { #QP, #IC, FILTER, CHANNELS, QP, IC }
  static const std::vector<InterpolationMember> all = {
      MEMBER(zvpiInterpolateQPBicubic_VC1_8u_C1R, zvpiInterpolateICBicubicBlock_VC1_8u_C1R, Filter::Bicubic, 1),
      MEMBER(zvpiInterpolateQPBilinear_VC1_8u_C1R, zvpiInterpolateICBilinearBlock_VC1_8u_C1R, Filter::Bilinear, 1),
      MEMBER(zvpiInterpolateQPBilinear_VC1_8u_C2R, zvpiInterpolateICBilinearBlock_VC1_8u_C2R, Filter::Bilinear, 2),
  };
#undef MEMBER
  return all;
}

std::vector<zvpSize> sizesOf(const InterpolationMember& m) {
  if (m.filter == Filter::Bicubic) return {{8, 8}, {16, 8}, {16, 16}};
  if (m.channels == 2) return {{8, 8}, {8, 4}, {4, 4}};
  return {{16, 16}, {8, 8}, {8, 4}, {4, 4}};
}

zvpSize kernelSize(const InterpolationMember& m, zvpSize size) {
  if (m.filter == Filter::Bicubic) {
    constexpr zvpSize kernels[3] = {{8, 8}, {16, 8}, {16, 16}};
    return kernels[(size.width >> 4) + (size.height >> 4)];
  }
  if (size.width == 16 && m.channels == 1) return {16, 16};
  if (size.width != 8) return {4, 4};
  return {8, size.height == 8 ? 8 : 4};
}

void interpolate(const InterpolationMember& m, const zvpInterpolationBlock& b) {
  predict(m, {b.pSrc, b.srcStep, b.pDst, b.dstStep, b.dx, b.dy, b.roundControl}, b.roiSize);
}

void interpolateInPlane(const InterpolationMember& m, const zvpInterpolationICBlock& b) {
  const int n = m.channels, x = b.blockPos.x, y = b.blockPos.y, w = b.blockSize.width, h = b.blockSize.height;
  const int H = b.frameSize.height, W = b.frameSize.width;
  const bool field = b.fieldPrediction != 0, opposite = b.oppositePadding != 0;
  const int pictureRows = field ? H >> 1 : H;
  const ptrdiff_t step = ptrdiff_t(b.srcStep) * (field ? 2 : 1);
  Place place = {nullptr, 0, b.pDst, b.dstStep, b.dx, b.dy, b.roundControl};

  // Columns count bytes, so that a sample is n of them.
  const int columns = (w + 3) * n;
  int leftPad = x < n ? n - x : 0;
  const int rightLimit = (W - w) * n - 2 * n;
  int rightPad = x > rightLimit ? x - rightLimit : 0;
  int topPad = y < 1 ? 1 - y : 0;
  int bottomPad = y > pictureRows - h - 2 ? y - (pictureRows - h - 2) : 0;

  if (b.pLUTTop == nullptr && b.pLUTBottom == nullptr && leftPad + rightPad + topPad + bottomPad == 0) {
    place.src = b.pSrc + y * step + x;
    place.srcStep = step;
    return predict(m, place, b.blockSize);
  }

  const int stride = 19 * n;
  std::vector<uint8_t> scratch(std::size_t(20 * stride));
  const auto at = [&](int row, int column) -> uint8_t& { return scratch[std::size_t(row * stride + column)]; };
  const auto mapped = [](const uint8_t* map, uint8_t value) { return map == nullptr ? value : map[value]; };

  // The maps of the first and the second row.
  const uint8_t *a = b.pLUTTop, *o = b.pLUTBottom;
  if (field)
    a = o = b.isPredBottom != 0 ? b.pLUTBottom : b.pLUTTop;
  else if ((y + topPad) % 2 == 0)
    std::swap(a, o);

  // Rows within the picture, and how many there are.
  const int inColumns = columns - leftPad - rightPad;
  const auto copyRow = [&](int scratchRow, const uint8_t* row, const uint8_t* map) {
    for (int c = 0; c < inColumns; ++c) at(scratchRow, leftPad + c) = mapped(map, row[x + leftPad - n + c]);
  };
  int rows = h + 3 - topPad - bottomPad;
  for (int r = 0; r < rows; ++r) copyRow(topPad + r, b.pSrc + (y + topPad - 1 + r) * step, r % 2 == 0 ? a : o);

  const bool noRow = rows < 1;
  if (noRow) {
    rows = 0;
    (topPad > 0 ? topPad : bottomPad) = h + 3;
  }

  // Pad rows.
  if (opposite && !field) {
    int nearRow = 1, farRow = 0;
    if (noRow && topPad > 0 && y % 2 != 0) {
      std::swap(a, o);
      std::swap(nearRow, farRow);
    }
    for (int i = 1; i <= topPad; ++i)
      copyRow(topPad - i, b.pSrc + (i % 2 != 0 ? nearRow : farRow) * step, i % 2 != 0 ? o : a);
    int nearOffset = 2, farOffset = 1;
    if (noRow && bottomPad > 0 && y % 2 == 0)
      std::swap(nearOffset, farOffset);
    else if (bottomPad % 2 != 0)
      std::swap(a, o);
    for (int i = 1; i <= bottomPad; ++i)
      copyRow(topPad + rows + i - 1, b.pSrc + (H - (i % 2 != 0 ? nearOffset : farOffset)) * step, i % 2 != 0 ? o : a);
  } else if (opposite) {
    // Rows 0 and H - 1 of the frame, of which pSrc is row 0, or row 1 for the bottom field.
    const ptrdiff_t first = b.isPredBottom != 0 ? -1 : 0;
    for (int r = 0; r < topPad; ++r) copyRow(r, b.pSrc + first * b.srcStep, b.pLUTTop);
    for (int r = 0; r < bottomPad; ++r) copyRow(topPad + rows + r, b.pSrc + (H - 1 + first) * b.srcStep, b.pLUTBottom);
  } else {
    for (int r = 0; r < topPad; ++r) copyRow(r, b.pSrc, a);
    for (int r = 0; r < bottomPad; ++r) copyRow(topPad + rows + r, b.pSrc + (pictureRows - 1) * step, o);
  }

  // No column within the picture: one sample a row.
  if (inColumns < 1) {
    const bool leftOf = leftPad > 0;
    for (int r = 0; r < h + 3; ++r) {
      int correction = 0;
      if (opposite && !field) {
        if (topPad > 0 && (r % 2 == 0) == (y % 2 == 0)) correction = 1;
        if (bottomPad > 0 && (r % 2 == 0) == (y % 2 != 0)) correction = -1;
      }
      const uint8_t* const row = b.pSrc + edgeRow(pictureRows, correction, y + r - 1) * step;
      for (int c = 0; c < n; ++c)
        at(r, (leftOf ? columns : 0) + c) = mapped(r % 2 == 0 ? a : o, row[(leftOf ? 0 : (W - 1) * n) + c]);
    }
    (leftOf ? leftPad : rightPad) = leftOf ? columns : columns - n;
  }

  // Columns replicated, one after the other.
  for (int c = 0; c < leftPad; ++c)
    for (int r = 0; r < h + 3; ++r) at(r, c) = at(r, leftPad + c % n);
  for (int k = rightPad; k >= 1; --k)
    for (int r = 0; r < h + 3; ++r) at(r, columns - k) = at(r, columns - n - rightPad + (rightPad - k) % n);

  place.src = &at(1, n);
  place.srcStep = stride;
  predict(m, place, b.blockSize);
}

}  // namespace reference::vc1
