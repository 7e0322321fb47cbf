// A frame store: samples with a margin of repeated edges, and the motion that later pictures look at.
#pragma once

#include <cstdint>
#include <vector>

#include "common/padded_planes.h"
#include "mpeg4/headers.h"

namespace mpeg4 {

// In half samples.
struct Vector {
  std::int16_t x = 0, y = 0;
  bool operator==(const Vector&) const = default;
};

// Motion of one macroblock: a vector for each block of luma.
struct Motion {
  Vector vectors[4];
  bool skipped = false;  // not coded
  // With field prediction the vectors above are what neighbours are predicted from; these count lines of a field.
  bool fields = false;
  Vector ofField[2];        // of the top and of the bottom field
  bool fromBottom[2] = {};  // which field each is predicted from
};

class Frame {
 public:
  explicit Frame(const Layer& layer);
  const video::Format& format() const { return format_; }
  std::uint8_t* at(int plane, int x, int y) { return samples_.planes[plane] + y * samples_.steps[plane] + x; }
  std::int32_t step(int plane) const { return std::int32_t(samples_.steps[plane]); }
  // The place from which an area of size x size samples, and one row and column more, is predicted. Where all of it
  // lies in repeated samples, one within the margin stands for it.
  const std::uint8_t* reference(int plane, int x, int y, int size) const;
  // The same for size x size / 2 samples of a field, whose lines y counts.
  const std::uint8_t* fieldReference(int plane, int x, int y, int size, bool bottom) const;
  // Repeats the edges of the coded area into the margin.
  void expand() { samples_.expand(); }
  video::Picture picture() const;

  std::vector<Motion> motion;  // by macroblock

 private:
  int width_, height_;  // of the coded area
  video::PaddedPlanes samples_;
  video::Format format_;
};

}  // namespace mpeg4
