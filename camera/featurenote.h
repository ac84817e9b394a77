/// \file
/// What a camera's features are to the plug-in where they are not what the standard says.
#pragma once

#include <string>

namespace ffc::camera {

struct SFeatureNote {
  enum class EKind {
    Aliased,  ///< the camera has it under another name, in another unit, or as a number of another kind
    Supplied, ///< the camera has nothing of the kind; it reads as strSource, and is the host's
    Hidden,   ///< the camera has it, but its value would be misunderstood: strSource is the reason
    Guessed,  ///< nobody stated it: strSource is a sentence that says why it is what it is
    Missing,  ///< no flat field can be taken without it
  };

  EKind eKind = EKind::Missing;
  std::string strFeature; ///< as the standard calls it
  std::string strSource;  ///< in words, with the camera's own names
};

} // namespace ffc::camera
