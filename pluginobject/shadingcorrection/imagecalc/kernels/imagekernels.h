/// \file
/// The loops over pixels of the image statistics, once per instruction level.
///
/// Pixels are bytes or words; no buffer needs any alignment. Only what is named here is written.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/instructionlevel.h"

namespace ffc::imagecalc {

/// Adds nPixels pixels to as many 32-bit sums, which wrap round.
using FnAddPixels = void (*)(const void *pPixels, std::size_t nPixels, void *pSums);

/// Adds nPixels pixels to as many 16-bit sums, which wrap round.
/// \return all bits that any of the pixels has
using FnAddNarrowPixels = uint32_t (*)(const void *pPixels, std::size_t nPixels, void *pSums);
/// Takes nPixels pixels from as many 16-bit sums, which wrap round.
using FnTakeNarrowPixels = void (*)(const void *pPixels, std::size_t nPixels, void *pSums);
/// Writes nCount 16-bit sums as ones of 32 bits, which do not overlap them.
using FnWidenSums = void (*)(const void *pNarrow, std::size_t nCount, void *pWide);

/// A multiplier and a shift that take the place of a division.
struct SReciprocal {
  uint32_t nMultiplier;
  uint32_t nShift; ///< 0 to 31
};

/// Writes nPixels quotients of 32-bit sums, cut to pixels: high >> nShift, where high is the upper half of
/// sum x nMultiplier.
using FnMultiplyPixels = void (*)(const void *pSums, std::size_t nPixels, SReciprocal stReciprocal, void *pPixels);
/// Shifts nPixels 32-bit sums right by 0 to 31, and cuts the results to pixels.
using FnShiftPixels = void (*)(const void *pSums, std::size_t nPixels, uint32_t nShift, void *pPixels);

/// A row of blocks in an image, all as wide as each other but for the last, which may be narrower.
struct SBlockRow {
  const void *pPixels;     ///< the top left pixel
  std::size_t nStride;     ///< pixels from one row to the next
  std::size_t nRows;       ///< of pixels
  std::size_t nColumns;    ///< of pixels, of all blocks together
  std::size_t nBlockWidth; ///< pixels
};

/// Adds each block's sum of pixels to its double: exact below 2^53.
using FnSumBlocks = void (*)(const SBlockRow &stRow, double *pSums);

/// Adds the sums of the four places of each block's 2x2 cells to three doubles of the block's. The last row or column
/// of an odd side is left out.
/// \param anTarget which double each place counts to, in the order top left, top right, bottom left, bottom right
using FnSumCells = void (*)(const SBlockRow &stRow, const uint8_t (&anTarget)[4], double *pSums);

/// One row of an image to smooth, or two below each other.
struct SSmoothing {
  const void *pPixels;   ///< the neighbour above and to the left of the first pixel
  std::size_t nRowBytes; ///< from one row to the next, of both images
  std::size_t nPixels;   ///< in each row
  bool bTwoRows;
  void *pSmoothed; ///< where the first pixel goes
};

/// Writes smoothed pixels: ((sum + 4) x 455) >> 12 over each pixel and its eight neighbours.
using FnSmoothRows = void (*)(const SSmoothing &stSmoothing);

/// Functions by whether pixels are words.
struct SImageKernels {
  platform::EInstructionLevel eLevel; ///< that the compiler really used
  FnAddPixels afnAdd[2];
  FnMultiplyPixels afnMultiply[2];
  /// For a multiplier that has a 33rd bit, which is left out: ((sum - high) / 2 + high) >> nShift.
  FnMultiplyPixels afnDivide[2];
  FnShiftPixels afnShift[2];
  FnAddNarrowPixels afnAddNarrow[2];
  FnTakeNarrowPixels afnTakeNarrow[2];
  FnShiftPixels afnShiftNarrow[2]; ///< of 16-bit sums
  FnWidenSums fnWiden;
  FnSumBlocks afnSumBlocks[2];
  FnSumCells afnSumCells[2];
  FnSmoothRows afnSmooth[2];
};

/// \return null for a level that was not built
const SImageKernels *FindSImageKernels(platform::EInstructionLevel eLevel);

/// What this program uses, chosen when it is loaded.
const SImageKernels &GetImageKernels();

} // namespace ffc::imagecalc
