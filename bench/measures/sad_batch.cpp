// SADs of 16 candidates in one call; beside the 16x16 and 8x8 members, 16 calls for one candidate each.
#include "reference/measures/sad_batch.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

constexpr int count = 16;

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  auto* sads = bench::keep<std::vector<std::uint16_t>>(count);
  const auto batch = [=](const char* name, auto function, int size) {
    const auto call = [=](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, sads->data(), count); };
    add(name, "16 candidates", call,
        bench::atAllPlaces([=](int i) { return call(i), *sads; },
                           [=](int i) {
                             return reference::measures::sadBatch(in->a8(i), in->step8, in->b8(i), in->step8, size,
                                                                  count);
                           }));
  };
  batch("zvpiSAD16x16xN_8u16u_C1R", zvpiSAD16x16xN_8u16u_C1R, 16);
  batch("zvpiSAD8x8xN_8u16u_C1R", zvpiSAD8x8xN_8u16u_C1R, 8);
  batch("zvpiSAD4x4xN_8u16u_C1R", zvpiSAD4x4xN_8u16u_C1R, 4);
  batch("zvpiSAD2x2xN_8u16u_C1R", zvpiSAD2x2xN_8u16u_C1R, 2);
  const auto best = [=](const char* name, auto function, int size) {
    const auto call = [=](int i) {
      function(in->a8(i), in->step8, in->b8(i), in->step8, sads->data(), count, &in->result);
    };
    add(name, "16 candidates", call,
        bench::atAllPlaces([=](int i) { return call(i), in->result; },
                           [=](int i) {
                             return reference::measures::indexOfBest(reference::measures::sadBatch(
                                 in->a8(i), in->step8, in->b8(i), in->step8, size, count));
                           }));
  };
  best("zvpiSAD16x16xNI_8u16u_C1R", zvpiSAD16x16xNI_8u16u_C1R, 16);
  best("zvpiSAD8x8xNI_8u16u_C1R", zvpiSAD8x8xNI_8u16u_C1R, 8);
  best("zvpiSAD4x4xNI_8u16u_C1R", zvpiSAD4x4xNI_8u16u_C1R, 4);
  const auto single = [=](const char* name, auto function) {
    add(name, "16 calls", [=](int i) {
      for (int k = 0; k < count; ++k) function(in->a8(i), in->step8, in->b8(i) + k, in->step8, &in->result, 0);
    });
  };
  single("zvpiSAD16x16_8u32s", zvpiSAD16x16_8u32s);
  single("zvpiSAD8x8_8u32s_C1R", zvpiSAD8x8_8u32s_C1R);
};

}  // namespace
