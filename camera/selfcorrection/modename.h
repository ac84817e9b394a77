/// \file
/// The words for the corrections that a camera can have of its own.
#pragma once

#include <string>

#include "camera/selfcorrection/correctionmode.h"

namespace ffc::camera {

/// "none", "flatfield", "vignetting" or "unknown".
const char *GetModeName(ECorrectionMode eMode);

/// \return false for another word; eMode is then left alone
bool FindMode(const std::string &strName, ECorrectionMode &eMode);

} // namespace ffc::camera
