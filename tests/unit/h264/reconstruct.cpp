// Macroblock reconstruction: all nineteen members beside the model, with any coefficients, scales, modes and flags.
#include "reference/h264/reconstruct.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/compare.h"
#include "support/random.h"
#include "zvpvc.h"

using namespace zvptest;
using reference::h264::Scaling;

namespace {

// One call of any member.
struct Args {
  std::int16_t** ppSrcCoeff = nullptr;
  std::uint8_t *luma = nullptr, *u = nullptr, *v = nullptr;
  std::int32_t step = 0;
  const std::int32_t* modes = nullptr;
  std::uint32_t mode = 0, cbp = 0, qp = 0;
  std::uint8_t edgeFlags = 0, edgeFlagsBottom = 0;
  const std::int16_t *table = nullptr, *tableV = nullptr;
  std::uint8_t bypass = 0;
};

enum Kind { Inter, Intra4x4, Intra8x8, Intra16x16, ChromaInter, ChromaIntra, ChromaHalves };

struct Member {
  const char* name;
  Kind kind;
  bool lists, bypass, half;  // scales of the caller's, the bypass argument, halves of the left column
  int size;                  // of the blocks
  zvpStatus (*call)(const Args&);

  bool chroma() const { return kind >= ChromaInter; }
  bool intra() const { return kind != Inter && kind != ChromaInter; }
  bool asksForTable() const { return lists && (kind == Inter || kind == Intra16x16); }  // whatever is coded
  std::uint32_t mostQp() const { return kind == ChromaInter || kind == ChromaIntra ? 39 : 51; }
  std::uint32_t cbpBits() const {
    return chroma() ? 0x7fe0000 : size == 8 ? 0xf : kind == Intra16x16 ? 0x1ffff : 0x1fffe;
  }
  int coefficients(std::uint32_t cbp) const {
    int count = 0;
    for (int bit = 0; bit < 32; ++bit)
      if ((cbp & cbpBits()) >> bit & 1) count += size == 8 ? 64 : bit == 17 || bit == 18 ? 4 : 16;
    return count;
  }
};

const Member members[] = {
    {"LumaInterMB", Inter, false, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaInterMB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.cbp, a.qp);
     }},
    {"LumaInter4x4MB", Inter, true, true, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.cbp, a.qp, a.table,
                                                           a.bypass);
     }},
    {"LumaInter8x8MB", Inter, true, true, false, 8,
     [](const Args& a) {
       return zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.cbp, a.qp, a.table,
                                                           a.bypass);
     }},
    {"LumaIntraMB", Intra4x4, false, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntraMB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                        a.edgeFlags);
     }},
    {"LumaIntraHalfMB", Intra4x4, false, false, true, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                            a.edgeFlags);
     }},
    {"LumaIntra4x4MB", Intra4x4, true, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                           a.edgeFlags, a.table);
     }},
    {"LumaIntraHalf4x4MB", Intra4x4, true, false, true, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                               a.edgeFlags, a.table);
     }},
    {"LumaIntra8x8MB", Intra8x8, true, false, false, 8,
     [](const Args& a) {
       return zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                           a.edgeFlags, a.table);
     }},
    {"LumaIntraHalf8x8MB", Intra8x8, true, false, true, 8,
     [](const Args& a) {
       return zvpiReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.modes, a.cbp, a.qp,
                                                               a.edgeFlags, a.table);
     }},
    {"LumaIntra16x16MB", Intra16x16, false, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.mode, a.cbp, a.qp,
                                                             a.edgeFlags);
     }},
    {"LumaIntra_16x16MB", Intra16x16, true, true, false, 4,
     [](const Args& a) {
       return zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(a.ppSrcCoeff, a.luma, a.step, a.mode, a.cbp, a.qp,
                                                              a.edgeFlags, a.table, a.bypass);
     }},
    {"ChromaInterMB", ChromaInter, false, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructChromaInterMB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.cbp, a.qp);
     }},
    {"ChromaInter4x4MB", ChromaInter, true, true, false, 4,
     [](const Args& a) {
       return zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.cbp, a.qp, a.table,
                                                             a.tableV, a.bypass);
     }},
    {"ChromaIntraMB", ChromaIntra, false, false, false, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntraMB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp, a.qp,
                                                          a.edgeFlags);
     }},
    {"ChromaIntra4x4MB", ChromaIntra, true, true, false, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp, a.qp,
                                                             a.edgeFlags, a.table, a.tableV, a.bypass);
     }},
    {"ChromaIntraHalfsMB", ChromaHalves, false, false, true, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp,
                                                               std::int32_t(a.qp), a.edgeFlags, a.edgeFlagsBottom);
     }},
    {"ChromaIntraHalvesMB", ChromaHalves, false, false, true, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp,
                                                                std::int32_t(a.qp), a.edgeFlags, a.edgeFlagsBottom);
     }},
    {"ChromaIntraHalfs4x4MB", ChromaHalves, true, true, true, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp,
                                                                  std::int32_t(a.qp), a.edgeFlags, a.edgeFlagsBottom,
                                                                  a.table, a.tableV, a.bypass);
     }},
    {"ChromaIntraHalves4x4MB", ChromaHalves, true, true, true, 4,
     [](const Args& a) {
       return zvpiReconstructChromaIntraHalves4x4MB_H264_16s8u_P2R(a.ppSrcCoeff, a.u, a.v, a.step, a.mode, a.cbp,
                                                                   std::int32_t(a.qp), a.edgeFlags, a.edgeFlagsBottom,
                                                                   a.table, a.tableV, a.bypass);
     }},
};

