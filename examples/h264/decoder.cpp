#include "h264/decoder.h"

#include <algorithm>
#include <optional>
#include <string>

#include "common/unit_splitter.h"
#include "h264/deblocking.h"
#include "h264/dpb.h"
#include "h264/nal.h"
#include "h264/parameter_sets.h"
#include "h264/picture_order.h"
#include "h264/ref_lists.h"
#include "h264/slice_decoder.h"
#include "h264/slice_groups.h"
#include "h264/slice_header.h"

namespace h264 {

namespace {

using video::Packet;
using video::PictureSink;
using video::StreamError;

class StreamDecoder final : public video::Decoder {
 public:
  std::vector<std::pair<std::string, std::string>> describe() const override;

 private:
  void takeParameters(std::span<const std::uint8_t> parameters, const PictureSink& sink) override;
  void takePacket(const Packet& packet, const PictureSink& sink) override;
  void takeEnd(const PictureSink& sink) override;
  void handOutWaiting(const PictureSink& sink) override { dpb_.flush(sink); }

  void splitUnits(const Packet& packet, const PictureSink& sink);
  void prefixedUnits(const Packet& packet, const PictureSink& sink);
  void unit(std::span<const std::uint8_t> bytes, std::int64_t position, const PictureSink& sink);
  void slice(const PictureSink& sink);
  void beginPicture(const SliceHeader& header, const PictureSink& sink);
  void finishPicture(const PictureSink& sink);
  void activate(const SequenceParameters& sps, const PictureSink& sink);
  void makeGroupMap(const SliceHeader& header, const PictureParameters& pps);
  void noteRecoveryPoint();

  video::UnitSplitter splitter_;
  unsigned lengthBytes_ = 0;  // of the prefix of a NAL unit; 0: start codes
  Nal nal_;
  std::optional<SequenceParameters> sequences_[32];
  std::optional<PictureParameters> pictures_[256];

