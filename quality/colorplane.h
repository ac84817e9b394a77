/// \file
/// The colour planes of a mosaic sensor's image, as sets of sites of the 2 x 2 cell.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "genapi/sensorformat.h"

namespace ffc::quality {

/// A site is (line & 1) * 2 + (column & 1).
constexpr std::size_t CELL_SITES = 4;

/// One plane: the pixels of one colour.
struct SColorPlane {
  std::string strName;                    ///< "Mono", "R", "G" or "B"
  std::array<bool, CELL_SITES> abSites{}; ///< the sites that belong to it
};

/// "Mono" alone, or "R", "G" (both greens) and "B".
std::vector<SColorPlane> GetColorPlanes(genapi::EColorLayout eLayout);

/// A plane of every pixel.
SColorPlane GetWholeImagePlane();

/// One image that the standard speaks of: all pixels of a monochrome sensor, or those of one site of the mosaic's
/// cell, whose lines and columns are every other one.
struct SChannel {
  SColorPlane stPlane; ///< called "Mono", or "R", "Gr" (the green beside red), "Gb" and "B"
  uint32_t nFirstColumn = 0;
  uint32_t nFirstLine = 0;
  uint32_t nStep = 1;

  uint32_t GetColumns(uint32_t nWidth) const { return (nWidth - std::min(nWidth, nFirstColumn) + nStep - 1) / nStep; }
  uint32_t GetLines(uint32_t nHeight) const { return (nHeight - std::min(nHeight, nFirstLine) + nStep - 1) / nStep; }
};

/// One for a monochrome sensor, four for a mosaic.
std::vector<SChannel> GetChannels(genapi::EColorLayout eLayout);

/// Calls fnPixel(nColumn) for every pixel of the plane in one line, left to right.
template <class TFunction>
void VisitPlaneLine(const SColorPlane &stPlane, uint32_t nWidth, uint32_t nLine, TFunction fnPixel)
{
  const std::size_t nFirstSite = std::size_t{nLine & 1U} * 2U;
  const bool bEven = stPlane.abSites[nFirstSite];
  const bool bOdd = stPlane.abSites[nFirstSite + 1U];
  const uint32_t nStep = bEven && bOdd ? 1U : 2U;
  if (!bEven && !bOdd) {
    return;
  }
  for (uint32_t nColumn = bEven ? 0U : 1U; nColumn < nWidth; nColumn += nStep) {
    fnPixel(nColumn);
  }
}

} // namespace ffc::quality
