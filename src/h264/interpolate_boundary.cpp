// Interpolation beyond the edges of a picture: the route of the Block entries by way of a scratch block, the Top and
// Bottom entries, the expansion of a plane into its margin; and the mean of two predictions.
#include <array>

#include "entry.h"
#include "h264/interpolate.h"
#include "h264/interpolate_boundary_kernels.h"
#include "h264/pieces.h"

namespace zvp {

namespace {

template <class T>
using ReadFn = void (*)(H264KernelArgs<T>*);

// Rows that the scratch blocks are made for; taller blocks go band by band.
constexpr int bandRows = 16;
// A luma row of 28 samples and 5 more, a chroma row of 14 or 16 and 4 more, each rounded up to 16.
constexpr int scratchStep = 48;
template <class T>
struct Scratch {
  alignas(32) T samples[(bandRows + 5) * scratchStep + boundary::overshoot + 1];
};

constexpr auto read_data_through_boundary_none_8u = boundary::readSlot<u8, u8, 0>;
constexpr auto read_data_through_boundary_left_8u_px = boundary::readSlot<u8, u8, 1>;
constexpr auto read_data_through_boundary_right_8u_px = boundary::readSlot<u8, u8, 2>;
constexpr auto read_data_through_boundary_left_right_8u_px = boundary::readSlot<u8, u8, 3>;
constexpr auto read_data_through_boundary_top_8u_px = boundary::readSlot<u8, u8, 4>;
constexpr auto read_data_through_boundary_top_left_8u_px = boundary::readSlot<u8, u8, 5>;
constexpr auto read_data_through_boundary_top_right_8u_px = boundary::readSlot<u8, u8, 6>;
constexpr auto read_data_through_boundary_top_left_right_8u_px = boundary::readSlot<u8, u8, 7>;
constexpr auto read_data_through_boundary_bottom_8u_px = boundary::readSlot<u8, u8, 8>;
constexpr auto read_data_through_boundary_bottom_left_8u_px = boundary::readSlot<u8, u8, 9>;
constexpr auto read_data_through_boundary_bottom_right_8u_px = boundary::readSlot<u8, u8, 10>;
constexpr auto read_data_through_boundary_bottom_left_right_8u_px = boundary::readSlot<u8, u8, 11>;
constexpr auto read_data_through_boundary_top_bottom_8u_px = boundary::readSlot<u8, u8, 12>;
constexpr auto read_data_through_boundary_top_bottom_left_8u_px = boundary::readSlot<u8, u8, 13>;
constexpr auto read_data_through_boundary_top_bottom_right_8u_px = boundary::readSlot<u8, u8, 14>;
constexpr auto read_data_through_boundary_top_bottom_left_right_8u_px = boundary::readSlot<u8, u8, 15>;

// Index: the edge mask.
constexpr ReadFn<u8> read_data_through_boundary_table_8u_pxmx[16] = {
    read_data_through_boundary_none_8u,
    read_data_through_boundary_left_8u_px,
    read_data_through_boundary_right_8u_px,
    read_data_through_boundary_left_right_8u_px,
    read_data_through_boundary_top_8u_px,
    read_data_through_boundary_top_left_8u_px,
    read_data_through_boundary_top_right_8u_px,
    read_data_through_boundary_top_left_right_8u_px,
    read_data_through_boundary_bottom_8u_px,
    read_data_through_boundary_bottom_left_8u_px,
    read_data_through_boundary_bottom_right_8u_px,
    read_data_through_boundary_bottom_left_right_8u_px,
    read_data_through_boundary_top_bottom_8u_px,
    read_data_through_boundary_top_bottom_left_8u_px,
    read_data_through_boundary_top_bottom_right_8u_px,
    read_data_through_boundary_top_bottom_left_right_8u_px};

// The same slots for interleaved pairs and for 16-bit samples.
template <class T, class Unit>
struct ReadTable {
  template <s32... Mask>
  static constexpr std::array<ReadFn<T>, 16> make(std::integer_sequence<s32, Mask...>) {
    return {boundary::readSlot<T, Unit, Mask>...};
  }
  static constexpr std::array<ReadFn<T>, 16> slots = make(std::make_integer_sequence<s32, 16>());
};
constexpr auto read_data_through_boundary_table_nv12_8u_pxmx = ReadTable<u8, u16>::slots;
constexpr auto read_data_through_boundary_table_16u_pxmx = ReadTable<u16, u16>::slots;

s32 zvpiReadDataBlockThroughBoundary_8u(s32 mask, H264KernelArgs<u8>* pArgs) {
  read_data_through_boundary_table_8u_pxmx[mask](pArgs);
  return 0;
}
s32 zvpiReadDataBlockThroughBoundary_16u(s32 mask, H264KernelArgs<u16>* pArgs) {
  read_data_through_boundary_table_16u_pxmx[std::size_t(mask)](pArgs);
  return 0;
}
s32 zvpiReadDataBlockThroughBoundary_NV12_8u(s32 mask, H264KernelArgs<u8>* pArgs) {
  read_data_through_boundary_table_nv12_8u_pxmx[std::size_t(mask)](pArgs);
  return 0;
}

// Runs body(mask) for each band of a block, the record being the band's.
template <class T, class Body>
void inBands(s32 mask, H264KernelArgs<T>* pArgs, Body body) {
  const H264KernelArgs<T> whole = *pArgs;
  const s32 margin = wrapSub(whole.needHeight, whole.height);
  for (s64 y = 0; y < whole.height; y += bandRows) {
    *pArgs = whole;
    pArgs->height = s32(std::min(s64(bandRows), whole.height - y));
    pArgs->needHeight = pArgs->height + margin;
    pArgs->y0 = s32(std::min(whole.y0 + y, s64(INT32_MAX)));
    pArgs->pDst += y * whole.dstStep;
    if (whole.pDstSecond != nullptr) pArgs->pDstSecond += y * whole.dstStep;
    // The sign that selects one of two opposite edges is that of the whole block's position.
    body(y > 0 && whole.y0 < 0 ? mask & ~edgeBottom : mask);
  }
}

// Reads into the scratch, then makes it the source and gives the destination back. step counts samples.
template <class T>
void readIntoScratch(s32 (*read)(s32, H264KernelArgs<T>*), s32 mask, H264KernelArgs<T>* pArgs, T* scratch, s32 step) {
  T* const dst = pArgs->pDst;
  const s64 dstStep = pArgs->dstStep;
  pArgs->pDst = scratch;
  pArgs->dstStep = step;
  read(mask, pArgs);
  pArgs->pSrc = scratch;
  pArgs->srcStep = step;
  pArgs->pDst = dst;
  pArgs->dstStep = dstStep;
}

template <class T>
zvpStatus boundaryLuma(s32 (*read)(s32, H264KernelArgs<T>*), s32 mask, H264KernelArgs<T>* pArgs) {
  Scratch<T> scratch;
  inBands(mask, pArgs, [&](s32 bandMask) {
    const s32 step = (pArgs->needWidth + 15) & ~15, index = pArgs->kernelIndex;
    readIntoScratch(read, bandMask, pArgs, scratch.samples, step);
    pArgs->pSrc += ((index & 12) != 0 ? 2 * step : 0) + ((index & 3) != 0 ? 2 : 0);
    runLuma(*pArgs);
  });
  return zvpStatusOk;
}

template <class T>
zvpStatus boundaryChroma(s32 (*read)(s32, H264KernelArgs<T>*), s32 mask, H264KernelArgs<T>* pArgs) {
  Scratch<T> scratch;
  const H264KernelArgs<T> both = *pArgs;
  for (int plane = 0; plane < 2; ++plane) {
    *pArgs = both;
    if (plane == 1) {
      pArgs->pSrc = both.pSrcSecond;
      pArgs->pDst = both.pDstSecond;
    }
    inBands(mask, pArgs, [&](s32 bandMask) {
      readIntoScratch(read, bandMask, pArgs, scratch.samples, 16);
      runChroma(*pArgs);
    });
  }
  return zvpStatusOk;
}

}  // namespace

zvpStatus zvpiInterpolateBoundaryLumaBlock_H264_8u(s32 mask, H264KernelArgs<u8>* pArgs) {
  return boundaryLuma<u8>(zvpiReadDataBlockThroughBoundary_8u, mask, pArgs);
}

zvpStatus zvpiInterpolateBoundaryLumaBlock_H264_16u(s32 mask, H264KernelArgs<u16>* pArgs) {
  return boundaryLuma<u16>(zvpiReadDataBlockThroughBoundary_16u, mask, pArgs);
}

zvpStatus zvpiInterpolateBoundaryChromaBlock_H264_8u(s32 mask, H264KernelArgs<u8>* pArgs) {
  return boundaryChroma<u8>(zvpiReadDataBlockThroughBoundary_8u, mask, pArgs);
}

zvpStatus zvpiInterpolateBoundaryChromaBlock_H264_16u(s32 mask, H264KernelArgs<u16>* pArgs) {
  return boundaryChroma<u16>(zvpiReadDataBlockThroughBoundary_16u, mask, pArgs);
}

zvpStatus zvpiInterpolateBoundaryChromaBlock_NV12_H264_C2P2_8u(s32 mask, H264KernelArgs<u8>* pArgs) {
  Scratch<u8> scratch;
  inBands(mask, pArgs, [&](s32 bandMask) {
    readIntoScratch(zvpiReadDataBlockThroughBoundary_NV12_8u, bandMask, pArgs, scratch.samples, 32);
    runChromaPairs(*pArgs);
  });
  return zvpStatusOk;
}

}  // namespace zvp

