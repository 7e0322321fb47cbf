#include "h264/deblocking.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "zvpvc.h"

namespace h264 {

namespace {

// Tables 8-16 and 8-17.
constexpr std::uint8_t alphaTable[52] = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,   0,   0,   0,   0,   4,   4,
                                         5,  6,  7,  8,  9,  10, 12, 13, 15, 17, 20,  22,  25,  28,  32,  36,  40,  45,
                                         50, 56, 63, 71, 80, 90, 101, 113, 127, 144, 162, 182, 203, 226, 255, 255};
constexpr std::uint8_t betaTable[52] = {0, 0, 0, 0, 0, 0, 0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  2,  2,
                                        2, 3, 3, 3, 3, 4, 4,  4,  6,  6,  7,  7,  8,  8,  9,  9,  10, 10,
                                        11, 11, 12, 12, 13, 13, 14, 14, 15, 15, 16, 16, 17, 17, 18, 18};
// By index and boundary strength; strengths 0 and 4 do not use it.
constexpr std::uint8_t tc0Table[52][5] = {
    {0, 0, 0, 0},    {0, 0, 0, 0},    {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 0},
    {0, 0, 0, 0},    {0, 0, 0, 0},    {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 0},
    {0, 0, 0, 0},    {0, 0, 0, 0},    {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 0},     {0, 0, 0, 1},
    {0, 0, 0, 1},    {0, 0, 0, 1},    {0, 0, 0, 1},     {0, 0, 1, 1},     {0, 0, 1, 1},     {0, 1, 1, 1},
    {0, 1, 1, 1},    {0, 1, 1, 1},    {0, 1, 1, 1},     {0, 1, 1, 2},     {0, 1, 1, 2},     {0, 1, 1, 2},
    {0, 1, 1, 2},    {0, 1, 2, 3},    {0, 1, 2, 3},     {0, 2, 2, 3},     {0, 2, 2, 4},     {0, 2, 3, 4},
    {0, 2, 3, 4},    {0, 3, 3, 5},    {0, 3, 4, 6},     {0, 3, 4, 6},     {0, 4, 5, 7},     {0, 4, 5, 8},
    {0, 4, 6, 9},    {0, 5, 7, 10},   {0, 6, 8, 11},    {0, 6, 8, 13},    {0, 7, 10, 14},   {0, 8, 11, 16},
    {0, 9, 12, 18},  {0, 10, 13, 20}, {0, 11, 15, 23},  {0, 13, 17, 25}};

// Boundary strengths of the groups of one edge, group 0 in the lowest byte, as the library reads them.
using EdgeStrengths = std::uint32_t;
static_assert(std::endian::native == std::endian::little);
constexpr EdgeStrengths all(unsigned strength) { return strength * 0x01010101u; }

struct Thresholds {
  int alphaIndex;
  std::uint8_t alpha, beta;
  bool off() const { return alpha == 0 || beta == 0; }
};
Thresholds thresholds(int qp, const SliceInfo& slice) {
  const int a = std::clamp(qp + slice.alphaOffset, 0, 51), b = std::clamp(qp + slice.betaOffset, 0, 51);
  return {a, alphaTable[a], betaTable[b]};
}

bool far(Mv a, Mv b) { return unsigned(a.x - b.x + 3) > 6 || unsigned(a.y - b.y + 3) > 6; }

// One macroblock as the strength of an edge needs it.
struct Side {
  const MbRefs* refs;
  const Mv* mv[2];
};

constexpr int quarterOf(int block) { return (block >> 3) * 2 + ((block >> 1) & 1); }

// How the references of two 8x8 blocks compare. The pictures are compared, not the indices.
enum class References { Differ, Straight, Crossed, Both };
References compareReferences(const Side& p, int pQuarter, const Side& q, int qQuarter) {
  const int p0 = p.refs->store[0][pQuarter], p1 = p.refs->store[1][pQuarter];
  const int q0 = q.refs->store[0][qQuarter], q1 = q.refs->store[1][qQuarter];
  if (p0 == q0 && p1 == q1) return p0 == p1 ? References::Both : References::Straight;
  if (p0 == q1 && p1 == q0) return References::Crossed;
  return References::Differ;
}

// Spreads four flags to four bytes: bits 0 to 3, or bits 0, 4, 8, 12.
EdgeStrengths fromRow(unsigned bits) { return ((bits & 15) * 0x00204081u) & 0x01010101u; }
EdgeStrengths fromColumn(unsigned bits) {
  return (bits & 1) | (bits & 0x10) << 4 | (bits & 0x100) << 8 | (bits & 0x1000) << 12;
}

struct Strengths {
  EdgeStrengths ver[4], hor[4];
};

// Strength 1 where the motion of two inter blocks differs (8.7.2.1), for the groups that do not have 2 already. qFirst
// and step: the block of group 0 on the q side and the distance to the next group's; pFirst likewise.
EdgeStrengths withMotion(EdgeStrengths coded, const Side& p, int pFirst, const Side& q, int qFirst, int step) {
  for (int group = 0; group < 4; group += 2) {
    const int pQuarter = quarterOf(pFirst + group * step), qQuarter = quarterOf(qFirst + group * step);
    const References references = compareReferences(p, pQuarter, q, qQuarter);
    const bool uses0 = p.refs->store[0][pQuarter] >= 0, uses1 = p.refs->store[1][pQuarter] >= 0;
    for (int i = group; i < group + 2; ++i) {
      if (coded >> (8 * i) & 0xFF) continue;
      const int pBlock = pFirst + i * step, qBlock = qFirst + i * step;
      const auto differ = [&](int qList0, int qList1) {
        return (uses0 && far(p.mv[0][pBlock], q.mv[qList0][qBlock])) ||
               (uses1 && far(p.mv[1][pBlock], q.mv[qList1][qBlock]));
      };
      bool moves = true;
      if (references == References::Straight) moves = differ(0, 1);
      else if (references == References::Crossed) moves = differ(1, 0);
      else if (references == References::Both) moves = differ(0, 1) && differ(1, 0);
      coded |= unsigned(moves) << (8 * i);
    }
  }
  return coded;
}

class RowFilter {
 public:
  RowFilter(const PictureState& picture, int row) : picture_(picture), row_(row) {}
  void run() {
    for (int x = 0; x < picture_.widthMbs; ++x) filter(x);
  }

