/// \file
/// The features of a shading correction, except coefficients and user sets.
#pragma once

#include <cstdint>

#include "camera/correctionmode.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// ShadingCorrectionMode, with the one entry that a mode has.
void AddShadingCorrectionMode(genapi::CSoftwareNodeMap &deviceMap, ECorrectionMode eMode);

/// Declares FlatFieldCorrection, FFCBlockSize, FFCFrameCount and, in flat-field mode, FFCExpectGray.
class CCorrectionFeatures {
public:
  /// \param deviceMap outlives this object
  /// \param eMode FlatField or Vignetting
  CCorrectionFeatures(genapi::CSoftwareNodeMap &deviceMap, ECorrectionMode eMode);

  bool IsCorrectionOn() const;
  uint32_t GetBlockSide() const; ///< pixels
  double GetExpectGray() const;  ///< 255 without the feature

private:
  genapi::CSoftwareEnumeration *m_pCorrection = nullptr;
  genapi::CSoftwareEnumeration *m_pBlockSize = nullptr;
  genapi::CSoftwareInteger *m_pExpectGray = nullptr;
};

} // namespace ffc::camera
