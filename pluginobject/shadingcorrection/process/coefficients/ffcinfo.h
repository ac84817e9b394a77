/// \file
/// The correction record that travels with the coefficients.
#pragma once

#include <cstddef>
#include <cstdint>

/// Six little-endian words; the last 24 bytes of every coefficient image of a device.
struct FFCInfo {
  uint32_t nValid = 0;            ///< 1 once a correction has been computed
  uint32_t nMode = 0;             ///< 0 FlatFieldCorrection, 1 ParallaxCorrection, 2 vignetting
  uint32_t nFrameCount = 0;       ///< bright frames averaged: 1, 2, 4, 8 or 16
  uint32_t nBlockSizeCode = 0;    ///< index of the camera's block-size entry
  uint32_t nCoefficientsSize = 0; ///< bytes of the whole coefficient image
  uint32_t nExpectGray = 0;       ///< target grey value, 0 to 255
};
static_assert(sizeof(FFCInfo) == 24);
static_assert(offsetof(FFCInfo, nFrameCount) == 8 && offsetof(FFCInfo, nExpectGray) == 20);
