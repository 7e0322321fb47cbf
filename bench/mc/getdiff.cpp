// Differences between a block and a half-pel prediction, from one reference and from two.
#include "reference/mc/getdiff.h"

#include "mc/residuals.h"
#include "reference/mc/members.h"

namespace {

using bench::residualStep;
using reference::mc::getDiff;
using reference::mc::getDiffChroma;
using reference::mc::Values;
using std::int16_t;
using std::uint8_t;
constexpr int step = bench::Scene::step;

const bench::Rows rows = [](bench::Add add) {
  auto* scene = bench::keep<bench::MotionScene>();
  auto* pictures = &scene->pictures;
  // A row for a call and a model that take a place of the pictures and two outputs.
  const auto addRow = [=](const char* name, const std::string& caseName, auto run, auto model) {
    int16_t *first = scene->difference[0].data(), *second = scene->difference[1].data();
    add(
        name, caseName, [=](int i) { run(i, first, second); },
        [=] {
          auto models = scene->difference;
          run(3, first, second);
          model(3, Values{models[0].data(), residualStep}, Values{models[1].data(), residualStep});
          return scene->difference[0] == models[0] && scene->difference[1] == models[1];
        });
  };
  for (int rounding = 0; rounding < 2; ++rounding)
    for (const auto& [caseName, type] : bench::motionCases) {
      const std::string title = std::string(caseName) + (rounding ? ", down" : "");
      const auto place = [pictures](int i) { return pictures->source(i); };
      const auto cur = [=](int i) { return reference::mc::Current{place(i + 9), step}; };
      const auto ref = [=, mcType = type](int i) { return reference::mc::Reference{place(i), step, mcType}; };
      for (const auto& m : reference::mc::getDiffMembers) {
        addRow(
            m.name, title,
            [=, mcType = type](int i, int16_t* diff, int16_t*) {
              m.one(place(i + 9), step, place(i), step, diff, residualStep, nullptr, 0, mcType, rounding);
            },
            [=](int i, Values diff, Values) {
              getDiff(m.width, m.height, cur(i), ref(i), diff, {nullptr, 0}, rounding);
            });
        addRow(
            m.name, title + ", with predictor",
            [=, mcType = type](int i, int16_t* diff, int16_t* predictor) {
              m.one(place(i + 9), step, place(i), step, diff, residualStep, predictor, residualStep, mcType, rounding);
            },
            [=](int i, Values diff, Values predictor) {
              getDiff(m.width, m.height, cur(i), ref(i), diff, predictor, rounding);
            });
        addRow(
            m.nameB, title,
            [=, mcType = type](int i, int16_t* diff, int16_t*) {
              m.two(place(i + 9), step, place(i), step, mcType, place(i + 5), step, mcType, diff, residualStep,
                    rounding);
            },
            [=](int i, Values diff, Values) {
              getDiff(m.width, m.height, cur(i), ref(i), ref(i + 5), diff, rounding);
            });
      }
      for (const auto& m : reference::mc::getDiffChromaMembers) {
        addRow(
            m.name, title,
            [=, mcType = type](int i, int16_t* u, int16_t* v) {
              m.one(place(i + 9), step, place(i), step, u, residualStep, v, residualStep, mcType, rounding);
            },
            [=](int i, Values u, Values v) { getDiffChroma(8, m.height, cur(i), ref(i), u, v, rounding); });
        addRow(
            m.nameB, title,
            [=, mcType = type](int i, int16_t* u, int16_t* v) {
              m.two(place(i + 9), step, place(i), step, mcType, place(i + 5), step, mcType, u, residualStep, v,
                    residualStep, rounding);
            },
            [=](int i, Values u, Values v) { getDiffChroma(8, m.height, cur(i), ref(i), ref(i + 5), u, v, rounding); });
      }
    }
  addRow(
      "zvpiGetDiff4x4_8u16s_C1", "whole",
      [=](int i, int16_t* diff, int16_t*) {
        zvpiGetDiff4x4_8u16s_C1(pictures->source(i + 9), step, pictures->source(i), step, diff, residualStep);
      },
      [=](int i, Values diff, Values) {
        getDiff(4, 4, {pictures->source(i + 9), step}, {pictures->source(i), step, 0}, diff, {nullptr, 0}, 0);
      });
};

}  // namespace
