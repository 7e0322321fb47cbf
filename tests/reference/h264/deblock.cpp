#include "reference/h264/deblock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace reference::deblock {
namespace {

// The samples p3 p2 p1 p0 q0 q1 q2 q3 of one line, as indices -4 to 3.
class Line {
 public:
  Line(std::uint8_t* q0, std::ptrdiff_t across, int sampleBytes) : q0_(q0), across_(across), bytes_(sampleBytes) {}
  std::int64_t get(int i) const {
    std::uint8_t* const at = q0_ + i * across_;
    if (bytes_ == 1) return *at;
    std::uint16_t value;
    std::memcpy(&value, at, 2);
    return value;
  }
  void set(int i, std::int64_t value) {
    std::uint8_t* const at = q0_ + i * across_;
    if (bytes_ == 1) {
      *at = std::uint8_t(value);
    } else {
      const auto word = std::uint16_t(value);
      std::memcpy(at, &word, 2);
    }
  }

 private:
  std::uint8_t* q0_;
  std::ptrdiff_t across_;
  int bytes_;
};

struct Rule {
  std::int64_t alpha, beta, tc0, maximum;
  std::int64_t tcMask;  // tc has the sample's width
  bool luma, strong;
};

void filterLine(Line line, const Rule& r) {
  const auto p0 = line.get(-1), p1 = line.get(-2), q0 = line.get(0), q1 = line.get(1);
  if (!(std::llabs(p0 - q0) < r.alpha && std::llabs(p1 - p0) < r.beta && std::llabs(q1 - q0) < r.beta)) return;
  const auto p2 = r.luma ? line.get(-3) : 0, q2 = r.luma ? line.get(2) : 0;
  const bool ap = r.luma && std::llabs(p2 - p0) < r.beta, aq = r.luma && std::llabs(q2 - q0) < r.beta;
  if (!r.strong) {
    const std::int64_t tc = (r.luma ? r.tc0 + ap + aq : r.tc0 + 1) & r.tcMask;
    const std::int64_t delta = std::clamp<std::int64_t>(((q0 - p0) * 4 + (p1 - q1) + 4) >> 3, -tc, tc);
    if (delta != 0) {
      line.set(-1, std::clamp<std::int64_t>(p0 + delta, 0, r.maximum));
      line.set(0, std::clamp<std::int64_t>(q0 - delta, 0, r.maximum));
    }
    const std::int64_t m = (p0 + q0 + 1) >> 1;
    if (ap) line.set(-2, p1 + std::clamp<std::int64_t>((p2 + m - 2 * p1) >> 1, -r.tc0, r.tc0));
    if (aq) line.set(1, q1 + std::clamp<std::int64_t>((q2 + m - 2 * q1) >> 1, -r.tc0, r.tc0));
    return;
  }
  const bool near = r.luma && std::llabs(p0 - q0) < (r.alpha >> 2) + 2;
  if (near && ap) {
    const auto p3 = line.get(-4);
    line.set(-1, (p2 + 2 * p1 + 2 * p0 + 2 * q0 + q1 + 4) >> 3);
    line.set(-2, (p2 + p1 + p0 + q0 + 2) >> 2);
    line.set(-3, (2 * p3 + 3 * p2 + p1 + p0 + q0 + 4) >> 3);
  } else {
    line.set(-1, (2 * p1 + p0 + q1 + 2) >> 2);
  }
  if (near && aq) {
    const auto q3 = line.get(3);
    line.set(0, (q2 + 2 * q1 + 2 * q0 + 2 * p0 + p1 + 4) >> 3);
    line.set(1, (q2 + q1 + q0 + p0 + 2) >> 2);
    line.set(2, (2 * q3 + 3 * q2 + q1 + q0 + p0 + 4) >> 3);
  } else {
    line.set(0, (2 * q1 + q0 + p1 + 2) >> 2);
  }
}

}  // namespace

int Member::edgeCount() const {
  if (mbaff()) return 1;
  if (plane == Plane::Luma) return 4;
  return plane == Plane::Chroma422 && edges == Edges::Horizontal ? 4 : 2;
}

int Member::lines() const {
  switch (plane) {
    case Plane::Luma:
      return 16;
    case Plane::ChromaMbaff:
      return 4;
    case Plane::Chroma422:
      return edges == Edges::Vertical ? 16 : 8;
    default:
      return 8;
  }
}

int Member::strengthsPerEdge() const { return edgeCount() == 2 ? 8 : 4; }

void filter(const Member& m, const Arguments& a) {
  if (m.mbaff() && a.alpha[0] == 0) return;
  const std::ptrdiff_t place = m.sampleBytes * m.components();
  const bool vertical = m.edges == Edges::Vertical;
  const std::ptrdiff_t across = vertical ? place : a.step, along = vertical ? a.step : place;
  for (int e = 0; e < m.edgeCount(); ++e) {
    const std::uint8_t* strengths = &a.strengths[std::size_t(m.strengthsPerEdge() * e)];
    if (std::all_of(strengths, strengths + 4, [](int bS) { return bS == 0; })) continue;
    const std::size_t t = e > 0 ? 1 : 0;
    // Along horizontal chroma edges the first group decides, and the second edge of 4:2:0 is never strong.
    const bool byFirst = !m.luma() && !vertical;
    const bool all = byFirst && strengths[0] == 4 && !(m.plane != Plane::Chroma422 && e == 1);
    for (int i = 0; i < m.lines(); ++i) {
      const int group = i / (m.lines() / 4);
      const int bS = strengths[group];
      if (bS == 0 && !all) continue;
      Rule rule;
      rule.alpha = a.alpha[t];
      rule.beta = a.beta[t];
      rule.tc0 = a.tc0[std::size_t(4 * e + group)];
      rule.maximum = m.sampleBytes == 1 ? 255 : (1 << a.bitDepth) - 1;
      rule.tcMask = m.sampleBytes == 1 ? 0xff : 0xffff;
      rule.luma = m.luma();
      rule.strong = byFirst ? all : bS == 4;
      for (int c = 0; c < m.components(); ++c)
        filterLine(Line(a.srcDst + 4 * e * across + i * along + c * m.sampleBytes, across, m.sampleBytes), rule);
    }
  }
}

}  // namespace reference::deblock
