// The variable-length codes of macroblock headers and vectors: ISO/IEC 14496-2 tables B-6 to B-8 and B-12, which are
// those of ITU-T H.263 tables 7, 8, 13 and 14 and a few more.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "mpeg4/unit.h"

namespace mpeg4 {

// Codes of at most so many bits. What as many bits begin with is looked up.
template <unsigned longest> class Vlc {
 public:
  struct Code {
    std::string_view bits;
    int value;
  };
  explicit Vlc(std::initializer_list<Code> codes) {
    for (const Code& code : codes) {
      unsigned first = 0;
      for (const char bit : code.bits) first = first << 1 | unsigned(bit == '1');
      const unsigned open = longest - unsigned(code.bits.size());
      for (unsigned i = 0; i < 1u << open; ++i)
        entries_[(first << open) + i] = {std::int8_t(code.value), std::uint8_t(code.bits.size())};
    }
  }
  int read(Unit& in, const char* what) const {
    const Entry entry = entries_[in.peek(longest)];
    if (entry.length == 0) in.damaged(std::string("no code of ") + what);
    in.skip(entry.length);
    return entry.value;
  }

 private:
  struct Entry {
    std::int8_t value = 0;
    std::uint8_t length = 0;
  };
  std::array<Entry, 1u << longest> entries_{};
};

enum class MbType { Inter, InterQ, Inter4V, Intra, IntraQ, Inter4VQ };

inline constexpr int mcbpcStuffing = 127;
extern const Vlc<9> mcbpcOfI;  // 4 * MbType + pattern: 2 Cb, 1 Cr
extern const Vlc<13> mcbpcOfP;
extern const Vlc<6> cbpyOfIntra;  // 8 the first block of luma, 1 the last; of inter macroblocks all are inverted
extern const Vlc<13> motionCode;

// Weights of the first quantization method where a stream brings none (6.3.3), in raster order.
extern const std::uint8_t defaultIntraMatrix[64], defaultInterMatrix[64];

}  // namespace mpeg4
