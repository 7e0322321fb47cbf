// Frame and field activity.
#include "reference/measures/field_sad.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  const auto activity = [=](const char* name, auto function, auto block, int step) {
    addResultRow(
        add, in, name, "block", [=](int i) { function(block(i), step, &in->result, &in->second); },
        [=](int i) {
          std::int32_t frame, field;
          reference::measures::frameFieldSad(block(i), step, frame, field);
          return frame;
        });
  };
  activity(
      "zvpiFrameFieldSAD16x16_8u32s_C1R", zvpiFrameFieldSAD16x16_8u32s_C1R, [=](int i) { return in->a8(i); },
      in->step8);
  activity(
      "zvpiFrameFieldSAD16x16_16s32s_C1R", zvpiFrameFieldSAD16x16_16s32s_C1R,
      [=](int i) { return reinterpret_cast<const std::int16_t*>(in->a16(i)); }, in->step16);
};

}  // namespace
