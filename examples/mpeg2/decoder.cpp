#include "mpeg2/decoder.h"

#include <optional>
#include <string>

#include "common/unit_splitter.h"
#include "mpeg2/slice_decoder.h"

namespace mpeg2 {

namespace {

using video::Packet;
using video::PictureSink;
using FramePtr = std::shared_ptr<const Frame>;

constexpr int largestWidth = 4096, largestHeight = 4096;

class StreamDecoder final : public video::Decoder {
 public:
  std::vector<std::pair<std::string, std::string>> describe() const override;
  std::string remark() const override;

 private:
  void takeParameters(std::span<const std::uint8_t> parameters, const PictureSink& sink) override {
    takePacket({parameters, 0, true}, sink);
  }
  void takePacket(const Packet& packet, const PictureSink& sink) override;
  void takeEnd(const PictureSink& sink) override;
  void handOutWaiting(const PictureSink& sink) override;

  void unit(const PictureSink& sink);
  void extension();
  void activate(const PictureSink& sink);
  void beginPicture(const PictureSink& sink);
  void finishPicture(const PictureSink& sink);
  void slice(const PictureSink& sink);
  bool canBeDecoded() const;
  void output(const Frame& frame, const PictureSink& sink) const;

  video::UnitSplitter splitter_;
  Unit unit_;

  std::optional<Sequence> sequence_;  // as the headers tell
  Sequence active_;                   // what the frames were made for
  bool closedGroup_ = false;

  // The picture whose headers have been read, and its slices.
  std::optional<PictureHeader> header_;
  bool inPicture_ = false, leftOut_ = false;
  SliceDecoder slices_;

