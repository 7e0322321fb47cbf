// Copies, averages and adds at half-pel positions.
#include "reference/mc/copy.h"

#include <array>
#include <cstring>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

using bench::Scene;
using std::int16_t;
using std::int32_t;
using std::uint8_t;
constexpr int step = Scene::step;
using CopyHP = zvpStatus (*)(const uint8_t*, int32_t, uint8_t*, int32_t, int32_t, int32_t);

const char* const cases[8] = {"whole",  "whole, down",  "half x",  "half x, down",
                              "half y", "half y, down", "half xy", "half xy, down"};

// Runs call and model on equal destinations at one place and compares.
template <class Run, class Model>
bench::Check compared(Scene* scene, Run run, Model model) {
  return [=] {
    uint8_t expected[16 * step];
    uint8_t* actual = scene->destination(3);
    std::memcpy(expected, actual, sizeof expected);
    run(scene->source(3), actual);
    model(scene->source(3), expected);
    return std::memcmp(actual, expected, sizeof expected) == 0;
  };
}

const bench::Rows rows = [](bench::Add add) {
  auto* scene = bench::keep<Scene>(1);
  auto* residual = bench::keep<std::array<int16_t, 64>>();
  zvptest::Rng rng(2);
  zvptest::fill(residual->data(), 64, rng, zvptest::Style::Uniform, -255, 255);

  const struct {
    const char* name;
    CopyHP run;
    int width, height;
    bool average;
  } halfPel[] = {{"zvpiCopy8x4HP_8u_C1R", zvpiCopy8x4HP_8u_C1R, 8, 4, false},
                 {"zvpiCopy8x8HP_8u_C1R", zvpiCopy8x8HP_8u_C1R, 8, 8, false},
                 {"zvpiCopy16x8HP_8u_C1R", zvpiCopy16x8HP_8u_C1R, 16, 8, false},
                 {"zvpiCopy16x16HP_8u_C1R", zvpiCopy16x16HP_8u_C1R, 16, 16, false},
                 {"zvpiInterpolateAverage8x4_8u_C1IR", zvpiInterpolateAverage8x4_8u_C1IR, 8, 4, true},
                 {"zvpiInterpolateAverage8x8_8u_C1IR", zvpiInterpolateAverage8x8_8u_C1IR, 8, 8, true},
                 {"zvpiInterpolateAverage16x8_8u_C1IR", zvpiInterpolateAverage16x8_8u_C1IR, 16, 8, true},
                 {"zvpiInterpolateAverage16x16_8u_C1IR", zvpiInterpolateAverage16x16_8u_C1IR, 16, 16, true}};
  for (const auto& m : halfPel)
    for (int slot = 0; slot < 8; ++slot) {
      const int acc = slot / 2, rounding = slot % 2;
      const auto run = [=](const uint8_t* src, uint8_t* dst) { m.run(src, step, dst, step, acc, rounding); };
      add(
          m.name, cases[slot], [=](int i) { run(scene->source(i), scene->destination(i)); },
          compared(scene, run, [=](const uint8_t* src, uint8_t* dst) {
            (m.average ? reference::mc::interpolateAverage : reference::mc::copy)(src, step, dst, step, m.width,
                                                                                  m.height, acc, rounding);
          }));
    }

  const struct {
    const char* name;
    zvpStatus (*run)(const uint8_t*, int32_t, uint8_t*, int32_t);
    int size;
    bool average;
  } whole[] = {{"zvpiCopy8x8_8u_C1R", zvpiCopy8x8_8u_C1R, 8, false},
               {"zvpiCopy16x16_8u_C1R", zvpiCopy16x16_8u_C1R, 16, false},
               {"zvpiAverage8x8_8u_C1IR", zvpiAverage8x8_8u_C1IR, 8, true},
               {"zvpiAverage16x16_8u_C1IR", zvpiAverage16x16_8u_C1IR, 16, true}};
  for (const auto& m : whole) {
    const auto run = [=](const uint8_t* src, uint8_t* dst) { m.run(src, step, dst, step); };
    add(
        m.name, "whole", [=](int i) { run(scene->source(i), scene->destination(i)); },
        compared(scene, run, [=](const uint8_t* src, uint8_t* dst) {
          (m.average ? reference::mc::interpolateAverage : reference::mc::copy)(src, step, dst, step, m.size, m.size, 0,
                                                                                0);
        }));
  }

  const struct {
    const char* name;
    zvpStatus (*run)(const uint8_t*, int32_t, const uint8_t*, int32_t, uint8_t*, int32_t);
    int size;
  } ofTwo[] = {{"zvpiAverage8x8_8u_C1R", zvpiAverage8x8_8u_C1R, 8},
               {"zvpiAverage16x16_8u_C1R", zvpiAverage16x16_8u_C1R, 16}};
  for (const auto& m : ofTwo) {
    const auto run = [=](const uint8_t* src, uint8_t* dst) { m.run(src, step, src + 5, step, dst, step); };
    add(
        m.name, "whole", [=](int i) { run(scene->source(i), scene->destination(i)); },
        compared(scene, run, [=](const uint8_t* src, uint8_t* dst) {
          reference::mc::average(src, step, src + 5, step, dst, step, m.size, m.size);
        }));
  }

  const auto addIn = [=](const uint8_t*, uint8_t* dst) { zvpiAdd8x8_16s8u_C1IRS(residual->data(), 16, dst, step); };
  add(
      "zvpiAdd8x8_16s8u_C1IRS", "whole", [=](int i) { addIn(nullptr, scene->destination(i)); },
      compared(scene, addIn, [=](const uint8_t*, uint8_t* dst) {
        reference::mc::add8x8(residual->data(), 16, dst, step, dst, step, 0, 0);
      }));
  for (int slot = 0; slot < 8; ++slot) {
    const auto run = [=](const uint8_t* src, uint8_t* dst) {
      zvpiAdd8x8HP_16s8u_C1RS(residual->data(), 16, src, step, dst, step, slot / 2, slot % 2);
    };
    add(
        "zvpiAdd8x8HP_16s8u_C1RS", cases[slot], [=](int i) { run(scene->source(i), scene->destination(i)); },
        compared(scene, run, [=](const uint8_t* src, uint8_t* dst) {
          reference::mc::add8x8(residual->data(), 16, src, step, dst, step, slot / 2, slot % 2);
        }));
  }
  const auto addConstant = [=](const uint8_t*, uint8_t* dst) { zvpiAddC8x8_16s8u_C1IR(-9, dst, step); };
  add(
      "zvpiAddC8x8_16s8u_C1IR", "whole", [=](int i) { zvpiAddC8x8_16s8u_C1IR(i - 16, scene->destination(i), step); },
      compared(scene, addConstant,
               [=](const uint8_t*, uint8_t* dst) { reference::mc::addConstant8x8(-9, dst, step); }));
};

}  // namespace
