// Internal memory and image primitives. Run lengths and sizes vary with the caller, so these lean on libc.
#include "primitives.h"

#include "entry.h"
#include "zvpcore.h"

using namespace zvp;

namespace {

template <class T> T* allocate(s32 length) {
  return length < 1 ? nullptr : static_cast<T*>(zvpMalloc(std::size_t(length) * sizeof(T)));
}

// Forward in effect: memcpy where the ranges are apart or the destination lies behind, element by element elsewhere.
template <class T> void copyForward(const T* src, T* dst, std::size_t length) {
  const auto from = reinterpret_cast<std::uintptr_t>(src), to = reinterpret_cast<std::uintptr_t>(dst);
  if (to - from >= length * sizeof(T)) {
    std::memmove(dst, src, length * sizeof(T));
    return;
  }
  for (std::size_t i = 0; i < length; ++i) storeAs(dst + i, loadAs<T>(src + i));
}

template <class T> zvpStatus copy(const T* src, T* dst, s32 length) {
  if (anyNull(src, dst)) return zvpStatusNullPointer;
  if (length < 1) return zvpStatusBadSize;
  copyForward(src, dst, std::size_t(length));
  return zvpStatusOk;
}

template <class T> zvpStatus fillBytes(u8 value, T* dst, s32 length) {
  if (anyNull(dst)) return zvpStatusNullPointer;
  if (length < 1) return zvpStatusBadSize;
  std::memset(dst, value, std::size_t(length) * sizeof(T));
  return zvpStatusOk;
}

bool isEmpty(zvpSize size) { return size.width < 1 || size.height < 1; }

// Sums of 2 * R + 1 neighbours along each pixel of a row.
template <int R> void sumAlongRow(const u8* src, s32* sums, s32 width) {
  for (s32 x = 0; x < width; ++x) {
    s32 sum = 0;
    for (int k = -R; k <= R; ++k) sum += src[x + k];
    sums[x] = sum;
  }
}

struct LowpassScale {
  u32 rounding, factor;
  int shift;
};

// R is the radius. The rows' sums roll through 2 * R + 1 buffers. At 5x5 one more buffer keeps the sum of them all,
// the rounding included, so that a row costs two additions and not five.
template <int R> zvpStatus lowpass(const u8* src, std::ptrdiff_t srcStep, u8* dst, std::ptrdiff_t dstStep,
                                   zvpSize size, LowpassScale scale) {
  constexpr int rows = 2 * R + 1;
  constexpr bool separateColumnSum = R > 1;
  const s32 width = size.width;
  s32* buffers[rows + 1] = {};
  const int count = rows + (separateColumnSum ? 1 : 0);
  bool enough = true;
  for (int i = 0; i < count && enough; ++i) enough = (buffers[i] = zvpsMalloc_32s(width)) != nullptr;
  if (enough) {
    for (int i = 0; i < rows - 1; ++i) sumAlongRow<R>(src + (i - R) * srcStep, buffers[i], width);
    s32* const column = buffers[rows];
    if constexpr (separateColumnSum)
      for (s32 x = 0; x < width; ++x) {
        column[x] = s32(scale.rounding);
        for (int i = 0; i < rows - 1; ++i) column[x] += buffers[i][x];
        buffers[rows - 1][x] = 0;
      }
    for (s32 y = 0; y < size.height; ++y) {
      s32* const entering = buffers[(y + rows - 1) % rows];
      if constexpr (separateColumnSum)
        for (s32 x = 0; x < width; ++x) column[x] -= entering[x];
      sumAlongRow<R>(src + R * srcStep, entering, width);
      for (s32 x = 0; x < width; ++x) {
        u32 sum;
        if constexpr (separateColumnSum) {
          sum = u32(column[x] += entering[x]);
        } else {
          sum = scale.rounding;
          for (int i = 0; i < rows; ++i) sum += u32(buffers[i][x]);
        }
        dst[x] = u8((sum * scale.factor) >> scale.shift);
      }
      src += srcStep;
      dst += dstStep;
    }
  }
  for (s32* buffer : buffers)
    if (buffer != nullptr) zvpsFree(buffer);
  return enough ? zvpStatusOk : zvpStatusNoMemory;
}

}  // namespace

u8* zvpsMalloc_8u(s32 length) { return allocate<u8>(length); }
s8* zvpsMalloc_8s(s32 length) { return allocate<s8>(length); }
u16* zvpsMalloc_16u(s32 length) { return allocate<u16>(length); }
s32* zvpsMalloc_32s(s32 length) { return allocate<s32>(length); }
void zvpsFree(void* pointer) { zvpFree(pointer); }
void zvpiFree(void* pointer) { zvpFree(pointer); }

zvpStatus zvpsCopy_8u(const u8* pSrc, u8* pDst, s32 length) { return copy(pSrc, pDst, length); }
zvpStatus zvpsCopy_16s(const s16* pSrc, s16* pDst, s32 length) { return copy(pSrc, pDst, length); }
zvpStatus zvpsZero_8u(u8* pDst, s32 length) { return fillBytes(0, pDst, length); }
zvpStatus zvpsZero_16s(s16* pDst, s32 length) { return fillBytes(0, pDst, length); }
zvpStatus zvpsSet_8u(u8 value, u8* pDst, s32 length) { return fillBytes(value, pDst, length); }

zvpStatus zvpiCopy_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (isEmpty(roiSize)) return zvpStatusBadSize;
  for (std::ptrdiff_t y = 0; y < roiSize.height; ++y)
    copyForward(pSrc + y * srcStep, pDst + y * dstStep, std::size_t(roiSize.width));
  return zvpStatusOk;
}

zvpStatus zvpiSet_8u_C1R(u8 value, u8* pDst, s32 dstStep, zvpSize roiSize) {
  if (anyNull(pDst)) return zvpStatusNullPointer;
  if (isEmpty(roiSize)) return zvpStatusBadSize;
  for (std::ptrdiff_t y = 0; y < roiSize.height; ++y) std::memset(pDst + y * dstStep, value, std::size_t(roiSize.width));
  return zvpStatusOk;
}

zvpStatus zvpiFilterLowpass_8u_C1R(const u8* pSrc, s32 srcStep, u8* pDst, s32 dstStep, zvpSize roiSize, s32 maskSize) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  if (isEmpty(roiSize)) return zvpStatusBadSize;
  if (srcStep < 1 || dstStep < 1) return zvpStatusBadStep;
  switch (maskSize) {
    case 33: return lowpass<1>(pSrc, srcStep, pDst, dstStep, roiSize, {5, 455, 12});
    case 55: return lowpass<2>(pSrc, srcStep, pDst, dstStep, roiSize, {13, 10485, 18});
    default: return zvpStatusBadMaskSize;
  }
}