 private:
  Side side(int mb) const {
    const Frame& frame = *picture_.frame;
    return {&frame.refs[std::size_t(mb)],
            {frame.motion[0][std::size_t(mb)].mv, frame.motion[1][std::size_t(mb)].mv}};
  }

  void filter(int x) {
    const int mb = row_ * picture_.widthMbs + x;
    const MbInfo& q = picture_.mbs[std::size_t(mb)];
    const SliceInfo& slice = picture_.slices[std::size_t(q.slice)];
    if (slice.deblockingDisabled == 1) return;
    const MbInfo* left = x > 0 ? &q - 1 : nullptr;
    const MbInfo* top = row_ > 0 ? &q - picture_.widthMbs : nullptr;
    if (slice.deblockingDisabled == 2) {
      if (left && left->slice != q.slice) left = nullptr;
      if (top && top->slice != q.slice) top = nullptr;
    }

    Strengths strengths;
    if (!findStrengths(mb, q, left, top, strengths)) return;

    const Frame& frame = *picture_.frame;
    std::uint8_t* luma = frame.planes[0] + 16 * row_ * frame.steps[0] + 16 * x;
    const std::int32_t lumaStep = std::int32_t(frame.steps[0]), chromaStep = std::int32_t(frame.steps[1]);
    std::uint8_t* chroma[2];
    for (int plane = 0; plane < 2; ++plane)
      chroma[plane] = frame.planes[1 + plane] + 8 * row_ * frame.steps[1] + 8 * x;

    Edges edges;
    prepareLuma(q, left, slice, strengths.ver, edges);
    if (edges.any)
      zvpiFilterDeblockingLuma_VerEdge_H264_8u_C1IR(luma, lumaStep, edges.alpha, edges.beta, edges.tc0, edges.bS);
    Edges chromaEdges[2];
    prepareChroma(q, left, slice, strengths.ver, chromaEdges);
    for (int plane = 0; plane < 2; ++plane)
      if (const Edges& e = chromaEdges[plane]; e.any)
        zvpiFilterDeblockingChroma_VerEdge_H264_8u_C1IR(chroma[plane], chromaStep, e.alpha, e.beta, e.tc0, e.bS);
    prepareLuma(q, top, slice, strengths.hor, edges);
    if (edges.any)
      zvpiFilterDeblockingLuma_HorEdge_H264_8u_C1IR(luma, lumaStep, edges.alpha, edges.beta, edges.tc0, edges.bS);
    prepareChroma(q, top, slice, strengths.hor, chromaEdges);
    for (int plane = 0; plane < 2; ++plane)
      if (const Edges& e = chromaEdges[plane]; e.any)
        zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR(chroma[plane], chromaStep, e.alpha, e.beta, e.tc0, e.bS);
  }

  // The arrays of one call.
  struct Edges {
    bool any;  // is there anything to filter?
    std::uint8_t alpha[2], beta[2], tc0[16], bS[16];
  };

