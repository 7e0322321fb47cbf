// The members that store DV macroblocks, each with its shape and its signature brought to one.
#pragma once

#include <functional>
#include <vector>

#include "reference/dv/store.h"
#include "zvpvc.h"

namespace zvptest {

// How null elements of the arrays of pointers are met.
enum class DvNulls { Tested, EndAtSource, None };

struct DvStore {
  const char* name;
  reference::dv::Chroma chroma;
  reference::dv::Size size;
  DvNulls nulls;
  int count;  // macroblocks, or halves
  bool hasStep;
  // src: one pointer for each macroblock, or one for all halves.
  std::function<zvpStatus(std::int16_t* const* src, std::uint8_t* const* dst, std::int32_t step)> call;
};

inline const std::vector<DvStore>& dvStores() {
  using reference::dv::Chroma;
  using reference::dv::Size;
  using Src = std::int16_t* const*;
  using Dst = std::uint8_t* const*;
  const auto noStep = [](zvpStatus (*member)(Src, Dst)) {
    return [=](Src src, Dst dst, std::int32_t) { return member(src, dst); };
  };
  const auto single = [](zvpStatus (*member)(const std::int16_t*, std::uint8_t*, std::int32_t)) {
    return [=](Src src, Dst dst, std::int32_t step) {
      return member(src ? *src : nullptr, dst ? *dst : nullptr, step);
    };
  };
  const auto halves = [](Src src, Dst dst, std::int32_t step) {
    return zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(src ? *src : nullptr, dst, step);
  };
  constexpr DvNulls tested = DvNulls::Tested, ends = DvNulls::EndAtSource, none = DvNulls::None;
#define ZVP_DV_STORE(NAME, CHROMA, SIZE, NULLS, COUNT, STEP, WRAP)                               \
  {"zvpiYCrCb" #NAME "_16s8u_P3C2R", Chroma::CHROMA, Size::SIZE, NULLS, COUNT, STEP,             \
   WRAP(zvpiYCrCb##NAME##_16s8u_P3C2R)}
  static const std::vector<DvStore> stores = {
      ZVP_DV_STORE(422ToYCbCr422_5MBDV, C422, Full, tested, 5, true, ),
      ZVP_DV_STORE(422ToYCbCr422_ZoomOut2_5MBDV, C422, Half, tested, 5, true, ),
      ZVP_DV_STORE(422ToYCbCr422_ZoomOut4_5MBDV, C422, Quarter, tested, 5, true, ),
      ZVP_DV_STORE(422ToYCbCr422_ZoomOut8_5MBDV, C422, Eighth, tested, 5, false, noStep),
      ZVP_DV_STORE(422ToYCbCr422_8x4x5MB_DV, C422, From4x4, ends, 5, true, ),
      {"zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R", Chroma::EvenHalf100, Size::Full, tested, 10, true,
       halves},
      ZVP_DV_STORE(411ToYCbCr422_5MBDV, C411, Full, ends, 5, true, ),
      ZVP_DV_STORE(411ToYCbCr422_EdgeDV, C411Edge, Full, none, 1, true, single),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut2_5MBDV, C411, Half, ends, 5, true, ),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut2_EdgeDV, C411Edge, Half, none, 1, true, single),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut4_5MBDV, C411, Quarter, ends, 5, true, ),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut4_EdgeDV, C411Edge, Quarter, none, 1, true, single),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut8_5MBDV, C411, Eighth, ends, 5, false, noStep),
      ZVP_DV_STORE(411ToYCbCr422_ZoomOut8_EdgeDV, C411Edge, Eighth, none, 1, true, single),
      ZVP_DV_STORE(411ToYCbCr422_16x4x5MB_DV, C411, From4x4, ends, 5, true, ),
      ZVP_DV_STORE(411ToYCbCr422_8x8MB_DV, C411Edge, From4x4, none, 1, true, single),
      ZVP_DV_STORE(420ToYCbCr422_5MBDV, C420, Full, ends, 5, true, ),
      ZVP_DV_STORE(420ToYCbCr422_ZoomOut2_5MBDV, C420, Half, ends, 5, true, ),
      ZVP_DV_STORE(420ToYCbCr422_ZoomOut4_5MBDV, C420, Quarter, ends, 5, true, ),
      ZVP_DV_STORE(420ToYCbCr422_ZoomOut8_5MBDV, C420, Eighth, ends, 5, true, ),
      ZVP_DV_STORE(420ToYCbCr422_8x8x5MB_DV, C420, From4x4, tested, 5, true, ),
  };
#undef ZVP_DV_STORE
  return stores;
}

// What macroblock i of a member, or half i, comes out as.
inline std::vector<std::uint8_t> dvStored(const DvStore& member, int i, const std::int16_t* src) {
  using reference::dv::Chroma;
  const bool odd = member.chroma == Chroma::EvenHalf100 && i % 2 != 0;
  return reference::dv::store(odd ? Chroma::OddHalf100 : member.chroma, member.size, src);
}

}  // namespace zvptest
