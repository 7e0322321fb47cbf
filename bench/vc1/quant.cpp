#include "reference/vc1/quant.h"

#include <algorithm>
#include <string>

#include "support/fresh_blocks.h"
#include "zvpvc.h"

namespace {

using Value = std::int16_t;
namespace model = reference::vc1;

// Few or many coefficients, by their limit.
struct Blocks : bench::FreshBlocks {
  explicit Blocks(int limit) { fillCorner(8, 8, 8, limit); }
};

constexpr zvpSize whole = {8, 8};
int qpOf(int i) { return 2 + i % 61; }

// call(block, QP, corner) for a member in place; model(block, QP) leaves what it ought to.
template <class Call, class Model>
void addInPlace(bench::Add add, const std::string& name, Blocks* blocks, Call call, Model wanted) {
  add(
      name.c_str(), "8x8",
      [=](int i) {
        zvpSize corner;
        call(blocks->fresh(i), qpOf(i), &corner);
      },
      [=] {
        Value values[64];
        std::copy(blocks->source[5], blocks->source[5] + 64, values);
        wanted(values, 7);
        zvpSize corner;
        auto* actual = blocks->fresh(5);
        call(actual, 7, &corner);
        return std::equal(values, values + 64, actual);
      });
}

template <class Member>
void addTwoBuffers(bench::Add add, const std::string& name, Blocks* blocks, Member member) {
  add(name.c_str(), "8x8", [=](int i) {
    zvpSize corner;
    member(blocks->source[i & 31], blocks->work[i & 31], qpOf(i), &corner);
  });
}

const bench::Rows rows = [](bench::Add add) {
  auto* coefficients = bench::keep<Blocks>(2000);
  auto* levels = bench::keep<Blocks>(30);
  const auto forward = [&](const char* kind, model::Quantizer quantizer, auto call) {
    addInPlace(
        add, std::string("zvpiQuant") + kind + "_VC1_16s_C1IR", coefficients,
        [=](Value* p, int qp, zvpSize*) { call(p, qp); },
        [=](Value* p, int qp) { model::quantize(quantizer, p, qp, 8, 8); });
  };
  const auto inverse = [&](const char* kind, model::Quantizer quantizer, auto inPlace, auto twoBuffers) {
    const std::string name = std::string("zvpiQuantInv") + kind + "_VC1_16s_C1";
    addInPlace(add, name + "IR", levels, inPlace,
               [=](Value* p, int qp) { model::dequantize(quantizer, p, p, qp, 8, 8, false); });
    addTwoBuffers(add, name + "R", levels, twoBuffers);
  };
  forward("IntraUniform", {true, true}, [](Value* p, int qp) { zvpiQuantIntraUniform_VC1_16s_C1IR(p, 16, qp); });
  forward("IntraNonuniform", {true, false},
          [](Value* p, int qp) { zvpiQuantIntraNonuniform_VC1_16s_C1IR(p, 16, qp); });
  forward("InterUniform", {false, true},
          [](Value* p, int qp) { zvpiQuantInterUniform_VC1_16s_C1IR(p, 16, qp, whole); });
  forward("InterNonuniform", {false, false},
          [](Value* p, int qp) { zvpiQuantInterNonuniform_VC1_16s_C1IR(p, 16, qp, whole); });
  inverse(
      "IntraUniform", {true, true},
      [](Value* p, int qp, zvpSize* nz) { zvpiQuantInvIntraUniform_VC1_16s_C1IR(p, 16, qp, nz); },
      [](const Value* p, Value* q, int qp, zvpSize* nz) {
        zvpiQuantInvIntraUniform_VC1_16s_C1R(p, 16, q, 16, qp, nz);
      });
  inverse(
      "IntraNonuniform", {true, false},
      [](Value* p, int qp, zvpSize* nz) { zvpiQuantInvIntraNonuniform_VC1_16s_C1IR(p, 16, qp, nz); },
      [](const Value* p, Value* q, int qp, zvpSize* nz) {
        zvpiQuantInvIntraNonuniform_VC1_16s_C1R(p, 16, q, 16, qp, nz);
      });
  inverse(
      "InterUniform", {false, true},
      [](Value* p, int qp, zvpSize* nz) { zvpiQuantInvInterUniform_VC1_16s_C1IR(p, 16, qp, whole, nz); },
      [](const Value* p, Value* q, int qp, zvpSize* nz) {
        zvpiQuantInvInterUniform_VC1_16s_C1R(p, 16, q, 16, qp, whole, nz);
      });
  inverse(
      "InterNonuniform", {false, false},
      [](Value* p, int qp, zvpSize* nz) { zvpiQuantInvInterNonuniform_VC1_16s_C1IR(p, 16, qp, whole, nz); },
      [](const Value* p, Value* q, int qp, zvpSize* nz) {
        zvpiQuantInvInterNonuniform_VC1_16s_C1R(p, 16, q, 16, qp, whole, nz);
      });
};

}  // namespace
