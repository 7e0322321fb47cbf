// The code tables in the form that the library's readers take, and the scans.
#pragma once

#include <cstdint>
#include <memory>

namespace mpeg2 {

struct FreeTable {
  void operator()(std::int32_t* table) const;
};
using Table = std::unique_ptr<std::int32_t, FreeTable>;

struct Tables {
  Table addressIncrement, macroblockType[3], codedBlockPattern, motionCode;  // types of I, P and B pictures
  Table dcSize[2];                                                           // luma, chroma
  Table coefficients[2];                                                     // tables zero and one
  std::int32_t scans[2][256];  // zigzag, alternate; the library asks for 256 entries where streams are not trusted

  static const Tables& instance();

 private:
  Tables();
};

}  // namespace mpeg2
