/// \file
/// Making and applying a coefficient table. Arguments are checked by the caller.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ffc::ombrix {

class CBandPool;

/// The largest value of a bit depth.
constexpr uint32_t GetMaxPixelValue(uint32_t nBitDepth)
{
  return (uint32_t{1} << nBitDepth) - 1;
}

/// What a table is made from.
struct SReference {
  const void *pBright;
  const void *pDark;   ///< null: the table has no dark levels
  std::size_t nPixels; ///< of each frame, at least 1
  uint32_t nBitDepth;  ///< 8 to 16
};

/// A frame to correct.
struct SFrame {
  const void *pSource;
  void *pDestination;  ///< may be pSource
  std::size_t nPixels; ///< at least 1
  uint32_t nBitDepth;  ///< 8 to 16
};

/// A coefficient table, laid out as ombrix.h describes.
struct STable {
  const void *pData;
  bool bDark; ///< whether it has dark levels
};

/// Writes a coefficient table.
/// \param nTarget at most the bit depth's maximum
/// \param pTable 2 bytes for each pixel, or 4 with a dark frame
/// \param pool shares a large frame among its threads
void ComputeTable(const SReference &stReference, uint32_t nTarget, void *pTable, CBandPool &pool);

/// Corrects a frame.
/// \param pool shares a large frame among its threads
void ApplyTable(const SFrame &stFrame, const STable &stTable, CBandPool &pool);

} // namespace ffc::ombrix
