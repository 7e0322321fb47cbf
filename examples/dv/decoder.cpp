#include "dv/decoder.h"

#include <algorithm>
#include <string>

#include "dv/layout.h"
#include "dv/picture.h"
#include "dv/segment_decoder.h"
#include "dv/system.h"

namespace dv {

namespace {

using video::Packet;
using video::PictureSink;
using video::StreamError;

// Are these the five DIF blocks that should be here, and does none of them say that its data are bad?
bool intact(std::span<const std::uint8_t> segment, const SegmentPlace& place) {
  for (int m = 0; m < 5; ++m) {
    const auto block = segment.subspan(std::size_t(m) * difBlockBytes, difBlockBytes);
    if (!isDifBlock(block, Section::Video, place.sequence, place.firstBlock + m)) return false;
    if ((block[3] >> 4 & 7) == 7) return false;  // STA: error, not concealed
  }
  return true;
}

class StreamDecoder final : public video::Decoder {
 public:
  bool setPreview(const video::Preview& preview) override;
  std::vector<std::pair<std::string, std::string>> describe() const override;
  std::string remark() const override;

 private:
  void takePacket(const Packet& packet, const PictureSink& sink) override;
  void takeEnd(const PictureSink& sink) override;

  // Decodes the frame that the data begin with; false if it is not there as a whole yet.
  bool frame(const PictureSink& sink);
  void begin(const FrameKind& kind);

  Scale scale_ = Scale::Full;
  std::vector<std::uint8_t> data_;  // what is not decoded yet
  std::int64_t position_ = 0;       // of it in the file

  FrameKind kind_;
  std::vector<SegmentPlace> places_;
  std::unique_ptr<SegmentDecoder> segments_;
  PackedPicture picture_;
  video::Format format_;
  std::vector<std::uint8_t> planes_[3];
  std::int64_t damagedSegments_ = 0, damagedFrames_ = 0;
};

bool StreamDecoder::setPreview(const video::Preview& preview) {
  switch (preview.zoom) {
    case 1: scale_ = Scale::Full; return !preview.draft;
    case 2: scale_ = preview.draft ? Scale::HalfDraft : Scale::Half; return true;
    case 4: scale_ = Scale::Quarter; return !preview.draft;
    case 8: scale_ = Scale::Eighth; return !preview.draft;
    default: return false;
  }
}

void StreamDecoder::takePacket(const Packet& packet, const PictureSink& sink) {
  if (data_.empty()) position_ = packet.position;
  data_.insert(data_.end(), packet.data.begin(), packet.data.end());
  bool any = false;
  while (frame(sink)) any = true;
  if (!packet.wholeUnits) return;
  // What a container has behind a frame fills its packet up.
  if (!any) throw StreamError(StreamError::Kind::Damaged, position_, "packet ends before its frame does");
  data_.clear();
}

void StreamDecoder::takeEnd(const PictureSink&) {
  if (!data_.empty()) throw StreamError(StreamError::Kind::Damaged, position_, "the last frame ends early");
}

bool StreamDecoder::frame(const PictureSink& sink) {
  if (data_.size() < leastSequences * difSequenceBytes) return false;
  const auto kind = frameKind(data_);
  if (!kind) throw StreamError(StreamError::Kind::Damaged, position_, "no DV frame begins here");
  if (!kind->system) throw StreamError(StreamError::Kind::Unsupported, position_, "signal type of this DV stream");
  if (data_.size() < kind->system->frameBytes()) return false;
  begin(*kind);

  std::int64_t damaged = 0;
  for (const SegmentPlace& place : places_) {
    const auto segment = std::span(data_).subspan(place.offset, segmentBytes);
    if (intact(segment, place)) segments_->decode(segment.data(), place.macroblocks, picture_);
    else ++damaged;
  }
  if (damaged > std::int64_t(places_.size()) / 2)
    throw StreamError(StreamError::Kind::Damaged, position_,
                      std::to_string(damaged) + " of the " + std::to_string(places_.size()) +
                          " video segments of the frame are damaged");
  damagedSegments_ += damaged;
  damagedFrames_ += damaged > 0;

  picture_.split(format_.chromaShiftX, format_.chromaShiftY, planes_);
  video::Picture picture;
  picture.format = format_;
  for (int plane = 0; plane < 3; ++plane) {
    picture.planes[plane] = planes_[plane].data();
    picture.steps[plane] = format_.planeWidth(plane);
  }
  const std::size_t bytes = kind_.system->frameBytes();
  data_.erase(data_.begin(), data_.begin() + std::ptrdiff_t(bytes));
  position_ += std::int64_t(bytes);
  sink(picture);
  return true;
}

void StreamDecoder::begin(const FrameKind& kind) {
  const System& system = *kind.system;
  if (places_.empty() || kind.system != kind_.system || kind.secondOfPair != kind_.secondOfPair)
    places_ = segmentPlaces(system, kind.secondOfPair);
  if (kind.system != kind_.system) {
    segments_ = std::make_unique<SegmentDecoder>(system, scale_);
    picture_ = PackedPicture(system.width / divisor(scale_), system.height / divisor(scale_));
  }
  kind_ = kind;
  format_.width = system.width / divisor(scale_);
  format_.height = system.height / divisor(scale_);
  format_.chromaShiftX = system.sampling == Sampling::C411 ? 2 : 1;
  format_.chromaShiftY = system.sampling == Sampling::C420 ? 1 : 0;
  format_.sampleAspect = kind.wide ? system.wideAspect : system.normalAspect;
  format_.frameRate = system.frameRate;
  format_.matrix = system.highDefinition ? video::Matrix::Bt709 : video::Matrix::Bt601;
}

std::vector<std::pair<std::string, std::string>> StreamDecoder::describe() const {
  std::vector<std::pair<std::string, std::string>> lines;
  if (!kind_.system) return lines;
  lines.emplace_back("system", kind_.system->name);
  lines.emplace_back("size", std::to_string(kind_.system->width) + "x" + std::to_string(kind_.system->height));
  lines.emplace_back("picture", kind_.wide || kind_.system->highDefinition ? "16:9" : "4:3");
  lines.emplace_back("bytes a frame", std::to_string(kind_.system->frameBytes()));
  return lines;
}

std::string StreamDecoder::remark() const {
  if (damagedSegments_ == 0) return {};
  return std::to_string(damagedSegments_) + " damaged video segments in " + std::to_string(damagedFrames_) +
         (damagedFrames_ == 1 ? " frame" : " frames") + " were left as they were in the pictures before";
}

}  // namespace

std::unique_ptr<video::Decoder> makeDecoder() { return std::make_unique<StreamDecoder>(); }

bool looksLikeStream(std::span<const std::uint8_t> data) {
  // The header block of the first DIF sequence, with what it leaves unused at ones: a zero bit and six ones behind DSF,
  // five ones ahead of APT.
  return data.size() >= 8 && isDifBlock(data, Section::Header, 0, 0) && (data[0] & 0x1F) == 0x1F &&
         (data[3] & 0x7F) == 0x3F && (data[4] & 0xF8) == 0xF8;
}

}  // namespace dv
