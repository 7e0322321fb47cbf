#include "reference/vc1/range_map.h"

#include <string>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

using bench::Scene;

void map(Scene& scene, int i, zvpSize size, int rangeMap) {
  zvpiRangeMapping_VC1_8u_C1R(scene.source(i), Scene::step, scene.destination(i), Scene::step, size, rangeMap);
}

const bench::Rows rows = [](bench::Add add) {
  auto* scene = bench::keep<Scene>(1);
  for (const zvpSize size : {zvpSize{64, 8}, zvpSize{61, 8}, zvpSize{7, 8}})
    add(
        "zvpiRangeMapping_VC1_8u_C1R", std::to_string(size.width) + "x" + std::to_string(size.height),
        [=](int i) { map(*scene, i, size, i & 7); },
        [=] {
          map(*scene, 5, size, 5);
          for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
              const int at = y * Scene::step + x;
              if (scene->destination(5)[at] != reference::vc1::rangeMapped(scene->source(5)[at], 5)) return false;
            }
          return true;
        });
};

}  // namespace
