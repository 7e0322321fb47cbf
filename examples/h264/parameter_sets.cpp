#include "h264/parameter_sets.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace h264 {

using video::BitReader;

namespace {

constexpr int largestSide = 1055;      // in macroblocks: the square root of 8 * MaxFS of level 6.2
constexpr int largestFrame = 139264;   // MaxFS of level 6.2

bool highSyntax(unsigned profile) {
  switch (profile) {
    case 100: case 110: case 122: case 244: case 44: case 83: case 86: case 118: case 128: case 138: case 139:
    case 134: case 135:
      return true;
    default: return false;
  }
}

// The profiles whose constraint_set3_flag promises that all pictures are IDR pictures.
bool intraOnly(const SequenceParameters& sps) {
  return (sps.constraints & 0x10) && highSyntax(sps.profile) && sps.profile != 118 && sps.profile != 128;
}

void parseHrd(const Nal& nal, BitReader& in) {
  const std::uint32_t count = in.ue();
  if (count > 31) nal.damaged(in, "cpb_cnt_minus1 is out of range");
  in.skip(8);
  for (std::uint32_t i = 0; i <= count; ++i) {
    in.ue();
    in.ue();
    in.flag();
  }
  in.skip(20);
}

void parseVui(const Nal& nal, BitReader& in, SequenceParameters& sps) {
  static constexpr struct { int num, den; } aspects[17] = {
      {0, 0},   {1, 1},   {12, 11}, {10, 11}, {16, 11}, {40, 33}, {24, 11}, {20, 11}, {32, 11},
      {80, 33}, {18, 11}, {15, 11}, {64, 33}, {160, 99}, {4, 3},  {3, 2},   {2, 1}};
  if (in.flag()) {
    const std::uint32_t idc = in.bits(8);
    if (idc == 255) {
      sps.sampleAspect.num = int(in.bits(16));
      sps.sampleAspect.den = int(in.bits(16));
    } else if (idc <= 16) {
      sps.sampleAspect = {aspects[idc].num, aspects[idc].den};
    }
  }
  if (in.flag()) in.flag();  // overscan
  if (in.flag()) {           // video signal type
    in.skip(3);
    sps.fullRange = in.flag();
    if (in.flag()) {
      in.skip(16);
      sps.matrixCoefficients = in.bits(8);
    }
  }
  if (in.flag()) {  // chroma sample location
    in.ue();
    in.ue();
  }
  if (in.flag()) {
    const std::uint32_t unitsInTick = in.bits(32), timeScale = in.bits(32);
    in.flag();
    // Two ticks a frame.
    if (unitsInTick > 0 && timeScale > 0 && unitsInTick < 0x40000000 && timeScale < 0x80000000) {
      const std::uint32_t divisor = std::gcd(timeScale, 2 * unitsInTick);
      sps.frameRate = {int(timeScale / divisor), int(2 * unitsInTick / divisor)};
    }
  }
  const bool nalHrd = in.flag();
  if (nalHrd) parseHrd(nal, in);
  const bool vclHrd = in.flag();
  if (vclHrd) parseHrd(nal, in);
  if (nalHrd || vclHrd) in.flag();
  in.flag();  // pic_struct_present_flag
  if (in.flag()) {
    in.flag();
    in.ue();
    in.ue();
    in.ue();
    in.ue();
    sps.numReorderFrames = in.ue();
    sps.maxDecFrameBuffering = in.ue();
    sps.bitstreamRestriction = true;
    if (sps.maxDecFrameBuffering > 16 || sps.numReorderFrames > sps.maxDecFrameBuffering)
      nal.damaged(in, "num_reorder_frames or max_dec_frame_buffering is out of range");
  }
}

}  // namespace

