/// \file
/// Makes the camera that the command line asks for.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "camera/icamera.h"
#include "host/options/hostoptions.h"
#include "platform/result.h"

namespace ffc::host {

using OpenedCamera = Result<std::unique_ptr<camera::ICamera>>;
using CameraFactory = std::function<OpenedCamera(const SCameraOptions &)>;

OpenedCamera OpenCamera(const SCameraOptions &stOptions);

/// One line per real camera that answers: id, protocol, address and display name with tabs between them; a line that
/// says so when there is none. Takes about a second.
/// \param bVerbose opens each camera, and adds a line for each of its features that is not as the plug-in needs it,
/// and for its triggers
std::string DescribeRealCameras(bool bVerbose);

} // namespace ffc::host
