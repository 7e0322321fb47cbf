// The edge test.
#include "reference/measures/edges.h"

#include "measures/support.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  for (const int limit : {20, 255})  // settled after some rows, and not at all
    addResultRow(
        add, in, "zvpiEdgesDetect16x16_8u_C1R", limit == 255 ? "all rows" : "some rows",
        [=](int i) {
          std::uint8_t result;
          zvpiEdgesDetect16x16_8u_C1R(in->a8(i), in->step8, 8, limit, &result);
          in->result = result;
        },
        [=](int i) { return reference::measures::hasEdges(in->a8(i), in->step8, 8, std::uint8_t(limit)); });
};

}  // namespace
