// The kernel tables of luma and chroma interpolation, and the entries that run them at a place in memory (plain
// entries) or for a vector of a block in a plane (Block entries). A Block entry whose reference area crosses an edge of
// the plane goes on in interpolate_boundary.cpp.
#include "h264/interpolate.h"

#include <algorithm>

#include "entry.h"
#include "h264/interpolate_chroma_kernels.h"
#include "h264/interpolate_luma_16u_kernels.h"
#include "h264/interpolate_luma_kernels.h"

namespace zvp {

namespace {

// The letters are those of the standard's figure 8-4.
constexpr auto h264_interpolate_luma_type_0_8u_px = luma8u::kernel<0, 0>;
constexpr auto h264_interpolate_luma_type_a_8u_px = luma8u::kernel<1, 0>;
constexpr auto h264_interpolate_luma_type_b_8u_px = luma8u::kernel<2, 0>;
constexpr auto h264_interpolate_luma_type_c_8u_px = luma8u::kernel<3, 0>;
constexpr auto h264_interpolate_luma_type_d_8u_px = luma8u::kernel<0, 1>;
constexpr auto h264_interpolate_luma_type_e_8u_px = luma8u::kernel<1, 1>;
constexpr auto h264_interpolate_luma_type_f_8u_px = luma8u::kernel<2, 1>;
constexpr auto h264_interpolate_luma_type_g_8u_px = luma8u::kernel<3, 1>;
constexpr auto h264_interpolate_luma_type_h_8u_px = luma8u::kernel<0, 2>;
constexpr auto h264_interpolate_luma_type_i_8u_px = luma8u::kernel<1, 2>;
constexpr auto h264_interpolate_luma_type_j_8u_px = luma8u::kernel<2, 2>;
constexpr auto h264_interpolate_luma_type_k_8u_px = luma8u::kernel<3, 2>;
constexpr auto h264_interpolate_luma_type_n_8u_px = luma8u::kernel<0, 3>;
constexpr auto h264_interpolate_luma_type_p_8u_px = luma8u::kernel<1, 3>;
constexpr auto h264_interpolate_luma_type_q_8u_px = luma8u::kernel<2, 3>;
constexpr auto h264_interpolate_luma_type_r_8u_px = luma8u::kernel<3, 3>;

constexpr auto h264_interpolate_luma_type_0_16u_px = luma16u::kernel<0, 0>;
constexpr auto h264_interpolate_luma_type_a_16u_px = luma16u::kernel<1, 0>;
constexpr auto h264_interpolate_luma_type_b_16u_px = luma16u::kernel<2, 0>;
constexpr auto h264_interpolate_luma_type_c_16u_px = luma16u::kernel<3, 0>;
constexpr auto h264_interpolate_luma_type_d_16u_px = luma16u::kernel<0, 1>;
constexpr auto h264_interpolate_luma_type_e_16u_px = luma16u::kernel<1, 1>;
constexpr auto h264_interpolate_luma_type_f_16u_px = luma16u::kernel<2, 1>;
constexpr auto h264_interpolate_luma_type_g_16u_px = luma16u::kernel<3, 1>;
constexpr auto h264_interpolate_luma_type_h_16u_px = luma16u::kernel<0, 2>;
constexpr auto h264_interpolate_luma_type_i_16u_px = luma16u::kernel<1, 2>;
constexpr auto h264_interpolate_luma_type_j_16u_px = luma16u::kernel<2, 2>;
constexpr auto h264_interpolate_luma_type_k_16u_px = luma16u::kernel<3, 2>;
constexpr auto h264_interpolate_luma_type_n_16u_px = luma16u::kernel<0, 3>;
constexpr auto h264_interpolate_luma_type_p_16u_px = luma16u::kernel<1, 3>;
constexpr auto h264_interpolate_luma_type_q_16u_px = luma16u::kernel<2, 3>;
constexpr auto h264_interpolate_luma_type_r_16u_px = luma16u::kernel<3, 3>;

constexpr auto h264_interpolate_chroma_type_00_8u_px = chroma::kernel8u<false, false>;
constexpr auto h264_interpolate_chroma_type_0x_8u_px = chroma::kernel8u<true, false>;
constexpr auto h264_interpolate_chroma_type_y0_8u_px = chroma::kernel8u<false, true>;
constexpr auto h264_interpolate_chroma_type_yx_8u_px = chroma::kernel8u<true, true>;

constexpr auto h264_interpolate_chroma_type_00_16u_px = chroma::kernel16u<false, false>;
constexpr auto h264_interpolate_chroma_type_0x_16u_px = chroma::kernel16u<true, false>;
constexpr auto h264_interpolate_chroma_type_y0_16u_px = chroma::kernel16u<false, true>;
constexpr auto h264_interpolate_chroma_type_yx_16u_px = chroma::kernel16u<true, true>;

constexpr auto h264_interpolate_chroma_type_nv12touv_00_8u_px = chroma::kernelPairs8u<false, false>;
constexpr auto h264_interpolate_chroma_type_nv12touv_0x_8u_px = chroma::kernelPairs8u<true, false>;
constexpr auto h264_interpolate_chroma_type_nv12touv_y0_8u_px = chroma::kernelPairs8u<false, true>;
constexpr auto h264_interpolate_chroma_type_nv12touv_yx_8u_px = chroma::kernelPairs8u<true, true>;

constexpr auto _zvpInterpolate_H00V00_16u = luma16u::kernel<0, 0>;
constexpr auto _zvpInterpolate_H00V01_16u = luma16u::kernel<0, 1>;
constexpr auto _zvpInterpolate_H00V02_16u = luma16u::kernel<0, 2>;
constexpr auto _zvpInterpolate_H00V03_16u = luma16u::kernel<0, 3>;
constexpr auto _zvpInterpolate_H01V00_16u = luma16u::kernel<1, 0>;
constexpr auto _zvpInterpolate_H01V01_16u = luma16u::kernel<1, 1>;
constexpr auto _zvpInterpolate_H01V02_16u = luma16u::kernel<1, 2>;
constexpr auto _zvpInterpolate_H01V03_16u = luma16u::kernel<1, 3>;
constexpr auto _zvpInterpolate_H02V00_16u = luma16u::kernel<2, 0>;
constexpr auto _zvpInterpolate_H02V01_16u = luma16u::kernel<2, 1>;
constexpr auto _zvpInterpolate_H02V02_16u = luma16u::kernel<2, 2>;
constexpr auto _zvpInterpolate_H02V03_16u = luma16u::kernel<2, 3>;
constexpr auto _zvpInterpolate_H03V00_16u = luma16u::kernel<3, 0>;
constexpr auto _zvpInterpolate_H03V01_16u = luma16u::kernel<3, 1>;
constexpr auto _zvpInterpolate_H03V02_16u = luma16u::kernel<3, 2>;
constexpr auto _zvpInterpolate_H03V03_16u = luma16u::kernel<3, 3>;

// Index dx * 4 + dy: the transpose of the order of the other luma tables.
constexpr H264LumaKernel16u InterpolFnTbl_16u[16] = {
    _zvpInterpolate_H00V00_16u, _zvpInterpolate_H00V01_16u, _zvpInterpolate_H00V02_16u, _zvpInterpolate_H00V03_16u,
    _zvpInterpolate_H01V00_16u, _zvpInterpolate_H01V01_16u, _zvpInterpolate_H01V02_16u, _zvpInterpolate_H01V03_16u,
    _zvpInterpolate_H02V00_16u, _zvpInterpolate_H02V01_16u, _zvpInterpolate_H02V02_16u, _zvpInterpolate_H02V03_16u,
    _zvpInterpolate_H03V00_16u, _zvpInterpolate_H03V01_16u, _zvpInterpolate_H03V02_16u, _zvpInterpolate_H03V03_16u};

}  // namespace

constexpr H264LumaKernel8u h264_interpolate_luma_type_table_8u_pxmx[16] = {
    h264_interpolate_luma_type_0_8u_px, h264_interpolate_luma_type_a_8u_px, h264_interpolate_luma_type_b_8u_px,
    h264_interpolate_luma_type_c_8u_px, h264_interpolate_luma_type_d_8u_px, h264_interpolate_luma_type_e_8u_px,
    h264_interpolate_luma_type_f_8u_px, h264_interpolate_luma_type_g_8u_px, h264_interpolate_luma_type_h_8u_px,
    h264_interpolate_luma_type_i_8u_px, h264_interpolate_luma_type_j_8u_px, h264_interpolate_luma_type_k_8u_px,
    h264_interpolate_luma_type_n_8u_px, h264_interpolate_luma_type_p_8u_px, h264_interpolate_luma_type_q_8u_px,
    h264_interpolate_luma_type_r_8u_px};

constexpr H264LumaKernel16u h264_interpolate_luma_type_table_16u_pxmx[16] = {
    h264_interpolate_luma_type_0_16u_px, h264_interpolate_luma_type_a_16u_px, h264_interpolate_luma_type_b_16u_px,
    h264_interpolate_luma_type_c_16u_px, h264_interpolate_luma_type_d_16u_px, h264_interpolate_luma_type_e_16u_px,
    h264_interpolate_luma_type_f_16u_px, h264_interpolate_luma_type_g_16u_px, h264_interpolate_luma_type_h_16u_px,
    h264_interpolate_luma_type_i_16u_px, h264_interpolate_luma_type_j_16u_px, h264_interpolate_luma_type_k_16u_px,
    h264_interpolate_luma_type_n_16u_px, h264_interpolate_luma_type_p_16u_px, h264_interpolate_luma_type_q_16u_px,
    h264_interpolate_luma_type_r_16u_px};

constexpr H264ChromaKernel<u8> h264_interpolate_chroma_type_table_8u_pxmx[4] = {
    h264_interpolate_chroma_type_00_8u_px, h264_interpolate_chroma_type_0x_8u_px, h264_interpolate_chroma_type_y0_8u_px,
    h264_interpolate_chroma_type_yx_8u_px};

constexpr H264ChromaKernel<u16> h264_interpolate_chroma_type_table_16u_pxmx[4] = {
    h264_interpolate_chroma_type_00_16u_px, h264_interpolate_chroma_type_0x_16u_px,
    h264_interpolate_chroma_type_y0_16u_px, h264_interpolate_chroma_type_yx_16u_px};

constexpr H264ChromaPairsKernel h264_interpolate_chroma_type_table_nv12touv_8u_pxmx[4] = {
    h264_interpolate_chroma_type_nv12touv_00_8u_px, h264_interpolate_chroma_type_nv12touv_0x_8u_px,
    h264_interpolate_chroma_type_nv12touv_y0_8u_px, h264_interpolate_chroma_type_nv12touv_yx_8u_px};

}  // namespace zvp

