// Motion compensation with a residual, from one reference and from two.
#include "reference/mc/mc.h"

#include "mc/residuals.h"
#include "zvpvc.h"

namespace {

using bench::residualStep;
using reference::mc::Shape;
using std::int16_t;
using std::int32_t;
using std::uint8_t;
constexpr int step = bench::Scene::step;

using Mc = zvpStatus (*)(const uint8_t*, int32_t, const int16_t*, int32_t, uint8_t*, int32_t, int32_t, int32_t);
using McB = zvpStatus (*)(const uint8_t*, int32_t, int32_t, const uint8_t*, int32_t, int32_t, const int16_t*, int32_t,
                          uint8_t*, int32_t, int32_t);
using McPlanes = zvpStatus (*)(const uint8_t*, int32_t, const int16_t*, const int16_t*, int32_t, uint8_t*, int32_t,
                               int32_t, int32_t);
using McBPlanes = zvpStatus (*)(const uint8_t*, int32_t, int32_t, const uint8_t*, int32_t, int32_t, const int16_t*,
                                const int16_t*, int32_t, uint8_t*, int32_t, int32_t);

const struct {
  Shape shape;
  const char* name;
  Mc one;
  const char* nameB;
  McB two;
} members[] = {
    {{16, 16}, "zvpiMC16x16_8u_C1", zvpiMC16x16_8u_C1, "zvpiMC16x16B_8u_C1", zvpiMC16x16B_8u_C1},
    {{16, 8}, "zvpiMC16x8_8u_C1", zvpiMC16x8_8u_C1, "zvpiMC16x8B_8u_C1", zvpiMC16x8B_8u_C1},
    {{16, 4}, "zvpiMC16x4_8u_C1", zvpiMC16x4_8u_C1, "zvpiMC16x4B_8u_C1", zvpiMC16x4B_8u_C1},
    {{8, 16}, "zvpiMC8x16_8u_C1", zvpiMC8x16_8u_C1, "zvpiMC8x16B_8u_C1", zvpiMC8x16B_8u_C1},
    {{8, 8}, "zvpiMC8x8_8u_C1", zvpiMC8x8_8u_C1, "zvpiMC8x8B_8u_C1", zvpiMC8x8B_8u_C1},
    {{8, 4}, "zvpiMC8x4_8u_C1", zvpiMC8x4_8u_C1, "zvpiMC8x4B_8u_C1", zvpiMC8x4B_8u_C1},
    {{2, 2}, "zvpiMC2x2_8u_C1", zvpiMC2x2_8u_C1, "zvpiMC2x2B_8u_C1", zvpiMC2x2B_8u_C1},
    {{2, 4}, "zvpiMC2x4_8u_C1", zvpiMC2x4_8u_C1, "zvpiMC2x4B_8u_C1", zvpiMC2x4B_8u_C1},
    {{4, 2}, "zvpiMC4x2_8u_C1", zvpiMC4x2_8u_C1, "zvpiMC4x2B_8u_C1", zvpiMC4x2B_8u_C1},
    {{4, 4}, "zvpiMC4x4_8u_C1", zvpiMC4x4_8u_C1, "zvpiMC4x4B_8u_C1", zvpiMC4x4B_8u_C1},
    {{4, 8}, "zvpiMC4x8_8u_C1", zvpiMC4x8_8u_C1, "zvpiMC4x8B_8u_C1", zvpiMC4x8B_8u_C1},
    {{16, 8, 2}, "zvpiMC16x8UV_8u_C1", zvpiMC16x8UV_8u_C1, "zvpiMC16x8BUV_8u_C1", zvpiMC16x8BUV_8u_C1},
};
const struct {
  int height;
  const char* name;
  McPlanes one;
  const char* nameB;
  McBPlanes two;
} planarMembers[] = {
    {8, "zvpiMC8x8_16s8u_P2C2R", zvpiMC8x8_16s8u_P2C2R, "zvpiMC8x8B_16s8u_P2C2R", zvpiMC8x8B_16s8u_P2C2R},
    {4, "zvpiMC8x4_16s8u_P2C2R", zvpiMC8x4_16s8u_P2C2R, "zvpiMC8x4B_16s8u_P2C2R", zvpiMC8x4B_16s8u_P2C2R},
};

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
      for (const auto& m : members) {
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
      for (const auto& m : planarMembers) {
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
