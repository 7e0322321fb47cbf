// Pictures decoded by libavcodec: what the library's decoders are held against, and what filters work on.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "common/stored_picture.h"

extern "C" {
#include <libavcodec/codec_id.h>
}

namespace zvptool {

class LibavFrames {
 public:
  // format: libavformat's name of the stream's format, or null to let it guess. codec: AV_CODEC_ID_NONE for whatever
  // the file holds.
  LibavFrames(const std::string& path, const char* format, AVCodecID codec);
  ~LibavFrames();

  // The next picture; false at the end. Planar 8-bit YCbCr as it stands; packed 4:2:2 (Y0 Cb Y1 Cr) and gray become
  // planar.
  bool next(video::StoredPicture& picture);
  video::Ratio frameRate() const { return frameRate_; }
  // Of the last picture, as the stream tells it.
  bool interlaced() const { return interlaced_; }
  bool topFieldFirst() const { return topFieldFirst_; }
  bool packed() const { return packed_; }

 private:
  void feed();
  void store(video::StoredPicture& stored);

  struct State;
  std::unique_ptr<State> state_;
  video::Ratio frameRate_;
  bool interlaced_ = false, topFieldFirst_ = true, packed_ = false;
};

}  // namespace zvptool
