// Intra prediction, a row for each mode with all its neighbours there.
#include "reference/h264/intra.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

constexpr int allNeighbours = 1 | 2 | 32 | 64;

struct Member {
  const char* name;
  std::vector<const char*> modes;
  zvpStatus (*call)(std::uint8_t*, std::int32_t, std::uint32_t, std::int32_t);
  std::int32_t (*model)(std::uint8_t*, std::ptrdiff_t, int, int);
};

// Sixteen places of 16x16 samples, each with neighbours of its own.
struct Picture {
  static constexpr int step = 32, area = 18 * step;
  std::vector<std::uint8_t> samples = std::vector<std::uint8_t>(step + 16 * area + 32);
  Picture() {
    zvptest::Rng rng(1);
    zvptest::fill(samples.data(), samples.size(), rng, zvptest::Style::Smooth, 0, 255);
  }
  std::uint8_t* at(int i) { return samples.data() + step + 1 + (i & 15) * area; }
};

const bench::Rows rows = [](bench::Add add) {
  const Member members[] = {
      {"zvpiPredictIntra_4x4_H264_8u_C1IR",
       {"vertical", "horizontal", "DC", "down left", "down right", "vertical right", "horizontal down", "vertical left",
        "horizontal up"},
       zvpiPredictIntra_4x4_H264_8u_C1IR,
       reference::h264::predict4x4},
      {"zvpiPredictIntra_16x16_H264_8u_C1IR",
       {"vertical", "horizontal", "DC", "plane"},
       zvpiPredictIntra_16x16_H264_8u_C1IR,
       reference::h264::predict16x16},
      {"zvpiPredictIntraChroma8x8_H264_8u_C1IR",
       {"DC", "horizontal", "vertical", "plane"},
       zvpiPredictIntraChroma8x8_H264_8u_C1IR,
       reference::h264::predictChroma},
  };
  for (const Member& m : members)
    for (int mode = 0; mode < int(m.modes.size()); ++mode) {
      auto* picture = bench::keep<Picture>();
      const auto call = m.call;
      const auto model = m.model;
      add(
          m.name, m.modes[std::size_t(mode)],
          [=](int i) { call(picture->at(i), Picture::step, std::uint32_t(mode), allNeighbours); },
          [=] {
            Picture expected = *picture;
            for (int i = 0; i < 16; ++i) {
              call(picture->at(i), Picture::step, std::uint32_t(mode), allNeighbours);
              model(expected.at(i), Picture::step, mode, allNeighbours);
            }
            return picture->samples == expected.samples;
          });
    }
};

}  // namespace
