// The slice header (H.264 7.3.3), for coded frames.
#pragma once

#include <cstdint>
#include <vector>

#include "h264/nal.h"
#include "h264/parameter_sets.h"

namespace h264 {

enum class SliceType { P = 0, B = 1, I = 2, SP = 3, SI = 4 };

inline constexpr int maxRefs = 16;  // entries of a reference list of frames

struct ListModification {
  unsigned idc;         // modification_of_pic_nums_idc: 0 subtract, 1 add, 2 long-term
  std::uint32_t value;  // abs_diff_pic_num_minus1 or long_term_pic_num
};

struct MemoryCommand {
  unsigned operation;                   // memory_management_control_operation, 1 to 6
  std::uint32_t differenceOfPicNums;    // minus 1; operations 1 and 3
  std::uint32_t longTerm;               // long_term_pic_num, long_term_frame_idx, max_long_term_frame_idx_plus1
};

// Explicit weights of one entry of a list, for Y, Cb, Cr (8.4.2.3).
struct ExplicitWeight {
  std::int16_t weight[3];
  std::int16_t offset[3];
  bool operator==(const ExplicitWeight&) const = default;
};

struct SliceHeader {
  bool idr = false;
  unsigned refIdc = 0;
  std::int64_t filePosition = 0;
  std::uint32_t firstMb = 0;
  SliceType type = SliceType::I;
  unsigned pictureParametersId = 0;
  std::uint32_t frameNum = 0;
  std::uint32_t idrPicId = 0;
  std::uint32_t pocLsb = 0;
  std::int32_t deltaPocBottom = 0;
  std::int32_t deltaPoc[2] = {0, 0};
  unsigned redundantPicCount = 0;
  bool directSpatial = false;
  unsigned refCount[2] = {0, 0};
  std::vector<ListModification> modifications[2];
  unsigned logWeightDenominator[2] = {0, 0};  // luma, chroma
  ExplicitWeight weights[2][maxRefs];
  bool noOutputOfPriorPics = false;
  bool longTermReference = false;
  bool adaptiveMarking = false;
  std::vector<MemoryCommand> memoryCommands;
  int qp = 26;
  unsigned deblockingDisabled = 0;  // disable_deblocking_filter_idc
  int alphaOffset = 0, betaOffset = 0;
  std::uint32_t sliceGroupChangeCycle = 0;
  std::uint32_t dataBit = 0;  // where slice_data begins

  bool intra() const { return type == SliceType::I; }
  bool has(unsigned operation) const {
    for (const MemoryCommand& command : memoryCommands)
      if (command.operation == operation) return true;
    return false;
  }
};

// The id of the picture parameter set that a slice refers to, and the slice's place among the picture's.
struct SliceStart {
  std::uint32_t firstMb;
  std::uint32_t type;
  unsigned pictureParametersId;
};
SliceStart parseSliceStart(const Nal& nal);

SliceHeader parseSliceHeader(const Nal& nal, const SequenceParameters& sps, const PictureParameters& pps);

// Is this the first slice of a new primary coded picture, behind a slice of another? (7.4.1.2.4)
bool startsPicture(const SliceHeader& slice, const SliceHeader& previous, const SequenceParameters& sps);

}  // namespace h264
