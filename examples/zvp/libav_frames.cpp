#include "libav_frames.h"

#include <new>
#include <vector>

#include "source.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

namespace zvptool {

struct LibavFrames::State {
  struct Close {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  };
  std::unique_ptr<AVFormatContext, Close> format;
  std::unique_ptr<AVCodecContext, Close> context;
  std::unique_ptr<AVFrame, Close> frame;
  std::unique_ptr<AVPacket, Close> packet;
  int stream = -1;
};

LibavFrames::LibavFrames(const std::string& path, const char* formatName, AVCodecID codec)
    : state_(std::make_unique<State>()) {
  AVDictionary* options = nullptr;
  av_dict_set(&options, "ignore_editlist", "1", 0);
  AVFormatContext* opened = nullptr;
  const AVInputFormat* format = formatName ? av_find_input_format(formatName) : nullptr;
  const int status = avformat_open_input(&opened, path.c_str(), format, &options);
  av_dict_free(&options);
  if (status < 0) throw ToolError("libavformat cannot open " + path);
  state_->format.reset(opened);
  avformat_find_stream_info(opened, nullptr);
  state_->stream = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (state_->stream < 0) throw ToolError("libavformat finds no video in " + path);
  const AVStream& stream = *opened->streams[state_->stream];
  if (stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0)
    frameRate_ = {stream.avg_frame_rate.num, stream.avg_frame_rate.den};
  const AVCodecID id = codec == AV_CODEC_ID_NONE ? stream.codecpar->codec_id : codec;
  const AVCodec* decoder = avcodec_find_decoder(id);
  if (!decoder) throw ToolError(std::string("libavcodec has no decoder for ") + avcodec_get_name(id));
  state_->context.reset(avcodec_alloc_context3(decoder));
  state_->frame.reset(av_frame_alloc());
  state_->packet.reset(av_packet_alloc());
  if (!state_->context || !state_->frame || !state_->packet) throw std::bad_alloc();
  AVCodecContext* context = state_->context.get();
  avcodec_parameters_to_context(context, stream.codecpar);
  context->thread_count = 1;
  context->flags |= AV_CODEC_FLAG_BITEXACT | AV_CODEC_FLAG_UNALIGNED;
  // Output order by the standard's buffer model instead of a guess from the first pictures.
  context->strict_std_compliance = FF_COMPLIANCE_STRICT;
  if (avcodec_open2(context, decoder, nullptr) < 0) throw ToolError("libavcodec cannot open its decoder");
}

LibavFrames::~LibavFrames() = default;

bool LibavFrames::next(video::StoredPicture& picture) {
  for (;;) {
    const int status = avcodec_receive_frame(state_->context.get(), state_->frame.get());
    if (status == 0) {
      store(picture);
      av_frame_unref(state_->frame.get());
      return true;
    }
    if (status != AVERROR(EAGAIN)) return false;
    feed();
  }
}

void LibavFrames::feed() {
  for (;;) {
    av_packet_unref(state_->packet.get());
    if (av_read_frame(state_->format.get(), state_->packet.get()) < 0) {
      avcodec_send_packet(state_->context.get(), nullptr);
      return;
    }
    if (state_->packet->stream_index != state_->stream) continue;
    // A packet that it cannot decode shows as a missing picture.
    avcodec_send_packet(state_->context.get(), state_->packet.get());
    return;
  }
}

void LibavFrames::store(video::StoredPicture& stored) {
  const AVFrame& frame = *state_->frame;
  const AVPixFmtDescriptor* sampling = av_pix_fmt_desc_get(AVPixelFormat(frame.format));
  packed_ = frame.format == AV_PIX_FMT_YUYV422;
  interlaced_ = frame.interlaced_frame != 0;
  topFieldFirst_ = !interlaced_ || frame.top_field_first != 0;
  const bool gray = frame.format == AV_PIX_FMT_GRAY8;
  const bool planar = sampling && sampling->nb_components == 3 && sampling->comp[0].depth == 8 &&
                      sampling->comp[1].step == 1 && (sampling->flags & AV_PIX_FMT_FLAG_RGB) == 0;
  if (!planar && !packed_ && !gray) throw ToolError("libavcodec's pictures are not 8-bit YCbCr");
  video::Picture picture;
  picture.format.width = frame.width;
  picture.format.height = frame.height;
  picture.format.chromaShiftX = sampling->log2_chroma_w;
  picture.format.chromaShiftY = sampling->log2_chroma_h;
  picture.format.frameRate = frameRate_;
  if (gray) picture.format.chromaShiftX = picture.format.chromaShiftY = 1;
  std::vector<std::uint8_t> planes[3];
  for (int plane = 0; plane < 3; ++plane) {
    picture.planes[plane] = frame.data[plane];
    picture.steps[plane] = frame.linesize[plane];
    if (planar || (gray && plane == 0)) continue;
    const int width = picture.format.planeWidth(plane), height = picture.format.planeHeight(plane);
    planes[plane].assign(std::size_t(width) * std::size_t(height), 128);
    if (packed_)
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
          planes[plane][std::size_t(y) * std::size_t(width) + std::size_t(x)] =
              frame.data[0][y * frame.linesize[0] + (plane == 0 ? 2 * x : 4 * x + 2 * plane - 1)];
    picture.planes[plane] = planes[plane].data();
    picture.steps[plane] = width;
  }
  stored = video::StoredPicture(picture);
}

}  // namespace zvptool