// The model of the member, on copies.
std::int32_t model(const Member& m, const Args& a, const std::int16_t*& cursor, std::uint8_t* plane0,
                   std::uint8_t* plane1) {
  const Scaling s = {m.lists ? a.table : nullptr, int(a.qp), m.bypass && a.bypass != 0};
  const Scaling both[2] = {s, {m.lists ? a.tableV : nullptr, s.qp, s.bypass}};
  std::uint8_t* const planes[2] = {plane0, plane1};
  using namespace reference::h264;
  switch (m.kind) {
    case Inter:
      if (m.size == 4)
        addLuma4x4(cursor, plane0, a.step, a.cbp, s);
      else
        addLuma8x8(cursor, plane0, a.step, a.cbp, s);
      return zvpStatusOk;
    case Intra4x4:
    case Intra8x8:
      return intraLuma(cursor, plane0, a.step, a.modes, a.cbp, s, a.edgeFlags, m.half, m.size);
    case Intra16x16:
      return intraLuma16x16(cursor, plane0, a.step, a.mode, a.cbp, s, a.edgeFlags);
    case ChromaInter:
      addChroma(cursor, planes, a.step, a.cbp, both);
      return zvpStatusOk;
    case ChromaIntra:
      return intraChroma(cursor, planes, a.step, a.mode, a.cbp, both, a.edgeFlags);
    default:
      return intraChromaHalves(cursor, planes, a.step, a.mode, a.cbp, both, a.edgeFlags, a.edgeFlagsBottom);
  }
}

// What a call may touch around the macroblock.
GuardedPlane<std::uint8_t>::Margin marginOf(const Member& m, const Args& a) {
  if (!m.intra()) return {};
  const int flags = a.edgeFlags, below = m.kind == ChromaHalves ? a.edgeFlagsBottom : flags;
  const bool top = !(flags & 4) || !(below & 4);
  const bool upper = !(flags & 1);
  const bool lower = m.kind == ChromaHalves ? !(below & 1) : m.half ? !(flags & 2) : upper;
  const bool right = !(flags & 16);
  bool corner = false;
  if (m.kind == Intra8x8) corner = (top && upper) != ((flags & 8) != 0);
  GuardedPlane<std::uint8_t>::Margin margin;
  margin.left = upper || lower || corner;
  margin.above = top || corner || (right && m.size == 8 && m.kind == Intra8x8);
  margin.right = top && right && m.kind == Intra4x4 ? 4 : top && right && m.kind == Intra8x8 ? 8 : 0;
  return margin;
}

class Reconstruct : public ::testing::TestWithParam<Member> {};

