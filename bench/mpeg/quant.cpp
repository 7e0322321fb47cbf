#include "reference/mpeg/quant.h"

#include "support/fresh_blocks.h"
#include "zvpvc.h"

namespace {

struct Blocks : bench::FreshBlocks {
  std::int16_t weights[64];
  float reciprocals[64];
  Blocks() {
    fillSparse();
    for (int i = 0; i < 64; ++i) {
      weights[i] = std::int16_t(16 + i);
      reciprocals[i] = 1.0f / float(16 + i);
    }
  }
};

template <class Member, class Model>
bench::Check inverseCheck(Blocks* b, Member member, Model model) {
  return [=] {
    std::int16_t wanted[64];
    std::copy(b->source[3], b->source[3] + 64, wanted);
    model(wanted, 10, b->weights);
    auto* actual = b->fresh(3);
    member(actual, 10, b->weights);
    return std::equal(wanted, wanted + 64, actual);
  };
}
template <class Member, class Model>
bench::Check forwardCheck(Blocks* b, Member member, Model model) {
  return [=] {
    std::int16_t wanted[64];
    std::copy(b->source[3], b->source[3] + 64, wanted);
    std::int32_t count;
    const int wantedCount = model(wanted, 10, b->reciprocals);
    auto* actual = b->fresh(3);
    member(actual, 10, b->reciprocals, &count);
    return std::equal(wanted, wanted + 64, actual) && count == wantedCount;
  };
}

// Each quantizing row includes the copy that makes its block fresh.
const bench::Rows rows = [](bench::Add add) {
  auto* b = bench::keep<Blocks>();
  auto* count = bench::keep<std::int32_t>();
  namespace model = reference::mpeg;
  add(
      "zvpiQuantIntra_MPEG2_16s_C1I", "matrix",
      [=](int i) { zvpiQuantIntra_MPEG2_16s_C1I(b->fresh(i), 2 + i, b->reciprocals, count); },
      forwardCheck(b, zvpiQuantIntra_MPEG2_16s_C1I, model::quantIntra));
  add(
      "zvpiQuant_MPEG2_16s_C1I", "matrix",
      [=](int i) { zvpiQuant_MPEG2_16s_C1I(b->fresh(i), 2 + i, b->reciprocals, count); },
      forwardCheck(b, zvpiQuant_MPEG2_16s_C1I, model::quantInter));
  add("zvpiQuant_MPEG2_16s_C1I", "flat", [=](int i) { zvpiQuant_MPEG2_16s_C1I(b->fresh(i), 2 + i, nullptr, count); });
  add(
      "zvpiQuantInvIntra_MPEG2_16s_C1I", "matrix",
      [=](int i) { zvpiQuantInvIntra_MPEG2_16s_C1I(b->fresh(i), 2 + i, b->weights); },
      inverseCheck(b, zvpiQuantInvIntra_MPEG2_16s_C1I, model::quantInvIntra));
  add(
      "zvpiQuantInv_MPEG2_16s_C1I", "matrix",
      [=](int i) { zvpiQuantInv_MPEG2_16s_C1I(b->fresh(i), 2 + i, b->weights); },
      inverseCheck(b, zvpiQuantInv_MPEG2_16s_C1I, model::quantInvInter));
  add("zvpiQuantInv_MPEG2_16s_C1I", "flat", [=](int i) { zvpiQuantInv_MPEG2_16s_C1I(b->fresh(i), 2 + i, nullptr); });
  for (const int n : {6, 40})
    add("zvpiScanFwd_16s_C1", "count " + std::to_string(n),
        [=](int i) { zvpiScanFwd_16s_C1(b->source[i & 31], b->work[i & 31], n, i % 3); });
  for (const int n : {6, 63})
    add("zvpiScanInv_16s_C1", "last " + std::to_string(n),
        [=](int i) { zvpiScanInv_16s_C1(b->source[i & 31], b->work[i & 31], n, i % 3); });
};

}  // namespace
