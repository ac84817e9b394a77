/// \file
/// The shading corrections that a camera can have of its own, and the words for them.
#pragma once

#include <optional>
#include <string>

namespace ffc::camera {

enum class ECorrectionMode {
  None,       ///< the camera leaves it to the host
  FlatField,  ///< dark level and gain, in small blocks
  Vignetting, ///< gain alone, in large blocks
  Unknown,    ///< one that has a name and no features
};

/// "none", "flatfield", "vignetting" or "unknown".
const char *GetModeName(ECorrectionMode eMode);

/// None for another word.
std::optional<ECorrectionMode> FindMode(const std::string &strName);

} // namespace ffc::camera
