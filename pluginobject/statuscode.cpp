#include "pluginobject/statuscode.h"

#include <QtGlobal>

namespace ffc::pluginobject {

namespace {

constexpr const char *UNKNOWN_ERROR = QT_TRANSLATE_NOOP("QObject", "Unknown error");
constexpr const char *PARAMS_MODIFIED = QT_TRANSLATE_NOOP(
  "QObject", "The current device parameters have been modified. Please restore the default parameters and try again!");

// The dense range of the plug-in's own codes: entry i belongs to code FIRST_CODE - i.
constexpr int32_t FIRST_CODE = PLUGIN_STATUS_FEATURE_ERROR;
constexpr const char *TEXTS[] = {
  QT_TRANSLATE_NOOP("QObject", "Failure to operation device feature"),                // -1002
  UNKNOWN_ERROR,                                                                      // -1003
  QT_TRANSLATE_NOOP("QObject", "Open file error"),                                    // -1004
  UNKNOWN_ERROR,                                                                      // -1005
  QT_TRANSLATE_NOOP("QObject", "Write file error"),                                   // -1006
  QT_TRANSLATE_NOOP("QObject", "Read file error"),                                    // -1007
  UNKNOWN_ERROR,                                                                      // -1008
  QT_TRANSLATE_NOOP("QObject", "Get buffer time out"),                                // -1009
  QT_TRANSLATE_NOOP("QObject", "Flat field correction error"),                        // -1010
  QT_TRANSLATE_NOOP("QObject", "Current camera is not support  "),                    // -1011
  QT_TRANSLATE_NOOP("QObject", "Buffer size is error  "),                             // -1012
  QT_TRANSLATE_NOOP("QObject", "Recovery user param fail  "),                         // -1013
  UNKNOWN_ERROR,                                                                      // -1014
  QT_TRANSLATE_NOOP("QObject", "Current ROI is not matching with the coefficient  "), // -1015
  UNKNOWN_ERROR,                                                                      // -1016
  QT_TRANSLATE_NOOP("QObject", "The pixelformat should be changed to bayer!"),        // -1017
  QT_TRANSLATE_NOOP("QObject", "The pixelformat not implement!"),                     // -1018
  PARAMS_MODIFIED,                                                                    // -1019
};
constexpr int32_t LAST_CODE_OF_DIALOG = PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED;
constexpr int32_t LAST_CODE_OF_HOST = PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED;
static_assert(sizeof TEXTS / sizeof TEXTS[0] == FIRST_CODE - LAST_CODE_OF_DIALOG + 1);

} // namespace

const char *GetStatusSourceText(int32_t nStatus, ETextAudience eAudience)
{
  switch (nStatus) {
  case PLUGIN_STATUS_SUCCESS: return QT_TRANSLATE_NOOP("QObject", "Success");
  case PLUGIN_STATUS_UNKNOWN_ERROR: return UNKNOWN_ERROR;
  case PLUGIN_STATUS_OUT_OF_MEMORY: return QT_TRANSLATE_NOOP("QObject", "Out of memory");
  case PLUGIN_STATUS_INVALID_PARAM: return QT_TRANSLATE_NOOP("QObject", "Invalid input param");
  default: break;
  }
  const int32_t nLast = eAudience == ETextAudience::Host ? LAST_CODE_OF_HOST : LAST_CODE_OF_DIALOG;
  return nStatus <= FIRST_CODE && nStatus >= nLast ? TEXTS[FIRST_CODE - nStatus] : UNKNOWN_ERROR;
}

} // namespace ffc::pluginobject
