/// \file
/// What a camera that corrects itself is set to.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"

/// The settings that the coefficients depend on.
struct SDeviceSettings {
  std::string strPixelColorFilter; ///< empty for a monochrome camera
  SCorrectionBlock stBlock;

  int32_t GetBayerType() const { return ::GetBayerType(strPixelColorFilter); }
};

/// One of the tables of block-size entries.
using FnApplyBlockEntry = void (*)(const std::string &strEntry, SCorrectionBlock &stBlock);

/// Whether the camera has a colour filter; false when it does not tell.
bool ReadIsColorCamera(const CFeatureAccess &features);

/// Reads the colour filter of a colour camera, the block size and the frame count.
/// \return the code of the first failing read
int32_t ReadDeviceSettings(const CFeatureAccess &features, bool bColorCamera, FnApplyBlockEntry fnApplyBlockEntry,
                           SDeviceSettings &stSettings, FFCInfo &stInfo);

/// Sets the number of frames to average in the camera and, when it took it, in the record.
/// \param strEntry an entry of FFCFrameCount
int32_t WriteFrameCount(const CFeatureAccess &features, const std::string &strEntry, FFCInfo &stInfo);