  std::optional<SequenceParameters> active_;
  bool started_ = false;        // an IDR picture or a recovery point has been decoded
  bool recoveryPoint_ = false;  // the next picture is one
  std::uint32_t previousRefFrameNum_ = 0;
  PictureOrder order_;
  Dpb dpb_;
  PictureState picture_;
  Frame* frame_ = nullptr;  // under construction
  SliceHeader first_;       // the first slice of it
  SliceHeader last_;        // the last one
  PictureParameters pps_;   // of the current slice
  LevelScales scales_;
  bool haveScales_ = false;
  SliceDecoder slices_;
  RefLists lists_;
  std::vector<std::uint8_t> groupMap_;
  std::optional<SliceGroups> mappedGroups_;  // what the map was made from
  std::uint32_t mappedCycle_ = 0;
  std::int64_t pictures_decoded_ = 0;
};

void StreamDecoder::takeParameters(std::span<const std::uint8_t> parameters, const PictureSink& sink) {
  // AVCDecoderConfigurationRecord (ISO/IEC 14496-15 5.3.3.1); anything else is taken as Annex B.
  if (parameters.size() < 7 || parameters[0] != 1) {
    splitUnits({parameters, 0, true}, sink);
    return;
  }
  lengthBytes_ = (parameters[4] & 3u) + 1;
  std::size_t at = 5;
  for (int kind = 0; kind < 2 && at < parameters.size(); ++kind) {
    unsigned count = parameters[at++];
    if (kind == 0) count &= 31;
    for (; count > 0 && at + 2 <= parameters.size(); --count) {
      const std::size_t size = std::size_t(parameters[at] << 8 | parameters[at + 1]);
      at += 2;
      if (size > parameters.size() - at)
        throw StreamError(StreamError::Kind::Damaged, 0, "parameter sets of the container end early");
      if (size > 0) unit(parameters.subspan(at, size), 0, sink);
      at += size;
    }
  }
}

void StreamDecoder::takePacket(const Packet& packet, const PictureSink& sink) {
  if (lengthBytes_ == 0) splitUnits(packet, sink);
  else prefixedUnits(packet, sink);
}

void StreamDecoder::takeEnd(const PictureSink& sink) {
  splitUnits({{}, 0, true}, sink);
  finishPicture(sink);
}

void StreamDecoder::splitUnits(const Packet& packet, const PictureSink& sink) {
  splitter_.add(packet.data, packet.position);
  std::span<const std::uint8_t> bytes;
  std::int64_t position;
  while (splitter_.next(packet.wholeUnits, bytes, position)) unit(bytes, position, sink);
}

void StreamDecoder::prefixedUnits(const Packet& packet, const PictureSink& sink) {
  std::size_t at = 0;
  while (packet.data.size() - at > lengthBytes_) {
    std::size_t size = 0;
    for (unsigned i = 0; i < lengthBytes_; ++i) size = size << 8 | packet.data[at + i];
    at += lengthBytes_;
    const std::int64_t position = packet.position + std::int64_t(at);
    if (size > packet.data.size() - at)
      throw StreamError(StreamError::Kind::Damaged, position, "NAL unit longer than its packet");
    if (size > 0) unit(packet.data.subspan(at, size), position, sink);
    at += size;
  }
}

void StreamDecoder::unit(std::span<const std::uint8_t> bytes, std::int64_t position, const PictureSink& sink) {
  nal_.load(bytes, position);
  // These units stand in front of a picture (7.4.1.2.3). Between the slices of one they are out of place, but harmless.
  const unsigned type = unsigned(nal_.type());
  if (((type >= 6 && type <= 9) || (type >= 14 && type <= 18)) && frame_ && picture_.complete()) finishPicture(sink);
  switch (nal_.type()) {
    case NalType::Slice:
    case NalType::IdrSlice: slice(sink); break;
    case NalType::PartitionA:
    case NalType::PartitionB:
    case NalType::PartitionC: nal_.unsupported("data partitioning");
    case NalType::Sei: noteRecoveryPoint(); break;
    case NalType::SequenceParameters: {
      SequenceParameters sps = parseSequenceParameters(nal_);
      // A set may change only between pictures (7.4.1.2.1).
      if (frame_ && active_ && active_->id == sps.id && *active_ != sps) finishPicture(sink);
      sequences_[sps.id] = std::move(sps);
      break;
    }
    case NalType::PictureParameters: {
      const SequenceParameters* sequences[32];
      for (int i = 0; i < 32; ++i) sequences[i] = sequences_[i] ? &*sequences_[i] : nullptr;
      PictureParameters pps = parsePictureParameters(nal_, sequences);
      if (frame_ && last_.pictureParametersId == pps.id && pps_ != pps) finishPicture(sink);
      pictures_[pps.id] = std::move(pps);
      break;
    }
    case NalType::EndOfSequence: finishPicture(sink); break;
    default: break;  // delimiters, filler data, extensions that this decoder passes over
  }
}

// A recovery point SEI message (D.1.8) lets decoding begin at a picture that is not IDR.
void StreamDecoder::noteRecoveryPoint() {
  video::BitReader in = nal_.reader();
  while (!in.atEnd()) {
    std::uint32_t type = 0, size = 0;
    for (std::uint32_t* value : {&type, &size}) {
      std::uint32_t byte;
      do {
        byte = in.bits(8);
        *value += byte;
      } while (byte == 255 && !in.overrun());
    }
    if (type == 6) recoveryPoint_ = true;
    if (size > (in.end() - std::min(in.position(), in.end())) / 8) break;
    in.skip(8 * size);
  }
}

void StreamDecoder::slice(const PictureSink& sink) {
  const SliceStart start = parseSliceStart(nal_);
  const auto& pps = pictures_[start.pictureParametersId];
  const video::BitReader at = nal_.reader();
  if (!pps) nal_.damaged(at, "slice refers to a picture parameter set that is not there");
  const auto& sps = sequences_[pps->sequenceId];
  if (!sps) nal_.damaged(at, "slice refers to a sequence parameter set that is not there");
  for (const std::string& feature : {sps->unsupported(), pps->unsupported()})
    if (!feature.empty()) nal_.unsupported(feature);
  const SliceHeader header = parseSliceHeader(nal_, *sps, *pps);
  if (header.redundantPicCount > 0) return;  // the primary picture is there, or decoding has stopped

  // Behind a picture with operation 5 the numbers may come out the same.
  if (frame_ && (startsPicture(header, last_, *active_) || (first_.has(5) && picture_.complete()))) finishPicture(sink);
  if (!frame_) {
    if (!active_ || *active_ != *sps) {
      if (active_ && !header.idr) nal_.damaged(at, "sequence parameters change at a picture that is not IDR");
      activate(*sps, sink);
    }
    beginPicture(header, sink);
  }
  if (!haveScales_ || pps_ != *pps) {
    pps_ = *pps;
    scales_ = makeLevelScales(active_->scaling, pps_.scaling);
    haveScales_ = true;
  }
  makeGroupMap(header, pps_);
  if (!makeRefLists(header, *active_, dpb_.stored(), frame_->poc(), lists_))
    nal_.damaged(at, "reference list modification names a picture that is not there");
  slices_.decode(nal_, header, pps_, lists_, scales_, pps_.groups.count > 1 ? &groupMap_ : nullptr, picture_);
  last_ = header;

  // Rows are filtered as soon as the row below has been decoded: then nothing looks at them unfiltered any more.
  const auto done = [this](int row) { return picture_.rowMbs[std::size_t(row)] == picture_.widthMbs; };
  for (int& row = picture_.deblockedRows; row < picture_.heightMbs && done(row); ++row) {
    if (row + 1 < picture_.heightMbs && !done(row + 1)) break;
    deblockRow(picture_, row);
  }
}

void StreamDecoder::activate(const SequenceParameters& sps, const PictureSink& sink) {
  dpb_.flush(sink);
  active_ = sps;
  haveScales_ = false;
  dpb_.configure(sps);
}

void StreamDecoder::makeGroupMap(const SliceHeader& header, const PictureParameters& pps) {
  if (pps.groups.count == 1) return;
  if (mappedGroups_ && *mappedGroups_ == pps.groups && mappedCycle_ == header.sliceGroupChangeCycle &&
      groupMap_.size() == picture_.mbs.size())
    return;
  mappedGroups_ = pps.groups;
  mappedCycle_ = header.sliceGroupChangeCycle;
  if (!sliceGroupMap(pps.groups, header.sliceGroupChangeCycle, active_->widthMbs, active_->heightMbs, groupMap_)) {
    mappedGroups_.reset();
    nal_.damaged(nal_.reader(), "slice groups do not fit the picture");
  }
}

void StreamDecoder::beginPicture(const SliceHeader& header, const PictureSink& sink) {
  const SequenceParameters& sps = *active_;
  if (header.idr) {
    started_ = true;
    previousRefFrameNum_ = 0;
  } else if (!started_) {
    if (!recoveryPoint_) nal_.damaged(nal_.reader(), "stream does not begin with an IDR picture or a recovery point");
    started_ = true;
    previousRefFrameNum_ = header.frameNum;
  }
  recoveryPoint_ = false;

  const std::uint32_t next = (previousRefFrameNum_ + 1) & (sps.maxFrameNum() - 1);
  if (header.frameNum != previousRefFrameNum_ && header.frameNum != next) {
    if (!sps.gapsInFrameNum) nal_.damaged(nal_.reader(), "gap in frame_num: pictures are missing");
    SliceHeader inferred;
    inferred.refIdc = 1;
    dpb_.fillGap(next, header.frameNum, sink, [&](std::uint32_t frameNum) {
      inferred.frameNum = frameNum;
      // With type 0 an inferred frame has no count; nothing may ask for it.
      return sps.pocType == 0 ? 0 : order_.next(sps, inferred).top;
    });
    previousRefFrameNum_ = (header.frameNum - 1) & (sps.maxFrameNum() - 1);
  }

  const PictureOrder::Counts counts = order_.next(sps, header);
  frame_ = &dpb_.newFrame();
  frame_->frameNum = header.frameNum;
  frame_->topPoc = counts.top;
  frame_->bottomPoc = counts.bottom;
  frame_->format = sps.format();
  frame_->cropLeft = sps.cropLeft;
  frame_->cropTop = sps.cropTop;
  dpb_.updateFrameNums(header.frameNum);
  dpb_.noteSerials(frame_->storeSerials);
  picture_.begin(sps, *frame_);
  first_ = last_ = header;
}

void StreamDecoder::finishPicture(const PictureSink& sink) {
  if (!frame_) return;
  if (!picture_.complete()) {
    std::size_t missing = 0;
    while (picture_.mbs[missing].slice >= 0) ++missing;
    throw StreamError(StreamError::Kind::Damaged, last_.filePosition,
                      "picture ends without macroblock " + std::to_string(missing));
  }
  if (first_.refIdc != 0) {
    frame_->expand();
    previousRefFrameNum_ = first_.has(5) ? 0 : first_.frameNum;
  }
  Frame& frame = *frame_;
  frame_ = nullptr;
  ++pictures_decoded_;
  dpb_.store(frame, first_, sink);
  order_.finished(first_, frame.topPoc);
}

std::vector<std::pair<std::string, std::string>> StreamDecoder::describe() const {
  std::vector<std::pair<std::string, std::string>> lines;
  const SequenceParameters* sps = active_ ? &*active_ : nullptr;
  for (const auto& sequence : sequences_)
    if (!sps && sequence) sps = &*sequence;
  if (!sps) return lines;
  lines.emplace_back("profile", profileName(*sps));
  lines.emplace_back("level", std::to_string(sps->level / 10) + "." + std::to_string(sps->level % 10));
  lines.emplace_back("size", std::to_string(sps->width()) + "x" + std::to_string(sps->height()));
  if (sps->width() != 16 * sps->widthMbs || sps->height() != 16 * sps->heightMbs)
    lines.emplace_back("coded size",
                       std::to_string(16 * sps->widthMbs) + "x" + std::to_string(16 * sps->heightMbs));
  lines.emplace_back("reference frames", std::to_string(sps->maxRefFrames));
  lines.emplace_back("picture order count", "type " + std::to_string(sps->pocType));
  for (const auto& pps : pictures_) {
    if (!pps || pps->sequenceId != sps->id) continue;
    lines.emplace_back("entropy coding", pps->cabac ? "CABAC" : "CAVLC");
    if (pps->groups.count > 1)
      lines.emplace_back("slice groups", std::to_string(pps->groups.count) + ", map type " +
                                             std::to_string(pps->groups.mapType));
    break;
  }
  std::string unsupported = sps->unsupported();
  for (const auto& pps : pictures_)
    if (unsupported.empty() && pps && pps->sequenceId == sps->id) unsupported = pps->unsupported();
  if (!unsupported.empty()) lines.emplace_back("not supported", unsupported);
  return lines;
}

}  // namespace

std::unique_ptr<video::Decoder> makeDecoder() { return std::make_unique<StreamDecoder>(); }

bool looksLikeStream(std::span<const std::uint8_t> data) {
  // A start code, and behind it a parameter set, a delimiter, SEI or a slice; other codecs that use start codes begin
  // with bytes that have the forbidden bit set or the wrong nal_ref_idc.
  std::size_t at = 0;
  while (at < data.size() && at < 16 && data[at] == 0) ++at;
  if (at < 2 || at + 1 >= data.size() || data[at] != 1) return false;
  const unsigned header = data[at + 1], type = header & 31, refIdc = header >> 5;
  if (header & 0x80) return false;
  switch (type) {
    case 7: case 8: case 5: return refIdc != 0;
    case 6: case 9: return refIdc == 0;
    case 1: return true;
    default: return false;
  }
}

}  // namespace h264