// A macroblock with everything that belongs to a call, random.
struct Macroblock {
  Macroblock(const Member& m, Rng& rng) {
    args.cbp = rng.chance(8) ? 0 : rng.chance(4) ? ~0u : rng.chance(2) ? rng.next() & rng.next() : rng.next();
    args.qp = std::uint32_t(rng.chance(5) ? 0 : rng.range(0, int(m.mostQp())));
    args.bypass = std::uint8_t(rng.chance(2) ? 0 : rng.range(1, 255));
    args.edgeFlags = std::uint8_t(rng.chance(3) ? 0 : rng.next());
    if (rng.chance(2)) args.edgeFlags &= 0xea;  // both sides: more modes are possible
    args.edgeFlagsBottom = std::uint8_t(rng.next());
    args.mode =
        rng.chance(20) ? rng.next() : std::uint32_t(m.kind == ChromaHalves ? 2 * rng.range(0, 1) : rng.range(0, 3));
    for (int& mode : modes) mode = rng.chance(2) && (args.edgeFlags & 5) ? 2 : rng.range(0, 8);
    if (rng.chance(30)) modes[rng.range(0, 15)] = rng.chance(2) ? -1 : 9;
    args.modes = modes;
    const int table = rng.range(0, 2);
    for (auto* t : {tables[0], tables[1]})
      fill(t, 64, rng, table == 0 ? anyStyle(rng) : Style::Uniform, table == 2 ? -32768 : 16, table == 2 ? 32767 : 600);
    args.table = tables[0];
    args.tableV = tables[1];

    const int size = rng.range(0, 15);
    coefficients = GuardedArray<std::int16_t>(std::size_t(std::max(1, m.coefficients(args.cbp))), rng.guard());
    fill(coefficients, rng, anyStyle(rng), -(1 << size), (1 << size) - 1);
    cursor = coefficients.data();
    args.ppSrcCoeff = &cursor;

    const int n = m.chroma() ? 8 : 16;
    const auto margin = marginOf(m, args);
    const std::ptrdiff_t step = rng.step(n + margin.left + margin.right, true);
    args.step = std::int32_t(step);
    for (auto& plane : planes) {
      plane = GuardedPlane<std::uint8_t>(n, n, step, rng.guard(), margin);
      fill(plane, rng, anyStyle(rng), 0, 255);
    }
    args.luma = args.u = planes[0].data();
    args.v = planes[1].data();
  }
  Args args;
  std::int32_t modes[16];
  std::int16_t tables[2][64];
  GuardedArray<std::int16_t> coefficients;
  std::int16_t* cursor;
  GuardedPlane<std::uint8_t> planes[2];
};

}  // namespace

TEST_P(Reconstruct, AgreesWithTheModel) {
  const Member& m = GetParam();
  std::uint64_t seed = 7;  // the same in every build
  for (const char* c = m.name; *c != 0; ++c) seed = seed * 31 + std::uint64_t(*c);
  Rng rng(seed);
  int done = 0;
  for (int round = 0; round < rounds(1200); ++round) {
    Macroblock mb(m, rng);
    std::vector<std::uint8_t> expected[2];
    std::uint8_t* origins[2];
    for (int i = 0; i < 2; ++i) {
      expected[i] = mb.planes[i].snapshot();
      origins[i] = expected[i].data() + (mb.planes[i].data() - mb.planes[i].bytes().data());
    }
    const std::vector<std::int16_t> levels(mb.coefficients.data(), mb.coefficients.data() + mb.coefficients.size());
    const std::int16_t* modelCursor = levels.data();
    const auto status = model(m, mb.args, modelCursor, origins[0], origins[1]);
    ASSERT_EQ(m.call(mb.args), status) << "round " << round;
    EXPECT_EQ(mb.cursor - mb.coefficients.data(), modelCursor - levels.data()) << "round " << round;
    done += status == zvpStatusOk;
    for (int i = 0; i < 2; ++i)
      ASSERT_TRUE(sameBytes(mb.planes[i].snapshot(), expected[i])) << "round " << round << " plane " << i;
  }
  EXPECT_GT(done, rounds(1200) / 10);
}

