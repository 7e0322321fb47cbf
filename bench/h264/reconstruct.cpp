// Macroblock reconstruction: every member with all blocks coded, and the plain inter member with few.
#include "reference/h264/reconstruct.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "support/bench.h"
#include "zvpvc.h"

using reference::h264::Scaling;

namespace {

constexpr int qp = 28, step = 64, macroblocks = 8;
constexpr std::uint32_t allLuma = 0x1fffe, someLuma = 0x1c0a << 1, allLuma8x8 = 0xf, allChroma = 0x7fe0000;

using Levels = std::array<std::int16_t, 16 * 17 + 8>;

// Eight macroblocks in a picture and their levels. A call works on levels that the one before has left, so that each
// begins with a fresh copy.
struct Scene {
  std::vector<std::uint8_t> luma = std::vector<std::uint8_t>(step * 80), u = luma, v = luma;
  std::array<Levels, macroblocks> levels;
  Levels work;
  std::int16_t* cursor = nullptr;
  std::int16_t table4x4[16], table8x8[64];
  std::int32_t modes[16];

  Scene() {
    zvptest::Rng rng(2);
    for (auto* plane : {&luma, &u, &v})
      zvptest::fill(plane->data(), plane->size(), rng, zvptest::Style::Smooth, 0, 255);
    for (Levels& block : levels) zvptest::fill(block.data(), block.size(), rng, zvptest::Style::Small, -3, 3);
    std::fill(std::begin(table4x4), std::end(table4x4), std::int16_t(256));
    std::fill(std::begin(table8x8), std::end(table8x8), std::int16_t(320));
    for (int i = 0; i < 16; ++i) modes[i] = i % 9 == 3 || i % 9 == 7 ? 2 : i % 9;
  }
  std::int16_t** begin(int i) {
    work = levels[std::size_t(i % macroblocks)];
    cursor = work.data();
    return &cursor;
  }
  static std::ptrdiff_t at(int i) { return 8 * step + 8 + i % 2 * 16 + i / 2 % 4 * 16 * step; }
};

using Call = zvpStatus (*)(Scene&, int);
using Model = void (*)(Scene&, int, const std::int16_t*);

void addMember(bench::Add add, const char* name, const char* what, Call call, Model model) {
  auto* scene = bench::keep<Scene>();
  add(
      name, what, [=](int i) { call(*scene, i); },
      [=] {
        Scene expected = *scene;
        for (int i = 0; i < macroblocks; ++i) {
          if (call(*scene, i) != zvpStatusOk) return false;
          model(expected, i, expected.levels[std::size_t(i)].data());
        }
        return scene->luma == expected.luma && scene->u == expected.u && scene->v == expected.v;
      });
}

const Scaling flat = {nullptr, qp, false};
Scaling byList(const std::int16_t* table) { return {table, qp, false}; }
void chroma(Scene& s, int i, const std::int16_t* c, const Scaling& scaling) {
  std::uint8_t* const planes[2] = {s.u.data() + Scene::at(i), s.v.data() + Scene::at(i)};
  const Scaling both[2] = {scaling, scaling};
  reference::h264::addChroma(c, planes, step, allChroma, both);
}
void intraChroma(Scene& s, int i, const std::int16_t* c, const Scaling& scaling, bool halves) {
  std::uint8_t* const planes[2] = {s.u.data() + Scene::at(i), s.v.data() + Scene::at(i)};
  const Scaling both[2] = {scaling, scaling};
  if (halves)
    reference::h264::intraChromaHalves(c, planes, step, 0, allChroma, both, 0, 1);
  else
    reference::h264::intraChroma(c, planes, step, 0, allChroma, both, 0);
}

const bench::Rows rows = [](bench::Add add) {
  using namespace reference::h264;
  addMember(
      add, "zvpiReconstructLumaInterMB_H264_16s8u_C1R", "all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaInterMB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, allLuma, qp);
      },
      [](Scene& s, int i, const std::int16_t* c) { addLuma4x4(c, s.luma.data() + s.at(i), step, allLuma, flat); });
  addMember(
      add, "zvpiReconstructLumaInterMB_H264_16s8u_C1R", "5 of 16 coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaInterMB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, someLuma, qp);
      },
      [](Scene& s, int i, const std::int16_t* c) { addLuma4x4(c, s.luma.data() + s.at(i), step, someLuma, flat); });
  addMember(
      add, "zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R", "all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, allLuma, qp,
                                                            s.table4x4, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        addLuma4x4(c, s.luma.data() + s.at(i), step, allLuma, byList(s.table4x4));
      });
  addMember(
      add, "zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R", "all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, allLuma8x8, qp,
                                                            s.table8x8, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        addLuma8x8(c, s.luma.data() + s.at(i), step, allLuma8x8, byList(s.table8x8));
      });

  addMember(
      add, "zvpiReconstructLumaIntraMB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntraMB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes, allLuma,
                                                         qp, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes, allLuma, flat, 0, false, 4);
      });
  addMember(
      add, "zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes,
                                                             allLuma, qp, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes, allLuma, flat, 0, true, 4);
      });
  addMember(
      add, "zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes, allLuma,
                                                            qp, 0, s.table4x4);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes, allLuma, byList(s.table4x4), 0, false, 4);
      });
  addMember(
      add, "zvpiReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes,
                                                                allLuma, qp, 0, s.table4x4);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes, allLuma, byList(s.table4x4), 0, true, 4);
      });
  addMember(
      add, "zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes + 4,
                                                            allLuma8x8, qp, 0, s.table8x8);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes + 4, allLuma8x8, byList(s.table8x8), 0, false, 8);
      });
  addMember(
      add, "zvpiReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R", "mixed modes, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, s.modes + 4,
                                                                allLuma8x8, qp, 0, s.table8x8);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma(c, s.luma.data() + s.at(i), step, s.modes + 4, allLuma8x8, byList(s.table8x8), 0, true, 8);
      });
  addMember(
      add, "zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R", "plane, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, 3, allLuma | 1,
                                                              qp, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma16x16(c, s.luma.data() + s.at(i), step, 3, allLuma | 1, flat, 0);
      });
  addMember(
      add, "zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R", "plane, DC alone",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, 3, 1, qp, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) { intraLuma16x16(c, s.luma.data() + s.at(i), step, 3, 1, flat, 0); });
  addMember(
      add, "zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R", "plane, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(s.begin(i), s.luma.data() + s.at(i), step, 3,
                                                               allLuma | 1, qp, 0, s.table4x4, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) {
        intraLuma16x16(c, s.luma.data() + s.at(i), step, 3, allLuma | 1, byList(s.table4x4), 0);
      });

  addMember(
      add, "zvpiReconstructChromaInterMB_H264_16s8u_P2R", "all coded",
      [](Scene& s, int i) {
        return zvpiReconstructChromaInterMB_H264_16s8u_P2R(s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i), step,
                                                           allChroma, qp);
      },
      [](Scene& s, int i, const std::int16_t* c) { chroma(s, i, c, flat); });
  addMember(
      add, "zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R", "all coded",
      [](Scene& s, int i) {
        return zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i),
                                                              step, allChroma, qp, s.table4x4, s.table4x4, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) { chroma(s, i, c, byList(s.table4x4)); });
  addMember(
      add, "zvpiReconstructChromaIntraMB_H264_16s8u_P2R", "DC, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructChromaIntraMB_H264_16s8u_P2R(s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i), step,
                                                           0, allChroma, qp, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) { intraChroma(s, i, c, flat, false); });
  addMember(
      add, "zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R", "DC, all coded",
      [](Scene& s, int i) {
        return zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i),
                                                              step, 0, allChroma, qp, 0, s.table4x4, s.table4x4, 0);
      },
      [](Scene& s, int i, const std::int16_t* c) { intraChroma(s, i, c, byList(s.table4x4), false); });
  for (const bool other : {false, true}) {
    addMember(add,
              other ? "zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R"
                    : "zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R",
              "DC, all coded",
              other ? Call([](Scene& s, int i) {
                return zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(
                    s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i), step, 0, allChroma, qp, 0, 1);
              })
                    : Call([](Scene& s, int i) {
                        return zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(
                            s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i), step, 0, allChroma, qp, 0, 1);
                      }),
              [](Scene& s, int i, const std::int16_t* c) { intraChroma(s, i, c, flat, true); });
    addMember(add,
              other ? "zvpiReconstructChromaIntraHalves4x4MB_H264_16s8u_P2R"
                    : "zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R",
              "DC, all coded",
              other ? Call([](Scene& s, int i) {
                return zvpiReconstructChromaIntraHalves4x4MB_H264_16s8u_P2R(s.begin(i), s.u.data() + s.at(i),
                                                                            s.v.data() + s.at(i), step, 0, allChroma,
                                                                            qp, 0, 1, s.table4x4, s.table4x4, 0);
              })
                    : Call([](Scene& s, int i) {
                        return zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(
                            s.begin(i), s.u.data() + s.at(i), s.v.data() + s.at(i), step, 0, allChroma, qp, 0, 1,
                            s.table4x4, s.table4x4, 0);
                      }),
              [](Scene& s, int i, const std::int16_t* c) { intraChroma(s, i, c, byList(s.table4x4), true); });
  }
};

}  // namespace
