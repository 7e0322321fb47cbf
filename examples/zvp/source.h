// Where coded video comes from: an elementary stream, read as it stands, or a container, opened by libavformat.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "codecs.h"
#include "common/decoder.h"

namespace zvptool {

// What cannot be opened, written or understood, for the user to read.
class ToolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Source {
 public:
  virtual ~Source() = default;
  // The next packet; its data are valid until the next call. False at the end.
  virtual bool next(video::Packet& packet) = 0;

  const Codec& codec() const { return *codec_; }
  const std::string& format() const { return format_; }  // for people: "H.264 elementary stream", "QuickTime / MOV"
  bool elementary() const { return elementary_; }
  const std::vector<std::uint8_t>& parameters() const { return parameters_; }  // for Decoder::configure()
  video::Ratio frameRate() const { return frameRate_; }             // as the container tells it

 protected:
  const Codec* codec_ = nullptr;
  std::string format_;
  bool elementary_ = false;
  std::vector<std::uint8_t> parameters_;
  video::Ratio frameRate_;
};

std::unique_ptr<Source> openSource(const std::string& path);

// A source and its decoder, from which pictures are drawn one by one. A broken stream ends early; error() then tells
// why, after the last complete picture.
class PictureReader {
 public:
  explicit PictureReader(const std::string& path, const video::Preview& preview = {});
  const Source& source() const { return *source_; }
  const video::Decoder& decoder() const { return *decoder_; }
  // Hands out pictures through the sink until at least one has come; false when there are no more.
  bool advance(const video::PictureSink& sink);
  const std::string& error() const { return error_; }

 private:
  std::unique_ptr<Source> source_;
  std::unique_ptr<video::Decoder> decoder_;
  std::string path_, error_;
  bool ended_ = false;
};

}  // namespace zvptool
