// Vectors of a macroblock and the prediction that they ask for (ISO/IEC 13818-2 7.6, ISO/IEC 11172-2 2.4.4.2).
#pragma once

#include "mpeg2/frame.h"

namespace mpeg2 {

struct Vector {
  int x = 0, y = 0;  // in half samples
};

// What the vectors of a macroblock reach (Tables 6-17 and 6-18).
enum class MotionKind {
  Frame,     // 16x16 samples of a frame, from a frame
  Field,     // in a frame, 16x8 samples of each field, from either field; in a field, 16x16 from either field
  Halves,    // in a field, the upper and the lower 16x8 samples, from either field
  DualPrime  // from both fields, by one vector and small differences
};

struct Motion {
  MotionKind kind = MotionKind::Frame;
  bool used[2] = {false, false};  // forward, backward
  Vector vectors[2][2];           // [first, second][forward, backward]
  int fields[2][2] = {};          // parity of the field that the vector points into, likewise
  Vector dualPrime[2];            // frame: into the bottom field for the top one, and the reverse; field: the first
};

struct References {
  const Frame* frames[2] = {nullptr, nullptr};  // forward, backward
  // The second field of a frame may refer to the first one.
  const Frame* current = nullptr;
  bool secondField = false;
};

// Vectors that 7.6.3.6 derives for the field of the other parity.
Vector dualPrimeVector(const Vector& vector, const Vector& difference, int distance, int verticalShift);

// Predicts the macroblock at (x, y), in macroblocks of the picture. False if there is no such reference or a vector
// leaves it, which no stream may do (7.6.3.8).
bool predict(const PictureHeader& picture, const View& target, const References& references, const Motion& motion,
             int x, int y);

}  // namespace mpeg2
