// The transforms of H.264 residuals beside the inverse one in 16 bits: the forward core transform, the Hadamard
// transforms of DC blocks, the inverse in 32 bits, and the scaling of levels.
//
// A block of 16-bit elements is a Block4x4 of two registers, one of 32-bit elements a Wide4x4 of four rows. Sums wrap
// at the element's width unless a text says otherwise; sums that end in 16 bits may be formed in 16 bits, since
// wrapping early or late leaves the same bits.
#pragma once

#include "h264/inverse_transform_kernels.h"
#include "h264/residual_tables.h"
#include "simd.h"

namespace zvp {

struct Wide4x4 {
  simd::S32<4> row[4];
};

ZVP_INLINE Wide4x4 loadWide4x4(const s32* p) {
  Wide4x4 b;
  for (int y = 0; y < 4; ++y) b.row[y] = simd::load<simd::S32<4>>(p + 4 * y);
  return b;
}
ZVP_INLINE void storeWide4x4(s32* p, const Wide4x4& b) {
  for (int y = 0; y < 4; ++y) simd::store(p + 4 * y, b.row[y]);
}
ZVP_INLINE Wide4x4 widened(Block4x4 b) {
  return {{widenLow(b.rows01), widenHigh(b.rows01), widenLow(b.rows23), widenHigh(b.rows23)}};
}
// The low 16 bits of each element.
ZVP_INLINE Block4x4 narrowed(const Wide4x4& b) {
  return {packTruncateS16(b.row[0], b.row[1]), packTruncateS16(b.row[2], b.row[3])};
}

// By the element's type: what a block of it is, how it comes and goes.
ZVP_INLINE Block4x4 loadElements(const s16* p) { return loadBlock4x4(p); }
ZVP_INLINE Wide4x4 loadElements(const s32* p) { return loadWide4x4(p); }
ZVP_INLINE void storeElements(s16* p, Block4x4 b) { storeBlock4x4(p, b); }
ZVP_INLINE void storeElements(s32* p, const Wide4x4& b) { storeWide4x4(p, b); }

ZVP_INLINE Wide4x4 transposed(Wide4x4 b) {
  simd::transpose(b.row);
  return b;
}

namespace detail {

// Of rows a, b, c, d the sums and differences [a + d | b + c], [a - d | b - c], from which all forward passes go on.
struct Outer4x4 {
  simd::S16<8> sum, difference, twice;
};
ZVP_INLINE Outer4x4 outer(Block4x4 b) {
  using namespace simd;
  const auto back = shuffle32<0x4e>(b.rows23);
  const auto difference = b.rows01 - back;
  return {b.rows01 + back, difference, difference + difference};
}
// From elements 0 and 1 of each column in turn and elements 2 and 3 the block whose rows are the columns.
ZVP_INLINE Block4x4 columnsAsRows(simd::S16<8> first, simd::S16<8> last) {
  using namespace simd;
  const auto a = as<S32<4>>(first), b = as<S32<4>>(last);
  return {as<S16<8>>(interleaveLow(a, b)), as<S16<8>>(interleaveHigh(a, b))};
}

// One pass down the rows, whose result is transposed: so two passes one after the other make the whole transform.
ZVP_INLINE Block4x4 forwardPass(Block4x4 b) {
  const auto t = outer(b);
  return columnsAsRows(interleaveLow(t.sum, t.twice) + interleaveHigh(t.sum, t.difference),
                       interleaveLow(t.sum, t.difference) - interleaveHigh(t.sum, t.twice));
}
ZVP_INLINE Wide4x4 forwardPass(const Wide4x4& b) {
  const auto& r = b.row;
  const auto s = r[0] + r[3], t = r[1] + r[2], u = r[0] - r[3], v = r[1] - r[2];
  return transposed(Wide4x4{{s + t, u + u + v, s - t, u - v - v}});
}
ZVP_INLINE Block4x4 hadamardPass(Block4x4 b) {
  const auto t = outer(b);
  const auto even = interleaveLow(t.sum, t.difference), odd = interleaveHigh(t.sum, t.difference);
  return columnsAsRows(even + odd, even - odd);
}
ZVP_INLINE Wide4x4 hadamardPass(const Wide4x4& b) {
  const auto& r = b.row;
  const auto s = r[0] + r[3], t = r[1] + r[2], u = r[0] - r[3], v = r[1] - r[2];
  return transposed(Wide4x4{{s + t, u + v, s - t, u - v}});
}
ZVP_INLINE Wide4x4 inversePass(const Wide4x4& b) {
  using simd::shiftRight;
  const auto& r = b.row;
  const auto e = r[0] + r[2], f = r[0] - r[2];
  const auto g = shiftRight<1>(r[1]) - r[3], h = r[1] + shiftRight<1>(r[3]);
  return {{e + h, f + g, f - g, e - h}};
}

}  // namespace detail

// The forward core transform, H.264's counterpart of 8.5.12.2.
template <class B>
ZVP_INLINE B forwardTransform(const B& b) {
  return detail::forwardPass(detail::forwardPass(b));
}

// The 4x4 Hadamard transform of luma DC blocks (H.264 8.5.10).
template <class B>
ZVP_INLINE B hadamardTransform(const B& b) {
  return detail::hadamardPass(detail::hadamardPass(b));
}

// The same halved. The first pass of 16-bit blocks leaves 16 bits, the sums of the second are halved in full.
ZVP_INLINE Wide4x4 halvedHadamardTransform(Wide4x4 b) {
  b = hadamardTransform(b);
  for (auto& row : b.row) row = simd::shiftRight<1>(row);
  return b;
}
ZVP_INLINE Block4x4 halvedHadamardTransform(Block4x4 b) {
  Wide4x4 sums = transposed(detail::hadamardPass(widened(detail::hadamardPass(transposed(b)))));
  for (auto& row : sums.row) row = simd::shiftRight<1>(row);
  return narrowed(sums);
}

// The inverse transform in 32 bits, down to the residual.
ZVP_INLINE Wide4x4 inverseTransform(const Wide4x4& b) {
  using namespace simd;
  Wide4x4 r = zvp::detail::inversePass(transposed(zvp::detail::inversePass(transposed(b))));
  for (auto& row : r.row) row = shiftRight<6>(row + splat<S32<4>>(32));
  return r;
}

// dst = clip(pred + residual) for samples of 16-bit elements: 8 bytes of each of 4 rows.
ZVP_INLINE void addResidual(const Wide4x4& residual, const u16* pred, std::ptrdiff_t predStep, u16* dst,
                            std::ptrdiff_t dstStep, s32 maximum) {
  using namespace simd;
  const auto limit = splat<S32<4>>(maximum);
  S32<4> sums[4];
  for (int y = 0; y < 4; ++y) {
    const auto samples = widenLow(loadBytes<U16<8>, 8>(advanceBytes(pred, y * predStep)));
    sums[y] = min(max(samples + residual.row[y], zero<S32<4>>()), limit);
  }
  for (int y = 0; y < 4; ++y) storeBytes<8>(advanceBytes(dst, y * dstStep), packTruncateS16(sums[y], sums[y]));
}

// ---- small DC blocks: a few scalar sums ------------------------------------------------------------------------

// The 2x2 transform of chroma DC (H.264 8.5.11.1), in raster order.
ZVP_INLINE std::array<s32, 4> hadamardTransform2x2(const std::array<s32, 4>& c) {
  const s32 s = wrapAdd(c[0], c[2]), t = wrapAdd(c[1], c[3]), u = wrapSub(c[0], c[2]), v = wrapSub(c[1], c[3]);
  return {wrapAdd(s, t), wrapSub(s, t), wrapAdd(u, v), wrapSub(u, v)};
}
// That of 4:2:2, four rows of two.
ZVP_INLINE std::array<s32, 8> hadamardTransform2x4(const std::array<s32, 8>& c) {
  std::array<s32, 8> r;
  for (std::size_t x = 0; x < 2; ++x) {
    const s32 s = wrapAdd(c[x], c[6 + x]), t = wrapAdd(c[2 + x], c[4 + x]);
    const s32 u = wrapSub(c[x], c[6 + x]), v = wrapSub(c[2 + x], c[4 + x]);
    r[x] = wrapAdd(s, t);
    r[2 + x] = wrapAdd(u, v);
    r[4 + x] = wrapSub(s, t);
    r[6 + x] = wrapSub(u, v);
  }
  for (std::size_t y = 0; y < 8; y += 2) {
    const s32 left = r[y], right = r[y + 1];
    r[y] = wrapAdd(left, right);
    r[y + 1] = wrapSub(left, right);
  }
  return r;
}
ZVP_INLINE std::array<s32, 4> hadamardTransform(const std::array<s32, 4>& c) { return hadamardTransform2x2(c); }
ZVP_INLINE std::array<s32, 8> hadamardTransform(const std::array<s32, 8>& c) { return hadamardTransform2x4(c); }

template <std::size_t N, class T>
ZVP_INLINE std::array<s32, N> loadDc(const T* p) {
  std::array<s32, N> c;
  for (std::size_t i = 0; i < N; ++i) c[i] = loadAs<T>(p + i);
  return c;
}

template <std::size_t N, class T>
ZVP_INLINE void storeDc(T* p, const std::array<s32, N>& c) {
  for (std::size_t i = 0; i < N; ++i) storeAs(p + i, T(c[i]));
}

// ---- levels to coefficients ------------------------------------------------------------------------------------

// A product's way to its coefficient: ((product + rounding) >> right) << left.
struct LevelShift {
  s32 rounding;
  int right, left;

