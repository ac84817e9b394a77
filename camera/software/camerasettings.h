/// \file
/// What a frame is exposed with.
#pragma once

#include <array>
#include <cstdint>

#include "genapi/sensorformat.h"

namespace ffc::camera {

/// One consistent reading of a camera's features, taken once per frame.
struct SCameraSettings {
  const genapi::SSensorFormat *pFormat = nullptr; ///< one of GetSensorFormats()
  uint32_t nOffsetX = 0;                          ///< pixels; even for a Bayer sensor
  uint32_t nOffsetY = 0;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  double dExposureTime = 0.0;                                       ///< microseconds
  double dGain = 0.0;                                               ///< decibel
  double dBlackLevel = 0.0;                                         ///< percent of full scale
  std::array<double, genapi::COLOR_COUNT> adBalance{1.0, 1.0, 1.0}; ///< by EColor
  bool bFixedPatternCorrection = false;                             ///< of the pixels' dark signal
  bool bDeadPixelCorrection = false;

  uint32_t GetPayloadSize() const { return nWidth * nHeight * pFormat->GetBytesPerPixel(); }

  bool operator==(const SCameraSettings &stOther) const
  {
    return pFormat == stOther.pFormat && nOffsetX == stOther.nOffsetX && nOffsetY == stOther.nOffsetY &&
           nWidth == stOther.nWidth && nHeight == stOther.nHeight && dExposureTime == stOther.dExposureTime &&
           dGain == stOther.dGain && dBlackLevel == stOther.dBlackLevel && adBalance == stOther.adBalance &&
           bFixedPatternCorrection == stOther.bFixedPatternCorrection &&
           bDeadPixelCorrection == stOther.bDeadPixelCorrection;
  }
};

} // namespace ffc::camera
