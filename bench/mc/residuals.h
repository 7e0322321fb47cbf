// What the benches of MC and GetDiff share: a scene, residuals, the motion types by name.
#pragma once

#include <array>
#include <cstring>

#include "reference/mc/predict.h"
#include "support/bench.h"

namespace bench {

inline constexpr int residualStep = 32;

struct MotionScene {
  Scene pictures{21};
  using Values = std::array<std::int16_t, 32 * 16>;
  Values residual;
  std::array<Values, 2> difference{};
  MotionScene() {
    zvptest::Rng rng(22);
    zvptest::fill(residual.data(), residual.size(), rng, zvptest::Style::Uniform, -200, 200);
  }
};

struct MotionCase {
  const char* name;
  std::int32_t mcType;
};
inline constexpr MotionCase motionCases[4] = {{"whole", 0}, {"half y", 4}, {"half x", 8}, {"half xy", 12}};

}  // namespace bench