TEST_P(Reconstruct, TakesUnalignedCoefficientsAndTables) {
  const Member& m = GetParam();
  Rng rng(99);
  for (int round = 0; round < rounds(40); ++round) {
    Macroblock mb(m, rng);
    std::vector<std::uint8_t> expected[2];
    std::uint8_t* origins[2];
    for (int i = 0; i < 2; ++i) {
      expected[i] = mb.planes[i].snapshot();
      origins[i] = expected[i].data() + (mb.planes[i].data() - mb.planes[i].bytes().data());
    }
    const std::int16_t* modelCursor = mb.coefficients.data();
    const auto status = model(m, mb.args, modelCursor, origins[0], origins[1]);
    std::vector<std::uint8_t> levels(mb.coefficients.size() * 2 + 1), tables(2 * 128 + 1), modes(64 + 1);
    std::memcpy(levels.data() + 1, mb.coefficients.data(), levels.size() - 1);
    std::memcpy(tables.data() + 1, mb.tables, tables.size() - 1);
    std::memcpy(modes.data() + 1, mb.modes, modes.size() - 1);
    auto* cursor = reinterpret_cast<std::int16_t*>(levels.data() + 1);
    mb.args.ppSrcCoeff = &cursor;
    mb.args.table = reinterpret_cast<const std::int16_t*>(tables.data() + 1);
    mb.args.tableV = reinterpret_cast<const std::int16_t*>(tables.data() + 129);
    mb.args.modes = reinterpret_cast<const std::int32_t*>(modes.data() + 1);
    ASSERT_EQ(m.call(mb.args), status);
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(sameBytes(mb.planes[i].snapshot(), expected[i]));
  }
}

TEST_P(Reconstruct, RefusesInOrder) {
  const Member& m = GetParam();
  Rng rng(5);
  Macroblock mb(m, rng);
  mb.args.edgeFlags = mb.args.edgeFlagsBottom = 0xff;
  mb.args.bypass = 0;
  const Args good = mb.args;
  const std::uint32_t badQp = m.mostQp() + 1;
  const std::vector<std::uint8_t> before[2] = {mb.planes[0].snapshot(), mb.planes[1].snapshot()};
  const auto refused = [&](const Args& a, zvpStatus status) { EXPECT_EQ(m.call(a), status); };

  // Pointers before QP, QP before modes and their neighbours.
  for (const std::uint32_t qp : {0u, badQp}) {
    Args a = good;
    a.qp = qp;
    a.mode = 77;
    a.ppSrcCoeff = nullptr;
    refused(a, zvpStatusNullPointer);
    std::int16_t* none = nullptr;
    a.ppSrcCoeff = &none;
    refused(a, zvpStatusNullPointer);
    a = good;
    a.qp = qp;
    a.luma = nullptr;
    a.u = nullptr;
    refused(a, zvpStatusNullPointer);
    a = good;
    a.qp = qp;
    a.v = nullptr;
    if (m.chroma()) refused(a, zvpStatusNullPointer);
    a = good;
    a.qp = qp;
    a.modes = nullptr;
    if (m.kind == Intra4x4 || m.kind == Intra8x8) refused(a, zvpStatusNullPointer);
    a = good;
    a.qp = qp;
    a.table = nullptr;
    if (m.asksForTable()) refused(a, zvpStatusNullPointer);
  }
  for (const std::uint32_t qp : {badQp, 52u, 255u, 0x80000000u, ~0u}) {
    Args a = good;
    a.qp = qp;
    a.mode = 1;
    refused(a, zvpStatusOutOfRange);
    a.cbp = 0;
    refused(a, zvpStatusOutOfRange);
  }
  // A table that a coded block asks for and that the entry does not test with the other pointers comes last.
  if (m.lists && !m.asksForTable()) {
    Args a = good;
    a.mode = 0;
    if (m.kind == ChromaHalves) a.edgeFlagsBottom = 0xff;
    for (int plane = 0; plane < (m.chroma() ? 2 : 1); ++plane) {
      (plane == 0 ? a.table : a.tableV) = nullptr;
      for (int bit = 0; bit < 32; ++bit) {
        a.cbp = 1u << bit;
        if ((m.cbpBits() >> bit & 1) == 0 || (m.chroma() && (plane == 1) != (bit == 18 || bit >= 23))) continue;
        a.qp = badQp;
        refused(a, zvpStatusOutOfRange);
        a.qp = m.mostQp();
        refused(a, zvpStatusNullPointer);
        if (m.kind == ChromaIntra || m.kind == ChromaHalves) {
          a.mode = 2;
          refused(a, zvpStatusPredictionUnavailable);
          a.mode = 4;
          refused(a, m.kind == ChromaIntra ? zvpStatusOutOfRange : zvpStatusPredictionUnavailable);
          a.mode = 0;
        }
      }
      a.table = good.table;
    }
  }
  if (m.kind == Intra16x16 || m.kind == ChromaIntra) {
    Args a = good;
    for (const std::uint32_t mode : {4u, 5u, ~0u}) {
      a.mode = mode;
      refused(a, zvpStatusOutOfRange);
    }
    const int vertical = m.chroma() ? 2 : 0;
    const int pairs[][2] = {{1, 1}, {1, 3}, {4, vertical}, {4, 3}, {16, 3}};  // a missing neighbour, a mode
    for (const auto& [flag, mode] : pairs) {
      a.mode = std::uint32_t(mode);
      a.edgeFlags = std::uint8_t(flag);
      refused(a, zvpStatusPredictionUnavailable);
    }
  }
  if (m.kind == ChromaHalves) {
    Args a = good;
    for (const std::uint32_t mode : {1u, 3u, 4u, ~0u}) {
      a.mode = mode;
      a.edgeFlags = a.edgeFlagsBottom = 0;
      refused(a, zvpStatusPredictionUnavailable);
    }
    a.mode = 2;
    a.edgeFlags = 4;
    refused(a, zvpStatusPredictionUnavailable);
  }
  EXPECT_EQ(mb.cursor, mb.coefficients.data());
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(sameBytes(mb.planes[i].snapshot(), before[i]));
}

