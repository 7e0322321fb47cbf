#include "source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

extern "C" {
#include <libavformat/avformat.h>
}

namespace zvptool {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

class StreamSource final : public Source {
 public:
  StreamSource(File file, const Codec& codec) : file_(std::move(file)), buffer_(1 << 16) {
    codec_ = &codec;
    elementary_ = true;
    format_ = std::string(codec.name) + " elementary stream";
  }
  bool next(video::Packet& packet) override {
    const std::size_t size = std::fread(buffer_.data(), 1, buffer_.size(), file_.get());
    if (size == 0 && std::ferror(file_.get())) throw ToolError(std::string("cannot read: ") + std::strerror(errno));
    packet = {std::span(buffer_).first(size), position_, false};
    position_ += std::int64_t(size);
    return size > 0;
  }

 private:
  File file_;
  std::vector<std::uint8_t> buffer_;
  std::int64_t position_ = 0;
};

std::string avError(int code) {
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(code, text.data(), text.size());
  return text.data();
}

class ContainerSource final : public Source {
 public:
  explicit ContainerSource(const std::string& path) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "ignore_editlist", "1", 0);  // all pictures, not a cut of them
    AVFormatContext* opened = nullptr;
    const int status = avformat_open_input(&opened, path.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (status < 0) throw ToolError("cannot open " + path + ": " + avError(status));
    context_.reset(opened);
    stream_ = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (stream_ < 0 || opened->streams[stream_]->codecpar->codec_id == AV_CODEC_ID_NONE) {
      avformat_find_stream_info(opened, nullptr);
      stream_ = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    }
    if (stream_ < 0) throw ToolError(path + " holds no video");
    const AVStream& stream = *opened->streams[stream_];
    const AVCodecParameters& parameters = *stream.codecpar;
    codec_ = codecOf(parameters.codec_id);
    if (!codec_) throw ToolError(std::string("video of codec ") + avcodec_get_name(parameters.codec_id) + " is not supported");
    format_ = opened->iformat->long_name ? opened->iformat->long_name : opened->iformat->name;
    if (parameters.extradata_size > 0)
      parameters_.assign(parameters.extradata, parameters.extradata + parameters.extradata_size);
    if (stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0)
      frameRate_ = {stream.avg_frame_rate.num, stream.avg_frame_rate.den};
    packet_.reset(av_packet_alloc());
    if (!packet_) throw std::bad_alloc();
  }
  bool next(video::Packet& packet) override {
    for (;;) {
      av_packet_unref(packet_.get());
      const int status = av_read_frame(context_.get(), packet_.get());
      if (status == AVERROR_EOF) return false;
      if (status < 0) throw ToolError("cannot read: " + avError(status));
      if (packet_->stream_index != stream_ || packet_->size <= 0) continue;
      if (packet_->pos >= 0) position_ = packet_->pos;
      packet = {std::span(packet_->data, std::size_t(packet_->size)), position_, true};
      return true;
    }
  }

 private:
  struct Close {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  };
  std::unique_ptr<AVFormatContext, Close> context_;
  std::unique_ptr<AVPacket, Close> packet_;
  int stream_ = -1;
  std::int64_t position_ = 0;
};

}  // namespace

std::unique_ptr<Source> openSource(const std::string& path) {
  File file(std::fopen(path.c_str(), "rb"));
  if (!file) throw ToolError("cannot open " + path + ": " + std::strerror(errno));
  std::array<std::uint8_t, 256> beginning;
  const std::size_t size = std::fread(beginning.data(), 1, beginning.size(), file.get());
  if (size == 0 && std::ferror(file.get())) throw ToolError("cannot read " + path + ": " + std::strerror(errno));
  if (size == 0) throw ToolError(path + " is empty");
  if (const Codec* codec = codecOfStream(std::span(beginning).first(size))) {
    std::rewind(file.get());
    return std::make_unique<StreamSource>(std::move(file), *codec);
  }
  file.reset();
  return std::make_unique<ContainerSource>(path);
}

PictureReader::PictureReader(const std::string& path, const video::Preview& preview)
    : source_(openSource(path)), path_(path) {
  decoder_ = source_->codec().makeDecoder();
  if (!decoder_->setPreview(preview))
    throw ToolError(path + ": the decoder of " + source_->codec().name + " has no such preview");
  try {
    if (!source_->parameters().empty()) decoder_->configure(source_->parameters());
  } catch (const video::StreamError& error) {
    throw ToolError(path + ": the container's parameters: " + error.what());
  }
}

bool PictureReader::advance(const video::PictureSink& sink) {
  bool any = false;
  const video::PictureSink counting = [&](const video::Picture& picture) {
    any = true;
    sink(picture);
  };
  while (!any && !ended_) {
    video::Packet packet;
    try {
      if (source_->next(packet)) {
        decoder_->decode(packet, counting);
      } else {
        ended_ = true;
        decoder_->finish(counting);
      }
    } catch (const video::StreamError& error) {
      error_ = path_ + ": byte " + std::to_string(error.position()) + ": " +
               (error.kind() == video::StreamError::Kind::Unsupported ? "not supported: " : "") + error.what();
      if (!ended_) decoder_->finish(counting);
      ended_ = true;
    }
  }
  return any;
}

}  // namespace zvptool
