#include "reference/vc1/overlap.h"

#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::vc1;

// Planes of 16-bit samples and a picture of as many bytes a row, with 16 edges of either kind in them. Vertical edges
// are smoothed again and again: what is written back becomes flat, which costs the same.
struct Planes {
  static constexpr int width = 96, height = 96, step = 2 * width;
  std::vector<std::int16_t> u, v;
  std::vector<std::uint8_t> picture = std::vector<std::uint8_t>(2 * width * height);

  explicit Planes(std::uint64_t seed) : u(width * height), v(width * height) {
    zvptest::Rng rng(seed);
    for (auto* plane : {&u, &v})
      for (auto& sample : *plane) sample = std::int16_t(rng.range(-30, 290));
  }
  static int place(int i) { return 16 * width * (1 + i / 4 % 4) + 16 * (1 + i % 4) + i % 3; }
  std::int16_t* uAt(int i) { return &u[std::size_t(place(i))]; }
  std::int16_t* vAt(int i) { return &v[std::size_t(place(i))]; }
  std::uint8_t* pictureAt(int i, int channels) { return &picture[std::size_t(place(i) * channels)]; }
};

// Eight columns of a horizontal edge, whose sources stay as they are.
bool horizontalEdgeAgrees(Planes& planes, int at) {
  model::LineAcrossEdge lines[8];
  for (int i = 0; i < 8; ++i)
    for (int y = 0; y < 4; ++y) lines[i].samples[y] = planes.uAt(at)[i + (y - 2) * Planes::width];
  model::smoothLines(lines, 8);
  for (int i = 0; i < 8; ++i)
    for (int y = 0; y < 4; ++y)
      if (planes.pictureAt(at, 1)[i + (y - 2) * Planes::width] != model::clipped(lines[i].smoothed[y])) return false;
  return true;
}

const bench::Rows rows = [](bench::Add add) {
  auto* p = bench::keep<Planes>(1);
  constexpr int step = Planes::step, above = 2 * Planes::width;
  for (const bool field : {false, true})
    add("zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R", field ? "fields" : "frame", [=](int i) {
      zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(p->uAt(i) - 2, step, p->uAt(i), step, p->pictureAt(i, 1), Planes::width,
                                              field, 15);
    });
  const auto luma = [=](int i) {
    zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(p->uAt(i) - above, step, p->uAt(i), step, p->pictureAt(i, 1),
                                            Planes::width, 15);
  };
  add("zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R", "16 columns", luma, [=] {
    luma(5);
    return horizontalEdgeAgrees(*p, 5);
  });
  add("zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R", "8 rows", [=](int i) {
    zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(p->uAt(i) - 2, step, p->uAt(i), step, p->pictureAt(i, 1), Planes::width);
  });
  const auto chroma = [=](int i) {
    zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R(p->uAt(i) - above, step, p->uAt(i), step, p->pictureAt(i, 1),
                                              Planes::width);
  };
  add("zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R", "8 columns", chroma, [=] {
    chroma(6);
    return horizontalEdgeAgrees(*p, 6);
  });
  add("zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R", "8 rows", [=](int i) {
    zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(p->uAt(i) - 2, step, p->uAt(i), step, p->vAt(i) - 2, step, p->vAt(i),
                                                step, p->pictureAt(i, 2), 2 * Planes::width);
  });
  add("zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R", "8 columns", [=](int i) {
    zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(p->uAt(i) - above, step, p->uAt(i), step, p->vAt(i) - above, step,
                                                p->vAt(i), step, p->pictureAt(i, 2), 2 * Planes::width);
  });
};

}  // namespace
