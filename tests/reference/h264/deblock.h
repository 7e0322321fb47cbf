// Model of the deblocking filter: each line of each edge by itself, as H.264 8.7.2 writes it down.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference::deblock {

enum class Plane { Luma, LumaMbaff, Chroma420, Pairs420, Chroma422, ChromaMbaff };
enum class Edges { Vertical, Horizontal };

// One of the calls there are.
struct Member {
  Plane plane;
  Edges edges;
  int sampleBytes;  // 1 or 2

  bool luma() const { return plane == Plane::Luma || plane == Plane::LumaMbaff; }
  bool mbaff() const { return plane == Plane::LumaMbaff || plane == Plane::ChromaMbaff; }
  int components() const { return plane == Plane::Pairs420 ? 2 : 1; }  // samples that lie together at a place
  int depth() const { return luma() ? 4 : 2; }                         // places that are read on either side of an edge
  int edgeCount() const;
  int lines() const;             // places along an edge; they make four groups
  int strengthsPerEdge() const;  // how far apart the strengths of two edges are; the four come first
  int strengthCount() const { return strengthsPerEdge() * (edgeCount() - 1) + 4; }
  int thresholdCount() const { return mbaff() ? 1 : 2; }
  int tc0Count() const { return 4 * edgeCount(); }
};

struct Arguments {
  std::uint8_t* srcDst;  // samples of sampleBytes, at any address
  std::ptrdiff_t step;   // in bytes
  std::vector<std::uint32_t> alpha, beta, tc0;
  std::vector<std::uint8_t> strengths;
  int bitDepth;
};

void filter(const Member& member, const Arguments& arguments);

}  // namespace reference::deblock