SequenceParameters parseSequenceParameters(const Nal& nal) {
  BitReader in = nal.reader();
  SequenceParameters sps;
  sps.profile = in.bits(8);
  sps.constraints = in.bits(8);
  sps.level = in.bits(8);
  sps.id = in.ue();
  if (sps.id > 31) nal.damaged(in, "seq_parameter_set_id is out of range");
  if (highSyntax(sps.profile)) {
    sps.chromaFormat = in.ue();
    if (sps.chromaFormat > 3) nal.damaged(in, "chroma_format_idc is out of range");
    if (sps.chromaFormat == 3) in.flag();
    const std::uint32_t depthLuma = in.ue(), depthChroma = in.ue();
    if (depthLuma > 6 || depthChroma > 6) nal.damaged(in, "bit depth is out of range");
    sps.bitDepthLuma = 8 + depthLuma;
    sps.bitDepthChroma = 8 + depthChroma;
    sps.losslessBypass = in.flag();
    if (in.flag()) sps.scaling = parseScalingLists(in, sps.chromaFormat == 3 ? 12 : 8);
  }
  const std::uint32_t frameNum = in.ue();
  if (frameNum > 12) nal.damaged(in, "log2_max_frame_num_minus4 is out of range");
  sps.frameNumBits = frameNum + 4;
  sps.pocType = in.ue();
  if (sps.pocType > 2) nal.damaged(in, "pic_order_cnt_type is out of range");
  if (sps.pocType == 0) {
    const std::uint32_t lsb = in.ue();
    if (lsb > 12) nal.damaged(in, "log2_max_pic_order_cnt_lsb_minus4 is out of range");
    sps.pocLsbBits = lsb + 4;
  } else if (sps.pocType == 1) {
    sps.deltaPocAlwaysZero = in.flag();
    sps.offsetForNonRef = in.se();
    sps.offsetForTopToBottom = in.se();
    const std::uint32_t count = in.ue();
    if (count > 255) nal.damaged(in, "num_ref_frames_in_pic_order_cnt_cycle is out of range");
    for (std::uint32_t i = 0; i < count; ++i) sps.offsetForRefFrame.push_back(in.se());
  }
  sps.maxRefFrames = in.ue();
  if (sps.maxRefFrames > 16) nal.damaged(in, "max_num_ref_frames is out of range");
  sps.gapsInFrameNum = in.flag();
  const std::uint32_t width = in.ue(), mapHeight = in.ue();
  sps.frameMbsOnly = in.flag();
  if (width >= largestSide || mapHeight >= largestSide) nal.damaged(in, "picture size is out of range");
  sps.widthMbs = int(width) + 1;
  sps.heightMbs = (int(mapHeight) + 1) * (sps.frameMbsOnly ? 1 : 2);
  if (sps.heightMbs > largestSide || sps.mbCount() > largestFrame) nal.damaged(in, "picture size is out of range");
  if (!sps.frameMbsOnly) sps.mbaff = in.flag();
  sps.direct8x8Inference = in.flag();
  if (in.flag()) {
    const int unitX = sps.chromaFormat == 1 || sps.chromaFormat == 2 ? 2 : 1;
    const int unitY = (sps.chromaFormat == 1 ? 2 : 1) * (sps.frameMbsOnly ? 1 : 2);
    const std::uint32_t left = in.ue(), right = in.ue(), top = in.ue(), bottom = in.ue();
    const std::uint32_t limitX = std::uint32_t(16 * sps.widthMbs / unitX);
    const std::uint32_t limitY = std::uint32_t(16 * sps.heightMbs / unitY);
    if (left >= limitX || right >= limitX - left || top >= limitY || bottom >= limitY - top)
      nal.damaged(in, "frame cropping leaves no picture");
    sps.cropLeft = int(left) * unitX;
    sps.cropRight = int(right) * unitX;
    sps.cropTop = int(top) * unitY;
    sps.cropBottom = int(bottom) * unitY;
  }
  if (in.flag()) parseVui(nal, in, sps);
  if (in.overrun()) nal.damaged(in, "sequence parameter set ends early");
  return sps;
}

PictureParameters parsePictureParameters(const Nal& nal, const SequenceParameters* const sequences[32]) {
  BitReader in = nal.reader();
  PictureParameters pps;
  pps.id = in.ue();
  if (pps.id > 255) nal.damaged(in, "pic_parameter_set_id is out of range");
  pps.sequenceId = in.ue();
  if (pps.sequenceId > 31) nal.damaged(in, "seq_parameter_set_id is out of range");
  pps.cabac = in.flag();
  pps.bottomFieldPicOrder = in.flag();
  const std::uint32_t groups = in.ue();
  if (groups > 7) nal.damaged(in, "num_slice_groups_minus1 is out of range");
  SliceGroups& map = pps.groups;
  map.count = groups + 1;
  if (groups > 0) {
    map.mapType = in.ue();
    switch (map.mapType) {
      case 0:
        for (unsigned i = 0; i <= groups; ++i) {
          const std::uint32_t run = in.ue();
          if (run >= largestFrame) nal.damaged(in, "run_length_minus1 is out of range");
          map.runLength[i] = run + 1;
        }
        break;
      case 1: break;
      case 2:
        for (unsigned i = 0; i < groups; ++i) {
          map.topLeft[i] = in.ue();
          map.bottomRight[i] = in.ue();
        }
        break;
      case 3: case 4: case 5:
        map.changeDirection = in.flag();
        map.changeRate = in.ue() + 1;
        if (map.changeRate == 0) nal.damaged(in, "slice_group_change_rate_minus1 is out of range");
        break;
      case 6: {
        const std::uint32_t size = in.ue();
        if (size >= largestFrame) nal.damaged(in, "pic_size_in_map_units_minus1 is out of range");
        const unsigned bits = unsigned(std::bit_width(groups));
        for (std::uint32_t i = 0; i <= size && !in.overrun(); ++i) {
          const std::uint32_t id = in.bits(bits);
          if (id > groups) nal.damaged(in, "slice_group_id is out of range");
          map.ids.push_back(std::uint8_t(id));
        }
        break;
      }
      default: nal.damaged(in, "slice_group_map_type is out of range");
    }
  }
  for (unsigned& count : pps.refCount) {
    const std::uint32_t coded = in.ue();
    if (coded > 31) nal.damaged(in, "num_ref_idx_default_active_minus1 is out of range");
    count = coded + 1;
  }
  pps.weightedPrediction = in.flag();
  pps.weightedBipred = in.bits(2);
  if (pps.weightedBipred > 2) nal.damaged(in, "weighted_bipred_idc is out of range");
  const std::int32_t qp = in.se(), qs = in.se(), chromaOffset = in.se();
  if (qp < -26 - 36 || qp > 25 || qs < -26 || qs > 25) nal.damaged(in, "pic_init_qp_minus26 is out of range");
  if (chromaOffset < -12 || chromaOffset > 12) nal.damaged(in, "chroma_qp_index_offset is out of range");
  pps.initialQp = 26 + qp;
  pps.initialQs = 26 + qs;
  pps.chromaQpOffset[0] = pps.chromaQpOffset[1] = chromaOffset;
  pps.deblockingControl = in.flag();
  pps.constrainedIntra = in.flag();
  pps.redundantPictures = in.flag();
  if (!in.atEnd()) {
    pps.transform8x8 = in.flag();
    if (in.flag()) {
      const SequenceParameters* sps = sequences[pps.sequenceId];
      const int lists8x8 = !pps.transform8x8 ? 0 : sps && sps->chromaFormat == 3 ? 6 : 2;
      pps.scaling = parseScalingLists(in, 6 + lists8x8);
    }
    pps.chromaQpOffset[1] = in.se();
    if (pps.chromaQpOffset[1] < -12 || pps.chromaQpOffset[1] > 12)
      nal.damaged(in, "second_chroma_qp_index_offset is out of range");
  }
  if (in.overrun()) nal.damaged(in, "picture parameter set ends early");
  return pps;
}

