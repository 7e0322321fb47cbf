#include "codecs.h"

#include "dv/decoder.h"
#include "h264/decoder.h"
#include "mpeg2/decoder.h"
#include "mpeg4/decoder.h"

namespace zvptool {

const std::vector<Codec>& codecs() {
  static const std::vector<Codec> all = {
      {"H.264", AV_CODEC_ID_H264, "h264", h264::looksLikeStream, h264::makeDecoder},
      {"DV", AV_CODEC_ID_DVVIDEO, "dv", dv::looksLikeStream, dv::makeDecoder, 45},
      {"MPEG-2", AV_CODEC_ID_MPEG2VIDEO, "mpegvideo", mpeg2::looksLikeMpeg2, mpeg2::makeDecoder, 50},
      {"MPEG-1", AV_CODEC_ID_MPEG1VIDEO, "mpegvideo", mpeg2::looksLikeMpeg1, mpeg2::makeDecoder, 50},
      {"MPEG-4 Visual", AV_CODEC_ID_MPEG4, "m4v", mpeg4::looksLikeStream, mpeg4::makeDecoder, 50},
      {"H.263", AV_CODEC_ID_H263, "h263", mpeg4::looksLikeH263, mpeg4::makeH263Decoder, 50},
      {"H.263+", AV_CODEC_ID_H263P, "h263", mpeg4::looksLikeH263, mpeg4::makeH263Decoder, 50},
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
