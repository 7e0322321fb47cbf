#include "dv/segment_decoder.h"

#include <zvpvc.h>

#include <algorithm>
#include <cstring>

namespace dv {

namespace {

// The fields of the words that the library tells of a block.
int classNumber(std::uint32_t parameter) { return parameter >> 4 & 3; }
int dctMode(std::uint32_t parameter) { return parameter >> 6 & 1; }
int quantizer(std::uint32_t parameter) { return parameter >> 16 & 15; }

using StoreFive = zvpStatus (*)(std::int16_t* const*, std::uint8_t* const*, std::int32_t);
using StoreOne = zvpStatus (*)(const std::int16_t*, std::uint8_t*, std::int32_t);
struct Stores {
  StoreFive five;
  StoreOne edge;  // of 4:1:1
};

// By sampling and scale. At an eighth a macroblock of 4:1:1 or 4:2:2 is one row, and there is no step.
constexpr Stores stores[3][5] = {
    {{zvpiYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R, zvpiYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R},
     {zvpiYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, zvpiYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R},
     {zvpiYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R, zvpiYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R},
     {zvpiYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R, zvpiYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R},
     {[](std::int16_t* const* src, std::uint8_t* const* dst, std::int32_t) {
        return zvpiYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(src, dst);
      },
      zvpiYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R}},
    {{zvpiYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R, nullptr}},
    {{zvpiYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R, nullptr},
     {zvpiYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R, nullptr},
     {[](std::int16_t* const* src, std::uint8_t* const* dst, std::int32_t) {
        return zvpiYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(src, dst);
      },
      nullptr}}};

const Stores& storesOf(Sampling sampling, Scale scale) { return stores[int(sampling)][int(scale)]; }

// The mean of a block with this DC, rounded as the transform rounds it.
void keepMean(std::int16_t* block) { block[0] = std::int16_t((block[0] + 128) >> 8); }

// The means of 2x2 samples to the first 16 elements, truncated as the library's reductions are.
void reduceTo4x4(std::int16_t* block) {
  for (int i = 0; i < 16; ++i) {
    const std::int16_t* cell = block + i / 4 * 16 + i % 4 * 2;
    block[i] = std::int16_t((cell[0] + cell[1] + cell[8] + cell[9]) / 4);
  }
}

constexpr int halfWidth = 16, halfHeight = 8;  // of a half of a macroblock of 100 Mb/s

}  // namespace

SegmentDecoder::SegmentDecoder(const System& system, Scale scale)
    // The library reads 100 Mb/s with all its passes or not at all.
    : system_(system), scale_(system.highDefinition && scale == Scale::HalfDraft ? Scale::Half : scale) {
  if (system.highDefinition) elsewhere_.resize(std::size_t(2 * halfHeight) * std::size_t(2 * system.width));
}

void SegmentDecoder::decode(const std::uint8_t* segment, const Place (&places)[5], PackedPicture& picture) {
  readBlocks(segment);
  for (int i = 0; i < 5 * blocksOfMacroblock(); ++i) {
    if (scale_ == Scale::Eighth) keepMean(block(i));
    else if (system_.highDefinition) transformHigh(i);
    else transform(i);
  }
  if (system_.highDefinition) storeHigh(places, picture);
  else store(places, picture);
}

void SegmentDecoder::readBlocks(const std::uint8_t* segment) {
  std::memset(blocks_, 0, sizeof blocks_);
  const std::uint32_t* scans = tables_.scans[0];
  if (system_.highDefinition) {
    zvpiHuffmanDecodeSegment_DV100_8u16s(segment, scans, tables_.huffman(), blocks_, parameters_);
  } else if (scale_ == Scale::HalfDraft || scale_ == Scale::Eighth) {
    const int coefficients = scale_ == Scale::Eighth ? 1 : 64;
    zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(segment, scans, tables_.huffman(), blocks_, parameters_, coefficients);
  } else {
    zvpiHuffmanDecodeSegment_DV_8u16s(segment, scans, tables_.huffman(), blocks_, parameters_);
  }
}

// Coefficients to samples less 128.
void SegmentDecoder::transform(int index) {
  const int inMacroblock = index % 6;
  if (system_.sampling == Sampling::C422 && (inMacroblock == 1 || inMacroblock == 3)) return;  // not in use
  std::int16_t* coefficients = block(index);
  const std::uint32_t parameter = parameters_[index];
  const int mode = dctMode(parameter), c = classNumber(parameter), qno = quantizer(parameter);
  if (scale_ == Scale::HalfDraft) {
    zvpiQuantInv_DV_16s_C1I(coefficients, tables_.factors[mode][c][qno].data());
    if (mode != 0) {
      zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(coefficients);
    } else {
      zvpiDCT8x8Inv_16s_C1I(coefficients);
      reduceTo4x4(coefficients);
    }
    return;
  }
  zvpiQuantWeightBlockInv_DV_16s_C1I(coefficients, tables_.weights[mode].data(), tables_.steps[mode][c][qno].data());
  if (mode != 0) zvpiDCT2x4x8Inv_16s_C1I(coefficients);
  else zvpiDCT8x8Inv_16s_C1I(coefficients);
}

void SegmentDecoder::transformHigh(int index) {
  std::int16_t* coefficients = block(index);
  const std::uint32_t parameter = parameters_[index];
  const bool chroma = index % 8 >= 4;
  zvpiQuantWeightBlockInv_DV100_16s_C1I(coefficients, tables_.highWeights[system_.height == 720][chroma].data(),
                                        tables_.highSteps[classNumber(parameter)][quantizer(parameter)]);
  zvpiDCT8x8Inv_16s_C1I(coefficients);
}

void SegmentDecoder::store(const Place (&places)[5], PackedPicture& picture) {
  std::int16_t* sources[5];
  std::uint8_t* destinations[5];
  for (int m = 0; m < 5; ++m) {
    sources[m] = block(6 * m);
    destinations[m] = picture.at(places[m].x / divisor(scale_), places[m].y / divisor(scale_));
  }
  const Stores& store = storesOf(system_.sampling, scale_);
  if (places[4].edge) {
    // Macroblocks at the edge are the last ones of their segments: the store of five stops ahead of them.
    store.edge(sources[4], destinations[4], picture.step());
    sources[4] = nullptr;
  }
  store.five(sources, destinations, picture.step());
}

// A macroblock is two halves, of 16x8 samples each: one above the other, or the lines of one between those of the other
// where its first block says so, or side by side at the lower edge of the picture.
void SegmentDecoder::storeHigh(const Place (&places)[5], PackedPicture& picture) {
  const int zoom = divisor(scale_);
  std::uint8_t* destinations[10];
  bool fields[5];
  for (int m = 0; m < 5; ++m) {
    const Place& at = places[m];
    std::uint8_t* first = picture.at(at.x / zoom, at.y / zoom);
    fields[m] = dctMode(parameters_[8 * m]) != 0 && !at.edge;
    destinations[2 * m] = first;
    destinations[2 * m + 1] = first + (at.edge     ? 2 * halfWidth / zoom
                                       : fields[m] ? picture.step()
                                                   : halfHeight / zoom * picture.step());
  }
  if (scale_ != Scale::Full)
    // Luma and chroma of each half as a macroblock of 50 Mb/s has them.
    for (int half = 0; half < 10; ++half) {
      const int first = half / 2 * 8, odd = half % 2;
      const int from[6] = {first + 2 * odd, -1, first + 2 * odd + 1, -1, first + 4 + odd, first + 6 + odd};
      for (int i = 0; i < 6; ++i)
        if (from[i] >= 0) std::memcpy(halves_[half] + 64 * i, block(from[i]), 64 * sizeof(std::int16_t));
    }

  // A call stores with one step: the halves with the other one come in a call of their own.
  for (const bool field : {false, true}) {
    if (std::find(std::begin(fields), std::end(fields), field) == std::end(fields)) continue;
    const int step = field ? 2 * picture.step() : picture.step();
    if (scale_ == Scale::Full) {
      std::uint8_t* chosen[10];
      for (int half = 0; half < 10; ++half)
        chosen[half] = fields[half / 2] == field ? destinations[half] : elsewhere_.data();
      zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(blocks_, chosen, step);
      continue;
    }
    std::int16_t* sources[10] = {};
    std::uint8_t* chosen[10] = {};
    int count = 0;
    for (int half = 0; half < 10; ++half) {
      if (fields[half / 2] != field) continue;
      sources[count] = halves_[half];
      chosen[count++] = destinations[half];
    }
    // A store of five ends at the first null pointer.
    for (int i = 0; i < count; i += 5) storesOf(Sampling::C422, scale_).five(sources + i, chosen + i, step);
  }
}

}  // namespace dv
