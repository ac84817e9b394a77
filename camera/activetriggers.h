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
/// after the other, and the user's again at the end; where the selector cannot be written, only the entry
/// that is selected is read. Throws nothing: what cannot be read is left out.
std::vector<SActiveTrigger> ListActiveTriggers(GenApi::INodeMap &nodeMap);

} // namespace ffc::camera
