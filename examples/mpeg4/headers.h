// Headers: visual object, video object layer, group and plane of ISO/IEC 14496-2 (6.2.2 to 6.2.5), and pictures of
// ITU-T H.263 (5.1), of which the short header of MPEG-4 is the smallest kind.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "common/decoder.h"
#include "mpeg4/unit.h"

namespace mpeg4 {

enum class PictureType { I, P, B, S };

// What holds for many pictures.
struct Layer {
  bool h263 = false;  // pictures of H.263
  int width = 0, height = 0;
  video::Ratio sampleAspect, frameRate;

  // Video object layer.
  int ticks = 1;     // a second has so many
  int tickBits = 1;  // of vop_time_increment
  bool lowDelay = false;
  bool interlaced = false;
  bool mpegQuantization = false;
  std::array<std::uint8_t, 64> intraMatrix{}, interMatrix{};
  bool resyncMarkers = false, dataPartitioned = false, reversible = false;
  bool operator==(const Layer&) const = default;

  int widthMbs() const { return (width + 15) / 16; }
  int heightMbs() const { return (height + 15) / 16; }
  int rowsOfGroup() const { return height <= 400 ? 1 : height <= 800 ? 2 : 4; }  // H.263: macroblock rows of a GOB
  video::Format format() const;
};

struct PictureHeader {
  PictureType type = PictureType::I;
  bool coded = true;
  int quantizer = 1;
  int rounding = 0;  // 1: half-sample means round down
  int fcodeForward = 1, fcodeBackward = 1;
  int intraDcThreshold = 0;
  bool topFieldFirst = false, verticalScan = false;  // of interlaced layers
  std::int64_t seconds = 0;                          // modulo_time_base, or the time code of a group
  int tick = 0;

  // H.263.
  int temporalReference = 0;
  bool plus = false;                  // PLUSPTYPE
  bool unrestricted = false;          // Annex D
  bool advancedIntra = false;         // Annex I
  bool deblocking = false;            // Annex J
  bool modifiedQuantization = false;  // Annex T
};

// What visual_object() tells for the layers below.
struct VisualObject {
  int profileAndLevel = -1;
  int version = 1;
};

void parseVisualObject(Unit& in, VisualObject& object);
Layer parseLayer(Unit& in, const VisualObject& object);
PictureHeader parseVop(Unit& in, const Layer& layer);
std::int64_t parseGroupTime(Unit& in);  // in seconds

// The header of H.263 that follows the first 16 bits of the start code. Size and what an extended header tells once for
// later pictures too go into the layer and the options.
struct H263Options {
  bool known = false;
  bool unrestricted = false, advancedIntra = false, deblocking = false, modifiedQuantization = false;
  bool customClock = false;
};
PictureHeader parseH263(Unit& in, Layer& layer, H263Options& options);

std::string profileName(int profileAndLevel);

}  // namespace mpeg4
