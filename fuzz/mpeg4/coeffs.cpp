// MPEG-4 blocks of any bits, forward by each code and backward, beside the model, in streams that end where a reader's
// reach ends. The DC too.
#include "reference/mpeg4/coeffs.h"

#include <algorithm>
#include <cstdlib>

#include "support/byte_stream.h"
#include "support/event_tables.h"

namespace {

using namespace zvptest;

void expect(bool good) {
  if (!good) std::abort();
}

void forward(const std::string& bits, std::size_t start, bool intra, bool rvlc, bool skipDC, bool recon, int scan,
             Guard guard) {
  constexpr int QP = 5, bitsPerPixel = 8;
  alignas(16) std::uint8_t context[160];
  expect(zvpiQuantInvInterInit_MPEG4(nullptr, context, bitsPerPixel) == zvpStatusOk);
  const int first = intra && skipDC ? 1 : 0;
  const ScanName names[] = {ScanName::Zigzag, ScanName::Vertical,
                            recon   ? ScanName::Zigzag
                            : intra ? ScanName::Horizontal
                                    : ScanName::Raster,
                            recon ? ScanName::Zigzag : ScanName::Raster};
  const auto value = [&](int level, std::size_t) {
    return recon ? reference::mpeg4Dequantize(level, QP, 0, bitsPerPixel) : level;
  };
  const std::string rest = bits.substr(start);
  const auto& order = scanTable(names[scan]);
  auto expected = rvlc ? reference::mpeg4ReadReversible(reversibleCode(intra), rest, first, order)
                       : reference::mpeg4ReadCoeffs(mpeg4Code(intra), intra, rest, first, order, value);
  if (recon && rvlc && expected.status == zvpStatusOk)
    for (auto& coefficient : expected.coefficients)
      if (coefficient) coefficient = std::int16_t(value(coefficient, 0));
  if (first == 1) expected.coefficients[0] = 77;
  std::string readable = bits;
  const std::size_t size = readableBytes(start + expected.examined);
  readable.resize(8 * size, '0');
  InputStream stream(readable, start, size, guard);
  std::int16_t coefficients[64] = {77};
  std::int32_t index = 0;
  const std::uint8_t** const byte = &stream.byte;
  std::int32_t* const offset = &stream.offset;
  const zvpStatus status =
      recon   ? zvpiReconstructCoeffsInter_MPEG4_1u16s(byte, offset, coefficients, &index, rvlc, scan, context, QP)
      : intra ? zvpiDecodeCoeffsIntra_MPEG4_1u16s(byte, offset, coefficients, &index, rvlc, skipDC, scan)
              : zvpiDecodeCoeffsInter_MPEG4_1u16s(byte, offset, coefficients, &index, rvlc, scan);
  expect(status == expected.status && index == expected.indexLastNonZero &&
         stream.position() == start + (status == zvpStatusOk ? expected.bits : 0) &&
         std::equal(coefficients, coefficients + 64, expected.coefficients.begin()));
}

void backward(const std::string& bits, bool intra, bool skipDC, Guard guard) {
  // In front, as much as a block can take; a code with LAST 1 now and then ends it before.
  std::string all = std::string(2200, '0');
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = "110100"[i % 6];
  all += bits;
  const std::size_t last = all.size() - 1;
  auto expected = reference::mpeg4ReadBackward(reversibleCode(intra), all, last, intra && skipDC);
  if (intra && skipDC) expected.coefficients[0] = 77;
  const std::size_t cut = 8 * ((last + 1 - expected.bits) / 8 - 4);
  InputStream stream(all.substr(cut), last - cut, last / 8 + 1 - cut / 8, guard);
  std::int16_t coefficients[64] = {77};
  std::int32_t index = 0;
  const zvpStatus status =
      intra ? zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(&stream.byte, &stream.offset, coefficients, &index, skipDC)
            : zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s(&stream.byte, &stream.offset, coefficients, &index);
  expect(status == expected.status && index == expected.indexLastNonZero &&
         stream.position() + cut == last - (status == zvpStatusOk ? expected.bits : 0) &&
         std::equal(coefficients, coefficients + 64, expected.coefficients.begin()));
}

void dc(const std::string& bits, std::size_t start, bool chroma, Guard guard) {
  const auto expected = reference::mpeg4ReadDc(bits.substr(start), chroma);
  InputStream stream(bits, start, std::max<std::size_t>(3, (start + expected.bits + 7) / 8), guard);
  std::int16_t value = 999;
  const zvpStatus status = zvpiDecodeDCIntra_MPEG4_1u16s(&stream.byte, &stream.offset, &value, chroma);
  expect(status == expected.status && value == (expected.written ? expected.value : 999) &&
         stream.position() == start + (status == zvpStatusOk ? expected.bits : 0));
}

}  // namespace

// Byte 0 chooses member, code and the first bit, byte 1 scan and guard; the rest is the stream.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const bool intra = data[0] & 1, rvlc = data[0] & 2, skipDC = data[0] & 4, recon = !intra && (data[0] & 8);
  const std::size_t start = data[0] >> 5;
  const Guard guard = data[1] & 4 ? Guard::Behind : Guard::Before;
  std::string bits;
  for (std::size_t i = 2; i < size; ++i) bits += reference::bitsOf(data[i], 8);
  if (data[0] & 16) backward(bits, intra, skipDC, guard);
  bits.resize(std::max<std::size_t>(bits.size(), 64), '0');
  forward(bits, start, intra, rvlc, skipDC, recon, data[1] & 3, guard);
  dc(bits, start, skipDC, guard);
  return 0;
}