INSTANTIATE_TEST_SUITE_P(Members, Reconstruct, ::testing::ValuesIn(members),
                         [](const auto& test) { return std::string(test.param.name); });

// ---- edge cases by name -----------------------------------------------------------------------------------------

namespace {

// A grey picture and a buffer of levels.
struct Plain {
  std::uint8_t samples[40 * 40];
  std::int16_t levels[16 * 17 + 8] = {};
  std::int16_t* cursor = levels;
  std::uint8_t* const block = samples + 8 * 40 + 8;
  Plain() { std::fill(std::begin(samples), std::end(samples), std::uint8_t(100)); }
  int at(int x, int y) const { return block[40 * y + x]; }
};

}  // namespace

TEST(ReconstructEdgeCases, WithoutCodedBlocksNothingIsDone) {
  Plain p;
  EXPECT_EQ(zvpiReconstructLumaInterMB_H264_16s8u_C1R(&p.cursor, p.block, 40, 0, 30), zvpStatusOk);
  EXPECT_EQ(zvpiReconstructLumaInterMB_H264_16s8u_C1R(&p.cursor, p.block, 40, 0xfffe0001, 30), zvpStatusOk);
  EXPECT_EQ(zvpiReconstructChromaInterMB_H264_16s8u_P2R(&p.cursor, p.block, p.block + 8, 40, 0xf801ffff, 30),
            zvpStatusOk);
  EXPECT_EQ(p.cursor, p.levels);
  EXPECT_EQ(zvpiReconstructLumaInterMB_H264_16s8u_C1R(&p.cursor, p.block, 40, 0, 52), zvpStatusOutOfRange);
}

TEST(ReconstructEdgeCases, ALevelOfOneAtQp28) {
  // normAdjust 16 at QP 28, shifted by 4: 256, and (256 + 32) >> 6 is 4 in all samples of the block.
  Plain p;
  p.levels[0] = 1;
  ASSERT_EQ(zvpiReconstructLumaInterMB_H264_16s8u_C1R(&p.cursor, p.block, 40, 2 << 3, 28), zvpStatusOk);
  EXPECT_EQ(p.cursor, p.levels + 16);
  for (int y = -1; y < 17; ++y)
    for (int x = -1; x < 17; ++x) EXPECT_EQ(p.at(x, y), x >= 4 && x < 8 && y >= 4 && y < 8 ? 104 : 100);
}

