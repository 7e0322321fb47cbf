// Forward quantization, by itself and with the transform, by the factors of flat matrices.
#include "reference/h264/quantize.h"

#include "h264/blocks.h"
#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::quantize;
using bench::Blocks;
using bench::same;
using bench::scan;
using bench::scanOrder;
using std::int16_t;
using std::int32_t;
using std::int8_t;
using std::uint8_t;
constexpr int qp = 28;

template <class C, class L, class F>
void addPlain(bench::Add add, const char* name, const char* caseName,
              zvpStatus (*call)(const C*, L*, int32_t*, int32_t*, const F*, const int16_t*, int32_t, int32_t),
              bool withTable) {
  auto* coefficients = bench::keep<Blocks<C>>(3000, false, 1u);
  auto* levels = bench::keep<Blocks<L>>(1, false, 2u);
  auto* table = bench::keep<Blocks<F>>(9000, false, 3u);
  const auto run = [=](int i) {
    int32_t number, last;
    call(coefficients->at(i), levels->out(i), &number, &last, withTable ? table->at(0) : nullptr, scanOrder, qp, 1);
    return number;
  };
  add(name, caseName, run, [=] {
    const auto expected = model::plain(coefficients->block(4), withTable ? table->block(0) : model::Block(), scan, qp,
                                       true, 8 * int(sizeof(L)));
    return run(4) == expected.number && same(levels->out(4), expected.levels);
  });
}

const bench::Rows rows = [](bench::Add add) {
  for (const bool table : {false, true}) {
    const char* const caseName = table ? "own factors" : "default factors";
    addPlain<int16_t, int16_t, int16_t>(add, "zvpiQuantizeResidual4x4Fwd_H264_16s_C1", caseName,
                                        zvpiQuantizeResidual4x4Fwd_H264_16s_C1, table);
    addPlain<int32_t, int32_t, int32_t>(add, "zvpiQuantizeResidual4x4Fwd_H264_32s_C1", caseName,
                                        zvpiQuantizeResidual4x4Fwd_H264_32s_C1, table);
  }
  addPlain<int16_t, int32_t, int16_t>(add, "zvpiQuantizeResidual4x4Fwd_H264_16s32s_C1", "own factors",
                                      zvpiQuantizeResidual4x4Fwd_H264_16s32s_C1, true);

  auto* blocks = bench::keep<Blocks<int16_t>>(255, false, 5u);
  add(
      "zvpiTransformQuantResidual_H264_16s_C1I", "block",
      [=](int i) {
        int8_t number;
        uint8_t last;
        zvpiTransformQuantResidual_H264_16s_C1I(blocks->copy(i), qp, &number, 0, scanOrder, &last);
      },
      [=] {
        int8_t number;
        uint8_t last;
        int16_t* const block = blocks->copy(7);
        zvpiTransformQuantResidual_H264_16s_C1I(block, qp, &number, 0, scanOrder, &last);
        const auto expected = model::baselineBlock(blocks->block(7), scan, qp, false);
        return number == expected.number && last == expected.last && same(block, expected.levels);
      });
  add("zvpiTransformQuantLumaDC_H264_16s_C1I", "block", [=](int i) {
    int8_t number;
    uint8_t last;
    zvpiTransformQuantLumaDC_H264_16s_C1I(blocks->copy(i), blocks->out(i), qp, &number, 1, scanOrder, &last);
  });
  add("zvpiTransformQuantChromaDC_H264_16s_C1I", "block", [=](int i) {
    int8_t number;
    zvpiTransformQuantChromaDC_H264_16s_C1I(blocks->copy(i), blocks->out(i), qp, &number, 0, 1);
  });
};

}  // namespace
