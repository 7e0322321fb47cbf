#include "reference/mpeg4/quant.h"

#include "support/fresh_blocks.h"
#include "zvpvc.h"

namespace {

namespace model = reference::mpeg4;

// A context of each kind, by depth and with or without a matrix.
struct Blocks : bench::FreshBlocks {
  std::uint8_t weights[64];
  struct Contexts {
    alignas(16) std::uint8_t inter[412], intra[412], invInter[156], invIntra[156];
  } contexts[2][2];  // [12 bits][matrix]
  Blocks() {
    fillSparse();
    for (int i = 0; i < 64; ++i) weights[i] = std::uint8_t(16 + i);
    for (const int deep : {0, 1})
      for (const int matrix : {0, 1}) {
        auto& c = contexts[deep][matrix];
        const std::uint8_t* m = matrix ? weights : nullptr;
        const int bits = depth(deep);
        zvpiQuantInterInit_MPEG4(m, c.inter, bits);
        zvpiQuantIntraInit_MPEG4(m, c.intra, bits);
        zvpiQuantInvInterInit_MPEG4(m, c.invInter, bits);
        zvpiQuantInvIntraInit_MPEG4(m, c.invIntra, bits);
      }
  }
  static int depth(int deep) { return deep ? 12 : 8; }
  static int quantizer(int i, int deep) { return deep ? 2 + 15 * (i & 31) : 2 + (i & 15); }
};

// Each quantizing row includes the copy that makes its block fresh.
const bench::Rows rows = [](bench::Add add) {
  auto* b = bench::keep<Blocks>();
  auto* count = bench::keep<std::int32_t>();
  const auto check = [=](auto member, auto modelOf) -> bench::Check {
    return [=] {
      std::int16_t wanted[64];
      std::copy(b->source[3], b->source[3] + 64, wanted);
      modelOf(wanted);
      auto* actual = b->fresh(3);
      member(actual);
      return std::equal(wanted, wanted + 64, actual);
    };
  };
  for (const int deep : {0, 1})
    for (const int matrix : {0, 1}) {
      const std::string name = std::to_string(Blocks::depth(deep)) + (matrix ? " bits, matrix" : " bits, flat");
      const auto* c = &b->contexts[deep][matrix];
      const std::uint8_t* m = matrix ? b->weights : nullptr;
      const int bits = Blocks::depth(deep);
      const auto qp = [=](int i) { return Blocks::quantizer(i, deep); };
      const auto inter = [=](std::int16_t* x, int i) { zvpiQuantInter_MPEG4_16s_C1I(x, c->inter, qp(i), count); };
      const auto intra = [=](std::int16_t* x, int i) {
        zvpiQuantIntra_MPEG4_16s_C1I(x, c->intra, qp(i), count, i & 1);
      };
      const auto invInter = [=](std::int16_t* x, int i) { zvpiQuantInvInter_MPEG4_16s_C1I(x, 63, c->invInter, qp(i)); };
      const auto invIntra = [=](std::int16_t* x, int i) {
        zvpiQuantInvIntra_MPEG4_16s_C1I(x, 63, c->invIntra, qp(i), i & 1);
      };
      add(
          "zvpiQuantInter_MPEG4_16s_C1I", name, [=](int i) { inter(b->fresh(i), i); },
          check([=](auto* x) { inter(x, 7); }, [=](auto* x) { model::quantInter(x, m, bits, qp(7)); }));
      add(
          "zvpiQuantIntra_MPEG4_16s_C1I", name, [=](int i) { intra(b->fresh(i), i); },
          check([=](auto* x) { intra(x, 7); }, [=](auto* x) { model::quantIntra(x, m, bits, qp(7), true); }));
      add(
          "zvpiQuantInvInter_MPEG4_16s_C1I", name, [=](int i) { invInter(b->fresh(i), i); },
          check([=](auto* x) { invInter(x, 7); }, [=](auto* x) { model::quantInvInter(x, 63, m, bits, qp(7)); }));
      add(
          "zvpiQuantInvIntra_MPEG4_16s_C1I", name, [=](int i) { invIntra(b->fresh(i), i); },
          check([=](auto* x) { invIntra(x, 7); }, [=](auto* x) { model::quantInvIntra(x, 63, m, bits, qp(7), true); }));
      add("zvpiQuantInvInter_MPEG4_16s_C1I", name + ", last 21",
          [=](int i) { zvpiQuantInvInter_MPEG4_16s_C1I(b->fresh(i), 21, c->invInter, qp(i)); });
    }
  auto* record = bench::keep<Blocks::Contexts>();
  add("zvpiQuantInterInit_MPEG4", "matrix", [=](int) { zvpiQuantInterInit_MPEG4(b->weights, record->inter, 8); });
  add("zvpiQuantIntraInit_MPEG4", "matrix", [=](int) { zvpiQuantIntraInit_MPEG4(b->weights, record->intra, 8); });
  add("zvpiQuantInvInterInit_MPEG4", "matrix",
      [=](int) { zvpiQuantInvInterInit_MPEG4(b->weights, record->invInter, 8); });
  add("zvpiQuantInvIntraInit_MPEG4", "matrix",
      [=](int) { zvpiQuantInvIntraInit_MPEG4(b->weights, record->invIntra, 8); });
  add("zvpiQuantInterGetSize_MPEG4", "", [=](int) { zvpiQuantInterGetSize_MPEG4(count); });
  add("zvpiQuantIntraGetSize_MPEG4", "", [=](int) { zvpiQuantIntraGetSize_MPEG4(count); });
  add("zvpiQuantInvInterGetSize_MPEG4", "", [=](int) { zvpiQuantInvInterGetSize_MPEG4(count); });
  add("zvpiQuantInvIntraGetSize_MPEG4", "", [=](int) { zvpiQuantInvIntraGetSize_MPEG4(count); });
};

}  // namespace
