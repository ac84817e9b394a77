/// \file
/// The words for the corrections that a camera can have of its own.
#pragma once

#include <optional>
#include <string>

#include "camera/correctionmode.h"

namespace ffc::camera {

/// "none", "flatfield", "vignetting" or "unknown".
const char *GetModeName(ECorrectionMode eMode);

/// None for another word.
std::optional<ECorrectionMode> FindMode(const std::string &strName);

} // namespace ffc::camera
