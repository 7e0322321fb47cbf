#include "dv/store_kernels.h"
#include "entry.h"

using namespace zvp;
using namespace zvp::dv;

namespace {

using Store = void (*)(const s16* src, u8* dst, std::ptrdiff_t step);

// Five macroblocks, the two pointers of each tested in turn.
template <Store store>
zvpStatus storeTested(s16* const* ppSrc, u8* const* ppDst, std::ptrdiff_t step) {
  if (anyNull(ppSrc, ppDst)) return zvpStatusNullPointer;
  for (int i = 0; i < 5; ++i) {
    if (anyNull(ppSrc[i], ppDst[i])) return zvpStatusNullPointer;
    store(ppSrc[i], ppDst[i], step);
  }
  return zvpStatusOk;
}

// Five macroblocks, or those before the first null source: required, and no error.
template <Store store>
zvpStatus storeToNull(s16* const* ppSrc, u8* const* ppDst, std::ptrdiff_t step) {
  if (anyNull(ppSrc, ppDst)) return zvpStatusNullPointer;
  for (int i = 0; i < 5 && ppSrc[i] != nullptr; ++i) store(ppSrc[i], ppDst[i], step);
  return zvpStatusOk;
}

template <Store store>
zvpStatus storeOne(const s16* pSrc, u8* pDst, std::ptrdiff_t step) {
  if (anyNull(pSrc, pDst)) return zvpStatusNullPointer;
  store(pSrc, pDst, step);
  return zvpStatusOk;
}

}  // namespace

// ---- 4:2:2

zvpStatus zvpiYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeTested<storeMacroblock<mb422, 1>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeTested<storeMacroblock<mb422, 2>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeTested<storeMacroblock<mb422, 4>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5]) {
  return storeTested<storeMacroblock<mb422, 8>>(ppSrc, ppDst, 0);
}
zvpStatus zvpiYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<layOut<mb422, 4>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(const s16* pSrc, u8* const ppDst[10], s32 dstStep) {
  if (anyNull(pSrc, ppDst)) return zvpStatusNullPointer;
  for (int i = 0; i < 10; ++i) {
    if (anyNull(ppDst[i])) return zvpStatusNullPointer;
    constexpr Store stores[2] = {storeMacroblock<evenHalfDV100, 1>, storeMacroblock<oddHalfDV100, 1>};
    stores[i % 2](pSrc + i / 2 * pairOfHalvesElements, ppDst[i], dstStep);
  }
  return zvpStatusOk;
}

// ---- 4:1:1

zvpStatus zvpiYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb411, 1>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R(const s16* pSrc, u8* pDst, s32 dstStep) {
  return storeOne<storeMacroblock<mb411Edge, 1>>(pSrc, pDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb411, 2>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(const s16* pSrc, u8* pDst, s32 dstStep) {
  return storeOne<storeMacroblock<mb411Edge, 2>>(pSrc, pDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb411, 4>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R(const s16* pSrc, u8* pDst, s32 dstStep) {
  return storeOne<storeMacroblock<mb411Edge, 4>>(pSrc, pDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5]) {
  return storeToNull<storeMacroblock<mb411, 8>>(ppSrc, ppDst, 0);
}
zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R(const s16* pSrc, u8* pDst, s32 dstStep) {
  return storeOne<storeMacroblock<mb411Edge, 8>>(pSrc, pDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<layOut<mb411, 4>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R(const s16* pSrc, u8* pDst, s32 dstStep) {
  return storeOne<layOut<mb411Edge, 4>>(pSrc, pDst, dstStep);
}

// ---- 4:2:0

zvpStatus zvpiYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb420, 1>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb420, 2>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb420, 4>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeToNull<storeMacroblock<mb420, 8>>(ppSrc, ppDst, dstStep);
}
zvpStatus zvpiYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R(s16* const ppSrc[5], u8* const ppDst[5], s32 dstStep) {
  return storeTested<layOut<mb420, 4>>(ppSrc, ppDst, dstStep);
}