TEST(ReconstructEdgeCases, TheBufferIsNotZeroed) {
  Plain p;
  std::fill(std::begin(p.levels), std::end(p.levels), std::int16_t(3));
  ASSERT_EQ(zvpiReconstructLumaInterMB_H264_16s8u_C1R(&p.cursor, p.block, 40, 0x1fffe, 28), zvpStatusOk);
  for (int b = 0; b < 16; ++b)
    EXPECT_TRUE(std::any_of(p.levels + 16 * b, p.levels + 16 * b + 16, [](int v) { return v != 0; })) << b;
}

TEST(ReconstructEdgeCases, ChromaHalvesTakeLumasQps) {
  Plain p;
  EXPECT_EQ(zvpiReconstructChromaIntraMB_H264_16s8u_P2R(&p.cursor, p.block, p.block + 8, 40, 0, 0, 45, 0),
            zvpStatusOutOfRange);
  EXPECT_EQ(zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(&p.cursor, p.block, p.block + 8, 40, 0, 0, 45, 0, 0),
            zvpStatusOk);
  EXPECT_EQ(zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(&p.cursor, p.block, p.block + 8, 40, 0, 0, -1, 0, 0),
            zvpStatusOutOfRange);
}

TEST(ReconstructEdgeCases, BypassCountsAtQpZeroAlone) {
  std::int16_t table[64];
  std::fill(std::begin(table), std::end(table), std::int16_t(160));
  for (const int size : {4, 8}) {
    Plain p;
    for (int i = 0; i < size * size; ++i) p.levels[i] = std::int16_t(i - 8);
    const auto call =
        size == 4 ? zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R : zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R;
    const std::uint32_t first = size == 4 ? 2 : 1;
    ASSERT_EQ(call(&p.cursor, p.block, 40, first, 0, table, 1), zvpStatusOk);
    for (int i = 0; i < size * size; ++i) EXPECT_EQ(p.at(i % size, i / size), 100 + i - 8);

    Plain with, without;
    for (auto* q : {&with, &without}) q->levels[0] = 64;
    ASSERT_EQ(call(&with.cursor, with.block, 40, first, 1, table, 1), zvpStatusOk);
    ASSERT_EQ(call(&without.cursor, without.block, 40, first, 1, table, 0), zvpStatusOk);
    EXPECT_TRUE(sameBytes(with.samples, without.samples, sizeof with.samples));
    EXPECT_EQ(with.at(0, 0), with.at(size - 1, size - 1));
  }
}

TEST(ReconstructEdgeCases, TablesThatNoBlockAsksForMayBeMissing) {
  std::int16_t table[64] = {};
  const std::int32_t modes[16] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2};
  Plain p;
  std::uint8_t* const v = p.block + 8;
  EXPECT_EQ(zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(&p.cursor, p.block, 40, modes, 0xfffe0001, 51, 0, nullptr),
            zvpStatusOk);
  EXPECT_EQ(zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(&p.cursor, p.block, 40, modes, 0xfffffff0, 51, 0, nullptr),
            zvpStatusOk);
  // Of each plane, none without coded blocks; none at all where nothing is scaled.
  struct {
    std::uint32_t cbp, qp;
    const std::int16_t *tableU, *tableV;
  } const cases[] = {{0xf801ffff, 39, nullptr, nullptr},
                     {0x7a0000, 39, table, nullptr},
                     {0x7840000, 39, nullptr, table},
                     {0x7fe0000, 0, nullptr, nullptr}};
  for (const auto& c : cases) {
    Plain q;
    EXPECT_EQ(
        zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(&q.cursor, p.block, v, 40, c.cbp, c.qp, c.tableU, c.tableV, 1),
        zvpStatusOk);
    q.cursor = q.levels;
    EXPECT_EQ(zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(&q.cursor, p.block, v, 40, 0, c.cbp, c.qp, 0, c.tableU,
                                                             c.tableV, 1),
              zvpStatusOk);
    q.cursor = q.levels;
    EXPECT_EQ(zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(&q.cursor, p.block, v, 40, 0, c.cbp, int(c.qp), 0, 0,
                                                                  c.tableU, c.tableV, 1),
              zvpStatusOk);
  }
}

