// The H.264 decoder of the examples on any bytes.
#include "h264/decoder.h"

#include "support/decode_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  decodeAnyBytes(*h264::makeDecoder(), data, size);
  return 0;
}
