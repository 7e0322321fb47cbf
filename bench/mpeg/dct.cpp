#include "reference/mpeg/dct.h"

#include <algorithm>

#include "support/fresh_blocks.h"
#include "zvpvc.h"

namespace {

using reference::mpeg::Dct;

// Non-zero elements lie in the first columns and rows, or everywhere.
struct Blocks : bench::FreshBlocks {
  Blocks(int size, int limit) { fillCorner(8, size, size, limit); }
};

template <class Member, class Model>
void addInPlace(bench::Add add, const char* name, const char* caseName, Blocks* blocks, Dct kind, Member member,
                Model model) {
  add(
      name, caseName, [=](int i) { member(blocks->fresh(i)); },
      [=] {
        std::int16_t wanted[64];
        model(kind, blocks->source[5], wanted);
        auto* actual = blocks->fresh(5);
        member(actual);
        return std::equal(wanted, wanted + 64, actual);
      });
}

const bench::Rows rows = [](bench::Add add) {
  namespace model = reference::mpeg;
  const std::pair<const char*, int> sizes[] = {{"DC alone", 1}, {"4x4 non-zero", 4}, {"8x8 non-zero", 8}};
  for (const auto& [name, size] : sizes) {
    auto* blocks = bench::keep<Blocks>(size, 1000);
    addInPlace(add, "zvpiDCT8x8Inv_16s_C1I", name, blocks, Dct::EightEight, zvpiDCT8x8Inv_16s_C1I,
               model::integerInverse);
    add("zvpiDCT8x8Inv_16s_C1", name,
        [=](int i) { zvpiDCT8x8Inv_16s_C1(blocks->source[i & 31], blocks->work[i & 31]); });
    addInPlace(add, "zvpiDCT2x4x8Inv_16s_C1I", name, blocks, Dct::TwoFourEight, zvpiDCT2x4x8Inv_16s_C1I,
               model::integerInverse);
  }
  auto* samples = bench::keep<Blocks>(8, 255);
  addInPlace(add, "zvpiDCT8x8Fwd_16s_C1I", "samples", samples, Dct::EightEight, zvpiDCT8x8Fwd_16s_C1I,
             model::integerForward);
  add("zvpiDCT8x8Fwd_16s_C1", "samples",
      [=](int i) { zvpiDCT8x8Fwd_16s_C1(samples->source[i & 31], samples->work[i & 31]); });
  addInPlace(add, "zvpiDCT2x4x8Fwd_16s_C1I", "samples", samples, Dct::TwoFourEight, zvpiDCT2x4x8Fwd_16s_C1I,
             model::integerForward);
};

}  // namespace