using namespace zvp;

namespace {

// What a Top or Bottom entry copies around the block.
struct Surround {
  int left, columns, above, rows;  // columns and rows: of both sides together
};
Surround lumaSurround(s32 dx, s32 dy) { return {dx != 0 ? 2 : 0, dx != 0 ? 5 : 0, dy != 0 ? 2 : 0, dy != 0 ? 5 : 0}; }
// Four columns where one would do: required.
Surround chromaSurround(s32 dx, s32 dy) { return {0, dx != 0 ? 4 : 0, 0, dy != 0 ? 1 : 0}; }

// Copies the block with its surround, row j of the copy being row sourceRow(j) of the source, and interpolates that:
// run(place in the copy, its step, place in the destination, height).
template <class T, class SourceRow, class Run>
zvpStatus interpolateCopy(Surround around, const T* pSrc, s32 srcStep, T* pDst, s32 dstStep, zvpSize size,
                          SourceRow sourceRow, Run run) {
  if (size.width == 0) return zvpStatusOk;
  Scratch<T> scratch;
  const T* const block = scratch.samples + around.above * scratchStep + around.left;
  const int rowBytes = (size.width + around.columns) * int(sizeof(T));
  for (s64 y = 0; y < size.height; y += bandRows) {
    const s32 height = s32(std::min(s64(bandRows), size.height - y));
    for (s32 row = 0; row < height + around.rows; ++row) {
      const T* const from = pSrc + sourceRow(y + row) * srcStep - around.left;
      boundary::copyBytes(reinterpret_cast<u8*>(scratch.samples + row * scratchStep), reinterpret_cast<const u8*>(from),
                          rowBytes);
    }
    run(block, scratchStep, pDst + y * dstStep, zvpSize{size.width, height});
  }
  return zvpStatusOk;
}

// The row that stands at row j of a copy that begins above rows over the block. Rows before the first valid one, or
// behind the last, repeat it.
auto lumaTopRow(s32 outPixels, int above) {
  return [=](s64 j) { return std::max(j - above, s64(outPixels)); };
}
auto bottomRow(s32 outPixels, int above, s32 height) {
  return [=](s64 j) { return std::min(j - above, s64(height) - outPixels - 1); };
}
// With negative outPixels the copy begins that many rows higher: required, and unlike luma.
auto chromaTopRow(s32 outPixels) {
  return [=](s64 j) { return outPixels < 0 ? j + outPixels : std::max(j, s64(outPixels)); };
}

template <class SourceRow>
zvpStatus own_InterpolateLuma_H264_8u(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy, zvpSize size,
                                      SourceRow sourceRow) {
  return interpolateCopy(lumaSurround(dx, dy), pSrc, srcStep, pDst, dstStep, size, sourceRow,
                         [=](const u8* block, s32 step, u8* dst, zvpSize band) {
                           h264_interpolate_luma_type_table_8u_pxmx[dy * 4 + dx](block, step, dst, dstStep, band);
                         });
}

template <class SourceRow>
zvpStatus own_InterpolateLuma_H264_16u(const H264Interpolate16u& r, SourceRow sourceRow) {
  return interpolateCopy(lumaSurround(r.dx, r.dy), r.pSrc, r.srcStep, r.pDst, r.dstStep, r.roiSize, sourceRow,
                         [&](const u16* block, s32 step, u16* dst, zvpSize band) {
                           h264_interpolate_luma_type_table_16u_pxmx[r.dy * 4 + r.dx](block, step, dst, r.dstStep, band,
                                                                                      r.bitDepth);
                         });
}

template <class SourceRow>
zvpStatus own_InterpolateChroma_H264_8u(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                        zvpSize size, SourceRow sourceRow) {
  const auto kernel = h264_interpolate_chroma_type_table_8u_pxmx[chromaKernelIndex(dx, dy)];
  return interpolateCopy(chromaSurround(dx, dy), pSrc, srcStep, pDst, dstStep, size, sourceRow,
                         [=](const u8* block, s32 step, u8* dst, zvpSize band) {
                           kernel(block, step, dst, dstStep, band, {dx, dy});
                         });
}

template <class SourceRow>
zvpStatus own_InterpolateChroma_H264_16u(const H264Interpolate16u& r, SourceRow sourceRow) {
  const auto kernel = h264_interpolate_chroma_type_table_16u_pxmx[chromaKernelIndex(r.dx, r.dy)];
  return interpolateCopy(chromaSurround(r.dx, r.dy), r.pSrc, r.srcStep, r.pDst, r.dstStep, r.roiSize, sourceRow,
                         [&](const u16* block, s32 step, u16* dst, zvpSize band) {
                           kernel(block, step, dst, r.dstStep, band, {r.dx, r.dy});
                         });
}

// (src1 + src2 + 1) >> 1. The destination may be one of the sources.
template <int W>
ZVP_INLINE void averageColumns(const u8* src1, std::ptrdiff_t src1Step, const u8* src2, std::ptrdiff_t src2Step,
                               u8* dst, std::ptrdiff_t dstStep, int height) {
  for (int y = 0; y < height; ++y, src1 += src1Step, src2 += src2Step, dst += dstStep)
    simd::storeBytes<W>(dst, average(simd::loadBytes<simd::U8<16>, W>(src1), simd::loadBytes<simd::U8<16>, W>(src2)));
}

zvpStatus averageBlock(const u8* pSrc1, const u8* pSrc2, u8* pDst, u32 width, u32 height, std::ptrdiff_t src1Step,
                       std::ptrdiff_t src2Step, std::ptrdiff_t dstStep) {
  if (anyNull(pSrc1, pSrc2, pDst)) return zvpStatusNullPointer;
  if (width < 2 || width > 16 || height < 2 || height > 16) return zvpStatusBadSize;
  forEachPiece<16, 1>(int(width), [=](auto w, int x) {
    averageColumns<w>(pSrc1 + x, src1Step, pSrc2 + x, src2Step, pDst + x, dstStep, int(height));
  });
  return zvpStatusOk;
}

// The rows that an expansion treats: every row of a frame, or every second one of a field.
struct Rows {
  u8* first;
  std::ptrdiff_t step;
  s64 count, above, below;
};

// A width below 0 passes the checks; a count below 1 is then nothing to copy. With a step below the width of a row and
// its margins the rows overlap.
void copyRow(u8* dst, const u8* src, s64 count) {
  if (count > 0) std::memmove(dst, src, std::size_t(count));
}

void expand(const Rows& rows, s64 width, s64 margin) {
  u8* const last = rows.first + (rows.count - 1) * rows.step;
  for (s64 k = 1; k <= rows.below; ++k) copyRow(last + k * rows.step, last, width);
  for (s64 k = 0; k < rows.count + rows.below; ++k) {
    u8* const row = rows.first + k * rows.step;
    const u8 left = row[0], right = row[width - 1];
    std::memset(row - margin, left, std::size_t(margin));
    std::memset(row + width, right, std::size_t(margin));
  }
  for (s64 k = 1; k <= rows.above; ++k)
    copyRow(rows.first - k * rows.step - margin, rows.first - margin, width + 2 * margin);
}

}  // namespace

