// CAST denoising of 352x288, a part of the picture moving.
#include "reference/filters/cast.h"

#include <algorithm>
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

namespace {

struct Clip {
  static constexpr int rowBytes = 352, height = 288;
  std::vector<std::uint8_t> current, previous, edges, dst, history;
  Clip() : current(rowBytes * height), previous(current), edges(current), dst(current), history(6400, 192) {
    zvptest::Rng rng(3);
    for (std::size_t i = 0; i < current.size(); ++i) {
      const int x = int(i) % rowBytes, y = int(i) / rowBytes, v = 80 + x / 4 + y / 5 + ((x / 40 + y / 40) % 2) * 50;
      previous[i] = std::uint8_t(v + rng.range(-4, 4));
      current[i] = std::uint8_t(std::clamp(v + rng.range(-4, 4) + (x > 200 ? rng.range(-20, 20) : 0), 0, 255));
      edges[i] = std::uint8_t(rng.range(0, 15));
    }
  }
  void run(bool packed, std::uint8_t* to, std::uint8_t* h) const {
    const auto call = packed ? zvpiFilterDenoiseCASTYUV422_8u_C2R : zvpiFilterDenoiseCAST_8u_C1R;
    call(current.data(), previous.data(), rowBytes, edges.data(), rowBytes, {packed ? rowBytes / 2 : rowBytes, height},
         to, rowBytes, h, nullptr);
  }
  bool sameAsModel(bool packed) const {
    std::vector<std::uint8_t> a(dst.size()), b(dst.size()), ha(history), hb(history);
    zvpDenoiseCASTParams params;
    zvpiFilterDenoiseCASTInit(&params);
    run(packed, a.data(), ha.data());
    reference::denoiseCast({current.data(), rowBytes}, {previous.data(), rowBytes}, {edges.data(), rowBytes},
                           {b.data(), rowBytes}, {packed ? rowBytes / 2 : rowBytes, height}, hb.data(), params, packed);
    return a == b && ha == hb;
  }
};

const bench::Rows rowsOfCast = [](bench::Add add) {
  auto* clip = bench::keep<Clip>();
  add(
      "zvpiFilterDenoiseCAST_8u_C1R", "352x288", [=](int) { clip->run(false, clip->dst.data(), clip->history.data()); },
      [=] { return clip->sameAsModel(false); });
  add(
      "zvpiFilterDenoiseCASTYUV422_8u_C2R", "176x288",
      [=](int) { clip->run(true, clip->dst.data(), clip->history.data()); }, [=] { return clip->sameAsModel(true); });
  add("zvpiFilterDenoiseCASTInit", "", [=](int) {
    zvpDenoiseCASTParams params;
    zvpiFilterDenoiseCASTInit(&params);
  });
};

}  // namespace
