/// \file
/// The colour planes of a mosaic sensor's image, as sets of sites of the 2 x 2 cell.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "camera/sensorformat.h"

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
