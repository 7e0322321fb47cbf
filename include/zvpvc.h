/*
 * zvpvc: block-level primitives of video coding.
 *
 * Each function works on memory of the caller's, checks its arguments in the order that its text gives, and returns a
 * status. There is no state but in records that the caller holds, no thread, no lock, no message: calls on disjoint
 * data may run at once.
 *
 * What holds for all functions, unless a text says otherwise:
 *   - Blocks are row-major. A step is the distance from one row to the next in bytes, also for 16-bit data; it may be
 *     odd, larger than the row and, where no check refuses it, negative.
 *   - No pointer needs to be aligned. No byte outside those that "Reads" and "Writes" name is touched, so a block may
 *     stand at the very end of mapped memory.
 *   - When a check refuses a call, nothing has been written.
 *   - 16-bit results keep their low 16 bits; where they saturate, the text says so.
 */
#ifndef ZVPVC_H
#define ZVPVC_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define ZVP_API __attribute__((visibility("default")))
#else
#define ZVP_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup frame Library frame
 * Status codes, shared records, the version query.
 * @{
 */

/** Result of a call: zero is success, negative an error, positive a warning with the work done. */
typedef int32_t zvpStatus;

/** The values of zvpStatus. */
enum {
  zvpStatusOk = 0,                      /**< The operation was carried out. */
  zvpStatusWarnPredictionFallback = 11, /**< Done, but a 4x4 intra prediction used 128 for a missing neighbour. */
  zvpStatusWarnOddSize = 35,            /**< Done, but the last odd column or row had no part in a 2:1 operation. */
  zvpStatusFail = -1,                   /**< An inner decoding step failed with no finer meaning. */
  zvpStatusError = -2,                  /**< The operation is not possible or not provided. */
  zvpStatusBadArgument = -5,            /**< A selector, a mode or a bit offset is not one of its legal values. */
  zvpStatusBadSize = -6,                /**< A region or count is empty, negative or not a legal block size. */
  zvpStatusNullPointer = -8,            /**< A required pointer, or the pointer that it points to, is null. */
  zvpStatusNoMemory = -9,               /**< An allocation failed or its size came out as zero. */
  zvpStatusDivideByZero = -10,          /**< A quantizer that the operation divides by is zero. */
  zvpStatusOutOfRange = -11,            /**< A quantizer, an index or another number is outside its legal range. */
  zvpStatusValueTooLarge = -13,         /**< A result exceeds what the format carries; those before it stay. */
  zvpStatusBadStep = -14,               /**< A row distance is below its minimum. */
  zvpStatusBadContext = -17,            /**< A record does not carry the identification of an initialized one. */
  zvpStatusBadInterpolation = -22,      /**< The mode of a camera resize is not 1 or 2. */
  zvpStatusBadScaleFactor = -23,        /**< The factor of a camera resize is not 2, 4 or 8. */
  zvpStatusBadMaskSize = -33,           /**< A filter mask selector is not one of the known sizes. */
  zvpStatusBadVlcInput = -74,           /**< The stream holds a pattern without a code, or a run leaves the block. */
  zvpStatusPredictionUnavailable = -117, /**< An intra mode needs a neighbour that is marked as missing. */
  zvpStatusBadVlcCode = -191,           /**< Illegal code in H.261, H.263 or MPEG-4 coefficient syntax. */
  zvpStatusBadQuantizer = -192,         /**< A quantizer is outside the standard's range. */
  zvpStatusBadBitOffset = -193          /**< The bit offset of a byte cursor is outside 0 to 7. */
};

/** Width and height in samples. Passed by value. */
typedef struct zvpSize {
  int32_t width;  /**< Columns. */
  int32_t height; /**< Rows. */
} zvpSize;

/** A position, or a vector. Passed by value. */
typedef struct zvpPoint {
  int32_t x; /**< To the right. */
  int32_t y; /**< Downward. */
} zvpPoint;

/** A rectangle by its top left corner. Passed by value. */
typedef struct zvpRect {
  int32_t x;      /**< Its left column. */
  int32_t y;      /**< Its top row. */
  int32_t width;  /**< Columns. */
  int32_t height; /**< Rows. */
} zvpRect;

/** What zvpvcGetLibVersion() tells. */
typedef struct zvpVersionRecord {
  int32_t major;         /**< Major version, 6. */
  int32_t minor;         /**< Minor version, 1. */
  int32_t majorBuild;    /**< 137. */
  int32_t build;         /**< 799. Not the number behind the build in Version; both stand as they are. */
  char targetCpu[4];     /**< "mx" and two zero bytes: the one generic code path. */
  const char *Name;      /**< "libzvpvcmx.so.6.1". */
  const char *Version;   /**< "6.1 build 137.56". */
  const char *BuildDate; /**< "Mar 17 2010". */
} zvpVersionRecord;

/**
 * Version of the library.
 *
 * @return the library's constant record, the same address on each call. The caller neither changes nor frees it.
 */
ZVP_API const zvpVersionRecord *zvpvcGetLibVersion(void);

/** @} */

/**
 * @defgroup measures_sad_and_ssd_with_half_pel_selection Measures: SAD and SSD with half-pel selection
 *
 * Distance between a block of the current picture and a block of a reference picture: sum of absolute differences
 * (SAD) or of squared differences (SSD).
 *
 * Members with an mcType compare at half-pel precision. With r the reference samples from pRef on, a block of W columns
 * and H rows is compared with these:
 *
 * | mcType | half in | reference sample at (x, y)                               | columns, rows read of pRef |
 * |--------|---------|----------------------------------------------------------|----------------------------|
 * | 0      | neither | r(x, y)                                                  | W, H                       |
 * | 4      | y       | (r(x, y) + r(x, y+1) + 1) >> 1                           | W, H+1                     |
 * | 8      | x       | (r(x, y) + r(x+1, y) + 1) >> 1                           | W+1, H                     |
 * | 12     | both    | (r(x, y) + r(x+1, y) + r(x, y+1) + r(x+1, y+1) + 2) >> 2 | W+1, H+1                   |
 *
 * These are the half samples of H.263 6.1.2, and of MPEG-4 Part 2 7.6.2 with rounding control 0. The lowest two bits
 * of mcType are ignored. mcType is not checked: what a value outside 0..15 does is undefined.
 *
 * For all members: a block is read within its columns and rows, for pRef those of the table, and nowhere else. Steps
 * may have any value, negative and odd ones too, and count bytes for 16-bit samples as well. Blocks may overlap each
 * other; results must not lie in a block. Nothing needs to be aligned.
 * @{
 */

/**
 * SAD of a 16x16 block of bytes against a reference at half-pel precision.
 *
 * The sum over x in 0..15, y in 0..15 of |src(x, y) - ref(x, y)|, ref by mcType: 0..65280.
 *
 * @param[in]  pSrc     top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD16x16_8u32s(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                     int32_t *pSAD, int32_t mcType);

/**
 * SAD of a 16x8 block of bytes against a reference at half-pel precision.
 *
 * The sum over x in 0..15, y in 0..7 of |src(x, y) - ref(x, y)|, ref by mcType: 0..32640.
 *
 * @param[in]  pSrc     top left sample of the block: 16 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD16x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                        int32_t *pSAD, int32_t mcType);

/**
 * SAD of an 8x8 block of bytes against a reference at half-pel precision.
 *
 * The sum over x in 0..7, y in 0..7 of |src(x, y) - ref(x, y)|, ref by mcType: 0..16320.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD8x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                       int32_t *pSAD, int32_t mcType);

/**
 * SAD of a 16x16 block of 16-bit samples against a reference at half-pel precision.
 *
 * The sum over x in 0..15, y in 0..15 of |src(x, y) - ref(x, y)|, ref by mcType: 0..16776960.
 *
 * @param[in]  pSrc     top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD16x16_16u32s_C1R(const uint16_t *pSrc, int32_t srcStep, const uint16_t *pRef, int32_t refStep,
                                          int32_t *pSAD, int32_t mcType);

/**
 * SAD of an 8x8 block of 16-bit samples against a reference at half-pel precision.
 *
 * The sum over x in 0..7, y in 0..7 of |src(x, y) - ref(x, y)|, ref by mcType: 0..4194240.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD8x8_16u32s_C1R(const uint16_t *pSrc, int32_t srcStep, const uint16_t *pRef, int32_t refStep,
                                        int32_t *pSAD, int32_t mcType);

/**
 * SAD of a 4x4 block of 16-bit samples against a reference at half-pel precision.
 *
 * The sum over x in 0..3, y in 0..3 of |src(x, y) - ref(x, y)|, ref by mcType: 0..1048560.
 *
 * @param[in]  pSrc     top left sample of the block: 4 columns, 4 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD4x4_16u32s_C1R(const uint16_t *pSrc, int32_t srcStep, const uint16_t *pRef, int32_t refStep,
                                        int32_t *pSAD, int32_t mcType);

/**
 * SSD of an 8x8 block of bytes against a reference at half-pel precision.
 *
 * The sum over x in 0..7, y in 0..7 of (src(x, y) - ref(x, y)) squared, ref by mcType: 0..4161600.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSSD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSSD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSSD holds the sum.
 */
ZVP_API zvpStatus zvpiSSD8x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                       int32_t *pSSD, int32_t mcType);

/**
 * SSD of a 4x4 block of bytes against a reference at half-pel precision.
 *
 * The sum over x in 0..3, y in 0..3 of (src(x, y) - ref(x, y)) squared, ref by mcType: 0..1040400.
 *
 * @param[in]  pSrc     top left sample of the block: 4 columns, 4 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference at its whole-pel position; the table tells what is read
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSSD     receives the sum
 * @param[in]  mcType   half-pel case: 0, 4, 8 or 12
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSSD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSSD holds the sum.
 */
ZVP_API zvpStatus zvpiSSD4x4_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                       int32_t *pSSD, int32_t mcType);

/**
 * SAD of an 8x16 block of bytes against a reference at a whole-pel position.
 *
 * The sum lies in 0..32640.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 16 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference: 8 columns, 16 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD8x16_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                        int32_t *pSAD);

/**
 * SAD of an 8x4 block of bytes against a reference at a whole-pel position.
 *
 * The sum lies in 0..8160.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 4 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference: 8 columns, 4 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD8x4_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                       int32_t *pSAD);

/**
 * SAD of a 4x8 block of bytes against a reference at a whole-pel position.
 *
 * The sum lies in 0..8160.
 *
 * @param[in]  pSrc     top left sample of the block: 4 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of the reference: 4 columns, 8 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSAD holds the sum.
 */
ZVP_API zvpStatus zvpiSAD4x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                       int32_t *pSAD);

/**
 * SADs of a 16x16 block of bytes against candidates that lie one sample apart along a row.
 *
 * Candidate i is the block at pRef + i. Only whole groups of eight candidates are measured: count 13 measures
 * eight and leaves pSAD[8] and those behind it as they are.
 *
 * @param[in]  pSrc     top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of candidate 0: with n candidates measured, 15 + n columns, 16 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the SAD of each candidate measured
 * @param[in]  count    number of candidates; the low three bits are ignored
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null.
 * @retval zvpStatusBadSize      count is below 8.
 * @retval zvpStatusOk           pSAD[0] to pSAD[(count & -8) - 1] hold the sums.
 */
ZVP_API zvpStatus zvpiSAD16x16xN_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                           uint16_t *pSAD, int32_t count);

/**
 * SADs of an 8x8 block of bytes against candidates that lie one sample apart along a row.
 *
 * Candidate i is the block at pRef + i. Only whole groups of eight candidates are measured: count 13 measures
 * eight and leaves pSAD[8] and those behind it as they are.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of candidate 0: with n candidates measured, 7 + n columns, 8 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the SAD of each candidate measured
 * @param[in]  count    number of candidates; the low three bits are ignored
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null.
 * @retval zvpStatusBadSize      count is below 8.
 * @retval zvpStatusOk           pSAD[0] to pSAD[(count & -8) - 1] hold the sums.
 */
ZVP_API zvpStatus zvpiSAD8x8xN_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                         uint16_t *pSAD, int32_t count);

/**
 * SADs of a 4x4 block of bytes against candidates that lie one sample apart along a row.
 *
 * Candidate i is the block at pRef + i. Only whole groups of eight candidates are measured: count 13 measures
 * eight and leaves pSAD[8] and those behind it as they are.
 *
 * @param[in]  pSrc     top left sample of the block: 4 columns, 4 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of candidate 0: with n candidates measured, 3 + n columns, 4 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the SAD of each candidate measured
 * @param[in]  count    number of candidates; the low three bits are ignored
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null.
 * @retval zvpStatusBadSize      count is below 8.
 * @retval zvpStatusOk           pSAD[0] to pSAD[(count & -8) - 1] hold the sums.
 */
ZVP_API zvpStatus zvpiSAD4x4xN_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                         uint16_t *pSAD, int32_t count);

/**
 * SADs of a 2x2 block of bytes against candidates that lie one sample apart along a row.
 *
 * Candidate i is the block at pRef + i. Only whole groups of eight candidates are measured: count 13 measures
 * eight and leaves pSAD[8] and those behind it as they are.
 *
 * @param[in]  pSrc     top left sample of the block: 2 columns, 2 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[in]  pRef     top left sample of candidate 0: with n candidates measured, 1 + n columns, 2 rows
 * @param[in]  refStep  distance between rows of pRef in bytes
 * @param[out] pSAD     receives the SAD of each candidate measured
 * @param[in]  count    number of candidates; the low three bits are ignored
 *
 * @retval zvpStatusNullPointer  pSrc, pRef or pSAD is null.
 * @retval zvpStatusBadSize      count is below 8.
 * @retval zvpStatusOk           pSAD[0] to pSAD[(count & -8) - 1] hold the sums.
 */
ZVP_API zvpStatus zvpiSAD2x2xN_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                         uint16_t *pSAD, int32_t count);

/**
 * SADs of a 16x16 block of bytes against candidates along a row, and the best candidate.
 *
 * As zvpiSAD16x16xN_8u16u_C1R(), then the index of the best of the candidates measured.
 *
 * @param[in]  pSrc       top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[in]  pRef       top left sample of candidate 0: with n candidates measured, 15 + n columns, 16 rows
 * @param[in]  refStep    distance between rows of pRef in bytes
 * @param[out] pSAD       receives the SAD of each candidate measured
 * @param[in]  count      number of candidates; the low three bits are ignored
 * @param[out] pMinIndex  receives the index of the least SAD, the lowest one of equals
 *
 * @retval zvpStatusNullPointer  pMinIndex is null, tested first; then pSrc, pRef or pSAD. Nothing has been written.
 * @retval zvpStatusBadSize      count is below 8. Nothing has been written.
 * @retval zvpStatusOk           The sums and *pMinIndex are written.
 */
ZVP_API zvpStatus zvpiSAD16x16xNI_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                            uint16_t *pSAD, int32_t count, int32_t *pMinIndex);

/**
 * SADs of an 8x8 block of bytes against candidates along a row, and the best candidate.
 *
 * As zvpiSAD8x8xN_8u16u_C1R(), then the index of the best of the candidates measured.
 *
 * @param[in]  pSrc       top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[in]  pRef       top left sample of candidate 0: with n candidates measured, 7 + n columns, 8 rows
 * @param[in]  refStep    distance between rows of pRef in bytes
 * @param[out] pSAD       receives the SAD of each candidate measured
 * @param[in]  count      number of candidates; the low three bits are ignored
 * @param[out] pMinIndex  receives the index of the least SAD, the lowest one of equals
 *
 * @retval zvpStatusNullPointer  pMinIndex is null, tested first; then pSrc, pRef or pSAD. Nothing has been written.
 * @retval zvpStatusBadSize      count is below 8. Nothing has been written.
 * @retval zvpStatusOk           The sums and *pMinIndex are written.
 */
ZVP_API zvpStatus zvpiSAD8x8xNI_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                          uint16_t *pSAD, int32_t count, int32_t *pMinIndex);

/**
 * SADs of a 4x4 block of bytes against candidates along a row, and the best candidate.
 *
 * As zvpiSAD4x4xN_8u16u_C1R(), then the index of the best of the candidates measured.
 *
 * @param[in]  pSrc       top left sample of the block: 4 columns, 4 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[in]  pRef       top left sample of candidate 0: with n candidates measured, 3 + n columns, 4 rows
 * @param[in]  refStep    distance between rows of pRef in bytes
 * @param[out] pSAD       receives the SAD of each candidate measured
 * @param[in]  count      number of candidates; the low three bits are ignored
 * @param[out] pMinIndex  receives the index of the least SAD, the lowest one of equals
 *
 * @retval zvpStatusNullPointer  pMinIndex is null, tested first; then pSrc, pRef or pSAD. Nothing has been written.
 * @retval zvpStatusBadSize      count is below 8. Nothing has been written.
 * @retval zvpStatusOk           The sums and *pMinIndex are written.
 */
ZVP_API zvpStatus zvpiSAD4x4xNI_8u16u_C1R(const uint8_t *pSrc, int32_t srcStep, const uint8_t *pRef, int32_t refStep,
                                          uint16_t *pSAD, int32_t count, int32_t *pMinIndex);

/** @} */ /* measures_sad_and_ssd_with_half_pel_selection */

/**
 * @defgroup measures_differences_block_statistics_and_edge_test Measures: differences, block statistics and edge test
 *
 * What the mode decision of an encoder asks for besides the SAD: residual blocks, SATD, deviation and variance of a
 * block, frame against field activity of a macroblock, a quick edge test.
 *
 * For all members: blocks are read within their columns and rows and nowhere else. Steps may have any value, negative
 * and odd ones too, and count bytes for 16-bit samples as well. Source blocks may overlap each other. What is written
 * must not lie in a source block or in another result; only a residual of 16-bit samples may take the very place of a
 * source block, with the same step. Nothing needs to be aligned.
 * @{
 */

/**
 * Residual of two 4x4 blocks of bytes.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 4 columns, 4 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 4 columns, 4 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 4 columns, 4 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual is written.
 */
ZVP_API zvpStatus zvpiSub4x4_8u16s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                       int16_t *pDst, int32_t dstStep);

/**
 * Residual of two 8x8 blocks of bytes.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 8 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 8 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 8 columns, 8 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual is written.
 */
ZVP_API zvpStatus zvpiSub8x8_8u16s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                       int16_t *pDst, int32_t dstStep);

/**
 * Residual of two 16x16 blocks of bytes.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 16 columns, 16 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 16 columns, 16 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 16 columns, 16 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual is written.
 */
ZVP_API zvpStatus zvpiSub16x16_8u16s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                         int16_t *pDst, int32_t dstStep);

/**
 * Residual of two 4x4 blocks of 16-bit samples.
 *
 * Differences keep their low 16 bits; they do not saturate.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 4 columns, 4 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 4 columns, 4 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 4 columns, 4 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual is written.
 */
ZVP_API zvpStatus zvpiSub4x4_16u16s_C1R(const uint16_t *pSrc1, int32_t src1Step, const uint16_t *pSrc2,
                                        int32_t src2Step, int16_t *pDst, int32_t dstStep);

/**
 * Residual of two 8x8 blocks of 16-bit samples.
 *
 * Differences keep their low 16 bits; they do not saturate.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 8 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 8 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 8 columns, 8 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual is written.
 */
ZVP_API zvpStatus zvpiSub8x8_16u16s_C1R(const uint16_t *pSrc1, int32_t src1Step, const uint16_t *pSrc2,
                                        int32_t src2Step, int16_t *pDst, int32_t dstStep);

/**
 * Residual of two 8x8 blocks of bytes, and its SAD.
 *
 * @param[in]  pSrc1     top left sample of the block to subtract from: 8 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the block to subtract: 8 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pDst      receives the residual src1 - src2: 8 columns, 8 rows
 * @param[in]  dstStep   distance between rows of pDst in bytes
 * @param[out] pSAD      receives the sum of the absolute residuals: 0..16320
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2, pDst or pSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           The residual and *pSAD are written.
 */
ZVP_API zvpStatus zvpiSubSAD8x8_8u16s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2,
                                          int32_t src2Step, int16_t *pDst, int32_t dstStep, int32_t *pSAD);

/**
 * Sum of absolute transformed differences of two 4x4 blocks of bytes.
 *
 * The residual goes through the 4x4 Hadamard transform along rows and columns; the result is the sum of the 16
 * absolute values: 0..16320. There is no scaling: residual 1 at every position gives 16.
 *
 * @param[in]  pSrc1     top left sample of the one block: 4 columns, 4 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 4 columns, 4 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD4x4_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                        int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 4x8 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 2 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 4 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 4 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD4x8_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                        int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 8x4 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 2 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 8 columns, 4 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 8 columns, 4 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD8x4_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                        int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 8x8 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 4 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 8 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 8 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD8x8_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                        int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 8x16 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 8 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 8 columns, 16 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 8 columns, 16 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD8x16_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                         int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 16x8 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 8 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 16 columns, 8 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 16 columns, 8 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD16x8_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                         int32_t *pSATD);

/**
 * Sum of absolute transformed differences of two 16x16 blocks of bytes.
 *
 * The sum of zvpiSATD4x4_8u32s_C1R() over the 16 tiles of 4x4 of the block.
 *
 * @param[in]  pSrc1     top left sample of the one block: 16 columns, 16 rows
 * @param[in]  src1Step  distance between rows of pSrc1 in bytes
 * @param[in]  pSrc2     top left sample of the other: 16 columns, 16 rows
 * @param[in]  src2Step  distance between rows of pSrc2 in bytes
 * @param[out] pSATD     receives the sum
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pSATD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pSATD holds the sum.
 */
ZVP_API zvpStatus zvpiSATD16x16_8u32s_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2,
                                          int32_t src2Step, int32_t *pSATD);

/**
 * Absolute deviation of an 8x8 block of bytes from its mean.
 *
 * With m = (sum of the samples + 32) >> 6: the sum of |sample - m|. It is not divided.
 *
 * @param[in]  pSrc     top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pResult  receives the sum of the deviations
 *
 * @retval zvpStatusNullPointer  pSrc or pResult is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pResult holds the sum.
 */
ZVP_API zvpStatus zvpiMeanAbsDev8x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, int32_t *pResult);

/**
 * Absolute deviation of a 16x16 block of bytes from its mean.
 *
 * With m = (sum of the samples + 128) >> 8: the sum of |sample - m|. It is not divided.
 *
 * @param[in]  pSrc     top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pResult  receives the sum of the deviations
 *
 * @retval zvpStatusNullPointer  pSrc or pResult is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pResult holds the sum.
 */
ZVP_API zvpStatus zvpiMeanAbsDev16x16_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, int32_t *pResult);

/**
 * Variance of a 16x16 block of bytes, times 256.
 *
 * With S the sum of the samples and Q the sum of their squares: Q - S * S / 256, the division truncating.
 *
 * @param[in]  pSrc       top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pVariance  receives the variance times 256
 *
 * @retval zvpStatusNullPointer  pSrc or pVariance is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pVariance is written.
 */
ZVP_API zvpStatus zvpiVariance16x16_8u32s(const uint8_t *pSrc, int32_t srcStep, uint32_t *pVariance);

/**
 * Variance per sample, and sum, of an 8x8 block of bytes.
 *
 * With S the sum of the samples and Q the sum of their squares, in single precision, each operation rounded to nearest:
 * m = S * 0.015625, variance = Q * 0.015625 - m * m, truncated toward zero. Unlike that of zvpiVariance16x16_8u32s(),
 * this variance is divided by the number of samples.
 *
 * @param[in]  pSrc       top left sample of the block: 8 columns, 8 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pVariance  receives the variance
 * @param[out] pSum       receives the sum of the samples
 *
 * @retval zvpStatusNullPointer  pSrc, pVariance or pSum is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pVariance and *pSum are written.
 */
ZVP_API zvpStatus zvpiVarSum8x8_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, int32_t *pVariance, int32_t *pSum);

/**
 * Frame and field activity of a 16x16 block of bytes.
 *
 * Frame activity: the sum over all columns of |row i - row i+1| and |row i+8 - row i+9| for i in 0..6. Rows 7 and 8
 * are not compared: the halves of the macroblock are measured apart. Field activity: the sum over all columns of
 * |row 2i - row 2i+2| and |row 2i+1 - row 2i+3| for i in 0..6.
 *
 * @param[in]  pSrc       top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pFrameSAD  receives the frame activity
 * @param[out] pFieldSAD  receives the field activity
 *
 * @retval zvpStatusNullPointer  pSrc, pFrameSAD or pFieldSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pFrameSAD and *pFieldSAD are written.
 */
ZVP_API zvpStatus zvpiFrameFieldSAD16x16_8u32s_C1R(const uint8_t *pSrc, int32_t srcStep, int32_t *pFrameSAD,
                                                   int32_t *pFieldSAD);

/**
 * Frame and field activity of a 16x16 block of signed 16-bit samples.
 *
 * Frame activity: the sum over all columns of |row i - row i+1| and |row i+8 - row i+9| for i in 0..6. Rows 7 and 8
 * are not compared: the halves of the macroblock are measured apart. Field activity: the sum over all columns of
 * |row 2i - row 2i+2| and |row 2i+1 - row 2i+3| for i in 0..6.
 *
 * @param[in]  pSrc       top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pFrameSAD  receives the frame activity
 * @param[out] pFieldSAD  receives the field activity
 *
 * @retval zvpStatusNullPointer  pSrc, pFrameSAD or pFieldSAD is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pFrameSAD and *pFieldSAD are written.
 */
ZVP_API zvpStatus zvpiFrameFieldSAD16x16_16s32s_C1R(const int16_t *pSrc, int32_t srcStep, int32_t *pFrameSAD,
                                                    int32_t *pFieldSAD);

/**
 * Whether a 16x16 block of bytes holds edges.
 *
 * A position of columns 0..14, rows 0..14 counts once if its sample differs from the one to the right, or from the one
 * below, by more than edgeDifference. Row 15 and column 15 are only neighbours.
 *
 * @param[in]  pSrc            top left sample of the block: 16 columns, 16 rows
 * @param[in]  srcStep         distance between rows of pSrc in bytes
 * @param[in]  edgeDifference  greatest difference that is no edge: 0..255; only the low byte counts
 * @param[in]  edgeCount       greatest number of positions without effect: 0..255; only the low byte counts
 * @param[out] pResult         receives 1 if more than edgeCount positions count, else 0
 *
 * Reads: 16 bytes of rows 0..14, 15 of row 15. Rows below the one that settles the result, but for its neighbours, may
 * be left out.
 *
 * @retval zvpStatusNullPointer  pSrc or pResult is null. The only check; nothing has been written.
 * @retval zvpStatusOk           *pResult is written.
 */
ZVP_API zvpStatus zvpiEdgesDetect16x16_8u_C1R(const uint8_t *pSrc, int32_t srcStep, int32_t edgeDifference,
                                              int32_t edgeCount, uint8_t *pResult);

/** @} */ /* measures_differences_block_statistics_and_edge_test */

/**
 * @defgroup mc_mc_blocks Motion compensation: MC blocks
 * What a decoder does with an inter macroblock when its residual is known: a prediction from one reference, or the
 * average of two, plus the residual, clipped to bytes (ISO/IEC 13818-2 7.6.4 to 7.6.8). The partner on an encoder's
 * side is the GetDiff family: it subtracts what these functions add, for equal types and rounding.
 *
 * The prediction p of a sample is made of the reference sample a at its place, the right neighbour b, c below a, and d
 * below b. Of a motion type the bits 2 and 3 count and no others:
 *
 *     type  position      prediction                               with roundControl 0, and with 1
 *     0     whole         a                                        a
 *     4     half in y     (a + c + 1 - roundControl) / 2           (a + c + 1) >> 1, (a + c) >> 1
 *     8     half in x     (a + b + 1 - roundControl) / 2           (a + b + 1) >> 1, (a + b) >> 1
 *     12    half in both  (a + b + c + d + 2 - roundControl) / 4   (sum + 2) >> 2, (sum + 1) >> 2
 *
 * roundControl is meant to be 0 or 1. Its whole value enters the sums, in wrapping 32-bit arithmetic with divisions
 * that truncate toward zero, so any other value has a defined result too, but a slow one.
 *
 * One reference: dst = clip(p + r) with the residual r. Two, each with its own type: dst = clip((pF + pB + 2 * r + 1) /
 * 2), so the average of the predictions rounds up whatever roundControl is. In interleaved chroma (U, V, U, V) the
 * right neighbour is the next sample of the same component, two bytes on.
 *
 * Of the reference of a block W wide and H high a call reads H rows of W bytes; with half in x each row is one sample
 * longer, with half in y there is one row more. It reads and writes nothing else, so a block may end where mapped
 * memory ends. Steps are bytes, also for the residual; they may have any value, odd or negative too, and no pointer
 * needs to be aligned. The residual is not optional: without one, pass zeros. Null pointers are all that is refused;
 * motion types and roundControl are not tested. The destination must not overlap what is read.
 * @{
 */

/**
 * Motion compensation of a 16x16 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 16 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 16 rows of 16
 *         values of pSrcYData.
 * Writes: 16 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x16_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                    int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                    int32_t roundControl);

/**
 * Motion compensation of a 16x16 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 16 bytes of each reference, one byte a row more for half in x, one row more for half in y; 16
 *         rows of 16 values of pSrcYData.
 * Writes: 16 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x16B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF,
                                     const uint8_t *pSrcRefB, int32_t srcStepB, int32_t mcTypeB,
                                     const int16_t *pSrcYData, int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep,
                                     int32_t roundControl);

/**
 * Motion compensation of a 16x8 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 8 rows of 16
 *         values of pSrcYData.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x8_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                   int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                   int32_t roundControl);

/**
 * Motion compensation of a 16x8 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of each reference, one byte a row more for half in x, one row more for half in y; 8 rows
 *         of 16 values of pSrcYData.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x8B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                    int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                    uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 16x4 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 4 rows of 16
 *         values of pSrcYData.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x4_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                   int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                   int32_t roundControl);

/**
 * Motion compensation of a 16x4 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of each reference, one byte a row more for half in x, one row more for half in y; 4 rows
 *         of 16 values of pSrcYData.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x4B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                    int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                    uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of an 8x16 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 16 rows of 8
 *         values of pSrcYData.
 * Writes: 16 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x16_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                   int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                   int32_t roundControl);

/**
 * Motion compensation of an 8x16 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 8 bytes of each reference, one byte a row more for half in x, one row more for half in y; 16 rows
 *         of 8 values of pSrcYData.
 * Writes: 16 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x16B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                    int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                    uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of an 8x8 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 8 rows of 8
 *         values of pSrcYData.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x8_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of an 8x8 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 8 bytes of each reference, one byte a row more for half in x, one row more for half in y; 8 rows
 *         of 8 values of pSrcYData.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x8B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of an 8x4 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 4 rows of 8
 *         values of pSrcYData.
 * Writes: 4 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x4_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of an 8x4 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 8 bytes of each reference, one byte a row more for half in x, one row more for half in y; 4 rows
 *         of 8 values of pSrcYData.
 * Writes: 4 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x4B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 2x2 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  2 rows of 2 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 2 rows of 2
 *         values of pSrcYData.
 * Writes: 2 rows of 2 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC2x2_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of a 2x2 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  2 rows of 2 bytes of each reference, one byte a row more for half in x, one row more for half in y; 2 rows
 *         of 2 values of pSrcYData.
 * Writes: 2 rows of 2 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC2x2B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 2x4 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 2 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 4 rows of 2
 *         values of pSrcYData.
 * Writes: 4 rows of 2 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC2x4_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of a 2x4 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 2 bytes of each reference, one byte a row more for half in x, one row more for half in y; 4 rows
 *         of 2 values of pSrcYData.
 * Writes: 4 rows of 2 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC2x4B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 4x2 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  2 rows of 4 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 2 rows of 4
 *         values of pSrcYData.
 * Writes: 2 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x2_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of a 4x2 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  2 rows of 4 bytes of each reference, one byte a row more for half in x, one row more for half in y; 2 rows
 *         of 4 values of pSrcYData.
 * Writes: 2 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x2B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 4x4 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 4 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 4 rows of 4
 *         values of pSrcYData.
 * Writes: 4 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x4_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of a 4x4 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 4 bytes of each reference, one byte a row more for half in x, one row more for half in y; 4 rows
 *         of 4 values of pSrcYData.
 * Writes: 4 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x4B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of a 4x8 block from one reference.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 4 bytes of pSrcRef, one byte a row more for half in x, one row more for half in y; 8 rows of 4
 *         values of pSrcYData.
 * Writes: 8 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x8_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                  int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                  int32_t roundControl);

/**
 * Motion compensation of a 4x8 block from two references.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 4 bytes of each reference, one byte a row more for half in x, one row more for half in y; 8 rows
 *         of 4 values of pSrcYData.
 * Writes: 8 rows of 4 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC4x8B_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                   int32_t srcStepB, int32_t mcTypeB, const int16_t *pSrcYData, int32_t srcYDataStep,
                                   uint8_t *pDst, int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of 16x8 bytes of interleaved chroma from one reference.
 *
 * The residual is interleaved as the samples are: a value for each byte of a row.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcRef, one pair a row more for half in x, one row more for half in y; 8 rows of 16
 *         values of pSrcYData.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x8UV_8u_C1(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcYData,
                                     int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep, int32_t mcType,
                                     int32_t roundControl);

/**
 * Motion compensation of 16x8 bytes of interleaved chroma from two references.
 *
 * The residual is interleaved as the samples are: a value for each byte of a row.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcYData     top left value of the residual
 * @param[in]  srcYDataStep  distance from one row of pSrcYData to the next, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of each reference, one pair a row more for half in x, one row more for half in y; 8 rows
 *         of 16 values of pSrcYData.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcYData or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC16x8BUV_8u_C1(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF,
                                      const uint8_t *pSrcRefB, int32_t srcStepB, int32_t mcTypeB,
                                      const int16_t *pSrcYData, int32_t srcYDataStep, uint8_t *pDst, int32_t dstStep,
                                      int32_t roundControl);

/**
 * Motion compensation of 8x8 pairs of interleaved chroma from one reference.
 *
 * The references and the result hold U, V, U, V, 8 pairs a row; the residual stands in a plane for each component.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcU         top left residual value of U
 * @param[in]  pSrcV         top left residual value of V
 * @param[in]  srcUVStep     distance from one row of pSrcU to the next, and of pSrcV, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcRef, one pair a row more for half in x, one row more for half in y; 8 rows of 8
 *         values of each of pSrcU and pSrcV.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcU, pSrcV or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x8_16s8u_P2C2R(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcU,
                                        const int16_t *pSrcV, int32_t srcUVStep, uint8_t *pDst, int32_t dstStep,
                                        int32_t mcType, int32_t roundControl);

/**
 * Motion compensation of 8x8 pairs of interleaved chroma from two references.
 *
 * The references and the result hold U, V, U, V, 8 pairs a row; the residual stands in a plane for each component.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcU         top left residual value of U
 * @param[in]  pSrcV         top left residual value of V
 * @param[in]  srcUVStep     distance from one row of pSrcU to the next, and of pSrcV, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of each reference, one pair a row more for half in x, one row more for half in y; 8 rows
 *         of 8 values of each of pSrcU and pSrcV.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcU, pSrcV or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x8B_16s8u_P2C2R(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF,
                                         const uint8_t *pSrcRefB, int32_t srcStepB, int32_t mcTypeB,
                                         const int16_t *pSrcU, const int16_t *pSrcV, int32_t srcUVStep, uint8_t *pDst,
                                         int32_t dstStep, int32_t roundControl);

/**
 * Motion compensation of 8x4 pairs of interleaved chroma from one reference.
 *
 * The references and the result hold U, V, U, V, 8 pairs a row; the residual stands in a plane for each component.
 *
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcStep       distance from one row of pSrcRef to the next, in bytes
 * @param[in]  pSrcU         top left residual value of U
 * @param[in]  pSrcV         top left residual value of V
 * @param[in]  srcUVStep     distance from one row of pSrcU to the next, and of pSrcV, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of pSrcRef, one pair a row more for half in x, one row more for half in y; 4 rows of 8
 *         values of each of pSrcU and pSrcV.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRef, pSrcU, pSrcV or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x4_16s8u_P2C2R(const uint8_t *pSrcRef, int32_t srcStep, const int16_t *pSrcU,
                                        const int16_t *pSrcV, int32_t srcUVStep, uint8_t *pDst, int32_t dstStep,
                                        int32_t mcType, int32_t roundControl);

/**
 * Motion compensation of 8x4 pairs of interleaved chroma from two references.
 *
 * The references and the result hold U, V, U, V, 8 pairs a row; the residual stands in a plane for each component.
 *
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcStepF      distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcStepB      distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcU         top left residual value of U
 * @param[in]  pSrcV         top left residual value of V
 * @param[in]  srcUVStep     distance from one row of pSrcU to the next, and of pSrcV, in bytes
 * @param[out] pDst          top left sample of the result
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of each reference, one pair a row more for half in x, one row more for half in y; 4 rows
 *         of 8 values of each of pSrcU and pSrcV.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcRefF, pSrcRefB, pSrcU, pSrcV or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is written.
 */
ZVP_API zvpStatus zvpiMC8x4B_16s8u_P2C2R(const uint8_t *pSrcRefF, int32_t srcStepF, int32_t mcTypeF,
                                         const uint8_t *pSrcRefB, int32_t srcStepB, int32_t mcTypeB,
                                         const int16_t *pSrcU, const int16_t *pSrcV, int32_t srcUVStep, uint8_t *pDst,
                                         int32_t dstStep, int32_t roundControl);

/** @} */ /* mc_mc_blocks */

/**
 * @defgroup mc_getdiff_blocks Motion compensation: GetDiff blocks
 * The encoder's side of the MC family: the difference between a current block and the prediction from one reference, or
 * the average of two (ISO/IEC 13818-2 7.6.4 to 7.6.8, seen from the encoder). An MC call with the same types and
 * roundControl adds exactly what was subtracted here.
 *
 * The prediction p of a sample is made of the reference sample a at its place, the right neighbour b, c below a, and d
 * below b. Of a motion type the bits 2 and 3 count and no others:
 *
 *     type  position      prediction                               with roundControl 0, and with 1
 *     0     whole         a                                        a
 *     4     half in y     (a + c + 1 - roundControl) / 2           (a + c + 1) >> 1, (a + c) >> 1
 *     8     half in x     (a + b + 1 - roundControl) / 2           (a + b + 1) >> 1, (a + b) >> 1
 *     12    half in both  (a + b + c + d + 2 - roundControl) / 4   (sum + 2) >> 2, (sum + 1) >> 2
 *
 * roundControl is meant to be 0 or 1. Its whole value enters the sums, in wrapping 32-bit arithmetic with divisions
 * that truncate toward zero, so any other value has a defined result too, but a slow one; of a result that needs more
 * than 16 bits the low 16 are kept.
 *
 * One reference: difference = cur - p. Two, each with its own type: difference = (2 * cur - pF - pB) >> 1, which is cur
 * less the average of the predictions, rounded up whatever roundControl is. In interleaved chroma (U, V, U, V) the
 * right neighbour is the next sample of the same component, two bytes on.
 *
 * Of the reference of a block W wide and H high a call reads H rows of W bytes; with half in x each row is one sample
 * longer, with half in y there is one row more. It reads and writes nothing else, so a block may end where mapped
 * memory ends. Steps are bytes, also for 16-bit results; they may have any value, odd or negative too, and no pointer
 * needs to be aligned. Null pointers are all that is refused; motion types and roundControl are not tested. What is
 * written must not overlap what is read, nor the other output.
 * @{
 */

/**
 * Difference between a 16x16 block and the prediction from one reference.
 *
 * @param[in]  pSrcCur           top left sample of the current block
 * @param[in]  srcCurStep        distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef           top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep        distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff          top left value of the difference
 * @param[in]  dstDiffStep       distance from one row of pDstDiff to the next, in bytes
 * @param[out] pDstPredictor     top left value of the prediction, written as 16-bit values; null if it is not wanted
 * @param[in]  dstPredictorStep  distance from one row of pDstPredictor to the next, in bytes; of no meaning if that is
 *                               null
 * @param[in]  mcType            motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl      0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 16 bytes of pSrcCur; 16 rows of 16 bytes of pSrcRef, one byte a row more for half in x, one row
 *         more for half in y.
 * Writes: 16 rows of 16 values of pDstDiff and, if it is not null, of pDstPredictor.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff16x16_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                            int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep,
                                            int16_t *pDstPredictor, int32_t dstPredictorStep, int32_t mcType,
                                            int32_t roundControl);

/**
 * Difference between a 16x16 block and the prediction from two references.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiff      top left value of the difference
 * @param[in]  dstDiffStep   distance from one row of pDstDiff to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 16 bytes of pSrcCur; 16 rows of 16 bytes of each reference, one byte a row more for half in x,
 *         one row more for half in y.
 * Writes: 16 rows of 16 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff16x16B_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                             int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                             int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiff,
                                             int32_t dstDiffStep, int32_t roundControl);

/**
 * Difference between a 16x8 block and the prediction from one reference.
 *
 * @param[in]  pSrcCur           top left sample of the current block
 * @param[in]  srcCurStep        distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef           top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep        distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff          top left value of the difference
 * @param[in]  dstDiffStep       distance from one row of pDstDiff to the next, in bytes
 * @param[out] pDstPredictor     top left value of the prediction, written as 16-bit values; null if it is not wanted
 * @param[in]  dstPredictorStep  distance from one row of pDstPredictor to the next, in bytes; of no meaning if that is
 *                               null
 * @param[in]  mcType            motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl      0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcCur; 8 rows of 16 bytes of pSrcRef, one byte a row more for half in x, one row
 *         more for half in y.
 * Writes: 8 rows of 16 values of pDstDiff and, if it is not null, of pDstPredictor.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff16x8_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                           int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep,
                                           int16_t *pDstPredictor, int32_t dstPredictorStep, int32_t mcType,
                                           int32_t roundControl);

/**
 * Difference between a 16x8 block and the prediction from two references.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiff      top left value of the difference
 * @param[in]  dstDiffStep   distance from one row of pDstDiff to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcCur; 8 rows of 16 bytes of each reference, one byte a row more for half in x, one
 *         row more for half in y.
 * Writes: 8 rows of 16 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff16x8B_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                            int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                            int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiff,
                                            int32_t dstDiffStep, int32_t roundControl);

/**
 * Difference between an 8x16 block and the prediction from one reference.
 *
 * @param[in]  pSrcCur           top left sample of the current block
 * @param[in]  srcCurStep        distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef           top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep        distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff          top left value of the difference
 * @param[in]  dstDiffStep       distance from one row of pDstDiff to the next, in bytes
 * @param[out] pDstPredictor     top left value of the prediction, written as 16-bit values; null if it is not wanted
 * @param[in]  dstPredictorStep  distance from one row of pDstPredictor to the next, in bytes; of no meaning if that is
 *                               null
 * @param[in]  mcType            motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl      0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 8 bytes of pSrcCur; 16 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row
 *         more for half in y.
 * Writes: 16 rows of 8 values of pDstDiff and, if it is not null, of pDstPredictor.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x16_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                           int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep,
                                           int16_t *pDstPredictor, int32_t dstPredictorStep, int32_t mcType,
                                           int32_t roundControl);

/**
 * Difference between an 8x16 block and the prediction from two references.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiff      top left value of the difference
 * @param[in]  dstDiffStep   distance from one row of pDstDiff to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  16 rows of 8 bytes of pSrcCur; 16 rows of 8 bytes of each reference, one byte a row more for half in x, one
 *         row more for half in y.
 * Writes: 16 rows of 8 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x16B_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                            int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                            int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiff,
                                            int32_t dstDiffStep, int32_t roundControl);

/**
 * Difference between an 8x8 block and the prediction from one reference.
 *
 * @param[in]  pSrcCur           top left sample of the current block
 * @param[in]  srcCurStep        distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef           top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep        distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff          top left value of the difference
 * @param[in]  dstDiffStep       distance from one row of pDstDiff to the next, in bytes
 * @param[out] pDstPredictor     top left value of the prediction, written as 16-bit values; null if it is not wanted
 * @param[in]  dstPredictorStep  distance from one row of pDstPredictor to the next, in bytes; of no meaning if that is
 *                               null
 * @param[in]  mcType            motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl      0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 8 bytes of pSrcCur; 8 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row more
 *         for half in y.
 * Writes: 8 rows of 8 values of pDstDiff and, if it is not null, of pDstPredictor.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x8_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                          int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep,
                                          int16_t *pDstPredictor, int32_t dstPredictorStep, int32_t mcType,
                                          int32_t roundControl);

/**
 * Difference between an 8x8 block and the prediction from two references.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiff      top left value of the difference
 * @param[in]  dstDiffStep   distance from one row of pDstDiff to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 8 bytes of pSrcCur; 8 rows of 8 bytes of each reference, one byte a row more for half in x, one
 *         row more for half in y.
 * Writes: 8 rows of 8 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x8B_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                           int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                           int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiff, int32_t dstDiffStep,
                                           int32_t roundControl);

/**
 * Difference between an 8x4 block and the prediction from one reference.
 *
 * @param[in]  pSrcCur           top left sample of the current block
 * @param[in]  srcCurStep        distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef           top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep        distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff          top left value of the difference
 * @param[in]  dstDiffStep       distance from one row of pDstDiff to the next, in bytes
 * @param[out] pDstPredictor     top left value of the prediction, written as 16-bit values; null if it is not wanted
 * @param[in]  dstPredictorStep  distance from one row of pDstPredictor to the next, in bytes; of no meaning if that is
 *                               null
 * @param[in]  mcType            motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl      0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 8 bytes of pSrcCur; 4 rows of 8 bytes of pSrcRef, one byte a row more for half in x, one row more
 *         for half in y.
 * Writes: 4 rows of 8 values of pDstDiff and, if it is not null, of pDstPredictor.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x4_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                          int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep,
                                          int16_t *pDstPredictor, int32_t dstPredictorStep, int32_t mcType,
                                          int32_t roundControl);

/**
 * Difference between an 8x4 block and the prediction from two references.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiff      top left value of the difference
 * @param[in]  dstDiffStep   distance from one row of pDstDiff to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 8 bytes of pSrcCur; 4 rows of 8 bytes of each reference, one byte a row more for half in x, one
 *         row more for half in y.
 * Writes: 4 rows of 8 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff8x4B_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                           int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                           int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiff, int32_t dstDiffStep,
                                           int32_t roundControl);

/**
 * Difference between 8x8 pairs of interleaved chroma and the prediction from one reference.
 *
 * The current block and the references hold U, V, U, V, 8 pairs a row; the differences go to a plane for each
 * component.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep    distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiffU     top left value of the difference of U
 * @param[in]  dstDiffUStep  distance from one row of pDstDiffU to the next, in bytes
 * @param[out] pDstDiffV     top left value of the difference of V
 * @param[in]  dstDiffVStep  distance from one row of pDstDiffV to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcCur; 8 rows of 16 bytes of pSrcRef, one pair a row more for half in x, one row
 *         more for half in y.
 * Writes: 8 rows of 8 values of each of pDstDiffU and pDstDiffV.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef, pDstDiffU or pDstDiffV is null; nothing is written.
 * @retval zvpStatusOk           the differences are written.
 */
ZVP_API zvpStatus zvpiGetDiff8x8_8u16s_C2P2(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                            int32_t srcRefStep, int16_t *pDstDiffU, int32_t dstDiffUStep,
                                            int16_t *pDstDiffV, int32_t dstDiffVStep, int32_t mcType,
                                            int32_t roundControl);

/**
 * Difference between 8x8 pairs of interleaved chroma and the prediction from two references.
 *
 * The current block and the references hold U, V, U, V, 8 pairs a row; the differences go to a plane for each
 * component.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiffU     top left value of the difference of U
 * @param[in]  dstDiffUStep  distance from one row of pDstDiffU to the next, in bytes
 * @param[out] pDstDiffV     top left value of the difference of V
 * @param[in]  dstDiffVStep  distance from one row of pDstDiffV to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  8 rows of 16 bytes of pSrcCur; 8 rows of 16 bytes of each reference, one pair a row more for half in x, one
 *         row more for half in y.
 * Writes: 8 rows of 8 values of each of pDstDiffU and pDstDiffV.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB, pDstDiffU or pDstDiffV is null; nothing
 *                               is written.
 * @retval zvpStatusOk           the differences are written.
 */
ZVP_API zvpStatus zvpiGetDiff8x8B_8u16s_C2P2(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                             int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                             int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiffU,
                                             int32_t dstDiffUStep, int16_t *pDstDiffV, int32_t dstDiffVStep,
                                             int32_t roundControl);

/**
 * Difference between 8x4 pairs of interleaved chroma and the prediction from one reference.
 *
 * The current block and the references hold U, V, U, V, 8 pairs a row; the differences go to a plane for each
 * component.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef       top left sample of the reference at its whole-pel position
 * @param[in]  srcRefStep    distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiffU     top left value of the difference of U
 * @param[in]  dstDiffUStep  distance from one row of pDstDiffU to the next, in bytes
 * @param[out] pDstDiffV     top left value of the difference of V
 * @param[in]  dstDiffVStep  distance from one row of pDstDiffV to the next, in bytes
 * @param[in]  mcType        motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of pSrcCur; 4 rows of 16 bytes of pSrcRef, one pair a row more for half in x, one row
 *         more for half in y.
 * Writes: 4 rows of 8 values of each of pDstDiffU and pDstDiffV.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef, pDstDiffU or pDstDiffV is null; nothing is written.
 * @retval zvpStatusOk           the differences are written.
 */
ZVP_API zvpStatus zvpiGetDiff8x4_8u16s_C2P2(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                            int32_t srcRefStep, int16_t *pDstDiffU, int32_t dstDiffUStep,
                                            int16_t *pDstDiffV, int32_t dstDiffVStep, int32_t mcType,
                                            int32_t roundControl);

/**
 * Difference between 8x4 pairs of interleaved chroma and the prediction from two references.
 *
 * The current block and the references hold U, V, U, V, 8 pairs a row; the differences go to a plane for each
 * component.
 *
 * @param[in]  pSrcCur       top left sample of the current block
 * @param[in]  srcCurStep    distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRefF      top left sample of the forward reference at its whole-pel position
 * @param[in]  srcRefStepF   distance from one row of pSrcRefF to the next, in bytes
 * @param[in]  mcTypeF       forward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[in]  pSrcRefB      top left sample of the backward reference at its whole-pel position
 * @param[in]  srcRefStepB   distance from one row of pSrcRefB to the next, in bytes
 * @param[in]  mcTypeB       backward motion type: 0 whole, 4 half in y, 8 half in x, 12 half in both
 * @param[out] pDstDiffU     top left value of the difference of U
 * @param[in]  dstDiffUStep  distance from one row of pDstDiffU to the next, in bytes
 * @param[out] pDstDiffV     top left value of the difference of V
 * @param[in]  dstDiffVStep  distance from one row of pDstDiffV to the next, in bytes
 * @param[in]  roundControl  0 rounds half-pel means up, 1 down
 *
 * Reads:  4 rows of 16 bytes of pSrcCur; 4 rows of 16 bytes of each reference, one pair a row more for half in x, one
 *         row more for half in y.
 * Writes: 4 rows of 8 values of each of pDstDiffU and pDstDiffV.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRefF, pSrcRefB, pDstDiffU or pDstDiffV is null; nothing
 *                               is written.
 * @retval zvpStatusOk           the differences are written.
 */
ZVP_API zvpStatus zvpiGetDiff8x4B_8u16s_C2P2(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRefF,
                                             int32_t srcRefStepF, int32_t mcTypeF, const uint8_t *pSrcRefB,
                                             int32_t srcRefStepB, int32_t mcTypeB, int16_t *pDstDiffU,
                                             int32_t dstDiffUStep, int16_t *pDstDiffV, int32_t dstDiffVStep,
                                             int32_t roundControl);

/**
 * Difference between two 4x4 blocks at whole-pel positions: difference = cur - ref.
 *
 * @param[in]  pSrcCur      top left sample of the current block
 * @param[in]  srcCurStep   distance from one row of pSrcCur to the next, in bytes
 * @param[in]  pSrcRef      top left sample of the reference
 * @param[in]  srcRefStep   distance from one row of pSrcRef to the next, in bytes
 * @param[out] pDstDiff     top left value of the difference
 * @param[in]  dstDiffStep  distance from one row of pDstDiff to the next, in bytes
 *
 * Reads:  4 rows of 4 bytes of each of pSrcCur and pSrcRef.
 * Writes: 4 rows of 4 values of pDstDiff.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pSrcRef or pDstDiff is null; nothing is written.
 * @retval zvpStatusOk           the difference is written.
 */
ZVP_API zvpStatus zvpiGetDiff4x4_8u16s_C1(const uint8_t *pSrcCur, int32_t srcCurStep, const uint8_t *pSrcRef,
                                          int32_t srcRefStep, int16_t *pDstDiff, int32_t dstDiffStep);

/** @} */ /* mc_getdiff_blocks */

/**
 * @defgroup mc_copy_average_and_add_blocks Motion compensation: copy, average and add blocks
 * Motion compensation of MPEG-style decoders in its plain forms: a block of bytes copied from a half-pel position of a
 * reference, averaged into a prediction that is there already, or given a residual (ISO/IEC 13818-2 7.6.4 and 7.6.7,
 * ISO/IEC 14496-2 7.6.2.1).
 *
 * The prediction p of a sample is made of the reference sample a at its place, the right neighbour b, c below a, and d
 * below b. acc and rounding select it; only the low two bits of acc and the low bit of rounding count:
 *
 *     acc  position       rounding 0                  rounding 1
 *     0    whole          a                           a
 *     1    half in x      (a + b + 1) >> 1            (a + b) >> 1
 *     2    half in y      (a + c + 1) >> 1            (a + c) >> 1
 *     3    half in both   (a + b + c + d + 2) >> 2    (a + b + c + d + 1) >> 2
 *
 * Of the reference of a block W wide and H high a call reads H rows of W bytes; with half in x each row is one byte
 * longer, with half in y there is one row more. It reads and writes nothing else, so a block may end where mapped
 * memory ends. Steps may have any value, negative too; no pointer needs to be aligned, 16-bit data included. A null
 * pointer is the only thing that is refused. Source and destination must not overlap, unless they are named one block.
 * @{
 */

/**
 * Copy of an 8x8 block of bytes.
 *
 * @param[in]  pSrc     top left sample of the source
 * @param[in]  srcStep  distance from one row of pSrc to the next, in bytes
 * @param[out] pDst     top left sample of the destination
 * @param[in]  dstStep  distance from one row of pDst to the next, in bytes
 *
 * Reads:  8 rows of 8 bytes of pSrc.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is copied.
 */
ZVP_API zvpStatus zvpiCopy8x8_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep);

/**
 * Copy of a 16x16 block of bytes.
 *
 * @param[in]  pSrc     top left sample of the source
 * @param[in]  srcStep  distance from one row of pSrc to the next, in bytes
 * @param[out] pDst     top left sample of the destination
 * @param[in]  dstStep  distance from one row of pDst to the next, in bytes
 *
 * Reads:  16 rows of 16 bytes of pSrc.
 * Writes: 16 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is copied.
 */
ZVP_API zvpStatus zvpiCopy16x16_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep);

/**
 * Copy of an 8x4 block of bytes from a half-pel position: dst = p.
 *
 * @param[in]  pSrc      top left sample of the reference at its whole-pel position
 * @param[in]  srcStep   distance from one row of pSrc to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 * @param[in]  acc       position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits are
 *                       ignored
 * @param[in]  rounding  0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  4 rows of 8 bytes of pSrc; one byte a row more for half in x, one row more for half in y.
 * Writes: 4 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is predicted.
 */
ZVP_API zvpStatus zvpiCopy8x4HP_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                       int32_t acc, int32_t rounding);

/**
 * Copy of an 8x8 block of bytes from a half-pel position: dst = p.
 *
 * @param[in]  pSrc      top left sample of the reference at its whole-pel position
 * @param[in]  srcStep   distance from one row of pSrc to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 * @param[in]  acc       position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits are
 *                       ignored
 * @param[in]  rounding  0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  8 rows of 8 bytes of pSrc; one byte a row more for half in x, one row more for half in y.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is predicted.
 */
ZVP_API zvpStatus zvpiCopy8x8HP_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                       int32_t acc, int32_t rounding);

/**
 * Copy of a 16x8 block of bytes from a half-pel position: dst = p.
 *
 * @param[in]  pSrc      top left sample of the reference at its whole-pel position
 * @param[in]  srcStep   distance from one row of pSrc to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 * @param[in]  acc       position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits are
 *                       ignored
 * @param[in]  rounding  0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  8 rows of 16 bytes of pSrc; one byte a row more for half in x, one row more for half in y.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is predicted.
 */
ZVP_API zvpStatus zvpiCopy16x8HP_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                        int32_t acc, int32_t rounding);

/**
 * Copy of a 16x16 block of bytes from a half-pel position: dst = p.
 *
 * @param[in]  pSrc      top left sample of the reference at its whole-pel position
 * @param[in]  srcStep   distance from one row of pSrc to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 * @param[in]  acc       position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits are
 *                       ignored
 * @param[in]  rounding  0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  16 rows of 16 bytes of pSrc; one byte a row more for half in x, one row more for half in y.
 * Writes: 16 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null; nothing is written.
 * @retval zvpStatusOk           the block is predicted.
 */
ZVP_API zvpStatus zvpiCopy16x16HP_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                         int32_t acc, int32_t rounding);

/**
 * Average of two 8x8 blocks of bytes: dst = (src1 + src2 + 1) >> 1.
 *
 * @param[in]  pSrc1     top left sample of the first block
 * @param[in]  src1Step  distance from one row of pSrc1 to the next, in bytes
 * @param[in]  pSrc2     top left sample of the second block
 * @param[in]  src2Step  distance from one row of pSrc2 to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 *
 * Reads:  8 rows of 8 bytes of each of pSrc1 and pSrc2.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiAverage8x8_8u_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2, int32_t src2Step,
                                        uint8_t *pDst, int32_t dstStep);

/**
 * Average of two 16x16 blocks of bytes: dst = (src1 + src2 + 1) >> 1.
 *
 * @param[in]  pSrc1     top left sample of the first block
 * @param[in]  src1Step  distance from one row of pSrc1 to the next, in bytes
 * @param[in]  pSrc2     top left sample of the second block
 * @param[in]  src2Step  distance from one row of pSrc2 to the next, in bytes
 * @param[out] pDst      top left sample of the destination
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 *
 * Reads:  16 rows of 16 bytes of each of pSrc1 and pSrc2.
 * Writes: 16 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc1, pSrc2 or pDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiAverage16x16_8u_C1R(const uint8_t *pSrc1, int32_t src1Step, const uint8_t *pSrc2,
                                          int32_t src2Step, uint8_t *pDst, int32_t dstStep);

/**
 * An 8x8 block of bytes averaged into another: dst = (dst + src + 1) >> 1.
 *
 * @param[in]     pSrc        top left sample of the source
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 *
 * Reads:  8 rows of 8 bytes of each of pSrc and pSrcDst.
 * Writes: 8 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiAverage8x8_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst, int32_t srcDstStep);

/**
 * A 16x16 block of bytes averaged into another: dst = (dst + src + 1) >> 1.
 *
 * @param[in]     pSrc        top left sample of the source
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 *
 * Reads:  16 rows of 16 bytes of each of pSrc and pSrcDst.
 * Writes: 16 rows of 16 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiAverage16x16_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst, int32_t srcDstStep);

/**
 * An 8x4 block from a half-pel position averaged into another: dst = (dst + p + 1) >> 1.
 *
 * The outer average rounds up; rounding reaches p alone.
 *
 * @param[in]     pSrc        top left sample of the reference at its whole-pel position
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 * @param[in]     acc         position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits
 *                            are ignored
 * @param[in]     rounding    0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  4 rows of 8 bytes of pSrc, one byte a row more for half in x, one row more for half in y; 4 rows of 8 bytes
 *         of pSrcDst.
 * Writes: 4 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiInterpolateAverage8x4_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst,
                                                    int32_t srcDstStep, int32_t acc, int32_t rounding);

/**
 * An 8x8 block from a half-pel position averaged into another: dst = (dst + p + 1) >> 1.
 *
 * The outer average rounds up; rounding reaches p alone.
 *
 * @param[in]     pSrc        top left sample of the reference at its whole-pel position
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 * @param[in]     acc         position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits
 *                            are ignored
 * @param[in]     rounding    0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  8 rows of 8 bytes of pSrc, one byte a row more for half in x, one row more for half in y; 8 rows of 8 bytes
 *         of pSrcDst.
 * Writes: 8 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiInterpolateAverage8x8_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst,
                                                    int32_t srcDstStep, int32_t acc, int32_t rounding);

/**
 * A 16x8 block from a half-pel position averaged into another: dst = (dst + p + 1) >> 1.
 *
 * The outer average rounds up; rounding reaches p alone.
 *
 * @param[in]     pSrc        top left sample of the reference at its whole-pel position
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 * @param[in]     acc         position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits
 *                            are ignored
 * @param[in]     rounding    0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  8 rows of 16 bytes of pSrc, one byte a row more for half in x, one row more for half in y; 8 rows of 16
 *         bytes of pSrcDst.
 * Writes: 8 rows of 16 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiInterpolateAverage16x8_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst,
                                                     int32_t srcDstStep, int32_t acc, int32_t rounding);

/**
 * A 16x16 block from a half-pel position averaged into another: dst = (dst + p + 1) >> 1.
 *
 * The outer average rounds up; rounding reaches p alone.
 *
 * @param[in]     pSrc        top left sample of the reference at its whole-pel position
 * @param[in]     srcStep     distance from one row of pSrc to the next, in bytes
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 * @param[in]     acc         position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits
 *                            are ignored
 * @param[in]     rounding    0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  16 rows of 16 bytes of pSrc, one byte a row more for half in x, one row more for half in y; 16 rows of 16
 *         bytes of pSrcDst.
 * Writes: 16 rows of 16 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the average is written.
 */
ZVP_API zvpStatus zvpiInterpolateAverage16x16_8u_C1IR(const uint8_t *pSrc, int32_t srcStep, uint8_t *pSrcDst,
                                                      int32_t srcDstStep, int32_t acc, int32_t rounding);

/**
 * Residual added to an 8x8 block of bytes in place: dst = dst + residual, clipped to 0..255.
 *
 * @param[in]     pResidual     top left value of the residual
 * @param[in]     residualStep  distance from one row of pResidual to the next, in bytes; may be odd
 * @param[in,out] pSrcDst       top left sample of the block that is changed in place
 * @param[in]     srcDstStep    distance from one row of pSrcDst to the next, in bytes
 *
 * Reads:  8 rows of 8 values of pResidual; 8 rows of 8 bytes of pSrcDst.
 * Writes: 8 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pResidual or pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the sums are written.
 */
ZVP_API zvpStatus zvpiAdd8x8_16s8u_C1IRS(const int16_t *pResidual, int32_t residualStep, uint8_t *pSrcDst,
                                         int32_t srcDstStep);

/**
 * Residual added to an 8x8 block from a half-pel position: dst = p + residual, clipped to 0..255.
 *
 * @param[in]  pResidual     top left value of the residual
 * @param[in]  residualStep  distance from one row of pResidual to the next, in bytes; may be odd
 * @param[in]  pRef          top left sample of the reference at its whole-pel position
 * @param[in]  refStep       distance from one row of pRef to the next, in bytes
 * @param[out] pDst          top left sample of the destination
 * @param[in]  dstStep       distance from one row of pDst to the next, in bytes
 * @param[in]  acc           position of the reference: 0 whole, 1 half in x, 2 half in y, 3 half in both; other bits
 *                           are ignored
 * @param[in]  rounding      0 rounds half-pel means up, 1 down; other bits are ignored
 *
 * Reads:  8 rows of 8 values of pResidual; 8 rows of 8 bytes of pRef, one byte a row more for half in x, one row more
 *         for half in y.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pResidual, pRef or pDst is null; nothing is written.
 * @retval zvpStatusOk           the sums are written.
 */
ZVP_API zvpStatus zvpiAdd8x8HP_16s8u_C1RS(const int16_t *pResidual, int32_t residualStep, const uint8_t *pRef,
                                          int32_t refStep, uint8_t *pDst, int32_t dstStep, int32_t acc,
                                          int32_t rounding);

/**
 * Constant added to an 8x8 block of bytes in place: dst = dst + value, clipped to 0..255.
 *
 * Of value the low 16 bits count, as a signed number: 65535 subtracts 1, 65536 adds 0.
 *
 * @param[in]     value       what is added; its low 16 bits, signed
 * @param[in,out] pSrcDst     top left sample of the block that is changed in place
 * @param[in]     srcDstStep  distance from one row of pSrcDst to the next, in bytes
 *
 * Reads:  8 rows of 8 bytes of pSrcDst.
 * Writes: 8 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null; nothing is written.
 * @retval zvpStatusOk           the sums are written.
 */
ZVP_API zvpStatus zvpiAddC8x8_16s8u_C1IR(int32_t value, uint8_t *pSrcDst, int32_t srcDstStep);

/** @} */ /* mc_copy_average_and_add_blocks */

/**
 * @defgroup mpeg_huffman_tables_and_readers MPEG-1/2: Huffman tables and readers
 *
 * Variable-length codes of the caller's choice: a list of code words is compiled once into lookup tables, with which
 * any number of readers may then work at once.
 *
 * The list is an array of int32_t: one word that is not read; n, the number of lookup levels, at least 1; n index
 * widths in bits, each at least 1, whose sum reaches the longest code; then for the lengths 1, 2, 3, ... the number of
 * codes of that length and the codes, until a negative number ends the list. A code is its word, right-aligned, and its
 * value: one int32_t in a value list, two in a run-level list, of which the first, the run, keeps 8 bits and the
 * second, the level, 16. Codes must be prefix-free. Few wide levels make a reader fast, many narrow ones a table small;
 * 8 to 9 bits first and the rest behind serve the tables of ISO/IEC 13818-2 Annex B well.
 *
 * The compiled table is an array of int32_t. Word 0 is the width w of the first level; 2^w entries follow; sub-tables
 * of the same layout stand behind it in the order in which the codes ask for them. An entry is
 *   - a link: the sub-table's index in bits 31..8, 128 in bits 7..0;
 *   - a leaf: the value in bits 31..8, or the level in bits 31..16 and the run in bits 15..8; in bits 7..0 the number
 *     of bits that the lookup has read beyond the code;
 *   - 0xF0F101 where no code leads. Its value field, 61681 (run 241, level 240), is therefore no legal value.
 *
 * The cursor is a pointer to 32-bit words in the machine's byte order and the index, 31 to 0, of the next bit in the
 * word; bit 31 comes first in the stream. The offset is not checked; outside 0..31 is undefined. On return the cursor
 * stands on the first bit not consumed, which may be bit 31 of the word behind the last one.
 *
 * A lookup reads a whole level at a time, so its look-ahead is the width of the last level it enters, less one bit. A
 * word is read only if a bit of it is looked at.
 * @{
 */

/**
 * Compiles a list of codes with one value each.
 *
 * A code longer than all levels together is dropped. If a sub-table's index is a multiple of 256, further codes with
 * the same first bits do not find it and go on in the table before it, over what is there: choose other widths then.
 *
 * @param[in]  pSrcTable  the list
 * @param[out] ppDstSpec  receives the table, which zvpMalloc() gave and zvpiHuffmanTableFree_32s() takes back; not
 *                        written on error
 *
 * Reads:  the list up to the negative number that ends it.
 * Writes: *ppDstSpec. Allocates 8 bytes a code, given back before it returns, and the table.
 *
 * @retval zvpStatusNullPointer  pSrcTable or ppDstSpec is null.
 * @retval zvpStatusNoMemory     The list holds no code, or an allocation failed. Nothing stays allocated.
 * @retval zvpStatusOk           *ppDstSpec is the caller's.
 */
ZVP_API zvpStatus zvpiHuffmanTableInitAlloc_32s(const int32_t *pSrcTable, int32_t **ppDstSpec);

/**
 * Compiles a list of codes with two values each, run and level. Differs from zvpiHuffmanTableInitAlloc_32s() in the
 * leaf alone, and finds sub-tables at any index.
 *
 * @param[in]  pSrcTable  the list
 * @param[out] ppDstSpec  receives the table, which zvpMalloc() gave and zvpiHuffmanTableFree_32s() takes back; not
 *                        written on error
 *
 * Reads:  the list up to the negative number that ends it.
 * Writes: *ppDstSpec. Allocates 8 bytes a code, given back before it returns, and the table.
 *
 * @retval zvpStatusNullPointer  pSrcTable or ppDstSpec is null.
 * @retval zvpStatusNoMemory     The list holds no code, or an allocation failed. Nothing stays allocated.
 * @retval zvpStatusOk           *ppDstSpec is the caller's.
 */
ZVP_API zvpStatus zvpiHuffmanRunLevelTableInitAlloc_32s(const int32_t *pSrcTable, int32_t **ppDstSpec);

/**
 * Gives a compiled table back, by zvpFree().
 *
 * @param[in] pDecodeTable  table of either kind; no reader may be using it
 *
 * @retval zvpStatusNullPointer  pDecodeTable is null.
 * @retval zvpStatusOk           The table is gone.
 */
ZVP_API zvpStatus zvpiHuffmanTableFree_32s(int32_t *pDecodeTable);

/**
 * Reads one code of a value table.
 *
 * @param[in,out] ppBitStream    address of the pointer to the current word
 * @param[in,out] pBitOffset     index of the next bit, 31..0
 * @param[out]    pDecodedValue  receives the value, 24 bits with their sign; 61681 for a bad code
 * @param[in]     pDecodeTable   table of zvpiHuffmanTableInitAlloc_32s()
 *
 * Cursor:     behind the code. Behind all bits that were looked at if the code is bad.
 * Bits:       the longest code; for a bad code the widths of all levels.
 * Look-ahead: the width of the last level, less one.
 *
 * @retval zvpStatusNullPointer  A pointer or *ppBitStream is null.
 * @retval zvpStatusBadVlcInput  No code begins with these bits. The cursor has moved and *pDecodedValue is written.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDecodeHuffmanOne_1u32s(const uint32_t **ppBitStream, int32_t *pBitOffset, int32_t *pDecodedValue,
                                             const int32_t *pDecodeTable);

/**
 * Reads one code of a run-level table.
 *
 * @param[in,out] ppBitStream   address of the pointer to the current word
 * @param[in,out] pBitOffset    index of the next bit, 31..0
 * @param[in]     pDecodeTable  table of zvpiHuffmanRunLevelTableInitAlloc_32s()
 * @param[out]    pFirstValue   receives the run
 * @param[out]    pSecondValue  receives the level
 *
 * Cursor:     behind the code. Where it was if the code is bad.
 * Bits:       the longest code.
 * Look-ahead: the width of the last level, less one; the widths of all levels if the code is bad.
 *
 * @retval zvpStatusNullPointer  A pointer or *ppBitStream is null.
 * @retval zvpStatusBadVlcInput  No code begins with these bits. Nothing is written, unlike in the value reader.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDecodeHuffmanPair_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                              const int32_t *pDecodeTable, uint8_t *pFirstValue, int16_t *pSecondValue);

/** @} */ /* mpeg_huffman_tables_and_readers */

/**
 * @defgroup mpeg_dct_block_reconstruction MPEG-1/2: DCT block reconstruction
 *
 * The coefficients of one 8x8 block from the stream, dequantized in the same pass (ISO/IEC 11172-2 2.4.3.7 and 2.4.4,
 * ISO/IEC 13818-2 7.2 to 7.4): 64 int16_t in raster order, ready for the inverse DCT, and the scan index of the last
 * coefficient. Four members, intra and non-intra of either standard, share this frame:
 *
 * Codes. Cursor and compiled tables are those of @ref mpeg_huffman_tables_and_readers. In a run-level table run 254 is
 * the end of block and run 255 the escape; codes have their sign bit in them. An escape is followed by
 *   - MPEG-1: 6 bits of run and 8 of level, two's complement. 00000000 and 10000000 are followed by 8 bits more, the
 *     level being these, less 256 in the second case;
 *   - MPEG-2: 6 bits of run and 12 of level, two's complement.
 *
 * The first coefficient. Intra: a code of pDCSizeTable gives the number of bits of the difference d that follows. One
 * whose first bit is 0 is negative: its bits less 2^size - 1. A size that is not 0 to 32, as a bad code's is, counts as
 * 0. Non-intra: a 1 is followed by the sign of a level of 1 with run 0; a 0 is the first bit of a code of pDCTable,
 * which may be its escape.
 *
 * The others, up to the end of block: a code of pACTable, or its escape. The scan index moves on by run + 1; beyond 63
 * is the one error. A bad code means run 241 and so ends there.
 *
 * Dequantization. Products modulo 2^32, divisions towards zero, results cut to 16 bits; W is the weight at the
 * coefficient's raster position.
 *
 *                MPEG-1                                       MPEG-2
 *     intra DC   *pDCPred += 8 d; the predictor               *pDCPred += d; the predictor << shiftDCVal
 *     intra      level * W * QP * 2 / 16                      level * W * QP * 2 / 32
 *     non-intra  (2 * level + sign(level)) * W * QP / 16      (2 * level + sign(level)) * W * QP / 32
 *     then       made odd, clipped to -2048..2047             nothing; mismatch control at the end of block
 *
 * Made odd: from an even value its sign is subtracted, so that 0 stays. In non-intra blocks all coefficients but the
 * first subtract the sign of the level, in 16 bits: 0 becomes -1 or 1 then. The intra DC is left as it is.
 *
 * Mismatch control: if the sum of all coefficients as stored is even, element 63 is decremented if it is odd and
 * incremented if it is even. MPEG-2 does not saturate: callers who need 7.4.3 do so themselves, before the transform.
 *
 * Damaged streams. The first run of a non-intra block is not tested before pScanMatrix is read at it: it reaches 63 by
 * an escape, 241 by a bad code, and up to 254 by a table's own run. Callers who decode streams that they don't trust
 * give pScanMatrix 256 entries. A position there that is not 0 to 63 is not stored to.
 *
 * Cursor:     behind the last code that was read, also on zvpStatusBadVlcInput. Behind a bad code of pDCSizeTable as
 *             zvpiDecodeHuffmanOne_1u32s() leaves it in MPEG-1, one spare bit given back in MPEG-2.
 * Bits:       at most 65 times the longest code of the two run-level tables, escapes counted with the 22 (MPEG-1) or 18
 *             (MPEG-2) bits behind them; in intra blocks 64 times, and one code of pDCSizeTable with its difference.
 * Look-ahead: the width of the last level of the table that was read last, less one.
 * @{
 */

/**
 * Decodes a non-intra block of MPEG-1.
 *
 * A first run of 64 or more ends the block at once, as if it had been good: *pDstSize is that run.
 *
 * @param[in,out] ppBitStream  address of the pointer to the current word
 * @param[in,out] pBitOffset   index of the next bit, 31 to 0; not checked
 * @param[in]     pDCTable     run-level table for the first coefficient, where it does not begin with a 1
 * @param[in]     pACTable     run-level table for all others
 * @param[in]     pScanMatrix  raster positions 0 to 63 by scan index; 64 entries, for damaged streams 256
 * @param[in]     QP           quantizer scale, any value
 * @param[in]     pQPMatrix    64 weights, raster order
 * @param[out]    pDstBlock    receives 64 coefficients, raster order
 * @param[out]    pDstSize     receives the scan index of the last coefficient; not written on error
 *
 * Reads:  the stream and the tables as far as the codes lead; entries of pScanMatrix and pQPMatrix.
 * Writes: 128 bytes of pDstBlock, 4 of pDstSize, the cursor. Nothing may overlap pDstBlock.
 *
 * @retval zvpStatusNullPointer  a pointer or *ppBitStream is null.
 * @retval zvpStatusBadVlcInput  a run leads past the block. pDstBlock holds the coefficients so far, else 0.
 * @retval zvpStatusOk           done.
 */
ZVP_API zvpStatus zvpiReconstructDCTBlock_MPEG1_32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                    const int32_t *pDCTable, const int32_t *pACTable,
                                                    const int32_t *pScanMatrix, int32_t QP, const int16_t *pQPMatrix,
                                                    int16_t *pDstBlock, int32_t *pDstSize);

/**
 * Decodes a non-intra block of MPEG-2.
 *
 * Of a first run its low 6 bits are the scan index from which the block goes on. Levels of the tables have 16 bits; in
 * the other three members they have 8, whatever the table holds.
 *
 * @param[in,out] ppBitStream  address of the pointer to the current word
 * @param[in,out] pBitOffset   index of the next bit, 31 to 0; not checked
 * @param[in]     pDCTable     run-level table for the first coefficient, where it does not begin with a 1
 * @param[in]     pACTable     run-level table for all others
 * @param[in]     pScanMatrix  raster positions 0 to 63 by scan index; 64 entries, for damaged streams 256
 * @param[in]     QP           quantizer scale, any value
 * @param[in]     pQPMatrix    64 weights, raster order; null: all 16
 * @param[out]    pDstBlock    receives 64 coefficients, raster order
 * @param[out]    pDstSize     receives the scan index of the last coefficient, but 1 where that is 0; not written on
 *                             error
 *
 * Reads:  the stream and the tables as far as the codes lead; entries of pScanMatrix and pQPMatrix.
 * Writes: 128 bytes of pDstBlock, 4 of pDstSize, the cursor. Nothing may overlap pDstBlock.
 *
 * @retval zvpStatusNullPointer  a pointer other than pQPMatrix, or *ppBitStream, is null.
 * @retval zvpStatusBadVlcInput  a run leads past the block. pDstBlock holds the coefficients so far, else 0, without
 *                               mismatch control.
 * @retval zvpStatusOk           done.
 */
ZVP_API zvpStatus zvpiReconstructDCTBlock_MPEG2_32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                    const int32_t *pDCTable, const int32_t *pACTable,
                                                    const int32_t *pScanMatrix, int32_t QP, const int16_t *pQPMatrix,
                                                    int16_t *pDstBlock, int32_t *pDstSize);

/**
 * Decodes an intra block of MPEG-1. The predictor holds the DC as the block does, eight times the coded one.
 *
 * @param[in,out] ppBitStream   address of the pointer to the current word
 * @param[in,out] pBitOffset    index of the next bit, 31 to 0; not checked
 * @param[in]     pDCSizeTable  value table of dct_dc_size
 * @param[in]     pACTable      run-level table for all other coefficients
 * @param[in]     pScanMatrix   64 raster positions, 0 to 63, by scan index
 * @param[in]     QP            quantizer scale, any value
 * @param[in]     pQPMatrix     64 weights, raster order; the DC's has no part
 * @param[in,out] pDCPred       DC of the block before; receives this one's, also where the rest of the block is bad
 * @param[out]    pDstBlock     receives 64 coefficients, raster order
 * @param[out]    pDstSize      receives the scan index of the last coefficient, 0 if there is the DC alone; not written
 *                              on error
 *
 * Reads:  the stream and the tables as far as the codes lead; entries of pScanMatrix and pQPMatrix.
 * Writes: 128 bytes of pDstBlock, 4 of pDstSize, 2 of pDCPred, the cursor. Nothing may overlap pDstBlock.
 *
 * @retval zvpStatusNullPointer  a pointer or *ppBitStream is null.
 * @retval zvpStatusBadVlcInput  a run leads past the block. pDstBlock holds the coefficients so far, else 0.
 * @retval zvpStatusOk           done.
 */
ZVP_API zvpStatus zvpiReconstructDCTBlockIntra_MPEG1_32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                         const int32_t *pDCSizeTable, const int32_t *pACTable,
                                                         const int32_t *pScanMatrix, int32_t QP,
                                                         const int16_t *pQPMatrix, int16_t *pDCPred, int16_t *pDstBlock,
                                                         int32_t *pDstSize);

/**
 * Decodes an intra block of MPEG-2. The predictor holds the DC unshifted, as it is coded. Of the values of pDCSizeTable
 * 8 bits with their sign are used.
 *
 * @param[in,out] ppBitStream   address of the pointer to the current word
 * @param[in,out] pBitOffset    index of the next bit, 31 to 0; not checked
 * @param[in]     pDCSizeTable  value table of dct_dc_size
 * @param[in]     pACTable      run-level table for all other coefficients
 * @param[in]     pScanMatrix   64 raster positions, 0 to 63, by scan index
 * @param[in]     QP            quantizer scale, any value
 * @param[in]     pQPMatrix     64 weights, raster order; the DC's has no part
 * @param[in,out] pDCPred       DC of the block before; receives this one's, also where the rest of the block is bad
 * @param[in]     shiftDCVal    left shift of the DC, 3 - intra_dc_precision; taken modulo 32
 * @param[out]    pDstBlock     receives 64 coefficients, raster order
 * @param[out]    pDstSize      receives the scan index of the last coefficient, 0 if there is the DC alone; not written
 *                              on error
 *
 * Reads:  the stream and the tables as far as the codes lead; entries of pScanMatrix and pQPMatrix.
 * Writes: 128 bytes of pDstBlock, 4 of pDstSize, 2 of pDCPred, the cursor. Nothing may overlap pDstBlock.
 *
 * @retval zvpStatusNullPointer  a pointer or *ppBitStream is null.
 * @retval zvpStatusBadVlcInput  a run leads past the block. pDstBlock holds the coefficients so far, else 0, without
 *                               mismatch control.
 * @retval zvpStatusOk           done.
 */
ZVP_API zvpStatus zvpiReconstructDCTBlockIntra_MPEG2_32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                         const int32_t *pDCSizeTable, const int32_t *pACTable,
                                                         const int32_t *pScanMatrix, int32_t QP,
                                                         const int16_t *pQPMatrix, int16_t *pDCPred, int32_t shiftDCVal,
                                                         int16_t *pDstBlock, int32_t *pDstSize);

/** @} */ /* mpeg_dct_block_reconstruction */

/**
 * @defgroup mpeg_mpeg_2_quantization_and_scans MPEG-1/2: MPEG-2 quantization and scans
 *
 * Quantization of a block in place and its inverse (ISO/IEC 13818-2 7.4), and the three scan orders (7.3).
 *
 * A block is 64 int16_t in raster order, 128 bytes; matrices hold 64 entries in raster order too. A call reads and
 * writes the whole block. No alignment is needed. QP is the quantizer scale, not its code.
 *
 * Mismatch control, at the end of both inverse members (7.4.4): if the sum of all 64 results is even, element 63 is
 * decremented if it is odd and incremented if it is even.
 * @{
 */

/**
 * Forward quantization of an intra block by reciprocal weights.
 *
 * Element i = 1..63 becomes x(i) * (16 / QP) * pQPMatrix[i], multiplied in this order in single precision, the fraction
 * dropped, clipped to -2047..2047. Element 0, the DC, stays as it is and is not counted.
 *
 * @param[in,out] pSrcDst    the block
 * @param[in]     QP         quantizer scale; any value but 0
 * @param[in]     pQPMatrix  64 reciprocals of the weights, finite; null: those of the default intra matrix (6.3.11),
 *                           each rounded to six decimals
 * @param[out]    pCount     receives the number of non-zero elements among 1..63; not written on error
 *
 * Reads:  the block and, where given, 256 bytes of pQPMatrix.
 * Writes: the block, *pCount. pCount must not lie in the block.
 *
 * @retval zvpStatusNullPointer   pSrcDst or pCount is null.
 * @retval zvpStatusDivideByZero  QP is 0.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuantIntra_MPEG2_16s_C1I(int16_t *pSrcDst, int32_t QP, const float *pQPMatrix, int32_t *pCount);

/**
 * Forward quantization of a non-intra block.
 *
 * With a matrix: as zvpiQuantIntra_MPEG2_16s_C1I(), but for all 64 elements. Without one and QP above 1: flat weights,
 * x * ((QP / 2 + 65536) / QP) / 65536 in integers, fractions dropped, clipped to -2047..2047. Without one and QP of 1
 * or below, negative too: the block stays as it is and is only counted.
 *
 * @param[in,out] pSrcDst    the block
 * @param[in]     QP         quantizer scale; any value but 0
 * @param[in]     pQPMatrix  64 reciprocals of the weights, finite; null: flat weights
 * @param[out]    pCount     receives the number of non-zero elements; not written on error
 *
 * Reads:  the block and, where given, 256 bytes of pQPMatrix.
 * Writes: the block, *pCount. pCount must not lie in the block.
 *
 * @retval zvpStatusNullPointer   pSrcDst or pCount is null.
 * @retval zvpStatusDivideByZero  QP is 0.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuant_MPEG2_16s_C1I(int16_t *pSrcDst, int32_t QP, const float *pQPMatrix, int32_t *pCount);

/**
 * Inverse quantization of an intra block (7.4.2.3, 7.4.3), with mismatch control.
 *
 * Element i = 1..63 becomes x(i) * QP * pQPMatrix[i] * 2 / 32, the product modulo 2^32, the division towards zero,
 * clipped to -2048..2047. Element 0, the DC, stays as it is; it has its part in the sum of the mismatch control.
 *
 * @param[in,out] pSrcDst    the block
 * @param[in]     QP         quantizer scale, any value
 * @param[in]     pQPMatrix  64 weights
 *
 * Reads:  the block, 128 bytes of pQPMatrix.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst or pQPMatrix is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntra_MPEG2_16s_C1I(int16_t *pSrcDst, int32_t QP, const int16_t *pQPMatrix);

/**
 * Inverse quantization of a non-intra block (7.4.2.3, 7.4.3), with mismatch control.
 *
 * Each non-zero element x becomes pQPMatrix[i] * QP * (2 x + sign(x)) / 32 or, without a matrix,
 * QP * (2 x + sign(x)) / 2: products modulo 2^32, divisions towards zero, clipped to -2048..2047. Zeros stay, so a
 * block of zeros ends with element 63 at 1, its sum being even.
 *
 * @param[in,out] pSrcDst    the block
 * @param[in]     QP         quantizer scale, any value
 * @param[in]     pQPMatrix  64 weights; null: flat weights of 16
 *
 * Reads:  the block and, where given, 128 bytes of pQPMatrix.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInv_MPEG2_16s_C1I(int16_t *pSrcDst, int32_t QP, const int16_t *pQPMatrix);

/**
 * Raster order to scan order.
 *
 * From a count of 20 on, pDst[i] = pSrc[table[i]] for all 64. Below 20 only the first countNonZero non-zero elements in
 * scan order are taken over, everything else being 0: a count that is too small drops what comes later, one that is too
 * large does no harm.
 *
 * @param[in]  pSrc          the block, raster order
 * @param[out] pDst          receives the block in scan order; must not overlap pSrc
 * @param[in]  countNonZero  number of non-zero elements, 1..64
 * @param[in]  scan          2: alternate horizontal (H.263 Annex I), 1: alternate vertical (figure 7-3), any other
 *                           value: zigzag (figure 7-2)
 *
 * Reads:  128 bytes of pSrc.
 * Writes: 128 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOutOfRange   countNonZero is below 1 or above 64.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiScanFwd_16s_C1(const int16_t *pSrc, int16_t *pDst, int32_t countNonZero, int32_t scan);

/**
 * Scan order to raster order.
 *
 * pDst[table[i]] = pSrc[i] for i = 0..indxLastNonZero; all other elements are 0.
 *
 * @param[in]  pSrc             the block, scan order
 * @param[out] pDst             receives the block in raster order; must not overlap pSrc
 * @param[in]  indxLastNonZero  scan index of the last element to take over, 0..63
 * @param[in]  scan             as for zvpiScanFwd_16s_C1()
 *
 * Reads:  indxLastNonZero + 1 elements of pSrc.
 * Writes: 128 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOutOfRange   indxLastNonZero is below 0 or above 63.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiScanInv_16s_C1(const int16_t *pSrc, int16_t *pDst, int32_t indxLastNonZero, int32_t scan);

/** @} */ /* mpeg_mpeg_2_quantization_and_scans */

/**
 * @defgroup mpeg_8x8_transforms MPEG-1/2: 8x8 transforms
 *
 * The 8x8 DCT of the MPEG standards, H.261 and H.263 (ISO/IEC 13818-2 Annex A) and the 2-4-8 DCT of DV (IEC 61834-2),
 * forward and inverse, orthonormal: eight times the mean of a block is its DC. A block is 64 int16_t, row-major,
 * 128 bytes; a coefficient of horizontal frequency u and vertical frequency v stands at 8 v + u.
 *
 * All arithmetic is in integers, so that encoder and decoder agree to the bit on every machine.
 *
 * The inverse meets IEEE 1180-1990 and ISO/IEC 23002-1 in each of their ranges, up to samples of -512..511: no result
 * is off by more than one from the exact value rounded, few are off at all, and there is no drift. A block with a DC
 * alone comes out exactly rounded. Coefficients of blocks outside that range, which no encoder makes, give defined
 * results that are not the transform's.
 *
 * The forward transform takes samples of -2048..2047 and is within one of the exact value rounded.
 *
 * 2-4-8: lines 2 z and 2 z + 1 of a block belong to two fields. Rows 0 to 3 hold the 4x8 transform of their sums, rows
 * 4 to 7 that of their differences (line 2 z less line 2 z + 1), scaled so that the whole is orthonormal.
 * @{
 */

/**
 * Forward 8x8 DCT.
 *
 * @param[in]  pSrc  samples, -2048..2047
 * @param[out] pDst  receives the coefficients; may be pSrc, else must not overlap it
 *
 * Reads:  128 bytes of pSrc.
 * Writes: 128 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT8x8Fwd_16s_C1(const int16_t *pSrc, int16_t *pDst);

/**
 * Forward 8x8 DCT in place.
 *
 * @param[in,out] pSrcDst  samples, -2048..2047; receives the coefficients
 *
 * Reads:  the block.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT8x8Fwd_16s_C1I(int16_t *pSrcDst);

/**
 * Inverse 8x8 DCT. Results are not clipped to the range of samples.
 *
 * @param[in]  pSrc  coefficients
 * @param[out] pDst  receives the samples; may be pSrc, else must not overlap it
 *
 * Reads:  128 bytes of pSrc.
 * Writes: 128 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT8x8Inv_16s_C1(const int16_t *pSrc, int16_t *pDst);

/**
 * Inverse 8x8 DCT in place. Results are not clipped to the range of samples.
 *
 * @param[in,out] pSrcDst  coefficients; receives the samples
 *
 * Reads:  the block.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT8x8Inv_16s_C1I(int16_t *pSrcDst);

/**
 * Forward 2-4-8 DCT in place.
 *
 * @param[in,out] pSrcDst  samples, -2048..2047, the lines of both fields in turn; receives the coefficients, those of
 *                         the sums in rows 0 to 3, those of the differences in rows 4 to 7
 *
 * Reads:  the block.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT2x4x8Fwd_16s_C1I(int16_t *pSrcDst);

/**
 * Inverse 2-4-8 DCT in place. Results are not clipped to the range of samples.
 *
 * @param[in,out] pSrcDst  coefficients, those of the sums in rows 0 to 3, those of the differences in rows 4 to 7;
 *                         receives the samples, the lines of both fields in turn
 *
 * Reads:  the block.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT2x4x8Inv_16s_C1I(int16_t *pSrcDst);

/** @} */ /* mpeg_8x8_transforms */

/**
 * @defgroup h264_cavlc_and_exp_golomb_decoding H.264: CAVLC and Exp-Golomb decoding
 *
 * A residual block by CAVLC (H.264 9.2) or one Exp-Golomb code (H.264 9.1) from a stream.
 *
 * The cursor. *ppBitStream points to 32-bit words in the machine's byte order, whose bit 31 comes first in the stream:
 * on a little-endian machine each word of the stream is byte-swapped beforehand. *pBitOffset, 31 down to 0, is the
 * index of the next bit in the word. A word is read only if a read takes bits from it. On return the cursor stands on
 * the first bit not consumed; after zvpStatusBadVlcInput it stands where it stood before the call.
 *
 * The tables. The code tables for coeff_token, total_zeros and run_before are the caller's: arrays of signed 32-bit
 * words, made of levels. The first word of a level is m, 1 to 32; an entry for each of the 2^m values of the next m
 * bits follows. The m bits are read, and their entry says what they mean:
 *   - bit 7 clear: a code ends here. Bits 0 to 6 are the number of bits read too many, which are given back. The value
 *     is entry >> 8; 0xF0F1 marks bits that are no code.
 *   - bit 7 set: the code goes on. entry >> 8 is the index of a further level's first word in the same table.
 *
 * A table's first level starts at its first word. Levels may be of any number and depth. The value is the number itself
 * for total_zeros and run_before, TotalCoeff * 256 + TrailingOnes for coeff_token. The tables of H.264 9-5 and 9-7 to
 * 9-10 in this form serve hostile streams as they serve good ones.
 *
 * Blocks. The decoded coefficients are stored at *ppDstCoeffs, zeros between them, and the pointer moves on behind the
 * block. A block without coefficients is not stored: its elements stay as they are and the pointer stays, so that the
 * coded blocks of a macroblock follow one another. A coefficient that would lie outside the block, as a hostile stream
 * can ask for, is left out. Levels keep 16 bits, those of 32-bit members too: the magnitude of a level with a
 * level_prefix below 16, and the levelCode of one with a longer prefix.
 *
 * Bits:       no bound: a level_prefix ends with the next 1, however far away. A word of ones behind the data ends
 *             every prefix. A level_prefix of more than 35, which no codec writes, asks for a suffix of more than 32
 *             bits: of those the cursor counts all and moves on by one word, so that the offset may come out negative.
 *             Then the stream is broken; zvpiDecodeExpGolombOne_H264_1u32s() refuses such an offset.
 * Look-ahead: table look-ups read the m bits of a level as a whole, up to 31 bits more than the code has; nothing else
 *             reads ahead.
 * Align:      none for words, tables, scans and coefficients; cursors, counts and arrays of pointers as their type.
 * @{
 */

/**
 * Decodes a 4x4 residual block of 16 or 15 coefficients into 16-bit elements.
 *
 * The coefficient at scan position p goes to element pScanOrder[p]; for maxNumCoeff 15 the positions are 1 to 15 and
 * element pScanOrder[0] is 0. A run longer than the zeros left ends them and is no error. TotalCoeff 16 in a block of
 * 15, and a total_zeros that is too large for one, are no error either: what lies behind position 15 is left out.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff; written once the coeff_token is known to be good
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 16 elements if TotalCoeff is not 0
 * @param[in]     vlcSelect        nC of the block: 0 and 1, 2 and 3, 4 to 7 choose a table; from 8 on the 6-bit code
 * @param[in]     maxNumCoeff      16, or 15 for blocks whose DC stands elsewhere
 * @param[in]     ppTblCoeffToken  the 3 coeff_token tables
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff, 1 to 15
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft, 1 to 15
 * @param[in]     pScanOrder       16 elements: from scan position to element, each 0 to 15; not checked
 *
 * Reads:  the stream's words as told above; the entries of the tables that the bits choose; pScanOrder.
 * Writes: 16 elements at *ppDstCoeffs, if TotalCoeff is not 0, as soon as it is known.
 *
 * @retval zvpStatusNullPointer  an argument, *ppBitStream or *ppDstCoeffs is null. After the two tests of the next line:
 *                               the chosen coeff_token table is null. Later, when it is needed: a total_zeros or
 *                               run_before table is null; the cursor is left behind what was read, *ppDstCoeffs stays.
 * @retval zvpStatusOutOfRange   maxNumCoeff is neither 16 nor 15; then: vlcSelect is negative as a signed number.
 * @retval zvpStatusBadVlcInput  bits that are no code in their table. The cursor is as before the call, *ppDstCoeffs
 *                               stays; *pNumCoeff and the elements written by then are not undone.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCCoeffs_H264_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                   int16_t *pNumCoeff, int16_t **ppDstCoeffs, uint32_t vlcSelect,
                                                   int16_t maxNumCoeff, const int32_t *const *ppTblCoeffToken,
                                                   const int32_t *const *ppTblTotalZeros,
                                                   const int32_t *const *ppTblRunBefore, const int32_t *pScanOrder);

/**
 * Decodes a 4x4 residual block into 32-bit elements. As zvpiDecodeCAVLCCoeffs_H264_1u16s() in all else.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff, in 16 bits here too
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 16 elements if TotalCoeff is not 0
 * @param[in]     vlcSelect        nC of the block
 * @param[in]     maxNumCoeff      16 or 15
 * @param[in]     ppTblCoeffToken  the 3 coeff_token tables
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft
 * @param[in]     pScanOrder       from scan position to element
 *
 * @retval zvpStatusNullPointer  as in the 16-bit member.
 * @retval zvpStatusOutOfRange   as in the 16-bit member.
 * @retval zvpStatusBadVlcInput  as in the 16-bit member.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCCoeffs_H264_1u32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                   int16_t *pNumCoeff, int32_t **ppDstCoeffs, uint32_t vlcSelect,
                                                   int16_t maxNumCoeff, const int32_t *const *ppTblCoeffToken,
                                                   const int32_t *const *ppTblTotalZeros,
                                                   const int32_t *const *ppTblRunBefore, const int32_t *pScanOrder);

/**
 * Decodes a chroma DC block of 4:2:0, 4 coefficients in coding order, into 16-bit elements.
 *
 * The two commonest blocks are decoded without a table, as the standard codes them: a coeff_token of 1 (one coefficient
 * of magnitude 1) with its sign and total_zeros, and one of 01 (none). For these the table arguments may be null, and
 * for the second ppDstCoeffs as well. A run longer than the zeros left is not clamped: elements in front of the block
 * are left out.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff; written once the coeff_token is known to be good
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 4 elements if TotalCoeff is not 0
 * @param[in]     pTblCoeffToken   the coeff_token table for chroma DC
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff, 1 to 3
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft, 1 to 3
 *
 * Reads:  the stream's words as told above; the entries of the tables that the bits choose.
 * Writes: 4 elements at *ppDstCoeffs, if TotalCoeff is not 0.
 *
 * @retval zvpStatusNullPointer  ppBitStream, pBitOffset, pNumCoeff or *ppBitStream is null. Then, unless the block has
 *                               one of the short codes: ppDstCoeffs, pTblCoeffToken, ppTblTotalZeros, ppTblRunBefore or
 *                               *ppDstCoeffs is null; for the short code of one coefficient only ppDstCoeffs and
 *                               *ppDstCoeffs are tested. Later, when it is needed: a total_zeros or run_before table is
 *                               null; the cursor is left behind what was read, *ppDstCoeffs stays.
 * @retval zvpStatusBadVlcInput  bits that are no code in their table. The cursor is as before the call, *ppDstCoeffs
 *                               stays; *pNumCoeff and the elements written by then are not undone.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                           int16_t *pNumCoeff, int16_t **ppDstCoeffs,
                                                           const int32_t *pTblCoeffToken,
                                                           const int32_t *const *ppTblTotalZeros,
                                                           const int32_t *const *ppTblRunBefore);

/**
 * Decodes a chroma DC block of 4:2:0 into 32-bit elements, all of it by the tables.
 *
 * As zvpiDecodeCAVLCChromaDcCoeffs_H264_1u16s() in all else, but no code is read without a table and all pointers are
 * tested first.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff, in 16 bits here too
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 4 elements if TotalCoeff is not 0
 * @param[in]     pTblCoeffToken   the coeff_token table for chroma DC
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff, 1 to 3
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft, 1 to 3
 *
 * @retval zvpStatusNullPointer  an argument, *ppBitStream or *ppDstCoeffs is null. Later as in the 16-bit member.
 * @retval zvpStatusBadVlcInput  as in the 16-bit member.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCChromaDcCoeffs_H264_1u32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                           int16_t *pNumCoeff, int32_t **ppDstCoeffs,
                                                           const int32_t *pTblCoeffToken,
                                                           const int32_t *const *ppTblTotalZeros,
                                                           const int32_t *const *ppTblRunBefore);

/**
 * Decodes a chroma DC block of 4:2:2, 8 coefficients, into 16-bit elements.
 *
 * Coefficients 0 to 7 in coding order go to elements 0, 2, 1, 4, 6, 3, 5, 7: the raster of two columns and four rows.
 * A run longer than the zeros left is not clamped: elements in front of the block are left out.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff; written once the coeff_token is known to be good
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 8 elements if TotalCoeff is not 0
 * @param[in]     pTblCoeffToken   the coeff_token table for chroma DC of 4:2:2
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff, 1 to 7; not null where the bits can choose them
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft, 1 to 7; not null where the bits can choose them
 *
 * Reads:  the stream's words as told above; the entries of the tables that the bits choose.
 * Writes: 8 elements at *ppDstCoeffs, if TotalCoeff is not 0, as soon as it is known.
 *
 * @retval zvpStatusNullPointer  an argument, *ppBitStream or *ppDstCoeffs is null. Single tables are not tested.
 * @retval zvpStatusBadVlcInput  bits that are no code in their table. The cursor is as before the call, *ppDstCoeffs
 *                               stays; *pNumCoeff and the elements written by then are not undone.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                              int16_t *pNumCoeff, int16_t **ppDstCoeffs,
                                                              const int32_t *pTblCoeffToken,
                                                              const int32_t *const *ppTblTotalZeros,
                                                              const int32_t *const *ppTblRunBefore);

/**
 * Decodes a chroma DC block of 4:2:2 into 32-bit elements. As zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u16s() in all
 * else.
 *
 * @param[in,out] ppBitStream      address of the pointer to the current word
 * @param[in,out] pBitOffset       index of the next bit, 31 to 0; not checked
 * @param[out]    pNumCoeff        receives TotalCoeff, in 16 bits here too
 * @param[in,out] ppDstCoeffs      address of the pointer to the block; moves on by 8 elements if TotalCoeff is not 0
 * @param[in]     pTblCoeffToken   the coeff_token table for chroma DC of 4:2:2
 * @param[in]     ppTblTotalZeros  the total_zeros tables by TotalCoeff, 1 to 7
 * @param[in]     ppTblRunBefore   the run_before tables by zerosLeft, 1 to 7
 *
 * @retval zvpStatusNullPointer  as in the 16-bit member.
 * @retval zvpStatusBadVlcInput  as in the 16-bit member.
 * @retval zvpStatusOk           the block is decoded.
 */
ZVP_API zvpStatus zvpiDecodeCAVLCChroma422DcCoeffs_H264_1u32s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                              int16_t *pNumCoeff, int32_t **ppDstCoeffs,
                                                              const int32_t *pTblCoeffToken,
                                                              const int32_t *const *ppTblTotalZeros,
                                                              const int32_t *const *ppTblRunBefore);

/**
 * Reads one code ue(v) or se(v) into 16 bits (H.264 9.1).
 *
 * With codeNum = 2^n - 1 + the n bits behind n zeros and a 1: ue(v) gives codeNum, se(v) 0, 1, -1, 2, -2, ... for 0, 1,
 * 2, 3, 4, ... The result keeps its low 16 bits. codeNum itself is formed modulo 2^32, which matters for n = 32 alone.
 *
 * Bits:       at most 65. Look-ahead: none; a run of more than 32 zeros is followed to the end of the word that holds
 *             the 33rd.
 *
 * @param[in,out] ppBitStream  address of the pointer to the current word
 * @param[in,out] pBitOffset   index of the next bit, 31 to 0
 * @param[out]    pDst         receives the value; not written on error
 * @param[in]     isSigned     se(v) if its low byte is not 0, else ue(v); the other bytes have no say
 *
 * @retval zvpStatusNullPointer  an argument or *ppBitStream is null.
 * @retval zvpStatusBadArgument  *pBitOffset is not 0 to 31.
 * @retval zvpStatusBadVlcInput  more than 32 zeros. The cursor is as before the call.
 * @retval zvpStatusOk           *pDst holds the value.
 */
ZVP_API zvpStatus zvpiDecodeExpGolombOne_H264_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset, int16_t *pDst,
                                                    int32_t isSigned);

/**
 * Reads one code ue(v) or se(v) into 32 bits. As zvpiDecodeExpGolombOne_H264_1u16s(), but all of isSigned counts.
 *
 * @param[in,out] ppBitStream  address of the pointer to the current word
 * @param[in,out] pBitOffset   index of the next bit, 31 to 0
 * @param[out]    pDst         receives the value; not written on error
 * @param[in]     isSigned     se(v) if any of its 32 bits is set, else ue(v)
 *
 * @retval zvpStatusNullPointer  an argument or *ppBitStream is null.
 * @retval zvpStatusBadArgument  *pBitOffset is not 0 to 31.
 * @retval zvpStatusBadVlcInput  more than 32 zeros. The cursor is as before the call.
 * @retval zvpStatusOk           *pDst holds the value.
 */
ZVP_API zvpStatus zvpiDecodeExpGolombOne_H264_1u32s(const uint32_t **ppBitStream, int32_t *pBitOffset, int32_t *pDst,
                                                    int32_t isSigned);

/** @} */ /* h264_cavlc_and_exp_golomb_decoding */

/**
 * @defgroup h264_luma_and_chroma_interpolation H.264: luma and chroma interpolation
 * @{
 */

/*
 * What holds for this family:
 *   - Sub-sample prediction of H.264, clause 8.4.2.2. Luma positions are quarters of a sample, chroma ones eighths.
 *     Half-sample luma: the six-tap filter (1, -5, 20, 20, -5, 1) along the row (b), along the column (h) or along both
 *     with one rounding at the end (j), clipped to the sample's range; quarter-sample luma: the rounded mean of two
 *     neighbouring whole or half samples. Chroma: the rounded mean of four samples, weighted by the fractions.
 *   - 8u steps are bytes. Steps of the 16u records are elements (samples of 16 bits), unlike elsewhere.
 *   - Steps are not checked but in the plain 16u members; they may be odd, and negative where no check refuses it.
 *   - Pointers need not be aligned, those to 16-bit samples neither. Source and destination must not overlap.
 *   - Reach of a block of W x H samples, rows and columns counted from its top left sample. Luma: columns 0..W-1 if dx
 *     is 0, else -2..W+2; rows 0..H-1 if dy is 0, else -2..H+2; of positions with dx and dy odd the corners of that
 *     area are left out: only rows -2..H+2 of one block-wide column range and columns -2..W+2 of H rows are read.
 *     Chroma: columns 0..W-1 if dx is 0, else 0..W; rows 0..H-1 if dy is 0, else 0..H. Exactly the block is written.
 *   - bitDepth gives the clip of 16-bit luma: 0..2^bitDepth - 1, for depths of 1 to 16. It is not checked; the shift
 *     takes it modulo 32, and results are never above 65535. Chroma needs no clip and does not look at it.
 *   - A width of 0 and a height of 0 or less, where the size test lets them pass, are empty blocks: nothing is read or
 *     written.
 */

/**
 * A block of 8-bit samples and its vector, for the Block members.
 *
 * srcStep occupies a slot of 64 bits. Only its low 32 bits are read, with their sign, so a caller may as well have
 * written a 64-bit value there; what is behind the 32 bits does not matter.
 */
typedef struct H264InterpolateBlock8u {
  const uint8_t *pSrc[2]; /**< Source planes, each at its sample (0, 0). Luma and interleaved chroma use the first. */
  int32_t srcStep;        /**< Distance between rows of the source planes, in bytes. */
  uint8_t *pDst[2];       /**< Destination planes, already at the block. Luma uses the first. */
  int32_t dstStep;        /**< Distance between rows of the destinations, in bytes. */
  zvpSize frameSize;      /**< Size of the source planes in samples; of an interleaved plane, in pairs. */
  zvpSize blockSize;      /**< Size of the block in samples of a plane. */
  zvpPoint blockPos;      /**< The block's top left sample in the plane. */
  zvpPoint motionVector;  /**< Vector: quarters of a luma sample, eighths of a chroma sample. */
} H264InterpolateBlock8u;

/** A block of 16-bit samples and its vector: as H264InterpolateBlock8u, with steps in elements and a sample depth. */
typedef struct H264InterpolateBlock16u {
  const uint16_t *pSrc[2]; /**< Source planes, each at its sample (0, 0). Luma uses the first. */
  int32_t srcStep;         /**< Distance between rows of the source planes, in elements; see H264InterpolateBlock8u. */
  uint16_t *pDst[2];       /**< Destination planes, already at the block. Luma uses the first. */
  int32_t dstStep;         /**< Distance between rows of the destinations, in elements. */
  zvpSize frameSize;       /**< Size of the source planes in samples. */
  zvpSize blockSize;       /**< Size of the block in samples of a plane. */
  zvpPoint blockPos;       /**< The block's top left sample in the plane. */
  zvpPoint motionVector;   /**< Vector: quarters of a luma sample, eighths of a chroma sample. */
  int32_t bitDepth;        /**< Sample depth, 1 to 16. */
} H264InterpolateBlock16u;

/** A place in a plane of 16-bit samples and the fractions to interpolate at, for the plain 16u members. */
typedef struct H264Interpolate16u {
  const uint16_t *pSrc; /**< Source at the whole-sample position. */
  int32_t srcStep;      /**< Distance between rows of the source, in elements. */
  uint16_t *pDst;       /**< Destination. */
  int32_t dstStep;      /**< Distance between rows of the destination, in elements. */
  int32_t dx;           /**< Horizontal fraction: 0 to 3 in luma, 0 to 7 in chroma. */
  int32_t dy;           /**< Vertical fraction, likewise. */
  zvpSize roiSize;      /**< Size of the block. */
  int32_t bitDepth;     /**< Sample depth, 1 to 16. */
} H264Interpolate16u;

/**
 * Luma prediction of a block at a quarter-sample position, 8-bit (H.264 8.4.2.2.1).
 *
 * @param[in]  pSrc     source at the whole-sample position
 * @param[in]  srcStep  distance between rows of pSrc, in bytes; any value
 * @param[out] pDst     the block
 * @param[in]  dstStep  distance between rows of pDst, in bytes; any value
 * @param[in]  dx       horizontal fraction in quarters, 0 to 3
 * @param[in]  dy       vertical fraction in quarters, 0 to 3
 * @param[in]  roiSize  width 0, 4, 8, ... 28, height any multiple of 4
 *
 * Reads:  the luma reach of the family.
 * Writes: the block. Its samples may be written more than once and read back in between.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      the height is no multiple of 4, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLuma_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                                  int32_t dx, int32_t dy, zvpSize roiSize);

/**
 * Luma prediction of a block at a quarter-sample position, 16-bit (H.264 8.4.2.2.1).
 *
 * @param[in] pRecord  the place, the fractions 0 to 3 and the size: 4x4, 4x8, 8x4, 8x8, 8x16, 16x8 or 16x16
 *
 * Reads:  the record and the luma reach of the family.
 * Writes: the block. Its samples may be written more than once and read back in between.
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      height or width is not 4, 8 or 16, or the block is 4x16 or 16x4.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLuma_H264_16u_C1R(const H264Interpolate16u *pRecord);

/**
 * Chroma prediction of a block at an eighth-sample position, 8-bit (H.264 8.4.2.2.2).
 *
 * @param[in]  pSrc     source at the whole-sample position
 * @param[in]  srcStep  distance between rows of pSrc, in bytes; any value
 * @param[out] pDst     the block
 * @param[in]  dstStep  distance between rows of pDst, in bytes; any value
 * @param[in]  dx       horizontal fraction in eighths, 0 to 7
 * @param[in]  dy       vertical fraction in eighths, 0 to 7
 * @param[in]  roiSize  width 0, 2, 4, ... 14, height any even number
 *
 * Reads:  the chroma reach of the family.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      the height is odd, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChroma_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                    int32_t dstStep, int32_t dx, int32_t dy, zvpSize roiSize);

/**
 * Chroma prediction of a block at an eighth-sample position, 16-bit (H.264 8.4.2.2.2).
 *
 * The four-sample formula is used for every fraction, so the column right of the block and the row below it are read
 * also where dx or dy is 0; they have no weight then.
 *
 * @param[in] pRecord  the place, the fractions 0 to 7 and the size: width and height each 2, 4, 8 or 16
 *
 * Reads:  the record; H + 1 rows of W + 1 samples.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below 8, whatever the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      height or width is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChroma_H264_16u_C1R(const H264Interpolate16u *pRecord);

/**
 * Chroma prediction of a block in an interleaved plane into two planes, 8-bit (H.264 8.4.2.2.2).
 *
 * @param[in]  pSrc     source at the whole-sample position: U in even bytes, V in odd ones
 * @param[in]  srcStep  distance between rows of pSrc, in bytes; any value
 * @param[out] pDstU    the block of U
 * @param[out] pDstV    the block of V
 * @param[in]  dstStep  distance between rows of pDstU and of pDstV, in bytes; any value
 * @param[in]  dx       horizontal fraction in eighths, 0 to 7
 * @param[in]  dy       vertical fraction in eighths, 0 to 7
 * @param[in]  roiSize  size of a destination block: width 0, 2, 4, ... 14, height any even number
 *
 * Reads:  the chroma reach of the family, in pairs of bytes.
 * Writes: the two blocks.
 *
 * @retval zvpStatusNullPointer  pSrc, pDstU or pDstV is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      the height is odd, or the width none of those above.
 * @retval zvpStatusOk           Both blocks are written.
 */
ZVP_API zvpStatus zvpiInterpolateChroma_H264_8u_C2P2R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDstU,
                                                      uint8_t *pDstV, int32_t dstStep, int32_t dx, int32_t dy,
                                                      zvpSize roiSize);

/**
 * Luma prediction of a block by its vector, 8-bit, with samples beyond the picture's edges replaced by the edge's.
 *
 * The reference area is the block moved by the whole part of the vector, with 2 samples before and 3 behind it along an
 * axis that has a fraction. Where it leaves the plane, coordinates are clamped (H.264 8.4.2.2.1). Of two opposite edges
 * that the area crosses at once only the left or the top one is repaired; the other side is read as it stands, beyond
 * the plane. A zero vector copies the block at blockPos without any test against the frame.
 *
 * @param[in] pRecord  planes, sizes, position and vector; the first source and the first destination are used. Block
 *                     widths 0, 4, 8, ... 28, heights any multiple of 4. Position and vector are not checked.
 *
 * Reads:  the record; the reference area as far as it lies in the plane and is not clamped away.
 * Writes: the block at pDst[0].
 *
 * @retval zvpStatusNullPointer  pRecord, pSrc[0] or pDst[0] is null.
 * @retval zvpStatusBadSize      the block's height is no multiple of 4, or its width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaBlock_H264_8u_P1R(const H264InterpolateBlock8u *pRecord);

/**
 * Luma prediction of a block by its vector, 16-bit: as zvpiInterpolateLumaBlock_H264_8u_P1R().
 *
 * @param[in] pRecord  planes, sizes, position, vector and depth; the first source and the first destination are used
 *
 * @retval zvpStatusNullPointer  pRecord, pSrc[0] or pDst[0] is null.
 * @retval zvpStatusBadSize      the block's height is no multiple of 4, or its width not 0, 4, 8, ... 28.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaBlock_H264_16u_P1R(const H264InterpolateBlock16u *pRecord);

/**
 * Chroma prediction of a block in two planes by its vector, 8-bit, with samples beyond the picture's edges replaced by
 * the edge's.
 *
 * As zvpiInterpolateLumaBlock_H264_8u_P1R(), the vector in eighths of a sample and the reference area with 1 sample
 * behind the block along an axis that has a fraction (H.264 8.4.2.2.2). Both planes share steps, size and vector.
 *
 * @param[in] pRecord  planes, sizes, position and vector. Block widths 0, 2, 4, ... 14, heights any even number.
 *
 * Reads:  the record; of each plane the reference area as far as it lies in the plane and is not clamped away.
 * Writes: the blocks at pDst[0] and pDst[1].
 *
 * @retval zvpStatusNullPointer  pRecord or one of the four planes is null.
 * @retval zvpStatusBadSize      the block's height is odd, or its width none of those above.
 * @retval zvpStatusOk           Both blocks are written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaBlock_H264_8u_P2R(const H264InterpolateBlock8u *pRecord);

/**
 * Chroma prediction of a block in two planes by its vector, 16-bit: as zvpiInterpolateChromaBlock_H264_8u_P2R().
 *
 * @param[in] pRecord  planes, sizes, position and vector
 *
 * @retval zvpStatusNullPointer  pRecord or one of the four planes is null.
 * @retval zvpStatusBadSize      the block's height is odd, or its width not 0, 2, 4, ... 14.
 * @retval zvpStatusOk           Both blocks are written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaBlock_H264_16u_P2R(const H264InterpolateBlock16u *pRecord);

/**
 * Chroma prediction of a block in an interleaved plane into two planes by its vector, 8-bit.
 *
 * As zvpiInterpolateChromaBlock_H264_8u_P2R(), of pSrc[0] alone. Position, vector and the width of the frame count
 * pairs.
 *
 * @param[in] pRecord  plane, sizes, position and vector. Block widths 0, 2, 4, ... 14, heights any even number. pDst[1]
 *                     is required but not tested.
 *
 * Reads:  the record; the reference area as far as it lies in the plane and is not clamped away.
 * Writes: the blocks at pDst[0], U, and pDst[1], V.
 *
 * @retval zvpStatusNullPointer  pRecord, pSrc[0] or pDst[0] is null.
 * @retval zvpStatusBadSize      the block's height is odd, or its width none of those above.
 * @retval zvpStatusOk           Both blocks are written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaBlock_H264_8u_C2P2R(const H264InterpolateBlock8u *pRecord);

/** @} */ /* h264_luma_and_chroma_interpolation */

/**
 * @defgroup h264_interpolation_across_picture_edges H.264: interpolation across picture edges
 * @{
 */

/*
 * What holds for this family:
 *   - Units, steps, records, fractions and empty blocks are those of luma and chroma interpolation.
 *   - The Top and Bottom members repair the vertical direction only. They interpolate a copy of the block and its
 *     surround, in which rows beyond the edge repeat the edge's row. Rows of the source count from pSrc; H is the
 *     block's height. Left and right of the block the source is read as it stands.
 *   - Columns read: luma 0..W-1 if dx is 0, else -2..W+2; chroma 0..W-1 if dx is 0, else 0..W+3.
 */

/**
 * Luma prediction of a block that crosses the top edge of a picture or slice, 8-bit.
 *
 * Rows above row outPixels are replaced by it. With outPixels of 0 or less as many rows above the block are there.
 *
 * @param[in]  pSrc       source at the whole-sample position
 * @param[in]  srcStep    distance between rows of pSrc, in bytes; any value
 * @param[out] pDst       the block
 * @param[in]  dstStep    distance between rows of pDst, in bytes; any value
 * @param[in]  dx         horizontal fraction in quarters, 0 to 3
 * @param[in]  dy         vertical fraction in quarters, 0 to 3
 * @param[in]  outPixels  rows of the block that lie beyond the edge; any value
 * @param[in]  roiSize    width 0, 4, 8, ... 28, height any multiple of 4
 *
 * Reads:  rows -2..H+2, or 0..H-1 if dy is 0, as far as they do not lie above row outPixels; row outPixels
 *         alone if they all do.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      the height is no multiple of 4, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaTop_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                     int32_t dstStep, int32_t dx, int32_t dy,
                                                     int32_t outPixels, zvpSize roiSize);

/**
 * Luma prediction of a block that crosses the top edge, 16-bit: as zvpiInterpolateLumaTop_H264_8u_C1R().
 *
 * @param[in] pRecord    the place, the fractions 0 to 3 and the size, as for zvpiInterpolateLuma_H264_16u_C1R()
 * @param[in] outPixels  rows of the block that lie beyond the edge; any value
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      height or width is not 4, 8 or 16, or the block is 4x16 or 16x4.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaTop_H264_16u_C1R(const H264Interpolate16u *pRecord, int32_t outPixels);

/**
 * Luma prediction of a block that crosses the bottom edge of a picture or slice, 8-bit.
 *
 * Rows below row H - outPixels - 1 are replaced by it; with outPixels 0 that is the block's last row.
 *
 * @param[in]  pSrc       source at the whole-sample position
 * @param[in]  srcStep    distance between rows of pSrc, in bytes; any value
 * @param[out] pDst       the block
 * @param[in]  dstStep    distance between rows of pDst, in bytes; any value
 * @param[in]  dx         horizontal fraction in quarters, 0 to 3
 * @param[in]  dy         vertical fraction in quarters, 0 to 3
 * @param[in]  outPixels  rows of the block that lie beyond the edge; any value
 * @param[in]  roiSize    width 0, 4, 8, ... 28, height any multiple of 4
 *
 * Reads:  rows -2..H+2, or 0..H-1 if dy is 0, as far as they do not lie below row H - outPixels - 1; that row
 *         alone if they all do.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      the height is no multiple of 4, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaBottom_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                        int32_t dstStep, int32_t dx, int32_t dy,
                                                        int32_t outPixels, zvpSize roiSize);

/**
 * Luma prediction of a block that crosses the bottom edge, 16-bit: as zvpiInterpolateLumaBottom_H264_8u_C1R().
 *
 * @param[in] pRecord    the place, the fractions 0 to 3 and the size, as for zvpiInterpolateLuma_H264_16u_C1R()
 * @param[in] outPixels  rows of the block that lie beyond the edge; any value
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..3.
 * @retval zvpStatusBadSize      height or width is not 4, 8 or 16, or the block is 4x16 or 16x4.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateLumaBottom_H264_16u_C1R(const H264Interpolate16u *pRecord, int32_t outPixels);

/**
 * Chroma prediction of a block that crosses the top edge of a picture or slice, 8-bit.
 *
 * Rows above row outPixels are replaced by it. With a negative outPixels the whole copy begins at that row: the block
 * that is interpolated lies -outPixels rows above pSrc.
 *
 * @param[in]  pSrc       source at the whole-sample position
 * @param[in]  srcStep    distance between rows of pSrc, in bytes; any value
 * @param[out] pDst       the block
 * @param[in]  dstStep    distance between rows of pDst, in bytes; any value
 * @param[in]  dx         horizontal fraction in eighths, 0 to 7
 * @param[in]  dy         vertical fraction in eighths, 0 to 7
 * @param[in]  outPixels  rows of the block that lie beyond the edge; any value
 * @param[in]  roiSize    width 0, 2, 4, ... 14, height any even number
 *
 * Reads:  rows 0..H, or 0..H-1 if dy is 0, as far as they do not lie above row outPixels; row outPixels alone if
 *         they all do; with a negative outPixels those rows, that much higher.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      the height is odd, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaTop_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                       int32_t dstStep, int32_t dx, int32_t dy,
                                                       int32_t outPixels, zvpSize roiSize);

/**
 * Chroma prediction of a block that crosses the top edge, 16-bit: as zvpiInterpolateChromaTop_H264_8u_C1R().
 *
 * @param[in] pRecord    the place, the fractions 0 to 7 and the size, as for zvpiInterpolateChroma_H264_16u_C1R()
 * @param[in] outPixels  rows of the block that lie beyond the edge; any value
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below 8, whatever the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      height or width is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaTop_H264_16u_C1R(const H264Interpolate16u *pRecord, int32_t outPixels);

/**
 * Chroma prediction of a block that crosses the bottom edge of a picture or slice, 8-bit.
 *
 * Rows below row H - outPixels - 1 are replaced by it; with outPixels 0 that is the block's last row.
 *
 * @param[in]  pSrc       source at the whole-sample position
 * @param[in]  srcStep    distance between rows of pSrc, in bytes; any value
 * @param[out] pDst       the block
 * @param[in]  dstStep    distance between rows of pDst, in bytes; any value
 * @param[in]  dx         horizontal fraction in eighths, 0 to 7
 * @param[in]  dy         vertical fraction in eighths, 0 to 7
 * @param[in]  outPixels  rows of the block that lie beyond the edge; any value
 * @param[in]  roiSize    width 0, 2, 4, ... 14, height any even number
 *
 * Reads:  rows 0..H, or 0..H-1 if dy is 0, as far as they do not lie below row H - outPixels - 1; that row alone if
 *         they all do.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      the height is odd, or the width none of those above.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaBottom_H264_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                          int32_t dstStep, int32_t dx, int32_t dy,
                                                          int32_t outPixels, zvpSize roiSize);

/**
 * Chroma prediction of a block that crosses the bottom edge, 16-bit: as zvpiInterpolateChromaBottom_H264_8u_C1R().
 *
 * @param[in] pRecord    the place, the fractions 0 to 7 and the size, as for zvpiInterpolateChroma_H264_16u_C1R()
 * @param[in] outPixels  rows of the block that lie beyond the edge; any value
 *
 * @retval zvpStatusNullPointer  pRecord, its pSrc or its pDst is null.
 * @retval zvpStatusBadStep      srcStep or dstStep is below 8, whatever the width.
 * @retval zvpStatusBadArgument  dx or dy is not in 0..7.
 * @retval zvpStatusBadSize      height or width is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateChromaBottom_H264_16u_C1R(const H264Interpolate16u *pRecord, int32_t outPixels);

/**
 * Fills the margin around a plane with the nearest samples of the plane, for a frame or for one field of it.
 *
 * With e for expandPixels. Frame: the last row goes to the e rows below; then all rows from 0 to height + e - 1 get e
 * samples left and right of them; then row 0 with its margins goes to the e rows above. A field does the same with its
 * own rows, every second one. Top field (rows 0, 2, ...): (e + 1) / 2 of its rows below and e / 2 above the plane.
 * Bottom field (rows 1, 3, ...): e / 2 below and (e + 1) / 2 above.
 *
 * @param[in,out] pPlane        sample (0, 0) of the plane; the margin around it belongs to the caller's memory
 * @param[in]     width         width of the plane, not 0
 * @param[in]     height        height of the frame, even, at least 2
 * @param[in]     step          distance between rows of the frame, in bytes; any value
 * @param[in]     expandPixels  margin in samples; 0 does nothing, and frameKind is not looked at then
 * @param[in]     frameKind     0 frame, 1 top field, 2 bottom field
 *
 * Reads:  of each row treated its first and last sample, and the first and the last row.
 * Writes: the margins described.
 *
 * @retval zvpStatusNullPointer  pPlane is null.
 * @retval zvpStatusBadSize      height is odd or below 2, or width is 0.
 * @retval zvpStatusBadArgument  expandPixels is not 0 and frameKind is above 2.
 * @retval zvpStatusOk           The margin is filled, or expandPixels is 0.
 */
ZVP_API zvpStatus zvpiExpandPlane_H264_8u_C1R(uint8_t *pPlane, int32_t width, int32_t height, int32_t step,
                                              uint32_t expandPixels, uint32_t frameKind);

/**
 * Rounded mean of two predictions (H.264 8.4.2.3.1), one step for all: (src1 + src2 + 1) >> 1.
 *
 * @param[in]  pSrc1   first prediction
 * @param[in]  pSrc2   second prediction
 * @param[out] pDst    the block; may be pSrc1 or pSrc2
 * @param[in]  width   2 to 16, odd widths too
 * @param[in]  height  2 to 16
 * @param[in]  step    distance between rows of all three, in bytes; any value
 *
 * Reads:  the two blocks.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadSize      width or height is not in 2..16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateBlock_H264_8u_P2P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                     uint32_t width, uint32_t height, int32_t step);

/**
 * Rounded mean of two predictions (H.264 8.4.2.3.1), a step for each: (src1 + src2 + 1) >> 1.
 *
 * @param[in]  pSrc1     first prediction
 * @param[in]  pSrc2     second prediction
 * @param[out] pDst      the block; may be pSrc1 or pSrc2 with the same step
 * @param[in]  width     2 to 16, odd widths too
 * @param[in]  height    2 to 16
 * @param[in]  src1Step  distance between rows of pSrc1, in bytes; any value
 * @param[in]  src2Step  distance between rows of pSrc2, in bytes; any value
 * @param[in]  dstStep   distance between rows of pDst, in bytes; any value
 *
 * Reads:  the two blocks.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadSize      width or height is not in 2..16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateBlock_H264_8u_P3P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                     uint32_t width, uint32_t height, int32_t src1Step,
                                                     int32_t src2Step, int32_t dstStep);

/** @} */ /* h264_interpolation_across_picture_edges */

/**
 * @defgroup h264_weighted_prediction H.264: weighted prediction
 * @{
 */

/*
 * What holds for this family:
 *   - Weighted sample prediction of H.264, clause 8.4.2.3.2, on blocks that have been interpolated. Each sample is
 *     read, weighted and written at its own place.
 *   - Steps of the 8u members are bytes, those of the 16u members elements. Where they are checked, they are compared
 *     with the width as unsigned numbers: a negative step passes and is used as it is.
 *   - Clip means to 0..255, or to 0..2^bitDepth - 1 in the 16u members. Weights, offsets, logWD and bitDepth are not
 *     checked: arithmetic is of 32 bits and wraps, and shift counts use their low five bits. 16-bit results keep their
 *     low 16 bits.
 *   - Pointers need not be aligned. The destination may be one of the sources, with its step; it must not overlap them
 *     otherwise. Samples are done in raster order, which shows where a step that is not refused lets rows of the
 *     destination overlap.
 *   - Reads and writes exactly the blocks.
 */

/** Two predictions of 16-bit samples and their result, for the two-directional 16u members. */
typedef struct WeightBlockRecord {
  const uint16_t *pSrc1; /**< First prediction. */
  int32_t src1Step;      /**< Distance between rows of pSrc1, in elements. */
  const uint16_t *pSrc2; /**< Second prediction. */
  int32_t src2Step;      /**< Distance between rows of pSrc2, in elements. */
  uint16_t *pDst;        /**< Result. */
  int32_t dstStep;       /**< Distance between rows of pDst, in elements. */
  zvpSize roiSize;       /**< Size of the blocks. */
  int32_t bitDepth;      /**< Sample depth; results are clipped to 2^bitDepth - 1. */
} WeightBlockRecord;

/**
 * Weighted prediction from one reference, in place, 8-bit.
 *
 * clip(((s * weight + r) >> logWD) + offset), with r = 1 << (logWD - 1), or 0 if logWD is 0.
 *
 * @param[in,out] pSrcDst     the prediction, weighted in place
 * @param[in]     srcDstStep  distance between rows, in bytes
 * @param[in]     logWD       binary logarithm of the weight's denominator
 * @param[in]     weight      weight
 * @param[in]     offset      offset
 * @param[in]     roiSize     width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusBadStep      srcDstStep is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiUniDirWeightBlock_H264_8u_C1R(uint8_t *pSrcDst, int32_t srcDstStep, int32_t logWD,
                                                    int32_t weight, int32_t offset, zvpSize roiSize);

/**
 * The same as zvpiUniDirWeightBlock_H264_8u_C1R() under another name.
 *
 * @param[in,out] pSrcDst     the prediction, weighted in place
 * @param[in]     srcDstStep  distance between rows, in bytes
 * @param[in]     logWD       binary logarithm of the weight's denominator
 * @param[in]     weight      weight
 * @param[in]     offset      offset
 * @param[in]     roiSize     width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusBadStep      srcDstStep is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiUniDirWeightBlock_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep, int32_t logWD,
                                                     int32_t weight, int32_t offset, zvpSize roiSize);

/**
 * Weighted prediction from two references with explicit weights, 8-bit, one step for both sources.
 *
 * clip(((s1 * weight1 + s2 * weight2 + (1 << logWD)) >> (logWD + 1)) + ((offset1 + offset2 + 1) >> 1)).
 *
 * @param[in]  pSrc1    first prediction
 * @param[in]  pSrc2    second prediction
 * @param[out] pDst     result
 * @param[in]  srcStep  distance between rows of pSrc1 and of pSrc2, in bytes
 * @param[in]  dstStep  distance between rows of pDst, in bytes
 * @param[in]  logWD    binary logarithm of the weights' denominator
 * @param[in]  weight1  weight of the first prediction
 * @param[in]  offset1  offset of the first prediction
 * @param[in]  weight2  weight of the second prediction
 * @param[in]  offset2  offset of the second prediction
 * @param[in]  roiSize  width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadStep      a step is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBiDirWeightBlock_H264_8u_P2P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                     int32_t srcStep, int32_t dstStep, int32_t logWD, int32_t weight1,
                                                     int32_t offset1, int32_t weight2, int32_t offset2,
                                                     zvpSize roiSize);

/**
 * Weighted prediction from two references with explicit weights, 8-bit, a step for each plane.
 *
 * clip(((s1 * weight1 + s2 * weight2 + (1 << logWD)) >> (logWD + 1)) + ((offset1 + offset2 + 1) >> 1)).
 *
 * @param[in]  pSrc1     first prediction
 * @param[in]  pSrc2     second prediction
 * @param[out] pDst      result
 * @param[in]  src1Step  distance between rows of pSrc1, in bytes
 * @param[in]  src2Step  distance between rows of pSrc2, in bytes
 * @param[in]  dstStep   distance between rows of pDst, in bytes
 * @param[in]  logWD     binary logarithm of the weights' denominator
 * @param[in]  weight1   weight of the first prediction
 * @param[in]  offset1   offset of the first prediction
 * @param[in]  weight2   weight of the second prediction
 * @param[in]  offset2   offset of the second prediction
 * @param[in]  roiSize   width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadStep      a step is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBiDirWeightBlock_H264_8u_P3P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                     int32_t src1Step, int32_t src2Step, int32_t dstStep,
                                                     int32_t logWD, int32_t weight1, int32_t offset1, int32_t weight2,
                                                     int32_t offset2, zvpSize roiSize);

/**
 * Weighted prediction from two references with implicit weights, 8-bit, one step for both sources.
 *
 * clip((s1 * weight1 + s2 * weight2 + 32) >> 6).
 *
 * @param[in]  pSrc1    first prediction
 * @param[in]  pSrc2    second prediction
 * @param[out] pDst     result
 * @param[in]  srcStep  distance between rows of pSrc1 and of pSrc2, in bytes
 * @param[in]  dstStep  distance between rows of pDst, in bytes
 * @param[in]  weight1  weight of the first prediction
 * @param[in]  weight2  weight of the second prediction
 * @param[in]  roiSize  width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadStep      a step is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                             int32_t srcStep, int32_t dstStep, int32_t weight1,
                                                             int32_t weight2, zvpSize roiSize);

/**
 * Weighted prediction from two references with implicit weights, 8-bit, a step for each plane and any size.
 *
 * As zvpiBiDirWeightBlockImplicit_H264_8u_P2P1R(), but neither steps nor size are checked: a width or height of 0 or
 * less is an empty block.
 *
 * @param[in]  pSrc1     first prediction
 * @param[in]  pSrc2     second prediction
 * @param[out] pDst      result
 * @param[in]  src1Step  distance between rows of pSrc1, in bytes
 * @param[in]  src2Step  distance between rows of pSrc2, in bytes
 * @param[in]  dstStep   distance between rows of pDst, in bytes
 * @param[in]  weight1   weight of the first prediction
 * @param[in]  weight2   weight of the second prediction
 * @param[in]  roiSize   width and height, any numbers
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           The block is written, if there is any.
 */
ZVP_API zvpStatus zvpiBiDirWeightBlockImplicit_H264_8u_P3P1R(const uint8_t *pSrc1, const uint8_t *pSrc2, uint8_t *pDst,
                                                             int32_t src1Step, int32_t src2Step, int32_t dstStep,
                                                             int32_t weight1, int32_t weight2, zvpSize roiSize);

/**
 * Weighted mean of a block and the destination, 8-bit.
 *
 * clip(((src * weight1 + r + dst * weight2) >> logWD) + offset), with r = 1 << (logWD - 1), or 0 if logWD is below 1.
 * The value that is clipped must lie in -256..511.
 *
 * @param[in]     pSrc        block that is weighted in
 * @param[in,out] pSrcDst     the other block, and the result
 * @param[in]     srcDstStep  distance between rows of both, in bytes
 * @param[in]     weight1     weight of pSrc
 * @param[in]     weight2     weight of pSrcDst
 * @param[in]     logWD       binary logarithm of the weights' denominator
 * @param[in]     offset      offset
 * @param[in]     roiSize     width and height, each 2, 4, 8 or 16
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusBadStep      srcDstStep is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiWeightedAverage_H264_8u_C1IR(const uint8_t *pSrc, uint8_t *pSrcDst, int32_t srcDstStep,
                                                   int32_t weight1, int32_t weight2, int32_t logWD, int32_t offset,
                                                   zvpSize roiSize);

/**
 * Weighted prediction from one reference, in place, 16-bit.
 *
 * clip(((s * weight + r) >> logWD) + offset), with r = 1 << (logWD - 1), or 0 if logWD is 0.
 *
 * @param[in,out] pSrcDst     the prediction, weighted in place
 * @param[in]     srcDstStep  distance between rows, in elements
 * @param[in]     logWD       binary logarithm of the weight's denominator
 * @param[in]     weight      weight
 * @param[in]     offset      offset, at the scale of the samples
 * @param[in]     roiSize     width and height, each 2, 4, 8 or 16
 * @param[in]     bitDepth    sample depth
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusBadStep      srcDstStep is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiUnidirWeight_H264_16u_IP2P1R(uint16_t *pSrcDst, int32_t srcDstStep, int32_t logWD, int32_t weight,
                                                   int32_t offset, zvpSize roiSize, int32_t bitDepth);

/**
 * Weighted prediction from two references with explicit weights, 16-bit.
 *
 * clip(((s1 * weight1 + s2 * weight2 + (1 << logWD)) >> (logWD + 1)) + ((offset1 + offset2 + 1) >> 1)).
 *
 * @param[in] pRecord  blocks, steps, depth, and width and height of 2, 4, 8 or 16
 * @param[in] logWD    binary logarithm of the weights' denominator
 * @param[in] weight1  weight of the first prediction
 * @param[in] offset1  offset of the first prediction
 * @param[in] weight2  weight of the second prediction
 * @param[in] offset2  offset of the second prediction
 *
 * @retval zvpStatusNullPointer  pRecord or a pointer in it is null.
 * @retval zvpStatusBadStep      a step is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBidirWeight_H264_16u_P2P1R(const WeightBlockRecord *pRecord, int32_t logWD, int32_t weight1,
                                                 int32_t offset1, int32_t weight2, int32_t offset2);

/**
 * Weighted prediction from two references with implicit weights, 16-bit.
 *
 * clip((s1 * weight1 + s2 * weight2 + 32) >> 6).
 *
 * @param[in] pRecord  blocks, steps, depth, and width and height of 2, 4, 8 or 16
 * @param[in] weight1  weight of the first prediction
 * @param[in] weight2  weight of the second prediction
 *
 * @retval zvpStatusNullPointer  pRecord or a pointer in it is null.
 * @retval zvpStatusBadStep      a step is below the width.
 * @retval zvpStatusBadSize      width or height is not 2, 4, 8 or 16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBidirWeightImplicit_H264_16u_P2P1R(const WeightBlockRecord *pRecord, int32_t weight1,
                                                         int32_t weight2);

/**
 * Rounded mean of two predictions, 16-bit: (s1 + s2 + 1) >> 1, without clip.
 *
 * Steps are not checked, and odd sizes are carried out.
 *
 * @param[in] pRecord  blocks, steps, and width and height of 2 to 16; the depth is not used
 *
 * @retval zvpStatusNullPointer  pRecord or a pointer in it is null.
 * @retval zvpStatusBadSize      width or height is not in 2..16.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiBidir_H264_16u_P2P1R(const WeightBlockRecord *pRecord);

/** @} */ /* h264_weighted_prediction */

/**
 * @defgroup h264_intra_prediction H.264: intra prediction
 *
 * Predicts a block from the reconstructed samples around it, in place (H.264 8.3.1, 8.3.3, 8.3.4).
 *
 * pSrcDst is the block's top left sample; the row above and the column to the left are read through negative offsets.
 * In availabilityFlags a bit says that a neighbour may be used: 1 the row above, 2 the column to the left, 32 the
 * sample above and to the left, 64 the row above and to the right (4x4 only). Other bits have no say. A neighbour whose
 * bit is clear, or that the mode does not use, is not read. Neighbours count as they are before the call, also at the
 * least step, where the column to the left lies in the block.
 * @{
 */

/**
 * Predicts a 4x4 luma block.
 *
 * Modes as in H.264 table 8-2: 0 vertical, 1 horizontal, 2 DC, 3 diagonal down left, 4 diagonal down right, 5 vertical
 * right, 6 horizontal down, 7 vertical left, 8 horizontal up.
 *
 * A missing neighbour never stops the prediction. Modes 0, 3 and 7 need the row above, 1 and 8 the column to the left,
 * 4, 5 and 6 both and the corner: each that is missing counts as 128, and the status tells. The DC mode takes the means
 * of what is there, or 128. Modes 3 and 7 repeat the last sample above if those to its right are missing.
 *
 * @param[in,out] pSrcDst            the block, with its neighbours around it
 * @param[in]     srcDstStep         distance of rows in bytes, 4 or more
 * @param[in]     mode               0 to 8
 * @param[in]     availabilityFlags  which neighbours may be used
 *
 * Reads:  of the row above 4 samples, 8 in modes 3 and 7 if flag 64 is set; 4 to the left; the corner in modes 4 to 6.
 * Writes: 4 rows of 4 samples.
 *
 * @retval zvpStatusNullPointer             pSrcDst is null.
 * @retval zvpStatusBadStep                 srcDstStep is below 4.
 * @retval zvpStatusOutOfRange              mode is above 8.
 * @retval zvpStatusWarnPredictionFallback  the block is predicted, with 128 for a missing neighbour. Not an error.
 * @retval zvpStatusOk                      the block is predicted.
 */
ZVP_API zvpStatus zvpiPredictIntra_4x4_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep, uint32_t mode,
                                                    int32_t availabilityFlags);

/**
 * Predicts a 16x16 luma block.
 *
 * Modes as in H.264 table 8-4: 0 vertical, 1 horizontal, 2 DC, 3 plane. The DC mode takes the mean of the sides that
 * are there, or 128.
 *
 * @param[in,out] pSrcDst            the block, with its neighbours around it
 * @param[in]     srcDstStep         distance of rows in bytes, 16 or more
 * @param[in]     mode               0 to 3
 * @param[in]     availabilityFlags  which neighbours may be used
 *
 * Reads:  of the row above 16 samples, 16 to the left, as the mode uses them; the corner in mode 3.
 * Writes: 16 rows of 16 samples.
 *
 * @retval zvpStatusNullPointer            pSrcDst is null.
 * @retval zvpStatusBadStep                srcDstStep is below 16.
 * @retval zvpStatusOutOfRange             mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 0 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. The block is untouched.
 * @retval zvpStatusOk                     the block is predicted.
 */
ZVP_API zvpStatus zvpiPredictIntra_16x16_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep, uint32_t mode,
                                                      int32_t availabilityFlags);

/**
 * Predicts an 8x8 chroma block of 4:2:0.
 *
 * Modes as in H.264 table 8-5, in another order than those of luma: 0 DC, 1 horizontal, 2 vertical, 3 plane. The DC
 * mode treats each 4x4 quadrant by itself: on the diagonal by both sides, off it by the side that it touches, in either
 * case by what is there, or 128.
 *
 * @param[in,out] pSrcDst            the block, with its neighbours around it
 * @param[in]     srcDstStep         distance of rows in bytes, 8 or more
 * @param[in]     mode               0 to 3
 * @param[in]     availabilityFlags  which neighbours may be used
 *
 * Reads:  of the row above 8 samples, 8 to the left, as the mode uses them; the corner in mode 3.
 * Writes: 8 rows of 8 samples.
 *
 * @retval zvpStatusNullPointer            pSrcDst is null.
 * @retval zvpStatusBadStep                srcDstStep is below 8.
 * @retval zvpStatusOutOfRange             mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 2 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. The block is untouched.
 * @retval zvpStatusOk                     the block is predicted.
 */
ZVP_API zvpStatus zvpiPredictIntraChroma8x8_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep, uint32_t mode,
                                                         int32_t availabilityFlags);

/** @} */ /* h264_intra_prediction */

/**
 * @defgroup h264_macroblock_reconstruction_8_bit H.264: macroblock reconstruction, 8-bit
 *
 * Rebuilds the luma plane or both chroma planes of a macroblock of 4:2:0 in one call: scales the coefficients (H.264
 * 8.5), transforms them back, predicts intra macroblocks from the samples around them (8.3), adds. Inter members find
 * the prediction in the picture.
 *
 * Coefficients. *ppSrcCoeff points to levels of 16 bits in raster order, block after block in decoding order, as the
 * entropy decoder left them. A coded block takes its own and moves the pointer on: 16 for a 4x4 block or the DC block
 * of Intra16x16, 64 for an 8x8 block, 4 for the DC block of a chroma plane; blocks that are not coded take nothing. A
 * block without its DC leaves the place of element 0 all the same. The buffer is working space: scaled and transformed
 * values stay in it, and it is not zeroed. On success the pointer stands behind the last block; after an error it is
 * where it was.
 *
 * cbp. Bit 0: the DC block of an Intra16x16 macroblock is coded. Bits 1 to 16: 4x4 blocks 0 to 15 of luma. Bits 17 and
 * 18: the DC blocks of U and V. Bits 19 to 22: blocks 0 to 3 of U, 23 to 26: of V. The 8x8 members read bits 0 to 3 as
 * their four blocks. Other bits have no say.
 *
 * Scales. Members without a table use the flat ones of QP; products wrap at 16 bits. pQuantTable holds the scales of
 * the caller's matrix for QP % 6 in raster order, weightScale * normAdjust (8.5.9), 16 elements or, for 8x8 blocks, 64.
 * With bypass, if QP is 0, levels are neither scaled nor transformed and added as they are, those of DC blocks too:
 * the lossless macroblocks of 8.5.12. With another QP bypass has no say.
 *
 * Arithmetic. Intermediate results keep 16 bits, which those of conforming streams never exceed; products that are
 * shifted to the right are formed in 32. A residual is clamped to -256..256 and the sum with the sample to 0..255.
 *
 * edgeFlags. A set bit means that a neighbour of the macroblock may not be used:
 *   - 1: the column to the left; in members named Half its upper half, rows 0 to 7
 *   - 2: in members named Half the lower half of that column, rows 8 to 15
 *   - 4: the row above
 *   - 8: in 8x8 members: the sample above and to the left is not what the sides that meet in it are. It counts as there
 *     if the row above and the column to the left (in Half members its upper half) are both there and the bit is clear,
 *     or if they are not both there and the bit is set. It has a part in the filtering of neighbours (8.3.2.2.1)
 *   - 16: the row above and to the right for 4x4 and 8x8 blocks, the sample above and to the left for 16x16 and chroma
 *
 * Other bits have no say. Half members serve macroblocks of a field whose left neighbours are a pair of frame
 * macroblocks (6.4.12.2), of which one may be used for intra prediction and the other not.
 *
 * Planes. A step is the distance of rows in bytes, of both planes in chroma members; any value, negative too.
 *
 * Reads:  the coefficients of coded blocks; the tables; the 16x16 samples of luma or 8x8 of each chroma plane where
 *         something is added to them. Intra members also neighbours that the modes use and the flags allow: 16 samples
 *         above (8 of chroma), 16 to the left (8), the corner, and above to the right 4 in 4x4 members, 8 in 8x8 ones.
 * Writes: the samples of the macroblock, the coefficients of coded blocks, *ppSrcCoeff.
 * Align:  none for samples, coefficients, modes and tables; *ppSrcCoeff as a pointer.
 * @{
 */

/**
 * Adds the residual of the 4x4 blocks of an inter macroblock, scaled by flat matrices.
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDst     top left sample of the macroblock
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 51
 *
 * @retval zvpStatusNullPointer  an argument or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange   QP is above 51; tested before cbp is looked at.
 * @retval zvpStatusOk           the coded blocks are added; without one nothing is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaInterMB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst, int32_t srcDstStep,
                                                            uint32_t cbp, uint32_t QP);

/**
 * Adds the residual of the 4x4 blocks of an inter macroblock, scaled by the caller's matrix.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     pQuantTable  16 scales for QP % 6
 * @param[in]     bypass       not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer  a pointer or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange   QP is above 51.
 * @retval zvpStatusOk           the coded blocks are added; without one nothing is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaInter4x4MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                               int32_t srcDstStep, uint32_t cbp, uint32_t QP,
                                                               const int16_t *pQuantTable, uint8_t bypass);

/**
 * Adds the residual of the 8x8 blocks of an inter macroblock, scaled by the caller's matrix (8.5.13).
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     pQuantTable  64 scales for QP % 6
 * @param[in]     bypass       not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer  a pointer or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange   QP is above 51.
 * @retval zvpStatusOk           the coded blocks are added; without one nothing is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaInter8x8MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                               int32_t srcDstStep, uint32_t cbp, uint32_t QP,
                                                               const int16_t *pQuantTable, uint8_t bypass);

/**
 * Rebuilds an Intra_4x4 macroblock, scaled by flat matrices.
 *
 * Block by block predicts and adds. Modes that need the samples above and to the right repeat the last one above where
 * those are missing; modes 4 to 6 ask for the row above and the column to the left, and have the corner with them. The
 * DC mode takes what is there.
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDst     top left sample of the macroblock
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     pModes      16 modes by block, 0 to 8 as in zvpiPredictIntra_4x4_H264_8u_C1IR()
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 51
 * @param[in]     edgeFlags   neighbours that may not be used
 *
 * @retval zvpStatusNullPointer            an argument or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntraMB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst, int32_t srcDstStep,
                                                            const int32_t *pModes, uint32_t cbp, uint32_t QP,
                                                            uint8_t edgeFlags);

/**
 * Rebuilds an Intra_4x4 macroblock, scaled by flat matrices.
 *
 * As zvpiReconstructLumaIntraMB_H264_16s8u_C1R(), but the halves of the column to the left have flags of their own. The
 * corner of block 8 belongs to the upper half.
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDst     top left sample of the macroblock
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     pModes      16 modes by block, 0 to 8 as in zvpiPredictIntra_4x4_H264_8u_C1IR()
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 51
 * @param[in]     edgeFlags   neighbours that may not be used
 *
 * @retval zvpStatusNullPointer            an argument or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntraHalfMB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                                int32_t srcDstStep, const int32_t *pModes, uint32_t cbp,
                                                                uint32_t QP, uint8_t edgeFlags);

/**
 * Rebuilds an Intra_4x4 macroblock, scaled by the caller's matrix.
 *
 * As zvpiReconstructLumaIntraMB_H264_16s8u_C1R() in all else.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     pModes       16 modes by block, 0 to 8 as in zvpiPredictIntra_4x4_H264_8u_C1IR()
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     edgeFlags    neighbours that may not be used
 * @param[in]     pQuantTable  16 scales for QP % 6; not read if no block is coded
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff, pSrcDst or pModes is null. Later, behind the test of
 *                                         QP: pQuantTable is null while a block is coded. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                               int32_t srcDstStep, const int32_t *pModes, uint32_t cbp,
                                                               uint32_t QP, uint8_t edgeFlags,
                                                               const int16_t *pQuantTable);

/**
 * Rebuilds an Intra_4x4 macroblock, scaled by the caller's matrix.
 *
 * As zvpiReconstructLumaIntra4x4MB_H264_16s8u_C1R(), but the halves of the column to the left have flags of their own.
 * The corner of block 8 belongs to the upper half.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     pModes       16 modes by block, 0 to 8 as in zvpiPredictIntra_4x4_H264_8u_C1IR()
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     edgeFlags    neighbours that may not be used
 * @param[in]     pQuantTable  16 scales for QP % 6; not read if no block is coded
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff, pSrcDst or pModes is null. Later, behind the test of
 *                                         QP: pQuantTable is null while a block is coded. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntraHalf4x4MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                                   int32_t srcDstStep, const int32_t *pModes,
                                                                   uint32_t cbp, uint32_t QP, uint8_t edgeFlags,
                                                                   const int16_t *pQuantTable);

/**
 * Rebuilds an Intra_8x8 macroblock, scaled by the caller's matrix.
 *
 * Block by block predicts from filtered neighbours (8.3.2.2) and adds (8.5.13). The samples above and to the right of
 * block 0 go with the row above, those of block 1 by their flag; block 2 has block 1 there, block 3 none, so that the
 * last sample above repeats.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     pModes       4 modes by block, 0 to 8 in the order of the 4x4 ones
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     edgeFlags    neighbours that may not be used
 * @param[in]     pQuantTable  64 scales for QP % 6; not read if no block is coded
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff, pSrcDst or pModes is null. Later, behind the test of
 *                                         QP: pQuantTable is null while a block is coded. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                               int32_t srcDstStep, const int32_t *pModes, uint32_t cbp,
                                                               uint32_t QP, uint8_t edgeFlags,
                                                               const int16_t *pQuantTable);

/**
 * Rebuilds an Intra_8x8 macroblock, scaled by the caller's matrix.
 *
 * As zvpiReconstructLumaIntra8x8MB_H264_16s8u_C1R(), but the halves of the column to the left have flags of their own.
 * The corner of block 2 belongs to the upper half.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     pModes       4 modes by block, 0 to 8 in the order of the 4x4 ones
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     edgeFlags    neighbours that may not be used
 * @param[in]     pQuantTable  64 scales for QP % 6; not read if no block is coded
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff, pSrcDst or pModes is null. Later, behind the test of
 *                                         QP: pQuantTable is null while a block is coded. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is above 51. Later, a mode is not 0 to 8: as for a missing neighbour.
 * @retval zvpStatusPredictionUnavailable  a mode asks for a neighbour that is missing. The blocks before it are done,
 *                                         *ppSrcCoeff stays.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntraHalf8x8MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                                   int32_t srcDstStep, const int32_t *pModes,
                                                                   uint32_t cbp, uint32_t QP, uint8_t edgeFlags,
                                                                   const int16_t *pQuantTable);

/**
 * Rebuilds an Intra_16x16 macroblock, scaled by flat matrices (8.5.2, 8.5.10).
 *
 * Predicts all of it, transforms the DC block if it is coded, and adds block by block, a DC also where the block itself
 * is not coded.
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDst     top left sample of the macroblock
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     mode        0 to 3 as in zvpiPredictIntra_16x16_H264_8u_C1IR()
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 51
 * @param[in]     edgeFlags   neighbours that may not be used
 *
 * @retval zvpStatusNullPointer            an argument or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange             QP is above 51; then: mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 0 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                                 int32_t srcDstStep, uint32_t mode, uint32_t cbp,
                                                                 uint32_t QP, uint8_t edgeFlags);

/**
 * Rebuilds an Intra_16x16 macroblock, scaled by the caller's matrix. As
 * zvpiReconstructLumaIntra16x16MB_H264_16s8u_C1R() in all else.
 *
 * @param[in,out] ppSrcCoeff   address of the pointer to the coefficients
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance of rows in bytes
 * @param[in]     mode         0 to 3 as in zvpiPredictIntra_16x16_H264_8u_C1IR()
 * @param[in]     cbp          which blocks are coded
 * @param[in]     QP           0 to 51
 * @param[in]     edgeFlags    neighbours that may not be used
 * @param[in]     pQuantTable  16 scales for QP % 6
 * @param[in]     bypass       not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer            a pointer or *ppSrcCoeff is null.
 * @retval zvpStatusOutOfRange             QP is above 51; then: mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 0 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructLumaIntra_16x16MB_H264_16s8u_C1R(int16_t **ppSrcCoeff, uint8_t *pSrcDst,
                                                                  int32_t srcDstStep, uint32_t mode, uint32_t cbp,
                                                                  uint32_t QP, uint8_t edgeFlags,
                                                                  const int16_t *pQuantTable, uint8_t bypass);

/**
 * Adds the residual of both chroma planes of an inter macroblock, scaled by flat matrices (8.5.11).
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDstU    top left sample of its U plane
 * @param[in,out] pSrcDstV    top left sample of its V plane
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 39, the QP of chroma
 *
 * @retval zvpStatusNullPointer  an argument, or *ppSrcCoeff, is null.
 * @retval zvpStatusOutOfRange   QP is above 39.
 * @retval zvpStatusOk           the coded blocks are added; without one nothing is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaInterMB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                              uint8_t *pSrcDstV, int32_t srcDstStep, uint32_t cbp,
                                                              uint32_t QP);

/**
 * Rebuilds both chroma planes of an intra macroblock, scaled by flat matrices: predicts them (8.3.4), then adds.
 *
 * @param[in,out] ppSrcCoeff  address of the pointer to the coefficients
 * @param[in,out] pSrcDstU    top left sample of its U plane
 * @param[in,out] pSrcDstV    top left sample of its V plane
 * @param[in]     srcDstStep  distance of rows in bytes
 * @param[in]     mode        0 to 3 as in zvpiPredictIntraChroma8x8_H264_8u_C1IR()
 * @param[in]     cbp         which blocks are coded
 * @param[in]     QP          0 to 39, the QP of chroma
 * @param[in]     edgeFlags   neighbours that may not be used
 *
 * @retval zvpStatusNullPointer            an argument, or *ppSrcCoeff, is null.
 * @retval zvpStatusOutOfRange             QP is above 39; then: mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 2 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntraMB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                              uint8_t *pSrcDstV, int32_t srcDstStep, uint32_t mode,
                                                              uint32_t cbp, uint32_t QP, uint8_t edgeFlags);

/**
 * Rebuilds both chroma planes of an intra macroblock whose halves have different neighbours, scaled by flat matrices.
 *
 * The DC mode treats each quadrant by itself, the upper two by edgeFlagsTop and the lower two by edgeFlagsBottom; in
 * both bit 1 stands for the half of the column to the left beside them. The vertical mode is the only other.
 *
 * @param[in,out] ppSrcCoeff       address of the pointer to the coefficients
 * @param[in,out] pSrcDstU         top left sample of its U plane
 * @param[in,out] pSrcDstV         top left sample of its V plane
 * @param[in]     srcDstStep       distance of rows in bytes
 * @param[in]     mode             0, DC, or 2, vertical
 * @param[in]     cbp              which blocks are coded
 * @param[in]     QP               0 to 51, as for luma: not 39
 * @param[in]     edgeFlagsTop     neighbours that the upper quadrants may not use
 * @param[in]     edgeFlagsBottom  neighbours that the lower quadrants may not use
 *
 * @retval zvpStatusNullPointer            an argument, or *ppSrcCoeff, is null.
 * @retval zvpStatusOutOfRange             QP is not 0 to 51.
 * @retval zvpStatusPredictionUnavailable  mode is neither 0 nor 2, or it is 2 and edgeFlagsTop says that the row above
 *                                         is missing. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                   uint8_t *pSrcDstV, int32_t srcDstStep, uint32_t mode,
                                                                   uint32_t cbp, int32_t QP, uint8_t edgeFlagsTop,
                                                                   uint8_t edgeFlagsBottom);

/**
 * The same as zvpiReconstructChromaIntraHalfsMB_H264_16s8u_P2R(), under another name.
 *
 * @param[in,out] ppSrcCoeff       address of the pointer to the coefficients
 * @param[in,out] pSrcDstU         top left sample of its U plane
 * @param[in,out] pSrcDstV         top left sample of its V plane
 * @param[in]     srcDstStep       distance of rows in bytes
 * @param[in]     mode             0, DC, or 2, vertical
 * @param[in]     cbp              which blocks are coded
 * @param[in]     QP               0 to 51, as for luma: not 39
 * @param[in]     edgeFlagsTop     neighbours that the upper quadrants may not use
 * @param[in]     edgeFlagsBottom  neighbours that the lower quadrants may not use
 *
 * @retval zvpStatusNullPointer            an argument, or *ppSrcCoeff, is null.
 * @retval zvpStatusOutOfRange             QP is not 0 to 51.
 * @retval zvpStatusPredictionUnavailable  mode is neither 0 nor 2, or it is 2 and edgeFlagsTop says that the row above
 *                                         is missing. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntraHalvesMB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                    uint8_t *pSrcDstV, int32_t srcDstStep,
                                                                    uint32_t mode, uint32_t cbp, int32_t QP,
                                                                    uint8_t edgeFlagsTop, uint8_t edgeFlagsBottom);

/**
 * Adds the residual of both chroma planes of an inter macroblock, scaled by the caller's matrices (8.5.11).
 *
 * @param[in,out] ppSrcCoeff    address of the pointer to the coefficients
 * @param[in,out] pSrcDstU      top left sample of its U plane
 * @param[in,out] pSrcDstV      top left sample of its V plane
 * @param[in]     srcDstStep    distance of rows in bytes
 * @param[in]     cbp           which blocks are coded
 * @param[in]     QP            0 to 39, the QP of chroma
 * @param[in]     pQuantTableU  16 scales of U for QP % 6; not read if U has no coded block or with bypass at QP 0
 * @param[in]     pQuantTableV  16 scales of V for QP % 6, likewise
 * @param[in]     bypass        not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer  ppSrcCoeff, *ppSrcCoeff or a plane is null. Later, behind the test of QP: a table is
 *                               null that a coded block of its plane asks for.
 * @retval zvpStatusOutOfRange   QP is above 39.
 * @retval zvpStatusOk           the coded blocks are added; without one nothing is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaInter4x4MB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                 uint8_t *pSrcDstV, int32_t srcDstStep, uint32_t cbp,
                                                                 uint32_t QP, const int16_t *pQuantTableU,
                                                                 const int16_t *pQuantTableV, uint8_t bypass);

/**
 * Rebuilds both chroma planes of an intra macroblock, scaled by the caller's matrices: predicts them (8.3.4), then
 * adds.
 *
 * @param[in,out] ppSrcCoeff    address of the pointer to the coefficients
 * @param[in,out] pSrcDstU      top left sample of its U plane
 * @param[in,out] pSrcDstV      top left sample of its V plane
 * @param[in]     srcDstStep    distance of rows in bytes
 * @param[in]     mode          0 to 3 as in zvpiPredictIntraChroma8x8_H264_8u_C1IR()
 * @param[in]     cbp           which blocks are coded
 * @param[in]     QP            0 to 39, the QP of chroma
 * @param[in]     edgeFlags     neighbours that may not be used
 * @param[in]     pQuantTableU  16 scales of U for QP % 6; not read if U has no coded block or with bypass at QP 0
 * @param[in]     pQuantTableV  16 scales of V for QP % 6, likewise
 * @param[in]     bypass        not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff or a plane is null. Later, behind all tests below: a
 *                                         table is null that a coded block of its plane asks for. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is above 39; then: mode is above 3.
 * @retval zvpStatusPredictionUnavailable  mode 2 without the row above, 1 without the column to the left, 3 without one
 *                                         of these or the corner. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntra4x4MB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                 uint8_t *pSrcDstV, int32_t srcDstStep, uint32_t mode,
                                                                 uint32_t cbp, uint32_t QP, uint8_t edgeFlags,
                                                                 const int16_t *pQuantTableU,
                                                                 const int16_t *pQuantTableV, uint8_t bypass);

/**
 * Rebuilds both chroma planes of an intra macroblock whose halves have different neighbours, scaled by the caller's
 * matrices.
 *
 * The DC mode treats each quadrant by itself, the upper two by edgeFlagsTop and the lower two by edgeFlagsBottom; in
 * both bit 1 stands for the half of the column to the left beside them. The vertical mode is the only other.
 *
 * @param[in,out] ppSrcCoeff       address of the pointer to the coefficients
 * @param[in,out] pSrcDstU         top left sample of its U plane
 * @param[in,out] pSrcDstV         top left sample of its V plane
 * @param[in]     srcDstStep       distance of rows in bytes
 * @param[in]     mode             0, DC, or 2, vertical
 * @param[in]     cbp              which blocks are coded
 * @param[in]     QP               0 to 51, as for luma: not 39
 * @param[in]     edgeFlagsTop     neighbours that the upper quadrants may not use
 * @param[in]     edgeFlagsBottom  neighbours that the lower quadrants may not use
 * @param[in]     pQuantTableU     16 scales of U for QP % 6; not read if U has no coded block or with bypass at QP 0
 * @param[in]     pQuantTableV     16 scales of V for QP % 6, likewise
 * @param[in]     bypass           not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff or a plane is null. Later, behind all tests below: a
 *                                         table is null that a coded block of its plane asks for. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is not 0 to 51.
 * @retval zvpStatusPredictionUnavailable  mode is neither 0 nor 2, or it is 2 and edgeFlagsTop says that the row above
 *                                         is missing. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                      uint8_t *pSrcDstV, int32_t srcDstStep,
                                                                      uint32_t mode, uint32_t cbp, int32_t QP,
                                                                      uint8_t edgeFlagsTop, uint8_t edgeFlagsBottom,
                                                                      const int16_t *pQuantTableU,
                                                                      const int16_t *pQuantTableV, uint8_t bypass);

/**
 * The same as zvpiReconstructChromaIntraHalfs4x4MB_H264_16s8u_P2R(), under another name.
 *
 * @param[in,out] ppSrcCoeff       address of the pointer to the coefficients
 * @param[in,out] pSrcDstU         top left sample of its U plane
 * @param[in,out] pSrcDstV         top left sample of its V plane
 * @param[in]     srcDstStep       distance of rows in bytes
 * @param[in]     mode             0, DC, or 2, vertical
 * @param[in]     cbp              which blocks are coded
 * @param[in]     QP               0 to 51, as for luma: not 39
 * @param[in]     edgeFlagsTop     neighbours that the upper quadrants may not use
 * @param[in]     edgeFlagsBottom  neighbours that the lower quadrants may not use
 * @param[in]     pQuantTableU     16 scales of U for QP % 6; not read if U has no coded block or with bypass at QP 0
 * @param[in]     pQuantTableV     16 scales of V for QP % 6, likewise
 * @param[in]     bypass           not 0: lossless if QP is 0
 *
 * @retval zvpStatusNullPointer            ppSrcCoeff, *ppSrcCoeff or a plane is null. Later, behind all tests below: a
 *                                         table is null that a coded block of its plane asks for. Nothing is written.
 * @retval zvpStatusOutOfRange             QP is not 0 to 51.
 * @retval zvpStatusPredictionUnavailable  mode is neither 0 nor 2, or it is 2 and edgeFlagsTop says that the row above
 *                                         is missing. Nothing is written.
 * @retval zvpStatusOk                     the macroblock is done.
 */
ZVP_API zvpStatus zvpiReconstructChromaIntraHalves4x4MB_H264_16s8u_P2R(int16_t **ppSrcCoeff, uint8_t *pSrcDstU,
                                                                       uint8_t *pSrcDstV, int32_t srcDstStep,
                                                                       uint32_t mode, uint32_t cbp, int32_t QP,
                                                                       uint8_t edgeFlagsTop, uint8_t edgeFlagsBottom,
                                                                       const int16_t *pQuantTableU,
                                                                       const int16_t *pQuantTableV, uint8_t bypass);

/** @} */ /* h264_macroblock_reconstruction_8_bit */

/**
 * @defgroup h264_deblocking H.264: deblocking
 *
 * The deblocking filter of H.264 (8.7.2) on the edges of one macroblock, in place: one call a plane and direction. The
 * caller derives the boundary strengths and, from the standard's tables, alpha, beta and tc0; they are used as given,
 * without any scaling for bit depth.
 *
 * Vertical edges are the lines x = 0, 4, ..., horizontal ones y = 0, 4, ...; edge 0 is that between the macroblock and
 * its neighbour. Edges are filtered in increasing order, each on what the one before has left. Along an edge the lines
 * fall into four groups; each has a strength and a tc0.
 *   - Strength 0: the group is left alone. 1 to 3: the normal filter (8.7.2.3). 4: the strong one (8.7.2.4). Any other
 *     value counts as 1 to 3 do.
 *   - A line is filtered where |p0 - q0| < alpha, |p1 - p0| < beta and |q1 - q0| < beta. So 0 in alpha or beta filters
 *     nothing.
 *   - Luma, normal: tc is tc0 + (|p2 - p0| < beta) + (|q2 - q0| < beta). p1 and q1 move where their condition holds,
 *     also if p0 and q0 do not. Chroma, normal: tc is tc0 + 1. tc keeps only the bits of the sample's width, so that a
 *     chroma tc0 of 255 in bytes leaves no room to move.
 *   - Required of all horizontal chroma edges: strength 4 in the first group filters the whole edge strongly, whatever
 *     the other groups have; without it a 4 in another group acts as 1 to 3. The second horizontal edge of a 4:2:0
 *     macroblock has the normal filter only.
 *
 * Members for deeper samples in 16-bit elements, and those for 4:2:2, take their arguments in H264DeblockEdges. There
 * alpha, beta and tc0 are 16-bit for 16-bit samples and bytes for bytes.
 *
 * Reads:  for an edge with a strength other than 0, luma four samples on either side of it, chroma two, along the
 *         edge's whole length; of an edge whose four strengths are 0 no sample at all. The arrays as each text says.
 * Writes: no more than those samples. Luma changes up to three on either side, chroma one; what does not change may be
 *         written back as it was.
 * Align:  none for samples and arrays; the record as its pointers.
 * Steps:  any value that keeps the samples read of one row from those of another, negative too; bytes with bytes,
 *         elements in H264DeblockEdges.
 * @{
 */

/** Arguments of the members for 16-bit elements and of those for 4:2:2. */
typedef struct H264DeblockEdges {
  void *pSrcDst;           /**< Top left sample of the macroblock: uint8_t or uint16_t. */
  int32_t srcDstStep;      /**< Distance from one row to the next, in samples. */
  const void *pAlpha;      /**< alpha, of the samples' type. [0] serves edge 0, [1] the others. */
  const void *pBeta;       /**< beta, of the samples' type. [0] serves edge 0, [1] the others. */
  const void *pThresholds; /**< tc0, of the samples' type: four to an edge. */
  const uint8_t *pBS;      /**< Boundary strengths, as the function says. */
  int32_t bitDepth;        /**< 16-bit samples only, 8 to 16, not checked: the largest sample is 2^bitDepth - 1. */
} H264DeblockEdges;

/**
 * Vertical luma edges of a macroblock of bytes.
 *
 * The edges x = 0, 4, 8, 12 over 16 rows.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 16: [4 * e + row / 4] for edge e
 * @param[in]     pBS          strengths, 16: [4 * e + row / 4] for edge e
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLuma_VerEdge_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Horizontal luma edges of a macroblock of bytes.
 *
 * The edges y = 0, 4, 8, 12 over 16 columns.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 16: [4 * e + column / 4] for edge e
 * @param[in]     pBS          strengths, 16: [4 * e + column / 4] for edge e
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLuma_HorEdge_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * One vertical luma edge over 8 rows of bytes, for frames with field macroblocks.
 *
 * A left macroblock edge between a frame and a field macroblock has a strength for each two rows, [row / 2]; it is
 * filtered in two calls of 8 rows.
 *
 * @param[in,out] pSrcDst      the sample behind the edge in its first row
 * @param[in]     srcDstStep   distance from one of these rows to the next, in bytes
 * @param[in]     alpha        alpha, any 32-bit value
 * @param[in]     beta         beta, any 32-bit value
 * @param[in]     pThresholds  tc0, 4 values, one to a group
 * @param[in]     pBS          strengths, 4 values, one to a group
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edge is filtered; nothing was to be done if alpha or all of pBS is 0.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLuma_VerEdge_MBAFF_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                      uint32_t alpha, uint32_t beta,
                                                                      const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Vertical edges of a 4:2:0 chroma plane of bytes.
 *
 * The edges x = 0 and 4 over 8 rows. The strengths are those of the luma edges 0 and 2.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 8: [4 * e + row / 2] for edge e
 * @param[in]     pBS          strengths, 12: [8 * e + row / 2] for edge e; [4] to [7] are not read
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_VerEdge_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                  const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                  const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Horizontal edges of a 4:2:0 chroma plane of bytes.
 *
 * The edges y = 0 and 4 over 8 columns. The strengths are those of the luma edges 0 and 2. On edge 0 the first group
 * decides about the strong filter, on edge 1 there is only the normal one.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 8: [4 * e + column / 2] for edge e
 * @param[in]     pBS          strengths, 12: [8 * e + column / 2] for edge e; [4] to [7] are not read
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_HorEdge_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                  const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                  const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Vertical edges of a 4:2:0 plane of interleaved chroma pairs.
 *
 * The edges before pairs 0 and 4 over 8 rows; both samples of a pair have the same values. Two pairs, that is 4 bytes,
 * are read on either side.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 8: [4 * e + row / 2] for edge e
 * @param[in]     pBS          strengths, 12: [8 * e + row / 2] for edge e; [4] to [7] are not read
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_VerEdge_H264_8u_C2IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                  const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                  const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Horizontal edges of a 4:2:0 plane of interleaved chroma pairs.
 *
 * The edges y = 0 and 4 over 8 pairs; both samples of a pair have the same values. On edge 0 the first group decides
 * about the strong filter, on edge 1 there is only the normal one.
 *
 * @param[in,out] pSrcDst      top left sample of the macroblock
 * @param[in]     srcDstStep   distance from one row to the next, in bytes
 * @param[in]     pAlpha       2 values: [0] for edge 0, [1] for the others
 * @param[in]     pBeta        2 values: [0] for edge 0, [1] for the others
 * @param[in]     pThresholds  tc0, 8: [4 * e + pair / 2] for edge e
 * @param[in]     pBS          strengths, 12: [8 * e + pair / 2] for edge e; [4] to [7] are not read
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_HorEdge_H264_8u_C2IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                  const uint8_t *pAlpha, const uint8_t *pBeta,
                                                                  const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * One vertical chroma edge over 4 rows of bytes, for frames with field macroblocks.
 *
 * Each row is a group.
 *
 * @param[in,out] pSrcDst      the sample behind the edge in its first row
 * @param[in]     srcDstStep   distance from one of these rows to the next, in bytes
 * @param[in]     alpha        alpha, any 32-bit value
 * @param[in]     beta         beta, any 32-bit value
 * @param[in]     pThresholds  tc0, 4 values, one to a group
 * @param[in]     pBS          strengths, 4 values, one to a group
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the edge is filtered; nothing was to be done if alpha or all of pBS is 0.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_VerEdge_MBAFF_H264_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep,
                                                                        uint32_t alpha, uint32_t beta,
                                                                        const uint8_t *pThresholds, const uint8_t *pBS);

/**
 * Vertical edges of a 4:2:2 chroma plane of bytes.
 *
 * The edges x = 0 and 4 over 16 rows. pAlpha and pBeta have 2 values; pThresholds has 8, [4 * e + row / 4] for edge e;
 * pBS has 12, of which [8 * e + row / 4] serve edge e and [4] to [7] are not read.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422VerEdge_H264_8u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Horizontal edges of a 4:2:2 chroma plane of bytes.
 *
 * The edges y = 0, 4, 8, 12 over 8 columns. pAlpha and pBeta have 2 values; pThresholds and pBS have 16,
 * [4 * e + column / 2] for edge e. The first group of each edge decides about its strong filter.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422HorEdge_H264_8u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Not provided: the vertical edge of a 4:2:2 macroblock of 8-bit samples in frames with field macroblocks.
 *
 * @param[in] pEdges  not looked at, null too
 *
 * @retval zvpStatusError  always. Nothing is read or written.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_8u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Vertical luma edges of a macroblock of 16-bit elements.
 *
 * The edges x = 0, 4, 8, 12 over 16 rows. pAlpha and pBeta have 2 values; pThresholds and pBS have 16,
 * [4 * e + row / 4] for edge e.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLumaVerEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Horizontal luma edges of a macroblock of 16-bit elements.
 *
 * The edges y = 0, 4, 8, 12 over 16 columns. pAlpha and pBeta have 2 values; pThresholds and pBS have 16,
 * [4 * e + column / 4] for edge e.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLumaHorEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Vertical edges of a 4:2:0 chroma plane of 16-bit elements.
 *
 * The edges x = 0 and 4 over 8 rows. pAlpha and pBeta have 2 values; pThresholds has 8, [4 * e + row / 2] for edge e;
 * pBS has 12, of which [8 * e + row / 2] serve edge e and [4] to [7] are not read.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChromaVerEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Horizontal edges of a 4:2:0 chroma plane of 16-bit elements.
 *
 * The edges y = 0 and 4 over 8 columns. pAlpha and pBeta have 2 values; pThresholds has 8,
 * [4 * e + column / 2] for edge e; pBS has 12, of which [8 * e + column / 2] serve edge e and
 * [4] to [7] are not read. On edge 0 the first group decides about the strong filter, edge 1 has the normal one only.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChromaHorEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * One vertical luma edge over 8 rows of 16-bit elements, for frames with field macroblocks.
 *
 * pAlpha and pBeta have 1 value, pThresholds and pBS 4, [row / 2]. srcDstStep leads from one of these rows to the next.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edge is filtered; nothing was to be done if alpha or all of pBS is 0.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLumaVerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * One vertical chroma edge over 4 rows of 16-bit elements, for frames with field macroblocks.
 *
 * pAlpha and pBeta have 1 value, pThresholds and pBS 4, [row]. srcDstStep leads from one of these rows to the next.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edge is filtered; nothing was to be done if alpha or all of pBS is 0.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChromaVerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Vertical edges of a 4:2:2 chroma plane of 16-bit elements.
 *
 * The edges x = 0 and 4 over 16 rows. pAlpha and pBeta have 2 values; pThresholds has 8, [4 * e + row / 4] for edge e;
 * pBS has 12, of which [8 * e + row / 4] serve edge e and [4] to [7] are not read.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422VerEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Horizontal edges of a 4:2:2 chroma plane of 16-bit elements.
 *
 * The edges y = 0, 4, 8, 12 over 8 columns. pAlpha and pBeta have 2 values; pThresholds and pBS have 16,
 * [4 * e + column / 2] for edge e. The first group of each edge decides about its strong filter.
 *
 * @param[in] pEdges  the arguments; the record itself is only read
 *
 * @retval zvpStatusNullPointer  pEdges or a pointer in it is null. The only check.
 * @retval zvpStatusOk           the edges are filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422HorEdge_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/**
 * Not provided: the vertical edge of a 4:2:2 macroblock of deeper samples in frames with field macroblocks.
 *
 * @param[in] pEdges  not looked at, null too
 *
 * @retval zvpStatusError  always. Nothing is read or written.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma422VerEdgeMBAFF_H264_16u_C1IR(const H264DeblockEdges *pEdges);

/** @} */ /* h264_deblocking */

/**
 * @defgroup h264_4x4_transform_and_quantization H.264: 4x4 transform and quantization
 *
 * The arithmetic of residual blocks: the core transform both ways, the Hadamard transforms of DC blocks, quantization
 * and scaling (H.264 8.5.8 to 8.5.12, and their counterparts in an encoder), and the blocks of switching pictures
 * (8.6). There are three sets: plain transforms and quantization by themselves (zvpiTransformResidual4x4...,
 * zvpiQuantizeResidual4x4...); both together with the scales of flat matrices; and both together with scaling lists of
 * the caller's, 4:2:2 chroma DC and 32-bit members for samples of up to 14 bits (zvpiTransformQuant...4x4 and so on).
 *
 * A block is 16 elements in raster order, one row behind the other without gaps unless a text has a step; DC blocks of
 * chroma are 4 elements, two rows of two, or for 4:2:2 8 elements, four rows of two.
 *   - Levels: (|c| * factor + rounding) >> shift with c's sign, where the rounding is a third of a step for intra and a
 *     sixth for inter blocks. The default factor at QP is the usual one of encoders, 13107 for position 0 at QP 0, with
 *     shift QP / 6 + 15; a caller's factors have shift QP / 6 + 11, as zvpiGenScaleLevel4x4_H264_8u16s_C1() makes them.
 *     DC blocks use the factor of element 0 and a shift larger by one.
 *   - Counts: the number of levels other than 0 and the largest pScanOrder[i] of such a level i, 0 without any. The
 *     members that transform and quantize give the number negative if element 0 is one of them, so that -1 is a block
 *     that has a DC alone.
 *   - 16-bit elements keep their low 16 bits, also between the two passes of an inverse transform, of a Hadamard
 *     transform, and of what is scaled; 32-bit elements their low 32. The products of 32-bit coefficients and factors
 *     are formed in full.
 *
 * Reads and writes: the blocks, lists and counts as the parameters tell, and no other byte. All input is read before
 * any output is written, so that blocks may coincide where a text does not say otherwise.
 * @{
 */

/**
 * Forward core transform of a block of 16-bit elements.
 *
 * Along the rows, then along the columns; nothing is scaled. The sums wrap at the element's width.
 *
 * @param[in]  pSrc  16 residuals
 * @param[out] pDst  16 coefficients; may be pSrc
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is transformed.
 */
ZVP_API zvpStatus zvpiTransformResidual4x4Fwd_H264_16s_C1(const int16_t *pSrc, int16_t *pDst);

/**
 * Forward core transform of a block of 32-bit elements.
 *
 * Along the rows, then along the columns; nothing is scaled. The sums wrap at the element's width.
 *
 * @param[in]  pSrc  16 residuals
 * @param[out] pDst  16 coefficients; may be pSrc
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is transformed.
 */
ZVP_API zvpStatus zvpiTransformResidual4x4Fwd_H264_32s_C1(const int32_t *pSrc, int32_t *pDst);

/**
 * Inverse core transform of a block of 16-bit elements (H.264 8.5.12.2).
 *
 * Along the rows, then along the columns, ending in (x + 32) >> 6; nothing is scaled.
 *
 * @param[in]  pSrc  16 scaled coefficients
 * @param[out] pDst  16 residuals; may be pSrc
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is transformed.
 */
ZVP_API zvpStatus zvpiTransformResidual4x4Inv_H264_16s_C1(const int16_t *pSrc, int16_t *pDst);

/**
 * Inverse core transform of a block of 32-bit elements (H.264 8.5.12.2).
 *
 * Along the rows, then along the columns, ending in (x + 32) >> 6; nothing is scaled.
 *
 * @param[in]  pSrc  16 scaled coefficients
 * @param[out] pDst  16 residuals; may be pSrc
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is transformed.
 */
ZVP_API zvpStatus zvpiTransformResidual4x4Inv_H264_32s_C1(const int32_t *pSrc, int32_t *pDst);

/**
 * Quantization of a block of 16-bit coefficients.
 *
 * The shift is QP / 6 + 11 with a table and QP / 6 + 15 without.
 *
 * @param[in]  pSrc         16 coefficients
 * @param[out] pDst         16 levels; may be pSrc
 * @param[out] pNumNonZero  the number of levels other than 0, never negative
 * @param[out] pLastCoeff   the largest scan position of a level other than 0
 * @param[in]  pQuantTable  16 factors by raster position, or null for the default ones
 * @param[in]  pScanOrder   16 values: the scan position of each raster position
 * @param[in]  QP           the quantizer, 0 to 51
 * @param[in]  isIntra      0: inter rounding; else intra rounding
 *
 * @retval zvpStatusNullPointer  a pointer other than pQuantTable is null.
 * @retval zvpStatusOutOfRange   QP is above 51. A negative QP is not refused, and acts as 0.
 * @retval zvpStatusOk           the block is quantized.
 */
ZVP_API zvpStatus zvpiQuantizeResidual4x4Fwd_H264_16s_C1(const int16_t *pSrc, int16_t *pDst, int32_t *pNumNonZero,
                                                         int32_t *pLastCoeff, const int16_t *pQuantTable,
                                                         const int16_t *pScanOrder, int32_t QP, int32_t isIntra);

/**
 * Quantization of a block of 32-bit coefficients.
 *
 * The shift is QP / 6 + 11 with a table and QP / 6 + 15 without.
 *
 * @param[in]  pSrc         16 coefficients
 * @param[out] pDst         16 levels; may be pSrc
 * @param[out] pNumNonZero  the number of levels other than 0, never negative
 * @param[out] pLastCoeff   the largest scan position of a level other than 0
 * @param[in]  pQuantTable  16 factors by raster position, or null for the default ones
 * @param[in]  pScanOrder   16 values: the scan position of each raster position
 * @param[in]  QP           the quantizer, 0 to 87
 * @param[in]  isIntra      0: inter rounding; else intra rounding
 *
 * @retval zvpStatusNullPointer  a pointer other than pQuantTable is null.
 * @retval zvpStatusOutOfRange   QP is above 87. A negative QP is not refused, and acts as 0.
 * @retval zvpStatusOk           the block is quantized.
 */
ZVP_API zvpStatus zvpiQuantizeResidual4x4Fwd_H264_32s_C1(const int32_t *pSrc, int32_t *pDst, int32_t *pNumNonZero,
                                                         int32_t *pLastCoeff, const int32_t *pQuantTable,
                                                         const int16_t *pScanOrder, int32_t QP, int32_t isIntra);

/**
 * Quantization of a block of 16-bit coefficients to 32-bit levels.
 *
 * The shift is QP / 6 + 11.
 *
 * @param[in]  pSrc         16 coefficients
 * @param[out] pDst         16 levels; must not overlap pSrc unless it is pSrc
 * @param[out] pNumNonZero  the number of levels other than 0, never negative
 * @param[out] pLastCoeff   the largest scan position of a level other than 0
 * @param[in]  pQuantTable  16 factors by raster position
 * @param[in]  pScanOrder   16 values: the scan position of each raster position
 * @param[in]  QP           the quantizer, 0 to 51
 * @param[in]  isIntra      0: inter rounding; else intra rounding
 *
 * @retval zvpStatusNullPointer  a pointer is null, pQuantTable too.
 * @retval zvpStatusOutOfRange   QP is below 0 or above 51.
 * @retval zvpStatusOk           the block is quantized.
 */
ZVP_API zvpStatus zvpiQuantizeResidual4x4Fwd_H264_16s32s_C1(const int16_t *pSrc, int32_t *pDst, int32_t *pNumNonZero,
                                                            int32_t *pLastCoeff, const int16_t *pQuantTable,
                                                            const int16_t *pScanOrder, int32_t QP, int32_t isIntra);

/**
 * Forward core transform and quantization of a block.
 *
 * @param[in,out] pSrcDst     16 residuals in, 16 levels out
 * @param[in]     QP          the quantizer, 0 to 51
 * @param[out]    pNumLevels  the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra     low byte 0: inter rounding; else intra rounding
 * @param[in]     pScanOrder  16 values: the scan position of each raster position
 * @param[out]    pLastCoeff  the largest scan position of a level other than 0
 *
 * @retval zvpStatusNullPointer    a pointer is null.
 * @retval zvpStatusOutOfRange     QP is not in 0 to 51.
 * @retval zvpStatusValueTooLarge  a level is above 2063; a negative one never counts as such. pSrcDst holds the levels
 *                                 before it in raster order and coefficients from there on; the counts are of those
 *                                 levels, their number without a sign.
 * @retval zvpStatusOk             the block holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantResidual_H264_16s_C1I(int16_t *pSrcDst, int32_t QP, int8_t *pNumLevels,
                                                          int32_t isIntra, const int16_t *pScanOrder,
                                                          uint8_t *pLastCoeff);

/**
 * Forward Hadamard transform and quantization of the DC block of an Intra16x16 macroblock.
 *
 * The transform halves its sums. The rounding is always that of intra blocks.
 *
 * @param[in,out] pDC            16 DC coefficients in, working space, 16 levels out
 * @param[in,out] pTBlock        16 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer, 0 to 51
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     needTransform  low byte 0: pTBlock is transformed already, pDC is only written
 * @param[in]     pScanOrder     16 values: the scan position of each raster position
 * @param[out]    pLastCoeff     the largest scan position of a level other than 0
 *
 * @retval zvpStatusNullPointer    a pointer is null.
 * @retval zvpStatusOutOfRange     QP is not in 0 to 51.
 * @retval zvpStatusValueTooLarge  the magnitude of a level is above 2063. pDC holds the levels before it
 *                                 and is undefined from there on; the counts are of those levels, their number without
 *                                 a sign.
 * @retval zvpStatusOk             pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantLumaDC_H264_16s_C1I(int16_t *pDC, int16_t *pTBlock, int32_t QP, int8_t *pNumLevels,
                                                        int32_t needTransform, const int16_t *pScanOrder,
                                                        uint8_t *pLastCoeff);

/**
 * Forward transform and quantization of a 2x2 DC block of chroma.
 *
 * @param[in,out] pDC            4 DC coefficients in, 4 levels out
 * @param[in,out] pTBlock        4 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer of chroma, 0 to 39
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra        low byte 0: inter rounding; else intra rounding
 * @param[in]     needTransform  low byte 0: pTBlock is transformed already, pDC is only written
 *
 * @retval zvpStatusNullPointer    a pointer is null.
 * @retval zvpStatusOutOfRange     QP is not in 0 to 39.
 * @retval zvpStatusValueTooLarge  the magnitude of a level is above 2063. pDC holds the levels before it
 *                                 and is undefined from there on; the counts are of those levels, their number without
 *                                 a sign.
 * @retval zvpStatusOk             pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantChromaDC_H264_16s_C1I(int16_t *pDC, int16_t *pTBlock, int32_t QP,
                                                          int8_t *pNumLevels, int32_t isIntra, int32_t needTransform);

/**
 * Scaling and inverse transform of a block, rows at a step.
 *
 * Scaled elements keep their low 16 bits.
 *
 * @param[in,out] pSrcDst  levels in, residuals out: 8 bytes of each of 4 rows
 * @param[in]     step     distance from one row to the next in bytes, at least 8; may be odd
 * @param[in]     pDC      element 0 as it comes scaled from a DC block; null: it is scaled as the others
 * @param[in]     hasAC    0: element 0 alone is used, all residuals are (element 0 + 32) >> 6; else all elements are
 * @param[in]     QP       the quantizer, 0 to 51
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusBadStep      step is below 8.
 * @retval zvpStatusOk           the block holds the residuals.
 */
ZVP_API zvpStatus zvpiDequantTransformResidual_H264_16s_C1I(int16_t *pSrcDst, int32_t step, const int16_t *pDC,
                                                            int32_t hasAC, int32_t QP);

/**
 * Scaling and inverse transform of a block, added to a prediction of bytes.
 *
 * Residuals are clamped to -256..256 and the sums to 0..255, which is the same as clamping the sums alone.
 *
 * @param[in]  pPred     prediction: 4 bytes of each of 4 rows
 * @param[in]  pCoef     16 levels; only read. Null: as with hasAC 0
 * @param[in]  pDC       element 0 as it comes scaled from a DC block; null: it is scaled as the others
 * @param[out] pDst      samples: 4 bytes of each of 4 rows; may be pPred
 * @param[in]  predStep  distance from one row of pPred to the next in bytes, any value
 * @param[in]  dstStep   distance from one row of pDst to the next in bytes, any value
 * @param[in]  QP        the quantizer, 0 to 51
 * @param[in]  hasAC     0: element 0 alone is used; else all elements are
 *
 * @retval zvpStatusNullPointer  pPred or pDst is null; or pCoef and pDC both are.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           pDst holds the samples.
 */
ZVP_API zvpStatus zvpiDequantTransformResidualAndAdd_H264_16s_C1I(const uint8_t *pPred, const int16_t *pCoef,
                                                                  const int16_t *pDC, uint8_t *pDst, int32_t predStep,
                                                                  int32_t dstStep, int32_t QP, int32_t hasAC);

/**
 * Inverse transform and scaling of the DC block of an Intra16x16 macroblock (H.264 8.5.10).
 *
 * The result is element 0 of each of the 16 blocks, for their pDC.
 *
 * @param[in,out] pSrcDst  16 levels in, 16 scaled coefficients out
 * @param[in]     QP       the quantizer, 0 to 51
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformDequantLumaDC_H264_16s_C1I(int16_t *pSrcDst, int32_t QP);

/**
 * Inverse transform and scaling of a 2x2 DC block of chroma (H.264 8.5.11).
 *
 * @param[in,out] pSrcDst  4 levels in, 4 scaled coefficients out
 * @param[in]     QP       the quantizer of chroma, 0 to 51
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformDequantChromaDC_H264_16s_C1I(int16_t *pSrcDst, int32_t QP);

/**
 * Forward core transform of a prediction of bytes, for switching pictures.
 *
 * @param[in]  pSrc     4 bytes of each of 4 rows
 * @param[in]  srcStep  distance from one row to the next in bytes, any value
 * @param[out] pDst     16 coefficients
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is transformed.
 */
ZVP_API zvpStatus zvpiTransformPrediction_H264_8u16s_C1(const uint8_t *pSrc, int32_t srcStep, int16_t *pDst);

/**
 * Reconstruction of a luma block of a switching picture (H.264 8.6.1).
 *
 * Levels are added to the transformed prediction, the sums quantized and scaled by QS, transformed and clipped.
 *
 * @param[in,out] pSrcDst       16 levels in, 16 samples of 0 to 255 out
 * @param[in]     pPredictCoef  16 coefficients of zvpiTransformPrediction_H264_8u16s_C1()
 * @param[in]     pDC           element 0 before the inverse transform, as it comes from elsewhere; or null
 * @param[in]     hasAC         0: levels 1 to 15 count as 0 and are not read
 * @param[in]     QP            the quantizer of the levels, 0 to 51; not checked, a table is read by it
 * @param[in]     QS            the quantizer of the sum, 0 to 51; not checked, a table is read by it
 * @param[in]     isSwitching   0: levels are scaled by QP, as in primary SP pictures; else by QS
 *
 * @retval zvpStatusNullPointer  pSrcDst or pPredictCoef is null. The only check.
 * @retval zvpStatusOk           pSrcDst holds the samples.
 */
ZVP_API zvpStatus zvpiDequantTransformResidual_SISP_H264_16s_C1I(int16_t *pSrcDst, const int16_t *pPredictCoef,
                                                                 const int16_t *pDC, int32_t hasAC, int32_t QP,
                                                                 int32_t QS, int32_t isSwitching);

/**
 * Reconstruction of a 2x2 chroma DC block of a switching picture (H.264 8.6.2).
 *
 * @param[in,out] pSrcDst      4 levels in, 4 scaled coefficients out
 * @param[in]     pPredictDC   element 0 of the prediction's 4 transformed blocks
 * @param[in]     QP           the quantizer of the levels, 0 to 51; not checked, a table is read by it
 * @param[in]     QS           the quantizer of the sum, 0 to 51; not checked, a table is read by it
 * @param[in]     isSwitching  0: levels are scaled by QP, as in primary SP pictures; else by QS
 *
 * @retval zvpStatusNullPointer  a pointer is null. The only check.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformDequantChromaDC_SISP_H264_16s_C1I(int16_t *pSrcDst, const int16_t *pPredictDC,
                                                                 int32_t QP, int32_t QS, int32_t isSwitching);

/**
 * Forward core transform and quantization of a block to 16-bit levels.
 *
 * Coefficients are 16-bit too. No level is refused.
 *
 * @param[in]  pSrc          16 residuals
 * @param[out] pDst          16 levels; may be pSrc
 * @param[in]  QP            the quantizer, 0 to 51
 * @param[out] pNumLevels    the number of levels other than 0, negative if element 0 is one
 * @param[in]  isIntra       0: inter rounding; else intra rounding
 * @param[in]  pScanOrder    16 values: the scan position of each raster position
 * @param[out] pLastCoeff    the largest scan position of a level other than 0
 * @param[in]  pScaleLevels  16 factors by raster position, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           pDst holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwd4x4_H264_16s_C1(const int16_t *pSrc, int16_t *pDst, int32_t QP,
                                                       int32_t *pNumLevels, int32_t isIntra, const int16_t *pScanOrder,
                                                       int32_t *pLastCoeff, const int16_t *pScaleLevels);

/**
 * Forward core transform and quantization of a block to 32-bit levels.
 *
 * Coefficients are 32-bit too. No level is refused.
 *
 * @param[in]  pSrc          16 residuals
 * @param[out] pDst          16 levels
 * @param[in]  QP            the quantizer, 0 to 87
 * @param[out] pNumLevels    the number of levels other than 0, negative if element 0 is one
 * @param[in]  isIntra       0: inter rounding; else intra rounding
 * @param[in]  pScanOrder    16 values: the scan position of each raster position
 * @param[out] pLastCoeff    the largest scan position of a level other than 0
 * @param[in]  pScaleLevels  16 factors by raster position, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 87.
 * @retval zvpStatusOk           pDst holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwd4x4_H264_16s32s_C1(const int16_t *pSrc, int32_t *pDst, int32_t QP,
                                                          int32_t *pNumLevels, int32_t isIntra,
                                                          const int16_t *pScanOrder, int32_t *pLastCoeff,
                                                          const int16_t *pScaleLevels);

/**
 * Forward Hadamard transform and quantization of a luma DC block of 16-bit elements.
 *
 * The transform halves its sums. No level is refused.
 *
 * @param[in,out] pDC           16 DC coefficients in, 16 levels out
 * @param[out]    pTBlock       16 transformed coefficients
 * @param[in]     QP            the quantizer, 0 to 51
 * @param[out]    pNumLevels    the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra       0: inter rounding; else intra rounding
 * @param[in]     pScanOrder    16 values: the scan position of each raster position
 * @param[out]    pLastCoeff    the largest scan position of a level other than 0
 * @param[in]     pScaleLevels  factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdLumaDC4x4_H264_16s_C1I(int16_t *pDC, int16_t *pTBlock, int32_t QP,
                                                              int32_t *pNumLevels, int32_t isIntra,
                                                              const int16_t *pScanOrder, int32_t *pLastCoeff,
                                                              const int16_t *pScaleLevels);

/**
 * Forward Hadamard transform and quantization of a luma DC block of 32-bit elements.
 *
 * The transform halves its sums. No level is refused.
 *
 * @param[in,out] pDC           16 DC coefficients in, 16 levels out
 * @param[out]    pTBlock       16 transformed coefficients
 * @param[in]     QP            the quantizer, 0 to 87
 * @param[out]    pNumLevels    the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra       0: inter rounding; else intra rounding
 * @param[in]     pScanOrder    16 values: the scan position of each raster position
 * @param[out]    pLastCoeff    the largest scan position of a level other than 0
 * @param[in]     pScaleLevels  factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 87.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdLumaDC4x4_H264_32s_C1I(int32_t *pDC, int32_t *pTBlock, int32_t QP,
                                                              int32_t *pNumLevels, int32_t isIntra,
                                                              const int16_t *pScanOrder, int32_t *pLastCoeff,
                                                              const int16_t *pScaleLevels);

/**
 * Forward transform and quantization of a chroma DC block of 4:2:0, 16-bit elements.
 *
 * No level is refused.
 *
 * @param[in,out] pDC            4 DC coefficients in, 4 levels out
 * @param[in,out] pTBlock        4 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer of chroma, 0 to 39
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra        0: inter rounding; else intra rounding
 * @param[in]     needTransform  0: pTBlock is transformed already, pDC is only written
 * @param[in]     pScaleLevels   factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 39.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdChromaDC2x2_H264_16s_C1I(int16_t *pDC, int16_t *pTBlock, int32_t QP,
                                                                int32_t *pNumLevels, int32_t isIntra,
                                                                int32_t needTransform, const int16_t *pScaleLevels);

/**
 * Forward transform and quantization of a chroma DC block of 4:2:0, 32-bit elements.
 *
 * No level is refused.
 *
 * @param[in,out] pDC            4 DC coefficients in, 4 levels out
 * @param[in,out] pTBlock        4 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer of chroma, 0 to 75
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra        0: inter rounding; else intra rounding
 * @param[in]     needTransform  0: pTBlock is transformed already, pDC is only written
 * @param[in]     pScaleLevels   factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 75.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdChromaDC2x2_H264_32s_C1I(int32_t *pDC, int32_t *pTBlock, int32_t QP,
                                                                int32_t *pNumLevels, int32_t isIntra,
                                                                int32_t needTransform, const int16_t *pScaleLevels);

/**
 * Forward transform and quantization of a chroma DC block of 4:2:2, 16-bit elements.
 *
 * Factor and shift are those of QP + 3. The rounding is 682 for intra and, required, 342 for inter blocks, both shifted
 * to the left by the shift less 11. No level is refused.
 *
 * @param[in,out] pDC            8 DC coefficients in, 8 levels out
 * @param[in,out] pTBlock        8 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer of chroma, 0 to 39
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra        0: inter rounding; else intra rounding
 * @param[in]     needTransform  0: pTBlock is transformed already, pDC is only written
 * @param[in]     pScaleLevels   factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 39.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdChromaDC2x4_H264_16s_C1I(int16_t *pDC, int16_t *pTBlock, int32_t QP,
                                                                int32_t *pNumLevels, int32_t isIntra,
                                                                int32_t needTransform, const int16_t *pScaleLevels);

/**
 * Forward transform and quantization of a chroma DC block of 4:2:2, 32-bit elements.
 *
 * Factor and shift are those of QP + 3. The rounding is 682 for intra and, required, 342 for inter blocks, both shifted
 * to the left by the shift less 11. No level is refused.
 *
 * @param[in,out] pDC            8 DC coefficients in, 8 levels out
 * @param[in,out] pTBlock        8 transformed coefficients: written with needTransform, only read without
 * @param[in]     QP             the quantizer of chroma, 0 to 75
 * @param[out]    pNumLevels     the number of levels other than 0, negative if element 0 is one
 * @param[in]     isIntra        0: inter rounding; else intra rounding
 * @param[in]     needTransform  0: pTBlock is transformed already, pDC is only written
 * @param[in]     pScaleLevels   factors, of which the first alone is read, or null for the default ones
 *
 * @retval zvpStatusNullPointer  a pointer other than pScaleLevels is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 75.
 * @retval zvpStatusOk           pDC holds the levels.
 */
ZVP_API zvpStatus zvpiTransformQuantFwdChromaDC2x4_H264_32s_C1I(int32_t *pDC, int32_t *pTBlock, int32_t QP,
                                                                int32_t *pNumLevels, int32_t isIntra,
                                                                int32_t needTransform, const int16_t *pScaleLevels);

/**
 * Inverse transform and scaling of a luma DC block of 16-bit elements (H.264 8.5.10).
 *
 * @param[in,out] pSrcDst      16 levels in, 16 scaled coefficients out
 * @param[in]     QP           the quantizer, 0 to 51
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvLumaDC4x4_H264_16s_C1I(int16_t *pSrcDst, int32_t QP, const int16_t *pScaleLevel);

/**
 * Inverse transform and scaling of a luma DC block of 32-bit elements (H.264 8.5.10).
 *
 * @param[in,out] pSrcDst      16 levels in, 16 scaled coefficients out
 * @param[in]     QP           the quantizer, 0 to 87
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 87.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvLumaDC4x4_H264_32s_C1I(int32_t *pSrcDst, int32_t QP, const int16_t *pScaleLevel);

/**
 * Inverse transform and scaling of a chroma DC block of 4:2:0, 16-bit elements (H.264 8.5.11).
 *
 * @param[in,out] pSrcDst      4 levels in, 4 scaled coefficients out
 * @param[in]     QP           the quantizer of chroma, 0 to 39
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 39.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvChromaDC2x2_H264_16s_C1I(int16_t *pSrcDst, int32_t QP,
                                                                const int16_t *pScaleLevel);

/**
 * Inverse transform and scaling of a chroma DC block of 4:2:0, 32-bit elements (H.264 8.5.11).
 *
 * @param[in,out] pSrcDst      4 levels in, 4 scaled coefficients out
 * @param[in]     QP           the quantizer of chroma, 0 to 75
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 75.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvChromaDC2x2_H264_32s_C1I(int32_t *pSrcDst, int32_t QP,
                                                                const int16_t *pScaleLevel);

/**
 * Inverse transform and scaling of a chroma DC block of 4:2:2, 16-bit elements (H.264 8.5.11).
 *
 * The scale is that of QP + 3; a list of the caller's is to be made for (QP + 3) % 6.
 *
 * @param[in,out] pSrcDst      8 levels in, 8 scaled coefficients out
 * @param[in]     QP           the quantizer of chroma, 0 to 39
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 39.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvChromaDC2x4_H264_16s_C1I(int16_t *pSrcDst, int32_t QP,
                                                                const int16_t *pScaleLevel);

/**
 * Inverse transform and scaling of a chroma DC block of 4:2:2, 32-bit elements (H.264 8.5.11).
 *
 * The scale is that of QP + 3; a list of the caller's is to be made for (QP + 3) % 6.
 *
 * @param[in,out] pSrcDst      8 levels in, 8 scaled coefficients out
 * @param[in]     QP           the quantizer of chroma, 0 to 75
 * @param[in]     pScaleLevel  scales, of which the first alone is read, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 75.
 * @retval zvpStatusOk           the block is scaled.
 */
ZVP_API zvpStatus zvpiTransformQuantInvChromaDC2x4_H264_32s_C1I(int32_t *pSrcDst, int32_t QP,
                                                                const int16_t *pScaleLevel);

/**
 * Scaling and inverse transform of a block of 16-bit levels, added to a prediction.
 *
 * Sums are clipped to 0..255.
 *
 * @param[in]  pPred         prediction: 4 bytes of each of 4 rows
 * @param[in]  predStep      distance from one row of pPred to the next in bytes, any value
 * @param[in]  pSrcDst       16 levels; only read
 * @param[in]  pDC           element 0 as it comes scaled from a DC block; null: it is scaled as the others
 * @param[out] pDst          samples: 4 bytes of each of 4 rows; may be pPred
 * @param[in]  dstStep       distance from one row of pDst to the next in bytes, any value
 * @param[in]  QP            the quantizer, 0 to 51
 * @param[in]  hasAC         0: element 0 alone is used; else all elements are
 * @param[in]  pScaleLevels  16 scales by raster position, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pPred, pSrcDst or pDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 51.
 * @retval zvpStatusOk           pDst holds the samples.
 */
ZVP_API zvpStatus zvpiTransformQuantInvAddPred4x4_H264_16s_C1IR(const uint8_t *pPred, int32_t predStep,
                                                                const int16_t *pSrcDst, const int16_t *pDC,
                                                                uint8_t *pDst, int32_t dstStep, int32_t QP,
                                                                int32_t hasAC, const int16_t *pScaleLevels);

/**
 * Scaling and inverse transform of a block of 32-bit levels, added to a prediction.
 *
 * Samples are 16-bit elements; sums are clipped to 0..2^bitDepth - 1.
 *
 * @param[in]  pPred         prediction: 8 bytes of each of 4 rows
 * @param[in]  predStep      distance from one row of pPred to the next in bytes, any value
 * @param[in]  pSrcDst       16 levels; only read
 * @param[in]  pDC           element 0 as it comes scaled from a DC block; null: it is scaled as the others
 * @param[out] pDst          samples: 8 bytes of each of 4 rows; may be pPred
 * @param[in]  dstStep       distance from one row of pDst to the next in bytes, any value
 * @param[in]  QP            the quantizer, 0 to 87
 * @param[in]  hasAC         0: element 0 alone is used; else all elements are
 * @param[in]  bitDepth      bits of a sample, 9 to 14
 * @param[in]  pScaleLevels  16 scales by raster position, or null for those of flat lists
 *
 * @retval zvpStatusNullPointer  pPred, pSrcDst or pDst is null.
 * @retval zvpStatusOutOfRange   QP is not in 0 to 87, or bitDepth not in 9 to 14.
 * @retval zvpStatusOk           pDst holds the samples.
 */
ZVP_API zvpStatus zvpiTransformQuantInvAddPred4x4_H264_32s_C1IR(const uint16_t *pPred, int32_t predStep,
                                                                const int32_t *pSrcDst, const int32_t *pDC,
                                                                uint16_t *pDst, int32_t dstStep, int32_t QP,
                                                                int32_t hasAC, int32_t bitDepth,
                                                                const int16_t *pScaleLevels);

/**
 * Scales and factors of a scaling list, for the members with pScaleLevels.
 *
 * With l an entry of the list: the scale is l * normAdjust4x4 (H.264 8.5.9); the factor is the default one, f,
 * divided by l: q = (floor(65536 / l) * f) >> 16, or q + 1 unless q * l > f - l. 65536 / l counts as
 * 65535 for l = 1, as 0 for 0.
 *
 * @param[in]  pScalingList    16 entries in raster order
 * @param[out] pInvLevelScale  16 scales for the inverse members
 * @param[out] pLevelScale     16 factors for the forward members
 * @param[in]  qpRem           QP % 6
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusOutOfRange   qpRem is not in 0 to 5.
 * @retval zvpStatusOk           the lists are made.
 */
ZVP_API zvpStatus zvpiGenScaleLevel4x4_H264_8u16s_C1(const uint8_t *pScalingList, int16_t *pInvLevelScale,
                                                     int16_t *pLevelScale, int32_t qpRem);

/** @} */ /* h264_4x4_transform_and_quantization */

/**
 * @defgroup h263_h_263_coefficient_coding H.263 coefficient coding
 *
 * The transform coefficients of one 8x8 block of ITU-T H.263: the intra DC and the TCOEF code of (LAST, RUN, LEVEL)
 * events (5.4), read, written, or read and dequantized (6.2.1) in one go. Two flags, on when any of their bits is set,
 * choose the mode:
 *   - advIntraFlag, Annex I: the code of the annex; the DC is an ordinary coefficient at position 0.
 *   - modQuantFlag, Annex T: an escape whose LEVEL is -128 is followed by the level in 11 bits; nothing is clipped.
 *
 * The block is 64 values in raster order. A position counts along the scan; the coefficient at position p is element
 * scan[p] of the block. Where there is an argument scan, 0 is the zigzag scan, 1 the alternate vertical and 2 the
 * alternate horizontal scan; what other values mean differs, and each text says it.
 *
 * The cursor. *ppBitStream points to bytes whose top bit comes first, *pBitOffset, 0 to 7, counts the bits of that byte
 * that are used up. On return the cursor stands on the first bit not consumed or not written. No length is passed.
 *
 * Reading. A block takes at most 64 events of 22 bits, 33 with modQuantFlag; a damaged one is given up at the 65th at
 * the latest. Look-ahead: up to four bytes behind the byte that holds the last bit consumed. When a reader returns
 * zvpStatusBadVlcCode the cursor is where it was before the block's events, the block holds the coefficients that were
 * read, zeros elsewhere, and *pIndxLastNonZero is the position of the last of them, or the position before the first.
 *
 * Writing. Of the first byte the bits in front of the cursor stay; all other bytes that the codes touch are written
 * whole, with zeros behind the last code. A byte that no code reaches is not written. A block takes at most 64 events.
 *
 * Align: none for streams and blocks; the cursor's pointer as a pointer.
 * @{
 */

/**
 * Reads the DC of an intra block, 8 bits (H.263 5.4.1).
 *
 * @param[in,out] ppBitStream  address of the pointer to the current byte
 * @param[in,out] pBitOffset   bits of that byte that are used up, 0 to 7
 * @param[out]    pDC          receives the value: 1 to 127, 129 to 254 as they stand, 128 for the code 255
 *
 * Reads: the byte at the cursor and, if the offset is not 0, the one behind it.
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, *ppBitStream or pDC is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    the code is 0 or 128. Cursor and *pDC are as before the call.
 * @retval zvpStatusOk            *pDC is written, the cursor one byte on.
 */
ZVP_API zvpStatus zvpiDecodeDCIntra_H263_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pDC);

/**
 * Reads the coefficients of an inter block, from position 0 on.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[out]    pCoef             64 levels, all written
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     modQuantFlag      Annex T
 * @param[in]     scan              0 zigzag, 1 vertical, 2 horizontal; others: position p is element p
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, *ppBitStream, pCoef or pIndxLastNonZero is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    no code of the table; an escape with LEVEL 0, or with -128 unless modQuantFlag is on;
 *                                or a position past 63, whose coefficient is not stored.
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsInter_H263_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pCoef,
                                                   int32_t *pIndxLastNonZero, int32_t modQuantFlag, int32_t scan);

/**
 * Reads the coefficients of an intra block: from position 1 on, pCoef[0] staying as it is, on failure too; with
 * advIntraFlag from position 0 on, by the code of Annex I.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[in,out] pCoef             64 levels, all written but for the DC
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     advIntraFlag      Annex I
 * @param[in]     modQuantFlag      Annex T
 * @param[in]     scan              0 zigzag, 1 vertical, 2 horizontal; others: position p is element p
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, *ppBitStream, pCoef or pIndxLastNonZero is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    as in zvpiDecodeCoeffsInter_H263_1u16s().
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsIntra_H263_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pCoef,
                                                   int32_t *pIndxLastNonZero, int32_t advIntraFlag,
                                                   int32_t modQuantFlag, int32_t scan);

/**
 * Reads and dequantizes the coefficients of an inter block in zigzag order (H.263 6.2.1).
 *
 * A level v becomes sign(v) * (|v| * 2 * QP + q), q being QP if that is odd, else QP - 1. The result is clipped to
 * -2048..2047; with modQuantFlag it is not, its low 16 bits are stored, and a level 0, which an 11-bit escape can
 * carry, becomes q.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[out]    pCoef             64 coefficients, all written
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     QP                quantizer, 1 to 31
 * @param[in]     modQuantFlag      Annex T
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, *ppBitStream, pCoef or pIndxLastNonZero is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadQuantizer  QP is not 1 to 31.
 * @retval zvpStatusBadVlcCode    as in zvpiDecodeCoeffsInter_H263_1u16s().
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiReconstructCoeffsInter_H263_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset,
                                                        int16_t *pCoef, int32_t *pIndxLastNonZero, int32_t QP,
                                                        int32_t modQuantFlag);

/**
 * Reads and dequantizes an intra block, its DC included.
 *
 * Without advIntraFlag: the 8-bit DC comes first and becomes pCoef[0], times 8, or 1024 for the code 255. If the block
 * is coded, its events follow from position 1 on, in zigzag order and dequantized as in
 * zvpiReconstructCoeffsInter_H263_1u16s(); if not, *pIndxLastNonZero is 0 and nothing but pCoef[0] is written: the
 * caller clears the rest.
 *
 * With advIntraFlag the events start at position 0, in the order that scan says, and a level v becomes v * 2 * QP, of
 * which the low 16 bits are stored (H.263 I.3).
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[out]    pCoef             64 coefficients, all written but for a block that is not coded
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     coded             not 0: events follow the DC; without effect if advIntraFlag is on
 * @param[in]     QP                quantizer, 1 to 31
 * @param[in]     advIntraFlag      Annex I
 * @param[in]     scan              with advIntraFlag: 1 vertical, 2 horizontal, others zigzag; else without effect
 * @param[in]     modQuantFlag      Annex T
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, *ppBitStream, pCoef or pIndxLastNonZero is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadQuantizer  QP is not 1 to 31.
 * @retval zvpStatusBadVlcCode    the DC's code is 0 or 128: *pIndxLastNonZero is -1, cursor and block are as before the
 *                                call. Or as in zvpiDecodeCoeffsInter_H263_1u16s(): then the cursor stands behind the
 *                                DC, if there is one, and pCoef[0] holds it.
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiReconstructCoeffsIntra_H263_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset,
                                                        int16_t *pCoef, int32_t *pIndxLastNonZero, int32_t coded,
                                                        int32_t QP, int32_t advIntraFlag, int32_t scan,
                                                        int32_t modQuantFlag);

/**
 * Writes the coefficients of an inter block, from position 0 on.
 *
 * The event number countNonZero gets LAST 1 and ends the block; coefficients behind it are not written. If the block
 * holds fewer, the last one is followed by one more event, with LAST 1: the number of zeros behind it as RUN, its
 * magnitude again, and the sign, or in an escape the level, of the element at position 63. So the count should be
 * exact. A block of zeros writes nothing.
 *
 * A level beyond -127..127 is written in the escape of Annex T, as its low 11 bits, if modQuantFlag is on; otherwise
 * its low 8 bits are written. It is the caller's to keep within range.
 *
 * @param[in]     pCoef         64 levels
 * @param[in,out] ppBitStream   address of the pointer to the current byte
 * @param[in,out] pBitOffset    bits of that byte that are used up, 0 to 7
 * @param[in]     countNonZero  number of levels that are not 0, 1 to 64
 * @param[in]     modQuantFlag  Annex T
 * @param[in]     scan          0 zigzag, 1 vertical, 2 horizontal; others: position p is element p
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOutOfRange    countNonZero is not 1 to 64.
 * @retval zvpStatusOk            the block is written.
 */
ZVP_API zvpStatus zvpiEncodeCoeffsInter_H263_16s1u(const int16_t *pCoef, uint8_t **ppBitStream, int32_t *pBitOffset,
                                                   int32_t countNonZero, int32_t modQuantFlag, int32_t scan);

/**
 * Writes the coefficients of an intra block: from position 1 on; with advIntraFlag from position 0 on, by the code of
 * Annex I. In all else as zvpiEncodeCoeffsInter_H263_16s1u().
 *
 * @param[in]     pCoef         64 levels; the DC is left out unless advIntraFlag is on
 * @param[in,out] ppBitStream   address of the pointer to the current byte
 * @param[in,out] pBitOffset    bits of that byte that are used up, 0 to 7
 * @param[in]     countNonZero  number of levels to be written that are not 0, 1 to 64
 * @param[in]     advIntraFlag  Annex I
 * @param[in]     modQuantFlag  Annex T
 * @param[in]     scan          0 zigzag, 1 vertical, 2 horizontal; others: position p is element p
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOutOfRange    countNonZero is not 1 to 64.
 * @retval zvpStatusOk            the block is written.
 */
ZVP_API zvpStatus zvpiEncodeCoeffsIntra_H263_16s1u(const int16_t *pCoef, uint8_t **ppBitStream, int32_t *pBitOffset,
                                                   int32_t countNonZero, int32_t advIntraFlag, int32_t modQuantFlag,
                                                   int32_t scan);

/**
 * Writes the DC of an intra block in 8 bits: its low byte, or 255 for 128. No value is refused; the legal ones are 1 to
 * 254.
 *
 * @param[in]     dc           the value
 * @param[in,out] ppBitStream  address of the pointer to the current byte
 * @param[in,out] pBitOffset   bits of that byte that are used up, 0 to 7
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOk            the DC is written, the cursor one byte on.
 */
ZVP_API zvpStatus zvpiEncodeDCIntra_H263_16s1u(int16_t dc, uint8_t **ppBitStream, int32_t *pBitOffset);

/** @} */ /* h263_h_263_coefficient_coding */

/**
 * @defgroup mpeg4_mpeg_4_coefficient_coding_with_reversible_vlc MPEG-4 coefficient coding with reversible VLC
 *
 * The texture of one 8x8 block of ISO/IEC 14496-2: the intra DC with its size code (tables B-13, B-14), the event codes
 * of tables B-16 and B-17 with their three escapes (7.4.1.3), and the reversible code of table B-23, read forward or,
 * from the end of a packet, backward. Blocks of short-header pictures are H.263 blocks.
 *
 * The block is 64 values in raster order. A position counts along the scan; the coefficient at position p is element
 * scan[p] of the block. rvlcFlag, on when any of its bits is set, selects the reversible code. skipDC, likewise, says
 * that the DC is coded apart: coefficients start at position 1, and pCoef[0] stays as it is, on failure too.
 *
 * The argument scan chooses the order, by member (required as they differ):
 *
 * | member                                 | 0      | 1        | 2          | -1     | others |
 * |----------------------------------------|--------|----------|------------|--------|--------|
 * | zvpiDecodeCoeffsIntra_MPEG4_1u16s      | zigzag | vertical | horizontal | raster | raster |
 * | zvpiDecodeCoeffsInter_MPEG4_1u16s      | zigzag | vertical | raster     | raster | raster |
 * | zvpiReconstructCoeffsInter_MPEG4_1u16s | zigzag | vertical | zigzag     | zigzag | zigzag |
 * | zvpiEncodeCoeffsIntra_MPEG4_16s1u      | zigzag | vertical | horizontal | raster | zigzag |
 * | zvpiEncodeCoeffsInter_MPEG4_16s1u      | zigzag | vertical | zigzag     | raster | zigzag |
 *
 * The cursor. *ppBitStream points to bytes whose top bit comes first, *pBitOffset, 0 to 7, counts the bits of that byte
 * that are used up. On return the cursor stands on the first bit not consumed or not written. No length is passed. The
 * backward readers use the same pair in their own way, which their texts tell.
 *
 * Reading. A block takes at most 64 events of 30 bits; a damaged one is given up at the 65th at the latest. Look-ahead:
 * up to four bytes behind the byte that holds the last bit consumed. When a reader returns zvpStatusBadVlcCode the
 * cursor is where it was before the call, the block holds the coefficients that were read, zeros elsewhere, and
 * *pIndxLastNonZero is the position reached: of the last coefficient, or the position before the first, or, if a
 * coefficient would lie past position 63 and was not stored, that position.
 *
 * Writing. Of the first byte the bits in front of the cursor stay; all other bytes that the codes touch are written
 * whole, with zeros behind the last code. A byte that no code reaches is not written. A block takes at most 64 events
 * of 30 bits.
 *
 * Align: none for streams and blocks; the cursor's pointer as a pointer.
 * @{
 */

/**
 * Reads the differential DC of an intra block: its size by table B-13 or B-14, then that many bits, and for sizes above
 * 8 a marker bit.
 *
 * @param[in,out] ppBitStream  address of the pointer to the current byte
 * @param[in,out] pBitOffset   bits of that byte that are used up, 0 to 7
 * @param[out]    pDC          receives the value, -4095 to 4095
 * @param[in]     blockType    0 luminance, others chrominance
 *
 * Reads: three bytes at the cursor, and a fourth if the code reaches it.
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pDC or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    the size would be above 12; nothing has been written. Or the marker is 0: *pDC is
 *                                written, the cursor is as before the call.
 * @retval zvpStatusOk            *pDC is written.
 */
ZVP_API zvpStatus zvpiDecodeDCIntra_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pDC,
                                                int32_t blockType);

/**
 * Reads the coefficients of an intra block, by table B-16 or B-23.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[in,out] pCoef             64 levels, all written but for the DC under skipDC
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     rvlcFlag          not 0: the reversible code
 * @param[in]     skipDC            not 0: from position 1 on
 * @param[in]     scan              see the table
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef, pIndxLastNonZero or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    no code of the table; an escape of type 2 whose code is itself the escape; a marker of
 *                                an escape that is 0; an escape with LEVEL 0, or of type 3 with -2048; or a position
 *                                past 63. An escape of type 1 whose code is itself the escape is no error: it counts
 *                                as (LAST 0, RUN 0, LEVEL 255).
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsIntra_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pCoef,
                                                    int32_t *pIndxLastNonZero, int32_t rvlcFlag, int32_t skipDC,
                                                    int32_t scan);

/**
 * Reads the coefficients of an inter block, by table B-17 or B-23.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[out]    pCoef             64 levels, all written
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     rvlcFlag          not 0: the reversible code
 * @param[in]     scan              see the table
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef, pIndxLastNonZero or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    as in zvpiDecodeCoeffsIntra_MPEG4_1u16s(), but an escape of type 3 with LEVEL 0 stores
 *                                a 0 and goes on.
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsInter_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset, int16_t *pCoef,
                                                    int32_t *pIndxLastNonZero, int32_t rvlcFlag, int32_t scan);

/**
 * Reads the coefficients of an intra block of table B-23 backward, from its last bit to its first.
 *
 * The cursor stands on the last bit of the block, the sign of its final code: *pBitOffset is that bit's index in
 * *ppBitStream, counted from the top. A block begins where the final code of the block before, which has LAST 1, ends;
 * that code is looked at and not consumed. On return the cursor stands on its last bit, ready for the next call. In
 * front of a packet's first block something must therefore stand that reads as such a code.
 *
 * No scan is applied: element p of the block is position p. Else the block is the one that reading forward gives.
 *
 * Look-ahead: up to four bytes in front of the byte that holds the block's first bit; nothing behind the cursor.
 *
 * If the runs of a damaged block reach in front of its first position, *pIndxLastNonZero comes out as the position that
 * its last coefficient would have, 64 or more, and the coefficients that fit the block are stored.
 *
 * @param[in,out] ppBitStream       address of the pointer to the byte of the block's last bit
 * @param[in,out] pBitOffset        index of that bit, 0 to 7
 * @param[in,out] pCoef             64 levels in coded order, all written but for the DC under skipDC
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     skipDC            not 0: from position 1 on
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef, pIndxLastNonZero or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    no code of the table, a bit of an escape that is not as it must be, a final code
 *                                without LAST, or more coefficients than the block has room for. The coefficients read
 *                                by then stand at the block's end, *pIndxLastNonZero is the position in front of them,
 *                                and the cursor is as before the call.
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset,
                                                            int16_t *pCoef, int32_t *pIndxLastNonZero, int32_t skipDC);

/**
 * Reads the coefficients of an inter block of table B-23 backward. As zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s() with
 * the events of inter blocks, from position 0 on.
 *
 * @param[in,out] ppBitStream       address of the pointer to the byte of the block's last bit
 * @param[in,out] pBitOffset        index of that bit, 0 to 7
 * @param[out]    pCoef             64 levels in coded order, all written
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef, pIndxLastNonZero or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadVlcCode    as in zvpiDecodeCoeffsIntraRVLCBack_MPEG4_1u16s().
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiDecodeCoeffsInterRVLCBack_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset,
                                                            int16_t *pCoef, int32_t *pIndxLastNonZero);

/**
 * Reads and dequantizes the coefficients of an inter block.
 *
 * With the event code each level is dequantized as it is read, as zvpiQuantInvInter_MPEG4_16s_C1I() does it (7.4.4),
 * the weight being that of the element, with its mismatch control at the end of the block. A level 0, which an escape
 * of type 3 can carry, is dequantized as a negative one. With the reversible code the block is read by
 * zvpiDecodeCoeffsInter_MPEG4_1u16s() and then dequantized by zvpiQuantInvInter_MPEG4_16s_C1I(), which tests the record
 * and QP only then.
 *
 * @param[in,out] ppBitStream       address of the pointer to the current byte
 * @param[in,out] pBitOffset        bits of that byte that are used up, 0 to 7
 * @param[out]    pCoef             64 coefficients, all written
 * @param[out]    pIndxLastNonZero  receives the position of the last coefficient
 * @param[in]     rvlcFlag          not 0: the reversible code
 * @param[in]     scan              see the table
 * @param[in]     pQuantInvSpec     record of zvpiQuantInvInterInit_MPEG4()
 * @param[in]     QP                quantizer, 1 to 2^(bitsPerPixel - 3) - 1
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef, pIndxLastNonZero or *ppBitStream is null; or, tested
 *                                behind *pBitOffset, pQuantInvSpec.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusBadContext    pQuantInvSpec is not a record for inverse inter quantization.
 * @retval zvpStatusBadQuantizer  QP is not in its range. With rvlcFlag the tests of pQuantInvSpec and QP come after the
 *                                block has been read: its levels and the moved cursor stay.
 * @retval zvpStatusBadVlcCode    as in zvpiDecodeCoeffsInter_MPEG4_1u16s(); with the event code the coefficients stored
 *                                by then are dequantized. With rvlcFlag this comes before the tests of
 *                                pQuantInvSpec and QP.
 * @retval zvpStatusOk            the block is read.
 */
ZVP_API zvpStatus zvpiReconstructCoeffsInter_MPEG4_1u16s(const uint8_t **ppBitStream, int32_t *pBitOffset,
                                                         int16_t *pCoef, int32_t *pIndxLastNonZero, int32_t rvlcFlag,
                                                         int32_t scan, const void *pQuantInvSpec, int32_t QP);

/**
 * Writes the differential DC of an intra block: its size by table B-13 or B-14, then that many bits, and for sizes
 * above 8 a marker bit.
 *
 * @param[in]     dc           the value, -4095 to 4095; not checked: what is written for others is no code
 * @param[in,out] ppBitStream  address of the pointer to the current byte
 * @param[in,out] pBitOffset   bits of that byte that are used up, 0 to 7
 * @param[in]     blockType    1 chrominance, others luminance
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOk            the DC is written.
 */
ZVP_API zvpStatus zvpiEncodeDCIntra_MPEG4_16s1u(int16_t dc, uint8_t **ppBitStream, int32_t *pBitOffset,
                                                int32_t blockType);

/**
 * Writes the coefficients of an intra block, by table B-16 or B-23.
 *
 * Each event takes its table code, else with the event code the first of the three escapes that can carry it, and with
 * the reversible code its escape. The event number countNonZero gets LAST 1 and ends the block; coefficients behind it
 * are not written. If the block holds fewer, no event has LAST 1, and the stream is not decodable.
 *
 * Of a level the escape of type 3 carries the low 12 bits, the reversible escape the low 11 bits of its magnitude; it
 * is the caller's to keep within range.
 *
 * @param[in]     pCoef         64 levels; the DC is left out under skipDC
 * @param[in,out] ppBitStream   address of the pointer to the current byte
 * @param[in,out] pBitOffset    bits of that byte that are used up, 0 to 7
 * @param[in]     countNonZero  number of levels to be written that are not 0, 1 to 64, under skipDC 1 to 63
 * @param[in]     rvlcFlag      not 0: the reversible code
 * @param[in]     skipDC        not 0: from position 1 on
 * @param[in]     scan          see the table
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOutOfRange    countNonZero is not in its range.
 * @retval zvpStatusOk            the block is written.
 */
ZVP_API zvpStatus zvpiEncodeCoeffsIntra_MPEG4_16s1u(const int16_t *pCoef, uint8_t **ppBitStream, int32_t *pBitOffset,
                                                    int32_t countNonZero, int32_t rvlcFlag, int32_t skipDC,
                                                    int32_t scan);

/**
 * Writes the coefficients of an inter block, by table B-17 or B-23. As zvpiEncodeCoeffsIntra_MPEG4_16s1u(), from
 * position 0 on.
 *
 * @param[in]     pCoef         64 levels
 * @param[in,out] ppBitStream   address of the pointer to the current byte
 * @param[in,out] pBitOffset    bits of that byte that are used up, 0 to 7
 * @param[in]     countNonZero  number of levels that are not 0, 1 to 64
 * @param[in]     rvlcFlag      not 0: the reversible code
 * @param[in]     scan          see the table
 *
 * @retval zvpStatusNullPointer   ppBitStream, pBitOffset, pCoef or *ppBitStream is null.
 * @retval zvpStatusBadBitOffset  *pBitOffset is not 0 to 7.
 * @retval zvpStatusOutOfRange    countNonZero is not 1 to 64.
 * @retval zvpStatusOk            the block is written.
 */
ZVP_API zvpStatus zvpiEncodeCoeffsInter_MPEG4_16s1u(const int16_t *pCoef, uint8_t **ppBitStream, int32_t *pBitOffset,
                                                    int32_t countNonZero, int32_t rvlcFlag, int32_t scan);

/** @} */ /* mpeg4_mpeg_4_coefficient_coding_with_reversible_vlc */

/**
 * @defgroup mpeg4_mpeg_4_quantization_contexts MPEG-4 quantization contexts
 *
 * Quantization of a block in place and its inverse (ISO/IEC 14496-2 7.4.4), for samples of 4 to 12 bits. What holds for
 * many blocks, namely the weighting matrix or that there is none, and the sample depth, is kept in a context that the
 * caller places in memory of its own. There are four kinds: forward or inverse, for inter or intra blocks. A call
 * refuses a context of another kind.
 *
 * A context is made in two steps: the kind's GetSize tells how many bytes to provide, its Init fills them in. Each
 * function finds the context at the first multiple of 16 from pSpec on, so memory of any alignment will do, as long as
 * it stays where it is. A context is only read by the block functions: one serves any number of threads. There is
 * nothing to be freed but the caller's own memory.
 *
 * A block is 64 int16_t in raster order; so are the weights, bytes of 1 to 255. "Flat" is quantization without a
 * matrix, the standard's second method (7.4.4.2); with a matrix it is the first (7.4.4.1). Products have 32 bits and
 * wrap; forward products by reciprocals are unsigned. Shifts of negative numbers round down; a division drops the
 * fraction. Limited to a..b means: below a becomes a, above b becomes b.
 *
 * QP is the quantizer, 1 to the depth's maximum:
 *
 * | bitsPerPixel |    4 |    5 |    6 |     7 |     8 |     9 |    10 |     11 |     12 |
 * |--------------|------|------|------|-------|-------|-------|-------|--------|--------|
 * | largest QP   |    1 |    3 |    7 |    15 |    31 |    63 |   127 |    255 |    511 |
 * | min          | -128 | -256 | -512 | -1024 | -2048 | -4096 | -8192 | -16384 | -32768 |
 * | max          |  127 |  255 |  511 |  1023 |  2047 |  4095 |  8191 |  16383 |  32767 |
 *
 * min and max are the range of inverse results; forward results are limited to -2047..2047 at all depths.
 *
 * The DC scaler d of the intra functions (table 7-1): 8 for QP below 5. Above that for luma 2 * QP up to QP 8, QP + 8
 * up to 24, 2 * QP - 16 from 25 on; for chroma (QP + 13) >> 1 up to QP 24, QP - 6 from 25 on.
 *
 * No pointer to a block needs to be aligned.
 * @{
 */

/**
 * Bytes to provide for a context of the forward inter quantizer: 412, whatever its address.
 *
 * @param[out] pSize  receives the size
 *
 * @retval zvpStatusNullPointer  pSize is null.
 * @retval zvpStatusOk           *pSize is written.
 */
ZVP_API zvpStatus zvpiQuantInterGetSize_MPEG4(int32_t *pSize);

/**
 * Fills in a context of the forward inter quantizer.
 *
 * Up to 8 bits per sample the quantizer works with reciprocals, which are computed here; above, it divides.
 *
 * @param[in]  pQuantMatrix  64 weights in raster order, 1 to 255; null: flat
 * @param[out] pSpec         memory of zvpiQuantInterGetSize_MPEG4() bytes
 * @param[in]  bitsPerPixel  sample depth, 4 to 12; not checked, but with any other the quantizer refuses every QP
 *
 * Reads:  64 bytes of pQuantMatrix, where given.
 * Writes: within 396 bytes from the first multiple of 16 on. pQuantMatrix must not lie there.
 *
 * @retval zvpStatusNullPointer   pSpec is null; nothing is written.
 * @retval zvpStatusBadQuantizer  A weight is 0. Depth, identification and the weights before it have been written,
 *                                the rest is as it was: the context must not be used.
 * @retval zvpStatusOk            The context is ready.
 */
ZVP_API zvpStatus zvpiQuantInterInit_MPEG4(const uint8_t *pQuantMatrix, void *pSpec, int32_t bitsPerPixel);

/**
 * Bytes to provide for a context of the forward intra quantizer: 412, whatever its address.
 *
 * @param[out] pSize  receives the size
 *
 * @retval zvpStatusNullPointer  pSize is null.
 * @retval zvpStatusOk           *pSize is written.
 */
ZVP_API zvpStatus zvpiQuantIntraGetSize_MPEG4(int32_t *pSize);

/**
 * Fills in a context of the forward intra quantizer.
 *
 * @param[in]  pQuantMatrix  64 weights in raster order, 1 to 255; null: flat
 * @param[out] pSpec         memory of zvpiQuantIntraGetSize_MPEG4() bytes
 * @param[in]  bitsPerPixel  sample depth, 4 to 12; not checked, but with any other the quantizer refuses every QP
 *
 * Reads, writes and statuses are those of zvpiQuantInterInit_MPEG4().
 *
 * @retval zvpStatusNullPointer   pSpec is null; nothing is written.
 * @retval zvpStatusBadQuantizer  A weight is 0. The context must not be used.
 * @retval zvpStatusOk            The context is ready.
 */
ZVP_API zvpStatus zvpiQuantIntraInit_MPEG4(const uint8_t *pQuantMatrix, void *pSpec, int32_t bitsPerPixel);

/**
 * Bytes to provide for a context of the inverse inter quantizer: 156, whatever its address.
 *
 * @param[out] pSize  receives the size
 *
 * @retval zvpStatusNullPointer  pSize is null.
 * @retval zvpStatusOk           *pSize is written.
 */
ZVP_API zvpStatus zvpiQuantInvInterGetSize_MPEG4(int32_t *pSize);

/**
 * Fills in a context of the inverse inter quantizer.
 *
 * @param[in]  pQuantMatrix  64 weights in raster order, 1 to 255; null: flat
 * @param[out] pSpec         memory of zvpiQuantInvInterGetSize_MPEG4() bytes
 * @param[in]  bitsPerPixel  sample depth, 4 to 12
 *
 * Reads:  64 bytes of pQuantMatrix, where given.
 * Writes: within 140 bytes from the first multiple of 16 on. pQuantMatrix must not lie there.
 *
 * @retval zvpStatusNullPointer   pSpec is null; nothing is written.
 * @retval zvpStatusOutOfRange    bitsPerPixel is below 4 or above 12; nothing is written.
 * @retval zvpStatusBadQuantizer  A weight is 0. Depth, identification and the weights before it have been written,
 *                                the rest is as it was: the context must not be used.
 * @retval zvpStatusOk            The context is ready.
 */
ZVP_API zvpStatus zvpiQuantInvInterInit_MPEG4(const uint8_t *pQuantMatrix, void *pSpec, int32_t bitsPerPixel);

/**
 * Bytes to provide for a context of the inverse intra quantizer: 156, whatever its address.
 *
 * @param[out] pSize  receives the size
 *
 * @retval zvpStatusNullPointer  pSize is null.
 * @retval zvpStatusOk           *pSize is written.
 */
ZVP_API zvpStatus zvpiQuantInvIntraGetSize_MPEG4(int32_t *pSize);

/**
 * Fills in a context of the inverse intra quantizer.
 *
 * @param[in]  pQuantMatrix  64 weights in raster order, 1 to 255; null: flat
 * @param[out] pSpec         memory of zvpiQuantInvIntraGetSize_MPEG4() bytes
 * @param[in]  bitsPerPixel  sample depth, 4 to 12
 *
 * Reads, writes and statuses are those of zvpiQuantInvInterInit_MPEG4().
 *
 * @retval zvpStatusNullPointer   pSpec is null; nothing is written.
 * @retval zvpStatusOutOfRange    bitsPerPixel is below 4 or above 12; nothing is written.
 * @retval zvpStatusBadQuantizer  A weight is 0. The context must not be used.
 * @retval zvpStatusOk            The context is ready.
 */
ZVP_API zvpStatus zvpiQuantInvIntraInit_MPEG4(const uint8_t *pQuantMatrix, void *pSpec, int32_t bitsPerPixel);

/**
 * Forward quantization of an inter block.
 *
 * Each element x becomes y, which has the sign of x and a magnitude of at most 2047. With R = 65536 / (2 * QP) + 1:
 *
 *     depth     flat                                  with weight w
 *     4 to 8    (max(|x| - QP / 2, 0) * R) >> 16      (R * (((w / 2 + 16 * |x|) * (65536 / w + 1)) >> 16)) >> 16
 *     9 to 12   max(|x| - QP / 2, 0) / (2 * QP)       (16 * |x| + w / 2) / w / (2 * QP)
 *
 * @param[in,out] pCoef          the block
 * @param[in]     pSpec          context made by zvpiQuantInterInit_MPEG4()
 * @param[in]     QP             quantizer, see the group's table
 * @param[out]    pCountNonZero  receives the number of non-zero results, 0 to 64; not written on error
 *
 * Reads:  the block and the context.
 * Writes: the block, *pCountNonZero. They must not overlap.
 *
 * @retval zvpStatusNullPointer   pCoef, pSpec or pCountNonZero is null.
 * @retval zvpStatusBadContext    The context is not one of this quantizer.
 * @retval zvpStatusBadQuantizer  QP is below 1 or above the maximum of the context's depth.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuantInter_MPEG4_16s_C1I(int16_t *pCoef, const void *pSpec, int32_t QP, int32_t *pCountNonZero);

/**
 * Forward quantization of an intra block.
 *
 * Element 0, the DC: with the scaler d, |x| below (d + 1) / 2 gives 0, otherwise the magnitude is (|x| + d / 2) / d, at
 * most 2047. Each other element x becomes y, which has the sign of x and a magnitude of at most 2047. With
 * R = 65536 / (2 * QP) + 1 and k = (3 * QP + 2) / 4:
 *
 *     depth     flat               with weight w
 *     4 to 8    (|x| * R) >> 16    ((k + (((w / 2 + 16 * |x|) * (65536 / w + 1)) >> 16)) * R) >> 16
 *     9 to 12   |x| / (2 * QP)     (k + (16 * |x| + w / 2) / w) / (2 * QP)
 *
 * @param[in,out] pCoef          the block
 * @param[in]     pSpec          context made by zvpiQuantIntraInit_MPEG4()
 * @param[in]     QP             quantizer, see the group's table
 * @param[out]    pCountNonZero  receives the number of non-zero results, the DC's too, 0 to 64; not written on error
 * @param[in]     blockType      which DC scaler: 0 luma, any other value chroma
 *
 * Reads:  the block and the context.
 * Writes: the block, *pCountNonZero. They must not overlap.
 *
 * @retval zvpStatusNullPointer   pCoef, pSpec or pCountNonZero is null.
 * @retval zvpStatusBadContext    The context is not one of this quantizer.
 * @retval zvpStatusBadQuantizer  QP is below 1 or above the maximum of the context's depth.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuantIntra_MPEG4_16s_C1I(int16_t *pCoef, const void *pSpec, int32_t QP, int32_t *pCountNonZero,
                                               int32_t blockType);

/**
 * Inverse quantization of an inter block (7.4.4.1, 7.4.4.2), with mismatch control where there is a matrix.
 *
 * Of elements 0 to indxLastNonZero, x above 0 becomes v, at most max, and x below 0 becomes v, at least min:
 *
 *            flat                           with weight w
 *     x > 0  2 * x * QP + QP - e            ((2 * x + 1) * w * QP) >> 4
 *     x < 0  2 * x * QP - QP + e            ((2 * x - 1) * w * QP + 15) >> 4
 *
 * e being 1 for even QP and 0 for odd. Zeros stay. With a matrix follows the mismatch control: if the sum of the
 * results of these elements is even, element 63 is incremented if it is even and decremented if it is odd.
 *
 * Products wrap at 32 bits from QP 129 on with extreme coefficients. The one bound is applied to what is left, of which
 * the low 16 bits are stored.
 *
 * @param[in,out] pCoef            the block
 * @param[in]     indxLastNonZero  raster index of the last element to work on, at most 63; below 0 there is none
 * @param[in]     pSpec            context made by zvpiQuantInvInterInit_MPEG4()
 * @param[in]     QP               quantizer, see the group's table
 *
 * Reads:  elements 0 to indxLastNonZero, with a matrix element 63 too, and the context.
 * Writes: the same elements.
 *
 * @retval zvpStatusNullPointer   pCoef or pSpec is null.
 * @retval zvpStatusBadContext    The context is not one of this quantizer.
 * @retval zvpStatusBadQuantizer  QP is below 1 or above the maximum of the context's depth.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuantInvInter_MPEG4_16s_C1I(int16_t *pCoef, int32_t indxLastNonZero, const void *pSpec,
                                                  int32_t QP);

/**
 * Inverse quantization of an intra block (7.4.4.1, 7.4.4.2), with mismatch control where there is a matrix.
 *
 * Element 0, the DC, becomes d * x limited to min..max. Of elements 1 to indxLastNonZero, flat ones become what
 * zvpiQuantInvInter_MPEG4_16s_C1I() makes of them; with weight w, x above 0 becomes (w * x * QP) >> 3, at most max, and
 * x below 0 becomes (w * x * QP + 7) >> 3, at least min. Zeros stay.
 *
 * With a matrix follows the mismatch control: if the sum of the results, the DC's included, is even, element 63 is
 * incremented if it is even and decremented if it is odd; but with indxLastNonZero below 1 it is set to 1, whatever it
 * was.
 *
 * Products wrap at 32 bits as told for zvpiQuantInvInter_MPEG4_16s_C1I().
 *
 * @param[in,out] pCoef            the block
 * @param[in]     indxLastNonZero  raster index of the last element to work on, at most 63; below 1 it is the DC alone
 * @param[in]     pSpec            context made by zvpiQuantInvIntraInit_MPEG4()
 * @param[in]     QP               quantizer, see the group's table
 * @param[in]     blockType        which DC scaler: 0 luma, any other value chroma
 *
 * Reads:  elements 0 to indxLastNonZero, with a matrix element 63 too, and the context.
 * Writes: the same elements.
 *
 * @retval zvpStatusNullPointer   pCoef or pSpec is null.
 * @retval zvpStatusBadContext    The context is not one of this quantizer.
 * @retval zvpStatusBadQuantizer  QP is below 1 or above the maximum of the context's depth.
 * @retval zvpStatusOk            Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntra_MPEG4_16s_C1I(int16_t *pCoef, int32_t indxLastNonZero, const void *pSpec,
                                                  int32_t QP, int32_t blockType);

/** @} */ /* mpeg4_mpeg_4_quantization_contexts */

/**
 * @defgroup mpeg4_sprite_warping_and_global_motion MPEG-4: sprite warping and global motion
 *
 * Prediction from a sprite or, with global motion compensation, from a reference picture whose samples are found
 * through a warp of the whole picture (ISO/IEC 14496-2 7.8). zvpiWarpInit_MPEG4() turns the warping points of a picture
 * into a warp record; the block functions read it. The number of points selects the warp:
 *
 *     0     none: the block is copied from its own place
 *     1     translation, in half or 1/16 samples
 *     2, 3  affine, in 32-bit fixed point: increments for each column and row, scaled by a power of two
 *     4     perspective, in double precision
 *
 * The caller provides the record's memory, as many bytes as zvpiWarpGetSize_MPEG4() tells and of any alignment: each
 * function finds the record at the first multiple of 16 from pSpec on. Once made it is only read, by any number of
 * threads. There is nothing to be freed but the caller's own memory.
 *
 * Rectangles and positions are in luma samples of the picture's coordinates, unless chroma is named. The sprite is
 * spriteWidth * spriteHeight luma samples from (spriteX, spriteY) on; the chroma sprite starts at (spriteX / 2,
 * spriteY / 2), fractions dropped, and measures (spriteWidth + 1) >> 1 by (spriteHeight + 1) >> 1. Where the warp leads
 * out of the sprite, its nearest sample stands in: a block may lie anywhere. No sample outside the sprite is read.
 *
 * Integer arithmetic has 32 bits and wraps, and shift counts are taken modulo 32, so records of absurd points are as
 * well defined as those of sensible ones. Steps may have any value, negative too; no samples need to be aligned.
 * @{
 */

/**
 * Bytes to provide for a warp record: 280, whatever its address.
 *
 * @param[out] pSize  receives the size
 *
 * @retval zvpStatusNullPointer  pSize is null.
 * @retval zvpStatusOk           *pSize is written.
 */
ZVP_API zvpStatus zvpiWarpGetSize_MPEG4(int32_t *pSize);

/**
 * Makes the warp record of a picture from its warping points (7.8.4, 7.8.5).
 *
 * (pDU[k], pDV[k]) are the differences that the trajectory of point k is coded as, in half samples: point 0 is the top
 * left corner of the picture rectangle, 1 the top right, 2 the bottom left, 3 the bottom right, and each is relative to
 * point 0, the last one to points 1 and 2 as well.
 *
 * @param[out] pSpec             memory of zvpiWarpGetSize_MPEG4() bytes
 * @param[in]  pDU               four horizontal differences; may be null with 0 points
 * @param[in]  pDV               four vertical differences; may be null with 0 points
 * @param[in]  numWarpingPoints  0 to 4; 4 with a static sprite only
 * @param[in]  spriteType        1: static sprite; any other value: global motion compensation
 * @param[in]  warpingAccuracy   0 to 3: half, quarter, 1/8 or 1/16 sample
 * @param[in]  roundingType      the picture's rounding type, 0 or not; a static sprite counts as 0
 * @param[in]  quarterSample     not 0: global vectors are in quarter samples, otherwise in half samples
 * @param[in]  fcode             1 to 7: global vectors are clipped to -(16 << fcode)..(16 << fcode) - 1
 * @param[in]  pSpriteRect       the sprite or reference picture; not tested for null
 * @param[in]  pVopRect          the picture; not tested for null
 *
 * Reads:  the two rectangles; with points the first numWarpingPoints entries of pDU and of pDV.
 * Writes: within 264 bytes from the first multiple of 16 on, which no input may overlap.
 *
 * @retval zvpStatusNullPointer  pSpec is null; nothing is written. Or, tested last: numWarpingPoints is not 0, and pDU
 *                               or pDV is null. Then the record carries its identification but no warp, and must not
 *                               be used.
 * @retval zvpStatusOutOfRange   numWarpingPoints is not 0 to 4; or it is 4 and spriteType is not 1; or warpingAccuracy
 *                               is not 0 to 3 or fcode not 1 to 7. Nothing is written.
 * @retval zvpStatusBadSize      A rectangle's width or height is below 1; nothing is written.
 * @retval zvpStatusOk           The record is ready.
 */
ZVP_API zvpStatus zvpiWarpInit_MPEG4(void *pSpec, const int32_t *pDU, const int32_t *pDV, int32_t numWarpingPoints,
                                     int32_t spriteType, int32_t warpingAccuracy, int32_t roundingType,
                                     int32_t quarterSample, int32_t fcode, const zvpRect *pSpriteRect,
                                     const zvpRect *pVopRect);

/**
 * Predicts a luma block through the warp (7.8.5, 7.8.6).
 *
 * @param[in]  pSrc      the sprite's sample at (spriteX, spriteY), its top left one
 * @param[in]  srcStep   distance from one row of pSrc to the next, in bytes
 * @param[out] pDst      the block's top left sample
 * @param[in]  dstStep   distance from one row of pDst to the next, in bytes
 * @param[in]  pDstRect  the block's place in the picture and its size, any; nothing is done where it is empty. Not
 *                       tested for null.
 * @param[in]  pSpec     record made by zvpiWarpInit_MPEG4()
 *
 * Reads:  of pSrc such samples of the sprite as the warp leads to, none outside spriteWidth columns and spriteHeight
 *         rows; the rectangle; the record.
 * Writes: the block. It must not overlap what is read.
 *
 * @retval zvpStatusNullPointer  pSpec, pSrc or pDst is null.
 * @retval zvpStatusBadContext   The record does not carry its identification.
 * @retval zvpStatusOk           The block is predicted.
 */
ZVP_API zvpStatus zvpiWarpLuma_MPEG4_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                            const zvpRect *pDstRect, const void *pSpec);

/**
 * Predicts the two chroma blocks of one place through the warp (7.8.5, 7.8.6).
 *
 * @param[in]  pSrcCb     the first chroma sprite's top left sample
 * @param[in]  srcStepCb  distance from one row of pSrcCb to the next, in bytes
 * @param[in]  pSrcCr     the second chroma sprite's top left sample
 * @param[in]  srcStepCr  distance from one row of pSrcCr to the next, in bytes
 * @param[out] pDstCb     the first block's top left sample
 * @param[in]  dstStepCb  distance from one row of pDstCb to the next, in bytes
 * @param[out] pDstCr     the second block's top left sample
 * @param[in]  dstStepCr  distance from one row of pDstCr to the next, in bytes
 * @param[in]  pDstRect   place and size of the blocks in chroma samples, any; nothing is done where it is empty. Not
 *                        tested for null.
 * @param[in]  pSpec      record made by zvpiWarpInit_MPEG4()
 *
 * Reads:  of each source such samples of the chroma sprite as the warp leads to, none outside it; the rectangle; the
 *         record.
 * Writes: the two blocks. They must not overlap each other or what is read.
 *
 * @retval zvpStatusNullPointer  pSpec, pSrcCb, pDstCb, pSrcCr or pDstCr is null.
 * @retval zvpStatusBadContext   The record does not carry its identification.
 * @retval zvpStatusOk           The blocks are predicted.
 */
ZVP_API zvpStatus zvpiWarpChroma_MPEG4_8u_P2R(const uint8_t *pSrcCb, int32_t srcStepCb, const uint8_t *pSrcCr,
                                              int32_t srcStepCr, uint8_t *pDstCb, int32_t dstStepCb, uint8_t *pDstCr,
                                              int32_t dstStepCr, const zvpRect *pDstRect, const void *pSpec);

/**
 * The motion vector that stands for the warp in a 16x16 macroblock (7.8.7): 0 without points, the translation with one,
 * with two or three the mean over the macroblock's samples. Not for records of four points.
 *
 * With points the components are clipped to the range that fcode gave; they are in half samples or, with quarterSample,
 * in quarter samples. The translation is cut to 16 bits before it is clipped.
 *
 * @param[in]  xOffset  column of the macroblock's top left sample from the picture's left edge
 * @param[in]  yOffset  row of the macroblock's top left sample from the picture's top edge
 * @param[out] pGMV     receives the vector: pGMV[0] is x, pGMV[1] is y
 * @param[in]  pSpec    record made by zvpiWarpInit_MPEG4()
 *
 * Reads:  the record.
 * Writes: two elements of pGMV, of any alignment.
 *
 * @retval zvpStatusNullPointer  pSpec or pGMV is null.
 * @retval zvpStatusBadContext   The record does not carry its identification.
 * @retval zvpStatusOk           The vector is written.
 */
ZVP_API zvpStatus zvpiCalcGlobalMV_MPEG4(int32_t xOffset, int32_t yOffset, int16_t *pGMV, const void *pSpec);

/**
 * Changes the brightness of a sprite in place (brightness_change_factor, 7.8.6).
 *
 * With f the factor, each sample s becomes (s * weight + 520) >> 10 limited to 0..255, weight being 1024 plus
 * f * 1024 / 100 rounded to the nearest integer, halves away from zero. Factor 0 leaves the sprite as it is.
 *
 * @param[in,out] pSrcDst                 top left sample
 * @param[in]     srcDstStep              distance from one row to the next, in bytes
 * @param[in]     width                   columns; nothing is done below 1
 * @param[in]     height                  rows; nothing is done below 1
 * @param[in]     brightnessChangeFactor  change of brightness in percent, -112 to 1648
 *
 * Reads:  width samples of each row; none with factor 0.
 * Writes: the same samples.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   brightnessChangeFactor is below -112 or above 1648.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiChangeSpriteBrightness_MPEG4_8u_C1IR(uint8_t *pSrcDst, int32_t srcDstStep, int32_t width,
                                                           int32_t height, int32_t brightnessChangeFactor);

/** @} */ /* mpeg4_sprite_warping_and_global_motion */

/**
 * @defgroup vc1_vc_1_transforms VC-1 transforms
 *
 * The transforms of VC-1 blocks (SMPTE 421M Annex A) in the shapes 8x8, 8x4, 4x8 and 4x4, width x height. With these
 * bases, one vector a row,
 *
 *     B8 = 12  12  12  12  12  12  12  12        B4 = 17  17  17  17
 *          16  15   9   4  -4  -9 -15 -16             22  10 -10 -22
 *          16   6  -6 -16 -16  -6   6  16             17 -17 -17  17
 *          15  -4 -16  -9   9  16   4 -15             10 -22  22 -10
 *          12 -12 -12  12  12 -12 -12  12
 *           9 -16   4  15 -15  -4  16  -9
 *           6 -16  16  -6  -6  16 -16   6
 *           4  -9  15 -16  16 -15   9  -4
 *
 * and N points in a row or a column, the inverse of coefficients x is
 *
 *     t(row, j)    = (4 + sum over k of x(row, k) * BN(k, j)) >> 3            along the rows, then
 *     y(j, column) = (64 + r(j) + sum over k of t(k, column) * BN(k, j)) >> 7  along the columns
 *
 * where r(j) is 1 for rows 4 to 7 of a block 8 high, and 0 otherwise. Sums are of 32 bits, t too; y keeps its low
 * 16 bits and does not saturate. Values within the standard's ranges never come near that.
 *
 * The forward members make the coefficients whose inverse transform comes nearest to the samples, with 16-bit factors:
 * TN(k, j) = BN(k, j) * 2^(18 + log2 N) / (sum over i of BN(k, i)^2), rounded to nearest. This library defines them so:
 *
 *     t(row, k)    = (2^(s-1) + sum over j of x(row, j) * TN(k, j)) >> s      s = 12 for 8 columns, 11 for 4
 *     y(k, column) = (2^(s-1) + sum over j of t(j, column) * TN(k, j)) >> s   s = 20 for 8 rows, 19 for 4
 *
 * where sums wrap at 32 bits, and t and y keep their low 16 bits.
 *
 * srcSizeNZ promises that coefficients other than zero lie in the first columns and rows, as the inverse quantizers
 * report. A call reads only the smallest corner of the table that holds the promised one and takes all else for zeros,
 * whatever stands there. A promise of 0 or less still reads the first coefficient, one that exceeds the block reads the
 * block; no value is refused.
 *
 * | shape | corners, columns x rows |
 * |-------|-------------------------|
 * | 8x8   | 1x1, 2x2, 4x4, 8x8      |
 * | 8x4   | 1x1, 8x4                |
 * | 4x8   | 1x1, 4x8                |
 * | 4x4   | 1x1, 2x2, 4x4           |
 *
 * For all members: elements are int16_t, steps may have any value, negative and odd ones too, and nothing needs to be
 * aligned. A call reads all that it reads before it writes, so pSrc and pDst may be one block or overlap in any way.
 * @{
 */

/**
 * Inverse transform of a block of 8 columns and 8 rows.
 *
 * @param[in]  pSrc       coefficients
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pDst       receives the samples
 * @param[in]  dstStep    distance between rows of pDst in bytes
 * @param[in]  srcSizeNZ  columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the corner of pSrc, 1x1, 2x2, 4x4 or 8x8, that srcSizeNZ selects.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x8Inv_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep,
                                                  zvpSize srcSizeNZ);

/**
 * Inverse transform of a block of 8 columns and 8 rows in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the samples
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     srcSizeNZ   columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the corner of pSrcDst, 1x1, 2x2, 4x4 or 8x8, that srcSizeNZ selects.
 * Writes: 8 rows of 16 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x8Inv_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, zvpSize srcSizeNZ);

/**
 * Forward transform of a block of 8 columns and 8 rows.
 *
 * @param[in]  pSrc     samples
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives the coefficients
 * @param[in]  dstStep  distance between rows of pDst in bytes
 *
 * Reads:  8 rows of 16 bytes of pSrc.
 * Writes: 8 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x8Fwd_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep);

/**
 * Forward transform of a block of 8 columns and 8 rows in place.
 *
 * @param[in,out] pSrcDst     samples; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 *
 * Reads:  8 rows of 16 bytes of pSrcDst.
 * Writes: the same 8 rows of 16 bytes.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x8Fwd_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep);

/**
 * Inverse transform of a block of 8 columns and 4 rows.
 *
 * @param[in]  pSrc       coefficients
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pDst       receives the samples
 * @param[in]  dstStep    distance between rows of pDst in bytes
 * @param[in]  srcSizeNZ  columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the first coefficient of pSrc if srcSizeNZ is at most 1x1, else the block.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x4Inv_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep,
                                                  zvpSize srcSizeNZ);

/**
 * Inverse transform of a block of 8 columns and 4 rows in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the samples
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     srcSizeNZ   columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the first coefficient of pSrcDst if srcSizeNZ is at most 1x1, else the block.
 * Writes: 4 rows of 16 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x4Inv_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, zvpSize srcSizeNZ);

/**
 * Forward transform of a block of 8 columns and 4 rows.
 *
 * @param[in]  pSrc     samples
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives the coefficients
 * @param[in]  dstStep  distance between rows of pDst in bytes
 *
 * Reads:  4 rows of 16 bytes of pSrc.
 * Writes: 4 rows of 16 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform8x4Fwd_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep);

/**
 * Forward transform of a block of 8 columns and 4 rows in place.
 *
 * Unlike its kin this member makes no check: pSrcDst must not be null.
 *
 * @param[in,out] pSrcDst     samples; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 *
 * Reads:  4 rows of 16 bytes of pSrcDst.
 * Writes: the same 4 rows of 16 bytes.
 *
 * @retval zvpStatusOk  Always.
 */
ZVP_API zvpStatus zvpiTransform8x4Fwd_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep);

/**
 * Inverse transform of a block of 4 columns and 8 rows.
 *
 * @param[in]  pSrc       coefficients
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pDst       receives the samples
 * @param[in]  dstStep    distance between rows of pDst in bytes
 * @param[in]  srcSizeNZ  columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the first coefficient of pSrc if srcSizeNZ is at most 1x1, else the block.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x8Inv_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep,
                                                  zvpSize srcSizeNZ);

/**
 * Inverse transform of a block of 4 columns and 8 rows in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the samples
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     srcSizeNZ   columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the first coefficient of pSrcDst if srcSizeNZ is at most 1x1, else the block.
 * Writes: 8 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x8Inv_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, zvpSize srcSizeNZ);

/**
 * Forward transform of a block of 4 columns and 8 rows.
 *
 * @param[in]  pSrc     samples
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives the coefficients
 * @param[in]  dstStep  distance between rows of pDst in bytes
 *
 * Reads:  8 rows of 8 bytes of pSrc.
 * Writes: 8 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x8Fwd_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep);

/**
 * Forward transform of a block of 4 columns and 8 rows in place.
 *
 * @param[in,out] pSrcDst     samples; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 *
 * Reads:  8 rows of 8 bytes of pSrcDst.
 * Writes: the same 8 rows of 8 bytes.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x8Fwd_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep);

/**
 * Inverse transform of a block of 4 columns and 4 rows.
 *
 * @param[in]  pSrc       coefficients
 * @param[in]  srcStep    distance between rows of pSrc in bytes
 * @param[out] pDst       receives the samples
 * @param[in]  dstStep    distance between rows of pDst in bytes
 * @param[in]  srcSizeNZ  columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the corner of pSrc, 1x1, 2x2 or 4x4, that srcSizeNZ selects.
 * Writes: 4 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x4Inv_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep,
                                                  zvpSize srcSizeNZ);

/**
 * Inverse transform of a block of 4 columns and 4 rows in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the samples
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     srcSizeNZ   columns and rows of the corner outside of which no coefficient counts
 *
 * Reads:  the corner of pSrcDst, 1x1, 2x2 or 4x4, that srcSizeNZ selects.
 * Writes: 4 rows of 8 bytes of pSrcDst.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x4Inv_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, zvpSize srcSizeNZ);

/**
 * Forward transform of a block of 4 columns and 4 rows.
 *
 * @param[in]  pSrc     samples
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives the coefficients
 * @param[in]  dstStep  distance between rows of pDst in bytes
 *
 * Reads:  4 rows of 8 bytes of pSrc.
 * Writes: 4 rows of 8 bytes of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x4Fwd_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, int32_t dstStep);

/**
 * Forward transform of a block of 4 columns and 4 rows in place.
 *
 * @param[in,out] pSrcDst     samples; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 *
 * Reads:  4 rows of 8 bytes of pSrcDst.
 * Writes: the same 4 rows of 8 bytes.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiTransform4x4Fwd_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep);

/** @} */ /* vc1_vc_1_transforms */

/**
 * @defgroup vc1_vc_1_quantization VC-1 quantization
 *
 * Quantization of VC-1 blocks and its inverse (SMPTE 421M clause 8), with the uniform and the non-uniform quantizer.
 *
 * QP is the doubled step, 2 * MQUANT + HALFQP. It divides in the forward direction, where it lies in 2..62, and
 * multiplies in the inverse direction, where it may have any value. Elements are int16_t.
 *
 * Forward. The non-uniform quantizer first takes QP >> 1 off the magnitude: x -= sign(x) * (QP >> 1), where a small x
 * may pass zero. Then x becomes x / QP with the fraction dropped, exactly at all QP but 19, 21, 27, 41 and 55: there
 * the multiples of QP come out one too small in magnitude, such as 1723 for 32756 at QP 19, and at 55 large values one
 * above a multiple too. These results are part of the contract.
 *
 * Inverse. x becomes x * QP with the uniform quantizer and x * QP + sign(x) * (QP >> 1) with the non-uniform one, where
 * sign(0) is 0. Results keep their low 16 bits and do not saturate.
 *
 * Intra members work on an 8x8 block and leave the DC, its first element, to the caller: it is neither quantized nor
 * counted. Inter members work on all elements of a block of 4 or 8 columns and 4 or 8 rows.
 *
 * pDstSizeNZ receives the corner that holds all non-zero elements, which is what the inverse transforms take as
 * srcSizeNZ: the width is 1 + the last column that has one, the height 1 + the last row that has one. For intra members
 * row 0 and column 0 count as non-zero, so the corner is at least 1x1; a zero block of inter members has 0x0. What is
 * looked at are the results, but for the inter members with two buffers: those look at the source. The two differ only
 * where a non-zero x has a result of 0 in its low 16 bits.
 *
 * For all members: steps may have any value, negative and odd ones too, and nothing needs to be aligned. pSrc and pDst
 * may be one block with one step; otherwise they must not overlap. pDstSizeNZ must not lie in a block.
 * @{
 */

/**
 * Forward uniform quantization of an intra block in place, all but its DC.
 *
 * @param[in,out] pSrcDst     coefficients; receives the levels
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, 2..62
 *
 * Reads:  8 rows of 16 bytes of pSrcDst.
 * Writes: the same bytes without the first 2.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is below 2 or above 62.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantIntraUniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP);

/**
 * Forward non-uniform quantization of an intra block in place, all but its DC.
 *
 * @param[in,out] pSrcDst     coefficients; receives the levels
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, 2..62
 *
 * Reads:  8 rows of 16 bytes of pSrcDst.
 * Writes: the same bytes without the first 2.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is below 2 or above 62.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantIntraNonuniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP);

/**
 * Forward uniform quantization of an inter block in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the levels
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, 2..62
 * @param[in]     roiSize     columns and rows of the block, each 4 or 8
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrcDst.
 * Writes: the same elements.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is below 2 or above 62.
 * @retval zvpStatusBadSize      the height, or then the width, of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInterUniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP, zvpSize roiSize);

/**
 * Forward non-uniform quantization of an inter block in place.
 *
 * @param[in,out] pSrcDst     coefficients; receives the levels
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, 2..62
 * @param[in]     roiSize     columns and rows of the block, each 4 or 8
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrcDst.
 * Writes: the same elements.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOutOfRange   QP is below 2 or above 62.
 * @retval zvpStatusBadSize      the height, or then the width, of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInterNonuniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP,
                                                        zvpSize roiSize);

/**
 * Inverse uniform quantization of an intra block, all but its DC.
 *
 * @param[in]  pSrc        levels
 * @param[in]  srcStep     distance between rows of pSrc in bytes
 * @param[out] pDst        receives the coefficients, and the DC as it is
 * @param[in]  dstStep     distance between rows of pDst in bytes
 * @param[in]  QP          doubled quantizer step, any value
 * @param[out] pDstSizeNZ  receives the non-zero corner of the results, at least 1x1; not written on error
 *
 * Reads:  8 rows of 16 bytes of pSrc.
 * Writes: 8 rows of 16 bytes of pDst, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pDstSizeNZ is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntraUniform_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst,
                                                       int32_t dstStep, int32_t QP, zvpSize *pDstSizeNZ);

/**
 * Inverse uniform quantization of an intra block in place, all but its DC.
 *
 * @param[in,out] pSrcDst     levels; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, any value
 * @param[out]    pDstSizeNZ  receives the non-zero corner of the results, at least 1x1; not written on error
 *
 * Reads:  8 rows of 16 bytes of pSrcDst.
 * Writes: the same bytes without the first 2, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrcDst or pDstSizeNZ is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntraUniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP,
                                                        zvpSize *pDstSizeNZ);

/**
 * Inverse non-uniform quantization of an intra block, all but its DC.
 *
 * @param[in]  pSrc        levels
 * @param[in]  srcStep     distance between rows of pSrc in bytes
 * @param[out] pDst        receives the coefficients, and the DC as it is
 * @param[in]  dstStep     distance between rows of pDst in bytes
 * @param[in]  QP          doubled quantizer step, any value
 * @param[out] pDstSizeNZ  receives the non-zero corner of the results, at least 1x1; not written on error
 *
 * Reads:  8 rows of 16 bytes of pSrc.
 * Writes: 8 rows of 16 bytes of pDst, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pDstSizeNZ is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntraNonuniform_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst,
                                                          int32_t dstStep, int32_t QP, zvpSize *pDstSizeNZ);

/**
 * Inverse non-uniform quantization of an intra block in place, all but its DC.
 *
 * @param[in,out] pSrcDst     levels; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, any value
 * @param[out]    pDstSizeNZ  receives the non-zero corner of the results, at least 1x1; not written on error
 *
 * Reads:  8 rows of 16 bytes of pSrcDst.
 * Writes: the same bytes without the first 2, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrcDst or pDstSizeNZ is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvIntraNonuniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP,
                                                           zvpSize *pDstSizeNZ);

/**
 * Inverse uniform quantization of an inter block.
 *
 * @param[in]  pSrc        levels
 * @param[in]  srcStep     distance between rows of pSrc in bytes
 * @param[out] pDst        receives the coefficients
 * @param[in]  dstStep     distance between rows of pDst in bytes
 * @param[in]  QP          doubled quantizer step, any value
 * @param[in]  roiSize     columns and rows of the block, each 4 or 8
 * @param[out] pDstSizeNZ  receives the non-zero corner of the source; not written on error
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrc.
 * Writes: as many of pDst, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pDstSizeNZ is null.
 * @retval zvpStatusBadSize      the height or the width of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvInterUniform_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst,
                                                       int32_t dstStep, int32_t QP, zvpSize roiSize,
                                                       zvpSize *pDstSizeNZ);

/**
 * Inverse uniform quantization of an inter block in place.
 *
 * @param[in,out] pSrcDst     levels; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, any value
 * @param[in]     roiSize     columns and rows of the block, each 4 or 8
 * @param[out]    pDstSizeNZ  receives the non-zero corner of the results; not written on error
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrcDst.
 * Writes: the same elements, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrcDst or pDstSizeNZ is null.
 * @retval zvpStatusBadSize      the height or the width of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvInterUniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP,
                                                        zvpSize roiSize, zvpSize *pDstSizeNZ);

/**
 * Inverse non-uniform quantization of an inter block.
 *
 * @param[in]  pSrc        levels
 * @param[in]  srcStep     distance between rows of pSrc in bytes
 * @param[out] pDst        receives the coefficients
 * @param[in]  dstStep     distance between rows of pDst in bytes
 * @param[in]  QP          doubled quantizer step, any value
 * @param[in]  roiSize     columns and rows of the block, each 4 or 8
 * @param[out] pDstSizeNZ  receives the non-zero corner of the source; not written on error
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrc.
 * Writes: as many of pDst, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pDstSizeNZ is null.
 * @retval zvpStatusBadSize      the height or the width of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvInterNonuniform_VC1_16s_C1R(const int16_t *pSrc, int32_t srcStep, int16_t *pDst,
                                                          int32_t dstStep, int32_t QP, zvpSize roiSize,
                                                          zvpSize *pDstSizeNZ);

/**
 * Inverse non-uniform quantization of an inter block in place.
 *
 * @param[in,out] pSrcDst     levels; receives the coefficients
 * @param[in]     srcDstStep  distance between rows of pSrcDst in bytes
 * @param[in]     QP          doubled quantizer step, any value
 * @param[in]     roiSize     columns and rows of the block, each 4 or 8
 * @param[out]    pDstSizeNZ  receives the non-zero corner of the results; not written on error
 *
 * Reads:  roiSize.height rows of roiSize.width elements of pSrcDst.
 * Writes: the same elements, *pDstSizeNZ.
 *
 * @retval zvpStatusNullPointer  pSrcDst or pDstSizeNZ is null.
 * @retval zvpStatusBadSize      the height or the width of roiSize is neither 4 nor 8.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInvInterNonuniform_VC1_16s_C1IR(int16_t *pSrcDst, int32_t srcDstStep, int32_t QP,
                                                           zvpSize roiSize, zvpSize *pDstSizeNZ);

/** @} */ /* vc1_vc_1_quantization */

/**
 * @defgroup vc1_vc_1_interpolation VC-1 interpolation
 *
 * Motion compensation of VC-1 at quarter-sample positions (SMPTE 421M 8.3.6.5): bicubic for luma, bilinear for luma and
 * chroma, on bytes; _C1R for one plane, _C2R for a plane of interleaved chroma pairs. There are two layers. The QP
 * functions predict from samples that are all there. The IC functions take a whole reference plane and a place in it:
 * they pad what lies outside, map the samples for intensity compensation, and hand the result to the QP function.
 *
 * With p(x, y) the source samples around the block, rc the rounding control, and every shift arithmetic:
 *
 * Bilinear: ((4-dx) (4-dy) p(x, y) + dx (4-dy) p(x+1, y) + (4-dx) dy p(x, y+1) + dx dy p(x+1, y+1) + 8 - rc) >> 4.
 *
 * Bicubic: a filter of four taps over the positions -1, 0, 1, 2: (-4, 53, 18, -3) for a fraction of 1, (-1, 9, 9, -1)
 * for 2, (-3, 18, 53, -4) for 3. By the fractions, results clipped to 0..255 at the end:
 *
 * | dx, dy    | result                                                                                        |
 * |-----------|-----------------------------------------------------------------------------------------------|
 * | both 0    | the sample                                                                                    |
 * | dx 0      | (vertical sum + 2^(S-1) - 1 + rc) >> S, where S is 6, 4, 6 for dy 1, 2, 3                     |
 * | dy 0      | (horizontal sum + 2^(S-1) - rc) >> S, where S is 6, 4, 6 for dx 1, 2, 3                       |
 * | neither 0 | (horizontal sum of t + 64 - rc) >> 7, where t is (vertical sum + 2^(S-1) - 1 + rc) >> S, not  |
 * |           | clipped, and S is 5 with both fractions odd, 3 with one of them odd, 1 with none              |
 *
 * Reach of a block of W x H samples, columns and rows counted from its top left one: of the source the samples that
 * have a weight and no other. Bilinear: columns 0..W-1, to W where dx is not 0; rows 0..H-1, to H where dy is not 0.
 * Bicubic: columns -1..W+1 where dx is not 0, rows -1..H+1 where dy is not 0. Exactly the block is written. It must not
 * overlap the source or the maps; maps may be one. Steps are not checked and may be negative.
 *
 * Sizes that are none of the listed ones are not refused: they run the kernel that the text names, which reads and
 * writes its own size.
 * @{
 */

/** A block and its place between samples, for the QP functions. */
typedef struct zvpInterpolationBlock {
  const uint8_t *pSrc;  /**< Source at the whole-sample position of the block's top left sample. */
  int32_t srcStep;      /**< Distance between rows of the source, in bytes. */
  uint8_t *pDst;        /**< The block that is written. */
  int32_t dstStep;      /**< Distance between rows of the block, in bytes. */
  int32_t dx;           /**< Horizontal fraction in quarters, 0 to 3. */
  int32_t dy;           /**< Vertical fraction in quarters, 0 to 3. */
  zvpSize roiSize;      /**< Size of the block in samples; of interleaved chroma, in pairs. */
  int32_t roundControl; /**< 0 or 1. The bilinear functions look at its lowest bit only. */
} zvpInterpolationBlock;

/** A reference plane and a block in it, for the IC functions. */
typedef struct zvpInterpolationICBlock {
  const uint8_t *pSrc;       /**< Sample (0, 0) of the reference frame, or of the reference field. */
  int32_t srcStep;           /**< Distance between rows of the frame, in bytes, for a field as well. */
  uint8_t *pDst;             /**< The block that is written. */
  int32_t dstStep;           /**< Distance between rows of the block, in bytes. */
  const uint8_t *pLUTTop;    /**< 256 bytes that rows of the top field are mapped by, or null. */
  const uint8_t *pLUTBottom; /**< 256 bytes that rows of the bottom field are mapped by, or null. */
  zvpSize frameSize;         /**< Size of the frame in samples, of interleaved chroma in pairs, for a field as well. */
  zvpSize blockSize;         /**< Size of the block in samples; of interleaved chroma, in pairs. */
  zvpPoint blockPos;         /**< Place of the block: x in samples, of interleaved chroma in bytes (and even); y in rows
                                  of the frame or the field. Any place, also outside. */
  int32_t dx;                /**< Horizontal fraction in quarters, 0 to 3. */
  int32_t dy;                /**< Vertical fraction in quarters, 0 to 3. */
  int32_t oppositePadding;   /**< Not 0: rows beyond a frame repeat the last row of their own parity. */
  int32_t fieldPrediction;   /**< Not 0: the reference is a field: every second row of the frame. */
  int32_t roundControl;      /**< 0 or 1. The bilinear functions look at its lowest bit only. */
  int32_t isPredBottom;      /**< With fieldPrediction: not 0 if the reference is the bottom field. */
} zvpInterpolationICBlock;

/**
 * Bicubic prediction of a block.
 *
 * @param[in] pBlock  the block: 8x8, 16x8, 8x16 or 16x16. The kernel goes by (width >> 4) + (height >> 4): 0 is 8x8,
 *                    1 is 16x8 (which is all that is written of 8x16), 2 is 16x16. dx, dy, roundControl and sums
 *                    beyond 2 are not checked: what other values do is undefined.
 *
 * Reads:  the record; the bicubic reach of the family.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateQPBicubic_VC1_8u_C1R(const zvpInterpolationBlock *pBlock);

/**
 * Bilinear prediction of a block.
 *
 * @param[in] pBlock  the block: 16x16, 8x8, 8x4 or 4x4. A width of 16 runs the 16x16 kernel whatever the height, a
 *                    width of 8 the 8x8 kernel for height 8 and else the 8x4 one, any other width the 4x4 kernel. Of
 *                    dx and dy the two lowest bits count.
 *
 * Reads:  the record; the bilinear reach of the family.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateQPBilinear_VC1_8u_C1R(const zvpInterpolationBlock *pBlock);

/**
 * Bilinear prediction of a block of interleaved chroma pairs.
 *
 * Each component by itself: the sample to the right is the one of the next pair.
 *
 * @param[in] pBlock  the block: 8x8, 8x4 or 4x4 pairs. A width of 8 runs the 8x8 kernel for height 8 and else the 8x4
 *                    one, any other width the 4x4 kernel. Of dx and dy the two lowest bits count.
 *
 * Reads:  the record; the bilinear reach of the family, in pairs.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateQPBilinear_VC1_8u_C2R(const zvpInterpolationBlock *pBlock);

/**
 * Bicubic prediction of a block by its place in a plane, with padding and intensity compensation.
 *
 * The neighbourhood is the block with one row and column before it and two behind it, whatever the fractions. If it
 * lies in the picture (the frame, or the field with half the frame's rows, rounded down) and both maps are null, the
 * prediction is made from the plane itself. Otherwise the neighbourhood is copied and predicted from there. What lies
 * outside the picture repeats the nearest sample inside, with one exception: with oppositePadding, rows above a frame
 * repeat row 0 or 1, and rows below its last or last but one, each the one of its own parity; rows above a field repeat
 * row 0 of the frame and rows below it the frame's last row, whichever field is the reference.
 *
 * Copies pass through a map; a null map leaves samples as they are. For a field it is the field's own map, but with
 * oppositePadding rows above pass through pLUTTop and rows below through pLUTBottom. For a frame it is pLUTTop for even
 * rows and pLUTBottom for odd ones, as far as the following, required as it stands, does not depart from that. A is
 * pLUTTop and B pLUTBottom; if y, the block's place, is even and at least 1, the two are exchanged.
 *   1. Rows within the picture: the first has A, the next B, and so on in turn.
 *   2. Without oppositePadding: rows above have A and rows below B.
 *   3. With it, rows above: upward from the picture B, A, B and so on in turn; if no row is within the picture and y is
 *      odd, A and B are exchanged first.
 *   4. With it, rows below: downward B, A, B and so on in turn. If their number is odd, A and B are exchanged first,
 *      but not if no row is within the picture and y is even.
 *   5. If no column is within the picture: A for the neighbourhood's first row, B for the second, and so on in turn,
 *      with A and B as 3 and 4 have left them; and rows above and below a field repeat the field's own rows.
 * Also required: of a neighbourhood that lies wholly to the left of the picture, with a block 16 wide, all columns but
 * the first have the sample that belongs to the row below; only the last row has its own.
 *
 * @param[in] pBlock  plane, maps, place and fractions. Block widths and heights 1 to 16, meant to be 8 or 16; the
 *                    kernel is that of zvpiInterpolateQPBicubic_VC1_8u_C1R(), and where it is larger than the block,
 *                    samples beyond the neighbourhood that was copied count as 0. Frames of at least one sample; with
 *                    fieldPrediction or oppositePadding of at least two rows, meant to be an even number.
 *
 * Reads:  the record; of the plane, samples of the neighbourhood and those that it is padded with, all in the frame;
 *         without a copy, the reach of the QP function. Of a map, any of its 256 bytes.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateICBicubicBlock_VC1_8u_C1R(const zvpInterpolationICBlock *pBlock);

/**
 * Bilinear prediction of a block by its place in a plane, with padding and intensity compensation.
 *
 * As zvpiInterpolateICBicubicBlock_VC1_8u_C1R(), with the same neighbourhood and padding, and
 * zvpiInterpolateQPBilinear_VC1_8u_C1R() behind it.
 *
 * @param[in] pBlock  plane, maps, place and fractions. Block widths and heights 1 to 16, meant to be 16x16, 8x8, 8x4 or
 *                    4x4.
 *
 * Reads:  the record; of the plane, samples of the neighbourhood and those that it is padded with, all in the frame;
 *         without a copy, the reach of the QP function. Of a map, any of its 256 bytes.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateICBilinearBlock_VC1_8u_C1R(const zvpInterpolationICBlock *pBlock);

/**
 * Bilinear prediction of a block of interleaved chroma pairs by its place in a plane, with padding and intensity
 * compensation.
 *
 * As zvpiInterpolateICBilinearBlock_VC1_8u_C1R(), with pairs for samples; blockPos.x alone counts bytes. Both
 * components are mapped alike.
 *
 * @param[in] pBlock  plane, maps, place and fractions. Block widths and heights 1 to 16 pairs, meant to be 8x8, 8x4 or
 *                    4x4.
 *
 * Reads:  the record; of the plane, pairs of the neighbourhood and those that it is padded with, all in the frame;
 *         without a copy, the reach of the QP function. Of a map, any of its 256 bytes.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pBlock, its pSrc or its pDst is null. The only check.
 * @retval zvpStatusOk           The block is written.
 */
ZVP_API zvpStatus zvpiInterpolateICBilinearBlock_VC1_8u_C2R(const zvpInterpolationICBlock *pBlock);

/** @} */ /* vc1_vc_1_interpolation */

/**
 * @defgroup vc1_vc_1_deblocking VC-1 deblocking
 *
 * The in-loop filter of VC-1 (SMPTE 421M 8.6), in place: one call an edge of a macroblock. Across the edge a line has
 * eight samples, P1 to P4 before the edge and P5 to P8 behind it; P4 and P5, next to the edge, are all that changes.
 * For each line, with divisions that truncate towards zero and arithmetic shifts:
 *
 * 1. clip = (P4 - P5) / 2. The line fails if clip is 0.
 * 2. a0 = (2 (P3 - P6) - 5 (P4 - P5) + 4) >> 3. The line fails if |a0| >= pQuant.
 * 3. a1 = (2 (P1 - P4) - 5 (P2 - P3) + 4) >> 3, a2 = (2 (P5 - P8) - 5 (P6 - P7) + 4) >> 3, a3 = min(|a1|, |a2|). The
 *    line fails if a3 >= |a0|.
 * 4. d = 5 (sign(a0) a3 - a0) / 8, or 0 if it has not the sign of clip, or clip if |d| > |clip|. P4 becomes P4 - d
 *    and P5 becomes P5 + d.
 *
 * Lines come in groups of four. The third line of a group decides: if it fails, none of the four is filtered, whatever
 * the others hold. If it passes, also with a d of 0, each of the others is filtered unless it fails by itself.
 *
 * pSrcDst is at P5 of the first line: the first sample to the right of a vertical edge or below a horizontal one.
 * pQuant is not checked; values below 1 filter nothing.
 *
 * Reads:  the eight samples of each line of the groups that are not disabled. A disabled group is not read.
 * Writes: P4 and P5 of these lines; what does not change may be written back as it was.
 * Steps:  any value, negative too. The lines of an edge must not overlap one another.
 * @{
 */

/**
 * A vertical luma edge: 16 rows.
 *
 * @param[in,out] pSrcDst           the sample to the right of the edge in its first row
 * @param[in]     pQuant            quantizer scale of the picture
 * @param[in]     srcDstStep        distance from one row to the next, in bytes
 * @param[in]     edgeDisabledFlag  bits 0, 1, 2 and 3 disable rows 0-3, 4-7, 8-11 and 12-15; others are ignored
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLuma_VerEdge_VC1_8u_C1IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                               uint32_t edgeDisabledFlag);

/**
 * A horizontal luma edge: 16 columns.
 *
 * @param[in,out] pSrcDst           the sample below the edge in its first column
 * @param[in]     pQuant            quantizer scale of the picture
 * @param[in]     srcDstStep        distance from one row to the next, in bytes
 * @param[in]     edgeDisabledFlag  bits 0, 1, 2 and 3 disable columns 0-3, 4-7, 8-11 and 12-15; others are ignored
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingLuma_HorEdge_VC1_8u_C1IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                               uint32_t edgeDisabledFlag);

/**
 * A vertical edge of a chroma plane: 8 rows.
 *
 * @param[in,out] pSrcDst           the sample to the right of the edge in its first row
 * @param[in]     pQuant            quantizer scale of the picture
 * @param[in]     srcDstStep        distance from one row to the next, in bytes
 * @param[in]     edgeDisabledFlag  bit 0 or 1 disables rows 0-3, bit 2 or 3 rows 4-7; others are ignored
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C1IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                                 uint32_t edgeDisabledFlag);

/**
 * A horizontal edge of a chroma plane: 8 columns.
 *
 * @param[in,out] pSrcDst           the sample below the edge in its first column
 * @param[in]     pQuant            quantizer scale of the picture
 * @param[in]     srcDstStep        distance from one row to the next, in bytes
 * @param[in]     edgeDisabledFlag  bit 0 or 1 disables columns 0-3, bit 2 or 3 columns 4-7; others are ignored
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C1IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                                 uint32_t edgeDisabledFlag);

/**
 * A vertical edge of a plane of interleaved chroma pairs: 8 rows of each component.
 *
 * U is at even bytes from pSrcDst, V at odd ones: their samples P1 to P8 lie two bytes apart. Each component is
 * filtered by itself, with its own flag.
 *
 * @param[in,out] pSrcDst            the pair to the right of the edge in its first row
 * @param[in]     pQuant             quantizer scale of the picture
 * @param[in]     srcDstStep         distance from one row to the next, in bytes
 * @param[in]     uEdgeDisabledFlag  of U: bit 0 or 1 disables rows 0-3, bit 2 or 3 rows 4-7; others are ignored
 * @param[in]     vEdgeDisabledFlag  of V, likewise
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_VerEdge_VC1_8u_C2IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                                 uint32_t uEdgeDisabledFlag,
                                                                 uint32_t vEdgeDisabledFlag);

/**
 * A horizontal edge of a plane of interleaved chroma pairs: 8 columns of each component.
 *
 * U is at even bytes from pSrcDst, V at odd ones. Each component is filtered by itself, with its own flag.
 *
 * @param[in,out] pSrcDst            the pair below the edge in its first column
 * @param[in]     pQuant             quantizer scale of the picture
 * @param[in]     srcDstStep         distance from one row to the next, in bytes
 * @param[in]     uEdgeDisabledFlag  of U: bit 0 or 1 disables columns 0-3, bit 2 or 3 columns 4-7; others are ignored
 * @param[in]     vEdgeDisabledFlag  of V, likewise
 *
 * @retval zvpStatusNullPointer  pSrcDst is null. The only check.
 * @retval zvpStatusOk           The edge is filtered.
 */
ZVP_API zvpStatus zvpiFilterDeblockingChroma_HorEdge_VC1_8u_C2IR(uint8_t *pSrcDst, int32_t pQuant, int32_t srcDstStep,
                                                                 uint32_t uEdgeDisabledFlag,
                                                                 uint32_t vEdgeDisabledFlag);

/** @} */ /* vc1_vc_1_deblocking */

/**
 * @defgroup vc1_vc_1_overlap_smoothing_range_mapping_and_hadamard_sums VC-1 overlap smoothing, range mapping and Hadamard sums
 *
 * Overlap smoothing of block edges from 16-bit samples to the picture (SMPTE 421M 8.5), the scaling of a plane by the
 * range mapping of the advanced profile (RANGE_MAPY, RANGE_MAPUV), and an 8x8 Hadamard transform with the sum of its
 * magnitudes as a measure of cost.
 *
 * Smoothing. Each line across an edge has two samples a, b before it and two samples c, d behind it. They become
 *
 *     y0 = (7 * a         + d + r0) >> 3
 *     y1 = (7 * b - a + c + d + r1) >> 3
 *     y2 = (7 * c - d + a + b + r0) >> 3
 *     y3 = (7 * d         + a + r1) >> 3
 *
 * in 32 bits. r0 is 4 and r1 is 3 in lines 0, 2, 4 and so on; in lines 1, 3, 5 they change places. The picture gets the
 * results clipped to 0..255. The members for vertical edges also write y0 to y3 back over a to d, unclipped, the low
 * 16 bits of each, for the horizontal edges that follow; the members for horizontal edges leave their sources alone.
 *
 * Vertical edges: the first source points at a of the top line, with b to its right; the second at c, with d to its
 * right. pDst points at the sample behind the edge in the top line: y0 to y3 go to columns -2, -1, 0, 1. Horizontal
 * edges: the first source points at a of the left line, with b one step down; the second at c, with d one step down.
 * pDst points at the sample below the edge in the left line: y0 to y3 go to rows -2, -1, 0, 1.
 *
 * For all members: steps may have any value, negative and odd ones too, and nothing needs to be aligned. Operands must
 * not overlap unless a text says so.
 * @{
 */

/**
 * Overlap smoothing of a vertical edge of 16 luma lines.
 *
 * edgeFlag & 3 enables the first eight lines, edgeFlag & 12 the second eight; other bits do nothing. Lines that are not
 * enabled are neither read nor written. With a fieldMode other than 0 the rows of one field come first: the first eight
 * lines are rows 0, 2 .. 14, the second eight are rows 1, 3 .. 15.
 *
 * @param[in,out] pSrcLeft      a of the top row, b to its right; receives y0 and y1
 * @param[in]     srcLeftStep   distance between rows of pSrcLeft in bytes
 * @param[in,out] pSrcRight     c of the top row, d to its right; receives y2 and y3
 * @param[in]     srcRightStep  distance between rows of pSrcRight in bytes
 * @param[out]    pDst          sample right of the edge in the top row
 * @param[in]     dstStep       distance between rows of pDst in bytes
 * @param[in]     fieldMode     0: lines are rows in order; else: those of the two fields in turn
 * @param[in]     edgeFlag      which lines are smoothed
 *
 * Reads:  4 bytes of each source in each enabled line.
 * Writes: the same bytes; pDst[-2] to pDst[1] of each enabled line.
 *
 * @retval zvpStatusNullPointer  pSrcLeft, pSrcRight or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingLuma_VerEdge_VC1_16s8u_C1R(int16_t *pSrcLeft, int32_t srcLeftStep, int16_t *pSrcRight,
                                                          int32_t srcRightStep, uint8_t *pDst, int32_t dstStep,
                                                          uint32_t fieldMode, uint32_t edgeFlag);

/**
 * Overlap smoothing of a horizontal edge of 16 luma lines.
 *
 * edgeFlag & 3 enables columns 0 to 7, edgeFlag & 12 columns 8 to 15; other bits do nothing. Columns that are not
 * enabled are neither read nor written.
 *
 * @param[in]  pSrcUpper      a of the left column, b one step down
 * @param[in]  srcUpperStep   distance between rows of pSrcUpper in bytes
 * @param[in]  pSrcBottom     c of the left column, d one step down
 * @param[in]  srcBottomStep  distance between rows of pSrcBottom in bytes
 * @param[out] pDst           sample below the edge in the left column
 * @param[in]  dstStep        distance between rows of pDst in bytes
 * @param[in]  edgeFlag       which columns are smoothed
 *
 * Reads:  2 rows of each source in the enabled columns.
 * Writes: rows -2 to 1 of pDst in the enabled columns.
 *
 * @retval zvpStatusNullPointer  pSrcUpper, pSrcBottom or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingLuma_HorEdge_VC1_16s8u_C1R(int16_t *pSrcUpper, int32_t srcUpperStep, int16_t *pSrcBottom,
                                                          int32_t srcBottomStep, uint8_t *pDst, int32_t dstStep,
                                                          uint32_t edgeFlag);

/**
 * Overlap smoothing of a vertical edge of 8 chroma lines.
 *
 * @param[in,out] pSrcLeft      a of the top row, b to its right; receives y0 and y1
 * @param[in]     srcLeftStep   distance between rows of pSrcLeft in bytes
 * @param[in,out] pSrcRight     c of the top row, d to its right; receives y2 and y3
 * @param[in]     srcRightStep  distance between rows of pSrcRight in bytes
 * @param[out]    pDst          sample right of the edge in the top row
 * @param[in]     dstStep       distance between rows of pDst in bytes
 *
 * Reads:  4 bytes of each source in 8 rows.
 * Writes: the same bytes; pDst[-2] to pDst[1] of 8 rows.
 *
 * @retval zvpStatusNullPointer  pSrcLeft, pSrcRight or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R(int16_t *pSrcLeft, int32_t srcLeftStep, int16_t *pSrcRight,
                                                            int32_t srcRightStep, uint8_t *pDst, int32_t dstStep);

/**
 * Overlap smoothing of a horizontal edge of 8 chroma lines.
 *
 * @param[in]  pSrcUpper      a of the left column, b one step down
 * @param[in]  srcUpperStep   distance between rows of pSrcUpper in bytes
 * @param[in]  pSrcBottom     c of the left column, d one step down
 * @param[in]  srcBottomStep  distance between rows of pSrcBottom in bytes
 * @param[out] pDst           sample below the edge in the left column
 * @param[in]  dstStep        distance between rows of pDst in bytes
 *
 * Reads:  2 rows of 16 bytes of each source.
 * Writes: 8 bytes of rows -2 to 1 of pDst.
 *
 * @retval zvpStatusNullPointer  pSrcUpper, pSrcBottom or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R(int16_t *pSrcUpper, int32_t srcUpperStep,
                                                            int16_t *pSrcBottom, int32_t srcBottomStep, uint8_t *pDst,
                                                            int32_t dstStep);

/**
 * Overlap smoothing of a vertical edge of 8 chroma lines, from two planes to interleaved samples.
 *
 * As zvpiSmoothingChroma_VerEdge_VC1_16s8u_C1R() for U and for V, with the sources' own steps; samples of pDst come as
 * U, V, U, V.
 *
 * @param[in,out] pSrcLeftU      a of U in the top row, b to its right; receives y0 and y1
 * @param[in]     srcLeftStepU   distance between rows of pSrcLeftU in bytes
 * @param[in,out] pSrcRightU     c of U in the top row, d to its right; receives y2 and y3
 * @param[in]     srcRightStepU  distance between rows of pSrcRightU in bytes
 * @param[in,out] pSrcLeftV      a of V in the top row, b to its right; receives y0 and y1
 * @param[in]     srcLeftStepV   distance between rows of pSrcLeftV in bytes
 * @param[in,out] pSrcRightV     c of V in the top row, d to its right; receives y2 and y3
 * @param[in]     srcRightStepV  distance between rows of pSrcRightV in bytes
 * @param[out]    pDst           sample of U right of the edge in the top row, that of V behind it
 * @param[in]     dstStep        distance between rows of pDst in bytes
 *
 * Reads:  4 bytes of each source in 8 rows.
 * Writes: the same bytes; pDst[-4] to pDst[3] of 8 rows.
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(int16_t *pSrcLeftU, int32_t srcLeftStepU,
                                                              int16_t *pSrcRightU, int32_t srcRightStepU,
                                                              int16_t *pSrcLeftV, int32_t srcLeftStepV,
                                                              int16_t *pSrcRightV, int32_t srcRightStepV, uint8_t *pDst,
                                                              int32_t dstStep);

/**
 * Overlap smoothing of a horizontal edge of 8 chroma lines, from two planes to interleaved samples.
 *
 * As zvpiSmoothingChroma_HorEdge_VC1_16s8u_C1R() for U and for V, with the sources' own steps; samples of pDst come as
 * U, V, U, V.
 *
 * @param[in]  pSrcUpperU      a of U in the left column, b one step down
 * @param[in]  srcUpperStepU   distance between rows of pSrcUpperU in bytes
 * @param[in]  pSrcBottomU     c of U in the left column, d one step down
 * @param[in]  srcBottomStepU  distance between rows of pSrcBottomU in bytes
 * @param[in]  pSrcUpperV      a of V in the left column, b one step down
 * @param[in]  srcUpperStepV   distance between rows of pSrcUpperV in bytes
 * @param[in]  pSrcBottomV     c of V in the left column, d one step down
 * @param[in]  srcBottomStepV  distance between rows of pSrcBottomV in bytes
 * @param[out] pDst            sample of U below the edge in the left column, that of V behind it
 * @param[in]  dstStep         distance between rows of pDst in bytes
 *
 * Reads:  2 rows of 16 bytes of each source.
 * Writes: 16 bytes of rows -2 to 1 of pDst.
 *
 * @retval zvpStatusNullPointer  a pointer is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(int16_t *pSrcUpperU, int32_t srcUpperStepU,
                                                              int16_t *pSrcBottomU, int32_t srcBottomStepU,
                                                              int16_t *pSrcUpperV, int32_t srcUpperStepV,
                                                              int16_t *pSrcBottomV, int32_t srcBottomStepV,
                                                              uint8_t *pDst, int32_t dstStep);

/**
 * Range mapping of a plane.
 *
 * y = (((x - 128) * (rangeMap + 9) + 4) >> 3) + 128, clipped to 0..255. The value 128 stays.
 *
 * @param[in]  pSrc      top left sample of the source
 * @param[in]  srcStep   distance between rows of pSrc in bytes
 * @param[out] pDst      top left sample of the destination; may be pSrc with the same step, else must not overlap it
 * @param[in]  dstStep   distance between rows of pDst in bytes
 * @param[in]  roiSize   columns and rows; with a width or a height below 1 nothing is read or written
 * @param[in]  rangeMap  RANGE_MAPY or RANGE_MAPUV, 0..7
 *
 * Reads:  roiSize.height rows of roiSize.width bytes of pSrc.
 * Writes: as many of pDst.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOutOfRange   rangeMap is below 0 or above 7.
 * @retval zvpStatusOk           Done, also where there was nothing to do.
 */
ZVP_API zvpStatus zvpiRangeMapping_VC1_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                              zvpSize roiSize, int32_t rangeMap);

/**
 * 8x8 Hadamard transform of int16_t samples and the sum of its magnitudes.
 *
 * Y = H X H with H(k, j) = -1 where k & j has an odd number of bits set, else 1; so Y(0, 0) is the sum of all samples.
 * Y keeps its low 16 bits. *pSum is the sum of |Y| as stored over all 64 elements, -32768 counting 32768.
 *
 * @param[in]  pSrc     top left sample of the block
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives Y row-major, 64 elements without gaps
 * @param[out] pSum     receives the sum; not written on error
 *
 * Reads:  8 rows of 16 bytes of pSrc.
 * Writes: 128 bytes of pDst, *pSum. pDst may overlap pSrc; pSum must not lie in a block.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pSum is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiHadamard8x8Sum_VC1_16s(const int16_t *pSrc, int32_t srcStep, int16_t *pDst, uint32_t *pSum);

/**
 * 8x8 Hadamard transform of byte samples and the sum of its magnitudes.
 *
 * Y = H X H with H(k, j) = -1 where k & j has an odd number of bits set, else 1; so Y(0, 0) is the sum of all samples.
 * Y keeps its low 16 bits. *pSum is the sum of |Y| as stored over all 64 elements, -32768 counting 32768.
 *
 * @param[in]  pSrc     top left sample of the block
 * @param[in]  srcStep  distance between rows of pSrc in bytes
 * @param[out] pDst     receives Y row-major, 64 elements without gaps
 * @param[out] pSum     receives the sum; not written on error
 *
 * Reads:  8 rows of 8 bytes of pSrc.
 * Writes: 128 bytes of pDst, *pSum. pDst may overlap pSrc; pSum must not lie in a block.
 *
 * @retval zvpStatusNullPointer  pSrc, pDst or pSum is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiHadamard8x8Sum_VC1_8u16s(const uint8_t *pSrc, int32_t srcStep, int16_t *pDst, uint32_t *pSum);

/** @} */ /* vc1_vc_1_overlap_smoothing_range_mapping_and_hadamard_sums */

/**
 * @defgroup avs_avs_block_entropy_decoding AVS block entropy decoding
 * @{
 */

/*
 * The coefficients of one 8x8 block in the context-adaptive 2D code of AVS1-P2 (GB/T 20090.2, 9.4): (run, level) pairs,
 * high frequency first, as Exp-Golomb codes whose table changes as the largest magnitude grows.
 *
 * The stream is 32-bit words in native order, bit 31 first. There is no length and no way for a bad stream to fail: a
 * run that leaves the block ends it as the end of block does, the cursor behind the code.
 *
 * Cursor: on the first bit behind the code that ended the block. Bits: no bound, since a prefix of zeros has none; a
 * code of a real stream is at most 63 bits long, and a block has at most 65 of them, escapes counting twice.
 * Look-ahead: none; the word behind the last bit consumed is not read.
 *
 * In the second code of an escape, the magnitude, the order is 0 in all three members.
 */

/**
 * Decodes an intra luma block of AVS.
 *
 * @param[in,out] ppBitStream  address of the pointer to the word that holds the next bit
 * @param[in,out] pBitOffset   index of the next bit in that word, 31 to 0; not checked
 * @param[out]    pNumCoeff    frame scan (scanType 0): the number of positions that the pairs cover, 0 to 64; otherwise
 *                             63, whatever was read
 * @param[out]    pDstCoeffs   64 coefficients in raster order, all written; levels keep their low 16 bits
 * @param[in]     scanType     0 frame, 1 field; bit 0 chooses the scan
 *
 * @retval zvpStatusNullPointer  ppBitStream, *ppBitStream, pBitOffset, pNumCoeff or pDstCoeffs is null.
 * @retval zvpStatusOk           The block was written, also when the stream is damaged.
 */
ZVP_API zvpStatus zvpiDecodeLumaBlockIntra_AVS_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                     int32_t *pNumCoeff, int16_t *pDstCoeffs, int32_t scanType);

/**
 * Decodes an inter luma block of AVS, as zvpiDecodeLumaBlockIntra_AVS_1u16s() with the tables of inter blocks.
 *
 * @param[in,out] ppBitStream  address of the pointer to the word that holds the next bit
 * @param[in,out] pBitOffset   index of the next bit in that word, 31 to 0; not checked
 * @param[out]    pNumCoeff    positions covered, or 63 for a field scan
 * @param[out]    pDstCoeffs   64 coefficients in raster order, all written
 * @param[in]     scanType     0 frame, 1 field; bit 0 chooses the scan
 *
 * @retval zvpStatusNullPointer  ppBitStream, *ppBitStream, pBitOffset, pNumCoeff or pDstCoeffs is null.
 * @retval zvpStatusOk           The block was written, also when the stream is damaged.
 */
ZVP_API zvpStatus zvpiDecodeLumaBlockInter_AVS_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset,
                                                     int32_t *pNumCoeff, int16_t *pDstCoeffs, int32_t scanType);

/**
 * Decodes a chroma block of AVS, as zvpiDecodeLumaBlockIntra_AVS_1u16s() with the tables of chroma blocks.
 *
 * @param[in,out] ppBitStream  address of the pointer to the word that holds the next bit
 * @param[in,out] pBitOffset   index of the next bit in that word, 31 to 0; not checked
 * @param[out]    pNumCoeff    positions covered, or 63 for a field scan
 * @param[out]    pDstCoeffs   64 coefficients in raster order, all written
 * @param[in]     scanType     0 frame, 1 field; other values have no meaning here
 *
 * @retval zvpStatusNullPointer  ppBitStream, *ppBitStream, pBitOffset, pNumCoeff or pDstCoeffs is null.
 * @retval zvpStatusOk           The block was written, also when the stream is damaged.
 */
ZVP_API zvpStatus zvpiDecodeChromaBlock_AVS_1u16s(const uint32_t **ppBitStream, int32_t *pBitOffset, int32_t *pNumCoeff,
                                                  int16_t *pDstCoeffs, int32_t scanType);

/** @} */ /* avs_avs_block_entropy_decoding */

/**
 * @defgroup dv_dv_segment_huffman_decoding DV segment Huffman decoding
 *
 * The variable-length codes of a compressed video segment of DV (IEC 61834-2; SMPTE 314M, ITU-R BT.1618), five
 * macroblocks at a time, into the coefficient blocks that dequantization takes.
 *
 * Segment: five DIF blocks of 80 bytes, 400 in all. Macroblock m begins at byte 80 m. The low four bits of its byte 3
 * are its quantization number QNO. Then follow the spaces of its blocks, at these bytes from 80 m on:
 *
 * |       | blocks | begin at              | size of each       |
 * |-------|--------|-----------------------|--------------------|
 * | DV    | 0..3   | 4, 18, 32, 46         | 14 bytes, 112 bits |
 * | DV    | 4, 5   | 60, 70                | 10 bytes, 80 bits  |
 * | DV100 | 0..5   | 4, 14, 24, 34, 44, 54 | 10 bytes, 80 bits  |
 * | DV100 | 6, 7   | 64, 72                | 8 bytes, 64 bits   |
 *
 * A space begins with 9 bits of DC, 1 bit of DCT mode (0: 8-8-DCT, 1: 2-4-8-DCT) and 2 bits of class number. The AC
 * codes follow; those that do not fit go on in what other blocks leave free, first within the macroblock, then within
 * the segment. The decoder reads each block in its own space, then the unfinished blocks of each macroblock from its
 * free spaces, then what is still unfinished from those of the whole segment, blocks and spaces in stream order. A code
 * may be split over spaces; an escape of 16 bits is split like any other.
 *
 * pBlock: blocks of 64 coefficients, 128 bytes each, block b of macroblock m at index 6 m + b (8 m + b in DV100). They
 * must be zero on entry. The DC, 9 bits with their sign, is stored times 128, AC levels times 64.
 *
 * pBlockParam: one word for each block, written whole:
 *
 * | bits   | meaning                                                                      |
 * |--------|------------------------------------------------------------------------------|
 * | 0      | the end of block was reached                                                 |
 * | 4, 5   | class number                                                                 |
 * | 6      | DCT mode                                                                     |
 * | 8..15  | place in the scan of the last coefficient stored; 0 if there is the DC alone |
 * | 16..19 | QNO                                                                          |
 *
 * pZigzagTables: places in the block, by place in the scan: 64 words for the 8-8-DCT, then 64 for the 2-4-8-DCT. DV100
 * uses the first 64 for every block, whatever its mode bit, and reads no others.
 *
 * A block is never full: behind place 63 one more code is read, in a real stream the end of block.
 *
 * Damaged segments are no error. A block that comes to a pattern without a code stays as it is; it takes the rest of
 * its space with it, and so for each free space that it is offered then. No damage leads to an access outside the
 * bytes named here.
 *
 * A table is read by any number of threads at once.
 * @{
 */

/**
 * Makes the decoding table of the AC codes from two lists of codes.
 *
 * A list is int32_t words: the length in bits of the longest code in the low byte of the first, two words that are not
 * read, then for the lengths 1, 2, ... up to the longest the number of codes of that length and the codes, three words
 * each: the code, right-aligned, its run and its level. A sign bit is a part of the code, so that both signs are
 * listed. The first list holds the codes that do not begin with 1111, the second, without them, what follows these four
 * bits. The end of block, 0110, is a code with a run that leads past the block, 64 or more; n zeros are a code of run
 * n - 1 and level 0. Escapes are not listed.
 *
 * The table is 2^longest entries for the first list and as many for the second behind them. An entry is four bytes: the
 * code's length (in the second list with the four bits), its run, and its level times 64 as int16_t; 255, 0, 0 where no
 * code leads. The decoders take lists whose longest codes are 9 bits, and no others.
 *
 * @param[in]  pHuffTable1  codes that do not begin with 1111
 * @param[in]  pHuffTable2  codes behind 1111
 * @param[out] ppHuffTable  receives the table, which zvpMalloc() gave and zvpiFreeHuffmanTable_DV_32u() takes back
 *
 * Reads:  both lists.
 * Writes: *ppHuffTable.
 *
 * @retval zvpStatusNullPointer  A pointer is null. Nothing is written.
 * @retval zvpStatusNoMemory     The allocation failed, or 2^31 bytes would not hold the table. *ppHuffTable is null.
 * @retval zvpStatusOk           *ppHuffTable is the caller's.
 */
ZVP_API zvpStatus zvpiInitAllocHuffmanTable_DV_32u(const int32_t *pHuffTable1, const int32_t *pHuffTable2,
                                                   uint32_t **ppHuffTable);

/**
 * Gives a decoding table back, by zvpFree().
 *
 * @param[in] pHuffTable  table of zvpiInitAllocHuffmanTable_DV_32u(); no decoder may be using it
 *
 * @retval zvpStatusNullPointer  pHuffTable is null.
 * @retval zvpStatusOk           The table is gone.
 */
ZVP_API zvpStatus zvpiFreeHuffmanTable_DV_32u(uint32_t *pHuffTable);

/**
 * Decodes a segment of 30 blocks: DV of 25 and 50 Mb/s.
 *
 * @param[in]     pStream        the segment
 * @param[in]     pZigzagTables  two scans; each word is 0..63, not checked
 * @param[in]     pHuffTable     table of zvpiInitAllocHuffmanTable_DV_32u()
 * @param[in,out] pBlock         30 blocks, zero on entry; receives DC and AC coefficients
 * @param[out]    pBlockParam    receives 30 words
 *
 * Reads:  400 bytes of pStream and none behind them; 128 words of pZigzagTables; 1024 words of pHuffTable.
 * Writes: coefficients in 3840 bytes of pBlock, 30 words of pBlockParam. No operand may overlap another.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           The segment was decoded, also when it is damaged.
 */
ZVP_API zvpStatus zvpiHuffmanDecodeSegment_DV_8u16s(const uint8_t *pStream, const uint32_t *pZigzagTables,
                                                    const uint32_t *pHuffTable, int16_t *pBlock,
                                                    uint32_t *pBlockParam);

/**
 * Decodes a segment of 40 blocks, eight for each macroblock: DV100.
 *
 * @param[in]     pStream        the segment
 * @param[in]     pZigzagTables  one scan; each word is 0..63, not checked
 * @param[in]     pHuffTable     table of zvpiInitAllocHuffmanTable_DV_32u()
 * @param[in,out] pBlock         40 blocks, zero on entry; receives DC and AC coefficients
 * @param[out]    pBlockParam    receives 40 words
 *
 * Reads:  400 bytes of pStream and none behind them; 64 words of pZigzagTables; 1024 words of pHuffTable.
 * Writes: coefficients in 5120 bytes of pBlock, 40 words of pBlockParam. No operand may overlap another.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           The segment was decoded, also when it is damaged.
 */
ZVP_API zvpStatus zvpiHuffmanDecodeSegment_DV100_8u16s(const uint8_t *pStream, const uint32_t *pZigzagTables,
                                                       const uint32_t *pHuffTable, int16_t *pBlock,
                                                       uint32_t *pBlockParam);

/**
 * Decodes of a segment of 30 blocks only what stands in each block's own space, and of that only the first places of
 * the scan: for previews.
 *
 * A block ends at the first code that leads to place maxCoefficients or beyond; that code is consumed and its
 * coefficient is not stored. So 1 gives the DC alone, and 64 all that the block's space holds.
 *
 * @param[in]     pStream          the segment
 * @param[in]     pZigzagTables    two scans; each word is 0..63, not checked
 * @param[in]     pHuffTable       table of zvpiInitAllocHuffmanTable_DV_32u()
 * @param[in,out] pBlock           30 blocks, zero on entry; receives DC and AC coefficients
 * @param[out]    pBlockParam      receives 30 words
 * @param[in]     maxCoefficients  places of the scan to decode, 0 to 64, in its low byte; more than 64 are 64. The
 *                                 DC is stored in any case
 *
 * Reads:  400 bytes of pStream and none behind them; 128 words of pZigzagTables; 1024 words of pHuffTable.
 * Writes: coefficients in 3840 bytes of pBlock, 30 words of pBlockParam. No operand may overlap another.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           The segment was decoded, also when it is damaged.
 */
ZVP_API zvpStatus zvpiHuffmanDecodeSegmentOnePass_DV_8u16s(const uint8_t *pStream, const uint32_t *pZigzagTables,
                                                           const uint32_t *pHuffTable, int16_t *pBlock,
                                                           uint32_t *pBlockParam, int32_t maxCoefficients);

/** @} */ /* dv_dv_segment_huffman_decoding */

/**
 * @defgroup dv_dv_dequantization_and_inverse_dct_helpers DV dequantization and inverse DCT helpers
 *
 * From decoded to transformed blocks of DV, in place: a block is 64 int16_t, row-major, 128 bytes, as segment decoding
 * leaves it: AC coefficients times 64, the DC times 128. Tables are the caller's, 64 int16_t in the order of the block;
 * they hold the weights of IEC 61834-2 and SMPTE 314M, the quantization steps, and what scale the transform asks for.
 * Results keep their low 16 bits. Tables may overlap each other and the block: all factors are those before the call.
 * @{
 */

/**
 * Dequantization by one table: for all 64 places, the DC too, x becomes ((x t) >> 14) & -4.
 *
 * A product of 3 * 2^14 so gives 0.
 *
 * @param[in,out] pSrcDst        the block
 * @param[in]     pDequantTable  t, 64 factors
 *
 * Reads:  128 bytes of each.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantInv_DV_16s_C1I(int16_t *pSrcDst, const int16_t *pDequantTable);

/**
 * Dequantization by weights and steps: for all 64 places, the DC too, x becomes ((x >> 3) w q) >> 16, the product in
 * 32 bits, where it wraps.
 *
 * @param[in,out] pSrcDst          the block
 * @param[in]     pWeightInvTable  w, 64 inverse weights
 * @param[in]     pQuantInvTable   q, 64 steps
 *
 * Reads:  128 bytes of each.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantWeightBlockInv_DV_16s_C1I(int16_t *pSrcDst, const int16_t *pWeightInvTable,
                                                     const int16_t *pQuantInvTable);

/**
 * Dequantization of DV100 by weights and one step: the DC x becomes x >> 5, with neither; each other x becomes
 * ((x >> 6) quantInvValue w) >> 5, the product in 32 bits, where it wraps.
 *
 * @param[in,out] pSrcDst          the block
 * @param[in]     pWeightInvTable  w, 64 inverse weights, of which the first has no effect
 * @param[in]     quantInvValue    the step, any value
 *
 * Reads:  128 bytes of each.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  A pointer is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiQuantWeightBlockInv_DV100_16s_C1I(int16_t *pSrcDst, const int16_t *pWeightInvTable,
                                                        int32_t quantInvValue);

/**
 * Inverse 2-4-8 DCT and reduction to 4x4 samples, for previews.
 *
 * The block is transformed by zvpiDCT2x4x8Inv_16s_C1I(); each 2x2 of its samples becomes their mean, truncated toward
 * zero. The 16 means, row-major, 4 a row, are written to the first 16 elements; the other 48 keep the samples that the
 * transform has put there.
 *
 * @param[in,out] pSrcDst  the coefficients; receives the samples
 *
 * Reads:  the block.
 * Writes: the block.
 *
 * @retval zvpStatusNullPointer  pSrcDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiDCT8x4x2To4x4Inv_DV_16s_C1I(int16_t *pSrcDst);

/** @} */ /* dv_dv_dequantization_and_inverse_dct_helpers */

/**
 * @defgroup dv_dv_store_to_packed_4_2_2 DV store to packed 4:2:2
 *
 * The last step of a DV decoder: macroblocks of transformed samples go to their places in a frame of packed 4:2:2.
 *
 * Source: six blocks of 64 int16_t, one behind the other, 768 bytes, named here by the element they begin at: luma 0,
 * 64, 128, 192, Cr 256, Cb 320. A block has 8 rows of 8 samples, in the members for 4x4 blocks 4 rows of 4 in its first
 * 16 elements. 4:2:2 has two luma blocks, 0 and 128; its blocks 64 and 192 are never read.
 *
 * Destination: 4 bytes for two pixels, Y Cb Y Cr. A sample v becomes v + 128 clipped to 0..255. A macroblock covers, in
 * pixels at full size, by the shapes of IEC 61834-2 and SMPTE 314M:
 *
 * @verbatim
 *   4:2:2, 16 x 8    4:1:1, 32 x 8             4:1:1 at the right edge     4:2:0, 16 x 16
 *                                              of the frame, 16 x 16
 *   +-----+-----+    +----+----+-----+-----+   +-----+-----+               +-----+-----+
 *   |  0  | 128 |    |  0 | 64 | 128 | 192 |   |  0  |  64 |               |  0  |  64 |
 *   +-----+-----+    +----+----+-----+-----+   +-----+-----+               +-----+-----+
 *                                              | 128 | 192 |               | 128 | 192 |
 *                                              +-----+-----+               +-----+-----+
 *
 *   columns of a chroma block, and the pixels that one sample serves:
 *   0..7: 2 x 1      0..7: 4 x 1               0..3: upper half, 4 x 1     0..7: 2 x 2
 *                                              4..7: lower half, 4 x 1
 * @endverbatim
 *
 * Chroma of 4:1:1 at full size: sample k of a row stands at pixel pair 2 k; the pair between takes
 * (c[k] + c[k + 1]) / 2, truncated toward zero. The last sample of a row is repeated; so at the right edge columns 3
 * and 4, which stand in different rows of the frame, do not mix. All other members repeat a chroma sample in each pixel
 * pair and row that it serves.
 *
 * Reduced size: each block by itself, luma and chroma, becomes a block of 4x4 (ZoomOut2) or 2x2 samples (ZoomOut4), the
 * means of 2x2 or 4x4 samples truncated toward zero, or one sample (ZoomOut8), the first element, which a decoder of
 * previews may leave as the DC. They are laid out as at full size. What zvpiDCT8x4x2To4x4Inv_DV_16s_C1I() makes of
 * blocks goes through the members for 4x4 blocks, with the result of ZoomOut2.
 *
 * Members for five macroblocks take arrays of five pointers. Some test the two pointers of each macroblock in turn; the
 * others stop at the first null source and report nothing, and do not test the destinations before it.
 *
 * dstStep may have any value, negative too. Sources must not overlap destinations. Arrays of pointers must be aligned.
 * @{
 */

/**
 * 4:2:2, five macroblocks of 16x8 pixels.
 *
 * @verbatim
 *   +-----+-----+
 *   |  0  | 128 |   chroma sample k of row r serves pair k of row r
 *   +-----+-----+   16 x 8
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the 128 bytes of blocks 0, 128, 256 and 320 of each macroblock.
 * Writes: 8 rows of 32 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null; or, when its turn comes, an element of either. The
 *                               macroblocks before it are stored.
 * @retval zvpStatusOk           All five are stored.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                           int32_t dstStep);

/**
 * 4:2:2 at half size, five macroblocks of 8x4 pixels.
 *
 * @verbatim
 *   +-----+-----+   16 means of 2x2 samples of each block
 *   |  0  | 128 |   chroma mean k of row r serves pair k of row r
 *   +-----+-----+   8 x 4
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the 128 bytes of blocks 0, 128, 256 and 320 of each macroblock.
 * Writes: 4 rows of 16 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null; or, when its turn comes, an element of either. The
 *                               macroblocks before it are stored.
 * @retval zvpStatusOk           All five are stored.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:2:2 at quarter size, five macroblocks of 4x2 pixels.
 *
 * @verbatim
 *   +-----+-----+   4 means of 4x4 samples of each block
 *   |  0  | 128 |   chroma mean k of row r serves pair k of row r
 *   +-----+-----+   4 x 2
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the 128 bytes of blocks 0, 128, 256 and 320 of each macroblock.
 * Writes: 2 rows of 8 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null; or, when its turn comes, an element of either. The
 *                               macroblocks before it are stored.
 * @retval zvpStatusOk           All five are stored.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:2:2 at an eighth of the size, five macroblocks of 2x1 pixels: one row, so there is no step.
 *
 * @verbatim
 *   Y[0] Cb[0] Y[128] Cr[0]
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 *
 * Reads:  the first element of blocks 0, 128, 256 and 320 of each macroblock.
 * Writes: 4 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null; or, when its turn comes, an element of either. The
 *                               macroblocks before it are stored.
 * @retval zvpStatusOk           All five are stored.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5]);

/**
 * 4:2:2 from 4x4 blocks, five macroblocks of 8x4 pixels.
 *
 * @verbatim
 *   +-----+-----+   elements 4 r .. 4 r + 3 of each block are its row r
 *   |  0  | 128 |   chroma sample k of row r serves pair k of row r
 *   +-----+-----+   8 x 4
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first 32 bytes of blocks 0, 128, 256 and 320 of each macroblock.
 * Writes: 4 rows of 16 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                int32_t dstStep);

/**
 * 4:2:2 of DV100, ten halves of macroblocks, 16x8 pixels each.
 *
 * The source is eight blocks for each pair of halves, the pairs one behind the other.
 *
 * @verbatim
 *                   even half         odd half
 *                   +----+----+       +-----+-----+
 *   luma            |  0 | 64 |       | 128 | 192 |     16 x 8 each
 *                   +----+----+       +-----+-----+
 *   Cr              256               320
 *   Cb              384               448
 * @endverbatim
 *
 * @param[in]  pSrc     five pairs of halves, 512 elements each
 * @param[out] ppDst    the first pixel of each of the ten halves
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  5120 bytes of pSrc.
 * Writes: 8 rows of 32 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  pSrc or ppDst is null; or, when its turn comes, an element of ppDst. The halves
 *                               before it are stored.
 * @retval zvpStatusOk           All ten are stored.
 */
ZVP_API zvpStatus zvpiYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(const int16_t *pSrc, uint8_t *const ppDst[10],
                                                                          int32_t dstStep);

/**
 * 4:1:1, five macroblocks of 32x8 pixels, chroma interpolated.
 *
 * @verbatim
 *   +----+----+-----+-----+   chroma of pair 2 k:     c[k]
 *   |  0 | 64 | 128 | 192 |   chroma of pair 2 k + 1: (c[k] + c[k + 1]) / 2; of pair 15: c[7]
 *   +----+----+-----+-----+   32 x 8
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 8 rows of 64 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                           int32_t dstStep);

/**
 * 4:1:1 at the right edge of the frame, one macroblock of 16x16 pixels, chroma interpolated.
 *
 * @verbatim
 *   +-----+-----+   rows 0..7:  c[k] are columns 0..3 of the chroma blocks
 *   |  0  |  64 |
 *   +-----+-----+   chroma of pair 2 k:     c[k]
 *   | 128 | 192 |   chroma of pair 2 k + 1: (c[k] + c[k + 1]) / 2; of pair 7: c[3]
 *   +-----+-----+
 *      16 x 16      rows 8..15: c[k] are columns 4..7
 * @endverbatim
 *
 * @param[in]  pSrc     the macroblock
 * @param[out] pDst     its first pixel
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of pSrc.
 * Writes: 16 rows of 32 bytes.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R(const int16_t *pSrc, uint8_t *pDst, int32_t dstStep);

/**
 * 4:1:1 at half size, five macroblocks of 16x4 pixels.
 *
 * @verbatim
 *   +----+----+-----+-----+   16 means of 2x2 samples of each block
 *   |  0 | 64 | 128 | 192 |   chroma mean k of row r serves pairs 2 k and 2 k + 1 of row r
 *   +----+----+-----+-----+   16 x 4
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 4 rows of 32 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:1:1 at the right edge at half size, one macroblock of 8x8 pixels.
 *
 * @verbatim
 *   +-----+-----+   16 means of 2x2 samples of each block
 *   |  0  |  64 |   rows 0..3: chroma mean 0 serves pairs 0 and 1, mean 1 pairs 2 and 3
 *   +-----+-----+
 *   | 128 | 192 |   rows 4..7: means 2 and 3 likewise
 *   +-----+-----+   8 x 8
 * @endverbatim
 *
 * @param[in]  pSrc     the macroblock
 * @param[out] pDst     its first pixel
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of pSrc.
 * Writes: 8 rows of 16 bytes.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(const int16_t *pSrc, uint8_t *pDst,
                                                                     int32_t dstStep);

/**
 * 4:1:1 at quarter size, five macroblocks of 8x2 pixels.
 *
 * @verbatim
 *   +----+----+-----+-----+   4 means of 4x4 samples of each block
 *   |  0 | 64 | 128 | 192 |   chroma mean k of row r serves pairs 2 k and 2 k + 1 of row r
 *   +----+----+-----+-----+   8 x 2
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 2 rows of 16 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:1:1 at the right edge at quarter size, one macroblock of 4x4 pixels.
 *
 * @verbatim
 *   +-----+-----+   4 means of 4x4 samples of each block
 *   |  0  |  64 |   rows 0, 1: chroma mean 0 serves both pairs
 *   +-----+-----+
 *   | 128 | 192 |   rows 2, 3: chroma mean 1
 *   +-----+-----+   4 x 4
 * @endverbatim
 *
 * @param[in]  pSrc     the macroblock
 * @param[out] pDst     its first pixel
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of pSrc.
 * Writes: 4 rows of 8 bytes.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R(const int16_t *pSrc, uint8_t *pDst,
                                                                     int32_t dstStep);

/**
 * 4:1:1 at an eighth of the size, five macroblocks of 4x1 pixels: one row, so there is no step.
 *
 * @verbatim
 *   Y[0] Cb[0] Y[64] Cr[0]  Y[128] Cb[0] Y[192] Cr[0]
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 *
 * Reads:  the first element of each block of each macroblock.
 * Writes: 8 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5]);

/**
 * 4:1:1 at the right edge at an eighth of the size, one macroblock of 2x2 pixels.
 *
 * @verbatim
 *   Y[0]   Cb[0] Y[64]  Cr[0]
 *   Y[128] Cb[0] Y[192] Cr[0]
 * @endverbatim
 *
 * @param[in]  pSrc     the macroblock
 * @param[out] pDst     its first pixel
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first element of each block.
 * Writes: 2 rows of 4 bytes.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R(const int16_t *pSrc, uint8_t *pDst,
                                                                     int32_t dstStep);

/**
 * 4:1:1 from 4x4 blocks, five macroblocks of 16x4 pixels; chroma is repeated, not interpolated.
 *
 * @verbatim
 *   +----+----+-----+-----+   elements 4 r .. 4 r + 3 of each block are its row r
 *   |  0 | 64 | 128 | 192 |   chroma sample k of row r serves pairs 2 k and 2 k + 1 of row r
 *   +----+----+-----+-----+   16 x 4
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first 32 bytes of each block of each macroblock.
 * Writes: 4 rows of 32 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                 int32_t dstStep);

/**
 * 4:1:1 at the right edge from 4x4 blocks, one macroblock of 8x8 pixels; chroma is repeated, not interpolated.
 *
 * @verbatim
 *   +-----+-----+   elements 4 r .. 4 r + 3 of each block are its row r
 *   |  0  |  64 |   rows 0..3: chroma sample 0 serves pairs 0 and 1, sample 1 pairs 2 and 3
 *   +-----+-----+
 *   | 128 | 192 |   rows 4..7: samples 2 and 3 likewise
 *   +-----+-----+   8 x 8
 * @endverbatim
 *
 * @param[in]  pSrc     the macroblock
 * @param[out] pDst     its first pixel
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first 32 bytes of each block.
 * Writes: 8 rows of 16 bytes.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusOk           Done.
 */
ZVP_API zvpStatus zvpiYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R(const int16_t *pSrc, uint8_t *pDst, int32_t dstStep);

/**
 * 4:2:0, five macroblocks of 16x16 pixels.
 *
 * @verbatim
 *   +-----+-----+
 *   |  0  |  64 |   chroma sample k of row r serves pair k of rows 2 r and 2 r + 1
 *   +-----+-----+
 *   | 128 | 192 |
 *   +-----+-----+   16 x 16
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 16 rows of 32 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                           int32_t dstStep);

/**
 * 4:2:0 at half size, five macroblocks of 8x8 pixels.
 *
 * @verbatim
 *   +-----+-----+   16 means of 2x2 samples of each block
 *   |  0  |  64 |   chroma mean k of row r serves pair k of rows 2 r and 2 r + 1
 *   +-----+-----+
 *   | 128 | 192 |
 *   +-----+-----+   8 x 8
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 8 rows of 16 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:2:0 at quarter size, five macroblocks of 4x4 pixels.
 *
 * @verbatim
 *   +-----+-----+   4 means of 4x4 samples of each block
 *   |  0  |  64 |   chroma mean k of row r serves pair k of rows 2 r and 2 r + 1
 *   +-----+-----+
 *   | 128 | 192 |
 *   +-----+-----+   4 x 4
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  768 bytes of each macroblock.
 * Writes: 4 rows of 8 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:2:0 at an eighth of the size, five macroblocks of 2x2 pixels.
 *
 * @verbatim
 *   Y[0]   Cb[0] Y[64]  Cr[0]
 *   Y[128] Cb[0] Y[192] Cr[0]
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first element of each block of each macroblock.
 * Writes: 2 rows of 4 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null.
 * @retval zvpStatusOk           Those before the first null element of ppSrc are stored, else all five.
 */
ZVP_API zvpStatus zvpiYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                    int32_t dstStep);

/**
 * 4:2:0 from 4x4 blocks, five macroblocks of 8x8 pixels.
 *
 * @verbatim
 *   +-----+-----+   elements 4 r .. 4 r + 3 of each block are its row r
 *   |  0  |  64 |   chroma sample k of row r serves pair k of rows 2 r and 2 r + 1
 *   +-----+-----+
 *   | 128 | 192 |
 *   +-----+-----+   8 x 8
 * @endverbatim
 *
 * @param[in]  ppSrc    the five macroblocks
 * @param[out] ppDst    their first pixels
 * @param[in]  dstStep  bytes from one row to the next
 *
 * Reads:  the first 32 bytes of each block of each macroblock.
 * Writes: 8 rows of 16 bytes at each ppDst.
 *
 * @retval zvpStatusNullPointer  ppSrc or ppDst is null; or, when its turn comes, an element of either. The
 *                               macroblocks before it are stored.
 * @retval zvpStatusOk           All five are stored.
 */
ZVP_API zvpStatus zvpiYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R(int16_t *const ppSrc[5], uint8_t *const ppDst[5],
                                                                int32_t dstStep);

/** @} */ /* dv_dv_store_to_packed_4_2_2 */

/**
 * @defgroup filters_deinterlacing Filters: deinterlacing
 * @{
 */

/*
 * Planes of 8-bit samples; width and height in samples, steps in bytes and signed. A destination may not overlap a
 * source. In the members that take a set of frames all frames have the same step. No more than width bytes of a row
 * are read or written, but for the border copies of zvpiDeinterlaceMedianThreshold_8u_C1R().
 */

/**
 * What zvpiDeinterlaceBlend_8u_C1() needs: made by zvpiDeinterlaceBlendInitAlloc_8u_C1(), freed by
 * zvpiDeinterlaceBlendFree_8u_C1(). It is only read by the blend, so one record serves many frames and threads.
 */
typedef struct zvpDeinterlaceBlendState {
  uint16_t *pWeights; /**< 512 entries: [m] the weight of the spatial value at motion m (0 to 255) in 1/256, 0 to 256;
                           [256 + m] the median's, 256 less that. */
  int32_t slope;      /**< The ramp's rise for each unit of motion, in 1/256. */
  int32_t intercept;  /**< The ramp's value at motion 0, in 1/256. */
  int32_t highMotion; /**< Above this motion the spatial value is taken alone. */
  int32_t lowMotion;  /**< Below this motion the median is taken alone. */
} zvpDeinterlaceBlendState;

/**
 * Deinterlaces by a vertical filter of three rows.
 *
 * With c = min(centerWeight, 256) and s = (256 - c) >> 1, both unsigned, a filtered row r is
 * dst(x, r) = ((src(x, r - 1) + src(x, r + 1)) * s + src(x, r) * c) >> 8. The layout tells which part of a plane the
 * region is: 1 the first slice (row 0 copied, rows 1 to h - 2 filtered, row h - 1 not written), 4 a middle one (rows -1
 * to h - 2 filtered, row h - 1 not written), 16 the last one (rows -1 to h - 2 filtered, row h - 1 copied), any other
 * value a whole plane (row 0 copied, rows 1 to h - 2 filtered, row h - 1 copied).
 *
 * @param[in]  pSrc          first sample of the region
 * @param[in]  srcStep       row distance of pSrc in bytes
 * @param[out] pDst          first sample of the result's region
 * @param[in]  dstStep       row distance of pDst in bytes
 * @param[in]  roiSize       region in samples; height at least 3
 * @param[in]  centerWeight  weight of the row itself in 1/256; above 256 counts as 256
 * @param[in]  planeLayout   1, 4, 16 or another value, see above
 *
 * Reads:  width bytes of rows 0 to h - 1 (layouts 4 and 16: rows -2 to h - 1).
 * Writes: width bytes of the rows told above; with layouts 4 and 16 row -1, which lies before the region.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadSize      The height is below 3 or the width below 1, whatever the layout.
 * @retval zvpStatusOk           The rows were written.
 */
ZVP_API zvpStatus zvpiDeinterlaceFilterTriangle_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                       int32_t dstStep, zvpSize roiSize, uint32_t centerWeight,
                                                       int32_t planeLayout);

/**
 * Interpolates the rows of one field between those of the other along the direction of least difference.
 *
 * The source holds one field, srcStep being the distance of its rows. Row i of the result lies between source rows
 * A = i + fieldNum - 1 and B = A + 1. In columns 1 to w - 2, with d1 = |A(x-1) - B(x+1)|, d2 = |A(x+1) - B(x-1)|,
 * d0 = |A(x) - B(x)|: the rounded-up mean of A(x-1) and B(x+1) if d1 < d2 and d1 < d0; that of A(x+1) and B(x-1) if
 * d1 >= d2 and d2 < d0; else that of A(x) and B(x). Columns 0 and w - 1 are copied from source row i.
 *
 * @param[in]  pSrc        first sample of the field
 * @param[in]  srcStep     row distance of the field in bytes
 * @param[out] pDst        first sample of the result
 * @param[in]  dstStep     row distance of pDst in bytes
 * @param[in]  roiSize     width in samples and number of rows; height at least 2
 * @param[in]  fieldNum    0 or 1; not checked
 * @param[in]  copyBorder  not 0: with fieldNum 0 row 0 is a copy of source row 0 and rows 1 to h - 1 are made; with
 *                         fieldNum 1 row h - 1 is a copy of source row h - 1 and rows 0 to h - 2 are made. 0: rows 0 to
 *                         h - 1 are made, from source row -1 on (fieldNum 0) or up to source row h (fieldNum 1), which
 *                         the caller provides
 *
 * Reads:  width bytes of the rows told above.
 * Writes: width bytes of rows 0 to h - 1.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadSize      The width is below 1 or the height below 2.
 * @retval zvpStatusOk           The rows were written.
 */
ZVP_API zvpStatus zvpiDeinterlaceEdgeDetect_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst, int32_t dstStep,
                                                   zvpSize roiSize, int32_t fieldNum, int32_t copyBorder);

/**
 * Deinterlaces by a median of three rows where it departs from the middle one.
 *
 * In this order: the field that stays is copied, h / 2 rows (fieldNum 1: rows 0, 2, ...; any other value: rows 1, 3,
 * ..., from pSrc + srcStep to pDst + srcStep, whatever dstStep is); with copyBorder rows 0 and h - 1 are copied,
 * srcStep bytes each, whatever the width; then every second row r from 1 (fieldNum 1), 2 (otherwise, with copyBorder)
 * or 0 (otherwise, without) is made, while r < h, or h - 1 with copyBorder: with c = src(x, r) and m the median of
 * src(x, r - 1), c and src(x, r + 1), the result is c if |m - c| < threshold, else m.
 *
 * @param[in]  pSrc        first sample of the frame
 * @param[in]  srcStep     row distance of pSrc in bytes; a border copy with a step below 1 copies nothing
 * @param[out] pDst        first sample of the result
 * @param[in]  dstStep     row distance of pDst in bytes; the copy of the odd rows is in place only if it equals srcStep
 * @param[in]  roiSize     frame in samples; height at least 2
 * @param[in]  threshold   least departure of the median that is taken; 0 or less takes it always
 * @param[in]  fieldNum    1: the odd rows are made, any other value: the even ones
 * @param[in]  copyBorder  not 0: rows 0 and h - 1 are copied
 *
 * Reads:  width bytes of rows 0 to h - 1, and srcStep bytes of rows 0 and h - 1 with copyBorder. Without copyBorder
 *         also row -1 (fieldNum not 1) and row h where the last made row is h - 1.
 * Writes: as told above.
 *
 * @retval zvpStatusNullPointer  pSrc or pDst is null.
 * @retval zvpStatusBadSize      The width is below 1 or the height below 2.
 * @retval zvpStatusOk           The rows were written.
 */
ZVP_API zvpStatus zvpiDeinterlaceMedianThreshold_8u_C1R(const uint8_t *pSrc, int32_t srcStep, uint8_t *pDst,
                                                        int32_t dstStep, zvpSize roiSize, int32_t threshold,
                                                        int32_t fieldNum, int32_t copyBorder);

/**
 * Makes the weights of the three-frame blend.
 *
 * Both pairs are first put in ascending order and the weights bounded, in the caller's arrays: t0 <= t1, w0 <= w1,
 * w1 at most 32767, w0 at least -32768. The weight of the spatial value rises with the motion as a straight line
 * through (t1, w1) with the slope k = |(w1 - w0) / (t1 - t0)|, in integers of 1/256: slope = trunc(256 k + 0.5), and
 * intercept = trunc(256 b + 0.5) (b > 0) or trunc(256 b - 0.5), b = w1 - k t1; an intercept of 257 or more becomes 256
 * with a slope of 0. pWeights[m] is intercept + m * slope, bounded to 0..256. With t0 equal to t1 the weight is 0 below
 * t0 and 256 from there on, highMotion t0 - 1 and lowMotion t0.
 *
 * highMotion is (256 - intercept) / slope, less 1 if the dividend is negative, at most 255; lowMotion is -intercept /
 * slope, plus 1 if intercept is negative, at least 0. A slope of 0, and a line that is below 0 at motion 255, give
 * highMotion 255 and lowMotion 256 (0 if the line is not negative). Where the line rises by more than 32767 between
 * motion 0 and its end e = min(255 slope + intercept, 256), the intercept becomes e - 32767 and the slope
 * trunc((256 w1 - intercept) / t1).
 *
 * @param[in]     roiSize      size of the frames to come, at least 3 by 3; only checked
 * @param[in,out] pThresholds  two motions, 0 to 255, in any order; not checked for null
 * @param[in,out] pWeights     two weights of the spatial value, 1.0 being all of it, in any order; not checked for null
 * @param[out]    ppState      receives the record. It stays unset if the record cannot be allocated; if the table
 *                             cannot, it receives a record without a table, for zvpiDeinterlaceBlendFree_8u_C1()
 *
 * @retval zvpStatusNullPointer  ppState is null.
 * @retval zvpStatusBadSize      The width or the height is below 3.
 * @retval zvpStatusNoMemory     An allocation failed; pThresholds and pWeights are as they were.
 * @retval zvpStatusOk           The record is complete.
 */
ZVP_API zvpStatus zvpiDeinterlaceBlendInitAlloc_8u_C1(zvpSize roiSize, int32_t *pThresholds, double *pWeights,
                                                      zvpDeinterlaceBlendState **ppState);

/**
 * Frees a record of zvpiDeinterlaceBlendInitAlloc_8u_C1() and its table.
 *
 * @param[in] pState  the record, with or without a table
 *
 * @retval zvpStatusNullPointer  pState is null.
 * @retval zvpStatusOk           The memory was given back.
 */
ZVP_API zvpStatus zvpiDeinterlaceBlendFree_8u_C1(zvpDeinterlaceBlendState *pState);

/**
 * Deinterlaces the middle one of three frames by a blend of a temporal median and a spatial value.
 *
 * Made are rows 2, 4, ... (topField not 0) or 1, 3, ... that have a row below them; of row r, with P0, P1, P2 the
 * previous, current and next frame, A = P1(x, r - 1), B = P1(x, r + 1), C = P1(x, r), T the frame P0 if topFirst and
 * topField agree (both 0 or both not), else P2:
 *   - motion m = max(mean(mean(|P0(x, r-1) - A|, |P2(x, r-1) - A|), mean(|P0(x, r+1) - B|, |P2(x, r+1) - B|)),
 *     |C - T(x, r)|), each mean of two rounded up;
 *   - med = median of A, B, C;
 *   - s, the mean along the direction of least difference, as in zvpiDeinterlaceEdgeDetect_8u_C1R();
 *   - the result is med if m < lowMotion, else s if m > highMotion, else (med * weights[256 + m] + s * weights[m]) >>
 *     8.
 * In columns 0 and w - 1 it is (n * weights[m] + med * weights[256 + m]) >> 8, n being B (topField not 0) or A.
 * Besides, row 0 is copied from P1 if topField is not 0, and row h - 1 if it is of the made parity.
 *
 * @param[in]  pSrcPlanes  three frames: previous, current, next
 * @param[in]  srcStep     row distance of the frames in bytes
 * @param[out] pDst        first sample of the result
 * @param[in]  dstStep     row distance of pDst in bytes
 * @param[in]  roiSize     frame in samples, at least 3 by 3
 * @param[in]  topFirst    0 or not 0: whether the top field is the earlier one
 * @param[in]  topField    0 or not 0: whether the even rows are made, else the odd ones
 * @param[in]  copyField   not 0: the other rows are copied from the current frame
 * @param[in]  pState      the weights
 *
 * Reads:  width bytes of each row of the frames.
 * Writes: width bytes of the rows told above.
 *
 * @retval zvpStatusNullPointer  pSrcPlanes, pDst, pState, one of the three frames or the table of weights is null.
 * @retval zvpStatusBadSize      The width or the height is below 3.
 * @retval zvpStatusOk           The rows were written.
 */
ZVP_API zvpStatus zvpiDeinterlaceBlend_8u_C1(const uint8_t *const *pSrcPlanes, int32_t srcStep, uint8_t *pDst,
                                             int32_t dstStep, zvpSize roiSize, int32_t topFirst, int32_t topField,
                                             int32_t copyField, const zvpDeinterlaceBlendState *pState);

/**
 * Deinterlaces by a motion test over four frames with a guard against comb artifacts.
 *
 * The kept field comes from P2 if topFirst differs from topField, else from P1. Made are rows 2, 4, ... (topField 1) or
 * 1, 3, ... below row h - 1. Of row r, with a the sample of the frame before the kept one and up and dn the kept
 * frame's samples above and below: the sample is still if all of |a - kept(x, r)| and, in the rows above and below,
 * |P1 - P0|, |P1 - P2|, |P1 - P3|, |P0 - P2|, |P2 - P3| are below the threshold. A still sample gives a if
 * artifactProtection is 0. Otherwise, with n = 30 for a still sample and 6 for a moved one, lo = max(a - n, 0) and
 * hi = min(a + n, 235): (up + dn + 1) >> 1 if both up and dn are below lo or both are above hi, else a.
 * Besides, the kept frame's row 0 (topField 1) and its row h - 1 (if that row is of the made parity) are copied.
 *
 * @param[in]  pSrcPlanes          four frames in the order of time, P0 to P3
 * @param[in]  srcStep             row distance of the frames in bytes
 * @param[out] pDst                first sample of the result
 * @param[in]  dstStep             row distance of pDst in bytes
 * @param[in]  roiSize             frame in samples, at least 1 by 1
 * @param[in]  threshold           least difference that counts as motion; 0 or less: all samples have moved
 * @param[in]  topFirst            0 or 1
 * @param[in]  topField            1: the even rows are made; 0: the odd ones; not checked
 * @param[in]  copyField           not 0: h / 2 rows of the kept field are copied, from row topField on
 * @param[in]  artifactProtection  not 0: still samples are guarded too
 *
 * Reads:  width bytes of each row of the frames.
 * Writes: width bytes of the rows told above; with topField 0 and an odd height row h - 1 is not written.
 *
 * @retval zvpStatusNullPointer  pSrcPlanes, pDst or one of the four frames is null.
 * @retval zvpStatusBadSize      The width or the height is below 1.
 * @retval zvpStatusOk           The rows were written.
 */
ZVP_API zvpStatus zvpiDeinterlaceMotionAdaptive_8u_C1(const uint8_t *const *pSrcPlanes, int32_t srcStep, uint8_t *pDst,
                                                      int32_t dstStep, zvpSize roiSize, int32_t threshold,
                                                      int32_t topFirst, int32_t topField, int32_t copyField,
                                                      int32_t artifactProtection);

/** @} */ /* filters_deinterlacing */

/**
 * @defgroup filters_cast_spatio_temporal_denoise Filters: CAST spatio-temporal denoise
 * @{
 */

/*
 * The frame is cut into blocks. A block that stands still is blended with the previous frame, the more the longer it
 * does; a block that moves is smoothed inside the frame, less on edges. The caller owns what lasts from frame to frame:
 * the previous frame, commonly the previous result, and one history byte a block.
 */

/** Parameters of the denoiser; zvpiFilterDenoiseCASTInit() gives the defaults. */
typedef struct zvpDenoiseCASTParams {
  uint8_t temporalDiffThreshold;  /**< A sample has moved if it differs by more than this; 16. */
  uint8_t motionPixelThreshold;   /**< A block has moved if more samples than this have; 0. */
  uint8_t strongEdgeThreshold;    /**< An edge-map value above this is a strong edge; 8. */
  uint8_t blockWidth;             /**< Block width in samples, at least 1; 4. */
  uint8_t blockHeight;            /**< Block height in rows, at least 1; 4. */
  uint8_t edgePixelWeight;        /**< Weight of the sample itself on a strong edge, in 1/256; 128. */
  uint8_t flatPixelWeight;        /**< Weight of the sample itself elsewhere, in 1/256; 16. */
  uint8_t spatialThresholdLuma;   /**< Neighbours that differ by less enter the mean: of a plane, of luma; 12. */
  uint8_t spatialThresholdChroma; /**< The same of chroma in packed 4:2:2; 6. */
  uint8_t historyInit;            /**< First value of a history byte; the weight where there is no history; 192. */
} zvpDenoiseCASTParams;

/**
 * Writes the default parameters.
 *
 * @param[out] pParams  receives 16, 0, 8, 4, 4, 128, 16, 12, 6, 192 in the order of the record
 *
 * @retval zvpStatusNullPointer  pParams is null.
 * @retval zvpStatusOk           The parameters were written.
 */
ZVP_API zvpStatus zvpiFilterDenoiseCASTInit(zvpDenoiseCASTParams *pParams);

/**
 * Denoises a plane of 8-bit samples in time where it stands still and in space where it moves.
 *
 * Blocks go from left to right, row by row; those at the right and the bottom are cut by the frame.
 *   - Motion: a block has moved if more than motionPixelThreshold of its samples differ from the previous frame by more
 *     than temporalDiffThreshold. In a cut block the last sample of a row counts once more for each missing column,
 *     then the last row once more for each missing row.
 *   - History byte h of a block: moved, h < 128 becomes 128, else h / 2; still, h < 128 becomes 128, else
 *     min(h + 4, 200), and the new value is the weight w. Without pHistory a still block has w = historyInit, and if
 *     that is 0 the block is left out: none of its samples is written.
 *   - A still block: dst = ((previous - c) * w + (c << 8) + 128) >> 8 for each sample c.
 *   - A moved one: mean = (sum + n / 2) / n over those n samples of the 3x3 neighbourhood, c included, that differ from
 *     c by less than spatialThresholdLuma; samples outside the frame are those of its nearest row and column; with
 *     weight = edgePixelWeight where the edge map is above strongEdgeThreshold, else flatPixelWeight,
 *     dst = ((256 - weight) * mean + c * weight + 128) >> 8. With a threshold of 0, dst = c.
 *   - Without pSrcPrev, the first frame: the history is filled with historyInit, and all blocks are filtered in space.
 *
 * @param[in]     pSrcCur   the frame
 * @param[in]     pSrcPrev  the previous frame, or null on the first one. It may be the destination: no sample of it is
 *                          read after its place has been written
 * @param[in]     srcStep   row distance of pSrcCur and pSrcPrev in bytes
 * @param[in]     pEdgeMap  strength of the edge at each sample
 * @param[in]     edgeStep  row distance of pEdgeMap in bytes
 * @param[in]     roiSize   frame in samples, at least 1 by 1
 * @param[out]    pDst      the result; may not overlap pSrcCur or pEdgeMap
 * @param[in]     dstStep   row distance of pDst in bytes
 * @param[in,out] pHistory  a byte a block, ceil(width / blockWidth) in a row, or null
 * @param[in]     pParams   the parameters, or null for the defaults
 *
 * Reads:  width bytes of each row of the frames and of the edge map.
 * Writes: width bytes of each row of pDst, and the history.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pEdgeMap or pDst is null.
 * @retval zvpStatusBadSize      The width or the height is below 1.
 * @retval zvpStatusOk           The frame was filtered.
 */
ZVP_API zvpStatus zvpiFilterDenoiseCAST_8u_C1R(const uint8_t *pSrcCur, const uint8_t *pSrcPrev, int32_t srcStep,
                                               const uint8_t *pEdgeMap, int32_t edgeStep, zvpSize roiSize,
                                               uint8_t *pDst, int32_t dstStep, uint8_t *pHistory,
                                               const zvpDenoiseCASTParams *pParams);

/**
 * Denoises packed 4:2:2 (Y0 Cb Y1 Cr), each component by itself.
 *
 * As zvpiFilterDenoiseCAST_8u_C1R(), with 4 * blockWidth bytes by blockHeight rows as a group of four blocks of
 * blockWidth samples a row: left luma (the even bytes of the group's first half), right luma (those of the second), Cb
 * (bytes 1, 5, 9, ...) and Cr (bytes 3, 7, 11, ...). Each has its own motion count and history byte; chroma goes by
 * spatialThresholdChroma. Neighbours are the nearest samples of the same component. Of a group that the frame cuts only
 * what remains is handled; the history byte of a right luma block of which nothing remains is not touched but on the
 * first frame.
 *
 * @param[in]     pSrcCur   the frame, 2 * width bytes a row
 * @param[in]     pSrcPrev  the previous frame, or null on the first one; it may be the destination
 * @param[in]     srcStep   row distance of pSrcCur and pSrcPrev in bytes
 * @param[in]     pEdgeMap  strength of the edge at each byte of the frame
 * @param[in]     edgeStep  row distance of pEdgeMap in bytes
 * @param[in]     roiSize   frame in pixels, at least 2 by 1; the width is even
 * @param[out]    pDst      the result; may not overlap pSrcCur or pEdgeMap
 * @param[in]     dstStep   row distance of pDst in bytes
 * @param[in,out] pHistory  four bytes a group (left luma, Cb, right luma, Cr), ceil(2 * width / (4 * blockWidth))
 *                          groups in a row, or null
 * @param[in]     pParams   the parameters, or null for the defaults
 *
 * Reads:  2 * width bytes of each row of the frames and of the edge map.
 * Writes: 2 * width bytes of each row of pDst, and the history.
 *
 * @retval zvpStatusNullPointer  pSrcCur, pEdgeMap or pDst is null.
 * @retval zvpStatusBadSize      The width or the height is below 1, or the width is odd.
 * @retval zvpStatusOk           The frame was filtered.
 */
ZVP_API zvpStatus zvpiFilterDenoiseCASTYUV422_8u_C2R(const uint8_t *pSrcCur, const uint8_t *pSrcPrev, int32_t srcStep,
                                                     const uint8_t *pEdgeMap, int32_t edgeStep, zvpSize roiSize,
                                                     uint8_t *pDst, int32_t dstStep, uint8_t *pHistory,
                                                     const zvpDenoiseCASTParams *pParams);

/** @} */ /* filters_cast_spatio_temporal_denoise */

#ifdef __cplusplus
}
#endif

#endif /* ZVPVC_H */
