#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <new>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_dev.h"
#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "pluginobject/shadingcorrection/process/vignettingcorrectionpro_dev.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

int32_t CreateShadingCorrectionProcess(EProcessKind eKind, const CFeatureAccess &deviceFeatures,
                                       const CFeatureAccess &streamFeatures,
                                       std::unique_ptr<IShadingCorrectionProcess> &pProcess)
{
  pProcess.reset();
  try {
    switch (eKind) {
    case EProcessKind::HostFlatField:
      pProcess = std::make_unique<CShadingCorrectionPro_PC>(deviceFeatures, streamFeatures);
      break;
    case EProcessKind::DeviceFlatField: pProcess = std::make_unique<CShadingCorrectionPro_Dev>(deviceFeatures); break;
    case EProcessKind::DeviceVignetting:
      pProcess = std::make_unique<CVignettingCorrectionPro_Dev>(deviceFeatures);
      break;
    }
  } catch (const std::bad_alloc &) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  return pProcess == nullptr ? PLUGIN_STATUS_INVALID_PARAM : PLUGIN_STATUS_SUCCESS;
}

} // namespace ffc::process
