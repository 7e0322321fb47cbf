#include "h264/slice_header.h"

#include <bit>

namespace h264 {

using video::BitReader;

namespace {

void parseListModifications(const Nal& nal, BitReader& in, std::vector<ListModification>& list, unsigned refCount) {
  if (!in.flag()) return;
  for (;;) {
    const std::uint32_t idc = in.ue();
    if (idc == 3) return;
    if (idc > 3) nal.damaged(in, "modification_of_pic_nums_idc is out of range");
    if (list.size() > refCount) nal.damaged(in, "reference list modification does not end");
    list.push_back({idc, in.ue()});
  }
}

void parseWeights(const Nal& nal, BitReader& in, SliceHeader& slice) {
  for (unsigned& denominator : slice.logWeightDenominator) {
    denominator = in.ue();
    if (denominator > 7) nal.damaged(in, "log2_weight_denom is out of range");
  }
  for (int list = 0; list < (slice.type == SliceType::B ? 2 : 1); ++list)
    for (unsigned i = 0; i < slice.refCount[list]; ++i) {
      ExplicitWeight& weight = slice.weights[list][i];
      for (int plane = 0; plane < 3; ++plane) {
        weight.weight[plane] = std::int16_t(1 << slice.logWeightDenominator[plane != 0]);
        weight.offset[plane] = 0;
      }
      for (int planes = 0; planes < 2; ++planes) {
        if (!in.flag()) continue;
        for (int plane = planes; plane <= 2 * planes; ++plane) {
          const std::int32_t factor = in.se(), offset = in.se();
          if (factor < -128 || factor > 127 || offset < -128 || offset > 127)
            nal.damaged(in, "prediction weight is out of range");
          weight.weight[plane] = std::int16_t(factor);
          weight.offset[plane] = std::int16_t(offset);
        }
      }
    }
}

void parseMarking(const Nal& nal, BitReader& in, SliceHeader& slice) {
  if (slice.idr) {
    slice.noOutputOfPriorPics = in.flag();
    slice.longTermReference = in.flag();
    return;
  }
  slice.adaptiveMarking = in.flag();
  if (!slice.adaptiveMarking) return;
  for (;;) {
    MemoryCommand command{in.ue(), 0, 0};
    if (command.operation == 0) return;
    if (command.operation > 6) nal.damaged(in, "memory_management_control_operation is out of range");
    if (slice.memoryCommands.size() >= 64) nal.damaged(in, "memory management commands do not end");
    if (command.operation == 1 || command.operation == 3) command.differenceOfPicNums = in.ue();
    if (command.operation == 2 || command.operation == 3 || command.operation == 4 || command.operation == 6)
      command.longTerm = in.ue();
    slice.memoryCommands.push_back(command);
  }
}

}  // namespace

SliceStart parseSliceStart(const Nal& nal) {
  BitReader in = nal.reader();
  SliceStart start;
  start.firstMb = in.ue();
  start.type = in.ue();
  if (start.type > 9) nal.damaged(in, "slice_type is out of range");
  start.pictureParametersId = in.ue();
  if (start.pictureParametersId > 255) nal.damaged(in, "pic_parameter_set_id is out of range");
  return start;
}

SliceHeader parseSliceHeader(const Nal& nal, const SequenceParameters& sps, const PictureParameters& pps) {
  BitReader in = nal.reader();
  SliceHeader slice;
  slice.idr = nal.type() == NalType::IdrSlice;
  slice.refIdc = nal.refIdc();
  slice.filePosition = nal.filePosition();
  slice.firstMb = in.ue();
  slice.type = SliceType(in.ue() % 5);
  slice.pictureParametersId = in.ue();
  if (slice.type == SliceType::SP || slice.type == SliceType::SI) nal.unsupported("switching slices (SP, SI)");
  if (slice.idr && !slice.intra()) nal.damaged(in, "IDR picture with a slice that is not intra");
  if (slice.idr && slice.refIdc == 0) nal.damaged(in, "IDR picture with nal_ref_idc 0");
  if (slice.firstMb >= std::uint32_t(sps.mbCount())) nal.damaged(in, "first_mb_in_slice is out of range");
  slice.frameNum = in.bits(sps.frameNumBits);
  if (slice.idr) {
    if (slice.frameNum != 0) nal.damaged(in, "IDR picture with a frame_num other than 0");
    slice.idrPicId = in.ue();
    if (slice.idrPicId > 65535) nal.damaged(in, "idr_pic_id is out of range");
  }
  if (sps.pocType == 0) {
    slice.pocLsb = in.bits(sps.pocLsbBits);
    if (pps.bottomFieldPicOrder) slice.deltaPocBottom = in.se();
  } else if (sps.pocType == 1 && !sps.deltaPocAlwaysZero) {
    slice.deltaPoc[0] = in.se();
    if (pps.bottomFieldPicOrder) slice.deltaPoc[1] = in.se();
  }
  if (pps.redundantPictures) {
    slice.redundantPicCount = in.ue();
    if (slice.redundantPicCount > 127) nal.damaged(in, "redundant_pic_cnt is out of range");
  }
  const int lists = slice.type == SliceType::B ? 2 : slice.type == SliceType::P ? 1 : 0;
  if (lists == 2) slice.directSpatial = in.flag();
  if (lists > 0) {
    const bool own = in.flag();
    for (int list = 0; list < lists; ++list) {
      slice.refCount[list] = pps.refCount[list];
      if (own) {
        const std::uint32_t coded = in.ue();
        slice.refCount[list] = coded > 31 ? 32 : coded + 1;
      }
      if (slice.refCount[list] > maxRefs) nal.damaged(in, "num_ref_idx_active_minus1 is out of range");
    }
    for (int list = 0; list < lists; ++list)
      parseListModifications(nal, in, slice.modifications[list], slice.refCount[list]);
  }
  if ((pps.weightedPrediction && slice.type == SliceType::P) || (pps.weightedBipred == 1 && slice.type == SliceType::B))
    parseWeights(nal, in, slice);
  if (slice.refIdc != 0) parseMarking(nal, in, slice);
  const std::int32_t qpDelta = in.se();
  if (qpDelta < -pps.initialQp || qpDelta > 51 - pps.initialQp) nal.damaged(in, "slice QP is out of range");
  slice.qp = pps.initialQp + qpDelta;
  if (pps.deblockingControl) {
    slice.deblockingDisabled = in.ue();
    if (slice.deblockingDisabled > 2) nal.damaged(in, "disable_deblocking_filter_idc is out of range");
    if (slice.deblockingDisabled != 1) {
      const std::int32_t alpha = in.se(), beta = in.se();
      if (alpha < -6 || alpha > 6 || beta < -6 || beta > 6) nal.damaged(in, "deblocking offset is out of range");
      slice.alphaOffset = 2 * alpha;
      slice.betaOffset = 2 * beta;
    }
  }
  if (pps.groups.count > 1 && pps.groups.mapType >= 3 && pps.groups.mapType <= 5) {
    // Ceil(Log2(PicSizeInMapUnits / SliceGroupChangeRate + 1)) bits, the division rounded up.
    const std::uint32_t cycles = std::uint32_t((std::uint64_t(sps.mbCount()) + pps.groups.changeRate - 1) /
                                               pps.groups.changeRate);
    const unsigned bits = unsigned(std::bit_width(cycles));
    slice.sliceGroupChangeCycle = in.bits(bits);
    if (slice.sliceGroupChangeCycle > cycles) nal.damaged(in, "slice_group_change_cycle is out of range");
  }
  if (in.overrun()) nal.damaged(in, "slice header ends early");
  slice.dataBit = in.position();
  return slice;
}

bool startsPicture(const SliceHeader& slice, const SliceHeader& previous, const SequenceParameters& sps) {
  if (slice.frameNum != previous.frameNum || slice.pictureParametersId != previous.pictureParametersId ||
      slice.idr != previous.idr || (slice.refIdc == 0) != (previous.refIdc == 0))
    return true;
  if (slice.idr && slice.idrPicId != previous.idrPicId) return true;
  if (sps.pocType == 0) return slice.pocLsb != previous.pocLsb || slice.deltaPocBottom != previous.deltaPocBottom;
  if (sps.pocType == 1) return slice.deltaPoc[0] != previous.deltaPoc[0] || slice.deltaPoc[1] != previous.deltaPoc[1];
  return false;
}

}  // namespace h264