zvpStatus zvpiInterpolateLumaTop_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                             s32 outPixels, zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkLuma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  return own_InterpolateLuma_H264_8u(pSrc, srcStep, pDst, dstStep, dx, dy, roiSize,
                                     lumaTopRow(outPixels, dy != 0 ? 2 : 0));
}

zvpStatus zvpiInterpolateLumaBottom_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                                s32 outPixels, zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkLuma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  return own_InterpolateLuma_H264_8u(pSrc, srcStep, pDst, dstStep, dx, dy, roiSize,
                                     bottomRow(outPixels, dy != 0 ? 2 : 0, roiSize.height));
}

zvpStatus zvpiInterpolateChromaTop_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                               s32 outPixels, zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  return own_InterpolateChroma_H264_8u(pSrc, srcStep, pDst, dstStep, dx, dy, roiSize, chromaTopRow(outPixels));
}

zvpStatus zvpiInterpolateChromaBottom_H264_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, s32 dx, s32 dy,
                                                  s32 outPixels, zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma8u(dx, dy, roiSize); status != zvpStatusOk) return status;
  return own_InterpolateChroma_H264_8u(pSrc, srcStep, pDst, dstStep, dx, dy, roiSize,
                                       bottomRow(outPixels, 0, roiSize.height));
}

