// SATD.
#include "reference/measures/satd.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  const auto satd = [=](const char* name, auto function, int w, int h) {
    addResultRow(
        add, in, name, "block", [=](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, &in->result); },
        [=](int i) { return reference::measures::satd(in->a8(i), in->step8, in->b8(i), in->step8, w, h); });
  };
  satd("zvpiSATD4x4_8u32s_C1R", zvpiSATD4x4_8u32s_C1R, 4, 4);
  satd("zvpiSATD4x8_8u32s_C1R", zvpiSATD4x8_8u32s_C1R, 4, 8);
  satd("zvpiSATD8x4_8u32s_C1R", zvpiSATD8x4_8u32s_C1R, 8, 4);
  satd("zvpiSATD8x8_8u32s_C1R", zvpiSATD8x8_8u32s_C1R, 8, 8);
  satd("zvpiSATD8x16_8u32s_C1R", zvpiSATD8x16_8u32s_C1R, 8, 16);
  satd("zvpiSATD16x8_8u32s_C1R", zvpiSATD16x8_8u32s_C1R, 16, 8);
  satd("zvpiSATD16x16_8u32s_C1R", zvpiSATD16x16_8u32s_C1R, 16, 16);
};

}  // namespace
