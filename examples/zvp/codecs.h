// The codecs that the tool decodes: one line each.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "common/decoder.h"

extern "C" {
#include <libavcodec/codec_id.h>
}

namespace zvptool {

struct Codec {
  const char* name;
  AVCodecID id;
  const char* streamFormat;  // libavformat's name of the elementary stream
  bool (*looksLikeStream)(std::span<const std::uint8_t> beginning);
  std::unique_ptr<video::Decoder> (*makeDecoder)();
  // Where a standard does not define the transform to the bit: how far two right decoders may be from each other, in dB
  // of the PSNR of a plane. 0: every sample is alike.
  double leastPsnr = 0;
};

const std::vector<Codec>& codecs();
const Codec* codecOf(AVCodecID id);
const Codec* codecOfStream(std::span<const std::uint8_t> beginning);

}  // namespace zvptool