  // False if no edge is filtered.
  bool findStrengths(int mb, const MbInfo& q, const MbInfo* left, const MbInfo* top, Strengths& s) const {
    if (q.intra()) {
      s.ver[0] = left ? all(4) : 0;
      s.hor[0] = top ? all(4) : 0;
      for (int edge = 1; edge < 4; ++edge) s.ver[edge] = s.hor[edge] = q.transform8x8 && edge != 2 ? 0 : all(3);
      return true;
    }
    const Side qSide = side(mb);
    const unsigned coded = q.coded;
    const unsigned codedVer = coded | coded << 1, codedHor = coded | coded << 4;
    for (int edge = 1; edge < 4; ++edge) {
      const bool inside8x8 = q.transform8x8 && edge != 2;
      s.ver[edge] = inside8x8 ? 0 : 2 * fromColumn(codedVer >> edge);
      s.hor[edge] = inside8x8 ? 0 : 2 * fromRow(codedHor >> (4 * edge));
    }
    switch (q.shape) {
      case MbShape::Whole: break;
      case MbShape::Rows: s.hor[2] = withMotion(s.hor[2], qSide, 4, qSide, 8, 1); break;
      case MbShape::Columns: s.ver[2] = withMotion(s.ver[2], qSide, 1, qSide, 2, 4); break;
      case MbShape::Quarters:
        s.hor[2] = withMotion(s.hor[2], qSide, 4, qSide, 8, 1);
        s.ver[2] = withMotion(s.ver[2], qSide, 1, qSide, 2, 4);
        break;
      case MbShape::Blocks:
        for (int edge = 1; edge < 4; ++edge) {
          s.hor[edge] = withMotion(s.hor[edge], qSide, 4 * edge - 4, qSide, 4 * edge, 1);
          s.ver[edge] = withMotion(s.ver[edge], qSide, edge - 1, qSide, edge, 4);
        }
        break;
    }
    s.ver[0] = s.hor[0] = 0;
    if (left) {
      if (left->intra()) s.ver[0] = all(4);
      else s.ver[0] = withMotion(2 * fromColumn(coded | left->coded >> 3), side(mb - 1), 3, qSide, 0, 4);
    }
    if (top) {
      if (top->intra()) s.hor[0] = all(4);
      else s.hor[0] = withMotion(2 * fromRow(coded | top->coded >> 12), side(mb - picture_.widthMbs), 12, qSide, 0, 1);
    }
    return (s.ver[0] | s.ver[1] | s.ver[2] | s.ver[3] | s.hor[0] | s.hor[1] | s.hor[2] | s.hor[3]) != 0;
  }

  // Fills in count edges of which every spacing-th of the strengths is one. outer and inner: the QPs of edge 0 and of
  // the others.
  static void prepare(int outerQp, int innerQp, const SliceInfo& slice, const EdgeStrengths (&strengths)[4], int count,
                      int spacing, Edges& edges) {
    const Thresholds outer = thresholds(outerQp, slice), inner = thresholds(innerQp, slice);
    EdgeStrengths any = 0;
    for (int edge = 0; edge < count; ++edge) {
      const Thresholds& t = edge == 0 ? outer : inner;
      const EdgeStrengths s = t.off() ? 0 : strengths[spacing * edge];
      std::memcpy(edges.bS + 4 * spacing * edge, &s, 4);
      any |= s;
      const std::uint8_t* tc0 = tc0Table[t.alphaIndex];
      for (int group = 0; group < 4; ++group) edges.tc0[4 * edge + group] = tc0[s >> (8 * group) & 7];
    }
    edges.alpha[0] = outer.alpha;
    edges.alpha[1] = inner.alpha;
    edges.beta[0] = outer.beta;
    edges.beta[1] = inner.beta;
    edges.any = any != 0;
  }

  static void prepareLuma(const MbInfo& q, const MbInfo* p, const SliceInfo& slice, const EdgeStrengths (&strengths)[4],
                          Edges& edges) {
    prepare(p ? (p->qp + q.qp + 1) >> 1 : q.qp, q.qp, slice, strengths, 4, 1, edges);
  }

  // Chroma has edges 0 and 2 of luma; Cb and Cr differ where their QPs do.
  static void prepareChroma(const MbInfo& q, const MbInfo* p, const SliceInfo& slice,
                            const EdgeStrengths (&strengths)[4], Edges (&edges)[2]) {
    for (int plane = 0; plane < 2; ++plane) {
      if (plane == 1 && q.chromaQp[0] == q.chromaQp[1] && (!p || p->chromaQp[0] == p->chromaQp[1])) {
        edges[1] = edges[0];
        return;
      }
      const int inner = q.chromaQp[plane];
      prepare(p ? (p->chromaQp[plane] + inner + 1) >> 1 : inner, inner, slice, strengths, 2, 2, edges[plane]);
    }
  }

  const PictureState& picture_;
  const int row_;
};

}  // namespace

int chromaQp(int qp, int offset) {
  static constexpr std::uint8_t table[52] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17,
                                             18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 29, 30, 31, 32, 32, 33,
                                             34, 34, 35, 35, 36, 36, 37, 37, 37, 38, 38, 38, 39, 39, 39, 39};
  return table[std::clamp(qp + offset, 0, 51)];
}

void deblockRow(const PictureState& picture, int row) { RowFilter(picture, row).run(); }

}  // namespace h264
