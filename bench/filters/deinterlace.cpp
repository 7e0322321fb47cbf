// A made row of 720 samples a call, and the tables of the blend.
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

constexpr int width = 720, step = 768, rows = 10;

struct Frames {
  std::vector<std::uint8_t> frame[4], dst;
  const std::uint8_t* planes[4];
  Frames() : dst(step * rows) {
    zvptest::Rng rng(1);
    for (int f = 0; f < 4; ++f) {
      frame[f].resize(step * rows);
      for (int i = 0; i < step * rows; ++i)
        frame[f][std::size_t(i)] =
            std::uint8_t(120 + i / step * 3 + i % step / 10 + rng.range(-3, 3) + (i % step > 400 ? f * 9 : 0));
      planes[f] = frame[f].data() + 2 * step;
    }
  }
  std::uint8_t* to() { return dst.data() + 2 * step; }
};

const bench::Rows rowsOfDeinterlacing = [](bench::Add add) {
  auto* f = bench::keep<Frames>();
  add("zvpiDeinterlaceFilterTriangle_8u_C1R", "a row", [=](int) {
    zvpiDeinterlaceFilterTriangle_8u_C1R(f->planes[0], step, f->to(), step, {width, 3}, 128, 0);
  });
  add("zvpiDeinterlaceEdgeDetect_8u_C1R", "a row and a copy", [=](int) {
    zvpiDeinterlaceEdgeDetect_8u_C1R(f->planes[0], step, f->to(), step, {width, 2}, 0, 1);
  });
  add("zvpiDeinterlaceMedianThreshold_8u_C1R", "a row and a copy", [=](int) {
    zvpiDeinterlaceMedianThreshold_8u_C1R(f->planes[0], step, f->to(), step, {width, 2}, 8, 1, 0);
  });
  std::int32_t thresholds[2] = {5, 20};
  double weights[2] = {0, 1};
  zvpDeinterlaceBlendState* state = nullptr;
  zvpiDeinterlaceBlendInitAlloc_8u_C1({width, 3}, thresholds, weights, &state);
  add("zvpiDeinterlaceBlend_8u_C1", "a row", [=](int) {
    zvpiDeinterlaceBlend_8u_C1(f->planes, step, f->to(), step, {width, 3}, 1, 0, 0, state);
  });
  add("zvpiDeinterlaceMotionAdaptive_8u_C1", "a row", [=](int) {
    zvpiDeinterlaceMotionAdaptive_8u_C1(f->planes, step, f->to(), step, {width, 3}, 12, 1, 0, 0, 1);
  });
  const auto makeAndFree = [](int) {
    std::int32_t t[2] = {5, 20};
    double w[2] = {0, 1};
    zvpDeinterlaceBlendState* made = nullptr;
    zvpiDeinterlaceBlendInitAlloc_8u_C1({width, 3}, t, w, &made);
    zvpiDeinterlaceBlendFree_8u_C1(made);
  };
  add("zvpiDeinterlaceBlendInitAlloc_8u_C1", "with its Free", makeAndFree);
  add("zvpiDeinterlaceBlendFree_8u_C1", "with its InitAlloc", makeAndFree);
};

}  // namespace
