#include "mpeg4/headers.h"

#include <algorithm>
#include <bit>

#include "common/zigzag.h"
#include "mpeg4/codes.h"

namespace mpeg4 {

namespace {

constexpr int mostMacroblocks = 36864;

const int sizes[6][2] = {{0, 0}, {128, 96}, {176, 144}, {352, 288}, {704, 576}, {1408, 1152}};  // source formats
const video::Ratio aspects[6] = {{0, 0}, {1, 1}, {12, 11}, {10, 11}, {16, 11}, {40, 33}};

video::Ratio readAspect(Unit& in) {
  const unsigned code = in.bits(4);
  if (code < 6) return aspects[code];
  if (code != 15) return {};
  const int width = int(in.bits(8)), height = int(in.bits(8));
  return {width, height};
}

// Weights in zigzag order; 0 ends them, the last one holds for the rest (6.3.3).
void readMatrix(Unit& in, std::array<std::uint8_t, 64>& matrix) {
  std::uint8_t last = 0;
  bool ended = false;
  for (int i = 0; i < 64; ++i) {
    const std::uint8_t weight = ended ? std::uint8_t(0) : std::uint8_t(in.bits(8));
    ended = weight == 0;
    if (!ended) last = weight;
    if (last == 0) in.damaged("a quantization matrix begins with 0");
    matrix[video::zigzag8x8[i]] = last;
  }
}

void checkSize(const Unit& in, const Layer& layer) {
  if (layer.width == 0 || layer.height == 0) in.damaged("a picture of no size");
  if (layer.widthMbs() * layer.heightMbs() > mostMacroblocks)
    in.unsupported("pictures of more than " + std::to_string(mostMacroblocks) + " macroblocks");
}

}  // namespace

video::Format Layer::format() const {
  video::Format format;
  format.width = width;
  format.height = height;
  format.sampleAspect = sampleAspect;
  format.frameRate = frameRate;
  return format;
}

void parseVisualObject(Unit& in, VisualObject& object) {
  if (in.flag()) {
    object.version = int(in.bits(4));
    in.skip(3);
  }
  const unsigned type = in.bits(4);
  in.check();
  if (type != 1) in.unsupported("visual objects other than video");
}

Layer parseLayer(Unit& in, const VisualObject& object) {
  Layer layer;
  in.skip(1 + 8);
  int version = object.version;
  if (in.flag()) {
    version = int(in.bits(4));
    in.skip(3);
  }
  layer.sampleAspect = readAspect(in);
  if (in.flag()) {  // vol_control_parameters
    in.skip(2);
    layer.lowDelay = in.flag();
    if (in.flag()) in.skip(79);
  }
  if (in.bits(2) != 0) in.unsupported("shapes that are not rectangles");
  in.marker();
  layer.ticks = int(in.bits(16));
  if (layer.ticks == 0) in.damaged("vop_time_increment_resolution is 0");
  layer.tickBits = std::max(1, int(std::bit_width(unsigned(layer.ticks - 1))));
  in.marker();
  if (in.flag()) {
    const int increment = int(in.bits(unsigned(layer.tickBits)));
    if (increment > 0) layer.frameRate = {layer.ticks, increment};
  }
  in.marker();
  layer.width = int(in.bits(13));
  in.marker();
  layer.height = int(in.bits(13));
  in.marker();
  in.check();
  checkSize(in, layer);
  layer.interlaced = in.flag();
  if (!in.flag()) in.unsupported("overlapped block motion compensation");
  const unsigned sprite = in.bits(version == 1 ? 1 : 2);
  if (sprite == 1) in.unsupported("sprites");
  if (sprite == 2) in.unsupported("global motion compensation");
  if (sprite == 3) in.damaged("sprite_enable is 3");
  if (in.flag()) in.unsupported("samples that have not 8 bits");
  layer.mpegQuantization = in.flag();
  if (layer.mpegQuantization) {
    std::copy_n(defaultIntraMatrix, 64, layer.intraMatrix.begin());
    std::copy_n(defaultInterMatrix, 64, layer.interMatrix.begin());
    if (in.flag()) readMatrix(in, layer.intraMatrix);
    if (in.flag()) readMatrix(in, layer.interMatrix);
  }
  if (version != 1 && in.flag()) in.unsupported("quarter-sample motion compensation");
  if (!in.flag()) in.unsupported("complexity estimation headers");
  layer.resyncMarkers = !in.flag();
  layer.dataPartitioned = in.flag();
  if (layer.dataPartitioned) layer.reversible = in.flag();
  if (layer.dataPartitioned && layer.interlaced) in.unsupported("data partitioning of interlaced pictures");
  if (version != 1) {
    if (in.flag()) in.unsupported("prediction from newly chosen pictures (NEWPRED)");
    if (in.flag()) in.unsupported("VOPs of reduced resolution");
  }
  if (in.flag()) in.unsupported("scalable layers");
  in.check();
  return layer;
}

std::int64_t parseGroupTime(Unit& in) {
  const std::int64_t hours = in.bits(5), minutes = in.bits(6);
  in.marker();
  const std::int64_t seconds = in.bits(6);
  in.check();
  return 3600 * hours + 60 * minutes + seconds;
}

PictureHeader parseVop(Unit& in, const Layer& layer) {
  PictureHeader header;
  header.type = PictureType(in.bits(2));
  while (in.flag()) {
    ++header.seconds;
    in.check();
  }
  in.marker();
  header.tick = int(in.bits(unsigned(layer.tickBits)));
  in.marker();
  header.coded = in.flag();
  in.check();
  if (!header.coded) return header;
  if (header.type == PictureType::S) in.unsupported("S-VOPs without a sprite");
  if (header.type == PictureType::P) header.rounding = in.flag();
  header.intraDcThreshold = int(in.bits(3));
  if (layer.interlaced) {
    header.topFieldFirst = in.flag();
    header.verticalScan = in.flag();
  }
  header.quantizer = int(in.bits(5));
  if (header.quantizer == 0) in.damaged("the quantizer is 0");
  if (header.type != PictureType::I) header.fcodeForward = int(in.bits(3));
  if (header.type == PictureType::B) header.fcodeBackward = int(in.bits(3));
  if (header.fcodeForward == 0 || header.fcodeBackward == 0) in.damaged("a range of vectors is 0");
  in.check();
  return header;
}

namespace {

void parsePlusType(Unit& in, Layer& layer, H263Options& options, PictureHeader& header) {
  header.plus = true;
  const unsigned updated = in.bits(3);
  if (updated > 1) in.damaged("UFEP is not 0 or 1");
  bool customSize = false;
  if (updated == 1) {
    const unsigned format = in.bits(3);
    options.known = true;
    options.customClock = in.flag();
    options.unrestricted = in.flag();
    if (in.flag()) in.unsupported("syntax-based arithmetic coding (Annex E)");
    if (in.flag()) in.unsupported("advanced prediction (Annex F)");
    options.advancedIntra = in.flag();
    options.deblocking = in.flag();
    if (in.flag()) in.unsupported("slices (Annex K)");
    if (in.flag()) in.unsupported("reference picture selection (Annex N)");
    if (in.flag()) in.unsupported("independent segments (Annex R)");
    if (in.flag()) in.unsupported("alternative inter codes (Annex S)");
    options.modifiedQuantization = in.flag();
    if (in.bits(4) != 8) in.damaged("fixed bits of OPPTYPE are wrong");
    if (format == 0 || format == 7) in.damaged("a reserved source format");
    customSize = format == 6;
    if (!customSize) {
      layer.width = sizes[format][0];
      layer.height = sizes[format][1];
      layer.sampleAspect = {12, 11};
    }
  } else if (!options.known) {
    in.damaged("the first picture does not tell its options");
  }
  const unsigned type = in.bits(3);
  if (type == 2) in.unsupported("improved PB-frames (Annex M)");
  if (type > 2 && type < 6) in.unsupported("scalable pictures (Annex O)");
  if (type > 5) in.damaged("a reserved picture type");
  header.type = PictureType(type);
  if (in.flag()) in.unsupported("reference picture resampling (Annex P)");
  if (in.flag()) in.unsupported("updates of reduced resolution (Annex Q)");
  header.rounding = in.flag();
  if (in.bits(3) != 1) in.damaged("fixed bits of MPPTYPE are wrong");
  if (in.flag()) in.unsupported("multipoint streams (CPM)");
  if (customSize) {
    layer.sampleAspect = aspects[1];
    const unsigned aspect = in.bits(4);
    layer.width = 4 * (int(in.bits(9)) + 1);
    in.marker();
    layer.height = 4 * int(in.bits(9));
    if (aspect == 15) {
      const int width = int(in.bits(8)), height = int(in.bits(8));
      layer.sampleAspect = {width, height};
    } else {
      layer.sampleAspect = aspect < 6 ? aspects[aspect] : video::Ratio{};
    }
  }
  if (options.customClock) {
    if (updated == 1) {
      const int factor = in.flag() ? 1001 : 1000, divisor = int(in.bits(7));
      if (divisor == 0) in.damaged("the clock's divisor is 0");
      layer.frameRate = {1800000, factor * divisor};
    }
    in.skip(2);  // the high bits of the temporal reference
  }
  if (updated == 1 && options.unrestricted && !in.flag()) in.marker();  // UUI
  header.unrestricted = options.unrestricted;
  header.advancedIntra = options.advancedIntra;
  header.deblocking = options.deblocking;
  header.modifiedQuantization = options.modifiedQuantization;
  in.check();
  checkSize(in, layer);
}

}  // namespace

PictureHeader parseH263(Unit& in, Layer& layer, H263Options& options) {
  PictureHeader header;
  layer.h263 = true;
  in.skip(6);  // the end of the start code
  header.temporalReference = int(in.bits(8));
  if (in.bits(2) != 2) in.damaged("fixed bits of PTYPE are wrong");
  in.skip(3);
  const unsigned format = in.bits(3);
  if (format == 0 || format == 6) in.damaged("a reserved source format");
  if (format == 7) {
    if (layer.frameRate == video::Ratio{}) layer.frameRate = {30000, 1001};
    parsePlusType(in, layer, options, header);
  } else {
    layer.width = sizes[format][0];
    layer.height = sizes[format][1];
    layer.sampleAspect = {12, 11};
    layer.frameRate = {30000, 1001};
    header.type = in.flag() ? PictureType::P : PictureType::I;
    header.unrestricted = in.flag();
    if (in.flag()) in.unsupported("syntax-based arithmetic coding (Annex E)");
    if (in.flag()) in.unsupported("advanced prediction (Annex F)");
    if (in.flag()) in.unsupported("PB-frames (Annex G)");
  }
  header.quantizer = int(in.bits(5));
  if (header.quantizer == 0) in.damaged("the quantizer is 0");
  if (!header.plus && in.flag()) in.unsupported("multipoint streams (CPM)");
  while (in.flag()) {
    in.skip(8);
    in.check();
  }
  in.check();
  return header;
}

std::string profileName(int profileAndLevel) {
  const int low = profileAndLevel & 15;
  switch (profileAndLevel >> 4) {
    case 0:
      return low == 8 ? "Simple, level 0" : low == 9 ? "Simple, level 0b" : "Simple, level " + std::to_string(low);
    case 15:
      if (low < 8) return "Advanced Simple, level " + std::to_string(low == 7 ? 3 : low) + (low == 7 ? "b" : "");
      break;
    default:
      break;
  }
  return "number " + std::to_string(profileAndLevel);
}

}  // namespace mpeg4
