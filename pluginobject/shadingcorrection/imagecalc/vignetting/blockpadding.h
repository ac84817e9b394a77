/// \file
/// Images cut off or extended to whole blocks.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

namespace ffc::imagecalc {

/// A raw frame of any size; the caller's pixels, row by row.
template <class TPixel>
struct SRawFrame {
  const TPixel *pPixels;
  uint32_t nWidth;
  uint32_t nHeight;
};

using SFrame8 = SRawFrame<uint8_t>;
using SFrame16 = SRawFrame<uint16_t>;

/// The size of a block in pixels, at least 1 each.
struct SBlockSize {
  uint32_t nWidth;
  uint32_t nHeight;
};

/// A copy of a frame whose sides are whole blocks.
template <class TPixel>
struct SPaddedImage {
  std::unique_ptr<TPixel[]> pPixels;
  uint64_t nWidth = 0;
  uint64_t nHeight = 0;
};

using SPadded8 = SPaddedImage<uint8_t>;
using SPadded16 = SPaddedImage<uint16_t>;

/// Copies a frame to whole blocks. At the right and at the bottom, a strip wider than half a block is extended,
/// any other cut off. Each added pixel copies the one nPeriod places to its left, each added row the one
/// nPeriod rows above.
/// \param stFrame at least one block large
/// \param nPeriod 1 repeats the last pixels; 2 carries on the layout of 2x2 cells
/// \return a status of calcstatus.h; -103 when there is no memory, stPadded then being unchanged
template <class TPixel>
[[nodiscard]] int32_t PadToBlocks(const SRawFrame<TPixel> &stFrame, const SBlockSize &stBlock, uint32_t nPeriod,
                                  SPaddedImage<TPixel> &stPadded)
{
  const uint64_t nWidth = uint64_t{CountBlocks(stFrame.nWidth, stBlock.nWidth)} * stBlock.nWidth;
  const uint64_t nHeight = uint64_t{CountBlocks(stFrame.nHeight, stBlock.nHeight)} * stBlock.nHeight;
  std::unique_ptr<TPixel[]> pPixels = AllocateArray<TPixel>({nWidth, nHeight});
  if (pPixels == nullptr) {
    return IMAGECALC_STATUS_OUT_OF_MEMORY;
  }
  const TPixel *pFrom = stFrame.pPixels;
  TPixel *pTo = pPixels.get();
  for (uint64_t y = 0; y < nHeight; ++y, pTo += nWidth) {
    if (y >= stFrame.nHeight) {
      std::copy_n(pTo - nPeriod * nWidth, nWidth, pTo);
      continue;
    }
    std::copy_n(pFrom, std::min<uint64_t>(stFrame.nWidth, nWidth), pTo);
    for (uint64_t x = stFrame.nWidth; x < nWidth; ++x) {
      pTo[x] = pTo[x - nPeriod];
    }
    pFrom += stFrame.nWidth;
  }
  stPadded.pPixels = std::move(pPixels);
  stPadded.nWidth = nWidth;
  stPadded.nHeight = nHeight;
  return IMAGECALC_STATUS_SUCCESS;
}

} // namespace ffc::imagecalc
