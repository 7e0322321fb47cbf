#include "mpeg2/motion.h"

#include <zvpvc.h>

namespace mpeg2 {

namespace {

using Predict = zvpStatus (*)(const std::uint8_t*, std::int32_t, std::uint8_t*, std::int32_t, std::int32_t,
                              std::int32_t);

// By sizes: 16x16, 16x8, 8x8 and 8x4; put there, or averaged with what is there.
struct Size {
  int width, height;
  Predict put, average;
};
constexpr Size sizes[] = {{16, 16, zvpiCopy16x16HP_8u_C1R, zvpiInterpolateAverage16x16_8u_C1IR},
                          {16, 8, zvpiCopy16x8HP_8u_C1R, zvpiInterpolateAverage16x8_8u_C1IR},
                          {8, 8, zvpiCopy8x8HP_8u_C1R, zvpiInterpolateAverage8x8_8u_C1IR},
                          {8, 4, zvpiCopy8x4HP_8u_C1R, zvpiInterpolateAverage8x4_8u_C1IR}};

const Size& sizeOf(bool luma, int height) {
  if (luma) return sizes[height == 16 ? 0 : 1];
  return sizes[height == 4 ? 3 : 2];
}

// A block of all three planes.
struct Block {
  int x, y, height;  // luma
  bool averaged;     // the second of two predictions
};

bool predictBlock(const View& target, const View& reference, const Block& block, const Vector& vector) {
  for (int i = 0; i < 3; ++i) {
    const Plane& from = reference.planes[i];
    const Plane& to = target.planes[i];
    const bool luma = i == 0, halfHeight = from.height != reference.planes[0].height;
    // Vectors of chroma are halved towards zero (7.6.3.7).
    const int x = luma ? block.x : block.x / 2, y = halfHeight ? block.y / 2 : block.y;
    const int vx = luma ? vector.x : vector.x / 2, vy = halfHeight ? vector.y / 2 : vector.y;
    const int height = halfHeight ? block.height / 2 : block.height, width = luma ? 16 : 8;
    const int left = x + (vx >> 1), top = y + (vy >> 1), halfX = vx & 1, halfY = vy & 1;
    if (left < 0 || top < 0 || left + width + halfX > from.width || top + height + halfY > from.height) return false;
    const Size& size = sizeOf(luma, height);
    const Predict function = block.averaged ? size.average : size.put;
    for (int row = 0; row < height; row += size.height)  // 8x16 of 4:2:2 are two of 8x8
      function(from.at(left, top + row), from.step, to.at(x, y + row), to.step, halfX | halfY << 1, 0);
  }
  return true;
}

class Predictor {
 public:
  Predictor(const PictureHeader& picture, const View& target, const References& references)
      : picture_(picture), target_(target), references_(references) {}

  bool run(const Motion& motion, int x, int y) {
    x_ = 16 * x;
    y_ = 16 * y;
    if (motion.kind == MotionKind::DualPrime) return dualPrime(motion);
    bool averaged = false;
    for (int s = 0; s < 2; ++s) {
      if (!motion.used[s]) continue;
      if (!direction(motion, s, averaged)) return false;
      averaged = true;
    }
    return true;
  }

 private:
  bool isFrame() const { return picture_.structure == Structure::Frame; }

  bool direction(const Motion& motion, int s, bool averaged) const {
    if (isFrame()) {
      const Frame* reference = references_.frames[s];
      if (!reference) return false;
      const View& frame = reference->view();
      if (motion.kind == MotionKind::Frame)
        return predictBlock(target_, frame, {x_, y_, 16, averaged}, motion.vectors[0][s]);
      for (int parity = 0; parity < 2; ++parity)
        if (!predictBlock(target_.field(parity), frame.field(motion.fields[parity][s]), {x_, y_ / 2, 8, averaged},
                          motion.vectors[parity][s]))
          return false;
      return true;
    }
    const int parts = motion.kind == MotionKind::Halves ? 2 : 1, height = 16 / parts;
    for (int r = 0; r < parts; ++r)
      if (!fromField(s, motion.fields[r][s], {x_, y_ + 8 * r, height, averaged}, motion.vectors[r][s])) return false;
    return true;
  }

  // Of a field picture.
  bool fromField(int s, int parity, const Block& block, const Vector& vector) const {
    const int ownParity = picture_.structure == Structure::BottomField;
    const bool fromFirst = references_.secondField && picture_.type != PictureType::B && parity != ownParity;
    const Frame* frame = fromFirst ? references_.current : references_.frames[s];
    return frame && predictBlock(target_, frame->view().field(parity), block, vector);
  }

  bool dualPrime(const Motion& motion) const {
    if (!isFrame()) {
      const int parity = picture_.structure == Structure::BottomField;
      return fromField(0, parity, {x_, y_, 16, false}, motion.vectors[0][0]) &&
             fromField(0, 1 - parity, {x_, y_, 16, true}, motion.dualPrime[0]);
    }
    if (!references_.frames[0]) return false;
    const View& frame = references_.frames[0]->view();
    for (int parity = 0; parity < 2; ++parity) {
      const View field = target_.field(parity);
      if (!predictBlock(field, frame.field(parity), {x_, y_ / 2, 8, false}, motion.vectors[0][0]) ||
          !predictBlock(field, frame.field(1 - parity), {x_, y_ / 2, 8, true}, motion.dualPrime[parity]))
        return false;
    }
    return true;
  }

  const PictureHeader& picture_;
  const View& target_;
  const References& references_;
  int x_ = 0, y_ = 0;
};

}  // namespace

Vector dualPrimeVector(const Vector& vector, const Vector& difference, int distance, int verticalShift) {
  const auto scaled = [&](int v) { return (v * distance + (v > 0)) >> 1; };
  return {scaled(vector.x) + difference.x, scaled(vector.y) + difference.y + verticalShift};
}

bool predict(const PictureHeader& picture, const View& target, const References& references, const Motion& motion,
             int x, int y) {
  return Predictor(picture, target, references).run(motion, x, y);
}

}  // namespace mpeg2
