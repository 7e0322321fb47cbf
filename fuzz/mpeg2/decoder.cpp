// The MPEG-1/2 decoder of the examples on any bytes.
#include "mpeg2/decoder.h"

#include "support/decode_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  decodeAnyBytes(*mpeg2::makeDecoder(), data, size);
  return 0;
}
