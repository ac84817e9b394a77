/// \file
/// The region of a sensor that a coefficient table covers, and its blocks.
#pragma once

#include <cstdint>

#include "camera/correctionmode.h"

namespace ffc::camera {

/// Bytes behind the table in the register: six 32-bit words of the host's, without meaning to the camera.
constexpr uint32_t RECORD_SIZE = 24;

/// Table and frame belong together when these are equal.
struct SBlockLayout {
  ECorrectionMode eMode = ECorrectionMode::FlatField; ///< FlatField or Vignetting
  bool bColor = false;                                ///< a Bayer sensor
  uint32_t nOffsetX = 0;                              ///< pixels
  uint32_t nOffsetY = 0;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nBlockSide = 0; ///< pixels, a power of two

  /// False when the region is smaller than a block: there is no table then.
  bool HasTable() const { return nWidth >= nBlockSide && nHeight >= nBlockSide; }
  /// Points of the grid: a block each, and a ring around them. A rest of the region that is wider than
  /// half a block counts as a block.
  uint32_t GetColumns() const { return CountBlocks(nWidth) + 2; }
  uint32_t GetRows() const { return CountBlocks(nHeight) + 2; }
  /// Bytes; 0 without a table.
  uint32_t GetTableSize() const;
  uint32_t GetRegisterSize() const { return GetTableSize() + RECORD_SIZE; }

  bool operator==(const SBlockLayout &stOther) const
  {
    return eMode == stOther.eMode && bColor == stOther.bColor && nOffsetX == stOther.nOffsetX &&
           nOffsetY == stOther.nOffsetY && nWidth == stOther.nWidth && nHeight == stOther.nHeight &&
           nBlockSide == stOther.nBlockSide;
  }

private:
  uint32_t CountBlocks(uint32_t nPixels) const
  {
    return nPixels / nBlockSide + (nPixels % nBlockSide > nBlockSide / 2 ? 1 : 0);
  }
};

} // namespace ffc::camera
