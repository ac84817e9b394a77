/// \file
/// Bayer types, and where each colour sits in a 2x2 cell.
#pragma once

#include <cstdint>

/// The name tells the colours of a cell's top row.
enum EBayerType : int32_t {
  BAYER_TYPE_MONO = 0,
  BAYER_TYPE_RG = 1, ///< R G / G B
  BAYER_TYPE_GB = 2, ///< G B / R G
  BAYER_TYPE_GR = 3, ///< G R / B G
  BAYER_TYPE_BG = 4, ///< B G / G R
};

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