  std::shared_ptr<Frame> frame_;  // under construction
  PictureHeader firstField_;      // of it
  bool secondFieldDue_ = false;
  FramePtr references_[2];  // in the order of display
  FramePtr waiting_;        // the latter one until it is shown
  std::int64_t leftOutPictures_ = 0;
  bool interlaced_ = false, fieldPictures_ = false, bPictures_ = false;
};

void StreamDecoder::takePacket(const Packet& packet, const PictureSink& sink) {
  splitter_.add(packet.data, packet.position);
  std::span<const std::uint8_t> bytes;
  std::int64_t position;
  while (splitter_.next(packet.wholeUnits, bytes, position)) {
    unit_.load(bytes, position);
    unit(sink);
  }
}

void StreamDecoder::takeEnd(const PictureSink& sink) {
  takePacket({{}, 0, true}, sink);
  finishPicture(sink);
  if (secondFieldDue_) unit_.damaged(unit_.reader(), "the last picture lacks its second field");
}

void StreamDecoder::unit(const PictureSink& sink) {
  const int code = unit_.code();
  if (code >= firstSliceCode && code <= lastSliceCode) {
    slice(sink);
    return;
  }
  if (code == extensionCode) {
    extension();
    return;
  }
  if (code == userDataCode) return;
  finishPicture(sink);
  switch (code) {
    case sequenceHeaderCode:
      sequence_ = parseSequenceHeader(unit_);
      break;
    case groupCode:
      closedGroup_ = parseClosedGroup(unit_);
      break;
    case pictureCode:
      if (!sequence_) unit_.damaged(unit_.reader(), "picture without a sequence header");
      header_ = parsePictureHeader(unit_);
      break;
    default:
      break;  // the end of a sequence, errors that are marked, system layers, what is reserved
  }
}

void StreamDecoder::extension() {
  if (!sequence_) return;
  switch (extensionOf(unit_)) {
    case Extension::Sequence:
      if (!header_) parseSequenceExtension(unit_, *sequence_);
      break;
    case Extension::SequenceDisplay:
      parseSequenceDisplayExtension(unit_, *sequence_);
      break;
    case Extension::QuantMatrix:
      parseQuantMatrixExtension(unit_, sequence_->matrices);
      break;
    case Extension::SequenceScalable:
      unit_.unsupported("scalable streams");
    case Extension::PictureCoding:
      if (header_ && !inPicture_) parsePictureCodingExtension(unit_, *header_);
      break;
    default:
      break;
  }
}

void StreamDecoder::slice(const PictureSink& sink) {
  if (!header_) unit_.damaged(unit_.reader(), "slice without a picture header");
  if (!inPicture_) beginPicture(sink);
  if (!leftOut_) slices_.decode(unit_);
}

// Takes a new sequence header to heart. Frames of another size end what was before.
void StreamDecoder::activate(const PictureSink& sink) {
  const Sequence& next = *sequence_;
  if (next.width > largestWidth || next.height > largestHeight)
    unit_.unsupported("pictures of " + std::to_string(next.width) + "x" + std::to_string(next.height));
  if (next.macroblocksX() != active_.macroblocksX() || next.macroblocksY() != active_.macroblocksY() ||
      next.chromaFormat != active_.chromaFormat || next.width != active_.width || next.height != active_.height) {
    if (secondFieldDue_) unit_.damaged(unit_.reader(), "a picture lacks its second field");
    handOutWaiting(sink);
    references_[0] = references_[1] = nullptr;
  }
  active_ = next;
}

// A picture in front of the first I-picture cannot, nor can a B-picture whose earlier reference is missing; in a closed
// group it needs the later one alone.
bool StreamDecoder::canBeDecoded() const {
  switch (header_->type) {
    case PictureType::I:
      return true;
    case PictureType::P:
      return references_[1] || secondFieldDue_;
    default:
      return references_[1] && (references_[0] || closedGroup_);
  }
}

void StreamDecoder::beginPicture(const PictureSink& sink) {
  if (sequence_->mpeg2 && !header_->coded) unit_.damaged(unit_.reader(), "picture without picture coding extension");
  if (!sequence_->mpeg2 && header_->coded) unit_.damaged(unit_.reader(), "picture coding extension in MPEG-1");
  activate(sink);
  const PictureHeader& header = *header_;
  if (header.structure != Structure::Frame && active_.progressive)
    unit_.damaged(unit_.reader(), "field picture in a progressive sequence");
  inPicture_ = true;

  const bool secondField = secondFieldDue_;
  if (secondField) {
    const bool paired = header.structure != Structure::Frame && header.structure != firstField_.structure &&
                        (header.type == PictureType::B) == (firstField_.type == PictureType::B);
    if (!paired) unit_.damaged(unit_.reader(), "a picture lacks its second field");
    secondFieldDue_ = false;
  } else {
    leftOut_ = !canBeDecoded();
    firstField_ = header;
    secondFieldDue_ = header.structure != Structure::Frame;
    if (!leftOut_)
      frame_ = std::make_shared<Frame>(active_.macroblocksX(), active_.macroblocksY(), active_.chromaFormat == 1);
  }
  interlaced_ |= !header.progressive && active_.mpeg2;
  fieldPictures_ |= header.structure != Structure::Frame;
  bPictures_ |= header.type == PictureType::B;
  if (leftOut_) return;
  References references;
  references.frames[0] = header.type == PictureType::B ? references_[0].get() : references_[1].get();
  references.frames[1] = header.type == PictureType::B ? references_[1].get() : nullptr;
  references.current = frame_.get();
  references.secondField = secondField;
  slices_.begin(active_, header, *frame_, references);
}

void StreamDecoder::finishPicture(const PictureSink& sink) {
  if (!header_) return;
  if (!inPicture_) unit_.damaged(unit_.reader(), "picture without slices");
  inPicture_ = false;
  const bool reference = header_->type != PictureType::B;
  header_.reset();
  if (leftOut_) {
    leftOutPictures_ += !secondFieldDue_;
    return;
  }
  if (!slices_.complete())
    unit_.damaged(unit_.reader(), std::to_string(slices_.missing()) + " macroblocks of a picture are missing");
  if (secondFieldDue_) return;
  // B-pictures are shown at once, the others when the next of their kind is there.
  if (reference) {
    handOutWaiting(sink);
    references_[0] = references_[1];
    references_[1] = waiting_ = frame_;
  } else {
    output(*frame_, sink);
  }
  frame_ = nullptr;
}

void StreamDecoder::handOutWaiting(const PictureSink& sink) {
  if (waiting_) output(*waiting_, sink);
  waiting_ = nullptr;
}

void StreamDecoder::output(const Frame& frame, const PictureSink& sink) const {
  video::Picture picture;
  picture.format = active_.format();
  for (int i = 0; i < 3; ++i) {
    picture.planes[i] = frame.view().planes[i].samples;
    picture.steps[i] = frame.view().planes[i].step;
  }
  sink(picture);
}

std::vector<std::pair<std::string, std::string>> StreamDecoder::describe() const {
  std::vector<std::pair<std::string, std::string>> lines;
  if (active_.width == 0) return lines;
  lines.emplace_back("profile", active_.profile());
  lines.emplace_back("size", std::to_string(active_.width) + "x" + std::to_string(active_.height));
  lines.emplace_back("sampling", active_.chromaFormat == 1 ? "4:2:0" : "4:2:2");
  lines.emplace_back("pictures", fieldPictures_ ? "interlaced, fields"
                                 : interlaced_  ? "interlaced, frames"
                                                : "progressive");
  lines.emplace_back("B-pictures", bPictures_ ? "yes" : "no");
  return lines;
}

std::string StreamDecoder::remark() const {
  if (leftOutPictures_ == 0) return {};
  return std::to_string(leftOutPictures_) + (leftOutPictures_ == 1
                                                 ? " picture was left out for want of its reference"
                                                 : " pictures were left out for want of their references");
}

// If the data begin with a sequence header, the start code behind it; a picture's if they end before.
std::optional<int> codeBehindSequenceHeader(std::span<const std::uint8_t> data) {
  const auto isStartCode = [&](std::size_t at) {
    return at + 3 < data.size() && data[at] == 0 && data[at + 1] == 0 && data[at + 2] == 1;
  };
  std::size_t at = 0;
  while (at < data.size() && data[at] == 0 && !isStartCode(at)) ++at;
  if (!isStartCode(at) || data[at + 3] != sequenceHeaderCode) return {};
  for (at += 4; at < data.size(); ++at)
    if (isStartCode(at)) return data[at + 3];
  return pictureCode;
}

}  // namespace

std::unique_ptr<video::Decoder> makeDecoder() { return std::make_unique<StreamDecoder>(); }

bool looksLikeMpeg1(std::span<const std::uint8_t> data) {
  return codeBehindSequenceHeader(data).value_or(extensionCode) != extensionCode;
}

bool looksLikeMpeg2(std::span<const std::uint8_t> data) { return codeBehindSequenceHeader(data) == extensionCode; }

}  // namespace mpeg2
