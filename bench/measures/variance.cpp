// Mean absolute deviation, variance and sum.
#include "reference/measures/variance.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  const auto meanAbsDev = [=](const char* name, auto function, int size) {
    addResultRow(
        add, in, name, "block", [=](int i) { function(in->a8(i), in->step8, &in->result); },
        [=](int i) { return reference::measures::meanAbsDev(in->a8(i), in->step8, size); });
  };
  meanAbsDev("zvpiMeanAbsDev8x8_8u32s_C1R", zvpiMeanAbsDev8x8_8u32s_C1R, 8);
  meanAbsDev("zvpiMeanAbsDev16x16_8u32s_C1R", zvpiMeanAbsDev16x16_8u32s_C1R, 16);
  addResultRow(
      add, in, "zvpiVariance16x16_8u32s", "block",
      [=](int i) {
        std::uint32_t variance;
        zvpiVariance16x16_8u32s(in->a8(i), in->step8, &variance);
        in->result = std::int32_t(variance);
      },
      [=](int i) { return reference::measures::variance16x16(in->a8(i), in->step8); });
  addResultRow(
      add, in, "zvpiVarSum8x8_8u32s_C1R", "block",
      [=](int i) { zvpiVarSum8x8_8u32s_C1R(in->a8(i), in->step8, &in->result, &in->second); },
      [=](int i) {
        std::int32_t variance, sum;
        reference::measures::varSum8x8(in->a8(i), in->step8, variance, sum);
        return variance;
      });
};

}  // namespace
