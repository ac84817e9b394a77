/// \file
/// Status codes of every fallible operation of the plug-in, and their English texts.
#pragma once

#include <cstdint>

/// 0 is success, every failure is negative. The values -1001, -1003, -1005, -1008, -1014 and -1016 are
/// reserved and have no text.
inline constexpr int32_t PLUGIN_STATUS_SUCCESS = 0;
inline constexpr int32_t PLUGIN_STATUS_UNKNOWN_ERROR = -1;
inline constexpr int32_t PLUGIN_STATUS_OUT_OF_MEMORY = -2;
inline constexpr int32_t PLUGIN_STATUS_INVALID_PARAM = -3;
inline constexpr int32_t PLUGIN_STATUS_NOT_SUPPORTED = -4;
inline constexpr int32_t PLUGIN_STATUS_FEATURE_ERROR = -1002;
inline constexpr int32_t PLUGIN_STATUS_OPEN_FILE_ERROR = -1004;
inline constexpr int32_t PLUGIN_STATUS_WRITE_FILE_ERROR = -1006;
inline constexpr int32_t PLUGIN_STATUS_READ_FILE_ERROR = -1007;
inline constexpr int32_t PLUGIN_STATUS_BUFFER_TIMEOUT = -1009;
inline constexpr int32_t PLUGIN_STATUS_CORRECTION_ERROR = -1010;
inline constexpr int32_t PLUGIN_STATUS_CAMERA_NOT_SUPPORTED = -1011;
inline constexpr int32_t PLUGIN_STATUS_BUFFER_SIZE_ERROR = -1012;
inline constexpr int32_t PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED = -1013;
inline constexpr int32_t PLUGIN_STATUS_SILENT = -1014; ///< the user cancelled, or has been told already
inline constexpr int32_t PLUGIN_STATUS_ROI_MISMATCH = -1015;
inline constexpr int32_t PLUGIN_STATUS_NEED_BAYER_FORMAT = -1017;
inline constexpr int32_t PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED = -1018;
inline constexpr int32_t PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED = -1019;

namespace ffc::pluginobject {

/// Who asks for a text: the host's text function does not know PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED.
enum class ETextAudience { Host, Dialog };

/// The English text of a code, which is also its translation key (context "QObject").
/// \return a static text; "Unknown error" for a code without one
const char *GetStatusSourceText(int32_t nStatus, ETextAudience eAudience);

} // namespace ffc::pluginobject
