// SSD of one candidate.
#include "reference/measures/ssd.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  addHalfPelRows(add, in, "zvpiSSD8x8_8u32s_C1R", zvpiSSD8x8_8u32s_C1R, 8, 8, reference::measures::ssd);
  addHalfPelRows(add, in, "zvpiSSD4x4_8u32s_C1R", zvpiSSD4x4_8u32s_C1R, 4, 4, reference::measures::ssd);
};

}  // namespace