  ZVP_INLINE s32 operator()(s32 level, s32 scale) const {
    return wrapShl(wrapAdd(wrapMul(level, scale), rounding) >> right, left);
  }
};
// By 2^(qp6 - bits), to the right rounded to nearest (H.264 8.5.9 and 8.5.10).
ZVP_INLINE LevelShift levelShift(int qp6, int bits) {
  if (qp6 < bits) return {1 << (bits - 1 - qp6), bits - qp6, 0};
  return {0, 0, qp6 - bits};
}
// The same without rounding (8.5.11.2).
ZVP_INLINE LevelShift levelShiftDown(int qp6, int bits) {
  LevelShift shift = levelShift(qp6, bits);
  shift.rounding = 0;
  return shift;
}

// Signed products of 16-bit elements.
ZVP_INLINE Wide4x4 products(Block4x4 a, Block4x4 b) {
  using namespace simd;
  const auto low01 = mulLow(a.rows01, b.rows01), high01 = mulHigh(a.rows01, b.rows01);
  const auto low23 = mulLow(a.rows23, b.rows23), high23 = mulHigh(a.rows23, b.rows23);
  return {{as<S32<4>>(interleaveLow(low01, high01)), as<S32<4>>(interleaveHigh(low01, high01)),
           as<S32<4>>(interleaveLow(low23, high23)), as<S32<4>>(interleaveHigh(low23, high23))}};
}

ZVP_INLINE Wide4x4 shifted(Wide4x4 b, const LevelShift& shift) {
  using namespace simd;
  for (auto& row : b.row) row = shiftLeft(shiftRight(row + splat<S32<4>>(shift.rounding), shift.right), shift.left);
  return b;
}

// Levels by scales of 16 bits. Products of 16-bit levels are shifted to the right in 32 bits; to the left 16 will do.
ZVP_INLINE Block4x4 scaledLevels(Block4x4 levels, Block4x4 scales, const LevelShift& shift) {
  if (shift.right != 0) return narrowed(shifted(products(levels, scales), shift));
  levels = scaled(levels, scales);
  return {shiftLeft(levels.rows01, shift.left), shiftLeft(levels.rows23, shift.left)};
}
ZVP_INLINE Wide4x4 scaledLevels(Wide4x4 levels, Block4x4 scales, const LevelShift& shift) {
  const Wide4x4 factors = widened(scales);
  for (int y = 0; y < 4; ++y) levels.row[y] = mulLow(levels.row[y], factors.row[y]);
  return shifted(levels, shift);
}

ZVP_INLINE Block4x4 splatScale(s16 scale) {
  const auto row = simd::splat<simd::S16<8>>(scale);
  return {row, row};
}

// The DC block of an Intra16x16 macroblock to coefficients (8.5.10), by the scales of flat matrices.
ZVP_INLINE Block4x4 dequantizedLumaDc(Block4x4 levels, s32 qp) {
  const int right = qp < 6 ? 2 : qp < 12 ? 1 : 0;  // required: the same number is the rounding
  const Block4x4 scale = splatScale(s16(InvQuantLuma16x16DCTable[std::size_t(qp)]));
  return narrowed(shifted(products(hadamardTransform(levels), scale), {right, right, 0}));
}

// Element 0 replaced.
ZVP_INLINE Block4x4 withDc(Block4x4 b, s16 dc) { return {simd::withLane<0>(b.rows01, dc), b.rows23}; }
ZVP_INLINE Wide4x4 withDc(Wide4x4 b, s32 dc) {
  std::array<s32, 4> first;
  simd::store(first.data(), b.row[0]);
  first[0] = dc;
  b.row[0] = simd::lanes(first);
  return b;
}

// The scales of flat matrices, for two rows of a block: rows 0 and 1, and rows 2 and 3, have the same.
ZVP_INLINE simd::S16<8> flatScales(std::size_t qp) {
  return simd::load<simd::S16<8>>(InvQuantTable_w7[qp].data() + 8);  // where element 0 is not the one that stays 1
}
// The first pass of a block with these scales; element 0 as it comes from elsewhere if it does. The scales are
// symmetric: a block is transposed before it is scaled, while they are on their way.
ZVP_INLINE Block4x4 inverseRowsOfLevels(Block4x4 levels, const s16* dc, std::size_t qp) {
  const auto scales = flatScales(qp);
  Block4x4 block = scaled(transposed(levels), {scales, scales});
  if (dc != nullptr) [[unlikely]]
    block = withDc(block, loadAs<s16>(dc));
  return inverseRowsOfTransposed(block);
}
ZVP_INLINE s16 scaledDc(const s16* level, const s16* dc, std::size_t qp) {
  return dc != nullptr ? loadAs<s16>(dc) : s16(loadAs<s16>(level) * InvQuantTable[qp][0]);
}

// The residual of a block that has a DC alone.
ZVP_INLINE Block4x4 flatResidual(s16 dc) { return splatScale(s16((dc + 32) >> 6)); }
ZVP_INLINE Wide4x4 flatResidual(s32 dc) {
  const auto row = simd::splat<simd::S32<4>>(wrapAdd(dc, 32) >> 6);
  return {{row, row, row, row}};
}

}  // namespace zvp
