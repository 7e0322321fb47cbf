// SAD of one candidate.
#include "reference/measures/sad.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  const std::pair<int, const char*> cases[] = {{0, "whole"}, {4, "half y"}, {8, "half x"}, {12, "half xy"}};
  const auto bytes = [=](const char* name, auto function, int w, int h) {
    for (const auto& [type, caseName] : cases)
      addResultRow(
          add, in, name, caseName,
          [=, mcType = type](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, &in->result, mcType); },
          [=, mcType = type](int i) {
            return reference::measures::sad(in->a8(i), in->step8, in->b8(i), in->step8, w, h, mcType);
          });
  };
  const auto words = [=](const char* name, auto function, int size) {
    for (const auto& [type, caseName] : cases)
      addResultRow(
          add, in, name, caseName,
          [=, mcType = type](int i) { function(in->a16(i), in->step16, in->b16(i), in->step16, &in->result, mcType); },
          [=, mcType = type](int i) {
            return reference::measures::sad(in->a16(i), in->step16, in->b16(i), in->step16, size, size, mcType);
          });
  };
  const auto whole = [=](const char* name, auto function, int w, int h) {
    addResultRow(
        add, in, name, "whole", [=](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, &in->result); },
        [=](int i) { return reference::measures::sad(in->a8(i), in->step8, in->b8(i), in->step8, w, h, 0); });
  };
  bytes("zvpiSAD16x16_8u32s", zvpiSAD16x16_8u32s, 16, 16);
  bytes("zvpiSAD16x8_8u32s_C1R", zvpiSAD16x8_8u32s_C1R, 16, 8);
  bytes("zvpiSAD8x8_8u32s_C1R", zvpiSAD8x8_8u32s_C1R, 8, 8);
  words("zvpiSAD16x16_16u32s_C1R", zvpiSAD16x16_16u32s_C1R, 16);
  words("zvpiSAD8x8_16u32s_C1R", zvpiSAD8x8_16u32s_C1R, 8);
  words("zvpiSAD4x4_16u32s_C1R", zvpiSAD4x4_16u32s_C1R, 4);
  whole("zvpiSAD8x16_8u32s_C1R", zvpiSAD8x16_8u32s_C1R, 8, 16);
  whole("zvpiSAD8x4_8u32s_C1R", zvpiSAD8x4_8u32s_C1R, 8, 4);
  whole("zvpiSAD4x8_8u32s_C1R", zvpiSAD4x8_8u32s_C1R, 4, 8);
};

}  // namespace
