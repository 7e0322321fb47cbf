// The transforms of 4x4 blocks, plain and with the scales of flat matrices.
#include "reference/h264/transform.h"

#include "h264/blocks.h"
#include "support/bench.h"
#include "zvpvc.h"

namespace {

namespace model = reference::transform;
using bench::Blocks;
using bench::same;
using model::Block;
using std::int16_t;
using std::int32_t;
using std::uint8_t;
constexpr int qp = 28;

template <class T>
void addPlain(bench::Add add, const char* name, zvpStatus (*call)(const T*, T*), Block (*expected)(const Block&)) {
  auto* blocks = bench::keep<Blocks<T>>(255, false, 1u);
  add(
      name, "block", [=](int i) { call(blocks->at(i), blocks->out(i)); },
      [=] { return call(blocks->at(3), blocks->out(3)) == 0 && same(blocks->out(3), expected(blocks->block(3))); });
}

// In place, with arguments behind the block.
template <class Call, class Expected>
void addInPlace(bench::Add add, const char* name, const char* caseName, Call call, Expected expected) {
  auto* blocks = bench::keep<Blocks<int16_t>>(40, true, 2u);
  add(
      name, caseName, [=](int i) { call(blocks->copy(i)); },
      [=] {
        int16_t* const block = blocks->copy(5);
        call(block);
        return same(block, expected(*blocks));
      });
}

const bench::Rows rows = [](bench::Add add) {
  addPlain<int16_t>(add, "zvpiTransformResidual4x4Fwd_H264_16s_C1", zvpiTransformResidual4x4Fwd_H264_16s_C1,
                    [](const Block& b) { return model::wrap(model::forward(b), 16); });
  addPlain<int32_t>(add, "zvpiTransformResidual4x4Fwd_H264_32s_C1", zvpiTransformResidual4x4Fwd_H264_32s_C1,
                    model::forward);
  addPlain<int16_t>(add, "zvpiTransformResidual4x4Inv_H264_16s_C1", zvpiTransformResidual4x4Inv_H264_16s_C1,
                    [](const Block& b) { return model::inverse(b, 16); });
  addPlain<int32_t>(add, "zvpiTransformResidual4x4Inv_H264_32s_C1", zvpiTransformResidual4x4Inv_H264_32s_C1,
                    [](const Block& b) { return model::inverse(b, 32); });

  auto* scene = bench::keep<bench::Scene>(3u);
  auto* blocks = bench::keep<Blocks<int16_t>>(40, true, 4u);
  add("zvpiTransformPrediction_H264_8u16s_C1", "block",
      [=](int i) { zvpiTransformPrediction_H264_8u16s_C1(scene->source(i), bench::Scene::step, blocks->out(i)); });
  for (const int hasAc : {1, 0}) {
    const char* const caseName = hasAc != 0 ? "block" : "DC alone";
    addInPlace(
        add, "zvpiDequantTransformResidual_H264_16s_C1I", caseName,
        [=](int16_t* b) { zvpiDequantTransformResidual_H264_16s_C1I(b, 8, nullptr, hasAc, qp); },
        [=](const Blocks<int16_t>& b) { return model::residualOf(b.block(5), nullptr, hasAc != 0, qp); });
    add("zvpiDequantTransformResidualAndAdd_H264_16s_C1I", caseName, [=](int i) {
      zvpiDequantTransformResidualAndAdd_H264_16s_C1I(scene->source(i), blocks->at(i), nullptr, scene->destination(i),
                                                      bench::Scene::step, bench::Scene::step, qp, hasAc);
    });
  }
  addInPlace(
      add, "zvpiTransformDequantLumaDC_H264_16s_C1I", "block",
      [](int16_t* b) { zvpiTransformDequantLumaDC_H264_16s_C1I(b, qp); },
      [](const Blocks<int16_t>& b) { return model::dequantLumaDc(b.block(5), qp); });
  addInPlace(
      add, "zvpiTransformDequantChromaDC_H264_16s_C1I", "block",
      [](int16_t* b) { zvpiTransformDequantChromaDC_H264_16s_C1I(b, qp); },
      [](const Blocks<int16_t>& b) { return model::dequantChromaDc(b.block(5, 4), qp); });
  addInPlace(
      add, "zvpiDequantTransformResidual_SISP_H264_16s_C1I", "block",
      [=](int16_t* b) { zvpiDequantTransformResidual_SISP_H264_16s_C1I(b, blocks->at(1), nullptr, 1, qp, 30, 0); },
      [=](const Blocks<int16_t>& b) {
        return model::switchingBlock(b.block(5), blocks->block(1), nullptr, true, qp, 30, false);
      });
  addInPlace(
      add, "zvpiTransformDequantChromaDC_SISP_H264_16s_C1I", "block",
      [=](int16_t* b) { zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(b, blocks->at(1), qp, 30, 0); },
      [=](const Blocks<int16_t>& b) {
        return model::switchingChromaDc(b.block(5, 4), blocks->block(1, 4), qp, 30, false);
      });
};

}  // namespace
