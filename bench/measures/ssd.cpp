// SSD of one candidate.
#include "reference/measures/ssd.h"

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
            return reference::measures::ssd(in->a8(i), in->step8, in->b8(i), in->step8, w, h, mcType);
          });
  };
  bytes("zvpiSSD8x8_8u32s_C1R", zvpiSSD8x8_8u32s_C1R, 8, 8);
  bytes("zvpiSSD4x4_8u32s_C1R", zvpiSSD4x4_8u32s_C1R, 4, 4);
};

}  // namespace
