// What the library's segment decoders and inverse quantizers ask their caller for.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

namespace dv {

using CoefficientTable = std::array<std::int16_t, 64>;  // in the order of a block, row by row

class Tables {
 public:
  Tables();

  // Of the AC codes.
  const std::uint32_t* huffman() const { return huffman_.get(); }
  // The scan orders of the 8-8-DCT and of the 2-4-8-DCT.
  std::uint32_t scans[2][64];

  // By the mode of the DCT: a coefficient is amplitude * 64 >> 3 times both >> 16.
  CoefficientTable weights[2];
  // By mode, class number and quantization number.
  CoefficientTable steps[2][4][16];
  // The same as one factor, for a faster and coarser dequantization: amplitude * 64 times it >> 14.
  CoefficientTable factors[2][4][16];

  // 100 Mb/s, by 1080 or 720 lines and luma or chroma, and by class number and quantization number: a coefficient is
  // the amplitude times both >> 5.
  CoefficientTable highWeights[2][2];
  std::int32_t highSteps[4][16];

  static const Tables& instance();

 private:
  struct FreeHuffman {
    void operator()(std::uint32_t* table) const;
  };
  std::unique_ptr<std::uint32_t, FreeHuffman> huffman_;
};

}  // namespace dv
