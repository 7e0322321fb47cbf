// The decoders of MPEG-4 Visual and H.263 of the examples on any bytes. An input that begins like a picture of H.263
// goes to its decoder.
#include "mpeg4/decoder.h"

#include <span>

#include "support/decode_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const bool h263 = mpeg4::looksLikeH263(std::span(data, size));
  decodeAnyBytes(h263 ? *mpeg4::makeH263Decoder() : *mpeg4::makeDecoder(), data, size);
  return 0;
}
