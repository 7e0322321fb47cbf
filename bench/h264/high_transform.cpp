// The transforms with quantization of the High profiles, with default scales and with those of the caller's lists.
#include "h264/blocks.h"
#include "reference/h264/quantize.h"
#include "reference/h264/transform.h"
#include "support/bench.h"
#include "zvpvc.h"

namespace {

using bench::Blocks;
using bench::same;
using bench::scan;
using bench::scanOrder;
using reference::transform::Block;
using std::int16_t;
using std::int32_t;
using std::uint16_t;
using std::uint8_t;
constexpr int qp = 28;

const uint8_t weights[16] = {6, 13, 20, 28, 13, 20, 28, 32, 20, 28, 32, 37, 28, 32, 37, 42};
struct Lists {
  int16_t inverse[16], forward[16];
  Lists() { zvpiGenScaleLevel4x4_H264_8u16s_C1(weights, inverse, forward, qp % 6); }
};

template <class L>
void addForward(bench::Add add, const char* name,
                zvpStatus (*call)(const int16_t*, L*, int32_t, int32_t*, int32_t, const int16_t*, int32_t*,
                                  const int16_t*)) {
  auto* blocks = bench::keep<Blocks<int16_t>>(255, false, 1u);
  auto* levels = bench::keep<Blocks<L>>(1, false, 2u);
  auto* lists = bench::keep<Lists>();
  for (const bool own : {false, true}) {
    const auto run = [=](int i) {
      int32_t number, last;
      call(blocks->at(i), levels->out(i), qp, &number, 1, scanOrder, &last, own ? lists->forward : nullptr);
      return number;
    };
    add(name, own ? "own list" : "flat", run, [=] {
      const auto expected =
          reference::quantize::highBlock(blocks->block(2), own ? Block(lists->forward, lists->forward + 16) : Block(),
                                         scan, qp, true, 8 * int(sizeof(L)));
      return run(2) == expected.number && same(levels->out(2), expected.levels);
    });
  }
}

template <class T>
void addDc(bench::Add add, const char* luma, const char* chroma420, const char* chroma422,
           zvpStatus (*lumaDc)(T*, T*, int32_t, int32_t*, int32_t, const int16_t*, int32_t*, const int16_t*),
           zvpStatus (*dc420)(T*, T*, int32_t, int32_t*, int32_t, int32_t, const int16_t*),
           zvpStatus (*dc422)(T*, T*, int32_t, int32_t*, int32_t, int32_t, const int16_t*)) {
  auto* blocks = bench::keep<Blocks<T>>(2000, false, 3u);
  add(luma, "flat", [=](int i) {
    int32_t number, last;
    lumaDc(blocks->copy(i), blocks->out(i), qp, &number, 1, scanOrder, &last, nullptr);
  });
  for (const auto& [name, call] : {std::pair(chroma420, dc420), std::pair(chroma422, dc422)})
    add(name, "flat", [=, function = call](int i) {
      int32_t number;
      function(blocks->copy(i), blocks->out(i), qp, &number, 1, 1, nullptr);
    });
}

template <class T>
void addInverseDc(bench::Add add, const char* name, int size, zvpStatus (*call)(T*, int32_t, const int16_t*)) {
  auto* blocks = bench::keep<Blocks<T>>(60, true, 4u);
  add(
      name, "flat", [=](int i) { call(blocks->copy(i), qp, nullptr); },
      [=] {
        T* const block = blocks->copy(6);
        call(block, qp, nullptr);
        return same(
            block, reference::transform::highInverseDc(blocks->block(6, size), size == 16, qp, {}, 8 * int(sizeof(T))));
      });
}

const bench::Rows rows = [](bench::Add add) {
  addForward<int16_t>(add, "zvpiTransformQuantFwd4x4_H264_16s_C1", zvpiTransformQuantFwd4x4_H264_16s_C1);
  addForward<int32_t>(add, "zvpiTransformQuantFwd4x4_H264_16s32s_C1", zvpiTransformQuantFwd4x4_H264_16s32s_C1);
  addDc<int16_t>(add, "zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I", "zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I",
                 "zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I", zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I,
                 zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I, zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I);
  addDc<int32_t>(add, "zvpiTransformQuantFwdLumaDC4x4_H264_32s_C1I", "zvpiTransformQuantFwdChromaDC2x2_H264_32s_C1I",
                 "zvpiTransformQuantFwdChromaDC2x4_H264_32s_C1I", zvpiTransformQuantFwdLumaDC4x4_H264_32s_C1I,
                 zvpiTransformQuantFwdChromaDC2x2_H264_32s_C1I, zvpiTransformQuantFwdChromaDC2x4_H264_32s_C1I);
  addInverseDc<int16_t>(add, "zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I", 16,
                        zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I);
  addInverseDc<int32_t>(add, "zvpiTransformQuantInvLumaDC4x4_H264_32s_C1I", 16,
                        zvpiTransformQuantInvLumaDC4x4_H264_32s_C1I);
  addInverseDc<int16_t>(add, "zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I", 4,
                        zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I);
  addInverseDc<int32_t>(add, "zvpiTransformQuantInvChromaDC2x2_H264_32s_C1I", 4,
                        zvpiTransformQuantInvChromaDC2x2_H264_32s_C1I);
  addInverseDc<int16_t>(add, "zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I", 8,
                        zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I);
  addInverseDc<int32_t>(add, "zvpiTransformQuantInvChromaDC2x4_H264_32s_C1I", 8,
                        zvpiTransformQuantInvChromaDC2x4_H264_32s_C1I);

  auto* scene = bench::keep<bench::Scene>(5u);
  auto* narrow = bench::keep<Blocks<int16_t>>(40, true, 6u);
  auto* wide = bench::keep<Blocks<int32_t>>(160, true, 7u);
  auto* deep = bench::keep<Blocks<uint16_t>>(1000, false, 8u);
  auto* lists = bench::keep<Lists>();
  for (const bool own : {false, true}) {
    const int16_t* const list = own ? lists->inverse : nullptr;
    add("zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR", own ? "own list" : "flat", [=](int i) {
      zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR(scene->source(i), bench::Scene::step, narrow->at(i), nullptr,
                                                    scene->destination(i), bench::Scene::step, qp, 1, list);
    });
    add("zvpiTransformQuantInvAddPred4x4_H264_32s_C1IR", own ? "own list" : "flat", [=](int i) {
      zvpiTransformQuantInvAddPred4x4_H264_32s_C1IR(deep->at(i), 8, wide->at(i), nullptr, deep->out(i), 8, qp, 1, 10,
                                                    list);
    });
  }
  add("zvpiGenScaleLevel4x4_H264_8u16s_C1", "list",
      [=](int i) { zvpiGenScaleLevel4x4_H264_8u16s_C1(weights, narrow->out(i), narrow->out(i + 1), i % 6); });
};

}  // namespace