zvpStatus zvpiInterpolateLumaTop_H264_16u_C1R(const H264Interpolate16u* pRecord, s32 outPixels) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkLuma16u(*pRecord); status != zvpStatusOk) return status;
  return own_InterpolateLuma_H264_16u(*pRecord, lumaTopRow(outPixels, pRecord->dy != 0 ? 2 : 0));
}

zvpStatus zvpiInterpolateLumaBottom_H264_16u_C1R(const H264Interpolate16u* pRecord, s32 outPixels) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkLuma16u(*pRecord); status != zvpStatusOk) return status;
  return own_InterpolateLuma_H264_16u(*pRecord,
                                      bottomRow(outPixels, pRecord->dy != 0 ? 2 : 0, pRecord->roiSize.height));
}

zvpStatus zvpiInterpolateChromaTop_H264_16u_C1R(const H264Interpolate16u* pRecord, s32 outPixels) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma16u(*pRecord); status != zvpStatusOk) return status;
  return own_InterpolateChroma_H264_16u(*pRecord, chromaTopRow(outPixels));
}

zvpStatus zvpiInterpolateChromaBottom_H264_16u_C1R(const H264Interpolate16u* pRecord, s32 outPixels) {
  if (anyNull(pRecord) || anyNull(pRecord->pSrc, pRecord->pDst)) return zvpStatusNullPointer;
  if (const zvpStatus status = checkChroma16u(*pRecord); status != zvpStatusOk) return status;
  return own_InterpolateChroma_H264_16u(*pRecord, bottomRow(outPixels, 0, pRecord->roiSize.height));
}

