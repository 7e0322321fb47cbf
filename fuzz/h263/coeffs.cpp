// H.263 blocks of any bits in every mode, beside the model, in streams that end where a reader's reach ends.
#include "reference/h263/coeffs.h"

#include <cstdlib>
#include <cstring>

#include "support/byte_stream.h"
#include "support/event_tables.h"

// Byte 0 chooses member, flags and the first bit, byte 1 scan and quantizer; the rest is the stream.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zvptest;
  if (size < 3) return 0;
  const int member = data[0] & 3;
  const bool intra = member & 1, recon = member & 2, adv = intra && (data[0] & 4), modQuant = data[0] & 8;
  const std::size_t start = data[0] >> 5;
  const int scan = data[1] & 3, QP = 1 + (data[1] >> 2) % 31;
  const int first = intra && !adv ? 1 : 0;
  const bool leadingDc = recon && first == 1;
  std::string bits;
  for (std::size_t i = 2; i < size; ++i) bits += reference::bitsOf(data[i], 8);
  bits.resize(std::max<std::size_t>(bits.size(), 64), '0');

  std::int16_t expected[64] = {77};
  int expectedIndex = -1;
  zvpStatus expectedStatus = zvpStatusBadVlcCode;
  std::size_t position = start, end = start;
  const int dc = leadingDc ? reference::h263Dc(reference::BitSource(bits, start).number(8)) : 0;
  if (dc >= 0) {
    if (leadingDc) position += 8;
    const ScanName named[] = {ScanName::Zigzag, ScanName::Vertical, ScanName::Horizontal,
                              recon ? ScanName::Zigzag : ScanName::Raster};
    const auto block = reference::h263ReadCoeffs(
        h263Code(adv), bits.substr(position), modQuant, first,
        scanTable(recon && !adv ? ScanName::Zigzag : named[scan]),
        [&](int level) { return recon ? reference::h263Dequantize(level, QP, adv, modQuant) : level; });
    std::memcpy(expected, block.coefficients.data(), sizeof expected);
    if (first == 1) expected[0] = std::int16_t(leadingDc ? 8 * dc : 77);
    expectedIndex = block.indexLastNonZero;
    expectedStatus = block.status;
    end = position + block.examined;
    if (block.status == zvpStatusOk) position += block.bits;
  }
  bits.resize(8 * readableBytes(end), '0');
  InputStream stream(bits, start, readableBytes(end), data[0] & 16 ? Guard::Behind : Guard::Before);
  std::int16_t coefficients[64] = {77};
  std::int32_t index = 0;
  const std::uint8_t** const byte = &stream.byte;
  std::int32_t* const offset = &stream.offset;
  const zvpStatus status =
      member == 0   ? zvpiDecodeCoeffsInter_H263_1u16s(byte, offset, coefficients, &index, modQuant, scan)
      : member == 1 ? zvpiDecodeCoeffsIntra_H263_1u16s(byte, offset, coefficients, &index, adv, modQuant, scan)
      : member == 2
          ? zvpiReconstructCoeffsInter_H263_1u16s(byte, offset, coefficients, &index, QP, modQuant)
          : zvpiReconstructCoeffsIntra_H263_1u16s(byte, offset, coefficients, &index, 1, QP, adv, scan, modQuant);
  if (status != expectedStatus || index != expectedIndex || stream.position() != position ||
      std::memcmp(coefficients, expected, sizeof expected) != 0)
    std::abort();

  std::int16_t value = 5;
  InputStream dcStream(bits, start, start == 0 ? 1 : 2, Guard::Behind);
  const int dcExpected = reference::h263Dc(reference::BitSource(bits, start).number(8));
  const zvpStatus dcStatus = zvpiDecodeDCIntra_H263_1u16s(&dcStream.byte, &dcStream.offset, &value);
  if (dcStatus != (dcExpected < 0 ? zvpStatusBadVlcCode : zvpStatusOk) || value != (dcExpected < 0 ? 5 : dcExpected))
    std::abort();
  return 0;
}
