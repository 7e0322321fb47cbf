// Residual blocks.
#include "reference/measures/diff.h"

#include "measures/support.h"
#include "reference/measures/sad.h"
#include "zvpvc.h"

namespace {

const bench::Rows rows = [](bench::Add add) {
  auto* in = bench::keep<bench::MeasureInputs>();
  auto* residual = bench::keep<std::vector<std::int16_t>>(256);
  const auto rowOf = [=](const char* name, auto call, int size, auto modelInto) {
    const auto actual = [=](int i) {
      return call(i), std::vector<std::int16_t>(residual->begin(), residual->begin() + size * size);
    };
    const auto expected = [=](int i) {
      std::vector<std::int16_t> model(std::size_t(size * size));
      modelInto(i, model.data());
      return model;
    };
    add(name, "block", call, bench::atAllPlaces(actual, expected));
  };
  const auto bytes = [=](const char* name, auto function, int size) {
    rowOf(
        name, [=](int i) { function(in->a8(i), in->step8, in->b8(i), in->step8, residual->data(), 2 * size); }, size,
        [=](int i, std::int16_t* model) {
          reference::measures::subtract(in->a8(i), in->step8, in->b8(i), in->step8, model, size, size);
        });
  };
  bytes("zvpiSub4x4_8u16s_C1R", zvpiSub4x4_8u16s_C1R, 4);
  bytes("zvpiSub8x8_8u16s_C1R", zvpiSub8x8_8u16s_C1R, 8);
  bytes("zvpiSub16x16_8u16s_C1R", zvpiSub16x16_8u16s_C1R, 16);
  bytes(
      "zvpiSubSAD8x8_8u16s_C1R", [=](auto... arguments) { return zvpiSubSAD8x8_8u16s_C1R(arguments..., &in->result); },
      8);
  const auto words = [=](const char* name, auto function, int size) {
    rowOf(
        name, [=](int i) { function(in->a16(i), in->step16, in->b16(i), in->step16, residual->data(), 2 * size); },
        size,
        [=](int i, std::int16_t* model) {
          reference::measures::subtract(in->a16(i), in->step16, in->b16(i), in->step16, model, size, size);
        });
  };
  words("zvpiSub4x4_16u16s_C1R", zvpiSub4x4_16u16s_C1R, 4);
  words("zvpiSub8x8_16u16s_C1R", zvpiSub8x8_16u16s_C1R, 8);
};

}  // namespace
