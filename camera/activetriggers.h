/// \file
/// Which triggers keep a camera from delivering frames by itself.
#pragma once

#include <string>
#include <vector>

#include <GenApi/GenApi.h>

namespace ffc::camera {

struct SActiveTrigger {
  std::string strSelector; ///< such as "FrameStart"; empty for a camera with one trigger
  std::string strSource;   ///< such as "Line1"; empty when it cannot be read
};

/// All whose TriggerMode is "On". A camera has one mode for each entry of its TriggerSelector: they are selected one
/// after the other, and the user's again at the end; a selector that cannot be written is asked as it stands.
/// Throws nothing: what the camera does not tell is not there.
std::vector<SActiveTrigger> ListActiveTriggers(GenApi::INodeMap &nodeMap);

} // namespace ffc::camera
