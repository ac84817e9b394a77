/// \file
/// C interface of the image library Ombrix: flat-field correction of single frames.
///
/// Two functions: one makes a coefficient table from a bright and, when there is one, a dark frame; the
/// other corrects a frame with it. Neither keeps anything between calls or allocates memory; both may run on
/// any number of threads at once as long as no buffer that one call writes is used by another.
///
/// **Threads.** Frames of some four megapixels and more are shared among the caller and a few threads of the
/// library's own: with the caller half the processors that the process may use, 4 at most. The environment variable
/// OMBRIX_THREADS asks for another number, from 1 (none of its own) to 16; it is read with the first such frame, which
/// starts the threads. They sleep between frames, get no signals, and end when the library is unloaded (Windows keeps
/// it loaded from the first such frame on). A call that comes while another's frame is shared runs on its own thread
/// alone. A forked process starts threads of its own. What is computed does not depend on any of this.
///
/// **Frames** are tightly packed, row by row. A bit depth of 8 means one byte per pixel; 9 to 16 mean one
/// 16-bit word per pixel in the machine's byte order, the value in its low bits. A value above the bit
/// depth's maximum counts as the maximum. No buffer needs any alignment.
///
/// **Coefficient table**, for n = width x height pixels:
///
/// | bytes        | content |
/// |--------------|---------|
/// | 0 to 2n - 1  | gain of each pixel, 16-bit unsigned, Q4.12: 4096 is 1.0, 65535 the limit |
/// | 2n to 4n - 1 | only with a dark frame: dark level of each pixel, 16-bit unsigned, shifted left to 16 bits |
///
/// Words are in the machine's byte order. With b the bit depth, max = 2^b - 1 and all values integers:
///
///     signal = bright > dark ? bright - dark : 0        (dark is 0 without a dark frame)
///     gain   = signal == 0 ? 65535 : min(65535, (target * 4096 + signal / 2) / signal)
///     level  = dark << (16 - b)
///
/// so a gain is rounded half up and the target of every pixel is the expected grey, whatever its colour.
/// A frame is corrected, again rounding half up, by
///
///     v   = source << (16 - b)
///     t   = v > level ? v - level : 0                   (level is 0 without a dark frame)
///     out = min(max, (t * gain + 2^(27 - b)) >> (28 - b))
///
/// which is the exact product (source - dark) x gain, rounded and limited. 32 bits hold every
/// intermediate value.
#pragma once

#include <stddef.h>
#include <stdint.h>

#if !defined(_WIN32)
#define OMBRIX_API __attribute__((visibility("default")))
#elif defined(Ombrix_EXPORTS)
#define OMBRIX_API /* exported by ombrix.def, which gives the ordinals */
#else
#define OMBRIX_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Results of both functions. When several checks fail, missing pointers win, then unsupported values,
/// then values out of range, then the buffer size.
enum EOmbrixStatus {
  OMBRIX_STATUS_SUCCESS = 0,
  OMBRIX_STATUS_MISSING_POINTER = -101,
  OMBRIX_STATUS_OUT_OF_RANGE = -102,  ///< an empty or too large image, or an expected grey above the maximum
  OMBRIX_STATUS_OUT_OF_MEMORY = -103, ///< reserved: this implementation never fails so
  OMBRIX_STATUS_NOT_SUPPORTED = -105, ///< bit depth not 8 to 16, or Bayer type not 0 to 4
  OMBRIX_STATUS_BUFFER_SIZE = -106,   ///< the coefficient buffer does not fit the image
};

/// What a coefficient table is made from. The frames stay the caller's and are only read.
typedef struct OMBRIX_FFC_PARAM {
  const void *pBright; ///< evenly lit frame
  const void *pDark;   ///< frame without light; null: no dark level is subtracted
  uint32_t nWidth;     ///< pixels per row
  uint32_t nHeight;    ///< rows
  uint32_t nBitDepth;  ///< 8 to 16
  uint32_t nBayerType; ///< 0 mono, 1 RG, 2 GB, 3 GR, 4 BG; checked, but all pixels are treated alike
} OMBRIX_FFC_PARAM;

/// Makes a coefficient table, or tells its size.
///
/// Query: with pCoefficient null, writes the table's size in bytes to *pnSize, or 0 when it fails. The
/// frames are not read, but the bright one must be there.
///
/// Compute: writes the table. When a check fails, nothing is written.
///
/// \param stParam frames and format
/// \param pCoefficient null for a query, else a buffer that overlaps neither frame
/// \param pnSize on entry the buffer's capacity in bytes (not read by a query), on return the table's size
/// \param pnExpectGray target of every pixel, 0 to the bit depth's maximum; not used by a query
/// \return an EOmbrixStatus; OUT_OF_RANGE also for a table of more than 2^32 - 1 bytes
OMBRIX_API int32_t OmbrixComputeFlatField(OMBRIX_FFC_PARAM stParam, void *pCoefficient, uint32_t *pnSize,
                                          const uint32_t *pnExpectGray);

/// Corrects one frame. When a check fails, nothing is written.
///
/// \param pSource the frame
/// \param pDestination the corrected frame, of the same format: either pSource itself or a buffer that
///        does not overlap it
/// \param nBitDepth 8 to 16
/// \param nWidth pixels per row
/// \param nHeight rows
/// \param pCoefficient a table of OmbrixComputeFlatField for the same size and bit depth
/// \param pnSize the table's size in bytes: 2 x width x height, or 4 x width x height with dark levels
/// \return an EOmbrixStatus
OMBRIX_API int32_t OmbrixApplyFlatField(const void *pSource, void *pDestination, uint32_t nBitDepth, uint32_t nWidth,
                                        uint32_t nHeight, const void *pCoefficient, const uint32_t *pnSize);

#ifdef __cplusplus
} // extern "C"

static_assert(sizeof(OMBRIX_FFC_PARAM) == 32, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, pBright) == 0, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, pDark) == 8, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, nWidth) == 16, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, nHeight) == 20, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, nBitDepth) == 24, "the record crosses a binary interface");
static_assert(offsetof(OMBRIX_FFC_PARAM, nBayerType) == 28, "the record crosses a binary interface");
#endif
