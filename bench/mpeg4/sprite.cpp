#include "reference/mpeg4/sprite.h"

#include <array>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::mpeg4;

// A record of each number of points over a picture that is its own sprite, moved, turned and tilted a little; blocks at
// 32 places, the last few of which leave the sprite where the case is "edge".
struct Warps {
  static constexpr int width = 176, height = 144, step = 176;
  struct Record {
    alignas(16) std::uint8_t bytes[280];
  } records[5];
  alignas(64) std::uint8_t sprite[step * height];
  alignas(64) std::uint8_t dst[2][16 * 16];
  std::int32_t du[4] = {5, 7, -6, 3}, dv[4] = {-3, 6, 9, -4};
  zvpRect inside[32], edge[32];

  Warps() {
    zvptest::Rng rng(1);
    zvptest::fill(sprite, sizeof sprite, rng, zvptest::Style::Smooth, 0, 255);
    for (int points = 0; points <= 4; ++points) init(points);
    for (int i = 0; i < 32; ++i) {
      const int x = rng.range(16, width / 2 - 40), y = rng.range(16, height / 2 - 40);
      inside[i] = {x, y, 16, 16};
      edge[i] = {i & 1 ? x - 40 : width - 10, i & 2 ? y : height - 9, 16, 16};
    }
  }
  zvpStatus init(int points) {
    const zvpRect picture = {0, 0, width, height};
    return zvpiWarpInit_MPEG4(records[points].bytes, du, dv, points, points == 4 ? 1 : 2, 3, 1, 1, 4, &picture,
                              &picture);
  }
  zvpStatus luma(int points, const zvpRect& r) {
    return zvpiWarpLuma_MPEG4_8u_C1R(sprite, step, dst[0], 16, &r, records[points].bytes);
  }
  zvpStatus chroma(int points, zvpRect r) {
    r.width = r.height = 8;
    return zvpiWarpChroma_MPEG4_8u_P2R(sprite, step, sprite + 88, step, dst[0], 16, dst[1], 16, &r,
                                       records[points].bytes);
  }
  model::Warp warp(int points) const {
    const model::Rect picture = {0, 0, width, height};
    return {du, dv, points, points == 4 ? 1 : 2, 3, 1, 1, 4, picture, picture};
  }
};

const bench::Rows rows = [](bench::Add add) {
  auto* w = bench::keep<Warps>();
  for (int points = 0; points <= 4; ++points) {
    const std::string name = std::to_string(points) + " points";
    for (const bool atEdge : {false, true}) {
      const zvpRect* places = atEdge ? w->edge : w->inside;
      const std::string where = name + (atEdge ? ", edge" : "");
      add(
          "zvpiWarpLuma_MPEG4_8u_C1R", where, [=](int i) { w->luma(points, places[i & 31]); },
          [=] {
            const zvpRect& r = places[3];
            std::uint8_t wanted[256];
            model::warpLuma(w->warp(points), {w->sprite, Warps::step, Warps::width, Warps::height},
                            {r.x, r.y, r.width, r.height}, wanted);
            w->luma(points, r);
            return std::equal(wanted, wanted + 256, w->dst[0]);
          });
      add(
          "zvpiWarpChroma_MPEG4_8u_P2R", where, [=](int i) { w->chroma(points, places[i & 31]); },
          [=] {
            const zvpRect& r = places[3];
            std::uint8_t wanted[64];
            model::warpChroma(w->warp(points), {w->sprite, Warps::step, Warps::width / 2, Warps::height / 2},
                              {r.x, r.y, 8, 8}, wanted);
            w->chroma(points, r);
            for (int i = 0; i < 64; ++i)
              if (wanted[i] != w->dst[0][i / 8 * 16 + i % 8]) return false;
            return true;
          });
    }
    add("zvpiWarpInit_MPEG4", name, [=](int) { w->init(points); });
  }
  for (int points = 0; points <= 3; ++points) {
    auto* mv = bench::keep<std::array<std::int16_t, 2>>();
    add(
        "zvpiCalcGlobalMV_MPEG4", std::to_string(points) + " points",
        [=](int i) { zvpiCalcGlobalMV_MPEG4(16 * i, 8 * i, mv->data(), w->records[points].bytes); },
        [=] {
          std::int16_t wanted[2];
          model::globalVector(w->warp(points), 48, 32, wanted);
          zvpiCalcGlobalMV_MPEG4(48, 32, mv->data(), w->records[points].bytes);
          return std::equal(wanted, wanted + 2, mv->begin());
        });
  }
  // Up and down in turn, so that the picture is not all white.
  auto* picture = bench::keep<Warps>();
  add("zvpiChangeSpriteBrightness_MPEG4_8u_C1IR", "176x144", [=](int i) {
    zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(picture->sprite, Warps::step, Warps::width, Warps::height,
                                             i & 1 ? 25 : -20);
  });
  auto* size = bench::keep<std::int32_t>();
  add("zvpiWarpGetSize_MPEG4", "", [=](int) { zvpiWarpGetSize_MPEG4(size); });
};

}  // namespace
