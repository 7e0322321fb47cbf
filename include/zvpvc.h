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
 * @{
 */

/** @} */ /* measures_sad_and_ssd_with_half_pel_selection */

/**
 * @defgroup measures_differences_block_statistics_and_edge_test Measures: differences, block statistics and edge test
 * @{
 */

/** @} */ /* measures_differences_block_statistics_and_edge_test */

/**
 * @defgroup mc_mc_blocks Motion compensation: MC blocks
 * @{
 */

/** @} */ /* mc_mc_blocks */

/**
 * @defgroup mc_getdiff_blocks Motion compensation: GetDiff blocks
 * @{
 */

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
 * @{
 */

/** @} */ /* mpeg_huffman_tables_and_readers */

/**
 * @defgroup mpeg_dct_block_reconstruction MPEG-1/2: DCT block reconstruction
 * @{
 */

/** @} */ /* mpeg_dct_block_reconstruction */

/**
 * @defgroup mpeg_mpeg_2_quantization_and_scans MPEG-1/2: MPEG-2 quantization and scans
 * @{
 */

/** @} */ /* mpeg_mpeg_2_quantization_and_scans */

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
 * Bits:       no bound: a level_prefix ends with the next 1, however far away. A word of ones behind the data ends every
 *             prefix. A level_prefix of more than 35, which no codec writes, asks for a suffix of more than 32 bits: of
 *             those the cursor counts all and moves on by one word, so that the offset may come out negative. Then the
 *             stream is broken; zvpiDecodeExpGolombOne_H264_1u32s() refuses such an offset.
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
 * @retval zvpStatusNullPointer  an argument, *ppBitStream or *ppDstCoeffs is null.
 * @retval zvpStatusOutOfRange   maxNumCoeff is neither 16 nor 15; then: vlcSelect is negative as a signed number.
 * @retval zvpStatusNullPointer  the chosen coeff_token table is null. Later, when it is needed: a total_zeros or
 *                               run_before table is null; the cursor is left behind what was read, *ppDstCoeffs stays.
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

/** @} */ /* h264_luma_and_chroma_interpolation */

/**
 * @defgroup h264_interpolation_across_picture_edges H.264: interpolation across picture edges
 * @{
 */

/** @} */ /* h264_interpolation_across_picture_edges */

/**
 * @defgroup h264_weighted_prediction H.264: weighted prediction
 * @{
 */

/** @} */ /* h264_weighted_prediction */

/**
 * @defgroup h264_intra_prediction H.264: intra prediction
 * @{
 */

/** @} */ /* h264_intra_prediction */

/**
 * @defgroup h264_macroblock_reconstruction_8_bit H.264: macroblock reconstruction, 8-bit
 * @{
 */

/** @} */ /* h264_macroblock_reconstruction_8_bit */

/**
 * @defgroup h264_deblocking H.264: deblocking
 * @{
 */

/** @} */ /* h264_deblocking */

/**
 * @defgroup h264_4x4_transform_and_quantization H.264: 4x4 transform and quantization
 * @{
 */

/** @} */ /* h264_4x4_transform_and_quantization */

/**
 * @defgroup h263_h_263_coefficient_coding H.263 coefficient coding
 * @{
 */

/** @} */ /* h263_h_263_coefficient_coding */

/**
 * @defgroup mpeg4_mpeg_4_coefficient_coding_with_reversible_vlc MPEG-4 coefficient coding with reversible VLC
 * @{
 */

/** @} */ /* mpeg4_mpeg_4_coefficient_coding_with_reversible_vlc */

/**
 * @defgroup mpeg4_mpeg_4_quantization_contexts MPEG-4 quantization contexts
 * @{
 */

/** @} */ /* mpeg4_mpeg_4_quantization_contexts */

/**
 * @defgroup mpeg4_sprite_warping_and_global_motion MPEG-4: sprite warping and global motion
 * @{
 */

/** @} */ /* mpeg4_sprite_warping_and_global_motion */

/**
 * @defgroup vc1_vc_1_transforms VC-1 transforms
 * @{
 */

/** @} */ /* vc1_vc_1_transforms */

/**
 * @defgroup vc1_vc_1_quantization VC-1 quantization
 * @{
 */

/** @} */ /* vc1_vc_1_quantization */

/**
 * @defgroup vc1_vc_1_interpolation VC-1 interpolation
 * @{
 */

/** @} */ /* vc1_vc_1_interpolation */

/**
 * @defgroup vc1_vc_1_deblocking VC-1 deblocking
 * @{
 */

/** @} */ /* vc1_vc_1_deblocking */

/**
 * @defgroup vc1_vc_1_overlap_smoothing_range_mapping_and_hadamard_sums VC-1 overlap smoothing, range mapping and Hadamard sums
 * @{
 */

/** @} */ /* vc1_vc_1_overlap_smoothing_range_mapping_and_hadamard_sums */

/**
 * @defgroup avs_avs_block_entropy_decoding AVS block entropy decoding
 * @{
 */

/** @} */ /* avs_avs_block_entropy_decoding */

/**
 * @defgroup dv_dv_segment_huffman_decoding DV segment Huffman decoding
 * @{
 */

/** @} */ /* dv_dv_segment_huffman_decoding */

/**
 * @defgroup dv_dv_dequantization_and_inverse_dct_helpers DV dequantization and inverse DCT helpers
 * @{
 */

/** @} */ /* dv_dv_dequantization_and_inverse_dct_helpers */

/**
 * @defgroup dv_dv_store_to_packed_4_2_2 DV store to packed 4:2:2
 * @{
 */

/** @} */ /* dv_dv_store_to_packed_4_2_2 */

/**
 * @defgroup filters_deinterlacing Filters: deinterlacing
 * @{
 */

/** @} */ /* filters_deinterlacing */

/**
 * @defgroup filters_cast_spatio_temporal_denoise Filters: CAST spatio-temporal denoise
 * @{
 */

/** @} */ /* filters_cast_spatio_temporal_denoise */

#ifdef __cplusplus
}
#endif

#endif /* ZVPVC_H */
