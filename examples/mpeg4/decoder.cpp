#include "mpeg4/decoder.h"

#include <optional>
#include <string>

#include "common/unit_splitter.h"
#include "mpeg4/picture_decoder.h"

namespace mpeg4 {

namespace {

using video::Packet;
using video::PictureSink;

// The first bytes of units, which tell what they are (ISO/IEC 14496-2 table 6-3).
enum StartCode : unsigned {
  firstLayer = 0x20,
  lastLayer = 0x2F,
  visualSequence = 0xB0,
  groupOfVops = 0xB3,
  visualObject = 0xB5,
  vop = 0xB6,
};

class StreamDecoder final : public video::Decoder {
 public:
  explicit StreamDecoder(bool h263) {
    if (h263) beH263();
  }

  std::vector<std::pair<std::string, std::string>> describe() const override;

 private:
  void takeParameters(std::span<const std::uint8_t> parameters, const PictureSink& sink) override {
    if (!h263_) takePacket({parameters, 0, true}, sink);
    started_ = false;
  }
  void takePacket(const Packet& packet, const PictureSink& sink) override {
    if (!started_ && looksLikeH263(packet.data)) beH263();
    started_ = true;
    splitter_.add(packet.data, packet.position);
    units(packet.wholeUnits, sink);
  }
  void takeEnd(const PictureSink& sink) override { units(true, sink); }
  // The latest reference picture, if it still waits for output.
  void handOutWaiting(const PictureSink& sink) override {
    if (waits_ && latest_) sink(latest_->picture());
    waits_ = false;
  }

  void units(bool dataEndUnit, const PictureSink& sink) {
    std::span<const std::uint8_t> bytes;
    std::int64_t position;
    while (splitter_.next(dataEndUnit, bytes, position)) {
      if (bytes.empty()) continue;
      if (!h263_ && !layer_ && bytes[0] < firstLayer && looksLikeH263(bytes.subspan(1))) {
        // A video object of short headers: what follows are pictures of H.263.
        const std::vector<std::uint8_t> pictures(bytes.begin() + 1, bytes.end());
        beH263();
        splitter_.add(pictures, position + 1);
        continue;
      }
      unit_.load(bytes, position);
      if (h263_)
        h263Unit(sink);
      else
        unit(sink);
    }
  }
  void beH263() {
    h263_ = true;
    splitter_ = video::UnitSplitter(0xFC, 0x80, 2);
  }
  void unit(const PictureSink& sink);
  void h263Unit(const PictureSink& sink);
  void changeLayer(const Layer& layer, const PictureSink& sink);
  void vopUnit(const PictureSink& sink);
  void picture(const PictureHeader& header, const PictureSink& sink);

  bool h263_ = false;
  bool started_ = false;  // a packet has come
  video::UnitSplitter splitter_;
  Unit unit_;
  VisualObject object_;
  std::optional<Layer> layer_;
  H263Options options_;
  PictureDecoder pictures_;

