#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <new>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "pluginobject/statuscode.h"

int32_t CreateShadingCorrectionProcess(EProcessKind eKind, const CFeatureAccess &deviceFeatures,
                                       const CFeatureAccess &streamFeatures,
                                       std::unique_ptr<IShadingCorrectionProcess> &pProcess)
{
  if (eKind != EProcessKind::HostFlatField) {
    return PLUGIN_STATUS_CAMERA_NOT_SUPPORTED;
  }
  try {
    pProcess.reset(new CShadingCorrectionPro_PC(deviceFeatures, streamFeatures));
  } catch (const std::bad_alloc &) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  return PLUGIN_STATUS_SUCCESS;
}
