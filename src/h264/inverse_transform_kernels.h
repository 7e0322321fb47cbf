// The inverse transforms of H.264 (8.5.12.2 for 4x4 blocks, 8.5.13 for 8x8 ones) with 16-bit intermediates, and the
// addition of their residual to a prediction.
//
// Both work along the rows first, then along the columns. Every intermediate wraps at 16 bits: the sums and differences
// inside a pass and what the first pass leaves. Only the sum that ends the second pass is taken in full, as x in
// (x + 32) >> 6. For conforming data nothing wraps and the result is the standard's.
//
// A residual that is added to samples is clamped to -256..256 first. The clamp needs no instruction: residuals formed
// with saturating sums lie in -512..511, agree with the full ones within -511..510, and beyond -256..256 the clipped
// sample is 0 or 255 either way.
#pragma once

#include "simd.h"

namespace zvp {

// How the last sum of the second pass is formed. Full gives the value that the contract names; Clamped gives one that
// is as good where a clamp to -256..256 follows, in fewer instructions.
enum class ResidualRange { Full, Clamped };

// (a + b + 32) >> 6 and (a - b + 32) >> 6.
template <ResidualRange R, int N>
ZVP_INLINE simd::S16<N> roundedSum(simd::S16<N> a, simd::S16<N> b) {
  using namespace simd;
  const auto half = splat<S16<N>>(32);
  if constexpr (R == ResidualRange::Clamped) {
    return shiftRight<6>(addSaturate(addSaturate(a, b), half));
  } else {  // quotients and remainders apart: the sum takes 17 bits
    const auto low = splat<S16<N>>(63);
    return shiftRight<6>(a) + shiftRight<6>(b) + shiftRight<6>((a & low) + (b & low) + half);
  }
}
template <ResidualRange R, int N>
ZVP_INLINE simd::S16<N> roundedDifference(simd::S16<N> a, simd::S16<N> b) {
  using namespace simd;
  const auto half = splat<S16<N>>(32);
  if constexpr (R == ResidualRange::Clamped) {
    return shiftRight<6>(addSaturate(subSaturate(a, b), half));
  } else {
    const auto low = splat<S16<N>>(63);
    return shiftRight<6>(a) - shiftRight<6>(b) + shiftRight<6>((a & low) - (b & low) + half);
  }
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
// Each element by its scale, modulo 2^16.
ZVP_INLINE Block4x4 scaled(Block4x4 b, Block4x4 scale) {
  return {mulLow(b.rows01, scale.rows01), mulLow(b.rows23, scale.rows23)};
}

namespace detail {

// The even and the odd part of a pass down the rows: [e | f] and [h | g], so that their sum is rows 0 and 1 and their
// difference rows 3 and 2.
struct Butterfly4x4 {
  simd::S16<8> ef, hg;
};
ZVP_INLINE Butterfly4x4 butterfly(Block4x4 b) {
  using namespace simd;
  const auto e = b.rows01 + b.rows23, f = b.rows01 - b.rows23;                                // low halves
  const auto h = b.rows01 + shiftRight<1>(b.rows23), g = shiftRight<1>(b.rows01) - b.rows23;  // high halves
  return {as<S16<8>>(interleaveLow(as<U64<2>>(e), as<U64<2>>(f))),
          as<S16<8>>(interleaveHigh(as<U64<2>>(h), as<U64<2>>(g)))};
}

}  // namespace detail

// The first pass: along the rows.
ZVP_INLINE Block4x4 inverseRows(Block4x4 b) {
  simd::transpose4x4(b.rows01, b.rows23);
  const auto t = zvp::detail::butterfly(b);
  b = {t.ef + t.hg, simd::shuffle32<0x4e>(t.ef - t.hg)};
  simd::transpose4x4(b.rows01, b.rows23);
  return b;
}

// The second pass: along the columns, down to the residual.
template <ResidualRange R>
ZVP_INLINE Block4x4 inverseColumns(Block4x4 b) {
  const auto t = zvp::detail::butterfly(b);
  return {roundedSum<R>(t.ef, t.hg), simd::shuffle32<0x4e>(roundedDifference<R>(t.ef, t.hg))};
}

// The residual of a scaled block.
template <ResidualRange R>
ZVP_INLINE Block4x4 inverseTransform(Block4x4 b) {
  return inverseColumns<R>(inverseRows(b));
}

// dst = clip(pred + clamp(residual)). Reads and writes 4 bytes of each of 4 rows; all are read before one is written.
ZVP_INLINE void addResidual(Block4x4 residual, const u8* pred, std::ptrdiff_t predStep, u8* dst,
                            std::ptrdiff_t dstStep) {
  using namespace simd;
  const auto samples = loadRows<4, 16>(pred, predStep);
  storeRows<4, 16>(dst, dstStep,
                   packSaturateU8(addSaturate(widenLow(samples), residual.rows01),
                                  addSaturate(widenHigh(samples), residual.rows23)));
}

// The same with the inverse transform of a scaled block. The last two rows stay in the order in which the pass leaves
// them.
ZVP_INLINE void addInverseTransform(Block4x4 block, const u8* pred, std::ptrdiff_t predStep, u8* dst,
                                    std::ptrdiff_t dstStep) {
  using namespace simd;
  const auto t = zvp::detail::butterfly(inverseRows(block));
  const auto rows = [&](std::ptrdiff_t first, std::ptrdiff_t second) {
    return widenLow(as<U8<16>>(interleaveLow(loadBytes<U32<4>, 4>(pred + first * predStep),
                                             loadBytes<U32<4>, 4>(pred + second * predStep))));
  };
  const auto sum = packSaturateU8(addSaturate(rows(0, 1), roundedSum<ResidualRange::Clamped>(t.ef, t.hg)),
                                  addSaturate(rows(3, 2), roundedDifference<ResidualRange::Clamped>(t.ef, t.hg)));
  storeBytes<4>(dst, sum);
  storeBytes<4>(dst + dstStep, shuffle32<0x55>(sum));
  storeBytes<4>(dst + 3 * dstStep, shuffle32<0xaa>(sum));
  storeBytes<4>(dst + 2 * dstStep, shuffle32<0xff>(sum));
}

// ---- two 4x4 blocks side by side --------------------------------------------------------------------------------

// Row i of the left block, then row i of the right one.
struct BlockPair4x4 {
  simd::S16<8> row[4];
};

namespace detail {

// Rows become columns in both blocks: from two blocks by themselves to columns side by side, and back.
ZVP_INLINE BlockPair4x4 columnsOf(Block4x4 left, Block4x4 right) {
  using namespace simd;
  transpose4x4(left.rows01, left.rows23);
  transpose4x4(right.rows01, right.rows23);
  const auto a = as<U64<2>>(left.rows01), b = as<U64<2>>(left.rows23);
  const auto c = as<U64<2>>(right.rows01), d = as<U64<2>>(right.rows23);
  return {{as<S16<8>>(interleaveLow(a, c)), as<S16<8>>(interleaveHigh(a, c)), as<S16<8>>(interleaveLow(b, d)),
           as<S16<8>>(interleaveHigh(b, d))}};
}
ZVP_INLINE void rowsOf(const BlockPair4x4& columns, Block4x4& left, Block4x4& right) {
  using namespace simd;
  const auto& c = columns.row;
  const auto a = as<S32<4>>(interleaveLow(c[0], c[1])), b = as<S32<4>>(interleaveLow(c[2], c[3]));
  const auto d = as<S32<4>>(interleaveHigh(c[0], c[1])), e = as<S32<4>>(interleaveHigh(c[2], c[3]));
  left = {as<S16<8>>(interleaveLow(a, b)), as<S16<8>>(interleaveHigh(a, b))};
  right = {as<S16<8>>(interleaveLow(d, e)), as<S16<8>>(interleaveHigh(d, e))};
}

}  // namespace detail

// The first pass of both. The blocks are left as the pass leaves them.
ZVP_INLINE BlockPair4x4 inverseRows(Block4x4& left, Block4x4& right) {
  using namespace simd;
  const BlockPair4x4 c = zvp::detail::columnsOf(left, right);
  const auto e = c.row[0] + c.row[2], f = c.row[0] - c.row[2];
  const auto g = shiftRight<1>(c.row[1]) - c.row[3], h = c.row[1] + shiftRight<1>(c.row[3]);
  zvp::detail::rowsOf({{e + h, f + g, f - g, e - h}}, left, right);
  const auto a = as<U64<2>>(left.rows01), b = as<U64<2>>(left.rows23);
  const auto p = as<U64<2>>(right.rows01), q = as<U64<2>>(right.rows23);
  return {{as<S16<8>>(interleaveLow(a, p)), as<S16<8>>(interleaveHigh(a, p)), as<S16<8>>(interleaveLow(b, q)),
           as<S16<8>>(interleaveHigh(b, q))}};
}

template <ResidualRange R>
ZVP_INLINE BlockPair4x4 inverseColumns(const BlockPair4x4& r) {
  using namespace simd;
  const auto e = r.row[0] + r.row[2], f = r.row[0] - r.row[2];
  const auto g = shiftRight<1>(r.row[1]) - r.row[3], h = r.row[1] + shiftRight<1>(r.row[3]);
  return {{roundedSum<R>(e, h), roundedSum<R>(f, g), roundedDifference<R>(f, g), roundedDifference<R>(e, h)}};
}

// Adds two blocks' residual in place: 8 bytes of each of 4 rows.
ZVP_INLINE void addResidual(const BlockPair4x4& residual, u8* srcDst, std::ptrdiff_t step) {
  using namespace simd;
  for (int y = 0; y < 4; y += 2) {
    const auto samples = load8x2<U8<16>>(srcDst + y * step, srcDst + (y + 1) * step);
    const auto sum = packSaturateU8(addSaturate(widenLow(samples), residual.row[y]),
                                    addSaturate(widenHigh(samples), residual.row[y + 1]));
    storeBytes<8>(srcDst + y * step, sum);
    storeHigh8(srcDst + (y + 1) * step, sum);
  }
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
template <ResidualRange R>
ZVP_INLINE Block8x8 inverseColumns(const Block8x8& b) {
  const auto t = zvp::detail::butterfly(b);
  Block8x8 r;
  for (int i = 0; i < 4; ++i) {
    r.row[i] = roundedSum<R>(t.even[i], t.odd[i]);
    r.row[7 - i] = roundedDifference<R>(t.even[i], t.odd[i]);
  }
  return r;
}
template <ResidualRange R>
ZVP_INLINE Block8x8 inverseTransform(const Block8x8& b) {
  return inverseColumns<R>(inverseRows(b));
}

// Adds in place: 8 bytes of each of 8 rows.
ZVP_INLINE void addResidual(const Block8x8& residual, u8* srcDst, std::ptrdiff_t step) {
  for (int y = 0; y < 8; y += 4)
    addResidual(BlockPair4x4{{residual.row[y], residual.row[y + 1], residual.row[y + 2], residual.row[y + 3]}},
                srcDst + y * step, step);
}

}  // namespace zvp