using namespace zvp;

namespace {

// The records cross the boundary of the library: their layout is fixed. srcStep is 32 bits of a 64-bit slot; the upper
// half, which a caller may have filled with anything or with the sign of a 64-bit value, is not read.
static_assert(sizeof(H264InterpolateBlock8u) == 80 && sizeof(H264InterpolateBlock16u) == 80);
template <class Record>
constexpr bool hasBlockLayout() {
  return offsetof(Record, pSrc) == 0 && offsetof(Record, srcStep) == 16 && sizeof(Record::srcStep) == 4 &&
         offsetof(Record, pDst) == 24 && offsetof(Record, dstStep) == 40 && offsetof(Record, frameSize) == 44 &&
         offsetof(Record, blockSize) == 52 && offsetof(Record, blockPos) == 60 && offsetof(Record, motionVector) == 68;
}
static_assert(hasBlockLayout<H264InterpolateBlock8u>() && hasBlockLayout<H264InterpolateBlock16u>());
static_assert(offsetof(H264InterpolateBlock16u, bitDepth) == 76);
static_assert(sizeof(H264Interpolate16u) == 48 && offsetof(H264Interpolate16u, pSrc) == 0 &&
              offsetof(H264Interpolate16u, srcStep) == 8 && offsetof(H264Interpolate16u, pDst) == 16 &&
              offsetof(H264Interpolate16u, dstStep) == 24 && offsetof(H264Interpolate16u, dx) == 28 &&
              offsetof(H264Interpolate16u, dy) == 32 && offsetof(H264Interpolate16u, roiSize) == 36 &&
              offsetof(H264Interpolate16u, bitDepth) == 44);

// The reference area of a block along one axis.
struct Axis {
  s32 fraction, needed;  // needed: samples of the area
  s64 first, whole;      // where the area begins, and the block itself without the fraction
  bool crossesLow, crossesHigh;
};

// A filter at a fractional position takes before samples ahead of the block, and margin samples more than the block.
struct Filter {
  int fractionBits, before, margin;
};
constexpr Filter lumaFilter = {2, 2, 5}, chromaFilter = {3, 0, 1};

// In 64 bits: no vector, however wild, wraps back into the frame.
Axis axis(Filter filter, s32 vector, s32 position, s32 size, s32 frame) {
  Axis a;
  a.fraction = vector & ((1 << filter.fractionBits) - 1);
  a.whole = s64(vector >> filter.fractionBits) + position;
  a.first = a.whole - (a.fraction != 0 ? filter.before : 0);
  a.needed = wrapAdd(size, a.fraction != 0 ? filter.margin : 0);
  a.crossesLow = a.first < 0;
  a.crossesHigh = frame < a.needed + a.first;
  return a;
}

struct Area {
  Axis x, y;
  s32 mask;
};

template <class Record>
Area areaOf(Filter filter, const Record& r) {
  const Axis x = axis(filter, r.motionVector.x, r.blockPos.x, r.blockSize.width, r.frameSize.width);
  const Axis y = axis(filter, r.motionVector.y, r.blockPos.y, r.blockSize.height, r.frameSize.height);
  const s32 mask = (x.crossesLow ? edgeLeft : 0) | (x.crossesHigh ? edgeRight : 0) | (y.crossesLow ? edgeTop : 0) |
                   (y.crossesHigh ? edgeBottom : 0);
  return {x, y, mask};
}

constexpr s32 depthOf(const H264InterpolateBlock8u&) { return 8; }
s32 depthOf(const H264InterpolateBlock16u& r) { return r.bitDepth; }

template <class T, class Record>
H264KernelArgs<T> blockArgs(const Record& r) {
  H264KernelArgs<T> args{};
  args.srcStep = r.srcStep;
  args.pDst = r.pDst[0];
  args.dstStep = r.dstStep;
  args.width = r.blockSize.width;
  args.height = r.blockSize.height;
  args.bitDepth = depthOf(r);
  return args;
}

// What the edge route needs besides.
template <class T, class Record>
void addArea(H264KernelArgs<T>& args, const Record& r, const Area& area) {
  constexpr s64 low = INT32_MIN, high = INT32_MAX;  // so far out, every sample is the edge's
  args.pSrc = r.pSrc[0];
  args.x0 = s32(std::clamp(area.x.first, low, high));
  args.y0 = s32(std::clamp(area.y.first, low, high));
  args.needWidth = area.x.needed;
  args.needHeight = area.y.needed;
  args.frameWidth = r.frameSize.width;
  args.frameHeight = r.frameSize.height;
}

bool isEmpty(zvpSize size) { return size.width == 0 || size.height <= 0; }

template <class Record>
bool isZeroVector(const Record& r) {
  return (r.motionVector.x | r.motionVector.y) == 0;
}

template <class T, class Record>
zvpStatus lumaBlock(const Record* pRecord, zvpStatus (*boundary)(s32, H264KernelArgs<T>*)) {
  if (anyNull(pRecord)) return zvpStatusNullPointer;
  const Record& r = *pRecord;
  if (anyNull(r.pSrc[0], r.pDst[0])) return zvpStatusNullPointer;
  if (checkLuma8u(0, 0, r.blockSize) != zvpStatusOk) return zvpStatusBadSize;
  if (isEmpty(r.blockSize)) return zvpStatusOk;
  H264KernelArgs<T> args = blockArgs<T>(r);
  if (isZeroVector(r)) {  // no test against the frame: required
    args.pSrc = r.pSrc[0] + std::ptrdiff_t(r.blockPos.y) * r.srcStep + r.blockPos.x;
    return runLuma(args);
  }
  const Area area = areaOf(lumaFilter, r);
  args.kernelIndex = area.y.fraction * 4 | area.x.fraction;
  if (area.mask != 0) {
    addArea(args, r, area);
    return boundary(area.mask, &args);
  }
  args.pSrc = r.pSrc[0] + area.y.whole * r.srcStep + area.x.whole;
  return runLuma(args);
}

template <class T, class Record>
zvpStatus chromaBlock(const Record* pRecord, zvpStatus (*boundary)(s32, H264KernelArgs<T>*)) {
  if (anyNull(pRecord)) return zvpStatusNullPointer;
  const Record& r = *pRecord;
  if (anyNull(r.pSrc[0], r.pSrc[1], r.pDst[0], r.pDst[1])) return zvpStatusNullPointer;
  if (checkChroma8u(0, 0, r.blockSize) != zvpStatusOk) return zvpStatusBadSize;
  if (isEmpty(r.blockSize)) return zvpStatusOk;
  H264KernelArgs<T> args = blockArgs<T>(r);
  const bool zeroVector = isZeroVector(r);  // no test against the frame: required
  const Area area = areaOf(chromaFilter, r);
  args.dx = area.x.fraction;
  args.dy = area.y.fraction;
  args.kernelIndex = chromaKernelIndex(args.dx, args.dy);
  if (!zeroVector && area.mask != 0) {
    addArea(args, r, area);
    args.pSrcSecond = r.pSrc[1];
    args.pDstSecond = r.pDst[1];
    return boundary(area.mask, &args);
  }
  for (int plane = 0; plane < 2; ++plane) {
    args.pSrc = r.pSrc[plane] + area.y.whole * r.srcStep + area.x.whole;
    args.pDst = r.pDst[plane];
    runChroma(args);
  }
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiInterpolateLuma_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                          zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkLuma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  if ((dx | dy) == 0) [[likely]]  // most blocks do not move by fractions
    return h264_interpolate_luma_type_0_8u_px(pSrc, srcStep, pDst, dstStep, roiSize);
  return h264_interpolate_luma_type_table_8u_pxmx[dy * 4 + dx](pSrc, srcStep, pDst, dstStep, roiSize);
}

zvpStatus zvpiInterpolateChroma_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                            zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  if ((dx | dy) == 0) [[likely]]
    return h264_interpolate_chroma_type_00_8u_px(pSrc, srcStep, pDst, dstStep, roiSize, {});
  return h264_interpolate_chroma_type_table_8u_pxmx[chromaKernelIndex(dx, dy)](pSrc, srcStep, pDst, dstStep, roiSize,
                                                                               {dx, dy});
}