  std::unique_ptr<Frame> latest_, previous_, spare_;  // the last two reference pictures, and one to be filled
  bool waits_ = false;
  bool reordered_ = true;  // pictures may come in another order than that of their display
  // The second from which the next reference picture counts, and that of the one before; the times of both in ticks.
  std::int64_t seconds_ = 0, previousSeconds_ = 0, latestTime_ = 0, previousTime_ = 0;
  std::int64_t frameTicks_ = 0;  // of a frame, as the first B-VOP tells
};

void StreamDecoder::unit(const PictureSink& sink) {
  const unsigned code = unit_.bits(8);
  if (code >= firstLayer && code <= lastLayer) {
    changeLayer(parseLayer(unit_, object_), sink);
  } else if (code == visualSequence) {
    object_.profileAndLevel = int(unit_.bits(8));
  } else if (code == visualObject) {
    parseVisualObject(unit_, object_);
  } else if (code == groupOfVops) {
    seconds_ = parseGroupTime(unit_);
  } else if (code == vop) {
    vopUnit(sink);
  }
}

void StreamDecoder::changeLayer(const Layer& layer, const PictureSink& sink) {
  if (layer_ && *layer_ == layer) return;
  handOutWaiting(sink);
  const bool keeps = layer_ && layer_->width == layer.width && layer_->height == layer.height;
  layer_ = layer;
  reordered_ = !layer.lowDelay && !layer.h263;
  if (!keeps) {
    latest_.reset();
    previous_.reset();
    spare_.reset();
  }
  pictures_.configure(layer);
}

void StreamDecoder::h263Unit(const PictureSink& sink) {
  Layer layer = layer_.value_or(Layer());
  const PictureHeader header = parseH263(unit_, layer, options_);
  changeLayer(layer, sink);
  picture(header, sink);
}

void StreamDecoder::vopUnit(const PictureSink& sink) {
  if (!layer_) unit_.damaged("a VOP without a video object layer");
  const PictureHeader header = parseVop(unit_, *layer_);
  picture(header, sink);
}

void StreamDecoder::picture(const PictureHeader& header, const PictureSink& sink) {
  const bool b = header.type == PictureType::B;
  References references;
  if (!h263_) {
    // modulo_time_base counts from the second of the reference picture that comes before in display (6.3.5).
    const std::int64_t seconds = (b ? previousSeconds_ : seconds_) + header.seconds;
    const std::int64_t time = seconds * layer_->ticks + header.tick;
    if (!b) {
      previousSeconds_ = seconds_;
      seconds_ = seconds;
      previousTime_ = latestTime_;
      latestTime_ = time;
    }
    const std::int64_t distance = time - previousTime_, distanceOfBoth = latestTime_ - previousTime_;
    if (!header.coded) return;  // the picture before stays
    if (b) {
      if (!latest_ || !previous_) return;  // of the group before, which is not there
      if (distance <= 0 || distance >= distanceOfBoth || distanceOfBoth > INT32_MAX)
        unit_.damaged("a B-VOP does not lie between its reference pictures");
      references.distance = int(distance);
      references.distanceOfBoth = int(distanceOfBoth);
      // Distances in fields count frames, of which the first B-VOP tells the length.
      if (frameTicks_ == 0) frameTicks_ = distance;
      const auto frames = [this](std::int64_t ticks) { return (ticks + frameTicks_ / 2) / frameTicks_; };
      references.fieldDistance = int(2 * (frames(time) - frames(previousTime_)));
      references.fieldDistanceOfBoth = int(2 * (frames(latestTime_) - frames(previousTime_)));
      references.forward = previous_.get();
      references.backward = latest_.get();
    }
  }
  if (header.type == PictureType::P) {
    if (!latest_) unit_.damaged("the stream does not begin with an intra picture");
    references.forward = latest_.get();
  }
  if (!spare_ || spare_->format() != layer_->format()) spare_ = std::make_unique<Frame>(*layer_);
  pictures_.decode(unit_, header, *spare_, references);
  if (b) {
    reordered_ = true;
    sink(spare_->picture());
    return;
  }
  spare_->expand();
  handOutWaiting(sink);
  std::swap(previous_, latest_);
  std::swap(latest_, spare_);
  waits_ = true;
  if (!reordered_) handOutWaiting(sink);
}

std::vector<std::pair<std::string, std::string>> StreamDecoder::describe() const {
  std::vector<std::pair<std::string, std::string>> lines;
  if (object_.profileAndLevel >= 0) lines.emplace_back("profile", profileName(object_.profileAndLevel));
  if (!layer_) return lines;
  lines.emplace_back("size", std::to_string(layer_->width) + "x" + std::to_string(layer_->height));
  if (h263_) return lines;
  lines.emplace_back("quantization", layer_->mpegQuantization ? "with matrices" : "flat");
  lines.emplace_back("packets", !layer_->dataPartitioned ? layer_->resyncMarkers ? "allowed" : "none"
                                : layer_->reversible     ? "partitioned, reversible codes"
                                                         : "partitioned");
  return lines;
}

}  // namespace

std::unique_ptr<video::Decoder> makeDecoder() { return std::make_unique<StreamDecoder>(false); }
std::unique_ptr<video::Decoder> makeH263Decoder() { return std::make_unique<StreamDecoder>(true); }

bool looksLikeStream(std::span<const std::uint8_t> data) {
  // The start code of a visual object sequence, a visual object, a video object, a layer, a group or a VOP. Video
  // object codes are those of slices in MPEG-1/2, so a layer must follow.
  if (data.size() < 5 || data[0] != 0 || data[1] != 0 || data[2] != 1) return false;
  const unsigned code = data[3];
  if (code == visualSequence || code == visualObject) return true;
  if (code >= firstLayer) return code <= lastLayer;
  return data.size() >= 8 && data[4] == 0 && data[5] == 0 && data[6] == 1 && data[7] >= firstLayer &&
         data[7] <= lastLayer;
}

bool looksLikeH263(std::span<const std::uint8_t> data) {
  // A picture start code, the fixed bits of PTYPE, and a source format that there is.
  if (data.size() < 5 || data[0] != 0 || data[1] != 0 || (data[2] & 0xFC) != 0x80 || (data[3] & 3) != 2) return false;
  const unsigned format = data[4] >> 2 & 7;
  return format != 0 && format != 6;
}

}  // namespace mpeg4
