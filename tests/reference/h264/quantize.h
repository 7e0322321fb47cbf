// Models of forward quantization.
#pragma once

#include "reference/h264/transform.h"

namespace reference::quantize {

using transform::Block;
using transform::Value;

struct Levels {
  Block levels;       // as many as are done
  Block transformed;  // the coefficients
  int number = 0;     // of levels other than 0; negative where a member tells of a DC in this way
  int last = 0;       // the largest scan position of one of them
  bool tooLarge = false;
};

// What is quantized and how. bits is the width of the coefficients, levelBits that of the levels.
struct Rule {
  Block factors;
  Value rounding;
  int shift;
  int levelBits;
  Value limit = 0;  // none if 0
  bool limitBeforeSign = false;
  bool dcAsSign = true;
};
Levels quantize(const Block& coefficients, const Block& scan, const Rule& rule);

// The members. An empty list of factors asks for the default ones; an empty scan for no last position.
Levels plain(const Block& coefficients, const Block& factors, const Block& scan, int qp, bool intra, int levelBits);
Levels baselineBlock(const Block& residuals, const Block& scan, int qp, bool intra);
Levels baselineLumaDc(const Block& dc, const Block& transformed, bool needTransform, const Block& scan, int qp);
Levels baselineChromaDc(const Block& dc, const Block& transformed, bool needTransform, int qp, bool intra);
Levels highBlock(const Block& residuals, const Block& factors, const Block& scan, int qp, bool intra, int bits);
Levels highLumaDc(const Block& dc, const Block& factors, const Block& scan, int qp, bool intra, int bits);
Levels highChromaDc(const Block& dc, const Block& transformed, bool needTransform, const Block& factors, int qp,
                    bool intra, int bits);

}  // namespace reference::quantize
