#include "reference/filters/cast.h"

#include <algorithm>
#include <cstdlib>

namespace reference {
namespace {

struct Job {
  Picture current, previous, edges;
  Target dst;
  int rowBytes, height;
  const zvpDenoiseCASTParams& params;
};

// Samples of a component lie at offset, offset + spacing, ... in the row.
struct Component {
  int offset, spacing, count, threshold;
};

int sampleAt(const Job& job, const Component& c, int i, int y) {
  i = std::clamp(i, 0, c.count - 1);
  y = std::clamp(y, 0, job.height - 1);
  return job.current.at(c.offset + i * c.spacing, y);
}

std::uint8_t smoothed(const Job& job, const Component& c, int i, int y) {
  const int value = sampleAt(job, c, i, y);
  int sum = 0, count = 0;
  for (int dy = -1; dy <= 1; ++dy)
    for (int dx = -1; dx <= 1; ++dx) {
      const int v = sampleAt(job, c, i + dx, y + dy);
      if (std::abs(v - value) < c.threshold) {
        sum += v;
        ++count;
      }
    }
  if (count == 0) return std::uint8_t(value);
  const int mean = (sum + (count >> 1)) / count;
  const bool strong = job.edges.at(c.offset + i * c.spacing, y) > job.params.strongEdgeThreshold;
  const int weight = strong ? job.params.edgePixelWeight : job.params.flatPixelWeight;
  return std::uint8_t(((256 - weight) * mean + value * weight + 128) >> 8);
}

// Samples first .. first + samples - 1 of the component, rows y .. y + rows - 1.
void block(const Job& job, const Component& c, int first, int samples, int y, int rows, std::uint8_t* history) {
  const auto& params = job.params;
  bool moved = true;
  if (job.previous.data != nullptr) {
    int count = 0, rowCount = 0;
    for (int j = 0; j < rows; ++j) {
      rowCount = 0;
      for (int i = 0; i < params.blockWidth; ++i) {
        const int at = c.offset + (first + std::min(i, samples - 1)) * c.spacing;
        rowCount += std::abs(job.current.at(at, y + j) - job.previous.at(at, y + j)) > params.temporalDiffThreshold;
      }
      count += rowCount;
    }
    for (int j = rows; j < params.blockHeight; ++j) count += rowCount;
    moved = count > params.motionPixelThreshold;
  }
  int weight = params.historyInit;
  if (history != nullptr && job.previous.data != nullptr) {
    if (moved) {
      *history = std::uint8_t(*history < 128 ? 128 : *history >> 1);
    } else {
      *history = std::uint8_t(*history >= 128 ? std::min(*history + 4, 200) : 128);
      weight = *history;
    }
  } else if (!moved && weight == 0) {
    return;
  }
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < samples; ++i) {
      const int at = c.offset + (first + i) * c.spacing;
      if (moved) {
        job.dst.at(at, y + j) = smoothed(job, c, first + i, y + j);
      } else {
        const int now = job.current.at(at, y + j), before = job.previous.at(at, y + j);
        job.dst.at(at, y + j) = std::uint8_t(((before - now) * weight + (now << 8) + 128) >> 8);
      }
    }
}

}  // namespace

void denoiseCast(Picture current, Picture previous, Picture edges, Target dst, zvpSize size, std::uint8_t* history,
                 const zvpDenoiseCASTParams& params, bool packed) {
  const int rowBytes = packed ? 2 * size.width : size.width, bw = params.blockWidth, bh = params.blockHeight;
  const Job job = {current, previous, edges, dst, rowBytes, size.height, params};
  const int perGroup = packed ? 4 : 1, groupBytes = perGroup * bw;
  const int groups = (rowBytes + groupBytes - 1) / groupBytes, groupRows = (size.height + bh - 1) / bh;
  if (previous.data == nullptr && history != nullptr)
    for (int i = 0; i < groups * groupRows * perGroup; ++i) history[i] = params.historyInit;
  const Component plane = {0, 1, size.width, params.spatialThresholdLuma};
  const Component luma = {0, 2, size.width, params.spatialThresholdLuma};
  const Component cb = {1, 4, size.width / 2, params.spatialThresholdChroma};
  const Component cr = {3, 4, size.width / 2, params.spatialThresholdChroma};
  for (int gy = 0; gy < groupRows; ++gy)
    for (int gx = 0; gx < groups; ++gx) {
      const int y = gy * bh, rows = std::min(bh, size.height - y);
      std::uint8_t* const h = history == nullptr ? nullptr : history + (gy * groups + gx) * perGroup;
      const auto part = [&](const Component& c, int first, int index) {
        const int samples = std::min(bw, c.count - first);
        if (samples > 0) block(job, c, first, samples, y, rows, h == nullptr ? nullptr : h + index);
      };
      if (!packed) {
        part(plane, gx * bw, 0);
        continue;
      }
      part(luma, gx * 2 * bw, 0);
      part(luma, gx * 2 * bw + bw, 2);
      part(cb, gx * bw, 1);
      part(cr, gx * bw, 3);
    }
}

}  // namespace reference
