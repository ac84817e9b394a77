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

/// Writes the coefficient table, laid out as ombrix.h describes.
/// \param pBright nPixels pixels
/// \param pDark nPixels pixels, or null: the table then has no dark levels
/// \param nBitDepth 8 to 16
/// \param nPixels at least 1
/// \param nTarget at most the bit depth's maximum
/// \param pTable nPixels x 2 bytes, or x 4 with a dark frame
/// \param pool shares a large frame among its threads
void ComputeTable(const void *pBright, const void *pDark, uint32_t nBitDepth, std::size_t nPixels, uint32_t nTarget,
                  void *pTable, CBandPool &pool);

/// Corrects a frame.
/// \param pDestination may be pSource
/// \param bDark whether the table has dark levels
/// \param pool shares a large frame among its threads
void ApplyTable(const void *pSource, void *pDestination, uint32_t nBitDepth, std::size_t nPixels, const void *pTable,
                bool bDark, CBandPool &pool);

} // namespace ffc::ombrix