zvpStatus zvpiExpandPlane_H264_8u_C1R(u8* pPlane, s32 width, s32 height, s32 step, u32 expandPixels, u32 frameKind) {
  if (anyNull(pPlane)) return zvpStatusNullPointer;
  if ((height & 1) != 0 || height < 2 || width == 0) return zvpStatusBadSize;
  if (expandPixels == 0) return zvpStatusOk;
  if (frameKind > 2) return zvpStatusBadArgument;
  const s64 e = expandPixels, lines = height / 2;
  const std::ptrdiff_t one = step;
  // Of an odd margin the top field has one row more below, the bottom field one more above.
  const Rows rows = frameKind == 0   ? Rows{pPlane, one, height, e, e}
                    : frameKind == 1 ? Rows{pPlane, 2 * one, lines, e / 2, (e + 1) / 2}
                                     : Rows{pPlane + one, 2 * one, lines, (e + 1) / 2, e / 2};
  expand(rows, width, e);
  return zvpStatusOk;
}

zvpStatus zvpiInterpolateBlock_H264_8u_P2P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, u32 width, u32 height,
                                             s32 step) {
  return averageBlock(pSrc1, pSrc2, pDst, width, height, step, step, step);
}

zvpStatus zvpiInterpolateBlock_H264_8u_P3P1R(const u8* pSrc1, const u8* pSrc2, u8* pDst, u32 width, u32 height,
                                             s32 src1Step, s32 src2Step, s32 dstStep) {
  return averageBlock(pSrc1, pSrc2, pDst, width, height, src1Step, src2Step, dstStep);
}
