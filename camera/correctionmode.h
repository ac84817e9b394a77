/// \file
/// The shading corrections that a camera can have of its own.
#pragma once

namespace ffc::camera {

enum class ECorrectionMode {
  None,       ///< the camera leaves it to the host
  FlatField,  ///< dark level and gain, in small blocks
  Vignetting, ///< gain alone, in large blocks
  Unknown,    ///< one that says its name and offers nothing
};

} // namespace ffc::camera
