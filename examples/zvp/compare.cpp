// zvp compare: the pictures of the library's decoder beside those of libavcodec.
#include <cmath>
#include <cstdio>
#include <deque>
#include <memory>

#include "commands.h"
#include "common/stored_picture.h"
#include "progress.h"
#include "source.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

namespace zvptool {

namespace {

using video::StoredPicture;

class IndependentDecoder {
 public:
  IndependentDecoder(const std::string& path, const Codec& codec, bool elementary) {
    AVDictionary* options = nullptr;
    av_dict_set(&options, "ignore_editlist", "1", 0);
    AVFormatContext* opened = nullptr;
    const AVInputFormat* format = elementary ? av_find_input_format(codec.streamFormat) : nullptr;
    const int status = avformat_open_input(&opened, path.c_str(), format, &options);
    av_dict_free(&options);
    if (status < 0) throw ToolError("libavformat cannot open " + path);
    format_.reset(opened);
    avformat_find_stream_info(opened, nullptr);
    stream_ = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (stream_ < 0) throw ToolError("libavformat finds no video in " + path);
    const AVCodec* decoder = avcodec_find_decoder(codec.id);
    if (!decoder) throw ToolError(std::string("libavcodec has no decoder for ") + codec.name);
    context_.reset(avcodec_alloc_context3(decoder));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!context_ || !frame_ || !packet_) throw std::bad_alloc();
    avcodec_parameters_to_context(context_.get(), opened->streams[stream_]->codecpar);
    context_->thread_count = 1;
    context_->flags |= AV_CODEC_FLAG_BITEXACT | AV_CODEC_FLAG_UNALIGNED;
    // Output order by the standard's buffer model instead of a guess from the first pictures.
    context_->strict_std_compliance = FF_COMPLIANCE_STRICT;
    if (avcodec_open2(context_.get(), decoder, nullptr) < 0) throw ToolError("libavcodec cannot open its decoder");
  }

  // The next picture; false at the end.
  bool next(StoredPicture& picture) {
    for (;;) {
      const int status = avcodec_receive_frame(context_.get(), frame_.get());
      if (status == 0) {
        store(picture);
        av_frame_unref(frame_.get());
        return true;
      }
      if (status != AVERROR(EAGAIN)) return false;
      feed();
    }
  }

 private:
  void feed() {
    for (;;) {
      av_packet_unref(packet_.get());
      if (av_read_frame(format_.get(), packet_.get()) < 0) {
        avcodec_send_packet(context_.get(), nullptr);
        return;
      }
      if (packet_->stream_index != stream_) continue;
      avcodec_send_packet(context_.get(), packet_.get());  // a packet that it cannot decode shows as a missing picture
      return;
    }
  }
  void store(StoredPicture& stored) const {
    const AVPixFmtDescriptor* sampling = av_pix_fmt_desc_get(AVPixelFormat(frame_->format));
    if (!sampling || sampling->nb_components != 3 || sampling->comp[0].depth != 8 || sampling->comp[1].step != 1)
      throw ToolError("libavcodec's pictures are not planar 8-bit");
    video::Picture picture;
    picture.format.width = frame_->width;
    picture.format.height = frame_->height;
    picture.format.chromaShiftX = sampling->log2_chroma_w;
    picture.format.chromaShiftY = sampling->log2_chroma_h;
    for (int plane = 0; plane < 3; ++plane) {
      picture.planes[plane] = frame_->data[plane];
      picture.steps[plane] = frame_->linesize[plane];
    }
    stored = StoredPicture(picture);
  }