int SequenceParameters::dpbFrames() const {
  // MaxDpbMbs, Table A-1.
  const bool level1b = level == 9 || (level == 11 && (constraints & 0x10) && !highSyntax(profile));
  int mbs = 0;
  if (level1b || level == 10) mbs = 396;
  else if (level == 11) mbs = 900;
  else if (level >= 12 && level <= 20) mbs = 2376;
  else if (level == 21) mbs = 4752;
  else if (level == 22 || level == 30) mbs = 8100;
  else if (level == 31) mbs = 18000;
  else if (level == 32) mbs = 20480;
  else if (level == 40 || level == 41) mbs = 32768;
  else if (level == 42) mbs = 34816;
  else if (level == 50) mbs = 110400;
  else if (level == 51 || level == 52) mbs = 184320;
  else if (level >= 60 && level <= 62) mbs = 696320;
  int frames = mbs == 0 ? 16 : std::min(16, mbs / mbCount());
  if (bitstreamRestriction) frames = int(maxDecFrameBuffering);
  else if (intraOnly(*this)) frames = 0;
  // A stream that breaks its level is still decoded.
  return std::max({frames, int(maxRefFrames), 1});
}

int SequenceParameters::reorderFrames() const {
  if (pocType == 2 || (intraOnly(*this) && !bitstreamRestriction)) return 0;
  return bitstreamRestriction ? int(numReorderFrames) : dpbFrames();
}

video::Format SequenceParameters::format() const {
  video::Format format;
  format.width = width();
  format.height = height();
  format.sampleAspect = sampleAspect;
  format.frameRate = frameRate;
  format.fullRange = fullRange;
  if (matrixCoefficients == 1) format.matrix = video::Matrix::Bt709;
  else if (matrixCoefficients == 9 || matrixCoefficients == 10) format.matrix = video::Matrix::Bt2020;
  else if (matrixCoefficients == 2 && format.height >= 720) format.matrix = video::Matrix::Bt709;
  return format;
}

std::string SequenceParameters::unsupported() const {
  if (chromaFormat != 1) {
    static const char* const names[4] = {"monochrome", "4:2:0", "4:2:2", "4:4:4"};
    return std::string("chroma format ") + names[chromaFormat];
  }
  if (bitDepthLuma != 8 || bitDepthChroma != 8)
    return "a bit depth of " + std::to_string(std::max(bitDepthLuma, bitDepthChroma));
  if (!frameMbsOnly) return mbaff ? "interlaced coding (MBAFF)" : "interlaced coding";
  if (losslessBypass) return "lossless transform bypass";
  return {};
}

std::string PictureParameters::unsupported() const {
  if (cabac) return "CABAC entropy coding";
  return {};
}

std::string profileName(const SequenceParameters& sps) {
  switch (sps.profile) {
    case 66: return sps.constraints & 0x40 ? "Constrained Baseline" : "Baseline";
    case 77: return "Main";
    case 88: return "Extended";
    case 100: return "High";
    case 110: return "High 10";
    case 122: return "High 4:2:2";
    case 244: return "High 4:4:4 Predictive";
    case 44: return "CAVLC 4:4:4 Intra";
    default: return "profile " + std::to_string(sps.profile);
  }
}

}  // namespace h264
