// The exports of the deblocking filter beside what the model knows them as, for tests and benchmarks.
#pragma once

#include <cstdint>
#include <vector>

#include "reference/h264/deblock.h"
#include "zvpvc.h"

namespace reference::deblock {

using PositionalFn = zvpStatus (*)(std::uint8_t*, std::int32_t, const std::uint8_t*, const std::uint8_t*,
                                   const std::uint8_t*, const std::uint8_t*);
using MbaffFn = zvpStatus (*)(std::uint8_t*, std::int32_t, std::uint32_t, std::uint32_t, const std::uint8_t*,
                              const std::uint8_t*);
using RecordFn = zvpStatus (*)(const H264DeblockEdges*);

struct Export {
  const char* name;
  Member member;
  PositionalFn positional;
  MbaffFn mbaff;
  RecordFn record;
};

#define NAMED(FUNCTION) #FUNCTION, FUNCTION
inline Export exportOf(const char* name, PositionalFn fn, Plane plane, Edges edges) {
  return {name, {plane, edges, 1}, fn, nullptr, nullptr};
}
inline Export exportOf(const char* name, MbaffFn fn, Plane plane) {
  return {name, {plane, Edges::Vertical, 1}, nullptr, fn, nullptr};
}
inline Export exportOf(const char* name, RecordFn fn, Plane plane, Edges edges, int bytes) {
  return {name, {plane, edges, bytes}, nullptr, nullptr, fn};
}

inline const std::vector<Export>& exports() {
  static const std::vector<Export> all = {
      exportOf(NAMED(zvpiFilterDeblockingLuma_VerEdge_H264_8u_C1IR), Plane::Luma, Edges::Vertical),
      exportOf(NAMED(zvpiFilterDeblockingLuma_HorEdge_H264_8u_C1IR), Plane::Luma, Edges::Horizontal),
      exportOf(NAMED(zvpiFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR), Plane::LumaMbaff),
      exportOf(NAMED(zvpiFilterDeblockingChroma_VerEdge_H264_8u_C1IR), Plane::Chroma420, Edges::Vertical),
      exportOf(NAMED(zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR), Plane::Chroma420, Edges::Horizontal),
      exportOf(NAMED(zvpiFilterDeblockingChroma_VerEdge_H264_8u_C2IR), Plane::Pairs420, Edges::Vertical),
      exportOf(NAMED(zvpiFilterDeblockingChroma_HorEdge_H264_8u_C2IR), Plane::Pairs420, Edges::Horizontal),
      exportOf(NAMED(zvpiFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR), Plane::ChromaMbaff),
      exportOf(NAMED(zvpiFilterDeblockingChroma422VerEdge_H264_8u_C1IR), Plane::Chroma422, Edges::Vertical, 1),
      exportOf(NAMED(zvpiFilterDeblockingChroma422HorEdge_H264_8u_C1IR), Plane::Chroma422, Edges::Horizontal, 1),
      exportOf(NAMED(zvpiFilterDeblockingLumaVerEdge_H264_16u_C1IR), Plane::Luma, Edges::Vertical, 2),
      exportOf(NAMED(zvpiFilterDeblockingLumaHorEdge_H264_16u_C1IR), Plane::Luma, Edges::Horizontal, 2),
      exportOf(NAMED(zvpiFilterDeblockingLumaVerEdgeMBAFF_H264_16u_C1IR), Plane::LumaMbaff, Edges::Vertical, 2),
      exportOf(NAMED(zvpiFilterDeblockingChromaVerEdge_H264_16u_C1IR), Plane::Chroma420, Edges::Vertical, 2),
      exportOf(NAMED(zvpiFilterDeblockingChromaHorEdge_H264_16u_C1IR), Plane::Chroma420, Edges::Horizontal, 2),
      exportOf(NAMED(zvpiFilterDeblockingChromaVerEdgeMBAFF_H264_16u_C1IR), Plane::ChromaMbaff, Edges::Vertical, 2),
      exportOf(NAMED(zvpiFilterDeblockingChroma422VerEdge_H264_16u_C1IR), Plane::Chroma422, Edges::Vertical, 2),
      exportOf(NAMED(zvpiFilterDeblockingChroma422HorEdge_H264_16u_C1IR), Plane::Chroma422, Edges::Horizontal, 2),
  };
  return all;
}
#undef NAMED

}  // namespace reference::deblock
