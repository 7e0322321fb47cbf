// Motion compensation with a residual, from one reference and from two.
#include "reference/mc/mc.h"

#include "mc/residuals.h"
#include "reference/mc/members.h"

namespace {

using bench::residualStep;
using std::int16_t;
using std::uint8_t;
constexpr int step = bench::Scene::step;

const bench::Rows rows = [](bench::Add add) {
  auto* scene = bench::keep<bench::MotionScene>();
  auto* pictures = &scene->pictures;
  const int16_t* residual = scene->residual.data();
  // A row for a call and a model that take a place of the pictures and a destination.
  const auto addRow = [=](const char* name, const std::string& caseName, auto run, auto model) {
    add(
        name, caseName, [=](int i) { run(i, pictures->destination(i)); },
        [=] {
          uint8_t expected[16 * step];
          uint8_t* actual = pictures->destination(3);
          std::memcpy(expected, actual, sizeof expected);
          run(3, actual);
          model(3, expected);
          return std::memcmp(actual, expected, sizeof expected) == 0;
        });
  };
  for (int rounding = 0; rounding < 2; ++rounding)
    for (const auto& [caseName, type] : bench::motionCases) {
      const std::string title = std::string(caseName) + (rounding ? ", down" : "");
      const auto ref = [pictures, mcType = type](int i) {
        return reference::mc::Reference{pictures->source(i), step, mcType};
      };
      for (const auto& m : reference::mc::mcMembers) {
        addRow(
            m.name, title,
            [=, mcType = type](int i, uint8_t* dst) {
              m.one(pictures->source(i), step, residual, residualStep, dst, step, mcType, rounding);
            },
            [=](int i, uint8_t* dst) {
              compensate(m.shape, ref(i), {residual, residualStep}, {dst, step}, rounding);
            });
        addRow(
            m.nameB, title,
            [=, mcType = type](int i, uint8_t* dst) {
              m.two(pictures->source(i), step, mcType, pictures->source(i + 5), step, mcType, residual, residualStep,
                    dst, step, rounding);
            },
            [=](int i, uint8_t* dst) {
              compensate(m.shape, ref(i), ref(i + 5), {residual, residualStep}, {dst, step}, rounding);
            });
      }
      for (const auto& m : reference::mc::mcPlanesMembers) {
        const int16_t* v = residual + 16 * 16;
        addRow(
            m.name, title,
            [=, mcType = type](int i, uint8_t* dst) {
              m.one(pictures->source(i), step, residual, v, residualStep, dst, step, mcType, rounding);
            },
            [=](int i, uint8_t* dst) {
              compensate({16, m.height, 2}, ref(i), {residual, residualStep, v}, {dst, step}, rounding);
            });
        addRow(
            m.nameB, title,
            [=, mcType = type](int i, uint8_t* dst) {
              m.two(pictures->source(i), step, mcType, pictures->source(i + 5), step, mcType, residual, v, residualStep,
                    dst, step, rounding);
            },
            [=](int i, uint8_t* dst) {
              compensate({16, m.height, 2}, ref(i), ref(i + 5), {residual, residualStep, v}, {dst, step}, rounding);
            });
      }
    }
};

}  // namespace
