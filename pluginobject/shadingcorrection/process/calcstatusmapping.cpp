#include "pluginobject/shadingcorrection/process/calcstatusmapping.h"

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/statuscode.h"

int32_t MapCalcStatus(int32_t nCalcStatus)
{
  switch (nCalcStatus) {
  case IMAGECALC_STATUS_SUCCESS: return PLUGIN_STATUS_SUCCESS;
  case IMAGECALC_STATUS_INVALID_ARGUMENT:
  case IMAGECALC_STATUS_OUT_OF_RANGE:
  case IMAGECALC_STATUS_SIZE_MISMATCH: return PLUGIN_STATUS_INVALID_PARAM;
  case IMAGECALC_STATUS_OUT_OF_MEMORY: return PLUGIN_STATUS_OUT_OF_MEMORY;
  case IMAGECALC_STATUS_NOT_SUPPORTED: return PLUGIN_STATUS_CAMERA_NOT_SUPPORTED;
  default: return PLUGIN_STATUS_UNKNOWN_ERROR;
  }
}
