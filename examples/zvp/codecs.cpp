#include "codecs.h"

#include "dv/decoder.h"
#include "h264/decoder.h"

namespace zvptool {

const std::vector<Codec>& codecs() {
  static const std::vector<Codec> all = {
      {"H.264", AV_CODEC_ID_H264, "h264", h264::looksLikeStream, h264::makeDecoder},
      {"DV", AV_CODEC_ID_DVVIDEO, "dv", dv::looksLikeStream, dv::makeDecoder, 45},
  };
  return all;
}

const Codec* codecOf(AVCodecID id) {
  for (const Codec& codec : codecs())
    if (codec.id == id) return &codec;
  return nullptr;
}

const Codec* codecOfStream(std::span<const std::uint8_t> beginning) {
  for (const Codec& codec : codecs())
    if (codec.looksLikeStream(beginning)) return &codec;
  return nullptr;
}

}  // namespace zvptool