TEST(ReconstructEdgeCases, BypassLeavesDcBlocksAsTheyAre) {
  std::int16_t table[16];
  std::fill(std::begin(table), std::end(table), std::int16_t(160));
  Plain p;
  for (int i = 0; i < 16; ++i) p.levels[i] = std::int16_t(i + 1);
  ASSERT_EQ(zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(&p.cursor, p.block, 40, 2, 1, 0, 0, table, 1), zvpStatusOk);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x)
      EXPECT_EQ(p.at(x, y), x % 4 == 0 && y % 4 == 0 ? 100 + y + x / 4 + 1 : 100) << x << " " << y;

  Plain c;
  for (int i = 0; i < 8; ++i) c.levels[i] = std::int16_t(i + 1);
  ASSERT_EQ(
      zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(&c.cursor, c.block, c.block + 8, 40, 3 << 17, 0, table, table, 1),
      zvpStatusOk);
  EXPECT_EQ(c.cursor, c.levels + 8);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(c.at(i / 4 * 8 + i % 2 * 4, i / 2 % 2 * 4), 101 + i);
  EXPECT_EQ(c.at(1, 0), 100);
}

TEST(ReconstructEdgeCases, AMissingNeighbourLeavesEarlierBlocksDone) {
  for (const bool half : {false, true}) {
    Plain p;
    std::int32_t modes[16];
    std::fill(std::begin(modes), std::end(modes), 2);
    modes[8] = 1;  // horizontal, at the left edge in the lower half
    for (int b = 0; b < 8; ++b) p.levels[16 * b] = 1;
    const auto call = half ? zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R : zvpiReconstructLumaIntraMB_H264_16s8u_C1R;
    EXPECT_EQ(call(&p.cursor, p.block, 40, modes, 0x1fffe, 28, half ? 2 : 1), zvpStatusPredictionUnavailable);
    EXPECT_EQ(p.cursor, p.levels);
    EXPECT_EQ(p.at(0, 0), 104);
    EXPECT_EQ(p.at(0, 8), 100);
    // A half that is there will do.
    if (half) {
      EXPECT_EQ(call(&p.cursor, p.block, 40, modes, 0, 28, 1), zvpStatusOk);
    }
  }
}

TEST(ReconstructEdgeCases, TheCornerOfAnEightByEightBlockCanBeMissingAlone) {
  // The vertical mode filters the row above with the corner, if it may be used.
  std::int16_t table[64] = {};
  const std::int32_t modes[4] = {0, 2, 2, 2};
  for (const int flags : {0, 8, 1, 1 | 8}) {
    Plain p;
    p.block[-41] = 0;
    ASSERT_EQ(
        zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(&p.cursor, p.block, 40, modes, 0, 20, std::uint8_t(flags), table),
        zvpStatusOk);
    EXPECT_EQ(p.at(0, 0), flags == 0 || flags == (1 | 8) ? 75 : 100) << flags;
    EXPECT_EQ(p.at(1, 0), 100);
  }
}

TEST(ReconstructEdgeCases, TheTwoNamesOfAChromaMemberAgree) {
  Rng rng(12);
  for (int round = 0; round < rounds(200); ++round) {
    Plain a, b;
    fill(a.samples, sizeof a.samples, rng, anyStyle(rng), 0, 255);
    std::copy(std::begin(a.samples), std::end(a.samples), b.samples);
    fill(a.levels, 200, rng, Style::Small, -20, 20);
    std::copy(std::begin(a.levels), std::end(a.levels), b.levels);
    const std::uint32_t cbp = rng.next(), mode = std::uint32_t(rng.range(0, 3));
    const auto qp = rng.range(-1, 52);
    const auto top = std::uint8_t(rng.next()), bottom = std::uint8_t(rng.next());
    EXPECT_EQ(zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(&a.cursor, a.block, a.block + 8, 40, mode, cbp, qp, top,
                                                               bottom),
              zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(&b.cursor, b.block, b.block + 8, 40, mode, cbp, qp, top,
                                                                bottom));
    EXPECT_TRUE(sameBytes(a.samples, b.samples, sizeof a.samples));
    EXPECT_EQ(a.cursor - a.levels, b.cursor - b.levels);
  }
}
