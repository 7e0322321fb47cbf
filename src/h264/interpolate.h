// What the interpolation kernels, the entries and the edge route share: the kernel tables and the working record.
//
// T is the sample type. Steps count samples, which for 8 bits are bytes. A table's kernels take any width that passes
// the entries' size test and any height; a width of 0 or a height of 0 or less is an empty block.
#pragma once

#include <array>
#include <bit>

#include "types.h"

namespace zvp {

using H264LumaKernel8u = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                       zvpSize size);
using H264LumaKernel16u = zvpStatus (*)(const u16* src, std::ptrdiff_t srcStep, u16* dst, std::ptrdiff_t dstStep,
                                        zvpSize size, s32 bitDepth);
template <class T>
using H264ChromaKernel = zvpStatus (*)(const T* src, std::ptrdiff_t srcStep, T* dst, std::ptrdiff_t dstStep,
                                       zvpSize size, zvpPoint fraction);
using H264ChromaPairsKernel = zvpStatus (*)(const u8* src, std::ptrdiff_t srcStep, u8* dstU, u8* dstV,
                                            std::ptrdiff_t dstStep, zvpSize size, zvpPoint fraction);

// Index dy * 4 + dx.
extern const H264LumaKernel8u h264_interpolate_luma_type_table_8u_pxmx[16];
extern const H264LumaKernel16u h264_interpolate_luma_type_table_16u_pxmx[16];
// Index 2 * (dy != 0) + (dx != 0).
extern const H264ChromaKernel<u8> h264_interpolate_chroma_type_table_8u_pxmx[4];
extern const H264ChromaKernel<u16> h264_interpolate_chroma_type_table_16u_pxmx[4];
extern const H264ChromaPairsKernel h264_interpolate_chroma_type_table_nv12touv_8u_pxmx[4];

constexpr s32 chromaKernelIndex(s32 dx, s32 dy) {
  const auto isFraction = [](s32 eighths) { return (u32(eighths) + 7) / 8; };  // 0 to 7, without a jump or a flag
  return s32(isFraction(dx) + 2 * isFraction(dy));
}

// The working record of a block, for the Block entries and the edge route. The fields from x0 to frameHeight serve the
// edge route, pSrcSecond and pDstSecond a second plane, bitDepth the 16-bit kernels.
template <class T>
struct H264KernelArgs {
  const T* pSrc;
  s64 srcStep;
  T* pDst;
  s64 dstStep;
  s32 dx, dy;
  s32 width, height;
  s32 kernelIndex;
  s32 x0, y0;
  s32 needWidth, needHeight;
  s32 frameWidth, frameHeight;
  const T* pSrcSecond;
  T* pDstSecond;
  s32 bitDepth;
};

// Run the kernel that the record names.
inline zvpStatus runLuma(const H264KernelArgs<u8>& a) {
  return h264_interpolate_luma_type_table_8u_pxmx[a.kernelIndex](a.pSrc, a.srcStep, a.pDst, a.dstStep,
                                                                 {a.width, a.height});
}
inline zvpStatus runLuma(const H264KernelArgs<u16>& a) {
  return h264_interpolate_luma_type_table_16u_pxmx[a.kernelIndex](a.pSrc, a.srcStep, a.pDst, a.dstStep,
                                                                  {a.width, a.height}, a.bitDepth);
}
inline zvpStatus runChroma(const H264KernelArgs<u8>& a) {
  return h264_interpolate_chroma_type_table_8u_pxmx[a.kernelIndex](a.pSrc, a.srcStep, a.pDst, a.dstStep,
                                                                   {a.width, a.height}, {a.dx, a.dy});
}
inline zvpStatus runChroma(const H264KernelArgs<u16>& a) {
  return h264_interpolate_chroma_type_table_16u_pxmx[a.kernelIndex](a.pSrc, a.srcStep, a.pDst, a.dstStep,
                                                                    {a.width, a.height}, {a.dx, a.dy});
}
inline zvpStatus runChromaPairs(const H264KernelArgs<u8>& a) {
  return h264_interpolate_chroma_type_table_nv12touv_8u_pxmx[a.kernelIndex](
      a.pSrc, a.srcStep, a.pDst, a.pDstSecond, a.dstStep, {a.width, a.height}, {a.dx, a.dy});
}

// The edge route of the Block entries. The mask says which edges of the plane the reference area crosses.
enum EdgeMask : s32 { edgeLeft = 1, edgeRight = 2, edgeTop = 4, edgeBottom = 8 };

zvpStatus zvpiInterpolateBoundaryLumaBlock_H264_8u(s32 mask, H264KernelArgs<u8>* pArgs);
zvpStatus zvpiInterpolateBoundaryLumaBlock_H264_16u(s32 mask, H264KernelArgs<u16>* pArgs);
zvpStatus zvpiInterpolateBoundaryChromaBlock_H264_8u(s32 mask, H264KernelArgs<u8>* pArgs);
zvpStatus zvpiInterpolateBoundaryChromaBlock_H264_16u(s32 mask, H264KernelArgs<u16>* pArgs);
zvpStatus zvpiInterpolateBoundaryChromaBlock_NV12_H264_C2P2_8u(s32 mask, H264KernelArgs<u8>* pArgs);

// Whether the width or the height has one of these bits, by one test of both.
ZVP_INLINE bool hasBits(zvpSize size, u32 ofWidth, u32 ofHeight) {
  return (std::bit_cast<u64>(size) & std::bit_cast<u64>(std::array{ofWidth, ofHeight})) != 0;
}

// The checks that the plain entries have in common with the Top and Bottom ones. dx and dy have 2 fraction bits in
// luma, 3 in chroma.
ZVP_INLINE zvpStatus checkLuma8u(s32 dx, s32 dy, zvpSize size) {
  if (u32(dx | dy) > 3) return zvpStatusBadArgument;
  return hasBits(size, ~0x1cu, 3) ? zvpStatusBadSize : zvpStatusOk;
}
ZVP_INLINE zvpStatus checkChroma8u(s32 dx, s32 dy, zvpSize size) {
  if (u32(dx | dy) > 7) return zvpStatusBadArgument;
  return hasBits(size, ~0xeu, 1) ? zvpStatusBadSize : zvpStatusOk;
}
inline zvpStatus checkLuma16u(const H264Interpolate16u& r) {
  if (r.srcStep < r.roiSize.width || r.roiSize.width > r.dstStep) return zvpStatusBadStep;
  if (u32(r.dx) > 3 || u32(r.dy) > 3) return zvpStatusBadArgument;
  const auto legal = [](s32 n) { return n == 4 || n == 8 || n == 16; };
  if (!legal(r.roiSize.height) || !legal(r.roiSize.width)) return zvpStatusBadSize;
  return r.roiSize.width + r.roiSize.height == 20 ? zvpStatusBadSize : zvpStatusOk;
}
// Steps below 8 are refused whatever the width; a width of 16 with a step of 8 is carried out. Required.
inline zvpStatus checkChroma16u(const H264Interpolate16u& r) {
  if (r.srcStep < 8 || r.dstStep < 8) return zvpStatusBadStep;
  if (u32(r.dx) > 7 || u32(r.dy) > 7) return zvpStatusBadArgument;
  const auto legal = [](s32 n) { return n == 2 || n == 4 || n == 8 || n == 16; };
  return legal(r.roiSize.height) && legal(r.roiSize.width) ? zvpStatusOk : zvpStatusBadSize;
}

}  // namespace zvp
