// Inputs for the rows of the measures: 32 places in two pictures of bytes, and the same as 16-bit samples.
#pragma once

#include "support/bench.h"

namespace bench {

struct MeasureInputs {
  Scene current{1}, reference{2};
  std::uint16_t current16[Scene::step * Scene::rows], reference16[Scene::step * Scene::rows];
  std::int32_t result = 0, second = 0;

  MeasureInputs() {
    zvptest::Rng rng(3);
    zvptest::fill(current16, std::size(current16), rng, zvptest::Style::Smooth, 0, 65535);
    zvptest::fill(reference16, std::size(reference16), rng, zvptest::Style::Smooth, 0, 65535);
  }
  // Row distances in bytes.
  static constexpr int step8 = Scene::step, step16 = 2 * Scene::step;
  const std::uint8_t* a8(int i) const { return current.source(i); }
  const std::uint8_t* b8(int i) const { return reference.source(i + 5); }
  const std::uint16_t* a16(int i) const { return current16 + (i & 31) * (Scene::step + 1); }
  const std::uint16_t* b16(int i) const { return reference16 + (31 - (i & 31)) * (Scene::step + 1); }
};

// The check of a row: true if the call gives what the model gives, at all 32 places.
template <class Actual, class Expected>
Check atAllPlaces(Actual actual, Expected expected) {
  return [=] {
    for (int i = 0; i < 32; ++i)
      if (actual(i) != expected(i)) return false;
    return true;
  };
}

inline constexpr std::pair<int, const char*> halfPelCases[] = {
    {0, "whole"}, {4, "half y"}, {8, "half x"}, {12, "half xy"}};

// A row of which each call leaves its result in in->result.
template <class Call, class Expected>
void addResultRow(Add add, MeasureInputs* in, const char* name, const char* caseName, Call call, Expected expected) {
  const auto actual = [=](int i) { return call(i), in->result; };
  add(name, caseName, call, atAllPlaces(actual, [=](int i) { return std::int32_t(expected(i)); }));
}

// The four half-pel cases of a member for bytes.
template <class Function, class Model>
void addHalfPelRows(Add add, MeasureInputs* in, const char* name, Function function, int w, int h, Model model) {
  for (const auto& [mcType, caseName] : halfPelCases)
    addResultRow(
        add, in, name, caseName,
        [=, type = mcType](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, &in->result, type); },
        [=, type = mcType](int i) { return model(in->a8(i), in->step8, in->b8(i), in->step8, w, h, type); });
}

}  // namespace bench