zvpStatus zvpiInterpolateChroma_H264_8u_C2P2R(const u8* pSrc, s32 srcStep, u8* pDstU, u8* pDstV, s32 dstStep, s32 dx,
                                              s32 dy, zvpSize roiSize) {
  if (anyNull(pSrc, pDstU, pDstV)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  return h264_interpolate_chroma_type_table_nv12touv_8u_pxmx[chromaKernelIndex(dx, dy)](pSrc, srcStep, pDstU, pDstV,
                                                                                        dstStep, roiSize, {dx, dy});
}

zvpStatus zvpiInterpolateLuma_H264_16u_C1R(const H264Interpolate16u* pRecord) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  const H264Interpolate16u& r = *pRecord;
  if (const zvpStatus status = checkLuma16u(r); status != zvpStatusOk) return status;
  return InterpolFnTbl_16u[r.dx * 4 + r.dy](r.pSrc, r.srcStep, r.pDst, r.dstStep, r.roiSize, r.bitDepth);
}

// The two-dimensional formula for every fraction, so the next column and row are read in each case: required.
zvpStatus zvpiInterpolateChroma_H264_16u_C1R(const H264Interpolate16u* pRecord) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  const H264Interpolate16u& r = *pRecord;
  if (const zvpStatus status = checkChroma16u(r); status != zvpStatusOk) return status;
  return h264_interpolate_chroma_type_yx_16u_px(r.pSrc, r.srcStep, r.pDst, r.dstStep, r.roiSize, {r.dx, r.dy});
}

