// Each store over the macroblocks of one segment.
#include <vector>

#include "support/bench.h"
#include "support/dv_stores.h"

namespace {

struct Segment {
  std::int16_t blocks[5 * 512];
  std::uint8_t pixels[10 * 16 * 64];
  std::int16_t* src[5];
  std::uint8_t* dst[10];
  Segment() {
    zvptest::Rng rng(1);
    zvptest::fill(blocks, 5 * 512, rng, zvptest::Style::Smooth, -140, 140);
    for (int i = 0; i < 5; ++i) src[i] = blocks + 384 * i;
    for (int i = 0; i < 10; ++i) dst[i] = pixels + 16 * 64 * i;
  }
};

const bench::Rows rows = [](bench::Add add) {
  for (const auto& member : zvptest::dvStores()) {
    auto* s = bench::keep<Segment>();
    const int step = 2 * reference::dv::storedWidth(member.chroma, member.size);
    add(
        member.name, "", [=, call = member.call](int) { call(s->src, s->dst, step); },
        [=] {
          member.call(s->src, s->dst, step);
          const bool halves = member.count == 10;
          for (int i = 0; i < member.count; ++i) {
            const auto wanted = zvptest::dvStored(member, i, halves ? s->blocks + 512 * (i / 2) : s->src[i]);
            if (!std::equal(wanted.begin(), wanted.end(), s->dst[i])) return false;
          }
          return true;
        });
  }
};

}  // namespace
