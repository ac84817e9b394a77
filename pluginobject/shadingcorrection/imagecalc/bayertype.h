/// \file
/// Bayer types, and where each colour sits in a 2x2 cell.
#pragma once

#include <cstdint>

#include "genapi/pfnc.h"

namespace ffc::imagecalc {

/// Colour layouts as numbers, which callers hand over. The name tells the colours of a cell's top row.
constexpr int32_t BAYER_TYPE_MONO = static_cast<int32_t>(ffc::genapi::EColorLayout::Mono);
constexpr int32_t BAYER_TYPE_RG = static_cast<int32_t>(ffc::genapi::EColorLayout::BayerRG); ///< R G / G B
constexpr int32_t BAYER_TYPE_GB = static_cast<int32_t>(ffc::genapi::EColorLayout::BayerGB); ///< G B / R G
constexpr int32_t BAYER_TYPE_GR = static_cast<int32_t>(ffc::genapi::EColorLayout::BayerGR); ///< G R / B G
constexpr int32_t BAYER_TYPE_BG = static_cast<int32_t>(ffc::genapi::EColorLayout::BayerBG); ///< B G / G R

/// Places of a 2x2 cell, row by row.
enum EBayerPlace : uint32_t {
  BAYER_PLACE_TOP_LEFT,
  BAYER_PLACE_TOP_RIGHT,
  BAYER_PLACE_BOTTOM_LEFT,
  BAYER_PLACE_BOTTOM_RIGHT,
  BAYER_PLACE_COUNT,
};

/// The place of each colour. The two green places share a diagonal.
struct SBayerLayout {
  EBayerPlace eRed;
  EBayerPlace eGreenTop;
  EBayerPlace eGreenBottom;
  EBayerPlace eBlue;
};

/// \return a static layout; null for a type outside 1 to 4
const SBayerLayout *GetBayerLayout(int32_t nBayerType);

} // namespace ffc::imagecalc