zvpStatus zvpiInterpolateLumaBlock_H264_8u_P1R(const H264InterpolateBlock8u* pRecord) {
  return lumaBlock<u8>(pRecord, zvpiInterpolateBoundaryLumaBlock_H264_8u);
}

zvpStatus zvpiInterpolateLumaBlock_H264_16u_P1R(const H264InterpolateBlock16u* pRecord) {
  return lumaBlock<u16>(pRecord, zvpiInterpolateBoundaryLumaBlock_H264_16u);
}

zvpStatus zvpiInterpolateChromaBlock_H264_8u_P2R(const H264InterpolateBlock8u* pRecord) {
  return chromaBlock<u8>(pRecord, zvpiInterpolateBoundaryChromaBlock_H264_8u);
}

zvpStatus zvpiInterpolateChromaBlock_H264_16u_P2R(const H264InterpolateBlock16u* pRecord) {
  return chromaBlock<u16>(pRecord, zvpiInterpolateBoundaryChromaBlock_H264_16u);
}

// Positions and the frame's width count pairs. Only the first pointers are tested: required.
zvpStatus zvpiInterpolateChromaBlock_H264_8u_C2P2R(const H264InterpolateBlock8u* pRecord) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc[0], pRecord->pDst[0])) return zvpStatusNullPointer;
  const H264InterpolateBlock8u& r = *pRecord;
  if (checkChroma8u(0, 0, r.blockSize) != zvpStatusOk) return zvpStatusBadSize;
  if (isEmpty(r.blockSize)) return zvpStatusOk;
  H264KernelArgs<u8> args = blockArgs<u8>(r);
  args.pDstSecond = r.pDst[1];
  const Area area = areaOf(chromaFilter, r);
  args.dx = area.x.fraction;
  args.dy = area.y.fraction;
  args.kernelIndex = chromaKernelIndex(args.dx, args.dy);
  if (!isZeroVector(r) && area.mask != 0) {
    addArea(args, r, area);
    return zvpiInterpolateBoundaryChromaBlock_NV12_H264_C2P2_8u(area.mask, &args);
  }
  args.pSrc = r.pSrc[0] + area.y.whole * r.srcStep + 2 * area.x.whole;
  return runChromaPairs(args);
}
