#include "reference/h264/quantize.h"

#include <algorithm>
#include <cstddef>

namespace reference::quantize {
namespace {

Block defaultFactors(int qp) {
  Block factors(16);
  for (int i = 0; i < 16; ++i) factors[std::size_t(i)] = transform::forwardFactor[qp % 6][transform::positionClass(i)];
  return factors;
}

Value fraction(int shift, bool intra) { return (Value(1) << shift) / (intra ? 3 : 6); }

// The factor of element 0 for every element.
Block ofDc(const Block& factors, int qp, std::size_t count) {
  return Block(count, (factors.empty() ? defaultFactors(qp) : factors)[0]);
}

}  // namespace

Levels quantize(const Block& coefficients, const Block& scan, const Rule& rule) {
  Levels r;
  r.transformed = coefficients;
  for (std::size_t i = 0; i < coefficients.size(); ++i) {
    const Value c = coefficients[i];
    const Value magnitude = ((c < 0 ? -c : c) * rule.factors[i] + rule.rounding) >> rule.shift;
    const Value level = transform::wrap(c < 0 ? -magnitude : magnitude, rule.levelBits);
    if (rule.limit != 0 && (rule.limitBeforeSign ? transform::wrap(magnitude, 16) : level) > rule.limit) {
      r.tooLarge = true;
      return r;
    }
    r.levels.push_back(level);
    if (level == 0) continue;
    ++r.number;
    if (!scan.empty()) r.last = std::max(r.last, int(scan[i]));
  }
  if (rule.dcAsSign && r.levels[0] != 0) r.number = -r.number;
  return r;
}

Levels plain(const Block& coefficients, const Block& factors, const Block& scan, int qp, bool intra, int levelBits) {
  qp = std::max(qp, 0);
  const int shift = qp / 6 + (factors.empty() ? 15 : 11);
  // The tables of roundings: a sixth of 2^shift for inter; for intra a sixth of twice as much.
  const Value rounding = (Value(1) << (intra ? shift + 1 : shift)) / 6;
  Rule rule{factors.empty() ? defaultFactors(qp) : factors, rounding, shift, levelBits};
  rule.dcAsSign = false;
  return quantize(coefficients, scan, rule);
}

Levels baselineBlock(const Block& residuals, const Block& scan, int qp, bool intra) {
  const int shift = qp / 6 + 15;
  return quantize(transform::wrap(transform::forward(residuals), 16), scan,
                  {defaultFactors(qp), fraction(shift, intra), shift, 16, 2063, false});
}

Levels baselineLumaDc(const Block& dc, const Block& transformed, bool needTransform, const Block& scan, int qp) {
  Block c = transformed;
  if (needTransform) {
    c = transform::hadamard(dc, 16);
    for (auto& x : c) x = transform::wrap(x >> 1, 16);
  }
  const int shift = qp / 6 + 16;
  return quantize(c, scan, {ofDc({}, qp, 16), fraction(shift, true), shift, 16, 2063, true});
}

Levels baselineChromaDc(const Block& dc, const Block& transformed, bool needTransform, int qp, bool intra) {
  const Block c = needTransform ? transform::wrap(transform::hadamard(dc, 16), 16) : transformed;
  const int shift = qp / 6 + 16;
  return quantize(c, {}, {ofDc({}, qp, 4), fraction(shift, intra), shift, 16, 2063, true});
}

Levels highBlock(const Block& residuals, const Block& factors, const Block& scan, int qp, bool intra, int bits) {
  const int shift = qp / 6 + (factors.empty() ? 15 : 11);
  return quantize(transform::wrap(transform::forward(residuals), bits), scan,
                  {factors.empty() ? defaultFactors(qp) : factors, fraction(shift, intra), shift, bits});
}

Levels highLumaDc(const Block& dc, const Block& factors, const Block& scan, int qp, bool intra, int bits) {
  Block c = transform::hadamard(dc, bits);
  for (auto& x : c) x = transform::wrap((bits == 32 ? transform::wrap(x, 32) : x) >> 1, bits);
  const int shift = qp / 6 + (factors.empty() ? 16 : 12);
  return quantize(c, scan, {ofDc(factors, qp, 16), fraction(shift, intra), shift, bits});
}

Levels highChromaDc(const Block& dc, const Block& transformed, bool needTransform, const Block& factors, int qp,
                    bool intra, int bits) {
  const Block c = needTransform ? transform::wrap(transform::hadamard(dc, bits), bits) : transformed;
  const bool is422 = dc.size() == 8;
  if (is422) qp += 3;
  const int shift = qp / 6 + (factors.empty() ? 16 : 12);
  const Value rounding = is422 ? Value(intra ? 682 : 342) << (shift - 11) : fraction(shift, intra);
  return quantize(c, {}, {ofDc(factors, qp, c.size()), rounding, shift, bits});
}

}  // namespace reference::quantize
