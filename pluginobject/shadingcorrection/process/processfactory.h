/// \file
/// Makes the correction process that a camera needs.
#pragma once

#include <functional>
#include <memory>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"

namespace ffc::process {

/// Where the coefficients are computed and applied.
enum class EProcessKind {
  HostFlatField,   ///< computed and applied on the host
  DeviceFlatField, ///< computed here, applied by the camera
  DeviceVignetting ///< vignetting gains, applied by the camera
};

/// Makes a process. \return 0; -2 when there is no memory
using FnCreateProcess = std::function<int32_t(EProcessKind eKind, const pluginobject::CFeatureAccess &deviceFeatures,
                                              const pluginobject::CFeatureAccess &streamFeatures,
                                              std::unique_ptr<IShadingCorrectionProcess> &pProcess)>;

/// The factory of the product.
[[nodiscard]] int32_t CreateShadingCorrectionProcess(EProcessKind eKind,
                                                     const pluginobject::CFeatureAccess &deviceFeatures,
                                                     const pluginobject::CFeatureAccess &streamFeatures,
                                                     std::unique_ptr<IShadingCorrectionProcess> &pProcess);

} // namespace ffc::process
