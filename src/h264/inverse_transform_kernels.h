// The inverse transforms of H.264 (8.5.12.2 for 4x4 blocks, 8.5.13 for 8x8 ones) with 16-bit intermediates, and the
// addition of their residual to a prediction.
//
// Both work along the rows first, then along the columns. Every intermediate wraps at 16 bits: the sums and differences
// inside a pass and what the first pass leaves. Only the sum that ends the second pass is taken in full, as x in
// (x + 32) >> 6. For conforming data nothing wraps and the result is the standard's.
//
// A residual that is added to samples is clamped to -256..256 first. The clamp needs no instruction: with x saturated
// at 16 bits residuals lie in -512..511, agree with the full ones within -511..510, and beyond -256..256 the clipped
// sample is 0 or 255 either way. Nor does the rounding: (x + 32) >> 6 plus a sample is (x + 64 * sample + 32) >> 6.
#pragma once

#include "simd.h"

namespace zvp {

// (a + b + 32) >> 6 and (a - b + 32) >> 6: quotients and remainders apart, since the sum takes 17 bits.
template <int N>
ZVP_INLINE simd::S16<N> roundedSum(simd::S16<N> a, simd::S16<N> b) {
  using namespace simd;
  const auto low = splat<S16<N>>(63), half = splat<S16<N>>(32);
  return shiftRight<6>(a) + shiftRight<6>(b) + shiftRight<6>((a & low) + (b & low) + half);
}
template <int N>
ZVP_INLINE simd::S16<N> roundedDifference(simd::S16<N> a, simd::S16<N> b) {
  using namespace simd;
  const auto low = splat<S16<N>>(63), half = splat<S16<N>>(32);
  return shiftRight<6>(a) - shiftRight<6>(b) + shiftRight<6>((a & low) - (b & low) + half);
}

// The low eight samples plus (x + 32) >> 6.
ZVP_INLINE simd::S16<8> plusTransformed(simd::U8<16> samples, simd::S16<8> x) {
  using namespace simd;
  const auto sample64 = as<S16<8>>(shiftRight<2>(as<U16<8>>(interleaveLow(splat<U8<16>>(128), samples))));
  return shiftRight<6>(addSaturate(x, sample64));
}

// ---- one 4x4 block ----------------------------------------------------------------------------------------------

// Rows 0 and 1, rows 2 and 3.
struct Block4x4 {
  simd::S16<8> rows01, rows23;
};

ZVP_INLINE Block4x4 loadBlock4x4(const s16* p) {
  return {simd::load<simd::S16<8>>(p), simd::load<simd::S16<8>>(p + 8)};
}
ZVP_INLINE void storeBlock4x4(s16* p, Block4x4 b) {
  simd::store(p, b.rows01);
  simd::store(p + 8, b.rows23);
}
ZVP_INLINE Block4x4 transposed(Block4x4 b) {
  simd::transpose4x4(b.rows01, b.rows23);
  return b;
}
// Each element by its scale, modulo 2^16.
ZVP_INLINE Block4x4 scaled(Block4x4 b, Block4x4 scale) {
  return {mulLow(b.rows01, scale.rows01), mulLow(b.rows23, scale.rows23)};
}

namespace detail {

// The parts of a pass down the rows: e and f in the low halves of theirs, h and g in the high ones.
struct Butterfly4x4 {
  simd::S16<8> e, f, h, g;
};
ZVP_INLINE Butterfly4x4 butterfly(Block4x4 b) {
  using simd::shiftRight;
  return {b.rows01 + b.rows23, b.rows01 - b.rows23, b.rows01 + shiftRight<1>(b.rows23),
          shiftRight<1>(b.rows01) - b.rows23};
}
// [e | f] and [h | g], whose sum is rows 0 and 1 and whose difference rows 3 and 2.
ZVP_INLINE simd::S16<8> evenPart(const Butterfly4x4& t) {
  using namespace simd;
  return as<S16<8>>(interleaveLow(as<U64<2>>(t.e), as<U64<2>>(t.f)));
}
ZVP_INLINE simd::S16<8> oddPart(const Butterfly4x4& t) {
  using namespace simd;
  return as<S16<8>>(interleaveHigh(as<U64<2>>(t.h), as<U64<2>>(t.g)));
}

}  // namespace detail

// The first pass, along the rows, of a block that is transposed already.
ZVP_INLINE Block4x4 inverseRowsOfTransposed(Block4x4 b) {
  using namespace simd;
  const auto t = zvp::detail::butterfly(b);
  // Elements 0 and 1 of each row in turn, then elements 2 and 3.
  const auto first = as<S32<4>>(interleaveLow(t.e, t.f) + interleaveHigh(t.h, t.g));
  const auto last = as<S32<4>>(interleaveLow(t.f, t.e) - interleaveHigh(t.g, t.h));
  return {as<S16<8>>(interleaveLow(first, last)), as<S16<8>>(interleaveHigh(first, last))};
}
ZVP_INLINE Block4x4 inverseRows(Block4x4 b) { return inverseRowsOfTransposed(transposed(b)); }

// The second pass, along the columns, down to the residual.
ZVP_INLINE Block4x4 inverseColumns(Block4x4 b) {
  const auto t = zvp::detail::butterfly(b);
  const auto ef = zvp::detail::evenPart(t), hg = zvp::detail::oddPart(t);
  return {roundedSum(ef, hg), simd::shuffle32<0x4e>(roundedDifference(ef, hg))};
}

// The residual of a scaled block.
ZVP_INLINE Block4x4 inverseTransform(Block4x4 b) { return inverseColumns(inverseRows(b)); }

// The sum of samples and a residual. What a transform leaves has 10 bits and needs no saturation, which fewer of the
// processor's ports can do; a residual that is coded as it is may be anything.
enum class ResidualKind { Transformed, Coded };
template <ResidualKind K>
ZVP_INLINE simd::S16<8> plusResidual(simd::S16<8> samples, simd::S16<8> residual) {
  return K == ResidualKind::Transformed ? samples + residual : addSaturate(samples, residual);
}

// dst = clip(pred + clamp(residual)). Reads and writes 4 bytes of each of 4 rows; all are read before one is written.
template <ResidualKind K = ResidualKind::Transformed>
ZVP_INLINE void addResidual(Block4x4 residual, const u8* pred, std::ptrdiff_t predStep, u8* dst,
                            std::ptrdiff_t dstStep) {
  using namespace simd;
  const auto samples = loadRows<4, 16>(pred, predStep);
  storeRows<4, 16>(dst, dstStep,
                   packSaturateU8(plusResidual<K>(widenLow(samples), residual.rows01),
                                  plusResidual<K>(widenHigh(samples), residual.rows23)));
}

// The same with the second pass, along the columns. The last two rows stay in the order in which the pass has them.
ZVP_INLINE void addInverseColumns(Block4x4 block, const u8* pred, std::ptrdiff_t predStep, u8* dst,
                                  std::ptrdiff_t dstStep) {
  using namespace simd;
  const auto t = zvp::detail::butterfly(block);
  const auto ef = zvp::detail::evenPart(t), hg = zvp::detail::oddPart(t);
  const auto rows = [&](std::ptrdiff_t first, std::ptrdiff_t second) {
    return as<U8<16>>(
        interleaveLow(loadBytes<U32<4>, 4>(pred + first * predStep), loadBytes<U32<4>, 4>(pred + second * predStep)));
  };
  const auto sum = packSaturateU8(plusTransformed(rows(0, 1), addSaturate(ef, hg)),
                                  plusTransformed(rows(3, 2), subSaturate(ef, hg)));
  storeBytes<4>(dst, sum);
  storeBytes<4>(dst + dstStep, shuffle32<0x55>(sum));
  storeBytes<4>(dst + 2 * dstStep, shuffle32<0xff>(sum));
  storeBytes<4>(dst + 3 * dstStep, shuffle32<0xaa>(sum));
}

// ---- two 4x4 blocks side by side --------------------------------------------------------------------------------

// Row i of the left block, then row i of the right one.
struct BlockPair4x4 {
  simd::S16<8> row[4];
};

// Column i of both: the elements of rows 0, 2, 1 and 3, the left block's and the right one's in turn. From and to this
// order every step moves lanes by one instruction a register.
struct ColumnPair4x4 {
  simd::S16<8> column[4];
};
ZVP_INLINE ColumnPair4x4 columnsOf(Block4x4 left, Block4x4 right) {
  using namespace simd;
  const auto left02 = interleaveLow(left.rows01, left.rows23), left13 = interleaveHigh(left.rows01, left.rows23);
  const auto right02 = interleaveLow(right.rows01, right.rows23), right13 = interleaveHigh(right.rows01, right.rows23);
  const auto a = as<U64<2>>(interleaveLow(left02, right02)), b = as<U64<2>>(interleaveLow(left13, right13));
  const auto c = as<U64<2>>(interleaveHigh(left02, right02)), d = as<U64<2>>(interleaveHigh(left13, right13));
  return {{as<S16<8>>(interleaveLow(a, b)), as<S16<8>>(interleaveHigh(a, b)), as<S16<8>>(interleaveLow(c, d)),
           as<S16<8>>(interleaveHigh(c, d))}};
}
ZVP_INLINE BlockPair4x4 rowsOf(const ColumnPair4x4& columns) {
  using namespace simd;
  const auto& c = columns.column;
  const auto a = as<S32<4>>(interleaveLow(c[0], c[1])), b = as<S32<4>>(interleaveLow(c[2], c[3]));
  const auto d = as<S32<4>>(interleaveHigh(c[0], c[1])), e = as<S32<4>>(interleaveHigh(c[2], c[3]));
  return {{as<S16<8>>(interleaveLow(a, b)), as<S16<8>>(interleaveLow(d, e)), as<S16<8>>(interleaveHigh(a, b)),
           as<S16<8>>(interleaveHigh(d, e))}};
}
// Element 0 of both replaced, by the two at dc.
ZVP_INLINE ColumnPair4x4 withDc(ColumnPair4x4 b, const void* dc) {
  b.column[0] = withLow32(b.column[0], simd::loadBytes<simd::S16<8>, 4>(dc));
  return b;
}

// The first pass: along the rows.
ZVP_INLINE BlockPair4x4 inverseRows(const ColumnPair4x4& b) {
  using namespace simd;
  const auto& c = b.column;
  const auto e = c[0] + c[2], f = c[0] - c[2];
  const auto g = shiftRight<1>(c[1]) - c[3], h = c[1] + shiftRight<1>(c[3]);
  return rowsOf({{e + h, f + g, f - g, e - h}});
}

// Four rows of eight samples in place: each becomes what f makes of it and of its row of values.
template <class F>
ZVP_INLINE void updateRows(const simd::S16<8> (&values)[4], u8* srcDst, std::ptrdiff_t step, F f) {
  using namespace simd;
#pragma GCC unroll 2
  for (int y = 0; y < 4; y += 2) {
    u8 *const first = srcDst + y * step, *const second = srcDst + (y + 1) * step;
    const auto sum = packSaturateU8(f(loadBytes<U8<16>, 8>(first), values[y]),
                                    f(loadBytes<U8<16>, 8>(second), values[y + 1]));
    storeBytes<8>(first, sum);
    storeHigh8(second, sum);
  }
}

// Adds two blocks' residual in place: 8 bytes of each of 4 rows.
template <ResidualKind K = ResidualKind::Transformed>
ZVP_INLINE void addResidual(const BlockPair4x4& residual, u8* srcDst, std::ptrdiff_t step) {
  updateRows(residual.row, srcDst, step, [](simd::U8<16> samples, simd::S16<8> row)
             __attribute__((always_inline)) { return plusResidual<K>(widenLow(samples), row); });
}

// The same with the second pass, along the columns.
ZVP_INLINE void addInverseColumns(const BlockPair4x4& r, u8* srcDst, std::ptrdiff_t step) {
  using namespace simd;
  const auto e = r.row[0] + r.row[2], f = r.row[0] - r.row[2];
  const auto g = shiftRight<1>(r.row[1]) - r.row[3], h = r.row[1] + shiftRight<1>(r.row[3]);
  const S16<8> sums[4] = {addSaturate(e, h), addSaturate(f, g), subSaturate(f, g), subSaturate(e, h)};
  updateRows(sums, srcDst, step, plusTransformed);
}

// ---- 8x8 blocks -------------------------------------------------------------------------------------------------

struct Block8x8 {
  simd::S16<8> row[8];
};

ZVP_INLINE Block8x8 loadBlock8x8(const s16* p) {
  Block8x8 b;
  for (int y = 0; y < 8; ++y) b.row[y] = simd::load<simd::S16<8>>(p + 8 * y);
  return b;
}
ZVP_INLINE void storeBlock8x8(s16* p, const Block8x8& b) {
  for (int y = 0; y < 8; ++y) simd::store(p + 8 * y, b.row[y]);
}

namespace detail {

// The parts whose sums are rows 0 to 3 of a pass down the rows and whose differences are rows 7 to 4.
struct Butterfly8x8 {
  simd::S16<8> even[4], odd[4];
};
ZVP_INLINE Butterfly8x8 butterfly(const Block8x8& b) {
  using namespace simd;
  const auto& d = b.row;
  const auto a0 = d[0] + d[4], a4 = d[0] - d[4];
  const auto a2 = shiftRight<1>(d[2]) - d[6], a6 = d[2] + shiftRight<1>(d[6]);
  const auto a1 = d[5] - d[3] - d[7] - shiftRight<1>(d[7]);
  const auto a3 = d[1] + d[7] - d[3] - shiftRight<1>(d[3]);
  const auto a5 = d[7] - d[1] + d[5] + shiftRight<1>(d[5]);
  const auto a7 = d[3] + d[5] + d[1] + shiftRight<1>(d[1]);
  return {{a0 + a6, a4 + a2, a4 - a2, a0 - a6},
          {a7 - shiftRight<2>(a1), shiftRight<2>(a3) - a5, a3 + shiftRight<2>(a5), a1 + shiftRight<2>(a7)}};
}

}  // namespace detail

ZVP_INLINE Block8x8 inverseRows(Block8x8 b) {
  simd::transpose(b.row);
  const auto t = zvp::detail::butterfly(b);
  for (int i = 0; i < 4; ++i) {
    b.row[i] = t.even[i] + t.odd[i];
    b.row[7 - i] = t.even[i] - t.odd[i];
  }
  simd::transpose(b.row);
  return b;
}
// The second pass with the addition in place: 8 bytes of each of 8 rows.
ZVP_INLINE void addInverseColumns(const Block8x8& b, u8* srcDst, std::ptrdiff_t step) {
  using namespace simd;
  const auto t = zvp::detail::butterfly(b);
  S16<8> upper[4], lower[4];
  for (int i = 0; i < 4; ++i) {
    upper[i] = addSaturate(t.even[i], t.odd[i]);
    lower[3 - i] = subSaturate(t.even[i], t.odd[i]);
  }
  updateRows(upper, srcDst, step, plusTransformed);
  updateRows(lower, srcDst + 4 * step, step, plusTransformed);
}

// Adds a residual in place.
template <ResidualKind K = ResidualKind::Transformed>
ZVP_INLINE void addResidual(const Block8x8& residual, u8* srcDst, std::ptrdiff_t step) {
  for (int y = 0; y < 8; y += 4)
    addResidual<K>(BlockPair4x4{{residual.row[y], residual.row[y + 1], residual.row[y + 2], residual.row[y + 3]}},
                   srcDst + y * step, step);
}

}  // namespace zvp
