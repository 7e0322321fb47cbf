// SAD of one candidate.
#include "reference/measures/sad.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  const auto sad = [](auto... arguments) { return reference::measures::sad(arguments...); };
  const auto words = [=](const char* name, auto function, int size) {
    for (const auto& [type, caseName] : bench::halfPelCases)
      addResultRow(
          add, in, name, caseName,
          [=, mcType = type](int i) { function(in->a16(i), in->step16, in->b16(i), in->step16, &in->result, mcType); },
          [=, mcType = type](int i) {
            return sad(in->a16(i), in->step16, in->b16(i), in->step16, size, size, mcType);
          });
  };
  const auto whole = [=](const char* name, auto function, int w, int h) {
    addResultRow(
        add, in, name, "whole", [=](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, &in->result); },
        [=](int i) { return sad(in->a8(i), in->step8, in->b8(i), in->step8, w, h, 0); });
  };
  addHalfPelRows(add, in, "zvpiSAD16x16_8u32s", zvpiSAD16x16_8u32s, 16, 16, sad);
  addHalfPelRows(add, in, "zvpiSAD16x8_8u32s_C1R", zvpiSAD16x8_8u32s_C1R, 16, 8, sad);
  addHalfPelRows(add, in, "zvpiSAD8x8_8u32s_C1R", zvpiSAD8x8_8u32s_C1R, 8, 8, sad);
  words("zvpiSAD16x16_16u32s_C1R", zvpiSAD16x16_16u32s_C1R, 16);
  words("zvpiSAD8x8_16u32s_C1R", zvpiSAD8x8_16u32s_C1R, 8);
  words("zvpiSAD4x4_16u32s_C1R", zvpiSAD4x4_16u32s_C1R, 4);
  whole("zvpiSAD8x16_8u32s_C1R", zvpiSAD8x16_8u32s_C1R, 8, 16);
  whole("zvpiSAD8x4_8u32s_C1R", zvpiSAD8x4_8u32s_C1R, 8, 4);
  whole("zvpiSAD4x8_8u32s_C1R", zvpiSAD4x8_8u32s_C1R, 4, 8);
};

}  // namespace