  struct Close {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  };
  std::unique_ptr<AVFormatContext, Close> format_;
  std::unique_ptr<AVCodecContext, Close> context_;
  std::unique_ptr<AVFrame, Close> frame_;
  std::unique_ptr<AVPacket, Close> packet_;
  int stream_ = -1;
};

double psnr(const StoredPicture& a, const StoredPicture& b, int plane) {
  const std::uint8_t *p = a.plane(plane), *q = b.plane(plane);
  const std::size_t size = std::size_t(a.format.planeWidth(plane)) * std::size_t(a.format.planeHeight(plane));
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < size; ++i) sum += std::uint64_t((p[i] - q[i]) * (p[i] - q[i]));
  return sum == 0 ? INFINITY : 10 * std::log10(255.0 * 255.0 * double(size) / double(sum));
}

// Says where two pictures of one format first differ, macroblock by macroblock.
void reportDifference(const StoredPicture& ours, const StoredPicture& theirs, std::int64_t frame) {
  static const char* const names[3] = {"Y", "Cb", "Cr"};
  const video::Format& format = ours.format;
  for (int mbY = 0; mbY < (format.height + 15) / 16; ++mbY)
    for (int mbX = 0; mbX < (format.width + 15) / 16; ++mbX)
      for (int plane = 0; plane < 3; ++plane) {
        const int shiftX = plane == 0 ? 0 : format.chromaShiftX, shiftY = plane == 0 ? 0 : format.chromaShiftY;
        const int width = format.planeWidth(plane), height = format.planeHeight(plane);
        for (int y = mbY * 16 >> shiftY; y < std::min((mbY + 1) * 16 >> shiftY, height); ++y)
          for (int x = mbX * 16 >> shiftX; x < std::min((mbX + 1) * 16 >> shiftX, width); ++x) {
            const int a = ours.plane(plane)[y * width + x], b = theirs.plane(plane)[y * width + x];
            if (a == b) continue;
            std::printf("frame %lld differs: plane %s, macroblock (%d, %d), sample (%d, %d) is %d, expected %d\n",
                        static_cast<long long>(frame), names[plane], mbX, mbY, x, y, a, b);
            std::printf("PSNR of the frame: Y %.2f dB, Cb %.2f dB, Cr %.2f dB\n", psnr(ours, theirs, 0),
                        psnr(ours, theirs, 1), psnr(ours, theirs, 2));
            return;
          }
      }
}

}  // namespace

int compare(const CompareOptions& options) {
  PictureReader reader(options.input);
  IndependentDecoder other(options.input, reader.source().codec(), reader.source().elementary());
  std::deque<StoredPicture> queue;
  const video::PictureSink sink = [&](const video::Picture& picture) { queue.emplace_back(picture); };
  Progress progress;
  while (options.frames == 0 || progress.frames() < options.frames) {
    while (queue.empty() && reader.advance(sink)) {
    }
    if (queue.empty() && !reader.error().empty()) {
      progress.finish();
      std::fprintf(stderr, "zvp: %s\n", reader.error().c_str());
      return 1;
    }
    StoredPicture expected;
    const bool there = other.next(expected);
    if (queue.empty() || !there) {
      if (queue.empty() && !there) break;
      std::printf("frame %lld is missing from %s\n", static_cast<long long>(progress.frames()),
                  there ? "the library's decoder" : "libavcodec's");
      return 1;
    }
    const StoredPicture& ours = queue.front();
    const video::Format &a = ours.format, &b = expected.format;
    if (a.width != b.width || a.height != b.height || a.chromaShiftX != b.chromaShiftX ||
        a.chromaShiftY != b.chromaShiftY) {
      std::printf("frame %lld is %dx%d, expected %dx%d\n", static_cast<long long>(progress.frames()), a.width, a.height,
                  b.width, b.height);
      return 1;
    }
    if (ours.samples != expected.samples) {
      reportDifference(ours, expected, progress.frames());
      return 1;
    }
    queue.pop_front();
    progress.count();
  }
  progress.finish();
  if (progress.frames() == 0) {
    std::printf("no picture to compare\n");
    return 1;
  }
  std::printf("bit-exact, %lld frames\n", static_cast<long long>(progress.frames()));
  return 0;
}

}  // namespace zvptool
